#include "calendar/dialogs/alarm_settings_dialog.h"

#include <algorithm>

#include "calendar/dialogs/path_field.h"
#include "core/calendar/alarm_schedule.h"
#include "core/calendar/repeat_rule.h"
#include "core/store/file_messages.h"
#include "core/time_texts.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "platform/desktop/application.h"

namespace {

constexpr int kTemplate = 2001;
constexpr int kMostDays = 99;
constexpr const char* kToneFiles = "Alarm file(*.wav)|*.wav||";
constexpr const char* kAllFiles = "(*.*)|*.*||";

using Dialog = AlarmSettingsDialog;

struct StartRadio {
  int id;
  core::AlarmStartKind kind;
};
constexpr StartRadio kStartRadios[] = {{Dialog::kMailRadio, core::kAlarmStartsMail},
                                       {Dialog::kUrlRadio, core::kAlarmStartsUrl},
                                       {Dialog::kDocumentRadio, core::kAlarmStartsDocument}};

// What an alarm that is off does not need.
constexpr int kAlarmControls[] = {Dialog::kDaysBox,           Dialog::kTimeButton,       Dialog::kToneEdit,
                                  Dialog::kPlayButton,        Dialog::kBrowseToneButton, Dialog::kStartEdit,
                                  Dialog::kBrowseStartButton, Dialog::kMailRadio,        Dialog::kUrlRadio,
                                  Dialog::kDocumentRadio,     Dialog::kRingLabel};

// Makes the alarm of a new appointment, or one that is off, ready to be set: at the start of the appointment.
// One that repeats would begin with its first occurrence and ring for every one since.
void Prepare(core::Appointment& appointment, bool isNew) {
  if (appointment.alarmOn == 1 && !isNew) return;
  appointment.alarmDate = appointment.date;
  appointment.alarmTime = appointment.startTime;
  appointment.alarmDaysBefore = 0;
  appointment.alarmState = 0;
  core::Date yesterday = core::Today();
  if (isNew || !core::HasRepeat(appointment) || !core::PreviousDay(yesterday)) return;
  if (core::DayIndex(appointment.date) > core::DayIndex(yesterday)) return;
  appointment.alarmDate = core::NextOccurrence(appointment, yesterday).value_or(appointment.date);
}

}  // namespace

AlarmSettingsDialog::AlarmSettingsDialog(core::Appointment& record, bool isNew) : appointment(record) {
  Prepare(appointment, isNew);
}

bool AlarmSettingsDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT AlarmSettingsDialog::OnInitDialog(const MessageRecord&) {
  for (int count = 0; count <= kMostDays; ++count) days.Add(std::to_string(count));
  days.Select(std::clamp<int>(appointment.alarmDaysBefore, 0, kMostDays));
  time.Show(core::TimeOfDay(appointment.alarmTime));
  ShowPathField(tone, appointment.alarmTone);
  ShowPathField(start, appointment.alarmStartTarget);
  int startRadio = kDocumentRadio;
  for (const StartRadio& radio : kStartRadios) {
    if (radio.kind == appointment.alarmStartKind) startRadio = radio.id;
  }
  CheckDlgButton(hwnd, startRadio, true);
  CheckDlgButton(hwnd, appointment.alarmOn == 1 ? kSetRadio : kCancelRadio, true);
  EnableControls();
  ShowRingMoment();
  tone.Focus();
  return 0;
}

LRESULT AlarmSettingsDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case IDOK:
      if (OnOk()) EndDialog(1);
      return 1;
    case kSetRadio:
    case kCancelRadio:
      EnableControls();
      return 1;
    case kDaysBox:
      if (days.Selected() >= 0) appointment.alarmDaysBefore = days.Selected();
      ShowRingMoment();
      return 1;
    case kTimeButton:
      PickTime();
      return 1;
    case kPlayButton:
      Play();
      return 1;
    case kBrowseToneButton:
      BrowseInto(hwnd, tone, kToneFiles);
      return 1;
    case kBrowseStartButton:
      BrowseInto(hwnd, start, kAllFiles);
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void AlarmSettingsDialog::ShowRingMoment() {
  const core::AlarmMoment moment = core::RingMoment(appointment);
  ring.SetText("Date: " + core::FormatDate(moment.date) + "\r\nTime: " + core::FormatTime(moment.time));
}

void AlarmSettingsDialog::EnableControls() {
  for (const int id : kAlarmControls) EnableWindow(GetDlgItem(hwnd, id), set.Checked());
}

void AlarmSettingsDialog::PickTime() {
  if (const auto picked = time.Pick(core::TimeOfDay(appointment.alarmTime))) {
    appointment.alarmTime = *picked;
    time.Show(*picked);
    ShowRingMoment();
  }
}

void AlarmSettingsDialog::Play() {
  const std::string path = tone.Path();
  if (path.empty()) {
    MessageBeep();
  } else if (!PlayTone(path)) {
    ShowInfo(this, core::Quoted(path) + " cannot be played: it is no wave file that can be read.");
  }
}

bool AlarmSettingsDialog::OnOk() {
  if (!CheckPathFits(this, tone, sizeof appointment.alarmTone) ||
      !CheckPathFits(this, start, sizeof appointment.alarmStartTarget))
    return false;
  TakePathField(tone, appointment.alarmTone);
  TakePathField(start, appointment.alarmStartTarget);
  for (const StartRadio& radio : kStartRadios) {
    if (IsDlgButtonChecked(hwnd, radio.id)) appointment.alarmStartKind = radio.kind;
  }
  if (days.Selected() >= 0) appointment.alarmDaysBefore = days.Selected();
  appointment.alarmOn = set.Checked() ? 1 : 0;
  return true;
}
