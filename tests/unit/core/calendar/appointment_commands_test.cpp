// The rules of the commands that change appointments, without a window: rights, the edit lock on every way
// out, and what a list that is no longer true can lead to.
#include "core/calendar/appointment_commands.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "core/store/compaction.h"
#include "core/store/file_passwords.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

using core::CommandResult;
using core::EditLock;

// A + before a field of a record makes a copy: a reference to it would not be aligned.

constexpr std::int32_t kFirst = 2625;
constexpr core::Date kOtherDay = {20, 3, 2004};

class AppointmentCommands : public testing::Test {
 protected:
  AppointmentCommands() {
    const core::RecordFile& file = calendar.file;
    calendar.Add(Entry("First"));
    first = AllRecords(file).KeyAt(0);
  }

  CommandResult Begin(core::RecordFile& file) {
    EditLock lock(file);
    return BeginEdit(lock, first, record);
  }
  CommandResult Delete(core::RecordFile& file) {
    EditLock lock(file);
    const CommandResult taken = lock.Take(first);
    return taken == CommandResult::kDone ? DeleteLocked(lock, record) : taken;
  }
  void Change(void (*change)(core::Appointment&)) {
    core::Appointment slot = calendar.Slot(kFirst);
    change(slot);
    ASSERT_TRUE(calendar.file.WriteSlot(&slot, kFirst));
  }

  TemporaryCalendar calendar{{"Owner", "Assistant", "Reader"}};
  core::RecordFile assistant{calendar.Path(), "Assistant"};
  core::RecordFile reader{calendar.Path(), "Reader"};
  core::Appointment record{};
  core::RecordKey first;
};

// Who had a password that was changed since is a stranger, whatever it allowed.
TEST_F(AppointmentCommands, WhoMayNotChangeIsRefusedBeforeAnyLock) {
  const auto refuses = [this](core::RecordFile& file, CommandResult why) {
    const std::string before = calendar.Bytes();
    EXPECT_EQ(CheckMayChange(file), why);
    EXPECT_EQ(Begin(file), why);
    EXPECT_EQ(Delete(file), why);
    EXPECT_EQ(MoveToDate(file, first, kOtherDay, record), why);
    EXPECT_EQ(CopyToDate(file, first, kOtherDay, record), why);
    EXPECT_EQ(CutAppointment(file, first, record), why);
    EXPECT_EQ(CopyAppointment(file, first, record), why);
    EXPECT_EQ(PasteAppointment(file, kOtherDay, record), why);
    EXPECT_EQ(RestoreAppointment(file, record), why);
    EXPECT_EQ(AddAppointment(file, Entry("New").appointment), why);
    EXPECT_EQ(StoreCategories(file, {"Mine"}), why);
    EXPECT_EQ(StorePasswords(file, {"", "", ""}), why);
    EXPECT_EQ(file.WriteRecord(&record, kFirst), core::Result::kRefused);
    EXPECT_EQ(file.DeleteRecord(kFirst), core::Result::kRefused);
    EXPECT_EQ(calendar.Bytes(), before);
  };
  refuses(reader, CommandResult::kReader);
  ASSERT_EQ(StorePasswords(calendar.file, {"Owner", "New", "Other"}), CommandResult::kDone);
  refuses(reader, CommandResult::kNoAccess);
  refuses(assistant, CommandResult::kNoAccess);
  EXPECT_EQ(AllRecords(assistant).Count(), 0U) << "nor does a stranger see anything";
  EXPECT_EQ(AllRecords(calendar.file).Count(), 1U);
}

// The list leaves such records out; this one became confidential after it was listed.
TEST_F(AppointmentCommands, ConfidentialIsTheOwnersAlone) {
  Change([](core::Appointment& slot) { slot.header.confidential = 1; });
  const std::string before = calendar.Bytes();
  EXPECT_EQ(Begin(assistant), CommandResult::kConfidential);
  EXPECT_EQ(Delete(assistant), CommandResult::kConfidential);
  EXPECT_EQ(CutAppointment(assistant, first, record), CommandResult::kConfidential);
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(CopyAppointment(assistant, first, record), CommandResult::kDone);
  EXPECT_EQ(Begin(calendar.file), CommandResult::kDone);
  EXPECT_EQ(Delete(calendar.file), CommandResult::kDone);
}

