#include "core/calendar/repeat_rule.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace core {
namespace {

bool Within(std::int64_t day, std::int64_t first, std::int64_t last) {
  return day >= first && day <= last;
}

// How many intervals bring `distance` to 0 or below; 0 when it is there already.
std::int64_t StepsOver(std::int64_t distance, std::int64_t every) {
  return distance > 0 && every > 0 ? (distance + every - 1) / every : 0;
}

std::int64_t MonthNumber(const Date& date) {
  return std::int64_t{date.year} * 12 + date.month - 1;
}

// The Sunday on or before the date, or where the steps back end: at the calendar's first day, or at once for
// a date that is none. A day of the late era has no week in the early one.
int WeekStart(const Date& date, int start) {
  constexpr int kFirstWeekday = 6;  // the calendar begins on a Saturday
  if (start >= 0) return std::max(0, start - (start + kFirstWeekday) % 7);
  if (StoredDayIndex(date) >= 0) return -1;
  Date day = date;
  for (int i = 0; i < 6 && Weekday(day) != 0 && PreviousDay(day); ++i) continue;
  return DayIndex(day);
}

// The last year that a yearly rule reaches. Each year stepped over must have the appointment's own day, so
// one of 29 February ends in its first year.
int LastYearOf(const Date& date) {
  constexpr int kCommonYear = 2001;
  if (!Within(date.year, kFirstYear - 1, LastYear())) return date.year;
  if (IsValidDate(date.day, date.month, kCommonYear)) return LastYear();
  return IsValidDate(date.day, date.month, date.year + 1) ? date.year + 1 : date.year;
}

// The days on which a rule falls. All are day numbers; 64 bits, so that no sum of a day and an interval
// overflows.
class RuleDays {
 public:
  explicit RuleDays(const Appointment& appointment) : RuleDays(appointment.date, appointment.repeat) {}
  RuleDays(const Date& firstDate, const RepeatRule& rule)
      : type(rule.repeatType),
        every(rule.repeatEvery),
        param(rule.repeatParam),
        date(firstDate),
        start(DayIndex(date)),
        end(LastDayOf(rule)),
        spanStart(type == kRepeatWeekly ? WeekStart(date, static_cast<int>(start)) : start) {}

  // The last day that counts by itself. The last week of a weekly rule goes on behind it, for ranges.
  std::int64_t End() const { return end; }

  // The first of the rule's days from `from` to `to`; -1 for none.
  std::int64_t Next(std::int64_t from, std::int64_t to) const {
    switch (type) {
      case kRepeatDaily:
        return NextDaily(from, std::min(to, end));
      case kRepeatWeekly:
        return NextWeekly(from, to);
      case kRepeatMonthly:
        return NextMonthly(from, std::min(to, end));
      case kRepeatYearly:
        return NextYearly(from, std::min(to, end));
      default:
        return -1;
    }
  }

  // Whether a range is looked at: not when it has no days, or begins before and ends after the whole rule.
  bool Meets(std::int64_t from, std::int64_t to) const {
    if (type == kRepeatYearly) return true;
    return from >= 0 && to >= 0 && (Within(from, spanStart, end) || Within(to, spanStart, end));
  }

 private:
  std::int64_t NextDaily(std::int64_t from, std::int64_t to) const;
  std::int64_t NextWeekly(std::int64_t from, std::int64_t to) const;
  std::int64_t NextMonthly(std::int64_t from, std::int64_t to) const;
  std::int64_t NextYearly(std::int64_t from, std::int64_t to) const;

  const std::uint8_t type;
  const std::int64_t every;
  const std::uint32_t param;
  const Date date;
  const std::int64_t start;      // -1 for a date without a day number
  const std::int64_t end;        // the same
  const std::int64_t spanStart;  // of a weekly rule the start of its first week
};

std::int64_t RuleDays::NextDaily(std::int64_t from, std::int64_t to) const {
  if (start < 0) return -1;
  const std::int64_t day = start + every * StepsOver(from - start, every);
  return Within(day, from, to) ? day : -1;
}

// Within a week the days are counted from the week's start, Sunday or not, and the end of the rule bounds
// only the weeks' starts.
std::int64_t RuleDays::NextWeekly(std::int64_t from, std::int64_t to) const {
  const std::uint32_t mask = param & kWholeWeek;
  if (spanStart < 0 || mask == 0) return -1;
  const std::int64_t interval = 7 * every;
  std::int64_t week = spanStart + interval * StepsOver(from - (spanStart + 6), interval);
  while (week <= std::min(to, end)) {
    for (int k = 0; k < 7; ++k) {
      const std::int64_t day = week + k;
      if ((mask >> k & 1) != 0 && day >= start && day >= from) return day <= to ? day : -1;
    }
    if (interval == 0) return -1;
    week += interval;
  }
  return -1;
}

// Months without the day are skipped.
std::int64_t RuleDays::NextMonthly(std::int64_t from, std::int64_t to) const {
  Date first{};
  if (start < 0 || !DateFromIndex(static_cast<int>(from), first)) return -1;
  std::int64_t month = MonthNumber(date);
  month += every * StepsOver(MonthNumber(first) - month, every);
  for (; month / 12 <= LastYear(); month += every) {
    const int year = static_cast<int>(month / 12);
    const int inYear = static_cast<int>(month % 12) + 1;
    if (DayIndex(year, inYear, 1) > to) return -1;
    const int day = DayIndex(year, inYear, static_cast<int>(param));
    if (day >= from && day >= start) return day <= to ? day : -1;
    if (every == 0) return -1;
  }
  return -1;
}

// Only the year bounds the rule's first day, which may lie before the appointment's own.
std::int64_t RuleDays::NextYearly(std::int64_t from, std::int64_t to) const {
  Date first{};
  if (!DateFromIndex(static_cast<int>(from), first)) return -1;
  const auto month = static_cast<int>(param >> 16);
  const auto dayOfMonth = static_cast<int>(param & 0xFFFF);
  std::int64_t year = date.year;
  year += every * StepsOver(first.year - year, every);
  for (const int last = LastYearOf(date); year <= last; year += every) {
    const int day = DayIndex(static_cast<int>(year), month, dayOfMonth);
    if (day >= from) return day <= to ? day : -1;
    if (every == 0) return -1;
  }
  return -1;
}

const Appointment& At(const void* slot) {
  return *static_cast<const Appointment*>(slot);
}

}  // namespace

