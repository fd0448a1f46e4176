// What is cut, copied, deleted, brought back and found in the running program: clipboard, recycle bin and the
// Find dialog, and what becomes of them when something fails or another user steps in.
#include <gtest/gtest.h>

#include <cerrno>

#include "calendar/dialogs/appointment_editor.h"
#include "calendar/find_dialog.h"
#include "calendar/views/find_row.h"
#include "calendar/views/palette.h"
#include "platform/desktop/accessible.h"
#include "platform/desktop/message_box.h"
#include "platform/system/profile_file.h"
#include "shell/commands.h"
#include "support/calendar_program.h"
#include "support/faulty_calls.h"
#include "support/recording_dc.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

using Texts = std::vector<std::string>;

Entry Today(std::string_view subject, int hour) {
  return Entry(subject).On(14, 3, 2004).At(hour, 0);
}

class PanelCommands : public testing::Test {
 protected:
  PanelCommands() {
    for (const Entry& entry : {Today("Early", 8), Today("Middle", 9).Category("Calls"), Today("Late", 10)}) {
      calendar.Add(entry);
    }
  }

  void ClickRow(int row) { driver.Click(program.List(), program.RowPoint(row)); }
  void PressControl(char key) {
    driver.Press(program.List(), static_cast<unsigned>(key), MK_CONTROL);
    driver.ProcessEvents();
  }

  HWND Bin() { return program.Panel().Bin().Handle(); }
  // Where the pictures of an empty and a full bin differ.
  COLORREF Look() {
    return driver.PixelAt(Bin(), {Width(ClientOf(Bin())) / 2, Height(ClientOf(Bin())) - 40});
  }
  // A point of the bin, from the middle of its picture.
  POINT InBin(int x) { return {Width(ClientOf(Bin())) / 2 + x, Height(ClientOf(Bin())) - 20}; }

  // Opens the Find dialog and runs a script in it, which is to end it.
  void InFind(const std::function<void()>& script) {
    driver.WhenDialogOpens([this, script](HWND opened) {
      dialog = opened;
      script();
    });
    PressControl('F');
  }
  // Types, searches, and answers the dialog's title.
  std::string Search(const std::string& text) {
    driver.TypeInto(dialog, FindDialog::kTextEdit, text);
    Press(VK_RETURN);
    return GetWindowText(dialog);
  }
  void Press(unsigned key) {
    driver.Press(dialog, key);
    driver.ProcessEvents();
  }
  HWND Results() {
    const RECT area = PlaceOf(GetDlgItem(dialog, FindDialog::kResultArea));
    return WindowFromPoint({area.left + 10, area.top + 30});
  }
  std::string Row(int index) {
    AccessiblePart row;
    SendMessage(Results(), WM_DESCRIBE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&row));
    return row.name;
  }
  bool CanGo() { return Enabled(dialog, FindDialog::kGoToButton); }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  TemporaryCalendar calendar;
  HWND dialog = nullptr;  // Find
};

// Clipboard and bin outlive the file.
TEST_F(PanelCommands, CutCopyPasteAndUndoByKeysAlsoIntoAnotherFile) {
  TemporaryCalendar other;
  program.Run(calendar.Path(), [&] {
    for (const char key : {'C', 'X', 'V', 'Z'}) PressControl(key);  // there is nothing to work on
    EXPECT_EQ(program.Subjects().size(), 3U);
    ClickRow(1);
    PressControl('C');
    program.GoTo({20, 3, 2004});
    PressControl('V');
    PressControl('V');
    EXPECT_EQ(program.Subjects(), (Texts{"Middle", "Middle"}));
    EXPECT_NE(program.Panel().List().KeyAt(0).id, program.Panel().List().KeyAt(1).id);
    program.GoTo({14, 3, 2004});
    for (const int row : {2, 0}) {
      ClickRow(row);
      PressControl('X');
    }
    EXPECT_EQ(program.Subjects(), Texts{"Middle"});
    EXPECT_EQ(program.Session().Clipboard().Tag(), ID_CUT);

    std::string message;
    ASSERT_TRUE(program.Session().Open(other.Path(), "", false, message));
    program.GoTo({1, 2, 2005});
    PressControl('V');
    EXPECT_EQ(program.Selected(), "Early");
    PressControl('Z');
    EXPECT_EQ(core::DayIndex(program.Session().CurrentDate()), core::DayIndex(2004, 3, 14));
    EXPECT_EQ(program.Selected(), "Early");
    PressControl('Z');
    EXPECT_EQ(program.Subjects(), Texts{"Early"}) << "only the last one comes back";
  });
}

