// A monkey at the keyboard: three copies of the program on one calendar are worked by random keys, clicks and
// drags, while the command line changes the file. Whatever it does, the program answers, ends well and leaves
// a file in order.
//
// DAYBRIX_MONKEY_SECONDS and DAYBRIX_MONKEY_SEED make it longer and another one. The same seed makes the same
// choices as long as the windows come up alike.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <random>
#include <sstream>

#include "core/calendar/appointment.h"
#include "end_to_end/confinement.h"
#include "end_to_end/running_program.h"
#include "end_to_end/virtual_display.h"
#include "end_to_end/x_hands.h"
#include "support/from_environment.h"
#include "support/source_folder.h"
#include "support/temporary_folder.h"
#include "support/wait_until.h"

namespace tests {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kAnswerMs = 30000;  // a copy may wait for a file's lock
constexpr const char* kFrameTitle = "Daybrix";

constexpr const char* kKeys[] = {
    "Tab",    "Tab",    "Up",     "Down",      "Left",   "Right",  "Home", "End",  "Prior", "Next", "space",
    "Return", "Return", "Escape", "BackSpace", "Insert", "Delete", "F1",   "Menu", "a",     "s",    "3"};
constexpr const char* kCommands[] = {"f", "n", "o", "p", "x", "c", "v", "z", "a"};  // with Ctrl
constexpr const char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789 .-,:@ABC";

// The toolkit's own. Clicks and keys could rename and delete files there, the calendar with them: only names
// are typed.
bool ChoosesFile(const std::string& title) {
  constexpr const char* kTitles[] = {"Open", "Save As", "Print", "Print To File ...", "Delete"};
  return title.starts_with("Please select a folder") ||
         std::any_of(std::begin(kTitles), std::end(kTitles),
                     [&](const char* known) { return title == known; });
}

// Kilobytes of the memory that a process has.
long MemoryOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/statm");
  long size = 0;
  long resident = 0;
  file >> size >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

struct Copy {
  std::unique_ptr<RunningProgram> program;
  unsigned long frame = 0;
  bool mayEnd = true;  // whether the monkey may find the way out
};

class Monkey : public testing::Test {
 protected:
  void SetUp() override {
    if (!CanConfine()) GTEST_SKIP() << "this kernel cannot keep a program in a folder (Landlock)";
    std::filesystem::create_directories(folder.Join("bin"));
    const std::string note =
        folder.Write("bin/xdg-open", "#!/bin/sh\necho \"$1\" >>'" + folder.Join("opened") + "'\n");
    std::filesystem::permissions(note, std::filesystem::perms::owner_all);
    std::filesystem::copy(SourceFolder() + "/tests/data/office.cld", calendar);
    Shell(std::string(TEMPOLINE_CLI) + " compact '" + calendar + "'");  // some of its records are locked
    hands = std::make_unique<XHands>(display.Name());
    for (Copy& copy : copies) Start(copy);
    copies[0].mayEnd = false;
  }

  // -- What the monkey does --

  int Below(int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); }
  bool OneIn(int chances) { return Below(chances) == 0; }
  template <typename Choice, std::size_t count>
  const Choice& OneOf(const Choice (&choices)[count]) {
    return choices[Below(static_cast<int>(count))];
  }

  void Note(const std::string& step) {
    steps.push_back(step);
    if (steps.size() > 60) steps.pop_front();
  }
  std::string LastSteps() const {
    std::string text = "seed " + std::to_string(seed) + ", the last steps:\n";
    for (const std::string& step : steps) text += step + '\n';
    return text;
  }

