#include "platform/system/time_zone.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>

#include "platform/system/file.h"

namespace platform {
namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kUnixToOurs = 946684800;  // from 1970 to 2000, seconds
constexpr int kFirstRuleYear = 2000;
constexpr int kLastRuleYear = 2100;
constexpr std::size_t kMostBytes = 1 << 20;  // of a zone's file, which has some thousand

std::int64_t DayNumber(int year, unsigned month, unsigned day) {
  using namespace std::chrono;
  constexpr sys_days kOrigin = sys_days(std::chrono::year(kFirstRuleYear) / 1 / 1);
  return (sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day)) - kOrigin)
      .count();
}

// ---- A zone by its rule, as TZ has it: "CET-1CEST,M3.5.0,M10.5.0/3" ----

struct RuleDay {
  char form = 'M';  // month, week and weekday; 'J' day of a year without 29 February; 'n' day from 0
  int month = 0, week = 0, day = 0;
  std::int64_t time = 7200;

  std::int64_t In(int year) const {
    const bool leap = std::chrono::year(year).is_leap();
    if (form == 'n') return (DayNumber(year, 1, 1) + day) * kDay + time;
    if (form == 'J') return (DayNumber(year, 1, 1) + day - 1 + (leap && day > 59 ? 1 : 0)) * kDay + time;
    const std::int64_t first = DayNumber(year, static_cast<unsigned>(month), 1);
    const std::int64_t next =
        month == 12 ? DayNumber(year + 1, 1, 1) : DayNumber(year, static_cast<unsigned>(month) + 1, 1);
    constexpr int kSaturday = 6;  // 1 January 2000
    std::int64_t found = first + (day - (first + kSaturday) % 7 + 7) % 7 + std::int64_t{7} * (week - 1);
    while (found >= next) found -= 7;
    return found * kDay + time;
  }
};

class RuleText {
 public:
  explicit RuleText(std::string_view rule) : text(rule) {}

  std::optional<TimeZone> Read() {
    std::int64_t standard = 0;
    if (!TakeName() || !TakeTime(standard)) return std::nullopt;
    if (text.empty()) return TimeZone(static_cast<std::int32_t>(-standard), {});
    std::int64_t summer = standard - 3600;
    if (!TakeName()) return std::nullopt;
    if (!text.empty() && text.front() != ',' && !TakeTime(summer)) return std::nullopt;
    RuleDay start{'M', 3, 2, 0};
    RuleDay end{'M', 11, 1, 0};
    if (!text.empty() && (!TakeDay(start) || !TakeDay(end))) return std::nullopt;
    std::vector<TimeZone::Change> changes;
    for (int year = kFirstRuleYear; year <= kLastRuleYear; ++year) {
      changes.push_back({start.In(year) + standard, static_cast<std::int32_t>(-summer)});
      changes.push_back({end.In(year) + summer, static_cast<std::int32_t>(-standard)});
    }
    std::sort(changes.begin(), changes.end(),
              [](const auto& a, const auto& b) { return a.moment < b.moment; });
    const bool endsFirst = changes.front().offset == -standard;  // in the south the year begins in summer
    return TimeZone(static_cast<std::int32_t>(endsFirst ? -summer : -standard), std::move(changes));
  }

 private:
  bool Take(char character) {
    if (text.empty() || text.front() != character) return false;
    text.remove_prefix(1);
    return true;
  }

  bool TakeName() {
    const bool quoted = Take('<');
    std::size_t length = 0;
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    while (length < text.size() && (quoted ? text[length] != '>' : isLetter(text[length]))) ++length;
    text.remove_prefix(length);
    return quoted ? Take('>') : length >= 3;
  }

  bool TakeNumber(int most, int& number) {
    number = 0;
    std::size_t digits = 0;
    for (; digits < text.size() && digits < 4 && text[digits] >= '0' && text[digits] <= '9'; ++digits)
      number = number * 10 + (text[digits] - '0');
    text.remove_prefix(digits);
    return digits != 0 && number <= most;
  }

  // Hours, and minutes and seconds if they follow, with a sign.
  bool TakeTime(std::int64_t& seconds) {
    const bool minus = Take('-');
    if (!minus) Take('+');
    int hours = 0;
    int minutes = 0;
    int rest = 0;
    if (!TakeNumber(167, hours)) return false;
    if (Take(':') && (!TakeNumber(59, minutes) || (Take(':') && !TakeNumber(59, rest)))) return false;
    seconds = (hours * std::int64_t{60} + minutes) * 60 + rest;
    if (minus) seconds = -seconds;
    return true;
  }

  bool TakeDay(RuleDay& day) {
    if (!Take(',')) return false;
    day.form = Take('M') ? 'M' : Take('J') ? 'J' : 'n';
    const bool read = day.form == 'M' ? TakeNumber(12, day.month) && day.month >= 1 && Take('.') &&
                                            TakeNumber(5, day.week) && day.week >= 1 && Take('.') &&
                                            TakeNumber(6, day.day)
                                      : TakeNumber(day.form == 'J' ? 365 : 364, day.day);
    return read && (!Take('/') || TakeTime(day.time));
  }

  std::string_view text;
};

// ---- A zone by its file: changes up to some year, and the rule for those that follow ----

