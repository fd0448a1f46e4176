#include "platform/system/file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/system/descriptor.h"
#include "platform/system/lock_file.h"

namespace platform {
namespace {

// Far beyond any data, so that locks never touch bytes that are read or written, even where locks are
// mandatory.
constexpr std::int64_t kInUseByte = std::int64_t{1} << 40;
constexpr std::int64_t kGuardByte = kInUseByte + 1;

constexpr int kPatienceMs = 2000;
// Asking whether a file is in use holds it exclusively for an instant. Who asks at the same instant must not
// take that for a user.
constexpr int kProbeMs = 20;

constexpr ByteLock kShare = {kInUseByte, F_RDLCK, kPatienceMs};
constexpr ByteLock kAlone = {kInUseByte, F_WRLCK, kProbeMs};

bool CutFully(int descriptor, std::int64_t size) {
  int result = 0;
  do {
    result = SystemFileCalls().cut(descriptor, size);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

FileResult ResultOfGuard(GuardResult guard) {
  switch (guard) {
    case GuardResult::kHeld:
      return FileResult::kDone;
    case GuardResult::kBusy:
      return FileResult::kInUse;
    case GuardResult::kGone:
      return FileResult::kMissing;
    case GuardResult::kReplaced:
    case GuardResult::kFailed:
      break;
  }
  return errno == EACCES || errno == EPERM || errno == EROFS ? FileResult::kDenied : FileResult::kFailed;
}

// By the rights that opening goes by, not those of who started the program.
bool MayUse(const std::string& path, int how) {
  return faccessat(AT_FDCWD, path.c_str(), how, AT_EACCESS) == 0;
}

// A lock file could not be made beside a file that lies where nothing may be written.
bool MayGuard(const std::string& path) {
  const std::string folder = LockFilePath(path);
  return MayUse(folder.substr(0, folder.rfind('/') + 1) + ".", W_OK);
}

FileResult ResultOfWrite(bool whole) {
  if (whole) return FileResult::kDone;
  return IsDiskFull(errno) ? FileResult::kDiskFull : FileResult::kFailed;
}

GuardResult GuardOver(FileAtPath named) {
  switch (named) {
    case FileAtPath::kSame:
      return GuardResult::kHeld;
    case FileAtPath::kReplaced:
      return GuardResult::kReplaced;
    case FileAtPath::kGone:
      return GuardResult::kGone;
    case FileAtPath::kUnknown:
      break;
  }
  return GuardResult::kFailed;
}

}  // namespace

void LetWritesBeyondLimitsFail() {
  signal(SIGXFSZ, SIG_IGN);
}

File::File() = default;

File::~File() {
  Close();
}

File::File(File&& other) noexcept {
  *this = std::move(other);
}

File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    Close();
    descriptor = std::exchange(other.descriptor, -1);
    openFlags = other.openFlags;
    reach = other.reach;
    path = std::move(other.path);
    device = other.device;
    inode = other.inode;
    hold = std::move(other.hold);
    lastWrite = other.lastWrite;
  }
  return *this;
}

FileResult File::OpenInto(const std::string& openPath, int flags, const ByteLock& lock) {
  Descriptor opened;
  bool reaching = true;
  FileResult result = OpenLocked(openPath, flags, 0666, lock, opened, &reaching);
  if (result != FileResult::kDone) return result;
  Close();
  if (!reaching && (flags & O_ACCMODE) == O_RDWR && !MayGuard(openPath)) return FileResult::kDenied;
  if (!reaching && lock.type == F_WRLCK && (flags & O_CREAT) == 0) {
    result = ResultOfGuard(HoldLockFile(openPath));
    // What is there under the guard, whatever it was before.
    if (result == FileResult::kDone) result = OpenRegular(openPath, flags, 0, opened);
  }
  FileIdentity identity;
  if (result == FileResult::kDone && !IdentifyFile(opened.Number(), !reaching, identity)) {
    result = FileResult::kFailed;
  }
  // Emptied only under the lock: a file that somebody else has open keeps its bytes.
  if (result == FileResult::kDone && (flags & O_CREAT) != 0 && !CutFully(opened.Number(), 0)) {
    result = FileResult::kFailed;
  }
  if (result != FileResult::kDone) {
    Close();
    return result;
  }
  descriptor = opened.Release();
  openFlags = flags & ~(O_CREAT | O_NOFOLLOW);
  reach = reaching;
  path = openPath;
  device = identity.device;
  inode = identity.inode;
  lastWrite = FileResult::kDone;
  return FileResult::kDone;
}

GuardResult File::HoldLockFile(const std::string& target) {
  if (hold == nullptr) hold = std::make_unique<LockFile>();
  return hold->Take(target, GuardPatience());
}

// Opens in place of the file what its path names, if it is the same file: a cache may hold what its bytes
// were when it was opened.
GuardResult File::Reopen() {
  Descriptor opened;
  const FileResult result = OpenRegular(path, openFlags, 0, opened);
  if (result == FileResult::kMissing) return GuardResult::kGone;
  if (result != FileResult::kDone) return GuardResult::kFailed;
  FileIdentity identity;
  if (!IdentifyFile(opened.Number(), true, identity)) return GuardResult::kFailed;
  if (identity != FileIdentity{device, inode}) return GuardResult::kReplaced;
  Descriptor(std::exchange(descriptor, opened.Release())).Close();
  return GuardResult::kHeld;
}

FileResult File::OpenShared(const std::string& openPath) {
  return OpenInto(openPath, O_RDWR, kShare);
}

FileResult File::OpenReadOnly(const std::string& openPath) {
  return OpenInto(openPath, O_RDONLY, kShare);
}

FileResult File::OpenExclusive(const std::string& openPath) {
  return OpenInto(openPath, O_RDWR, kAlone);
}

FileResult File::CreateExclusive(const std::string& openPath) {
  return OpenInto(openPath, O_RDWR | O_CREAT | O_NOFOLLOW, kAlone);
}

FileResult File::HoldPath(const std::string& openPath) {
  const FileResult result = OpenExclusive(openPath);
  if (result != FileResult::kMissing) return result;
  const std::string target = ResolvedPath(openPath);
  Descriptor folder;
  if (!OpenFolderOf(target, folder)) return FileResult::kMissing;
  reach = SystemFileCalls().locksReach(folder.Number());
  return reach ? FileResult::kDone : ResultOfGuard(HoldLockFile(target));
}

bool File::KeepHold() {
  return reach || (hold != nullptr && hold->Keep());
}

void File::LetGoForRename() {
  if (hold != nullptr && hold->IsHeld()) Descriptor(std::exchange(descriptor, -1)).Close();
}

void File::Close() {
  Descriptor(std::exchange(descriptor, -1)).Close();  // the locks go with it
  if (hold != nullptr) hold->Release();
}

std::int64_t File::ReadAt(void* buffer, std::size_t size, std::int64_t offset) const {
  if (!IsOpen() || offset < 0) return -1;
  bool failed = false;
  const std::size_t moved = ReadFully(descriptor, buffer, size, offset, failed);
  return moved == 0 && failed ? -1 : static_cast<std::int64_t>(moved);
}

std::int64_t File::WriteAt(const void* buffer, std::size_t size, std::int64_t offset) {
  if (!IsOpen() || offset < 0) return -1;
  if (hold != nullptr && hold->IsHeld() && !hold->Keep()) {
    lastWrite = FileResult::kFailed;  // the guard is another's by now
    return -1;
  }
  bool failed = false;
  const std::size_t moved = WriteFully(descriptor, buffer, size, offset, failed);
  lastWrite = ResultOfWrite(moved == size);
  return moved == 0 && failed ? -1 : static_cast<std::int64_t>(moved);
}

std::int64_t File::Size() const {
  return IsOpen() ? SystemFileCalls().size(descriptor) : -1;
}

std::int64_t File::ChangedSeconds() const {
  struct stat about = {};
  return IsOpen() && fstat(descriptor, &about) == 0 ? about.st_mtim.tv_sec : -1;
}

bool File::ReadState(FileState& state) const {
  return IsOpen() && SystemFileCalls().state(descriptor, !reach, state);
}

FileAtPath File::PathState() const {
  return IsOpen() ? WhatPathNames(path, !reach, {device, inode}) : FileAtPath::kUnknown;
}

bool File::MayBeWritten() const {
  return IsOpen() && MayUse(path, R_OK | W_OK) && (reach || MayGuard(path));
}

bool File::IsAt(const std::string& otherPath) const {
  return IsOpen() && WhatPathNames(otherPath, !reach, {device, inode}) == FileAtPath::kSame;
}

FileAtPath File::Refresh() {
  if (reach || !IsOpen() || (hold != nullptr && hold->IsHeld())) return PathState();
  switch (Reopen()) {
    case GuardResult::kHeld:
      return FileAtPath::kSame;
    case GuardResult::kReplaced:
      return FileAtPath::kReplaced;
    case GuardResult::kGone:
      return IsBetweenNames(path) ? FileAtPath::kUnknown : FileAtPath::kGone;
    case GuardResult::kBusy:
    case GuardResult::kFailed:
      break;
  }
  return FileAtPath::kUnknown;
}

bool File::UsedByOthers() const {
  // Asked, not taken: a file opened for reading may not take such a lock.
  struct flock asked = {};
  asked.l_type = F_WRLCK;
  asked.l_whence = SEEK_SET;
  asked.l_start = kInUseByte;
  asked.l_len = 1;
  return !IsOpen() || !reach || fcntl(descriptor, F_OFD_GETLK, &asked) != 0 || asked.l_type != F_UNLCK;
}

bool File::Flush() {
  if (!IsOpen()) return false;
  lastWrite = ResultOfWrite(FlushFully(descriptor));
  return lastWrite == FileResult::kDone;
}

bool File::CutTo(std::int64_t size) {
  const bool mine = hold == nullptr || !hold->IsHeld() || hold->Keep();
  return IsOpen() && size >= 0 && mine && CutFully(descriptor, size);
}

FileGuard::FileGuard(File& file) : guarded(file) {
  if (!file.IsOpen()) return;
  if (!file.reach) {
    TakeLockFile();
    return;
  }
  const LockResult lock = TakeLock(file.descriptor, {kGuardByte, F_WRLCK, kPatienceMs});
  locked = lock == LockResult::kLocked;
  if (locked) {
    result = GuardOver(file.PathState());  // asked under the lock: nobody who replaces it may be in between
  } else if (lock == LockResult::kBusy) {
    result = GuardResult::kBusy;
  }
}

void FileGuard::TakeLockFile() {
  if ((guarded.openFlags & O_ACCMODE) != O_RDWR) return;  // who may not write may not guard
  result = guarded.HoldLockFile(guarded.path);
  locked = result == GuardResult::kHeld;
  if (locked) result = guarded.Reopen();
}

FileGuard::~FileGuard() {
  if (!locked) return;
  if (guarded.reach) {
    GiveLock(guarded.descriptor, kGuardByte);
  } else if (guarded.hold != nullptr) {
    guarded.hold->Release();
  }
}

bool FileInUse(const std::string& path) {
  File file;
  return file.OpenExclusive(path) != FileResult::kDone;
}

}  // namespace platform
