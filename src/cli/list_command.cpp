// The command list: days with their occurrences, or all records.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <memory>
#include <tuple>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/calendar/repeat_rule.h"
#include "core/calendar/text_search.h"
#include "core/store/record_query.h"
#include "core/store/record_scan.h"

namespace cli {
namespace {

using core::Appointment;

// What of a record decides where it is listed; the record itself is read when its row is written.
struct Candidate {
  std::int32_t offset;
  std::uint64_t id;
  int day;              // the day number it is listed on, -1 for none
  std::uint64_t order;  // within the day
  core::Date date;
  core::RepeatRule repeat;
};

bool InOrder(const Candidate& a, const Candidate& b) {
  return std::tie(a.day, a.order, a.offset) < std::tie(b.day, b.order, b.offset);
}

struct Selection {
  bool all = false;  // each record once, else each day of the range
  core::Date from{};
  core::Date to{};
  core::RecordQuery filter;
  Format format = Format::kText;
};

Outcome ParseDays(const Arguments& arguments, Selection& selection) {
  const bool day = arguments.Has("day");
  const bool range = arguments.Has("from") || arguments.Has("to");
  selection.all = arguments.Has("all");
  if (day + range + selection.all != 1 || arguments.Has("from") != arguments.Has("to")) {
    return Fail(kUsage, "list takes one of --day D, --from D --to D and --all");
  }
  if (selection.all) return {};
  const char* first = day ? "day" : "from";
  const char* last = day ? "day" : "to";
  Outcome parsed = ParseDate(first, arguments.Value(first), selection.from);
  if (parsed.IsDone()) parsed = ParseDate(last, arguments.Value(last), selection.to);
  if (!parsed.IsDone() || core::DayIndex(selection.from) <= core::DayIndex(selection.to)) return parsed;
  return Fail(kUsage, "--from lies after --to");
}

Outcome ParseFilter(const Arguments& arguments, core::RecordQuery& filter) {
  if (arguments.Has("find")) {
    std::string text;
    Outcome parsed = ParseText("find", arguments.Value("find"), core::TextSearch::kMostText, false, text);
    if (!parsed.IsDone()) return parsed;
    core::AddTextConditions(filter, text);
  }
  if (arguments.Has("category")) {
    std::string name;
    Outcome parsed =
        ParseText("category", arguments.Value("category"), sizeof(core::RecordHeader::category), true, name);
    if (!parsed.IsDone()) return parsed;
    core::AddCategoryConditions(filter, name);
  }
  if (filter.ConditionCount() == 0) filter.AddMatchAll();
  return {};
}

// The flags in text output: a letter for what is so, a dash for what is not.
std::string Flags(const Appointment& record) {
  std::string flags = "-----";
  if (record.header.confidential != 0) flags[0] = 'C';
  if (record.alarmOn != 0) flags[1] = 'A';
  if (core::HasAttachment(record)) flags[2] = 'F';
  if (core::HasRepeat(record)) flags[3] = 'R';
  if (record.header.editLock == 1) flags[4] = 'L';
  return flags;
}

class Lister {
 public:
  Lister(const core::RecordFile& calendar, const Selection& listed, Output& destination)
      : file(calendar), selection(listed), output(destination), level(calendar.AccessLevel()) {}

  // False when something could not be read; the rest is listed all the same.
  bool Run() {
    const core::ScanResult scanned = core::ScanRecords(file, [this](const char* slot, std::int32_t offset) {
      Collect(*reinterpret_cast<const Appointment*>(slot), offset);
    });
    complete = scanned == core::ScanResult::kAll;
    std::sort(single.begin(), single.end(), InOrder);
    Table table(output, selection.format, Columns());
    if (selection.all) {
      for (const Candidate& candidate : single) WriteRow(table, candidate, candidate.date);
    } else {
      const int last = core::DayIndex(selection.to);
      for (int first = core::DayIndex(selection.from); first <= last; first += core::kMostOccurrenceDays) {
        WriteDays(table, first, std::min(last - first + 1, core::kMostOccurrenceDays));
      }
    }
    table.End();
    return complete;
  }

 private:
  void Collect(const Appointment& record, std::int32_t offset);
  void WriteDays(Table& table, int first, int count);
  void WriteRow(Table& table, const Candidate& candidate, const core::Date& date);
  std::vector<Column> Columns() const;

