#include "pickers/month_grid_geometry.h"

#include <gtest/gtest.h>

namespace {

// March 2004 began on a Monday and has 31 days. 108 x 85 pixels: cells of 15 x 14.
constexpr MonthGridLayout kMarch{108, 85, 2004, 3};

TEST(MonthGridGeometry, DaysStandUnderTheirWeekdays) {
  EXPECT_EQ(DayCell(kMarch, 1), (RECT{15, 0, 30, 14}));
  EXPECT_EQ(DayCell(kMarch, 7), (RECT{0, 14, 15, 28})) << "a Sunday begins a row";
  EXPECT_EQ(DayCell(kMarch, 31), (RECT{45, 56, 60, 70}));
  EXPECT_EQ(DayCell({70, 60, 2004, 5}, 31), (RECT{10, 50, 20, 60}))
      << "six rows: May 2004 began on a Saturday";
}

TEST(MonthGridGeometry, OnlyDaysOfTheMonthAreHit) {
  EXPECT_EQ(DayAt(kMarch, {15, 0}), 1);
  EXPECT_EQ(DayAt(kMarch, {29, 13}), 1);
  EXPECT_EQ(DayAt(kMarch, {14, 0}), 0) << "the last of February";
  EXPECT_EQ(DayAt(kMarch, {60, 60}), 0) << "the first of April";
  EXPECT_EQ(DayAt(kMarch, {106, 20}), 0) << "pixels beyond the seventh column";
  EXPECT_EQ(DayAt(kMarch, {-1, 20}), 0);
  EXPECT_EQ(DayAt(kMarch, {-32768, 32767}), 0);
}

TEST(MonthGridGeometry, NoRoomAndNoMonthHaveNoDays) {
  EXPECT_EQ(DayAt({6, 5, 2004, 3}, {0, 0}), 0);
  EXPECT_EQ(DayAt({-20, -20, 2004, 3}, {0, 0}), 0);
  EXPECT_EQ(DayAt({108, 85, 2004, 13}, {20, 5}), 0);
}

}  // namespace
