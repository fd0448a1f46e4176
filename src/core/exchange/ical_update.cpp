// Writing an update to the calendar.
#include "core/exchange/ical_update.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <utility>

#include "core/store/edit_lock.h"
#include "core/store/record_scan.h"

namespace core {
namespace {

// Records that are added or changed under one guard; of an event that has more, all.
constexpr std::size_t kBatch = 256;
// How often an addition is compared anew when others change the calendar all the time.
constexpr int kTries = 20;

void TakeContent(const Appointment& planned, Appointment& record) {
  std::memcpy(record.header.category, planned.header.category, sizeof record.header.category);
  record.header.confidential = planned.header.confidential;
  record.alarmOn = planned.alarmOn;
  record.alarmTime = planned.alarmTime;
  record.alarmDate = planned.alarmDate;
  record.alarmDaysBefore = planned.alarmDaysBefore;
  record.alarmState = 0;
  record.attachmentKind = planned.attachmentKind;
  std::memcpy(record.attachment, planned.attachment, sizeof record.attachment);
  record.repeat = planned.repeat;
  record.date = planned.date;
  record.startTime = planned.startTime;
  record.endTime = planned.endTime;
  record.allDay = planned.allDay;
  std::memcpy(record.subject, planned.subject, sizeof record.subject);
  std::memcpy(record.notes, planned.notes, sizeof record.notes);
  // The mark of another event, as which it came here first, is the one to find it by.
  const std::uint64_t uid = record.importMark.uid;
  if (uid == 0 || uid == planned.importMark.uid) record.importMark = planned.importMark;
}

class Updater {
 public:
  Updater(RecordFile& file, IcalUpdate& wanted, const ExchangeProgress& watcher)
      : calendar(file), update(wanted), progress(watcher) {}
  IcalUpdateResult Run();

 private:
  bool AddAll();
  void GatherBatch(std::size_t& next);
  bool AddBatch();
  bool FillBatch();
  bool CompareAnew();
  void TakeBack(std::size_t from, std::size_t end);
  bool ChangeAll();
  bool DeleteAll();
  bool Judge(CommandResult came);
  bool GoesOn(std::size_t count);
  const Appointment& Planned(std::size_t step) const { return update.plan.records[step].record; }
  std::uint64_t UidOf(std::size_t step) const { return Planned(step).importMark.uid; }

