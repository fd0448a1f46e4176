// The address book, and the contacts of the other program that are only read.
#include <sys/stat.h>

#include "core/contacts/address_book.h"
#include "core/contacts/external_contacts.h"
#include "core/ini_file.h"
#include "gtest/gtest.h"
#include "support/external_file.h"
#include "support/temporary_calendar.h"
#include "unit/core/program_folder.h"

namespace core {
namespace {

using tests::ExternalFile;
using tests::ExternalSlot;
using tests::TemporaryFolder;
using Names = std::vector<std::string>;

Names Listed(AddressBook& book) {
  Names names;
  for (const RecordKey& key : book.List().Keys()) {
    Contact contact;
    const bool read = book.File()->ReadRecord(&contact, key);
    names.push_back(read ? std::string(ReadText(contact.name)) + "=" + std::string(ReadText(contact.email))
                         : "-");
  }
  return names;
}

CommandResult Add(AddressBook& book, std::string_view name, std::string_view email) {
  Contact contact;
  return AddContact(*book.File(), name, email, contact);
}

TEST(AddressBook, IsMadeSharedAndSorted) {
  const TemporaryFolder folder;
  const std::string path = folder.Join("Nameleaf.tb1");
  AddressBook book;
  AddressBook other;
  std::string message;
  ASSERT_TRUE(book.Open(path, "", message) && other.Open(path, "", message)) << message;
  EXPECT_EQ(Add(book, "bob", "b@x"), CommandResult::kDone);
  EXPECT_EQ(Add(book, "Alice", ""), CommandResult::kDone);
  EXPECT_TRUE(other.List().RefreshIfChanged(*other.File()));
  EXPECT_EQ(Listed(other), (Names{"Alice=", "bob=b@x"}));
  EXPECT_EQ(Add(book, std::string(60, 'n'), std::string(300, 'e')), CommandResult::kDone);
  EXPECT_TRUE(book.Refresh());
  EXPECT_EQ(Listed(book)[2], std::string(49, 'n') + "=" + std::string(259, 'e'));

  // Nothing but size, state and id precedes the name.
  Contact stored;
  ASSERT_TRUE(book.File()->ReadRecord(&stored, book.List().KeyAt(1)));
  Contact expected{};
  expected.header.recordSize = 859;
  expected.header.inUse = 1;
  expected.header.recordId = stored.header.recordId;
  SetContact(expected, "bob", "b@x");
  EXPECT_EQ(std::memcmp(&stored, &expected, sizeof stored), 0);
  EXPECT_NE(book.List().KeyAt(1).id, 0U);

  EditLock lock(*book.File());
  ASSERT_EQ(lock.Take(book.List().KeyAt(0)), CommandResult::kDone);
  EXPECT_EQ(EditLock(*other.File()).Take(book.List().KeyAt(0)), CommandResult::kLocked);
  EXPECT_EQ(lock.Finish(lock.Delete()), CommandResult::kDone);
  EXPECT_TRUE(other.Refresh());
  EXPECT_EQ(other.List().Count(), 2U);
}

TEST(AddressBook, AContactIsPutOverItselfOrAddedAnew) {
  const TemporaryFolder folder;
  AddressBook book;
  std::string message;
  ASSERT_TRUE(book.Open(folder.Join("book"), "", message)) << message;
  Contact contact;
  ASSERT_EQ(AddContact(*book.File(), "Ann", "a@x", contact), CommandResult::kDone);
  SetContact(contact, "Anna", "a@x");
  EXPECT_EQ(PutContact(*book.File(), contact), CommandResult::kDone);
  contact.header.recordId ^= 1;
  EXPECT_EQ(PutContact(*book.File(), contact), CommandResult::kDone);
  ASSERT_TRUE(book.Refresh());
  EXPECT_EQ(Listed(book), (Names{"Anna=a@x", "Anna=a@x"}));
  EditLock lock(*book.File());
  ASSERT_EQ(lock.Take(book.List().KeyAt(0)), CommandResult::kDone);
  EXPECT_EQ(DeleteContact(lock), CommandResult::kDone);
  EXPECT_FALSE(lock.IsHeld());
  EXPECT_TRUE(book.Refresh() && book.List().Count() == 1);
}

TEST(AddressBook, AReaderAddsAndDoesNoMore) {
  const TemporaryFolder folder;
  HeaderBlock header;
  InitHeaderBlock(header, "Nameleaf", "Nameleaf", 1);
  WriteText(header.ownerPassword, "own");
  WriteText(header.assistantPassword, "help");
  const std::string image = NewFileImage(header, DefaultCategories(), 859, {});
  AddressBook book;
  std::string message;
  ASSERT_TRUE(book.Open(folder.Write("book", image), "", message)) << message;
  ASSERT_EQ(book.File()->AccessLevel(), Access::kReader);
  EXPECT_EQ(Add(book, "Ann", "a@x"), CommandResult::kDone);
  EXPECT_TRUE(book.Refresh());
  EXPECT_EQ(EditLock(*book.File()).Take(book.List().KeyAt(0)), CommandResult::kReader);
  EXPECT_TRUE(HasOwnerPassword(folder.Join("book")) && !HasOwnerPassword(folder.Join("none")));
  AddressBook refused;
  EXPECT_FALSE(refused.Open(folder.Join("book"), "none of them", message));
  EXPECT_EQ(message, "Can't open this file. Incorrect password.");
  book.File()->SetPassword("none of them");
  EXPECT_EQ(Add(book, "Eve", "e@x"), CommandResult::kNoAccess);
}

TEST(AddressBook, WhatIsNoBookIsSaid) {
  const TemporaryFolder folder;
  const tests::TemporaryCalendar calendar;
  for (const std::string& path :
       {folder.Write("text", "hello"), calendar.Path(), folder.Path(), folder.Join("none/Nameleaf.tb1"),
        folder.Write("cut", calendar.Bytes().substr(0, 2000))}) {
    AddressBook book;
    std::string message;
    EXPECT_FALSE(book.Open(path, "", message));
    EXPECT_NE(message.find(path), std::string::npos) << message;
    EXPECT_EQ(book.File(), nullptr);
  }
}

TEST(ExternalContacts, NamesAreReadAndNothingIsBelieved) {
  const TemporaryFolder folder;
  const std::vector<std::string> slots = {ExternalSlot("Ann", "Lee"), ExternalSlot("Gone", "X", 0),
                                          ExternalSlot("Own", "Only", 1, 1),
                                          ExternalSlot(std::string(60, 'f'), std::string(60, 'l'))};
  const std::string full = std::string(60, 'f') + " " + std::string(60, 'l');
  const std::string sound = ExternalFile(1000, slots);
  const std::string guarded = ExternalFile(949, slots, "own");
  const struct {
    const char* name;
    std::string bytes;
    const char* password;
    ExternalContacts::Result result;
    Names names;
  } kCases[] = {
      {"sound", sound, "", ExternalContacts::kRead, {"Ann Lee", "Own Only", full}},
      {"cut", sound.substr(0, sound.size() - 1), "", ExternalContacts::kRead, {"Ann Lee", "Own Only"}},
      {"empty", ExternalFile(949, {}), "", ExternalContacts::kRead, {}},
      {"owner", guarded, "own", ExternalContacts::kRead, {"Ann Lee", "Own Only", full}},
      {"reader", guarded, "rd", ExternalContacts::kRead, {"Ann Lee", full}},
      {"asked", guarded, "", ExternalContacts::kWrongPassword, {}},
      {"wrong", guarded, "x", ExternalContacts::kWrongPassword, {}},
      {"small slots", ExternalFile(948, {}), "", ExternalContacts::kCannotOpen, {}},
      {"huge slots",
       ExternalFile(949, {}).replace(8, 4, "\xFF\xFF\xFF\xFF"),
       "",
       ExternalContacts::kCannotOpen,
       {}},
      {"slots beyond the end", ExternalFile(2626, {}), "", ExternalContacts::kCannotOpen, {}},
      {"no record file", "hello", "", ExternalContacts::kCannotOpen, {}},
  };
  for (const auto& one : kCases) {
    const ExternalContacts read = ReadExternalContacts(folder.Write("a.adr", one.bytes), one.password);
    EXPECT_EQ(read.result, one.result) << one.name;
    EXPECT_EQ(read.names, one.names) << one.name;
    EXPECT_EQ(folder.Read("a.adr"), one.bytes) << one.name;
  }
  EXPECT_EQ(ReadExternalContacts(folder.Join("none"), "").result, ExternalContacts::kCannotOpen);
}

TEST(ExternalContacts, ThePathIsRememberedAndProposalsFollowTheContact) {
  EXPECT_EQ(ExternalContactsPath(), "");
  ASSERT_TRUE(IniFile("Nameleaf.ini").WriteString("Preference", "DefaulFile", "/x/theirs.adr"));
  EXPECT_EQ(ExternalContactsPath(), "/x/theirs.adr");
  ASSERT_TRUE(IniFile("Nameleaf.ini").WriteString("Preference", "DefaulFile", "/x/other.adr"));
  EXPECT_EQ(ExternalContactsPath(), "/x/theirs.adr");
  EXPECT_EQ(DescriptionProposals(""), (Names{"Appointment with", "Meeting with", "Call"}));
  EXPECT_EQ(DescriptionProposals("Ann Lee"),
            (Names{"Appointment with Ann Lee.", "Meeting with Ann Lee.", "Call Ann Lee.", "Ann Lee"}));
}

}  // namespace
}  // namespace core
