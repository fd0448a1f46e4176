#include "core/exchange/ical_fit.h"

#include <algorithm>

#include "core/date_time.h"

namespace core {
namespace {

constexpr int kSlotSeconds = 300;
constexpr int kLastSlot = kDaySlots - 1;
// Of a repeat that lasts longer, each occurrence is a row of days instead of each day a repeat.
constexpr int kMostRepeatedDays = 14;

// What a run is within a day: `offset` days behind the day on which it starts.
struct Part {
  int offset = 0;
  int days = 1;  // whole days in a row
  bool allDay = false;
  int startSlot = 0;
  int endSlot = 0;
  bool row = false;  // the days of one occurrence
};

class Fitter {
 public:
  Fitter(IcalSeries& itsSeries, const IcalSpan& itsSpan, IcalWork& itsWork)
      : series(itsSeries), span(itsSpan), work(itsWork) {}

  IcalPieces Fit() {
    for (const IcalRun& run : series.runs) {
      if (!HasRoom()) break;
      AddRun(run);
    }
    return std::move(fitted);
  }

 private:
  void AddRun(const IcalRun& run);
  void AddEach(const IcalRun& run);
  void AddRepeat(const IcalRun& run, const Part& part, const DayRule& rule);
  void AddOnce(const IcalRun& run, const Part& part, int day);
  void Add(const IcalRun& run, const Part& part, int day, const RepeatRule& repeat);
  bool HasRoom();
  static RepeatRule Stored(const DayRule& rule, const Date& end);

