// The values of the command line and of the output: how dates, times, texts and ids are spelled. Outcomes are
// kUsage and name the option.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/outcome.h"
#include "cli/table.h"
#include "core/calendar/alarm_schedule.h"
#include "core/calendar/repeat_choice.h"
#include "core/date_time.h"

namespace cli {

// "2004-03-14", a day of the calendar.
Outcome ParseDate(std::string_view option, std::string_view text, core::Date& date);

// "2004-03", a month of the calendar: its first day.
Outcome ParseMonth(std::string_view option, std::string_view text, core::Date& first);

// "2004-03-14T10:40", to the five minutes that it lies in.
Outcome ParseMoment(std::string_view option, std::string_view text, core::AlarmMoment& moment);

// "09:30", "24:00" not among them, in steps of five minutes: others would compare as the step before.
Outcome ParseTime(std::string_view option, std::string_view text, core::TimeOfDay& time);

// UTF-8 to code page 1252. A character that the page lacks is named; more than `most` characters are too
// many. Line ends become those of the notes, which are "\r\n"; `oneLine` texts have none, and no text has
// another control character but tabs.
Outcome ParseText(std::string_view option, std::string_view text, std::size_t most, bool oneLine,
                  std::string& bytes);

// "daily:3", "weekly:1:mon,fri", "weekly:2" (on `date`'s weekday), "monthly:1", "yearly:1"; an interval of 1
// to 99, which may be left out for 1.
Outcome ParseRepeat(std::string_view option, std::string_view text, core::RepeatChoice& repeat);

// 16 hexadecimal digits.
Outcome ParseId(std::string_view text, std::uint64_t& id);
std::string FormatId(std::uint64_t id);

// A number that an offset can be.
Outcome ParseOffset(std::string_view option, std::string_view text, std::int32_t& offset);

// "text", "csv" or "json"; text when empty.
Outcome ParseFormat(std::string_view option, std::string_view text, Format& format);

// "2004-03-14"; no value for what is no date, a date for a day of the late era.
Cell DateCell(const core::Date& date);

// "09:30"; no value for a time that is none.
Cell TimeCell(const core::TimeOfDay& time);

// A stored text as UTF-8, its line ends as "\n".
std::string FromStored(std::string_view bytes);

}  // namespace cli
