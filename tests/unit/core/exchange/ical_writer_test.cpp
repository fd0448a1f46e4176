// Appointments as the lines of iCalendar events.
#include "core/exchange/ical_writer.h"

#include <gtest/gtest.h>

#include "core/exchange/appointment_writer.h"
#include "support/era.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;

// An event without its first three lines and its last one; lines end with "|".
std::string EventOf(const Entry& entry) {
  std::string text;
  if (!IcalWriter().PutEvent(entry.appointment, {0, 1}, text)) return "none";
  std::string lines = text.substr(text.find("DTSTART"));
  lines.resize(lines.size() - std::string("END:VEVENT\r\n").size());
  for (std::size_t at = lines.find("\r\n"); at != std::string::npos; at = lines.find("\r\n")) {
    lines.erase(at, 1);
    lines[at] = '|';
  }
  return lines;
}

Entry Timed(const TimeOfDay& start, const TimeOfDay& end) {
  Entry entry;
  entry.appointment.startTime = start;
  entry.appointment.endTime = end;
  return entry;
}

Entry Alarm(Entry entry, const TimeOfDay& time, std::int32_t daysBefore) {
  entry.appointment.alarmOn = 1;
  entry.appointment.alarmTime = time;
  entry.appointment.alarmDaysBefore = daysBefore;
  return entry;
}

Entry Attached(AttachmentKind kind, std::string_view what) {
  Entry entry;
  entry.appointment.attachmentKind = kind;
  WriteText(entry.appointment.attachment, what);
  return entry;
}

TEST(IcalWriter, TimesTextsAlarmsAndAttachments) {
  const tests::Era era(kEarlyLastYear);
  const std::string nine = "DTSTART:20040301T090000|";
  const std::string day = "DTSTART;VALUE=DATE:20040301|DTEND;VALUE=DATE:20040302|";
  const std::string ring = "BEGIN:VALARM|ACTION:DISPLAY|DESCRIPTION:Reminder|TRIGGER:";
  const std::pair<Entry, std::string> kCases[] = {
      {Entry(), nine},
      {Timed({9, 0, 0, kBeforeNoon}, {0, 30, 0, kAfterNoon}), nine + "DTEND:20040301T123000|"},
      {Timed({9, 0, 0, kBeforeNoon}, {8, 0, 0, kBeforeNoon}), nine},
      {Timed({9, 0, 0, kBeforeNoon}, {9, 99, 0, kBeforeNoon}), nine},
      {Timed({14, 5, 0, kAfterNoon}, {23, 59, 0, kAfterNoon}),
       "DTSTART:20040301T140500|DTEND:20040301T235900|"},
      {Timed({12, 0, 0, kAfterNoon}, {24, 0, 0, kAfterNoon}), "DTSTART:20040301T120000|"},
      {Timed({-1, 0, 0, kBeforeNoon}, {9, 0, 0, kBeforeNoon}), day},
      {Entry().AllDay(), day},
      {Entry().AllDay().On(31, 12, 2020), "DTSTART;VALUE=DATE:20201231|DTEND;VALUE=DATE:20210101|"},
      {Entry().On(1, 13, 2004), "none"},
      {Entry().On(1, 1, 2021), "none"},
      {Entry("a;b,c\\d\xE9\x80\x81\x07\r\ne\nf\rg").Category("x,y").Confidential(),
       nine + "SUMMARY:a\\;b\\,c\\\\d\u00E9\u20AC\\ne\\nf\\ng|CATEGORIES:x\\,y|CLASS:CONFIDENTIAL|"},
      {Entry(std::string(66, 'x') + "\xE9z"), nine + "SUMMARY:" + std::string(66, 'x') + "| \u00E9z|"},
      {Entry(std::string(140, 'x')),
       nine + "SUMMARY:" + std::string(67, 'x') + "| " + std::string(73, 'x') + "|"},
      {Alarm(Entry(), {9, 0, 0, kBeforeNoon}, 0), nine + ring + "PT0M|END:VALARM|"},
      {Alarm(Entry(), {8, 15, 0, kBeforeNoon}, 0), nine + ring + "-PT45M|END:VALARM|"},
      {Alarm(Entry(), {3, 0, 0, kAfterNoon}, 7), nine + ring + "-P6DT18H|END:VALARM|"},
      {Alarm(Entry().AllDay(), {6, 0, 0, kAfterNoon}, 1), day + ring + "-PT6H|END:VALARM|"},
      {Alarm(Entry().AllDay(), {0, 0, 0, kBeforeNoon}, 2), day + ring + "-P2D|END:VALARM|"},
      {Alarm(Entry(), {99, 0, 0, kBeforeNoon}, 0), nine},
      {Alarm(Entry(), {9, 0, 0, kBeforeNoon}, INT32_MAX), nine},
      {Attached(kAttachedUrl, "http://a.example/\xC3\xA9%20?b,c;d"),
       nine + "ATTACH:http://a.example/%C3%A9%20?b,c;d|"},
      {Attached(kAttachedDocument, "/home/a b/\xC3\xA9%.txt"),
       nine + "ATTACH:file:///home/a%20b/%C3%A9%25.txt|"},
      {Attached(kAttachedDocument, "a.txt"), nine + "ATTACH:file:a.txt|"},
      {Attached(kNoAttachment, "a.txt"), nine},
  };
  for (const auto& [entry, expected] : kCases) EXPECT_EQ(EventOf(entry), expected);
}

