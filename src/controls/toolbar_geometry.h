// Where the buttons of the toolbar are, in client pixels: one size, edge to edge, in the middle of the
// height.
#pragma once

#include "platform/desktop/types.h"

constexpr int kToolButtonWidth = 50;
constexpr int kToolButtonHeight = 19;
constexpr int kFirstToolButtonLeft = 15;

constexpr RECT ToolButtonRect(int clientHeight, int index) {
  const int left = kFirstToolButtonLeft + kToolButtonWidth * index;
  const int top = clientHeight / 2 - kToolButtonHeight / 2;
  return {left, top, left + kToolButtonWidth, top + kToolButtonHeight};
}

// The button at a point, of `count`; -1 for none.
constexpr int ToolButtonAt(int clientHeight, int count, POINT point) {
  for (int index = 0; index < count; ++index) {
    if (Contains(ToolButtonRect(clientHeight, index), point)) return index;
  }
  return -1;
}
