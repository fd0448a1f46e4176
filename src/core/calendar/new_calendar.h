// The making of calendar files, and what the program's settings remember of it: the calendar that opens at
// the start ("DefaulFile") and whether a new one begins with example appointments ("RecordExample"). Paths
// are in the file system's encoding.
#pragma once

#include <string>

namespace core {

// The folder for calendars, "works" in the program folder. It is made if it is missing.
std::string WorksFolder();

// The full path of the calendar `name`, given without the extension, in `folder`.
std::string NewCalendarPath(const std::string& folder, const std::string& name);

enum class NewCalendar {
  kMade,
  kExists,  // something is at the path; it is untouched
  kFailed,  // the file could not be made; nothing is at the path
};

// Makes a calendar, whole or not at all, with the three example appointments if asked for. What another
// program puts at the path at the same instant stays.
[[nodiscard]] NewCalendar CreateCalendar(const std::string& path, bool withExamples);

// Notes down the calendar that is to open at the next start. Here and below: empty, or what to tell the user
// when the settings could not be written.
[[nodiscard]] std::string RememberCalendar(const std::string& path);

// What the user chose the last time; true when nothing was noted down yet.
bool ExamplesWanted();
[[nodiscard]] std::string RememberExamples(bool wanted);

}  // namespace core
