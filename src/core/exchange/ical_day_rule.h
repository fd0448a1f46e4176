// Repeats that a record can hold, on days alone: every so many days, weeks on some weekdays, months on a day,
// or years on a date. Everything is arithmetic, however long ago a repeat began.
#pragma once

#include <cstdint>
#include <optional>

#include "core/calendar/appointment.h"
#include "core/exchange/ical_value.h"

namespace core {

struct DayRule {
  RepeatType type = kRepeatDaily;
  int every = 1;           // days, weeks, months or years
  std::uint32_t mask = 0;  // weekly: bit 0 Sunday ..
  int weekStart = 0;       // weekly: 0 Sunday ..
  int month = 0;           // yearly
  int monthDay = 0;        // monthly and yearly
  int anchor = 0;  // the day from which intervals are counted, and before which there is no occurrence
};

// The rule's days alone, without its end, where they are of that kind; `start` is the wall clock of DTSTART.
std::optional<DayRule> SimpleRule(const IcalRule& rule, std::int64_t start);

// The first occurrence on or behind a day, and the last on or before one.
std::optional<int> NextOf(const DayRule& rule, int from);
std::optional<int> PreviousOf(const DayRule& rule, int to);
// The occurrence with this number, 1 the first; nothing when that is behind `last`.
std::optional<int> NumberOf(const DayRule& rule, std::int64_t number, int last);

// The rule whose days are so many days later; nothing when that is none.
std::optional<DayRule> Shifted(const DayRule& rule, int days);

// Whether weeks that begin on Sunday, as a record's do, come to the same days.
bool FitsSundayWeeks(const DayRule& rule);

}  // namespace core
