#include "platform/system/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

#include "platform/system/clock.h"

namespace platform {
namespace {

// Short enough that a guard which is held for microseconds costs its waiters next to nothing.
constexpr auto kPause = std::chrono::milliseconds(2);

std::int64_t SystemRead(int descriptor, void* buffer, std::size_t size, std::int64_t offset) {
  return pread(descriptor, buffer, size, offset);
}

std::int64_t SystemWrite(int descriptor, const void* buffer, std::size_t size, std::int64_t offset) {
  return pwrite(descriptor, buffer, size, offset);
}

int SystemFlush(int descriptor) {
  return fsync(descriptor);
}

int SystemLock(int descriptor, short type, std::int64_t offset) {
  struct flock request = {};  // l_pid must be 0 for a lock that belongs to the open file
  request.l_type = type;
  request.l_whence = SEEK_SET;
  request.l_start = offset;
  request.l_len = 1;
  return fcntl(descriptor, F_OFD_SETLK, &request);
}

int SystemRename(const char* from, const char* to) {
  return std::rename(from, to);
}

int SystemRenameNew(const char* from, const char* to) {
  return renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
}

std::int64_t SystemSize(int descriptor) {
  struct stat about = {};
  return fstat(descriptor, &about) == 0 ? about.st_size : -1;
}

bool HasNoLocks(int error) {
  return error == EINVAL || error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS;
}

FileResult ResultOfOpenError(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return FileResult::kMissing;
    case EACCES:
    case EPERM:
    case EROFS:
      return FileResult::kDenied;
    case EISDIR:
      return FileResult::kIsFolder;
    case EAGAIN:  // a file server's lease on it is being called back
    case ETXTBSY:
      return FileResult::kInUse;
    default:
      return FileResult::kFailed;
  }
}

FileResult ResultOfKind(mode_t mode) {
  if (S_ISREG(mode)) return FileResult::kDone;
  return S_ISDIR(mode) ? FileResult::kIsFolder : FileResult::kFailed;
}

bool PathNames(const std::string& path, int descriptor) {
  struct stat named = {};
  struct stat held = {};
  return stat(path.c_str(), &named) == 0 && fstat(descriptor, &held) == 0 && named.st_dev == held.st_dev &&
         named.st_ino == held.st_ino;
}

// One try of OpenLocked. kInUse asks for another.
FileResult TryOpenLocked(const std::string& path, int flags, unsigned mode, const ByteLock& lock,
                         Descriptor& opened) {
  Descriptor found;
  const FileResult result = OpenRegular(path, flags, mode, found);
  if (result != FileResult::kDone) return result;
  switch (TakeLock(found.Number(), {lock.offset, lock.type, 0})) {
    case LockResult::kFailed:
      return FileResult::kFailed;
    case LockResult::kBusy:
      return FileResult::kInUse;
    default:
      break;
  }
  if (!PathNames(path, found.Number())) return FileResult::kInUse;
  opened = std::move(found);
  return FileResult::kDone;
}

}  // namespace

FileCalls& SystemFileCalls() {
  static FileCalls calls = {SystemRead,   SystemWrite,     SystemFlush, SystemLock,
                            SystemRename, SystemRenameNew, link,        SystemSize};
  return calls;
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    Close();
    number = other.Release();
  }
  return *this;
}

int Descriptor::Release() {
  return std::exchange(number, -1);
}

void Descriptor::Close() {
  if (number >= 0) close(Release());  // after EINTR the number is free all the same
}

FileResult OpenRegular(const std::string& path, int flags, unsigned mode, Descriptor& opened) {
  // Looked at first, because merely opening some devices does something; and again afterwards, because only
  // the descriptor is sure to be what is used.
  struct stat about = {};
  if (stat(path.c_str(), &about) == 0) {
    const FileResult kind = ResultOfKind(about.st_mode);
    if (kind != FileResult::kDone) return kind;
  }
  int number = -1;
  do {
    number = open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
  } while (number < 0 && errno == EINTR);
  if (number < 0) return ResultOfOpenError(errno);
  Descriptor found(number);
  if (fstat(number, &about) != 0) return FileResult::kFailed;
  const FileResult kind = ResultOfKind(about.st_mode);
  if (kind == FileResult::kDone) opened = std::move(found);
  return kind;
}

LockResult TakeLock(int descriptor, const ByteLock& lock) {
  const std::int64_t deadline = TickMs() + lock.waitMs;
  for (;;) {
    if (SystemFileCalls().lock(descriptor, lock.type, lock.offset) == 0) return LockResult::kLocked;
    if (errno == EINTR) continue;
    if (HasNoLocks(errno)) return LockResult::kNoLocks;
    if (errno != EAGAIN && errno != EACCES) return LockResult::kFailed;
    if (TickMs() >= deadline) return LockResult::kBusy;
    std::this_thread::sleep_for(kPause);
  }
}

void GiveLock(int descriptor, std::int64_t offset) {
  while (SystemFileCalls().lock(descriptor, F_UNLCK, offset) != 0 && errno == EINTR) {
  }
}

FileResult OpenLocked(const std::string& path, int flags, unsigned mode, const ByteLock& lock,
                      Descriptor& opened) {
  const std::int64_t deadline = TickMs() + lock.waitMs;
  for (;;) {
    const FileResult result = TryOpenLocked(path, flags, mode, lock, opened);
    if (result != FileResult::kInUse || TickMs() >= deadline) return result;
    std::this_thread::sleep_for(kPause);
  }
}

std::size_t ReadFully(int descriptor, void* buffer, std::size_t size, std::int64_t offset, bool& failed) {
  std::size_t moved = 0;
  failed = false;
  while (moved < size) {
    const std::int64_t step = SystemFileCalls().read(descriptor, static_cast<char*>(buffer) + moved,
                                                     size - moved, offset + static_cast<std::int64_t>(moved));
    if (step < 0 && errno == EINTR) continue;
    failed = step < 0;
    if (step <= 0) break;
    moved += static_cast<std::size_t>(step);
  }
  return moved;
}

std::size_t WriteFully(int descriptor, const void* buffer, std::size_t size, std::int64_t offset,
                       bool& failed) {
  std::size_t moved = 0;
  failed = false;
  while (moved < size) {
    const std::int64_t step =
        SystemFileCalls().write(descriptor, static_cast<const char*>(buffer) + moved, size - moved,
                                offset + static_cast<std::int64_t>(moved));
    if (step < 0 && errno == EINTR) continue;
    failed = step < 0;
    if (step <= 0) break;
    moved += static_cast<std::size_t>(step);
  }
  return moved;
}

bool FlushFully(int descriptor) {
  int result = 0;
  do {
    result = SystemFileCalls().flush(descriptor);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

}  // namespace platform
