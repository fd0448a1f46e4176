// Where the parts of the calendar panel stand, as a function of its size.
#pragma once

#include "platform/desktop/types.h"

struct PanelLayout {
  RECT categorySelector;
  RECT dayList;
  RECT notice;
  RECT miniCalendar;
};

constexpr int kNoticeHeight = 16;

// `width` and `height` are the panel's client size in pixels. A panel too small for its list gives an empty
// list. A notice takes the list's last pixels, where it has any to give.
constexpr PanelLayout LayOutPanel(int width, int height, bool withNotice = false) {
  const int listRight = width - 114 > 6 ? width - 114 : 6;
  const int listBottom = height - 25 > 35 ? height - 25 : 35;
  const int noticeTop =
      withNotice && listBottom - kNoticeHeight > 35 ? listBottom - kNoticeHeight : listBottom;
  return {
      {0, 0, width, 26},
      {6, 35, listRight, noticeTop},
      {6, noticeTop, listRight, listBottom},
      {width - 110, 35, width - 2, 165},
  };
}
