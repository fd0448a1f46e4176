#include "core/calendar/day_lists.h"

#include <algorithm>
#include <bit>

#include "core/calendar/repeat_rule.h"
#include "core/store/record_scan.h"
#include "core/store/value_compare.h"

namespace core {

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
  if (file.SlotSize() != sizeof(Appointment) || !file.ReadChangeCounter(counterAtRun)) return false;
  struct Entry {
    std::uint64_t key;
    RecordKey record;
  };
  std::vector<std::vector<Entry>> entries(days.size());
  const ScanResult scanned = ScanRecords(file, [&](const char* slot, std::int32_t offset) {
    const auto& appointment = *reinterpret_cast<const Appointment*>(slot);
    std::uint64_t falls = OccurrenceDays(appointment, firstDay, wantedDays);
    if (falls == 0) return;
    const auto& name = appointment.header.category;
    if (!wantedCategory.empty() &&
        CompareValues(ValueKind::kText, name, wantedCategory.c_str(), sizeof name) != 0) {
      return;
    }
    for (; falls != 0; falls &= falls - 1) {
      auto& day = entries[static_cast<std::size_t>(std::countr_zero(falls))];
      if (day.size() < kMostRecords) {
        day.push_back({kDayOrder.key(slot), {offset, appointment.header.recordId}});
      }
    }
  });
  if (scanned == ScanResult::kFailed) return false;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    std::stable_sort(entries[i].begin(), entries[i].end(),
                     [](const Entry& a, const Entry& b) { return a.key < b.key; });
    for (const Entry& entry : entries[i]) days[i].push_back(entry.record);
  }
  whole = scanned == ScanResult::kAll;
  return true;
}

}  // namespace core
