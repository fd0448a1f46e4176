// One running copy of the program.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace tests {

class RunningProgram {
 public:
  // Starts the program on a display with its settings in `folder`; `file` may be empty. `clock` as
  // DAYBRIX_CLOCK takes it, empty for the machine's.
  RunningProgram(const std::string& display, const std::string& folder, const std::string& file,
                 const std::string& clock = "2004-03-14T10:43:12");
  // Starts an installed program for a user with this home folder, at the same moment.
  static RunningProgram Installed(const std::string& display, const std::string& program,
                                  const std::string& home);
  // Starts the program confined to `folder`, which is its user's home and has all programs that it may start
  // in `bin`. Where that cannot be done it ends with 126.
  static RunningProgram Confined(const std::string& display, const std::string& folder,
                                 const std::string& file);
  // Kills it if it still runs.
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  pid_t Process() const { return process; }
  // Asks it to end as a session does and answers its exit code; -1 when it had to be killed.
  int Close();
  void Kill();
  // Waits for an end of its own: the exit code, or 128 and the signal that ended it; -1 when it did not come
  // within 10 s.
  int ExitCode();

 private:
  // `prepare` sets up the environment in the new process.
  RunningProgram(const std::string& display, const std::string& program, const std::string& file,
                 const std::function<void()>& prepare);

  pid_t process = -1;
};

}  // namespace tests
