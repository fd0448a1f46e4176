#include "core/repeat_rule.h"

#include <climits>
#include <cstring>
#include <random>

#include "core/repeat_choice.h"
#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;

// The rules walked day by day, week by week and month by month, as one would with a paper calendar: slow, and
// with no arithmetic in common with the code. A walk that goes nowhere, or beyond every calendar, ends.
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
      if (rule.repeatEvery == 0 || rule.repeatEvery > 40000) return false;
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
      if (rule.repeatEvery == 0 || rule.repeatEvery > 6000) return false;
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
      if (rule.repeatEvery == 0) return false;
      for (unsigned i = 0; i < rule.repeatEvery; ++i) {
        if (!NextMonth(month)) return false;
      }
    }
  }

  bool Yearly() const {
    unsigned year = static_cast<unsigned>(date.year);
    for (;;) {
      const int day = DayIndex(static_cast<int>(year), static_cast<int>(rule.repeatParam >> 16),
                               rule.repeatParam & 0xFFFF);
      if (day > end) return false;
      if (day != -1 && day >= lo && day <= hi) return true;
      if (rule.repeatEvery == 0) return false;
      for (unsigned i = 0; i < rule.repeatEvery; ++i) {
        if (DayIndex(static_cast<int>(++year), date.month, date.day) == -1) return false;
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

constexpr std::uint32_t kEnormous = 4'000'000'000;
constexpr Date kNoDate{INT_MIN, INT_MAX, INT_MIN};

const Rule kRules[] = {
    {"every day of the last years", {1, 1, kLastYear - 1}, {kRepeatDaily, kNoEndDate, 1, 0}},
    {"every third day", {10, 3, 2004}, {kRepeatDaily, {20, 3, 2004}, 3, 0}},
    {"every 99 days", {29, 2, 2000}, {kRepeatDaily, kNoEndDate, 99, 0}},
    {"ends before it starts", {10, 3, 2004}, {kRepeatDaily, {9, 3, 2004}, 1, 0}},
    {"daily, interval zero", {10, 3, 2004}, {kRepeatDaily, kNoEndDate, 0, 0}},
    {"daily, enormous interval", {10, 3, 2004}, {kRepeatDaily, kNoEndDate, kEnormous, 0}},
    {"date beyond the calendar", {1, 1, kLastYear + 1}, {kRepeatDaily, kNoEndDate, 1, 0}},
    {"end that is no date", {10, 3, 2004}, {kRepeatDaily, {30, 2, 2005}, 1, 0}},
    {"Mondays and Fridays", {1, 3, 2004}, {kRepeatWeekly, {10, 3, 2004}, 1, 0x22}},
    {"Monday, begun on a Wednesday", {3, 3, 2004}, {kRepeatWeekly, kNoEndDate, 2, 0x0A}},
    {"week begun on the first day", kFirstDate, {kRepeatWeekly, kNoEndDate, 1, 0x01}},
    {"week begun on the second day", {2, 1, 2000}, {kRepeatWeekly, kNoEndDate, 3, 0x41}},
    {"first week, to its third day", kFirstDate, {kRepeatWeekly, {3, 1, 2000}, 1, 0x7C}},
    {"weekly, mask zero", {1, 3, 2004}, {kRepeatWeekly, kNoEndDate, 1, 0}},
    {"no weekday", {1, 3, 2004}, {kRepeatWeekly, kNoEndDate, 1, 0x80}},
    {"all bits", {1, 3, 2004}, {kRepeatWeekly, {17, 3, 2004}, 99, 0xFFFFFFFF}},
    {"weekly, interval zero", {3, 3, 2004}, {kRepeatWeekly, {5, 3, 2004}, 0, 0x7F}},
    {"weekly, enormous interval", {3, 3, 2004}, {kRepeatWeekly, kNoEndDate, kEnormous, 0x7F}},
    {"week of the day after the last", {1, 1, kLastYear + 1}, {kRepeatWeekly, kNoEndDate, 1, 0x7F}},
    {"week of a day that is none", {32, 1, 2004}, {kRepeatWeekly, {1, 6, 2004}, 1, 0x02}},
    {"week of day zero", {0, 3, 2004}, {kRepeatWeekly, {1, 6, 2004}, 1, 0x7E}},
    {"week of no date at all", kNoDate, {kRepeatWeekly, kNoEndDate, 1, 0x7F}},
    {"on the 31st", {31, 1, 2004}, {kRepeatMonthly, kNoEndDate, 1, 31}},
    {"on the 29th, every 5 months", {29, 2, 2000}, {kRepeatMonthly, {29, 3, 2019}, 5, 29}},
    {"a day before the first date", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 2, 5}},
    {"day zero", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 1, 0}},
    {"a day that no month has", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 1, 0xFFFFFFF0}},
    {"monthly, interval zero", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 0, 20}},
    {"monthly, enormous interval", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, kEnormous, 20}},
    {"monthly from no date", kNoDate, {kRepeatMonthly, kNoEndDate, 1, 20}},
    {"29 February", {29, 2, 2004}, {kRepeatYearly, kNoEndDate, 1, 2 << 16 | 29}},
    {"29 February, every 4 years", {29, 2, 2004}, {kRepeatYearly, kNoEndDate, 4, 2 << 16 | 29}},
    {"another day than its own", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 1, 2 << 16 | 29}},
    {"before its own date", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 2, 1 << 16 | 1}},
    {"no day of the year", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 1, 0xFFFFFFFF}},
    {"the year before the calendar", {15, 6, 1999}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"long before the calendar", {15, 6, INT_MIN}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"as far after it as can be", {15, 6, INT_MAX}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"yearly, interval zero", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 0, 6 << 16 | 15}},
    {"yearly, enormous interval", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, kEnormous, 6 << 16 | 15}},
    {"yearly, ends on no date", {15, 6, 2004}, {kRepeatYearly, kNoDate, 1, 6 << 16 | 15}},
    {"unused kind", {15, 6, 2004}, {3, kNoEndDate, 1, 1}},
    {"unknown kind", {15, 6, 2004}, {255, kNoEndDate, 1, 1}},
};

