#include "pickers/date_button.h"

#include "core/time_texts.h"
#include "pickers/date_picker.h"

void DateButton::Show(const core::Date& date) const {
  SetText(core::FormatDate(date));
}

std::optional<core::Date> DateButton::Pick(const core::Date& start) const {
  DatePickerDialog picker(start);
  picker.OpenBelow(Handle());
  return picker.Run(&dialog) ? std::optional(picker.Date()) : std::nullopt;
}
