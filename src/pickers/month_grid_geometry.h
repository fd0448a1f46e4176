// Where the days of a month are in a grid of seven weekdays by six weeks, and what the mouse hits. The grid
// fills a client area as far as whole cells go; pixels that are left over on the right and at the bottom
// belong to no day.
#pragma once

#include "core/date_time.h"
#include "platform/desktop/types.h"

constexpr int kGridColumns = 7;
constexpr int kGridRows = 6;

struct MonthGridLayout {
  int width = 0;  // of the client area
  int height = 0;
  int year = 0;
  int month = 0;  // 1..12

  constexpr int CellWidth() const { return width > 0 ? width / kGridColumns : 0; }
  constexpr int CellHeight() const { return height > 0 ? height / kGridRows : 0; }
};

// The cell of a day that the month has.
inline RECT DayCell(const MonthGridLayout& layout, int day) {
  const int place = day - 1 + core::Weekday(layout.year, layout.month, 1);
  const int left = place % kGridColumns * layout.CellWidth();
  const int top = place / kGridColumns * layout.CellHeight();
  return {left, top, left + layout.CellWidth(), top + layout.CellHeight()};
}

// The day at a client point; 0 when there is none.
inline int DayAt(const MonthGridLayout& layout, POINT point) {
  for (int day = 1; day <= core::DaysInMonth(layout.year, layout.month); ++day) {
    if (Contains(DayCell(layout, day), point)) return day;
  }
  return 0;
}
