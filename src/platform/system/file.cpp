#include "platform/system/file.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/system/descriptor.h"

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

bool EmptyFile(int descriptor) {
  int result = 0;
  do {
    result = ftruncate(descriptor, 0);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

// Opens an existing file in place of what `descriptor` stands for.
FileResult OpenInto(int& descriptor, const std::string& path, int flags, const ByteLock& lock) {
  Descriptor opened;
  const FileResult result = OpenLocked(path, flags, 0, lock, opened);
  Descriptor(std::exchange(descriptor, opened.Release())).Close();
  return result;
}

}  // namespace

void LetWritesBeyondLimitsFail() {
  signal(SIGXFSZ, SIG_IGN);
}

File::~File() {
  Close();
}

File::File(File&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}

File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    Close();
    descriptor = std::exchange(other.descriptor, -1);
  }
  return *this;
}

FileResult File::OpenShared(const std::string& path) {
  return OpenInto(descriptor, path, O_RDWR, kShare);
}

FileResult File::OpenReadOnly(const std::string& path) {
  return OpenInto(descriptor, path, O_RDONLY, kShare);
}

FileResult File::OpenExclusive(const std::string& path) {
  return OpenInto(descriptor, path, O_RDWR, kAlone);
}

FileResult File::CreateExclusive(const std::string& path) {
  // Emptied only under the lock: a file that somebody else has open keeps its bytes.
  Descriptor opened;
  const FileResult result = OpenLocked(path, O_RDWR | O_CREAT, 0666, kAlone, opened);
  if (result != FileResult::kDone) return result;
  if (!EmptyFile(opened.Number())) return FileResult::kFailed;
  Close();
  descriptor = opened.Release();
  return FileResult::kDone;
}

void File::Close() {
  Descriptor(std::exchange(descriptor, -1)).Close();  // the locks go with it
}

std::int64_t File::ReadAt(void* buffer, std::size_t size, std::int64_t offset) const {
  if (!IsOpen() || offset < 0) return -1;
  bool failed = false;
  const std::size_t moved = ReadFully(descriptor, buffer, size, offset, failed);
  return moved == 0 && failed ? -1 : static_cast<std::int64_t>(moved);
}

std::int64_t File::WriteAt(const void* buffer, std::size_t size, std::int64_t offset) {
  if (!IsOpen() || offset < 0) return -1;
  bool failed = false;
  const std::size_t moved = WriteFully(descriptor, buffer, size, offset, failed);
  return moved == 0 && failed ? -1 : static_cast<std::int64_t>(moved);
}

std::int64_t File::Size() const {
  return IsOpen() ? SystemFileCalls().size(descriptor) : -1;
}

bool File::UsedByOthers() const {
  // Asked, not taken: a file opened for reading may not take such a lock.
  struct flock asked = {};
  asked.l_type = F_WRLCK;
  asked.l_whence = SEEK_SET;
  asked.l_start = kInUseByte;
  asked.l_len = 1;
  return !IsOpen() || fcntl(descriptor, F_OFD_GETLK, &asked) != 0 || asked.l_type != F_UNLCK;
}

bool File::Flush() {
  return IsOpen() && FlushFully(descriptor);
}

bool File::LocksWork() const {
  // Taking again what is held changes nothing.
  return TakeLock(descriptor, {kInUseByte, F_WRLCK, 0}) != LockResult::kNoLocks;
}

FileGuard::FileGuard(File& file) : descriptor(file.descriptor), held(false), locked(false) {
  if (!file.IsOpen()) return;
  const LockResult result = TakeLock(descriptor, {kGuardByte, F_WRLCK, kPatienceMs});
  locked = result == LockResult::kLocked;
  held = locked || result == LockResult::kNoLocks;
}

FileGuard::~FileGuard() {
  if (locked) GiveLock(descriptor, kGuardByte);
}

bool FileInUse(const std::string& path) {
  Descriptor opened;
  return OpenLocked(path, O_RDWR, 0, kAlone, opened) != FileResult::kDone;
}

}  // namespace platform
