#include "platform/system/program_start.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
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

bool ProgramRuns(const std::string& path) {
  struct stat wanted = {};
  if (stat(path.c_str(), &wanted) != 0) return false;
  DIR* processes = opendir("/proc");
  if (processes == nullptr) return false;
  bool found = false;
  while (const dirent* process = found ? nullptr : readdir(processes)) {
    if (process->d_name[0] < '1' || process->d_name[0] > '9') continue;
    // By the file rather than by its path, which may be a link.
    struct stat running = {};
    const std::string executable = std::string("/proc/") + process->d_name + "/exe";
    found = stat(executable.c_str(), &running) == 0 && running.st_dev == wanted.st_dev &&
            running.st_ino == wanted.st_ino;
  }
  closedir(processes);
  return found;
}

}  // namespace platform
