#include "core/calendar/alarm_schedule.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "core/calendar/day_table.h"
#include "core/calendar/repeat_rule.h"

namespace core {
namespace {

// Every minute belongs to the five-minute step that it lies in, also those after the last step of an hour.
int AlarmSlot(TimeOfDay time) {
  if (time.minute > 55 && time.minute < 60) time.minute = 55;
  return TimeSlot(time);
}

// A number that sorts as moments do, in either era of the calendar.
std::int64_t MomentKey(const AlarmMoment& moment) {
  constexpr std::int64_t kDay = 1000;  // more than there are slots
  return kDay * StoredDayIndex(moment.date) + AlarmSlot(moment.time);
}

// `base` is the day that the alarm is about.
AlarmMoment Ring(const Date& base, const Date& alarmDate, const TimeOfDay& time, std::int32_t daysBefore) {
  Date ring = base;
  return {StepDays(ring, -std::max(daysBefore, 0)) ? ring : alarmDate, time};
}

}  // namespace

AlarmMoment AlarmNow() {
  return {Today(), NowRounded(5)};
}

AlarmMoment RingMoment(const Appointment& appointment) {
  return Ring(HasRepeat(appointment) ? appointment.alarmDate : appointment.date, appointment.alarmDate,
              appointment.alarmTime, appointment.alarmDaysBefore);
}

bool IsDue(const Appointment& appointment, const AlarmMoment& now) {
  return appointment.alarmOn == 1 && MomentKey(RingMoment(appointment)) <= MomentKey(now);
}

Date AlarmOccurrence(const Appointment& appointment) {
  if (!HasRepeat(appointment)) return appointment.date;
  Appointment alarm = appointment;
  alarm.alarmDate = RingMoment(appointment).date;
  Date pending = alarm.alarmDate;
  // Beyond the calendar's end it is the ring date.
  static_cast<void>(DateFromAlarm(alarm, pending));
  return pending;
}

void AfterAlarm(Appointment& appointment, bool disable) {
  std::optional<Date> next;
  if (HasRepeat(appointment) && !disable) next = NextOccurrence(appointment, AlarmOccurrence(appointment));
  if (next) {
    appointment.alarmDate = *next;
    return;
  }
  appointment.alarmOn = 0;
  appointment.alarmState = 0;
}

bool RungAlarms::IsDue(Appointment& appointment, const AlarmMoment& now) const {
  const int today = StoredDayIndex(now.date);
  if (HasRepeat(appointment) && StoredDayIndex(RingMoment(appointment).date) < today) {
    Date passed = now.date;  // the last day whose occurrence would have rung before today
    if (!StepDays(passed, std::max(appointment.alarmDaysBefore, 0) - 1)) return false;
    const std::optional<Date> next = NextOccurrence(appointment, passed);
    if (!next) return false;
    appointment.alarmDate = *next;
  }
  const AlarmMoment moment = RingMoment(appointment);
  if (StoredDayIndex(moment.date) != today || !core::IsDue(appointment, now)) return false;
  const std::uint64_t id = appointment.header.recordId;
  const auto rung = last.find(id);
  return rung == last.end() || rung->second < MomentKey(moment);
}

void RungAlarms::Note(const Appointment& appointment, bool disable) {
  const std::uint64_t id = appointment.header.recordId;
  last[id] = disable ? std::numeric_limits<std::int64_t>::max() : MomentKey(RingMoment(appointment));
}

bool ListAlarms(const RecordFile& file, const AlarmMoment& now, AlarmList& list) {
  list = {};
  const DayTable* table = DayTable::Of(file);
  if (table == nullptr) return false;
  std::vector<std::pair<int, RecordKey>> due;  // with the day of alarmDate
  std::int64_t nextRing = 0;
  table->VisitAlarms([&](const DayTable::Alarm& alarm) {
    const std::int64_t ring = MomentKey(Ring(alarm.repeats ? alarm.alarmDate : alarm.date, alarm.alarmDate,
                                             alarm.alarmTime, alarm.alarmDaysBefore));
    if (ring <= MomentKey(now)) {
      due.emplace_back(StoredDayIndex(alarm.alarmDate), alarm.record);
    } else if (list.next.IsNone() || ring < nextRing) {
      list.next = alarm.record;
      nextRing = ring;
    }
  });
  std::stable_sort(due.begin(), due.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const auto& [day, record] : due) list.due.push_back(record);
  list.whole = table->IsWhole();
  return true;
}

}  // namespace core
