// What the commands that change appointments do to the file: who may do it, the edit lock around every
// change, and the results from which the caller knows what to tell its user. A record is named by
// the offset of its slot.
//
// An edit lock is a byte in the file that other copies see, so that every way out of a command gives it back:
// EditLock does that when it ends.
#pragma once

#include <cstdint>

#include "core/appointment.h"
#include "core/record_file.h"

namespace core {

enum class CommandResult {
  kDone,
  kNotFlushed,      // done, but the system could not bring it to the disk: a crash of the machine may undo it
  kReader,          // the user may only read this file
  kLocked,          // somebody edits the record, or it is gone
  kVanished,        // the record was deleted between lock and read
  kConfidential,    // the record is the owner's alone; to be passed over in silence
  kCancelledEvent,  // a cancelled internet event is not edited
  kRepeats,         // a repeating appointment is not moved to another day
  kFailed,          // the file could not be read or written; it is as it was
};

// The edit lock of one record.
class EditLock {
 public:
  explicit EditLock(RecordFile& lockedFile) : file(lockedFile) {}
  ~EditLock() { Release(); }
  EditLock(const EditLock&) = delete;
  EditLock& operator=(const EditLock&) = delete;

  // Takes the lock: kDone, kReader or kLocked.
  CommandResult Take(std::int32_t slotOffset);
  // Reads the locked record: kDone or kVanished.
  CommandResult Read(Appointment& record) const;
  // Gives the lock back, if it is held.
  void Release();

  RecordFile& File() const { return file; }
  std::int32_t Offset() const { return offset; }

 private:
  RecordFile& file;
  std::int32_t offset = 0;  // 0: not held
};

// kReader or kDone: asked before anything else a command does.
CommandResult CheckMayChange(const RecordFile& file);

// Adds a record that is prepared whole, and brings it to the disk. Here and below, kNotFlushed when only the
// latter fails.
CommandResult AddAppointment(RecordFile& file, const Appointment& record);

// Locks and reads a record for the editor. Unless the result is kDone the lock is given back.
CommandResult BeginEdit(EditLock& lock, std::int32_t offset, Appointment& record);
// Writes the edited record, gives the lock back and brings the file to the disk. When it fails the lock is
// still held.
CommandResult EndEdit(EditLock& lock, const Appointment& record);

// Deletes the record whose lock is held, gives the lock back and brings the file to the disk.
CommandResult DeleteLocked(EditLock& lock);

// Gives the record another date; `record` is then what the file holds. Nothing is changed for a repeating
// one.
CommandResult MoveToDate(RecordFile& file, std::int32_t offset, const Date& date, Appointment& record);
// Adds a copy of the record on another date, which neither repeats nor is an internet event; `record` is the
// copy.
CommandResult CopyToDate(RecordFile& file, std::int32_t offset, const Date& date, Appointment& record);

}  // namespace core
