#include "calendar/password_dialogs.h"

#include <array>

#include "framework/services.h"

namespace {

constexpr int kPasswordTemplate = 1002;
constexpr int kPasswordEdit = 100;

constexpr int kOwnerEdit = 100;
constexpr int kAssistantEdit = 101;
constexpr int kReaderEdit = 102;

// What an edit has room for with its terminator.
using TypedPassword = std::array<char, core::kPasswordTyped + 1>;
using KeptPassword = std::array<char, core::kPasswordKept + 1>;

}  // namespace

int PasswordDialog::Run(ZarfWnd* owner) {
  return Open(owner, kPasswordTemplate);
}

LRESULT PasswordDialog::OnInitDialog(const MessageRecord&) {
  SetDialogTitle(hwnd, path.substr(path.rfind('/') + 1));
  SendItemMessage(kPasswordEdit, EM_LIMITTEXT, core::kPasswordTyped, 0);
  EnableWindow(GetDlgItem(hwnd, IDOK), false);
  CenterOver(Parent(), hwnd);
  return 1;
}

LRESULT PasswordDialog::OnCommand(const MessageRecord& record) {
  TypedPassword typed;
  switch (LowWord(record.wParam)) {
    case kPasswordEdit:
      EnableWindow(GetDlgItem(hwnd, IDOK), SendItemMessage(kPasswordEdit, WM_GETTEXTLENGTH, 0, 0) > 0);
      return 0;
    case IDOK:
      GetDlgItemText(hwnd, kPasswordEdit, typed.data(), static_cast<int>(typed.size()));
      password = typed.data();
      EndDialog(1);
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

int NetworkPasswordsDialog::Run(ZarfWnd* owner) {
  return Open(owner, static_cast<int>(mode));
}

LRESULT NetworkPasswordsDialog::OnInitDialog(const MessageRecord&) {
  for (const int edit : {kOwnerEdit, kAssistantEdit, kReaderEdit}) {
    SendItemMessage(edit, EM_LIMITTEXT, core::kPasswordTyped, 0);
  }
  SetItemText(kOwnerEdit, passwords.owner.c_str());
  SetItemText(kAssistantEdit, passwords.assistant.c_str());
  SetItemText(kReaderEdit, passwords.reader.c_str());
  CenterOver(Parent(), hwnd);
  return 1;
}

LRESULT NetworkPasswordsDialog::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) != IDOK) return ZarfDialog::OnCommand(record);
  passwords = {Kept(kOwnerEdit), Kept(kAssistantEdit), Kept(kReaderEdit)};
  EndDialog(1);
  return 1;
}

std::string NetworkPasswordsDialog::Kept(int edit) const {
  KeptPassword text;
  GetDlgItemText(hwnd, edit, text.data(), static_cast<int>(text.size()));
  return text.data();
}
