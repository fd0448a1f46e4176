// The calendar panel in the running program: what it shows, its commands by key, mouse and menu, and its ways
// out.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "calendar/dialogs/appointment_editor.h"
#include "core/calendar/calendar_file.h"
#include "core/store/file_passwords.h"
#include "framework/services.h"
#include "platform/desktop/message_box.h"
#include "platform/system/profile_file.h"
#include "shell/commands.h"
#include "shell/copy_notices.h"
#include "support/calendar_program.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

// A + before a field of a record makes a copy: a reference to it would not be aligned.

using Texts = std::vector<std::string>;

Entry Today(std::string_view subject) {
  return Entry(subject).On(14, 3, 2004);
}

void Set(const char* key, const char* value) {
  platform::WriteProfileString(CalendarProgramFolder() + "/Daybrix.ini", "Preference", key, value);
}

// A calendar with three appointments of the program's today.
class CalendarPanelTest : public testing::Test {
 protected:
  CalendarPanelTest() {
    calendar.Add(Today("Second").At(11, 0));
    calendar.Add(Today("First").At(9, 0).Category("Calls"));
    calendar.Add(Today("Whole").AllDay());
  }

  void ClickRow(int row) { driver.Click(program.List(), program.RowPoint(row)); }
  void PressInList(unsigned key) { driver.Press(program.List(), key); }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  TemporaryCalendar calendar;
};

TEST_F(CalendarPanelTest, ShowsTheDayThatIsChosen) {
  calendar.Add(Entry("Other day").On(20, 3, 2004));
  program.Run(calendar.Path(), [&] {
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "First", "Second"}));
    driver.Click(program.Days(), program.DayPoint(20));
    EXPECT_EQ(program.Subjects(), Texts{"Other day"});
    driver.Click(program.Panel().Calendar().Handle(), {54, 121});  // today
    EXPECT_EQ(program.Subjects().size(), 3U);
  });
}

TEST_F(CalendarPanelTest, ShowsTheCategoryThatIsChosen) {
  program.Run(calendar.Path(), [&] {
    program.ChooseCategory("Calls");
    EXPECT_EQ(program.Subjects(), Texts{"First"});
    driver.Click(program.Days(), program.DayPoint(15));
    EXPECT_EQ(program.Session().Filter(), "Calls");
    EXPECT_STREQ(program.Panel().Categories().Caption(), "Calls");
    driver.Click(program.Days(), program.DayPoint(14));
    program.ChooseCategory("All Categories");
    EXPECT_EQ(program.Subjects().size(), 3U);
    EXPECT_EQ(driver.LastMenu().size(), 19U);  // all, the fifteen names, the editor
  });
}

TEST_F(CalendarPanelTest, InsertAddsOneSlotAndSelectsItsRow) {
  const std::string before = calendar.Bytes();
  program.Run(calendar.Path(), [&] {
    driver.WhenDialogOpens([&](HWND dialog) {
      driver.TypeInto(dialog, AppointmentEditor::kSubjectEdit, "Caf\xE9");
      driver.TypeInto(dialog, AppointmentEditor::kCategoryBox, "Travel");
      driver.ClickControl(dialog, IDOK);
    });
    PressInList(VK_INSERT);
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "First", "Caf\xE9", "Second"}));
    EXPECT_EQ(program.Selected(), "Caf\xE9");
  });
  const std::string after = calendar.Bytes();
  ASSERT_EQ(after.size(), before.size() + 2627);
  const core::Appointment added = calendar.Slot(static_cast<std::int32_t>(before.size()));
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
    driver.WhenDialogOpens([&](HWND dialog) {
      EXPECT_TRUE(calendar.Slot(5252).header.editLock == 1 && calendar.Slot(2625).header.editLock == 0);
      driver.TypeInto(dialog, AppointmentEditor::kSubjectEdit, "Renamed");
      driver.Press(dialog, VK_RETURN);
    });
    PressInList(VK_RETURN);
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "Renamed", "Second"}));
    EXPECT_EQ(program.Selected(), "Renamed");
    driver.WhenDialogOpens([&](HWND dialog) {
      driver.TypeInto(dialog, AppointmentEditor::kSubjectEdit, "Not this");
      driver.Press(dialog, VK_ESCAPE);
    });
    driver.DoubleClick(program.List(), program.RowPoint(1));
  });
  EXPECT_EQ(calendar.Slot(5252).header.editLock, 0);
  EXPECT_EQ(core::ReadText(calendar.Slot(5252).subject), "Renamed");
  EXPECT_EQ(calendar.Bytes().size(), before.size());
  EXPECT_EQ(calendar.Bytes().substr(7879), before.substr(7879)) << "the third slot was touched";
}

