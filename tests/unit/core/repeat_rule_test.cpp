#include "core/repeat_rule.h"

#include <climits>
#include <random>

#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;

// The rules walked day by day, week by week and month by month, as one would with a paper calendar: slow, and
// with no arithmetic in common with the code.
class Walk {
 public:
  Walk(const Appointment& walked, const Date& first, const Date& last)
      : date(walked.date),
        rule(walked.repeat),
        start(DayIndex(walked.date)),
        end(DayIndex(walked.repeat.repeatEnd)),
        lo(DayIndex(first)),
        hi(DayIndex(last)) {}

  bool Occurs() const {
    switch (rule.repeatType) {
      case kRepeatDaily:
        return Daily();
      case kRepeatWeekly:
        return Weekly();
      case kRepeatMonthly:
        return Monthly();
      case kRepeatYearly:
        return Yearly();
      default:
        return false;
    }
  }

 private:
  bool NoOverlap(int first) const {
    if (first == -1 || end == -1 || lo == -1 || hi == -1 || end < first) return true;
    return (lo < first || lo > end) && (hi < first || hi > end);
  }

  bool Daily() const {
    if (NoOverlap(start)) return false;
    for (int day = start; day <= end;) {
      if (day > hi) return false;
      if (day >= lo) return true;
      if (rule.repeatEvery > 40000) return false;
      day += static_cast<int>(rule.repeatEvery);
    }
    return false;
  }

  bool Weekly() const {
    Date week = date;
    for (int i = 0; i < 6 && Weekday(week) != 0; ++i) {
      if (!PreviousDay(week)) break;
    }
    int ws = DayIndex(week);
    if (NoOverlap(ws) || ws > hi) return false;
    while (ws <= end && ws <= hi) {
      for (int k = 0; k <= 6; ++k) {
        if (!HasWeekday(rule.repeatParam, k + 1)) continue;
        if (ws + k > hi) return false;
        if (ws + k >= start && ws + k >= lo) return true;
      }
      if (rule.repeatEvery > 6000) return false;
      ws += 7 * static_cast<int>(rule.repeatEvery);
    }
    return false;
  }

  bool Monthly() const {
    if (NoOverlap(start)) return false;
    Date month = date;
    for (;;) {
      const int day = DayIndex(month.year, month.month, static_cast<int>(rule.repeatParam));
      if (day > end) return false;
      if (day != -1 && day >= start && day >= lo && day <= hi) return true;
      for (unsigned i = 0; i < rule.repeatEvery; ++i) {
        if (!NextMonth(month)) return false;
      }
    }
  }

  bool Yearly() const {
    int year = date.year;
    for (;;) {
      const int day = DayIndex(year, static_cast<int>(rule.repeatParam >> 16), rule.repeatParam & 0xFFFF);
      if (day > end) return false;
      if (day != -1 && day >= lo && day <= hi) return true;
      for (unsigned i = 0; i < rule.repeatEvery; ++i) {
        if (DayIndex(++year, date.month, date.day) == -1) return false;
      }
    }
  }

  Date date;
  RepeatRule rule;
  int start;
  int end;
  int lo;
  int hi;
};

Date DayNumber(int index) {
  Date date{0, 0, 0};
  DateFromIndex(index, date);
  return date;
}

const int kDays = DayIndex(kLastDate) + 1;

bool On(const Entry& entry, int day, int month, int year) {
  return OccursOn(entry.appointment, {day, month, year});
}

struct Rule {
  const char* name;
  Date date;
  RepeatRule rule;
};

