#include "core/contacts/address_book.h"

#include "core/ini_file.h"
#include "core/store/companion_file.h"
#include "resources/strings.h"
#include "resources/text_ids.h"

namespace core {

void SetContact(Contact& contact, std::string_view name, std::string_view email) {
  WriteText(contact.name, name.substr(0, kContactName));
  WriteText(contact.email, email.substr(0, kContactEmail));
}

std::string AddressBookPath() {
  return ModuleFolder() + "/Nameleaf.tb1";
}

bool HasOwnerPassword(const std::string& path) {
  const CompanionFile book = ReadCompanion(path, kAddressKind);
  HeaderBlock header;
  return book.file != nullptr && book.file->ReadHeaderBlock(header) &&
         !ReadText(header.ownerPassword).empty();
}

bool AddressBook::Open(const std::string& path, std::string_view password, std::string& message) {
  Close();
  CompanionFile opened = OpenOrMakeCompanion(path, kAddressKind, password);
  message = opened.message;
  if (opened.file == nullptr) return false;
  if (opened.file->AccessLevel() == Access::kNone) {
    message = resources::FindText(text::kWrongPassword);
    return false;
  }
  file = std::move(opened.file);
  Refresh();  // who shows the list asks whether it is whole
  return true;
}

void AddressBook::Close() {
  list.Clear();
  file.reset();
}

bool AddressBook::Refresh() {
  return file != nullptr && ListContacts(*file, list);
}

bool ListContacts(const RecordFile& book, RecordQuery& list) {
  list.Clear();
  list.AddMatchAll();
  return list.Run(book) && list.Sort(book, kContactOrder) && list.IsWhole();
}

CommandResult AddContact(RecordFile& book, std::string_view name, std::string_view email, Contact& contact) {
  contact = {};
  contact.header.recordSize = sizeof contact;
  contact.header.inUse = 1;
  contact.header.recordId = NewRecordId();
  SetContact(contact, name, email);
  const CommandResult added = FromFile(book, book.AddRecord(&contact));
  return IsMade(added) ? Flush(book, added) : added;
}

CommandResult PutContact(RecordFile& book, Contact& contact) {
  RecordQuery present;
  // One that is only not found would be added a second time.
  if (!ListContacts(book, present)) return CommandResult::kFailed;
  for (const RecordKey& key : present.Keys()) {
    if (key.id != contact.header.recordId) continue;
    EditLock lock(book);
    const CommandResult taken = lock.Take(key);
    if (taken != CommandResult::kDone) return taken;
    const CommandResult written = lock.Write(&contact);
    return IsMade(written) ? lock.Finish(written) : written;
  }
  return AddContact(book, std::string(ReadText(contact.name)), std::string(ReadText(contact.email)), contact);
}

CommandResult DeleteContact(EditLock& lock) {
  const CommandResult deleted = lock.Delete();
  if (IsMade(deleted)) return lock.Finish(deleted);
  const CommandResult released = lock.Release();
  return released == CommandResult::kDone ? deleted : released;
}

}  // namespace core
