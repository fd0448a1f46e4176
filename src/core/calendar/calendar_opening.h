// Which calendar the program opens at its start, and why it is not the one that was meant.
#pragma once

#include <string>

#include "core/calendar/calendar_file.h"

namespace core {

struct StartupCalendar {
  OpenedCalendar opened;
  std::string note;  // a line for the dialog that makes a calendar instead; empty for none
};

// A sentence for the user when the file named on the command line does not exist; empty otherwise.
std::string DescribeMissingFile(const std::string& commandLineFile);

// Opens the file named on the command line; when none was, or it does not exist, the calendar of the
// settings, which is made with its example appointments at the very first start.
StartupCalendar OpenStartupCalendar(const std::string& commandLineFile, const PasswordPrompt& askPassword,
                                    const CompactionWatcher& watcher);

}  // namespace core
