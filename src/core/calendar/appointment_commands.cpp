#include "core/calendar/appointment_commands.h"

#include <algorithm>

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

// What a record needs to be added as an appointment among others, wherever it comes from.
void MakePlain(Appointment& record) {
  record.header.inUse = 1;
  record.header.editLock = 0;
  record.header.eventFlag = 0;
  record.header.eventByte = 0;
  record.header.eventRole = 1;
}

// Reading the event again that the record came from is to find that one alone.
void MakeNew(Appointment& record) {
  record.header.recordId = NewRecordId();
  record.importMark = {};
}

void MakeCopy(Appointment& record, const Date& date) {
  MakePlain(record);
  MakeNew(record);
  record.date = date;
  ClearRepeat(record);
}

// Looks for the record with an id. False when the file could not be read to its end: what is not found then
// may be there all the same.
bool FindById(const RecordFile& file, std::uint64_t id, RecordKey& key) {
  RecordQuery sameId;
  sameId.AddInt64Condition(offsetof(RecordHeader, recordId), ConditionOp::kEqual,
                           static_cast<std::uint32_t>(id), static_cast<std::uint32_t>(id >> 32),
                           Connector::kAnd);
  const bool looked = sameId.Run(file) && sameId.IsWhole();
  key = sameId.KeyAt(0);
  return looked;
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

CommandResult BeginEditAgain(EditLock& lock, Appointment& record) {
  RecordKey key;
  if (!FindById(lock.File(), record.header.recordId, key)) return CommandResult::kFailed;
  if (key.IsNone()) return CommandResult::kVanished;
  Appointment present;
  const CommandResult begun = BeginEdit(lock, key, present);
  if (begun != CommandResult::kDone) return begun;
  std::copy_n(record.header.eventSubject, sizeof record.header.eventSubject, present.header.eventSubject);
  record = present;
  return begun;
}

CommandResult EndEdit(EditLock& lock, const Appointment& record) {
  const CommandResult written = lock.Write(&record);
  return IsMade(written) ? lock.Finish(written) : written;
}

CommandResult PutAppointment(RecordFile& file, Appointment record) {
  // One that is only not found would be added a second time.
  RecordKey key;
  if (!FindById(file, record.header.recordId, key)) return CommandResult::kFailed;
  if (key.IsNone()) {
    record.header.inUse = 1;
    record.header.editLock = 0;
    return AddAppointment(file, record);
  }
  EditLock lock(file);
  Appointment present;
  const CommandResult begun = BeginEdit(lock, key, present);
  return begun == CommandResult::kDone ? EndEdit(lock, record) : begun;
}

CommandResult ReadLocked(EditLock& lock, Appointment& record) {
  CommandResult result = lock.Read(&record);
  if (result == CommandResult::kDone) result = CheckConfidential(lock.File(), record);
  return result == CommandResult::kDone ? result : GiveUp(lock, result);
}

CommandResult DeleteLocked(EditLock& lock, Appointment& record) {
  CommandResult result = ReadLocked(lock, record);
  if (result != CommandResult::kDone) return result;
  result = lock.Delete();
  return IsMade(result) ? lock.Finish(result) : GiveUp(lock, result);
}

CommandResult CopyAppointment(RecordFile& file, const RecordKey& key, Appointment& record) {
  EditLock lock(file);
  return GiveUp(lock, TakeAndRead(lock, key, record));
}

CommandResult CutAppointment(RecordFile& file, const RecordKey& key, Appointment& record) {
  EditLock lock(file);
  CommandResult result = TakeAndRead(lock, key, record);
  if (result == CommandResult::kDone && IsInternetEvent(record)) result = CommandResult::kInternetEvent;
  return result == CommandResult::kDone ? DeleteLocked(lock, record) : GiveUp(lock, result);
}

CommandResult PasteAppointment(RecordFile& file, const Date& date, Appointment& record) {
  MakeCopy(record, date);
  return AddAppointment(file, record);
}

CommandResult RestoreAppointment(RecordFile& file, Appointment& record) {
  // Who may see nothing would not find it either.
  const CommandResult allowed = CheckMayChange(file);
  if (allowed != CommandResult::kDone) return allowed;
  RecordKey present;
  if (!FindById(file, record.header.recordId, present)) return CommandResult::kFailed;
  if (!present.IsNone()) MakeNew(record);
  MakePlain(record);
  return AddAppointment(file, record);
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
    MakeCopy(record, date);
    result = FromFile(file, file.AddRecord(&record));
  }
  return IsMade(result) ? lock.Finish(result) : GiveUp(lock, result);
}

}  // namespace core