  RecordFile& calendar;
  IcalUpdate& update;
  const ExchangeProgress& progress;
  std::vector<std::size_t> waiting;  // steps of the batch
  std::vector<Appointment> batch;
  std::int64_t done = 0;
  std::int64_t whole = 0;
  IcalUpdateResult result;
};

IcalUpdateResult Updater::Run() {
  result.result = CheckMayChange(calendar);
  if (result.result != CommandResult::kDone) return result;
  whole = static_cast<std::int64_t>(update.Count(IcalFate::kAdd) + update.Count(IcalFate::kChange) +
                                    update.Count(IcalFate::kDelete));
  if (GoesOn(0) && AddAll() && ChangeAll()) static_cast<void>(DeleteAll());
  if (result.added + result.changed + result.deleted != 0) result.result = Flush(calendar, result.result);
  return result;
}

bool Updater::Judge(CommandResult came) {
  result.result = WorseOf(result.result, came);
  return IsMade(came);
}

bool Updater::GoesOn(std::size_t count) {
  done += static_cast<std::int64_t>(count);
  result.cancelled = progress && !progress(std::min(done, whole), whole);
  return !result.cancelled;
}

bool Updater::AddAll() {
  for (std::size_t next = 0; next < update.steps.size();) {
    GatherBatch(next);
    const std::size_t count = waiting.size();
    if (count != 0 && (!AddBatch() || !GoesOn(count))) return false;
  }
  return true;
}

// From step `next` on what is to be added of whole events.
void Updater::GatherBatch(std::size_t& next) {
  waiting.clear();
  for (; next < update.steps.size(); ++next) {
    const bool begins = next == 0 || UidOf(next) != UidOf(next - 1);
    if (begins && waiting.size() >= kBatch) return;
    if (update.steps[next].fate == IcalFate::kAdd) waiting.push_back(next);
  }
}

bool Updater::AddBatch() {
  CommandResult came = CommandResult::kFailed;
  std::size_t added = 0;
  for (int i = 0; i <= kTries; ++i) {
    if (!FillBatch()) return Judge(CommandResult::kFailed);
    if (waiting.empty()) return true;
    // Somebody may just be importing the same file.
    std::uint64_t* const unchanged = i < kTries ? &update.counter : nullptr;
    came = FromFile(calendar, calendar.AddRecords(batch.data(), batch.size(), added, unchanged));
    if (came != CommandResult::kFailed || calendar.LastFault() != FileFault::kChanged) break;
    if (!CompareAnew()) return false;
  }
  if (!IsMade(came)) {
    std::size_t events = added;  // pieces of whole events
    while (events > 0 && events < waiting.size() && UidOf(waiting[events]) == UidOf(waiting[events - 1])) {
      --events;
    }
    TakeBack(events, added);
    added = events;
  }
  result.added += added;
  return Judge(came);
}

// Makes the records of the steps that are still to be added.
bool Updater::FillBatch() {
  Appointment blank;
  if (!NewAppointment(calendar, blank)) return false;
  const bool owner = calendar.AccessLevel() == Access::kOwner;
  std::erase_if(waiting, [this, owner](std::size_t index) {
    IcalStep& step = update.steps[index];
    if (!owner && Planned(index).header.confidential == 1) step.fate = IcalFate::kOwners;
    return step.fate != IcalFate::kAdd;
  });
  batch.assign(waiting.size(), blank);
  for (std::size_t i = 0; i < waiting.size(); ++i) {
    const std::uint64_t id = update.steps[waiting[i]].key.id;
    batch[i].header.recordId = id != 0 ? id : NewRecordId();
    TakeContent(Planned(waiting[i]), batch[i]);
    batch[i].alarmStartKind = kAlarmStartsDocument;
    SettleAlarm(batch[i]);
  }
  return true;
}

// What others have added since is not added again. All else was looked at as it was then, and is compared
// with that when its turn comes.
bool Updater::CompareAnew() {
  IcalUpdate fresh;
  const CommandResult compared = CompareWithCalendar(calendar, std::move(update.plan), fresh);
  update.plan = std::move(fresh.plan);
  if (compared != CommandResult::kDone) return Judge(compared);
  update.counter = fresh.counter;
  // From the batch on nothing has been added yet.
  for (std::size_t i = waiting.front(); i < update.steps.size(); ++i) {
    IcalStep& step = update.steps[i];
    if (step.fate != IcalFate::kAdd) continue;
    step = fresh.steps[i];
    if (step.fate == IcalFate::kChange) step.fate = IcalFate::kLocked;
  }
  return true;
}

// Deletes the first pieces of an event whose others found no room.
void Updater::TakeBack(std::size_t from, std::size_t end) {
  std::unordered_set<std::uint64_t> ids;
  for (std::size_t i = from; i < end; ++i) {
    const std::uint64_t id = batch[i].header.recordId;
    ids.insert(id);
  }
  if (ids.empty()) return;
  std::vector<RecordKey> keys;
  static_cast<void>(ScanLiveSlots(calendar, [&](const char* slot, std::int32_t offset) {
    const std::uint64_t id = reinterpret_cast<const Appointment*>(slot)->header.recordId;
    if (ids.contains(id)) keys.push_back({offset, id});
  }));
  std::size_t deleted = 0;
  static_cast<void>(calendar.ChangeRecords(
      keys,
      [](std::size_t /*index*/, void* slot) {
        const bool idle = slot != nullptr && static_cast<Appointment*>(slot)->header.editLock == 0;
        return idle ? RecordFile::SlotFate::kDeleted : RecordFile::SlotFate::kStays;
      },
      deleted));
}

// Whether the record is still what it was when it was compared, and nobody edits it.
bool IsUntouched(const Appointment* record, std::uint64_t seen) {
  return record != nullptr && record->header.editLock == 0 && SeenHash(*record) == seen;
}

bool Updater::ChangeAll() {
  std::vector<RecordKey> keys;
  for (std::size_t next = 0; next < update.steps.size();) {
    waiting.clear();
    keys.clear();
    for (; next < update.steps.size() && waiting.size() < kBatch; ++next) {
      if (update.steps[next].fate != IcalFate::kChange) continue;
      waiting.push_back(next);
      keys.push_back(update.steps[next].key);
    }
    if (keys.empty()) break;
    const bool owner = calendar.AccessLevel() == Access::kOwner;
    const auto judge = [this, owner](std::size_t index, void* slot) {
      auto* const record = static_cast<Appointment*>(slot);
      IcalStep& step = update.steps[waiting[index]];
      const Appointment& planned = Planned(waiting[index]);
      if (!IsUntouched(record, step.seen)) step.fate = IcalFate::kLocked;
      if (!owner && planned.header.confidential == 1) step.fate = IcalFate::kOwners;
      if (step.fate != IcalFate::kChange) return RecordFile::SlotFate::kStays;
      TakeContent(planned, *record);
      return RecordFile::SlotFate::kWritten;
    };
    std::size_t changed = 0;
    const CommandResult came = FromFile(calendar, calendar.ChangeRecords(keys, judge, changed));
    result.changed += changed;
    if (!Judge(came) || !GoesOn(keys.size())) return false;
  }
  return true;
}

bool Updater::DeleteAll() {
  std::vector<IcalLeftover>& leftovers = update.leftovers;
  for (std::size_t first = 0; first < leftovers.size(); first += kBatch) {
    std::vector<RecordKey> keys;
    for (std::size_t i = first; i < std::min(first + kBatch, leftovers.size()); ++i) {
      keys.push_back(leftovers[i].key);
    }
    const auto judge = [&](std::size_t index, void* slot) {
      IcalLeftover& leftover = leftovers[first + index];
      if (leftover.fate == IcalFate::kDelete &&
          !IsUntouched(static_cast<Appointment*>(slot), leftover.seen)) {
        leftover.fate = IcalFate::kLocked;
      }
      return leftover.fate == IcalFate::kDelete ? RecordFile::SlotFate::kDeleted
                                                : RecordFile::SlotFate::kStays;
    };
    std::size_t deleted = 0;
    const CommandResult came = FromFile(calendar, calendar.ChangeRecords(keys, judge, deleted));
    result.deleted += deleted;
    if (!Judge(came) || !GoesOn(keys.size())) return false;
  }
  return true;
}

}  // namespace

IcalUpdateResult ApplyUpdate(RecordFile& calendar, IcalUpdate& update, const ExchangeProgress& progress) {
  return Updater(calendar, update, progress).Run();
}

}  // namespace core