TEST_F(CalendarPanelTest, DeleteAsksFirst) {
  program.Run(calendar.Path(), [&] {
    ClickRow(1);
    driver.AnswerMessageBox("Do you want to delete this Tempoline appointment ?", IDNO);
    PressInList(VK_DELETE);
    EXPECT_EQ(program.Subjects().size(), 3U);
    EXPECT_EQ(calendar.Slot(5252).header.editLock, 0);
    driver.AnswerMessageBox("Do you want to delete this Tempoline appointment ?", IDYES);
    PressInList(VK_DELETE);
    EXPECT_EQ(program.Subjects(), (Texts{"Whole", "Second"}));
    EXPECT_EQ(program.Panel().List().SelectedItem(), -1);
    PressInList(VK_DELETE);  // nothing is selected any more
  });
  EXPECT_EQ(calendar.Slot(5252).header.inUse, 0);
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
    driver.ChooseMenuItem("");
    driver.RightClick(program.List(), program.RowPoint(8));
    EXPECT_EQ(driver.LastMenu(), (Texts{"New...", "(Edit...)", "(Delete...)", "-", "(Undo delete)", "-",
                                        "(Cut)", "(Copy)", "(Paste)", "-", "(Open attachment...)"}));
    core::Appointment second = calendar.Slot(2625);
    second.attachmentKind = core::kAttachedDocument;
    core::WriteText(second.attachment, "no such document");
    ASSERT_TRUE(calendar.file.WriteSlot(&second, 2625));
    driver.ChooseMenuItem("Copy");
    driver.RightClick(program.List(), program.RowPoint(2));
    driver.ProcessEvents();
    driver.ChooseMenuItem("");
    driver.RightClick(program.List(), program.RowPoint(2));
    EXPECT_EQ(driver.LastMenu(), (Texts{"New...", "Edit...", "Delete...", "-", "(Undo delete)", "-", "Cut",
                                        "Copy", "Paste", "-", "Open attachment..."}));
  });
}

TEST_F(CalendarPanelTest, ADragMovesAndWithControlCopies) {
  calendar.Add(Today("Weekly").At(15, 0).Every(1, core::kRepeatWeekly, 1));
  program.Run(calendar.Path(), [&] {
    driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(20));
    EXPECT_EQ(core::DayIndex(program.Session().CurrentDate()), core::DayIndex(2004, 3, 20));
    EXPECT_EQ(program.Selected(), "First");
    driver.Drag(program.List(), program.RowPoint(0), program.Days(), program.DayPoint(21), MK_CONTROL);
    EXPECT_EQ(program.Subjects(), (Texts{"First", "Weekly"}));
    driver.AnswerMessageBox("Date of a repeat appointment cannot be changed", IDOK);
    driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(22));
    EXPECT_EQ(core::DayIndex(program.Session().CurrentDate()), core::DayIndex(2004, 3, 21));
    driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(22), MK_CONTROL);
    EXPECT_EQ(program.Subjects(), Texts{"Weekly"});
  });
  EXPECT_EQ(core::DayIndex(calendar.Slot(5252).date), core::DayIndex(2004, 3, 20));
  EXPECT_EQ(core::DayIndex(calendar.Slot(13133).date), core::DayIndex(2004, 3, 21));
  EXPECT_EQ(core::DayIndex(calendar.Slot(10506).date), core::DayIndex(2004, 3, 14));
  for (const int offset : {13133, 10506}) EXPECT_EQ(calendar.Slot(offset).header.editLock, 0) << offset;
}

TEST_F(CalendarPanelTest, ARecordThatIsEditedElsewhereIsLeftAlone) {
  ASSERT_TRUE(calendar.file.LockRecord(5252));
  core::SetRefreshEnabled(true);  // the lock stands for another process's
  program.Run(calendar.Path(), [&] {
    const std::string opened = calendar.Bytes();
    ClickRow(1);
    for (const unsigned key : {VK_RETURN, VK_DELETE, 0U}) {
      SCOPED_TRACE(key);
      driver.AnswerMessageBox("It is being edited by another user.", IDOK);
      if (key != 0) {
        PressInList(key);
      } else {
        driver.Drag(program.List(), program.RowPoint(1), program.Days(), program.DayPoint(20));
      }
    }
    for (const char key : {'X', 'C'}) driver.Press(program.List(), static_cast<unsigned>(key), MK_CONTROL);
    EXPECT_TRUE(program.Session().Clipboard().IsEmpty()) << "in silence";
    EXPECT_EQ(calendar.Bytes(), opened);
  });
}

