#include "core/store/record_query.h"

#include <cmath>
#include <cstring>

#include "core/calendar/repeat_rule.h"
#include "core/date_time.h"
#include "core/store/value_compare.h"
#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::Subjects;
using tests::TemporaryCalendar;

constexpr std::uint32_t kSubject = offsetof(Appointment, subject);

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
  const auto byId = [&](ConditionOp op, std::uint32_t low, std::uint32_t high) {
    RecordQuery query;
    EXPECT_TRUE(query.AddInt64Condition(offsetof(RecordHeader, recordId), op, low, high, Connector::kAnd));
    return Listed(calendar.file, query);
  };
  EXPECT_EQ(byId(ConditionOp::kEqual, 2, 1), Names{"a"});
  EXPECT_EQ(byId(ConditionOp::kLess, 0, 0), Names{"b"});
  const auto byByte = [&](std::uint32_t field, ConditionOp op) {
    RecordQuery query;
    EXPECT_TRUE(query.AddByteCondition(field, op, 1, Connector::kAnd));
    return Listed(calendar.file, query);
  };
  constexpr std::uint32_t kAlarm = offsetof(Appointment, alarmOn);
  EXPECT_EQ(byByte(kAlarm, ConditionOp::kEqual), Names{"b"});
  // Text operators never hold on other kinds, their negations always.
  EXPECT_EQ(byByte(kAlarm, ConditionOp::kContains), Names{});
  EXPECT_EQ(byByte(kAlarm, ConditionOp::kNotEndsWith), (Names{"a", "b"}));
  // A field that reaches beyond the slot never matches.
  EXPECT_EQ(byByte(2627, ConditionOp::kNotEqual), Names{});
  RecordQuery beyond;
  EXPECT_TRUE(beyond.AddTextCondition(0xFFFFFFFF, 2, ConditionOp::kNotEqual, "", Connector::kAnd));
  EXPECT_EQ(Listed(calendar.file, beyond), Names{});
  const Date date{1, 3, 2004};
  RecordQuery byDate;
  EXPECT_TRUE(byDate.AddValueCondition(ValueKind::kDate, offsetof(Appointment, date), 12,
                                       ConditionOp::kAtLeast, &date, sizeof date, Connector::kAnd));
  EXPECT_EQ(Listed(calendar.file, byDate), (Names{"a", "b"}));
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
  EXPECT_FALSE(query.AddMatchAll() ||
               query.AddCallbackCondition(0, nullptr, 0, OccursOnDate, Connector::kAnd));
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
  EXPECT_EQ(query.KeyAt(0).offset, 2625);
  EXPECT_TRUE(query.KeyAt(2).IsNone());
}

template <typename T>
int Compare(ValueKind kind, T a, T b) {
  // One byte off any alignment, as fields lie in records.
  char bytes[2 * sizeof(T) + 1];
  std::memcpy(bytes + 1, &a, sizeof a);
  std::memcpy(bytes + 1 + sizeof a, &b, sizeof b);
  const int result = CompareValues(kind, bytes + 1, bytes + 1 + sizeof a, sizeof a);
  return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

int Text(const char* a, const char* b, std::size_t size) {
  const int result = CompareValues(ValueKind::kText, a, b, size);
  return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

TEST(ValueCompare, Numbers) {
  for (const ValueKind kind : {ValueKind::kInt32, ValueKind::kNumber}) {
    EXPECT_EQ(Compare<std::int32_t>(kind, INT32_MIN, INT32_MAX), -1);
    EXPECT_EQ(Compare<std::int32_t>(kind, 7, 7), 0);
  }
  EXPECT_EQ(Compare<std::int8_t>(ValueKind::kByte, -1, 1), -1);
  EXPECT_EQ(Compare<std::uint8_t>(ValueKind::kByte, 200, 1), -1);
  EXPECT_EQ(Compare<std::int64_t>(ValueKind::kInt64, -1, 0), -1);
  EXPECT_EQ(Compare<std::int64_t>(ValueKind::kInt64, 0x1'0000'0000, 0xFFFFFFFF), 1);
  EXPECT_EQ(Compare<std::int64_t>(ValueKind::kInt64, 0xFFFFFFFF, 1), 1);
  for (const ValueKind kind : {ValueKind::kReal, ValueKind::kStampReal, ValueKind::kReal8}) {
    EXPECT_EQ(Compare(kind, 1.5, 2.5), -1);
    EXPECT_EQ(Compare(kind, 2.5, 2.5), 0);
    EXPECT_EQ(Compare(kind, 3.5, 2.5), 1);
    EXPECT_EQ(Compare(kind, 3.5, std::nan("")), -1);
    EXPECT_EQ(Compare(kind, std::nan(""), 3.5), -1);
  }
}

TEST(ValueCompare, Texts) {
  EXPECT_EQ(Text("Calls", "cALLS", 30), 0);
  EXPECT_EQ(Text("abc", "abd", 2), 0);
  EXPECT_EQ(Text("ab", "abc", 30), -1);
  EXPECT_EQ(Text("b", "ABC", 30), 1);
  EXPECT_EQ(Text("Z", "[", 30), 1);  // folded to lower case, letters come after the marks between the cases
  EXPECT_EQ(Text("\xC4", "\xE4", 30), -1);  // letters beyond ASCII are not folded
  EXPECT_EQ(Text("x\0a", "x\0b", 3), 0);    // nothing after the terminator counts
}

TEST(ValueCompare, DatesAndTimes) {
  EXPECT_EQ(Compare<Date>(ValueKind::kDate, {31, 1, 2004}, {1, 2, 2004}), -1);
  EXPECT_EQ(Compare<Date>(ValueKind::kDate, {1, 1, 1999}, {1, 1, LastYear() + 1}), 0);
  EXPECT_EQ(Compare<Date>(ValueKind::kDate, {31, 12, 1999}, {1, 1, 2000}), -1);
  EXPECT_EQ(Compare<TimeOfDay>(ValueKind::kTime, {9, 2, 50, 1}, {9, 4, 1, 1}), 0);
  EXPECT_EQ(Compare<TimeOfDay>(ValueKind::kTime, {9, 0, 0, 2}, {11, 0, 0, 1}), 1);
  EXPECT_EQ(Compare<TimeOfDay>(ValueKind::kTime, {9, 58, 0, 1}, {0, 0, 0, 1}), -1);

  struct DateTime {
    Date date;
    TimeOfDay time;
  };
  static_assert(sizeof(DateTime) == kDateTimeSize);
  const DateTime early{{1, 3, 2004}, {9, 0, 0, 1}};
  const DateTime late{{1, 3, 2004}, {9, 0, 0, 2}};
  const DateTime next{{2, 3, 2004}, {0, 0, 0, 1}};
  EXPECT_LT(CompareDateTimes(&early, &late, sizeof early), 0);
  EXPECT_GT(CompareDateTimes(&next, &late, sizeof early), 0);
  EXPECT_EQ(CompareDateTimes(&next, &next, sizeof early), 0);
}

}  // namespace
}  // namespace core
