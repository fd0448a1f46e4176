#include "calendar/category_selector.h"

#include <algorithm>

#include "calendar/palette.h"
#include "core/categories.h"

void BuildCategoryMenu(TFlyMenu& menu, const core::RecordFile& file, int firstCommand,
                       std::string_view filter) {
  core::CategoryList categories;
  core::ReadCategories(file, categories);
  menu.ClearItems();
  menu.AddItemText(kAllCategories, firstCommand + kAllCategoriesOffset);
  menu.AddSeparator();
  const std::size_t shown = std::min(categories.names.size(), core::kShownCategories);
  for (std::size_t i = 0; i < shown; ++i) {
    const int command = firstCommand + static_cast<int>(i);
    menu.AddItemText(categories.names[i].c_str(), command);
    if (categories.names[i] == filter) menu.SetCurrent(command);
  }
  if (filter.empty()) menu.SetCurrent(firstCommand + kAllCategoriesOffset);
}

CategorySelector::CategorySelector() : TFlyMenu(kPanelBackground, kPanelText) {}

void CategorySelector::Fill(const core::RecordFile& file, std::string_view filter) {
  BuildCategoryMenu(*this, file, kFirstCategoryCommand, filter);
}

RECT CategorySelector::ActiveArea() const {
  RECT client;
  ::GetClientRect(hwnd, &client);
  return client;
}
