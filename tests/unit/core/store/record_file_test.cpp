#include "core/store/record_file.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <optional>
#include <thread>

#include "core/store/file_passwords.h"
#include "core/store/record_query.h"
#include "gtest/gtest.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"
#include "unit/core/program_folder.h"

namespace core {
namespace {

using tests::Entry;
using tests::FaultyCalls;
using tests::TemporaryCalendar;

constexpr std::int32_t kFirst = 2625;
constexpr std::int32_t kSecond = 5252;
constexpr std::int32_t kThird = 7879;

std::string Field(const std::string& bytes, std::size_t offset, std::size_t size) {
  return bytes.substr(offset, size);
}

std::string Padded(std::string text, std::size_t size) {
  text.resize(size, '\0');
  return text;
}

TEST(RecordFile, BytesOfANewCalendar) {
  tests::ProgramFolder().Write("Daybrix.ini", "[eServer]\nserver=events.example\nport=4711\n");
  TemporaryCalendar calendar;
  std::filesystem::remove(tests::ProgramFolder().Join("Daybrix.ini"));
  const std::string bytes = calendar.Bytes();
  ASSERT_EQ(bytes.size(), 2625U);
  EXPECT_EQ(Field(bytes, 0, 12), std::string("\x2D\x06\0\0\x08\x04\0\0\x43\x0A\0\0", 12));
  const std::string one("\1\0\0\0", 4);
  std::string header =
      std::string("\x2D\x06\0\0", 4) + Padded("Calendar", 30) + Padded("Organizer", 30) + one + one;
  header += Padded('\0' + Padded("Daybrix", 30) + "DaybrixMail", 205);
  header += Padded('\0' + Padded("Daybrix", 30) + "DaybrixMail", 205);
  header += one + Padded("events.example", 260) + Padded("4711", 260);
  header += std::string(4, '\0') + Padded("\x0A", 8) + one;  // balance 0, counter 10, one opened
  EXPECT_EQ(Field(bytes, 12, 1581), Padded(header, 1581));
  EXPECT_EQ(Field(bytes, 1593, 12), std::string("\x08\x04\0\0\0\0\0\0\x0F\0\0\0", 12));
  EXPECT_EQ(Field(bytes, 1605, 34), Padded("Calls", 30) + "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Field(bytes, 2081, 34), Padded("Test", 30) + "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Field(bytes, 2115, 510), std::string(510, '\0'));
}

TEST(RecordFile, BytesOfANewRecordsHeader) {
  TemporaryCalendar calendar({"secret", "", ""});
  Appointment appointment{};
  appointment.header.ownerIdentity.flag = 9;
  ASSERT_TRUE(calendar.file.InitRecord(&appointment));
  const std::string bytes(reinterpret_cast<const char*>(&appointment), sizeof appointment);
  EXPECT_EQ(Field(bytes, 0, 6), std::string("\x43\x0A\0\0\1\0", 6));
  EXPECT_EQ(Field(bytes, 14, 36), std::string(36, '\0'));
  const std::string names = Padded("Daybrix", 30) + Padded("DaybrixMail", 114) + Padded("secret", 60);
  EXPECT_EQ(Field(bytes, 78, 205), '\x09' + names);
  EXPECT_EQ(Field(bytes, 283, 205), '\0' + names);
  EXPECT_EQ(Field(bytes, 488, 28), Field(bytes, 50, 28));
  EXPECT_EQ(Field(bytes, 516, 33), Padded("", 32) + '\1');
  EXPECT_EQ(appointment.header.creationTime.minute % 5, 0);
  EXPECT_EQ(DayIndex(appointment.header.creationDate), DayIndex(Today()));
  Appointment other{};
  ASSERT_TRUE(calendar.file.InitRecord(&other));
  EXPECT_NE(tests::Value(other.header.recordId), tests::Value(appointment.header.recordId));
}

TEST(RecordFile, AddsDeletesAndTakesSlotsAgain) {
  TemporaryCalendar calendar;
  EXPECT_EQ(calendar.Add(Entry("a")), kFirst);
  EXPECT_EQ(calendar.Add(Entry("b")), kSecond);
  EXPECT_EQ(calendar.Add(Entry("c")), kThird);
  EXPECT_EQ(tests::Value(calendar.Header().changeCounter), 13U);

  Appointment read{};
  EXPECT_EQ(calendar.file.DeleteRecord(kSecond), Result::kDone);
  EXPECT_FALSE(calendar.file.ReadRecord(&read, kSecond));
  EXPECT_TRUE(calendar.file.ReadSlot(&read, kSecond));
  EXPECT_EQ(ReadText(read.subject), "b");
  EXPECT_EQ(tests::Value(calendar.Header().freeSlotBalance), -1);
  EXPECT_EQ(tests::Value(calendar.Header().changeCounter), 14U);

  const Entry d("d");
  EXPECT_EQ(calendar.file.AddRecord(&d.appointment), Result::kDone);
  EXPECT_EQ(tests::Value(calendar.Header().freeSlotBalance), 0);
  EXPECT_EQ(calendar.Add(Entry("e")), kThird + 2627);
  EXPECT_TRUE(calendar.file.ReadRecord(&read, kSecond));
  EXPECT_EQ(std::memcmp(&read, &d.appointment, sizeof read), 0);

  Entry changed("changed");
  EXPECT_EQ(calendar.file.WriteRecord(&changed.appointment, kThird), Result::kDone);
  EXPECT_TRUE(calendar.file.ReadRecord(&read, kThird));
  EXPECT_EQ(ReadText(read.subject), "changed");
  EXPECT_EQ(calendar.file.GetChangeCounter(), 17U);
  EXPECT_TRUE(calendar.file.BumpChangeCounter());
  EXPECT_EQ(calendar.file.GetChangeCounter(), 18U);

  // Deleting once more counts once more, although nothing became free.
  EXPECT_EQ(calendar.file.DeleteRecord(kFirst), core::Result::kDone);
  EXPECT_EQ(calendar.file.DeleteRecord(kFirst), core::Result::kDone);
  EXPECT_EQ(tests::Value(calendar.Header().freeSlotBalance), -2);
  EXPECT_EQ(tests::Value(calendar.Header().changeCounter), 20U);
}

TEST(RecordFile, BalanceDecidesWhetherASlotIsSoughtAtAll) {
  TemporaryCalendar calendar;
  const std::int32_t offset = calendar.Add(Entry("a"));
  EXPECT_EQ(calendar.file.DeleteRecord(offset), core::Result::kDone);
  EXPECT_TRUE(calendar.file.UpdateHeaderBlock([](HeaderBlock& header) { header.freeSlotBalance = 0; }));
  EXPECT_EQ(calendar.Add(Entry("b")), kSecond);  // the hint was lost, so the free slot is not found

  const Entry c("c");
  EXPECT_TRUE(calendar.file.UpdateHeaderBlock([](HeaderBlock& header) { header.freeSlotBalance = -1; }));
  EXPECT_EQ(calendar.file.AddRecord(&c.appointment), Result::kDone);
  EXPECT_TRUE(calendar.file.UpdateHeaderBlock([](HeaderBlock& header) { header.freeSlotBalance = -1; }));
  const std::string before = calendar.Bytes();
  EXPECT_EQ(calendar.file.AddRecord(&c.appointment),
            Result::kFailed);  // told of a free slot that is not there
  EXPECT_EQ(calendar.Bytes(), before);
}

TEST(RecordFile, FreeSlotBeyondTheFirstHundredIsFound) {
  TemporaryCalendar calendar;
  std::int32_t last = 0;
  for (int i = 0; i < 205; ++i) last = calendar.Add(Entry("x"));
  EXPECT_EQ(calendar.file.DeleteRecord(last - 2627), core::Result::kDone);
  const Entry entry("new");
  ASSERT_EQ(calendar.file.AddRecord(&entry.appointment), Result::kDone);
  Appointment read;
  ASSERT_TRUE(calendar.file.ReadRecord(&read, last - 2627));
  EXPECT_EQ(ReadText(read.subject), "new");
}

TEST(RecordFile, EditLocks) {
  TemporaryCalendar calendar;
  const std::int32_t offset = calendar.Add(Entry("a"));
  RecordFile other(calendar.Path(), "");
  const std::string before = calendar.Bytes();
  EXPECT_TRUE(RefreshEnabled());
  EXPECT_TRUE(calendar.file.LockRecord(offset));
  EXPECT_FALSE(RefreshEnabled());
  std::string locked = before;
  locked[static_cast<std::size_t>(offset) + 5] = 1;
  EXPECT_EQ(calendar.Bytes(), locked);  // one byte, and the change counter is not touched
  EXPECT_FALSE(calendar.file.LockRecord(offset) || other.LockRecord(offset));

  EXPECT_EQ(calendar.file.DeleteRecord(offset), core::Result::kDone);
  EXPECT_TRUE(other.UnlockRecord(offset));  // also of a record deleted meanwhile
  EXPECT_TRUE(RefreshEnabled());
  EXPECT_FALSE(other.UnlockRecord(offset));
  EXPECT_FALSE(other.LockRecord(offset));
  EXPECT_FALSE(other.LockRecord(offset + 1) || other.LockRecord(-1) || other.LockRecord(kSecond));
  EXPECT_TRUE(RefreshEnabled());
}

TEST(RecordFile, AccessLevels) {
  TemporaryCalendar calendar({"own", "assist", "read"});
  calendar.Add(Entry("a"));
  for (const auto& [password, level] :
       {std::pair{"own", Access::kOwner}, std::pair{"assist", Access::kAssistant},
        std::pair{"read", Access::kReader}, std::pair{"Own", Access::kNone}, std::pair{"", Access::kNone}}) {
    EXPECT_EQ(RecordFile(calendar.Path(), password).AccessLevel(), level) << password;
  }
  EXPECT_EQ(RecordFile(calendar.Path() + ".none", "").AccessLevel(), Access::kNone);

  RecordFile reader(calendar.Path(), "read");
  const Entry entry("b");
  EXPECT_EQ(reader.AddRecord(&entry.appointment), Result::kRefused);
  {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kRead, 1, EIO);  // a level that cannot be read allows nothing
    EXPECT_EQ(reader.AddRecord(&entry.appointment), Result::kFailed);
  }
  TemporaryCalendar open;
  EXPECT_EQ(open.file.AccessLevel(), Access::kOwner);
  TemporaryCalendar halfOpen({"own", "", "read"});
  EXPECT_EQ(RecordFile(halfOpen.Path(), "").AccessLevel(), Access::kAssistant);
}

TEST(RecordFile, CountsWhoHasItOpen) {
  TemporaryCalendar calendar;
  {
    const RecordFile second(calendar.Path(), "");
    EXPECT_EQ(tests::Value(calendar.Header().openCount), 2U);
  }
  EXPECT_EQ(tests::Value(calendar.Header().openCount), 1U);
  calendar.Add(Entry("a"));
  calendar.file.Close();
  calendar.file.Close();
  EXPECT_EQ(calendar.Bytes()[12 + 1018], '\0');
  EXPECT_FALSE(calendar.file.Flush() || calendar.file.LockRecord(kFirst));
  EXPECT_TRUE(calendar.file.Open() && calendar.file.Open());
  EXPECT_EQ(tests::Value(calendar.Header().openCount), 1U);
  EXPECT_EQ(calendar.file.CounterAtOpen(), 10U);
  EXPECT_EQ(RecordFile(calendar.Path(), "").CounterAtOpen(), 11U);

  // Somebody (a repair) reset the count: leaving must not take it below zero.
  EXPECT_TRUE(calendar.file.UpdateHeaderBlock([](HeaderBlock& header) { header.openCount = 0; }));
  calendar.file.Close();
  EXPECT_EQ(Field(calendar.Bytes(), 12 + 1018, 4), std::string(4, '\0'));
}

TEST(RecordFile, CreateReplacesOnlyWhatNobodyUses) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("kept"));
  const std::string before = calendar.Bytes();
  const HeaderBlock header = calendar.Header();
  RecordFile other(calendar.Path(), "");
  EXPECT_FALSE(other.Create(header, DefaultCategories(), 2627));  // the calendar is still open
  EXPECT_EQ(calendar.Bytes(), before);
  calendar.file.Close();
  EXPECT_FALSE(other.Create(header, DefaultCategories(), 859));  // no slot size of a calendar
  ASSERT_TRUE(other.Create(header, DefaultCategories(), 2627));
  EXPECT_EQ(calendar.Bytes().size(), 2625U);
  EXPECT_FALSE(other.OpenFailed());
}