  void Start(Copy& copy) {
    copy.program.reset(new RunningProgram(RunningProgram::Confined(display.Name(), folder.Path(), calendar)));
    Note("start " + std::to_string(copy.program->Process()));
    copy.frame = 0;
    ASSERT_TRUE(WaitUntil([&] { return FindFrame(copy) || !Lives(copy); }, kAnswerMs)) << LastSteps();
    ASSERT_TRUE(Lives(copy)) << "it ended at its start\n" << LastSteps();
  }
  bool FindFrame(Copy& copy) {
    for (const ShownWindow& window : hands->Windows(copy.program->Process())) {
      if (window.title == kFrameTitle && !window.popup) copy.frame = window.id;
    }
    return copy.frame != 0;
  }
  static bool Lives(const Copy& copy) { return kill(copy.program->Process(), 0) == 0 && !Ended(copy); }
  // It has ended, and nobody has asked for its exit code.
  static bool Ended(const Copy& copy) {
    siginfo_t news{};
    waitid(P_PID, static_cast<id_t>(copy.program->Process()), &news, WEXITED | WNOHANG | WNOWAIT);
    return news.si_pid != 0;
  }

  // A point of a window that is not the way out of a copy that stays: the button that closes the frame, and
  // the one with the menu that ends in "Exit".
  std::pair<int, int> PointIn(const Copy& copy, const ShownWindow& window) {
    for (;;) {
      const int x = Below(std::max(window.width, 1));
      const int y = Below(std::max(window.height, 1));
      const bool closes =
          window.id == copy.frame && ((y < 23 && x > window.width - 24) || (y >= 45 && y < 80 && x < 60));
      if (copy.mayEnd || !closes) return {window.x + x, window.y + y};
    }
  }

  void PressKey(const Copy& copy) {
    const int kind = Below(20);
    std::string key = OneOf(kKeys);
    unsigned modifiers = kNoModifier;
    if (kind < 5) {
      key = OneOf(kCommands);
      modifiers = kCtrl;
    } else if (kind == 5) {
      key = OneOf({"1", "2", "2", "h", copy.mayEnd ? "f" : "2"});
      modifiers = kAlt;
    } else if (kind < 8) {
      modifiers = OneIn(2) ? kShift : kCtrl;
    }
    Note("key " + std::to_string(modifiers) + " " + key);
    hands->Press(key, modifiers);
  }

  void TypeWord() {
    std::string word;
    for (int left = 1 + Below(OneIn(10) ? 200 : 8); left > 0; --left)
      word += kLetters[Below(sizeof kLetters - 1)];
    Note("type " + word);
    hands->Type(word);
  }

  void ClickSomewhere(const Copy& copy, const ShownWindow& window) {
    const auto [x, y] = PointIn(copy, window);
    const unsigned button = OneIn(6) ? 3 : OneIn(8) ? 4 + static_cast<unsigned>(Below(2)) : 1;
    const int times = OneIn(6) ? 2 : 1;
    Note("click " + std::to_string(button) + " " + std::to_string(x) + "," + std::to_string(y) + " x" +
         std::to_string(times));
    for (int time = 0; time < times; ++time) hands->Click(x, y, button);
  }

  void DragSomewhere(const Copy& copy, const ShownWindow& window) {
    const auto [x1, y1] = PointIn(copy, window);
    const auto [x2, y2] = PointIn(copy, window);
    const unsigned modifiers = OneIn(3) ? kCtrl : kNoModifier;
    Note("drag " + std::to_string(x1) + "," + std::to_string(y1) + " " + std::to_string(x2) + "," +
         std::to_string(y2));
    hands->Hold(modifiers, true);
    hands->MoveTo(x1, y1);
    hands->Button(1, true);
    for (int step = 1; step <= 4; ++step) {
      hands->MoveTo(x1 + (x2 - x1) * step / 4, y1 + (y2 - y1) * step / 4);
      if (OneIn(2)) usleep(20000);
    }
    if (OneIn(8)) hands->Press("Escape");
    hands->Button(1, false);
    hands->Hold(modifiers, false);
  }

