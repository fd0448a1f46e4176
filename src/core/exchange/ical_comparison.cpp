#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "core/calendar/repeat_rule.h"
#include "core/exchange/ical_update.h"
#include "core/store/edit_lock.h"
#include "core/store/record_scan.h"

namespace core {
namespace {

bool SameDay(const std::optional<Date>& a, const std::optional<Date>& b) {
  return a.has_value() == b.has_value() && (!a || IsSameDate(*a, *b));
}

bool SameDays(const Appointment& a, const Appointment& b) {
  if (a.repeat.repeatType != b.repeat.repeatType || !SameDay(FirstOccurrence(a), FirstOccurrence(b))) {
    return false;
  }
  if (!HasRepeat(a)) return true;
  return a.repeat.repeatEvery == b.repeat.repeatEvery && a.repeat.repeatParam == b.repeat.repeatParam &&
         SameDay(LastOccurrence(a), LastOccurrence(b));
}

bool SameTimes(const Appointment& a, const Appointment& b) {
  if (a.allDay != 0 || b.allDay != 0) return (a.allDay != 0) == (b.allDay != 0);
  const auto end = [](const Appointment& record) {
    return std::max(TimeSlot(record.startTime), TimeSlot(record.endTime));
  };
  return TimeSlot(a.startTime) == TimeSlot(b.startTime) && end(a) == end(b);
}

bool SameAlarm(const Appointment& a, const Appointment& b) {
  if (a.alarmOn != 1 || b.alarmOn != 1) return (a.alarmOn == 1) == (b.alarmOn == 1);
  return TimeSlot(a.alarmTime) == TimeSlot(b.alarmTime) && a.alarmDaysBefore == b.alarmDaysBefore;
}

bool SameAttachment(const Appointment& a, const Appointment& b) {
  if (!HasAttachment(a) || !HasAttachment(b)) return HasAttachment(a) == HasAttachment(b);
  return a.attachmentKind == b.attachmentKind && ReadText(a.attachment) == ReadText(b.attachment);
}

// Whether the two are the same in all that a file can say.
bool SameContent(const Appointment& a, const Appointment& b) {
  return ReadText(a.subject) == ReadText(b.subject) && ReadText(a.notes) == ReadText(b.notes) &&
         ReadText(a.header.category) == ReadText(b.header.category) &&
         (a.header.confidential == 1) == (b.header.confidential == 1) && SameTimes(a, b) && SameDays(a, b) &&
         SameAlarm(a, b) && SameAttachment(a, b);
}

// A record of the calendar that belongs to an event of the plan.
struct Found {
  RecordKey key;
  ImportMark mark;
  bool marked;   // as a piece of the event; else it is the appointment that was exported
  bool same;     // of that one: nothing has to be written
  bool event;    // an internet event
  bool hidden;   // from this user
  bool matched;  // with a planned record
  std::uint64_t seen;
  Date date;
  std::string subject;
};

// An event of the plan.
struct Event {
  std::vector<std::size_t> planned;  // its pieces
  std::vector<Found> found;
  std::vector<Found*> matches;  // for each piece what it was before, or null
};

class Comparison {
 public:
  Comparison(const RecordFile& file, IcalUpdate& into) : calendar(file), update(into) {}
  CommandResult Run();

 private:
  void Collect(const Appointment& record, std::int32_t offset);
  void Add(Event& event, const Appointment& record, std::int32_t offset, bool marked);
  void Match(Event& event);
  bool WasReadBefore(const Event& event) const;
  bool IsOlder(const Event& event) const;
  void Decide(Event& event);
  void Settle(const Event& event, std::size_t piece, IcalFate fate);
  const Appointment& Planned(std::size_t index) const { return update.plan.records[index].record; }
  bool IsOwn(const Event& event) const { return update.plan.records[event.planned.front()].ownUid; }

