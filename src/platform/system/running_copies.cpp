#include "platform/system/running_copies.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system/descriptor.h"

namespace platform {
namespace {

constexpr std::string_view kSocketStem = "copy-";
constexpr std::string_view kSocketEnding = ".sock";
constexpr std::size_t kLongestSocketName = 40;
constexpr int kMostSockets =
    100;  // for one process id: leftovers of the dead, or containers that share the folder
constexpr ByteLock kHold = {0, F_WRLCK, 0};

// A notice on its way. Both ends are on one machine, so the number is in its own order.
struct Datagram {
  std::int32_t code;
};
static_assert(sizeof(Datagram) == 4);

// Makes the folder if need be and makes sure that it is the user's alone: in /tmp anybody could have put
// something of that name before.
bool IsOwnFolder(const std::string& path) {
  mkdir(path.c_str(), 0700);
  struct stat about = {};
  if (lstat(path.c_str(), &about) != 0 || !S_ISDIR(about.st_mode) || about.st_uid != geteuid()) return false;
  return (about.st_mode & 0777) == 0700 || chmod(path.c_str(), 0700) == 0;
}

// A socket's address has little room, so a folder too long for it will not do.
bool HasRoomForSockets(const std::string& folder) {
  return folder.size() + 1 + kLongestSocketName < sizeof(sockaddr_un::sun_path);
}

// The runtime folder, or an empty string. A variable that names no usable place is as good as none.
std::string RuntimeFolder() {
  const char* given = std::getenv("XDG_RUNTIME_DIR");
  if (given != nullptr && given[0] == '/') {
    std::string folder = std::string(given) + "/daybrix";
    if (HasRoomForSockets(folder) && IsOwnFolder(folder)) return folder;
  }
  std::string folder = "/tmp/daybrix-" + std::to_string(geteuid());
  return IsOwnFolder(folder) ? folder : std::string();
}

sockaddr_un AddressOf(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.data(), std::min(path.size(), sizeof(address.sun_path) - 1));
  return address;
}

bool IsSocketName(std::string_view name) {
  return name.starts_with(kSocketStem) && name.ends_with(kSocketEnding) && name.size() <= kLongestSocketName;
}

std::map<std::string, Descriptor>& HeldInstances() {
  static std::map<std::string, Descriptor> held;
  return held;
}

std::vector<std::string> SocketsIn(const std::string& folder) {
  std::vector<std::string> paths;
  DIR* listing = opendir(folder.c_str());
  if (listing == nullptr) return paths;
  while (const dirent* entry = readdir(listing)) {
    if (IsSocketName(entry->d_name)) paths.push_back(folder + '/' + entry->d_name);
  }
  closedir(listing);
  return paths;
}

}  // namespace

bool HoldsInstance(const std::string& name) {
  return HeldInstances().contains(name);
}

bool HoldInstance(const std::string& name) {
  if (HoldsInstance(name)) return true;
  const std::string folder = RuntimeFolder();
  if (folder.empty() || name.empty() || name.find('/') != std::string::npos) return false;
  Descriptor lock;
  const std::string path = folder + '/' + name + ".lock";
  if (OpenLocked(path, O_RDWR | O_CREAT, 0600, kHold, lock) != FileResult::kDone) return false;
  // The sticky bit tells those who tidy runtime folders to leave the file alone; a second copy could start if
  // not.
  fchmod(lock.Number(), S_ISVTX | 0600);
  HeldInstances().emplace(name, std::move(lock));
  return true;
}

RunningCopies::~RunningCopies() {
  if (descriptor < 0) return;
  unlink(path.c_str());
  close(descriptor);
}

bool RunningCopies::Open() {
  if (descriptor >= 0) return true;
  const std::string folder = RuntimeFolder();
  if (folder.empty()) return false;
  platform::Descriptor opened(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!opened.IsOpen()) return false;
  const std::string stem = folder + '/' + std::string(kSocketStem) + std::to_string(getpid()) + '-';
  for (int number = 0; number < kMostSockets; ++number) {
    path = stem + std::to_string(number) + std::string(kSocketEnding);
    const sockaddr_un address = AddressOf(path);
    if (bind(opened.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
      descriptor = opened.Release();
      return true;
    }
    if (errno != EADDRINUSE) return false;
  }
  return false;
}

void RunningCopies::Broadcast(std::int32_t code) {
  if (descriptor < 0) return;
  const Datagram datagram = {code};
  const std::string folder = path.substr(0, path.rfind('/'));
  for (const std::string& receiver : SocketsIn(folder)) {
    if (receiver == path) continue;
    const sockaddr_un address = AddressOf(receiver);
    ssize_t sent = 0;
    do {
      sent = sendto(descriptor, &datagram, sizeof(datagram), MSG_DONTWAIT | MSG_NOSIGNAL,
                    reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    } while (sent < 0 && errno == EINTR);
    if (sent < 0 && errno == ECONNREFUSED) unlink(receiver.c_str());
  }
}

bool RunningCopies::Others() const {
  if (descriptor < 0) return false;
  for (const std::string& other : SocketsIn(path.substr(0, path.rfind('/')))) {
    if (other == path) continue;
    // Nobody answers at the socket of a copy that died.
    const platform::Descriptor probe(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const sockaddr_un address = AddressOf(other);
    if (connect(probe.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
      return true;
  }
  return false;
}

bool RunningCopies::Receive(std::int32_t& code) {
  if (descriptor < 0) return false;
  for (;;) {
    Datagram datagram = {};
    // With MSG_TRUNC the whole length is told, also of one that is too long.
    const ssize_t length = recv(descriptor, &datagram, sizeof(datagram), MSG_DONTWAIT | MSG_TRUNC);
    if (length < 0 && errno != EINTR) return false;
    if (length != static_cast<ssize_t>(sizeof(datagram))) continue;
    code = datagram.code;
    return true;
  }
}

}  // namespace platform
