#include "core/calendar/day_table.h"

#include <filesystem>
#include <random>
#include <thread>

#include "core/calendar/alarm_schedule.h"
#include "core/calendar/day_lists.h"
#include "core/store/record_query.h"
#include "core/store/record_scan.h"
#include "gtest/gtest.h"
#include "support/era.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::TemporaryCalendar;

// A file system whose clock has long ticks.
bool (*systemState)(int, bool, platform::FileState&) = platform::SystemFileCalls().state;
bool CoarseState(int descriptor, bool fresh, platform::FileState& state) {
  if (!systemState(descriptor, fresh, state)) return false;
  state.writtenNs -= state.writtenNs % 50'000'000 - 1;
  state.changedNs = 0;
  return true;
}

class DayTableInEra : public testing::TestWithParam<int> {
 protected:
  int Random(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }

  Entry SomeEntry() {
    static constexpr RepeatType kTypes[] = {kRepeatDaily, kRepeatWeekly, kRepeatMonthly, kRepeatYearly};
    Entry entry;
    entry.On(1 + Random(31), 1 + Random(3), Random(2) == 0 ? 2004 : 2050).At(Random(24), 5 * Random(12));
    if (Random(3) == 0)
      entry.Every(1 + Random(9), kTypes[Random(4)], static_cast<std::uint32_t>(1 + Random(40)));
    if (Random(4) == 0) entry.Category(Random(2) == 0 ? "Calls" : "CALLS ");
    if (Random(4) == 0) entry.Confidential();
    entry.appointment.alarmOn = static_cast<std::uint8_t>(Random(2));
    return entry;
  }

  // The lists, by way of the table and by a pass over the file for each day.
  void Compare(const RecordFile& file) {
    Date first{1 + Random(28), 1 + Random(3), Random(2) == 0 ? 2004 : 2050};
    if (Random(9) == 0) first = {28, 12, LastYear()};
    const char* category = Random(2) == 0 ? "" : "calls";
    DayLists lists;
    ASSERT_TRUE(lists.Run(file, first, 7, category));
    for (int day = 0; day < 7; ++day) {
      RecordQuery plain;
      plain.AddCallbackCondition(0, &first, sizeof first, OccursOnDate, Connector::kAnd);
      if (*category != '\0') plain.AddTextCondition(16, 30, ConditionOp::kEqual, category, Connector::kAnd);
      ASSERT_TRUE(plain.Run(file) && plain.Sort(file, kDayOrder));
      EXPECT_EQ(lists.Day(day), DayIndex(first) < 0 ? std::vector<RecordKey>() : plain.Keys());
      if (!NextDay(first)) break;
    }
    const AlarmMoment now{first, {9, 0, 0, kBeforeNoon}};
    AlarmList alarms;
    ASSERT_TRUE(ListAlarms(file, now, alarms));
    std::size_t due = 0;
    static_cast<void>(ScanRecords(file, [&](const char* slot, std::int32_t /*offset*/) {
      due += IsDue(*reinterpret_cast<const Appointment*>(slot), now) ? 1 : 0;
    }));
    EXPECT_EQ(alarms.due.size(), due);
  }

  std::mt19937 random{static_cast<unsigned>(GetParam())};
};

// Own changes, another's, those of one who dies before he counts, and other files under the name.
TEST_P(DayTableInEra, ShowsWhatAPassOverTheFileShows) {
  const tests::Era era(GetParam());
  const tests::FaultyCalls restored;
  platform::SystemFileCalls().state = CoarseState;
  TemporaryCalendar calendar({"o", "a", "r"});
  RecordFile other(calendar.Path(), "a");
  RecordFile reader(calendar.Path(), "r");
  for (int step = 0; step < 400 && !HasFailure(); ++step) {
    RecordFile& writer = Random(2) == 0 ? calendar.file : other;
    const Entry entry = SomeEntry();
    const auto slots = static_cast<int>((writer.SlotsEnd() - 2625) / 2627);
    const std::int32_t offset = 2625 + 2627 * Random(std::max(slots, 1));
    const int kind = slots < 9 ? 0 : Random(5);
    if (kind == 0) static_cast<void>(writer.AddRecord(&entry.appointment));
    if (kind == 1) static_cast<void>(writer.DeleteRecord(offset));
    if (kind == 2) static_cast<void>(writer.WriteRecord(&entry.appointment, offset));
    if (kind >= 3) static_cast<void>(writer.WriteSlot(&entry.appointment, offset));  // counts nothing
    if (step % 50 == 25) {
      std::filesystem::copy_file(calendar.Path(), calendar.Path() + ".new");
      std::filesystem::rename(calendar.Path() + ".new", calendar.Path());
      for (RecordFile* file : {&calendar.file, &other, &reader}) file->Close();
      for (RecordFile* file : {&calendar.file, &other, &reader}) ASSERT_TRUE(file->Open());
    }
    if (step % 40 == 39) std::this_thread::sleep_for(std::chrono::milliseconds(110));
    for (const RecordFile* file : {&calendar.file, &other, &reader}) Compare(*file);
  }
}
INSTANTIATE_TEST_SUITE_P(DayTable, DayTableInEra, testing::Values(kEarlyLastYear, kLateLastYear));

TEST(DayTable, ReadsAnUnchangedFileOnceAndItsRightsEachTime) {
  TemporaryCalendar calendar({"o", "", "r"});
  calendar.Add(Entry().Confidential());
  DayLists lists;
  const auto listed = [&] { return lists.Run(calendar.file, {1, 3, 2004}, 1) ? lists.Count() : 99; };
  EXPECT_EQ(listed(), 1U);
  std::this_thread::sleep_for(std::chrono::milliseconds(110));
  EXPECT_EQ(listed(), 1U);
  tests::FaultyCalls calls;
  EXPECT_EQ(listed(), 1U);
  EXPECT_EQ(calls.Count(tests::FaultyCalls::kRead), 1) << "only the header block";
  RecordFile other(calendar.Path(), "o");
  const auto renamed = [&other](const char* owner, const char* reader) {
    return other.UpdateHeaderBlock([&](HeaderBlock& header) {
      WriteText(header.ownerPassword, owner);
      WriteText(header.readerPassword, reader);
    });
  };
  ASSERT_TRUE(renamed("x", "o"));
  EXPECT_EQ(listed(), 0U);
  ASSERT_TRUE(renamed("x", "y"));
  EXPECT_EQ(listed(), 99U);
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
