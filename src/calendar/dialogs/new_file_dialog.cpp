#include "calendar/dialogs/new_file_dialog.h"

#include "core/calendar/new_calendar.h"
#include "core/store/file_messages.h"
#include "framework/notices.h"
#include "framework/shell_services.h"
#include "resources/strings.h"
#include "resources/text_ids.h"

namespace {

constexpr int kTemplate = 1001;
constexpr std::size_t kMostCharacters = 260;

}  // namespace

int NewFileDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate);
}

LRESULT NewFileDialog::OnInitDialog(const MessageRecord&) {
  folder.SetPath(core::WorksFolder());
  for (const TextItem* edit : {&name, &folder}) {
    edit->LimitTo(kMostCharacters);
    OkNeedsText(edit->Id());
  }
  examples.Check(core::ExamplesWanted());
  note.SetPath(noteText);
  note.SetVisible(!noteText.empty());
  return 1;
}

LRESULT NewFileDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
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

void NewFileDialog::OnBrowse() {
  std::string chosen = folder.Path();
  if (BrowseFolder(hwnd, chosen)) folder.SetPath(chosen);
}

// The calendar is made here and now, not only tried: nobody can take the name in between.
void NewFileDialog::OnOk() {
  path = core::NewCalendarPath(folder.Path(), name.Path());
  const platform::FileResult result = core::CreateCalendar(path, examples.Checked());
  if (result != platform::FileResult::kDone) {
    const bool exists = result == platform::FileResult::kExists;
    ShowInfo(this, exists ? resources::FindText(text::kFileExists) : core::CannotCreateText(result));
    name.Focus();
    return;
  }
  const std::string forgotten = core::RememberExamples(examples.Checked());
  if (!forgotten.empty()) ShowInfo(this, forgotten);
  EndDialog(1);
}
