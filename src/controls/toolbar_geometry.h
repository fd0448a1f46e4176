// Where the buttons of the toolbar are: edge to edge.
#pragma once

#include "controls/bar_geometry.h"

constexpr BarLayout kToolBarLayout = {.firstLeft = 15, .step = 50, .button = {50, 19}};

constexpr RECT ToolButtonRect(int clientHeight, int index) {
  return BarButtonRect(kToolBarLayout, clientHeight, index);
}
// The button at a point, of `count`; -1 for none.
constexpr int ToolButtonAt(int clientHeight, int count, POINT point) {
  return BarButtonAt(kToolBarLayout, clientHeight, count, point);
}
