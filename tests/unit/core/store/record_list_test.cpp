// How lists of records are built over many slots, sorted, and made anew when the file changed.
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <random>

#include "core/calendar/repeat_rule.h"
#include "core/store/record_query.h"
#include "core/store/record_scan.h"
#include "gtest/gtest.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::AllRecords;
using tests::Entry;
using tests::FaultyCalls;
using tests::Subjects;
using tests::TemporaryCalendar;

constexpr std::int32_t kSubject = offsetof(Appointment, subject);
constexpr RecordOrder kBySubject{kSubject, 150, CompareText};

using Names = std::vector<std::string>;

// A calendar of `count` live records, written in one go; record i has the subject "i" and, all in disorder, a
// date.
std::string ManyRecords(int count) {
  std::mt19937 random(7);
  std::string slots;
  Entry entry;
  for (int i = 0; i < count; ++i) {
    core::WriteText(entry.appointment.subject, std::to_string(i));
    Date date{};
    DateFromIndex(static_cast<int>(random() % 3000), date);
    entry.appointment.date = date;
    entry.At(static_cast<int>(random() % 24), static_cast<int>(random() % 12) * 5);
    entry.appointment.allDay = random() % 4 == 0 ? 1 : 0;
    slots.append(reinterpret_cast<const char*>(&entry.appointment), sizeof entry.appointment);
  }
  return slots;
}

void Fill(TemporaryCalendar& calendar, int count) {
  const HeaderBlock header = calendar.Header();
  ASSERT_TRUE(calendar.file.Create(header, DefaultCategories(), 2627, ManyRecords(count)));
}

TEST(RecordList, TenThousandAtMost) {
  TemporaryCalendar calendar;
  Fill(calendar, 10001);
  RecordQuery query = AllRecords(calendar.file);
  ASSERT_EQ(query.Count(), 10000U);
  EXPECT_EQ(query.KeyAt(9999).offset, 2625 + 9999 * 2627);
  EXPECT_TRUE(query.Sort(calendar.file, kListOrder));
  EXPECT_EQ(query.Count(), 10000U);
}

// Ninety-nine records are read field by field, a hundred in one go; keys and comparisons must agree in both.
TEST(RecordList, BothWaysOfSortingWithAndWithoutKeys) {
  for (const int count : {1, 99, 100, 250}) {
    TemporaryCalendar calendar;
    Fill(calendar, count);
    for (const RecordOrder* order : {&kDayOrder, &kListOrder, &kDateTimeOrder}) {
      RecordQuery query = AllRecords(calendar.file);
      std::vector<RecordKey> expected = query.Keys();
      auto field = [&, slot = Appointment()](const RecordKey& key) mutable {
        EXPECT_TRUE(calendar.file.ReadRecord(&slot, key));
        return std::string(reinterpret_cast<const char*>(&slot) + order->fieldOffset,
                           static_cast<std::size_t>(order->fieldSize));
      };
      std::stable_sort(expected.begin(), expected.end(), [&](const RecordKey& a, const RecordKey& b) {
        const std::string first = field(a);
        return order->compare(first.data(), field(b).data(), first.size()) < 0;
      });
      FaultyCalls calls;
      EXPECT_TRUE(query.Sort(calendar.file, *order));
      const int reads = calls.Count(FaultyCalls::kRead);
      EXPECT_TRUE(count < 100 ? reads >= count : reads <= 2 + count / 100) << count << ' ' << reads;
      EXPECT_EQ(query.Keys(), expected) << count;
      RecordOrder withoutKey = *order;
      withoutKey.key = nullptr;
      EXPECT_TRUE(query.Sort(calendar.file, withoutKey));
      EXPECT_EQ(query.Keys(), expected) << count;
    }
  }
}

