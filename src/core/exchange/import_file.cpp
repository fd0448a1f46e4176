#include "core/exchange/import_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "core/store/edit_lock.h"
#include "core/store/file_messages.h"

namespace core {
namespace {

// Records that are added under one guard.
constexpr std::size_t kBatch = 256;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Takes the digits at the front; a number that is too large for its place becomes the largest.
std::int32_t TakeDigits(std::string_view& text) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
  std::int64_t number = 0;
  for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
    number = std::min(number * 10 + (text.front() - '0'), kLargest);
  }
  return static_cast<std::int32_t>(number);
}

// The same after whatever stands before the first digit. False when there is none.
bool TakeNumber(std::string_view& text, std::int32_t& number) {
  while (!text.empty() && !IsDigit(text.front())) text.remove_prefix(1);
  if (text.empty()) return false;
  number = TakeDigits(text);
  return true;
}

bool StoreDate(std::string_view text, char* field) {
  std::array<std::int32_t, 3> numbers{};  // month, day, year
  for (std::int32_t& number : numbers) {
    if (!TakeNumber(text, number)) return false;
  }
  const Date date{numbers[1], numbers[0], numbers[2]};
  std::memcpy(field, &date, sizeof date);
  return true;
}

bool StoreTime(std::string_view text, char* field) {
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  if (!TakeNumber(text, hour) || !TakeNumber(text, minute)) return false;
  const bool morning = text.find_first_of("aA") != std::string_view::npos;
  const TimeOfDay time{hour == 12 && !morning ? 0 : hour, minute, 0, morning ? kBeforeNoon : kAfterNoon};
  std::memcpy(field, &time, sizeof time);
  return true;
}

// The work of one import.
class Importer {
 public:
  Importer(RecordFile& file, ImportReader& lines, const ImportMap& columns, bool onlyCount)
      : calendar(file), reader(lines), map(columns), dryRun(onlyCount) {}

  ImportResult Run(const ExchangeProgress& progress);

 private:
  bool Prepare();
  void AddLine(bool ended);
  bool AddBatch();

  RecordFile& calendar;
  ImportReader& reader;
  const ImportMap& map;
  const bool dryRun;
  std::vector<ImportText> fields;
  std::unique_ptr<Appointment[]> batch;
  std::size_t waiting = 0;  // records of the batch
  Appointment blank{};
  ImportResult result;   // with the records that wait
  ImportResult settled;  // without
};

bool Importer::Prepare() {
  batch.reset(new (std::nothrow) Appointment[kBatch]);
  if (batch != nullptr && NewAppointment(calendar, blank)) return true;
  result.end = ImportEnd::kNotAdded;
  result.result = CommandResult::kFailed;
  return false;
}

ImportResult Importer::Run(const ExchangeProgress& progress) {
  reader.SetFormat(reader.Format());
  if (!Prepare()) return result;
  bool names = reader.Format().header;
  for (;;) {
    const ImportLine line = reader.ReadLine(fields);
    if (line == ImportLine::kFailed) settled.end = ImportEnd::kReadFailed;
    if (line == ImportLine::kFailed || line == ImportLine::kEnd) break;
    if (!std::exchange(names, false)) AddLine(line == ImportLine::kRead);
    if (waiting == kBatch && !AddBatch()) break;
    if (progress && !progress(reader.Done(), reader.Whole())) {
      settled.end = ImportEnd::kCancelled;
      break;
    }
  }
  // Of a file that ends badly, and to somebody who has had enough, the lines that were read still count.
  if (settled.end != ImportEnd::kNotAdded) static_cast<void>(AddBatch());
  if (settled.added != 0 && !dryRun) settled.result = Flush(calendar, settled.result);
  return settled;
}

void Importer::AddLine(bool ended) {
  // The file's owner may have become another one meanwhile.
  Appointment fresh;
  if (waiting == 0 && NewAppointment(calendar, fresh)) blank = fresh;
  Appointment& record = batch[waiting++];
  record = blank;
  record.header.recordId = NewRecordId();
  bool whole = ended;
  for (std::size_t column = 0; column < fields.size() && column < map.size(); ++column) {
    if (map[column] == kIgnoredColumn) continue;
    const ExchangeField& field = kExchangeFields[static_cast<std::size_t>(map[column])];
    if (!StoreField(field, fields[column].text, record)) {
      whole = false;
      break;
    }
    if (fields[column].replaced && field.kind == ExchangeKind::kText) ++result.replaced;
  }
  ++result.added;
  if (!whole) ++result.incomplete;
  if (DayIndex(record.date) < 0) ++result.outside;
}