  const RecordFile& calendar;
  IcalUpdate& update;
  Access level = Access::kNone;
  std::unordered_map<std::uint64_t, Event> events;  // by UID
  std::vector<std::uint64_t> order;                 // of the plan
};

CommandResult Comparison::Run() {
  const CommandResult allowed = CheckMayChange(calendar);
  if (allowed != CommandResult::kDone) return allowed;
  if (calendar.SlotSize() != sizeof(Appointment)) return CommandResult::kFailed;
  level = calendar.AccessLevel();
  // A change during the pass makes ApplyUpdate look again.
  if (!calendar.ReadChangeCounter(update.counter)) return CommandResult::kFailed;
  for (std::size_t i = 0; i < update.plan.records.size(); ++i) {
    const std::uint64_t uid = Planned(i).importMark.uid;
    Event& event = events[uid];
    if (event.planned.empty()) order.push_back(uid);
    event.planned.push_back(i);
  }
  const ScanResult scanned = ScanLiveSlots(calendar, [this](const char* slot, std::int32_t offset) {
    Collect(*reinterpret_cast<const Appointment*>(slot), offset);
  });
  if (scanned != ScanResult::kAll) return CommandResult::kFailed;
  update.steps.resize(update.plan.records.size());
  for (const std::uint64_t uid : order) Decide(events[uid]);
  std::sort(update.leftovers.begin(), update.leftovers.end(),
            [](const IcalLeftover& a, const IcalLeftover& b) { return a.key.offset < b.key.offset; });
  return CommandResult::kDone;
}

void Comparison::Collect(const Appointment& record, std::int32_t offset) {
  const ImportMark mark = record.importMark;
  const auto marked = mark.uid == 0 ? events.end() : events.find(mark.uid);
  if (marked != events.end()) Add(marked->second, record, offset, true);
  const std::uint64_t id = record.header.recordId;
  const auto exported = events.find(id);
  if (exported != events.end() && exported != marked && IsOwn(exported->second)) {
    Add(exported->second, record, offset, false);
  }
}

void Comparison::Add(Event& event, const Appointment& record, std::int32_t offset, bool marked) {
  // Of several records with one id, in a damaged file, the first was exported under it alone.
  const auto unmarked = [](const Found& found) { return !found.marked; };
  if (!marked && std::any_of(event.found.begin(), event.found.end(), unmarked)) return;
  Found found{};
  found.key = {offset, record.header.recordId};
  found.mark = record.importMark;
  found.marked = marked;
  found.same = !marked && event.planned.size() == 1 && SameContent(record, Planned(event.planned.front()));
  found.event = IsInternetEvent(record);
  found.hidden = record.header.confidential == 1 && level != Access::kOwner;
  found.seen = SeenHash(record);
  found.date = record.date;
  found.subject = ReadText(record.subject);
  event.found.push_back(std::move(found));
}

// By the piece's number; what was exported from here is the first piece. A single piece that is left over on
// both sides is one that has moved to another day.
void Comparison::Match(Event& event) {
  event.matches.assign(event.planned.size(), nullptr);
  const auto pair = [&event](std::size_t piece, Found& found) {
    event.matches[piece] = &found;
    found.matched = true;
  };
  for (Found& found : event.found) {
    if (!found.marked && event.matches.front() == nullptr) pair(0, found);
    for (std::size_t i = 0; found.marked && !found.matched && i < event.planned.size(); ++i) {
      const ImportMark mark = Planned(event.planned[i]).importMark;
      const bool same = mark.day == found.mark.day && mark.ordinal == found.mark.ordinal;
      if (same && event.matches[i] == nullptr) pair(i, found);
    }
  }
  const auto alone = [](const Found& found) { return !found.matched; };
  if (std::count(event.matches.begin(), event.matches.end(), nullptr) == 1 &&
      std::count_if(event.found.begin(), event.found.end(), alone) == 1) {
    const auto piece = std::find(event.matches.begin(), event.matches.end(), nullptr);
    pair(static_cast<std::size_t>(piece - event.matches.begin()),
         *std::find_if(event.found.begin(), event.found.end(), alone));
  }
}

// What was exported from here has no time of change, unless another program has edited it.
bool Comparison::WasReadBefore(const Event& event) const {
  const ImportMark mark = Planned(event.planned.front()).importMark;
  return std::all_of(event.found.begin(), event.found.end(), [&mark](const Found& found) {
    return found.hidden ||
           (found.marked ? found.mark.version == mark.version : found.same || mark.changed == 0);
  });
}

bool Comparison::IsOlder(const Event& event) const {
  const std::uint32_t changed = Planned(event.planned.front()).importMark.changed;
  std::uint32_t latest = 0;
  for (const Found& found : event.found) {
    if (found.marked) latest = std::max<std::uint32_t>(latest, found.mark.changed);
  }
  return changed != 0 && changed < latest;
}

void Comparison::Decide(Event& event) {
  Match(event);
  IcalFate there = IcalFate::kChange;
  IcalFate missing = IcalFate::kAdd;
  if (!event.found.empty() && WasReadBefore(event)) {
    there = IcalFate::kThere;
    missing = IcalFate::kRemoved;
    // One record may say all that the file needs several pieces for.
    if (!event.found.front().marked && event.found.size() == 1) missing = IcalFate::kThere;
  } else if (IsOlder(event)) {
    there = IcalFate::kOlder;
    missing = IcalFate::kOlder;
  }
  for (std::size_t i = 0; i < event.planned.size(); ++i) {
    Settle(event, i, event.matches[i] != nullptr ? there : missing);
  }
  if (there != IcalFate::kChange) return;
  for (const Found& found : event.found) {
    if (found.matched || !found.marked || found.hidden) continue;
    update.leftovers.push_back({found.event ? IcalFate::kEvent : IcalFate::kDelete, found.key, found.seen,
                                found.date, found.subject});
  }
}

void Comparison::Settle(const Event& event, std::size_t piece, IcalFate fate) {
  const std::size_t index = event.planned[piece];
  const Appointment& planned = Planned(index);
  IcalStep& step = update.steps[index];
  step = {fate, {}, 0};
  if (const Found* found = event.matches[piece]; found != nullptr) {
    step.key = found->key;
    step.seen = found->seen;
    // A piece that has this state already belongs to an update that broke off.
    if (fate == IcalFate::kChange && found->marked && found->mark.version == planned.importMark.version) {
      step.fate = IcalFate::kThere;
    }
    if (step.fate == IcalFate::kChange && found->event) step.fate = IcalFate::kEvent;
    if (step.fate == IcalFate::kChange && found->hidden) step.fate = IcalFate::kOwners;
  } else if (piece == 0 && IsOwn(event)) {
    step.key.id = planned.importMark.uid;  // an appointment that comes back, or goes to another calendar
  }
  const bool writes = step.fate == IcalFate::kAdd || step.fate == IcalFate::kChange;
  if (writes && planned.header.confidential == 1 && level != Access::kOwner) step.fate = IcalFate::kOwners;
}

}  // namespace

std::uint64_t SeenHash(Appointment record) {
  record.header.editLock = 0;
  return std::hash<std::string_view>{}({reinterpret_cast<const char*>(&record), sizeof record});
}

std::size_t IcalUpdate::Count(IcalFate fate) const {
  const auto is = [fate](const auto& one) { return one.fate == fate; };
  return static_cast<std::size_t>(std::count_if(steps.begin(), steps.end(), is) +
                                  std::count_if(leftovers.begin(), leftovers.end(), is));
}

CommandResult CompareWithCalendar(const RecordFile& calendar, IcalPlan plan, IcalUpdate& update) {
  update = {};
  update.plan = std::move(plan);
  return Comparison(calendar, update).Run();
}

}  // namespace core
