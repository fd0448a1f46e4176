#include "core/date_time.h"

#include <climits>
#include <cstdlib>

#include "core/time_texts.h"
#include "gtest/gtest.h"
#include "support/era.h"

namespace core {
namespace {

// The length of a month as a schoolbook has it.
int NaiveLength(int year, int month) {
  if (month == 2) return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

class InEitherEra : public testing::TestWithParam<int> {
  tests::Era era{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(DateTime, InEitherEra, testing::Values(kEarlyLastYear, kLateLastYear));

// Counts through every day of the calendar by hand and asks every function about it.
TEST_P(InEitherEra, EveryDayOfTheCalendar) {
  int index = 0;
  int weekday = 6;  // 1 January 2000 was a Saturday
  Date walked = kFirstDate;
  for (int year = kFirstYear; year <= GetParam(); ++year) {
    for (int month = 1; month <= 12; ++month) {
      ASSERT_EQ(DaysInMonth(year, month), NaiveLength(year, month));
      for (int day = 1; day <= NaiveLength(year, month); ++day, ++index, weekday = (weekday + 1) % 7) {
        const Date date{day, month, year};
        ASSERT_EQ(DayIndex(date), index);
        ASSERT_EQ(Weekday(date), weekday);
        Date found{};
        ASSERT_TRUE(DateFromIndex(index, found) && IsSameDate(found, date));
        ASSERT_TRUE(IsSameDate(walked, date));
        const bool last = IsSameDate(date, {31, 12, GetParam()});
        ASSERT_EQ(NextDay(walked), !last);
        Date back = walked;
        if (!last) {
          ASSERT_TRUE(PreviousDay(back) && IsSameDate(back, date));
        }
      }
      ASSERT_EQ(DayIndex(year, month, NaiveLength(year, month) + 1), -1);
    }
  }
  EXPECT_TRUE(IsSameDate(walked, LastDate()));
  EXPECT_EQ(DayIndex(GetParam() + 1, 1, 1), -1);
  Date untouched{1, 2, 3};
  EXPECT_FALSE(DateFromIndex(index, untouched));
  EXPECT_FALSE(DateFromIndex(-1, untouched));
  EXPECT_TRUE(IsSameDate(untouched, {1, 2, 3}));
}

TEST(DateTime, KnownDayNumbersAndWeekdays) {
  EXPECT_EQ(StoredDayIndex({31, 12, 2020}), 7670);
  EXPECT_EQ(StoredDayIndex({31, 12, 2099}), 36524);
  EXPECT_EQ(StoredDayIndex({1, 1, 2100}), -1);
  EXPECT_EQ(Weekday(1969, 7, 20), 0);
  EXPECT_EQ(Weekday(2100, 3, 1), 1);
  EXPECT_EQ(Weekday(2001, 2, 29), -1);
  EXPECT_FALSE(IsValidDate(29, 2, 2100));
  EXPECT_EQ(DaysInMonth(2004, 13), -1);
}

TEST_P(InEitherEra, StepsAtTheEdges) {
  struct Step {
    bool (*go)(Date&);
    Date from;
    Date to;  // the same: refused
  };
  const Date last = LastDate();
  const Date lateInLastYear{5, 12, last.year};
  const Step steps[] = {
      {NextDay, last, last},
      {NextMonth, last, last},
      {NextMonth, lateInLastYear, lateInLastYear},
      {PreviousDay, kFirstDate, kFirstDate},
      {PreviousMonth, kFirstDate, kFirstDate},
      {PreviousWeek, {3, 1, kFirstYear}, kFirstDate},
      {NextWeek, {28, 12, last.year}, last},
      {NextWeek, {28, 2, 2004}, {6, 3, 2004}},
      {NextMonth, {31, 1, 2004}, {29, 2, 2004}},
      {NextMonth, {31, 1, 2005}, {28, 2, 2005}},
      {PreviousMonth, {31, 3, 2005}, {28, 2, 2005}},
      {NextMonth, {15, 12, 2004}, {15, 1, 2005}},
      {PreviousMonth, {15, 1, 2005}, {15, 12, 2004}},
  };
  for (const Step& step : steps) {
    Date date = step.from;
    EXPECT_EQ(step.go(date), !IsSameDate(step.from, step.to)) << DayIndex(step.from);
    EXPECT_TRUE(IsSameDate(date, step.to)) << DayIndex(step.from);
  }
}

// Whatever a damaged record holds: no overflow (the sanitizer tells), and a refused step changes nothing.
TEST(DateTime, GarbageIsRefused) {
  for (const int day : {INT_MIN, -1, 40, INT_MAX}) {
    for (const int month : {INT_MIN, -5, 13, INT_MAX}) {
      for (const int year : {INT_MIN, 0, 2004, INT_MAX}) {
        Date date{day, month, year};
        const Date before = date;
        EXPECT_EQ(DayIndex(date), -1);
        EXPECT_EQ(Weekday(date), -1);
        EXPECT_FALSE(NextDay(date) || NextWeek(date));
        EXPECT_FALSE(month <= 12 && NextMonth(date));
        EXPECT_TRUE(IsSameDate(date, before));
        PreviousDay(date);
        PreviousMonth(date);
      }
    }
  }
  EXPECT_EQ(TimeSlot({INT_MIN, INT_MAX, 0, 7}), -1);
}

TEST(DateTime, TimeSlots) {
  constexpr std::pair<TimeOfDay, int> kSlots[] = {
      {{0, 0, 0, 1}, 0},   {{0, 0, 0, 2}, 144}, {{11, 55, 0, 2}, 287}, {{12, 0, 0, 1}, 144},
      {{3, 57, 0, 1}, -1}, {{13, 0, 0, 1}, -1}, {{-1, 0, 0, 1}, -1},   {{1, 0, 0, 0}, 156}};
  for (const auto& [time, slot] : kSlots) EXPECT_EQ(TimeSlot(time), slot) << slot;
  for (int slot = 0; slot < kDaySlots; ++slot) {
    TimeOfDay time{9, 9, 77, 9};
    ASSERT_TRUE(TimeFromSlot(slot, time));
    ASSERT_EQ(TimeSlot(time), slot);
    ASSERT_EQ(time.second, 77);
  }
  TimeOfDay time{9, 9, 9, 9};
  EXPECT_FALSE(TimeFromSlot(288, time) || TimeFromSlot(-1, time));
  EXPECT_EQ(time.hour, 9);
}

// The clock is set at the first call in a process, so each moment is looked at in a process of its own.
void ExpectNow(const char* clock, const Date& date, const TimeOfDay& time) {
  EXPECT_EXIT(
      {
        setenv("DAYBRIX_CLOCK", clock, 1);
        const TimeOfDay now = NowRounded(5);
        const bool right = IsSameDate(Today(), date) && now.hour == time.hour && now.minute == time.minute &&
                           now.half == time.half && NowRounded(0).minute >= time.minute;
        std::exit(right ? 0 : 1);
      },
      testing::ExitedWithCode(0), "")
      << clock;
}

TEST(DateTime, Clock) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  ExpectNow("2004-03-14T10:43:12", {14, 3, 2004}, {10, 40, 12, kBeforeNoon});
  ExpectNow("2004-03-14T22:04:00", {14, 3, 2004}, {10, 0, 0, kAfterNoon});
  ExpectNow("2004-03-14T12:00:00", {14, 3, 2004}, {0, 0, 0, kAfterNoon});
  ExpectNow("1999-12-31T00:00:00", kFirstDate, {0, 0, 0, kBeforeNoon});
  ExpectNow("2020-12-31T23:59:59", {31, 12, kEarlyLastYear}, {11, 55, 59, kAfterNoon});
  ExpectNow("2021-01-01T00:00:00", {1, 1, 2021}, {0, 0, 0, kBeforeNoon});
  ExpectNow("2101-06-01T00:00:00", {31, 12, kLateLastYear}, {0, 0, 0, kBeforeNoon});
}

TEST(TimeTexts, OfEitherClock) {
  const auto texts = [](int hour, int minute, int half) {
    return FormatTime(hour, minute, half) + " " + FormatTimeCompact(hour, minute, half);
  };
  SetClockMode(ClockMode::k12Hours);
  EXPECT_EQ(texts(0, 5, 1) + " " + texts(0, 5, 2), "00:05 am 00:05a 12:05 pm 12:05p");
  EXPECT_EQ(texts(9, 30, 1) + " " + texts(11, 0, 2), "09:30 am 09:30a 11:00 pm 11:00p");
  EXPECT_EQ(FormatTime(0, 0, 3) + " " + FormatDate(14, 3, 2004), "0:00 pm 3/14/2004");
  SetClockMode(ClockMode::k24Hours);
  EXPECT_EQ(texts(0, 5, 1) + " " + texts(0, 5, 2), "00:05 00:05 12:05 12:05");
  EXPECT_EQ(texts(11, 0, 2) + " " + FormatDate(14, 3, 2004), "23:00 23:00 14/3/2004");
  EXPECT_EQ(MonthName(9), "September");
  EXPECT_EQ(WeekdayName({14, 3, 2004}), "Sunday");
  EXPECT_EQ(WeekdayName({29, 2, 2001}), "December");
  FormatTime(INT_MAX, INT_MIN, kAfterNoon);  // overflows nothing: the sanitizer tells
}

}  // namespace
}  // namespace core
