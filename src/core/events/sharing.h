// Calendars that the people of one group share by the rights of the system: the calendar, its participants
// and the folder they lie in, which a compaction writes in, are the group's to read and to write.
#pragma once

#include <string>

namespace core {

struct SharingOutcome {
  bool shared = false;
  std::string message;  // why not, or what is to be known all the same; may be empty
};

// Gives a calendar to a group. Its folder must be the group's, or hold calendars alone and be the user's, who
// then gives it away as well: in a folder with other files the group could take those away.
[[nodiscard]] SharingOutcome ShareCalendar(const std::string& path, const std::string& group);

// Makes a calendar for a group, and its folder where that is missing.
[[nodiscard]] SharingOutcome CreateSharedCalendar(const std::string& path, const std::string& group,
                                                  bool withExamples);

}  // namespace core
