#include "core/record_query.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <random>

#include "core/repeat_rule.h"
#include "gtest/gtest.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::FaultyCalls;
using tests::Subjects;
using tests::TemporaryCalendar;

constexpr std::uint32_t kCategory = offsetof(RecordHeader, category);
constexpr std::uint32_t kSubject = offsetof(Appointment, subject);
constexpr std::uint32_t kNotes = offsetof(Appointment, notes);
constexpr RecordOrder kBySubject{kSubject, 150, CompareText};

using Names = std::vector<std::string>;

Names Listed(const RecordFile& file, RecordQuery& query) {
  EXPECT_TRUE(query.Run(file));
  return Subjects(file, query);
}

Names FindText(const RecordFile& file, ConditionOp op, std::string_view text) {
  RecordQuery query;
  query.AddTextCondition(kSubject, 150, op, text, Connector::kAnd);
  return Listed(file, query);
}

TEST(RecordQuery, TextOperators) {
  TemporaryCalendar calendar;
  for (const char* subject : {"Board meeting", "MEETING", "meet", ""}) calendar.Add(Entry(subject));
  const RecordFile& file = calendar.file;
  EXPECT_EQ(FindText(file, ConditionOp::kEqual, "meeting"), Names{"MEETING"});
  EXPECT_EQ(FindText(file, ConditionOp::kNotEqual, "meeting"), (Names{"Board meeting", "meet", ""}));
  EXPECT_EQ(FindText(file, ConditionOp::kAtMost, "meet"), (Names{"Board meeting", "meet", ""}));
  EXPECT_EQ(FindText(file, ConditionOp::kAtLeast, "MEET"), (Names{"MEETING", "meet"}));
  EXPECT_EQ(FindText(file, ConditionOp::kGreater, "meet"), Names{"MEETING"});
  EXPECT_EQ(FindText(file, ConditionOp::kLess, "meet"), (Names{"Board meeting", ""}));
  EXPECT_EQ(FindText(file, ConditionOp::kContains, "Meeting"), (Names{"Board meeting", "MEETING"}));
  EXPECT_EQ(FindText(file, ConditionOp::kContains, "").size(), 4U);
  EXPECT_EQ(FindText(file, ConditionOp::kNotContains, "Meeting"), (Names{"meet", ""}));
  EXPECT_EQ(FindText(file, ConditionOp::kBeginsWith, "meet"), (Names{"MEETING", "meet"}));
  EXPECT_EQ(FindText(file, ConditionOp::kNotBeginsWith, "meet"), (Names{"Board meeting", ""}));
  EXPECT_EQ(FindText(file, ConditionOp::kEndsWith, "meeting"), Names{});
  EXPECT_EQ(FindText(file, ConditionOp::kEndsWith, ""), Names{""});
  EXPECT_EQ(FindText(file, ConditionOp::kNotEndsWith, "meeting").size(), 4U);
  EXPECT_EQ(FindText(file, static_cast<ConditionOp>(14), "x").size(), 4U);
  EXPECT_EQ(FindText(file, ConditionOp::kEqual, std::string(499, 'x') + "yz").size(), 0U);
}

TEST(RecordQuery, FullFieldsAreReadToTheirEndOnly) {
  TemporaryCalendar calendar;
  Entry entry(std::string(150, 's'));
  entry.Notes("sEND");
  calendar.Add(entry);
  EXPECT_EQ(FindText(calendar.file, ConditionOp::kContains, "send").size(), 0U);
  EXPECT_EQ(FindText(calendar.file, ConditionOp::kContains, std::string(150, 'S')).size(), 1U);
  EXPECT_EQ(FindText(calendar.file, ConditionOp::kContains, std::string(151, 'S')).size(), 0U);
}

