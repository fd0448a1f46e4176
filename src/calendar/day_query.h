// Which appointments the day list shows, and in which order.
#pragma once

#include <string_view>

#include "core/date_time.h"
#include "core/record_file.h"
#include "core/record_query.h"

// Fills `records` with the appointments of `file` that occur on `date` and that the user may see; with a
// category not empty (at most 30 bytes, compared without regard to letter case) only those of it. All-day
// ones come first, then by start time. `file` must outlive `records`. False when the file could not be read
// to its end; what was found up to there is listed.
bool ListDay(core::RecordQuery& records, core::RecordFile& file, const core::Date& date,
             std::string_view category);