// A comparison that contradicts itself, as damaged values can make one, costs order and nothing else.
TEST(RecordList, SenselessComparison) {
  TemporaryCalendar calendar;
  Fill(calendar, 300);
  RecordQuery query = AllRecords(calendar.file);
  const std::vector<RecordKey> all = query.Keys();
  const RecordOrder senseless{kSubject, 150, [](const void*, const void*, std::size_t) { return -1; }};
  EXPECT_TRUE(query.Sort(calendar.file, senseless));
  std::vector<RecordKey> sorted = query.Keys();
  std::sort(sorted.begin(), sorted.end(),
            [](const RecordKey& a, const RecordKey& b) { return a.offset < b.offset; });
  EXPECT_EQ(sorted, all);
}

TEST(RecordList, UnreadableRecordsFailTheSortButLoseNothing) {
  for (const int count : {20, 150}) {
    TemporaryCalendar calendar;
    Fill(calendar, count);
    RecordQuery query = AllRecords(calendar.file);
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kRead, 1, EIO, 6);  // for the long list: both runs and some fields
    EXPECT_FALSE(query.Sort(calendar.file, kBySubject));
    EXPECT_EQ(query.Count(), static_cast<std::size_t>(count));
    EXPECT_TRUE(query.Resort());
    EXPECT_EQ(Subjects(calendar.file, query)[1], "1");
  }
  RecordQuery unsorted;
  EXPECT_FALSE(unsorted.Resort());
}

TEST(RecordList, AReadThatFailsOrFallsShortHidesNothingBehindItsHundred) {
  TemporaryCalendar calendar;
  Fill(calendar, 250);
  RecordQuery query;
  query.AddMatchAll();
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kRead, 4, EIO);  // after the counter, the rights and the first hundred
  EXPECT_TRUE(query.Run(calendar.file));
  ASSERT_EQ(query.Count(), 150U);
  EXPECT_EQ(query.KeyAt(100).offset, 2625 + 200 * 2627);
  const int reads = faults.Count(FaultyCalls::kRead);
  faults.Shorten(FaultyCalls::kRead, reads + 3, 60L * 2627);  // forty slots, then a bad place
  faults.Fail(FaultyCalls::kRead, reads + 4, EIO);
  EXPECT_TRUE(query.Run(calendar.file));
  ASSERT_EQ(query.Count(), 190U);
  EXPECT_EQ(query.KeyAt(40).offset, 2625 + 100 * 2627);
  const auto visit = [](const char*, std::int32_t) {};
  faults.Fail(FaultyCalls::kRead, faults.Count(FaultyCalls::kRead) + 1, EIO);
  EXPECT_EQ(ScanRecords(calendar.file, visit), ScanResult::kParts);
  EXPECT_EQ(ScanRecords(calendar.file, visit), ScanResult::kAll);
  faults.Fail(FaultyCalls::kRead, 1, EIO, FaultyCalls::kForEver);
  EXPECT_TRUE(query.Run(calendar.file));  // and ends
  EXPECT_EQ(query.Count(), 0U);
}

// A list that lacks something does not count as up to date. It is made again at once when the file changes,
// and else ever more seldom.
TEST(RecordList, AListThatIsNotWholeIsTriedAgain) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("a"));
  RecordQuery query;
  query.AddMatchAll();
  std::vector<int> tries;
  {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kRead, 3, EIO);  // the slots; the sort is no trouble
    EXPECT_TRUE(query.Run(calendar.file) && query.Sort(calendar.file, kBySubject));
    EXPECT_FALSE(query.IsWhole());
    EXPECT_EQ(query.Stamp(), RecordQuery::kNoStamp);
  }
  for (int call = 1; call <= 16; ++call) {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kRead, 4, EIO, FaultyCalls::kForEver);  // after two counters and the rights
    if (query.RefreshIfChanged(calendar.file)) tries.push_back(call);
  }
  EXPECT_EQ(tries, (std::vector<int>{1, 3, 7, 15}));
  calendar.Add(Entry("b"));
  EXPECT_TRUE(query.RefreshIfChanged(calendar.file));
  EXPECT_TRUE(query.IsWhole());
  EXPECT_EQ(Subjects(calendar.file, query), (Names{"a", "b"}));
  EXPECT_FALSE(query.RefreshIfChanged(calendar.file));
}

