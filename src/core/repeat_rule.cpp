#include "core/repeat_rule.h"

#include <algorithm>
#include <cstring>

namespace core {
namespace {

// All that the tests ask, in day numbers. 64 bits, so that no sum of a day and an interval overflows.
struct Span {
  std::int64_t start;  // -1 for a date without a day number, as all four
  std::int64_t end;
  std::int64_t lo;
  std::int64_t hi;
  std::int64_t every;
};

bool Within(std::int64_t day, std::int64_t first, std::int64_t last) {
  return day >= first && day <= last;
}

bool NoOverlap(std::int64_t start, std::int64_t end, std::int64_t lo, std::int64_t hi) {
  return start < 0 || end < 0 || lo < 0 || hi < 0 || end < start ||
         (!Within(lo, start, end) && !Within(hi, start, end));
}

// How many intervals bring `distance` to 0 or below; 0 when it is there already.
std::int64_t StepsOver(std::int64_t distance, std::int64_t every) {
  return distance > 0 ? (distance + every - 1) / every : 0;
}

bool OccursDaily(const Span& span) {
  if (NoOverlap(span.start, span.end, span.lo, span.hi)) return false;
  if (span.every == 0) return Within(span.start, span.lo, span.hi);
  const std::int64_t day = span.start + span.every * StepsOver(span.lo - span.start, span.every);
  return day <= span.hi && day <= span.end;
}

// The Sunday on or before the date, or where the steps back end: at the calendar's first day, or at once for
// a date that is none.
int WeekStart(const Date& date, std::int64_t start) {
  if (start >= 0) return static_cast<int>(std::max<std::int64_t>(0, start - Weekday(date)));
  Date day = date;
  for (int i = 0; i < 6 && Weekday(day) != 0 && PreviousDay(day); ++i) continue;
  return DayIndex(day);
}

// Within a week the days are counted from the week's start, Sunday or not, and the end of the rule bounds
// only the weeks' starts.
bool OccursWeekly(const Appointment& appointment, const Span& span) {
  std::int64_t week = WeekStart(appointment.date, span.start);
  const std::uint32_t mask = appointment.repeat.repeatParam & kWholeWeek;
  if (mask == 0 || NoOverlap(week, span.end, span.lo, span.hi)) return false;
  const std::int64_t interval = 7 * span.every;
  if (interval != 0) week += interval * StepsOver(span.lo - (week + 6), interval);
  while (week <= span.end && week <= span.hi) {
    for (int k = 0; k < 7; ++k) {
      if ((mask >> k & 1) == 0) continue;
      const std::int64_t day = week + k;
      if (day > span.hi) return false;
      if (day >= span.start && day >= span.lo) return true;
    }
    if (interval == 0) return false;
    week += interval;
  }
  return false;
}

std::int64_t MonthNumber(const Date& date) {
  return std::int64_t{date.year} * 12 + date.month - 1;
}

// Months without the day are skipped.
bool OccursMonthly(const Appointment& appointment, const Span& span, const Date& from, const Date& to) {
  if (NoOverlap(span.start, span.end, span.lo, span.hi)) return false;
  const auto dayOfMonth = static_cast<std::int32_t>(appointment.repeat.repeatParam);
  const std::int64_t last = MonthNumber(to);
  std::int64_t month = MonthNumber(appointment.date);
  if (span.every != 0) month += span.every * StepsOver(MonthNumber(from) - month, span.every);
  for (; month <= last; month += span.every) {
    const int day = DayIndex(static_cast<int>(month / 12), static_cast<int>(month % 12) + 1, dayOfMonth);
    if (day > span.end) return false;
    if (day >= 0 && day >= span.start && Within(day, span.lo, span.hi)) return true;
    if (span.every == 0) return false;
  }
  return false;
}

// Each year stepped over must have the appointment's own day, so one of 29 February ends in its first year.
bool OccursYearly(const Appointment& appointment, const Span& span) {
  const Date first = appointment.date;
  const auto month = static_cast<int>(appointment.repeat.repeatParam >> 16);
  const auto dayOfMonth = static_cast<int>(appointment.repeat.repeatParam & 0xFFFF);
  for (std::int64_t year = first.year;;) {
    const bool inCalendar = Within(year, kFirstYear, kLastYear);
    const int day = inCalendar ? DayIndex(static_cast<int>(year), month, dayOfMonth) : -1;
    if (day > span.end) return false;
    if (day >= 0 && Within(day, span.lo, span.hi)) return true;
    if (span.every == 0) return false;
    for (std::int64_t i = 0; i < span.every; ++i) {
      ++year;
      if (!Within(year, kFirstYear, kLastYear)) return false;
      if (DayIndex(static_cast<int>(year), first.month, first.day) < 0) return false;
    }
  }
}

const Appointment& At(const void* slot) {
  return *static_cast<const Appointment*>(slot);
}

}  // namespace

bool OccursIn(const Appointment& appointment, const Date& from, const Date& to) {
  const RepeatRule& rule = appointment.repeat;
  const Span span{DayIndex(appointment.date), DayIndex(rule.repeatEnd), DayIndex(from), DayIndex(to),
                  rule.repeatEvery};
  switch (rule.repeatType) {
    case kRepeatDaily:
      return OccursDaily(span);
    case kRepeatWeekly:
      return OccursWeekly(appointment, span);
    case kRepeatMonthly:
      return OccursMonthly(appointment, span, from, to);
    case kRepeatYearly:
      return OccursYearly(appointment, span);
    default:
      return false;
  }
}

bool OccursOn(const Appointment& appointment, const Date& day) {
  return OccursIn(appointment, day, day);
}

bool OccursOnDate(const void* slot, const void* value) {
  Date day;
  std::memcpy(&day, value, sizeof day);
  const Appointment& appointment = At(slot);
  return HasRepeat(appointment) ? OccursOn(appointment, day) : DayIndex(appointment.date) == DayIndex(day);
}

bool OccursInRange(const void* slot, const void* value) {
  DateRange range;
  std::memcpy(&range, value, sizeof range);
  const Appointment& appointment = At(slot);
  if (HasRepeat(appointment)) return OccursIn(appointment, range.from, range.to);
  return Within(DayIndex(appointment.date), DayIndex(range.from), DayIndex(range.to));
}

void ClearRepeat(Appointment& appointment) {
  appointment.repeat = {};
}

std::uint32_t WeekdayBit(int dayNumber) {
  return dayNumber >= 1 && dayNumber <= 7 ? std::uint32_t{1} << (dayNumber - 1) : 0;
}

bool HasWeekday(std::uint32_t mask, int dayNumber) {
  return (mask & WeekdayBit(dayNumber)) != 0;
}

}  // namespace core
