#include "core/store/record_query.h"

#include <cstring>

#include "core/store/record_scan.h"
#include "core/store/record_sort.h"
#include "core/store/text_field.h"

namespace core {
namespace {

// Entries from which the file is read in runs of slots instead of field by field.
constexpr std::size_t kSortWholeFile = 100;

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

// Folds to lower case in a way that the compiler makes wide instructions of.
void Fold(std::string_view text, char* folded) {
  for (std::size_t i = 0; i < text.size(); ++i)
    folded[i] = static_cast<char>(FoldCase(static_cast<unsigned char>(text[i])));
}

bool Contains(std::string_view text, std::string_view part) {
  if (part.size() > text.size()) return false;
  char foldedText[kLargestSlotSize];
  char foldedPart[RecordQuery::kValueSize];
  Fold(text, foldedText);
  Fold(part, foldedPart);
  return memmem(foldedText, text.size(), foldedPart, part.size()) != nullptr;
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
  keys.clear();
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
  keys.clear();
  whole = false;
  if (!file.IsOpen()) return false;
  counterAtRun = file.GetChangeCounter();
  const std::size_t slotSize = file.SlotSize();
  const ScanResult scanned = ScanRecords(file, [&](const char* slot, std::int32_t offset) {
    if (keys.size() >= kMostRecords || !Matches(slot, slotSize)) return;
    keys.push_back({offset, reinterpret_cast<const RecordHeader*>(slot)->recordId});
  });
  whole = scanned == ScanResult::kAll;
  return scanned == ScanResult::kAll || scanned == ScanResult::kParts;
}

bool RecordQuery::Sort(const RecordFile& file, const RecordOrder& order) {
  sortFile = &file;
  sortOrder = order;
  const bool sorted = SortRecords(file, order, keys.size() >= kSortWholeFile, keys);
  whole = whole && sorted;
  // What changed while the list was being made must not count as seen.
  if (stamp == kNoStamp && whole) stamp = counterAtRun == kNoStamp ? file.GetChangeCounter() : counterAtRun;
  return sorted;
}

bool RecordQuery::Resort() {
  const bool sorted = sortFile != nullptr && SortRecords(*sortFile, sortOrder, true, keys);
  whole = whole && sorted;
  return sorted;
}

bool RecordQuery::Rebuild(const RecordFile& file) {
  sortFile = &file;
  if (!Run(file)) return false;
  Resort();
  return true;
}

bool ForEachRecord(const RecordFile& file, const std::function<bool(const void* slot)>& visit) {
  RecordQuery query;
  query.AddMatchAll();
  if (!query.Run(file)) return false;
  std::vector<char> slot(file.SlotSize());
  for (const RecordKey& key : query.Keys()) {
    if (!file.ReadSlot(slot.data(), key.offset)) std::fill(slot.begin(), slot.end(), '\0');
    if (!visit(slot.data())) return true;
  }
  return false;
}

}  // namespace core
