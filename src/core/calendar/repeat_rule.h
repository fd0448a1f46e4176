// On which days an appointment falls. One that repeats is stored once, with the date of its first occurrence
// and a rule; no occurrence is ever stored.
//
// All answers come from the same few lines, which look at a few candidates, never at every day of the rule,
// whatever interval or date a damaged record holds. With an interval of 0 only the first candidate counts.
// docs/file-format.md tells the rules with their edges.
#pragma once

#include <optional>

#include "core/calendar/appointment.h"
#include "core/date_time.h"

namespace core {

// The day that the rule ends on, nothing for a rule without an end. kNoEndDate says that there is none, and
// so does the last day of the late era, which copies of the program have stored for it.
std::optional<Date> EndOf(const RepeatRule& rule);

// The last day of the calendar that an occurrence may fall on, as a day number; -1 for an end that is no
// date.
int LastDayOf(const RepeatRule& rule);

// Whether the rule ends before that day, whichever era shows the two.
bool EndsBefore(const RepeatRule& rule, const Date& date);

// Whether the repeating appointment has an occurrence between the two dates, both included. A range that
// encloses the whole span of a daily, weekly or monthly rule has none: either its first or its last day must
// lie in the span.
bool OccursIn(const Appointment& appointment, const Date& from, const Date& to);

// OccursIn for one day.
bool OccursOn(const Appointment& appointment, const Date& day);

// As many days as OccurrenceDays answers for at once.
inline constexpr int kMostOccurrenceDays = 64;

// On which of `count` days from `first` on an appointment of this date and rule falls, repeating or not: bit
// k stands for the k-th of them, the same answer as OccursOnDate's. At most kMostOccurrenceDays are looked
// at; a day beyond the calendar has none.
std::uint64_t OccurrenceDays(const Date& date, const RepeatRule& repeat, const Date& first, int count);

// The first day behind `day` on which the repeating appointment falls, by OccursOn; nothing when there is
// none, or `day` is no day of the calendar.
std::optional<Date> NextOccurrence(const Appointment& appointment, const Date& day);

// The first and the last day of the calendar on which the appointment falls, repeating or not, by OccursOn;
// nothing for one that falls on none.
std::optional<Date> FirstOccurrence(const Appointment& appointment);
std::optional<Date> LastOccurrence(const Appointment& appointment);

// The weekday, 0 (Sunday) .. 6 (Saturday), that bit 0 of a weekly rule's mask stands for when its appointment
// is of this date: Sunday, but for the week that the calendar's first day cuts short and for some dates that
// are none. -1 where the rule has no week.
int FirstWeekdayOf(const Date& date);

// A condition of RecordQuery on field offset 0: `value` holds a Date. True for an appointment on that day,
// repeating or not.
bool OccursOnDate(const void* slot, const void* value);

// The two Dates that OccursInRange takes as its value.
struct DateRange {
  Date from;
  Date to;  // included
};
static_assert(sizeof(DateRange) == 24);

// A condition of RecordQuery on field offset 0: `value` holds a DateRange.
bool OccursInRange(const void* slot, const void* value);

// Makes the appointment one that does not repeat.
void ClearRepeat(Appointment& appointment);

// The bits of all seven days in a weekly rule's mask; others mean nothing.
inline constexpr std::uint32_t kWholeWeek = 0x7F;

// The bit of day number 1 (Sunday) .. 7 (Saturday) in a weekly rule's mask; 0 for every other number.
std::uint32_t WeekdayBit(int dayNumber);
bool HasWeekday(std::uint32_t mask, int dayNumber);

}  // namespace core
