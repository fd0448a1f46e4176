// Days as boxes of text beside and below each other, as the month and the week of the window program.
#pragma once

#include <string>
#include <vector>

#include "cli/output.h"
#include "core/date_time.h"

namespace cli {

// A day of the grid and what it says, a line each. Lines are UTF-8, and are cut to the width of the box.
struct GridDay {
  std::string head;
  std::vector<std::string> lines;
};

enum class GridShape {
  kMonth,  // seven columns with the weekdays above, Sunday first
  kWeek,   // four columns, Monday first; each day names its weekday
};

// The days that a grid with this day shows: its month, or Monday to Sunday as far as the calendar goes.
void GridDays(GridShape shape, const core::Date& day, core::Date& from, core::Date& to);

// Writes the grid of these days, the first of which is `from`, under the name of the month and year of
// `titled`. It is as wide as the terminal, or the variable COLUMNS, says, and else as 120 characters.
void WriteGrid(Output& output, GridShape shape, const core::Date& titled, const core::Date& from,
               const std::vector<GridDay>& days);

}  // namespace cli