TEST_F(AppointmentCommands, AnEventIsNotCutAndACancelledOneNotEditedButDeleted) {
  for (const int state : {1, 9}) {
    core::Appointment slot = calendar.Slot(kFirst);
    slot.header.eventFlag = static_cast<std::uint8_t>(state);
    ASSERT_TRUE(calendar.file.WriteSlot(&slot, kFirst));
    EXPECT_EQ(CutAppointment(assistant, first, record), CommandResult::kInternetEvent);
    EXPECT_EQ(+calendar.Slot(kFirst).header.inUse, 1);
  }
  EXPECT_EQ(Begin(assistant), CommandResult::kCancelledEvent);
  EXPECT_EQ(calendar.Slot(kFirst).header.editLock, 0);
  EXPECT_EQ(Delete(assistant), CommandResult::kDone);
  EXPECT_EQ(calendar.Slot(kFirst).header.inUse, 0);
}

// A slot that was freed goes to the next record: the key that somebody chose before is not that one's.
TEST_F(AppointmentCommands, ADeletedRecordIsNotBroughtBackAndAnotherInItsSlotIsLeftAlone) {
  {
    EditLock lock(assistant);  // deleted by another user between lock and read
    ASSERT_EQ(lock.Take(first), CommandResult::kDone);
    ASSERT_EQ(calendar.file.DeleteRecord(kFirst), core::Result::kDone);
    EXPECT_EQ(DeleteLocked(lock, record), CommandResult::kVanished);
  }
  EXPECT_EQ(+calendar.Header().freeSlotBalance, -1);
  EXPECT_EQ(Begin(assistant), CommandResult::kVanished);
  EXPECT_EQ(Delete(assistant), CommandResult::kVanished);
  const auto takeTheSlot = [this](const char* subject) {
    const Entry entry(subject);
    EXPECT_EQ(calendar.file.AddRecord(&entry.appointment), core::Result::kDone);
    EXPECT_EQ(core::ReadText(calendar.Slot(kFirst).subject), subject);
  };
  takeTheSlot("Second");
  std::string before = calendar.Bytes();
  EXPECT_EQ(Begin(assistant), CommandResult::kVanished);
  EXPECT_EQ(Delete(assistant), CommandResult::kVanished);
  EXPECT_EQ(MoveToDate(assistant, first, kOtherDay, record), CommandResult::kVanished);
  EXPECT_EQ(CopyToDate(assistant, first, kOtherDay, record), CommandResult::kVanished);
  EXPECT_EQ(CutAppointment(assistant, first, record), CommandResult::kVanished);
  EXPECT_EQ(CopyAppointment(assistant, first, record), CommandResult::kVanished);
  EXPECT_FALSE(assistant.ReadRecord(&record, first));
  EXPECT_EQ(calendar.Bytes(), before);

  // A program that does not know of locks does it under an open editor; its own user then edits the record.
  first = AllRecords(calendar.file).KeyAt(0);
  EditLock lock(assistant);
  ASSERT_EQ(BeginEdit(lock, first, record), CommandResult::kDone);
  ASSERT_EQ(calendar.file.DeleteRecord(kFirst), core::Result::kDone);
  takeTheSlot("Third");
  ASSERT_TRUE(calendar.file.LockRecord(kFirst));
  before = calendar.Bytes();
  EXPECT_EQ(EndEdit(lock, record), CommandResult::kVanished);
  EXPECT_EQ(DeleteLocked(lock, record), CommandResult::kVanished);
  EXPECT_EQ(lock.Release(), CommandResult::kDone);
  EXPECT_EQ(calendar.Bytes(), before);
}

// The calls that write, in the order of an edit that ends: the record, the counter, the lock.
TEST_F(AppointmentCommands, WhatFailsBehindTheRecordIsTriedAgainAndThenTold) {
  const struct {
    int nth;
    int times;
    CommandResult result;
    int lockAfter;
  } kCases[] = {{2, 1, CommandResult::kDone, 0},
                {2, 3, CommandResult::kNotCounted, 0},
                {3, 2, CommandResult::kDone, 0},
                {3, 3, CommandResult::kMadeLockLeft, 1}};
  for (const auto& fault : kCases) {
    EditLock lock(assistant);
    ASSERT_EQ(BeginEdit(lock, first, record), CommandResult::kDone) << "a lock left here is no obstacle";
    record.notes[0] = static_cast<char>(record.notes[0] + 1);
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kWrite, fault.nth, EIO, fault.times);
    EXPECT_EQ(EndEdit(lock, record), fault.result) << fault.nth << ' ' << fault.times;
    EXPECT_EQ(+calendar.Slot(kFirst).header.editLock, fault.lockAfter);
    EXPECT_EQ(calendar.Slot(kFirst).notes[0], record.notes[0]);
  }
  // A program that cannot give a lock back leaves a file that the next opening brings in order.
  {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kWrite, 1, EIO, FaultyCalls::kForEver);
    assistant.Close();
  }
  reader.Close();
  calendar.file.Close();
  EXPECT_TRUE(core::RepairCheck(calendar.Path(), false).clean);
  ASSERT_TRUE(calendar.file.Open());
  EXPECT_EQ(+calendar.Slot(kFirst).header.editLock, 0);
}

