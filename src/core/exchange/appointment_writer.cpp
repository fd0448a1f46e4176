#include "core/exchange/appointment_writer.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "core/calendar/day_table.h"
#include "core/exchange/ical_writer.h"
#include "core/store/file_messages.h"
#include "core/store/record_query.h"
#include "core/store/record_scan.h"
#include "core/time_texts.h"
#include "platform/system/large_block.h"
#include "platform/system/replacement_file.h"

namespace core {
namespace {

constexpr std::size_t kPiece = 262144;  // bytes that are gathered before they go out
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kDayLine = "----------------------------------------\r\n";

// The texts of appointments, which are met in another order than they go out in: as many as find room, so
// that memory does not grow with the file.
class KeptTexts {
 public:
  // A copy of the text that stays where it is; without data when there is no room for it.
  std::string_view Keep(std::string_view text);

 private:
  static constexpr std::size_t kMostBlocks = 32;

  std::vector<platform::LargeBlock> blocks;
  std::size_t used = platform::kLargeBlock;  // bytes of the last one
};

std::string_view KeptTexts::Keep(std::string_view text) {
  if (text.size() > platform::kLargeBlock - used) {
    if (blocks.size() == kMostBlocks) return {};
    platform::LargeBlock block = platform::TakeLargeBlock();
    if (block == nullptr) return {};
    blocks.push_back(std::move(block));
    used = 0;
  }
  char* const place = blocks.back().get() + used;
  used += text.copy(place, text.size());
  return {place, text.size()};
}

struct Entry {
  std::uint64_t order;
  RecordKey record;
  std::string_view text;  // without data for one that is to be read again
};

class Writer {
 public:
  Writer(const RecordFile& calendar, const ExchangeOptions& wanted, const ByteSink& destination,
         const ExchangeProgress& watcher)
      : file(calendar), options(wanted), sink(destination), progress(watcher) {}

  WriteResult Run();

 private:
  void PrepareQuery();
  bool Collect();
  void WriteList();
  void WriteDays(const DayTable& days);
  void WriteDay(const Date& date, const std::vector<RecordKey>& keys);
  bool Read(const RecordKey& key, Appointment& record);
  bool GoesOn(std::int64_t done, std::int64_t whole);
  void Fail(WriteOutcome outcome);
  bool Failed() const { return result.outcome > WriteOutcome::kParts; }
  void Flush();

  template <typename... Texts>
  void Put(const Texts&... texts) {
    (waiting.append(texts), ...);
    if (waiting.size() >= kPiece) Flush();
  }
  void PutTitle();
  [[nodiscard]] bool PutRecord(const Appointment& record, const RecordKey& key);
  void PutExported(const Appointment& record);
  void PutEntry(const Appointment& record);
  void PutShortEntry(const Appointment& record);

