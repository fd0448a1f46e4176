#include "calendar/repeat_dialog.h"

#include <string>

#include "core/repeat_rule.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "pickers/date_picker.h"

namespace {

constexpr int kTemplate = 2014;

constexpr int kEveryLabel = 202;
constexpr int kEveryBox = 203;
constexpr int kUnitLabel = 204;
constexpr int kEndLabel = 205;
constexpr int kNoEndRadio = 206;
constexpr int kEndRadio = 207;
constexpr int kEndDateButton = 208;
constexpr int kWeekdaysLabel = 209;
constexpr int kFirstWeekdayBox = 210;  // Sunday
constexpr int kLastWeekdayBox = 216;

constexpr int kRepeatEndText = 500;

struct TypeControl {
  int id;
  core::RepeatType type;
  const char* unit;
};
constexpr TypeControl kTypes[] = {
    {100, core::kRepeatNone, ""},          {101, core::kRepeatDaily, "Day(s)"},
    {102, core::kRepeatWeekly, "Week(s)"}, {103, core::kRepeatMonthly, "Month(s)"},
    {104, core::kRepeatYearly, "Year(s)"},
};

// Boxes stand in the order of the day numbers.
int DayNumberOf(int weekdayBox) {
  return weekdayBox - kFirstWeekdayBox + 1;
}

}  // namespace

RepeatDialog::RepeatDialog(core::Appointment& record) : appointment(record), endDate(record.date) {}

bool RepeatDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT RepeatDialog::OnInitDialog(const MessageRecord&) {
  const core::RepeatChoice choice = core::ReadRepeat(appointment);
  for (std::uint32_t every = 1; every <= core::kLongestInterval; ++every) {
    const std::string number = std::to_string(every);
    SendItemMessage(kEveryBox, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(number.c_str()));
  }
  SendItemMessage(kEveryBox, CB_SETCURSEL, choice.every - 1, 0);
  endDate = choice.end.value_or(appointment.date);
  SetItemText(kEndDateButton, core::FormatDate(endDate).c_str());
  CheckDlgButton(hwnd, choice.end ? kEndRadio : kNoEndRadio, true);
  EnableEndDate();
  for (int box = kFirstWeekdayBox; box <= kLastWeekdayBox; ++box)
    CheckDlgButton(hwnd, box, core::HasWeekday(choice.weekdays, DayNumberOf(box)));
  for (const TypeControl& control : kTypes) {
    if (control.type != choice.type) continue;
    CheckDlgButton(hwnd, control.id, true);
    SetFocus(GetDlgItem(hwnd, control.id));
  }
  ShowWhatBelongsToType();
  CenterOver(Parent(), hwnd);
  return 0;
}

LRESULT RepeatDialog::OnCommand(const MessageRecord& record) {
  const auto id = static_cast<int>(LowWord(record.wParam));
  if (id == IDOK) {
    OnOk();
  } else if (id >= kTypes[0].id && id < kTypes[0].id + static_cast<int>(std::size(kTypes))) {
    ShowWhatBelongsToType();
  } else if (id == kNoEndRadio || id == kEndRadio) {
    EnableEndDate();
  } else if (id == kEndDateButton) {
    PickEndDate();
  } else if (id >= kFirstWeekdayBox && id <= kLastWeekdayBox) {
    KeepOneWeekday(id);
  } else {
    return ZarfDialog::OnCommand(record);
  }
  return 1;
}

core::RepeatType RepeatDialog::ChosenType() const {
  for (const TypeControl& control : kTypes) {
    if (IsDlgButtonChecked(hwnd, control.id)) return control.type;
  }
  return core::kRepeatNone;
}

void RepeatDialog::ShowWhatBelongsToType() {
  const core::RepeatType type = ChosenType();
  const auto show = [this](int id, bool shown) {
    ShowWindow(GetDlgItem(hwnd, id), shown ? SW_SHOW : SW_HIDE);
  };
  for (const int id : {kEveryLabel, kEveryBox, kUnitLabel, kEndLabel, kNoEndRadio, kEndRadio, kEndDateButton})
    show(id, type != core::kRepeatNone);
  for (int id = kWeekdaysLabel; id <= kLastWeekdayBox; ++id) show(id, type == core::kRepeatWeekly);
  for (const TypeControl& control : kTypes) {
    if (control.type == type) SetItemText(kUnitLabel, control.unit);
  }
}

void RepeatDialog::EnableEndDate() {
  EnableWindow(GetDlgItem(hwnd, kEndDateButton), IsDlgButtonChecked(hwnd, kEndRadio));
}

void RepeatDialog::PickEndDate() {
  RECT button;
  GetWindowRect(GetDlgItem(hwnd, kEndDateButton), &button);
  DatePickerDialog picker(endDate);
  picker.SetPosition({button.left, button.bottom});
  picker.SetAnimate(true);
  if (!picker.Run(this)) return;
  if (core::DayIndex(picker.Date()) < core::DayIndex(appointment.date)) {
    ShowInfoId(this, kRepeatEndText);
    return;
  }
  endDate = picker.Date();
  SetItemText(kEndDateButton, core::FormatDate(endDate).c_str());
}

std::uint32_t RepeatDialog::CheckedWeekdays() const {
  std::uint32_t weekdays = 0;
  for (int box = kFirstWeekdayBox; box <= kLastWeekdayBox; ++box) {
    if (IsDlgButtonChecked(hwnd, box)) weekdays |= core::WeekdayBit(DayNumberOf(box));
  }
  return weekdays;
}

void RepeatDialog::KeepOneWeekday(int clickedBox) {
  if (CheckedWeekdays() == 0) CheckDlgButton(hwnd, clickedBox, true);
}

void RepeatDialog::OnOk() {
  core::RepeatChoice choice;
  choice.type = ChosenType();
  choice.every = static_cast<std::uint32_t>(SendItemMessage(kEveryBox, CB_GETCURSEL, 0, 0)) + 1;
  if (IsDlgButtonChecked(hwnd, kEndRadio)) choice.end = endDate;
  choice.weekdays = CheckedWeekdays();
  appointment.repeat = core::BuildRepeat(choice, appointment.date);
  EndDialog(1);
}
