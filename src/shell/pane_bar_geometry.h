// Where the section buttons of the pane bar are, in client pixels: one size, a little apart, in the middle of
// the height.
#pragma once

#include "platform/desktop/types.h"

constexpr int kSectionWidth = 72;
constexpr int kSectionHeight = 16;
constexpr int kSectionStep = 75;
constexpr int kFirstSectionLeft = 4;

constexpr RECT SectionRect(int clientHeight, int index) {
  const int left = kFirstSectionLeft + kSectionStep * index;
  const int top = clientHeight / 2 - kSectionHeight / 2;
  return {left, top, left + kSectionWidth, top + kSectionHeight};
}

// The section at a point, of `count`; -1 for none.
constexpr int SectionAt(int clientHeight, int count, POINT point) {
  for (int index = 0; index < count; ++index) {
    if (Contains(SectionRect(clientHeight, index), point)) return index;
  }
  return -1;
}
