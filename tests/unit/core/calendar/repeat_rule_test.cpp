#include "core/calendar/repeat_rule.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <random>

#include "core/calendar/repeat_choice.h"
#include "gtest/gtest.h"
#include "support/era.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;

// The days of a rule, walked day by day, week by week and month by month, as one would with a paper calendar:
// slow, and with no arithmetic in common with the code. A walk that goes nowhere, or beyond every calendar,
// ends.
class Walk {
 public:
  Walk(const Date& date, const RepeatRule& rule)
      : start(DayIndex(date)), end(LastDay(rule.repeatEnd)), whole(rule.repeatType == kRepeatYearly) {
    if (rule.repeatType == kRepeatDaily) Daily(rule);
    if (rule.repeatType == kRepeatWeekly) Weekly(date, rule);
    if (rule.repeatType == kRepeatMonthly) Monthly(date, rule);
    if (rule.repeatType == kRepeatYearly) Yearly(date, rule);
  }

  // A range that encloses the whole span of a rule, but a yearly one, holds none of its days.
  bool Occurs(const Date& first, const Date& last) const {
    const int lo = DayIndex(first);
    const int hi = DayIndex(last);
    const auto outside = [this](int day) { return day == -1 || day < start || day > end; };
    if (!whole && (lo == -1 || hi == -1 || (outside(lo) && outside(hi)))) return false;
    return std::any_of(days.begin(), days.end(), [&](int day) { return day >= lo && day <= hi; });
  }

 private:
  // An end that means none, or lies beyond this era, is the calendar's.
  static int LastDay(const Date& ruleEnd) {
    const bool valid = IsValidDate(ruleEnd.day, ruleEnd.month, ruleEnd.year);
    const bool beyond = valid && ruleEnd.year > LastYear() && ruleEnd.year <= 2099;
    const bool none = IsSameDate(ruleEnd, {31, 12, 2020}) || IsSameDate(ruleEnd, {31, 12, 2099});
    return DayIndex(none || beyond ? Date{31, 12, LastYear()} : ruleEnd);
  }

  void Daily(const RepeatRule& rule) {
    for (int day = start; day != -1 && day <= end; day += static_cast<int>(rule.repeatEvery)) {
      days.push_back(day);
      if (rule.repeatEvery == 0 || rule.repeatEvery > 40000) return;
    }
  }

  // The span is one of whole weeks.
  void Weekly(Date week, const RepeatRule& rule) {
    const int first = start;
    if (IsValidDate(week.day, week.month, week.year) && week.year > LastYear() && week.year < 2100) return;
    for (int i = 0; i < 6 && Weekday(week) != 0 && PreviousDay(week); ++i) {
    }
    start = DayIndex(week);
    for (int ws = start; ws != -1 && ws <= end; ws += 7 * static_cast<int>(rule.repeatEvery)) {
      for (int k = 0; k <= 6; ++k) {
        if (HasWeekday(rule.repeatParam, k + 1) && ws + k >= first) days.push_back(ws + k);
      }
      if (rule.repeatEvery == 0 || rule.repeatEvery > 6000) return;
    }
  }

  void Monthly(Date month, const RepeatRule& rule) {
    for (;;) {
      const int day = DayIndex(month.year, month.month, static_cast<int>(rule.repeatParam));
      if (day > end || start == -1) return;
      if (day >= start) days.push_back(day);
      if (rule.repeatEvery == 0) return;
      for (unsigned i = 0; i < rule.repeatEvery; ++i) {
        if (!NextMonth(month)) return;
      }
    }
  }

  void Yearly(const Date& date, const RepeatRule& rule) {
    for (auto year = static_cast<unsigned>(date.year);;) {
      const int day = DayIndex(static_cast<int>(year), static_cast<int>(rule.repeatParam >> 16),
                               rule.repeatParam & 0xFFFF);
      if (day > end) return;
      if (day != -1) days.push_back(day);
      if (rule.repeatEvery == 0) return;
      for (unsigned i = 0; i < rule.repeatEvery; ++i) {
        if (DayIndex(static_cast<int>(++year), date.month, date.day) == -1) return;
      }
    }
  }

  int start;
  const int end;
  const bool whole;
  std::vector<int> days;
};

Date DayNumber(int index) {
  Date date{0, 0, 0};
  DateFromIndex(index, date);
  return date;
}

