// The commands that tell about a whole file: info and check.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/calendar/categories.h"
#include "core/calendar/file_check.h"
#include "core/events/people_check.h"
#include "core/store/file_messages.h"

namespace cli {
namespace {

struct Counts {
  std::int64_t records = 0;
  std::int64_t free = 0;
  std::int64_t confidential = 0;
  std::int64_t locked = 0;
  bool complete = true;
};

// Counts the slots of a file of any kind; of confidential records only for who may see them.
Counts CountSlots(const core::RecordFile& file, core::Access level) {
  Counts counts;
  const auto slotSize = static_cast<std::int64_t>(file.SlotSize());
  const std::int64_t end = std::min(file.SlotsEnd(), core::kOffsetsEnd);
  std::vector<char> slots(core::kSlotsPerRead * file.SlotSize());
  for (std::int64_t offset = file.FirstSlotOffset(); offset < end; offset += std::ssize(slots)) {
    const int count = file.ReadSlots(slots.data(), offset);
    if (count < std::min<std::int64_t>((end - offset) / slotSize, core::kSlotsPerRead))
      counts.complete = false;
    for (int i = 0; i < count; ++i) {
      core::RecordHeader record;
      std::memcpy(&record, slots.data() + i * slotSize, sizeof record);
      counts.free += record.inUse == 0 ? 1 : 0;
      if (!MaySee(record, level)) continue;
      ++counts.records;
      counts.confidential += record.confidential == 1 ? 1 : 0;
      counts.locked += record.editLock == 1 ? 1 : 0;
    }
  }
  return counts;
}

std::string LevelName(core::Access level) {
  switch (level) {
    case core::Access::kOwner:
      return "Owner";
    case core::Access::kAssistant:
      return "Assistant";
    case core::Access::kReader:
      return "Reader";
    case core::Access::kNone:
      break;
  }
  return "none";
}

// None when they cannot be read.
Cell CategoryNames(const core::RecordFile& file) {
  core::CategoryList list;
  if (!core::ReadCategories(file, list)) return {};
  std::vector<std::string> names;
  for (const std::string& name : list.names) names.push_back(FromStored(name));
  return Cell::List(std::move(names));
}

}  // namespace

Outcome InfoCommand(const Arguments& arguments, Output& output) {
  Format format = Format::kText;
  Outcome outcome = ParseFormat("format", arguments.Value("format"), format);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenToRead(arguments, file);
  if (!outcome.IsDone()) return outcome;
  core::HeaderBlock header;
  if (!file->ReadHeaderBlock(header)) return FailOn(arguments.file, kFile, "It cannot be read.");
  const core::Access level = file->AccessLevel();
  const Counts counts = CountSlots(*file, level);
  const Cell categories = CategoryNames(*file);
  const bool owner = level == core::Access::kOwner;
  const std::pair<const char*, Cell> values[] = {
      {"file", Cell::Text(arguments.file)},
      {"kind", Cell::Text(FromStored(core::ReadText(header.kind)))},
      {"level", Cell::Text(LevelName(level))},
      {"owner", Cell::Text(FromStored(core::ReadText(header.ownerIdentity.userName)))},
      {"ownerPassword", Cell::Bool(!core::ReadText(header.ownerPassword).empty())},
      {"assistantPassword", Cell::Bool(!core::ReadText(header.assistantPassword).empty())},
      {"readerPassword", Cell::Bool(!core::ReadText(header.readerPassword).empty())},
      {"records", Cell::Number(counts.records)},
      {"confidential", owner ? Cell::Number(counts.confidential) : Cell()},
      {"locked", Cell::Number(counts.locked)},
      {"freeSlots", Cell::Number(counts.free)},
      {"freeSlotBalance", Cell::Number(header.freeSlotBalance)},
      {"changeCounter", {Cell::kNumber, std::to_string(header.changeCounter)}},
      {"openCount", Cell::Number(header.openCount)},
      {"usedByOthers", Cell::Bool(file->UsedByOthers())},
      {"categories", categories},
  };
  std::vector<Column> columns;
  std::vector<Cell> cells;
  for (const auto& [name, cell] : values) {
    columns.push_back({name});
    cells.push_back(cell);
  }
  WriteObject(output, format, columns, cells);
  return counts.complete && categories.kind == Cell::kList
             ? Outcome{}
             : FailOn(arguments.file, kFile, "Parts of it cannot be read.");
}

Outcome CheckCommand(const Arguments& arguments, Output& output) {
  Format format = Format::kText;
  Outcome outcome = ParseFormat("format", arguments.Value("format"), format);
  if (!outcome.IsDone()) return outcome;
  std::int64_t count = 0;
  Table table(output, format, {{"offset", 10}, {"where", 14}, {"what"}});
  const auto report = [&](const core::Finding& finding) {
    ++count;
    table.Row({Cell::Number(finding.offset), Cell::Text(finding.where), Cell::Text(finding.what)});
    return !output.Failed();
  };
  const core::OpenError error = core::CheckFile(arguments.file, report);
  if (!output.Failed()) core::CheckPeople(arguments.file, report);
  table.End();
  if (error != core::OpenError::kNone) {
    return FailOn(arguments.file, CodeOf(error), core::DescribeOpenError(arguments.file, error));
  }
  if (count == 0) return {};
  return FailOn(
      arguments.file, kFile,
      count == 1 ? "One thing is wrong with it." : std::to_string(count) + " things are wrong with it.");
}

}  // namespace cli
