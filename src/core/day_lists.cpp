#include "core/day_lists.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>

#include "core/record_query.h"
#include "core/record_scan.h"
#include "core/repeat_rule.h"
#include "core/value_compare.h"

namespace core {
namespace {

std::int64_t MonthNumber(const Date& date) {
  return std::int64_t{date.year} * 12 + date.month;
}

// The days asked for. Days() answers what OccursOn answers for each of them, at the cost of one call or two:
// the rules that fall on many days are worked out without asking for each day.
class Span {
 public:
  Span(const Date& first, int count) : start(DayIndex(first)) {
    Date date = first;
    if (start < 0) return;
    do {
      dates[static_cast<std::size_t>(size++)] = date;
    } while (size < count && NextDay(date));
  }

  std::uint64_t Days(const Appointment& appointment) const;

 private:
  // Days from `from` to `to` (DayIndex, both included) for which `falls` holds.
  template <typename Falls>
  std::uint64_t Where(std::int64_t from, std::int64_t to, const Falls& falls) const {
    std::uint64_t days = 0;
    const std::int64_t last = std::min(to, std::int64_t{start} + size - 1);
    for (std::int64_t day = std::max<std::int64_t>(from, start); day <= last; ++day) {
      if (falls(day)) days |= std::uint64_t{1} << (day - start);
    }
    return days;
  }
  std::uint64_t Repeating(const Appointment& appointment) const;
  std::uint64_t AskEach(const Appointment& appointment) const;

  const Date& At(std::int64_t day) const { return dates[static_cast<std::size_t>(day - start)]; }

  int start;  // DayIndex
  int size = 0;
  std::array<Date, DayLists::kMostDays> dates;
};

std::uint64_t Span::Days(const Appointment& appointment) const {
  if (HasRepeat(appointment)) return Repeating(appointment);
  const int day = DayIndex(appointment.date);
  return day < 0 ? 0 : Where(day, day, [](std::int64_t) { return true; });
}

// A yearly rule falls on few days, and one of a damaged record on days of its own.
std::uint64_t Span::AskEach(const Appointment& appointment) const {
  const RepeatRule& rule = appointment.repeat;
  const bool yearly = rule.repeatType == kRepeatYearly;
  return Where(0, DayIndex(rule.repeatEnd), [&](std::int64_t day) {
    const Date& date = At(day);
    if (yearly && rule.repeatParam != static_cast<std::uint32_t>(date.month << 16 | date.day)) return false;
    return OccursOn(appointment, date);
  });
}

std::uint64_t Span::Repeating(const Appointment& appointment) const {
  const RepeatRule& rule = appointment.repeat;
  const std::int64_t first = DayIndex(appointment.date);
  const std::int64_t end = DayIndex(rule.repeatEnd);
  const std::int64_t every = rule.repeatEvery;
  if (end < start) return 0;
  if (first < 0 || every == 0 || rule.repeatType == kRepeatYearly) return AskEach(appointment);
  if (rule.repeatType == kRepeatDaily) {
    return Where(first, end, [&](std::int64_t day) { return (day - first) % every == 0; });
  }
  if (rule.repeatType == kRepeatWeekly) {
    const std::int64_t week = std::max<std::int64_t>(0, first - Weekday(appointment.date));
    return Where(first, end, [&](std::int64_t day) {
      const std::int64_t behind = day - week;
      return behind / 7 % every == 0 && HasWeekday(rule.repeatParam, static_cast<int>(behind % 7) + 1);
    });
  }
  if (rule.repeatType != kRepeatMonthly) return 0;
  const std::int64_t month = MonthNumber(appointment.date);
  return Where(first, end, [&](std::int64_t day) {
    return At(day).day == static_cast<std::int32_t>(rule.repeatParam) &&
           (MonthNumber(At(day)) - month) % every == 0;
  });
}

}  // namespace

std::uint64_t OccurrenceDays(const Appointment& appointment, const Date& first, int count) {
  return Span(first, std::clamp(count, 0, DayLists::kMostDays)).Days(appointment);
}

bool DayLists::Run(const RecordFile& file, const Date& first, int count, std::string_view category) {
  days.clear();
  if (count < 1 || count > kMostDays || file.SlotSize() != sizeof(Appointment)) return false;
  const Span span(first, count);
  const std::string wanted(category);
  struct Entry {
    std::uint64_t key;
    std::int32_t offset;
  };
  std::vector<std::vector<Entry>> entries(static_cast<std::size_t>(count));
  const ScanResult scanned = ScanRecords(file, [&](const char* slot, std::int32_t offset) {
    const auto& appointment = *reinterpret_cast<const Appointment*>(slot);
    std::uint64_t falls = span.Days(appointment);
    if (falls == 0) return;
    const auto& name = appointment.header.category;
    if (!wanted.empty() && CompareValues(ValueKind::kText, name, wanted.c_str(), sizeof name) != 0) return;
    for (; falls != 0; falls &= falls - 1) {
      auto& day = entries[static_cast<std::size_t>(std::countr_zero(falls))];
      if (day.size() < RecordQuery::kMostOffsets) day.push_back({kDayOrder.key(slot), offset});
    }
  });
  days.resize(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    std::stable_sort(entries[i].begin(), entries[i].end(),
                     [](const Entry& a, const Entry& b) { return a.key < b.key; });
    for (const Entry& entry : entries[i]) days[i].push_back(entry.offset);
  }
  if (scanned != ScanResult::kFailed) return true;
  days.assign(entries.size(), {});
  return false;
}

}  // namespace core
