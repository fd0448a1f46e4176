#include "calendar/dialogs/repeat_dialog.h"

#include <string>

#include "core/calendar/repeat_rule.h"
#include "core/time_texts.h"
#include "framework/notices.h"
#include "resources/text_ids.h"

namespace {

constexpr int kTemplate = 2014;

struct TypeControl {
  int id;
  core::RepeatType type;
  const char* unit;
};
constexpr TypeControl kTypes[] = {
    {RepeatDialog::kNoneRadio, core::kRepeatNone, ""},
    {RepeatDialog::kDailyRadio, core::kRepeatDaily, "Day(s)"},
    {RepeatDialog::kWeeklyRadio, core::kRepeatWeekly, "Week(s)"},
    {RepeatDialog::kMonthlyRadio, core::kRepeatMonthly, "Month(s)"},
    {RepeatDialog::kYearlyRadio, core::kRepeatYearly, "Year(s)"},
};

// Boxes stand in the order of the day numbers.
int DayNumberOf(int weekdayBox) {
  return weekdayBox - RepeatDialog::kFirstWeekdayBox + 1;
}

}  // namespace

RepeatDialog::RepeatDialog(core::Appointment& record) : appointment(record), endDate(record.date) {}

bool RepeatDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT RepeatDialog::OnInitDialog(const MessageRecord&) {
  const core::RepeatChoice choice = core::ReadRepeat(appointment);
  for (std::uint32_t every = 1; every <= core::kLongestInterval; ++every) {
    everyBox.Add(std::to_string(every));
  }
  everyBox.Select(static_cast<int>(choice.every) - 1);
  endDate = choice.end.value_or(appointment.date);
  endButton.Show(endDate);
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
  endButton.Enable(hasEnd.Checked());
}

void RepeatDialog::PickEndDate() {
  const auto picked = endButton.Pick(endDate);
  if (!picked) return;
  if (core::StoredDayIndex(*picked) < core::StoredDayIndex(appointment.date)) {
    ShowInfoId(this, text::kRepeatEndsEarly);
    return;
  }
  endDate = *picked;
  endButton.Show(endDate);
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
  choice.every = static_cast<std::uint32_t>(everyBox.Selected() + 1);
  if (hasEnd.Checked()) choice.end = endDate;
  choice.weekdays = CheckedWeekdays();
  if (core::StoreRepeat(choice, appointment)) {
    EndDialog(1);
    return;
  }
  ShowInfo(this, "Repeats cannot end on " + core::FormatDate(endDate) +
                     ": in calendar files that day stands for no end. Choose the day before or a later one.");
  endButton.Focus();
}
