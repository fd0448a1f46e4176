// Alarms: their settings, and how they ring in the running program.
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>

#include "calendar/dialogs/alarm_dialog.h"
#include "calendar/dialogs/alarm_settings_dialog.h"
#include "calendar/dialogs/attach_dialog.h"
#include "calendar/find_dialog.h"
#include "platform/desktop/message_box.h"
#include "resources/resources.h"
#include "shell/commands.h"
#include "support/calendar_program.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

using Settings = AlarmSettingsDialog;
using Script = std::function<void(HWND)>;

class AlarmSettings : public testing::Test {
 protected:
  AlarmSettings() { RegisterResources(); }
  // Accepts a dialog on the record after what the script does in it.
  template <typename Dialog>
  void Accept(
      Dialog dialog, const Script& script = [](HWND) {}) {
    driver.WhenDialogOpens([&](HWND window) {
      script(window);
      driver.ClickControl(window, IDOK);
    });
    EXPECT_TRUE(dialog.Run(nullptr));
  }

  DesktopDriver driver;
  core::Appointment record = Entry("Lunch").On(20, 3, 2004).At(13, 30).appointment;
};

TEST_F(AlarmSettings, AnAlarmIsSet) {
  Accept(Settings(record, true), [&](HWND dialog) {
    EXPECT_FALSE(Enabled(dialog, Settings::kToneEdit));
    driver.ClickControl(dialog, Settings::kSetRadio);
    driver.TypeInto(dialog, Settings::kDaysBox, "2");
    EXPECT_EQ(TextOf(dialog, Settings::kRingLabel), "Date: 18/3/2004\r\nTime: 13:30");
    driver.TypeInto(dialog, Settings::kToneEdit, "/none.wav");
    driver.AnswerMessageBox("\"/none.wav\" cannot be played", IDOK);
    driver.ClickControl(dialog, Settings::kPlayButton);
    SetDlgItemPath(dialog, Settings::kStartEdit, std::string(261, 'x'));
    driver.AnswerMessageBox("too long", IDOK);
    driver.ClickControl(dialog, IDOK);
    driver.TypeInto(dialog, Settings::kStartEdit, "ann@example.org");
    driver.ClickControl(dialog, Settings::kMailRadio);
  });
  EXPECT_EQ(record.alarmOn, 1);
  EXPECT_EQ(core::ReadText(record.alarmTone), "/none.wav");
  EXPECT_EQ(core::ReadText(record.alarmStartTarget), "ann@example.org");
  EXPECT_EQ(record.alarmStartKind, core::kAlarmStartsMail);
}

TEST_F(AlarmSettings, WhatFillsItsFieldStaysWhole) {
  record.alarmOn = 1;
  record.alarmDate = record.date;
  record.alarmStartKind = core::kAlarmStartsUrl;
  std::memset(record.alarmTone, 't', sizeof record.alarmTone);
  std::memset(record.attachment, 'a', sizeof record.attachment);
  record.attachmentKind = core::kAttachedUrl;
  const core::Appointment before = record;
  Accept(Settings(record, false));
  Accept(AttachDialog(record));
  EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
  Accept(AttachDialog(record), [](HWND dialog) { SetDlgItemPath(dialog, AttachDialog::kPathEdit, ""); });
  EXPECT_EQ(record.attachmentKind, core::kNoAttachment);
}

TEST_F(AlarmSettings, AnOldSeriesDoesNotRingForAllThatIsPast) {
  record = Entry("Weekly").On(5, 1, 2004).Every(1, core::kRepeatWeekly, 2).appointment;
  const Settings dialog(record, false);
  EXPECT_GE(core::DayIndex(record.alarmDate), core::DayIndex(core::Today()));
  EXPECT_EQ(core::Weekday(record.alarmDate), 1);
}