const Rule kRules[] = {
    {"every day of the last years", {1, 1, kLastYear - 1}, {kRepeatDaily, kNoEndDate, 1, 0}},
    {"every third day", {10, 3, 2004}, {kRepeatDaily, {20, 3, 2004}, 3, 0}},
    {"every 99 days", {29, 2, 2000}, {kRepeatDaily, kNoEndDate, 99, 0}},
    {"ends before it starts", {10, 3, 2004}, {kRepeatDaily, {9, 3, 2004}, 1, 0}},
    {"enormous interval", {10, 3, 2004}, {kRepeatDaily, kNoEndDate, 4'000'000'000, 0}},
    {"date beyond the calendar", {1, 1, kLastYear + 1}, {kRepeatDaily, kNoEndDate, 1, 0}},
    {"Mondays and Fridays", {1, 3, 2004}, {kRepeatWeekly, {10, 3, 2004}, 1, 0x22}},
    {"Monday, begun on a Wednesday", {3, 3, 2004}, {kRepeatWeekly, kNoEndDate, 2, 0x0A}},
    {"week begun on the first day", kFirstDate, {kRepeatWeekly, kNoEndDate, 1, 0x01}},
    {"week begun on the second day", {2, 1, 2000}, {kRepeatWeekly, kNoEndDate, 3, 0x41}},
    {"no weekday", {1, 3, 2004}, {kRepeatWeekly, kNoEndDate, 1, 0x80}},
    {"all bits", {1, 3, 2004}, {kRepeatWeekly, {17, 3, 2004}, 99, 0xFFFFFFFF}},
    {"week of the day after the last", {1, 1, kLastYear + 1}, {kRepeatWeekly, kNoEndDate, 1, 0x7F}},
    {"week of a day that is none", {32, 1, 2004}, {kRepeatWeekly, {1, 6, 2004}, 1, 0x02}},
    {"week of day zero", {0, 3, 2004}, {kRepeatWeekly, {1, 6, 2004}, 1, 0x7E}},
    {"on the 31st", {31, 1, 2004}, {kRepeatMonthly, kNoEndDate, 1, 31}},
    {"on the 29th, every 5 months", {29, 2, 2000}, {kRepeatMonthly, {29, 3, 2019}, 5, 29}},
    {"a day before the first date", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 2, 5}},
    {"a day that no month has", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 1, 0xFFFFFFF0}},
    {"monthly, enormous interval", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 4'000'000'000, 20}},
    {"29 February", {29, 2, 2004}, {kRepeatYearly, kNoEndDate, 1, 2 << 16 | 29}},
    {"29 February, every 4 years", {29, 2, 2004}, {kRepeatYearly, kNoEndDate, 4, 2 << 16 | 29}},
    {"another day than its own", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 1, 2 << 16 | 29}},
    {"before its own date", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 2, 1 << 16 | 1}},
    {"the year before the calendar", {15, 6, 1999}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"long before the calendar", {15, 6, INT_MIN}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"yearly, enormous interval", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 4'000'000'000, 6 << 16 | 15}},
    {"unused kind", {15, 6, 2004}, {3, kNoEndDate, 1, 1}},
};

TEST(RepeatRule, EveryDayAgainstTheWalk) {
  for (const Rule& rule : kRules) {
    Appointment appointment{};
    appointment.date = rule.date;
    appointment.repeat = rule.rule;
    for (int index = -1; index < kDays; ++index) {
      const Date day = DayNumber(index);
      ASSERT_EQ(OccursOn(appointment, day), Walk(appointment, day, day).Occurs())
          << rule.name << ' ' << day.day << '/' << day.month << '/' << day.year;
    }
  }
}

TEST(RepeatRule, RangesAgainstTheWalk) {
  std::mt19937 random(20040314);
  const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  constexpr RepeatType kTypes[] = {kRepeatDaily, kRepeatWeekly, kRepeatMonthly, kRepeatYearly};
  int hits = 0;
  for (int i = 0; i < 60000; ++i) {
    Appointment appointment{};
    const int start = upTo(kDays);
    appointment.date = DayNumber(start);
    const RepeatType type = kTypes[upTo(4)];
    const auto param =
        static_cast<std::uint32_t>(type == kRepeatWeekly    ? upTo(128)
                                   : type == kRepeatMonthly ? 1 + upTo(31)
                                                            : (1 + upTo(12)) << 16 | (1 + upTo(31)));
    appointment.repeat = {type, DayNumber(start + upTo(900) - 50), 1 + static_cast<std::uint32_t>(upTo(9)),
                          param};
    const int from = start + upTo(600) - 100;
    const Date first = DayNumber(from);
    const Date last = DayNumber(from + upTo(200) - 10);
    const bool expected = Walk(appointment, first, last).Occurs();
    hits += expected ? 1 : 0;
    ASSERT_EQ(OccursIn(appointment, first, last), expected) << "case " << i << " type " << type;
  }
  EXPECT_GT(hits, 5000);
}

