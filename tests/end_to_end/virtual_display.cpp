#include "end_to_end/virtual_display.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "support/wait_until.h"

namespace tests {

std::string Shell(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  char buffer[256];
  while (fgets(buffer, sizeof buffer, pipe) != nullptr) output += buffer;
  pclose(pipe);
  while (!output.empty() && output.back() == '\n') output.pop_back();
  return output;
}

VirtualDisplay::VirtualDisplay() {
  int ends[2];
  if (pipe(ends) != 0) return;
  server = fork();
  if (server == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that crashes takes its display with it
    close(ends[0]);
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDERR_FILENO);
    const std::string descriptor = std::to_string(ends[1]);
    // Without -noreset it starts anew whenever its last client leaves, and turns away who comes meanwhile.
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-noreset", "-screen", "0", "1024x768x24",
           "-nolisten", "tcp", nullptr);
    _exit(127);
  }
  close(ends[1]);
  // The number comes digit by digit and ends with its line.
  name.assign(1, ':');
  for (char digit = 0; read(ends[0], &digit, 1) == 1 && digit != '\n';) name.push_back(digit);
  close(ends[0]);
  EXPECT_GT(name.size(), 1U) << "Xvfb did not start";
}

VirtualDisplay::~VirtualDisplay() {
  if (server <= 0) return;
  kill(server, SIGTERM);
  waitpid(server, nullptr, 0);
}

std::string VirtualDisplay::Do(const std::string& arguments) const {
  return Shell("DISPLAY=" + name + " xdotool " + arguments + " 2>/dev/null");
}

std::string VirtualDisplay::Windows(pid_t process, const std::string& title) const {
  return Do("search --all --onlyvisible --pid " + std::to_string(process) + " --name '^" + title + "$'");
}

std::string VirtualDisplay::WaitForWindow(pid_t process, const std::string& title) const {
  std::string found;
  EXPECT_TRUE(WaitUntil([&] { return !(found = Windows(process, title)).empty(); }, 15000))
      << "no window " << title;
  return found;
}

void VirtualDisplay::WaitForNoWindow(pid_t process, const std::string& title) const {
  EXPECT_TRUE(WaitUntil([&] { return Windows(process, title).empty(); }, 15000)) << "still there: " << title;
}

void VirtualDisplay::Press(const std::string& window, const std::string& keys) const {
  Do("windowfocus --sync " + window + " key --delay 60 " + keys);
}

void VirtualDisplay::Type(const std::string& window, const std::string& text) const {
  Do("windowfocus --sync " + window + " type --delay 20 '" + text + "'");
}

void VirtualDisplay::Drag(const std::string& window, int x1, int y1, int x2, int y2,
                          const std::string& key) const {
  const auto move = [&](int x, int y) {
    return "mousemove --window " + window + " " + std::to_string(x) + " " + std::to_string(y) + " sleep 0.1 ";
  };
  const std::string press = key.empty() ? "" : "keydown " + key + " ";
  const std::string release = key.empty() ? "" : "keyup " + key;
  Do(press + move(x1, y1) + "mousedown 1 sleep 0.1 " + move((x1 + x2) / 2, (y1 + y2) / 2) + move(x2 - 1, y2) +
     move(x2, y2) + "mouseup 1 sleep 0.1 " + release);
}

std::string VirtualDisplay::Picture(const std::string& window) const {
  return Shell("DISPLAY=" + name + " import -window " + window + " rgb:- 2>/dev/null | cksum");
}

}  // namespace tests
