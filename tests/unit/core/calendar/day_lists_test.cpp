#include "core/calendar/day_lists.h"

#include <string>

#include "core/store/record_query.h"
#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::TemporaryCalendar;

// The lists themselves are held against plain queries in day_table_test.cpp.
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

TEST(DayLists, KeepTheFirstTenThousandOfTheFile) {
  TemporaryCalendar calendar;
  std::string slots;
  for (int i = 0; i <= 10000; ++i) {
    const Entry entry = Entry().At(23 - i / 500, 0);  // the later in the file the earlier on the day
    slots.append(reinterpret_cast<const char*>(&entry.appointment), sizeof entry.appointment);
  }
  ASSERT_TRUE(calendar.file.Create(calendar.Header(), DefaultCategories(), 2627, slots));
  DayLists lists;
  ASSERT_TRUE(lists.Run(calendar.file, {1, 3, 2004}, 1));
  ASSERT_EQ(lists.Count(), 10000U);
  EXPECT_EQ(lists.KeyAt(0).offset, 2625 + 9500 * 2627);
  EXPECT_EQ(lists.KeyAt(9999).offset, 2625 + 499 * 2627);
}

}  // namespace
}  // namespace core
