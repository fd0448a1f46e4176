#include "core/date_time.h"

#include <array>
#include <bit>
#include <limits>
#include <optional>

#include "core/ini_file.h"
#include "platform/system/clock.h"
#include "resources/strings.h"

namespace core {
namespace {

// Everything stored is little-endian and copied byte for byte.
static_assert(std::endian::native == std::endian::little);

constexpr int kMonthNameText = 2010;    // January
constexpr int kWeekdayNameText = 2022;  // Sunday
constexpr int kYears = kLastYear - kFirstYear + 1;

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
  if (year < kFirstYear || year > kLastYear || month < 1 || month > 12 || day < 1 || day > 31) return false;
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

std::string TwoDigits(std::int64_t number) {
  std::string text = std::to_string(number);
  if (number < 10) text.insert(text.begin(), '0');
  return text;
}

std::string TimeText(int hour, int minute, int half, const char* morning, const char* afternoon) {
  if (GetClockMode() == ClockMode::k24Hours) {
    return TwoDigits(std::int64_t{hour} + (half == kAfterNoon ? 12 : 0)) + ":" + TwoDigits(minute);
  }
  // The hour after midnight shows as 00, the hour after noon as 12.
  const int shown = hour == 0 && half == kAfterNoon ? 12 : hour;
  const bool padded = (shown >= 1 && shown <= 9) || (shown == 0 && half == kBeforeNoon);
  return (padded ? TwoDigits(shown) : std::to_string(shown)) + ":" + TwoDigits(minute) +
         (half == kBeforeNoon ? morning : afternoon);
}

std::optional<ClockMode> clockMode;

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

int DayIndex(int year, int month, int day) {
  if (year < kFirstYear || year > kLastYear || month < 1 || month > 12 || day < 1) return -1;
  const auto& starts = kMonthStarts[Leap(year) ? 1 : 0];
  const auto inYear = static_cast<std::size_t>(month);
  if (day > starts[inYear + 1] - starts[inYear]) return -1;
  return kYearStarts[static_cast<std::size_t>(year - kFirstYear)] + starts[inYear] + day - 1;
}

int DayIndex(const Date& date) {
  return DayIndex(date.year, date.month, date.day);
}

bool DateFromIndex(int index, Date& date) {
  if (index < 0 || index >= kYearStarts[kYears]) return false;
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
    if (month > 12 || year < kFirstYear || year > kLastYear) return false;
    day = DaysInMonth(static_cast<int>(year), static_cast<int>(month));
  }
  return Accept(date, day, month, year);
}

bool NextWeek(Date& date) {
  return StepWeek(date, NextDay);
}

bool PreviousWeek(Date& date) {
  return StepWeek(date, PreviousDay);
}

bool NextMonth(Date& date) {
  if (date.month < 12) return MoveToMonth(date, date.month + 1, date.year);
  return date.year < kLastYear && MoveToMonth(date, 1, date.year + 1);
}

bool PreviousMonth(Date& date) {
  if (date.month == std::numeric_limits<std::int32_t>::min()) return false;
  if (date.month > 1) return MoveToMonth(date, date.month - 1, date.year);
  return date.year > kFirstYear && MoveToMonth(date, 12, date.year - 1);
}

Date Today() {
  const platform::LocalTime now = platform::Now();
  if (now.year < kFirstYear) return kFirstDate;
  if (now.year > kLastYear) return kLastDate;
  return {now.day, now.month, now.year};
}

TimeOfDay NowRounded(int step) {
  const platform::LocalTime now = platform::Now();
  const int minute = step > 0 ? now.minute - now.minute % step : now.minute;
  return {now.hour % 12, minute, now.second, now.hour < 12 ? kBeforeNoon : kAfterNoon};
}

ClockMode GetClockMode() {
  if (!clockMode) {
    std::string preference;
    const bool found = IniFile("Daybrix.ini").ReadString("intl", "iTime", preference);
    clockMode = found && preference.front() == '0' ? ClockMode::k12Hours : ClockMode::k24Hours;
  }
  return *clockMode;
}

void SetClockMode(ClockMode mode) {
  clockMode = mode;
}

std::string FormatTime(int hour, int minute, int half) {
  return TimeText(hour, minute, half, " am", " pm");
}

std::string FormatTime(const TimeOfDay& time) {
  return FormatTime(time.hour, time.minute, time.half);
}

std::string FormatTimeCompact(int hour, int minute, int half) {
  return TimeText(hour, minute, half, "a", "p");
}

std::string FormatTimeCompact(const TimeOfDay& time) {
  return FormatTimeCompact(time.hour, time.minute, time.half);
}

std::string FormatDate(int day, int month, int year) {
  const bool monthFirst = GetClockMode() == ClockMode::k12Hours;
  return std::to_string(monthFirst ? month : day) + "/" + std::to_string(monthFirst ? day : month) + "/" +
         std::to_string(year);
}

std::string FormatDate(const Date& date) {
  return FormatDate(date.day, date.month, date.year);
}

std::string MonthName(int month) {
  return IsValidMonth(month) ? resources::FindText(kMonthNameText + month - 1) : "";
}

std::string MonthName(const Date& date) {
  return MonthName(date.month);
}

std::string WeekdayName(const Date& date) {
  return resources::FindText(kWeekdayNameText + Weekday(date));
}

}  // namespace core