TEST(RepeatRule, RangeQueriesAtTheSpansEdges) {
  Entry daily;
  daily.On(10, 3, 2004).Every(3, kRepeatDaily).Until(20, 3, 2004);
  EXPECT_TRUE(On(daily, 10, 3, 2004) && On(daily, 19, 3, 2004));
  EXPECT_FALSE(On(daily, 20, 3, 2004) || On(daily, 22, 3, 2004));
  EXPECT_FALSE(OccursIn(daily.appointment, {1, 3, 2004}, {31, 3, 2004}));  // encloses the whole span
  EXPECT_TRUE(OccursIn(daily.appointment, {1, 3, 2004}, {15, 3, 2004}));

  Entry weekly;
  weekly.On(1, 3, 2004).Every(1, kRepeatWeekly, 0x22).Until(10, 3, 2004);
  EXPECT_TRUE(On(weekly, 1, 3, 2004) && On(weekly, 5, 3, 2004) && On(weekly, 8, 3, 2004));
  EXPECT_FALSE(On(weekly, 12, 3, 2004));
  EXPECT_TRUE(OccursIn(weekly.appointment, {9, 3, 2004}, {12, 3, 2004}));  // the last week counts whole

  Entry yearly;
  yearly.On(15, 6, 2004).Every(2, kRepeatYearly, 6 << 16 | 15);
  EXPECT_TRUE(On(yearly, 15, 6, 2006) && On(yearly, 15, 6, 2008));
  EXPECT_FALSE(On(yearly, 15, 6, 2005) || On(yearly, 15, 6, kLastYear + 1));
}

// An interval of 0 moves nowhere: the first candidate is all there is.
TEST(RepeatRule, IntervalZero) {
  for (const auto& [type, param] :
       {std::pair{kRepeatDaily, 0U}, std::pair{kRepeatWeekly, 0x7FU}, std::pair{kRepeatMonthly, 10U},
        std::pair{kRepeatYearly, 3U << 16 | 10}}) {
    Entry entry;
    entry.On(10, 3, 2004).Every(0, type, param);
    EXPECT_TRUE(On(entry, 10, 3, 2004)) << int{type};
    EXPECT_FALSE(On(entry, 10, 4, 2004) || On(entry, 10, 3, 2005)) << int{type};
  }
}

TEST(RepeatRule, ConditionsOfQueries) {
  const Date day{14, 3, 2004};
  Entry single;
  EXPECT_TRUE(OccursOnDate(&single.On(14, 3, 2004).appointment, &day));
  EXPECT_FALSE(OccursOnDate(&single.On(15, 3, 2004).appointment, &day));
  Entry repeating;
  EXPECT_TRUE(OccursOnDate(&repeating.On(7, 3, 2004).Every(7, kRepeatDaily).appointment, &day));

  const DateRange range{{1, 3, 2004}, {31, 3, 2004}};
  EXPECT_TRUE(OccursInRange(&single.On(31, 3, 2004).appointment, &range));
  EXPECT_FALSE(OccursInRange(&single.On(1, 4, 2004).appointment, &range));
  EXPECT_TRUE(OccursInRange(&repeating.appointment, &range));
  EXPECT_FALSE(OccursInRange(&repeating.Until(28, 3, 2004).On(2, 3, 2004).appointment, &range));

  ClearRepeat(repeating.appointment);
  EXPECT_FALSE(HasRepeat(repeating.appointment));
  EXPECT_EQ(WeekdayBit(0), 0U);
  EXPECT_EQ(WeekdayBit(7), 0x40U);
  EXPECT_EQ(WeekdayBit(8), 0U);
}

}  // namespace
}  // namespace core
