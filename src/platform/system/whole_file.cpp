// The part of file.h that deals with paths and whole files.
#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/system/clock.h"
#include "platform/system/descriptor.h"
#include "platform/system/file.h"
#include "platform/system/file_rights.h"

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
  Descriptor folder;
  if (OpenFolderOf(path, folder)) FlushFully(folder.Number());
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

// Writes a file beside `target` and makes `publish` give it that name. `old` is the file there, or another
// one whose rights the new one gets, if any is open; it is closed, because an open file would have to be
// hidden on some file systems. When that fails, errno tells why.
bool WriteBeside(const std::string& target, Descriptor old, const void* data, std::size_t size,
                 bool (*publish)(const std::string& from, const std::string& to)) {
  // Created with no more rights than the old file, so that a private text is never open to others.
  std::string name;
  Descriptor created = CreateBeside(target, old.IsOpen() ? 0600 : 0666, name);
  if (!created.IsOpen()) return false;
  const bool allowed = !old.IsOpen() || PassOnRights(old.Number(), created.Number());
  old.Close();
  bool failed = false;
  const bool written =
      allowed && WriteFully(created.Number(), data, size, 0, failed) == size && FlushFully(created.Number());
  int why = errno;
  created.Close();
  if (written && publish(name, target)) return true;
  if (written) why = errno;
  unlink(name.c_str());
  errno = why;
  return false;
}

}  // namespace

Descriptor CreateBeside(const std::string& target, unsigned mode, std::string& name) {
  const std::string owner = std::to_string(getpid());
  for (int number = 0; number < kMostNames; ++number) {
    name = FolderPart(target);
    name.append(".daybrix-").append(owner).append("-").append(std::to_string(number)).append(".tmp");
    Descriptor created(open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (created.IsOpen() || (errno != EEXIST && errno != EINTR)) return created;
  }
  return Descriptor();
}

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
  // A rename asks for no right on the old file, but who may not write a file may not replace it either.
  Descriptor old;
  const FileResult opened = OpenRegular(target, O_WRONLY, 0, old);
  if (opened != FileResult::kDone && opened != FileResult::kMissing) return false;
  return WriteBeside(target, std::move(old), data, size, Rename);
}

FileResult WriteNewFile(const std::string& path, const void* data, std::size_t size,
                        const std::string& beside) {
  // Held, because a file that is being replaced is missing for an instant on some file systems.
  File held;
  const FileResult hold = held.HoldPath(path);
  if (held.IsOpen() || FileExists(path)) return FileResult::kExists;
  if (hold != FileResult::kDone) return hold;
  Descriptor like;
  if (!beside.empty()) OpenRegular(beside, O_RDONLY, 0, like);
  if (WriteBeside(ResolvedPath(path), std::move(like), data, size, RenameNew)) return FileResult::kDone;
  const FileResult why = ResultOfError(errno);
  return FileExists(path) ? FileResult::kExists : why;
}

bool MakePrivateFile(const std::string& path) {
  Descriptor opened;
  return OpenRegular(path, O_RDWR | O_CREAT, 0600, opened) == FileResult::kDone &&
         fchmod(opened.Number(), 0600) == 0;
}

bool RenameFile(const std::string& from, const std::string& to) {
  const std::string target = ResolvedPath(to);
  Descriptor old;
  Descriptor taking;
  const FileResult opened = OpenRegular(target, O_RDONLY, 0, old);
  if (opened != FileResult::kMissing &&
      (opened != FileResult::kDone || OpenRegular(from, O_RDONLY, 0, taking) != FileResult::kDone ||
       !PassOnRights(old.Number(), taking.Number()))) {
    return false;
  }
  // On some file systems one that is open has to be hidden before it is replaced.
  old.Close();
  return Rename(from, target);
}

bool RenameNewFile(const std::string& from, const std::string& to) {
  return !FileExists(to) && RenameNew(from, to);
}

bool File::TakeRightsOf(const File& other) {
  return IsOpen() && other.IsOpen() && PassOnRights(other.descriptor, descriptor);
}

bool RemoveFile(const std::string& path) {
  return unlink(path.c_str()) == 0;
}

std::string RandomName() {
  std::array<unsigned char, 16> bytes = {};
  // Short of random bits, the moment and the process still tell one lock from the next.
  if (getrandom(bytes.data(), bytes.size(), GRND_NONBLOCK) != static_cast<ssize_t>(bytes.size())) {
    const std::int64_t moment = TickMs();
    const pid_t process = getpid();
    std::memcpy(bytes.data(), &moment, sizeof moment);
    std::memcpy(bytes.data() + sizeof moment, &process, sizeof process);
  }
  std::string token;
  for (const unsigned char byte : bytes) {
    token += "0123456789abcdef"[byte / 16];
    token += "0123456789abcdef"[byte % 16];
  }
  return token;
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
