#include "core/exchange/ical_series.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace core {
namespace {

constexpr std::int64_t kMostWork = 2'000'000;  // of one event

// The day that is meant where a moment stands for a whole day. Some programs write the midnight of their own
// clock, as UTC has it; others the date with any time.
int WholeDayOf(const IcalMoment& moment, const IcalZones& zones) {
  if (moment.isDate) return DayOf(moment.wall);
  const std::int64_t local = zones.Convert(moment.zone, moment.wall, nullptr);
  return DayOf(SecondOf(local) == 0 ? local : moment.wall);
}

// How far the calendar's clock is ahead of the event's, in seconds, when an occurrence starts and when it
// ends.
struct Shift {
  std::int64_t start = 0;
  std::int64_t end = 0;
  bool operator==(const Shift&) const = default;
};

void SortUnique(std::vector<int>& days) {
  std::sort(days.begin(), days.end());
  days.erase(std::unique(days.begin(), days.end()), days.end());
}

class SeriesReader {
 public:
  SeriesReader(const IcalEvent& read, const IcalZones& itsZones, const IcalSpan& itsSpan, IcalWork& all)
      : event(read),
        zones(itsZones),
        span(itsSpan),
        work{std::min(all.left, kMostWork)},
        wholeDays(read.start->isDate),
        zone(wholeDays ? nullptr : read.start->zone),
        start(read.start->wall) {}

  IcalSeries Read(const std::vector<IcalMoment>& replaced) {
    series.wholeDays = wholeDays;
    length = LengthOfEvent();
    for (const IcalMoment& moment : event.exceptions) Except(moment);
    for (const IcalMoment& moment : replaced) Except(moment);
    std::sort(exceptWalls.begin(), exceptWalls.end());
    SortUnique(exceptDays);
    ruleExceptions = exceptDays;
    for (const std::int64_t wall : exceptWalls) {
      if (SecondOf(wall) == SecondOf(start)) ruleExceptions.push_back(DayOf(wall));
    }
    SortUnique(ruleExceptions);
    std::optional<DayRule> simple;
    if (event.rules.size() == 1 && event.exceptionRules.empty())
      simple = SimpleRule(event.rules.front(), start);
    if (simple) {
      if (simple->anchor != DayOf(start)) AddSingle(start, length);
      AddRule(*simple, event.rules.front());
    } else if (event.rules.empty()) {
      AddSingle(start, length);
    } else {
      WriteOut();
    }
    AddExtras(simple);
    std::stable_sort(series.runs.begin(), series.runs.end(),
                     [](const IcalRun& a, const IcalRun& b) { return a.first < b.first; });
    return std::move(series);
  }

  std::int64_t WorkLeft() const { return work.left; }

 private:
  std::int64_t LengthOfEvent();
  void Except(const IcalMoment& moment);
  bool IsExcepted(std::int64_t wall) const;
  std::int64_t UntilWall(const IcalRule& rule) const;
  Shift ShiftOf(int day) const;
  std::int64_t Reach() const { return length / kSecondsOfDay + 1; }

  void AddSingle(std::int64_t wall, std::int64_t itsLength);
  void AddRule(const DayRule& rule, const IcalRule& said);
  void AddMoving(const DayRule& rule, int first, int last, bool endless);
  bool AddUncut(const DayRule& rule, int first, int last, bool endless, const Shift& shift);
  bool AddRun(const DayRule& rule, int first, int last, bool endless, const Shift& shift);
  void WriteOut();
  void AddExtras(const std::optional<DayRule>& simple);
  bool HasRoom();

