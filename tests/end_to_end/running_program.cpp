#include "end_to_end/running_program.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "end_to_end/confinement.h"
#include "platform/system/file.h"
#include "platform/system/profile_file.h"
#include "support/source_folder.h"
#include "support/wait_until.h"

namespace tests {
namespace {

// Nobody waits for the splash screen.
void HideSplash(const std::string& folder) {
  platform::WriteProfileString(folder + "/Daybrix.ini", "Preference", "Splash", "0");
}

}  // namespace

RunningProgram::RunningProgram(const std::string& display, const std::string& program,
                               const std::string& file, const std::function<void()>& prepare) {
  process = fork();
  if (process != 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  setenv("DISPLAY", display.c_str(), 1);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  unsetenv("WAYLAND_DISPLAY");
  // Of use to a sanitized build only.
  setenv("LSAN_OPTIONS", ("suppressions=" + tests::SourceFolder() + "/tests/support/leaks.supp").c_str(), 1);
  prepare();
  execl(program.c_str(), program.c_str(), file.empty() ? nullptr : file.c_str(), nullptr);
  _exit(127);
}

RunningProgram::RunningProgram(const std::string& display, const std::string& folder, const std::string& file,
                               const std::string& clock)
    : RunningProgram(display, TEMPOLINE, file, [&] {
        HideSplash(folder);
        setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
        setenv("DAYBRIX_FOLDER", folder.c_str(), 1);
        clock.empty() ? unsetenv("DAYBRIX_CLOCK") : setenv("DAYBRIX_CLOCK", clock.c_str(), 1);
      }) {}

RunningProgram RunningProgram::Installed(const std::string& display, const std::string& program,
                                         const std::string& home) {
  return RunningProgram(display, program, "", [&] {
    platform::MakeFolder(home + "/.local/share/daybrix");
    HideSplash(home + "/.local/share/daybrix");
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    for (const char* name : {"DAYBRIX_FOLDER", "XDG_DATA_HOME"}) unsetenv(name);
    setenv("DAYBRIX_CLOCK", "2004-03-14T10:43:12", 1);
  });
}

RunningProgram RunningProgram::Confined(const std::string& display, const std::string& folder,
                                        const std::string& file) {
  return RunningProgram(display, TEMPOLINE, file, [&] {
    HideSplash(folder);
    for (const char* name : {"HOME", "XDG_RUNTIME_DIR", "DAYBRIX_FOLDER", "TMPDIR"})
      setenv(name, folder.c_str(), 1);
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) unsetenv(name);
    setenv("PATH", (folder + "/bin").c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    setenv("DAYBRIX_CLOCK", "2004-03-14T10:43:12", 1);
    if (chdir(folder.c_str()) != 0 || !ConfineTo(folder)) _exit(126);
  });
}

RunningProgram::~RunningProgram() {
  Kill();
}

int RunningProgram::Close() {
  if (process <= 0) return -1;
  kill(process, SIGTERM);
  return ExitCode();
}

void RunningProgram::Kill() {
  if (process <= 0) return;
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
  process = -1;
}

int RunningProgram::ExitCode() {
  if (process <= 0) return -1;
  int status = 0;
  if (!WaitUntil([&] { return waitpid(process, &status, WNOHANG) == process; }, 10000)) {
    Kill();
    return -1;
  }
  process = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace tests
