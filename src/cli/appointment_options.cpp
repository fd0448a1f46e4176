#include "cli/appointment_options.h"

#include "core/calendar/repeat_rule.h"

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

// The date first, then the repeats as if they were chosen anew in the editor.
Outcome ApplyDateAndRepeat(const AppointmentOptions& options, core::Appointment& record) {
  constexpr const char* kEndsEarly = "the last day of the repeats lies before the date; --until changes it";
  core::RepeatChoice choice = options.repeat ? *options.repeat : core::ReadRepeat(record);
  if (options.noRepeat) choice = {};
  if (options.until && choice.type == core::kRepeatNone) {
    return Fail(kUsage, "--until is for an appointment that repeats");
  }
  if (options.until) choice.end = options.until;
  const bool chosen = options.repeat || options.until || options.noRepeat;
  if (chosen) core::ClearRepeat(record);
  if (options.date && !core::ChangeDate(record, *options.date)) return Fail(kUsage, kEndsEarly);
  if (!chosen) return {};
  if (choice.end && core::StoredDayIndex(*choice.end) < core::StoredDayIndex(record.date)) {
    return Fail(kUsage, kEndsEarly);
  }
  if (core::StoreRepeat(choice, record)) return {};
  return Fail(
      kUsage,
      "repeats cannot end on 2020-12-31, which in calendar files stands for no end; --until takes the "
      "day before or a later one");
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
  Outcome dated = ApplyDateAndRepeat(options, record);
  if (!dated.IsDone()) return dated;
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
  core::SettleAlarm(record);
  return {};
}

}  // namespace cli
