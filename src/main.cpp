// Tempoline, the calendar: tempoline [FILE] opens a calendar file, without one the calendar of the settings.
#include <cstdio>
#include <string>

#include "calendar/calendar_pane.h"
#include "platform/desktop/application.h"
#include "platform/system/file.h"
#include "resources/resources.h"
#include "shell/application.h"

namespace {

constexpr const char* kVersion = "tempoline " DAYBRIX_VERSION "\n";
constexpr const char* kHelp =
    "Usage: tempoline [FILE]\n"
    "Opens a calendar file, or without one the calendar that was last chosen.\n"
    "\n"
    "  --help     prints this text and ends\n"
    "  --version  prints the version and ends\n"
    "\n"
    "tempoline-cli lists, changes, checks and compacts calendars from terminals and scripts.\n";

int Print(const char* text) {
  return std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  platform::LetWritesBeyondLimitsFail();
  const std::string first = argc > 1 ? argv[1] : "";
  if (first == "--help") return Print(kHelp);
  if (first == "--version") return Print(kVersion);
  if (!StartDesktop(argc, argv)) return 1;
  RegisterResources();
  int exitCode = 0;
  {
    CalendarPane application;
    exitCode = RunApplication(application, argc > 1 ? argv[1] : "");
  }
  StopDesktop();
  return exitCode;
}