TEST(RecordQuery, OtherKindsOfValues) {
  TemporaryCalendar calendar;
  Entry a("a");
  a.appointment.header.recordId = 0x1'0000'0002;
  Entry b("b");
  b.appointment.header.recordId = 0xFFFFFFFF'00000001;
  b.appointment.alarmOn = 1;
  calendar.Add(a);
  calendar.Add(b);
  const auto run = [&](const auto& add) {
    RecordQuery query;
    EXPECT_TRUE(add(query));
    return Listed(calendar.file, query);
  };
  constexpr std::uint32_t kId = offsetof(RecordHeader, recordId);
  constexpr std::uint32_t kAlarm = offsetof(Appointment, alarmOn);
  EXPECT_EQ(run([](auto& q) { return q.AddInt64Condition(kId, ConditionOp::kEqual, 2, 1, Connector::kAnd); }),
            Names{"a"});
  EXPECT_EQ(run([](auto& q) { return q.AddInt64Condition(kId, ConditionOp::kLess, 0, 0, Connector::kAnd); }),
            Names{"b"});
  EXPECT_EQ(run([](auto& q) { return q.AddByteCondition(kAlarm, ConditionOp::kEqual, 1, Connector::kAnd); }),
            Names{"b"});
  // Text operators never hold on other kinds, their negations always.
  EXPECT_EQ(
      run([](auto& q) { return q.AddByteCondition(kAlarm, ConditionOp::kContains, 1, Connector::kAnd); }),
      Names{});
  EXPECT_EQ(run([](auto& q) {
              return q.AddByteCondition(kAlarm, ConditionOp::kNotEndsWith, 1, Connector::kAnd);
            }).size(),
            2U);
  const Date date{1, 3, 2004};
  EXPECT_EQ(run([&](auto& q) {
              return q.AddValueCondition(ValueKind::kDate, offsetof(Appointment, date), 12,
                                         ConditionOp::kAtLeast, &date, sizeof date, Connector::kAnd);
            }).size(),
            2U);
  // A field that reaches beyond the slot never matches.
  EXPECT_EQ(run([](auto& q) { return q.AddByteCondition(2627, ConditionOp::kNotEqual, 1, Connector::kAnd); }),
            Names{});
  EXPECT_EQ(run([](auto& q) {
              return q.AddTextCondition(0xFFFFFFFF, 2, ConditionOp::kNotEqual, "", Connector::kAnd);
            }),
            Names{});
}

TEST(RecordQuery, CallbacksSeeFieldAndValue) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("a"));
  calendar.Add(Entry("b"));
  const auto sameByte = [](const void* field, const void* value) {
    return std::memcmp(field, value, 1) == 0;
  };
  RecordQuery query;
  EXPECT_TRUE(query.AddCallbackCondition(kSubject, "b", 1, sameByte, Connector::kAnd));
  EXPECT_EQ(Listed(calendar.file, query), Names{"b"});
  const std::string tooLong(500, 'b');
  query.Clear();
  query.AddCallbackCondition(kSubject, tooLong.data(), tooLong.size(), sameByte, Connector::kAnd);
  EXPECT_EQ(Listed(calendar.file, query), Names{});
}

// Pairs of neighbours decide, so (A or B) and C is written with C twice.
TEST(RecordQuery, CombiningByPairs) {
  TemporaryCalendar calendar;
  for (const char* letters : {"a", "b", "c", "ab", "ac", "bc", "abc", "none"}) calendar.Add(Entry(letters));
  const auto run = [&](const std::vector<std::pair<const char*, Connector>>& conditions) {
    RecordQuery query;
    for (const auto& [text, connector] : conditions) {
      query.AddTextCondition(kSubject, 150, ConditionOp::kContains, text, connector);
    }
    return Listed(calendar.file, query);
  };
  constexpr Connector kAnd = Connector::kAnd;
  constexpr Connector kOr = Connector::kOr;
  EXPECT_EQ(run({{"a", kOr}}), (Names{"a", "ab", "ac", "abc"}));
  EXPECT_EQ(run({{"a", kAnd}, {"b", kAnd}}), (Names{"ab", "abc"}));
  EXPECT_EQ(run({{"a", kOr}, {"b", kOr}}), (Names{"a", "b", "ab", "ac", "bc", "abc"}));
  EXPECT_EQ(run({{"a", kAnd}, {"b", kOr}}), (Names{"a", "b", "ab", "ac", "bc", "abc"}));
  EXPECT_EQ(run({{"a", kOr}, {"b", kOr}, {"c", kAnd}, {"c", kAnd}}), (Names{"ac", "bc", "abc"}));
  EXPECT_EQ(run({{"a", kAnd}, {"b", static_cast<Connector>(0)}, {"c", kAnd}}),
            (Names{"b", "ab", "ac", "bc", "abc"}));
}

TEST(RecordQuery, MatchAllFirstIgnoresTheRest) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("a"));
  RecordQuery query;
  EXPECT_EQ(Listed(calendar.file, query), Names{});
  query.AddMatchAll();
  query.AddTextCondition(kSubject, 150, ConditionOp::kEqual, "b", Connector::kAnd);
  EXPECT_EQ(Listed(calendar.file, query), Names{"a"});
  for (int i = 2; i < 50; ++i) EXPECT_TRUE(query.AddMatchAll());
  EXPECT_FALSE(query.AddMatchAll());
  EXPECT_FALSE(query.AddCallbackCondition(0, nullptr, 0, OccursOnDate, Connector::kAnd));
  EXPECT_EQ(query.ConditionCount(), 50U);
}

