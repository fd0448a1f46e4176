// The occurrence test on any rule and any days: it ends, and a range of days that has an occurrence on its
// first day has one.
#include <cstring>

#include "core/calendar/repeat_rule.h"
#include "fuzz_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  struct Input {
    core::RepeatRule rule;
    core::Date date;
    core::Date from;
    core::Date to;
  } input;
  if (size < sizeof input) return 0;
  std::memcpy(&input, data, sizeof input);
  core::Appointment record{};
  record.repeat = input.rule;
  record.date = input.date;
  const bool inRange = core::OccursIn(record, input.from, input.to);
  const bool onFirst = core::OccursOn(record, input.from);
  FuzzCheck(inRange || !onFirst || core::DayIndex(input.to) < core::DayIndex(input.from));
  core::OccursOnDate(&record, &input.from);
  const core::DateRange range = {input.from, input.to};
  core::OccursInRange(&record, &range);
  core::ClearRepeat(record);
  FuzzCheck(record.repeat.repeatType == 0 && !core::OccursOn(record, input.from));
  return 0;
}