TEST_F(PanelCommands, WhatCannotBeWrittenStaysWhereItIs) {
  const core::Appointment kept = Today("Kept", 9).appointment;
  program.Run(calendar.Path(), [&] {
    for (const char key : {'X', 'V', 'Z'}) {
      SCOPED_TRACE(key);
      ClickRow(1);
      program.Session().PutInBin(kept);
      program.Session().PutOnClipboard(kept, ID_COPY);
      const std::string before = calendar.Bytes();
      FaultyCalls faults;
      // The edit lock that a cut takes can still be written, and given back.
      faults.Fail(FaultyCalls::kWrite, faults.Count(FaultyCalls::kWrite) + (key == 'X' ? 2 : 1), ENOSPC);
      driver.AnswerMessageBox(key == 'X' ? "Nothing was changed." : "The appointment was not saved.", IDOK);
      PressControl(key);
      EXPECT_EQ(calendar.Bytes(), before);
      for (const core::RecordHolder* holder : {&program.Session().Bin(), &program.Session().Clipboard()}) {
        core::Appointment held;
        EXPECT_TRUE(holder->Read(&held, sizeof held) && std::memcmp(&held, &kept, sizeof held) == 0);
      }
    }
  });
}

TEST_F(PanelCommands, ADropOnTheBinDeletesWithoutAQuestionAndAClickUndoes) {
  program.Run(calendar.Path(), [&] {
    const COLORREF emptyLook = Look();
    driver.AnswerMessageBox("Bin is empty.", IDOK);
    driver.Click(Bin(), InBin(0));
    struct Drop {
      int x;
      unsigned keys;
      std::size_t left;
    };
    constexpr Drop kDrops[] = {{-26, 0, 3}, {20, 0, 3}, {0, MK_CONTROL, 3}, {-25, 0, 2}, {19, 0, 1}};
    for (const auto& [x, keys, left] : kDrops) {
      driver.Drag(program.List(), program.RowPoint(0), Bin(), InBin(x), keys);
      EXPECT_EQ(program.Subjects().size(), left) << x;
    }
    EXPECT_NE(Look(), emptyLook);
    driver.Click(Bin(), InBin(-21));  // beside it
    EXPECT_EQ(program.Subjects(), Texts{"Late"});
    program.GoTo({20, 3, 2004});
    driver.Click(Bin(), InBin(-20));
    EXPECT_EQ(program.Subjects(), (Texts{"Middle", "Late"}));
    EXPECT_EQ(program.Selected(), "Middle");
    EXPECT_EQ(Look(), emptyLook);
  });
}

TEST_F(PanelCommands, TheBinHasAMenuAndKeys) {
  program.Run(calendar.Path(), [&] {
    driver.ChooseMenuItem("");
    driver.RightClick(Bin(), InBin(0));
    EXPECT_EQ(driver.LastMenu(), (Texts{"(Undo delete)", "-", "(Empty bin)"}));
    const auto fill = [&] {
      ClickRow(0);
      PressControl('X');
      SetFocus(Bin());
    };
    for (const unsigned key : {VK_SPACE, VK_RETURN, VK_APPS}) {
      fill();
      if (key == VK_APPS) driver.ChooseMenuItem("Undo delete");
      driver.Press(Bin(), key);
      driver.ProcessEvents();
      EXPECT_EQ(program.Selected(), "Early") << key;
    }
    fill();
    driver.ChooseMenuItem("Empty bin");
    driver.RightClick(Bin(), InBin(0));
    driver.ProcessEvents();
    EXPECT_TRUE(program.Session().Bin().IsEmpty());
    EXPECT_EQ(program.Subjects().size(), 2U);
  });
}

