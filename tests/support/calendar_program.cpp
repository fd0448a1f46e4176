#include "support/calendar_program.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "calendar/views/day_row.h"
#include "core/ini_file.h"
#include "framework/date_word.h"
#include "framework/password_dialog.h"
#include "platform/desktop/application.h"
#include "resources/resources.h"
#include "shell/application.h"
#include "support/temporary_folder.h"

namespace tests {
namespace {

constexpr UINT kScriptTimer = 1;
constexpr int kScriptTimerMs = 10;

const TemporaryFolder& ProgramFolder() {
  static const TemporaryFolder folder;
  return folder;
}

// Before anything asks for it, be it to make a calendar: the program looks for its folder once.
const bool folderIsNamed = setenv("DAYBRIX_FOLDER", ProgramFolder().Path().c_str(), 1) == 0;

// Tells when the start-up calendar was opened or refused.
class ScriptedPane : public CalendarPane {
 public:
  LRESULT OnAfterCreate(const MessageRecord& record) override {
    const LRESULT result = CalendarPane::OnAfterCreate(record);
    started = true;
    return result;
  }
  bool started = false;
};

// A hidden window whose timer runs the script.
class ScriptWindow : public ZarfWnd {
 public:
  ScriptWindow(ScriptedPane& scriptedPane, const std::function<void()>& theScript)
      : pane(scriptedPane), script(theScript) {}

  LRESULT OnTimer(const MessageRecord&) override {
    if (!pane.started) return 0;
    KillTimer(hwnd, kScriptTimer);
    script();
    if (IsWindow(pane.Handle())) pane.Post(WM_CLOSE, 0, 0);
    return 0;
  }

 private:
  ScriptedPane& pane;
  const std::function<void()>& script;
};

HWND ChildAt(HWND window, POINT point) {
  return WindowFromPoint(ClientToScreen(window, point));
}

}  // namespace

std::string CalendarProgramFolder() {
  return ProgramFolder().Path();
}

CalendarProgram::CalendarProgram() {
  setenv("DAYBRIX_CLOCK", "2004-03-14T10:43:12", 1);
  EXPECT_TRUE(folderIsNamed);
  // A copy that the developer has open is none of the test's.
  setenv("XDG_RUNTIME_DIR", CalendarProgramFolder().c_str(), 1);
  // Nobody waits for the splash screen.
  EXPECT_TRUE(core::IniFile("Daybrix.ini").WriteString("Preference", "Splash", "0"));
  static const bool registered = (RegisterResources(), true);
  static_cast<void>(registered);
}

int CalendarProgram::Run(const std::string& file, const std::function<void()>& script) {
  ScriptedPane scriptedPane;
  ScriptWindow window(scriptedPane, script);
  pane = &scriptedPane;
  window.Create(nullptr, WS_POPUP);
  SetTimer(window.Handle(), kScriptTimer, kScriptTimerMs);
  const int exitCode = RunApplication(scriptedPane, file);
  pane = nullptr;
  return exitCode;
}

HWND CalendarProgram::List() {
  return ChildAt(Panel().List().Handle(), {10, 10});
}

HWND CalendarProgram::Days() {
  return ChildAt(Panel().Calendar().Handle(), {54, 60});
}

void CalendarProgram::GoTo(const core::Date& date) {
  SendMessage(Panel().Handle(), WM_COMMAND, 102, WordFromDate(date));
}

void CalendarProgram::EnterPassword(const std::string& password) {
  driver.WhenDialogOpens([this, password](HWND dialog) {
    driver.TypeInto(dialog, PasswordDialog::kPasswordEdit, password);
    driver.Press(dialog, VK_RETURN);
  });
}

void CalendarProgram::ChooseCategory(const std::string& name) {
  driver.ChooseMenuItem(name);
  driver.Click(Panel().Categories().Handle(), {150, 13});
  driver.ProcessEvents();
}

POINT CalendarProgram::RowPoint(int index) {
  return {60, index * DayRowHeight() + 6};
}

POINT CalendarProgram::DayPoint(int day) {
  RECT client;
  GetClientRect(Days(), &client);
  const core::Date& shown = Panel().Calendar().Date();
  const int cell = core::Weekday(shown.year, shown.month, 1) + day - 1;
  const int width = Width(client) / 7;
  const int height = Height(client) / 6;
  return {cell % 7 * width + width / 2, cell / 7 * height + height / 2};
}

std::vector<core::Appointment> CalendarProgram::Shown() {
  std::vector<core::Appointment> all;
  for (int row = 0; row < Panel().List().ItemCount(); ++row) {
    core::Appointment appointment{};
    if (!File()->ReadRecord(&appointment, Panel().List().KeyAt(row))) {
      core::WriteText(appointment.subject, "(gone)");
    }
    all.push_back(appointment);
  }
  return all;
}

std::vector<std::string> CalendarProgram::Subjects() {
  std::vector<std::string> subjects;
  for (const core::Appointment& appointment : Shown())
    subjects.emplace_back(core::ReadText(appointment.subject));
  return subjects;
}

std::string CalendarProgram::Selected() {
  const int row = Panel().List().SelectedItem();
  return row < 0 ? "" : Subjects()[static_cast<std::size_t>(row)];
}

}  // namespace tests