std::int64_t BigEndian(std::string_view bytes) {
  std::uint64_t value = (static_cast<unsigned char>(bytes.front()) & 0x80) != 0 ? ~std::uint64_t{0} : 0;
  for (const char byte : bytes) value = value << 8 | static_cast<unsigned char>(byte);
  return static_cast<std::int64_t>(value);
}

struct FileBlock {
  std::size_t changes = 0;
  std::size_t types = 0;
  std::size_t size = 0;  // bytes behind the header
};

constexpr std::size_t kHeader = 44;

bool ReadHeader(std::string_view file, std::size_t timeSize, FileBlock& block) {
  if (file.size() < kHeader || file.substr(0, 4) != "TZif") return false;
  std::size_t counts[6];
  for (std::size_t i = 0; i < 6; ++i) {
    const std::int64_t count = BigEndian(file.substr(20 + 4 * i, 4));
    if (count < 0 || count > static_cast<std::int64_t>(kMostBytes)) return false;
    counts[i] = static_cast<std::size_t>(count);
  }
  block.changes = counts[3];
  block.types = counts[4];
  block.size = counts[3] * (timeSize + 1) + counts[4] * 6 + counts[5] + counts[2] * (timeSize + 4) +
               counts[1] + counts[0];
  return block.types != 0 && file.size() - kHeader >= block.size;
}

std::optional<TimeZone> ReadZone(std::string_view file) {
  FileBlock block;
  if (!ReadHeader(file, 4, block) || file[4] < '2') return std::nullopt;
  file.remove_prefix(kHeader + block.size);
  if (!ReadHeader(file, 8, block)) return std::nullopt;
  const std::string_view times = file.substr(kHeader);
  const std::string_view kinds = times.substr(block.changes * 8);
  const std::string_view types = kinds.substr(block.changes);
  const auto offsetOf = [&](std::size_t type) {
    return type < block.types ? static_cast<std::int32_t>(BigEndian(types.substr(6 * type, 4))) : 0;
  };
  std::vector<TimeZone::Change> changes;
  for (std::size_t i = 0; i < block.changes; ++i) {
    changes.push_back(
        {BigEndian(times.substr(8 * i, 8)) - kUnixToOurs, offsetOf(static_cast<unsigned char>(kinds[i]))});
    if (i != 0 && changes[i].moment < changes[i - 1].moment) return std::nullopt;
  }
  std::string_view footer = file.substr(kHeader + block.size);
  if (!footer.empty()) footer.remove_prefix(1);
  footer = footer.substr(0, footer.find('\n'));
  if (std::optional<TimeZone> later = RuleText(footer).Read()) {
    const std::int64_t last = changes.empty() ? INT64_MIN : changes.back().moment;
    for (const TimeZone::Change& change : later->Changes()) {
      if (change.moment > last) changes.push_back(change);
    }
  }
  return TimeZone(offsetOf(0), std::move(changes));
}

std::optional<TimeZone> ReadZoneFile(const std::string& path) {
  std::string content;
  if (!ReadWholeFile(path, kMostBytes, content)) return std::nullopt;
  return ReadZone(content);
}

}  // namespace

TimeZone::TimeZone(std::int32_t offset, std::vector<Change> all) : initial(offset), changes(std::move(all)) {}

std::optional<TimeZone> TimeZone::Named(std::string_view name) {
  constexpr std::size_t kMostName = 100;
  const auto isPlain = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '/' ||
           c == '_' || c == '-' || c == '+';
  };
  if (name.empty() || name.size() > kMostName || name.front() == '/' ||
      !std::all_of(name.begin(), name.end(), isPlain))
    return std::nullopt;
  const char* folder = std::getenv("TZDIR");
  return ReadZoneFile((folder != nullptr && *folder != '\0' ? std::string(folder) : "/usr/share/zoneinfo") +
                      '/' + std::string(name));
}

TimeZone TimeZone::OfProcess() {
  const char* variable = std::getenv("TZ");
  std::optional<TimeZone> zone;
  if (variable == nullptr) {
    zone = ReadZoneFile("/etc/localtime");
  } else {
    std::string_view text = variable;
    if (!text.empty() && text.front() == ':') text.remove_prefix(1);
    zone = !text.empty() && text.front() == '/' ? ReadZoneFile(std::string(text)) : Named(text);
    if (!zone) zone = RuleText(text).Read();
  }
  return zone.value_or(TimeZone());
}

std::int32_t TimeZone::OffsetAt(std::int64_t moment) const {
  const auto next =
      std::upper_bound(changes.begin(), changes.end(), moment,
                       [](std::int64_t at, const Change& change) { return at < change.moment; });
  return next == changes.begin() ? initial : std::prev(next)->offset;
}

std::int64_t TimeZone::MomentOf(std::int64_t wall) const {
  const std::int64_t before = wall - OffsetAt(wall - 2 * kDay);
  if (WallAt(before) == wall) return before;
  const std::int64_t after = wall - OffsetAt(wall + 2 * kDay);
  if (WallAt(after) == wall) return after;
  const std::int64_t between = wall - OffsetAt(wall);
  return WallAt(between) == wall ? between : before;
}

}  // namespace platform
