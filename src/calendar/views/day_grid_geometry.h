// Where things are in a grid of days, which a month (six weeks of seven days, Sunday first) and a week
// (Monday to Thursday over Friday to Sunday) share. All in client pixels.
//
// The cells are whole pixels wide and high; what is left over on the right and at the bottom belongs to no
// day. The lines of the grid divide the whole area and may lie a few pixels beside the cells.
#pragma once

#include <algorithm>
#include <array>

#include "core/date_time.h"
#include "platform/desktop/types.h"

enum class GridShape { kMonth, kWeek };

// The days in a grid, one after the other, and the column in which the first one stands.
struct GridDays {
  core::Date first = core::kFirstDate;
  int count = 0;  // 0 for a week that begins before the calendar does
  int column = 0;
};

// Of the month or the week that a date of the calendar is in.
inline GridDays DaysAround(GridShape shape, const core::Date& date) {
  GridDays days;
  if (shape == GridShape::kMonth) {
    days.first = {1, date.month, date.year};
    days.count = core::DaysInMonth(date.year, date.month);
    days.column = core::Weekday(days.first);
    return days;
  }
  constexpr int kWeek = 7;
  const int index = core::DayIndex(date);
  const int sinceMonday = (core::Weekday(date) + kWeek - 1) % kWeek;
  if (!core::DateFromIndex(index - sinceMonday, days.first)) return days;
  days.count = std::min(kWeek, core::DayIndex(core::LastDate()) - core::DayIndex(days.first) + 1);
  return days;
}

// The position of a date among the days; -1 for one that is not among them.
inline int DayOf(const GridDays& days, const core::Date& date) {
  const int day = core::DayIndex(date) - core::DayIndex(days.first);
  return day >= 0 && day < days.count ? day : -1;
}

constexpr int GridColumns(GridShape shape) {
  return shape == GridShape::kMonth ? 7 : 4;
}
constexpr int GridRows(GridShape shape) {
  return shape == GridShape::kMonth ? 6 : 2;
}

// The cell of a day, counted from 0, in an area that begins at (0, 0).
constexpr RECT GridCell(GridShape shape, const RECT& area, const GridDays& days, int day) {
  const int width = std::max(area.right, 0) / GridColumns(shape);
  const int height = std::max(area.bottom, 0) / GridRows(shape);
  const int place = day + days.column;
  const int left = place % GridColumns(shape) * width;
  const int top = place / GridColumns(shape) * height;
  return {left, top, left + width, top + height};
}

// A press so close to the right or the bottom edge is taken for one on the frame.
constexpr int kGridMargin = 4;

// The day at a point, -1 for none. Within the margins the cells share what is left of the area.
constexpr int GridDayAt(GridShape shape, const RECT& client, const GridDays& days, POINT point) {
  const RECT area = {0, 0, client.right - kGridMargin, client.bottom - kGridMargin};
  for (int day = 0; day < days.count; ++day) {
    if (Contains(GridCell(shape, area, days, day), point)) return day;
  }
  return -1;
}

// ---- A cell's lines ----

constexpr int kCellLineHeight = 10;

// How many lines of text there is room for under the cell's head.
constexpr int CellLines(int cellHeight) {
  constexpr int kHeadAndFoot = 2 * kCellLineHeight;
  return cellHeight > kHeadAndFoot ? (cellHeight - kHeadAndFoot - 1) / kCellLineHeight + 1 : 0;
}

constexpr RECT CellLine(const RECT& cell, int line) {
  const int top = cell.top + kCellLineHeight * (line + 1) + 1;
  return {cell.left + 2, top, cell.right - 2, top + kCellLineHeight - 1};
}

// ---- What lies behind the days ----

struct GridShapes {
  std::array<POINT, 3> triangle;
  RECT upperEllipse;
  RECT lowerEllipse;
};

constexpr GridShapes ShapesBehind(const RECT& client) {
  const int right = client.right;
  const int bottom = client.bottom;
  const auto part = [](int whole, double numerator, double denominator) {
    return static_cast<int>(whole * numerator / denominator);
  };
  return {{{{client.left, client.top},
            {part(right, 5, 11), client.top},
            {part(right, 5, 22), part(bottom, 5, 6)}}},
          {right - right / 3, client.top + 20, right + right / 3, bottom + 20},
          {part(right, 6, 10), bottom / 2, part(right, 14, 10), bottom / 2 + bottom}};
}

// ---- What lies in the corner at the bottom right ----

constexpr RECT GridTitle(const RECT& client) {
  return {client.right - 200, client.bottom - 35, client.right - 5, client.bottom - 15};
}

constexpr int kGridButtonSize = 10;

struct GridButtons {
  POINT previous;
  POINT today;
  POINT next;
};
constexpr GridButtons ButtonsIn(const RECT& client) {
  const int top = client.bottom - 16;
  return {{client.right - 45, top}, {client.right - 31, top}, {client.right - 17, top}};
}
