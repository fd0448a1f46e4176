#include "calendar/appointment_editor.h"

#include <string>

#include "calendar/repeat_dialog.h"
#include "core/categories.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "pickers/date_picker.h"

namespace {

constexpr int kTemplate = 2000;

constexpr int kDateButton = 100;
constexpr int kTimeButton = 101;
constexpr int kSubjectEdit = 103;
constexpr int kCategoryBox = 104;
constexpr int kConfidentialBox = 105;
constexpr int kAlarmButton = 106;
constexpr int kNotesEdit = 107;
constexpr int kAttachButton = 110;
constexpr int kAllDayBox = 111;
constexpr int kRepeatButton = 112;
constexpr int kWithButton = 113;

constexpr int kRepeatEndText = 500;
// New appointments start on the five-minute grid.
constexpr int kMinuteStep = 5;

// A stored text for a call that wants a terminator: a full field has none.
template <std::size_t kSize>
void SetText(HWND dialog, int id, const char (&field)[kSize]) {
  SetDlgItemText(dialog, id, std::string(core::ReadText(field)).c_str());
}

// Takes a control's text into a field. One byte more than the field is read, so that a text that filled its
// field and was not touched stays whole.
template <std::size_t kSize>
void TakeText(HWND dialog, int id, char (&field)[kSize]) {
  char text[kSize + 1];
  const int length = GetDlgItemText(dialog, id, text, sizeof text);
  core::WriteText(field, {text, static_cast<std::size_t>(length)});
}

// Users type one byte less than the field holds, for the terminator.
template <std::size_t kSize>
void LimitText(HWND dialog, int id, const char (&)[kSize]) {
  SendDlgItemMessage(dialog, id, EM_LIMITTEXT, kSize - 1, 0);
}

bool IsLater(const core::Date& date, const core::Date& than) {
  return core::DayIndex(date) > core::DayIndex(than);
}

}  // namespace

AppointmentEditor::AppointmentEditor(const core::RecordFile& calendar, core::Appointment& record,
                                     const core::Date& date, Mode mode)
    : file(calendar), appointment(record), owner(calendar.AccessLevel() == core::Access::kOwner) {
  if (mode == Mode::kNew) MakeNew(date);
}

int AppointmentEditor::Run(ZarfWnd* parent) {
  return Open(parent, kTemplate);
}

void AppointmentEditor::MakeNew(const core::Date& date) {
  core::NewAppointment(file, appointment);
  appointment.date = date;
  appointment.startTime = core::NowRounded(kMinuteStep);
  appointment.endTime = appointment.startTime;
  ResetAlarm();
}

LRESULT AppointmentEditor::OnInitDialog(const MessageRecord&) {
  LimitText(hwnd, kSubjectEdit, appointment.subject);
  LimitText(hwnd, kNotesEdit, appointment.notes);
  LimitText(hwnd, kCategoryBox, appointment.header.category);
  ShowDate();
  ShowTimes();
  SetText(hwnd, kSubjectEdit, appointment.subject);
  SetText(hwnd, kNotesEdit, appointment.notes);
  FillCategories();
  ShowCategory();
  CheckDlgButton(hwnd, kConfidentialBox, owner && appointment.header.confidential != 0);
  EnableWindow(GetDlgItem(hwnd, kConfidentialBox), owner);
  CheckDlgButton(hwnd, kAllDayBox, appointment.allDay != 0);
  for (const int id : {kTimeButton, kAlarmButton, kAttachButton, kWithButton}) {
    EnableWindow(GetDlgItem(hwnd, id), false);
  }
  EnableOk();
  SetFocus(GetDlgItem(hwnd, kSubjectEdit));
  CenterOver(Parent(), hwnd);
  return 0;
}

void AppointmentEditor::FillCategories() {
  core::CategoryList categories;
  core::ReadCategories(file, categories);
  for (const std::string& name : categories.names) {
    SendDlgItemMessage(hwnd, kCategoryBox, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
  }
}

// A record keeps a category that the file's list lacks: it is then only the text in the box.
void AppointmentEditor::ShowCategory() {
  const std::string category(core::ReadText(appointment.header.category));
  const LRESULT index = SendDlgItemMessage(hwnd, kCategoryBox, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                           reinterpret_cast<LPARAM>(category.c_str()));
  SendDlgItemMessage(hwnd, kCategoryBox, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  if (index == kControlError) SetDlgItemText(hwnd, kCategoryBox, category.c_str());
}

void AppointmentEditor::ShowDate() {
  SetItemText(kDateButton, core::FormatDate(appointment.date).c_str());
}

void AppointmentEditor::ShowTimes() {
  const std::string times =
      core::FormatTime(appointment.startTime) + " / " + core::FormatTime(appointment.endTime);
  SetItemText(kTimeButton, times.c_str());
}

void AppointmentEditor::EnableOk() {
  EnableWindow(GetDlgItem(hwnd, IDOK), SendItemMessage(kSubjectEdit, WM_GETTEXTLENGTH, 0, 0) > 0);
}

LRESULT AppointmentEditor::OnCommand(const MessageRecord& record) {
  const unsigned code = HighWord(record.wParam);
  switch (LowWord(record.wParam)) {
    case IDOK:
      OnOk();
      return 1;
    case kSubjectEdit:
      if (code == EN_CHANGE) EnableOk();
      return 1;
    case kDateButton:
      OnDateButton();
      return 1;
    case kRepeatButton:
      RepeatDialog(appointment).Run(this);
      return 1;
    case kAllDayBox:
      appointment.allDay = IsDlgButtonChecked(hwnd, kAllDayBox) ? 1 : 0;
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void AppointmentEditor::OnDateButton() {
  RECT button;
  GetWindowRect(GetDlgItem(hwnd, kDateButton), &button);
  DatePickerDialog picker(appointment.date);
  picker.SetPosition({button.left, button.bottom});
  picker.SetAnimate(true);
  if (picker.Run(this)) {
    const core::Date picked = picker.Date();
    if (core::HasRepeat(appointment) && IsLater(picked, appointment.repeat.repeatEnd)) {
      ShowInfoId(this, kRepeatEndText);
      Post(WM_COMMAND, kRepeatButton, 0);  // where the end date can be moved
    } else {
      appointment.date = picked;
      ShowDate();
    }
  }
  SetFocus(GetDlgItem(hwnd, kSubjectEdit));
}

void AppointmentEditor::OnOk() {
  // Enter reaches the dialog also while the button is disabled.
  if (SendItemMessage(kSubjectEdit, WM_GETTEXTLENGTH, 0, 0) <= 0) return;
  TakeText(hwnd, kSubjectEdit, appointment.subject);
  TakeText(hwnd, kNotesEdit, appointment.notes);
  TakeText(hwnd, kCategoryBox, appointment.header.category);
  appointment.header.confidential = IsDlgButtonChecked(hwnd, kConfidentialBox) ? 1 : 0;
  // An alarm that is on keeps its own date and time.
  if (appointment.alarmOn == 0) ResetAlarm();
  EndDialog(1);
}

// The alarm of an appointment that has none: ready to ring at its start.
void AppointmentEditor::ResetAlarm() {
  core::ResetAlarm(appointment);
}
