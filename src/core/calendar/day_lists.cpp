#include "core/calendar/day_lists.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "core/calendar/day_table.h"

namespace core {
namespace {

// Of more records than a list holds those count that come first in the file.
void KeepFirst(std::vector<RecordKey>& records) {
  if (records.size() <= RecordList::kMostRecords) return;
  std::vector<std::int32_t> offsets(records.size());
  std::transform(records.begin(), records.end(), offsets.begin(),
                 [](const RecordKey& key) { return key.offset; });
  const auto beyond = offsets.begin() + static_cast<std::ptrdiff_t>(RecordList::kMostRecords);
  std::nth_element(offsets.begin(), beyond, offsets.end());
  std::erase_if(records, [&](const RecordKey& key) { return key.offset >= *beyond; });
}

}  // namespace

const std::vector<RecordKey>& DayLists::Keys() const {
  static const std::vector<RecordKey> none;
  return days.empty() ? none : days.front();
}

bool DayLists::Run(const RecordFile& file, const Date& first, int count, std::string_view category) {
  Clear();
  if (count < 1 || count > kMostDays) return false;
  firstDay = first;
  wantedDays = count;
  wantedCategory = category;
  const bool made = Rebuild(file);
  if (made && whole) stamp = counterAtRun;
  return made;
}

bool DayLists::Rebuild(const RecordFile& file) {
  whole = false;
  days.assign(static_cast<std::size_t>(wantedDays), {});
  const DayTable* table = DayTable::Of(file);
  if (table == nullptr) {
    static_cast<void>(file.ReadChangeCounter(counterAtRun));  // of this failure
    return false;
  }
  counterAtRun = table->Counter();
  days = table->Days(firstDay, wantedDays,
                     wantedCategory.empty() ? std::nullopt : std::optional<std::string_view>(wantedCategory));
  for (std::vector<RecordKey>& day : days) KeepFirst(day);
  whole = table->IsWhole();
  return true;
}

}  // namespace core
