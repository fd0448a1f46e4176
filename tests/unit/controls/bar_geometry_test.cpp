// Where the buttons of bars and the tabs are and which of them a point hits.
#include <gtest/gtest.h>

#include "controls/tabs_geometry.h"
#include "controls/toolbar_geometry.h"
#include "shell/pane_bar_geometry.h"

namespace {

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
