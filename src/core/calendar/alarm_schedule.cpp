#include "core/calendar/alarm_schedule.h"

#include <algorithm>
#include <optional>

#include "core/calendar/repeat_rule.h"
#include "core/store/record_scan.h"

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

}  // namespace

AlarmMoment AlarmNow() {
  return {Today(), NowRounded(5)};
}

AlarmMoment RingMoment(const Appointment& appointment) {
  Appointment alarm = appointment;
  const Date base = HasRepeat(appointment) ? appointment.alarmDate : appointment.date;
  // Where it has no date, the stored one stands.
  static_cast<void>(AlarmDateFromDate(alarm, base));
  return {alarm.alarmDate, alarm.alarmTime};
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

bool ListAlarms(const RecordFile& file, const AlarmMoment& now, AlarmList& list) {
  list = {};
  if (file.SlotSize() != sizeof(Appointment)) return false;
  struct Alarm {
    int alarmDay;
    std::int64_t ring;
    RecordKey record;
  };
  std::vector<Alarm> due;
  std::optional<Alarm> next;
  const ScanResult scanned = ScanRecords(file, [&](const char* slot, std::int32_t offset) {
    const auto& appointment = *reinterpret_cast<const Appointment*>(slot);
    if (appointment.alarmOn != 1) return;
    const Alarm alarm{StoredDayIndex(appointment.alarmDate),
                      MomentKey(RingMoment(appointment)),
                      {offset, appointment.header.recordId}};
    if (alarm.ring <= MomentKey(now)) {
      due.push_back(alarm);
    } else if (!next || alarm.ring < next->ring) {
      next = alarm;
    }
  });
  if (scanned == ScanResult::kFailed) return false;
  std::stable_sort(due.begin(), due.end(),
                   [](const Alarm& a, const Alarm& b) { return a.alarmDay < b.alarmDay; });
  for (const Alarm& alarm : due) list.due.push_back(alarm.record);
  if (next) list.next = next->record;
  list.whole = scanned == ScanResult::kAll;
  return true;
}

}  // namespace core
