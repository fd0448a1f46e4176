// How one row of the day list looks: a function of the appointment and of the row's rectangle.
#pragma once

#include <memory>
#include <string>

#include "calendar/views/row_marks.h"

// The pictures of a row, loaded once for all rows. A picture that is missing is left out of the row.
struct DayRowPictures {
  std::unique_ptr<Bitmap> allDay;
  std::unique_ptr<Bitmap> allDayLeft;
  std::unique_ptr<Bitmap> allDayRight;
  RowMarks marks;
};
DayRowPictures LoadDayRowPictures();

// Height of a row in pixels: two lines of text and a little air.
int DayRowHeight();

enum class RowSelection {
  kNone,
  kIdle,     // selected, the keyboard is elsewhere
  kFocused,  // selected
};

// Draws over the cell's background. `record` is null for one that cannot be read any more.
void DrawDayRow(HDC hdc, const core::Appointment* record, const DayRowPictures& pictures,
                RowSelection selection, const RECT& cell);

// What the row says, in words also where it has marks: "10:00-11:00, Lunch, category Private, repeats".
std::string DayRowText(const core::Appointment* record);
