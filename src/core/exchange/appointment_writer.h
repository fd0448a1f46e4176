// Writes the appointments of a calendar as text: the export, a line for each under a line of names, the same
// as iCalendar, or the report, made to be read. In export and report texts go out as they are stored, in code
// page 1252, nothing escaped: whoever reads an export must expect a quote or a line end inside a field.
//
//   ExchangeOptions options;
//   options.range = ExchangeRange::kDates;
//   options.dates = {from, to};
//   const WriteResult result = WriteAppointments(file, options, "march.csv");
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "core/calendar/repeat_rule.h"
#include "core/exchange/exchange_fields.h"
#include "core/store/record_list.h"

namespace core {

enum class ExchangeMode { kReport = 1, kExport = 2, kIcal = 3 };
enum class ExchangeRange { kAll = 1, kDates = 2, kRecord = 3 };

// The range that "all" stands for in exports and reports: the years of the calendar up to the first month of
// the last one. In iCalendar it is every appointment that falls on a day.
DateRange WholeExchangeRange();

// More bytes of a subject to look for are not taken.
inline constexpr std::size_t kMostExchangeSubject = 1022;

struct ExchangeOptions {
  ExchangeMode mode = ExchangeMode::kExport;
  ExchangeRange range = ExchangeRange::kAll;
  DateRange dates{};     // of kDates
  std::uint64_t id = 0;  // of kRecord, which is for reports only
  // Only appointments whose subject contains this, without regard to the case of ASCII letters. Not asked of
  // a record that is chosen by its id.
  std::optional<std::string> subject;
  // As many as a list holds, those that come first in the file. The rest is counted.
  std::size_t most = RecordList::kMostRecords;
};

inline constexpr std::size_t kNoMost = std::numeric_limits<std::size_t>::max();

enum class WriteOutcome {
  kDone,
  kParts,         // written, without what could not be read
  kSourceFailed,  // the calendar could not be read: nothing was written
  kTargetFailed,  // there is no whole output; a file that was there stands
  kCancelled,     // the same, by the progress
};

struct WriteResult {
  WriteOutcome outcome = WriteOutcome::kDone;
  std::string message;      // for the user, naming the file; empty for kDone and kCancelled
  std::size_t written = 0;  // appointments; in a report of dates each day counts
  std::size_t leftOut = 0;  // beyond ExchangeOptions::most
  std::size_t dayless = 0;  // left out of iCalendar, because they fall on no day of the calendar
};

// Takes bytes away; false when they could not all be written.
using ByteSink = std::function<bool(std::string_view bytes)>;

// Writes to `sink`, in pieces. In a report of dates an appointment stands below each day on which it falls,
// else each stands once, by its own date; equal ones are ordered as in the file. With kTargetFailed the
// message is empty: who has the sink knows why. `progress` counts days or appointments.
[[nodiscard]] WriteResult WriteAppointments(const RecordFile& file, const ExchangeOptions& options,
                                            const ByteSink& sink, const ExchangeProgress& progress = {});

// Writes a new file that takes the place of what is at `path` when it is whole. The path must not lead to the
// calendar itself, to a folder or to a device.
[[nodiscard]] WriteResult WriteAppointments(const RecordFile& file, const ExchangeOptions& options,
                                            const std::string& path, const ExchangeProgress& progress = {});

// Tells the user how many appointments an iCalendar text lacks because they fall on no day; empty for none.
std::string DescribeDayless(const WriteResult& result);

}  // namespace core
