#include "net/server_dialogs.h"

#include "core/events/registration.h"
#include "core/ini_file.h"
#include "core/store/file_messages.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "platform/desktop/application.h"
#include "platform/desktop/message_box.h"

namespace {

constexpr int kPasswordTemplate = 1016;
constexpr int kSetupTemplate = 1017;

constexpr const char* kCaption = "Zarf Center";

// An edit takes one character more than is kept of it.
constexpr std::size_t RoomFor(std::size_t kept) {
  return kept + 1;
}

void TellOver(const ZarfWnd& dialog, const std::string& message) {
  MessageBox(dialog.Handle(), message, kCaption, MB_OK);
}

class ServerPasswordDialog : public ZarfDialog {
 public:
  int Run(ZarfWnd* owner) { return Open(owner, kPasswordTemplate); }

  LRESULT OnInitDialog(const MessageRecord&) override {
    const core::ServerAccount account = core::ReadServerAccount();
    if (!account.name.empty()) SetWindowText(hwnd, account.name.c_str());
    edit.LimitTo(RoomFor(core::kAccountPassword));
    edit.Focus();
    return 0;
  }

  LRESULT OnCommand(const MessageRecord& record) override {
    if (LowWord(record.wParam) != IDOK) return ZarfDialog::OnCommand(record);
    if (core::IsServerPassword(edit.Text(core::kAccountPassword))) {
      EndDialog(1);
    } else {
      TellOver(*this, "Incorrect Password");
      edit.Focus();
    }
    return 1;
  }

 private:
  static constexpr int kEdit = 100;

  TextItem edit{*this, kEdit};
};

}  // namespace

int AskServerPassword(ZarfWnd* owner) {
  return ServerPasswordDialog().Run(owner);
}

int ServerSetupDialog::Run(ZarfWnd* owner) {
  return Open(owner, kSetupTemplate);
}

LRESULT ServerSetupDialog::OnInitDialog(const MessageRecord&) {
  const core::ServerAccount account = core::ReadServerAccount();
  name.LimitTo(RoomFor(core::kAccountName));
  for (const TextItem* edit : {&password, &confirmation}) edit->LimitTo(RoomFor(core::kAccountPassword));
  for (const TextItem* edit : {&email, &server, &port}) edit->LimitTo(RoomFor(core::kAccountText));
  name.SetText(account.name);
  email.SetText(account.email);
  password.SetText(account.password);
  confirmation.SetText(account.password);
  server.SetText(account.server);
  port.SetText(account.port);
  name.Focus();
  EnableButtons();
  return 0;
}

core::ServerAccount ServerSetupDialog::Typed() const {
  return {name.Text(core::kAccountName), email.Text(core::kAccountText),
          password.Text(core::kAccountPassword), server.Text(core::kAccountText),
          port.Text(core::kAccountText)};
}

std::string ServerSetupDialog::Confirmation() const {
  return confirmation.Text(core::kAccountPassword);
}

void ServerSetupDialog::EnableButtons() const {
  const core::ServerAccount typed = Typed();
  ok.Enable(core::IsAccountFilled(typed, Confirmation()));
  registration.Enable(core::IsServerFilled(typed));
}

LRESULT ServerSetupDialog::OnCommand(const MessageRecord& record) {
  // Who leaves waits for the answer, as with every long piece of work.
  if (registering) return 1;
  switch (LowWord(record.wParam)) {
    case IDOK:
      // Enter reaches the dialog also while the button is disabled.
      if (IsWindowEnabled(ok.Handle()) && Store()) EndDialog(1);
      return 1;
    case kRegisterButton:
      if (Store()) Register();
      return 1;
    default:
      if (HighWord(record.wParam) == EN_CHANGE) EnableButtons();
      return ZarfDialog::OnCommand(record);
  }
}

bool ServerSetupDialog::Store() {
  const core::ServerAccount typed = Typed();
  const char* const fault = core::FaultOfAccount(typed, Confirmation());
  if (fault != nullptr) {
    TellOver(*this, fault);
    return false;
  }
  if (core::StoreServerAccount(typed)) return true;
  TellOver(*this, "Can't write to " + core::Quoted(core::IniFile("Daybrix.ini").Path()) +
                      ".\r\nThe account was not saved.");
  return false;
}

// The dialog blocks all other windows and, disabled, takes nothing itself; what waits is handled all the
// same, so that everything is painted.
void ServerSetupDialog::Register() {
  registering = true;
  BeginWaitCursor();
  EnableWindow(hwnd, false);
  const std::uint32_t status = core::RegisterOnServer(RunWaitingMessages);
  EnableWindow(hwnd, true);
  EndWaitCursor();
  registering = false;
  ShowInfoId(this, core::RegistrationTextId(status));
  registration.Focus();
}
