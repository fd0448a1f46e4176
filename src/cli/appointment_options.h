// What add and edit may say about an appointment, taken from the command line and put into a record.
#pragma once

#include <optional>
#include <string>

#include "cli/arguments.h"
#include "cli/outcome.h"
#include "cli/values.h"
#include "core/calendar/appointment.h"
#include "core/calendar/repeat_choice.h"

namespace cli {

// Only what was given is there. Texts are in code page 1252 and fit their fields.
struct AppointmentOptions {
  std::optional<core::Date> date;
  std::optional<core::TimeOfDay> start;
  std::optional<core::TimeOfDay> end;
  std::optional<bool> allDay;
  std::optional<bool> confidential;
  std::optional<std::string> subject;
  std::optional<std::string> notes;
  std::optional<std::string> category;
  std::optional<core::RepeatChoice> repeat;
  std::optional<core::Date> until;
  bool noRepeat = false;

  bool IsEmpty() const;
};

Outcome ParseAppointmentOptions(const Arguments& arguments, AppointmentOptions& options);

// Puts them into the record as the editor does, with the fields that follow from others: the day of a rule
// that is chosen anew, the alarm that is off. kUsage, the record then being of no use, when the end lies
// before the start or before the rule's first day.
Outcome ApplyOptions(const AppointmentOptions& options, core::Appointment& record);

}  // namespace cli
