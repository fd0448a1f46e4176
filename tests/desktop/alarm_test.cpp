// Alarms: their settings, and how they ring in the running program.
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>

#include "calendar/dialogs/alarm_dialog.h"
#include "calendar/dialogs/alarm_settings_dialog.h"
#include "calendar/dialogs/attach_dialog.h"
#include "platform/desktop/message_box.h"
#include "resources/resources.h"
#include "support/calendar_program.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

using Settings = AlarmSettingsDialog;

// Rings at 9:00 on a day of March 2004.
Entry Alarm(const char* subject, int day) {
  Entry entry(subject);
  entry.On(day, 3, 2004).At(9, 0);
  entry.appointment.alarmOn = 1;
  entry.appointment.alarmDate = entry.appointment.date;
  entry.appointment.alarmTime = entry.appointment.startTime;
  return entry;
}

class AlarmSettings : public testing::Test {
 protected:
  AlarmSettings() { RegisterResources(); }

  DesktopDriver driver;
  core::Appointment record = Entry("Lunch").On(20, 3, 2004).At(13, 30).appointment;
};

TEST_F(AlarmSettings, AnAlarmIsSetAndKeptAsItIs) {
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_FALSE(Enabled(dialog, Settings::kToneEdit));
    driver.ClickControl(dialog, Settings::kSetRadio);
    EXPECT_TRUE(Enabled(dialog, Settings::kToneEdit));
    EXPECT_EQ(TextOf(dialog, Settings::kTimeButton), "13:30");
    SendDlgItemMessage(dialog, Settings::kDaysBox, CB_SETCURSEL, 2, 0);
    SendMessage(dialog, WM_COMMAND, MakeWParam(Settings::kDaysBox, CBN_SELCHANGE), 0);
    EXPECT_EQ(TextOf(dialog, Settings::kRingLabel), "Date: 18/3/2004\r\nTime: 13:30");
    driver.WhenDialogOpens([&](HWND picker) {
      driver.Press(picker, VK_DOWN);
      driver.Press(picker, VK_RETURN);
    });
    driver.ClickControl(dialog, Settings::kTimeButton);
    EXPECT_EQ(TextOf(dialog, Settings::kRingLabel), "Date: 18/3/2004\r\nTime: 13:35");
    driver.TypeInto(dialog, Settings::kToneEdit, "/none.wav");
    driver.AnswerMessageBox("\"/none.wav\" cannot be played", IDOK);
    driver.ClickControl(dialog, Settings::kPlayButton);
    SetDlgItemPath(dialog, Settings::kStartEdit, std::string(261, 'x'));
    driver.AnswerMessageBox("too long", IDOK);
    driver.ClickControl(dialog, IDOK);
    driver.TypeInto(dialog, Settings::kStartEdit, "ann@example.org");
    driver.ClickControl(dialog, Settings::kMailRadio);
    driver.ClickControl(dialog, IDOK);
  });
  EXPECT_TRUE(Settings(record, true).Run(nullptr));
  EXPECT_EQ(record.alarmOn, 1);
  EXPECT_EQ(core::DayIndex(record.alarmDate), core::DayIndex(record.date));
  EXPECT_EQ(core::ReadText(record.alarmTone), "/none.wav");
  EXPECT_EQ(core::ReadText(record.alarmStartTarget), "ann@example.org");
  EXPECT_EQ(record.alarmStartKind, core::kAlarmStartsMail);

  // What fills its field to the last byte stays whole, also opened again and again.
  std::memset(record.alarmTone, 't', sizeof record.alarmTone);
  std::memset(record.attachment, 'a', sizeof record.attachment);
  record.attachmentKind = core::kAttachedUrl;
  const core::Appointment before = record;
  const auto ok = [&](HWND dialog) { driver.ClickControl(dialog, IDOK); };
  for (const bool isNew : {true, false}) {
    driver.WhenDialogOpens(ok);
    EXPECT_TRUE(Settings(record, isNew).Run(nullptr));
    driver.WhenDialogOpens(ok);
    EXPECT_TRUE(AttachDialog(record).Run(nullptr));
  }
  EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
  driver.WhenDialogOpens([&](HWND dialog) {
    SetDlgItemPath(dialog, AttachDialog::kPathEdit, "");
    driver.ClickControl(dialog, IDOK);
  });
  EXPECT_TRUE(AttachDialog(record).Run(nullptr));
  EXPECT_EQ(record.attachmentKind, core::kNoAttachment);
}

TEST_F(AlarmSettings, AnOldSeriesDoesNotRingForAllThatIsPast) {
  record = Entry("Weekly").On(5, 1, 2004).Every(1, core::kRepeatWeekly, 2).appointment;
  const Settings dialog(record, false);
  EXPECT_GE(core::DayIndex(record.alarmDate), core::DayIndex(core::Today()));
  EXPECT_EQ(core::Weekday(record.alarmDate), 1);
}

class RingingAlarms : public testing::Test {
 protected:
  void Tick() { SendMessage(program.Frame(), WM_TIMER, 106, 0); }
  // The next check rings for a subject; `script` closes the dialog.
  void ExpectRing(const std::string& subject, const std::function<void(HWND)>& script) {
    bool rang = false;
    program.driver.WhenDialogOpens([&](HWND dialog) {
      rang = true;
      EXPECT_EQ(TextOf(dialog, AlarmDialog::kSubjectEdit), subject);
      script(dialog);
    });
    Tick();
    EXPECT_TRUE(rang) << subject;
  }
  void ExpectRing(const std::string& subject) {
    ExpectRing(subject, [this](HWND dialog) { program.driver.ClickControl(dialog, IDOK); });
  }
  core::Appointment Stored(std::int32_t offset) const {
    core::Appointment record;
    EXPECT_TRUE(calendar.file.ReadRecord(&record, offset));
    return record;
  }

