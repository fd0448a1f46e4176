// The calendar panel in the running program: what it shows, its commands by key, mouse and menu, and its ways
// out.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "core/calendar_file.h"
#include "framework/services.h"
#include "platform/desktop/message_box.h"
#include "platform/system/profile_file.h"
#include "shell/application.h"
#include "shell/commands.h"
#include "support/calendar_program.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

// A + before a field of a record makes a copy: a reference to it would not be aligned.

constexpr int kSubjectEdit = 103;
constexpr int kCategoryBox = 104;

using Texts = std::vector<std::string>;

Entry Today(std::string_view subject) {
  return Entry(subject).On(14, 3, 2004);
}

// A calendar with three appointments of the program's today.
class CalendarPanelTest : public testing::Test {
 protected:
  CalendarPanelTest() {
    calendar.Add(Today("Second").At(11, 0));
    calendar.Add(Today("First").At(9, 0).Category("Calls"));
    calendar.Add(Today("Whole").AllDay());
  }

  core::Appointment Read(std::int32_t offset) {
    core::Appointment appointment{};
    EXPECT_TRUE(calendar.file.ReadSlot(&appointment, offset));
    return appointment;
  }
  void ClickRow(int row) { program.driver.Click(program.List(), program.RowPoint(row)); }
  void PressInList(unsigned key) { program.driver.Press(program.List(), key); }

  CalendarProgram program;
  TemporaryCalendar calendar;
};

TEST_F(CalendarPanelTest, ShowsTheDayThatIsChosen) {
  calendar.Add(Entry("Other day").On(20, 3, 2004));
  calendar.Add(Entry("Other month").On(14, 2, 2004));
  calendar.Add(Entry("Other year").On(14, 2, 2006));
  program.Run(calendar.Path(), [&] {
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "First", "Second"}));
    program.driver.Click(program.Days(), program.DayPoint(20));
    EXPECT_EQ(program.Subjects(), Texts{"Other day"});
    program.driver.Click(program.Days(), program.DayPoint(14));
    program.driver.Click(program.Panel().Calendar().Handle(), {5, 121});  // the month before
    EXPECT_EQ(program.Subjects(), Texts{"Other month"});
    program.driver.ChooseMenuItem("2006");
    program.driver.Click(program.Panel().Calendar().Handle(), {5, 8});
    EXPECT_EQ(program.Subjects(), Texts{"Other year"});
    program.driver.Click(program.Panel().Calendar().Handle(), {54, 121});  // today
    EXPECT_EQ(program.Subjects().size(), 3U);
  });
}

TEST_F(CalendarPanelTest, ShowsTheCategoryThatIsChosen) {
  program.Run(calendar.Path(), [&] {
    program.ChooseCategory("Calls");
    EXPECT_EQ(program.Subjects(), Texts{"First"});
    program.driver.Click(program.Days(), program.DayPoint(15));
    EXPECT_EQ(program.Panel().CategoryFilter(), "Calls");
    EXPECT_STREQ(program.Panel().Categories().Caption(), "Calls");
    program.driver.Click(program.Days(), program.DayPoint(14));
    program.ChooseCategory("All Categories");
    EXPECT_EQ(program.Subjects().size(), 3U);
    EXPECT_EQ(program.driver.LastMenu().size(), 19U);  // all, the fifteen names, the editor
  });
}

TEST_F(CalendarPanelTest, InsertAddsOneSlotAndSelectsItsRow) {
  const std::string before = calendar.Bytes();
  program.Run(calendar.Path(), [&] {
    program.driver.WhenDialogOpens([&](HWND dialog) {
      program.driver.TypeInto(dialog, kSubjectEdit, "Caf\xE9");
      program.driver.TypeInto(dialog, kCategoryBox, "Travel");
      program.driver.ClickControl(dialog, IDOK);
    });
    PressInList(VK_INSERT);
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "First", "Caf\xE9", "Second"}));
    EXPECT_EQ(program.Selected(), "Caf\xE9");
  });
  const std::string after = calendar.Bytes();
  ASSERT_EQ(after.size(), before.size() + 2627);
  const core::Appointment added = Read(static_cast<std::int32_t>(before.size()));
  core::Appointment expected{};
  expected.header = added.header;  // with its random id
  expected.date = expected.alarmDate = {14, 3, 2004};
  expected.startTime = {10, 40, added.startTime.second, core::kBeforeNoon};
  expected.endTime = expected.alarmTime = expected.startTime;
  expected.alarmStartKind = core::kAlarmStartsDocument;
  core::WriteText(expected.subject, "Caf\xE9");
  EXPECT_EQ(std::memcmp(&added, &expected, sizeof added), 0);
  EXPECT_EQ(+added.header.recordSize, 2627U);
  EXPECT_EQ(added.header.inUse, 1);
  EXPECT_EQ(added.header.editLock, 0);
  EXPECT_EQ(core::ReadText(added.header.category), "Travel");
  EXPECT_EQ(core::DayIndex(added.header.creationDate), core::DayIndex(2004, 3, 14));
  EXPECT_EQ(added.header.eventRole, 1);
}

