#include "core/record_query.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "core/record_sort.h"
#include "core/text_field.h"

namespace core {
namespace {

// Entries from which the file is read in runs of slots instead of field by field.
constexpr std::size_t kSortWholeFile = 100;

// Where the offsets end that records can have.
constexpr std::int64_t kOffsetsEnd = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;

bool SameFolded(const char* a, const char* b, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    if (FoldCase(static_cast<unsigned char>(a[i])) != FoldCase(static_cast<unsigned char>(b[i])))
      return false;
  }
  return true;
}

bool BeginsWith(std::string_view text, std::string_view part) {
  return part.size() <= text.size() && SameFolded(text.data(), part.data(), part.size());
}

bool Contains(std::string_view text, std::string_view part) {
  for (std::size_t at = 0; at + part.size() <= text.size(); ++at) {
    if (SameFolded(text.data() + at, part.data(), part.size())) return true;
  }
  return false;
}

}  // namespace

// ---- Conditions ----

bool RecordQuery::Add(const Condition& condition) {
  if (conditions.size() >= kMostConditions) return false;
  conditions.push_back(condition);
  return true;
}

bool RecordQuery::AddMatchAll() {
  return Add({});
}

bool RecordQuery::AddTextCondition(std::uint32_t fieldOffset, std::uint32_t fieldSize, ConditionOp op,
                                   std::string_view text, Connector connector) {
  const std::string_view cut = text.substr(0, kValueSize - 1);
  return AddValueCondition(ValueKind::kText, fieldOffset, fieldSize, op, cut.data(), cut.size(), connector);
}

bool RecordQuery::AddByteCondition(std::uint32_t fieldOffset, ConditionOp op, std::int8_t value,
                                   Connector connector) {
  return AddValueCondition(ValueKind::kByte, fieldOffset, 1, op, &value, sizeof value, connector);
}

bool RecordQuery::AddInt64Condition(std::uint32_t fieldOffset, ConditionOp op, std::uint32_t low,
                                    std::uint32_t high, Connector connector) {
  const std::uint64_t value = std::uint64_t{high} << 32 | low;
  return AddValueCondition(ValueKind::kInt64, fieldOffset, sizeof value, op, &value, sizeof value, connector);
}

bool RecordQuery::AddValueCondition(ValueKind kind, std::uint32_t fieldOffset, std::uint32_t fieldSize,
                                    ConditionOp op, const void* value, std::size_t valueSize,
                                    Connector connector) {
  Condition condition;
  condition.valueKind = kind;
  condition.fieldOffset = fieldOffset;
  condition.fieldSize = fieldSize;
  condition.op = op;
  condition.connector = connector;
  if (valueSize != 0 && valueSize < kValueSize) std::memcpy(condition.value, value, valueSize);
  return Add(condition);
}

bool RecordQuery::AddCallbackCondition(std::uint32_t fieldOffset, const void* value, std::size_t valueSize,
                                       ConditionCallback callback, Connector connector) {
  Condition condition;
  condition.fieldOffset = fieldOffset;
  condition.op = ConditionOp::kCallback;
  condition.connector = connector;
  condition.callback = callback;
  if (valueSize != 0 && valueSize < kValueSize) std::memcpy(condition.value, value, valueSize);
  return Add(condition);
}

void RecordQuery::Clear() {
  *this = RecordQuery();
}

void RecordQuery::ResetResults() {
  conditions.clear();
  offsets.clear();
}

bool RecordQuery::Holds(const Condition& condition, const char* slot, std::size_t slotSize) {
  const std::size_t width = ValueWidth(condition.valueKind, condition.fieldSize);
  if (condition.fieldOffset > slotSize || width > slotSize - condition.fieldOffset) return false;
  const char* field = slot + condition.fieldOffset;
  const bool isText = condition.valueKind == ValueKind::kText;
  const std::string_view text = isText ? ReadText(field, condition.fieldSize) : std::string_view();
  const std::string_view value = isText ? ReadText(condition.value, kValueSize) : std::string_view();
  const auto compare = [&] { return CompareValues(condition.valueKind, field, condition.value, width); };
  switch (condition.op) {
    case ConditionOp::kEqual:
      return compare() == 0;
    case ConditionOp::kNotEqual:
      return compare() != 0;
    case ConditionOp::kAtMost:
      return compare() <= 0;
    case ConditionOp::kAtLeast:
      return compare() >= 0;
    case ConditionOp::kGreater:
      return compare() > 0;
    case ConditionOp::kLess:
      return compare() < 0;
    case ConditionOp::kContains:
      return isText && Contains(text, value);
    case ConditionOp::kNotContains:
      return !isText || !Contains(text, value);
    case ConditionOp::kBeginsWith:
      return isText && BeginsWith(text, value);
    case ConditionOp::kNotBeginsWith:
      return !isText || !BeginsWith(text, value);
    case ConditionOp::kEndsWith:
      return isText && text.empty() && value.empty();
    case ConditionOp::kNotEndsWith:
      return !isText || !text.empty() || !value.empty();
    case ConditionOp::kCallback:
      return condition.callback(field, condition.value);
    case ConditionOp::kAll:
      return true;
  }
  return true;
}

