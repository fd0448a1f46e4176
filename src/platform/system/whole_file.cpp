// The part of file.h that deals with paths and whole files.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string_view>

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

using NameCall = int (*)(const char* from, const char* to);

// Makes one of the calls that give a file a name, through signals.
bool GiveName(NameCall call, const std::string& from, const std::string& to) {
  int result = 0;
  do {
    result = call(from.c_str(), to.c_str());
  } while (result != 0 && errno == EINTR);
  if (result == 0) FlushFolderOf(to);
  return result == 0;
}

bool Rename(const std::string& from, const std::string& to) {
  return GiveName(SystemFileCalls().rename, from, to);
}

// Some file systems know no such rename, and some of those know links.
bool RenameNew(const std::string& from, const std::string& to) {
  if (GiveName(SystemFileCalls().renameNew, from, to)) return true;
  if (GiveName(SystemFileCalls().link, from, to)) {
    unlink(from.c_str());
    return true;
  }
  return errno != EEXIST && !FileExists(to) && Rename(from, to);
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

// Gives a new file the owner, the group and the rights of the one whose place it is to take; others who share
// the file would be locked out of it if not. The system may refuse owner and group, and a file system may
// know no rights. The rights come last: the process's mask and a change of owner take some away.
void TakeAfter(int descriptor, const struct stat& old) {
  const bool owned = fchown(descriptor, old.st_uid, old.st_gid) == 0;
  [[maybe_unused]] const bool grouped = owned || fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0;
  fchmod(descriptor, old.st_mode & 0777);
}

// Writes a file beside `target` and makes `publish` give it that name. `old` is the file there, if any.
bool WriteBeside(const std::string& target, const struct stat* old, const void* data, std::size_t size,
                 bool (*publish)(const std::string& from, const std::string& to)) {
  // Created with no more rights than the old file, so that a private text is never open to others.
  std::string name;
  Descriptor created = CreateBeside(target, old != nullptr ? old->st_mode & 0777 : 0666, name);
  if (!created.IsOpen()) return false;
  if (old != nullptr) TakeAfter(created.Number(), *old);
  bool failed = false;
  const bool written =
      WriteFully(created.Number(), data, size, 0, failed) == size && FlushFully(created.Number());
  created.Close();
  if (written && publish(name, target)) return true;
  unlink(name.c_str());
  return false;
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

std::string FullPath(const std::string& path) {
  std::string whole = path;
  std::array<char, PATH_MAX> current;
  // Without a current folder the path stays as it is and leads nowhere.
  if (!path.starts_with('/') && getcwd(current.data(), current.size()) != nullptr) {
    whole = std::string(current.data()) + "/" + path;
  }
  std::string full;
  for (std::size_t at = 0; at < whole.size();) {
    const std::size_t end = std::min(whole.find('/', at), whole.size());
    const std::string part = whole.substr(at, end - at);
    if (!part.empty() && part != ".") full.append("/").append(part);
    at = end + 1;
  }
  return full.empty() ? "/" : full;
}

bool ReplaceFile(const std::string& path, const void* data, std::size_t size) {
  const std::string target = ResolvedPath(path);
  struct stat old = {};
  const bool exists = stat(target.c_str(), &old) == 0;
  // A rename asks for no right on the old file, but who may not write a file may not replace it either.
  if (exists && (!S_ISREG(old.st_mode) || access(target.c_str(), W_OK) != 0)) return false;
  return WriteBeside(target, exists ? &old : nullptr, data, size, Rename);
}

bool WriteNewFile(const std::string& path, const void* data, std::size_t size) {
  return !FileExists(path) && WriteBeside(ResolvedPath(path), nullptr, data, size, RenameNew);
}

bool RenameFile(const std::string& from, const std::string& to) {
  const std::string target = ResolvedPath(to);
  struct stat old = {};
  if (stat(target.c_str(), &old) == 0) {
    const Descriptor opened(open(from.c_str(), O_RDONLY | O_CLOEXEC));
    if (!S_ISREG(old.st_mode) || !opened.IsOpen()) return false;
    TakeAfter(opened.Number(), old);
  }
  return Rename(from, target);
}

bool RenameNewFile(const std::string& from, const std::string& to) {
  return !FileExists(to) && RenameNew(from, to);
}

void File::TakeRightsOf(const File& other) {
  struct stat old = {};
  if (IsOpen() && other.IsOpen() && fstat(other.descriptor, &old) == 0) TakeAfter(descriptor, old);
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
  std::array<char, kChunk> chunk;
  do {
    had = content.size();
    const std::size_t step = std::min(kChunk - 1, limit - had) + 1;
    content.append(chunk.data(),
                   ReadFully(opened.Number(), chunk.data(), step, static_cast<std::int64_t>(had), failed));
  } while (!failed && content.size() > had && content.size() <= limit);
  if (!failed && content.size() <= limit) return true;
  content.clear();
  return false;
}

std::vector<std::string> ListFolder(const std::string& path) {
  std::vector<std::string> names;
  DIR* const folder = opendir(path.c_str());
  if (folder == nullptr) return names;
  while (const dirent* entry = readdir(folder)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  closedir(folder);
  return names;
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
