// What records can hold of an event's runs of occurrences: each lies within one day, begins and ends on five
// minutes, and repeats by a rule that shows the same days or not at all.
#pragma once

#include <vector>

#include "core/calendar/appointment.h"
#include "core/exchange/ical_series.h"

namespace core {

struct IcalPiece {
  Date date{};  // of the first day it is shown on
  RepeatRule repeat{};
  bool allDay = false;
  bool row = false;  // its days are one occurrence
  TimeOfDay start{}, end{};
  bool begins = false;  // the event begins with it: others of its pieces follow
  int second = 0;       // and at which second of the day, and how long it lasts in all
  std::int64_t length = 0;
};

struct IcalPieces {
  std::vector<IcalPiece> pieces;
  bool fiveMinutes = false;
  bool split = false;
};

// The pieces of all runs, and what it took is noted in `series`, as reading it noted its own.
IcalPieces FitSeries(IcalSeries& series, const IcalSpan& span, IcalWork& work);

}  // namespace core
