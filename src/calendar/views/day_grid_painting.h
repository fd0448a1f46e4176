// How a grid of days looks: a function of its size, its days and what they hold.
#pragma once

#include <string>
#include <vector>

#include "calendar/views/day_grid_geometry.h"
#include "platform/desktop/device_context.h"

struct GridLook {
  COLORREF triangle;
  COLORREF upperEllipse;
  COLORREF lowerEllipse;
  COLORREF title;
  COLORREF buttons;
};

// The shapes on white, the grid's lines and, over a month's first row, the weekdays.
void DrawGridGround(HDC hdc, const RECT& client, GridShape shape, const GridLook& look);

// "March 2004", over the buttons.
void DrawGridTitle(HDC hdc, const RECT& client, const core::Date& date, const GridLook& look);

// The head of a day and its lines, as many as fit.
void DrawGridDay(HDC hdc, const RECT& cell, GridShape shape, const core::Date& date,
                 const std::vector<const std::string*>& lines);
