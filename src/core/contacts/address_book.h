// The address book: the people whom one may invite to events, in one record file beside the settings that
// everybody shares who runs the program from there.
//
// Use: Open, then the file and its list; a list view follows other copies' changes by them as a list of
// appointments does. Whoever edits a contact takes its EditLock, reads, writes and finishes.
#pragma once

#include <memory>
#include <string>

#include "core/contacts/contact.h"
#include "core/store/edit_lock.h"
#include "core/store/record_query.h"

namespace core {

// "Nameleaf.tb1" in the folder of the settings.
std::string AddressBookPath();

// Whether the book at the path has an Owner password, so that its user is to be asked. Who types none may all
// the same be a Reader of it.
bool HasOwnerPassword(const std::string& path);

class AddressBook {
 public:
  // Opens the book at the path, which is made where there is none, and lists its contacts. A book that is
  // open is closed first. False when it could not be opened, or the password allows nothing; `message` is for
  // the user, when not empty.
  [[nodiscard]] bool Open(const std::string& path, std::string_view password, std::string& message);
  void Close();

  // Null while it is closed.
  RecordFile* File() const { return file.get(); }
  // The contacts by name. To be made anew by Refresh after a change of one's own.
  RecordQuery& List() { return list; }

  // Lists the contacts anew. False when not all of them could be read.
  bool Refresh();

 private:
  std::unique_ptr<RecordFile> file;
  RecordQuery list;
};

// Lists the contacts of a book by name. False when some could not be read.
bool ListContacts(const RecordFile& book, RecordQuery& list);

// Adds a contact with these texts and brings it to the disk; `contact` is then what the file holds. Whoever
// may read a book may add to it.
[[nodiscard]] CommandResult AddContact(RecordFile& book, std::string_view name, std::string_view email,
                                       Contact& contact);

// Stores a contact that was read from a file that is no longer at its path: over the one with its id, or as a
// new one where the book at the path has none.
[[nodiscard]] CommandResult PutContact(RecordFile& book, Contact& contact);

// Deletes the contact under a lock, which is then given back, whatever came of it.
[[nodiscard]] CommandResult DeleteContact(EditLock& lock);

}  // namespace core
