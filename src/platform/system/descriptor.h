// What the sources of this folder share below the file: an owned descriptor, opening with every trap refused,
// whole transfers, and locks on one byte. For this folder only; everybody else uses file.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/system/file.h"

namespace platform {

// Owns one descriptor and closes it. Movable; -1 is none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int owned) : number(owned) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : number(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number; }
  bool IsOpen() const { return number >= 0; }
  int Release();  // the caller owns the number from here on
  void Close();

 private:
  int number = -1;
};

// Opens a regular file with the given open() flags and, where they create it, this mode. Anything else at the
// path (a folder, pipe, socket or device) is refused, and never waited for. Answers kInUse when the file
// cannot be had at this moment.
FileResult OpenRegular(const std::string& path, int flags, unsigned mode, Descriptor& opened);

// What tells one file from another for as long as either is open. `fresh` asks past the caches of a file
// system that may not have heard of what another machine did: there one may open a path and be told of the
// file that had it before.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  bool operator==(const FileIdentity&) const = default;
};
bool IdentifyFile(int descriptor, bool fresh, FileIdentity& identity);
FileAtPath WhatPathNames(const std::string& path, bool fresh, const FileIdentity& identity);

// Whether a path that was just found missing may be about to name a file, or does so by now: where locks do
// not reach, a file system may take the old file's name away before it gives it to the new one. Who replaces
// the file holds its lock file until then.
bool IsBetweenNames(const std::string& path);

// Opens the folder that a file of this path lies in.
bool OpenFolderOf(const std::string& path, Descriptor& folder);

// A new file in the folder of `target`, open for reading and writing, under a name that nobody has; `name` is
// its path. Leftovers of a crash are passed over. When that fails, errno tells why.
Descriptor CreateBeside(const std::string& target, unsigned mode, std::string& name);

// Whether errno tells of space that the disk, a quota or a limit does not have.
bool IsDiskFull(int error);

// What an error of a call that opens, makes or writes a file means to the user.
FileResult ResultOfError(int error);

// A lock on one byte: its place, its kind (F_RDLCK or F_WRLCK) and how long to wait for it, in milliseconds.
struct ByteLock {
  std::int64_t offset;
  short type;
  int waitMs;
};

// kNoLocks is a file system that has none: the work goes on without.
enum class LockResult { kLocked, kNoLocks, kBusy, kFailed };

LockResult TakeLock(int descriptor, const ByteLock& lock);
void GiveLock(int descriptor, std::int64_t offset);

// OpenRegular and TakeLock together. The file that is answered is the one that the path names while the lock
// is held: where the path was given to another file in between, that one is opened instead. kInUse when the
// lock stays out of reach for the whole wait. Who passes `reach` learns whether locks reach everybody, and
// gets none where they do not; else the lock is for this machine.
FileResult OpenLocked(const std::string& path, int flags, unsigned mode, const ByteLock& lock,
                      Descriptor& opened, bool* reach = nullptr);

// Move all bytes, through signals and partial transfers. They return the bytes that were moved and set
// `failed` when it was an error that ended the transfer, rather than the end of the file.
std::size_t ReadFully(int descriptor, void* buffer, std::size_t size, std::int64_t offset, bool& failed);
std::size_t WriteFully(int descriptor, const void* buffer, std::size_t size, std::int64_t offset,
                       bool& failed);

// fsync through signals.
bool FlushFully(int descriptor);

}  // namespace platform
