#include "core/calendar/appointment_commands.h"

#include "core/calendar/repeat_rule.h"
#include "core/store/record_query.h"

namespace core {
namespace {

// The event state of an internet event that its organiser called off.
constexpr std::uint8_t kCancelledEventState = 9;

CommandResult TakeAndRead(EditLock& lock, const RecordKey& key, Appointment& record) {
  const CommandResult taken = lock.Take(key);
  return taken == CommandResult::kDone ? lock.Read(&record) : taken;
}

CommandResult CheckConfidential(const RecordFile& file, const Appointment& record) {
  if (record.header.confidential == 0 || file.AccessLevel() == Access::kOwner) return CommandResult::kDone;
  return CommandResult::kConfidential;
}

// Gives up a change that was not begun.
CommandResult GiveUp(EditLock& lock, CommandResult result) {
  const CommandResult released = lock.Release();
  return released == CommandResult::kDone ? result : released;
}

}  // namespace

CommandResult AddAppointment(RecordFile& file, const Appointment& record) {
  const CommandResult added = FromFile(file, file.AddRecord(&record));
  return IsMade(added) ? Flush(file, added) : added;
}

CommandResult BeginEdit(EditLock& lock, const RecordKey& key, Appointment& record) {
  CommandResult result = TakeAndRead(lock, key, record);
  if (result == CommandResult::kDone) result = CheckConfidential(lock.File(), record);
  if (result == CommandResult::kDone && record.header.eventFlag == kCancelledEventState) {
    result = CommandResult::kCancelledEvent;
  }
  return result == CommandResult::kDone ? result : GiveUp(lock, result);
}

CommandResult EndEdit(EditLock& lock, const Appointment& record) {
  const CommandResult written = lock.Write(&record);
  return IsMade(written) ? lock.Finish(written) : written;
}

CommandResult PutAppointment(RecordFile& file, Appointment record) {
  RecordQuery sameId;
  const std::uint64_t id = record.header.recordId;
  sameId.AddInt64Condition(offsetof(RecordHeader, recordId), ConditionOp::kEqual,
                           static_cast<std::uint32_t>(id), static_cast<std::uint32_t>(id >> 32),
                           Connector::kAnd);
  // One that is only not found would be added a second time.
  if (!sameId.Run(file) || !sameId.IsWhole()) return CommandResult::kFailed;
  if (sameId.Count() == 0) {
    record.header.inUse = 1;
    record.header.editLock = 0;
    return AddAppointment(file, record);
  }
  EditLock lock(file);
  Appointment present;
  const CommandResult begun = BeginEdit(lock, sameId.KeyAt(0), present);
  return begun == CommandResult::kDone ? EndEdit(lock, record) : begun;
}

CommandResult DeleteLocked(EditLock& lock) {
  Appointment record;
  CommandResult result = lock.Read(&record);
  if (result == CommandResult::kDone) result = CheckConfidential(lock.File(), record);
  if (result == CommandResult::kDone) result = lock.Delete();
  return IsMade(result) ? lock.Finish(result) : GiveUp(lock, result);
}

CommandResult MoveToDate(RecordFile& file, const RecordKey& key, const Date& date, Appointment& record) {
  EditLock lock(file);
  CommandResult result = TakeAndRead(lock, key, record);
  if (result == CommandResult::kDone && HasRepeat(record)) result = CommandResult::kRepeats;
  if (result == CommandResult::kDone) {
    record.date = date;
    result = EndEdit(lock, record);
  }
  return IsMade(result) ? result : GiveUp(lock, result);
}

CommandResult CopyToDate(RecordFile& file, const RecordKey& key, const Date& date, Appointment& record) {
  EditLock lock(file);
  CommandResult result = TakeAndRead(lock, key, record);
  if (result == CommandResult::kDone) {
    record.date = date;
    record.header.recordId = NewRecordId();
    record.header.inUse = 1;
    record.header.editLock = 0;
    record.header.eventFlag = 0;
    record.header.eventByte = 0;
    record.header.eventRole = 1;
    ClearRepeat(record);
    result = FromFile(file, file.AddRecord(&record));
  }
  return IsMade(result) ? lock.Finish(result) : GiveUp(lock, result);
}

}  // namespace core