std::optional<Date> EndOf(const RepeatRule& rule) {
  const Date end = rule.repeatEnd;
  if (IsSameDate(end, kNoEndDate) || IsSameDate(end, {31, 12, kLateLastYear})) return std::nullopt;
  return end;
}

int LastDayOf(const RepeatRule& rule) {
  const std::optional<Date> end = EndOf(rule);
  const int last = DayIndex(LastDate());
  return end ? std::min(StoredDayIndex(*end), last) : last;
}

bool EndsBefore(const RepeatRule& rule, const Date& date) {
  const std::optional<Date> end = EndOf(rule);
  return end && StoredDayIndex(*end) < StoredDayIndex(date);
}

bool OccursIn(const Appointment& appointment, const Date& from, const Date& to) {
  const RuleDays rule(appointment);
  const int first = DayIndex(from);
  const int last = DayIndex(to);
  return rule.Meets(first, last) && rule.Next(std::max(first, 0), last) >= 0;
}

bool OccursOn(const Appointment& appointment, const Date& day) {
  return OccursIn(appointment, day, day);
}

std::uint64_t OccurrenceDays(const Date& date, const RepeatRule& repeat, const Date& first, int count) {
  const std::int64_t from = DayIndex(first);
  if (from < 0) return 0;
  const std::int64_t to = from + std::min(count, kMostOccurrenceDays) - 1;
  const auto bit = [from](std::int64_t day) { return std::uint64_t{1} << (day - from); };
  if (repeat.repeatType == kRepeatNone) {
    const int day = DayIndex(date);
    return Within(day, from, to) ? bit(day) : 0;
  }
  const RuleDays rule(date, repeat);
  const std::int64_t last = std::min(to, rule.End());
  std::uint64_t days = 0;
  for (std::int64_t day = rule.Next(from, last); day >= 0; day = rule.Next(day + 1, last)) days |= bit(day);
  return days;
}

std::optional<Date> NextOccurrence(const Appointment& appointment, const Date& day) {
  const int from = DayIndex(day);
  if (from < 0) return std::nullopt;
  const RuleDays rule(appointment);
  Date next{};
  if (!DateFromIndex(static_cast<int>(rule.Next(from + 1, rule.End())), next)) return std::nullopt;
  return next;
}

std::optional<Date> FirstOccurrence(const Appointment& appointment) {
  if (OccurrenceDays(appointment.date, appointment.repeat, kFirstDate, 1) != 0) return kFirstDate;
  if (HasRepeat(appointment)) return NextOccurrence(appointment, kFirstDate);
  const Date date = appointment.date;
  return DayIndex(date) >= 0 ? std::optional<Date>(date) : std::nullopt;
}

std::optional<Date> LastOccurrence(const Appointment& appointment) {
  if (!HasRepeat(appointment)) return FirstOccurrence(appointment);
  for (int last = LastDayOf(appointment.repeat); last >= 0; last -= kMostOccurrenceDays) {
    const int from = std::max(last - kMostOccurrenceDays + 1, 0);
    Date date{};
    if (!DateFromIndex(from, date)) return std::nullopt;
    const std::uint64_t days = OccurrenceDays(appointment.date, appointment.repeat, date, last - from + 1);
    if (days == 0) continue;
    static_cast<void>(DateFromIndex(from + static_cast<int>(std::bit_width(days)) - 1, date));
    return date;
  }
  return std::nullopt;
}

int FirstWeekdayOf(const Date& date) {
  Date start{};
  return DateFromIndex(WeekStart(date, DayIndex(date)), start) ? Weekday(start) : -1;
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