TEST_F(CalendarPanelTest, NewBesideTheRowsAndOneEditorAtATime) {
  program.Run(calendar.Path(), [&] {
    driver.WhenDialogOpens([&](HWND dialog) { driver.ClickControl(dialog, IDCANCEL); });
    driver.DoubleClick(program.List(), program.RowPoint(8));
    // Of two commands that wait in the queue, the second comes while the first one's editor is open.
    driver.WhenDialogOpens([&](HWND dialog) { driver.ClickControl(dialog, IDCANCEL); });
    PostMessage(program.Frame(), WM_COMMAND, ID_ITEM_NEW, 0);
    PostMessage(program.Frame(), WM_COMMAND, ID_ITEM_NEW, 0);
    driver.ProcessEvents();
  });
}

TEST_F(CalendarPanelTest, WhatCouldNotBeSavedComesBack) {
  const std::size_t size = calendar.Bytes().size();
  program.Run(calendar.Path(), [&] {
    FaultyCalls faults;
    for (const auto& [key, typed] : {std::pair{VK_INSERT, "Kept"}, std::pair{VK_RETURN, "Renamed"}}) {
      driver.WhenDialogOpens([&, text = typed](HWND dialog) {
        driver.TypeInto(dialog, AppointmentEditor::kSubjectEdit, text);
        faults.Fail(FaultyCalls::kWrite, faults.Count(FaultyCalls::kWrite) + 1, ENOSPC);
        driver.ClickControl(dialog, IDOK);
      });
      driver.AnswerMessageBox("The appointment was not saved.", IDOK);
      driver.WhenDialogOpens([&, text = typed](HWND dialog) {
        EXPECT_EQ(TextOf(dialog, AppointmentEditor::kSubjectEdit), text);
        driver.ClickControl(dialog, IDOK);
      });
      PressInList(key);
      EXPECT_EQ(program.Selected(), typed);
    }
  });
  EXPECT_EQ(calendar.Bytes().size(), size + 2627);
}

TEST_F(CalendarPanelTest, WhatTheDiskDoesNotConfirmIsToldOnceAndStays) {
  program.Run(calendar.Path(), [&] {
    FaultyCalls faults;
    const auto fail = [&] { faults.Fail(FaultyCalls::kFlush, faults.Count(FaultyCalls::kFlush) + 1, EIO); };
    for (const unsigned key : {VK_INSERT, VK_RETURN}) {
      driver.WhenDialogOpens([&](HWND dialog) {
        driver.TypeInto(dialog, AppointmentEditor::kSubjectEdit, "Kept");
        fail();
        driver.ClickControl(dialog, IDOK);
      });
      driver.AnswerMessageBox("The change is made", IDOK);
      PressInList(key);
      EXPECT_NE(program.Selected().find("Kept"), std::string::npos);
    }
  });
}

TEST_F(CalendarPanelTest, ClosingWithAnOpenEditorEndsItFirst) {
  bool ended = false;
  program.Run(calendar.Path(), [&] {
    ClickRow(1);
    driver.WhenDialogOpens([&](HWND dialog) {
      PostMessage(program.Frame(), WM_CLOSE, 0, 0);
      driver.ProcessEvents();
      EXPECT_TRUE(IsWindow(program.Frame()));
      driver.ClickControl(dialog, IDCANCEL);
    });
    PressInList(VK_RETURN);
    driver.WaitUntil([&] { return !IsWindow(program.Frame()); });
    ended = true;
  });
  EXPECT_TRUE(ended);
  EXPECT_EQ(calendar.Slot(5252).header.editLock, 0);
  EXPECT_EQ(+calendar.Header().openCount, 1U) << "the test's own";
}

TEST_F(CalendarPanelTest, ChangesOfOthersShowWithoutATouchAndLeaveTheRowsScrolledToInPlace) {
  Set("NetworkRefresh", "1");
  for (int row = 0; row < 30; ++row) calendar.Add(Today("Later").At(12, 0).Every(1, core::kRepeatDaily));
  program.Run(calendar.Path(), [&] {
    ClickRow(1);
    for (int row = 0; row < 5; ++row) driver.Wheel(program.List(), {60, 60}, -1);
    ASSERT_EQ(program.Panel().List().FirstRow(), 5);
    calendar.Add(Today("From elsewhere").At(8, 0));
    driver.WaitUntil([&] { return program.Subjects().size() == 34; });
    EXPECT_EQ(program.Subjects()[1], "From elsewhere");
    driver.ProcessEvents();
    EXPECT_EQ(program.Selected(), "First");
    EXPECT_EQ(program.Panel().List().FirstRow(), 5);
    EXPECT_EQ(calendar.file.DeleteRecord(5252), core::Result::kDone);
    driver.WaitUntil([&] { return program.Subjects().size() == 33; });
    driver.ProcessEvents();
    EXPECT_EQ(program.Selected(), "");
    driver.Click(program.Days(), program.DayPoint(15));
    EXPECT_EQ(program.Panel().List().FirstRow(), 0) << "another day begins at its top";
  });
}

