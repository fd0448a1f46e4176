// Typed three-way comparison of stored values: what queries test and sort record fields with. Values lie
// anywhere in a record, in no alignment; every answer is negative, 0 or positive.
#pragma once

#include <cstddef>
#include <cstdint>

namespace core {

// How a field's bytes are to be understood. The numbers are fixed; a record field's kind never changes.
enum class ValueKind : std::uint8_t {
  kNone = 0,       // no value; all compare equal
  kInt32 = 1,      // signed 32-bit integer
  kNumber = 2,     // the same, for counts
  kReal = 3,       // 64-bit floating point; what is not a number comes before everything
  kText = 4,       // text in a field of `size` bytes, ASCII letters without regard to case
  kDate = 5,       // Date, by day number; dates without one come first and are equal
  kTime = 6,       // TimeOfDay, by five-minute slot; times without one come first and are equal
  kStampReal = 7,  // 12 bytes, of which the first 8 are compared as kReal
  kReal8 = 8,      // as kReal
  kByte = 9,       // signed byte
  kInt64 = 10,     // signed 64-bit integer
};

// Bytes that CompareValues reads of a value of this kind in a field of `size` bytes.
std::size_t ValueWidth(ValueKind kind, std::size_t size);

// Compares the values at `a` and `b`. `size` is the width of a text field and ignored for every other kind.
int CompareValues(ValueKind kind, const void* a, const void* b, std::size_t size);

// Text of at most `size` bytes each, up to the first zero byte, ASCII letters folded to lower case.
int CompareText(const void* a, const void* b, std::size_t size);

// A Date followed by a TimeOfDay: by date and, only when the dates are equal, by time.
int CompareDateTimes(const void* a, const void* b, std::size_t size);
inline constexpr std::size_t kDateTimeSize = 28;

// An ASCII letter as lower case, any other byte as it is.
constexpr unsigned char FoldCase(unsigned char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

}  // namespace core
