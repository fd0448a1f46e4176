// The appointment editor as a dialog: what it shows, what it takes back into the record, and what it leaves
// alone.
#include <gtest/gtest.h>

#include <cstring>

#include "calendar/dialogs/appointment_editor.h"
#include "calendar/dialogs/repeat_dialog.h"
#include "desktop/picker_steps.h"
#include "resources/resources.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

// A + before a field of a record makes a copy: a reference to it would not be aligned.

class EditorTest : public testing::Test {
 protected:
  EditorTest() { RegisterResources(); }

  // Runs the editor on the record, over nothing, with the script as its user.
  int Edit(std::function<void(HWND)> script, AppointmentEditor::Mode mode = AppointmentEditor::Mode::kEdit) {
    driver.WhenDialogOpens(std::move(script));
    AppointmentEditor editor(calendar.file, record, {20, 5, 2004}, mode);
    return editor.Run(nullptr);
  }
  void PressOk(HWND dialog) { driver.ClickControl(dialog, IDOK); }

  DesktopDriver driver;
  TemporaryCalendar calendar;
  core::Appointment record = Entry("Subject").On(14, 3, 2004).At(13, 30).appointment;
};

TEST_F(EditorTest, OkUntouchedChangesNothingButTheAlarmThatIsOff) {
  // Fields that are full and unterminated, and a category that the file does not have.
  std::memset(record.subject, 'S', sizeof record.subject);
  std::memset(record.notes, 'n', sizeof record.notes);
  std::memset(record.header.category, 'C', sizeof record.header.category);
  record.header.confidential = 1;
  record.allDay = 1;
  record.alarmDaysBefore = 7;
  record.alarmState = 3;
  core::WriteText(record.alarmTone, "ring.wav");
  core::Appointment expected = record;
  core::WriteText(expected.alarmTone, "");
  expected.alarmStartKind = core::kAlarmStartsDocument;
  expected.alarmDate = expected.date;
  expected.alarmTime = expected.startTime;
  expected.alarmDaysBefore = 0;
  expected.alarmState = 0;
  EXPECT_EQ(Edit([&](HWND dialog) {
              EXPECT_EQ(TextOf(dialog, AppointmentEditor::kDateButton), "14/3/2004");
              EXPECT_EQ(TextOf(dialog, AppointmentEditor::kTimeButton), "13:30 / 13:30");
              EXPECT_EQ(TextOf(dialog, AppointmentEditor::kCategoryBox), std::string(30, 'C'));
              EXPECT_TRUE(IsDlgButtonChecked(dialog, AppointmentEditor::kAllDayBox) &&
                          IsDlgButtonChecked(dialog, AppointmentEditor::kConfidentialBox));
              EXPECT_FALSE(Enabled(dialog, AppointmentEditor::kTimeButton));
              PressOk(dialog);
            }),
            1);
  EXPECT_EQ(std::memcmp(&record, &expected, sizeof record), 0);
}

TEST_F(EditorTest, AnAlarmThatIsOnKeepsItsOwnDate) {
  record.alarmOn = 1;
  record.alarmDate = {1, 2, 2004};
  record.alarmDaysBefore = 2;
  const core::Appointment before = record;
  Edit([&](HWND dialog) { PressOk(dialog); });
  EXPECT_EQ(std::memcmp(&record.alarmOn, &before.alarmOn, offsetof(core::Appointment, date) - 549), 0);
}

TEST_F(EditorTest, AnAppointmentNeedsASubject) {
  record = {};
  const auto script = [&](HWND dialog) {
    EXPECT_FALSE(Enabled(dialog, IDOK));
    driver.Press(dialog, VK_RETURN);
    driver.Type(dialog, "x");  // the subject has the focus
    EXPECT_TRUE(Enabled(dialog, IDOK));
    driver.Press(dialog, VK_BACK);
    EXPECT_FALSE(Enabled(dialog, IDOK));
    driver.Type(dialog, std::string(160, 'a'));
    driver.TypeInto(dialog, AppointmentEditor::kNotesEdit, "one\ntwo");
    driver.TypeInto(dialog, AppointmentEditor::kCategoryBox, "Made up");
    driver.ClickControl(dialog, AppointmentEditor::kConfidentialBox);
    driver.ClickControl(dialog, AppointmentEditor::kAllDayBox);
    PressOk(dialog);
  };
  EXPECT_EQ(Edit(script, AppointmentEditor::Mode::kNew), 1);
  EXPECT_EQ(core::ReadText(record.subject), std::string(149, 'a'));
  EXPECT_EQ(core::ReadText(record.header.category), "Made up");
  EXPECT_EQ(record.header.confidential, 1);
  EXPECT_EQ(+record.allDay, 1U);
  EXPECT_EQ(core::DayIndex(record.date), core::DayIndex(2004, 5, 20));
  EXPECT_EQ(record.startTime.minute % 5, 0);
  EXPECT_EQ(Edit([&](HWND dialog) { driver.Press(dialog, VK_ESCAPE); }), 0);
}