TEST(RecordList, StampAndRefresh) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("b"));
  RecordFile other(calendar.Path(), "");
  RecordQuery query = AllRecords(calendar.file);
  EXPECT_EQ(query.Stamp(), RecordQuery::kNoStamp);
  EXPECT_FALSE(query.RefreshIfChanged(calendar.file));
  query.Sort(calendar.file, kBySubject);
  EXPECT_EQ(query.Stamp(), 11U);

  int notices = 0;
  const auto notice = [&] { ++notices; };
  EXPECT_FALSE(query.RefreshIfChanged(calendar.file, notice));
  const Entry entry("a");
  EXPECT_EQ(other.AddRecord(&entry.appointment), core::Result::kDone);
  EXPECT_TRUE(query.Run(calendar.file));
  query.Sort(calendar.file, kBySubject);
  EXPECT_EQ(query.Stamp(), 11U);  // a later sort keeps the stamp
  EXPECT_TRUE(query.RefreshIfChanged(calendar.file, notice));
  EXPECT_EQ(query.Stamp(), 12U);
  EXPECT_EQ(notices, 1);
  EXPECT_EQ(Subjects(calendar.file, query), (Names{"a", "b"}));
  EXPECT_FALSE(query.RefreshIfChanged(calendar.file, notice));

  EXPECT_EQ(other.DeleteRecord(query.KeyAt(0)), core::Result::kDone);
  EXPECT_EQ(Subjects(calendar.file, query), (Names{"(gone)", "b"}));
  query.Clear();
  EXPECT_EQ(query.Stamp(), RecordQuery::kNoStamp);
  EXPECT_EQ(query.ConditionCount() + query.Count(), 0U);
  EXPECT_FALSE(query.Resort());
}

// What somebody adds between the scan and the sort must not count as seen. A calendar that was closed and
// opened anew is another object.
TEST(RecordList, ChangeBetweenScanAndSortIsNoticedAndSortedInTheFileThatIsGiven) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("b"));
  RecordQuery query;
  query.AddMatchAll();
  {
    const RecordFile first(calendar.Path(), "");
    EXPECT_TRUE(query.Run(first));
    calendar.Add(Entry("a"));
    query.Sort(first, kBySubject);
  }
  EXPECT_TRUE(query.RefreshIfChanged(calendar.file));
  EXPECT_EQ(Subjects(calendar.file, query), (Names{"a", "b"}));
}

// What is made for appointments stays in the buffer of a run over a file of smaller records: offsets that are
// none of the sorted file's slots, and a callback and an order whose fields reach beyond the last slot.
TEST(RecordList, AnotherKindOfFileStaysInTheBuffer) {
  const tests::TemporaryFolder folder;
  RecordFile contacts(folder.Join("contacts.adr"), "");
  HeaderBlock header;
  InitHeaderBlock(header, "Nameleaf", "Nameleaf", 1);
  std::string slot(859, '\0');
  slot[4] = 1;
  std::string slots;
  for (int i = 0; i < 400; ++i) slots += slot;
  ASSERT_TRUE(contacts.Create(header, DefaultCategories(), 859, slots));
  TemporaryCalendar calendar;
  Fill(calendar, 150);
  RecordQuery query = AllRecords(contacts);
  EXPECT_TRUE(query.Sort(calendar.file, kListOrder));
  EXPECT_EQ(query.Count(), 400U);

  const Date day{1, 3, 2004};
  query.Clear();
  query.AddCallbackCondition(0, &day, sizeof day, OccursOnDate, Connector::kAnd);
  EXPECT_TRUE(query.Run(contacts));
  EXPECT_FALSE(AllRecords(contacts).Sort(contacts, kDayOrder)) << "its field is larger than the slot";
}

}  // namespace
}  // namespace core