  const RecordFile& file;
  const ExchangeOptions& options;
  const ByteSink& sink;
  const ExchangeProgress& progress;
  RecordQuery query;
  DateRange range{};
  Access level = Access::kNone;
  std::vector<Entry> entries;
  IcalWriter ical;
  KeptTexts kept;
  std::string waiting;
  WriteResult result;
};

std::string TimesOf(const Appointment& record) {
  return FormatTime(record.startTime) + " - " + FormatTime(record.endTime);
}

WriteResult Writer::Run() {
  range = options.range == ExchangeRange::kDates ? options.dates : WholeExchangeRange();
  level = file.AccessLevel();
  const bool byDays = options.mode == ExchangeMode::kReport && options.range == ExchangeRange::kDates;
  PrepareQuery();
  const DayTable* days = byDays ? DayTable::Of(file) : nullptr;
  if (level == Access::kNone || file.SlotSize() != sizeof(Appointment) ||
      (byDays ? days == nullptr : !Collect())) {
    Fail(WriteOutcome::kSourceFailed);
    return result;
  }
  PutTitle();
  if (byDays) {
    WriteDays(*days);
  } else {
    WriteList();
  }
  if (options.mode == ExchangeMode::kIcal) ical.PutTail(waiting);
  Flush();
  if (result.outcome == WriteOutcome::kParts) {
    result.message = "Parts of " + Quoted(file.Path()) + " cannot be read; the text lacks them.";
  }
  return result;
}

// What of a report of dates decides on the days is asked of the day table.
void Writer::PrepareQuery() {
  if (options.range == ExchangeRange::kRecord) {
    static_cast<void>(query.AddInt64Condition(offsetof(RecordHeader, recordId), ConditionOp::kEqual,
                                              static_cast<std::uint32_t>(options.id),
                                              static_cast<std::uint32_t>(options.id >> 32), Connector::kAnd));
    return;
  }
  const bool byDays = options.mode == ExchangeMode::kReport && options.range == ExchangeRange::kDates;
  const bool anyDay = options.mode == ExchangeMode::kIcal && options.range == ExchangeRange::kAll;
  if (byDays || anyDay) {
    if (!options.subject) static_cast<void>(query.AddMatchAll());
  } else {
    static_cast<void>(query.AddCallbackCondition(0, &range, sizeof range, OccursInRange, Connector::kAnd));
  }
  if (!options.subject) return;
  static_cast<void>(query.AddTextCondition(offsetof(Appointment, subject), sizeof(Appointment::subject),
                                           ConditionOp::kContains, *options.subject, Connector::kAnd));
}

bool Writer::Collect() {
  const ScanResult scanned = ScanRecords(file, [this](const char* slot, std::int32_t offset) {
    const auto& record = *reinterpret_cast<const Appointment*>(slot);
    const RecordKey key{offset, record.header.recordId};
    if (options.mode == ExchangeMode::kIcal) ical.Meet(key);
    if (!query.Matches(slot, sizeof(Appointment))) return;
    if (entries.size() == options.most) {
      ++result.leftOut;
      return;
    }
    waiting.clear();
    if (PutRecord(record, key)) entries.push_back({kListOrder.key(slot), key, kept.Keep(waiting)});
  });
  waiting.clear();
  if (scanned == ScanResult::kParts) result.outcome = WriteOutcome::kParts;
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.order < b.order; });
  return scanned != ScanResult::kFailed;
}

// Others may have deleted the record meanwhile, put another one into its slot or made it the owner's alone.
bool Writer::Read(const RecordKey& key, Appointment& record) {
  return file.ReadRecord(&record, key) && (record.header.confidential != 1 || level == Access::kOwner);
}

void Writer::WriteList() {
  const auto whole = static_cast<std::int64_t>(entries.size());
  std::int64_t done = 0;
  for (const Entry& entry : entries) {
    if (!GoesOn(done++, whole)) return;
    Appointment record;
    if (entry.text.data() != nullptr) {
      Put(entry.text);
    } else if (!Read(entry.record, record) || !PutRecord(record, entry.record)) {
      continue;
    }
    ++result.written;
  }
}

void Writer::WriteDays(const DayTable& days) {
  if (!days.IsWhole()) result.outcome = WriteOutcome::kParts;
  const int first = DayIndex(range.from);
  const int whole = first < 0 ? 0 : DayIndex(range.to) - first + 1;
  Date date = range.from;
  for (int done = 0; done < whole; done += kMostOccurrenceDays) {
    const int count = std::min(whole - done, kMostOccurrenceDays);
    int inRun = 0;
    for (const std::vector<RecordKey>& keys : days.Days(date, count, std::nullopt)) {
      if (!GoesOn(done + inRun++, whole)) return;
      WriteDay(date, keys);
      NextDay(date);
    }
  }
}

void Writer::WriteDay(const Date& date, const std::vector<RecordKey>& keys) {
  bool headed = false;
  for (const RecordKey& key : keys) {
    Appointment record;
    if (!Read(key, record) || !query.Matches(reinterpret_cast<const char*>(&record), sizeof record)) continue;
    if (!headed) {
      Put(WeekdayName(date), ", ", MonthName(date), " ", std::to_string(date.day), ", ",
          std::to_string(date.year), kLineEnd, kDayLine);
    }
    headed = true;
    ++result.written;
    PutShortEntry(record);
  }
}

bool Writer::GoesOn(std::int64_t done, std::int64_t whole) {
  if (!Failed() && progress && !progress(done, whole)) Fail(WriteOutcome::kCancelled);
  return !Failed();
}

void Writer::Fail(WriteOutcome outcome) {
  result.outcome = outcome;
  if (outcome != WriteOutcome::kSourceFailed) return;
  const FileFault fault = level == Access::kNone && file.LastFault() == FileFault::kNone
                              ? FileFault::kNoAccess
                              : file.LastFault();
  result.message = DescribeFault(file.Path(), fault == FileFault::kNone ? FileFault::kReadFailed : fault);
}

