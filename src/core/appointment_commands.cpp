#include "core/appointment_commands.h"

#include "core/repeat_rule.h"

namespace core {
namespace {

// The event state of an internet event that its organiser called off.
constexpr std::uint8_t kCancelledEventState = 9;

CommandResult FromFile(Result result) {
  switch (result) {
    case Result::kDone:
      return CommandResult::kDone;
    case Result::kRefused:
      return CommandResult::kReader;
    default:
      return CommandResult::kFailed;
  }
}

CommandResult TakeAndRead(EditLock& lock, std::int32_t offset, Appointment& record) {
  const CommandResult taken = lock.Take(offset);
  return taken == CommandResult::kDone ? lock.Read(record) : taken;
}

// What is in the file by now, for this and every other copy, is brought to the disk.
CommandResult Flush(RecordFile& file) {
  return file.Flush() ? CommandResult::kDone : CommandResult::kNotFlushed;
}

CommandResult CheckConfidential(const RecordFile& file, const Appointment& record) {
  if (record.header.confidential == 0 || file.AccessLevel() == Access::kOwner) return CommandResult::kDone;
  return CommandResult::kConfidential;
}

}  // namespace

CommandResult EditLock::Take(std::int32_t slotOffset) {
  const CommandResult allowed = CheckMayChange(file);
  if (allowed != CommandResult::kDone) return allowed;
  if (!file.LockRecord(slotOffset)) return CommandResult::kLocked;
  offset = slotOffset;
  return CommandResult::kDone;
}

CommandResult EditLock::Read(Appointment& record) const {
  return file.ReadRecord(&record, offset) ? CommandResult::kDone : CommandResult::kVanished;
}

void EditLock::Release() {
  if (offset != 0) file.UnlockRecord(offset);
  offset = 0;
}

CommandResult CheckMayChange(const RecordFile& file) {
  return file.AccessLevel() == Access::kReader ? CommandResult::kReader : CommandResult::kDone;
}

CommandResult AddAppointment(RecordFile& file, const Appointment& record) {
  const CommandResult added = FromFile(file.AddRecord(&record));
  return added == CommandResult::kDone ? Flush(file) : added;
}

CommandResult BeginEdit(EditLock& lock, std::int32_t offset, Appointment& record) {
  CommandResult result = TakeAndRead(lock, offset, record);
  if (result == CommandResult::kDone) result = CheckConfidential(lock.File(), record);
  if (result == CommandResult::kDone && record.header.eventFlag == kCancelledEventState) {
    result = CommandResult::kCancelledEvent;
  }
  if (result != CommandResult::kDone) lock.Release();
  return result;
}

CommandResult EndEdit(EditLock& lock, const Appointment& record) {
  const CommandResult written = FromFile(lock.File().WriteRecord(&record, lock.Offset()));
  if (written != CommandResult::kDone) return written;
  lock.Release();
  return Flush(lock.File());
}

CommandResult DeleteLocked(EditLock& lock) {
  Appointment record;
  CommandResult result = lock.Read(record);
  if (result == CommandResult::kDone) result = CheckConfidential(lock.File(), record);
  if (result == CommandResult::kDone) result = FromFile(lock.File().DeleteRecord(lock.Offset()));
  lock.Release();
  return result == CommandResult::kDone ? Flush(lock.File()) : result;
}

CommandResult MoveToDate(RecordFile& file, std::int32_t offset, const Date& date, Appointment& record) {
  EditLock lock(file);
  const CommandResult result = TakeAndRead(lock, offset, record);
  if (result != CommandResult::kDone) return result;
  if (HasRepeat(record)) return CommandResult::kRepeats;
  record.date = date;
  return EndEdit(lock, record);
}

CommandResult CopyToDate(RecordFile& file, std::int32_t offset, const Date& date, Appointment& record) {
  EditLock lock(file);
  const CommandResult result = TakeAndRead(lock, offset, record);
  if (result != CommandResult::kDone) return result;
  record.date = date;
  record.header.recordId = NewRecordId();
  record.header.inUse = 1;
  record.header.editLock = 0;
  record.header.eventFlag = 0;
  record.header.eventByte = 0;
  record.header.eventRole = 1;
  ClearRepeat(record);
  return AddAppointment(file, record);
}

}  // namespace core
