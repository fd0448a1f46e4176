#include "calendar/dialogs/password_dialogs.h"

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

int NetworkPasswordsDialog::Run(ZarfWnd* over) {
  return Open(over, static_cast<int>(mode));
}

LRESULT NetworkPasswordsDialog::OnInitDialog(const MessageRecord&) {
  for (const TextItem* edit : {&owner, &assistant, &reader}) edit->LimitTo(core::kPasswordTyped);
  owner.SetText(passwords.owner);
  assistant.SetText(passwords.assistant);
  reader.SetText(passwords.reader);
  return 1;
}

LRESULT NetworkPasswordsDialog::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) == IDOK) {
    passwords = {owner.Text(core::kPasswordKept), assistant.Text(core::kPasswordKept),
                 reader.Text(core::kPasswordKept)};
  }
  return ZarfDialog::OnCommand(record);
}
