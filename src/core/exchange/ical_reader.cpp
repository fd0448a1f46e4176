#include "core/exchange/ical_reader.h"

#include <algorithm>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "core/exchange/ical_event.h"
#include "core/exchange/ical_fields.h"
#include "core/exchange/ical_fit.h"
#include "core/exchange/ical_series.h"
#include "core/exchange/ical_text.h"
#include "core/store/text_field.h"
#include "core/time_texts.h"

namespace core {
namespace {

constexpr int kYearsWritten = 10;  // of an endless repeat that no record holds
constexpr std::string_view kUnnamed = "(no subject)";

// Events of one UID: their components' places.
using Group = std::vector<std::size_t>;

std::optional<platform::TimeZone> ZoneOf(const std::string& name) {
  return name.empty() ? platform::TimeZone::OfProcess() : platform::TimeZone::Named(name);
}

// What a version of an event is known by; never 0 where it stands for a UID.
std::uint32_t Folded(std::uint64_t hash) {
  constexpr std::uint32_t kStart = 2166136261U;
  constexpr std::uint32_t kFactor = 16777619U;
  std::uint32_t folded = kStart;
  for (int shift = 0; shift < 64; shift += 8)
    folded = (folded ^ static_cast<std::uint32_t>(hash >> shift & 0xFF)) * kFactor;
  return folded;
}

// The record that was exported under this UID: "0123456789abcdef-...@tempoline.daybrix".
std::optional<std::uint64_t> OwnRecordId(std::string_view uid) {
  constexpr std::string_view kPlace = "@tempoline.daybrix";
  constexpr std::size_t kDigits = 16;
  if (!uid.ends_with(kPlace)) return std::nullopt;
  uid.remove_suffix(kPlace.size());
  if (uid.size() < kDigits || (uid.size() > kDigits && uid[kDigits] != '-')) return std::nullopt;
  std::uint64_t id = 0;
  for (const char digit : uid.substr(0, kDigits)) {
    const bool isLetter = digit >= 'a' && digit <= 'f';
    if (!isLetter && (digit < '0' || digit > '9')) return std::nullopt;
    id = id << 4 | static_cast<std::uint64_t>(isLetter ? digit - 'a' + 10 : digit - '0');
  }
  return id;
}

// Never 0.
std::uint64_t UidOf(std::string_view uid) {
  const std::uint64_t hash = OwnRecordId(uid).value_or(HashBytes(uid));
  return hash == 0 ? 1 : hash;
}

std::string DateDetail(int day) {
  Date date{};
  return DateFromIndex(day, date)
             ? std::to_string(date.year) + '-' + (date.month < 10 ? "0" : "") + std::to_string(date.month) +
                   '-' + (date.day < 10 ? "0" : "") + std::to_string(date.day)
             : std::string();
}

IcalPlan Cancelled() {
  IcalPlan plan;
  plan.cancelled = true;
  return plan;
}

class Planner {
 public:
  Planner(std::string_view text, const IcalReadOptions& its, platform::TimeZone zone)
      : options(its), zones(std::move(zone)) {
    constexpr std::int64_t kLeastWork = 4'000'000;
    constexpr std::int64_t kWorkOfByte = 10;
    constexpr std::size_t kLeastRecords = 50'000;
    constexpr std::size_t kBytesOfRecord = 24;  // shorter than any event
    work.left = kLeastWork + static_cast<std::int64_t>(text.size()) * kWorkOfByte;
    mostRecords = kLeastRecords + text.size() / kBytesOfRecord;
    ReadIcalDocument(text, document);
  }

  IcalPlan Plan(const ExchangeProgress& progress);

 private:
  struct Member {
    IcalEvent event;
    bool leftOut = false;
  };

  std::string Refusal() const;
  std::vector<Group> Sort();
  void LeaveOut(const IcalComponent& component, IcalReason reason);
  void PlanGroup(const Group& group);
  void Supersede(std::vector<Member>& members);
  void Mark(const std::vector<Member>& members, std::string_view uid);
  void PlanEvent(const IcalEvent& event, const std::vector<IcalMoment>& replaced);
  void AddRecords(const IcalEvent& event, const IcalPieces& pieces, const Appointment& fields,
                  IcalFieldLoss& loss);
  void RemarkAll(const IcalEvent& event, const IcalSeries& series, const IcalPieces& pieces,
                 const IcalFieldLoss& loss, const Appointment& fields, const Date& date, int lastDay);
  void Remark(IcalReason reason, std::string subject, const Date& date, std::string detail = {});
  static std::string SubjectOf(const IcalEvent& event);
  static Date DateOf(const IcalEvent& event);

