// Where the tabs of a tab strip are, in client pixels: one width, edge to edge; those that are not selected
// start a little lower.
#pragma once

#include "platform/desktop/types.h"

constexpr int kFirstTabLeft = 5;
constexpr int kIdleTabDrop = 3;

constexpr RECT TabRect(const RECT& client, int tabWidth, int index, bool selected) {
  const int left = client.left + kFirstTabLeft + index * tabWidth;
  return {left, client.top + (selected ? 0 : kIdleTabDrop), left + tabWidth, client.bottom};
}

// The tab at a point, of `count`; -1 for none.
constexpr int TabAt(const RECT& client, int tabWidth, int count, int selectedIndex, POINT point) {
  for (int index = 0; index < count; ++index) {
    if (Contains(TabRect(client, tabWidth, index, index == selectedIndex), point)) return index;
  }
  return -1;
}