TEST_F(EditorTest, ANewAppointmentStartsWithTheCategoryThatIsShown) {
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_EQ(TextOf(dialog, AppointmentEditor::kCategoryBox), "Calls");
    const LPARAM fifth = reinterpret_cast<LPARAM>("Holiday");  // the twelfth of the file
    EXPECT_EQ(SendDlgItemMessage(dialog, AppointmentEditor::kCategoryBox, CB_FINDSTRINGEXACT, 0, fifth), 4);
    driver.Type(dialog, "x");
    PressOk(dialog);
  });
  AppointmentEditor(calendar.file, record, {20, 5, 2004}, AppointmentEditor::Mode::kNew, "Calls")
      .Run(nullptr);
  EXPECT_EQ(core::ReadText(record.header.category), "Calls");
}

TEST_F(EditorTest, OnlyTheOwnerHasAWordOnConfidential) {
  const TemporaryCalendar guarded({"Owner", "Assistant", "Reader"});
  const core::RecordFile assistant(guarded.Path(), "Assistant");
  record.header.confidential = 1;
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_FALSE(Enabled(dialog, AppointmentEditor::kConfidentialBox));
    EXPECT_FALSE(IsDlgButtonChecked(dialog, AppointmentEditor::kConfidentialBox));
    PressOk(dialog);
  });
  AppointmentEditor editor(assistant, record, {}, AppointmentEditor::Mode::kEdit);
  EXPECT_EQ(editor.Run(nullptr), 1);
  EXPECT_EQ(record.header.confidential, 0);
}

TEST_F(EditorTest, TheRepeatButtonSetsTheRule) {
  Edit([&](HWND dialog) {
    driver.WhenDialogOpens([&](HWND repeat) {
      driver.ClickControl(repeat, 103);  // monthly
      PressOk(repeat);
    });
    driver.ClickControl(dialog, AppointmentEditor::kRepeatButton);
    PressOk(dialog);
  });
  EXPECT_EQ(record.repeat.repeatType, core::kRepeatMonthly);
  EXPECT_EQ(+record.repeat.repeatParam, 14U);
}

TEST_F(EditorTest, TheTimeButtonSetsBothTimesWhileItIsNotAllDay) {
  EXPECT_EQ(Edit([&](HWND dialog) {
              driver.ClickControl(dialog, AppointmentEditor::kAllDayBox);
              EXPECT_FALSE(Enabled(dialog, AppointmentEditor::kTimeButton));
              driver.ClickControl(dialog, AppointmentEditor::kAllDayBox);
              driver.WhenDialogOpens([&](HWND picker) {
                driver.Press(picker, VK_NEXT);
                PressOk(picker);
              });
              driver.ClickControl(dialog, AppointmentEditor::kTimeButton);
              EXPECT_EQ(TextOf(dialog, AppointmentEditor::kTimeButton), "13:30 / 14:30");
              PressOk(dialog);
            }),
            1);
  EXPECT_EQ(core::TimeSlot(record.endTime), core::TimeSlot(2, 30, core::kAfterNoon));
}

TEST_F(EditorTest, ARuleThatDoesNotMeetTheDateIsTold) {
  record.repeat = Entry().Every(1, core::kRepeatMonthly, 15).Until(20, 5, 2004).appointment.repeat;
  Edit([&](HWND dialog) { PressOk(dialog); });  // as it was: the user knows
  const std::pair<core::Date, const char*> moves[] = {{{14, 2, 2004}, "first occurs on 15/3/2004."},
                                                      {{20, 3, 2004}, "first occurs on 15/5/2004."},
                                                      {{16, 4, 2004}, "never occurs"}};
  for (const auto& [date, told] : moves) {
    record.date = date;
    Edit([&, told = told](HWND dialog) {
      driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, 1); });
      driver.ClickControl(dialog, AppointmentEditor::kDateButton);
      driver.AnswerMessageBox(told, IDOK);
      PressOk(dialog);
    });
    EXPECT_EQ(+record.repeat.repeatParam, 15U);
  }
}

TEST_F(EditorTest, TheDateButtonOpensThePicker) {
  record.repeat = Entry().Every(1, core::kRepeatDaily).Until(17, 3, 2004).appointment.repeat;
  const auto nextMonth = [&](HWND picker) { PickMonth(driver, picker, 1); };
  // A day after the end of the repeats is refused; the dialog in which the end can be moved opens by itself.
  Edit([&](HWND dialog) {
    driver.WhenDialogOpens(nextMonth);
    driver.AnswerMessageBox("end date must occur after the start date.", IDOK);
    bool moved = false;
    driver.WhenDialogOpens([&](HWND repeat) {
      EXPECT_EQ(TextOf(repeat, RepeatDialog::kEndDateButton), "17/3/2004");
      driver.WhenDialogOpens(nextMonth);
      driver.ClickControl(repeat, RepeatDialog::kEndDateButton);
      PressOk(repeat);
      moved = true;
    });
    driver.ClickControl(dialog, AppointmentEditor::kDateButton);
    driver.WaitUntil([&] { return moved; });
    EXPECT_EQ(TextOf(dialog, AppointmentEditor::kDateButton), "14/3/2004");
    driver.WhenDialogOpens(nextMonth);
    driver.ClickControl(dialog, AppointmentEditor::kDateButton);
    EXPECT_EQ(TextOf(dialog, AppointmentEditor::kDateButton), "14/4/2004");
    PressOk(dialog);
  });
  EXPECT_EQ(core::DayIndex(record.date), core::DayIndex(2004, 4, 14));
  EXPECT_EQ(core::DayIndex(record.repeat.repeatEnd), core::DayIndex(2004, 4, 17));
}

}  // namespace
}  // namespace tests
