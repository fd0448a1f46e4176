// An appointment: one slot of a calendar file. It is read, written, copied to the clipboard and compared as
// this byte image. docs/file-format.md gives every field's meaning and range.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/store/record_file.h"
#include "core/store/record_format.h"
#include "core/store/record_query.h"

namespace core {

enum RepeatType : std::uint8_t {
  kRepeatNone = 0,
  kRepeatDaily = 1,
  kRepeatWeekly = 2,
  kRepeatMonthly = 4,
  kRepeatYearly = 5,
};

enum AlarmStartKind : std::uint8_t { kAlarmStartsMail = 1, kAlarmStartsUrl = 2, kAlarmStartsDocument = 3 };

enum AttachmentKind : std::uint8_t { kNoAttachment = 0, kAttachedDocument = 1, kAttachedUrl = 2 };

// What a rule without an end holds as its end, in either era of the calendar.
inline constexpr Date kNoEndDate{31, 12, kEarlyLastYear};

#pragma pack(push, 1)

// When an appointment occurs again. All zero for one that does not.
struct RepeatRule {
  std::uint8_t repeatType;    // a RepeatType
  Date repeatEnd;             // last day an occurrence may fall on; EndOf (repeat_rule.h) reads it
  std::uint32_t repeatEvery;  // every n days, weeks, months or years
  // Weekly: bit 0 Sunday .. bit 6 Saturday. Monthly: day of the month. Yearly: month x 65536 + day.
  std::uint32_t repeatParam;
};

// Where an appointment that was read from an iCalendar file came from, so that reading the file again adds
// nothing. All zero for one that was not; a copy of an appointment carries none.
struct ImportMark {
  std::uint64_t uid;      // hash of the event's UID; 0 for none
  std::uint32_t version;  // hash of what the event said when it was read
  std::uint32_t changed;  // when it was last modified: seconds since 2000-01-01T00:00:00Z, 0 if not said
  // Which of the event's records this is: the day number of its date, and a number among those of that day.
  std::uint16_t day;
  std::uint8_t ordinal;
};

struct Appointment {
  RecordHeader header;
  std::uint8_t alarmOn;
  char alarmTone[260];  // path of a wave file
  TimeOfDay alarmTime;
  Date alarmDate;
  std::uint8_t alarmStartKind;  // an AlarmStartKind
  char alarmStartTarget[260];
  std::uint8_t attachmentKind;  // an AttachmentKind
  char attachment[260];
  RepeatRule repeat;
  ImportMark importMark;
  std::int32_t alarmDaysBefore;  // 0..99
  std::uint8_t alarmState;
  Date date;  // of the first occurrence
  TimeOfDay startTime;
  TimeOfDay endTime;
  std::uint32_t allDay;  // 1 all-day, 0 timed
  char subject[150];
  char notes[1024];
};

#pragma pack(pop)

static_assert(sizeof(RepeatRule) == 21 && offsetof(RepeatRule, repeatType) == 0);
static_assert(offsetof(RepeatRule, repeatEnd) == 1 && offsetof(RepeatRule, repeatEvery) == 13);
static_assert(offsetof(RepeatRule, repeatParam) == 17);

static_assert(sizeof(ImportMark) == 19 && offsetof(ImportMark, version) == 8);
static_assert(offsetof(ImportMark, changed) == 12 && offsetof(ImportMark, day) == 16);
static_assert(offsetof(ImportMark, ordinal) == 18);

static_assert(sizeof(Appointment) == 2627 && sizeof(Appointment) == kCalendarKind.slotSize);
static_assert(offsetof(Appointment, header) == 0 && offsetof(Appointment, alarmOn) == 549);
static_assert(offsetof(Appointment, alarmTone) == 550 && offsetof(Appointment, alarmTime) == 810);
static_assert(offsetof(Appointment, alarmDate) == 826 && offsetof(Appointment, alarmStartKind) == 838);
static_assert(offsetof(Appointment, alarmStartTarget) == 839 &&
              offsetof(Appointment, attachmentKind) == 1099);
static_assert(offsetof(Appointment, attachment) == 1100 && offsetof(Appointment, repeat) == 1360);
static_assert(offsetof(Appointment, importMark) == 1381 && offsetof(Appointment, alarmDaysBefore) == 1400);
static_assert(offsetof(Appointment, alarmState) == 1404 && offsetof(Appointment, date) == 1405);
static_assert(offsetof(Appointment, startTime) == 1417 && offsetof(Appointment, endTime) == 1433);
static_assert(offsetof(Appointment, allDay) == 1449 && offsetof(Appointment, subject) == 1453);
static_assert(offsetof(Appointment, notes) == 1603);

bool HasRepeat(const Appointment& appointment);
bool HasAttachment(const Appointment& appointment);
bool IsInternetEvent(const Appointment& appointment);

// The alarm's date for an occurrence on `date`: alarmDaysBefore days earlier. False, the record unchanged,
// when that lies before the calendar's first day.
[[nodiscard]] bool AlarmDateFromDate(Appointment& appointment, const Date& date);

// The reverse: alarmDaysBefore days after the alarm's date. False, `date` unchanged, beyond the calendar's
// last day.
[[nodiscard]] bool DateFromAlarm(const Appointment& appointment, Date& date);

// Makes the alarm one that is off: ready to be set to ring at the appointment's start.
void ResetAlarm(Appointment& appointment);

// The last step of every edit: an alarm that is off is made ready for the appointment's start. One that is on
// keeps its own date and time.
void SettleAlarm(Appointment& appointment);

// A new appointment of the file's owner: everything zero but the record header. False when the file cannot be
// read.
[[nodiscard]] bool NewAppointment(const RecordFile& file, Appointment& appointment);

// The three appointments of today that a new calendar may begin with, made for the file with this header
// block.
std::array<Appointment, 3> ExampleAppointments(const HeaderBlock& header);

// Adds them. False when one could not be added; those before it stand.
[[nodiscard]] bool AddExampleAppointments(RecordFile& file);

// ---- How lists of appointments are ordered ----

// Within a day: all-day appointments first, then by start time. Compares whole appointments.
int DayOrder(const void* a, const void* b, std::size_t size);

// By date, then as DayOrder. Compares whole appointments.
int ListOrder(const void* a, const void* b, std::size_t size);

extern const RecordOrder kDayOrder;
extern const RecordOrder kListOrder;

// By date and start time, all-day or not.
extern const RecordOrder kDateTimeOrder;

}  // namespace core
