// Lists of the records that satisfy a query, in a chosen order: add conditions, Run, Sort; then KeyAt and
// RecordFile::ReadRecord.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "core/store/record_list.h"
#include "core/store/record_sort.h"
#include "core/store/value_compare.h"

namespace core {

enum class ConditionOp : std::int32_t {
  kAll = 0,  // as the first condition: every record matches
  kEqual = 1,
  kNotEqual = 2,
  kAtMost = 3,
  kAtLeast = 4,
  kGreater = 5,
  kLess = 6,
  kContains = 7,  // 7 to 12 are for texts, without regard to the case of ASCII letters
  kNotContains = 8,
  kBeginsWith = 9,
  kNotBeginsWith = 10,
  kEndsWith = 11,  // true only when both the field and the value are empty
  kNotEndsWith = 12,
  kCallback = 13,
};

// How a condition goes with its neighbours: of each adjacent pair both must hold when both say kAnd, else one
// of them. The record matches when every pair passes, so (A or B) and C is A kOr, B kOr, C kAnd, C kAnd.
enum class Connector : std::int32_t { kAnd = 1, kOr = 2 };

// Tests a record: `field` points at the condition's field in the slot, `value` at the condition's value.
using ConditionCallback = bool (*)(const void* field, const void* value);

class RecordQuery final : public RecordList {
 public:
  static constexpr std::size_t kMostConditions = 50;
  static constexpr std::size_t kValueSize = 500;

  // ---- Conditions; each returns false when there are fifty already ----

  bool AddMatchAll();
  // `text` is cut to 499 bytes.
  bool AddTextCondition(std::uint32_t fieldOffset, std::uint32_t fieldSize, ConditionOp op,
                        std::string_view text, Connector connector);
  bool AddByteCondition(std::uint32_t fieldOffset, ConditionOp op, std::int8_t value, Connector connector);
  bool AddInt64Condition(std::uint32_t fieldOffset, ConditionOp op, std::uint32_t low, std::uint32_t high,
                         Connector connector);
  // Any kind: `value` holds ValueWidth(kind, fieldSize) bytes, fewer than 500.
  bool AddValueCondition(ValueKind kind, std::uint32_t fieldOffset, std::uint32_t fieldSize, ConditionOp op,
                         const void* value, std::size_t valueSize, Connector connector);
  // `value` is copied when it has fewer than 500 bytes, else the callback sees zeros. The callback may read
  // kLargestSlotSize bytes from the slot's start, whatever the file's slot size.
  bool AddCallbackCondition(std::uint32_t fieldOffset, const void* value, std::size_t valueSize,
                            ConditionCallback callback, Connector connector);

  // Whether a slot of `slotSize` bytes satisfies the conditions; without any none does. Callbacks may read
  // kLargestSlotSize bytes.
  bool Matches(const char* slot, std::size_t slotSize) const;

  // Forgets conditions, results, the sort and the stamp.
  void Clear();

  // Forgets conditions and results and keeps the sort and the stamp.
  void ResetResults();

  // ---- Building the list ----

  // Lists the matching records in file order, the first 10000 of them. Only live records count, and
  // confidential ones only at the Owner level. False when there is no memory, the file is closed or the
  // password allows nothing; a part of the file that cannot be read is passed over (see IsWhole).
  [[nodiscard]] bool Run(const RecordFile& file);

  // Orders the list; records with equal fields stay in file order. Takes the stamp if there is none. The file
  // and the order are remembered for Resort. False when a record could not be read (the others are sorted all
  // the same).
  bool Sort(const RecordFile& file, const RecordOrder& order);

  // Sorts again by the remembered order. False when there is none, or as Sort.
  bool Resort();

  const std::vector<RecordKey>& Keys() const override { return keys; }

  std::size_t ConditionCount() const { return conditions.size(); }

 private:
  struct Condition {
    ValueKind valueKind = ValueKind::kNone;
    std::uint32_t fieldOffset = 0;
    std::uint32_t fieldSize = 0;
    ConditionOp op = ConditionOp::kAll;
    Connector connector = Connector::kAnd;
    ConditionCallback callback = nullptr;
    char value[kValueSize] = {};
  };

  bool CanRebuild() const override { return sortFile != nullptr; }
  bool Rebuild(const RecordFile& file) override;
  bool Add(const Condition& condition);
  static bool Holds(const Condition& condition, const char* slot, std::size_t slotSize);

  std::vector<Condition> conditions;
  std::vector<RecordKey> keys;
  const RecordFile* sortFile = nullptr;
  RecordOrder sortOrder{-1, -1, nullptr, nullptr};
};

// Calls `visit` with each live record that the user may see, in file order, at most as many as a query lists;
// stops when it returns false. A record that cannot be read is visited as zero bytes. True when it was
// stopped early.
bool ForEachRecord(const RecordFile& file, const std::function<bool(const void* slot)>& visit);

}  // namespace core
