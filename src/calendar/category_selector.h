// The chooser above the day list: one category of the open file, or all of them.
#pragma once

#include <string_view>

#include "controls/fly_menu.h"
#include "core/record_file.h"

// The commands of its items: from the first one on, in the order of the file's list; "All Categories" comes
// after the most names there can be.
constexpr int kFirstCategoryCommand = 500;
constexpr int kAllCategoriesOffset = 29;
// Room for a category's name in a filter, without a terminator.
constexpr int kCategorySize = 30;

constexpr const char* kAllCategories = "All Categories";

// Fills a menu anew: "All Categories", then the names of the file's list. The current item is the one named
// by `filter`, "All Categories" when that is empty. A filter that another user took off the list stays in the
// menu's face.
void BuildCategoryMenu(TFlyMenu& menu, const core::RecordFile& file, int firstCommand,
                       std::string_view filter);

class CategorySelector : public TFlyMenu {
 public:
  CategorySelector();

  // Fills the menu from the file and shows `filter` (empty for all) as the current choice.
  void Fill(const core::RecordFile& file, std::string_view filter);
  // A click anywhere opens the menu.
  RECT ActiveArea() const override;
};
