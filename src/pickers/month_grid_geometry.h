// Where the days of a month are in a grid of seven weekdays by six weeks, and what mouse and keys pick. The
// grid fills a client area as far as whole cells go; pixels that are left over on the right and at the bottom
// belong to no day.
#pragma once

#include <optional>

#include "core/date_time.h"
#include "platform/desktop/messages.h"
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

// The date that a key moves to from a date of the calendar: the same one at its edges, nothing for a key that
// means no date.
inline std::optional<core::Date> KeyDate(unsigned key, core::Date date) {
  const int day = core::DayIndex(date);
  const auto step = [&](int days) { core::DateFromIndex(day + days, date); };
  switch (key) {
    case VK_LEFT:
      step(-1);
      break;
    case VK_RIGHT:
      step(1);
      break;
    case VK_UP:
      step(-kGridColumns);
      break;
    case VK_DOWN:
      step(kGridColumns);
      break;
    case VK_HOME:
      date.day = 1;
      break;
    case VK_END:
      date.day = core::DaysInMonth(date.year, date.month);
      break;
    case VK_PRIOR:
      core::PreviousMonth(date);
      break;
    case VK_NEXT:
      core::NextMonth(date);
      break;
    case VK_SPACE:
      break;
    default:
      return std::nullopt;
  }
  return date;
}
