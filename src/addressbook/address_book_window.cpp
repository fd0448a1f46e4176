#include "addressbook/address_book_window.h"

#include <algorithm>
#include <utility>

#include "addressbook/contact_dialog.h"
#include "core/store/file_messages.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "platform/desktop/application.h"
#include "resources/text_ids.h"

using core::CommandResult;

namespace {

constexpr int kTemplate = 1012;

constexpr const char* kNotSaved = "The contact was not saved.";
constexpr const char* kNotChanged = "Nothing was changed.";

bool IsFileLost(const core::RecordFile& file, CommandResult result) {
  return result == CommandResult::kFailed &&
         (file.LastFault() == core::FileFault::kReplaced || file.LastFault() == core::FileFault::kGone);
}

}  // namespace

void AddressBookCommand(ZarfWnd* owner) {
  AddressBookWindow().Run(owner);
}

int AddressBookWindow::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate);
}

LRESULT AddressBookWindow::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  if (id != kNewButton && id != kEditButton && id != kDeleteButton) return ContactsDialog::OnCommand(record);
  RunCommand(id);
  return 1;
}

void AddressBookWindow::OnListNotice(unsigned code, LPARAM value) {
  // Posted: the rows may be others by now.
  if (code == kListDoubleClick && value >= 0 && value == list.SelectedItem()) RunCommand(kEditButton);
  if (code == kListOwn) RunCommand(value == VK_INSERT ? kNewButton : kDeleteButton);
}

// What was posted may arrive while a dialog of a command is open.
void AddressBookWindow::RunCommand(unsigned command) {
  if (std::exchange(busy, true)) return;
  if (command == kNewButton) NewContact();
  if (command == kEditButton) EditContact();
  if (command == kDeleteButton) DeleteContact();
  busy = false;
  list.FocusList();
}

void AddressBookWindow::Report(CommandResult result, const char* failed) {
  std::string message = core::DescribeResult(*OpenBook(), result);
  if (result == CommandResult::kFailed) message.append("\r\n").append(failed);
  if (!message.empty()) ShowInfo(this, message);
}

// ---- The commands ----

// Whoever may read the book may add to it.
void AddressBookWindow::NewContact() {
  if (OpenBook() == nullptr) return;
  core::Contact contact{};
  std::optional<core::EditLock> none;
  if (!EditAndStore(contact, none)) return;
  PlaySound("add.wav");
  Reload(contact.header.recordId);
}

void AddressBookWindow::EditContact() {
  const core::RecordKey key = SelectedToChange();
  if (key.IsNone()) return;
  core::Contact contact{};
  contact.header.recordId = key.id;
  {
    std::optional<core::EditLock> lock(std::in_place, *OpenBook());
    CommandResult result = lock->Take(key);
    if (result == CommandResult::kDone) result = lock->Read(&contact);
    if (result == CommandResult::kDone) {
      list.SetEdited(key);
      if (EditAndStore(contact, lock)) PlaySound("add.wav");
      list.SetEdited({});
    }
    if (lock && result == CommandResult::kDone) result = lock->Release();
    Report(result, kNotChanged);
  }
  LookAfterBook();
  Reload(contact.header.recordId);
}

void AddressBookWindow::DeleteContact() {
  const core::RecordKey key = SelectedToChange();
  if (key.IsNone()) return;
  const int place = list.SelectedItem();
  bool deleted = false;
  {
    core::EditLock lock(*OpenBook());
    core::Contact contact;
    CommandResult result = lock.Take(key);
    if (result == CommandResult::kDone) result = lock.Read(&contact);
    if (result == CommandResult::kDone) {
      list.SetEdited(key);
      deleted = AskYesNo(this, text::kDeleteContact);
      result = deleted ? core::DeleteContact(lock) : lock.Release();
      deleted = deleted && core::IsMade(result);
      list.SetEdited({});
    }
    Report(result, kNotChanged);
  }
  LookAfterBook();
  Reload(key.id);
  if (deleted) PlaySound("delete.wav");
  if (list.SelectedItem() < 0) list.SelectItem(std::min(place, list.ItemCount() - 1));
}

core::RecordKey AddressBookWindow::SelectedToChange() {
  core::RecordFile* const file = OpenBook();
  if (file == nullptr) return {};
  const CommandResult allowed = core::CheckMayChange(*file);
  if (allowed != CommandResult::kDone) {
    Report(allowed, kNotChanged);
    return {};
  }
  const core::RecordKey key = list.KeyAt(list.SelectedItem());
  if (key.IsNone()) MessageBeep();
  return key;
}

// ---- Storing ----

bool AddressBookWindow::EditAndStore(core::Contact& contact, std::optional<core::EditLock>& lock) {
  while (ContactDialog(contact).Run(this)) {
    const CommandResult result = Store(contact, lock);
    const bool lost = IsFileLost(*OpenBook(), result);
    Report(result, kNotSaved);
    if (core::IsMade(result)) return true;
    if (lost) lock.reset();  // in a file that is no longer at its path it protects nothing
    // What the user typed comes back, to be saved in the book that is at the path now.
    if (!lock) LookAfterBook();
  }
  return false;
}

CommandResult AddressBookWindow::Store(core::Contact& contact, std::optional<core::EditLock>& lock) {
  core::RecordFile& file = *OpenBook();
  if (lock) {
    const CommandResult written = lock->Write(&contact);
    return core::IsMade(written) ? lock->Finish(written) : written;
  }
  if (contact.header.recordId != 0) return core::PutContact(file, contact);
  core::Contact made;
  const CommandResult result =
      core::AddContact(file, core::ReadText(contact.name), core::ReadText(contact.email), made);
  if (core::IsMade(result)) contact = made;
  return result;
}
