#include "platform/system/lock_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <thread>
#include <utility>

#include "platform/system/clock.h"
#include "platform/system/descriptor.h"

namespace platform {
namespace {

constexpr int kRenewMs = 3000;
constexpr int kFirstLookMs = 20;  // a guard is mostly free again before
constexpr int kLookMs = 100;
constexpr int kLongestPauseMs = 16;
constexpr std::size_t kLongestLine = 1024;
constexpr int kMostClaims = 9;

int patience = 2000;

// The others see that nothing happens also while this machine sleeps.
std::int64_t NowMs() {
  return SystemFileCalls().nowMs();
}

std::string Word(const std::string& file) {
  std::string text;
  ReadWholeFile(file, kLongestLine, text);
  return text.substr(0, text.find_first_of(" \n"));
}

// This run of this machine, and the view of its processes that a container has: only there does a process
// number mean anything.
std::string Machine() {
  std::array<char, 64> processes = {};
  if (readlink("/proc/self/ns/pid", processes.data(), processes.size() - 1) < 0) return "-";
  const std::string boot = Word("/proc/sys/kernel/random/boot_id");
  return boot.empty() ? "-" : boot + "/" + processes.data();
}

// When a process began, in ticks of the machine: its number may have been given to another one. Empty when
// there is no such process.
std::string StartOf(const std::string& process) {
  std::string text;
  if (!ReadWholeFile("/proc/" + process + "/stat", kLongestLine, text)) return "";
  // The second word is a name that may have blanks; the twentieth after its bracket is the start.
  std::istringstream words(text.substr(text.rfind(')') + 1));
  std::string word;
  for (int i = 0; i < 20; ++i) words >> word;
  return word;
}

// The last words of this process's lines. Asked again after a fork.
const std::string& Self() {
  static pid_t process = 0;
  static std::string words;
  if (process != getpid()) {
    process = getpid();
    words = Machine() + " " + StartOf("self");
  }
  return words;
}

std::string Line(const std::string& token, std::uint32_t beat) {
  std::array<char, 256> host = {};
  if (gethostname(host.data(), host.size() - 1) != 0 || host[0] == '\0') host = {"-"};
  const LocalTime now = Now();
  std::array<char, 96> rest;
  std::snprintf(rest.data(), rest.size(), " %d %04d-%02d-%02dT%02d:%02d:%02d %s %08x ", getpid(), now.year,
                now.month, now.day, now.hour, now.minute, now.second, token.c_str(),
                static_cast<unsigned>(beat));
  return std::string(host.data()) + rest.data() + Self() + "\n";
}

// What is seen of a lock file or a claim.
struct Sight {
  bool there = false;
  std::string line;  // empty also where it may not be read or is no file
  std::int64_t changed = 0;
};

bool SameLock(const Sight& one, const Sight& other) {
  return one.there && other.there && one.line == other.line &&
         (!one.line.empty() || one.changed == other.changed);
}

Sight LookAt(const std::string& path) {
  Sight sight;
  struct stat about = {};
  sight.there = lstat(path.c_str(), &about) == 0;  // whatever has the name is in the way
  sight.changed = about.st_mtim.tv_sec * std::int64_t{1000000000} + about.st_mtim.tv_nsec;
  ReadWholeFile(path, kLongestLine, sight.line);
  return sight;
}

// Whether it has been like this for so long that nobody can be at work.
bool IsStill(const std::string& path, const Sight& sight) {
  struct Memory {
    Sight sight;
    std::int64_t since = 0;
  };
  static std::map<std::string, Memory> seen;
  Memory& memory = seen[path];
  if (!SameLock(memory.sight, sight)) memory = {sight, NowMs()};
  return NowMs() - memory.since >= kAbandonedMs;
}

// Whether it was made by a process of this machine that has ended.
bool IsByTheDead(const Sight& sight) {
  std::istringstream words(sight.line);
  std::string host;
  std::string process;
  std::string time;
  std::string token;
  std::string beat;
  std::string machine;
  std::string start;
  words >> host >> process >> time >> token >> beat >> machine >> start;
  const int number = std::atoi(process.c_str());
  if (start.empty() || number <= 0 || machine == "-" || machine != Machine()) return false;
  if (kill(number, 0) != 0 && errno == ESRCH) return true;
  const std::string itsStart = StartOf(process);
  return !itsStart.empty() && itsStart != start;
}

// Where the token tells the lock from all others, the name of the file is left out: it may be so long that
// there is no room for more.
std::string ClaimPath(const std::string& lockPath, const Sight& sight, int number) {
  std::istringstream words(sight.line);
  std::string word;
  std::string token;
  std::string beat;
  words >> word >> word >> word >> token >> beat;
  const bool sound = token.size() == 32 && beat.size() == 8 &&
                     (token + beat).find_first_not_of("0123456789abcdef") == std::string::npos;
  const std::string own = lockPath.substr(0, lockPath.rfind('/') + 1) + "." + token + "-" + beat + ".guard";
  return (sound ? own : lockPath) + "." + std::to_string(number);
}

bool WriteLine(int descriptor, const std::string& line) {
  bool failed = false;
  return WriteFully(descriptor, line.data(), line.size(), 0, failed) == line.size();
}

// A claim says whose it is, as a lock file does. One that could not say is as good.
bool CreateClaim(const std::string& path) {
  const Descriptor created(SystemFileCalls().createNew(path.c_str(), 0666));
  if (created.IsOpen()) WriteLine(created.Number(), Line(RandomName(), 0));
  return created.IsOpen();
}

void Remove(const std::string& path) {
  SystemFileCalls().remove(path.c_str());
}

// Does something to a lock file that is still as it was seen, as the only one who may. False when it is not,
// or when another has the claim.
bool WithClaim(const std::string& lockPath, const Sight& sight, const std::function<bool()>& act) {
  const std::int64_t start = NowMs();
  int number = 1;
  while (!CreateClaim(ClaimPath(lockPath, sight, number))) {
    if (errno != EEXIST) return false;
    const std::string claim = ClaimPath(lockPath, sight, number);
    const Sight its = LookAt(claim);
    if ((!IsStill(claim, its) && !IsByTheDead(its)) || ++number > kMostClaims) return false;
  }
  const bool same = SameLock(LookAt(lockPath), sight);
  const bool inTime = NowMs() - start < kTrustMs;
  const bool done = same && inTime && act();
  // One's own goes last, so that nobody begins at the first number while the lock file is there. Who is late
  // may have been passed over, and leaves them.
  if (!same || inTime) {
    for (int i = 1; i <= number; ++i) Remove(ClaimPath(lockPath, sight, i));
  }
  return done;
}

bool RemoveAbandoned(const std::string& lockPath) {
  const Sight sight = LookAt(lockPath);
  if (!sight.there) return true;
  if (!IsStill(lockPath, sight) && !IsByTheDead(sight)) return false;
  return WithClaim(lockPath, sight, [&] { return SystemFileCalls().remove(lockPath.c_str()) == 0; });
}

}  // namespace

void SetGuardPatience(int milliseconds) {
  patience = milliseconds;
}

int GuardPatience() {
  return patience;
}

std::string LockFilePath(const std::string& target) {
  const std::string file = ResolvedPath(target);
  const std::size_t name = file.rfind('/') + 1;
  return file.substr(0, name) + "." + file.substr(name) + ".guard";
}

LockFile& LockFile::operator=(LockFile&& other) noexcept {
  if (this != &other) {
    Release();
    path = std::exchange(other.path, {});
    line = std::move(other.line);
    token = std::move(other.token);
    beat = other.beat;
    since = other.since;
  }
  return *this;
}

bool LockFile::Create(const std::string& lockPath) {
  const std::int64_t start = NowMs();
  Descriptor created(SystemFileCalls().createNew(lockPath.c_str(), 0666));
  if (!created.IsOpen()) return false;
  path = lockPath;
  token = RandomName();
  beat = 0;
  line = Line(token, beat);
  since = start;
  // On a full disk it holds without a line, so that records can be deleted there: others go by its time.
  if (WriteLine(created.Number(), line) || IsDiskFull(errno)) return true;
  Release();
  errno = EIO;
  return false;
}

GuardResult LockFile::Take(const std::string& target, int waitMs) {
  const std::string lockPath = LockFilePath(target);
  const std::int64_t deadline = TickMs() + waitMs;
  std::int64_t nextLook = TickMs() + kFirstLookMs;
  int pause = 1;
  while (!Create(lockPath)) {
    if (errno == ENOENT || errno == ENOTDIR) return GuardResult::kGone;
    if (errno != EEXIST && errno != EINTR) return GuardResult::kFailed;
    const bool looks = TickMs() >= nextLook;
    const bool removed = looks && RemoveAbandoned(lockPath);
    if (TickMs() >= deadline) return GuardResult::kBusy;
    if (looks) nextLook = TickMs() + kLookMs;
    if (removed) continue;
    // Longer and longer, and of different lengths, or two that wait would meet again and again.
    pause = std::min(2 * pause, kLongestPauseMs);
    std::this_thread::sleep_for(std::chrono::microseconds(pause * 500 + RandomName()[0] % 16 * pause * 50));
  }
  return GuardResult::kHeld;
}

bool LockFile::Keep() {
  if (!IsHeld()) return false;
  const std::int64_t start = NowMs();
  const bool trusted = start - since < kTrustMs;
  if (start - since < kRenewMs) return true;
  const std::string renewed = Line(token, beat + 1);
  const auto write = [&] {
    const Descriptor opened(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    return opened.IsOpen() && WriteLine(opened.Number(), renewed);
  };
  if (trusted ? write() : WithClaim(path, {true, line, 0}, write)) {
    ++beat;
    line = renewed;
    since = start;
    return NowMs() - start < kTrustMs;
  }
  if (!trusted) path.clear();  // whoever has it now gives it back
  return trusted;
}

void LockFile::Release() {
  if (!IsHeld()) return;
  const std::string lockPath = std::exchange(path, {});
  const auto remove = [&] { return SystemFileCalls().remove(lockPath.c_str()) == 0; };
  if (NowMs() - since < kTrustMs) {
    remove();
  } else {
    WithClaim(lockPath, {true, line, 0}, remove);
  }
}

}  // namespace platform
