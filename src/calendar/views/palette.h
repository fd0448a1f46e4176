// The colours of the calendar panel and what lies on it.
#pragma once

#include "controls/selection_colours.h"

constexpr COLORREF kPanelBackground = RGB(255, 255, 195);
constexpr COLORREF kPanelText = RGB(0, 0, 0);
constexpr COLORREF kTodayColour = RGB(255, 0, 0);
// Rows of the day list alternate between two shades close enough not to disturb reading.
constexpr COLORREF kEvenRow = kPanelBackground;
constexpr COLORREF kOddRow = RGB(255, 255, 213);
constexpr COLORREF kRowText = RGB(0, 0, 255);
constexpr COLORREF kRowMark = RGB(255, 0, 0);
constexpr COLORREF kRowLine = RGB(192, 192, 192);
