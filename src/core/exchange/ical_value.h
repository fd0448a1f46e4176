// Values of iCalendar properties: dates, durations, texts and repeats. Days are counted from 1 January 2000,
// before it downwards; wall clocks are seconds since that midnight, in whatever zone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace core {

inline constexpr std::int64_t kSecondsOfDay = 86400;

// Of any year from 0 to 9999. The date must be one.
int CivilDay(int year, int month, int day);

struct CivilDate {
  int year;
  int month;
  int day;
};
CivilDate CivilOf(int day);
// 0 (Sunday) .. 6 (Saturday).
int WeekdayOf(int day);
// The day that a wall clock shows, and the seconds of that day.
int DayOf(std::int64_t wall);
int SecondOf(std::int64_t wall);

// "20040314", "20040314T100000" or "20040314T100000Z", whatever type its property names. Nothing when it is
// no date.
struct IcalStamp {
  std::int64_t wall = 0;
  bool isDate = false;
  bool isUtc = false;
};
std::optional<IcalStamp> ParseStamp(std::string_view text);

// "-PT15M", "P1D": seconds.
std::optional<std::int64_t> ParseDuration(std::string_view text);

// A TEXT value without its escapes; line ends are LF.
std::string UnescapeText(std::string_view value);

enum class IcalFrequency { kSecondly, kMinutely, kHourly, kDaily, kWeekly, kMonthly, kYearly };

struct IcalWeekday {
  int ordinal;  // 0: each; 2: the second; -1: the last
  int weekday;  // 0 Sunday ..
};

// A repeat as its property says it.
struct IcalRule {
  IcalFrequency frequency = IcalFrequency::kDaily;
  int interval = 1;
  std::int64_t count = 0;  // 0: not given
  std::optional<IcalStamp> until;
  int weekStart = 1;  // 0 Sunday ..
  std::vector<int> seconds, minutes, hours, monthDays, yearDays, weeks, months, positions;
  std::vector<IcalWeekday> weekdays;
};
// Nothing when it is none, or one that no calendar in use has (BYSETPOS of hours, another calendar's months).
std::optional<IcalRule> ParseRule(std::string_view text);

}  // namespace core
