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
// lock stays out of reach for the whole wait.
FileResult OpenLocked(const std::string& path, int flags, unsigned mode, const ByteLock& lock,
                      Descriptor& opened);

// Move all bytes, through signals and partial transfers. They return the bytes that were moved and set
// `failed` when it was an error that ended the transfer, rather than the end of the file.
std::size_t ReadFully(int descriptor, void* buffer, std::size_t size, std::int64_t offset, bool& failed);
std::size_t WriteFully(int descriptor, const void* buffer, std::size_t size, std::int64_t offset,
                       bool& failed);

// fsync through signals.
bool FlushFully(int descriptor);

}  // namespace platform
