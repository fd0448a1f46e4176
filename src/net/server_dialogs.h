// The dialogs around the account on the event server. They work on the settings, in which the account lies.
#pragma once

#include "core/events/account.h"
#include "framework/dialog_items.h"

// Asks for the account's password. 1 when it was right, 0 for Cancel.
int AskServerPassword(ZarfWnd* owner);

// Asks for the account, and registers on the event server.
class ServerSetupDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId {
    kNameEdit = 100,
    kPasswordEdit,
    kConfirmationEdit,
    kServerEdit,
    kEmailEdit,
    kPortEdit,
    kRegisterButton = 1000,
  };

  // 1 for OK, with the account stored; 0 when the user left. What was stored in order to register stays.
  int Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  core::ServerAccount Typed() const;
  std::string Confirmation() const;
  void EnableButtons() const;
  // Stores what was typed, or tells why not.
  [[nodiscard]] bool Store();
  void Register();

  TextItem name{*this, kNameEdit};
  TextItem email{*this, kEmailEdit};
  TextItem password{*this, kPasswordEdit};
  TextItem confirmation{*this, kConfirmationEdit};
  TextItem server{*this, kServerEdit};
  TextItem port{*this, kPortEdit};
  DialogItem ok{*this, IDOK};
  DialogItem registration{*this, kRegisterButton};
  bool registering = false;
};