// Rings at 9:00 on a day of March 2004.
Entry Alarm(const char* subject, int day) {
  Entry entry(subject);
  entry.On(day, 3, 2004).At(9, 0);
  entry.appointment.alarmOn = 1;
  entry.appointment.alarmDate = entry.appointment.date;
  entry.appointment.alarmTime = entry.appointment.startTime;
  return entry;
}

class RingingAlarms : public testing::Test {
 protected:
  void Tick() { SendMessage(program.Frame(), WM_TIMER, 106, 0); }
  void Ok(HWND dialog) { program.driver.ClickControl(dialog, IDOK); }
  // The next check rings for a subject; the script closes the dialog.
  void ExpectRing(const std::string& subject, const Script& script) {
    std::string rang;
    program.driver.WhenDialogOpens([&](HWND dialog) {
      rang = TextOf(dialog, AlarmDialog::kSubjectEdit);
      script(dialog);
    });
    Tick();
    EXPECT_EQ(rang, subject);
  }
  void ExpectRing(const std::string& subject) {
    ExpectRing(subject, [this](HWND dialog) { Ok(dialog); });
  }
  core::Appointment Stored(std::int32_t offset) {
    core::Appointment record{};
    EXPECT_TRUE(program.File()->ReadRecord(&record, offset));
    return record;
  }

  TemporaryCalendar calendar;
  CalendarProgram program;
};

TEST_F(RingingAlarms, OneACheckInTheirOrderAndEachOnce) {
  const Entry unseen = Alarm("Unseen", 14);
  const std::int32_t late = calendar.Add(Alarm("Late", 14));
  const std::int32_t early = calendar.Add(Alarm("Early", 12));
  calendar.Add(Alarm("Tomorrow", 15));
  const std::int32_t series = calendar.Add(Alarm("Series", 13).Every(1, core::kRepeatDaily));
  program.Run(calendar.Path(), [&] {
    ExpectRing("Early", [&](HWND dialog) {
      EXPECT_EQ(TextOf(dialog, AlarmDialog::kDateText), "12/3/2004");
      EXPECT_FALSE(Enabled(dialog, AlarmDialog::kStartBox));
      EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, AlarmDialog::kDisableBox)));
      EXPECT_FALSE(calendar.file.LockRecord(early)) << "the alarm is this copy's";
      Tick();  // another one waits
      program.driver.Press(dialog, VK_ESCAPE);
    });
    EXPECT_EQ(Stored(early).alarmOn, 0);
    EXPECT_EQ(Stored(early).header.editLock, 0);
    ASSERT_TRUE(calendar.file.LockRecord(series));
    Tick();                         // this program holds a lock
    core::SetRefreshEnabled(true);  // it is another copy's
    ExpectRing("Late");
    EXPECT_EQ(Stored(late).alarmOn, 0);
    calendar.file.UnlockRecord(series);
    ExpectRing("Series");
    EXPECT_EQ(core::DayIndex(Stored(series).alarmDate), core::DayIndex(2004, 3, 14));
    ExpectRing("Series", [&](HWND dialog) {
      program.driver.ClickControl(dialog, AlarmDialog::kDisableBox);
      Ok(dialog);
    });
    EXPECT_EQ(Stored(series).alarmOn, 0);
    Tick();
    EXPECT_EQ(calendar.file.WriteRecord(&unseen.appointment, late), core::Result::kDone);
    ExpectRing("Unseen", [](HWND) { raise(SIGTERM); });
    EXPECT_EQ(Stored(late).alarmOn, 1);
    EXPECT_EQ(Stored(late).header.editLock, 0);
  });
}

