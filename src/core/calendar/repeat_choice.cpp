#include "core/calendar/repeat_choice.h"

#include <algorithm>

#include "core/calendar/repeat_rule.h"

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

}  // namespace

RepeatChoice ReadRepeat(const Appointment& appointment) {
  const RepeatRule& rule = appointment.repeat;
  RepeatChoice choice;
  choice.type = KnownType(rule.repeatType);
  const std::uint32_t every = rule.repeatEvery;  // a copy: the field is not aligned
  choice.every = std::clamp<std::uint32_t>(every, 1, kLongestInterval);
  const std::optional<Date> end = EndOf(rule);
  if (end && IsValidDate(end->day, end->month, end->year)) choice.end = end;
  if (choice.type == kRepeatWeekly) choice.weekdays = rule.repeatParam & kWholeWeek;
  if (choice.weekdays == 0) choice.weekdays = WeekdayBit(WeekdayNumber(appointment.date));
  return choice;
}

bool ChangeDate(Appointment& appointment, const Date& date) {
  if (HasRepeat(appointment) && EndsBefore(appointment.repeat, date)) return false;
  appointment.date = date;
  return true;
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

bool StoreRepeat(const RepeatChoice& choice, Appointment& appointment) {
  const RepeatRule before = appointment.repeat;
  ClearRepeat(appointment);
  if (choice.type == kRepeatNone) return true;
  appointment.repeat = {choice.type, kNoEndDate, choice.every,
                        RepeatParam(choice.type, choice.weekdays, appointment.date)};
  if (!choice.end || SetEnd(appointment, *choice.end)) return true;
  appointment.repeat = before;
  return false;
}

bool SetEnd(Appointment& appointment, const Date& end) {
  const RepeatRule before = appointment.repeat;
  appointment.repeat.repeatEnd = kNoEndDate;
  if (IsSameDate(end, LastDate())) return true;
  Date last = end;
  if (IsSameDate(end, kNoEndDate)) {
    if (OccursOn(appointment, end) || DayIndex(appointment.date) >= DayIndex(end)) {
      appointment.repeat = before;
      return false;
    }
    do {
      PreviousDay(last);
    } while (DayIndex(last) > DayIndex(appointment.date) && !OccursOn(appointment, last));
  }
  appointment.repeat.repeatEnd = last;
  return true;
}

int WeekdayNumber(const Date& date) {
  const int weekday = Weekday(date);
  return weekday >= 0 ? weekday + 1 : 7;
}

}  // namespace core
