// The dialog "Nameleaf": the contacts of the address book, which everybody shares who runs the program from
// the same folder. Each command is carried out at once; the dialog has nothing of its own to be saved.
#pragma once

#include <optional>

#include "addressbook/contacts_dialog.h"

// Opens the address book, shows it over `owner` and closes it.
void AddressBookCommand(ZarfWnd* owner);

class AddressBookWindow : public ContactsDialog {
 public:
  enum ControlId { kNewButton = 101, kEditButton, kDeleteButton };

  AddressBookWindow() : ContactsDialog("Nameleaf") {}

  int Run(ZarfWnd* owner);

  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void OnListNotice(unsigned code, LPARAM value) override;
  void RunCommand(unsigned command);
  void NewContact();
  void EditContact();
  void DeleteContact();
  // The selected contact, if the user may change it and the file; none, told or beeped, if not.
  core::RecordKey SelectedToChange();
  // Runs the dialog on a contact until it is in the file (true) or the user gives up. The lock is the one
  // under which it was read; a new contact has none.
  bool EditAndStore(core::Contact& contact, std::optional<core::EditLock>& lock);
  core::CommandResult Store(core::Contact& contact, std::optional<core::EditLock>& lock);
  // Tells what came of a command; `failed` is added to what failed.
  void Report(core::CommandResult result, const char* failed);

  bool busy = false;
};
