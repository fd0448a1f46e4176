// Where the buttons of a bar are, in client pixels: one size, at one distance from each other, in the middle
// of the bar's height.
#pragma once

#include "platform/desktop/types.h"

struct BarLayout {
  int firstLeft;  // of the first button
  int step;       // from one button's left edge to the next one's
  SIZE button;
};

constexpr RECT BarButtonRect(const BarLayout& layout, int clientHeight, int index) {
  const int left = layout.firstLeft + layout.step * index;
  const int top = clientHeight / 2 - layout.button.cy / 2;
  return {left, top, left + layout.button.cx, top + layout.button.cy};
}

// The button at a point, of `count`; -1 for none.
constexpr int BarButtonAt(const BarLayout& layout, int clientHeight, int count, POINT point) {
  for (int index = 0; index < count; ++index) {
    if (Contains(BarButtonRect(layout, clientHeight, index), point)) return index;
  }
  return -1;
}