TEST(RecordQuery, OnlyLiveAndVisibleRecords) {
  TemporaryCalendar calendar({"own", "assist", ""});
  calendar.Add(Entry("live"));
  Entry strange("in use 2");
  strange.appointment.header.inUse = 2;
  calendar.Add(strange);
  Entry confidential("confidential");
  calendar.Add(confidential.Confidential());
  confidential.appointment.header.confidential = 2;
  calendar.Add(confidential);
  RecordQuery query;
  query.AddMatchAll();
  EXPECT_EQ(Listed(calendar.file, query), (Names{"live", "confidential", "confidential"}));
  const RecordFile assistant(calendar.Path(), "assist");
  EXPECT_EQ(Listed(assistant, query), (Names{"live", "confidential"}));
  EXPECT_EQ(query.OffsetAt(0), 2625);
  EXPECT_EQ(query.OffsetAt(2), -1);
}

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

TEST(RecordQuery, TenThousandAtMost) {
  TemporaryCalendar calendar;
  Fill(calendar, 10001);
  RecordQuery query;
  query.AddMatchAll();
  ASSERT_TRUE(query.Run(calendar.file));
  ASSERT_EQ(query.OffsetCount(), 10000U);
  EXPECT_EQ(query.OffsetAt(9999), 2625 + 9999 * 2627);
  EXPECT_TRUE(query.Sort(calendar.file, kListOrder));
  EXPECT_EQ(query.OffsetCount(), 10000U);
}

// Ninety-nine records are read field by field, a hundred in one go; keys and comparisons must agree in both.
TEST(RecordQuery, BothWaysOfSortingWithAndWithoutKeys) {
  for (const int count : {1, 99, 100, 250}) {
    TemporaryCalendar calendar;
    Fill(calendar, count);
    for (const RecordOrder* order : {&kDayOrder, &kListOrder, &kDateTimeOrder}) {
      RecordQuery query;
      query.AddMatchAll();
      ASSERT_TRUE(query.Run(calendar.file));
      std::vector<std::int32_t> expected = query.Offsets();
      auto field = [&, slot = Appointment()](std::int32_t offset) mutable {
        EXPECT_TRUE(calendar.file.ReadRecord(&slot, offset));
        return std::string(reinterpret_cast<const char*>(&slot) + order->fieldOffset,
                           static_cast<std::size_t>(order->fieldSize));
      };
      std::stable_sort(expected.begin(), expected.end(), [&](std::int32_t a, std::int32_t b) {
        const std::string first = field(a);
        return order->compare(first.data(), field(b).data(), first.size()) < 0;
      });
      FaultyCalls calls;
      EXPECT_TRUE(query.Sort(calendar.file, *order));
      const int reads = calls.Count(FaultyCalls::kRead);
      EXPECT_TRUE(count < 100 ? reads >= count : reads <= 2 + count / 100) << count << ' ' << reads;
      EXPECT_EQ(query.Offsets(), expected) << count;
      RecordOrder withoutKey = *order;
      withoutKey.key = nullptr;
      EXPECT_TRUE(query.Sort(calendar.file, withoutKey));
      EXPECT_EQ(query.Offsets(), expected) << count;
    }
  }
}

TEST(RecordQuery, DayOrderPutsAllDayFirst) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("ten").At(10, 0));
  calendar.Add(Entry("nine four").At(9, 4));
  calendar.Add(Entry("all day").At(23, 0).AllDay());
  calendar.Add(Entry("nine two").At(9, 2));
  calendar.Add(Entry("no time").At(9, 59));
  RecordQuery query;
  query.AddMatchAll();
  query.Run(calendar.file);
  EXPECT_TRUE(query.Sort(calendar.file, kDayOrder));
  EXPECT_EQ(Subjects(calendar.file, query), (Names{"all day", "no time", "nine four", "nine two", "ten"}));
}

// A comparison that contradicts itself, as damaged values can make one, costs order and nothing else.
TEST(RecordQuery, SenselessComparison) {
  TemporaryCalendar calendar;
  Fill(calendar, 300);
  RecordQuery query;
  query.AddMatchAll();
  query.Run(calendar.file);
  std::vector<std::int32_t> all = query.Offsets();
  const RecordOrder senseless{kSubject, 150, [](const void*, const void*, std::size_t) { return -1; }};
  EXPECT_TRUE(query.Sort(calendar.file, senseless));
  std::vector<std::int32_t> sorted = query.Offsets();
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, all);
}

