#include "core/calendar/day_lists.h"

#include <filesystem>

#include "core/calendar/repeat_rule.h"
#include "core/store/record_query.h"
#include "gtest/gtest.h"
#include "support/source_folder.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::TemporaryCalendar;

std::vector<RecordKey> ListOf(const RecordFile& file, const Date& date, std::string_view category) {
  RecordQuery query;
  query.AddCallbackCondition(0, &date, sizeof date, OccursOnDate, Connector::kAnd);
  if (!category.empty()) {
    query.AddTextCondition(offsetof(RecordHeader, category), 30, ConditionOp::kEqual, category,
                           Connector::kAnd);
  }
  EXPECT_TRUE(query.Run(file) && query.Sort(file, kDayOrder));
  return query.Keys();
}

TEST(DayLists, AreTheListsOfTheirDays) {
  const tests::TemporaryFolder folder;
  const std::string path = folder.Join("office.cld");
  std::filesystem::copy_file(tests::SourceFolder() + "/tests/data/office.cld", path);
  for (const char* category : {"", "Calls", "calls", "None"}) {
    const RecordFile file(path, "");
    for (Date first : {Date{1, 1, 2000}, Date{29, 2, 2004}, Date{10, 3, 2004}, Date{20, 11, LastYear()}}) {
      DayLists lists;
      ASSERT_TRUE(lists.Run(file, first, 42, category));
      ASSERT_EQ(lists.DayCount(), 42);
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

}  // namespace
}  // namespace core
