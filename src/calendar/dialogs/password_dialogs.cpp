#include "calendar/dialogs/password_dialogs.h"

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