  void Step(Copy& copy) {
    const std::vector<ShownWindow> windows = hands->Windows(copy.program->Process());
    if (windows.empty()) return;
    const auto top =
        std::find_if(windows.rbegin(), windows.rend(), [](const auto& window) { return !window.popup; });
    if (top == windows.rend()) return;
    const ShownWindow& any = windows[static_cast<std::size_t>(Below(static_cast<int>(windows.size())))];
    const ShownWindow& worked = OneIn(10) && !any.popup ? any : *top;
    hands->Focus(worked.id);
    const int what = Below(100);
    if (ChoosesFile(top->title) || ChoosesFile(worked.title)) {
      OneIn(3) ? TypeWord() : PressOnly(OneIn(2) ? "Return" : "Escape");
    } else if (what < 38) {
      ClickSomewhere(copy, windows.back());
    } else if (what < 46) {
      DragSomewhere(copy, windows.back());
    } else if (what < 82) {
      PressKey(copy);
    } else if (what < 88) {
      TypeWord();
    } else {
      PressOnly(what < 94 ? "Return" : "Escape");
    }
  }
  void PressOnly(const char* key) {
    Note(std::string("key ") + key);
    hands->Press(key);
  }

  // -- What must hold --

  // After a step: each copy answers, or has ended well and is started anew.
  void LookAfter(Copy& copy) {
    if (!Lives(copy) || hands->Windows(copy.program->Process()).empty()) {
      ASSERT_TRUE(WaitUntil([&] { return Ended(copy) || !hands->Windows(copy.program->Process()).empty(); },
                            kAnswerMs))
          << "no window\n"
          << LastSteps();
    }
    if (Ended(copy)) {
      ASSERT_EQ(copy.program->ExitCode(), 0) << LastSteps();
      ASSERT_TRUE(copy.mayEnd) << "nobody closed it\n" << LastSteps();
      ++restarts;
      Start(copy);
    } else {
      ASSERT_TRUE(hands->Answers(copy.frame, kAnswerMs))
          << "no answer from " << copy.program->Process() << '\n'
          << LastSteps();
    }
  }

  // One command of the command line at a time, beside all else.
  void WorkCommandLine() {
    int status = 0;
    if (commandLine > 0) {
      if (waitpid(commandLine, &status, WNOHANG) != commandLine) {
        ASSERT_LT(Clock::now() - commandStart, std::chrono::milliseconds(2 * kAnswerMs))
            << "the command line hangs";
        return;
      }
      ++commands;
      ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 4) << "the command line crashed: " << status;
    }
    const std::string id = std::to_string(1 + Below(200));
    const std::string day = "2004-03-" + std::to_string(10 + Below(20));
    std::vector<std::string> words = {TEMPOLINE_CLI};
    const std::vector<std::vector<std::string>> choices = {
        {"add", calendar, "--date", day, "--start", "11:00", "--subject", "By command", "--category",
         "Calls"},
        {"add", calendar, "--date", day, "--all-day", "--subject", "Often", "--repeat", "weekly:2"},
        {"edit", calendar, id, "--subject", "Changed " + id},
        {"move", calendar, id, "--to", day},
        {"delete", calendar, id},
        {"list", calendar, "--all"},
        {"compact", calendar}};
    const auto& choice = choices[static_cast<std::size_t>(Below(static_cast<int>(choices.size())))];
    words.insert(words.end(), choice.begin(), choice.end());
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    commandStart = Clock::now();
    commandLine = fork();
    if (commandLine != 0) return;
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    if (ConfineTo(folder.Path())) execv(TEMPOLINE_CLI, arguments.data());
    _exit(126);
  }

  // Leaves whatever is open, for the frame alone on its day.
  void Settle(Copy& copy) {
    const auto others = [&] {
      std::vector<ShownWindow> windows = hands->Windows(copy.program->Process());
      std::erase_if(windows, [&](const ShownWindow& window) { return window.id == copy.frame; });
      return windows;
    };
    std::vector<ShownWindow> left = others();
    // Which of them takes keys is for the program to say, not for where they lie.
    for (std::size_t tries = 0; tries < 300 && !left.empty(); ++tries, left = others()) {
      const ShownWindow& window = left[tries % left.size()];
      if (!window.popup) hands->Focus(window.id);
      hands->Press("Escape");
      usleep(50000);
      ASSERT_NO_FATAL_FAILURE(LookAfter(copy));
    }
    ASSERT_TRUE(left.empty()) << '"' << left.back().title << "\" does not go\n" << LastSteps();
  }
  long SettledMemory(Copy& copy) {
    Settle(copy);
    hands->Raise(copy.program->Process());
    hands->Focus(copy.frame);
    hands->Press("2", kAlt);
    usleep(4000000);
    return MemoryOf(copy.program->Process());
  }

  // Whether a calendar is in order, and nobody's any more.
  void CheckLeft(const std::string& path) {
    SCOPED_TRACE(path);
    const std::string said = Shell(std::string(TEMPOLINE_CLI) + " check '" + path + "' 2>&1; echo $?");
    EXPECT_EQ(said.substr(said.rfind('\n') + 1), "0") << said;
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    const std::string all = bytes.str();
    core::HeaderBlock header;
    ASSERT_GE(all.size(), 12 + sizeof header);
    std::memcpy(&header, all.data() + 12, sizeof header);
    const std::uint32_t open = header.openCount;
    EXPECT_EQ(open, 0U);
    constexpr std::size_t kFirstSlot = 2625;
    for (std::size_t at = kFirstSlot; at + sizeof(core::Appointment) <= all.size();
         at += sizeof(core::Appointment)) {
      core::RecordHeader record;
      std::memcpy(&record, all.data() + at, sizeof record);
      const bool locked = record.inUse == 1 && record.editLock != 0;
      EXPECT_FALSE(locked) << "an edit lock is left at " << at;
    }
  }

  const int seconds = FromEnvironment("DAYBRIX_MONKEY_SECONDS", 60);
  const int seed = FromEnvironment("DAYBRIX_MONKEY_SEED", 1);
  std::mt19937 random{static_cast<unsigned>(seed)};
  VirtualDisplay display;
  TemporaryFolder folder;
  const std::string calendar = folder.Join("shared.cld");
  std::unique_ptr<XHands> hands;
  Copy copies[3];
  std::deque<std::string> steps;
  pid_t commandLine = -1;
  Clock::time_point commandStart;
  int commands = 0;
  int restarts = 0;
};

