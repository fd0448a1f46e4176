#include "core/store/record_sort.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace core {
namespace {

struct SortEntry {
  std::uint64_t key;  // of the field
  RecordKey record;

  bool operator<(const SortEntry& other) const {
    return key != other.key ? key < other.key : record.offset < other.record.offset;
  }
};

// Calls visit(i, field) for each of `records`, which are in file order, reading runs of slots. False
// when a run falls short; some records may have been visited.
template <typename Visit>
bool VisitRuns(const RecordFile& file, const RecordOrder& order, const std::vector<RecordKey>& records,
               const Visit& visit) {
  const std::size_t runSize = kSlotsPerRead * file.SlotSize();
  const std::unique_ptr<char[]> run(new (std::nothrow) char[runSize]);
  if (run == nullptr) return false;
  for (std::size_t first = 0; first < records.size();) {
    const std::int64_t start = records[first].offset;
    std::size_t last = first + 1;
    const std::int64_t lastStart = start + static_cast<std::int64_t>(runSize - file.SlotSize());
    while (last < records.size() && records[last].offset <= lastStart) ++last;
    const auto size = static_cast<std::size_t>(records[last - 1].offset - start) + file.SlotSize();
    if (!file.ReadBytes(run.get(), size, start)) return false;
    for (; first < last; ++first)
      visit(first, run.get() + (records[first].offset - start) + order.fieldOffset);
  }
  return true;
}

// The same, one field at a time. A field that cannot be read is visited as zeros and makes the result false.
template <typename Visit>
bool VisitEach(const RecordFile& file, const RecordOrder& order, const std::vector<RecordKey>& records,
               const Visit& visit) {
  const auto size = static_cast<std::size_t>(order.fieldSize);
  std::vector<char> field(size);
  bool all = true;
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (!file.ReadBytes(field.data(), size, std::int64_t{records[i].offset} + order.fieldOffset)) {
      std::fill(field.begin(), field.end(), '\0');
      all = false;
    }
    visit(i, field.data());
  }
  return all;
}

template <typename Visit>
bool VisitFields(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                 const std::vector<RecordKey>& records, const Visit& visit) {
  return (wholeFile && VisitRuns(file, order, records, visit)) || VisitEach(file, order, records, visit);
}

bool SortByKey(const RecordFile& file, const RecordOrder& order, bool wholeFile,
               std::vector<RecordKey>& records) {
  std::vector<SortEntry> keys(records.size());
  const bool read = VisitFields(file, order, wholeFile, records, [&](std::size_t i, const char* field) {
    keys[i] = {order.key(field), records[i]};
  });
  std::sort(keys.begin(), keys.end());
  std::transform(keys.begin(), keys.end(), records.begin(),
                 [](const SortEntry& entry) { return entry.record; });
  return read;
}

// A merge sort visits entries that exist whatever the comparison says; a quicksort need not.
bool SortByFields(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                  std::vector<RecordKey>& records) {
  const auto size = static_cast<std::size_t>(order.fieldSize);
  const std::unique_ptr<char[]> fields(new (std::nothrow) char[records.size() * size]);
  if (fields == nullptr) return false;
  const bool read = VisitFields(file, order, wholeFile, records, [&](std::size_t i, const char* field) {
    std::memcpy(fields.get() + i * size, field, size);
  });
  std::vector<std::uint32_t> sorted(records.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = static_cast<std::uint32_t>(i);
  std::stable_sort(sorted.begin(), sorted.end(), [&](std::uint32_t a, std::uint32_t b) {
    return order.compare(fields.get() + a * size, fields.get() + b * size, size) < 0;
  });
  const std::vector<RecordKey> inFileOrder = records;
  std::transform(sorted.begin(), sorted.end(), records.begin(),
                 [&](std::uint32_t i) { return inFileOrder[i]; });
  return read;
}

}  // namespace

bool SortRecords(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                 std::vector<RecordKey>& records) {
  if (order.compare == nullptr || order.fieldOffset < 0 || order.fieldSize <= 0 ||
      std::int64_t{order.fieldOffset} + order.fieldSize > file.SlotSize()) {
    return false;
  }
  const auto inFileOrder = [](const RecordKey& a, const RecordKey& b) { return a.offset < b.offset; };
  if (!std::is_sorted(records.begin(), records.end(), inFileOrder)) {
    std::sort(records.begin(), records.end(), inFileOrder);
  }
  return order.key != nullptr ? SortByKey(file, order, wholeFile, records)
                              : SortByFields(file, order, wholeFile, records);
}

}  // namespace core