// Who opens the path while its file is being replaced must not work on in the old one.
TEST(RecordFile, OpeningWhileTheFileIsReplacedGetsTheNewOne) {
  TemporaryCalendar calendar;
  const HeaderBlock header = calendar.Header();
  calendar.file.Close();
  std::optional<tests::ChildProcess> opener;
  FaultyCalls faults;
  faults.Before(FaultyCalls::kRename, 1, [&] {
    opener.emplace([&](const tests::ChildProcess::Signal& ready) {
      ready();
      RecordFile mine(calendar.Path(), "");
      const Entry entry("kept");
      return mine.AddRecord(&entry.appointment) == Result::kDone ? 0 : 1;
    });
    EXPECT_TRUE(opener->Ready());
    std::this_thread::sleep_for(std::chrono::milliseconds(50));  // time enough to open the old one
  });
  ASSERT_TRUE(calendar.file.Create(header, DefaultCategories(), 2627));
  EXPECT_EQ(opener->ExitCode(), 0);
  Appointment read;
  ASSERT_TRUE(calendar.file.ReadRecord(&read, kFirst));
  EXPECT_EQ(ReadText(read.subject), "kept");
}

TEST(RecordFile, ForEachRecordVisitsTheVisibleInFileOrder) {
  TemporaryCalendar calendar({"own", "", "read"});
  calendar.Add(Entry("a"));
  EXPECT_EQ(calendar.file.DeleteRecord(calendar.Add(Entry("b"))), core::Result::kDone);
  EXPECT_TRUE(calendar.file.UpdateHeaderBlock([](HeaderBlock& header) { header.freeSlotBalance = 0; }));
  calendar.Add(Entry("c").Confidential());
  calendar.Add(Entry("d"));
  const auto visited = [](RecordFile& file, std::size_t limit) {
    std::string all;
    const bool stopped = ForEachRecord(file, [&](const void* slot) {
      all += ReadText(static_cast<const Appointment*>(slot)->subject);
      return all.size() < limit;
    });
    return all + (stopped ? "!" : "");
  };
  EXPECT_EQ(visited(calendar.file, 9), "acd");
  EXPECT_EQ(visited(calendar.file, 2), "ac!");
  RecordFile reader(calendar.Path(), "read");
  EXPECT_EQ(visited(reader, 9), "ad");
}

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
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kWrite, 1, ENOSPC, FaultyCalls::kForEver);
  EXPECT_EQ(StorePasswords(calendar.file, {"new", "", ""}), CommandResult::kFailed);
  EXPECT_EQ(calendar.file.AccessLevel(), Access::kOwner);
}

}  // namespace
}  // namespace core
