#include "end_to_end/confinement.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace tests {
namespace {

constexpr std::uint64_t kReading =
    LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kEverything = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;

bool Allow(int rules, const char* folder, std::uint64_t access) {
  landlock_path_beneath_attr rule{};
  rule.allowed_access = access;
  rule.parent_fd = open(folder, O_PATH | O_CLOEXEC);
  const bool added =
      rule.parent_fd >= 0 && syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
  if (rule.parent_fd >= 0) close(rule.parent_fd);
  return added;
}

// Sockets of the internet cannot be made.
bool CutNetwork() {
  sock_filter steps[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 0, 4),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_INET, 1, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_INET6, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EACCES),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program = {sizeof steps / sizeof steps[0], steps};
  return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace

bool CanConfine() {
  return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) >= 1;
}

bool ConfineTo(const std::string& folder) {
  landlock_ruleset_attr handled{};
  handled.handled_access_fs = kEverything;
  const auto rules = static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0));
  if (rules < 0) return false;
  const bool confined = Allow(rules, "/", kReading) && Allow(rules, folder.c_str(), kEverything) &&
                        Allow(rules, "/dev", kReading | LANDLOCK_ACCESS_FS_WRITE_FILE) &&
                        prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                        syscall(SYS_landlock_restrict_self, rules, 0) == 0 && CutNetwork();
  close(rules);
  return confined;
}

}  // namespace tests
