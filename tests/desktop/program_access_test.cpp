// What the running program tells of changes, and how a user without a mouse works it. (What there is to read
// in its windows is tested over the desktop's own bus: tests/end_to_end/access_bus_test.py.)
#include <gtest/gtest.h>

#include "support/calendar_program.h"
#include "support/screen_reader.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

using Texts = std::vector<std::string>;

class ProgramAccess : public testing::Test {
 protected:
  ProgramAccess() {
    calendar.Add(Entry("Lunch").On(14, 3, 2004).At(9, 0).Category("Calls"));
    calendar.Add(Entry("Whole").On(14, 3, 2004).AllDay());
  }
  void Press(const std::vector<unsigned>& keys) {
    for (const unsigned key : keys) driver.Press(program.Frame(), key);
    driver.ProcessEvents();
  }
  std::string FirstHeard() {
    const Texts heard = reader.TakeHeard();
    return heard.empty() ? "" : heard.front();
  }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  TemporaryCalendar calendar;
  ScreenReader reader;
};

TEST_F(ProgramAccess, TheDaysRowsAreReadInWords) {
  program.Run(calendar.Path(), [&] {
    Press({VK_ESCAPE});  // nothing to leave, but the window is in front
    EXPECT_EQ(reader.Read(program.List()), "List \"Appointments of 14/3/2004\" focused 2");
    EXPECT_EQ(reader.Read(program.List(), 0), "ListItem \"All day, Whole\"");
    EXPECT_EQ(reader.Read(program.List(), 1), "ListItem \"09:00-09:00, Lunch, category Calls\"");
    EXPECT_EQ(reader.Read(program.Days(), 13), "Cell \"Sunday, March 14, 2004\" (Today) selected");
    EXPECT_EQ(reader.Read(program.Panel().Categories().Handle()),
              "ComboBox \"Category: All Categories\" = All Categories");
    reader.TakeHeard();
    Press({VK_END});
    EXPECT_EQ(FirstHeard(), "selection 09:00-09:00, Lunch, category Calls");
  });

  core::Appointment marked = Entry("Trip").AllDay().Confidential().appointment;
  marked.alarmOn = 1;
  EXPECT_EQ(DayRowText(&marked), "All day, Trip, confidential, alarm");
  EXPECT_EQ(DayRowText(nullptr), "Record is deleted by another user.");
}

TEST_F(ProgramAccess, TabWalksThePanelAndTheFramesKeysGoOnWorking) {
  program.Run(calendar.Path(), [&] {
    Texts walked;
    for (int step = 0; step < 10; ++step) {
      Press({VK_TAB});
      walked.push_back(GetWindowText(GetFocus()));
    }
    EXPECT_EQ(walked, (Texts{"Year", "Month", "", "Previous month", "Today", "Next month", "Recycle bin",
                             "View", "Category", ""}));
    EXPECT_EQ(GetFocus(), program.List());
    EXPECT_EQ(reader.Read(program.Panel().Bin().Handle()), "Button \"Recycle bin\" (Bin is empty.)");
    for (int step = 0; step < 6; ++step) driver.Press(program.Frame(), VK_TAB, MK_SHIFT);
    EXPECT_EQ(GetWindowText(GetFocus()), "Previous month");
    Press({VK_SPACE});
    EXPECT_EQ(Value(program.Session().CurrentDate().month), 2);
    driver.Press(program.Frame(), VK_TAB, MK_SHIFT);
    EXPECT_EQ(GetFocus(), program.Days());
    Press({VK_NEXT});
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "Lunch"})) << "the day is shown that the keys pick";
    EXPECT_EQ(GetFocus(), program.Days());

    driver.WhenDialogOpens([&](HWND dialog) { driver.Press(dialog, VK_ESCAPE); });
    Press({VK_INSERT});
    EXPECT_EQ(GetFocus(), program.List()) << "where a command leaves it";
    driver.ChooseMenuItem("");
    Press({VK_DOWN, VK_APPS});
    EXPECT_EQ(driver.LastMenu()[1], "Edit...");
    driver.Press(program.Frame(), '1', 0, true);
    Press({VK_TAB});
    EXPECT_EQ(reader.Read(GetFocus()), "Pane \"Intro\" focused 2") << "nothing there to walk to";
  });
}

}  // namespace
}  // namespace tests
