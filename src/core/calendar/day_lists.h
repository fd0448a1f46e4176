// The appointments of several days in a row, listed from the file's day table: what a month or a week shows.
// Each day's list is the one that a RecordQuery with OccursOnDate, a category and kDayOrder makes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/calendar/repeat_rule.h"
#include "core/date_time.h"
#include "core/store/record_list.h"

namespace core {

// As a RecordList it is the list of its first day.
class DayLists final : public RecordList {
 public:
  static constexpr int kMostDays = kMostOccurrenceDays;

  // Lists `count` days (1..kMostDays) from `first`, a date of the calendar, on; with a category only its
  // appointments, without regard to the case of ASCII letters. False, with every list empty, when there is no
  // memory, the file is closed or no calendar, its password allows nothing, or a number is out of range. A
  // part of the file that cannot be read is passed over (IsWhole).
  [[nodiscard]] bool Run(const RecordFile& file, const Date& first, int count,
                         std::string_view category = {});
  // Lists nothing, and has nothing to refresh.
  void Clear() { *this = DayLists(); }

  // The keys of a day's records, all-day ones first, then by start time; kMostRecords at most. `day` counts
  // from 0.
  const std::vector<RecordKey>& Day(int day) const { return days[static_cast<std::size_t>(day)]; }
  int DayCount() const { return static_cast<int>(days.size()); }
  const std::vector<RecordKey>& Keys() const override;

 private:
  bool CanRebuild() const override { return wantedDays != 0; }
  bool Rebuild(const RecordFile& file) override;

  std::vector<std::vector<RecordKey>> days;
  // What was asked for last.
  Date firstDay = kFirstDate;
  int wantedDays = 0;
  std::string wantedCategory;
};

}  // namespace core
