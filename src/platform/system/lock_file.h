// The guard of a file whose byte-range locks do not reach everybody (lock_reach.h): a lock file beside it,
// made with O_CREAT and O_EXCL, which every shared file system does in one step.
//
// A lock file holds one line: host, process, time, a random token and a count that its holder raises while it
// works. One that has not changed for kAbandonedMs, by the clock of who waits for it, was left by a holder
// that is gone, and is taken away; at once where the line names this machine and a process of it that has
// ended. A holder that was stopped for longer than kTrustMs trusts its lock no more.
//
// Who takes a lock file away that is not his own first makes the *claim* of just this lock: a file with its
// token and count in the name, again with O_EXCL. So there is one taker, and under the claim he reads the
// lock file once more. Whoever has the claim second finds another line and leaves it alone, for the old one
// never comes back; a holder who is late needs the claim of his own lock, too, to renew it or to give it
// back. A claim that its taker left is passed over in the same way, by one with the next number. What remains
// is a taker that is stopped, for longer than kTrustMs, between two system calls: between looking at the
// clock and unlinking.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/system/file.h"

namespace platform {

inline constexpr int kAbandonedMs = 30000;
inline constexpr int kTrustMs = 10000;

class LockFile {
 public:
  LockFile() = default;
  ~LockFile() { Release(); }
  LockFile(LockFile&& other) noexcept { *this = std::move(other); }
  LockFile& operator=(LockFile&& other) noexcept;
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;

  // Takes the guard of the file that `target` names, waiting so many milliseconds. It must not be held.
  GuardResult Take(const std::string& target, int waitMs);

  // To be called before each step of what needs the guard: renews it from time to time. False when it is not
  // held, or may be somebody else's by now; nothing may be written then.
  bool Keep();

  void Release();
  bool IsHeld() const { return !path.empty(); }

 private:
  bool Create(const std::string& lockPath);

  std::string path;  // empty while it is not held
  std::string line;  // its content
  std::string token;
  std::uint32_t beat = 0;
  std::int64_t since = 0;  // when it was made or renewed
};

// The name of the lock file of the file that `target` names.
std::string LockFilePath(const std::string& target);

// How long takers of a guard wait from here on; two seconds before. For a program that nobody watches at a
// window, which can wait until an abandoned lock file is known for one.
void SetGuardPatience(int milliseconds);
int GuardPatience();

}  // namespace platform