struct Rule {
  const char* name;
  Date date;
  RepeatRule rule;
};

constexpr std::uint32_t kEnormous = 4'000'000'000;
constexpr Date kNoDate{INT_MIN, INT_MAX, INT_MIN};

const Rule kRules[] = {
    {"every day of the early era's last years", {1, 1, 2019}, {kRepeatDaily, kNoEndDate, 1, 0}},
    {"every day of the late era's last years", {1, 1, 2098}, {kRepeatDaily, {31, 12, 2099}, 1, 0}},
    {"from one era into the other", {30, 12, 2020}, {kRepeatWeekly, {17, 2, 2021}, 1, 0x7F}},
    {"every third day", {10, 3, 2004}, {kRepeatDaily, {20, 3, 2004}, 3, 0}},
    {"every 99 days", {29, 2, 2000}, {kRepeatDaily, kNoEndDate, 99, 0}},
    {"ends before it starts", {10, 3, 2004}, {kRepeatDaily, {9, 3, 2004}, 1, 0}},
    {"daily, interval zero", {10, 3, 2004}, {kRepeatDaily, kNoEndDate, 0, 0}},
    {"daily, enormous interval", {10, 3, 2004}, {kRepeatDaily, kNoEndDate, kEnormous, 0}},
    {"date beyond the early era", {1, 1, 2021}, {kRepeatDaily, kNoEndDate, 1, 0}},
    {"date beyond the calendar", {1, 1, 2100}, {kRepeatDaily, kNoEndDate, 1, 0}},
    {"end that is no date", {10, 3, 2004}, {kRepeatDaily, {30, 2, 2005}, 1, 0}},
    {"Mondays and Fridays", {1, 3, 2004}, {kRepeatWeekly, {10, 3, 2004}, 1, 0x22}},
    {"Monday, begun on a Wednesday", {3, 3, 2004}, {kRepeatWeekly, kNoEndDate, 2, 0x0A}},
    {"week begun on the first day", kFirstDate, {kRepeatWeekly, kNoEndDate, 1, 0x01}},
    {"first week, to its third day", kFirstDate, {kRepeatWeekly, {3, 1, 2000}, 1, 0x7C}},
    {"every third week, ended in one", {4, 3, 2004}, {kRepeatWeekly, {19, 5, 2004}, 3, 0x55}},
    {"weekly, mask zero", {1, 3, 2004}, {kRepeatWeekly, kNoEndDate, 1, 0}},
    {"no weekday", {1, 3, 2004}, {kRepeatWeekly, kNoEndDate, 1, 0x80}},
    {"all bits", {1, 3, 2004}, {kRepeatWeekly, {17, 3, 2004}, 99, 0xFFFFFFFF}},
    {"weekly, interval zero", {3, 3, 2004}, {kRepeatWeekly, {5, 3, 2004}, 0, 0x7F}},
    {"weekly, enormous interval", {3, 3, 2004}, {kRepeatWeekly, kNoEndDate, kEnormous, 0x7F}},
    {"week of the day after the early era", {1, 1, 2021}, {kRepeatWeekly, kNoEndDate, 1, 0x7F}},
    {"week of the day after the last", {1, 1, 2100}, {kRepeatWeekly, kNoEndDate, 1, 0x7F}},
    {"week of a day that is none", {32, 1, 2004}, {kRepeatWeekly, {1, 6, 2004}, 1, 0x02}},
    {"week of day zero", {0, 3, 2004}, {kRepeatWeekly, {1, 6, 2004}, 1, 0x7E}},
    {"week of no date at all", kNoDate, {kRepeatWeekly, kNoEndDate, 1, 0x7F}},
    {"on the 31st", {31, 1, 2004}, {kRepeatMonthly, kNoEndDate, 1, 31}},
    {"on the 29th, every 5 months", {29, 2, 2000}, {kRepeatMonthly, {29, 3, 2019}, 5, 29}},
    {"day zero", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 1, 0}},
    {"a day that no month has", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 1, 0xFFFFFFF0}},
    {"monthly, interval zero", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, 0, 20}},
    {"monthly, enormous interval", {20, 3, 2004}, {kRepeatMonthly, kNoEndDate, kEnormous, 20}},
    {"monthly from no date", kNoDate, {kRepeatMonthly, kNoEndDate, 1, 20}},
    {"monthly on a day before its first", {20, 3, 2004}, {kRepeatMonthly, {10, 9, 2005}, 7, 10}},
    {"monthly on a day after it", {3, 12, 2004}, {kRepeatMonthly, kNoEndDate, 3, 30}},
    {"yearly on a day before its own", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 3, 3 << 16 | 14}},
    {"yearly on a day after it", {15, 6, 2004}, {kRepeatYearly, {1, 9, 2013}, 1, 9 << 16 | 30}},
    {"29 February, every 4 years", {29, 2, 2004}, {kRepeatYearly, kNoEndDate, 4, 2 << 16 | 29}},
    {"no day of the year", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 1, 0xFFFFFFFF}},
    {"the year before the calendar", {15, 6, 1999}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"long before the calendar", {15, 6, INT_MIN}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"as far after it as can be", {15, 6, INT_MAX}, {kRepeatYearly, kNoEndDate, 1, 6 << 16 | 15}},
    {"yearly, interval zero", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, 0, 6 << 16 | 15}},
    {"yearly, enormous interval", {15, 6, 2004}, {kRepeatYearly, kNoEndDate, kEnormous, 6 << 16 | 15}},
    {"yearly, ends on no date", {15, 6, 2004}, {kRepeatYearly, kNoDate, 1, 6 << 16 | 15}},
    {"unknown kind", {15, 6, 2004}, {255, kNoEndDate, 1, 1}},
};