// A file that another program put in the place of the open one, or took away.
class ReplacedFile : public CalendarPanelTest {
 protected:
  ReplacedFile() { Set("NetworkRefresh", "1"); }

  // Puts a calendar with these in the place of the open one; the first one has the id of the record there.
  void Replace(std::initializer_list<const char*> subjects) {
    TemporaryCalendar other;
    for (const char* subject : subjects) {
      Entry entry = Today(subject).At(9, 0);
      if (subject == *subjects.begin())
        entry.appointment.header.recordId = calendar.Slot(5252).header.recordId;
      other.Add(entry);
    }
    other.file.Close();
    std::filesystem::rename(other.Path(), calendar.Path());
  }
  void EditAndSave(HWND dialog, const char* subject, const char* expected) {
    EXPECT_EQ(TextOf(dialog, AppointmentEditor::kSubjectEdit), expected);
    driver.TypeInto(dialog, AppointmentEditor::kSubjectEdit, subject);
    driver.ClickControl(dialog, IDOK);
  }
};

TEST_F(ReplacedFile, IsOpenedAnewAndWhatWasTypedIsStoredInIt) {
  program.Run(calendar.Path(), [&] {
    driver.AnswerMessageBox("has been replaced by another file, which is open now.", IDOK);
    Replace({"First, restored", "Other"});
    driver.WaitUntil([&] { return program.Subjects().size() == 2; });
    EXPECT_EQ(program.Subjects(), (Texts{"First, restored", "Other"}));

    ClickRow(0);
    for (const bool stillThere : {true, false}) {
      driver.WhenDialogOpens([&](HWND dialog) {
        Replace({stillThere ? "Third" : "Nothing", "Fourth"});
        EditAndSave(dialog, "Typed", stillThere ? "First, restored" : "Typed");
      });
      driver.AnswerMessageBox("which is open now.\r\nThe appointment was not saved.", IDOK);
      driver.WhenDialogOpens([&](HWND dialog) { EditAndSave(dialog, "Typed", "Typed"); });
      PressInList(VK_RETURN);
      EXPECT_EQ(program.Subjects(), (Texts{"Typed", "Fourth"}));
      EXPECT_EQ(program.Selected(), "Typed");
    }
  });
}

TEST_F(ReplacedFile, StaysShutWhenItIsNoneOrHasAnotherPasswordAndOneThatIsGoneIsTold) {
  program.Run(calendar.Path(), [&] {
    const auto expect = [&](const char* message) {
      driver.WhenDialogOpens([&](HWND dialog) { EditAndSave(dialog, "In vain", ""); });
      driver.AnswerMessageBox(message, IDOK);
      driver.WhenDialogOpens([&](HWND dialog) { driver.ClickControl(dialog, IDCANCEL); });
      PressInList(VK_INSERT);
      EXPECT_EQ(program.Subjects().size(), 3U) << "what was open is shown";
    };
    std::filesystem::remove(calendar.Path());
    expect("has been moved or deleted.");
    EXPECT_FALSE(std::filesystem::exists(calendar.Path()));
    TemporaryFolder folder;
    std::filesystem::rename(folder.Write("letter.cld", "Dear reader"), calendar.Path());
    expect("The file is incomplete.");
    TemporaryCalendar guarded({"Other", "Help", "Read"});
    guarded.file.Close();
    std::filesystem::rename(guarded.Path(), calendar.Path());
    expect("It has another password.");
    EXPECT_EQ(calendar.Bytes().size(), 2625U);
  });
}

TEST_F(CalendarPanelTest, APasswordThatWasChangedIsToldAndOpensNothingMore) {
  Set("NetworkRefresh", "1");
  program.Run(calendar.Path(), [&] {
    driver.AnswerMessageBox("The password of \"" + calendar.Path() + "\" has been changed.", IDOK);
    ASSERT_EQ(core::StorePasswords(calendar.file, {"New", "Help", "Read"}), core::CommandResult::kDone);
    driver.WaitUntil([&] { return program.Subjects().empty(); });
    driver.ProcessEvents();
    const std::string before = calendar.Bytes();
    driver.AnswerMessageBox("has been changed.", IDOK);
    PressInList(VK_INSERT);
    EXPECT_EQ(calendar.Bytes(), before);
  });
}

