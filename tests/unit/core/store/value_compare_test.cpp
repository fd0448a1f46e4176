#include "core/store/value_compare.h"

#include <cmath>
#include <cstring>
#include <string>

#include "core/date_time.h"
#include "gtest/gtest.h"

namespace core {
namespace {

template <typename T>
int Compare(ValueKind kind, T a, T b) {
  // One byte off any alignment, as fields lie in records.
  char bytes[2 * sizeof(T) + 1];
  std::memcpy(bytes + 1, &a, sizeof a);
  std::memcpy(bytes + 1 + sizeof a, &b, sizeof b);
  const int result = CompareValues(kind, bytes + 1, bytes + 1 + sizeof a, sizeof a);
  return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

int Text(const char* a, const char* b, std::size_t size) {
  const int result = CompareValues(ValueKind::kText, a, b, size);
  return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

TEST(ValueCompare, Numbers) {
  for (const ValueKind kind : {ValueKind::kInt32, ValueKind::kNumber}) {
    EXPECT_EQ(Compare<std::int32_t>(kind, INT32_MIN, INT32_MAX), -1);
    EXPECT_EQ(Compare<std::int32_t>(kind, 7, 7), 0);
  }
  EXPECT_EQ(Compare<std::int8_t>(ValueKind::kByte, -1, 1), -1);
  EXPECT_EQ(Compare<std::uint8_t>(ValueKind::kByte, 200, 1), -1);
  EXPECT_EQ(Compare<std::int64_t>(ValueKind::kInt64, -1, 0), -1);
  EXPECT_EQ(Compare<std::int64_t>(ValueKind::kInt64, 0x1'0000'0000, 0xFFFFFFFF), 1);
  EXPECT_EQ(Compare<std::int64_t>(ValueKind::kInt64, 0xFFFFFFFF, 1), 1);
  for (const ValueKind kind : {ValueKind::kReal, ValueKind::kStampReal, ValueKind::kReal8}) {
    EXPECT_EQ(Compare(kind, 1.5, 2.5), -1);
    EXPECT_EQ(Compare(kind, 2.5, 2.5), 0);
    EXPECT_EQ(Compare(kind, 3.5, 2.5), 1);
    EXPECT_EQ(Compare(kind, 3.5, std::nan("")), -1);
    EXPECT_EQ(Compare(kind, std::nan(""), 3.5), -1);
  }
}

TEST(ValueCompare, Texts) {
  EXPECT_EQ(Text("Calls", "cALLS", 30), 0);
  EXPECT_EQ(Text("abc", "abd", 2), 0);
  EXPECT_EQ(Text("ab", "abc", 30), -1);
  EXPECT_EQ(Text("b", "ABC", 30), 1);
  EXPECT_EQ(Text("Z", "[", 30), 1);  // folded to lower case, letters come after the marks between the cases
  EXPECT_EQ(Text("\xC4", "\xE4", 30), -1);  // letters beyond ASCII are not folded
  EXPECT_EQ(Text("x\0a", "x\0b", 3), 0);    // nothing after the terminator counts
}

TEST(ValueCompare, DatesAndTimes) {
  EXPECT_EQ(Compare<Date>(ValueKind::kDate, {31, 1, 2004}, {1, 2, 2004}), -1);
  EXPECT_EQ(Compare<Date>(ValueKind::kDate, {1, 1, 1999}, {1, 1, LastYear() + 1}), 0);
  EXPECT_EQ(Compare<Date>(ValueKind::kDate, {31, 12, 1999}, {1, 1, 2000}), -1);
  EXPECT_EQ(Compare<TimeOfDay>(ValueKind::kTime, {9, 2, 50, 1}, {9, 4, 1, 1}), 0);
  EXPECT_EQ(Compare<TimeOfDay>(ValueKind::kTime, {9, 0, 0, 2}, {11, 0, 0, 1}), 1);
  EXPECT_EQ(Compare<TimeOfDay>(ValueKind::kTime, {9, 58, 0, 1}, {0, 0, 0, 1}), -1);

  struct DateTime {
    Date date;
    TimeOfDay time;
  };
  static_assert(sizeof(DateTime) == kDateTimeSize);
  const DateTime early{{1, 3, 2004}, {9, 0, 0, 1}};
  const DateTime late{{1, 3, 2004}, {9, 0, 0, 2}};
  const DateTime next{{2, 3, 2004}, {0, 0, 0, 1}};
  EXPECT_LT(CompareDateTimes(&early, &late, sizeof early), 0);
  EXPECT_GT(CompareDateTimes(&next, &late, sizeof early), 0);
  EXPECT_EQ(CompareDateTimes(&next, &next, sizeof early), 0);
}

}  // namespace
}  // namespace core
