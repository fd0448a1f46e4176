// How one row of the Find dialog's list looks: a function of the appointment and of the row's rectangle. A
// row is as high as one of the day list.
#pragma once

#include <string>

#include "calendar/views/row_marks.h"

// Draws over the cell's background. `record` is null for one that cannot be read any more.
void DrawFindRow(HDC hdc, const core::Appointment* record, const RowMarks& marks, bool selected,
                 const RECT& cell);

// What a list without results says, in its first row.
void DrawNothingFound(HDC hdc, const RECT& cell);

// What the row says, in words also where it has marks.
std::string FindRowText(const core::Appointment* record);
