#include "core/record_sort.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace core {
namespace {

struct KeyedOffset {
  std::uint64_t key;
  std::int32_t offset;

  bool operator<(const KeyedOffset& other) const {
    return key != other.key ? key < other.key : offset < other.offset;
  }
};

// Calls visit(i, field) for each record of `offsets`, which are in file order, reading runs of slots. False
// when a run falls short; some records may have been visited.
template <typename Visit>
bool VisitRuns(const RecordFile& file, const RecordOrder& order, const std::vector<std::int32_t>& offsets,
               const Visit& visit) {
  const std::size_t runSize = kSlotsPerRead * file.SlotSize();
  const std::unique_ptr<char[]> run(new (std::nothrow) char[runSize]);
  if (run == nullptr) return false;
  for (std::size_t first = 0; first < offsets.size();) {
    const std::int64_t start = offsets[first];
    std::size_t last = first + 1;
    const std::int64_t lastStart = start + static_cast<std::int64_t>(runSize - file.SlotSize());
    while (last < offsets.size() && offsets[last] <= lastStart) ++last;
    const auto size = static_cast<std::size_t>(offsets[last - 1] - start) + file.SlotSize();
    if (!file.ReadBytes(run.get(), size, start)) return false;
    for (; first < last; ++first) visit(first, run.get() + (offsets[first] - start) + order.fieldOffset);
  }
  return true;
}

// The same, one field at a time. A field that cannot be read is visited as zeros and makes the result false.
template <typename Visit>
bool VisitEach(const RecordFile& file, const RecordOrder& order, const std::vector<std::int32_t>& offsets,
               const Visit& visit) {
  const auto size = static_cast<std::size_t>(order.fieldSize);
  std::vector<char> field(size);
  bool all = true;
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    if (!file.ReadBytes(field.data(), size, std::int64_t{offsets[i]} + order.fieldOffset)) {
      std::fill(field.begin(), field.end(), '\0');
      all = false;
    }
    visit(i, field.data());
  }
  return all;
}

template <typename Visit>
bool VisitFields(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                 const std::vector<std::int32_t>& offsets, const Visit& visit) {
  return (wholeFile && VisitRuns(file, order, offsets, visit)) || VisitEach(file, order, offsets, visit);
}

bool SortByKey(const RecordFile& file, const RecordOrder& order, bool wholeFile,
               std::vector<std::int32_t>& offsets) {
  std::vector<KeyedOffset> keys(offsets.size());
  const bool read = VisitFields(file, order, wholeFile, offsets, [&](std::size_t i, const char* field) {
    keys[i] = {order.key(field), offsets[i]};
  });
  std::sort(keys.begin(), keys.end());
  std::transform(keys.begin(), keys.end(), offsets.begin(),
                 [](const KeyedOffset& entry) { return entry.offset; });
  return read;
}

// A merge sort visits entries that exist whatever the comparison says; a quicksort need not.
bool SortByFields(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                  std::vector<std::int32_t>& offsets) {
  const auto size = static_cast<std::size_t>(order.fieldSize);
  const std::unique_ptr<char[]> fields(new (std::nothrow) char[offsets.size() * size]);
  if (fields == nullptr) return false;
  const bool read = VisitFields(file, order, wholeFile, offsets, [&](std::size_t i, const char* field) {
    std::memcpy(fields.get() + i * size, field, size);
  });
  std::vector<std::uint32_t> sorted(offsets.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = static_cast<std::uint32_t>(i);
  std::stable_sort(sorted.begin(), sorted.end(), [&](std::uint32_t a, std::uint32_t b) {
    return order.compare(fields.get() + a * size, fields.get() + b * size, size) < 0;
  });
  const std::vector<std::int32_t> inFileOrder = offsets;
  std::transform(sorted.begin(), sorted.end(), offsets.begin(),
                 [&](std::uint32_t i) { return inFileOrder[i]; });
  return read;
}

}  // namespace

bool SortRecords(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                 std::vector<std::int32_t>& offsets) {
  if (order.compare == nullptr || order.fieldOffset < 0 || order.fieldSize <= 0 ||
      std::int64_t{order.fieldOffset} + order.fieldSize > file.SlotSize()) {
    return false;
  }
  if (!std::is_sorted(offsets.begin(), offsets.end())) std::sort(offsets.begin(), offsets.end());
  return order.key != nullptr ? SortByKey(file, order, wholeFile, offsets)
                              : SortByFields(file, order, wholeFile, offsets);
}

}  // namespace core
