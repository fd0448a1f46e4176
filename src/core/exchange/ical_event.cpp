#include "core/exchange/ical_event.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace core {
namespace {

enum class Property {
  kStart,
  kEnd,
  kDuration,
  kRule,
  kExceptionRule,
  kExtra,
  kException,
  kRecurrence,
  kSummary,
  kDescription,
  kLocation,
  kUrl,
  kCategories,
  kClass,
  kStatus,
  kAttachment,
  kAction,   // of an alarm
  kTrigger,  // of an alarm
  kLastHashed = kTrigger,
  kParticipant,
  kChanged,
  kSequence,
  kBegin,
  kEndOf,
};

struct PropertyName {
  std::string_view name;
  Property property;
};

constexpr std::array<PropertyName, 24> kNames{{
    {"DTSTART", Property::kStart},         {"DTEND", Property::kEnd},
    {"DURATION", Property::kDuration},     {"RRULE", Property::kRule},
    {"EXRULE", Property::kExceptionRule},  {"RDATE", Property::kExtra},
    {"EXDATE", Property::kException},      {"RECURRENCE-ID", Property::kRecurrence},
    {"SUMMARY", Property::kSummary},       {"DESCRIPTION", Property::kDescription},
    {"LOCATION", Property::kLocation},     {"URL", Property::kUrl},
    {"CATEGORIES", Property::kCategories}, {"CLASS", Property::kClass},
    {"STATUS", Property::kStatus},         {"ATTACH", Property::kAttachment},
    {"ACTION", Property::kAction},         {"TRIGGER", Property::kTrigger},
    {"ATTENDEE", Property::kParticipant},  {"ORGANIZER", Property::kParticipant},
    {"LAST-MODIFIED", Property::kChanged}, {"SEQUENCE", Property::kSequence},
    {"BEGIN", Property::kBegin},           {"END", Property::kEndOf},
}};

std::optional<Property> PropertyOf(std::string_view name) {
  for (const PropertyName& known : kNames) {
    if (EqualsIgnoringCase(name, known.name)) return known.property;
  }
  return std::nullopt;
}

// So that what is added up comes to another sum when anything moves from one place to another.
std::uint64_t Mixed(std::uint64_t hash) {
  hash ^= hash >> 32;
  hash *= 0x9E3779B97F4A7C15U;
  return hash ^ hash >> 29;
}

// Calls `use` with each of the parts between the commas.
template <class Use>
void ForEachPart(std::string_view list, Use use) {
  while (!list.empty()) {
    std::size_t end = 0;
    while (end < list.size() && list[end] != ',') end += list[end] == '\\' ? 2 : 1;
    end = std::min(end, list.size());
    const std::string_view part = TrimBlanks(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
    if (!part.empty()) use(part);
  }
}

class EventReader {
 public:
  EventReader(IcalEvent& read, IcalZones& itsZones, IcalWork& itsWork)
      : event(read), zones(itsZones), work(itsWork) {}

  void Read(std::string_view text) {
    IcalLine line;
    while (TakeIcalLine(text, line)) {
      const std::optional<Property> property = PropertyOf(line.name);
      if (!property) continue;
      if (*property == Property::kBegin) {
        Begin(TrimBlanks(line.value));
      } else if (*property == Property::kEndOf) {
        End();
      } else if (depth == 0) {
        TakeOwn(*property, line);
        AddToHash(*property, line, event.hash);
      } else if (depth == 1 && inAlarm) {
        TakeAlarms(*property, line);
        AddToHash(*property, line, alarmHash);
      }
    }
    if (inAlarm) EndAlarm();
    event.hash = Mixed(event.hash);
    TakeEventsZone();
    if (event.start && event.start->isDate) TakeDays();
  }

 private:
  void Begin(std::string_view name) {
    ++depth;
    if (depth != 1 || !EqualsIgnoringCase(name, "VALARM")) return;
    inAlarm = true;
    alarm = {.rings = true};
    triggered = false;
    alarmHash = 0;
  }

  void End() {
    if (depth == 0) return;
    --depth;
    if (depth == 0 && inAlarm) EndAlarm();
  }

  void EndAlarm() {
    inAlarm = false;
    alarm.rings = alarm.rings && triggered;
    event.alarms.push_back(alarm);
    event.hash += Mixed(alarmHash);
  }

  static void AddToHash(Property property, const IcalLine& line, std::uint64_t& sum) {
    const std::string_view value = TrimBlanks(line.value);
    if (property > Property::kLastHashed || value.empty()) return;
    std::uint64_t hash = HashBytes(value, kHashStart + static_cast<std::uint64_t>(property));
    for (const std::string_view name : {"TZID", "VALUE", "RELATED", "RANGE"}) {
      if (!line.parameters.empty()) hash = HashBytes(IcalParameter(line, name), hash * 31);
    }
    sum += Mixed(hash);
  }

  std::optional<IcalMoment> MomentIn(const IcalLine& line, std::string_view value) {
    const std::optional<IcalStamp> stamp = ParseStamp(value);
    if (!stamp) return std::nullopt;
    IcalMoment moment{stamp->wall, stamp->isDate, false, nullptr};
    if (stamp->isDate) return moment;
    const std::string_view name = IcalParameter(line, "TZID");
    if (stamp->isUtc) {
      moment.zone = zones.Utc();
    } else if (!name.empty()) {
      moment.zone = zones.Find(name, work);
      if (!moment.zone->known) event.unknownZone = name;
    } else {
      moment.isFloating = true;
    }
    if (moment.zone != nullptr && (!moment.zone->known || moment.zone->isCalendars)) moment.zone = nullptr;
    return moment;
  }

  // An empty property is as good as none.
  std::optional<IcalMoment> MomentOf(const IcalLine& line, bool& bad) {
    const std::string_view value = TrimBlanks(line.value);
    std::optional<IcalMoment> moment = MomentIn(line, value);
    if (!moment && !value.empty()) bad = true;
    return moment;
  }

  // A time without a zone means the clock of its event, unless that is written in UTC, which is nobody's
  // clock.
  void TakeEventsZone() {
    if (!event.start || event.start->zone == nullptr || event.start->zone == zones.Utc()) return;
    const auto take = [this](IcalMoment& moment) {
      if (moment.isFloating) moment.zone = event.start->zone;
    };
    if (event.end) take(*event.end);
    if (event.recurrence) take(*event.recurrence);
    for (IcalMoment& moment : event.exceptions) take(moment);
    for (IcalExtra& extra : event.extras) take(extra.start);
  }

  // Of whole days there are no times to repeat at.
  void TakeDays() {
    for (std::vector<IcalRule>* rules : {&event.rules, &event.exceptionRules}) {
      event.badRule |= std::erase_if(*rules, [](const IcalRule& rule) {
                         return rule.frequency < IcalFrequency::kDaily;
                       }) != 0;
      for (IcalRule& rule : *rules) {
        rule.hours.clear();
        rule.minutes.clear();
        rule.seconds.clear();
      }
    }
  }

  void TakeExtra(const IcalLine& line, std::string_view value) {
    const std::size_t slash = value.find('/');
    const std::optional<IcalMoment> start = MomentIn(line, value.substr(0, slash));
    if (!start) {
      event.badDate = true;
      return;
    }
    std::optional<std::int64_t> length;
    if (slash != std::string_view::npos) {
      length = ParseDuration(value.substr(slash + 1));
      if (const std::optional<IcalMoment> end = MomentIn(line, value.substr(slash + 1)))
        length = zones.Convert(end->zone, end->wall, start->zone) - start->wall;
      if (!length || *length < 0) event.badDate = true;
    }
    event.extras.push_back({*start, length && *length >= 0 ? length : std::nullopt});
  }

  void TakeRule(const IcalLine& line, std::vector<IcalRule>& rules) {
    constexpr std::size_t kMostRules = 20;
    const std::string_view value = TrimBlanks(line.value);
    if (value.empty()) return;
    std::optional<IcalRule> rule;
    if (rules.size() < kMostRules) rule = ParseRule(value);
    if (rule) {
      rules.push_back(std::move(*rule));
    } else {
      event.badRule = true;
    }
  }

  void TakeTime(Property property, const IcalLine& line) {
    bool bad = false;
    switch (property) {
      case Property::kStart:
        if (!event.start) event.start = MomentOf(line, bad);
        return;
      case Property::kEnd:
        if (!event.end) event.end = MomentOf(line, event.badDate);
        return;
      case Property::kDuration:
        event.duration = ParseDuration(TrimBlanks(line.value));
        if (!event.duration && !TrimBlanks(line.value).empty()) event.badDate = true;
        return;
      case Property::kRule:
        return TakeRule(line, event.rules);
      case Property::kExceptionRule:
        return TakeRule(line, event.exceptionRules);
      case Property::kExtra:
        return ForEachPart(line.value, [&](std::string_view value) { TakeExtra(line, value); });
      case Property::kException:
        return ForEachPart(line.value, [&](std::string_view value) {
          const std::optional<IcalMoment> moment = MomentIn(line, value);
          if (moment) event.exceptions.push_back(*moment);
          if (!moment) event.badDate = true;
        });
      default:  // kRecurrence
        event.recurrence = MomentOf(line, event.badDate);
        event.andLater = EqualsIgnoringCase(IcalParameter(line, "RANGE"), "THISANDFUTURE");
    }
  }

  void TakeOwn(Property property, const IcalLine& line) {
    if (property <= Property::kRecurrence) return TakeTime(property, line);
    const std::string_view value = TrimBlanks(line.value);
    const auto keep = [&](std::string_view& text) {
      if (text.empty()) text = value;
    };
    switch (property) {
      case Property::kSummary:
        return keep(event.summary);
      case Property::kDescription:
        return keep(event.description);
      case Property::kLocation:
        return keep(event.location);
      case Property::kUrl:
        return keep(event.url);
      case Property::kCategories:
        return ForEachPart(value, [&](std::string_view name) { event.categories.push_back(name); });
      case Property::kClass:
        return keep(event.classification);
      case Property::kStatus:
        event.cancelled = EqualsIgnoringCase(value, "CANCELLED");
        return;
      case Property::kAttachment:
        if (value.empty()) return;
        event.attachments.push_back(EqualsIgnoringCase(IcalParameter(line, "VALUE"), "BINARY") ||
                                            !IcalParameter(line, "ENCODING").empty()
                                        ? std::string_view()
                                        : value);
        return;
      case Property::kParticipant:
        event.participants |= !value.empty();
        return;
      case Property::kChanged:
        if (const std::optional<IcalStamp> stamp = ParseStamp(value)) event.changed = stamp->wall;
        return;
      case Property::kSequence:
        std::from_chars(value.data(), value.data() + value.size(), event.sequence);
        return;
      default:
        return;
    }
  }

  void TakeAlarms(Property property, const IcalLine& line) {
    const std::string_view value = TrimBlanks(line.value);
    if (property == Property::kAction) {
      alarm.rings = EqualsIgnoringCase(value, "DISPLAY") || EqualsIgnoringCase(value, "AUDIO");
    } else if (property == Property::kTrigger && !triggered) {
      if (const std::optional<std::int64_t> before = ParseDuration(value)) {
        alarm.at = *before;
        alarm.fromEnd = EqualsIgnoringCase(IcalParameter(line, "RELATED"), "END");
        triggered = true;
      } else if (const std::optional<IcalMoment> moment = MomentIn(line, value)) {
        alarm.at = zones.Convert(moment->zone, moment->wall, zones.Utc());
        alarm.isMoment = true;
        triggered = true;
      }
    }
  }

  IcalEvent& event;
  IcalZones& zones;
  IcalWork& work;
  std::size_t depth = 0;  // of components within the event
  bool inAlarm = false;
  bool triggered = false;
  IcalAlarm alarm;
  std::uint64_t alarmHash = 0;
};

}  // namespace

IcalEvent ReadIcalEvent(const IcalComponent& component, IcalZones& zones, IcalWork& work) {
  IcalEvent event;
  event.cutOff = component.cutOff;
  EventReader(event, zones, work).Read(component.text);
  return event;
}

}  // namespace core
