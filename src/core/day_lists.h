// The appointments of several days in a row, listed by one pass over the file: what a month or a week shows.
// Each day's list is the one that a RecordQuery with OccursOnDate, a category and kDayOrder makes.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/appointment.h"
#include "core/date_time.h"
#include "core/record_file.h"

namespace core {

// On which of `count` days (1..64) from `first` on the appointment falls, repeating or not: bit k stands for
// the k-th of them. A day beyond the calendar has none.
std::uint64_t OccurrenceDays(const Appointment& appointment, const Date& first, int count);

class DayLists {
 public:
  static constexpr int kMostDays = 64;

  // Lists `count` days (1..kMostDays) from `first`, a date of the calendar, on; with a category only its
  // appointments, without regard to the case of ASCII letters. False, with every list empty, when there is no
  // memory, the file is closed or no calendar, or a number is out of range.
  bool Run(const RecordFile& file, const Date& first, int count, std::string_view category = {});

  // The offsets of a day's records, all-day ones first, then by start time; 10000 at most. `day` counts from
  // 0.
  const std::vector<std::int32_t>& Day(int day) const { return days[static_cast<std::size_t>(day)]; }
  int Count() const { return static_cast<int>(days.size()); }

 private:
  std::vector<std::vector<std::int32_t>> days;
};

}  // namespace core
