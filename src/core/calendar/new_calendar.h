// The making of calendar files, and what the program's settings remember of it: the calendar that opens at
// the start ("DefaulFile") and whether a new one begins with example appointments ("RecordExample"). Paths
// are in the file system's encoding.
#pragma once

#include <string>

#include "platform/system/file.h"

namespace core {

// The folder for calendars, "works" in the program folder. It is made if it is missing.
std::string WorksFolder();

// The full path of the calendar `name`, given without the extension, in `folder`.
std::string NewCalendarPath(const std::string& folder, const std::string& name);

// Makes a calendar, whole or not at all, with the three example appointments if asked for. kExists, and what
// is at the path untouched, where something is; that includes what another program puts there at the same
// instant.
[[nodiscard]] platform::FileResult CreateCalendar(const std::string& path, bool withExamples);

// Notes down the calendar that is to open at the next start. Here and below: empty, or what to tell the user
// when the settings could not be written.
[[nodiscard]] std::string RememberCalendar(const std::string& path);

// What the user chose the last time; true when nothing was noted down yet.
bool ExamplesWanted();
[[nodiscard]] std::string RememberExamples(bool wanted);

}  // namespace core