void Writer::Flush() {
  if (!Failed() && !waiting.empty() && !sink(waiting)) Fail(WriteOutcome::kTargetFailed);
  waiting.clear();
}

void Writer::PutTitle() {
  if (options.mode == ExchangeMode::kReport) {
    Put("Tempoline Report (from ", FormatDate(range.from), " to ", FormatDate(range.to), ")\r\n\r\n");
    return;
  }
  if (options.mode == ExchangeMode::kIcal) {
    ical.PutHead(waiting);
    return;
  }
  for (const ExchangeField& field : kExchangeFields) {
    Put(&field == kExchangeFields.data() ? "\"" : ",\"", field.name, "\"");
  }
  Put(kLineEnd);
}

// False, with nothing put, for a record that iCalendar has no event for.
bool Writer::PutRecord(const Appointment& record, const RecordKey& key) {
  switch (options.mode) {
    case ExchangeMode::kReport:
      PutEntry(record);
      break;
    case ExchangeMode::kExport:
      PutExported(record);
      break;
    case ExchangeMode::kIcal:
      if (!ical.PutEvent(record, key, waiting)) {
        ++result.dayless;
        return false;
      }
      Put();
  }
  return true;
}

void Writer::PutExported(const Appointment& record) {
  const auto allDay = static_cast<std::int32_t>(record.allDay);
  Put("\"", FormatDate(record.date), "\",\"", FormatTime(record.startTime), "\",\"",
      FormatTime(record.endTime), "\",\"", ReadText(record.header.category), "\",\"", std::to_string(allDay),
      "\",\"", ReadText(record.subject), "\",\"", ReadText(record.notes), "\"\r\n");
}

void Writer::PutEntry(const Appointment& record) {
  Put("Date: ", FormatDate(record.date), "\r\nTime: ", record.allDay != 0 ? "All day event" : TimesOf(record),
      "\r\nSubject: ", ReadText(record.subject), "\r\nCategory: ", ReadText(record.header.category),
      "\r\nNotes: ", ReadText(record.notes), "\r\n\r\n");
}

void Writer::PutShortEntry(const Appointment& record) {
  const std::string_view category = ReadText(record.header.category);
  const std::string_view notes = ReadText(record.notes);
  Put(record.allDay != 0 ? "All day event" : TimesOf(record), kLineEnd, ReadText(record.subject), kLineEnd);
  if (!category.empty()) Put("Category: ", category, kLineEnd);
  if (!notes.empty()) Put("Notes: ", notes, kLineEnd);
  Put(kLineEnd);
}

}  // namespace

DateRange WholeExchangeRange() {
  return {kFirstDate, {31, 1, LastYear()}};
}

WriteResult WriteAppointments(const RecordFile& file, const ExchangeOptions& options, const ByteSink& sink,
                              const ExchangeProgress& progress) {
  return Writer(file, options, sink, progress).Run();
}

WriteResult WriteAppointments(const RecordFile& file, const ExchangeOptions& options, const std::string& path,
                              const ExchangeProgress& progress) {
  const auto failed = [&path](platform::FileResult why) {
    return WriteResult{WriteOutcome::kTargetFailed, CannotWriteText(path, why)};
  };
  if (file.Opened().IsAt(path)) {
    return {WriteOutcome::kTargetFailed, CannotWriteText(path, platform::FileResult::kFailed) +
                                             "It is the calendar whose appointments are written."};
  }
  platform::ReplacementFile target;
  const platform::FileResult begun = target.Begin(path);
  if (begun != platform::FileResult::kDone) return failed(begun);
  // Another calendar, perhaps: whoever has it open would write on into a file without a name.
  if (platform::FileExists(path) && platform::FileInUse(path)) return failed(platform::FileResult::kInUse);
  WriteResult result = WriteAppointments(
      file, options, [&target](std::string_view bytes) { return target.Write(bytes); }, progress);
  if (result.outcome == WriteOutcome::kSourceFailed || result.outcome == WriteOutcome::kCancelled) {
    return result;
  }
  const platform::FileResult finished = target.Finish();
  return finished == platform::FileResult::kDone ? result : failed(finished);
}

std::string DescribeDayless(const WriteResult& result) {
  if (result.dayless == 0) return "";
  const char* const fall = result.dayless == 1 ? " appointment falls" : " appointments fall";
  return std::to_string(result.dayless) + fall + " on no day and cannot be written as an event.";
}

}  // namespace core
