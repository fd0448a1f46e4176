#include "core/exchange/ical_zone.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/exchange/ical_text.h"
#include "core/exchange/ical_value.h"

namespace core {
namespace {

// A file that names more zones than this is not one of a calendar: looking each up takes a file's reading.
constexpr std::size_t kMostZones = 500;
constexpr int kFirstMove = 1990;
constexpr int kLastMove = 2100;
constexpr std::size_t kMostChanges = 4000;  // of one definition

// "+0200", "-053000": seconds.
std::optional<std::int32_t> ParseOffset(std::string_view text) {
  if (text.size() < 5 || (text.front() != '+' && text.front() != '-')) return std::nullopt;
  int numbers[3] = {};
  for (std::size_t i = 1; i + 1 < text.size() && i < 7; i += 2) {
    const char ten = text[i];
    const char one = text[i + 1];
    if (ten < '0' || ten > '9' || one < '0' || one > '9') return std::nullopt;
    numbers[i / 2] = (ten - '0') * 10 + (one - '0');
  }
  const int seconds = (numbers[0] * 60 + numbers[1]) * 60 + numbers[2];
  return text.front() == '-' ? -seconds : seconds;
}

// A STANDARD or DAYLIGHT: from its onsets on the clock is `to` seconds ahead.
struct Observance {
  std::optional<IcalStamp> start;
  std::optional<std::int32_t> from, to;
  std::vector<std::string_view> rules;
  std::vector<std::string_view> dates;
};

void AddRuleOnsets(const Observance& observance, std::string_view text, IcalWork& work,
                   std::vector<platform::TimeZone::Change>& changes) {
  const std::optional<IcalRule> rule = ParseRule(text);
  if (!rule) return;
  std::int64_t last = CivilDay(kLastMove, 1, 1) * kSecondsOfDay;
  if (rule->until) last = std::min(last, rule->until->wall + (rule->until->isUtc ? *observance.from : 0));
  IcalOccurrences onsets(*rule, observance.start->wall, CivilDay(kFirstMove, 1, 1) * kSecondsOfDay, last,
                         work);
  for (std::int64_t wall = 0; changes.size() < kMostChanges && onsets.Next(wall);)
    changes.push_back({wall - *observance.from, *observance.to});
}

void AddOnsets(const Observance& observance, IcalWork& work,
               std::vector<platform::TimeZone::Change>& changes) {
  if (!observance.start || !observance.from || !observance.to) return;
  changes.push_back({observance.start->wall - *observance.from, *observance.to});
  for (const std::string_view rule : observance.rules) AddRuleOnsets(observance, rule, work, changes);
  for (std::string_view dates : observance.dates) {
    while (!dates.empty() && changes.size() < kMostChanges) {
      const std::size_t end = std::min(dates.find(','), dates.size());
      if (const std::optional<IcalStamp> date = ParseStamp(TrimBlanks(dates.substr(0, end))))
        changes.push_back({date->wall - (date->isUtc ? 0 : *observance.from), *observance.to});
      dates.remove_prefix(std::min(end + 1, dates.size()));
    }
  }
}

std::optional<platform::TimeZone> ReadDefinition(std::string_view text, IcalWork& work) {
  std::vector<platform::TimeZone::Change> changes;
  std::optional<std::int32_t> initial;
  std::int64_t earliest = 0;
  Observance observance;
  IcalLine line;
  while (TakeIcalLine(text, line)) {
    const std::string_view value = TrimBlanks(line.value);
    if (EqualsIgnoringCase(line.name, "BEGIN")) {
      observance = {};
    } else if (EqualsIgnoringCase(line.name, "END")) {
      AddOnsets(observance, work, changes);
      if (observance.start && observance.from && (!initial || observance.start->wall < earliest)) {
        initial = observance.from;
        earliest = observance.start->wall;
      }
      observance = {};
    } else if (EqualsIgnoringCase(line.name, "DTSTART")) {
      observance.start = ParseStamp(value);
    } else if (EqualsIgnoringCase(line.name, "TZOFFSETFROM")) {
      observance.from = ParseOffset(value);
    } else if (EqualsIgnoringCase(line.name, "TZOFFSETTO")) {
      observance.to = ParseOffset(value);
    } else if (EqualsIgnoringCase(line.name, "RRULE")) {
      observance.rules.push_back(value);
    } else if (EqualsIgnoringCase(line.name, "RDATE")) {
      observance.dates.push_back(value);
    }
  }
  if (changes.empty()) return std::nullopt;
  std::stable_sort(changes.begin(), changes.end(),
                   [](const auto& a, const auto& b) { return a.moment < b.moment; });
  return platform::TimeZone(*initial, std::move(changes));
}

}  // namespace

IcalZones::IcalZones(platform::TimeZone calendarZone) : calendar(std::move(calendarZone)) {
  utc = Make("UTC", platform::TimeZone());
  unknown.known = false;
}

void IcalZones::Define(std::string_view component) {
  std::string_view rest = component;
  IcalLine line;
  while (TakeIcalLine(rest, line)) {
    if (!EqualsIgnoringCase(line.name, "TZID")) continue;
    if (definitions.size() < kMostZones) definitions.emplace(TrimBlanks(line.value), component);
    return;
  }
}

IcalZone IcalZones::Make(std::string_view name, platform::TimeZone zone) const {
  IcalZone made{std::string(name), std::move(zone), true, false, {}};
  const std::int64_t first = CivilDay(1999, 1, 1) * kSecondsOfDay;
  std::vector<std::int64_t> moments;
  for (const platform::TimeZone* one : {&std::as_const(made.zone), &calendar}) {
    for (const platform::TimeZone::Change& change : one->Changes()) {
      if (change.moment > first) moments.push_back(change.moment);
    }
  }
  std::sort(moments.begin(), moments.end());
  const auto difference = [&](std::int64_t at) { return made.zone.OffsetAt(at) - calendar.OffsetAt(at); };
  for (const std::int64_t moment : moments) {
    if ((made.moves.empty() || made.moves.back() != moment) && difference(moment) != difference(moment - 1))
      made.moves.push_back(moment);
  }
  made.isCalendars = made.moves.empty() && difference(first) == 0;
  return made;
}

std::unique_ptr<IcalZone> IcalZones::Resolve(std::string_view name, IcalWork& work) const {
  constexpr std::int64_t kWorkOfZone = 2000;
  if (found.size() >= kMostZones || !work.Take(kWorkOfZone)) return nullptr;
  // Some programs put a folder of their own before the name: "/example.org/20050126_1/Europe/Berlin".
  std::optional<platform::TimeZone> zone = platform::TimeZone::Named(name);
  for (std::string_view rest = name; !zone && rest.starts_with('/');) {
    const std::size_t slash = rest.find('/', 1);
    if (slash == std::string_view::npos) break;
    zone = platform::TimeZone::Named(rest.substr(1));
    rest.remove_prefix(slash);
  }
  if (!zone) {
    const auto definition = definitions.find(name);
    if (definition != definitions.end()) zone = ReadDefinition(definition->second, work);
  }
  if (!zone) zone = platform::TimeZone::Named(DatabaseZoneName(name));
  if (!zone) return nullptr;
  return std::make_unique<IcalZone>(Make(name, std::move(*zone)));
}

const IcalZone* IcalZones::Find(std::string_view name, IcalWork& work) {
  const auto before = found.find(name);
  if (before != found.end()) return before->second.get();
  std::unique_ptr<IcalZone> zone = Resolve(name, work);
  if (zone == nullptr) {
    if (found.size() >= kMostZones) return &unknown;
    zone = std::make_unique<IcalZone>();
    zone->name = name;
    zone->known = false;
  }
  return found.emplace(name, std::move(zone)).first->second.get();
}

std::int64_t IcalZones::Convert(const IcalZone* from, std::int64_t wall, const IcalZone* to) const {
  if (from == to) return wall;
  const auto zoneOf = [this](const IcalZone* zone) -> const platform::TimeZone& {
    return zone == nullptr || !zone->known ? calendar : zone->zone;
  };
  return zoneOf(to).WallAt(zoneOf(from).MomentOf(wall));
}

}  // namespace core
