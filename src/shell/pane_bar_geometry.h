// Where the section buttons of the pane bar are: a little apart.
#pragma once

#include "controls/bar_geometry.h"

constexpr BarLayout kPaneBarLayout = {.firstLeft = 4, .step = 75, .button = {72, 16}};

constexpr RECT SectionRect(int clientHeight, int index) {
  return BarButtonRect(kPaneBarLayout, clientHeight, index);
}
// The section at a point, of `count`; -1 for none.
constexpr int SectionAt(int clientHeight, int count, POINT point) {
  return BarButtonAt(kPaneBarLayout, clientHeight, count, point);
}
