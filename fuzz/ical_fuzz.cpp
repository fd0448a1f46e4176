// iCalendar texts: whatever the bytes, reading comes to an end, and every record that is planned is one that
// the calendar holds: dates and times of it, texts that are ended, a rule that shows its first day, a mark
// that no other record of the plan has. The first byte chooses era, zone and rights.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <tuple>

#include "core/calendar/repeat_rule.h"
#include "core/exchange/ical_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool IsTime(const core::TimeOfDay& time) {
  return core::TimeSlot(time) >= 0 && core::TimeSlot(time) < core::kDaySlots && time.minute % 5 == 0;
}

template <std::size_t kSize>
bool IsEnded(const char (&field)[kSize]) {
  return field[kSize - 1] == '\0';
}

void CheckRecord(const core::Appointment& record, bool mayBeConfidential) {
  const core::Date date = record.date;
  bool good = core::DayIndex(date) >= 0 && IsTime(record.startTime) && IsTime(record.endTime);
  good = good && core::TimeSlot(record.startTime) <= core::TimeSlot(record.endTime);
  good = good && IsEnded(record.subject) && IsEnded(record.notes) && IsEnded(record.header.category) &&
         IsEnded(record.attachment) && record.subject[0] != '\0';
  good = good && record.alarmTone[0] == '\0' && record.alarmStartTarget[0] == '\0';
  good = good && (mayBeConfidential || record.header.confidential == 0);
  if (core::HasRepeat(record)) {
    good = good && core::OccursOn(record, date) && core::NextOccurrence(record, date).has_value();
    good = good && record.repeat.repeatEvery >= 1 && record.repeat.repeatEvery <= 99;
  }
  if (record.alarmOn != 0) good = good && core::DayIndex(record.alarmDate) >= 0 && IsTime(record.alarmTime);
  if (!good) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const bool late = (data[0] & 1) != 0;
  core::SetLastYear(late ? core::kLateLastYear : core::kEarlyLastYear);
  const char* const zones[] = {"Europe/Berlin", "America/New_York", "Asia/Kathmandu", "UTC"};
  const core::IcalReadOptions options{
      zones[data[0] >> 1 & 3], {{14, 3, late ? 2026 : 2004}, {}}, {"Calls"}, (data[0] & 8) != 0};
  const core::IcalPlan plan = core::PlanIcal({reinterpret_cast<const char*>(data) + 1, size - 1}, options);
  std::set<std::tuple<std::uint64_t, int, int>> marks;
  for (const core::PlannedRecord& planned : plan.records) {
    CheckRecord(planned.record, options.mayBeConfidential);
    const core::ImportMark mark = planned.record.importMark;
    if (mark.uid == 0 || mark.day != core::DayIndex(planned.record.date)) std::abort();
    if (!marks.emplace(mark.uid, mark.day, mark.ordinal).second) std::abort();
  }
  for (const core::IcalRemark& remark : plan.remarks) {
    if (core::DescribeIcalReason(remark.reason, 1).empty()) std::abort();
  }
  return 0;
}