// Each day of the calendar and the one before it, which is none; every week also the first day of a range of
// up to five weeks, some of which end before they begin.
TEST(RepeatRule, EveryDayAgainstTheWalk) {
  for (const Rule& rule : kRules) {
    Appointment appointment{};
    appointment.date = rule.date;
    appointment.repeat = rule.rule;
    for (int index = -1; index < kDays; ++index) {
      const Date day = DayNumber(index);
      ASSERT_EQ(OccursOn(appointment, day), Walk(appointment, day, day).Occurs())
          << rule.name << ' ' << day.day << '/' << day.month << '/' << day.year;
      if (index % 7 != 0) continue;
      const Date later = DayNumber(index + index % 41 - 5);
      ASSERT_EQ(OccursIn(appointment, day, later), Walk(appointment, day, later).Occurs())
          << rule.name << " range from " << day.day << '/' << day.month << '/' << day.year;
    }
  }
}

// Rules as a file may hold them, most of them as the dialog makes them: one in eight begins in the calendar's
// first days, one in eight has any parameter, and intervals may be 0. One range in four lies about the rule's
// end.
TEST(RepeatRule, RangesAgainstTheWalk) {
  std::mt19937 random(20040314);
  const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  constexpr RepeatType kTypes[] = {kRepeatDaily, kRepeatWeekly, kRepeatMonthly, kRepeatYearly};
  int hits = 0;
  for (int i = 0; i < 60000; ++i) {
    Appointment appointment{};
    const int start = upTo(upTo(8) == 0 ? 10 : kDays);
    appointment.date = DayNumber(start);
    const RepeatType type = kTypes[upTo(4)];
    auto param = static_cast<std::uint32_t>(type == kRepeatWeekly    ? upTo(128)
                                            : type == kRepeatMonthly ? 1 + upTo(31)
                                                                     : (1 + upTo(12)) << 16 | (1 + upTo(31)));
    if (upTo(8) == 0) param = static_cast<std::uint32_t>(random());
    const int end = start + upTo(900) - 50;
    appointment.repeat = {type, DayNumber(end), static_cast<std::uint32_t>(upTo(10)), param};
    const int from = upTo(4) == 0 ? end - upTo(14) : start + upTo(600) - 100;
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

// What can be chosen is stored as such and read back as the same choice.
TEST(RepeatChoice, RulesAreBuiltFromItAndReadBack) {
  const Date wednesday{31, 3, 2004};
  const Date end{31, 3, 2004};
  const std::uint32_t own = WeekdayBit(4);
  struct Case {
    RepeatChoice choice;
    RepeatRule rule;
  };
  const Case cases[] = {
      {{kRepeatNone, 1, {}, own}, {}},
      {{kRepeatDaily, 1, {}, own}, {kRepeatDaily, kNoEndDate, 1, 0}},
      {{kRepeatWeekly, 99, end, 0x41}, {kRepeatWeekly, end, 99, 0x41}},
      {{kRepeatMonthly, 2, end, own}, {kRepeatMonthly, end, 2, 31}},
      {{kRepeatYearly, 3, {}, own}, {kRepeatYearly, kNoEndDate, 3, 3 << 16 | 31}},
  };
  for (const Case& one : cases) {
    Appointment appointment{};
    appointment.date = wednesday;
    appointment.repeat = BuildRepeat(one.choice, wednesday);
    ASSERT_EQ(std::memcmp(&appointment.repeat, &one.rule, sizeof one.rule), 0) << one.choice.type;
    const RepeatChoice read = ReadRepeat(appointment);
    EXPECT_EQ(read.type, one.choice.type);
    EXPECT_EQ(read.every, one.choice.every);
    EXPECT_EQ(DayIndex(read.end.value_or(Date{})), DayIndex(one.choice.end.value_or(Date{})));
    EXPECT_EQ(read.weekdays, one.choice.weekdays);
  }
  const RepeatRule none = BuildRepeat({kRepeatNone, 7, end, 0x7F}, wednesday);
  EXPECT_EQ(std::memcmp(&none, &cases[0].rule, sizeof none), 0) << "a rule of no repeat is all zero";
}

TEST(RepeatChoice, ADamagedRuleReadsAsOneThatCanBeShown) {
  Appointment appointment{};
  appointment.date = {3, 3, 2004};
  appointment.repeat = {3, {30, 2, 2004}, 0, 0};
  RepeatChoice read = ReadRepeat(appointment);
  EXPECT_EQ(read.type, kRepeatNone);
  EXPECT_EQ(read.every, 1U);
  EXPECT_FALSE(read.end);
  appointment.repeat = {kRepeatWeekly, {1, 3, 2004}, kEnormous, 0x80};
  read = ReadRepeat(appointment);
  EXPECT_EQ(read.every, 99U);
  EXPECT_TRUE(read.end) << "an end before the start is one all the same";
  EXPECT_EQ(read.weekdays, WeekdayBit(4)) << "the day of the appointment stands for none";
  appointment.date = kNoDate;
  EXPECT_EQ(ReadRepeat(appointment).weekdays, WeekdayBit(7));
}

}  // namespace
}  // namespace core