  const IcalEvent& event;
  const IcalZones& zones;
  const IcalSpan& span;
  IcalWork work;
  const bool wholeDays;
  const IcalZone* const zone;
  const std::int64_t start;
  std::int64_t length = 0;
  std::vector<std::int64_t> exceptWalls;
  std::vector<int> exceptDays;
  std::vector<int> ruleExceptions;    // the days of both, of a rule whose occurrences start as the event does
  std::vector<std::int64_t> written;  // occurrences that were written out
  IcalSeries series;
};

std::int64_t SeriesReader::LengthOfEvent() {
  if (wholeDays) {
    std::int64_t days = 1;
    if (event.end) {
      const std::int64_t end =
          event.end->isDate ? event.end->wall : zones.Convert(event.end->zone, event.end->wall, nullptr);
      days = DayOf(end) - DayOf(start) + (SecondOf(end) != 0 ? 1 : 0);
    } else if (event.duration) {
      days = (*event.duration + kSecondsOfDay - 1) / kSecondsOfDay;
    }
    series.endBeforeStart = days < 0;
    return std::max(days, std::int64_t{1}) * kSecondsOfDay;
  }
  std::int64_t found = event.duration.value_or(0);
  if (event.end) {
    const IcalMoment& end = *event.end;
    found = (end.isDate ? end.wall : zones.Convert(end.zone, end.wall, zone)) - start;
  }
  series.endBeforeStart = found < 0;
  return std::max(found, std::int64_t{0});
}

void SeriesReader::Except(const IcalMoment& moment) {
  if (wholeDays) {
    exceptDays.push_back(WholeDayOf(moment, zones));
  } else if (moment.isDate) {
    exceptDays.push_back(DayOf(moment.wall));
  } else {
    exceptWalls.push_back(zones.Convert(moment.zone, moment.wall, zone));
  }
}

bool SeriesReader::IsExcepted(std::int64_t wall) const {
  return std::binary_search(exceptWalls.begin(), exceptWalls.end(), wall) ||
         std::binary_search(exceptDays.begin(), exceptDays.end(), DayOf(wall));
}

// The last wall clock on which the rule's occurrences start.
std::int64_t SeriesReader::UntilWall(const IcalRule& rule) const {
  if (!rule.until) return std::numeric_limits<std::int64_t>::max();
  const IcalStamp& until = *rule.until;
  const IcalMoment moment{until.wall, until.isDate, false, until.isUtc ? zones.Utc() : nullptr};
  if (wholeDays) return WholeDayOf(moment, zones) * kSecondsOfDay;
  if (until.isDate) return until.wall + kSecondsOfDay - 1;
  // Who writes the times without a zone means those of the end as they stand there.
  return until.isUtc && !event.start->isFloating ? zones.Convert(zones.Utc(), until.wall, zone) : until.wall;
}

Shift SeriesReader::ShiftOf(int day) const {
  const std::int64_t wall = day * kSecondsOfDay + SecondOf(start);
  return {zones.Convert(zone, wall, nullptr) - wall,
          zones.Convert(zone, wall + length, nullptr) - wall - length};
}

bool SeriesReader::HasRoom() {
  if (series.runs.size() < kMostOfEvent && work.Take(1)) return true;
  series.tooMany = true;
  return false;
}

// One occurrence, by the event's own clock.
void SeriesReader::AddSingle(std::int64_t wall, std::int64_t itsLength) {
  if (IsExcepted(wall) || !HasRoom()) return;
  const std::int64_t local = zones.Convert(zone, wall, nullptr);
  const std::int64_t end = zones.Convert(zone, wall + itsLength, nullptr);
  if (local != wall) series.converted = true;
  if (DayOf(local) > span.last || DayOf(end) < 0) {
    series.outside = true;
    return;
  }
  IcalRun run;
  run.first = run.last = DayOf(local);
  run.second = SecondOf(local);
  run.length = std::max(end - local, std::int64_t{0});
  series.runs.push_back(run);
}

// The occurrences of a rule from one on to another, on the calendar's clock, which is `shift` seconds ahead
// of the event's.
bool SeriesReader::AddRun(const DayRule& rule, int first, int last, bool endless, const Shift& shift) {
  if (!HasRoom()) return false;
  if (!endless && first == last) {
    AddSingle(first * kSecondsOfDay + SecondOf(start), length);
    return true;
  }
  const std::int64_t local = first * kSecondsOfDay + SecondOf(start) + shift.start;
  const int moved = DayOf(local) - first;
  const std::optional<DayRule> shifted = Shifted(rule, moved);
  const bool fits = shifted && FitsSundayWeeks(*shifted);
  if (!fits) {
    series.writtenOut = true;
    const int end = endless ? span.horizon : std::min(last, span.last);
    series.horizon |= endless;
    for (std::optional<int> day = first; day && *day <= end; day = NextOf(rule, *day + 1)) {
      if (!HasRoom()) return false;
      AddSingle(*day * kSecondsOfDay + SecondOf(start), length);
    }
    return true;
  }
  IcalRun run;
  run.rule = shifted;
  run.first = first + moved;
  run.last = last + moved;
  run.endless = endless;
  run.second = SecondOf(local);
  run.length = std::max(length + shift.end - shift.start, std::int64_t{0});
  if (shift.start != 0) series.converted = true;
  series.runs.push_back(run);
  return true;
}

// The occurrences from `first` to `last`, cut at the exceptions.
bool SeriesReader::AddUncut(const DayRule& rule, int first, int last, bool endless, const Shift& shift) {
  const std::vector<int>& days = ruleExceptions;
  const std::size_t before = series.runs.size();
  std::optional<int> from = NextOf(rule, first);
  for (auto day = std::lower_bound(days.begin(), days.end(), first); day != days.end(); ++day) {
    if (!from || (!endless && (*from > last || *day > last))) break;
    if (*day < *from || NextOf(rule, *day) != *day) continue;
    const std::optional<int> to = PreviousOf(rule, *day - 1);
    if (to && *to >= *from && !AddRun(rule, *from, *to, false, shift)) return false;
    from = NextOf(rule, *day + 1);
  }
  const std::optional<int> to = endless ? from : PreviousOf(rule, last);
  if (from && to && *from <= *to && !AddRun(rule, *from, *to, endless, shift)) return false;
  series.cut |= !series.writtenOut && series.runs.size() > before + 1;
  return true;
}

// Cut where the event's clock comes to differ otherwise from the calendar's.
void SeriesReader::AddMoving(const DayRule& rule, int first, int last, bool endless) {
  const auto wallOf = [this](int day) { return day * kSecondsOfDay + SecondOf(start); };
  std::vector<int> bounds;
  for (const std::int64_t move : zone->moves) {
    int day = DayOf(zone->zone.WallAt(move) - length) - 1;
    if (day > last) break;
    while (zone->zone.MomentOf(wallOf(day) + length) < move) ++day;
    bounds.push_back(day);
    day = DayOf(zone->zone.WallAt(move)) - 1;
    while (zone->zone.MomentOf(wallOf(day)) < move) ++day;
    bounds.push_back(day);
    // On a day that skips the hour the event is at a time of its own.
    if (zone->zone.WallAt(zone->zone.MomentOf(wallOf(day))) != wallOf(day)) bounds.push_back(day + 1);
  }
  SortUnique(bounds);
  const std::size_t before = series.runs.size();
  int from = first;
  for (std::size_t next = 0; from <= last;) {
    const std::optional<int> own = NextOf(rule, from);
    if (!own || *own > last || !work.Take(1)) break;
    int to = last;
    bool ends = !endless;
    while (next < bounds.size() && bounds[next] <= *own) ++next;
    for (; next < bounds.size(); ++next) {
      const std::optional<int> behind = NextOf(rule, bounds[next]);
      if (!behind || *behind > last || ShiftOf(*behind) == ShiftOf(*own)) continue;
      to = bounds[next] - 1;
      ends = true;
      break;
    }
    if (!AddUncut(rule, *own, to, !ends, ShiftOf(*own))) return;
    from = to + 1;
  }
  series.cut |= !series.writtenOut && series.runs.size() > before + 1;
}

void SeriesReader::AddRule(const DayRule& rule, const IcalRule& said) {
  const std::int64_t until = UntilWall(said);
  bool endless = !said.until && said.count == 0;
  int last = span.last + 1;  // a day later than any, but for one on the calendar's last
  if (said.until) {
    const std::int64_t day =
        DayOf(std::min(until, (last + 1) * kSecondsOfDay)) - (SecondOf(start) > SecondOf(until) ? 1 : 0);
    last = static_cast<int>(std::min<std::int64_t>(day, last));
  }
  if (said.count != 0) last = std::min(last, NumberOf(rule, said.count, last).value_or(last));
  series.outside |= !endless && last > span.last && NextOf(rule, span.last + 1).has_value();
  const int first = std::max(rule.anchor, -static_cast<int>(std::min<std::int64_t>(Reach(), 366)));
  series.outside |= first > rule.anchor && PreviousOf(rule, -1).has_value();
  if (zone == nullptr || zone->moves.empty()) {
    AddUncut(rule, first, last, endless, ShiftOf(first));
    return;
  }
  // A repeat without an end can be held from the last move on.
  const bool settles = zone->zone.MomentOf(span.horizon * kSecondsOfDay) >= zone->moves.back();
  series.horizon |= endless && !settles;
  AddMoving(rule, first, endless && !settles ? span.horizon : last, endless && settles);
}

// All occurrences one by one.
void SeriesReader::WriteOut() {
  series.writtenOut = true;
  const std::int64_t from = -Reach() * kSecondsOfDay;
  std::vector<std::int64_t> excluded;
  for (const IcalRule& rule : event.exceptionRules) {
    IcalOccurrences occurrences(rule, start, from, std::min(UntilWall(rule), (span.last + 1) * kSecondsOfDay),
                                work);
    for (std::int64_t wall = 0; excluded.size() < kMostOfEvent * 40 && occurrences.Next(wall);)
      excluded.push_back(wall);
  }
  std::sort(excluded.begin(), excluded.end());
  for (const IcalRule& rule : event.rules) {
    const bool endless = !rule.until && rule.count == 0;
    const std::int64_t end = (endless ? span.horizon + 1 : span.last + 400) * kSecondsOfDay - 1;
    series.horizon |= endless;
    IcalOccurrences occurrences(rule, start, from, std::min(UntilWall(rule), end), work);
    std::size_t kept = 0;
    for (std::int64_t wall = 0; occurrences.Next(wall);) {
      if (DayOf(zones.Convert(zone, wall, nullptr) + length) < 0) {
        series.outside = true;
        continue;
      }
      if (IsExcepted(wall) || std::binary_search(excluded.begin(), excluded.end(), wall)) continue;
      if (kept++ == kMostOfEvent) {
        series.tooMany = true;
        break;
      }
      written.push_back(wall);
    }
  }
  if (!std::binary_search(excluded.begin(), excluded.end(), start)) written.push_back(start);
  std::sort(written.begin(), written.end());
  written.erase(std::unique(written.begin(), written.end()), written.end());
  for (const std::int64_t wall : written) AddSingle(wall, length);
  series.tooMany |= work.left < 0;
}

void SeriesReader::AddExtras(const std::optional<DayRule>& simple) {
  std::vector<std::pair<std::int64_t, std::int64_t>> extras;
  for (const IcalExtra& extra : event.extras) {
    std::int64_t wall = 0;
    if (wholeDays) {
      wall = WholeDayOf(extra.start, zones) * kSecondsOfDay;
    } else if (extra.start.isDate) {
      wall = extra.start.wall + SecondOf(start);
    } else {
      wall = zones.Convert(extra.start.zone, extra.start.wall, zone);
    }
    extras.emplace_back(wall, wholeDays ? length : extra.length.value_or(length));
  }
  std::sort(extras.begin(), extras.end());
  extras.erase(std::unique(extras.begin(), extras.end()), extras.end());
  for (const auto& [wall, itsLength] : extras) {
    if (wall == start || std::binary_search(written.begin(), written.end(), wall)) continue;
    if (simple && SecondOf(wall) == SecondOf(start) && NextOf(*simple, DayOf(wall)) == DayOf(wall)) {
      const IcalRule& rule = event.rules.front();
      const bool within = wall <= UntilWall(rule) &&
                          (rule.count == 0 ||
                           DayOf(wall) <= NumberOf(*simple, rule.count, DayOf(wall)).value_or(DayOf(wall)));
      if (within) continue;
    }
    AddSingle(wall, itsLength);
  }
}

}  // namespace

IcalSeries ReadSeries(const IcalEvent& event, const std::vector<IcalMoment>& replaced, const IcalZones& zones,
                      const IcalSpan& span, IcalWork& work) {
  SeriesReader reader(event, zones, span, work);
  const std::int64_t before = std::min(work.left, kMostWork);
  IcalSeries series = reader.Read(replaced);
  work.left -= before - reader.WorkLeft();
  return series;
}

}  // namespace core
