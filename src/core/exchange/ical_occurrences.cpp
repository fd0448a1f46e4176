#include "core/exchange/ical_occurrences.h"

#include <algorithm>

namespace core {
namespace {

constexpr std::size_t kMostAtOnce =
    2000;  // occurrences of one span that are kept; more than an event may have
constexpr int kWeek = 7;

int YearLength(int year) {
  return CivilDay(year + 1, 1, 1) - CivilDay(year, 1, 1);
}

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
  return a >= 0 ? a / b : -((b - 1 - a) / b);
}

}  // namespace

void IcalOccurrences::Numbers::Set(const std::vector<int>& numbers) {
  any = !numbers.empty();
  for (const int number : numbers) {
    const auto size = static_cast<std::size_t>(number < 0 ? -number : number);
    if (size < front.size()) (number < 0 ? back : front).set(size);
  }
}

IcalOccurrences::IcalOccurrences(const IcalRule& itsRule, std::int64_t itsStart, std::int64_t from,
                                 std::int64_t itsUntil, IcalWork& itsWork)
    : rule(itsRule), start(itsStart), until(itsUntil), work(itsWork) {
  months.Set(rule.months);
  monthDays.Set(rule.monthDays);
  yearDays.Set(rule.yearDays);
  weeks.Set(rule.weeks);
  hours.Set(rule.hours);
  minutes.Set(rule.minutes);
  seconds.Set(rule.seconds);
  const bool numbers = rule.frequency >= IcalFrequency::kMonthly && rule.weeks.empty();
  for (const IcalWeekday& day : rule.weekdays) {
    anyWeekday = true;
    if (day.ordinal != 0 && numbers) {
      numbered.push_back(day);
    } else {
      everyWeekday = static_cast<std::uint8_t>(everyWeekday | 1U << day.weekday);
    }
  }
  SetDefaults();
  if (rule.frequency >= IcalFrequency::kDaily) SetTimes();
  constexpr std::array<std::int64_t, 3> kSteps{1, 60, 3600};
  if (rule.frequency < IcalFrequency::kDaily)
    step = kSteps[static_cast<std::size_t>(rule.frequency)] * rule.interval;
  if (rule.count != 0 || from <= start) return;
  // Straight to the span of `from`, or shortly before it.
  const std::int64_t days = DayOf(from) - std::int64_t{DayOf(start)};
  switch (rule.frequency) {
    case IcalFrequency::kYearly:
      nextSpan = days / 366 / rule.interval;
      break;
    case IcalFrequency::kMonthly:
      nextSpan = days / 31 / rule.interval;
      break;
    case IcalFrequency::kWeekly:
      nextSpan = days / kWeek / rule.interval;
      break;
    case IcalFrequency::kDaily:
      nextSpan = days / rule.interval;
      break;
    default:
      nextSpan = days;
  }
}

// What DTSTART says where the rule is silent.
void IcalOccurrences::SetDefaults() {
  if (rule.frequency < IcalFrequency::kWeekly) return;
  const CivilDate date = CivilOf(DayOf(start));
  if (rule.frequency == IcalFrequency::kWeekly ||
      (!rule.weeks.empty() && !anyWeekday && rule.monthDays.empty())) {
    if (!anyWeekday) everyWeekday = static_cast<std::uint8_t>(1U << WeekdayOf(DayOf(start)));
    anyWeekday = true;
    return;
  }
  if (anyWeekday || !rule.monthDays.empty() || !rule.yearDays.empty()) return;
  monthDays.Set({date.day});
  if (rule.frequency == IcalFrequency::kYearly && rule.months.empty()) months.Set({date.month});
}

void IcalOccurrences::SetTimes() {
  const int second = SecondOf(start);
  const auto orOwn = [](const std::vector<int>& list, int own) {
    std::vector<int> sorted = list.empty() ? std::vector<int>{own} : list;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    return sorted;
  };
  const std::vector<int> allSeconds = orOwn(rule.seconds, second % 60);
  const std::vector<int> allMinutes = orOwn(rule.minutes, second / 60 % 60);
  for (const int hour : orOwn(rule.hours, second / 3600)) {
    for (const int minute : allMinutes) {
      if (!work.Take(static_cast<std::int64_t>(allSeconds.size()))) return;
      for (const int one : allSeconds) times.push_back(hour * 3600 + minute * 60 + std::min(one, 59));
    }
  }
}

