// Why an operation on an open record file failed. file_messages.h has the sentence for the user.
#pragma once

namespace core {

enum class FileFault {
  kNone,
  kClosed,
  kNoAccess,   // the password is none of the file's, perhaps no longer: it allows nothing
  kReader,     // the password allows reading only
  kLocked,     // somebody edits the record
  kNotLocked,  // nobody edits it: there is no lock to give back
  kDeleted,    // the record is gone, its slot free or another record's
  kNoPlace,    // the file has no room for another record
  kDiskFull,   // the disk, or what this user may have of it
  kBusy,       // another process kept the guard for longer than anybody waits
  kReplaced,   // the path names another file now
  kGone,       // the path names no file any more
  kChanged,    // others have changed it since it was looked at
  kReadFailed,
  kWriteFailed,
};

}  // namespace core
