// The part of file.h that deals with paths and whole files.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "platform/system/descriptor.h"
#include "platform/system/file.h"

namespace platform {
namespace {

constexpr int kMostLinks = 40;  // as the kernel: more is a circle
constexpr int kMostNames = 1000;
constexpr std::size_t kChunk = 65536;

// With the slash, so that a name can be put behind it; empty for a bare name.
std::string FolderPart(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

// What a folder says is only a hint here: some file systems cannot flush one, and after the rename there is
// no old file left to go back to.
void FlushFolderOf(const std::string& path) {
  const std::string folder = FolderPart(path);
  const Descriptor opened(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) FlushFully(opened.Number());
}

bool Rename(const std::string& from, const std::string& to) {
  int result = 0;
  do {
    result = SystemFileCalls().rename(from.c_str(), to.c_str());
  } while (result != 0 && errno == EINTR);
  if (result == 0) FlushFolderOf(to);
  return result == 0;
}

// A new file beside `target`, under a name nobody has. Leftovers of a crash are passed over.
Descriptor CreateBeside(const std::string& target, mode_t mode, std::string& name) {
  const std::string owner = std::to_string(getpid());
  for (int number = 0; number < kMostNames; ++number) {
    name = FolderPart(target);
    name.append(".daybrix-").append(owner).append("-").append(std::to_string(number)).append(".tmp");
    Descriptor created(open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (created.IsOpen() || (errno != EEXIST && errno != EINTR)) return created;
  }
  return Descriptor();
}

bool WriteWhole(int descriptor, const void* data, std::size_t size) {
  bool failed = false;
  return WriteFully(descriptor, data, size, 0, failed) == size && FlushFully(descriptor);
}

}  // namespace

bool FileExists(const std::string& path) {
  struct stat about = {};
  return stat(path.c_str(), &about) == 0;
}

std::string ResolvedPath(const std::string& path) {
  std::string resolved = path;
  for (int followed = 0; followed < kMostLinks; ++followed) {
    std::array<char, PATH_MAX> target;
    const ssize_t length = readlink(resolved.c_str(), target.data(), target.size());
    if (length <= 0) return resolved;
    const std::string next(target.data(), static_cast<std::size_t>(length));
    // The name itself gives way to what the link says, and the folder too where that is a full path.
    resolved.resize(next.front() == '/' ? 0 : FolderPart(resolved).size());
    resolved += next;
  }
  return path;
}

bool ReplaceFile(const std::string& path, const void* data, std::size_t size) {
  const std::string target = ResolvedPath(path);
  struct stat old = {};
  const bool exists = stat(target.c_str(), &old) == 0;
  // A rename asks for no right on the old file, but who may not write a file may not replace it either.
  if (exists && (!S_ISREG(old.st_mode) || access(target.c_str(), W_OK) != 0)) return false;

  // Created with no more rights than the old file, so that a private text is never open to others.
  const mode_t mode = exists ? old.st_mode & 0777 : 0644;
  std::string name;
  Descriptor created = CreateBeside(target, mode, name);
  if (!created.IsOpen()) return false;
  // Gives back what the process's mask took away. A file system that knows no rights may refuse.
  if (exists) fchmod(created.Number(), mode);
  const bool written = WriteWhole(created.Number(), data, size);
  created.Close();
  if (written && Rename(name, target)) return true;
  unlink(name.c_str());
  return false;
}

bool RenameFile(const std::string& from, const std::string& to) {
  const std::string target = ResolvedPath(to);
  struct stat old = {};
  if (stat(target.c_str(), &old) == 0) {
    if (!S_ISREG(old.st_mode)) return false;
    if (chmod(from.c_str(), old.st_mode & 0777) != 0 && errno == ENOENT) return false;
  }
  return Rename(from, target);
}

bool RemoveFile(const std::string& path) {
  return unlink(path.c_str()) == 0;
}

bool ReadWholeFile(const std::string& path, std::size_t limit, std::string& content) {
  content.clear();
  Descriptor opened;
  if (OpenRegular(path, O_RDONLY, 0, opened) != FileResult::kDone) return false;
  bool failed = false;
  std::size_t had = 0;
  // Reads until nothing comes rather than by the size, which may change meanwhile; one byte over the limit
  // tells that there is more.
  do {
    had = content.size();
    const std::size_t step = std::min(kChunk - 1, limit - had) + 1;
    content.resize(had + step);
    content.resize(
        had + ReadFully(opened.Number(), content.data() + had, step, static_cast<std::int64_t>(had), failed));
  } while (!failed && content.size() > had && content.size() <= limit);
  if (!failed && content.size() <= limit) return true;
  content.clear();
  return false;
}

bool MakeFolder(const std::string& path) {
  // Whether a level was there, was made or cannot be made shows in the end.
  for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
    mkdir(path.substr(0, end).c_str(), 0777);
  }
  mkdir(path.c_str(), 0777);
  struct stat about = {};
  return stat(path.c_str(), &about) == 0 && S_ISDIR(about.st_mode);
}

}  // namespace platform
