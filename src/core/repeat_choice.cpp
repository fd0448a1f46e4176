#include "core/repeat_choice.h"

#include <algorithm>

#include "core/repeat_rule.h"

namespace core {
namespace {

RepeatType KnownType(std::uint8_t type) {
  switch (type) {
    case kRepeatDaily:
    case kRepeatWeekly:
    case kRepeatMonthly:
    case kRepeatYearly:
      return static_cast<RepeatType>(type);
    default:
      return kRepeatNone;
  }
}

bool IsSameDay(const Date& a, const Date& b) {
  return a.day == b.day && a.month == b.month && a.year == b.year;
}

}  // namespace

RepeatChoice ReadRepeat(const Appointment& appointment) {
  const RepeatRule& rule = appointment.repeat;
  RepeatChoice choice;
  choice.type = KnownType(rule.repeatType);
  const std::uint32_t every = rule.repeatEvery;  // a copy: the field is not aligned
  choice.every = std::clamp<std::uint32_t>(every, 1, kLongestInterval);
  const Date end = rule.repeatEnd;
  if (IsValidDate(end.day, end.month, end.year) && !IsSameDay(end, kNoEndDate)) choice.end = end;
  if (choice.type == kRepeatWeekly) choice.weekdays = rule.repeatParam & kWholeWeek;
  if (choice.weekdays == 0) choice.weekdays = WeekdayBit(WeekdayNumber(appointment.date));
  return choice;
}

std::uint32_t RepeatParam(std::uint8_t type, std::uint32_t weekdays, const Date& date) {
  switch (type) {
    case kRepeatWeekly:
      return weekdays != 0 ? weekdays : WeekdayBit(WeekdayNumber(date));
    case kRepeatMonthly:
      return static_cast<std::uint32_t>(date.day);
    case kRepeatYearly:
      return static_cast<std::uint32_t>(date.month) << 16 | static_cast<std::uint32_t>(date.day);
    default:
      return 0;
  }
}

RepeatRule BuildRepeat(const RepeatChoice& choice, const Date& date) {
  if (choice.type == kRepeatNone) return {};
  return {choice.type, choice.end.value_or(kNoEndDate), choice.every,
          RepeatParam(choice.type, choice.weekdays, date)};
}

int WeekdayNumber(const Date& date) {
  const int weekday = Weekday(date);
  return weekday >= 0 ? weekday + 1 : 7;
}

}  // namespace core
