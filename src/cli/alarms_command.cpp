// The command alarms: what is due, in the order in which it rings, and what rings next.
#include <algorithm>
#include <memory>
#include <vector>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/calendar/alarm_schedule.h"

namespace cli {
namespace {

using Cells = std::vector<Cell>;
constexpr std::size_t kSubject = 4;  // its place among them

// Nothing for a record that others have deleted since it was listed.
Cells CellsOf(const core::RecordFile& file, const core::RecordKey& key, bool due, bool forPeople) {
  core::Appointment record;
  if (!file.ReadRecord(&record, key) || !MaySee(record.header, file.AccessLevel())) return {};
  const core::AlarmMoment ring = core::RingMoment(record);
  const std::string_view target = core::ReadText(record.alarmStartTarget);
  return {Cell::Text(FormatId(key.id)),
          forPeople ? Cell::Text(due ? "due" : "next") : Cell::Bool(due),
          DateCell(ring.date),
          TimeCell(ring.time),
          Cell::Text(FromStored(core::ReadText(record.subject))),
          forPeople && target.empty() ? Cell{} : Cell::Text(FromStored(target))};
}

}  // namespace

Outcome AlarmsCommand(const Arguments& arguments, Output& output) {
  core::AlarmMoment at = core::AlarmNow();
  Format format = Format::kText;
  Outcome outcome = arguments.Has("at") ? ParseMoment("at", arguments.Value("at"), at) : Outcome{};
  if (outcome.IsDone()) outcome = ParseFormat("format", arguments.Value("format"), format);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenCalendarToRead(arguments, file);
  if (!outcome.IsDone()) return outcome;
  core::AlarmList alarms;
  const bool listed = core::ListAlarms(*file, at, alarms) && alarms.whole;
  const bool forPeople = format == Format::kText;
  std::vector<Cells> rows;
  for (const core::RecordKey& key : alarms.due) rows.push_back(CellsOf(*file, key, true, forPeople));
  if (!alarms.next.IsNone()) rows.push_back(CellsOf(*file, alarms.next, false, forPeople));
  std::erase_if(rows, [](const Cells& cells) { return cells.empty(); });
  std::size_t width = 0;
  for (const Cells& cells : rows) width = std::max(width, CharacterCount(cells[kSubject].text));
  Table table(output, format,
              {{"id", 16}, {"due", 4}, {"ring", 10}, {"time", 5}, {"subject", width}, {"target"}});
  for (const Cells& cells : rows) table.Row(cells);
  table.End();
  if (listed) return {};
  return FailOn(arguments.file, kFile, "Parts of it cannot be read; the list lacks them.");
}

}  // namespace cli
