#include "platform/system/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

#include "platform/system/clock.h"
#include "platform/system/lock_file.h"
#include "platform/system/lock_reach.h"

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

bool SystemState(int descriptor, bool fresh, FileState& state) {
  struct statx about = {};
  const int how = AT_EMPTY_PATH | (fresh ? AT_STATX_FORCE_SYNC : AT_STATX_SYNC_AS_STAT);
  if (statx(descriptor, "", how, STATX_INO | STATX_SIZE | STATX_MTIME | STATX_CTIME, &about) != 0)
    return false;
  const auto nanoseconds = [](const statx_timestamp& time) {
    return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec;
  };
  state = {std::uint64_t{about.stx_dev_major} << 32 | about.stx_dev_minor, about.stx_ino,
           static_cast<std::int64_t>(about.stx_size), nanoseconds(about.stx_mtime),
           nanoseconds(about.stx_ctime)};
  return true;
}

std::int64_t SystemNowMs() {
  timespec now = {};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return now.tv_sec * std::int64_t{1000} + now.tv_nsec / 1000000;
}

int SystemCut(int descriptor, std::int64_t size) {
  return ftruncate(descriptor, size);
}

int SystemCreateNew(const char* path, unsigned mode) {
  return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

bool HasNoLocks(int error) {
  return error == EINVAL || error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS;
}

FileResult ResultOfKind(mode_t mode) {
  if (S_ISREG(mode)) return FileResult::kDone;
  return S_ISDIR(mode) ? FileResult::kIsFolder : FileResult::kNoRegularFile;
}

bool Identify(int folder, const char* path, bool fresh, FileIdentity& identity) {
  struct statx about = {};
  const int how = AT_EMPTY_PATH | (fresh ? AT_STATX_FORCE_SYNC : AT_STATX_SYNC_AS_STAT);
  if (statx(folder, path, how, STATX_INO, &about) != 0) return false;
  identity = {std::uint64_t{about.stx_dev_major} << 32 | about.stx_dev_minor, about.stx_ino};
  return true;
}

// One try of OpenLocked. kInUse asks for another.
FileResult TryOpenLocked(const std::string& path, int flags, unsigned mode, const ByteLock& lock,
                         Descriptor& opened, bool* reach) {
  Descriptor found;
  const FileResult result = OpenRegular(path, flags, mode, found);
  if (result != FileResult::kDone) return result;
  const bool wanted = reach == nullptr || SystemFileCalls().locksReach(found.Number());
  if (reach != nullptr) *reach = wanted;
  switch (wanted ? TakeLock(found.Number(), {lock.offset, lock.type, 0}) : LockResult::kNoLocks) {
    case LockResult::kFailed:
      return FileResult::kFailed;
    case LockResult::kBusy:
      return FileResult::kInUse;
    case LockResult::kNoLocks:
      if (reach != nullptr) *reach = false;
      break;
    case LockResult::kLocked:
      break;
  }
  FileIdentity identity;
  if (!IdentifyFile(found.Number(), !wanted, identity)) return FileResult::kFailed;
  if (WhatPathNames(path, !wanted, identity) != FileAtPath::kSame) return FileResult::kInUse;
  opened = std::move(found);
  return FileResult::kDone;
}

}  // namespace

FileCalls& SystemFileCalls() {
  static FileCalls calls = {SystemRead,      SystemWrite,   SystemFlush, SystemLock, SystemRename,
                            SystemRenameNew, link,          SystemSize,  SystemCut,  SystemCreateNew,
                            unlink,          AskLocksReach, SystemState, SystemNowMs};
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
  if (number < 0) return ResultOfError(errno);
  Descriptor found(number);
  if (fstat(number, &about) != 0) return FileResult::kFailed;
  const FileResult kind = ResultOfKind(about.st_mode);
  if (kind == FileResult::kDone) opened = std::move(found);
  return kind;
}

bool IdentifyFile(int descriptor, bool fresh, FileIdentity& identity) {
  return Identify(descriptor, "", fresh, identity);
}

bool IsBetweenNames(const std::string& path) {
  return FileExists(LockFilePath(path)) || FileExists(path);
}

FileAtPath WhatPathNames(const std::string& path, bool fresh, const FileIdentity& identity) {
  FileIdentity named;
  if (Identify(AT_FDCWD, path.c_str(), fresh, named)) {
    return named == identity ? FileAtPath::kSame : FileAtPath::kReplaced;
  }
  const bool missing = errno == ENOENT || errno == ENOTDIR;
  return missing && !(fresh && IsBetweenNames(path)) ? FileAtPath::kGone : FileAtPath::kUnknown;
}

bool OpenFolderOf(const std::string& path, Descriptor& folder) {
  const std::string name = path.substr(0, path.rfind('/') + 1);
  folder = Descriptor(open(name.empty() ? "." : name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return folder.IsOpen();
}

bool IsDiskFull(int error) {
  return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

FileResult ResultOfError(int error) {
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
    case ENXIO:  // a socket
    case ENODEV:
      return FileResult::kNoRegularFile;
    case EEXIST:
      return FileResult::kExists;
    case EAGAIN:  // a file server's lease on it is being called back
    case ETXTBSY:
      return FileResult::kInUse;
    default:
      return IsDiskFull(error) ? FileResult::kDiskFull : FileResult::kFailed;
  }
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
                      Descriptor& opened, bool* reach) {
  const std::int64_t deadline = TickMs() + lock.waitMs;
  for (;;) {
    const FileResult result = TryOpenLocked(path, flags, mode, lock, opened, reach);
    const bool again =
        result == FileResult::kInUse || (result == FileResult::kMissing && IsBetweenNames(path));
    if (!again || TickMs() >= deadline) return result;
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
  errno = 0;
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
