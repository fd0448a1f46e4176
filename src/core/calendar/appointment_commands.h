// What the commands that change appointments do to the file: who may do it, the edit lock around every
// change, and the results from which the caller knows what to tell its user. A record is named by its key,
// as the list or the row had it from which the user chose.
#pragma once

#include "core/calendar/appointment.h"
#include "core/store/edit_lock.h"

namespace core {

// Adds a record that is prepared whole, and brings it to the disk.
[[nodiscard]] CommandResult AddAppointment(RecordFile& file, const Appointment& record);

// Locks and reads a record for the editor. Unless the result is kDone the lock is given back.
[[nodiscard]] CommandResult BeginEdit(EditLock& lock, const RecordKey& key, Appointment& record);

// The same for a record that was read before, perhaps from a file that this one has replaced: the one with
// its id, kVanished when there is none. What `record` calls the event stays; all else is what the file holds.
[[nodiscard]] CommandResult BeginEditAgain(EditLock& lock, Appointment& record);

// Writes the edited record, gives the lock back and brings the file to the disk. When nothing was written
// (!IsMade) the lock is still held.
[[nodiscard]] CommandResult EndEdit(EditLock& lock, const Appointment& record);

// Stores an edited record in a file that may not be the one it was read from: over the record with its id, as
// BeginEdit and EndEdit do, or as a new one where the file has none.
[[nodiscard]] CommandResult PutAppointment(RecordFile& file, Appointment record);

// Reads the record whose lock is held, unless it is the Owner's alone and the user another. Unless the result
// is kDone the lock is given back.
[[nodiscard]] CommandResult ReadLocked(EditLock& lock, Appointment& record);

// Deletes the record whose lock is held, gives the lock back and brings the file to the disk. `record` is
// what was deleted.
[[nodiscard]] CommandResult DeleteLocked(EditLock& lock, Appointment& record);

// Reads a record for the clipboard: as it is when nobody edits it. Cut deletes it as well, unless it is an
// internet event.
[[nodiscard]] CommandResult CopyAppointment(RecordFile& file, const RecordKey& key, Appointment& record);
[[nodiscard]] CommandResult CutAppointment(RecordFile& file, const RecordKey& key, Appointment& record);

// Adds a copy of `record`, which may come from another file, on a date: a record of its own that neither
// repeats nor is an internet event. `record` is then the copy.
[[nodiscard]] CommandResult PasteAppointment(RecordFile& file, const Date& date, Appointment& record);

// Adds a deleted record again, to whatever file; it is no internet event any more. Where the file has its id
// already, as a copy of the file may, it gets a new one. `record` is then what was added.
[[nodiscard]] CommandResult RestoreAppointment(RecordFile& file, Appointment& record);

// Gives the record another date; `record` is then what the file holds. Nothing is changed for a repeating
// one.
[[nodiscard]] CommandResult MoveToDate(RecordFile& file, const RecordKey& key, const Date& date,
                                       Appointment& record);

// Adds a copy of the record on another date, which neither repeats nor is an internet event; `record` is the
// copy.
[[nodiscard]] CommandResult CopyToDate(RecordFile& file, const RecordKey& key, const Date& date,
                                       Appointment& record);

}  // namespace core
