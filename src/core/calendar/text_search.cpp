#include "core/calendar/text_search.h"

#include <algorithm>

#include "core/calendar/appointment.h"
#include "core/store/record_scan.h"

namespace core {

bool TextSearch::Run(const RecordFile& file, std::string_view text, std::string_view category) {
  Clear();
  AddTextConditions(conditions, text);
  if (!category.empty()) AddCategoryConditions(conditions, category);
  const bool made = Rebuild(file);
  if (made && whole) stamp = counterAtRun;
  return made;
}

// The field that the list is ordered by is at hand when a record is found: sorting reads nothing.
bool TextSearch::Rebuild(const RecordFile& file) {
  keys.clear();
  whole = false;
  if (file.SlotSize() != sizeof(Appointment) || !file.ReadChangeCounter(counterAtRun)) return false;
  struct Entry {
    std::uint64_t order;
    RecordKey record;
  };
  std::vector<Entry> found;
  const ScanResult scanned = ScanRecords(file, [&](const char* slot, std::int32_t offset) {
    if (found.size() >= kMostRecords || !conditions.Matches(slot, sizeof(Appointment))) return;
    found.push_back({kDateTimeOrder.key(slot + kDateTimeOrder.fieldOffset),
                     {offset, reinterpret_cast<const RecordHeader*>(slot)->recordId}});
  });
  if (scanned == ScanResult::kFailed) return false;
  std::stable_sort(found.begin(), found.end(),
                   [](const Entry& a, const Entry& b) { return a.order < b.order; });
  for (const Entry& entry : found) keys.push_back(entry.record);
  whole = scanned == ScanResult::kAll;
  return true;
}

void AddTextConditions(RecordQuery& query, std::string_view text) {
  query.AddTextCondition(offsetof(Appointment, subject), sizeof(Appointment::subject), ConditionOp::kContains,
                         text, Connector::kOr);
  query.AddTextCondition(offsetof(Appointment, notes), sizeof(Appointment::notes), ConditionOp::kContains,
                         text, Connector::kOr);
}

void AddCategoryConditions(RecordQuery& query, std::string_view category) {
  // Of two neighbours that are not both kAnd one is enough, so the category stands there twice.
  for (int i = 0; i < 2; ++i) {
    query.AddTextCondition(offsetof(RecordHeader, category), sizeof(RecordHeader::category),
                           ConditionOp::kEqual, category, Connector::kAnd);
  }
}

}  // namespace core
