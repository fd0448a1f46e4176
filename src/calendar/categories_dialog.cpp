#include "calendar/categories_dialog.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/categories.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "framework/zarf_dialog.h"

namespace {

constexpr int kNoPermissionText = 102;
constexpr int kDeleteQuestion = 104;

// The name of a new category.
class NewCategoryDialog : public ZarfDialog {
 public:
  bool Run(ZarfWnd* owner) { return Open(owner, kTemplate) == 1; }
  // What was typed, when the user accepted.
  const char* Name() const { return name; }

  LRESULT OnInitDialog(const MessageRecord&) override {
    SendItemMessage(kNameEdit, EM_LIMITTEXT, sizeof name - 1, 0);
    EnableOk();
    SetFocus(GetDlgItem(hwnd, kNameEdit));
    CenterOver(Parent(), hwnd);
    return 0;
  }

  LRESULT OnCommand(const MessageRecord& record) override {
    const unsigned id = LowWord(record.wParam);
    if (id == kNameEdit && HighWord(record.wParam) == EN_CHANGE) EnableOk();
    if (id == IDOK) GetDlgItemText(hwnd, kNameEdit, name, sizeof name);
    // Enter reaches the dialog also while the button is disabled.
    return id == IDOK && name[0] == '\0' ? 1 : ZarfDialog::OnCommand(record);
  }

 private:
  static constexpr int kTemplate = 1019;
  static constexpr int kNameEdit = 100;

  void EnableOk() {
    EnableWindow(GetDlgItem(hwnd, IDOK), SendItemMessage(kNameEdit, WM_GETTEXTLENGTH, 0, 0) > 0);
  }

  char name[sizeof(core::CategoryEntry::name)] = "";
};

class CategoriesDialog : public ZarfDialog {
 public:
  CategoriesDialog(core::RecordFile& calendar, const std::vector<std::string>& shownNames)
      : file(calendar), names(shownNames) {}

  bool Run(ZarfWnd* owner) { return Open(owner, kTemplate) == 1; }

  LRESULT OnInitDialog(const MessageRecord&) override {
    for (const std::string& name : names) AddName(name.c_str());
    EnableDelete();
    SetFocus(GetDlgItem(hwnd, kList));
    CenterOver(Parent(), hwnd);
    return 0;
  }

  LRESULT OnCommand(const MessageRecord& record) override {
    switch (LowWord(record.wParam)) {
      case kList:
        EnableDelete();
        return 1;
      case kNewButton:
        OnNew();
        return 1;
      case kDeleteButton:
        OnDelete();
        return 1;
      case IDOK:
        OnOk();
        return 1;
      default:
        return ZarfDialog::OnCommand(record);
    }
  }

 private:
  static constexpr int kTemplate = 1018;
  static constexpr int kList = 100;
  static constexpr int kNewButton = 101;
  static constexpr int kDeleteButton = 102;

  void AddName(const char* name) { SendItemMessage(kList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name)); }
  LRESULT Selected() { return SendItemMessage(kList, LB_GETCURSEL, 0, 0); }
  void EnableDelete() { EnableWindow(GetDlgItem(hwnd, kDeleteButton), Selected() >= 0); }

  void OnNew() {
    NewCategoryDialog dialog;
    if (dialog.Run(this)) AddName(dialog.Name());
  }

  void OnDelete() {
    if (!AskYesNo(this, kDeleteQuestion)) return;
    SendItemMessage(kList, LB_DELETESTRING, static_cast<WPARAM>(Selected()), 0);
    EnableDelete();
    SetFocus(GetDlgItem(hwnd, kList));  // the button that had it is disabled now
  }

  void OnOk() {
    names.clear();
    const LRESULT count = SendItemMessage(kList, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
      const auto line = static_cast<WPARAM>(i);
      std::string name(static_cast<std::size_t>(SendItemMessage(kList, LB_GETTEXTLEN, line, 0)), '\0');
      SendItemMessage(kList, LB_GETTEXT, line, reinterpret_cast<LPARAM>(name.data()));
      names.push_back(name);
    }
    const core::Result stored = core::StoreCategories(file, names);
    if (stored == core::Result::kDone) {
      EndDialog(1);
    } else if (stored == core::Result::kRefused) {
      ShowInfoId(this, kNoPermissionText);
    } else {
      ShowInfo(this, "Can't write to \"" + file.Path() + "\".\r\nThe categories were not saved.");
    }
  }

  core::RecordFile& file;
  std::vector<std::string> names;
};

}  // namespace

bool EditCategories(ZarfWnd* owner, core::RecordFile& file) {
  if (file.AccessLevel() == core::Access::kReader) {
    ShowInfoId(owner, kNoPermissionText);
    return false;
  }
  core::CategoryList list;
  if (!core::ReadCategories(file, list)) {
    // An empty list in its place would be stored as one.
    ShowInfo(owner, "Can't read \"" + file.Path() + "\".");
    return false;
  }
  list.names.resize(std::min(list.names.size(), core::kShownCategories));
  return CategoriesDialog(file, list.names).Run(owner);
}
