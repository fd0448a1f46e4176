#include "platform/system/program_start.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {

bool StartProgram(const std::string& path) {
  if (access(path.c_str(), X_OK) != 0) return false;
  // Twice, so that the program is no child of this process, which would have to wait for its end.
  const pid_t middle = fork();
  if (middle < 0) return false;
  if (middle == 0) {
    if (fork() != 0) _exit(0);
    setsid();
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    execl(path.c_str(), path.c_str(), nullptr);
    _exit(127);
  }
  waitpid(middle, nullptr, 0);
  return true;
}

}  // namespace platform
