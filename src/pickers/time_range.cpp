#include "pickers/time_range.h"

#include <algorithm>

#include "platform/desktop/messages.h"

namespace {

constexpr int kHour = 60;  // minutes
constexpr int kStep = 5;
constexpr int kHalfDay = 12;                 // hours
constexpr int kLatest = 24 * kHour - kStep;  // minutes of the day
constexpr int kLastMinute = kLastPick * kStep;

int MinuteOfDay(const core::TimeOfDay& time) {
  return (time.hour + (time.half == core::kBeforeNoon ? 0 : kHalfDay)) * kHour + time.minute;
}

std::string TwoDigits(int number) {
  std::string text = std::to_string(number);
  if (number < 10) text.insert(0, 1, '0');
  return text;
}

}  // namespace

TimeRange PickableRange(const TimeRange& range) {
  const int start = core::TimeSlot(range.start);
  const int end = core::TimeSlot(range.end);
  if (start >= kFirstPick && start <= kLastPick && end >= 0 && end <= kLastPick) return range;
  return {TimeOfSlot(kFirstPick), TimeOfSlot(kFirstPick)};
}

core::TimeOfDay TimeOfSlot(int slot) {
  core::TimeOfDay time{0, 0, 0, core::kBeforeNoon};
  core::TimeFromSlot(slot, time);
  return time;
}

core::TimeOfDay Later(const core::TimeOfDay& time, int minutes) {
  const int minute = std::clamp(MinuteOfDay(time) + minutes, 0, kLatest);
  const int hour = minute / kHour;
  return {hour % kHalfDay, minute % kHour, 0, hour < kHalfDay ? core::kBeforeNoon : core::kAfterNoon};
}

std::string DurationLabel(const TimeRange& range) {
  const int minutes = std::max(MinuteOfDay(range.end) - MinuteOfDay(range.start), 0);
  return TwoDigits(minutes / kHour) + ":" + TwoDigits(minutes % kHour);
}

std::optional<core::TimeOfDay> KeyEnd(unsigned key, const TimeRange& range) {
  const int start = MinuteOfDay(range.start);
  int end = MinuteOfDay(range.end);
  switch (key) {
    case VK_UP:
      end -= kStep;
      break;
    case VK_DOWN:
      end += kStep;
      break;
    case VK_PRIOR:
      end -= kHour;
      break;
    case VK_NEXT:
      end += kHour;
      break;
    case VK_HOME:
      end = start;
      break;
    case VK_END:
      end = kLastMinute;
      break;
    default:
      return std::nullopt;
  }
  return Later(range.start, std::clamp(end, start, std::max(start, kLastMinute)) - start);
}