class RepeatRuleInEra : public testing::TestWithParam<int> {
  tests::Era era{GetParam()};

 protected:
  const int days = DayIndex(LastDate()) + 1;
};
INSTANTIATE_TEST_SUITE_P(RepeatRule, RepeatRuleInEra, testing::Values(kEarlyLastYear, kLateLastYear));

// Each day of the calendar, of the late era each 23rd, and the one before it, which is none; every week also
// the first day of a range of up to five weeks, some of which end before they begin.
TEST_P(RepeatRuleInEra, EveryDayAgainstTheWalk) {
  const int stride = LastYear() == kEarlyLastYear ? 1 : 23;
  for (const Rule& rule : kRules) {
    Appointment appointment{};
    appointment.date = rule.date;
    appointment.repeat = rule.rule;
    const Walk walk(rule.date, rule.rule);
    for (int index = -1; index < days; index += stride) {
      const Date day = DayNumber(index);
      const bool expected = walk.Occurs(day, day);
      const std::uint64_t block =
          OccurrenceDays(appointment.date, appointment.repeat, DayNumber(index - index % 64), 64);
      ASSERT_EQ(OccursOn(appointment, day), expected)
          << rule.name << ' ' << day.day << '/' << day.month << '/' << day.year;
      ASSERT_EQ(index >= 0 && (block >> index % 64 & 1) != 0, index >= 0 && expected)
          << rule.name << ' ' << index;
      if (index % 7 != 0) continue;
      const Date later = DayNumber(index + index % 41 - 5);
      ASSERT_EQ(OccursIn(appointment, day, later), walk.Occurs(day, later))
          << rule.name << " range from " << day.day << '/' << day.month << '/' << day.year;
    }
  }
}

// Counted on a calendar of paper, so that the walk is no measure of itself.
TEST(RepeatRule, DaysAndRangesAtTheEdges) {
  const Entry daily = Entry().On(10, 3, 2004).Every(3, kRepeatDaily).Until(20, 3, 2004);
  const Entry weekly = Entry().On(1, 3, 2004).Every(1, kRepeatWeekly, 0x22).Until(10, 3, 2004);
  const auto inMarch = [](const Entry& entry) {
    std::vector<int> days;
    for (Date day{1, 3, 2004}; day.day <= 31; ++day.day) {
      if (OccursOnDate(&entry.appointment, &day)) days.push_back(day.day);
    }
    return days;
  };
  EXPECT_EQ(inMarch(Entry().On(14, 3, 2004)), std::vector{14});
  EXPECT_EQ(inMarch(daily), (std::vector{10, 13, 16, 19}));
  EXPECT_EQ(inMarch(weekly), (std::vector{1, 5, 8}));
  const auto between = [](const Entry& entry, int first, int last) {
    const DateRange range{{first, 3, 2004}, {last, 3, 2004}};
    return OccursInRange(&entry.appointment, &range);
  };
  EXPECT_TRUE(between(daily, 1, 15));
  EXPECT_FALSE(between(daily, 1, 31)) << "encloses the whole span";
  EXPECT_TRUE(between(weekly, 9, 12)) << "the last week counts whole";
}