TEST_F(RingingAlarms, OverAListOfFindWhichKeepsItsRow) {
  calendar.Add(Alarm("First", 12));
  calendar.Add(Alarm("Second", 13));
  program.Run(calendar.Path(), [&] {
    program.driver.WhenDialogOpens([&](HWND find) {
      program.driver.TypeInto(find, FindDialog::kTextEdit, "s");
      program.driver.ClickControl(find, FindDialog::kFindButton);
      program.driver.Press(GetFocus(), VK_DOWN);
      EXPECT_TRUE(Enabled(find, FindDialog::kGoToButton)) << "a row is selected";
      ExpectRing("First");
      program.driver.ProcessEvents();
      EXPECT_TRUE(Enabled(find, FindDialog::kGoToButton));
      program.driver.WhenDialogOpens([&](HWND editor) {
        core::SetRefreshEnabled(true);  // it is not its lock alone that keeps the editor from alarms
        Tick();
        program.driver.Press(editor, VK_ESCAPE);
      });
      program.driver.Press(GetFocus(), VK_SPACE);
      program.driver.ProcessEvents();
      ExpectRing("Second");
      program.driver.ClickControl(find, FindDialog::kDoneButton);
    });
    SendMessage(program.Frame(), WM_COMMAND, ID_FIND, 0);
  });
}

TEST_F(RingingAlarms, NothingIsWrittenIntoAnotherRecordOrFile) {
  const std::int32_t gone = calendar.Add(Alarm("Gone", 12));
  calendar.Add(Alarm("Replaced", 13));
  Entry target = Alarm("Start", 14);
  core::WriteText(target.appointment.alarmStartTarget, "no such file");
  core::WriteText(target.appointment.alarmTone, "no such tone");
  TemporaryCalendar other;
  const std::int32_t same = other.Add(target);
  program.Run(calendar.Path(), [&] {
    ExpectRing("Gone", [&](HWND dialog) {
      EXPECT_EQ(calendar.file.DeleteRecord(gone), core::Result::kDone);
      EXPECT_EQ(calendar.file.AddRecord(&target.appointment), core::Result::kDone) << "in its slot";
      Ok(dialog);
    });
    EXPECT_EQ(Stored(gone).alarmOn, 1);
    ExpectRing("Replaced", [&](HWND dialog) {
      ASSERT_EQ(std::rename(other.Path().c_str(), calendar.Path().c_str()), 0);
      program.driver.AnswerMessageBox("will ring again", IDOK);
      Ok(dialog);
    });
    EXPECT_EQ(Stored(same).alarmOn, 1);
    ExpectRing("Start", [&](HWND dialog) {
      program.driver.AnswerMessageBox("\"no such tone\" cannot be played", IDOK);
      program.driver.AnswerMessageBox("\"no such file\" cannot be opened", IDOK);
      Ok(dialog);
    });
    EXPECT_EQ(Stored(same).alarmOn, 0);
  });
}

TEST_F(RingingAlarms, OfAFileThatIsOnlyReadOnceAndWithoutATrace) {
  calendar.Add(Alarm("Once", 14));
  program.Run(calendar.Path(), [&] {
    program.Session().Take(
        std::make_unique<core::RecordFile>(calendar.Path(), "", core::OpenMode::kAsReader));
    const std::string before = calendar.Bytes();
    ExpectRing("Once");
    Tick();
    EXPECT_EQ(calendar.Bytes(), before);
  });
}

TEST(AlarmRights, AReaderRingsNothingAndAnAssistantNothingConfidential) {
  for (const std::string password : {"Reader", "Assistant"}) {
    TemporaryCalendar guarded({"Owner", "Assistant", "Reader"});
    guarded.Add(Alarm("Secret", 12).Confidential());
    guarded.Add(Alarm("Open", 13));
    CalendarProgram program;
    program.EnterPassword(password);
    program.Run(guarded.Path(), [&] {
      std::string rang;
      if (password == "Assistant") {
        program.driver.WhenDialogOpens([&](HWND dialog) {
          rang = TextOf(dialog, AlarmDialog::kSubjectEdit);
          program.driver.ClickControl(dialog, IDOK);
        });
      }
      for (int check = 0; check < 2; ++check) SendMessage(program.Frame(), WM_TIMER, 106, 0);
      EXPECT_EQ(rang, password == "Assistant" ? "Open" : "");
    });
  }
}

}  // namespace
}  // namespace tests
