#include "calendar/views/day_cells.h"

#include "core/calendar/appointment.h"
#include "core/time_texts.h"

namespace {

std::string LineOf(const core::Appointment& record) {
  const std::string_view subject = core::ReadText(record.subject);
  if (record.allDay != 0) return std::string(subject);
  return core::FormatTimeCompact(record.startTime).append(" ").append(subject);
}

}  // namespace

void DayCells::List(const core::RecordFile& file, const core::Date& first, int count,
                    std::string_view category) {
  Clear();
  // A list that was not made is shown as far as it goes, and tried again by the file watch.
  if (count > 0) static_cast<void>(lists.Run(file, first, count, category));
}

bool DayCells::Refresh(const core::RecordFile& file) {
  bool tried = false;
  // One that fails leaves other days as well.
  static_cast<void>(lists.RefreshIfChanged(file, [&tried] { tried = true; }));
  if (!tried) return false;
  texts.clear();
  shown.clear();
  return true;
}

void DayCells::Clear() {
  lists.Clear();
  texts.clear();
  shown.clear();
}

void DayCells::ReadLines(const core::RecordFile& file, int linesPerDay) {
  shown.assign(static_cast<std::size_t>(lists.DayCount()), {});
  if (shown.empty()) return;
  const auto wanted = static_cast<std::size_t>(linesPerDay);
  level = file.AccessLevel();
  for (std::size_t day = 0; day < shown.size(); ++day) {
    for (const core::RecordKey& key : lists.Day(static_cast<int>(day))) {
      if (shown[day].size() >= wanted) break;
      if (const std::string* line = Line(file, key)) shown[day].push_back(line);
    }
  }
}

const std::vector<const std::string*>& DayCells::Lines(int day) const {
  static const std::vector<const std::string*> none;
  const auto index = static_cast<std::size_t>(day);
  return index < shown.size() ? shown[index] : none;
}

std::vector<std::string> DayCells::AllLines(const core::RecordFile& file, int day) {
  std::vector<std::string> lines;
  if (day >= lists.DayCount()) return lines;
  level = file.AccessLevel();
  for (const core::RecordKey& key : lists.Day(day)) {
    if (const std::string* line = Line(file, key)) lines.push_back(*line);
  }
  return lines;
}

// Null for a record that cannot be read, or is the owner's alone since it was listed.
const std::string* DayCells::Line(const core::RecordFile& file, const core::RecordKey& key) {
  const auto [entry, isNew] = texts.try_emplace(key.offset);
  if (isNew) {
    core::Appointment record;
    const bool readable = file.ReadRecord(&record, key) && level != core::Access::kNone &&
                          (record.header.confidential != 1 || level == core::Access::kOwner);
    if (readable) entry->second = LineOf(record);
  }
  return entry->second ? &*entry->second : nullptr;
}
