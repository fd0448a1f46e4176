#include "controls/list_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

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
  EXPECT_EQ(HitCell(layout, {-1, 5}).index, -1);
  EXPECT_EQ(HitCell(layout, {5, -1}).index, -1);
  EXPECT_EQ(HitCell(layout, {100, 5}).index, -1);
  EXPECT_EQ(HitCell(layout, {5, 50}).index, -1);
  EXPECT_FALSE(FindCell(layout, 2)) << "scrolled out";
  EXPECT_FALSE(FindCell(layout, 10));
  EXPECT_FALSE(FindCell(layout, -1));
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
  EXPECT_EQ(HitCell({100, 50, 10, 1, 20, std::numeric_limits<int>::max()}, {5, 5}).index, -1);
}

TEST(ListGeometry, ACellFarBelowComesToTheMiddleAndOneAtTheTopToTheTop) {
  const ListLayout layout{100, 105, 50, 1, 10, 30};  // ten whole rows
  EXPECT_EQ(FirstRowFor(layout, 9), 0);
  EXPECT_EQ(FirstRowFor(layout, 10), 5);
  EXPECT_EQ(FirstRowFor(layout, 49), 44);
  const ListLayout flat{100, 5, 50, 1, 10, 0};
  EXPECT_EQ(FirstRowFor(flat, 7), 7);
}

TEST(ListGeometry, TheFirstRowStaysBelowTheRowCount) {
  EXPECT_EQ(UsableFirstRow(5, 10), 5);
  EXPECT_EQ(UsableFirstRow(10, 10), 9);
  EXPECT_EQ(UsableFirstRow(3, 3.5), 3);
  EXPECT_EQ(UsableFirstRow(4, 0), 0);
  EXPECT_EQ(UsableFirstRow(4, 0.5), 0);
  EXPECT_EQ(UsableFirstRow(4, kNaN), 0);
  EXPECT_EQ(UsableFirstRow(-3, 10), 0);
}

TEST(ListGeometry, TheWheelMovesOneRowAndStopsAtTheEnds) {
  EXPECT_EQ(WheelFirstRow(-120, 0, 3), 1);
  EXPECT_EQ(WheelFirstRow(119, 0, 3), 1) << "less than a step up is a step down";
  EXPECT_EQ(WheelFirstRow(-120, 2, 3), 2);
  EXPECT_EQ(WheelFirstRow(240, 2, 3), 1);
  EXPECT_EQ(WheelFirstRow(120, 0, 3), 0);
  EXPECT_EQ(WheelFirstRow(-120, 0, 0), 0);
}

TEST(ListGeometry, KeysMoveByOneCellByPagesAndToTheEnds) {
  for (const unsigned key : {VK_RIGHT, VK_DOWN}) {
    EXPECT_EQ(KeySelection(key, -1, 5, 3), 0);
    EXPECT_EQ(KeySelection(key, 3, 5, 3), 4);
    EXPECT_EQ(KeySelection(key, 4, 5, 3), std::nullopt);
    EXPECT_EQ(KeySelection(key, -1, 0, 3), std::nullopt);
  }
  for (const unsigned key : {VK_LEFT, VK_UP}) {
    EXPECT_EQ(KeySelection(key, 3, 5, 3), 2);
    EXPECT_EQ(KeySelection(key, 0, 5, 3), std::nullopt);
    EXPECT_EQ(KeySelection(key, -1, 5, 3), std::nullopt);
  }
  EXPECT_EQ(KeySelection(VK_HOME, 3, 5, 3), 0);
  EXPECT_EQ(KeySelection(VK_HOME, 0, 5, 3), std::nullopt);
  EXPECT_EQ(KeySelection(VK_END, -1, 5, 3), 4);
  EXPECT_EQ(KeySelection(VK_END, 4, 5, 3), std::nullopt);
  EXPECT_EQ(KeySelection(VK_END, -1, 0, 3), std::nullopt);
  EXPECT_EQ(KeySelection(VK_NEXT, 0, 9, 3), 3);
  EXPECT_EQ(KeySelection(VK_NEXT, 7, 9, 3), 8);
  EXPECT_EQ(KeySelection(VK_NEXT, 8, 9, 3), std::nullopt);
  EXPECT_EQ(KeySelection(VK_PRIOR, 8, 9, 3), 5);
  EXPECT_EQ(KeySelection(VK_PRIOR, 2, 9, 0), 1) << "a list without room still moves";
  EXPECT_EQ(KeySelection('A', 2, 5, 3), std::nullopt);
}

}  // namespace