TEST_F(CalendarPanelTest, EnterEditsTheSelectedRow) {
  const std::string before = calendar.Bytes();
  program.Run(calendar.Path(), [&] {
    PressInList(VK_RETURN);  // nothing is selected: nothing happens
    ClickRow(1);
    program.driver.WhenDialogOpens([&](HWND dialog) {
      EXPECT_TRUE(Read(5252).header.editLock == 1 && Read(2625).header.editLock == 0);
      program.driver.TypeInto(dialog, kSubjectEdit, "Renamed");
      program.driver.Press(dialog, VK_RETURN);
    });
    PressInList(VK_RETURN);
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "Renamed", "Second"}));
    EXPECT_EQ(program.Selected(), "Renamed");
    program.driver.WhenDialogOpens([&](HWND dialog) {
      program.driver.TypeInto(dialog, kSubjectEdit, "Not this");
      program.driver.Press(dialog, VK_ESCAPE);
    });
    program.driver.DoubleClick(program.List(), program.RowPoint(1));
    EXPECT_EQ(program.Selected(), "Renamed");
  });
  EXPECT_EQ(Read(5252).header.editLock, 0);
  EXPECT_EQ(core::ReadText(Read(5252).subject), "Renamed");
  EXPECT_EQ(calendar.Bytes().size(), before.size());
  EXPECT_EQ(calendar.Bytes().substr(7879), before.substr(7879)) << "the third slot was touched";
}

TEST_F(CalendarPanelTest, DeleteAsksFirst) {
  program.Run(calendar.Path(), [&] {
    ClickRow(1);
    program.driver.AnswerMessageBox("Do you want to delete this Tempoline appointment ?", IDNO);
    PressInList(VK_DELETE);
    EXPECT_EQ(program.Subjects().size(), 3U);
    EXPECT_EQ(Read(5252).header.editLock, 0);
    program.driver.AnswerMessageBox("Do you want to delete this Tempoline appointment ?", IDYES);
    PressInList(VK_DELETE);
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "Second"}));
    EXPECT_EQ(program.Panel().List().SelectedItem(), -1);
    PressInList(VK_DELETE);  // nothing is selected any more
  });
  EXPECT_EQ(Read(5252).header.inUse, 0);
  EXPECT_EQ(+calendar.Header().freeSlotBalance, -1);
}

TEST_F(CalendarPanelTest, KeysMoveTheSelectionAndAMenuOpens) {
  program.Run(calendar.Path(), [&] {
    PressInList(VK_DOWN);
    EXPECT_EQ(program.Selected(), "Whole");
    PressInList(VK_END);
    EXPECT_EQ(program.Selected(), "Second");
    PressInList(VK_ESCAPE);
    EXPECT_EQ(program.Selected(), "");
    program.driver.ChooseMenuItem("");
    program.driver.RightClick(program.List(), program.RowPoint(8));
    EXPECT_EQ(program.driver.LastMenu(), (Texts{"New...", "(Edit...)", "(Delete...)"}));
    program.driver.ChooseMenuItem("Delete...");
    program.driver.AnswerMessageBox("delete this Tempoline", IDYES);
    program.driver.RightClick(program.List(), program.RowPoint(0));
    program.driver.WaitUntil([&] { return program.Subjects().size() == 2; });
    EXPECT_EQ(program.Subjects(), (Texts{"First", "Second"}));
  });
}

