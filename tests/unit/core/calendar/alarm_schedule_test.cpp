#include "core/calendar/alarm_schedule.h"

#include <cstdio>

#include "gtest/gtest.h"
#include "support/json.h"
#include "support/source_folder.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;

const AlarmMoment kNow{{14, 3, 2004}, {10, 40, 0, kBeforeNoon}};

std::string Spelled(const Date& date) {
  std::string text(10, '\0');
  std::snprintf(text.data(), 11, "%04d-%02d-%02d", date.year, date.month, date.day);
  return text;
}

TEST(AlarmSchedule, RingsAsTheSampleSays) {
  const std::string data = tests::SourceFolder() + "/tests/data/alarms.";
  const RecordFile file(data + "cld", "", OpenMode::kReadOnly);
  std::string text;
  ASSERT_TRUE(platform::ReadWholeFile(data + "expected.json", 100000, text));
  const auto expected = tests::Json::Parse(text);
  AlarmList list;
  ASSERT_TRUE(ListAlarms(file, kNow, list) && list.whole);
  ASSERT_EQ(list.due.size(), expected["rings"].items.size());
  Appointment record;
  for (std::size_t i = 0; i < list.due.size(); ++i) {
    const auto& ring = expected["rings"].items[i];
    ASSERT_TRUE(file.ReadRecord(&record, list.due[i]));
    EXPECT_EQ(list.due[i].id, std::stoull(ring["id"].text, nullptr, 16));
    EXPECT_EQ(Spelled(RingMoment(record).date), ring["ring"].text);
    AfterAlarm(record, false);
    EXPECT_EQ(record.alarmOn, ring["alarmOnAfter"].number) << ring["subject"].text;
    EXPECT_EQ(Spelled(record.alarmDate), ring["alarmDateAfter"].text);
  }
  ASSERT_TRUE(file.ReadRecord(&record, list.next));
  EXPECT_EQ(Spelled(RingMoment(record).date), "2004-03-16");  // of the 18th, two days before
}

TEST(AlarmSchedule, Edges) {
  const Date kNone{0, 0, 0};
  const auto mondays = [](const char* name) {
    return Entry(name).Every(1, kRepeatWeekly, 2).Until(15, 3, 2004);
  };
  const struct {
    Entry entry;
    bool due;
    Date alarmDate;
    Date ring;
    Date after;  // none: the alarm is off then
    std::int32_t before;
  } kCases[] = {
      {Entry("this step").On(14, 3, 2004).At(10, 44), true, {1, 1, 2004}, {14, 3, 2004}, kNone, 0},
      {Entry("10:57 is 10:55").On(14, 3, 2004).At(10, 57), false, {1, 1, 2004}, {14, 3, 2004}, kNone, 0},
      {Entry("negative").On(15, 3, 2004), false, kNone, {15, 3, 2004}, kNone, -9},
      {Entry("far back").On(15, 3, 2004), false, {2, 2, 2008}, {2, 2, 2008}, kNone, INT32_MAX},
      {Entry("no date").On(31, 2, 2004), true, kNone, {31, 2, 2004}, kNone, 0},
      {Entry("other era").On(1, 1, 2050), false, kNone, {1, 1, 2050}, kNone, 0},
      {mondays("one more"), true, {8, 3, 2004}, {6, 3, 2004}, {15, 3, 2004}, 2},
      {mondays("the last"), true, {15, 3, 2004}, {14, 3, 2004}, kNone, 1},
      {Entry("never meets").Every(1, kRepeatMonthly, 32), true, {1, 3, 2004}, {1, 3, 2004}, kNone, 0},
      {Entry("no alarm date").Every(1, kRepeatDaily), true, kNone, kNone, kNone, 3},
  };
  for (const auto& test : kCases) {
    Appointment record = test.entry.appointment;
    record.alarmOn = 1;
    record.alarmTime = record.startTime;
    record.alarmDate = test.alarmDate;
    record.alarmDaysBefore = test.before;
    EXPECT_EQ(Spelled(RingMoment(record).date), Spelled(test.ring)) << record.subject;
    EXPECT_EQ(IsDue(record, kNow), test.due) << record.subject;
    Appointment disabled = record;
    AfterAlarm(disabled, true);
    AfterAlarm(record, false);
    EXPECT_EQ(Spelled(record.alarmOn == 1 ? record.alarmDate : kNone), Spelled(test.after)) << record.subject;
    EXPECT_EQ(disabled.alarmOn, 0);
  }
}

TEST(AlarmSchedule, WhoCannotWriteRingsThoseOfTheDayOnce) {
  const struct {
    std::int32_t before;
    bool rings;
    Date alarmDate;
    Date tomorrow;  // what rings the day after; none for nothing
    Entry entry;
  } kCases[] = {
      {0, true, {1, 1, 2004}, {0, 0, 0}, Entry("today").On(14, 3, 2004)},
      {0, false, {1, 1, 2004}, {0, 0, 0}, Entry("later today").On(14, 3, 2004).At(23, 0)},
      {0, false, {1, 1, 2004}, {0, 0, 0}, Entry("yesterday").On(13, 3, 2004)},
      {0, false, {1, 1, 2004}, {0, 0, 0}, Entry("no date").On(31, 2, 2004)},
      {2, true, {2, 3, 2004}, {17, 3, 2004}, Entry("daily").Every(1, kRepeatDaily)},
      {0, false, {2, 3, 2004}, {0, 0, 0}, Entry("ended").Every(1, kRepeatDaily).Until(13, 3, 2004)},
      {1, false, {2, 3, 2004}, {16, 3, 2004}, Entry("Tuesdays").Every(1, kRepeatWeekly, 4)},
  };
  AlarmMoment next = kNow;
  next.date.day++;
  for (const auto& test : kCases) {
    RungAlarms rung;
    Appointment record = test.entry.appointment;
    record.header.recordId = 7;
    record.alarmOn = 1;
    record.alarmTime = record.startTime;
    record.alarmDate = test.alarmDate;
    record.alarmDaysBefore = test.before;
    Appointment shown = record;
    EXPECT_EQ(rung.IsDue(shown, kNow), test.rings) << record.subject;
    if (test.rings) rung.Note(shown, false);
    shown = record;
    EXPECT_FALSE(rung.IsDue(shown, kNow)) << record.subject;
    shown = record;
    const bool again = rung.IsDue(shown, next);
    EXPECT_EQ(again ? Spelled(shown.alarmDate) : "0-0-0", again ? Spelled(test.tomorrow) : "0-0-0");
    EXPECT_EQ(again, test.tomorrow.year != 0) << record.subject;
    rung.Note(shown, true);
    EXPECT_FALSE(rung.IsDue(shown, next)) << record.subject;
  }
}

}  // namespace
}  // namespace core
