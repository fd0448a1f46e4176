#include "calendar/dialogs/categories_dialog.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/calendar/categories.h"
#include "core/store/file_messages.h"
#include "framework/dialog_items.h"
#include "framework/notices.h"
#include "resources/text_ids.h"

namespace {

// The name of a new category.
class NewCategoryDialog : public ZarfDialog {
 public:
  bool Run(ZarfWnd* owner) { return Open(owner, kTemplate) == 1; }
  // What was typed, when the user accepted.
  const std::string& Name() const { return name; }

  LRESULT OnInitDialog(const MessageRecord&) override {
    edit.LimitTo(kMostBytes);
    OkNeedsText(kNewCategoryEdit);
    edit.Focus();
    return 0;
  }

  LRESULT OnCommand(const MessageRecord& record) override {
    if (LowWord(record.wParam) == IDOK) name = edit.Text(kMostBytes);
    return ZarfDialog::OnCommand(record);
  }

 private:
  static constexpr int kTemplate = 1019;
  static constexpr std::size_t kMostBytes = sizeof(core::CategoryEntry::name) - 1;

  TextItem edit{*this, kNewCategoryEdit};
  std::string name;
};

class CategoriesDialog : public ZarfDialog {
 public:
  CategoriesDialog(core::RecordFile& calendar, const std::vector<std::string>& shownNames)
      : file(calendar), names(shownNames) {}

  bool Run(ZarfWnd* owner) { return Open(owner, kTemplate) == 1; }

  LRESULT OnInitDialog(const MessageRecord&) override {
    for (const std::string& name : names) list.Add(name);
    EnableDelete();
    list.Focus();
    return 0;
  }

  LRESULT OnCommand(const MessageRecord& record) override {
    switch (LowWord(record.wParam)) {
      case kCategoryList:
        EnableDelete();
        return 1;
      case kNewCategoryButton:
        OnNew();
        return 1;
      case kDeleteCategoryButton:
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

  void EnableDelete() { deleteButton.Enable(list.Selected() >= 0); }

  void OnNew() {
    NewCategoryDialog dialog;
    if (dialog.Run(this)) list.Add(dialog.Name());
  }

  void OnDelete() {
    if (!AskYesNo(this, text::kDeleteCategory)) return;
    list.Remove(list.Selected());
    EnableDelete();
    list.Focus();  // the button that had it is disabled now
  }

  void OnOk() {
    names.clear();
    for (int line = 0; line < list.Count(); ++line) names.push_back(list.Line(line));
    const core::CommandResult stored = core::StoreCategories(file, names);
    std::string message = core::DescribeResult(file, stored);
    if (stored == core::CommandResult::kFailed) message += "\r\nThe categories were not saved.";
    if (!message.empty()) ShowInfo(this, message);
    if (core::IsMade(stored)) EndDialog(1);
  }

  core::RecordFile& file;
  std::vector<std::string> names;
  ListItem list{*this, kCategoryList};
  DialogItem deleteButton{*this, kDeleteCategoryButton};
};

}  // namespace

bool EditCategories(ZarfWnd* owner, core::RecordFile& file) {
  const core::CommandResult allowed = core::CheckMayChange(file);
  if (allowed != core::CommandResult::kDone) {
    ShowInfo(owner, core::DescribeResult(file, allowed));
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