TEST_F(CalendarPanelTest, ADragMovesAndWithControlCopies) {
  calendar.Add(Today("Weekly").At(15, 0).Every(1, core::kRepeatWeekly, 1));
  program.Run(calendar.Path(), [&] {
    program.driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(20));
    EXPECT_EQ(core::DayIndex(program.Panel().CurrentDate()), core::DayIndex(2004, 3, 20));
    EXPECT_EQ(program.Selected(), "First");
    program.driver.Drag(program.List(), program.RowPoint(0), program.Days(), program.DayPoint(21),
                        MK_CONTROL);
    EXPECT_EQ(program.Subjects(), (Texts{"First", "Weekly"}));
    program.driver.AnswerMessageBox("Date of a repeat appointment cannot be changed", IDOK);
    program.driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(22));
    EXPECT_EQ(core::DayIndex(program.Panel().CurrentDate()), core::DayIndex(2004, 3, 21));
    program.driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(22),
                        MK_CONTROL);
    EXPECT_EQ(program.Subjects(), Texts{"Weekly"});
  });
  EXPECT_EQ(core::DayIndex(Read(5252).date), core::DayIndex(2004, 3, 20));
  const core::Appointment copy = Read(13133);
  EXPECT_EQ(core::DayIndex(copy.date), core::DayIndex(2004, 3, 21));
  EXPECT_EQ(copy.header.editLock, 0);
  EXPECT_NE(+copy.header.recordId, +Read(5252).header.recordId);
  EXPECT_FALSE(core::HasRepeat(Read(15760))) << "a copy does not repeat";
  EXPECT_EQ(core::DayIndex(Read(10506).date), core::DayIndex(2004, 3, 14));
  EXPECT_EQ(Read(10506).header.editLock, 0);
}

TEST_F(CalendarPanelTest, ARecordThatIsEditedElsewhereIsLeftAlone) {
  ASSERT_TRUE(calendar.file.LockRecord(5252));
  core::SetRefreshEnabled(true);  // the lock stands for another process's
  const std::string before = calendar.Bytes();
  program.Run(calendar.Path(), [&] {
    const std::string opened = calendar.Bytes();
    ClickRow(1);
    program.driver.AnswerMessageBox("It is being edited by another user.", IDOK);
    PressInList(VK_RETURN);
    program.driver.AnswerMessageBox("It is being edited by another user.", IDOK);
    PressInList(VK_DELETE);
    program.driver.AnswerMessageBox("It is being edited by another user.", IDOK);
    program.driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(20));
    EXPECT_EQ(calendar.Bytes(), opened);
  });
  EXPECT_EQ(calendar.Bytes(), before);
}

TEST_F(CalendarPanelTest, NewBesideTheRowsAndOneEditorAtATime) {
  program.Run(calendar.Path(), [&] {
    program.driver.WhenDialogOpens([&](HWND dialog) { program.driver.ClickControl(dialog, IDCANCEL); });
    program.driver.DoubleClick(program.List(), program.RowPoint(8));
    // Of two commands that wait in the queue, the second comes while the first one's editor is open.
    program.driver.WhenDialogOpens([&](HWND dialog) { program.driver.ClickControl(dialog, IDCANCEL); });
    PostMessage(program.Frame(), WM_COMMAND, ID_ITEM_NEW, 0);
    PostMessage(program.Frame(), WM_COMMAND, ID_ITEM_NEW, 0);
    program.driver.ProcessEvents();
  });
}

TEST_F(CalendarPanelTest, WhatCouldNotBeSavedComesBack) {
  const std::size_t size = calendar.Bytes().size();
  program.Run(calendar.Path(), [&] {
    FaultyCalls faults;
    program.driver.WhenDialogOpens([&](HWND dialog) {
      program.driver.TypeInto(dialog, kSubjectEdit, "Kept");
      faults.Fail(FaultyCalls::kWrite, faults.Count(FaultyCalls::kWrite) + 1, ENOSPC);
      program.driver.ClickControl(dialog, IDOK);
    });
    program.driver.AnswerMessageBox("The appointment was not saved.", IDOK);
    program.driver.WhenDialogOpens([&](HWND dialog) {
      char subject[150];
      GetDlgItemText(dialog, kSubjectEdit, subject, sizeof subject);
      EXPECT_STREQ(subject, "Kept");
      program.driver.ClickControl(dialog, IDOK);
    });
    PressInList(VK_INSERT);
    EXPECT_EQ(program.Selected(), "Kept");
  });
  EXPECT_EQ(calendar.Bytes().size(), size + 2627);
}

