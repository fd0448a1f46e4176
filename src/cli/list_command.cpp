// The command list: days with their occurrences, as lines or as a grid, or all records.
#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <tuple>
#include <unordered_map>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/text_grid.h"
#include "cli/values.h"
#include "core/calendar/day_table.h"
#include "core/calendar/repeat_rule.h"
#include "core/calendar/text_search.h"
#include "core/store/record_scan.h"
#include "core/time_texts.h"

namespace cli {
namespace {

using core::Appointment;

// What of a record decides where it is listed; the record itself is read when its row is written.
struct Candidate {
  core::RecordKey record;
  int day;              // the day number it is listed on, -1 for none
  std::uint64_t order;  // within the day
  core::Date date;
};

bool InOrder(const Candidate& a, const Candidate& b) {
  return std::tie(a.day, a.order, a.record.offset) < std::tie(b.day, b.order, b.record.offset);
}

struct Selection {
  bool all = false;  // each record once, else each day of the range
  core::Date from{};
  core::Date to{};
  std::optional<GridShape> shape;  // of a range that is a month or a week
  core::Date named{};              // the day that names it
  std::optional<std::string> category;
  std::optional<core::TextFilter> text;
  Format format = Format::kText;
};

Outcome ParseGrid(const Arguments& arguments, Selection& selection) {
  const bool month = arguments.Has("month");
  Outcome parsed = month ? ParseMonth("month", arguments.Value("month"), selection.named)
                         : ParseDate("week", arguments.Value("week"), selection.named);
  if (!parsed.IsDone()) return parsed;
  selection.shape = month ? GridShape::kMonth : GridShape::kWeek;
  GridDays(*selection.shape, selection.named, selection.from, selection.to);
  return {};
}

Outcome ParseDays(const Arguments& arguments, Selection& selection) {
  const bool day = arguments.Has("day");
  const bool range = arguments.Has("from") || arguments.Has("to");
  const bool grid = arguments.Has("month") || arguments.Has("week");
  selection.all = arguments.Has("all");
  if (day + range + arguments.Has("month") + arguments.Has("week") + selection.all != 1 ||
      arguments.Has("from") != arguments.Has("to")) {
    return Fail(kUsage, "list takes one of --day D, --from D --to D, --month M, --week D and --all");
  }
  if (selection.all) return {};
  if (grid) return ParseGrid(arguments, selection);
  const char* first = day ? "day" : "from";
  const char* last = day ? "day" : "to";
  Outcome parsed = ParseDate(first, arguments.Value(first), selection.from);
  if (parsed.IsDone()) parsed = ParseDate(last, arguments.Value(last), selection.to);
  if (!parsed.IsDone() || core::DayIndex(selection.from) <= core::DayIndex(selection.to)) return parsed;
  return Fail(kUsage, "--from lies after --to");
}

Outcome ParseFilter(const Arguments& arguments, Selection& selection) {
  if (arguments.Has("find")) {
    std::string text;
    Outcome parsed = ParseText("find", arguments.Value("find"), core::TextFilter::kMostText, false, text);
    if (!parsed.IsDone()) return parsed;
    selection.text.emplace(text);
  }
  if (!arguments.Has("category")) return {};
  selection.category.emplace();
  return ParseText("category", arguments.Value("category"), sizeof(core::RecordHeader::category), true,
                   *selection.category);
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
    if (selection.all) {
      ListAll();
    } else if (const core::DayTable* days = FindDays(); days == nullptr) {
      complete = false;
    } else if (selection.shape && selection.format == Format::kText) {
      ListGrid(*days);
    } else {
      ListDays(*days);
    }
    return complete;
  }

 private:
  void ListAll();
  const core::DayTable* FindDays();
  bool IsWanted(const core::RecordKey& key) const;
  void ListDays(const core::DayTable& days);
  void ListGrid(const core::DayTable& days);
  bool Read(const core::RecordKey& key, Appointment& record);
  void WriteRow(Table& table, const core::RecordKey& key, const core::Date& date);
  std::vector<Column> Columns() const;

