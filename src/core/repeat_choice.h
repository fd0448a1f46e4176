// What a user says about an appointment's repeats, and the rule that is stored for it. A stored rule may hold
// any bytes; a choice is always one that can be shown and stored.
#pragma once

#include <cstdint>
#include <optional>

#include "core/appointment.h"

namespace core {

// The longest interval that can be chosen, in days, weeks, months or years.
inline constexpr std::uint32_t kLongestInterval = 99;

struct RepeatChoice {
  RepeatType type = kRepeatNone;
  std::uint32_t every = 1;     // 1..kLongestInterval
  std::optional<Date> end;     // the last day; nothing for no end date
  std::uint32_t weekdays = 0;  // the days of a weekly rule, as its mask; one at least
};

// What the appointment's rule says. An unknown type reads as none, an interval out of range as the nearest
// that can be chosen, an end that is no date as none. The weekdays of a rule that has none are the
// appointment's own.
RepeatChoice ReadRepeat(const Appointment& appointment);

// What a rule of this type holds beside its interval, for an appointment whose first occurrence is on `date`:
// the mask of the weekdays, the date's own when it is empty, the day, or month and day; 0 for other types.
std::uint32_t RepeatParam(std::uint8_t type, std::uint32_t weekdays, const Date& date);

// The rule for an appointment whose first occurrence is on `date`; all zero for none.
RepeatRule BuildRepeat(const RepeatChoice& choice, const Date& date);

// The day number, 1 (Sunday) .. 7 (Saturday), of a date; 7 for an invalid one.
int WeekdayNumber(const Date& date);

}  // namespace core
