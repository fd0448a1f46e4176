// Tempoline, the calendar: tempoline [FILE] opens a calendar file, without one the calendar of the settings.
#include <string>

#include "calendar/calendar_pane.h"
#include "platform/desktop/application.h"
#include "platform/system/file.h"
#include "resources/resources.h"
#include "shell/application.h"

int main(int argc, char** argv) {
  platform::LetWritesBeyondLimitsFail();
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
