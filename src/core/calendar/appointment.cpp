#include "core/calendar/appointment.h"

#include <algorithm>
#include <cstring>

namespace core {
namespace {

constexpr int kTimeBits = 16;  // of a sort key, below the date's

const Appointment& At(const void* slot) {
  return *static_cast<const Appointment*>(slot);
}

// Day numbers and time slots begin at -1; moved up by one they keep their order without a sign.
std::uint64_t TimeKey(const TimeOfDay& time) {
  return static_cast<std::uint64_t>(std::int64_t{TimeSlot(time)} + 1);
}

std::uint64_t DateKey(const Date& date) {
  return static_cast<std::uint64_t>(std::int64_t{DayIndex(date)} + 1) << kTimeBits;
}

std::uint64_t DayKey(const void* slot) {
  constexpr std::uint64_t kTimed = 1U << (kTimeBits - 1);
  return TimeKey(At(slot).startTime) | (At(slot).allDay != 0 ? 0 : kTimed);
}

std::uint64_t ListKey(const void* slot) {
  return DateKey(At(slot).date) | DayKey(slot);
}

std::uint64_t DateTimeKey(const void* field) {
  TimeOfDay time;
  Date date;
  std::memcpy(&date, field, sizeof date);
  std::memcpy(&time, static_cast<const char*>(field) + sizeof date, sizeof time);
  return DateKey(date) | TimeKey(time);
}

int Compare(std::uint64_t a, std::uint64_t b) {
  return a < b ? -1 : (a > b ? 1 : 0);
}

// Nothing rings behind its day: a number below 0 counts as none.
std::int32_t DaysBefore(const Appointment& appointment) {
  return std::max(std::int32_t{appointment.alarmDaysBefore}, 0);
}

Appointment Example(const HeaderBlock& header, const TimeOfDay& start, const TimeOfDay& end, bool allDay,
                    std::string_view category, std::string_view subject) {
  Appointment example{};
  InitRecordHeader(example.header, sizeof example, header);
  WriteText(example.header.category, category);
  example.date = Today();
  example.startTime = start;
  example.endTime = end;
  example.allDay = allDay ? 1 : 0;
  ResetAlarm(example);
  WriteText(example.subject, subject);
  return example;
}

}  // namespace

const RecordOrder kDayOrder{0, sizeof(Appointment), DayOrder, DayKey};
const RecordOrder kListOrder{0, sizeof(Appointment), ListOrder, ListKey};
const RecordOrder kDateTimeOrder{offsetof(Appointment, date), kDateTimeSize, CompareDateTimes, DateTimeKey};

bool HasRepeat(const Appointment& appointment) {
  return appointment.repeat.repeatType != kRepeatNone;
}

bool HasAttachment(const Appointment& appointment) {
  return appointment.attachmentKind != kNoAttachment && appointment.attachment[0] != '\0';
}

bool IsInternetEvent(const Appointment& appointment) {
  return appointment.header.eventFlag != 0;
}

bool AlarmDateFromDate(Appointment& appointment, const Date& date) {
  Date moved = date;
  if (!StepDays(moved, -DaysBefore(appointment))) return false;
  appointment.alarmDate = moved;
  return true;
}

bool DateFromAlarm(const Appointment& appointment, Date& date) {
  Date moved = appointment.alarmDate;
  if (!StepDays(moved, DaysBefore(appointment))) return false;
  date = moved;
  return true;
}

void ResetAlarm(Appointment& appointment) {
  appointment.alarmOn = 0;
  WriteText(appointment.alarmTone, "");
  WriteText(appointment.alarmStartTarget, "");
  appointment.alarmStartKind = kAlarmStartsDocument;
  appointment.alarmDate = appointment.date;
  appointment.alarmTime = appointment.startTime;
  appointment.alarmDaysBefore = 0;
  appointment.alarmState = 0;
}

void SettleAlarm(Appointment& appointment) {
  if (appointment.alarmOn == 0) ResetAlarm(appointment);
}

bool NewAppointment(const RecordFile& file, Appointment& appointment) {
  appointment = {};
  return file.SlotSize() == sizeof appointment && file.InitRecord(&appointment);
}

std::array<Appointment, 3> ExampleAppointments(const HeaderBlock& header) {
  return {Example(header, {10, 0, 0, kBeforeNoon}, {10, 20, 0, kBeforeNoon}, true, "",
                  "Business meeting with Oren Maddox."),
          Example(header, {2, 10, 0, kAfterNoon}, {3, 0, 0, kAfterNoon}, false, "",
                  "Business lunch with Ida Vance."),
          Example(header, {4, 20, 0, kAfterNoon}, {4, 20, 0, kAfterNoon}, false, "Calls", "Brightfold Ltd.")};
}

bool AddExampleAppointments(RecordFile& file) {
  HeaderBlock header;
  if (file.SlotSize() != sizeof(Appointment) || !file.ReadHeaderBlock(header)) return false;
  for (const Appointment& example : ExampleAppointments(header)) {
    if (file.AddRecord(&example) != Result::kDone) return false;
  }
  return true;
}

int DayOrder(const void* a, const void* b, std::size_t /*size*/) {
  return Compare(DayKey(a), DayKey(b));
}

int ListOrder(const void* a, const void* b, std::size_t /*size*/) {
  return Compare(ListKey(a), ListKey(b));
}

}  // namespace core
