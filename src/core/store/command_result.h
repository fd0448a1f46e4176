// What a command that changes the records of a file came to, from which its caller knows what to tell the
// user (DescribeResult in file_messages.h).
#pragma once

#include <cstdint>

namespace core {

enum class CommandResult {
  kDone,
  // The change is made, but ...
  kNotCounted,    // other copies may not notice it before the next one
  kMadeLockLeft,  // the edit lock could not be given back
  kNotFlushed,    // the disk did not confirm it: a crash of the machine may undo it
  // Nothing was changed.
  kReader,          // the user may only read this file
  kNoAccess,        // the user's password is none of the file's any more
  kLocked,          // somebody edits the record
  kVanished,        // the record was deleted, and perhaps another one is in its slot
  kConfidential,    // the record is the owner's alone; to be passed over in silence
  kCancelledEvent,  // a cancelled internet event is not edited
  kInternetEvent,   // an internet event is not cut
  kRepeats,         // a repeating appointment is not moved to another day
  kLockLeft,        // the edit lock could not be given back
  kFailed,          // the file could not be read or written; RecordFile::LastFault says why
};

// Whether the change is in the file.
inline bool IsMade(CommandResult result) {
  return result <= CommandResult::kNotFlushed;
}

// Of two steps of one change that both were made, the one to be told.
inline CommandResult WorseOf(CommandResult a, CommandResult b) {
  return a < b ? b : a;
}

}  // namespace core
