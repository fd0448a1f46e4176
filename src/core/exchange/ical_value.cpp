#include "core/exchange/ical_value.h"

#include <libical/ical.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <limits>

namespace core {
namespace {

constexpr std::chrono::sys_days kOrigin = std::chrono::sys_days(std::chrono::year(2000) / 1 / 1);
constexpr std::size_t kMostRule = 4096;    // bytes; every number of every list at once takes as many
constexpr std::size_t kMostDuration = 64;  // bytes

bool ReadNumber(std::string_view text, std::size_t at, std::size_t digits, int& number) {
  number = 0;
  for (std::size_t i = at; i < at + digits; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    number = number * 10 + (text[i] - '0');
  }
  return true;
}

template <std::size_t kSize>
std::vector<int> ListOf(const short (&values)[kSize]) {
  return {values, std::find(values, values + kSize, static_cast<short>(ICAL_RECURRENCE_ARRAY_MAX))};
}

// The parts of a repeat that libical reads, so that one it knows nothing of does not cost the whole. It
// refuses COUNT beside UNTIL: that is kept apart.
std::string ReadableParts(std::string_view text, std::int64_t& count) {
  constexpr std::array<std::string_view, 14> kKnown{
      "FREQ",  "INTERVAL", "UNTIL",      "WKST",      "BYSECOND", "BYMINUTE", "BYHOUR",
      "BYDAY", "BYMONTH",  "BYMONTHDAY", "BYYEARDAY", "BYWEEKNO", "BYSETPOS", "RSCALE"};
  std::string parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(';'), text.size());
    std::string part(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    part.erase(std::remove_if(part.begin(), part.end(), [](char c) { return c == ' ' || c == '\t'; }),
               part.end());
    std::transform(part.begin(), part.end(), part.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    const std::size_t equals = part.find('=');
    if (equals == std::string::npos || equals + 1 == part.size()) continue;
    const std::string_view name = std::string_view(part).substr(0, equals);
    if (name == "COUNT") {
      const std::string_view digits = std::string_view(part).substr(equals + 1);
      if (std::from_chars(digits.data(), digits.data() + digits.size(), count).ec ==
          std::errc::result_out_of_range)
        count = std::numeric_limits<std::int64_t>::max();
    } else if (std::find(kKnown.begin(), kKnown.end(), name) != kKnown.end()) {
      parts.append(parts.empty() ? "" : ";").append(part);
    }
  }
  return parts;
}

}  // namespace

int CivilDay(int year, int month, int day) {
  return static_cast<int>((std::chrono::sys_days(std::chrono::year(year) / month / day) - kOrigin).count());
}

CivilDate CivilOf(int day) {
  const std::chrono::year_month_day date(kOrigin + std::chrono::days(day));
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day()))};
}

int WeekdayOf(int day) {
  constexpr int kSaturday = 6;  // 1 January 2000
  return ((day + kSaturday) % 7 + 7) % 7;
}

int DayOf(std::int64_t wall) {
  return static_cast<int>(wall >= 0 ? wall / kSecondsOfDay : -((kSecondsOfDay - 1 - wall) / kSecondsOfDay));
}

int SecondOf(std::int64_t wall) {
  return static_cast<int>(wall - DayOf(wall) * kSecondsOfDay);
}

std::optional<IcalStamp> ParseStamp(std::string_view text) {
  constexpr std::size_t kDate = 8;
  constexpr std::size_t kTime = 15;
  const bool isDate = text.size() == kDate;
  const bool isUtc = text.size() == kTime + 1 && (text.back() == 'Z' || text.back() == 'z');
  if (!isDate && text.size() != kTime && !isUtc) return std::nullopt;
  int year = 0;
  int month = 0;
  int day = 0;
  if (!ReadNumber(text, 0, 4, year) || !ReadNumber(text, 4, 2, month) || !ReadNumber(text, 6, 2, day) ||
      !std::chrono::year_month_day(std::chrono::year(year) / month / day).ok())
    return std::nullopt;
  IcalStamp stamp{CivilDay(year, month, day) * kSecondsOfDay, isDate, isUtc};
  if (isDate) return stamp;
  int hour = 0;
  int minute = 0;
  int second = 0;
  if ((text[8] != 'T' && text[8] != 't') || !ReadNumber(text, 9, 2, hour) ||
      !ReadNumber(text, 11, 2, minute) || !ReadNumber(text, 13, 2, second) || hour > 23 || minute > 59 ||
      second > 60)
    return std::nullopt;
  stamp.wall += hour * 3600 + minute * 60 + std::min(second, 59);  // a leap second
  return stamp;
}

std::optional<std::int64_t> ParseDuration(std::string_view text) {
  if (text.empty() || text.size() > kMostDuration) return std::nullopt;
  const icaldurationtype duration = icaldurationtype_from_string(std::string(text).c_str());
  if (icaldurationtype_is_bad_duration(duration) != 0) return std::nullopt;
  const std::int64_t days = std::int64_t{duration.weeks} * 7 + duration.days;
  const std::int64_t seconds = ((days * 24 + duration.hours) * 60 + duration.minutes) * 60 + duration.seconds;
  return duration.is_neg != 0 ? -seconds : seconds;
}

std::string UnescapeText(std::string_view value) {
  std::string text;
  text.reserve(value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      text += value[i];
      continue;
    }
    ++i;
    text += value[i] == 'n' || value[i] == 'N' ? '\n' : value[i];
  }
  return text;
}

std::optional<IcalRule> ParseRule(std::string_view text) {
  if (text.size() > kMostRule) return std::nullopt;
  IcalRule rule;
  rule.count = -1;
  const std::string parts = ReadableParts(text, rule.count);
  if (rule.count == 0 || parts.find("RSCALE") != std::string::npos) return std::nullopt;
  rule.count = std::max(rule.count, std::int64_t{0});
  const icalrecurrencetype read = icalrecurrencetype_from_string(parts.c_str());
  if (read.freq < ICAL_SECONDLY_RECURRENCE || read.freq > ICAL_YEARLY_RECURRENCE || read.interval < 1)
    return std::nullopt;
  rule.frequency = static_cast<IcalFrequency>(read.freq - ICAL_SECONDLY_RECURRENCE);
  rule.interval = read.interval;
  if (icaltime_is_null_time(read.until) == 0) {
    rule.until = ParseStamp(icaltime_as_ical_string(read.until));
    if (!rule.until) return std::nullopt;
  }
  if (read.week_start != ICAL_NO_WEEKDAY) rule.weekStart = read.week_start - ICAL_SUNDAY_WEEKDAY;
  rule.seconds = ListOf(read.by_second);
  rule.minutes = ListOf(read.by_minute);
  rule.hours = ListOf(read.by_hour);
  rule.monthDays = ListOf(read.by_month_day);
  rule.yearDays = ListOf(read.by_year_day);
  rule.weeks = ListOf(read.by_week_no);
  rule.months = ListOf(read.by_month);
  rule.positions = ListOf(read.by_set_pos);
  for (const int day : ListOf(read.by_day)) {
    const auto coded = static_cast<short>(day);
    rule.weekdays.push_back({icalrecurrencetype_day_position(coded),
                             icalrecurrencetype_day_day_of_week(coded) - ICAL_SUNDAY_WEEKDAY});
  }
  if (!rule.positions.empty() && rule.frequency < IcalFrequency::kDaily) return std::nullopt;
  return rule;
}

}  // namespace core