TEST(IcalWriter, RulesBeginAndEndOnDaysThatAreShown) {
  const tests::Era era(kEarlyLastYear);
  const auto rule = [](Entry entry) {
    const std::string lines = EventOf(entry.AllDay());
    const std::size_t end = lines.find("|DTEND");
    return lines == "none" ? lines : lines.substr(19, end - 19) + lines.substr(end + 26);
  };
  constexpr std::uint32_t kMondayFriday = 0x22;
  const std::pair<Entry, std::string> kCases[] = {
      {Entry().Every(3, kRepeatDaily), "20040301|RRULE:FREQ=DAILY;INTERVAL=3|"},
      {Entry().Every(3, kRepeatDaily).Until(9, 3, 2004),
       "20040301|RRULE:FREQ=DAILY;INTERVAL=3;UNTIL=20040307|"},
      {Entry().Every(3, kRepeatDaily).Until(9, 3, 2030),
       "20040301|RRULE:FREQ=DAILY;INTERVAL=3;UNTIL=20300309|"},
      {Entry().Every(0, kRepeatDaily), "20040301|"},
      {Entry().Every(2000, kRepeatDaily).Until(1, 1, 2016), "20040301|RDATE;VALUE=DATE:20090822,20150212|"},
      {Entry().Every(3, kRepeatDaily).Until(1, 2, 2004), "none"},
      {Entry().On(3, 3, 2004).Every(2, kRepeatWeekly, kMondayFriday).Until(19, 3, 2004),
       "20040305|RRULE:FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=MO,FR;UNTIL=20040319|"},
      {Entry().On(6, 3, 2004).Every(2, kRepeatWeekly, kMondayFriday),
       "20040315|RRULE:FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=MO,FR|"},
      {Entry().On(1, 1, 2000).Every(2, kRepeatWeekly, kMondayFriday),
       "20000102|RRULE:FREQ=WEEKLY;INTERVAL=2;WKST=SA;BYDAY=SU,TH|"},
      {Entry().Every(1, kRepeatWeekly, 0x80), "none"},
      {Entry().Every(0, kRepeatWeekly, kMondayFriday), "20040301|RDATE;VALUE=DATE:20040305|"},
      {Entry().On(31, 1, 2004).Every(1, kRepeatMonthly, 30).Until(1, 3, 2005),
       "20040330|RRULE:FREQ=MONTHLY;INTERVAL=1;BYMONTHDAY=30;UNTIL=20050130|"},
      {Entry().Every(1, kRepeatMonthly, 32), "none"},
      {Entry().On(15, 6, 2004).Every(2, kRepeatYearly, 3 << 16 | 1),
       "20040301|RRULE:FREQ=YEARLY;INTERVAL=2;BYMONTH=3;BYMONTHDAY=1|"},
      {Entry().On(29, 2, 2004).Every(1, kRepeatYearly, 2 << 16 | 29), "20040229|"},
      {Entry().Every(2, kRepeatYearly, 2 << 16 | 29).Until(1, 1, 2012),
       "20040229|RDATE;VALUE=DATE:20080229|"},
      {Entry().On(1, 13, 2004).Every(1, kRepeatYearly, 3 << 16 | 1), "20040301|"},
      {Entry().Every(1, static_cast<RepeatType>(3)), "none"},
  };
  for (const auto& [entry, expected] : kCases) EXPECT_EQ(rule(entry), expected);
  Entry timed;
  timed.Every(2, kRepeatDaily).Until(4, 3, 2004);
  EXPECT_EQ(EventOf(timed), "DTSTART:20040301T090000|RRULE:FREQ=DAILY;INTERVAL=2;UNTIL=20040303T090000|");
}

TEST(IcalWriter, WholeTextsAndTheirUids) {
  const tests::Era era(kEarlyLastYear);
  tests::TemporaryCalendar calendar({"own", "", "read"});
  const auto add = [&calendar](Entry entry, std::uint64_t id) {
    entry.appointment.header.recordId = id;
    calendar.Add(entry);
  };
  add(Entry("later").On(9, 3, 2004), 0xAB);
  add(Entry("earlier").On(8, 3, 2004), 0xAB);
  add(Entry("secret").On(7, 3, 2004).Confidential(), 0xCD);
  add(Entry("series").On(1, 3, 2004).Every(1, kRepeatDaily).Until(5, 3, 2004), 0xEF);
  add(Entry("nowhere").On(1, 13, 2004), 0x12);
  ExchangeOptions options;
  options.mode = ExchangeMode::kIcal;
  const auto uids = [&](const char* password, WriteResult& result) {
    calendar.file.SetPassword(password);
    std::string text;
    result = WriteAppointments(calendar.file, options, [&text](std::string_view bytes) {
      text += bytes;
      return true;
    });
    EXPECT_TRUE(text.starts_with("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:") &&
                text.ends_with("END:VCALENDAR\r\n"));
    std::string found;
    for (std::size_t at = text.find("UID:"); at != std::string::npos; at = text.find("UID:", at + 1)) {
      found += text.substr(at + 4, text.find(kIcalUidEnd, at) - at - 4) + ' ';
    }
    return found;
  };
  WriteResult result;
  EXPECT_EQ(uids("own", result), "00000000000000ef 00000000000000cd 00000000000000ab-2 00000000000000ab ");
  EXPECT_TRUE(result.written == 4 && result.dayless == 1);
  EXPECT_EQ(uids("read", result), "00000000000000ef 00000000000000ab-2 00000000000000ab ");
  options.range = ExchangeRange::kDates;
  options.dates = {{8, 3, 2004}, {8, 3, 2004}};
  EXPECT_EQ(uids("own", result), "00000000000000ab-2 ");
  EXPECT_TRUE(IsIcalName("a.ics") && IsIcalName("A.ICS") && !IsIcalName(".ics") && !IsIcalName("a.csv"));
}

}  // namespace
}  // namespace core
