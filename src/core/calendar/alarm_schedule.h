// When alarms ring, which of a file's are due, and what a record holds after its alarm. Nothing here rings or
// writes: whoever shows an alarm asks ListAlarms, takes the edit lock of the first that is due, reads it,
// asks IsDue again, shows it, and writes the record back after AfterAlarm.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "core/calendar/appointment.h"

namespace core {

struct AlarmMoment {
  Date date;
  TimeOfDay time;
};

// The clock, as alarms are compared with it: to five minutes.
AlarmMoment AlarmNow();

// When the alarm rings: alarmDaysBefore days before the appointment or, of one that repeats, before the
// occurrence in alarmDate; on alarmDate itself where that would leave the calendar. What is stored decides,
// so the date may be none.
AlarmMoment RingMoment(const Appointment& appointment);

// Whether the alarm is on and its moment is reached. A date that is none is always past, and a time that is
// none begins with its day: the user gets to see the appointment, once, rather than never.
bool IsDue(const Appointment& appointment, const AlarmMoment& now);

// The day that the alarm is about: of an appointment that repeats the pending occurrence.
Date AlarmOccurrence(const Appointment& appointment);

// Makes the record what it is once its alarm has been shown: the alarm of one that repeats waits for the next
// occurrence, unless there is none any more or the user wants no more of it (`disable`); every other is off.
void AfterAlarm(Appointment& appointment, bool disable);

// Which alarms have rung in a copy that cannot write it into the file, until the copy ends. Only those of the
// day ring: of what is older nobody knows whether it rang, and it would ring at every start.
class RungAlarms {
 public:
  // Whether the alarm is to ring. Of one that repeats, alarmDate gets the occurrence it rings for: nobody may
  // have moved it on.
  bool IsDue(Appointment& appointment, const AlarmMoment& now) const;

  // That it has rung, or is to ring no more (`disable`).
  void Note(const Appointment& appointment, bool disable);

 private:
  std::unordered_map<std::uint64_t, std::int64_t> last;  // moment by id
};

// The alarms of a file that its password shows.
struct AlarmList {
  std::vector<RecordKey> due;  // in the order in which they ring: by alarmDate, then as in the file
  RecordKey next;              // of the others the one that rings first; none when there is none
  bool whole = true;           // false when a part of the file could not be read
};

// Lists them from the file's day table. False, with an empty list, when there is no memory, the file is
// closed or no calendar, or its password allows nothing.
[[nodiscard]] bool ListAlarms(const RecordFile& file, const AlarmMoment& now, AlarmList& list);

}  // namespace core
