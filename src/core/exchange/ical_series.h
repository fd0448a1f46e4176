// When an event takes place: its repeat, further days and exceptions as runs of occurrences on the calendar's
// wall clock that look alike. Pure arithmetic on days; what a record can hold of a run is ical_fit.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "core/exchange/ical_day_rule.h"
#include "core/exchange/ical_event.h"

namespace core {

// As many records come of one event, and as many runs are looked at.
inline constexpr std::size_t kMostOfEvent = 1000;

struct IcalRun {
  std::optional<DayRule> rule;  // none: one occurrence
  int first = 0;                // day of the first occurrence
  int last = 0;                 // and of the last one
  bool endless = false;         // `last` means nothing
  int second = 0;               // of the day, at which they start; of whole days 0
  std::int64_t length = 0;      // seconds; of whole days a number of those, one at least
};

// The days within which occurrences are wanted.
struct IcalSpan {
  int last = 0;     // of the calendar; the first is 0
  int horizon = 0;  // where an endless repeat ends that no rule can hold
};

struct IcalSeries {
  std::vector<IcalRun> runs;  // by their first days
  bool wholeDays = false;
  bool endBeforeStart = false;
  bool converted = false;   // the calendar's clock shows another time than the event's
  bool cut = false;         // one repeat became several runs
  bool writtenOut = false;  // no rule of a record says the repeat
  bool horizon = false;     // it goes on behind the span's horizon
  bool tooMany = false;     // there would be more runs, or the work was used up
  bool outside = false;     // occurrences outside the span were left out
};

// The occurrences of an event, but for those that `replaced` names: what an event of its own stands for.
// The event has a start.
IcalSeries ReadSeries(const IcalEvent& event, const std::vector<IcalMoment>& replaced, const IcalZones& zones,
                      const IcalSpan& span, IcalWork& work);

}  // namespace core
