#include "core/calendar/appointment.h"

#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::TemporaryCalendar;

TEST(Appointment, Examples) {
  TemporaryCalendar calendar;
  ASSERT_TRUE(AddExampleAppointments(calendar.file));
  const RecordQuery query = tests::AllRecords(calendar.file);
  EXPECT_EQ(tests::Subjects(calendar.file, query),
            (std::vector<std::string>{"Business meeting with Oren Maddox.", "Business lunch with Ida Vance.",
                                      "Brightfold Ltd."}));
  const struct {
    int start;
    int end;
    std::uint32_t allDay;
    const char* category;
  } kExpected[] = {{120, 124, 1, ""}, {170, 180, 0, ""}, {196, 196, 0, "Calls"}};
  for (std::size_t i = 0; i < 3; ++i) {
    Appointment example;
    ASSERT_TRUE(calendar.file.ReadRecord(&example, query.KeyAt(i)));
    EXPECT_EQ(TimeSlot(example.startTime), kExpected[i].start);
    EXPECT_EQ(TimeSlot(example.endTime), kExpected[i].end);
    EXPECT_EQ(TimeSlot(example.alarmTime), kExpected[i].start);
    EXPECT_EQ(tests::Value(example.allDay), kExpected[i].allDay);
    EXPECT_EQ(ReadText(example.header.category), kExpected[i].category);
    EXPECT_EQ(DayIndex(example.date), DayIndex(Today()));
    EXPECT_EQ(DayIndex(example.alarmDate), DayIndex(Today()));
    EXPECT_EQ(tests::Value(example.alarmStartKind), kAlarmStartsDocument);
    EXPECT_EQ(example.alarmOn, 0);
    EXPECT_FALSE(HasRepeat(example));
  }
}

TEST(Appointment, AlarmDates) {
  Appointment appointment{};
  appointment.alarmDaysBefore = 3;
  ASSERT_TRUE(AlarmDateFromDate(appointment, {2, 3, 2004}));
  EXPECT_EQ(DayIndex(appointment.alarmDate), DayIndex(2004, 2, 28));
  Date date{};
  ASSERT_TRUE(DateFromAlarm(appointment, date));
  EXPECT_EQ(DayIndex(date), DayIndex(2004, 3, 2));

  EXPECT_FALSE(AlarmDateFromDate(appointment, {2, 1, 2000}));
  EXPECT_EQ(DayIndex(appointment.alarmDate), DayIndex(2004, 2, 28));
  appointment.alarmDate = {30, 12, LastYear()};
  EXPECT_FALSE(DateFromAlarm(appointment, date));
  EXPECT_EQ(DayIndex(date), DayIndex(2004, 3, 2));
  appointment.alarmDaysBefore = INT32_MAX;  // a damaged record
  EXPECT_FALSE(AlarmDateFromDate(appointment, {1, 1, 2004}));
}

TEST(Categories, DefaultsAndStoredLists) {
  TemporaryCalendar calendar;
  CategoryList list;
  ASSERT_TRUE(ReadCategories(calendar.file, list));
  EXPECT_EQ(list.names, (std::vector<std::string>{"Calls", "Clients", "Expenses", "Follow up", "Ideas",
                                                  "Meetings", "Issues", "People", "Personal", "Projects",
                                                  "Public", "Holiday", "Travel", "Vacation", "Test"}));

  std::vector<std::string> names(31);
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = std::to_string(i);
  names[0] = std::string(40, 'x');  // fills its field and is cut
  ASSERT_EQ(StoreCategories(calendar.file, names), CommandResult::kDone);
  ASSERT_TRUE(ReadCategories(calendar.file, list));
  EXPECT_EQ(list.count, 31U);
  ASSERT_EQ(list.names.size(), 29U);
  EXPECT_EQ(list.names[0], std::string(30, 'x'));
  EXPECT_EQ(list.names[28], "28");
  EXPECT_EQ(calendar.file.GetChangeCounter(), 10U) << "it counts records";
  CategoryBlock block;
  ASSERT_TRUE(calendar.file.ReadCategoryBlock(block));
  block.count = 0xFFFFFFFF;
  WriteText(block.entries[29].name, "thirtieth");
  ASSERT_EQ(calendar.file.WriteCategoryBlock(block), Result::kDone);
  ASSERT_TRUE(ReadCategories(calendar.file, list));
  EXPECT_EQ(list.count, 0xFFFFFFFFU);
  EXPECT_EQ(list.names.size(), 30U);
}

}  // namespace
}  // namespace core
