#include "platform/system/clock.h"

#include <time.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace platform {
namespace {

std::int64_t ReadMs(clockid_t clock) {
  timespec now = {};
  clock_gettime(clock, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

// The moment that DAYBRIX_CLOCK gave to the first call, counted in seconds without any time zone, and the
// first call itself. The clock that measures from there also counts while the machine sleeps.
struct ClockStart {
  std::chrono::sys_seconds moment;
  std::int64_t startMs;
};

std::optional<ClockStart> StartFromEnvironment() {
  const char* text = std::getenv("DAYBRIX_CLOCK");
  if (text == nullptr || *text == '\0') return std::nullopt;
  LocalTime time = {};
  if (!ParseClockText(text, time)) {
    std::fprintf(stderr, "DAYBRIX_CLOCK=%s is not a moment like 2004-03-14T10:43:12; ignored.\n", text);
    return std::nullopt;
  }
  using namespace std::chrono;
  const year_month_day date(year(time.year), month(static_cast<unsigned>(time.month)),
                            day(static_cast<unsigned>(time.day)));
  return ClockStart{sys_days(date) + hours(time.hour) + minutes(time.minute) + seconds(time.second),
                    ReadMs(CLOCK_BOOTTIME)};
}

LocalTime Advanced(const ClockStart& start) {
  using namespace std::chrono;
  const sys_seconds now = start.moment + seconds((ReadMs(CLOCK_BOOTTIME) - start.startMs) / 1000);
  const sys_days today = floor<days>(now);
  const year_month_day date(today);
  const hh_mm_ss<seconds> time(now - today);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

LocalTime MachineTime() {
  tzset();  // a time zone that was changed while the program runs counts at once
  const time_t now = time(nullptr);
  tm parts = {};
  localtime_r(&now, &parts);
  const int second = parts.tm_sec < 60 ? parts.tm_sec : 59;  // a leap second
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, second};
}

}  // namespace

bool ParseClockText(std::string_view text, LocalTime& time) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00";
  if (text.size() != kForm.size()) return false;
  int fields[6] = {};
  int* field = fields;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if (kForm[i] != '0') {
      if (text[i] != kForm[i]) return false;
      ++field;
      continue;
    }
    if (text[i] < '0' || text[i] > '9') return false;
    *field = *field * 10 + (text[i] - '0');
  }
  using namespace std::chrono;
  const year_month_day date(year(fields[0]), month(static_cast<unsigned>(fields[1])),
                            day(static_cast<unsigned>(fields[2])));
  if (fields[0] == 0 || !date.ok() || fields[3] > 23 || fields[4] > 59 || fields[5] > 59) return false;
  time = {fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]};
  return true;
}

LocalTime Now() {
  static const std::optional<ClockStart> kStart = StartFromEnvironment();
  return kStart ? Advanced(*kStart) : MachineTime();
}

std::int64_t TickMs() {
  return ReadMs(CLOCK_MONOTONIC);
}

std::int64_t UnixSeconds() {
  return time(nullptr);
}

}  // namespace platform
