// Where controls draw their parts and which of them a point hits.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "controls/list_geometry.h"
#include "controls/slide_geometry.h"
#include "controls/tabs_geometry.h"
#include "controls/toolbar_geometry.h"
#include "pickers/month_grid_geometry.h"
#include "shell/pane_bar_geometry.h"

namespace {

constexpr int kMost = std::numeric_limits<int>::max();
const double kNaN = std::nan("");
const double kInfinity = std::numeric_limits<double>::infinity();

// 100 x 50 pixels, three columns, ten items, rows of 20 pixels: three rows of which the last is cut.
ListLayout ThreeColumns() {
  return {100, 50, 10.0 / 3, 3, 20, 0};
}

TEST(ListGeometry, CellsCoverTheWidthAndAreNumberedRowByRow) {
  const ListLayout layout = ThreeColumns();
  EXPECT_EQ(layout.Cells(), 10);
  EXPECT_EQ(layout.ShownRows(), 3);
  EXPECT_EQ(CellAt(layout, 0, 0).rect, (RECT{0, 0, 33, 20}));
  EXPECT_EQ(CellAt(layout, 0, 1).rect, (RECT{33, 0, 66, 20}));
  EXPECT_EQ(CellAt(layout, 2, 2).rect, (RECT{66, 40, 100, 60}));
  EXPECT_EQ(CellAt(layout, 2, 2).index, 8);
}

TEST(ListGeometry, DividingItemsByColumnsLosesNoCellAndAddsNone) {
  for (int columns = 1; columns <= 9; ++columns) {
    for (int items = 0; items <= 10000; items += 7) {
      ASSERT_EQ(CellCount(static_cast<double>(items) / columns, columns), items) << columns;
    }
  }
}

TEST(ListGeometry, EveryPixelHitsTheCellThatIsPaintedThere) {
  ListLayout layout = ThreeColumns();
  layout.firstRow = 1;
  for (int y = 0; y < layout.height; ++y) {
    for (int x = 0; x < layout.width; ++x) {
      const ListCell cell = HitCell(layout, {x, y});
      if (cell.index < 0) {
        ASSERT_GE(x, 33) << "the fourth row has one cell";
        ASSERT_GE(y, 40);
        continue;
      }
      const auto shown = FindCell(layout, cell.index);
      ASSERT_TRUE(shown);
      ASSERT_EQ(shown->rect, cell.rect);
      ASSERT_TRUE(Contains(cell.rect, {x, y}));
    }
  }
  EXPECT_EQ(HitCell(layout, {0, 0}).index, 3);
  for (const POINT& outside : {POINT{-1, 5}, POINT{5, -1}, POINT{100, 5}, POINT{5, 50}}) {
    EXPECT_EQ(HitCell(layout, outside).index, -1) << outside.x;
  }
  for (const int hidden : {2, 10, -1}) EXPECT_FALSE(FindCell(layout, hidden)) << hidden;
}

TEST(ListGeometry, DamagedSizesShowNothingAndEndAtOnce) {
  for (const double rows : {0.0, -5.0, kNaN, -kInfinity}) EXPECT_EQ(CellCount(rows, 3), 0);
  EXPECT_EQ(CellCount(kInfinity, 3), kMaxListCells);
  EXPECT_EQ(CellCount(2, 0), 2) << "at least one column";
  for (const int rowHeight : {0, -20}) {
    const ListLayout layout{100, 50, 10, 1, rowHeight, 0};
    EXPECT_EQ(layout.ShownRows(), 0);
    EXPECT_EQ(layout.VisibleRows(), 0);
    EXPECT_EQ(HitCell(layout, {5, 5}).index, -1);
    EXPECT_FALSE(FindCell(layout, 0));
    EXPECT_EQ(FirstRowFor(layout, 4), 4);
  }
  EXPECT_EQ(HitCell({0, 0, 10, 0, 20, 0}, {0, 0}).index, -1);
  EXPECT_EQ(HitCell({100, 50, 10, 1, 20, kMost}, {5, 5}).index, -1);
}

TEST(ListGeometry, ACellFarBelowComesToTheMiddleAndOneAtTheTopToTheTop) {
  const ListLayout layout{100, 105, 50, 1, 10, 30};  // ten whole rows
  EXPECT_EQ(FirstRowFor(layout, 9), 0);
  EXPECT_EQ(FirstRowFor(layout, 10), 5);
  EXPECT_EQ(FirstRowFor(layout, 49), 44);
  const ListLayout flat{100, 5, 50, 1, 10, 0};
  EXPECT_EQ(FirstRowFor(flat, 7), 7);
}

TEST(ListGeometry, TheFirstRowStaysBelowTheRowCountAndTheWheelMovesByOne) {
  const struct {
    double rows;
    int from;
    int row;
  } kRows[] = {{10, 5, 5}, {10, 10, 9}, {3.5, 3, 3}, {0, 4, 0}, {0.5, 4, 0}, {kNaN, 4, 0}, {10, -3, 0}};
  for (const auto& [rows, from, row] : kRows)
    EXPECT_EQ(UsableFirstRow(from, rows), row) << from << ' ' << rows;

  constexpr struct {
    int delta;
    int from;
    int rows;
    int row;  // less than a step up is a step down
  } kTurns[] = {{-120, 0, 3, 1}, {119, 0, 3, 1}, {-120, 2, 3, 2},
                {240, 2, 3, 1},  {120, 0, 3, 0}, {-120, 0, 0, 0}};
  for (const auto& [delta, from, rows, row] : kTurns)
    EXPECT_EQ(WheelFirstRow(delta, from, rows), row) << delta << ' ' << from;
}

TEST(ListGeometry, KeysMoveByOneCellByPagesAndToTheEnds) {
  constexpr std::optional<int> kNone;
  const struct {
    unsigned key;
    int from;
    int count;
    int page;  // a list without room still moves
    std::optional<int> to;
  } kMoves[] = {{VK_RIGHT, -1, 5, 3, 0},     {VK_RIGHT, 3, 5, 3, 4},     {VK_RIGHT, 4, 5, 3, kNone},
                {VK_RIGHT, -1, 0, 3, kNone}, {VK_DOWN, -1, 5, 3, 0},     {VK_DOWN, 3, 5, 3, 4},
                {VK_DOWN, 4, 5, 3, kNone},   {VK_DOWN, -1, 0, 3, kNone}, {VK_LEFT, 3, 5, 3, 2},
                {VK_LEFT, 0, 5, 3, kNone},   {VK_LEFT, -1, 5, 3, kNone}, {VK_UP, 3, 5, 3, 2},
                {VK_UP, 0, 5, 3, kNone},     {VK_UP, -1, 5, 3, kNone},   {VK_HOME, 3, 5, 3, 0},
                {VK_HOME, 0, 5, 3, kNone},   {VK_END, -1, 5, 3, 4},      {VK_END, 4, 5, 3, kNone},
                {VK_END, -1, 0, 3, kNone},   {VK_NEXT, 0, 9, 3, 3},      {VK_NEXT, 7, 9, 3, 8},
                {VK_NEXT, 8, 9, 3, kNone},   {VK_PRIOR, 8, 9, 3, 5},     {VK_PRIOR, 2, 9, 0, 1},
                {'A', 2, 5, 3, kNone}};
  for (const auto& move : kMoves) {
    EXPECT_EQ(KeySelection(move.key, move.from, move.count, move.page), move.to) << &move - kMoves;
  }
}

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
  // At 100 the thumb touches the bottom.
  constexpr std::pair<int, int> kPositions[] = {{0, 0},   {29, 0}, {30, 1},   {99, 3},
                                                {100, 4}, {-7, 0}, {kMost, 4}};
  for (const auto& [y, position] : kPositions) EXPECT_EQ(SlidePosition(y, 120, 5, 3), position) << y;
  for (int count = 2; count < 3000; ++count) ASSERT_EQ(SlidePosition(99, 99, count, 0), count - 1);
}

