#include "calendar/new_file_dialog.h"

#include "core/new_calendar.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "framework/shell_services.h"

namespace {

constexpr int kTemplate = 1001;
constexpr int kNameEdit = 100;
constexpr int kFolderEdit = 101;
constexpr int kBrowseButton = 102;
constexpr int kNoteLine = 103;
constexpr int kExamplesBox = 104;

constexpr WPARAM kMostCharacters = 260;

constexpr int kExistsText = 113;
constexpr int kCannotCreateText = 114;

}  // namespace

int NewFileDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate);
}

LRESULT NewFileDialog::OnInitDialog(const MessageRecord&) {
  for (const int edit : {kNameEdit, kFolderEdit}) SendItemMessage(edit, EM_LIMITTEXT, kMostCharacters, 0);
  SetDlgItemPath(hwnd, kFolderEdit, core::WorksFolder());
  CheckDlgButton(hwnd, kExamplesBox, core::ExamplesWanted());
  SetDlgItemPath(hwnd, kNoteLine, noteText);
  ShowWindow(GetDlgItem(hwnd, kNoteLine), noteText.empty() ? SW_HIDE : SW_SHOW);
  EnableOk();
  CenterOver(Parent(), hwnd);
  return 1;
}

LRESULT NewFileDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kNameEdit:
    case kFolderEdit:
      EnableOk();
      return 0;
    case kBrowseButton:
      OnBrowse();
      return 0;
    case IDOK:
      OnOk();
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void NewFileDialog::EnableOk() {
  const bool filled = !GetDlgItemPath(hwnd, kNameEdit).empty() && !GetDlgItemPath(hwnd, kFolderEdit).empty();
  EnableWindow(GetDlgItem(hwnd, IDOK), filled);
}

void NewFileDialog::OnBrowse() {
  std::string folder = GetDlgItemPath(hwnd, kFolderEdit);
  if (BrowseFolder(hwnd, folder)) SetDlgItemPath(hwnd, kFolderEdit, folder);
}

// The calendar is made here and now, not only tried: nobody can take the name in between.
void NewFileDialog::OnOk() {
  const bool examples = IsDlgButtonChecked(hwnd, kExamplesBox);
  path = core::NewCalendarPath(GetDlgItemPath(hwnd, kFolderEdit), GetDlgItemPath(hwnd, kNameEdit));
  const core::NewCalendar result = core::CreateCalendar(path, examples);
  if (result != core::NewCalendar::kMade) {
    ShowInfoId(this, result == core::NewCalendar::kExists ? kExistsText : kCannotCreateText);
    SetFocus(GetDlgItem(hwnd, kNameEdit));
    return;
  }
  core::RememberExamples(examples);
  EndDialog(1);
}