TEST_F(CalendarPanelTest, WhatTheDiskDoesNotConfirmIsToldOnceAndStays) {
  program.Run(calendar.Path(), [&] {
    FaultyCalls faults;
    const auto fail = [&] { faults.Fail(FaultyCalls::kFlush, faults.Count(FaultyCalls::kFlush) + 1, EIO); };
    for (const int key : {VK_INSERT, VK_RETURN}) {
      program.driver.WhenDialogOpens([&](HWND dialog) {
        program.driver.TypeInto(dialog, kSubjectEdit, "Kept");
        fail();
        program.driver.ClickControl(dialog, IDOK);
      });
      program.driver.AnswerMessageBox("The change is made", IDOK);
      PressInList(key);
      EXPECT_NE(program.Selected().find("Kept"), std::string::npos);
    }
  });
}

TEST_F(CalendarPanelTest, ClosingWithAnOpenEditorEndsItFirst) {
  bool ended = false;
  program.Run(calendar.Path(), [&] {
    ClickRow(1);
    program.driver.WhenDialogOpens([&](HWND dialog) {
      PostMessage(program.Frame(), WM_CLOSE, 0, 0);
      program.driver.ProcessEvents();
      EXPECT_TRUE(IsWindow(program.Frame()));
      program.driver.ClickControl(dialog, IDCANCEL);
    });
    PressInList(VK_RETURN);
    program.driver.WaitUntil([&] { return !IsWindow(program.Frame()); });
    ended = true;
  });
  EXPECT_TRUE(ended);
  EXPECT_EQ(Read(5252).header.editLock, 0);
  EXPECT_EQ(+calendar.Header().openCount, 1U) << "the test's own";
}

TEST_F(CalendarPanelTest, ChangesOfOthersShowWithoutATouch) {
  platform::WriteProfileString(CalendarProgramFolder() + "/Daybrix.ini", "Preference", "NetworkRefresh", "1");
  program.Run(calendar.Path(), [&] {
    ClickRow(1);
    calendar.Add(Today("From elsewhere").At(8, 0));
    program.driver.WaitUntil([&] { return program.Subjects().size() == 4; });
    EXPECT_EQ(program.Subjects()[1], "From elsewhere");
    program.driver.ProcessEvents();
    EXPECT_EQ(program.Selected(), "First");
    EXPECT_EQ(calendar.file.DeleteRecord(5252), core::Result::kDone);
    program.driver.WaitUntil([&] { return program.Subjects().size() == 3; });
    program.driver.ProcessEvents();
    EXPECT_EQ(program.Selected(), "");
  });
}

TEST_F(CalendarPanelTest, ChangesOfOthersLeaveTheRowsScrolledToInPlace) {
  platform::WriteProfileString(CalendarProgramFolder() + "/Daybrix.ini", "Preference", "NetworkRefresh", "1");
  for (int row = 0; row < 30; ++row) calendar.Add(Today("Later").At(12, 0));
  program.Run(calendar.Path(), [&] {
    ClickRow(1);
    for (int row = 0; row < 5; ++row) program.driver.Wheel(program.List(), {60, 60}, -1);
    ASSERT_EQ(program.Panel().List().FirstRow(), 5);
    calendar.Add(Today("From elsewhere").At(23, 0));
    program.driver.WaitUntil([&] { return program.Subjects().size() == 34; });
    program.driver.ProcessEvents();
    EXPECT_EQ(program.Selected(), "First");
    EXPECT_EQ(program.Panel().List().FirstRow(), 5);
  });
}

