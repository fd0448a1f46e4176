// program_benchmark PROGRAM EMPTY_WINDOW CALENDAR: start-up to the first painted window, memory and idle
// processor use of the program, each beside an empty window of the widget library in the same run. Needs a
// display (DISPLAY) without a window manager; scripts/benchmark gives it one.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kStarts = 15;
constexpr int kIdleSeconds = 10;
// Inside both windows, which lie at the screen's corner where nobody places them elsewhere.
constexpr int kProbeX = 200;
constexpr int kProbeY = 12;

struct Running {
  pid_t process;
  double startMs;
};

unsigned long Probe(Display* display) {
  XImage* image = XGetImage(display, DefaultRootWindow(display), kProbeX, kProbeY, 1, 1, AllPlanes, ZPixmap);
  const unsigned long pixel = XGetPixel(image, 0, 0);
  XDestroyImage(image);
  return pixel;
}

void Spin(int ms) {
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

Running Start(Display* display, const std::vector<std::string>& command) {
  const unsigned long background = Probe(display);
  const auto begin = Clock::now();
  const pid_t process = fork();
  if (process == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDERR_FILENO);
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
  }
  while (Probe(display) == background && Clock::now() - begin < std::chrono::seconds(20)) {
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return {process, std::chrono::duration<double, std::milli>(Clock::now() - begin).count()};
}

void End(Display* display, const Running& running, unsigned long background) {
  kill(running.process, SIGTERM);
  waitpid(running.process, nullptr, 0);
  while (Probe(display) != background) Spin(1);
}

// Proportional memory in KiB.
long Memory(pid_t process) {
  std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
  std::string line;
  while (std::getline(rollup, line)) {
    if (line.rfind("Pss:", 0) == 0) return std::stol(line.substr(4));
  }
  return 0;
}

// Processor time used so far, in clock ticks.
long Ticks(pid_t process) {
  std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
  std::stringstream content;
  content << stat.rdbuf();
  std::stringstream fields(content.str().substr(content.str().rfind(')') + 2));
  std::string field;
  long ticks = 0;
  for (int number = 3; number <= 15 && fields >> field; ++number) {
    if (number >= 14) ticks += std::stol(field);
  }
  return ticks;
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

void Row(const char* name, double measured, double reference, const char* unit, double limit) {
  std::printf("%-34s %10.1f %10.1f %-4s %6.2f %6.2f  %s\n", name, measured, reference, unit,
              measured / reference, limit, measured / reference <= limit ? "ok" : "OVER");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: program_benchmark PROGRAM EMPTY_WINDOW CALENDAR\n");
    return 1;
  }
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    std::fprintf(stderr, "program_benchmark: no display\n");
    return 1;
  }
  const std::vector<std::string> program = {argv[1], argv[3]};
  const std::vector<std::string> empty = {argv[2]};
  const unsigned long background = Probe(display);
  std::vector<double> programStarts;
  std::vector<double> emptyStarts;
  for (int turn = 0; turn < kStarts; ++turn) {
    for (const bool ours : {true, false}) {
      const Running running = Start(display, ours ? program : empty);
      (ours ? programStarts : emptyStarts).push_back(running.startMs);
      End(display, running, background);
    }
  }
  std::printf("%-34s %10s %10s %-4s %6s %6s\n", "name", "measured", "reference", "", "ratio", "limit");
  Row("start to first painted window", Median(programStarts), Median(emptyStarts), "ms", 1.5);

  const Running emptyRun = Start(display, empty);
  Spin(1500);
  const long emptyMemory = Memory(emptyRun.process);
  End(display, emptyRun, background);
  const Running run = Start(display, program);
  Spin(1500);
  const long ticks = Ticks(run.process);
  Row("proportional memory", static_cast<double>(Memory(run.process)), static_cast<double>(emptyMemory),
      "KiB", 1.3);
  std::this_thread::sleep_for(std::chrono::seconds(kIdleSeconds));
  const double used =
      static_cast<double>(Ticks(run.process) - ticks) / static_cast<double>(sysconf(_SC_CLK_TCK));
  std::printf("%-34s %9.2f%% %37s %5.2f%%  %s\n", "idle processor use", 100 * used / kIdleSeconds, "", 0.5,
              used / kIdleSeconds <= 0.005 ? "ok" : "OVER");
  End(display, run, background);
  XCloseDisplay(display);
  return 0;
}
