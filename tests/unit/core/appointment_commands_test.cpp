// The rules of the commands that change appointments, without a window: rights, the edit lock on every way
// out, and what a list that is no longer true can lead to.
#include "core/appointment_commands.h"

#include <gtest/gtest.h>

#include <cerrno>

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
  AppointmentCommands() { calendar.Add(Entry("First")); }

  core::Appointment Slot(std::int32_t offset) {
    core::Appointment slot{};
    EXPECT_TRUE(calendar.file.ReadSlot(&slot, offset));
    return slot;
  }
  CommandResult Begin(core::RecordFile& file) {
    EditLock lock(file);
    return BeginEdit(lock, kFirst, record);
  }
  CommandResult Delete(core::RecordFile& file) {
    EditLock lock(file);
    const CommandResult taken = lock.Take(kFirst);
    return taken == CommandResult::kDone ? DeleteLocked(lock) : taken;
  }
  void Change(void (*change)(core::Appointment&)) {
    core::Appointment slot = Slot(kFirst);
    change(slot);
    ASSERT_TRUE(calendar.file.WriteSlot(&slot, kFirst));
  }

  TemporaryCalendar calendar{{"Owner", "Assistant", "Reader"}};
  core::RecordFile assistant{calendar.Path(), "Assistant"};
  core::RecordFile reader{calendar.Path(), "Reader"};
  core::Appointment record{};
};

TEST_F(AppointmentCommands, AReaderIsRefusedBeforeAnyLock) {
  const std::string before = calendar.Bytes();
  EXPECT_EQ(CheckMayChange(reader), CommandResult::kReader);
  EXPECT_EQ(Begin(reader), CommandResult::kReader);
  EXPECT_EQ(Delete(reader), CommandResult::kReader);
  EXPECT_EQ(MoveToDate(reader, kFirst, kOtherDay, record), CommandResult::kReader);
  EXPECT_EQ(CopyToDate(reader, kFirst, kOtherDay, record), CommandResult::kReader);
  EXPECT_EQ(AddAppointment(reader, Entry("New").appointment), CommandResult::kReader);
  EXPECT_EQ(calendar.Bytes(), before);
}

// The list leaves such records out; this one became confidential after it was listed.
TEST_F(AppointmentCommands, ConfidentialIsTheOwnersAlone) {
  Change([](core::Appointment& slot) { slot.header.confidential = 1; });
  const std::string before = calendar.Bytes();
  EXPECT_EQ(Begin(assistant), CommandResult::kConfidential);
  EXPECT_EQ(Delete(assistant), CommandResult::kConfidential);
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(Begin(calendar.file), CommandResult::kDone);
  EXPECT_EQ(Delete(calendar.file), CommandResult::kDone);
}

TEST_F(AppointmentCommands, ACancelledEventIsNotEditedButDeleted) {
  Change([](core::Appointment& slot) { slot.header.eventFlag = 9; });
  EXPECT_EQ(Begin(assistant), CommandResult::kCancelledEvent);
  EXPECT_EQ(Slot(kFirst).header.editLock, 0);
  EXPECT_EQ(Delete(assistant), CommandResult::kDone);
  EXPECT_EQ(Slot(kFirst).header.inUse, 0);
}

TEST_F(AppointmentCommands, OneEditorAtATime) {
  EditLock lock(calendar.file);
  ASSERT_EQ(BeginEdit(lock, kFirst, record), CommandResult::kDone);
  EXPECT_FALSE(core::RefreshEnabled());
  EXPECT_EQ(Begin(assistant), CommandResult::kLocked);
  EXPECT_EQ(MoveToDate(assistant, kFirst, kOtherDay, record), CommandResult::kLocked);
  EXPECT_EQ(Slot(kFirst).header.editLock, 1);
  core::WriteText(record.subject, "Changed");
  EXPECT_EQ(EndEdit(lock, record), CommandResult::kDone);
  EXPECT_TRUE(core::RefreshEnabled());
  EXPECT_EQ(Slot(kFirst).header.editLock, 0);
  EXPECT_EQ(core::ReadText(Slot(kFirst).subject), "Changed");
}

