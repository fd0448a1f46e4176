#include "framework/password_dialog.h"

#include "core/store/file_passwords.h"

namespace {

constexpr int kPasswordTemplate = 1002;

}  // namespace

int PasswordDialog::Run(ZarfWnd* owner) {
  return Open(owner, kPasswordTemplate);
}

LRESULT PasswordDialog::OnInitDialog(const MessageRecord&) {
  SetDialogTitle(hwnd, path.substr(path.rfind('/') + 1));
  edit.LimitTo(core::kPasswordTyped);
  OkNeedsText(kPasswordEdit);
  return 1;
}

LRESULT PasswordDialog::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) == IDOK) password = edit.Text(core::kPasswordTyped);
  return ZarfDialog::OnCommand(record);
}

core::PasswordPrompt AskOver(ZarfWnd* owner) {
  return [owner](const std::string& path, std::string& password) {
    PasswordDialog dialog(path);
    if (dialog.Run(owner) != 1) return false;
    password = dialog.Password();
    return true;
  };
}
