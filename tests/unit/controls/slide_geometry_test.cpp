#include "controls/slide_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr RECT kBar{0, 0, 20, 120};

TEST(SlideGeometry, TheThumbGoesFromTopToBottomAndStaysInTheBar) {
  EXPECT_EQ(SlideThumb(kBar, 5, 0, std::nullopt), (RECT{0, 0, 20, 20}));
  EXPECT_EQ(SlideThumb(kBar, 5, 1, std::nullopt), (RECT{0, 30, 20, 50}));
  EXPECT_EQ(SlideThumb(kBar, 5, 4, std::nullopt), (RECT{0, 100, 20, 120}));
  EXPECT_EQ(SlideThumb(kBar, 5, 0, 73), (RECT{0, 73, 20, 93})) << "dragged";
  EXPECT_EQ(SlideThumb(kBar, 5, 0, 120), (RECT{0, 100, 20, 120}));
  EXPECT_EQ(SlideThumb(kBar, 1, 0, std::nullopt).top, 0);
}

TEST(SlideGeometry, TheMouseCallsThePositionItPointsAt) {
  EXPECT_EQ(SlidePosition(0, 120, 5, 3), 0);
  EXPECT_EQ(SlidePosition(29, 120, 5, 3), 0);
  EXPECT_EQ(SlidePosition(30, 120, 5, 3), 1);
  EXPECT_EQ(SlidePosition(99, 120, 5, 0), 3);
  EXPECT_EQ(SlidePosition(100, 120, 5, 0), 4) << "the thumb touches the bottom";
  EXPECT_EQ(SlidePosition(-7, 120, 5, 3), 0);
  EXPECT_EQ(SlidePosition(std::numeric_limits<int>::max(), 120, 5, 0), 4);
}

TEST(SlideGeometry, TheLastPositionIsReachedWhateverTheCount) {
  for (int count = 2; count < 3000; ++count) ASSERT_EQ(SlidePosition(99, 99, count, 0), count - 1);
}

TEST(SlideGeometry, DamagedCountsAndSizesMoveNothing) {
  for (const double count : {0.0, 1.0, -4.0, std::nan("")}) {
    EXPECT_EQ(SlidePosition(50, 120, UsableCount(count), 0), 0);
    EXPECT_EQ(SlideStep(120, count), 0);
    EXPECT_EQ(SlideThumb(kBar, count, 0, std::nullopt).top, 0);
  }
  EXPECT_EQ(UsableCount(std::nan("")), 0);
  EXPECT_EQ(UsableCount(std::numeric_limits<double>::infinity()), kMaxSlideCount);
  EXPECT_EQ(SlidePosition(5, 0, 9, 2), 8) << "no height: all of it is bottom";
  EXPECT_EQ(SlideThumb({0, 0, 20, 5}, 9, 8, std::nullopt).top, 0) << "no room for the thumb";
}

}  // namespace