TEST_F(Monkey, WhateverIsPressedTheProgramAnswersAndTheFileIsInOrder) {
  const Clock::time_point start = Clock::now();
  const auto passed = [&] {
    return std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start).count();
  };
  constexpr int kLong = 600;
  long firstMemory = 0;
  long nextLook = 60;
  int done = 0;
  std::size_t worked = 0;
  while (passed() < seconds) {
    if (OneIn(25)) {
      worked = OneIn(2) ? 0 : static_cast<std::size_t>(Below(3));
      hands->Raise(copies[worked].program->Process());
    }
    for (int burst = OneIn(10) ? 5 : 1; burst > 0; --burst, ++done) Step(copies[worked]);
    ASSERT_NO_FATAL_FAILURE(LookAfter(copies[worked]));
    if (done % 20 == 0) {
      ASSERT_NO_FATAL_FAILURE(WorkCommandLine());
    }
    if (seconds >= kLong && passed() >= nextLook) {
      const long memory = SettledMemory(copies[0]);
      ASSERT_FALSE(HasFatalFailure());
      if (firstMemory == 0) firstMemory = memory;
      std::cout << passed() << " s: " << done << " steps, " << commands << " commands, " << restarts
                << " restarts, " << memory << " KB" << std::endl;
      nextLook += 300;
    }
  }
  if (commandLine > 0) waitpid(commandLine, nullptr, 0);
  const long memory = SettledMemory(copies[0]);
  std::cout << passed() << " s: " << done << " steps, " << commands << " commands, " << restarts
            << " restarts, " << memory << " KB (" << firstMemory << " after the first minute)" << std::endl;
  EXPECT_TRUE(firstMemory == 0 || memory <= firstMemory * 105 / 100);
  for (Copy& copy : copies) {
    ASSERT_NO_FATAL_FAILURE(Settle(copy));
    EXPECT_EQ(copy.program->Close(), 0) << LastSteps();
  }
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path())) {
    if (entry.path().extension() == ".cld") CheckLeft(entry.path().string());
  }
}

}  // namespace
}  // namespace tests
