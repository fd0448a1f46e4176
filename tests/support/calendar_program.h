// The whole calendar program in a test: its start, its message loop with keys and timers, its end. A script
// runs inside the loop, once the start-up calendar is open or its failure was told.
//
//   CalendarProgram program;
//   program.Run(path, [&] { program.driver.Press(program.List(), VK_INSERT); ... });
//
// The clock starts at 14 March 2004, 10:43:12, and the program folder is a temporary one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "calendar/calendar_pane.h"
#include "core/calendar/appointment.h"
#include "support/desktop_driver.h"

namespace tests {

// The program's folder in this process, for settings.
std::string CalendarProgramFolder();

class CalendarProgram {
 public:
  CalendarProgram();

  // Runs the program on a file until the script ends; answers the exit code.
  int Run(const std::string& file, const std::function<void()>& script);

  CalendarPane& Pane() { return *pane; }
  core::CalendarSession& Session() { return pane->Session(); }
  CalendarPanel& Panel() { return pane->Panel(); }
  core::RecordFile* File() { return Session().File(); }
  HWND Frame() { return pane->Handle(); }
  // The window of the day list's rows.
  HWND List();
  // The window of the mini calendar's days.
  HWND Days();

  // Shows a day as the mini calendar's choice would.
  void GoTo(const core::Date& date);
  // Types into the dialog "Password" that opens next.
  void EnterPassword(const std::string& password);
  // Chooses in the category selector.
  void ChooseCategory(const std::string& name);
  // A point on a row of the list or on a day of the shown month, in client pixels of List() or Days().
  POINT RowPoint(int index);
  POINT DayPoint(int day);

  // The shown appointments, in the order of their rows.
  std::vector<core::Appointment> Shown();
  std::vector<std::string> Subjects();
  // The subject of the selected row, empty for none.
  std::string Selected();

  DesktopDriver driver;

 private:
  CalendarPane* pane = nullptr;  // while Run runs
};

}  // namespace tests