TEST(SlideGeometry, DamagedCountsAndSizesMoveNothing) {
  for (const double count : {0.0, 1.0, -4.0, kNaN}) {
    EXPECT_EQ(SlidePosition(50, 120, UsableCount(count), 0), 0);
    EXPECT_EQ(SlideStep(120, count), 0);
    EXPECT_EQ(SlideThumb(kBar, count, 0, std::nullopt).top, 0);
  }
  EXPECT_EQ(UsableCount(kNaN), 0);
  EXPECT_EQ(UsableCount(kInfinity), kMaxSlideCount);
  EXPECT_EQ(SlidePosition(5, 0, 9, 2), 8) << "no height: all of it is bottom";
  EXPECT_EQ(SlideThumb({0, 0, 20, 5}, 9, 8, std::nullopt).top, 0) << "no room for the thumb";
}

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
  // The others are of February and April, beyond the seventh column, and outside.
  constexpr std::pair<POINT, int> kDays[] = {{{15, 0}, 1},        {{29, 13}, 1},  {{14, 0}, 0},
                                             {{60, 60}, 0},       {{106, 20}, 0}, {{-1, 20}, 0},
                                             {{-32768, 32767}, 0}};
  for (const auto& [point, day] : kDays) EXPECT_EQ(DayAt(kMarch, point), day) << point.x;
  EXPECT_EQ(DayAt({6, 5, 2004, 3}, {0, 0}), 0);
  EXPECT_EQ(DayAt({-20, -20, 2004, 3}, {0, 0}), 0);
  EXPECT_EQ(DayAt({108, 85, 2004, 13}, {20, 5}), 0);
}

TEST(BarGeometry, ButtonsAreInTheMiddleOfTheHeightAndEndBeforeTheirEdge) {
  EXPECT_EQ(ToolButtonRect(25, 5), (RECT{265, 3, 315, 22}));
  EXPECT_EQ(ToolButtonRect(4, 1), (RECT{65, -7, 115, 12})) << "too low a bar";
  EXPECT_EQ(SectionRect(25, 1), (RECT{79, 4, 151, 20}));

  constexpr std::pair<POINT, int> kTools[] = {{{14, 10}, -1}, {{15, 3}, 0},   {{64, 21}, 0},
                                              {{65, 21}, 1},  {{64, 22}, -1}, {{115, 10}, -1}};
  for (const auto& [point, index] : kTools) EXPECT_EQ(ToolButtonAt(25, 2, point), index) << point.x;
  constexpr std::pair<POINT, int> kSections[] = {{{75, 19}, 0}, {{77, 10}, -1}, {{79, 4}, 1}, {{79, 20}, -1}};
  for (const auto& [point, index] : kSections) EXPECT_EQ(SectionAt(25, 2, point), index) << point.x;
}

TEST(TabsGeometry, TheSelectedTabIsHigherThanTheOthers) {
  constexpr RECT kStrip{0, 0, 200, 20};
  constexpr std::pair<POINT, int> kTabs[] = {
      {{4, 10}, -1}, {{5, 0}, 0}, {{45, 2}, -1}, {{45, 3}, 1}, {{125, 10}, -1}};
  for (const auto& [point, index] : kTabs) EXPECT_EQ(TabAt(kStrip, 40, 3, 0, point), index) << point.x;
}

}  // namespace