// The days of the span with this number, counted in intervals from that of DTSTART. False behind the last
// year there is.
bool IcalOccurrences::Span(std::int64_t index, int& first, int& last) const {
  constexpr std::int64_t kMostYear = 9998;
  const int startDay = DayOf(start);
  const CivilDate date = CivilOf(startDay);
  if (rule.frequency == IcalFrequency::kYearly) {
    const std::int64_t year = date.year + index * rule.interval;
    if (year > kMostYear) return false;
    first = CivilDay(static_cast<int>(year), 1, 1);
    last = first + YearLength(static_cast<int>(year)) - 1;
    return true;
  }
  if (rule.frequency == IcalFrequency::kMonthly) {
    const std::int64_t month = date.year * std::int64_t{12} + date.month - 1 + index * rule.interval;
    if (month / 12 > kMostYear) return false;
    first = CivilDay(static_cast<int>(month / 12), static_cast<int>(month % 12) + 1, 1);
    last = CivilDay(static_cast<int>((month + 1) / 12), static_cast<int>((month + 1) % 12) + 1, 1) - 1;
    return true;
  }
  const bool weekly = rule.frequency == IcalFrequency::kWeekly;
  const int firstSpan = weekly ? startDay - (WeekdayOf(startDay) - rule.weekStart + kWeek) % kWeek : startDay;
  const std::int64_t interval = rule.frequency < IcalFrequency::kDaily ? 1 : rule.interval;
  const std::int64_t day = firstSpan + index * interval * (weekly ? kWeek : 1);
  if (day > kMostYear * 366) return false;
  first = static_cast<int>(day);
  last = weekly ? first + kWeek - 1 : first;
  return true;
}

// The number of the day's week, and how many weeks the year has to which it is counted. A week belongs to the
// year that has most of its days.
int IcalOccurrences::WeekNumber(int day, int& weeksOfYear) const {
  const auto firstWeek = [this](int year) {
    const int fourth = CivilDay(year, 1, 4);
    return fourth - (WeekdayOf(fourth) - rule.weekStart + kWeek) % kWeek;
  };
  int year = CivilOf(day).year;
  if (day < firstWeek(year)) --year;
  if (day >= firstWeek(year + 1)) ++year;
  weeksOfYear = (firstWeek(year + 1) - firstWeek(year)) / kWeek;
  return (day - firstWeek(year)) / kWeek + 1;
}

bool IcalOccurrences::WeekdayPasses(int day, const CivilDate& date, int yearDay, int yearLength) const {
  const int weekday = WeekdayOf(day);
  if ((everyWeekday >> weekday & 1) != 0) return true;
  const bool inMonth = rule.frequency == IcalFrequency::kMonthly || !rule.months.empty();
  const int number = inMonth ? date.day : yearDay;
  for (const IcalWeekday& one : numbered) {
    if (one.weekday != weekday) continue;
    if (one.ordinal == (number - 1) / kWeek + 1) return true;
    const int length = inMonth ? CivilDay(date.year + date.month / 12, date.month % 12 + 1, 1) -
                                     CivilDay(date.year, date.month, 1)
                               : yearLength;
    if (one.ordinal == -((length - number) / kWeek + 1)) return true;
  }
  return false;
}

bool IcalOccurrences::Passes(int day) const {
  const CivilDate date = CivilOf(day);
  if (!months.Has(date.month, 12)) return false;
  if (monthDays.any) {
    const int length =
        CivilDay(date.year + date.month / 12, date.month % 12 + 1, 1) - CivilDay(date.year, date.month, 1);
    if (!monthDays.Has(date.day, length)) return false;
  }
  const int yearDay = day - CivilDay(date.year, 1, 1) + 1;
  const int yearLength = YearLength(date.year);
  if (!yearDays.Has(yearDay, yearLength)) return false;
  if (anyWeekday && !WeekdayPasses(day, date, yearDay, yearLength)) return false;
  if (!weeks.any) return true;
  int weeksOfYear = 0;
  const int week = WeekNumber(day, weeksOfYear);
  return weeks.Has(week, weeksOfYear);
}

