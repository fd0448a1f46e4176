#include "calendar/category_selector.h"

#include <algorithm>

#include "calendar/categories_dialog.h"
#include "calendar/palette.h"
#include "core/categories.h"

namespace {

constexpr const char* kAllCategories = "All Categories";
constexpr const char* kEditCategories = "Edit Categories";
constexpr int kAllCommand = kFirstCategoryCommand + kAllCategoriesOffset;
constexpr int kEditCommand = kFirstCategoryCommand + kEditCategoriesOffset;
constexpr int kNoCommand = -1;
constexpr std::size_t kFilterSize = sizeof(core::RecordHeader::category);

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

CategorySelector::CategorySelector() : TFlyMenu(kPanelBackground, kPanelText) {}

void CategorySelector::SetFile(core::RecordFile* file) {
  calendarFile = file;
  Fill();
}

void CategorySelector::Fill() {
  if (calendarFile == nullptr) {
    ClearItems();
  } else {
    BuildCategoryMenu(*this, *calendarFile, kFirstCategoryCommand, filter);
  }
}

bool CategorySelector::IsCategoryCommand(unsigned command) {
  return command >= kFirstCategoryCommand && command <= kEditCommand;
}

bool CategorySelector::OnCategoryMenuCommand(int command, std::string_view name) {
  if (calendarFile == nullptr) return false;
  const std::string before = filter;
  if (command != kEditCommand) {
    // By the number: a category may be named like the first item.
    filter = command == kAllCommand ? std::string_view() : name.substr(0, kFilterSize);
  } else if (EditCategories(ParentObject(), *calendarFile)) {
    filter.clear();
    Fill();
  }
  return filter != before;
}

RECT CategorySelector::ActiveArea() const {
  RECT client;
  ::GetClientRect(hwnd, &client);
  return client;
}

// Nobody tells of a list that another user changed: the menu shows what the file holds when it opens.
LRESULT CategorySelector::OnLButtonDown(const MessageRecord& record) {
  if (calendarFile == nullptr) return 0;
  if (!Pressed()) Fill();
  return TFlyMenu::OnLButtonDown(record);
}

// The editor is no choice to be shown in the face.
LRESULT CategorySelector::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) != kEditCommand) return TFlyMenu::OnCommand(record);
  PostMessage(Parent(), WM_COMMAND, kEditCommand, reinterpret_cast<LPARAM>(Caption()));
  return 0;
}
