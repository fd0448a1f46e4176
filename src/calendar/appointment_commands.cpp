#include "calendar/appointment_commands.h"

#include "core/repeat_rule.h"

namespace {

// The event state of an internet event that its organiser called off.
constexpr std::uint8_t kCancelledEventState = 9;

CommandResult FromFile(core::Result result) {
  switch (result) {
    case core::Result::kDone:
      return CommandResult::kDone;
    case core::Result::kRefused:
      return CommandResult::kReader;
    default:
      return CommandResult::kFailed;
  }
}

CommandResult TakeAndRead(EditLock& lock, std::int32_t offset, core::Appointment& record) {
  const CommandResult taken = lock.Take(offset);
  return taken == CommandResult::kDone ? lock.Read(record) : taken;
}

CommandResult CheckConfidential(const core::RecordFile& file, const core::Appointment& record) {
  if (record.header.confidential == 0 || file.AccessLevel() == core::Access::kOwner)
    return CommandResult::kDone;
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

CommandResult EditLock::Read(core::Appointment& record) const {
  return file.ReadRecord(&record, offset) ? CommandResult::kDone : CommandResult::kVanished;
}

void EditLock::Release() {
  if (offset != 0) file.UnlockRecord(offset);
  offset = 0;
}

CommandResult CheckMayChange(const core::RecordFile& file) {
  return file.AccessLevel() == core::Access::kReader ? CommandResult::kReader : CommandResult::kDone;
}

CommandResult AddAppointment(core::RecordFile& file, const core::Appointment& record) {
  const CommandResult added = FromFile(file.AddRecord(&record));
  if (added == CommandResult::kDone) file.Flush();
  return added;
}

CommandResult BeginEdit(EditLock& lock, std::int32_t offset, core::Appointment& record) {
  CommandResult result = TakeAndRead(lock, offset, record);
  if (result == CommandResult::kDone) result = CheckConfidential(lock.File(), record);
  if (result == CommandResult::kDone && record.header.eventFlag == kCancelledEventState) {
    result = CommandResult::kCancelledEvent;
  }
  if (result != CommandResult::kDone) lock.Release();
  return result;
}

CommandResult EndEdit(EditLock& lock, const core::Appointment& record) {
  const CommandResult written = FromFile(lock.File().WriteRecord(&record, lock.Offset()));
  if (written != CommandResult::kDone) return written;
  lock.Release();
  lock.File().Flush();
  return CommandResult::kDone;
}

CommandResult DeleteLocked(EditLock& lock) {
  core::Appointment record;
  CommandResult result = lock.Read(record);
  if (result == CommandResult::kDone) result = CheckConfidential(lock.File(), record);
  if (result == CommandResult::kDone) result = FromFile(lock.File().DeleteRecord(lock.Offset()));
  lock.Release();
  if (result == CommandResult::kDone) lock.File().Flush();
  return result;
}

CommandResult MoveToDate(core::RecordFile& file, std::int32_t offset, const core::Date& date,
                         core::Appointment& record) {
  EditLock lock(file);
  const CommandResult result = TakeAndRead(lock, offset, record);
  if (result != CommandResult::kDone) return result;
  if (core::HasRepeat(record)) return CommandResult::kRepeats;
  record.date = date;
  return FromFile(file.WriteRecord(&record, offset));
}

CommandResult CopyToDate(core::RecordFile& file, std::int32_t offset, const core::Date& date,
                         core::Appointment& record) {
  EditLock lock(file);
  const CommandResult result = TakeAndRead(lock, offset, record);
  if (result != CommandResult::kDone) return result;
  record.date = date;
  record.header.recordId = core::NewRecordId();
  record.header.inUse = 1;
  record.header.editLock = 0;
  record.header.eventFlag = 0;
  record.header.eventByte = 0;
  record.header.eventRole = 1;
  core::ClearRepeat(record);
  return FromFile(file.AddRecord(&record));
}
