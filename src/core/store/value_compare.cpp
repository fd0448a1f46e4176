#include "core/store/value_compare.h"

#include <cstring>

#include "core/date_time.h"

namespace core {
namespace {

template <typename T>
T Load(const void* at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

template <typename T>
int Order(T a, T b) {
  return a < b ? -1 : (a > b ? 1 : 0);
}

int CompareReals(const void* a, const void* b) {
  const auto first = Load<double>(a);
  const auto second = Load<double>(b);
  if (first > second) return 1;
  return first == second ? 0 : -1;  // also when either is not a number
}

int CompareDates(const void* a, const void* b) {
  return Order(DayIndex(Load<Date>(a)), DayIndex(Load<Date>(b)));
}

int CompareTimes(const void* a, const void* b) {
  return Order(TimeSlot(Load<TimeOfDay>(a)), TimeSlot(Load<TimeOfDay>(b)));
}

}  // namespace

std::size_t ValueWidth(ValueKind kind, std::size_t size) {
  switch (kind) {
    case ValueKind::kNone:
      return 0;
    case ValueKind::kInt32:
    case ValueKind::kNumber:
      return 4;
    case ValueKind::kReal:
    case ValueKind::kStampReal:
    case ValueKind::kReal8:
    case ValueKind::kInt64:
      return 8;
    case ValueKind::kText:
      return size;
    case ValueKind::kDate:
      return sizeof(Date);
    case ValueKind::kTime:
      return sizeof(TimeOfDay);
    case ValueKind::kByte:
      return 1;
  }
  return 0;
}

int CompareValues(ValueKind kind, const void* a, const void* b, std::size_t size) {
  switch (kind) {
    case ValueKind::kNone:
      return 0;
    case ValueKind::kInt32:
    case ValueKind::kNumber:
      return Order(Load<std::int32_t>(a), Load<std::int32_t>(b));
    case ValueKind::kReal:
    case ValueKind::kStampReal:
    case ValueKind::kReal8:
      return CompareReals(a, b);
    case ValueKind::kText:
      return CompareText(a, b, size);
    case ValueKind::kDate:
      return CompareDates(a, b);
    case ValueKind::kTime:
      return CompareTimes(a, b);
    case ValueKind::kByte:
      return Order(Load<std::int8_t>(a), Load<std::int8_t>(b));
    case ValueKind::kInt64:
      return Order(Load<std::int64_t>(a), Load<std::int64_t>(b));
  }
  return 0;
}

int CompareText(const void* a, const void* b, std::size_t size) {
  const auto* first = static_cast<const unsigned char*>(a);
  const auto* second = static_cast<const unsigned char*>(b);
  for (std::size_t i = 0; i < size; ++i) {
    const int difference = FoldCase(first[i]) - FoldCase(second[i]);
    if (difference != 0 || first[i] == 0) return difference;
  }
  return 0;
}

int CompareDateTimes(const void* a, const void* b, std::size_t /*size*/) {
  const int dates = CompareDates(a, b);
  if (dates != 0) return dates;
  return CompareTimes(static_cast<const char*>(a) + sizeof(Date), static_cast<const char*>(b) + sizeof(Date));
}

}  // namespace core
