#include "core/calendar/day_table.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>

#include "core/calendar/repeat_rule.h"
#include "core/store/record_scan.h"
#include "core/store/value_compare.h"
#include "platform/system/clock.h"

namespace core {
namespace {

// For how long writes to a file may leave it with the time that it has: a tick of the system's clock, or what
// file systems keep in whole seconds, and servers until they get to it.
std::int64_t TickOf(const RecordFile& file, const platform::FileState& state) {
  constexpr std::int64_t kSecond = 1'000'000'000;
  return state.writtenNs % kSecond == 0 || !file.Opened().LocksReach() ? 3000 : 100;
}

}  // namespace

const DayTable* DayTable::Of(const RecordFile& file) {
  if (file.SlotSize() != sizeof(Appointment)) return nullptr;
  std::unique_ptr<RecordFile::Kept>& kept = file.KeptBeside();
  if (kept == nullptr) kept = std::make_unique<DayTable>();
  auto& table = static_cast<DayTable&>(*kept);  // nothing else is kept beside a calendar
  return table.Look(file) ? &table : nullptr;
}

// A record that is written in the tick of the last write before it, by somebody who dies before he counts it,
// leaves a file that looks the same. So a table counts only if its pass began when that tick was over: the
// first one after a change serves the call that it was made for, and a later one all that follow.
bool DayTable::Look(const RecordFile& file) {
  platform::FileState now;
  HeaderBlock header;
  if (!file.LookAt(now, header)) return false;
  level = file.LevelIn(header);
  if (level == Access::kNone) return false;
  const std::int64_t tick = platform::TickMs();
  if (now != state || header.changeCounter != counter) {
    proven = false;
    state = now;
    counter = header.changeCounter;
    seenSince = tick;
  }
  if (proven) return true;
  if (!Make(file)) return false;
  proven = whole && tick - seenSince >= TickOf(file, state);
  return true;
}

bool DayTable::Make(const RecordFile& file) {
  singleDays.clear();
  single.clear();
  repeating.clear();
  alarms.clear();
  longestCategory = 0;
  const ScanResult scanned = ScanLiveSlots(file, [this](const char* slot, std::int32_t offset) {
    Add(*reinterpret_cast<const Appointment*>(slot), offset);
  });
  whole = scanned == ScanResult::kAll;
  return scanned != ScanResult::kFailed;
}

void DayTable::Add(const Appointment& appointment, std::int32_t offset) {
  Entry entry;
  entry.record = {offset, appointment.header.recordId};
  entry.order = static_cast<std::uint16_t>(kDayOrder.key(&appointment));
  entry.confidential = appointment.header.confidential == 1;
  std::memcpy(entry.category, appointment.header.category, sizeof entry.category);
  longestCategory = std::max(longestCategory, ReadText(entry.category).size());
  if (HasRepeat(appointment)) {
    repeating.push_back({entry, appointment.date, appointment.repeat});
  } else {
    single.push_back(entry);
    singleDays.push_back(StoredDayIndex(appointment.date));
  }
  if (appointment.alarmOn != 1) return;
  alarms.push_back({entry.record, appointment.date, appointment.alarmDate, appointment.alarmTime,
                    appointment.alarmDaysBefore, HasRepeat(appointment), entry.confidential});
}

std::vector<std::vector<RecordKey>> DayTable::Days(const Date& first, int count,
                                                   std::optional<std::string_view> category) const {
  std::vector<std::vector<const Entry*>> fall(static_cast<std::size_t>(count));
  const std::string wanted(category.value_or(""));
  const auto add = [&](int day, const Entry& entry) {
    constexpr std::size_t kSize = sizeof entry.category;
    if (!Shows(entry.confidential)) return;
    if (category && CompareText(entry.category, wanted.c_str(), kSize) != 0) return;
    fall[static_cast<std::size_t>(day)].push_back(&entry);
  };
  const int from = DayIndex(first);
  const int days = from < 0 ? 0 : std::min(count, DayIndex(LastDate()) - from + 1);
  for (std::size_t i = 0; i < single.size(); ++i) {
    const int day = singleDays[i] - from;
    if (day >= 0 && day < days) add(day, single[i]);
  }
  for (const Repeating& rule : repeating) {
    if (days == 0) break;
    std::uint64_t on = OccurrenceDays(rule.date, rule.rule, first, days);
    for (; on != 0; on &= on - 1) add(std::countr_zero(on), rule.entry);
  }
  std::vector<std::vector<RecordKey>> keys(fall.size());
  for (std::size_t i = 0; i < fall.size(); ++i) {
    std::sort(fall[i].begin(), fall[i].end(), [](const Entry* a, const Entry* b) {
      return a->order != b->order ? a->order < b->order : a->record.offset < b->record.offset;
    });
    keys[i].reserve(fall[i].size());
    for (const Entry* entry : fall[i]) keys[i].push_back(entry->record);
  }
  return keys;
}

void DayTable::VisitAlarms(const std::function<void(const Alarm& alarm)>& visit) const {
  for (const Alarm& alarm : alarms) {
    if (Shows(alarm.confidential)) visit(alarm);
  }
}

}  // namespace core
