#include "pickers/time_button.h"

#include "core/time_texts.h"
#include "pickers/time_picker.h"

void TimeButton::Show(const core::TimeOfDay& time) const {
  SetText(core::FormatTime(time));
}

void TimeButton::Show(const TimeRange& range) const {
  SetText(core::FormatTime(range.start) + " / " + core::FormatTime(range.end));
}

std::optional<core::TimeOfDay> TimeButton::Pick(const core::TimeOfDay& start) const {
  TimePickerDialog picker({start, start}, TimePicking::kSingle);
  picker.OpenBelow(Handle());
  return picker.Run(&dialog) ? std::optional(picker.Times().start) : std::nullopt;
}

std::optional<TimeRange> TimeButton::Pick(const TimeRange& start) const {
  TimePickerDialog picker(start, TimePicking::kRange);
  picker.OpenBelow(Handle());
  return picker.Run(&dialog) ? std::optional(picker.Times()) : std::nullopt;
}