TEST(CalendarAccess, AReaderSeesNothingConfidentialAndChangesNothing) {
  CalendarProgram program;
  TemporaryCalendar calendar({"Owner", "Assistant", "Reader"});
  calendar.Add(Today("Open"));
  calendar.Add(Today("Secret").Confidential());
  program.driver.WhenDialogOpens([&](HWND dialog) {
    program.driver.TypeInto(dialog, 100, "Reader");
    program.driver.Press(dialog, VK_RETURN);
  });
  program.Run(calendar.Path(), [&] {
    std::string message;
    auto& pane = program.Pane();
    const std::string before = calendar.Bytes();
    EXPECT_EQ(program.Subjects(), Texts{"Open"});
    program.driver.Click(program.List(), program.RowPoint(0));
    for (const unsigned key : {VK_INSERT, VK_RETURN, VK_DELETE}) {
      program.driver.AnswerMessageBox("You don't have permission for this action.", IDOK);
      program.driver.Press(program.List(), key);
    }
    program.driver.AnswerMessageBox("You don't have permission for this action.", IDOK);
    program.driver.Drag(program.List(), program.RowPoint(0), program.Days(), program.DayPoint(20));
    EXPECT_EQ(calendar.Bytes(), before);
    ASSERT_TRUE(pane.OpenCalendar(calendar.Path(), "Owner", false, message));
    EXPECT_EQ(program.Subjects().size(), 2U);
  });
}

TEST(CalendarOpening, TheFirstStartMakesACalendarWithExamples) {
  CalendarProgram program;
  program.Run("", [&] {
    EXPECT_EQ(program.Subjects(), (Texts{"Business meeting with Oren Maddox.",
                                         "Business lunch with Ida Vance.", "Brightfold Ltd."}));
    EXPECT_EQ(program.File()->Path().find(CalendarProgramFolder() + "/works/"), 0U);
  });
}

// What settings and notices of other copies do to the switches: at start only "0" is off, a notice takes the
// number.
TEST(CalendarNotices, SettingsThatAnotherCopyChanged) {
  CalendarProgram program;
  const TemporaryCalendar calendar;
  const auto set = [](const char* key, const char* value) {
    platform::WriteProfileString(CalendarProgramFolder() + "/Daybrix.ini", "Preference", key, value);
  };
  set("Sound", "no");
  set("Annimation", "0");
  program.Run(calendar.Path(), [&] {
    EXPECT_TRUE(SoundEnabled());
    EXPECT_FALSE(AnimationEnabled());
    set("Annimation", "1");
    BroadcastNotify(kNotifySettings, program.Frame());  // its own: it has the values already
    program.driver.Wait(100);
    EXPECT_FALSE(AnimationEnabled());
    // Also where somebody tidied this copy's place among the others away.
    std::filesystem::remove_all(CalendarProgramFolder() + "/daybrix");
    BroadcastNotify(kNotifySettings, nullptr);
    program.driver.WaitUntil([] { return AnimationEnabled(); });
    EXPECT_FALSE(SoundEnabled());
  });
  set("Sound", "1");
}

TEST(CalendarOpening, TheCalendarOfTheSettingsStandsInForAFileThatIsMissing) {
  CalendarProgram program;
  program.driver.AnswerMessageBox("missing.cld\".\r\nThe file does not exist.", IDOK);
  program.Run("/nowhere/missing.cld", [&] {
    ASSERT_NE(program.File(), nullptr);
    EXPECT_EQ(program.File()->Path(), core::DefaultCalendarPath());
    EXPECT_EQ(program.Subjects().size(), 3U);
  });
}

// A file that cannot be opened is named; the user may make one instead.
TEST(CalendarOpening, AFileThatIsNoneIsTold) {
  CalendarProgram program;
  const TemporaryFolder folder;
  struct Case {
    std::string path;
    const char* reason;
  };
  const Case cases[] = {
      {folder.Path(), "It is a folder."},
      {folder.Write("letter.txt", "Dear reader"), "The file is incomplete."},
      {folder.Write("noise.cld", std::string(9000, '\x7e')), "It is not a file of this program"},
  };
  for (const Case& bad : cases) {
    SCOPED_TRACE(bad.path);
    program.driver.AnswerMessageBox(bad.reason, IDOK);
    program.driver.WhenDialogOpens([&](HWND dialog) {
      // The calendar without a file lies behind the dialog.
      EXPECT_EQ(program.Panel().List().ItemCount(), 0);
      program.driver.Press(dialog, VK_ESCAPE);
    });
    EXPECT_EQ(program.Run(bad.path, [] {}), 0);
  }
}

}  // namespace
}  // namespace tests
