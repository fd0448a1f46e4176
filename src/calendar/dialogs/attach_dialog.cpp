#include "calendar/dialogs/attach_dialog.h"

#include "calendar/dialogs/path_field.h"
#include "framework/shell_services.h"
#include "platform/desktop/application.h"

namespace {

constexpr int kTemplate = 2010;
constexpr const char* kAllFiles = "(*.*)|*.*||";

}  // namespace

bool AttachDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT AttachDialog::OnInitDialog(const MessageRecord&) {
  ShowPathField(path, appointment.attachment);
  (appointment.attachmentKind == core::kAttachedUrl ? url : document).Check(true);
  path.Focus();
  return 0;
}

LRESULT AttachDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case IDOK:
      OnOk();
      return 1;
    case kBrowseButton:
      BrowseInto(hwnd, path, kAllFiles);
      return 1;
    case kOpenButton:
      OnOpen();
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void AttachDialog::OnOpen() {
  const std::string target = path.Path();
  if (target.empty()) {
    MessageBeep();
  } else {
    OpenOrTell(this, target);
  }
}

void AttachDialog::OnOk() {
  if (!CheckPathFits(this, path, sizeof appointment.attachment)) return;
  TakePathField(path, appointment.attachment);
  appointment.attachmentKind = document.Checked() ? core::kAttachedDocument : core::kAttachedUrl;
  if (appointment.attachment[0] == '\0') appointment.attachmentKind = core::kNoAttachment;
  EndDialog(1);
}
