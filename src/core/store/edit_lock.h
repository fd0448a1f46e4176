// The edit lock of one record, of whatever kind: appointment, contact, participant. It is a byte in the file
// that all copies see, so that every way out of a command gives it back: EditLock does that when it ends.
//
// Use: Take, Read, let the user edit, Write or Delete, and Finish. A record is meant by its key: nothing is
// done to another one that came into its slot meanwhile.
#pragma once

#include "core/store/command_result.h"
#include "core/store/record_file.h"
#include "core/store/record_key.h"

namespace core {

// What an operation of the file came to, in the words of a command.
[[nodiscard]] CommandResult FromFile(const RecordFile& file, Result result);

// kDone when the password allows changes, else kReader, kNoAccess or, when that cannot be read, kFailed:
// asked before anything else that a command does.
[[nodiscard]] CommandResult CheckMayChange(const RecordFile& file);

// Brings to the disk what is in the file by now, for this and every other copy: `result`, or what is worse to
// tell.
[[nodiscard]] CommandResult Flush(RecordFile& file, CommandResult result);

class EditLock {
 public:
  explicit EditLock(RecordFile& lockedFile) : file(lockedFile) {}
  ~EditLock();
  EditLock(const EditLock&) = delete;
  EditLock& operator=(const EditLock&) = delete;

  // Takes the lock: kDone, or why not. kVanished when the record is gone. One at a time.
  [[nodiscard]] CommandResult Take(const RecordKey& key);

  // Reads the locked record, a slot of the file's size: kDone, kVanished or kFailed.
  [[nodiscard]] CommandResult Read(void* slot) const;

  // Change the locked record; the lock stays, so that what failed can be tried again. It goes with a record
  // that is deleted and has no id (0, as participants have), and its byte stays in the free slot.
  [[nodiscard]] CommandResult Write(const void* slot);
  [[nodiscard]] CommandResult Delete();

  // Gives the lock back, if it is held: kDone, or kLockLeft when the file could not be written. The file then
  // stays counted as open when it closes, so that it is brought in order when it is opened next.
  [[nodiscard]] CommandResult Release();

  // Ends a change that was made with `result`: gives the lock back and brings the file to the disk. Answers
  // what is worst to tell.
  [[nodiscard]] CommandResult Finish(CommandResult result);

  RecordFile& File() const { return file; }
  bool IsHeld() const { return !key.IsNone(); }

 private:
  RecordFile& file;
  RecordKey key;  // none: not held
};

}  // namespace core