void IcalOccurrences::ChoosePositions(const std::vector<int>& days) {
  const auto count = static_cast<std::int64_t>(times.size());
  const std::int64_t all = static_cast<std::int64_t>(days.size()) * count;
  for (const int position : rule.positions) {
    const std::int64_t index = position > 0 ? position - 1 : all + position;
    if (position == 0 || index < 0 || index >= all) continue;
    found.push_back(days[static_cast<std::size_t>(index / count)] * kSecondsOfDay +
                    times[static_cast<std::size_t>(index % count)]);
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
}

// The occurrences of the next span. False when there is none.
bool IcalOccurrences::FillSpan() {
  int first = 0;
  int last = 0;
  if (times.empty() || !Span(nextSpan++, first, last) || first > DayOf(until)) return false;
  std::vector<int> days;
  for (int day = first; day <= last; ++day) {
    if (months.any && (day == first || CivilOf(day).day == 1)) {
      // A month that is not meant is passed over at once.
      const CivilDate date = CivilOf(day);
      if (!months.Has(date.month, 12)) {
        if (!work.Take(1)) return false;
        day = CivilDay(date.year + date.month / 12, date.month % 12 + 1, 1) - 1;
        continue;
      }
    }
    if (!work.Take(1)) return false;
    if (Passes(day)) days.push_back(day);
  }
  if (!rule.positions.empty()) {
    ChoosePositions(days);
    return true;
  }
  for (const int day : days) {
    for (const int time : times) {
      const std::int64_t wall = day * kSecondsOfDay + time;
      if (wall < start) continue;
      if (found.size() == kMostAtOnce) return true;
      found.push_back(wall);
    }
  }
  return work.Take(static_cast<std::int64_t>(found.size()));
}

// The occurrences of the next day, of a rule that repeats within days.
bool IcalOccurrences::FillDay() {
  int day = 0;
  int same = 0;
  if (!Span(nextSpan++, day, same) || day > DayOf(until) || !work.Take(1)) return false;
  if (!Passes(day)) return true;
  const std::int64_t begin = day * kSecondsOfDay;
  const bool hourly = rule.frequency == IcalFrequency::kHourly;
  const bool secondly = rule.frequency == IcalFrequency::kSecondly;
  // The unit's beginning, on which steps are counted; within it the smaller lists apply.
  const std::int64_t unit = hourly ? 3600 : secondly ? 1 : 60;
  const std::int64_t base = FloorDiv(start, unit) * unit;
  const std::int64_t steps = begin > base ? (begin - base + step - 1) / step : 0;
  const int own = SecondOf(start);
  const std::vector<int> allMinutes = !hourly                ? std::vector<int>{0}
                                      : rule.minutes.empty() ? std::vector<int>{own / 60 % 60}
                                                             : rule.minutes;
  const std::vector<int> allSeconds = secondly               ? std::vector<int>{0}
                                      : rule.seconds.empty() ? std::vector<int>{own % 60}
                                                             : rule.seconds;
  for (std::int64_t wall = base + steps * step; wall < begin + kSecondsOfDay; wall += step) {
    if (!work.Take(1)) return false;
    const int second = SecondOf(wall);
    if (!hours.HasTime(second / 3600) || (!hourly && !minutes.HasTime(second / 60 % 60)) ||
        (secondly && !seconds.HasTime(second % 60)))
      continue;
    for (const int minute : allMinutes) {
      for (const int one : allSeconds) {
        if (!work.Take(1)) return false;
        const std::int64_t exact = wall + minute * std::int64_t{60} + one;
        if (exact >= start) found.push_back(exact);
      }
    }
    if (found.size() >= kMostAtOnce) break;
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return true;
}

bool IcalOccurrences::Next(std::int64_t& wall) {
  for (;;) {
    while (at == found.size()) {
      found.clear();
      at = 0;
      if (!(rule.frequency < IcalFrequency::kDaily ? FillDay() : FillSpan())) return false;
    }
    wall = found[at++];
    if (wall < start) continue;
    if (wall > until || (rule.count != 0 && counted == rule.count)) return false;
    ++counted;
    return true;
  }
}

}  // namespace core