// The same where its other writes succeed: the count says that somebody did not leave in order.
TEST_F(AppointmentCommands, AClosedFileWithALockLeftStaysCounted) {
  const std::uint32_t count = calendar.Header().openCount;
  {
    EditLock lock(assistant);
    ASSERT_EQ(BeginEdit(lock, first, record), CommandResult::kDone);
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kWrite, 1, EIO, 6);  // three tries to give it back now, and three at the end
    EXPECT_EQ(lock.Release(), CommandResult::kLockLeft);
    assistant.Close();
  }
  EXPECT_EQ(+calendar.Header().openCount, count);
  EXPECT_EQ(+calendar.Slot(kFirst).header.editLock, 1);
}

TEST_F(AppointmentCommands, WhatTheDiskDoesNotConfirmIsToldAndStays) {
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kFlush, 1, EIO, FaultyCalls::kForEver);
  EXPECT_EQ(AddAppointment(calendar.file, Entry("Second").appointment), CommandResult::kNotFlushed);
  EXPECT_EQ(core::ReadText(calendar.Slot(kFirst + 2627).subject), "Second");
  {
    EditLock lock(calendar.file);
    ASSERT_EQ(BeginEdit(lock, first, record), CommandResult::kDone);
    core::WriteText(record.subject, "Changed");
    EXPECT_EQ(EndEdit(lock, record), CommandResult::kNotFlushed);
  }
  EXPECT_EQ(core::ReadText(calendar.Slot(kFirst).subject), "Changed");
  EXPECT_EQ(calendar.Slot(kFirst).header.editLock, 0);
  EXPECT_EQ(Delete(calendar.file), CommandResult::kNotFlushed);
  EXPECT_EQ(calendar.Slot(kFirst).header.inUse, 0);
}

TEST_F(AppointmentCommands, ACopyIsAPlainAppointmentOfItsOwn) {
  Change([](core::Appointment& slot) {
    slot.repeat = {core::kRepeatDaily, core::kNoEndDate, 1, 0};
    slot.header.eventFlag = 3;
    slot.header.eventByte = 4;
    slot.header.eventRole = 5;
  });
  EXPECT_EQ(MoveToDate(assistant, first, kOtherDay, record), CommandResult::kRepeats);
  const core::Appointment original = calendar.Slot(kFirst);
  const std::function<CommandResult()> kWays[] = {
      [&] { return CopyToDate(assistant, first, kOtherDay, record); },
      [&] { return PasteAppointment(assistant, kOtherDay, record = original); },
      [&] { return RestoreAppointment(assistant, record = original); },
      [&] {
        EXPECT_EQ(CutAppointment(assistant, first, record), CommandResult::kInternetEvent);
        EXPECT_EQ(Delete(assistant), CommandResult::kDone);
        return RestoreAppointment(assistant, record);
      },
  };
  for (int way = 0; way < 4; ++way) {
    SCOPED_TRACE(way);
    ASSERT_EQ(kWays[way](), CommandResult::kDone);
    const bool again = way == 3;  // deleted and brought back, it is itself
    const core::Appointment copy = calendar.Slot(again ? kFirst : kFirst + 2627 * (way + 1));
    core::Appointment expected = original;
    EXPECT_EQ(copy.header.recordId == original.header.recordId, again);
    expected.header.recordId = copy.header.recordId;
    expected.header.eventFlag = expected.header.eventByte = 0;
    expected.header.eventRole = 1;
    if (way < 2) {
      expected.repeat = {};
      expected.date = kOtherDay;
    }
    EXPECT_EQ(std::memcmp(&copy, &expected, sizeof copy), 0);
    EXPECT_EQ(std::memcmp(&copy, &record, sizeof copy), 0);
  }
}

}  // namespace
}  // namespace tests
