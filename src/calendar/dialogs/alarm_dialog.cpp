#include "calendar/dialogs/alarm_dialog.h"

#include "core/calendar/alarm_schedule.h"
#include "core/store/file_messages.h"
#include "core/time_texts.h"
#include "framework/services.h"
#include "framework/shell_services.h"
#include "platform/desktop/application.h"

namespace {

constexpr int kTemplate = 2005;

}  // namespace

bool AlarmDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1 || !EndsBySignal();
}

LRESULT AlarmDialog::OnInitDialog(const MessageRecord&) {
  const bool repeats = core::HasRepeat(appointment);
  date.SetText(core::FormatDate(core::AlarmOccurrence(appointment)));
  time.SetText(core::FormatTime(repeats ? appointment.alarmTime : appointment.startTime));
  subject.SetText(std::string(core::ReadText(appointment.subject)));
  const std::string path(core::ReadText(appointment.alarmStartTarget));
  target.SetPath(path);
  start.Check(!path.empty());
  start.Enable(!path.empty());
  disable.SetVisible(repeats);
  subject.Focus();
  PlayTone();
  return 0;
}

// One that cannot be heard is told of when the user has seen the alarm; until then it beeps.
void AlarmDialog::PlayTone() {
  const std::string tone(core::ReadText(appointment.alarmTone));
  if (tone.empty() || ::PlayTone(tone)) return;
  MessageBeep();
  toneFault = "The tone " + core::Quoted(tone) + " cannot be played: it is no wave file that can be read.";
}

LRESULT AlarmDialog::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) == IDOK) {
    wantsStart = start.Checked();
    wantsNoMore = disable.Checked();
  }
  return ZarfDialog::OnCommand(record);
}

void StartTarget(ZarfWnd* owner, const core::Appointment& record) {
  const std::string target(core::ReadText(record.alarmStartTarget));
  if (target.empty()) return;
  if (record.alarmStartKind == core::kAlarmStartsMail) {
    MailOrTell(owner, target);
  } else {
    OpenOrTell(owner, target);
  }
}
