// Adds the appointments of a text file to a calendar: which column becomes which field, and the work itself.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/exchange/exchange_fields.h"
#include "core/exchange/import_reader.h"
#include "core/store/command_result.h"

namespace core {

// For each column, of which there are at most ImportReader::kMostColumns, the place of its field in
// kExchangeFields, or kIgnoredColumn.
using ImportMap = std::vector<int>;
inline constexpr int kIgnoredColumn = -1;
inline constexpr std::string_view kIgnoredColumnName = "IGNORE THIS FIELD";

// The place of the field with this name, blanks ignored; kIgnoredColumn when none has it.
int FindExchangeField(std::string_view name);

// Columns by their names; and by their order, those that are left over ignored.
ImportMap DefaultImportMap(const std::vector<ImportText>& names);
ImportMap PositionalImportMap(std::size_t columns);

// Whether any column is not ignored: nothing is to be imported without.
bool MapsAnything(const ImportMap& map);

// Puts a text into a field of the record. False, the field as it was, for a date or a time that is none. An
// empty text changes nothing. The first number of a date is the month; a time is after noon unless an "a"
// stands behind it, and its hour is kept as it is written, but for 12 after noon, which is 0.
[[nodiscard]] bool StoreField(const ExchangeField& field, std::string_view text, Appointment& record);

enum class ImportEnd { kDone, kReadFailed, kNotAdded, kCancelled };

struct ImportResult {
  ImportEnd end = ImportEnd::kDone;
  CommandResult result = CommandResult::kDone;  // what adding came to, also with kDone
  std::int64_t added = 0;
  std::int64_t incomplete = 0;  // lines of these with a date or time that is none, or an unclosed quote
  std::int64_t outside = 0;     // of these without a date of the calendar
  std::int64_t replaced = 0;    // texts with a "?" for what the code page lacks
};

// Adds an appointment for each line of the reader, in its format, behind those that are there: some hundred
// at a time, which other copies see at once, and one flush in the end. What was added stays, however it ends.
// `progress` counts bytes of the file, and is asked after each line. With `dryRun` nothing is added, only
// counted.
[[nodiscard]] ImportResult ImportFile(RecordFile& calendar, ImportReader& reader, const ImportMap& map,
                                      const ExchangeProgress& progress = {}, bool dryRun = false);

// What to tell the user: the counts, after what went wrong, if anything did.
std::string DescribeImport(const RecordFile& calendar, const ImportResult& result, bool dryRun = false);

// The counts alone.
std::string DescribeImportCounts(const ImportResult& result, bool dryRun = false);

}  // namespace core
