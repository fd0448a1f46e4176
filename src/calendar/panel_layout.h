// Where the parts of the calendar panel stand, as a function of its size.
#pragma once

#include <algorithm>

#include "platform/desktop/types.h"

struct PanelLayout {
  RECT categorySelector;
  RECT dayList;
  RECT notice;
  RECT miniCalendar;
  RECT recycleBin;
  RECT grid;  // the month or the week, in place of all but the notice
  RECT viewTabs;
};

constexpr int kNoticeHeight = 16;

// Which view the notice stands below, if there is one.
enum class NoticePlace { kNone, kUnderList, kUnderGrid };

// `width` and `height` are the panel's client size in pixels. A panel too small for its list gives an empty
// list. A notice takes the last pixels of what is above it, the list or the grid, where that has any to give.
constexpr PanelLayout LayOutPanel(int width, int height, NoticePlace noticePlace = NoticePlace::kNone) {
  const int listRight = std::max(width - 114, 6);
  const int listBottom = std::max(height - 25, 35);
  const int gridRight = std::max(width - 10, 10);
  const int gridBottom = std::max(height - 24, 10);
  PanelLayout layout = {.categorySelector = {0, 0, width, 26},
                        .dayList = {6, 35, listRight, listBottom},
                        .notice = {},
                        .miniCalendar = {width - 110, 35, width - 2, 165},
                        .recycleBin = {width - 103, height - 92, width - 3, height - 20},
                        .grid = {10, 10, gridRight, gridBottom},
                        .viewTabs = {10, height - 20, width, height}};
  if (noticePlace == NoticePlace::kNone) return layout;
  RECT& above = noticePlace == NoticePlace::kUnderList ? layout.dayList : layout.grid;
  layout.notice = above;
  layout.notice.top = above.bottom = std::max(above.bottom - kNoticeHeight, above.top);
  return layout;
}
