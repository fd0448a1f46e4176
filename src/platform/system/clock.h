// The one source of local time in the program.
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

// A moment in local time.
struct LocalTime {
  int year;    // full, e.g. 2004
  int month;   // 1..12
  int day;     // 1..31
  int hour;    // 0..23
  int minute;  // 0..59
  int second;  // 0..59
};

// Now, as the machine says or as DAYBRIX_CLOCK=2004-03-14T10:43:12 makes it: that moment at the first call of
// the process, advancing with real time after it. A value of another form, or no date, is ignored with a line
// on standard error.
LocalTime Now();

// Reads a moment in exactly that form. False when it is in another form, or no date or time of day.
bool ParseClockText(std::string_view text, LocalTime& time);

// Milliseconds of a clock that never goes back. Its zero means nothing.
std::int64_t TickMs();

// Seconds since 1970 by the machine's clock, for seeding.
std::int64_t UnixSeconds();

}  // namespace platform