bool RecordQuery::Matches(const char* slot, std::size_t slotSize) const {
  if (conditions.empty()) return false;
  if (conditions.front().op == ConditionOp::kAll) return true;
  bool holds = Holds(conditions.front(), slot, slotSize);
  if (conditions.size() == 1) return holds;
  for (std::size_t i = 1; i < conditions.size(); ++i) {
    const bool both =
        conditions[i - 1].connector == Connector::kAnd && conditions[i].connector == Connector::kAnd;
    if (both && !holds) return false;
    const bool next = Holds(conditions[i], slot, slotSize);
    if (both ? !next : !(holds || next)) return false;
    holds = next;
  }
  return true;
}

// ---- Building the list ----

bool RecordQuery::Run(const RecordFile& file) {
  offsets.clear();
  if (!file.IsOpen()) return false;
  counterAtRun = file.GetChangeCounter();
  const std::size_t slotSize = file.SlotSize();
  const std::size_t bytes = kSlotsPerRead * slotSize;
  // The last slot that was read is followed by zeros, so that a callback made for a larger kind of record
  // stays in the buffer.
  const std::unique_ptr<char[]> slots(new (std::nothrow) char[bytes + kLargestSlotSize]);
  if (slots == nullptr) return false;
  Access level = Access::kNone;
  bool levelKnown = false;
  const auto seesConfidential = [&] {
    if (!levelKnown) level = file.AccessLevel();
    levelKnown = true;
    return level == Access::kOwner;
  };
  for (std::int64_t offset = file.FirstSlotOffset();; offset += static_cast<std::int64_t>(bytes)) {
    const int count = file.ReadSlots(slots.get(), offset);
    if (count >= 0)
      std::memset(slots.get() + static_cast<std::size_t>(count) * slotSize, 0, kLargestSlotSize);
    for (int i = 0; i < count; ++i) {
      const char* slot = slots.get() + static_cast<std::size_t>(i) * slotSize;
      if (slot[offsetof(RecordHeader, inUse)] != 1) continue;
      if (slot[offsetof(RecordHeader, confidential)] == 1 && !seesConfidential()) continue;
      if (offsets.size() < kMostOffsets && Matches(slot, slotSize)) {
        offsets.push_back(static_cast<std::int32_t>(offset + (slot - slots.get())));
      }
    }
    // A read that falls short before the end came to a place that cannot be read: the slots behind it count.
    const std::int64_t next = offset + static_cast<std::int64_t>(bytes);
    if (count < static_cast<int>(kSlotsPerRead) && next >= std::min(file.SlotsEnd(), kOffsetsEnd))
      return true;
  }
}

bool RecordQuery::Sort(const RecordFile& file, const RecordOrder& order) {
  sortFile = &file;
  sortOrder = order;
  if (stamp == kNoStamp) {
    // What changed while the list was being made must not count as seen.
    const std::uint64_t counter = file.GetChangeCounter();
    stamp = counterAtRun == kNoStamp ? counter : counterAtRun;
  }
  return SortRecords(file, order, offsets.size() >= kSortWholeFile, offsets);
}

bool RecordQuery::Resort() {
  return sortFile != nullptr && SortRecords(*sortFile, sortOrder, true, offsets);
}

bool RecordQuery::RefreshIfChanged(const RecordFile& file, const std::function<void()>& beforeRebuild) {
  std::uint64_t counter = 0;
  if (sortFile == nullptr || !file.ReadChangeCounter(counter) || counter == stamp) return false;
  if (beforeRebuild) beforeRebuild();
  if (!Run(file)) return false;  // without the new stamp, so that the next look tries again
  sortFile = &file;
  Resort();
  stamp = counter;
  return true;
}

}  // namespace core
