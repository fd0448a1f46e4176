#include "cli/appointment_options.h"

#include "core/repeat_choice.h"
#include "core/repeat_rule.h"

namespace cli {
namespace {

// A pair of switches.
Outcome TakeSwitch(const Arguments& arguments, const std::string& name, std::optional<bool>& value) {
  const bool on = arguments.Has(name);
  const bool off = arguments.Has("no-" + name);
  if (on && off) return Fail(kUsage, "--" + name + " and --no-" + name + " do not go together");
  if (on || off) value = on;
  return {};
}

template <typename T>
Outcome TakeValue(const Arguments& arguments, std::string_view name,
                  Outcome (*parse)(std::string_view, std::string_view, T&), std::optional<T>& value) {
  if (!arguments.Has(name)) return {};
  T parsed{};
  Outcome outcome = parse(name, arguments.Value(name), parsed);
  if (outcome.IsDone()) value = parsed;
  return outcome;
}

// A text for a field of `size` bytes, one of which is the terminator.
Outcome TakeText(const Arguments& arguments, std::string_view name, std::size_t size, bool oneLine,
                 std::optional<std::string>& value) {
  if (!arguments.Has(name)) return {};
  std::string bytes;
  Outcome outcome = ParseText(name, arguments.Value(name), size - 1, oneLine, bytes);
  if (outcome.IsDone()) value = bytes;
  return outcome;
}

Outcome ApplyRepeat(const AppointmentOptions& options, core::Appointment& record) {
  core::RepeatRule& rule = record.repeat;
  if (options.noRepeat) core::ClearRepeat(record);
  if (options.repeat) {
    rule = {options.repeat->type, core::kNoEndDate, options.repeat->every,
            core::RepeatParam(options.repeat->type, options.repeat->weekdays, record.date)};
  } else if (options.date && core::HasRepeat(record)) {
    rule.repeatParam = core::RepeatParam(rule.repeatType, rule.repeatParam, record.date);
  }
  if (options.until) {
    if (!core::HasRepeat(record)) return Fail(kUsage, "--until is for an appointment that repeats");
    rule.repeatEnd = *options.until;
  }
  const bool changed = options.repeat || options.until || options.date;
  if (changed && core::HasRepeat(record) && core::DayIndex(rule.repeatEnd) < core::DayIndex(record.date)) {
    return Fail(kUsage, "the last day of the repeats lies before the date; --until changes it");
  }
  return {};
}

}  // namespace

bool AppointmentOptions::IsEmpty() const {
  return !date && !start && !end && !allDay && !confidential && !subject && !notes && !category && !repeat &&
         !until && !noRepeat;
}

Outcome ParseAppointmentOptions(const Arguments& arguments, AppointmentOptions& options) {
  using core::Appointment;
  options.noRepeat = arguments.Has("no-repeat");
  Outcome outcome = TakeValue(arguments, "date", ParseDate, options.date);
  if (outcome.IsDone()) outcome = TakeValue(arguments, "start", ParseTime, options.start);
  if (outcome.IsDone()) outcome = TakeValue(arguments, "end", ParseTime, options.end);
  if (outcome.IsDone()) outcome = TakeSwitch(arguments, "all-day", options.allDay);
  if (outcome.IsDone()) outcome = TakeSwitch(arguments, "confidential", options.confidential);
  if (outcome.IsDone()) {
    outcome = TakeText(arguments, "subject", sizeof(Appointment::subject), true, options.subject);
  }
  if (outcome.IsDone())
    outcome = TakeText(arguments, "notes", sizeof(Appointment::notes), false, options.notes);
  if (outcome.IsDone()) {
    outcome = TakeText(arguments, "category", sizeof(core::RecordHeader::category), true, options.category);
  }
  if (outcome.IsDone()) outcome = TakeValue(arguments, "repeat", ParseRepeat, options.repeat);
  if (outcome.IsDone()) outcome = TakeValue(arguments, "until", ParseDate, options.until);
  if (!outcome.IsDone()) return outcome;
  if (options.noRepeat && (options.repeat || options.until)) {
    return Fail(kUsage, "--no-repeat does not go together with --repeat and --until");
  }
  if (options.subject && options.subject->empty()) return Fail(kUsage, "--subject is empty");
  return {};
}

Outcome ApplyOptions(const AppointmentOptions& options, core::Appointment& record) {
  if (options.date) record.date = *options.date;
  if (options.start) record.startTime = *options.start;
  if (options.end) record.endTime = *options.end;
  if (options.allDay) record.allDay = *options.allDay ? 1 : 0;
  if (options.confidential) record.header.confidential = *options.confidential ? 1 : 0;
  if (options.subject) core::WriteText(record.subject, *options.subject);
  if (options.notes) core::WriteText(record.notes, *options.notes);
  if (options.category) core::WriteText(record.header.category, *options.category);
  if ((options.start || options.end) && core::TimeSlot(record.endTime) < core::TimeSlot(record.startTime)) {
    return Fail(kUsage, "the end lies before the start; --start and --end change them");
  }
  // An alarm that is on keeps its own date and time.
  if (record.alarmOn == 0) core::ResetAlarm(record);
  return ApplyRepeat(options, record);
}

}  // namespace cli
