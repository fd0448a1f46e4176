// Files of iCalendar, and which calendar they are read for.
#pragma once

#include <cstddef>
#include <string>

#include "core/exchange/ical_reader.h"
#include "core/store/record_file.h"

namespace core {

// Longer files are refused: they are read into memory.
inline constexpr std::size_t kMostIcalBytes = std::size_t{64} << 20;

// Reads a whole file, which must not be the calendar itself. Answers what is wrong, for the user, and nothing
// when `text` has it.
[[nodiscard]] std::string ReadIcalFile(const std::string& path, const RecordFile& calendar,
                                       std::string& text);

// How a text is read for this calendar and its user: by the clock of now, in `zone` (a name of the zone
// database; empty: the process's).
IcalReadOptions ReadOptionsFor(const RecordFile& calendar, std::string zone = {});

}  // namespace core
