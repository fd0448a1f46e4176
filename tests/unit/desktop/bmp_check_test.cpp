// Bitmap files that contradict themselves, and pixels that are stored as runs.
#include "platform/desktop/bmp_check.h"

#include <gtest/gtest.h>

#include "platform/desktop/bmp_runs.h"
#include "support/bmp_bytes.h"

namespace tests {
namespace {

bool IsTaken(std::string_view bytes) {
  std::string room;
  return PlainBmp(bytes, room).has_value();
}

TEST(BmpCheck, WhatContradictsItselfIsNone) {
  const std::string good = MakeBmp({7, 5, 24, 40});
  ASSERT_TRUE(IsTaken(good));
  for (std::size_t size = 0; size < good.size(); ++size) {
    EXPECT_FALSE(IsTaken(std::string_view(good).substr(0, size))) << size;
  }
  struct Change {
    std::size_t at;
    std::uint32_t number;
    std::size_t size;
  };
  constexpr Change kChanges[] = {
      {0, 'X', 1},         {10, 53, 4},         {10, 0xFFFFFFFF, 4}, {14, 52, 4},   {14, 0, 4},
      {14, 0x80000028, 4}, {18, 0, 4},          {18, 9, 4},          {18, 2049, 4}, {18, 0xFFFFFFFF, 4},
      {18, 0x7FFFFFFF, 4}, {22, 0, 4},          {22, 6, 4},          {22, 2049, 4}, {22, 0x80000000, 4},
      {22, 0xFFFFEFFF, 4}, {22, 0xFFFFFFFA, 4}, {26, 0, 2},          {26, 2, 2},    {28, 0, 2},
      {28, 3, 2},          {28, 48, 2},         {28, 0xFFFF, 2},     {30, 1, 4},    {30, 2, 4},
      {30, 3, 4},          {30, 4, 4},          {30, 0xFFFFFFFF, 4}, {28, 32, 2},
  };
  for (const Change& change : kChanges) {
    std::string bad = good;
    Put(bad, change.at, change.number, change.size);
    EXPECT_FALSE(IsTaken(bad)) << change.at << " " << change.number;
  }
  std::string palette = MakeBmp({7, 5, 8, 40});
  Put(palette, 46, 257, 4);
  EXPECT_FALSE(IsTaken(palette));
  EXPECT_TRUE(IsTaken(MakeBmp({2048, 2048, 1, 40})));
}

TEST(BmpCheck, RunsAreReadWhereTheyFit) {
  using namespace std::string_literals;
  const struct {
    unsigned depth;
    std::string runs;
    const char* rows;  // the colours, upper row first; empty: no picture
  } cases[] = {
      {8, "\4\1\0\0\4\2\0\1"s, "22221111"},
      {8, "\0\3\1\2\3\0\1\4\0\1"s, "00001234"},  // three one by one and a byte to fill up
      {8, "\0\2\1\1\3\5\0\1"s, "05550000"},      // moved right and up
      {4, "\4\x12\0\0\1\x30\0\1"s, "30001212"},
      {4, "\0\3\x12\x30\1\x40\0\1"s, "00001234"},
      {4, "\1\x10\0\3\x23\x40\0\1left over"s, "00001234"},
      {8, ""s, ""},
      {8, "\4\1"s, ""},
      {8, "\4\1\0"s, ""},
      {8, "\5\1\0\1"s, ""},
      {8, "\4\1\1\1\0\1"s, ""},
      {8, "\0\5\1\2\3\4\5\0\0\1"s, ""},
      {8, "\0\3\1\2\3"s, ""},
      {8, "\0\2\5\0\0\1"s, ""},
      {8, "\0\2\0\3\0\1"s, ""},
      {8, "\0\2\0"s, ""},
      {8, "\0\0\0\0\1\1\0\1"s, ""},
      {4, "\0\5\x12\x34\x50\0\0\1"s, ""},
  };
  for (const auto& [depth, runs, rows] : cases) {
    SCOPED_TRACE(testing::Message() << depth << " " << testing::PrintToString(runs));
    const auto expanded = ExpandRuns(runs, 4, 2, static_cast<int>(depth));
    std::string read;
    for (const std::size_t row : {std::size_t{4}, std::size_t{0}}) {
      for (std::size_t pixel = 0; expanded && pixel < 4; ++pixel) {
        const auto byte = static_cast<unsigned char>(expanded->at(row + pixel * depth / 8));
        read += static_cast<char>('0' + (depth == 8 ? byte : byte >> (pixel % 2 == 0 ? 4 : 0) & 15));
      }
    }
    EXPECT_EQ(read, rows);
  }
  std::string bytes = MakeBmp({4, 2, 8, 40});
  bytes.resize(bytes.size() - 8);
  Put(bytes, 30, 1, 4);
  bytes += "\4\1\0\1"s;
  ASSERT_TRUE(IsTaken(bytes));
  Put(bytes, 34, 5, 4);  // more runs than there are
  EXPECT_FALSE(IsTaken(bytes));
  Put(bytes, 34, 2, 4);  // fewer
  EXPECT_FALSE(IsTaken(bytes));
  Put(bytes, 34, 4, 4);
  Put(bytes, 22, static_cast<std::uint32_t>(-2), 4);  // runs go upwards
  EXPECT_FALSE(IsTaken(bytes));
}

}  // namespace
}  // namespace tests