TEST_F(CalendarPanelTest, AListThatCannotBeReadIsSaidAndTriedAgain) {
  Set("NetworkRefresh", "1");
  program.Run(calendar.Path(), [&] {
    {
      FaultyCalls faults;
      faults.Fail(FaultyCalls::kRead, faults.Count(FaultyCalls::kRead) + 1, EIO, FaultyCalls::kForEver);
      program.GoTo({14, 3, 2004});
      EXPECT_NE(GetWindowText(program.Panel().List().Handle()).find("Not all appointments"),
                std::string::npos);
    }
    driver.WaitUntil([&] { return program.Panel().List().ItemCount() == 3; });
    driver.ProcessEvents();
    EXPECT_EQ(GetWindowText(program.Panel().List().Handle()), "Appointments of 14/3/2004");
  });
}

class CalendarStart : public testing::Test {
 protected:
  CalendarProgram program;
  DesktopDriver& driver = program.driver;
};

TEST_F(CalendarStart, AReaderSeesNothingConfidentialAndChangesNothing) {
  TemporaryCalendar calendar({"Owner", "Assistant", "Reader"});
  calendar.Add(Today("Open"));
  calendar.Add(Today("Secret").Confidential());
  program.EnterPassword("Reader");
  program.Run(calendar.Path(), [&] {
    std::string message;
    const std::string before = calendar.Bytes();
    EXPECT_EQ(program.Subjects(), Texts{"Open"});
    driver.Click(program.List(), program.RowPoint(0));
    program.Session().PutInBin(Today("Kept").appointment);
    program.Session().PutOnClipboard(Today("Kept").appointment, ID_COPY);
    // The letters with Ctrl; 0 is a drag, 1 the editor of the categories.
    for (const unsigned way : {unsigned{'A'}, unsigned{'C'}, unsigned{'X'}, unsigned{'V'}, unsigned{'Z'},
                               VK_INSERT, VK_RETURN, VK_DELETE, 0U, 1U}) {
      SCOPED_TRACE(way);
      if (way == 1) driver.ChooseMenuItem("Edit Categories");
      driver.AnswerMessageBox("You don't have permission for this action.", IDOK);
      if (way > 1) driver.Press(program.List(), way, way >= 'A' && way <= 'Z' ? MK_CONTROL : 0);
      if (way == 0) driver.Drag(program.List(), program.RowPoint(0), program.Days(), program.DayPoint(20));
      if (way == 1) driver.Click(program.Panel().Categories().Handle(), {150, 13});
      driver.ProcessEvents();
    }
    EXPECT_FALSE(program.Session().Bin().IsEmpty());
    EXPECT_EQ(calendar.Bytes(), before);
    ASSERT_TRUE(program.Session().Open(calendar.Path(), "Owner", false, message));
    EXPECT_EQ(program.Subjects().size(), 2U);
  });
}

// What settings and notices of other copies do to the switches: at start only "0" is off, a notice takes the
// number.
TEST_F(CalendarStart, SettingsThatAnotherCopyChanged) {
  const TemporaryCalendar calendar;
  Set("Sound", "no");
  Set("Annimation", "0");
  program.Run(calendar.Path(), [&] {
    EXPECT_TRUE(SoundEnabled());
    EXPECT_FALSE(AnimationEnabled());
    Set("Annimation", "1");
    BroadcastNotify(kNotifySettings, program.Frame());  // its own: it has the values already
    driver.Wait(100);
    EXPECT_FALSE(AnimationEnabled());
    // Also where somebody tidied this copy's place among the others away.
    std::filesystem::remove_all(CalendarProgramFolder() + "/daybrix");
    BroadcastNotify(kNotifySettings, nullptr);
    driver.WaitUntil([] { return AnimationEnabled(); });
    EXPECT_FALSE(SoundEnabled());
  });
  Set("Sound", "1");
}

TEST_F(CalendarStart, TheCalendarOfTheSettingsStandsInForAFileThatIsMissing) {
  driver.AnswerMessageBox("missing.cld\".\r\nThe file does not exist.", IDOK);
  program.Run("/nowhere/missing.cld", [&] {
    ASSERT_NE(program.File(), nullptr);
    EXPECT_EQ(program.File()->Path(), core::DefaultCalendarPath());
    EXPECT_EQ(program.Subjects().size(), 3U);
  });
}

}  // namespace
}  // namespace tests
