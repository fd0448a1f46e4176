// The time that an appointment takes, from a start to an end on one day, as the time picker works on it: it
// reaches from kFirstPick to kLastPick in steps of five minutes.
#pragma once

#include <optional>
#include <string>

#include "core/date_time.h"

// The first and the last time of day that can be picked, as five-minute slots: 7:00 and 23:00.
inline constexpr int kFirstPick = 84;
inline constexpr int kLastPick = 276;

struct TimeRange {
  core::TimeOfDay start;
  core::TimeOfDay end;
};

// The range as it can be picked: where it begins or ends beyond what can, or holds what is no time of day,
// both are the first time that can be picked.
TimeRange PickableRange(const TimeRange& range);

// A time of day by its slot, 0..287.
core::TimeOfDay TimeOfSlot(int slot);

// The time that many minutes later (earlier, below 0), on the same day: 0:00 at the earliest, 23:55 at the
// latest.
core::TimeOfDay Later(const core::TimeOfDay& time, int minutes);

// How long the range is, "01:15"; "00:00" where its end does not lie behind its start.
std::string DurationLabel(const TimeRange& range);

// The end that a key moves the range's end to, between the start and kLastPick: arrows by five minutes, pages
// by an hour, Home to the start and End to the last time. Nothing for other keys.
std::optional<core::TimeOfDay> KeyEnd(unsigned key, const TimeRange& range);
