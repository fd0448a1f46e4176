// Which calendar the program opens at its start, and what it tells its user when that cannot be done.
#pragma once

#include <string>

#include "core/calendar_file.h"

// Opens the file named on the command line; without one, the calendar of the settings, which is made with its
// example appointments at the very first start. When nothing was opened, the message names the file and what
// is wrong.
core::OpenedCalendar OpenStartupCalendar(const std::string& commandLineFile);