TEST_F(AppointmentCommands, ADeletedRecordIsNotBroughtBack) {
  ASSERT_EQ(calendar.file.DeleteRecord(kFirst), core::Result::kDone);
  EXPECT_EQ(Begin(assistant), CommandResult::kLocked);
  EXPECT_EQ(Delete(assistant), CommandResult::kLocked);
  // Deleted by another user between lock and read.
  calendar.Add(Entry("Second"));
  EditLock lock(assistant);
  ASSERT_EQ(lock.Take(kFirst), CommandResult::kDone);
  ASSERT_EQ(calendar.file.DeleteRecord(kFirst), core::Result::kDone);
  EXPECT_EQ(DeleteLocked(lock), CommandResult::kVanished);
  EXPECT_EQ(+calendar.Header().freeSlotBalance, -1);
}

TEST_F(AppointmentCommands, AFullDiskChangesNothingAndKeepsTheLockForAnotherTry) {
  EditLock lock(calendar.file);
  ASSERT_EQ(BeginEdit(lock, kFirst, record), CommandResult::kDone);
  const std::string before = calendar.Bytes();
  core::WriteText(record.subject, "Changed");
  {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kWrite, 1, ENOSPC, FaultyCalls::kForEver);
    EXPECT_EQ(EndEdit(lock, record), CommandResult::kFailed);
    EXPECT_EQ(AddAppointment(calendar.file, record), CommandResult::kFailed);
  }
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(EndEdit(lock, record), CommandResult::kDone);
}

TEST_F(AppointmentCommands, WhatTheDiskDoesNotConfirmIsToldAndStays) {
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kFlush, 1, EIO, FaultyCalls::kForEver);
  EXPECT_EQ(AddAppointment(calendar.file, Entry("Second").appointment), CommandResult::kNotFlushed);
  EXPECT_EQ(core::ReadText(Slot(kFirst + 2627).subject), "Second");
  {
    EditLock lock(calendar.file);
    ASSERT_EQ(BeginEdit(lock, kFirst, record), CommandResult::kDone);
    core::WriteText(record.subject, "Changed");
    EXPECT_EQ(EndEdit(lock, record), CommandResult::kNotFlushed);
  }
  EXPECT_EQ(core::ReadText(Slot(kFirst).subject), "Changed");
  EXPECT_EQ(Slot(kFirst).header.editLock, 0);
  EXPECT_EQ(Delete(calendar.file), CommandResult::kNotFlushed);
  EXPECT_EQ(Slot(kFirst).header.inUse, 0);
}

TEST_F(AppointmentCommands, ACopyIsAPlainAppointmentOfItsOwn) {
  Change([](core::Appointment& slot) {
    slot.repeat = {core::kRepeatDaily, core::kNoEndDate, 1, 0};
    slot.header.eventFlag = 3;
    slot.header.eventByte = 4;
    slot.header.eventRole = 5;
  });
  EXPECT_EQ(MoveToDate(assistant, kFirst, kOtherDay, record), CommandResult::kRepeats);
  ASSERT_EQ(CopyToDate(assistant, kFirst, kOtherDay, record), CommandResult::kDone);
  core::Appointment expected = Slot(kFirst);
  const core::Appointment copy = Slot(kFirst + 2627);
  EXPECT_NE(+copy.header.recordId, +expected.header.recordId);
  expected.header.recordId = copy.header.recordId;
  expected.header.eventFlag = expected.header.eventByte = 0;
  expected.header.eventRole = 1;
  expected.repeat = {};
  expected.date = kOtherDay;
  EXPECT_EQ(std::memcmp(&copy, &expected, sizeof copy), 0);
}

}  // namespace
}  // namespace tests