  TemporaryCalendar calendar;
  CalendarProgram program;
};

TEST_F(RingingAlarms, OneACheckInTheirOrderAndEachOnce) {
  const Entry record = Alarm("Unseen", 14);
  const std::int32_t late = calendar.Add(Alarm("Late", 14));
  const std::int32_t early = calendar.Add(Alarm("Early", 12));
  calendar.Add(Alarm("Tomorrow", 15));
  const std::int32_t series = calendar.Add(Alarm("Series", 13).Every(1, core::kRepeatDaily));
  program.Run(calendar.Path(), [&] {
    ExpectRing("Early", [&](HWND dialog) {
      EXPECT_EQ(TextOf(dialog, AlarmDialog::kDateText), "12/3/2004");
      EXPECT_EQ(TextOf(dialog, AlarmDialog::kTimeText), "09:00");
      EXPECT_FALSE(Enabled(dialog, AlarmDialog::kStartBox));
      EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, AlarmDialog::kDisableBox)));
      EXPECT_FALSE(calendar.file.LockRecord(early)) << "the alarm is this copy's";
      Tick();  // another one waits
      program.driver.Press(dialog, VK_ESCAPE);
    });
    EXPECT_EQ(Stored(early).alarmOn, 0);
    EXPECT_EQ(Stored(early).header.editLock, 0);
    // The series is in another copy's hands, which then deletes it.
    ASSERT_TRUE(calendar.file.LockRecord(series));
    core::SetRefreshEnabled(true);  // the lock is not this program's
    ExpectRing("Late");
    EXPECT_EQ(Stored(late).alarmOn, 0);
    calendar.file.UnlockRecord(series);
    ExpectRing("Series");
    EXPECT_EQ(core::DayIndex(Stored(series).alarmDate), core::DayIndex(2004, 3, 14));
    ExpectRing("Series", [&](HWND dialog) {
      program.driver.ClickControl(dialog, AlarmDialog::kDisableBox);
      program.driver.ClickControl(dialog, IDOK);
    });
    EXPECT_EQ(Stored(series).alarmOn, 0);
    Tick();
    EXPECT_EQ(calendar.file.WriteRecord(&record.appointment, late), core::Result::kDone);
    ExpectRing("Unseen", [](HWND) { raise(SIGTERM); });
    EXPECT_EQ(Stored(late).alarmOn, 1);
    EXPECT_EQ(Stored(late).header.editLock, 0);
  });
}

TEST_F(RingingAlarms, NothingIsWrittenWhereTheRecordOrTheFileIsNoLongerTheOne) {
  const std::int32_t gone = calendar.Add(Alarm("Gone", 12));
  calendar.Add(Alarm("Replaced", 13));
  Entry target = Alarm("Start", 14);
  core::WriteText(target.appointment.alarmStartTarget, "no such file");
  core::WriteText(target.appointment.alarmTone, "no such tone");
  program.Run(calendar.Path(), [&] {
    ExpectRing("Gone", [&](HWND dialog) {
      EXPECT_EQ(calendar.file.DeleteRecord(gone), core::Result::kDone);
      EXPECT_EQ(calendar.file.AddRecord(&target.appointment), core::Result::kDone) << "in its slot";
      program.driver.ClickControl(dialog, IDOK);
    });
    EXPECT_EQ(Stored(gone).alarmOn, 1);
    TemporaryCalendar other;
    const std::int32_t same = other.Add(Alarm("Start", 14));
    ExpectRing("Replaced", [&](HWND dialog) {
      ASSERT_EQ(std::rename(other.Path().c_str(), calendar.Path().c_str()), 0);
      program.driver.AnswerMessageBox("will ring again", IDOK);
      program.driver.ClickControl(dialog, IDOK);
    });
    core::Appointment record;
    ASSERT_TRUE(program.File()->ReadRecord(&record, same));
    EXPECT_EQ(record.alarmOn, 1);
    EXPECT_EQ(program.File()->WriteRecord(&target.appointment, same), core::Result::kDone);
    ExpectRing("Start", [&](HWND dialog) {
      program.driver.AnswerMessageBox("\"no such tone\" cannot be played", IDOK);
      program.driver.AnswerMessageBox("\"no such file\" cannot be opened", IDOK);
      program.driver.ClickControl(dialog, IDOK);
    });
  });
}

TEST(AlarmRights, AReaderRingsNothingAndAnAssistantNothingConfidential) {
  TemporaryCalendar guarded({"Owner", "Assistant", "Reader"});
  guarded.Add(Alarm("Secret", 12).Confidential());
  const std::int32_t open = guarded.Add(Alarm("Open", 13));
  for (const char* password : {"Reader", "Assistant"}) {
    CalendarProgram program;
    program.EnterPassword(password);
    program.Run(guarded.Path(), [&] {
      const bool rings = std::string(password) == "Assistant";
      if (rings) {
        program.driver.WhenDialogOpens([&](HWND dialog) {
          EXPECT_EQ(TextOf(dialog, AlarmDialog::kSubjectEdit), "Open");
          program.driver.ClickControl(dialog, IDOK);
        });
      }
      for (int check = 0; check < 2; ++check) SendMessage(program.Frame(), WM_TIMER, 106, 0);
      core::Appointment record;
      EXPECT_TRUE(guarded.file.ReadRecord(&record, open));
      EXPECT_EQ(record.alarmOn, rings ? 0 : 1);
    });
  }
}

}  // namespace
}  // namespace tests
