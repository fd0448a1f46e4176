// Which calendar the program opens at its start, and why it is not the one that was meant.
#pragma once

#include <string>

#include "core/calendar_file.h"

struct StartupCalendar {
  core::OpenedCalendar opened;
  std::string note;  // a line for the dialog that makes a calendar instead; empty for none
};

// Opens the file named on the command line; without one, the calendar of the settings, which is made with its
// example appointments at the very first start.
StartupCalendar OpenStartupCalendar(const std::string& commandLineFile,
                                    const core::PasswordPrompt& askPassword,
                                    const core::CompactionWatcher& watcher);