TEST_F(PanelCommands, FindLooksInSubjectsAndNotesAndGoesTo) {
  calendar.Add(Entry("MIDDLE of May").On(20, 5, 2004));
  calendar.Add(Entry("Weekly").On(2, 3, 2004).Notes("in the middle").Every(1, core::kRepeatWeekly, 4));
  program.Run(calendar.Path(), [&] {
    InFind([&] {
      EXPECT_FALSE(Enabled(dialog, FindDialog::kFindButton) || CanGo());
      EXPECT_EQ(Search("nothing"), "Occurrences 0");
      EXPECT_EQ(Search("mIdDlE"), "Occurrences 3");
      EXPECT_EQ(Row(0), "2/3/2004, 09:00-09:00, Weekly, repeats");
      EXPECT_FALSE(CanGo());
      Press(VK_END);  // the list has the keyboard
      EXPECT_TRUE(CanGo());
      driver.ClickControl(dialog, FindDialog::kGoToButton);
    });
    EXPECT_EQ(core::DayIndex(program.Session().CurrentDate()), core::DayIndex(2004, 5, 20));
    EXPECT_EQ(program.Selected(), "MIDDLE of May");
    program.ChooseCategory("Calls");
    InFind([&] {
      EXPECT_EQ(TextOf(dialog, FindDialog::kCategoryText), "Calls");
      EXPECT_EQ(Search("middle"), "Occurrences 1");
      Press(VK_ESCAPE);
    });
  });
}

TEST_F(PanelCommands, FindEditsInItsListWhichFollowsOthers) {
  platform::WriteProfileString(CalendarProgramFolder() + "/Daybrix.ini", "Preference", "NetworkRefresh", "1");
  program.Run(calendar.Path(), [&] {
    InFind([&] {
      Search("l");
      driver.WhenDialogOpens([&](HWND editor) {
        driver.TypeInto(editor, AppointmentEditor::kSubjectEdit, "Later");
        driver.Press(editor, VK_RETURN);
      });
      driver.DoubleClick(Results(), {30, 70});
      driver.ProcessEvents();
      EXPECT_EQ(Row(2), "14/3/2004, 10:00-10:00, Later");
      calendar.Add(Entry("Long ago").On(1, 3, 2004));
      driver.WaitUntil([&] { return GetWindowText(dialog) == "Occurrences 4"; });
      EXPECT_TRUE(CanGo()) << "the selection stays with its record";
      ASSERT_EQ(calendar.file.DeleteRecord(2625 + 2 * 2627), core::Result::kDone);
      driver.AnswerMessageBox("Record is deleted by other user.", IDOK);
      driver.ClickControl(dialog, FindDialog::kGoToButton);
      driver.ProcessEvents();
      EXPECT_EQ(GetWindowText(dialog), "Occurrences 3");
      EXPECT_FALSE(CanGo());
      Press(VK_ESCAPE);
    });
  });
}

TEST_F(PanelCommands, ARowOfFindHasItsTextsInTheirPlaces) {
  RecordingDc hdc;
  core::Appointment record = Entry("Subject").AllDay().Category("Calls").Confidential().appointment;
  record.attachmentKind = core::kAttachedUrl;
  core::WriteText(record.attachment, "www");
  DrawFindRow(&hdc, &record, LoadRowMarks(), false, {0, 0, 300, 30});
  const struct {
    const char* text;
    POINT place;
    COLORREF colour;
  } kTexts[] = {{"1/3/2004", {5, 1}, RGB(0, 0, 0)},
                {"All day event", {60, 1}, RGB(0, 0, 0)},
                {"[Calls]", {155, 1}, kRowMark},  // after the padlock alone
                {"Subject", {5, 12}, kRowText}};
  for (const auto& expected : kTexts) {
    const DrawingCall* call = hdc.FindText(expected.text);
    ASSERT_NE(call, nullptr) << expected.text;
    EXPECT_EQ(call->rect.left, expected.place.x) << expected.text;
    EXPECT_EQ(call->rect.top, expected.place.y) << expected.text;
    EXPECT_EQ(call->colour, expected.colour) << expected.text;
  }
}

}  // namespace
}  // namespace tests
