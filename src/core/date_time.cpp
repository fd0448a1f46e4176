#include "core/date_time.h"

#include <array>
#include <bit>
#include <limits>

#include "platform/system/clock.h"

namespace core {
namespace {

// Everything stored is little-endian and copied byte for byte.
static_assert(std::endian::native == std::endian::little);

constexpr int kYears = kLateLastYear - kFirstYear + 1;

constexpr std::array<int, 13> kMonthLengths{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

constexpr bool Leap(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Day numbers of the firsts of January, and of the first of each month counted from there: a day number is
// asked for several times for each record of a scan, so it is two look-ups and no loop.
constexpr auto kYearStarts = [] {
  std::array<int, kYears + 1> starts{};
  for (int i = 0; i < kYears; ++i) {
    starts[static_cast<std::size_t>(i) + 1] =
        starts[static_cast<std::size_t>(i)] + (Leap(kFirstYear + i) ? 366 : 365);
  }
  return starts;
}();

constexpr auto kMonthStarts = [] {
  std::array<std::array<int, 14>, 2> starts{};
  for (std::size_t leap = 0; leap < 2; ++leap) {
    for (std::size_t month = 1; month <= 12; ++month) {
      const int length = kMonthLengths[month] + (month == 2 && leap == 1 ? 1 : 0);
      starts[leap][month + 1] = starts[leap][month] + length;
    }
  }
  return starts;
}();

bool Accept(Date& date, std::int64_t day, std::int64_t month, std::int64_t year) {
  if (year < kFirstYear || year > kLateLastYear || month < 1 || month > 12 || day < 1 || day > 31)
    return false;
  const Date moved{static_cast<int>(day), static_cast<int>(month), static_cast<int>(year)};
  if (DayIndex(moved) < 0) return false;
  date = moved;
  return true;
}

// Seven steps on a copy: a refused one leaves the copy where it is and the others go on.
bool StepWeek(Date& date, bool (*step)(Date&)) {
  Date moved = date;
  for (int i = 0; i < 7; ++i) step(moved);
  if (DayIndex(moved) < 0) return false;
  date = moved;
  return true;
}

bool MoveToMonth(Date& date, int month, int year) {
  if (DayIndex(year, month, date.day) < 0) {
    const int length = DaysInMonth(year, month);
    if (length < 0) return false;
    date.day = length;
  }
  date.month = month;
  date.year = year;
  return true;
}

// 0 until it is asked for.
int lastYear = 0;

}  // namespace

bool IsLeapYear(int year) {
  return Leap(year);
}

bool IsValidMonth(int month) {
  return month >= 1 && month <= 12;
}

bool IsValidDate(int day, int month, int year) {
  return day >= 1 && day <= DaysInMonth(year, month);
}

int DaysInMonth(int year, int month) {
  if (!IsValidMonth(month)) return -1;
  return month == 2 && IsLeapYear(year) ? 29 : kMonthLengths[static_cast<std::size_t>(month)];
}

int LastYear() {
  if (lastYear == 0) lastYear = platform::Now().year > kEarlyLastYear ? kLateLastYear : kEarlyLastYear;
  return lastYear;
}

void SetLastYear(int year) {
  lastYear = year;
}

Date LastDate() {
  return {31, 12, LastYear()};
}

int StoredDayIndex(const Date& date) {
  const int year = date.year;
  const int month = date.month;
  const int day = date.day;
  if (year < kFirstYear || year > kLateLastYear || month < 1 || month > 12 || day < 1) return -1;
  const auto& starts = kMonthStarts[Leap(year) ? 1 : 0];
  const auto inYear = static_cast<std::size_t>(month);
  if (day > starts[inYear + 1] - starts[inYear]) return -1;
  return kYearStarts[static_cast<std::size_t>(year - kFirstYear)] + starts[inYear] + day - 1;
}

int DayIndex(int year, int month, int day) {
  return year <= LastYear() ? StoredDayIndex({day, month, year}) : -1;
}

int DayIndex(const Date& date) {
  return DayIndex(date.year, date.month, date.day);
}

bool IsSameDate(const Date& a, const Date& b) {
  return a.day == b.day && a.month == b.month && a.year == b.year;
}

bool DateFromIndex(int index, Date& date) {
  if (index < 0 || index > DayIndex(LastDate())) return false;
  auto year = static_cast<std::size_t>(index / 366);
  while (kYearStarts[year + 1] <= index) ++year;
  const int inYear = index - kYearStarts[year];
  const auto& starts = kMonthStarts[Leap(kFirstYear + static_cast<int>(year)) ? 1 : 0];
  std::size_t month = 1;
  while (starts[month + 1] <= inYear) ++month;
  date = {inYear - starts[month] + 1, static_cast<int>(month), kFirstYear + static_cast<int>(year)};
  return true;
}

int Weekday(int year, int month, int day) {
  if (!IsValidMonth(month) || !IsValidDate(day, month, year)) return -1;
  // Years counted from March, so that the leap day is a year's last; every 400 years are a whole number of
  // weeks.
  const std::int64_t fromMarch = std::int64_t{year} - (month <= 2 ? 1 : 0);
  const std::int64_t cycleYear = ((fromMarch % 400) + 400) % 400;
  const int monthFromMarch = (month + 9) % 12;
  const std::int64_t days =
      cycleYear * 365 + cycleYear / 4 - cycleYear / 100 + (monthFromMarch * 153 + 2) / 5 + day;
  return static_cast<int>((days + 2) % 7);
}

int Weekday(const Date& date) {
  return Weekday(date.year, date.month, date.day);
}

int TimeSlot(int hour, int minute, int half) {
  if (hour < 0 || hour > 12 || minute < 0 || minute > 55) return -1;
  return minute / 5 + 12 * hour + (half == kBeforeNoon ? 0 : kDaySlots / 2);
}

int TimeSlot(const TimeOfDay& time) {
  return TimeSlot(time.hour, time.minute, time.half);
}

bool TimeFromSlot(int slot, TimeOfDay& time) {
  if (slot < 0 || slot >= kDaySlots) return false;
  const int hour = slot / 12;
  time.hour = hour % 12;
  time.minute = 5 * (slot % 12);
  time.half = hour < 12 ? kBeforeNoon : kAfterNoon;
  return true;
}

bool NextDay(Date& date) {
  std::int64_t day = std::int64_t{date.day} + 1;
  std::int64_t month = date.month;
  std::int64_t year = date.year;
  const int length = DaysInMonth(date.year, date.month);
  if (length > 0 && day > length) {
    day = 1;
    if (++month > 12) {
      month = 1;
      ++year;
    }
  }
  return Accept(date, day, month, year);
}

bool PreviousDay(Date& date) {
  std::int64_t day = std::int64_t{date.day} - 1;
  std::int64_t month = date.month;
  std::int64_t year = date.year;
  if (day < 1) {
    if (--month < 1) {
      month = 12;
      --year;
    }
    if (month > 12 || year < kFirstYear || year > kLateLastYear) return false;
    day = DaysInMonth(static_cast<int>(year), static_cast<int>(month));
  }
  return Accept(date, day, month, year);
}

bool StepDays(Date& date, std::int32_t days) {
  Date moved = date;
  // After the first step the date has a day number, whatever it was before.
  if (days != 0 && !(days > 0 ? NextDay(moved) : PreviousDay(moved))) return false;
  const std::int64_t rest = std::int64_t{days} - (days > 0) + (days < 0);
  const std::int64_t index = DayIndex(moved) + rest;
  if (rest != 0 && (index < 0 || index > DayIndex(LastDate()))) return false;
  if (rest != 0 && !DateFromIndex(static_cast<int>(index), moved)) return false;
  date = moved;
  return true;
}

bool NextWeek(Date& date) {
  return StepWeek(date, NextDay);
}

bool PreviousWeek(Date& date) {
  return StepWeek(date, PreviousDay);
}

bool NextMonth(Date& date) {
  if (date.month < 12) return MoveToMonth(date, date.month + 1, date.year);
  return date.year < LastYear() && MoveToMonth(date, 1, date.year + 1);
}

bool PreviousMonth(Date& date) {
  if (date.month == std::numeric_limits<std::int32_t>::min()) return false;
  if (date.month > 1) return MoveToMonth(date, date.month - 1, date.year);
  return date.year > kFirstYear && MoveToMonth(date, 12, date.year - 1);
}

Date Today() {
  const platform::LocalTime now = platform::Now();
  if (now.year < kFirstYear) return kFirstDate;
  if (now.year > LastYear()) return LastDate();
  return {now.day, now.month, now.year};
}

TimeOfDay NowRounded(int step) {
  const platform::LocalTime now = platform::Now();
  const int minute = step > 0 ? now.minute - now.minute % step : now.minute;
  return {now.hour % 12, minute, now.second, now.hour < 12 ? kBeforeNoon : kAfterNoon};
}

}  // namespace core
