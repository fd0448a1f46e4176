// A second process for tests of what copies of the program do to each other: a fork that runs a function.
#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <utility>

namespace tests {

class ChildProcess {
 public:
  // Tells the parent, from inside the child, that its Ready() may return.
  using Signal = std::function<void()>;

  // `body` runs in the child, and what it returns is the child's exit code. Failed expectations in it are
  // printed but do not reach the parent: return them.
  explicit ChildProcess(const std::function<int(const Signal& ready)>& body) {
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0) return;
    process = fork();
    if (process == 0) {
      close(ends[0]);
      const int code = body([&ends] { [[maybe_unused]] const ssize_t sent = write(ends[1], "r", 1); });
      _exit(code);
    }
    close(ends[1]);
    signal = ends[0];
  }
  ~ChildProcess() {
    Kill();
    close(signal);
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Waits until the child signalled. False when it ended without.
  bool Ready() const {
    char mark = 0;
    ssize_t got = 0;
    do {
      got = read(signal, &mark, 1);
    } while (got < 0 && errno == EINTR);
    return got == 1;
  }

  // Waits for the end and answers the exit code; -1 when the child was killed or never was.
  int ExitCode() {
    if (process <= 0) return -1;
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  // Asks the child to end.
  void Stop() const {
    if (process > 0) kill(process, SIGTERM);
  }

  // Ends the child without giving it a chance to tidy up.
  void Kill() {
    if (process > 0) kill(process, SIGKILL);
    ExitCode();
  }

 private:
  pid_t process = -1;
  int signal = -1;
};

// How a child ends that is to be killed in the middle of things.
inline int UntilKilled() {
  for (;;) pause();
}

// Runs a function in a process that has the rights of nobody where the tests run as the superuser, whom no
// permission stops. Answers the function's result.
inline int RunUnprivileged(const std::function<int()>& body) {
  constexpr uid_t kNobody = 65534;
  ChildProcess child([&body](const ChildProcess::Signal&) {
    const bool changed = geteuid() != 0 || (setresgid(kNobody, kNobody, kNobody) == 0 &&
                                            setresuid(kNobody, kNobody, kNobody) == 0);
    return changed ? body() : -1;
  });
  return child.ExitCode();
}

}  // namespace tests
