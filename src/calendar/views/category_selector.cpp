#include "calendar/views/category_selector.h"

#include <algorithm>

#include "calendar/dialogs/categories_dialog.h"
#include "calendar/views/palette.h"
#include "core/calendar/categories.h"

namespace {

constexpr const char* kAllCategories = "All Categories";
constexpr const char* kEditCategories = "Edit Categories";
constexpr int kAllCommand = kFirstCategoryCommand + kAllCategoriesOffset;
constexpr int kEditCommand = kFirstCategoryCommand + kEditCategoriesOffset;
constexpr int kNoCommand = -1;

}  // namespace

void BuildCategoryMenu(TFlyMenu& menu, const core::RecordFile& file, int firstCommand,
                       std::string_view filter) {
  core::CategoryList categories;
  core::ReadCategories(file, categories);
  menu.ClearItems();
  menu.AddItemText(kAllCategories, firstCommand + kAllCategoriesOffset);
  menu.AddSeparator();
  const std::size_t shown = std::min(categories.names.size(), core::kShownCategories);
  int current = filter.empty() ? firstCommand + kAllCategoriesOffset : kNoCommand;
  for (std::size_t i = 0; i < shown; ++i) {
    const int command = firstCommand + static_cast<int>(i);
    menu.AddItemText(categories.names[i].c_str(), command);
    if (current == kNoCommand && categories.names[i] == filter) current = command;
  }
  menu.AddSeparator();
  menu.AddItemText(kEditCategories, firstCommand + kEditCategoriesOffset);
  menu.SetCurrent(current);
}

CategorySelector::CategorySelector(core::CalendarSession& calendarSession)
    : TFlyMenu(kPanelBackground, kPanelText), session(calendarSession) {}

void CategorySelector::Fill() {
  if (session.File() == nullptr) {
    ClearItems();
  } else {
    BuildCategoryMenu(*this, *session.File(), kFirstCategoryCommand, session.Filter());
  }
}

bool CategorySelector::IsCategoryCommand(unsigned command) {
  return command >= kFirstCategoryCommand && command <= kEditCommand;
}

void CategorySelector::OnCategoryMenuCommand(int command, std::string_view name) {
  if (session.File() == nullptr) return;
  if (command != kEditCommand) {
    // By the number: a category may be named like the first item.
    session.SetFilter(command == kAllCommand ? std::string_view() : name);
  } else if (EditCategories(ParentObject(), *session.File())) {
    session.SetFilter("");
    Fill();
  }
}

RECT CategorySelector::ActiveArea() const {
  return ClientArea();
}

// Nobody tells of a list that another user changed: the menu shows what the file holds when it opens.
LRESULT CategorySelector::OnLButtonDown(const MessageRecord& record) {
  if (session.File() == nullptr) return 0;
  if (!Pressed()) Fill();
  return TFlyMenu::OnLButtonDown(record);
}

// The editor is no choice to be shown in the face.
LRESULT CategorySelector::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) != kEditCommand) return TFlyMenu::OnCommand(record);
  TellParent(kEditCommand, reinterpret_cast<LPARAM>(Caption()));
  return 0;
}
