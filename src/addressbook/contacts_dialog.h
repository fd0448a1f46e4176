// What the dialogs over the address book have in common: the book, which is open for as long as the dialog
// is, and the list of its contacts, which follows what other copies write. A derived class adds its buttons
// and says what a double click is.
//
// A book that cannot be opened is told, and the list stays empty; OpenBook tries again. A password is asked
// for where the book has one, and remembered until the program ends.
//
// The book is followed also while the program edits an appointment, which the lists of its calendar are not.
#pragma once

#include "addressbook/contact_list.h"
#include "controls/kept_selection.h"
#include "core/contacts/address_book.h"
#include "framework/dialog_items.h"

class ContactsDialog : public ZarfDialog, private core::FileWatcher {
 public:
  enum ControlId { kContactList = 1000 };

  explicit ContactsDialog(const char* dialogTitle);
  ~ContactsDialog() override;

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 protected:
  // The open book; null, and the user was told, when there is none.
  core::RecordFile* OpenBook();
  // Goes over to the book at the path where that is another one than the open one. False when it is not, or
  // cannot be opened.
  bool LookAfterBook();
  // Lists the contacts anew and selects the one with this id.
  void Reload(std::uint64_t recordId);

  // Codes of controls/list.h that no other list needs an answer to.
  virtual void OnListNotice(unsigned code, LPARAM value) = 0;

  ContactList list{kContactList};

 private:
  const core::RecordFile* WatchedFile() const override { return book.File(); }
  void OnLook(const core::FileLook& look) override;
  // Opens the book, with a password where it has one. False, and `message` says why, when that fails.
  bool OpenAsking(std::string& message);
  void ShowBook();
  void ShowTitle();
  void PlaceList();

  const std::string title;
  const bool refreshed;  // what the command that opened the dialog goes on with
  core::AddressBook book;
  core::RetryPause pause;
  KeptSelection keptSelection;
};
