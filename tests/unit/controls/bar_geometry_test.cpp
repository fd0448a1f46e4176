// Where toolbar buttons, tabs and section buttons are and which of them a point hits.
#include <gtest/gtest.h>

#include "controls/tabs_geometry.h"
#include "controls/toolbar_geometry.h"
#include "shell/pane_bar_geometry.h"

namespace {

TEST(ToolbarGeometry, ButtonsLieEdgeToEdgeInTheMiddleOfTheHeight) {
  EXPECT_EQ(ToolButtonRect(25, 0), (RECT{15, 3, 65, 22}));
  EXPECT_EQ(ToolButtonRect(25, 5), (RECT{265, 3, 315, 22}));
  EXPECT_EQ(ToolButtonRect(19, 0), (RECT{15, 0, 65, 19}));
  EXPECT_EQ(ToolButtonRect(4, 1), (RECT{65, -7, 115, 12})) << "too low a bar";

  EXPECT_EQ(ToolButtonAt(25, 2, {14, 10}), -1);
  EXPECT_EQ(ToolButtonAt(25, 2, {15, 3}), 0);
  EXPECT_EQ(ToolButtonAt(25, 2, {64, 21}), 0);
  EXPECT_EQ(ToolButtonAt(25, 2, {65, 21}), 1);
  EXPECT_EQ(ToolButtonAt(25, 2, {64, 22}), -1);
  EXPECT_EQ(ToolButtonAt(25, 2, {115, 10}), -1) << "behind the last one";
  EXPECT_EQ(ToolButtonAt(25, 0, {20, 10}), -1);
}

TEST(TabsGeometry, TheSelectedTabIsHigherThanTheOthers) {
  constexpr RECT kStrip{0, 0, 200, 20};
  EXPECT_EQ(TabRect(kStrip, 40, 0, true), (RECT{5, 0, 45, 20}));
  EXPECT_EQ(TabRect(kStrip, 40, 2, false), (RECT{85, 3, 125, 20}));

  EXPECT_EQ(TabAt(kStrip, 40, 3, 0, {4, 10}), -1);
  EXPECT_EQ(TabAt(kStrip, 40, 3, 0, {5, 0}), 0);
  EXPECT_EQ(TabAt(kStrip, 40, 3, 0, {45, 2}), -1) << "above an idle tab";
  EXPECT_EQ(TabAt(kStrip, 40, 3, 0, {45, 3}), 1);
  EXPECT_EQ(TabAt(kStrip, 40, 3, 0, {125, 10}), -1);
}

TEST(PaneBarGeometry, SectionsAreApartAndInTheMiddleOfTheHeight) {
  EXPECT_EQ(SectionRect(25, 0), (RECT{4, 4, 76, 20}));
  EXPECT_EQ(SectionRect(25, 1), (RECT{79, 4, 151, 20}));

  EXPECT_EQ(SectionAt(25, 2, {3, 10}), -1);
  EXPECT_EQ(SectionAt(25, 2, {75, 19}), 0);
  EXPECT_EQ(SectionAt(25, 2, {77, 10}), -1) << "in the gap";
  EXPECT_EQ(SectionAt(25, 2, {79, 4}), 1);
  EXPECT_EQ(SectionAt(25, 2, {79, 20}), -1);
  EXPECT_EQ(SectionAt(25, 1, {79, 10}), -1);
}

}  // namespace