  const core::RecordFile& file;
  const Selection& selection;
  Output& output;
  const core::Access level;
  bool complete = true;
  // The records whose texts are wanted, by their offsets; only where a text is looked for.
  std::unordered_map<std::int32_t, std::uint64_t> found;
  std::size_t categoryWidth = 0;
};

void Lister::ListAll() {
  std::vector<Candidate> records;
  const core::ScanResult scanned = core::ScanRecords(file, [&](const char* slot, std::int32_t offset) {
    const auto& record = *reinterpret_cast<const Appointment*>(slot);
    if (selection.text && !selection.text->Matches(record)) return;
    if (selection.category && !core::IsOfCategory(record, *selection.category)) return;
    records.push_back({{offset, record.header.recordId},
                       core::DayIndex(record.date),
                       core::kDayOrder.key(slot),
                       record.date});
    categoryWidth = std::max(categoryWidth, core::ReadText(record.header.category).size());
  });
  complete = scanned == core::ScanResult::kAll;
  std::sort(records.begin(), records.end(), InOrder);
  Table table(output, selection.format, Columns());
  for (const Candidate& candidate : records) WriteRow(table, candidate.record, candidate.date);
  table.End();
}

// The table of the days, after the texts were looked through; null when there is none.
const core::DayTable* Lister::FindDays() {
  if (selection.text) {
    const core::ScanResult scanned = core::ScanRecords(file, [this](const char* slot, std::int32_t offset) {
      const auto& record = *reinterpret_cast<const Appointment*>(slot);
      if (selection.text->Matches(record)) found[offset] = record.header.recordId;
    });
    complete = scanned == core::ScanResult::kAll;
  }
  const core::DayTable* days = core::DayTable::Of(file);
  if (days == nullptr) return nullptr;
  complete = complete && days->IsWhole();
  categoryWidth = days->LongestCategory();
  return days;
}

bool Lister::IsWanted(const core::RecordKey& key) const {
  if (!selection.text) return true;
  const auto at = found.find(key.offset);
  return at != found.end() && at->second == key.id;
}

// As many days at a time as the table answers for.
void Lister::ListDays(const core::DayTable& days) {
  Table table(output, selection.format, Columns());
  core::Date date = selection.from;
  int left = core::DayIndex(selection.to) - core::DayIndex(selection.from) + 1;
  while (left > 0 && !output.Failed()) {
    const int count = std::min(left, core::kMostOccurrenceDays);
    for (const std::vector<core::RecordKey>& day : days.Days(date, count, selection.category)) {
      for (const core::RecordKey& key : day) {
        if (IsWanted(key)) WriteRow(table, key, date);
      }
      core::NextDay(date);
    }
    left -= count;
  }
  table.End();
}

void Lister::ListGrid(const core::DayTable& days) {
  const int count = core::DayIndex(selection.to) - core::DayIndex(selection.from) + 1;
  std::vector<GridDay> boxes;
  core::Date date = selection.from;
  for (const std::vector<core::RecordKey>& day : days.Days(selection.from, count, selection.category)) {
    GridDay box{std::to_string(date.day), {}};
    if (*selection.shape == GridShape::kWeek) box.head.append(" ").append(core::WeekdayName(date));
    for (const core::RecordKey& key : day) {
      Appointment record;
      if (!IsWanted(key) || !Read(key, record)) continue;
      std::string line;
      if (record.allDay == 0) line.append(TimeCell(record.startTime).text).append(" ");
      box.lines.push_back(line.append(FromStored(core::ReadText(record.subject))));
    }
    boxes.push_back(std::move(box));
    core::NextDay(date);
  }
  WriteGrid(output, *selection.shape, selection.named, selection.from, boxes);
}

// Others may have deleted the record meanwhile and put another one into its slot.
bool Lister::Read(const core::RecordKey& key, Appointment& record) {
  if (!file.ReadSlot(&record, key.offset)) {
    complete = false;
    return false;
  }
  return MaySee(record.header, level) && record.header.recordId == key.id;
}

void Lister::WriteRow(Table& table, const core::RecordKey& key, const core::Date& date) {
  Appointment record;
  if (output.Failed() || !Read(key, record)) return;
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
  table.Row({id, Cell::Number(key.offset), DateCell(date), start, end, Cell::Bool(record.allDay != 0),
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
  if (outcome.IsDone()) outcome = ParseFilter(arguments, selection);
  if (outcome.IsDone()) outcome = ParseFormat("format", arguments.Value("format"), selection.format);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenCalendarToRead(arguments, file);
  if (!outcome.IsDone()) return outcome;
  if (Lister(*file, selection, output).Run()) return {};
  return FailOn(arguments.file, kFile, "Parts of it cannot be read; the list lacks them.");
}

}  // namespace cli