// Of a batch that is not added whole the counts are left as they were, but for its records.
bool Importer::AddBatch() {
  std::size_t added = waiting;
  CommandResult came = CommandResult::kDone;
  if (!dryRun && waiting != 0) came = FromFile(calendar, calendar.AddRecords(batch.get(), waiting, added));
  const CommandResult worse = WorseOf(settled.result, came);
  const ImportEnd end = settled.end;
  if (IsMade(came)) {
    settled = result;
  } else {
    settled.added += static_cast<std::int64_t>(added);
  }
  settled.end = IsMade(came) ? end : ImportEnd::kNotAdded;
  settled.result = worse;
  waiting = 0;
  return IsMade(came);
}

std::string Counted(std::int64_t count, const char* one, const char* more) {
  return std::to_string(count) + (count == 1 ? one : more);
}

}  // namespace

int FindExchangeField(std::string_view name) {
  const auto bare = [](std::string_view text) {
    std::string letters(text);
    std::erase(letters, ' ');
    return letters;
  };
  const auto* const found =
      std::find_if(kExchangeFields.begin(), kExchangeFields.end(),
                   [&](const ExchangeField& field) { return bare(field.name) == bare(name); });
  return found == kExchangeFields.end() ? kIgnoredColumn : static_cast<int>(found - kExchangeFields.begin());
}

ImportMap DefaultImportMap(const std::vector<ImportText>& names) {
  ImportMap map;
  for (const ImportText& name : names) map.push_back(FindExchangeField(name.text));
  return map;
}

ImportMap PositionalImportMap(std::size_t columns) {
  ImportMap map(columns, kIgnoredColumn);
  for (std::size_t i = 0; i < std::min(columns, kExchangeFields.size()); ++i) map[i] = static_cast<int>(i);
  return map;
}

bool MapsAnything(const ImportMap& map) {
  return std::any_of(map.begin(), map.end(), [](int field) { return field != kIgnoredColumn; });
}

bool StoreField(const ExchangeField& field, std::string_view text, Appointment& record) {
  char* const place = reinterpret_cast<char*>(&record) + field.offset;
  if (text.empty()) return true;
  switch (field.kind) {
    case ExchangeKind::kDate:
      return StoreDate(text, place);
    case ExchangeKind::kTime:
      return StoreTime(text, place);
    case ExchangeKind::kNumber: {
      const std::int32_t number = TakeDigits(text);
      std::memcpy(place, &number, sizeof number);
      return true;
    }
    case ExchangeKind::kText:
      WriteText(place, field.size, text.substr(0, std::min(text.find('\0'), field.size - 1)));
      return true;
  }
  return false;
}

ImportResult ImportFile(RecordFile& calendar, ImportReader& reader, const ImportMap& map,
                        const ExchangeProgress& progress, bool dryRun) {
  return Importer(calendar, reader, map, dryRun).Run(progress);
}

std::string DescribeImportCounts(const ImportResult& result, bool dryRun) {
  std::string text = Counted(result.added, " appointment", " appointments");
  text += dryRun ? " would be added." : result.added == 1 ? " was added." : " were added.";
  if (result.incomplete != 0) {
    text.append(" ").append(Counted(result.incomplete, " line", " lines")).append(" could not be completed.");
  }
  if (result.outside != 0) {
    text.append(" ").append(Counted(result.outside, " has", " have")).append(" a date outside the calendar.");
    text += " The first number of a date is read as the month.";
  }
  if (result.replaced != 0) {
    text.append(" In ").append(Counted(result.replaced, " text", " texts"));
    text += " a \"?\" stands for characters that cannot be stored.";
  }
  return text;
}

std::string DescribeImport(const RecordFile& calendar, const ImportResult& result, bool dryRun) {
  std::string text;
  if (result.end == ImportEnd::kReadFailed) text = "The import file could not be read to its end.\r\n";
  if (result.end == ImportEnd::kCancelled) text = "The import was cancelled.\r\n";
  if (result.result != CommandResult::kDone) text += DescribeResult(calendar, result.result) + "\r\n";
  return text + DescribeImportCounts(result, dryRun);
}

}  // namespace core
