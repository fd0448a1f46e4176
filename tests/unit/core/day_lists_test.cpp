#include "core/day_lists.h"

#include <filesystem>
#include <random>

#include "core/record_query.h"
#include "core/repeat_rule.h"
#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::TemporaryCalendar;

std::vector<std::int32_t> ListOf(const RecordFile& file, const Date& date, std::string_view category) {
  RecordQuery query;
  query.AddCallbackCondition(0, &date, sizeof date, OccursOnDate, Connector::kAnd);
  if (!category.empty()) {
    query.AddTextCondition(offsetof(RecordHeader, category), 30, ConditionOp::kEqual, category,
                           Connector::kAnd);
  }
  EXPECT_TRUE(query.Run(file) && query.Sort(file, kDayOrder));
  return query.Offsets();
}

TEST(DayLists, AreTheListsOfTheirDays) {
  const tests::TemporaryFolder folder;
  const std::string path = folder.Join("office.cld");
  std::filesystem::copy_file(DAYBRIX_SOURCE_FOLDER "/tests/data/office.cld", path);
  for (const char* category : {"", "Calls", "calls", "None"}) {
    const RecordFile file(path, "");
    for (Date first : {Date{1, 1, 2000}, Date{29, 2, 2004}, Date{10, 3, 2004}, Date{20, 11, kLastYear}}) {
      DayLists lists;
      ASSERT_TRUE(lists.Run(file, first, 42, category));
      ASSERT_EQ(lists.Count(), 42);
      for (int day = 0; day < 42; ++day) {
        EXPECT_EQ(lists.Day(day), ListOf(file, first, category)) << category << day;
        if (!NextDay(first)) first = {0, 0, 0};  // the days beyond the calendar's end are empty
        if (first.year == 0) break;
      }
    }
  }
}

TEST(DayLists, RefuseWhatTheyCannotList) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("a").On(14, 3, 2004));
  DayLists lists;
  EXPECT_FALSE(lists.Run(calendar.file, {14, 3, 2004}, 0) || lists.Run(calendar.file, {14, 3, 2004}, 65));
  EXPECT_TRUE(lists.Run(calendar.file, {14, 3, 1999}, 7));
  EXPECT_TRUE(lists.Day(0).empty());
  calendar.file.Close();
  EXPECT_FALSE(lists.Run(calendar.file, {14, 3, 2004}, 1));
  EXPECT_TRUE(lists.Day(0).empty());
}

// Rules of every kind, a good part of them nonsense, each on days around its own.
TEST(OccurrenceDays, AreThoseOnWhichItOccurs) {
  std::mt19937 random(20040314);
  const auto pick = [&](int least, int most) {
    return least + static_cast<int>(random() % static_cast<unsigned>(most - least + 1));
  };
  const int lastDay = DayIndex({31, 12, kLastYear});
  int found = 0;
  for (int i = 0; i < 20000; ++i) {
    Entry entry;
    const int start = pick(0, lastDay);
    Date date{};
    DateFromIndex(start, date);
    if (pick(0, 9) == 0) date = {29, 2, kFirstYear + 4 * pick(0, 5)};
    if (pick(0, 49) == 0) date = {pick(-1, 40), pick(-1, 14), pick(kFirstYear - 2, kLastYear + 2)};
    entry.On(date.day, date.month, date.year);
    const std::uint32_t params[] = {
        static_cast<std::uint32_t>(pick(0, 127)), static_cast<std::uint32_t>(date.day),
        static_cast<std::uint32_t>(date.month << 16 | date.day), static_cast<std::uint32_t>(random())};
    const auto type = static_cast<RepeatType>(pick(0, 5));
    const std::uint32_t every = pick(0, 19) == 0 ? 4'000'000'000U : static_cast<std::uint32_t>(pick(0, 6));
    entry.Every(every, type, params[pick(0, 3)]);
    Date end{};
    DateFromIndex(std::min(start + pick(-3, 900), lastDay), end);
    if (pick(0, 3) != 0 && end.year != 0) entry.Until(end.day, end.month, end.year);
    Date first{};
    DateFromIndex(std::clamp(start + pick(-70, 1500), 0, lastDay), first);

    const std::uint64_t days = OccurrenceDays(entry.appointment, first, DayLists::kMostDays);
    Date day = first;
    for (int k = 0; k < DayLists::kMostDays; ++k) {
      ASSERT_EQ((days >> k & 1) != 0, OccursOnDate(&entry.appointment, &day))
          << "type " << int{type} << " every " << every << " from " << date.day << '/' << date.month << '/'
          << date.year << " on " << day.day << '/' << day.month << '/' << day.year;
      if (!NextDay(day)) break;
    }
    found += days != 0 ? 1 : 0;
  }
  EXPECT_GT(found, 2000);
}

}  // namespace
}  // namespace core
