// What iCalendar events become: tables of texts with the records and the reasons that come of them.
#include "core/exchange/ical_reader.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <set>
#include <sstream>

#include "core/calendar/repeat_rule.h"
#include "core/store/text_field.h"
#include "support/era.h"

namespace tests {
namespace {

using core::IcalReason;

core::IcalReadOptions Options(const std::string& zone = "Europe/Berlin") {
  return {zone, {{14, 3, 2004}, {10, 40, 0, core::kBeforeNoon}}, {"Calls", "Work"}, true};
}

std::string Wrapped(const std::string& lines) {
  return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + lines + "END:VCALENDAR\r\n";
}

// An event of these lines, which are separated by "|".
std::string Event(const std::string& lines) {
  std::string text = "BEGIN:VEVENT\r\n";
  for (const char c : lines) c == '|' ? text += "\r\n" : text += c;
  return text + "\r\nEND:VEVENT\r\n";
}

std::string Day(const core::Date& date) {
  std::ostringstream text;
  text << std::setfill('0') << date.year << '-' << std::setw(2) << date.month << '-' << std::setw(2)
       << date.day;
  return text.str();
}

std::string Time(const core::TimeOfDay& time) {
  const int slot = core::TimeSlot(time);
  std::ostringstream text;
  text << std::setfill('0') << std::setw(2) << slot / 12 << ':' << std::setw(2) << slot % 12 * 5;
  return text.str();
}

// "2004-03-14 10:00-11:00 weekly/2 0x22 to 2004-06-01".
std::string Line(const core::Appointment& record) {
  std::string line = Day(record.date);
  line += record.allDay != 0 ? " all" : ' ' + Time(record.startTime) + '-' + Time(record.endTime);
  if (!core::HasRepeat(record)) return line;
  const char* const names[] = {"", " daily", " weekly", "", " monthly", " yearly"};
  line += names[record.repeat.repeatType];
  if (record.repeat.repeatEvery != 1) line += '/' + std::to_string(record.repeat.repeatEvery);
  std::ostringstream param;
  param << std::hex << std::uint32_t{record.repeat.repeatParam};
  if (record.repeat.repeatParam != 0) line += " 0x" + param.str();
  const bool endless = core::IsSameDate(record.repeat.repeatEnd, core::kNoEndDate);
  return line + (endless ? "" : " to " + Day(record.repeat.repeatEnd));
}

std::string Lines(const core::IcalPlan& plan) {
  std::string lines;
  for (const core::PlannedRecord& planned : plan.records)
    lines += (lines.empty() ? "" : ", ") + Line(planned.record);
  return lines;
}

std::multiset<IcalReason> Reasons(const core::IcalPlan& plan) {
  std::multiset<IcalReason> reasons;
  for (const core::IcalRemark& remark : plan.remarks) reasons.insert(remark.reason);
  return reasons;
}

struct TimeCase {
  std::string event;
  std::string records;
  std::multiset<IcalReason> reasons;
};

void ExpectRead(const std::vector<TimeCase>& cases, const std::string& zone = "Europe/Berlin") {
  for (const TimeCase& one : cases) {
    const core::IcalPlan plan = core::PlanIcal(Wrapped(Event(one.event)), Options(zone));
    EXPECT_EQ(Lines(plan), one.records) << one.event;
    EXPECT_EQ(Reasons(plan), one.reasons) << one.event;
  }
}

TEST(IcalReader, ReadsWhenAnEventIs) {
  const Era era(core::kLateLastYear);
  ExpectRead({
      {"DTSTART:20040314T100000|DTEND:20040314T113000", "2004-03-14 10:00-11:30", {}},
      {"DTSTART:20040314T100000|DURATION:PT90M", "2004-03-14 10:00-11:30", {}},
      {"DTSTART:20040314T100000", "2004-03-14 10:00-10:00", {}},
      {"DTSTART;VALUE=DATE:20040314T100200|DTEND:20040314T110100",
       "2004-03-14 10:00-11:05",
       {IcalReason::kFiveMinutes}},
      {"DTSTART:20040314T235700|DTEND:20040314T235900", "2004-03-14 23:55-23:55", {IcalReason::kFiveMinutes}},
      {"DTSTART:20040314T100000|DTEND:20040314T090000",
       "2004-03-14 10:00-10:00",
       {IcalReason::kEndBeforeStart}},
      {"DTSTART:20040314T200000|DTEND:20040315T000000", "2004-03-14 20:00-23:55", {}},
      {"DTSTART:20040314T200000|DTEND:20040315T010000",
       "2004-03-14 20:00-23:55, 2004-03-15 00:00-01:00",
       {IcalReason::kSplit}},
      {"DTSTART:20040314T200000|DTEND:20040318T010000",
       "2004-03-14 20:00-23:55, 2004-03-15 all daily to 2004-03-17, 2004-03-18 00:00-01:00",
       {IcalReason::kSplit}},
      {"DTSTART;VALUE=DATE:20040314", "2004-03-14 all", {}},
      {"DTSTART:20040314|DTEND:20040314", "2004-03-14 all", {}},
      {"DTSTART:20040314|DURATION:P3D", "2004-03-14 all daily to 2004-03-16", {IcalReason::kSplit}},
      {"DTSTART:19991230|DTEND:20000103",
       "2000-01-01 all daily to 2000-01-02",
       {IcalReason::kSplit, IcalReason::kOutside}},
      {"DTSTART:19991230T100000", "", {IcalReason::kOutside}},
      {"DTSTART:20041331|SUMMARY:never", "", {IcalReason::kNoStart}},
      {"DTSTART:20040314T100000Z|DTEND:20040314T110000Z", "2004-03-14 11:00-12:00", {IcalReason::kConverted}},
      {"DTSTART;TZID=Europe/Paris:20040314T100000", "2004-03-14 10:00-10:00", {}},
      {"DTSTART;TZID=\"/example.org/2005_1/America/New_York\":20040314T200000|DTEND:20040314T210000",
       "2004-03-15 02:00-03:00",
       {IcalReason::kConverted}},
      {"DTSTART;TZID=Eastern Standard Time:20040714T100000",
       "2004-07-14 16:00-16:00",
       {IcalReason::kConverted}},
      {"DTSTART;TZID=Nowhere:20040314T100000", "2004-03-14 10:00-10:00", {IcalReason::kUnknownZone}},
  });
}

TEST(IcalReader, FitsRepeatsIntoRules) {
  const Era era(core::kLateLastYear);
  ExpectRead({
      {"DTSTART:20040314|RRULE:FREQ=DAILY;INTERVAL=3", "2004-03-14 all daily/3", {}},
      {"DTSTART:20040314|RRULE:FREQ=DAILY;UNTIL=20040320", "2004-03-14 all daily to 2004-03-20", {}},
      {"DTSTART:20040314T100000|RRULE:FREQ=DAILY;INTERVAL=2;UNTIL=20040320T095900",
       "2004-03-14 10:00-10:00 daily/2 to 2004-03-18",
       {}},
      {"DTSTART:20040314|RRULE:FREQ=DAILY;COUNT=1", "2004-03-14 all", {}},
      {"DTSTART:20040315|RRULE:FREQ=DAILY;BYDAY=MO,TU,WE,TH,FR", "2004-03-15 all weekly 0x3e", {}},
      {"DTSTART:20040315|RRULE:FREQ=WEEKLY;BYDAY=MO,TH;COUNT=3",
       "2004-03-15 all weekly 0x12 to 2004-03-22",
       {}},
      {"DTSTART:20040314|RRULE:FREQ=MONTHLY;BYMONTHDAY=31",
       "2004-03-14 all, 2004-03-31 all monthly 0x1f",
       {}},
      {"DTSTART:20040314|RRULE:FREQ=YEARLY;INTERVAL=4;COUNT=3",
       "2004-03-14 all yearly/4 0x3000e to 2012-03-14",
       {}},
      {"DTSTART:19980314|RRULE:FREQ=YEARLY;INTERVAL=4",
       "2002-03-14 all yearly/4 0x3000e",
       {IcalReason::kOutside}},
      {"DTSTART:20080229|RRULE:FREQ=YEARLY;COUNT=2",
       "2008-02-29 all, 2012-02-29 all",
       {IcalReason::kWrittenOut}},
      // Weeks that begin otherwise.
      {"DTSTART:20040319|RRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=FR;WKST=MO", "2004-03-19 all weekly/2 0x20", {}},
      {"DTSTART:20040319|RRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=FR,SU;WKST=MO;COUNT=3",
       "2004-03-19 all, 2004-03-21 all, 2004-04-02 all",
       {IcalReason::kWrittenOut}},
      {"DTSTART:20000101|RRULE:FREQ=WEEKLY", "2000-01-01 all, 2000-01-08 all weekly 0x40", {}},
      // An end that would stand for none.
      {"DTSTART:20201229|RRULE:FREQ=DAILY;UNTIL=20201231",
       "2020-12-29 all daily to 2020-12-30, 2020-12-31 all",
       {}},
      {"DTSTART:20201231|RRULE:FREQ=DAILY;COUNT=2", "2020-12-31 all daily to 2021-01-01", {}},
      // Several days, each with a rule of its own; not where a month's end lies between.
      {"DTSTART:20040320T220000|DTEND:20040321T020000|RRULE:FREQ=WEEKLY",
       "2004-03-20 22:00-23:55 weekly 0x40, 2004-03-21 00:00-02:00 weekly 0x1",
       {IcalReason::kSplit}},
      {"DTSTART:20040131|DTEND:20040202|RRULE:FREQ=MONTHLY;COUNT=2",
       "2004-01-31 all daily to 2004-02-01, 2004-03-31 all daily to 2004-04-01",
       {IcalReason::kSplit, IcalReason::kWrittenOut}},
      {"DTSTART:20040314|RRULE:FREQ=MONTHLY;BYDAY=2SU;COUNT=3",
       "2004-03-14 all, 2004-04-11 all, 2004-05-09 all",
       {IcalReason::kWrittenOut}},
      {"DTSTART:20040314T080000|RRULE:FREQ=HOURLY;INTERVAL=6;COUNT=3",
       "2004-03-14 08:00-08:00, 2004-03-14 14:00-14:00, 2004-03-14 20:00-20:00",
       {IcalReason::kWrittenOut}},
      {"DTSTART:20040314|RRULE:FREQ=SOMETIMES", "2004-03-14 all", {IcalReason::kBadRule}},
      {"DTSTART:20040314|RRULE:FREQ=DAILY;COUNT=5;UNTIL=20040316;X-MINE=1",
       "2004-03-14 all daily to 2004-03-16",
       {}},
  });
}

TEST(IcalReader, CutsRepeatsAtExceptionsAndMoves) {
  const Era era(core::kLateLastYear);
  ExpectRead({
      {"DTSTART:20040314|RRULE:FREQ=DAILY|EXDATE:20040317",
       "2004-03-14 all daily to 2004-03-16, 2004-03-18 all daily",
       {IcalReason::kCut}},
      {"DTSTART:20040314|RRULE:FREQ=DAILY;COUNT=4|EXDATE;VALUE=DATE:20040314,20040316",
       "2004-03-15 all, 2004-03-17 all",
       {IcalReason::kCut}},
      {"DTSTART:20040314T100000|RRULE:FREQ=DAILY;COUNT=3|EXDATE;VALUE=DATE:20040316",
       "2004-03-14 10:00-10:00 daily to 2004-03-15",
       {}},
      {"DTSTART:20040314T100000|RRULE:FREQ=DAILY;COUNT=3|EXDATE:20040316T090000Z",
       "2004-03-14 10:00-10:00 daily to 2004-03-15",
       {}},
      {"DTSTART:20040314T100000|RRULE:FREQ=DAILY;COUNT=3|EXDATE:20040316T100500",
       "2004-03-14 10:00-10:00 daily to 2004-03-16",
       {}},
      {"DTSTART:20040314|RRULE:FREQ=DAILY;COUNT=2|RDATE:20040315,20040320",
       "2004-03-14 all daily to 2004-03-15, 2004-03-20 all",
       {}},
      {"DTSTART:20040314T100000|RDATE;VALUE=PERIOD:20040315T100000/PT2H",
       "2004-03-14 10:00-10:00, 2004-03-15 10:00-12:00",
       {}},
      // Whole days that end at somebody's midnight in UTC, or on a date with any time.
      {"DTSTART:20040314|RRULE:FREQ=DAILY;UNTIL=20040315T230000Z", "2004-03-14 all daily to 2004-03-16", {}},
      {"DTSTART:20040314|RRULE:FREQ=DAILY;UNTIL=20040316T000000Z", "2004-03-14 all daily to 2004-03-16", {}},
      {"DTSTART:20040314|RRULE:FREQ=DAILY;UNTIL=20040316T235959Z", "2004-03-14 all daily to 2004-03-16", {}},
      // America's clocks change on 4 April, Europe's on 28 March.
      {"DTSTART;TZID=America/New_York:20040325T200000|RRULE:FREQ=WEEKLY;COUNT=4",
       "2004-03-26 02:00-02:00, 2004-04-02 03:00-03:00, 2004-04-09 02:00-02:00 weekly 0x20 to 2004-04-16",
       {IcalReason::kConverted, IcalReason::kCut}},
      {"DTSTART:20040314T100000Z|RRULE:FREQ=DAILY;UNTIL=20040401T100000Z",
       "2004-03-14 11:00-11:00 daily to 2004-03-27, 2004-03-28 12:00-12:00 daily to 2004-04-01",
       {IcalReason::kConverted, IcalReason::kCut}},
  });
  // A clock that has changed for the last time lets a repeat go on.
  ExpectRead({{"DTSTART;TZID=Europe/Moscow:20100314T230000|RRULE:FREQ=MONTHLY;INTERVAL=12",
               "2010-03-14 20:00-20:00 monthly/12 0xe to 2011-03-14, 2012-03-14 19:00-19:00 monthly/12 0xe "
               "to 2014-03-14, "
               "2015-03-14 20:00-20:00 monthly/12 0xe",
               {IcalReason::kConverted, IcalReason::kCut}}},
             "Etc/GMT+0");
}

TEST(IcalReader, EndsWhatCannotGoOn) {
  const std::string fridays = "DTSTART:20040312|RRULE:FREQ=MONTHLY;BYDAY=2FR";
  const std::string halfHours = "DTSTART:20040312T100000|RRULE:FREQ=MINUTELY;INTERVAL=30";
  for (const int year : {core::kEarlyLastYear, core::kLateLastYear}) {
    const Era era(year);
    const core::IcalPlan plan = core::PlanIcal(Wrapped(Event(fridays)), Options());
    EXPECT_EQ(plan.records.size(), 10U + 12U * 10U);
    EXPECT_EQ(Line(plan.records.back().record), "2014-12-12 all");
    EXPECT_EQ(Reasons(plan), (std::multiset<IcalReason>{IcalReason::kWrittenOut, IcalReason::kHorizon}));
    EXPECT_EQ(plan.remarks.back().detail, "2014-12-12");
    EXPECT_EQ(core::PlanIcal(Wrapped(Event(halfHours)), Options()).records.size(), 1000U);
  }
  const Era era(core::kEarlyLastYear);
  ExpectRead({
      {"DTSTART:20201230|RRULE:FREQ=DAILY", "2020-12-30 all daily", {}},
      {"DTSTART:20201229|RRULE:FREQ=DAILY;COUNT=9",
       "2020-12-29 all daily to 2020-12-30, 2020-12-31 all",
       {IcalReason::kOutside}},
      {"DTSTART:20210101", "", {IcalReason::kOutside}},
  });
}

TEST(IcalReader, PutsTheEventsOfOneUidTogether) {
  const Era era(core::kLateLastYear);
  const std::string master = Event("UID:a|DTSTART:20040314T100000|RRULE:FREQ=DAILY;COUNT=4|SUMMARY:m");
  const std::string moved = Event("UID:a|RECURRENCE-ID:20040315T090000Z|DTSTART:20040320T120000|SUMMARY:o");
  const std::string gone =
      Event("UID:a|RECURRENCE-ID;VALUE=DATE:20040316|DTSTART:20040316T100000|STATUS:CANCELLED");
  const core::IcalPlan plan = core::PlanIcal(Wrapped(moved + master + gone), Options());
  EXPECT_EQ(Lines(plan), "2004-03-20 12:00-12:00, 2004-03-14 10:00-10:00, 2004-03-17 10:00-10:00");
  EXPECT_EQ(Reasons(plan), (std::multiset<IcalReason>{IcalReason::kCancelled, IcalReason::kCut}));
  const core::IcalPlan again = core::PlanIcal(Wrapped(gone + moved + master), Options("Asia/Tokyo"));
  ASSERT_EQ(again.records.size(), plan.records.size());
  for (const core::IcalPlan* one : {&plan, &again}) {
    for (const core::PlannedRecord& planned : one->records) {
      const core::ImportMark mark = planned.record.importMark;
      const core::ImportMark first = plan.records.front().record.importMark;
      EXPECT_TRUE(mark.uid == first.uid && mark.version == first.version && mark.uid != 0);
    }
  }

  // Twice the same, an older state, and what does not count.
  const std::string older = Event("UID:b|SEQUENCE:1|DTSTART:20040314|SUMMARY:x");
  const std::string newer =
      Event("UID:b|SEQUENCE:2|DTSTART:20040315|SUMMARY:x|LAST-MODIFIED:20040101T000001Z");
  const std::string same = Event(
      "LAST-MODIFIED:20040101T000001Z|SUMMARY:x|X-A:1|DTSTAMP:20040101T000000Z|DTSTART:20040315|SEQUENCE:2|"
      "UID:b");
  const core::IcalPlan latest = core::PlanIcal(Wrapped(newer + older + same), Options());
  ASSERT_EQ(Lines(latest), "2004-03-15 all");
  EXPECT_EQ(Reasons(latest), (std::multiset<IcalReason>{IcalReason::kSuperseded, IcalReason::kSuperseded}));
  const core::ImportMark mark = latest.records[0].record.importMark;
  EXPECT_EQ(mark.changed, 4U * 365 * 86400 + 86400 + 1);
  EXPECT_EQ(mark.day, core::DayIndex(2004, 3, 15));

  const core::IcalPlan own =
      core::PlanIcal(Wrapped(Event("UID:0123456789abcdef-1@tempoline.daybrix|DTSTART:20040314")), Options());
  ASSERT_EQ(own.records.size(), 1U);
  EXPECT_TRUE(own.records[0].ownUid);
  const std::uint64_t uid = own.records[0].record.importMark.uid;
  EXPECT_EQ(uid, 0x0123456789abcdefU);
}

TEST(IcalReader, ReadsWhatAnEventSays) {
  const Era era(core::kLateLastYear);
  const auto read = [](const std::string& lines, bool owner = true) {
    core::IcalReadOptions options = Options();
    options.mayBeConfidential = owner;
    return core::PlanIcal(Wrapped(Event("DTSTART:20040320T100000|" + lines)), options);
  };
  struct TextCase {
    std::string lines, subject, notes, category;
    std::multiset<IcalReason> reasons;
  };
  const std::string longText(2000, 'x');
  const std::vector<TextCase> cases{
      {"SUMMARY:a\\, b\\nc\\\\|DESCRIPTION:one\\ntwo|LOCATION:Room\\; 5|URL:http://a/b|CATEGORIES:Home,work",
       "a, b c\\",
       "one\r\ntwo\r\nLocation: Room; 5\r\nhttp://a/b",
       "Work",
       {}},
      {"LOCATION:Here|CATEGORIES:Home", "Here", "Location: Here", "Home", {}},
      {"SUMMARY:|DESCRIPTION:\\nfirst\\nsecond", "first", "first\r\nsecond", "", {}},
      {"CLASS:PUBLIC", "(no subject)", "", "", {}},
      {"SUMMARY:\xC4\x8D\xC3\xA9 e\xCC\x81 \xE2\x82\xAC \xF0\x9F\x98\x80\x01\t.",
       "c\xE9 \xE9 \x80 ? .",
       "",
       "",
       {IcalReason::kLetters}},
      {"SUMMARY:T\xE4g", "T\xE4g", "", "", {IcalReason::kCodePage}},
      {"SUMMARY:a\xC3\r\n \xA4"
       "b",
       "a\xE4"
       "b",
       "",
       "",
       {}},
      {"SUMMARY:" + longText + "|DESCRIPTION:" + longText + "|LOCATION:L",
       longText.substr(0, 149),
       longText.substr(0, 1023 - 13) + "\r\nLocation: L",
       "",
       {IcalReason::kShortened}},
      {"SUMMARY:s|ATTENDEE:mailto:a@b|ATTACH;VALUE=BINARY;ENCODING=BASE64:AAAA",
       "s",
       "",
       "",
       {IcalReason::kParticipants, IcalReason::kAttachment}},
  };
  for (const TextCase& one : cases) {
    const core::IcalPlan plan = read(one.lines);
    ASSERT_EQ(plan.records.size(), 1U) << one.lines;
    const core::Appointment& record = plan.records[0].record;
    EXPECT_EQ(core::ReadText(record.subject), one.subject);
    EXPECT_EQ(core::ReadText(record.notes), one.notes);
    EXPECT_EQ(core::ReadText(record.header.category), one.category);
    EXPECT_EQ(Reasons(plan), one.reasons) << one.lines;
    EXPECT_EQ(record.header.confidential, 0);
  }
  EXPECT_EQ(read("CLASS: private ").records[0].record.header.confidential, 1);
  EXPECT_EQ(read("CLASS:X-SECRET").records[0].record.header.confidential, 1);
  EXPECT_EQ(Reasons(read("CLASS:X-SECRET", false)), std::multiset<IcalReason>{IcalReason::kPrivate});
  EXPECT_TRUE(read("CLASS:X-SECRET", false).records.empty());

  const core::Appointment web = read("ATTACH:https://a/b%20c").records[0].record;
  EXPECT_EQ(web.attachmentKind, core::kAttachedUrl);
  EXPECT_EQ(core::ReadText(web.attachment), "https://a/b%20c");
  const core::Appointment file = read("ATTACH:CID:1|ATTACH:x").records[0].record;
  EXPECT_EQ(file.attachmentKind, core::kNoAttachment);
  const core::Appointment document = read("ATTACH:file:///home/a%20%C3%A4").records[0].record;
  EXPECT_EQ(document.attachmentKind, core::kAttachedDocument);
  EXPECT_EQ(core::ReadText(document.attachment), "/home/a \xC3\xA4");
}

TEST(IcalReader, SetsAlarmsThatAreToCome) {
  const Era era(core::kLateLastYear);
  const auto alarm = [](const std::string& trigger, const std::string& action = "DISPLAY") {
    return "|BEGIN:VALARM|ACTION:" + action + "|TRIGGER" + trigger + "|END:VALARM";
  };
  const std::string single = "DTSTART:20040320T100000";
  const std::multiset<IcalReason> one{IcalReason::kAlarms};
  struct AlarmCase {
    std::string event, rings;  // "", or "days time date"
    std::multiset<IcalReason> reasons;
  };
  const std::vector<AlarmCase> cases{
      {single + alarm(":-PT15M"), "0 09:45 2004-03-20", {}},
      {single + alarm(":-P1D") + alarm(":-PT30M", "audio") + alarm(":-PT5M", "EMAIL"), "0 09:30 2004-03-20",
       one},
      {single + alarm(":PT15M"), "", one},
      {single + alarm(":-P99D"), "", {}},  // past by now
      {single + alarm(":-P100D"), "", one},
      {single + "|DTEND:20040320T120000" + alarm(";RELATED=END:-PT3H"), "0 09:00 2004-03-20", {}},
      {single + alarm(";VALUE=DATE-TIME:20040319T170000Z"), "1 18:00 2004-03-19", {}},
      {"DTSTART:20040320" + alarm(":-PT1H"), "1 23:00 2004-03-19", {}},
      {"DTSTART:20040314T100000" + alarm(":-PT15M"), "", {}},
      {"DTSTART:20040314T110000" + alarm(":-PT15M"), "0 10:45 2004-03-14", {}},
      {"DTSTART:20040301T100000|RRULE:FREQ=DAILY" + alarm(":-PT15M"), "0 09:45 2004-03-15", {}},
      {"DTSTART:20040301T100000|RRULE:FREQ=WEEKLY" + alarm(":-P2D"), "2 10:00 2004-03-22", {}},
      {"DTSTART:20040301T100000|RRULE:FREQ=WEEKLY;COUNT=2" + alarm(":-PT15M"), "", {}},
      {"DTSTART:20040301T100000|RRULE:FREQ=DAILY" + alarm(";VALUE=DATE-TIME:20040319T170000Z"), "", one},
  };
  for (const AlarmCase& expected : cases) {
    const core::IcalPlan plan = core::PlanIcal(Wrapped(Event(expected.event)), Options());
    ASSERT_EQ(plan.records.size(), 1U);
    const core::Appointment& record = plan.records[0].record;
    const std::string rings = record.alarmOn == 0 ? ""
                                                  : std::to_string(record.alarmDaysBefore) + ' ' +
                                                        Time(record.alarmTime) + ' ' + Day(record.alarmDate);
    EXPECT_EQ(rings, expected.rings) << expected.event;
    EXPECT_EQ(Reasons(plan), expected.reasons) << expected.event;
  }
}

TEST(IcalReader, LosesNothingButWhatIsBad) {
  const Era era(core::kLateLastYear);
  const std::string good = Event("DTSTART:20040314");
  const std::string task = "BEGIN:VTODO\nSUMMARY:t\nEND:VTODO\n";
  const std::string zone =
      "BEGIN:VTIMEZONE\nTZID:Own\nBEGIN:STANDARD\nDTSTART:19700101T000000\nTZOFFSETFROM:-0500\nTZOFFSETTO:-"
      "0500\n"
      "RRULE:FREQ=SECONDLY\nEND:STANDARD\nEND:VTIMEZONE\n";
  struct FileCase {
    std::string text, records;
    std::multiset<IcalReason> reasons;
  };
  const std::vector<FileCase> cases{
      {"BEGIN:VCALENDAR\nEND:VCALENDAR\n", "", {}},
      {good, "2004-03-14 all", {}},
      {"\xEF\xBB\xBF" + Wrapped(good) + Wrapped(good), "2004-03-14 all", {IcalReason::kSuperseded}},
      {Wrapped("BEGIN:VEVENT\nDTSTART:20040301\n" + good),
       "2004-03-01 all, 2004-03-14 all",
       {IcalReason::kCutOff}},
      {Wrapped("BEGIN:VEVENT\nDTSTART:20040301\nBEGIN:VALARM\n" + task + good),
       "2004-03-01 all, 2004-03-14 all",
       {IcalReason::kCutOff, IcalReason::kTask, IcalReason::kAlarms}},
      {Wrapped(good) + "BEGIN:VEVENT\nDTSTART:20040301\nRRULE:FREQ=DAILY;COUNT=1",
       "2004-03-14 all, 2004-03-01 all",
       {IcalReason::kCutOff}},
      {Wrapped(std::string("END:VEVENT\nBEGIN:VEVENT\rDTST\0ART:20040301\r", 42) + "END:VEVENT\r" + good),
       "2004-03-01 all, 2004-03-14 all",
       {}},
      {Wrapped("METHOD:CANCEL\n" + good), "", {IcalReason::kMethod}},
      {Wrapped(Event("DTSTART;TZID=Own:20040314T100000") + zone),
       "2004-03-14 16:00-16:00",
       {IcalReason::kConverted}},
  };
  for (const FileCase& one : cases) {
    const core::IcalPlan plan = core::PlanIcal(one.text, Options());
    EXPECT_EQ(Lines(plan), one.records) << one.text;
    EXPECT_EQ(Reasons(plan), one.reasons) << one.text;
    EXPECT_EQ(plan.refusal, "");
  }
  EXPECT_NE(core::PlanIcal("DTSTART:20040314\n", Options()).refusal, "");
  EXPECT_NE(core::PlanIcal("BEGIN:VCALENDAR\nVERSION:1.0\n" + good, Options()).refusal, "");
  EXPECT_NE(core::PlanIcal(Wrapped(good), Options("Mars/Olympus")).refusal, "");
  EXPECT_TRUE(core::PlanIcal(Wrapped(good), Options(), [](auto, auto) { return false; }).cancelled);
}

}  // namespace
}  // namespace tests
