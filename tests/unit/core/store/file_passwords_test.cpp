#include "core/store/file_passwords.h"

#include <cerrno>

#include "gtest/gtest.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::FaultyCalls;
using tests::TemporaryCalendar;

TEST(FilePasswords, OnlyTheOwnerReadsThem) {
  TemporaryCalendar calendar({"OwnerPw1", "Assist2", "Read3"});
  const struct {
    const char* password;
    CommandResult result;
  } kCases[] = {{"OwnerPw1", CommandResult::kDone},
                {"ownerpw1", CommandResult::kNoAccess},
                {"Assist2", CommandResult::kReader},
                {"Read3", CommandResult::kReader},
                {"", CommandResult::kNoAccess}};
  for (const auto& [password, result] : kCases) {
    const RecordFile file(calendar.Path(), password);
    FilePasswords read;
    EXPECT_EQ(ReadPasswords(file, read), result) << password;
    EXPECT_EQ(read, result == CommandResult::kDone ? (FilePasswords{"OwnerPw1", "Assist2", "Read3"})
                                                   : FilePasswords{});
  }
  FilePasswords read;
  EXPECT_EQ(ReadPasswords(RecordFile(calendar.Path() + ".none", ""), read), CommandResult::kFailed);
  // Without an Owner password everybody is the owner.
  TemporaryCalendar open({"", "Assist2", "Read3"});
  EXPECT_EQ(ReadPasswords(open.file, read), CommandResult::kDone);
}

TEST(FilePasswords, StoringChangesTheirBytesOnlyAndTheFileGoesOnAsTheOwner) {
  TemporaryCalendar calendar({"OwnerPw1", "Assist2", "Read3"});
  RecordFile other(calendar.Path(), "OwnerPw1");
  std::string expected = calendar.Bytes();
  const std::string full = "abcdefghij0123456789";
  ASSERT_EQ(StorePasswords(calendar.file, {full, "\xE9t\xE9", ""}), CommandResult::kDone);
  expected.replace(12 + 217, 60, std::string(60, '\0'));
  expected.replace(12 + 217, 19, full.substr(0, 19)).replace(12 + 237, 3, "\xE9t\xE9");
  EXPECT_EQ(calendar.Bytes(), expected);
  EXPECT_EQ(calendar.file.AccessLevel(), Access::kOwner);
  EXPECT_EQ(calendar.file.Password(), full.substr(0, 19));
  // Who had the password before has no say any more.
  EXPECT_EQ(StorePasswords(other, {"mine", "", ""}), CommandResult::kNoAccess);
  EXPECT_EQ(calendar.Bytes(), expected);
  EXPECT_EQ(RecordFile(calendar.Path(), full).AccessLevel(), Access::kNone);
}

TEST(FilePasswords, AFileThatCannotBeWrittenKeepsThem) {
  TemporaryCalendar calendar({"OwnerPw1", "", ""});
  const std::string before = calendar.Bytes();
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kWrite, 1, ENOSPC, FaultyCalls::kForEver);
  EXPECT_EQ(StorePasswords(calendar.file, {"new", "", ""}), CommandResult::kFailed);
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(calendar.file.AccessLevel(), Access::kOwner);
}

}  // namespace
}  // namespace core
