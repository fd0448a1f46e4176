// What is wrong in the records of an address book and of a participant store, beside what the check of every
// record file finds: texts that would break the line they are shown on, states that are none, participants of
// nothing.
#pragma once

#include <string>

#include "core/calendar/file_check.h"

namespace core {

// Reports what is wrong with the people in the file at `path`, which CheckFile has looked at; nothing where
// it is another kind of file or cannot be read. Of the store of a calendar that lies beside it ("x.cld.tsi"
// of "x.cld"), it also reports the participants of appointments that the calendar does not hold. Changes
// nothing. Memory is taken for 16 bytes a participant and 8 bytes an appointment.
void CheckPeople(const std::string& path, const FindingReport& report);

}  // namespace core
