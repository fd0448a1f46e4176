#include "calendar/dialogs/appointment_editor.h"

#include <cstring>
#include <string>

#include "addressbook/with_dialog.h"
#include "calendar/dialogs/alarm_settings_dialog.h"
#include "calendar/dialogs/attach_dialog.h"
#include "calendar/dialogs/repeat_dialog.h"
#include "core/calendar/categories.h"
#include "core/calendar/repeat_choice.h"
#include "core/calendar/repeat_rule.h"
#include "core/time_texts.h"
#include "framework/notices.h"
#include "resources/text_ids.h"

namespace {

constexpr int kTemplate = 2000;

// New appointments start on the five-minute grid.
constexpr int kMinuteStep = 5;

}  // namespace

AppointmentEditor::AppointmentEditor(const core::RecordFile& calendar, core::Appointment& record,
                                     const core::Date& date, Mode editMode, std::string_view newCategory)
    : file(calendar),
      appointment(record),
      mode(editMode),
      ruleBefore(record.repeat),
      dateBefore(record.date),
      owner(calendar.AccessLevel() == core::Access::kOwner) {
  if (mode == Mode::kNew) MakeNew(date, newCategory);
}

int AppointmentEditor::Run(ZarfWnd* parent) {
  return Open(parent, kTemplate);
}

void AppointmentEditor::MakeNew(const core::Date& date, std::string_view newCategory) {
  // Where the file cannot be read at this moment the caller's record, which it made before, has to do.
  core::Appointment made;
  if (core::NewAppointment(file, made)) appointment = made;
  appointment.date = date;
  appointment.startTime = core::NowRounded(kMinuteStep);
  appointment.endTime = appointment.startTime;
  core::WriteText(appointment.header.category, newCategory);
  core::ResetAlarm(appointment);
}

LRESULT AppointmentEditor::OnInitDialog(const MessageRecord&) {
  dateButton.Show(appointment.date);
  ShowTimes();
  subject.ShowField(appointment.subject);
  notes.ShowField(appointment.notes);
  ShowCategory();
  confidential.Check(owner && appointment.header.confidential != 0);
  confidential.Enable(owner);
  allDay.Check(appointment.allDay != 0);
  times.Enable(!allDay.Checked());
  OkNeedsText(kSubjectEdit);
  subject.Focus();
  return 0;
}

// A record keeps a category that the file's list lacks: it is then only the text in the box.
void AppointmentEditor::ShowCategory() {
  core::CategoryList categories;
  core::ReadCategories(file, categories);
  for (const std::string& name : categories.names) category.Add(name);
  category.ShowField(appointment.header.category);
  const int line = category.Find(std::string(core::ReadText(appointment.header.category)));
  if (line >= 0) category.Select(line);
}

void AppointmentEditor::ShowTimes() {
  times.Show({appointment.startTime, appointment.endTime});
}

LRESULT AppointmentEditor::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case IDOK:
      OnOk();
      return 1;
    case kDateButton:
      OnDateButton();
      return 1;
    case kRepeatButton:
      RepeatDialog(appointment).Run(this);
      return 1;
    case kTimeButton:
      OnTimeButton();
      return 1;
    case kAlarmButton:
      AlarmSettingsDialog(appointment, mode == Mode::kNew).Run(this);
      return 1;
    case kAttachButton:
      AttachDialog(appointment).Run(this);
      return 1;
    case kWithButton:
      OnWith();
      return 1;
    case kAllDayBox:
      OnAllDay();
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void AppointmentEditor::OnDateButton() {
  if (const auto picked = dateButton.Pick(appointment.date)) {
    if (core::ChangeDate(appointment, *picked)) {
      dateButton.Show(*picked);
    } else {
      ShowInfoId(this, text::kRepeatEndsEarly);
      Post(WM_COMMAND, kRepeatButton, 0);  // where the end date can be moved
    }
  }
  subject.Focus();
}

void AppointmentEditor::OnTimeButton() {
  if (const auto picked = times.Pick(TimeRange{appointment.startTime, appointment.endTime})) {
    appointment.startTime = picked->start;
    appointment.endTime = picked->end;
    ShowTimes();
  }
  subject.Focus();
}

// What the dialog answers may be longer than what is stored.
void AppointmentEditor::OnWith() {
  WithDialog with;
  if (with.Run(this)) subject.SetText(with.Description().substr(0, sizeof appointment.subject - 1));
  subject.Focus();
}

// The times are kept: they come back when the box is unchecked.
void AppointmentEditor::OnAllDay() {
  appointment.allDay = allDay.Checked() ? 1 : 0;
  times.Enable(!allDay.Checked());
}

// A rule that the user has just made need not fall on the date he chose, which then shows no appointment.
void AppointmentEditor::TellFirstOccurrence() {
  const bool changed = std::memcmp(&ruleBefore, &appointment.repeat, sizeof ruleBefore) != 0 ||
                       !core::IsSameDate(dateBefore, appointment.date);
  if (!changed || !core::HasRepeat(appointment) || core::OccursOn(appointment, appointment.date)) return;
  const std::string date = core::FormatDate(appointment.date);
  const auto first = core::NextOccurrence(appointment, appointment.date);
  ShowInfo(this,
           first ? "This appointment does not fall on " + date + ": by its repeats it first occurs on " +
                       core::FormatDate(*first) + "."
                 : "By its repeats this appointment never occurs: not on " + date + " and on no later day.");
}

void AppointmentEditor::OnOk() {
  subject.TakeField(appointment.subject);
  notes.TakeField(appointment.notes);
  category.TakeField(appointment.header.category);
  appointment.header.confidential = confidential.Checked() ? 1 : 0;
  core::SettleAlarm(appointment);
  TellFirstOccurrence();
  EndDialog(1);
}