// 31 December 2020, a Thursday, is stored for no end: where the calendar goes on it cannot be an end itself.
TEST(RepeatChoice, AnEndOnTheDayThatMeansNone) {
  const Date day = kNoEndDate;
  constexpr std::uint32_t kFridays = 0x20;
  const struct {
    int lastYear;
    Entry entry;
    Date end;
    Date stored;  // the rule's end before: refused
  } kCases[] = {
      {2099, Entry().On(1, 12, 2020).Every(7, kRepeatDaily), day, {29, 12, 2020}},
      {2099, Entry().On(1, 12, 2020).Every(1, kRepeatWeekly, kFridays), day, {25, 12, 2020}},
      {2099, Entry().On(29, 12, 2020).Every(1, kRepeatWeekly, kFridays), day, {29, 12, 2020}},
      {2099, Entry().On(31, 1, 2020).Every(1, kRepeatMonthly, 31).Until(1, 4, 2020), day, {1, 4, 2020}},
      {2099, Entry().On(31, 12, 2020).Every(1, kRepeatWeekly, kFridays).Until(1, 6, 2021), day, {1, 6, 2021}},
      {2099, Entry().On(1, 12, 2020).Every(1, kRepeatDaily), {1, 1, 2021}, {1, 1, 2021}},
      {2099, Entry().On(1, 12, 2020).Every(1, kRepeatDaily).Until(1, 4, 2021), {31, 12, 2099}, day},
      {2020, Entry().On(31, 1, 2020).Every(1, kRepeatMonthly, 31).Until(1, 4, 2020), day, day},
  };
  for (const auto& one : kCases) {
    const tests::Era era(one.lastYear);
    Appointment appointment = one.entry.appointment;
    const bool refused = IsSameDate(one.stored, appointment.repeat.repeatEnd);
    EXPECT_EQ(SetEnd(appointment, one.end), !refused) << &one - kCases;
    EXPECT_TRUE(IsSameDate(appointment.repeat.repeatEnd, one.stored)) << &one - kCases;
  }
}

// A file serves both eras: on the days that both show they say the same, and a rule that is looked at in the
// dialog and stored again stays as it is.
TEST(RepeatChoice, EachEraReadsTheRulesOfTheOther) {
  std::mt19937 random(20040314);
  const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  constexpr RepeatType kTypes[] = {kRepeatDaily, kRepeatWeekly, kRepeatMonthly, kRepeatYearly};
  tests::Era era(kLateLastYear);
  const int days = DayIndex(LastDate()) + 1;
  int hits = 0;
  for (int i = 0; i < 20000; ++i) {
    Appointment appointment{};
    const int start = upTo(2) == 0 ? upTo(days) : 7300 + upTo(740);
    appointment.date = DayNumber(start);
    RepeatChoice choice{kTypes[upTo(4)], static_cast<std::uint32_t>(1 + upTo(9)), std::nullopt,
                        static_cast<std::uint32_t>(1 + upTo(127))};
    if (upTo(3) != 0) choice.end = DayNumber(std::min(start + upTo(800), days - 1));
    if (!StoreRepeat(choice, appointment)) continue;
    const RepeatRule made = appointment.repeat;
    if (choice.end || upTo(2) == 0) SetLastYear(kEarlyLastYear);
    ASSERT_TRUE(StoreRepeat(ReadRepeat(appointment), appointment));
    ASSERT_EQ(std::memcmp(&made, &appointment.repeat, sizeof made), 0) << "case " << i;
    SetLastYear(kEarlyLastYear);
    if (!choice.end && upTo(2) == 0) appointment.repeat.repeatEnd = {31, 12, 2099};
    const Date from = DayNumber(std::clamp(start + upTo(200) - 70, 0, 7670 - 63));
    const std::uint64_t early = OccurrenceDays(appointment.date, appointment.repeat, from, 64);
    SetLastYear(kLateLastYear);
    ASSERT_EQ(early, OccurrenceDays(appointment.date, appointment.repeat, from, 64)) << "case " << i;
    hits += early != 0 ? 1 : 0;
  }
  EXPECT_GT(hits, 5000);
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
