// Where the parts of the calendar panel stand, as a function of its size.
#pragma once

#include "platform/desktop/types.h"

struct PanelLayout {
  RECT categorySelector;
  RECT dayList;
  RECT miniCalendar;
};

// `width` and `height` are the panel's client size in pixels. A panel too small for its list gives an empty
// list.
constexpr PanelLayout LayOutPanel(int width, int height) {
  const int listRight = width - 114 > 6 ? width - 114 : 6;
  const int listBottom = height - 25 > 35 ? height - 25 : 35;
  return {
      {0, 0, width, 26},
      {6, 35, listRight, listBottom},
      {width - 110, 35, width - 2, 165},
  };
}