  IcalSeries& series;
  const IcalSpan& span;
  IcalWork& work;
  IcalPieces fitted;
};

// The days of a run, and what is shown on each.
std::vector<Part> PartsOf(const IcalRun& run, bool allDay, IcalPieces& fitted) {
  if (allDay) {
    const auto days = static_cast<int>(std::min<std::int64_t>(run.length / kSecondsOfDay, 1 << 20));
    fitted.split |= days > 1;
    return {{0, days, true, 0, 0}};
  }
  const std::int64_t end = run.second + run.length;
  int lastDay = DayOf(std::min<std::int64_t>(end, kSecondsOfDay << 20));
  int lastSlot = (SecondOf(end) + kSlotSeconds - 1) / kSlotSeconds;
  const bool endsAtMidnight = lastDay > 0 && lastSlot == 0;
  if (endsAtMidnight) {
    --lastDay;
    lastSlot = kLastSlot;
  }
  fitted.fiveMinutes |= run.second % kSlotSeconds != 0 || end % kSlotSeconds != 0;
  lastSlot = std::min(lastSlot, kLastSlot);
  const int startSlot = run.second / kSlotSeconds;
  // One without a length ends where it starts, also between five minutes.
  if (lastDay == 0) return {{0, 1, false, startSlot, run.length == 0 ? startSlot : lastSlot}};
  fitted.split = true;
  std::vector<Part> parts{{0, 1, false, startSlot, kLastSlot}};
  const int wholeDays = endsAtMidnight ? lastDay : lastDay - 1;
  if (wholeDays > 0) parts.push_back({1, wholeDays, true, 0, 0});
  if (!endsAtMidnight) parts.push_back({lastDay, 1, false, 0, lastSlot});
  return parts;
}

bool Fitter::HasRoom() {
  if (fitted.pieces.size() < kMostOfEvent && work.Take(1)) return true;
  series.tooMany = true;
  return false;
}

RepeatRule Fitter::Stored(const DayRule& rule, const Date& end) {
  RepeatRule stored{};
  stored.repeatType = rule.type;
  stored.repeatEnd = end;
  stored.repeatEvery = static_cast<std::uint32_t>(rule.every);
  if (rule.type == kRepeatWeekly) stored.repeatParam = rule.mask;
  if (rule.type == kRepeatMonthly) stored.repeatParam = static_cast<std::uint32_t>(rule.monthDay);
  if (rule.type == kRepeatYearly)
    stored.repeatParam = static_cast<std::uint32_t>(rule.month << 16 | rule.monthDay);
  return stored;
}

void Fitter::Add(const IcalRun& run, const Part& part, int day, const RepeatRule& repeat) {
  if (!HasRoom()) return;
  IcalPiece piece;
  if (!DateFromIndex(day, piece.date)) return;
  piece.repeat = repeat;
  piece.allDay = part.allDay;
  piece.row = part.row;
  TimeFromSlot(part.startSlot, piece.start);
  TimeFromSlot(part.endSlot, piece.end);
  piece.begins = part.offset == 0;
  piece.second = run.second;
  piece.length = run.length;
  fitted.pieces.push_back(piece);
}

// One occurrence, which starts on `day`.
void Fitter::AddOnce(const IcalRun& run, const Part& part, int day) {
  const std::int64_t first = std::int64_t{day} + part.offset;
  const std::int64_t last = first + part.days - 1;
  series.outside |= first < 0 || last > span.last;
  if (last < 0 || first > span.last) return;
  const auto from = static_cast<int>(std::max<std::int64_t>(first, 0));
  const auto to = static_cast<int>(std::min<std::int64_t>(last, span.last));
  if (from == to) {
    Add(run, part, from, {});
    return;
  }
  Part row = part;
  row.days = 1;
  row.row = true;
  AddRepeat({std::nullopt, from - part.offset, to - part.offset, false, run.second, run.length}, row,
            DayRule{.anchor = from});
}

// Each occurrence of the run by itself.
void Fitter::AddEach(const IcalRun& run) {
  series.writtenOut = true;
  series.horizon |= run.endless;
  IcalPieces none;
  const std::vector<Part> parts = PartsOf(run, series.wholeDays, none);
  const int last = run.endless ? span.horizon : std::min(run.last, span.last);
  for (std::optional<int> day = NextOf(*run.rule, run.first); day && *day <= last;
       day = NextOf(*run.rule, *day + 1)) {
    if (!HasRoom()) return;
    for (const Part& part : parts) AddOnce(run, part, *day);
  }
}

// A rule that a record holds, `rule` being the part's own, as one record, or two or three where an end or a
// beginning cannot be stored.
void Fitter::AddRepeat(const IcalRun& run, const Part& part, const DayRule& rule) {
  const std::int64_t wanted = std::int64_t{run.first} + part.offset;
  series.outside |= wanted < 0;
  const std::optional<int> begin = NextOf(rule, static_cast<int>(std::max<std::int64_t>(wanted, 0)));
  const std::int64_t end = run.endless ? span.last : std::int64_t{run.last} + part.offset;
  series.outside |= end > span.last;
  std::optional<int> last = PreviousOf(rule, static_cast<int>(std::min<std::int64_t>(end, span.last)));
  if (!begin || !last || *last < *begin) return;
  int first = *begin;
  // The record's first week begins with its first day there, and not with a Sunday.
  if (rule.type == kRepeatWeekly && first == 0) {
    Add(run, part, 0, {});
    const std::optional<int> next = NextOf(rule, 1);
    if (!next || *next > *last) return;
    first = *next;
  }
  Date lastDate{};
  if (!DateFromIndex(*last, lastDate)) return;
  if (run.endless && first < *last) return Add(run, part, first, Stored(rule, kNoEndDate));
  if (first == *last) return Add(run, part, first, {});
  const int final = *last;
  const bool apart = lastDate.day == 31 && lastDate.month == 12 &&
                     (lastDate.year == kEarlyLastYear || lastDate.year == kLateLastYear);
  if (apart) last = PreviousOf(rule, final - 1);
  if (!last || !DateFromIndex(*last, lastDate)) return;
  Add(run, part, first, first == *last ? RepeatRule{} : Stored(rule, lastDate));
  // Stored as the end, this day would stand for none.
  if (apart) Add(run, part, final, {});
}

void Fitter::AddRun(const IcalRun& run) {
  const std::vector<Part> parts = PartsOf(run, series.wholeDays, fitted);
  if (!run.rule) {
    for (const Part& part : parts) AddOnce(run, part, run.first);
    return;
  }
  std::vector<std::pair<Part, DayRule>> repeats;
  for (const Part& part : parts) {
    for (int day = 0; day < part.days; ++day) {
      Part one = part;
      one.offset += day;
      one.days = 1;
      const std::optional<DayRule> rule = Shifted(*run.rule, one.offset);
      if (repeats.size() == kMostRepeatedDays || !rule || !FitsSundayWeeks(*rule)) return AddEach(run);
      repeats.emplace_back(one, *rule);
    }
  }
  for (const auto& [part, rule] : repeats) AddRepeat(run, part, rule);
}

}  // namespace

IcalPieces FitSeries(IcalSeries& series, const IcalSpan& span, IcalWork& work) {
  return Fitter(series, span, work).Fit();
}

}  // namespace core
