#include "pickers/date_picker.h"

#include "framework/drawing.h"

namespace {

constexpr int kTemplate = 1008;
constexpr int kCalendarId = 100;

}  // namespace

DatePickerDialog::DatePickerDialog(const core::Date& start)
    : calendar(kCalendarId, {RGB(255, 255, 255), kButtonFace, RGB(255, 0, 0)}) {
  calendar.SetDate(start.year, start.month, start.day);
}

bool DatePickerDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

int DatePickerDialog::Margin() const {
  return 6;
}
