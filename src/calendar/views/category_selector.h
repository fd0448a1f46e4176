// The chooser above the day list: one category of the open file, or all of them, or the editor of the file's
// list. It shows the session's filter. Its parent hears of a choice as of any menu's, by WM_COMMAND, and
// hands it back to OnCategoryMenuCommand when it may be carried out.
#pragma once

#include <string_view>

#include "controls/fly_menu.h"
#include "core/calendar/calendar_session.h"

// The commands of its items: from the first one on, in the order of the file's list; "All Categories" and
// "Edit Categories" come after the most names there can be.
constexpr int kFirstCategoryCommand = 500;
constexpr int kAllCategoriesOffset = 29;
constexpr int kEditCategoriesOffset = 30;

// Fills a menu anew: "All Categories", the names of the file's list, "Edit Categories", with separators
// between them. The current item is the one named by `filter`, "All Categories" when that is empty. A filter
// that another user took off the list stays in the menu's face.
void BuildCategoryMenu(TFlyMenu& menu, const core::RecordFile& file, int firstCommand,
                       std::string_view filter = {});

class CategorySelector : public TFlyMenu {
 public:
  // `calendarSession` must outlive the selector.
  explicit CategorySelector(core::CalendarSession& calendarSession);

  // Offers what the open file has; to be called when the file or the filter has changed.
  void Fill();
  // Whether a command is one of the menu's.
  static bool IsCategoryCommand(unsigned command);
  // Carries out a choice: a category by its name (not used for "Edit Categories"), which becomes the
  // session's filter; the editor runs over the parent and, when it ends with OK, sets the filter back to all.
  void OnCategoryMenuCommand(int command, std::string_view name);

  // A click anywhere opens the menu.
  RECT ActiveArea() const override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  core::CalendarSession& session;
};