  const core::RecordFile& file;
  const Selection& selection;
  Output& output;
  const core::Access level;
  bool complete = true;
  // Those that repeat lie apart: only they fall on more days than one.
  std::vector<Candidate> single;
  std::vector<Candidate> repeating;
  std::size_t nextSingle = 0;
  std::size_t categoryWidth = 0;
};

void Lister::Collect(const Appointment& record, std::int32_t offset) {
  if (!selection.filter.Matches(reinterpret_cast<const char*>(&record), sizeof record)) return;
  const bool apart = !selection.all && core::HasRepeat(record);
  const int day = core::DayIndex(record.date);
  const bool outside = day < core::DayIndex(selection.from) || day > core::DayIndex(selection.to);
  if (!selection.all && !apart && (day < 0 || outside)) return;
  (apart ? repeating : single)
      .push_back(
          {offset, record.header.recordId, day, core::kDayOrder.key(&record), record.date, record.repeat});
  const std::string category = OneLine(FromStored(core::ReadText(record.header.category)));
  categoryWidth = std::max(categoryWidth, CharacterCount(category));
}

// Days in a row, from a day number on; as many as OccurrenceDays answers at once.
void Lister::WriteDays(Table& table, int first, int count) {
  core::Date firstDate{};
  if (output.Failed() || !core::DateFromIndex(first, firstDate)) return;
  std::vector<Candidate> rows;
  for (; nextSingle < single.size() && single[nextSingle].day < first + count; ++nextSingle) {
    rows.push_back(single[nextSingle]);
  }
  for (Candidate& candidate : repeating) {
    std::uint64_t falls = core::OccurrenceDays(candidate.date, candidate.repeat, firstDate, count);
    for (; falls != 0; falls &= falls - 1) {
      candidate.day = first + std::countr_zero(falls);
      rows.push_back(candidate);
    }
  }
  std::sort(rows.begin(), rows.end(), InOrder);
  for (const Candidate& row : rows) {
    core::Date day{};
    if (core::DateFromIndex(row.day, day)) WriteRow(table, row, day);
  }
}

// Others may have deleted the record meanwhile and put another one into its slot.
void Lister::WriteRow(Table& table, const Candidate& candidate, const core::Date& date) {
  Appointment record;
  if (output.Failed()) return;
  if (!file.ReadSlot(&record, candidate.offset)) {
    complete = false;
    return;
  }
  if (!MaySee(record.header, level) || record.header.recordId != candidate.id) return;
  const Cell id = Cell::Text(FormatId(record.header.recordId));
  const Cell start = TimeCell(record.startTime);
  const Cell end = TimeCell(record.endTime);
  const Cell category = Cell::Text(FromStored(core::ReadText(record.header.category)));
  const Cell subject = Cell::Text(FromStored(core::ReadText(record.subject)));
  if (selection.format == Format::kText) {
    const bool allDay = record.allDay != 0;
    table.Row({id, DateCell(date), allDay ? Cell::Text("all") : start, allDay ? Cell::Text("day") : end,
               Cell::Text(Flags(record)), category, subject});
    return;
  }
  table.Row({id, Cell::Number(candidate.offset), DateCell(date), start, end, Cell::Bool(record.allDay != 0),
             category, subject, Cell::Text(FromStored(core::ReadText(record.notes))),
             Cell::Bool(record.header.confidential != 0), Cell::Bool(record.alarmOn != 0),
             Cell::Bool(core::HasAttachment(record)), Cell::Bool(core::HasRepeat(record)),
             Cell::Bool(record.header.editLock == 1)});
}

std::vector<Column> Lister::Columns() const {
  if (selection.format == Format::kText) {
    return {{"id", 16}, {"date", 10}, {"start", 5}, {"end", 5}, {"flags", 5}, {"category", categoryWidth},
            {"subject"}};
  }
  return {{"id"},      {"offset"}, {"date"},         {"start"}, {"end"},        {"allDay"},  {"category"},
          {"subject"}, {"notes"},  {"confidential"}, {"alarm"}, {"attachment"}, {"repeats"}, {"locked"}};
}

}  // namespace

Outcome ListCommand(const Arguments& arguments, Output& output) {
  Selection selection;
  Outcome outcome = ParseDays(arguments, selection);
  if (outcome.IsDone()) outcome = ParseFilter(arguments, selection.filter);
  if (outcome.IsDone()) outcome = ParseFormat("format", arguments.Value("format"), selection.format);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenCalendarToRead(arguments, file);
  if (!outcome.IsDone()) return outcome;
  if (Lister(*file, selection, output).Run()) return {};
  return FailOn(arguments.file, kFile, "Parts of it cannot be read; the list lacks them.");
}

}  // namespace cli
