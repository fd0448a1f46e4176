// Reads an iCalendar text to a plan: every event that it holds, as records of a calendar, and what of it they
// cannot say. Pure: no calendar, no window, nothing opened but the time zone database.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/calendar/alarm_schedule.h"
#include "core/exchange/exchange_fields.h"
#include "core/exchange/ical_plan.h"

namespace core {

struct IcalReadOptions {
  std::string zone;  // whose wall clock the calendar shows: a name of the zone database; empty: the process's
  AlarmMoment now{};  // AlarmNow(): which alarms are still to come, where endless repeats end
  std::vector<std::string> categories;  // the calendar's list, in code page 1252
  bool mayBeConfidential = false;       // the user is the Owner
};

// Whether PlanIcal knows the zone.
bool IsKnownZone(const std::string& zone);

// One bad event costs only itself: whatever the bytes, the time is bounded by their number. `progress` counts
// bytes.
IcalPlan PlanIcal(std::string_view text, const IcalReadOptions& options,
                  const ExchangeProgress& progress = {});

}  // namespace core