TEST(RecordQuery, UnreadableRecordsFailTheSortButLoseNothing) {
  for (const int count : {20, 150}) {
    TemporaryCalendar calendar;
    Fill(calendar, count);
    RecordQuery query;
    query.AddMatchAll();
    query.Run(calendar.file);
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kRead, 1, EIO, 6);  // for the long list: both runs and some fields
    EXPECT_FALSE(query.Sort(calendar.file, kBySubject));
    EXPECT_EQ(query.OffsetCount(), static_cast<std::size_t>(count));
    EXPECT_TRUE(query.Resort());
    EXPECT_EQ(Subjects(calendar.file, query)[1], "1");
  }
  RecordQuery unsorted;
  EXPECT_FALSE(unsorted.Resort());
}

TEST(RecordQuery, FailedReadSkipsAHundredSlots) {
  TemporaryCalendar calendar;
  Fill(calendar, 250);
  RecordQuery query;
  query.AddMatchAll();
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kRead, 3, EIO);  // the counter, the first hundred, the second hundred
  EXPECT_TRUE(query.Run(calendar.file));
  ASSERT_EQ(query.OffsetCount(), 150U);
  EXPECT_EQ(query.OffsetAt(100), 2625 + 200 * 2627);
  faults.Fail(FaultyCalls::kRead, 1, EIO, FaultyCalls::kForEver);
  EXPECT_TRUE(query.Run(calendar.file));  // and ends
  EXPECT_EQ(query.OffsetCount(), 0U);
}

TEST(RecordQuery, StampAndRefresh) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("b"));
  RecordFile other(calendar.Path(), "");
  RecordQuery query;
  query.AddMatchAll();
  query.Run(calendar.file);
  EXPECT_EQ(query.Stamp(), RecordQuery::kNoStamp);
  EXPECT_FALSE(query.RefreshIfChanged(calendar.file));
  query.Sort(calendar.file, kBySubject);
  EXPECT_EQ(query.Stamp(), 11U);

  int notices = 0;
  const auto notice = [&] { ++notices; };
  EXPECT_FALSE(query.RefreshIfChanged(calendar.file, notice));
  const Entry entry("a");
  other.AddRecord(&entry.appointment);
  query.Run(calendar.file);
  query.Sort(calendar.file, kBySubject);
  EXPECT_EQ(query.Stamp(), 11U);  // a later sort keeps the stamp
  EXPECT_TRUE(query.RefreshIfChanged(calendar.file, notice));
  EXPECT_EQ(query.Stamp(), 12U);
  EXPECT_EQ(notices, 1);
  EXPECT_EQ(Subjects(calendar.file, query), (Names{"a", "b"}));
  EXPECT_FALSE(query.RefreshIfChanged(calendar.file, notice));

  other.DeleteRecord(query.OffsetAt(0));
  EXPECT_EQ(Subjects(calendar.file, query), (Names{"(gone)", "b"}));
  query.Clear();
  EXPECT_EQ(query.Stamp(), RecordQuery::kNoStamp);
  EXPECT_EQ(query.ConditionCount() + query.OffsetCount(), 0U);
  EXPECT_FALSE(query.Resort());
}

// What somebody adds between the scan and the sort must not count as seen.
TEST(RecordQuery, ChangeBetweenScanAndSortIsNoticed) {
  TemporaryCalendar calendar;
  RecordQuery query;
  query.AddMatchAll();
  query.Run(calendar.file);
  calendar.Add(Entry("late"));
  query.Sort(calendar.file, kBySubject);
  EXPECT_TRUE(query.RefreshIfChanged(calendar.file));
  EXPECT_EQ(Subjects(calendar.file, query), Names{"late"});
}

// A callback made for appointments, on the last slot of a file of smaller records.
TEST(RecordQuery, CallbackForALargerKindStaysInTheBuffer) {
  const tests::TemporaryFolder folder;
  RecordFile contacts(folder.Join("contacts.adr"), "");
  HeaderBlock header;
  InitHeaderBlock(header, "Nameleaf", "Nameleaf", 1);
  ASSERT_TRUE(contacts.Create(header, DefaultCategories(), 859));
  std::vector<char> slot(859);
  ASSERT_TRUE(contacts.InitRecord(slot.data()));
  for (int i = 0; i < 100; ++i) ASSERT_EQ(contacts.AddRecord(slot.data()), Result::kDone);
  const Date day{1, 3, 2004};
  RecordQuery query;
  query.AddCallbackCondition(0, &day, sizeof day, OccursOnDate, Connector::kAnd);
  EXPECT_TRUE(query.Run(contacts));
  EXPECT_FALSE(query.Sort(contacts, kDayOrder));  // the order's field is larger than the slot
}

}  // namespace
}  // namespace core
