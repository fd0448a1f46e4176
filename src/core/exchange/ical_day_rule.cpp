#include "core/exchange/ical_day_rule.h"

#include <algorithm>
#include <bit>

namespace core {
namespace {

constexpr int kWeek = 7;
constexpr int kMostEvery = 99;
constexpr int kMostMonths = 12 * 400;  // looked through for one that has the day

int MonthLength(int year, int month) {
  return CivilDay(year + month / 12, month % 12 + 1, 1) - CivilDay(year, month, 1);
}

int FirstOfWeek(int day, int weekStart) {
  return day - (WeekdayOf(day) - weekStart + kWeek) % kWeek;
}

int MonthNumber(int day) {
  const CivilDate date = CivilOf(day);
  return date.year * 12 + date.month - 1;
}

// The rule's day of a month; nothing when it has none.
std::optional<int> InMonth(const DayRule& rule, int monthNumber) {
  const int year = monthNumber / 12;
  const int month = monthNumber % 12 + 1;
  if (rule.monthDay > MonthLength(year, month)) return std::nullopt;
  return CivilDay(year, month, rule.monthDay);
}

bool SameTime(const IcalRule& rule, int second) {
  const auto same = [](const std::vector<int>& list, int own) {
    return list.empty() || (list.size() == 1 && list.front() == own);
  };
  return same(rule.hours, second / 3600) && same(rule.minutes, second / 60 % 60) &&
         same(rule.seconds, second % 60);
}

// Months between two occurrences of a monthly or yearly rule.
int MonthStep(const DayRule& rule) {
  return rule.type == kRepeatYearly ? 12 * rule.every : rule.every;
}

// The month from which the intervals are counted.
int FirstMonth(const DayRule& rule) {
  const int own = MonthNumber(rule.anchor);
  return rule.type == kRepeatYearly ? own / 12 * 12 + rule.month - 1 : own;
}

// The rule of its frequency, where nothing else is said that a record cannot hold.
std::optional<DayRule> OfFrequency(const IcalRule& rule, int day) {
  const CivilDate date = CivilOf(day);
  DayRule simple{.every = rule.interval, .weekStart = rule.weekStart, .anchor = day};
  for (const IcalWeekday& one : rule.weekdays) simple.mask |= 1U << one.weekday;
  simple.monthDay = rule.monthDays.empty() ? date.day : rule.monthDays.front();
  simple.month = rule.months.empty() ? date.month : rule.months.front();
  switch (rule.frequency) {
    case IcalFrequency::kDaily:
    case IcalFrequency::kWeekly: {
      const bool daily = rule.frequency == IcalFrequency::kDaily;
      if (!rule.months.empty() || !rule.monthDays.empty()) return std::nullopt;
      if (daily && simple.mask == 0) return simple;
      if (daily && rule.interval != 1) return std::nullopt;
      simple.type = kRepeatWeekly;
      if (simple.mask == 0) simple.mask = 1U << WeekdayOf(day);
      return simple;
    }
    case IcalFrequency::kMonthly:
      if (!rule.months.empty() || simple.mask != 0 || simple.monthDay < 1) return std::nullopt;
      simple.type = kRepeatMonthly;
      return simple;
    case IcalFrequency::kYearly:
      if (rule.months.size() > 1 || (rule.months.empty() && !rule.monthDays.empty()) || simple.mask != 0 ||
          simple.monthDay < 1 || simple.month > 12 || simple.monthDay > MonthLength(2001, simple.month))
        return std::nullopt;
      simple.type = kRepeatYearly;
      return simple;
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<DayRule> SimpleRule(const IcalRule& rule, std::int64_t start) {
  if (rule.interval > kMostEvery || !rule.positions.empty() || !rule.weeks.empty() ||
      !rule.yearDays.empty() || !SameTime(rule, SecondOf(start)) || rule.monthDays.size() > 1)
    return std::nullopt;
  std::optional<DayRule> simple = OfFrequency(rule, DayOf(start));
  if (!simple) return std::nullopt;
  // Counted from an occurrence the intervals stay what they are when the rule is shifted.
  const std::optional<int> first = NextOf(*simple, simple->anchor);
  if (!first) return std::nullopt;
  simple->anchor = *first;
  return simple;
}

std::optional<int> NextOf(const DayRule& rule, int from) {
  from = std::max(from, rule.anchor);
  if (rule.type == kRepeatDaily) return from + (rule.every - (from - rule.anchor) % rule.every) % rule.every;
  if (rule.type == kRepeatWeekly) {
    const int first = FirstOfWeek(rule.anchor, rule.weekStart);
    const int interval = kWeek * rule.every;
    for (int week = first + (from - first) / interval * interval;; week += interval) {
      for (int day = std::max(week, from); day < week + kWeek; ++day) {
        if ((rule.mask >> WeekdayOf(day) & 1) != 0) return day;
      }
    }
  }
  const int step = MonthStep(rule);
  const int first = FirstMonth(rule);
  const int distance = std::max(MonthNumber(from) - first, 0);
  for (int month = first + (distance + step - 1) / step * step; month < MonthNumber(from) + kMostMonths;
       month += step) {
    const std::optional<int> day = InMonth(rule, month);
    if (day && *day >= from) return day;
  }
  return std::nullopt;
}

std::optional<int> PreviousOf(const DayRule& rule, int to) {
  if (to < rule.anchor) return std::nullopt;
  if (rule.type == kRepeatDaily) return to - (to - rule.anchor) % rule.every;
  if (rule.type == kRepeatWeekly) {
    const int first = FirstOfWeek(rule.anchor, rule.weekStart);
    const int interval = kWeek * rule.every;
    for (int week = first + (to - first) / interval * interval; week >= first; week -= interval) {
      for (int day = std::min(week + kWeek - 1, to); day >= std::max(week, rule.anchor); --day) {
        if ((rule.mask >> WeekdayOf(day) & 1) != 0) return day;
      }
    }
    return std::nullopt;
  }
  const int step = MonthStep(rule);
  const int first = FirstMonth(rule);
  for (int month = first + (MonthNumber(to) - first) / step * step; month >= first; month -= step) {
    const std::optional<int> day = InMonth(rule, month);
    if (day && *day <= to) return *day >= rule.anchor ? day : std::nullopt;
  }
  return std::nullopt;
}

std::optional<int> NumberOf(const DayRule& rule, std::int64_t number, int last) {
  std::optional<int> day = NextOf(rule, rule.anchor);
  if (rule.type == kRepeatDaily) {
    const std::int64_t found = rule.anchor + std::min(number - 1, std::int64_t{1} << 32) * rule.every;
    return found <= last ? std::optional<int>(static_cast<int>(found)) : std::nullopt;
  }
  if (rule.type == kRepeatWeekly) {
    // Whole weeks at once, then one by one.
    const int second = FirstOfWeek(rule.anchor, rule.weekStart) + kWeek * rule.every;
    for (; number > 1 && day && *day < second; --number) day = NextOf(rule, *day + 1);
    const int days = std::popcount(rule.mask & 0x7F);
    const std::int64_t weeks = number / days > 0 ? (number - 1) / days : 0;
    if (day && *day + weeks * kWeek * rule.every > last) return std::nullopt;
    if (weeks > 0) {
      day = static_cast<int>(*day + weeks * kWeek * rule.every);
      number -= weeks * days;
    }
  }
  for (; number > 1 && day && *day <= last; --number) day = NextOf(rule, *day + 1);
  return day && *day <= last ? day : std::nullopt;
}

std::optional<DayRule> Shifted(const DayRule& rule, int days) {
  DayRule shifted = rule;
  shifted.anchor += days;
  if (days == 0 || rule.type == kRepeatDaily) return shifted;
  const int turn = (days % kWeek + kWeek) % kWeek;
  if (rule.type == kRepeatWeekly) {
    const std::uint32_t mask = rule.mask << turn;
    shifted.mask = (mask | mask >> kWeek) & 0x7F;
    shifted.weekStart = (rule.weekStart + turn) % kWeek;
    return shifted;
  }
  // Only where no end of a month lies between.
  constexpr int kShortestMonth = 28;
  shifted.monthDay += days;
  if (rule.type == kRepeatMonthly) {
    if (rule.monthDay > kShortestMonth || shifted.monthDay > kShortestMonth || shifted.monthDay < 1)
      return std::nullopt;
    return shifted;
  }
  const CivilDate common = CivilOf(CivilDay(2001, rule.month, rule.monthDay) + days);
  const CivilDate leap = CivilOf(CivilDay(2004, rule.month, rule.monthDay) + days);
  if (common.month != leap.month || common.day != leap.day || common.year != 2001 || leap.year != 2004)
    return std::nullopt;
  shifted.month = common.month;
  shifted.monthDay = common.day;
  return shifted;
}

bool FitsSundayWeeks(const DayRule& rule) {
  if (rule.type != kRepeatWeekly || rule.every == 1) return true;
  // The days of such a week before Sunday, and from it on.
  const std::uint32_t before = 0x7FU << rule.weekStart & 0x7F;
  return rule.weekStart == 0 || (rule.mask & before) == 0 || (rule.mask & ~before & 0x7F) == 0;
}

}  // namespace core
