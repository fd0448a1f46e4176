// What a user says about an appointment's repeats, and the rule that is stored for it. A stored rule may hold
// any bytes; a choice is always one that can be shown and stored.
#pragma once

#include <cstdint>
#include <optional>

#include "core/calendar/appointment.h"

namespace core {

// The longest interval that can be chosen, in days, weeks, months or years.
inline constexpr std::uint32_t kLongestInterval = 99;

struct RepeatChoice {
  RepeatType type = kRepeatNone;
  std::uint32_t every = 1;     // 1..kLongestInterval
  std::optional<Date> end;     // the last day; nothing for no end date
  std::uint32_t weekdays = 0;  // the days of a weekly rule, as its mask; 0 for that of the first occurrence
};

// What the appointment's rule says. An unknown type reads as none, an interval out of range as the nearest
// that can be chosen, an end that is no date as none. The weekdays of a rule that has none are the
// appointment's own.
RepeatChoice ReadRepeat(const Appointment& appointment);

// Gives the appointment another date. A rule keeps what it holds, the weekdays or the day of the month, until
// the user chooses repeats anew (StoreRepeat). False, and nothing changes, when it would end before that day.
[[nodiscard]] bool ChangeDate(Appointment& appointment, const Date& date);

// What a rule of this type holds beside its interval, for an appointment whose first occurrence is on `date`:
// the mask of the weekdays, the date's own when it is empty, the day, or month and day; 0 for other types.
std::uint32_t RepeatParam(std::uint8_t type, std::uint32_t weekdays, const Date& date);

// Gives the appointment the rule of the choice, all zero for none. False, and nothing changes, for an end
// that SetEnd refuses.
[[nodiscard]] bool StoreRepeat(const RepeatChoice& choice, Appointment& appointment);

// Lets the appointment's rule end on a day. A stored kNoEndDate says that there is no end; where the calendar
// goes on behind that day, the rule's last occurrence before it is stored instead, which ends the rule just
// so. False, and nothing changes, where that would not do: the rule falls on the day itself, or begins on it.
[[nodiscard]] bool SetEnd(Appointment& appointment, const Date& end);

// The day number, 1 (Sunday) .. 7 (Saturday), of a date; 7 for an invalid one.
int WeekdayNumber(const Date& date);

}  // namespace core
