// One VEVENT as plain values: what its properties say, before any of it is a record's.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/exchange/ical_text.h"
#include "core/exchange/ical_value.h"
#include "core/exchange/ical_zone.h"

namespace core {

// What a property says of a time. One without a zone that belongs to an event with one is by the event's
// clock.
struct IcalMoment {
  std::int64_t wall = 0;
  bool isDate = false;
  bool isFloating = false;         // no zone was said
  const IcalZone* zone = nullptr;  // whose clock it is; null: the calendar's
};

// A day or time beside those of the repeat.
struct IcalExtra {
  IcalMoment start;
  std::optional<std::int64_t> length;  // seconds, where it has one of its own
};

struct IcalAlarm {
  bool rings = false;    // it shows or sounds; others send or start something
  bool fromEnd = false;  // of the event, not from its start
  bool isMoment = false;
  std::int64_t at = 0;  // seconds behind start or end, or a moment: the wall clock of UTC
};

// Texts are views into the component's, with their escapes.
struct IcalEvent {
  std::optional<IcalMoment> start, end;
  std::optional<std::int64_t> duration;  // seconds
  std::vector<IcalRule> rules, exceptionRules;
  std::vector<IcalExtra> extras;
  std::vector<IcalMoment> exceptions;
  std::optional<IcalMoment> recurrence;  // the occurrence that this one stands for
  bool andLater = false;                 // and for all behind it

  std::string_view summary, description, location, url, classification;
  std::vector<std::string_view> categories;
  std::vector<std::string_view> attachments;  // empty for one within the file
  std::vector<IcalAlarm> alarms;
  bool cancelled = false;
  bool participants = false;

  bool cutOff = false;
  bool badRule = false;
  bool badDate = false;
  std::string_view unknownZone;
  std::int64_t changed = 0;  // LAST-MODIFIED, seconds since 2000 UTC; 0 without
  int sequence = 0;
  // Of what the properties above say, but for `changed`, `sequence` and participants: the same in whatever
  // order they stand, and whoever reads them.
  std::uint64_t hash = 0;
};

IcalEvent ReadIcalEvent(const IcalComponent& component, IcalZones& zones, IcalWork& work);

}  // namespace core
