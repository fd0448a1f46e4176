// What stands in the cells of a month or a week: for each day a line of text for each of its appointments.
// One pass over the file lists all days, and each record is read once, however many days it falls on. What
// was read stays until the list is made anew, so that painting reads nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/calendar/day_lists.h"

class DayCells {
 public:
  // Days without lines where `count` is 0 or the list cannot be made; IsWhole tells.
  void List(const core::RecordFile& file, const core::Date& first, int count, std::string_view category);
  // Lists the same days anew when the file was changed since. True when something else may be there now.
  bool Refresh(const core::RecordFile& file);
  void Clear();

  // Reads what the first lines of each day need and was not read yet.
  void ReadLines(const core::RecordFile& file, int linesPerDay);
  // The lines of a day that ReadLines made, its all-day appointments first, then by time. A record that
  // cannot be read, or that the file's password does not show any more, has none.
  const std::vector<const std::string*>& Lines(int day) const;
  // All lines of a day: reads what is missing.
  std::vector<std::string> AllLines(const core::RecordFile& file, int day);
  // How many appointments were listed for a day.
  std::size_t Listed(int day) const { return day < lists.DayCount() ? lists.Day(day).size() : 0; }

  bool IsWhole() const { return lists.IsWhole(); }
  std::uint64_t Stamp() const { return lists.Stamp(); }

 private:
  const std::string* Line(const core::RecordFile& file, const core::RecordKey& key);

  core::DayLists lists;
  // By offset; nothing for a record that cannot be read.
  std::unordered_map<std::int32_t, std::optional<std::string>> texts;
  std::vector<std::vector<const std::string*>> shown;  // into `texts`
  core::Access level = core::Access::kNone;            // while lines are read
};