  const IcalReadOptions& options;
  IcalDocument document;
  IcalZones zones;
  IcalWork work;
  std::size_t mostRecords = 0;
  IcalPlan plan;

  // Of the event that is being planned.
  ImportMark mark{};
  bool ownUid = false;
  std::size_t groupStart = 0;                  // its first record
  std::unordered_set<std::uint64_t> nameless;  // what events without a UID say
  std::map<int, int> ordinals;                 // records of it by day
};

std::string Planner::Refusal() const {
  if (!document.isCalendar) return "This is no iCalendar file.";
  for (const IcalCalendar& calendar : document.calendars) {
    if (calendar.version == "1.0") {
      return "This is a vCalendar file of version 1.0, which cannot be read. Save it as iCalendar, version "
             "2.0.";
    }
  }
  return {};
}

std::string Planner::SubjectOf(const IcalEvent& event) {
  IcalFieldLoss ignored;
  std::string subject = StoredText(event.summary, ignored);
  std::replace(subject.begin(), subject.end(), '\n', ' ');
  subject.resize(std::min(subject.size(), sizeof(Appointment::subject) - 1));
  return subject.empty() ? std::string(kUnnamed) : subject;
}

Date Planner::DateOf(const IcalEvent& event) {
  Date date{};
  if (event.start) static_cast<void>(DateFromIndex(DayOf(event.start->wall), date));
  return date;
}

void Planner::Remark(IcalReason reason, std::string subject, const Date& date, std::string detail) {
  plan.remarks.push_back({reason, std::move(subject), date, std::move(detail)});
}

void Planner::LeaveOut(const IcalComponent& component, IcalReason reason) {
  const IcalEvent event = ReadIcalEvent(component, zones, work);
  Remark(reason, SubjectOf(event), DateOf(event));
}

// The events to read, by their UIDs in the order of the file. Everything else is told.
std::vector<Group> Planner::Sort() {
  std::vector<Group> groups;
  std::unordered_map<std::uint64_t, std::size_t> byUid;
  for (const IcalComponent& component : document.components) {
    if (component.kind == IcalKind::kZone) zones.Define(component.text);
  }
  for (std::size_t i = 0; i < document.components.size(); ++i) {
    const IcalComponent& component = document.components[i];
    const std::string_view method = document.calendars[component.calendar].method;
    const bool answers = EqualsIgnoringCase(method, "CANCEL") || EqualsIgnoringCase(method, "REPLY") ||
                         EqualsIgnoringCase(method, "COUNTER") ||
                         EqualsIgnoringCase(method, "DECLINECOUNTER") ||
                         EqualsIgnoringCase(method, "REFRESH");
    switch (component.kind) {
      case IcalKind::kZone:
        continue;
      case IcalKind::kTask:
        LeaveOut(component, IcalReason::kTask);
        continue;
      case IcalKind::kJournal:
        LeaveOut(component, IcalReason::kJournal);
        continue;
      case IcalKind::kFreeBusy:
        LeaveOut(component, IcalReason::kFreeBusy);
        continue;
      case IcalKind::kEvent:
        break;
    }
    if (answers) {
      LeaveOut(component, IcalReason::kMethod);
      continue;
    }
    if (component.uid.empty()) {
      groups.push_back({i});
      continue;
    }
    const auto [place, isNew] = byUid.emplace(UidOf(component.uid), groups.size());
    if (isNew) groups.emplace_back();
    groups[place->second].push_back(i);
  }
  return groups;
}

// Of several states of the same event or occurrence the latest is read.
void Planner::Supersede(std::vector<Member>& members) {
  int sequence = 0;
  bool any = false;
  for (const Member& member : members) {
    if (member.event.recurrence) continue;
    sequence = any ? std::max(sequence, member.event.sequence) : member.event.sequence;
    any = true;
  }
  std::unordered_set<std::uint64_t> seen;
  std::unordered_map<std::int64_t, std::size_t> occurrences;
  for (std::size_t i = 0; i < members.size(); ++i) {
    Member& member = members[i];
    Member* older = nullptr;
    if (!member.event.recurrence) {
      if (member.event.sequence < sequence || !seen.insert(member.event.hash).second) older = &member;
    } else {
      const IcalMoment& moment = *member.event.recurrence;
      const std::int64_t key =
          moment.isDate ? moment.wall : zones.Convert(moment.zone, moment.wall, zones.Utc());
      const auto [place, isNew] = occurrences.emplace(key, i);
      if (isNew) continue;
      Member& other = members[place->second];
      const bool later = member.event.sequence >= other.event.sequence;
      older = later ? &other : &member;
      if (later) place->second = i;
    }
    if (older == nullptr) continue;
    older->leftOut = true;
    Remark(IcalReason::kSuperseded, SubjectOf(older->event), DateOf(older->event));
  }
}

void Planner::Mark(const std::vector<Member>& members, std::string_view uid) {
  std::uint64_t hash = 0;
  std::int64_t changed = 0;
  for (const Member& member : members) {
    if (!member.leftOut) hash += member.event.hash;
    changed = std::max(changed, member.event.changed);
  }
  ownUid = OwnRecordId(uid).has_value();
  mark = {};
  mark.uid = !uid.empty() ? UidOf(uid) : hash == 0 ? 1 : hash;
  mark.version = Folded(hash);
  mark.changed = static_cast<std::uint32_t>(std::clamp<std::int64_t>(changed, 0, UINT32_MAX));
}

void Planner::PlanGroup(const Group& group) {
  std::vector<Member> members;
  members.reserve(group.size());
  for (const std::size_t place : group)
    members.push_back({ReadIcalEvent(document.components[place], zones, work)});
  if (members.size() > 1) Supersede(members);
  Mark(members, document.components[group.front()].uid);
  groupStart = plan.records.size();
  ordinals.clear();
  const IcalEvent& first = members.front().event;
  if (document.components[group.front()].uid.empty() && !nameless.insert(first.hash).second) {
    Remark(IcalReason::kSuperseded, SubjectOf(first), DateOf(first));
    return;
  }

  std::vector<IcalMoment> replaced;
  for (Member& member : members) {
    if (member.leftOut) continue;
    IcalEvent& event = member.event;
    if (event.cancelled) {
      Remark(IcalReason::kCancelled, SubjectOf(event), DateOf(event));
      member.leftOut = true;
    } else if (!event.start) {
      Remark(IcalReason::kNoStart, SubjectOf(event), {});
      member.leftOut = true;
    } else if (IsPrivate(event) && !options.mayBeConfidential) {
      Remark(IcalReason::kPrivate, SubjectOf(event), DateOf(event));
      member.leftOut = true;
    }
    // One that is left out for want of a start takes nothing away.
    if (!event.recurrence || (!event.start && !event.cancelled)) continue;
    replaced.push_back(*event.recurrence);
    event.rules.clear();
    event.extras.clear();
    event.exceptions.clear();
  }
  const std::vector<IcalMoment> none;
  for (const Member& member : members) {
    if (!member.leftOut) PlanEvent(member.event, member.event.recurrence ? none : replaced);
  }
}

void Planner::PlanEvent(const IcalEvent& event, const std::vector<IcalMoment>& replaced) {
  if (plan.records.size() >= mostRecords || work.left < 0) {
    Remark(IcalReason::kNoRoom, SubjectOf(event), DateOf(event));
    return;
  }
  IcalSpan span;
  span.last = DayIndex(LastDate());
  const int startYear = CivilOf(DayOf(event.start->wall)).year;
  const int lastWritten = std::max<int>(startYear, options.now.date.year) + kYearsWritten;
  span.horizon = lastWritten < LastYear() ? CivilDay(lastWritten, 12, 31) : span.last;
  IcalSeries series = ReadSeries(event, replaced, zones, span, work);
  const IcalPieces pieces = FitSeries(series, span, work);

  Appointment fields{};
  IcalFieldLoss loss;
  WriteFields(event, options.categories, fields, loss);
  const std::size_t before = plan.records.size();
  AddRecords(event, pieces, fields, loss);
  const bool any = plan.records.size() != before;
  series.tooMany |= plan.records.size() - before < pieces.pieces.size();
  const Date date = any ? plan.records[before].record.date : DateOf(event);
  const int last = any ? DayIndex(plan.records.back().record.date) : -1;
  RemarkAll(event, series, pieces, loss, fields, date, last);
}

void Planner::AddRecords(const IcalEvent& event, const IcalPieces& pieces, const Appointment& fields,
                         IcalFieldLoss& loss) {
  constexpr int kMostOrdinal = 255;
  for (const IcalPiece& piece : pieces.pieces) {
    if (plan.records.size() - groupStart == kMostOfEvent) return;
    const int day = DayIndex(piece.date);
    if (ordinals[day] > kMostOrdinal) continue;
    PlannedRecord& planned = plan.records.emplace_back(PlannedRecord{fields, ownUid});
    Appointment& record = planned.record;
    record.date = piece.date;
    record.repeat = piece.repeat;
    record.allDay = piece.allDay ? 1 : 0;
    record.startTime = piece.start;
    record.endTime = piece.end;
    ResetAlarm(record);
    if (piece.begins) WriteAlarm(event, piece, zones, options.now, record, loss);
    record.importMark = mark;
    record.importMark.day = static_cast<std::uint16_t>(day);
    record.importMark.ordinal = static_cast<std::uint8_t>(ordinals[day]++);
  }
}

void Planner::RemarkAll(const IcalEvent& event, const IcalSeries& series, const IcalPieces& pieces,
                        const IcalFieldLoss& loss, const Appointment& fields, const Date& date, int lastDay) {
  const std::string subject(ReadText(fields.subject));
  const auto remarkIf = [&](bool is, IcalReason reason, const std::string& detail = {}) {
    if (is) Remark(reason, subject, date, detail);
  };
  const IcalZone* zone = event.start->zone;
  remarkIf(series.outside, IcalReason::kOutside);
  remarkIf(event.badRule, IcalReason::kBadRule);
  remarkIf(event.badDate, IcalReason::kBadDate);
  remarkIf(event.andLater, IcalReason::kLaterChange);
  remarkIf(!event.unknownZone.empty(), IcalReason::kUnknownZone,
           std::string(event.unknownZone.substr(0, 100)));
  remarkIf(series.converted, IcalReason::kConverted,
           zone == nullptr ? std::string() : zone->name.substr(0, 100));
  remarkIf(series.endBeforeStart, IcalReason::kEndBeforeStart);
  remarkIf(pieces.fiveMinutes, IcalReason::kFiveMinutes);
  remarkIf(pieces.split, IcalReason::kSplit);
  remarkIf(series.cut, IcalReason::kCut);
  remarkIf(series.writtenOut, IcalReason::kWrittenOut);
  remarkIf(series.horizon, IcalReason::kHorizon, DateDetail(lastDay));
  remarkIf(series.tooMany, IcalReason::kTooMany, DateDetail(lastDay));
  remarkIf(event.cutOff, IcalReason::kCutOff);
  remarkIf(loss.codePage, IcalReason::kCodePage);
  remarkIf(loss.letters, IcalReason::kLetters);
  remarkIf(loss.shortened, IcalReason::kShortened);
  remarkIf(loss.alarms, IcalReason::kAlarms);
  remarkIf(loss.attachment, IcalReason::kAttachment);
  remarkIf(event.participants, IcalReason::kParticipants);
}

IcalPlan Planner::Plan(const ExchangeProgress& progress) {
  constexpr std::size_t kGroupsOfStep = 200;
  plan.refusal = Refusal();
  if (!plan.refusal.empty()) return std::move(plan);
  const std::vector<Group> groups = Sort();
  plan.records.reserve(std::min(2 * groups.size(), mostRecords));  // room that is not used costs nothing
  const auto whole = static_cast<std::int64_t>(document.text.size());
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (progress && i % kGroupsOfStep == 0) {
      const char* at = document.components[groups[i].front()].text.data();
      if (!progress(at - document.text.data(), whole)) return Cancelled();
    }
    PlanGroup(groups[i]);
  }
  if (progress && !progress(whole, whole)) return Cancelled();
  return std::move(plan);
}

}  // namespace

bool IsKnownZone(const std::string& zone) {
  return ZoneOf(zone).has_value();
}

IcalPlan PlanIcal(std::string_view text, const IcalReadOptions& options, const ExchangeProgress& progress) {
  std::optional<platform::TimeZone> zone = ZoneOf(options.zone);
  if (!zone) {
    IcalPlan refused;
    refused.refusal = "The time zone " + options.zone + " is unknown.";
    return refused;
  }
  return Planner(text, options, std::move(*zone)).Plan(progress);
}

}  // namespace core
