// iCalendar by its commands: there and back, what is said, and what is refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "core/calendar/repeat_rule.h"
#include "support/command_line.h"
#include "support/era.h"
#include "support/source_folder.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

// Rows of five years as text, without what names a record of one file alone, nor the flags of alarms, which
// are off after their time, and of repeats, which may have become single days.
std::vector<std::string> Rows(const std::string& path, int year) {
  std::vector<std::string> rows;
  const Json list = ListRows(
      {path, "--from", std::to_string(year) + "-01-01", "--to", std::to_string(year + 4) + "-12-31"});
  for (const Json& row : list.items) {
    std::string text;
    for (const char* field :
         {"date", "start", "end", "allDay", "category", "subject", "notes", "confidential", "attachment"}) {
      text += row[field].text + '|';
    }
    rows.push_back(text);
  }
  std::sort(rows.begin(), rows.end());
  return rows;
}

// The rows that only one of the two has.
std::vector<std::string> Difference(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  std::vector<std::string> rows;
  std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(rows));
  return rows;
}

Entry SomeEntry(std::mt19937& random, int number) {
  const auto some = [&random](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
  const auto below = [&some](std::uint32_t limit) { return static_cast<int>(some(limit)); };
  Entry entry("No. " + std::to_string(number) + "; a, \\n \xE9");
  core::Appointment& record = entry.appointment;
  core::Date date{};
  static_cast<void>(core::DateFromIndex(below(365 * 8) + 366, date));
  record.date = date;
  entry.At(below(24), below(12) * 5);
  core::TimeOfDay end = record.endTime;
  static_cast<void>(core::TimeFromSlot(std::min(core::TimeSlot(end) + below(40), 287), end));
  record.endTime = end;
  if (below(4) == 0) {
    entry.AllDay().At(0, 0);
  }
  if (below(3) == 0) entry.Category("Calls, and more");
  if (below(3) == 0)
    entry.Notes("one\r\n two; \\ three\r\n" + std::string(static_cast<std::size_t>(1 + below(900)), 'n'));
  if (below(5) == 0) entry.Confidential();
  if (below(5) == 0) {
    record.attachmentKind = below(2) == 0 ? core::kAttachedUrl : core::kAttachedDocument;
    core::WriteText(record.attachment, record.attachmentKind == core::kAttachedUrl
                                           ? "https://a.example/?b=c"
                                           : "/a folder/\xC3\xA9.txt");
  }
  const core::RepeatType kTypes[] = {core::kRepeatNone, core::kRepeatDaily, core::kRepeatWeekly,
                                     core::kRepeatMonthly, core::kRepeatYearly};
  const core::RepeatType type = kTypes[below(5)];
  if (type == core::kRepeatNone) return entry;
  const std::uint32_t params[] = {
      0, 0, 1 + some(127), 0, 1 + some(31), static_cast<std::uint32_t>(date.month << 16 | date.day)};
  entry.Every(below(2) == 0 ? 1 : 1 + some(99), type, params[type]);
  core::Date last = date;
  static_cast<void>(core::StepDays(last, below(3000)));
  if (below(3) != 0) record.repeat.repeatEnd = last;
  return entry;
}

TEST(CliIcal, ThereAndBack) {
  for (const int lastYear : {core::kEarlyLastYear, core::kLateLastYear}) {
    const Era era(lastYear);
    std::mt19937 random(20040314);
    TemporaryCalendar calendar;
    for (int i = 0; i < 150; ++i) calendar.Add(SomeEntry(random, i));
    const TemporaryFolder folder;
    const std::string file = folder.Join("out.ics");
    ASSERT_EQ(RunCli({"export", calendar.Path(), file}).code, 0);
    TemporaryCalendar other;
    const CommandResult result = RunCli({"import", other.Path(), file});
    EXPECT_EQ(result.code, 0) << result.errors;
    for (const int year : {2000, 2005, 2010}) {
      const std::vector<std::string> rows = Rows(calendar.Path(), year);
      EXPECT_FALSE(rows.empty());
      EXPECT_EQ(Difference(rows, Rows(other.Path(), year)), std::vector<std::string>());
    }
    for (const TemporaryCalendar* one : {&other, &calendar}) {
      const std::string before = one->Bytes();
      const CommandResult again = RunCli({"import", one->Path(), file});
      EXPECT_TRUE(again.code == 0 && again.output.starts_with("0 appointments were added.\n"))
          << again.output;
      EXPECT_EQ(one->Bytes(), before);
    }
  }
}

TEST(CliIcal, SaysWhatItDidAndWhatIsWrong) {
  const TemporaryFolder folder;
  TemporaryCalendar calendar({"own", "assist", "read"});
  const std::string text =
      "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:a\r\nDTSTART;VALUE=DATE:20040314\r\nSUMMARY:"
      "one\r\n"
      "END:VEVENT\r\nBEGIN:VTODO\r\nUID:t\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
  const std::string file = folder.Write("in.ics", text);
  const auto run = [&](std::vector<std::string> words, const char* password = "own") {
    words.insert(words.begin(), "import");
    words.insert(words.begin() + 1, calendar.Path());
    words.insert(words.end(), {"--password", password});
    const CommandResult result = RunCli(words);
    return std::to_string(result.code) + ' ' + result.output + result.errors;
  };
  EXPECT_EQ(run({file, "--dry-run", "--verbose"}),
            "0 -           (no subject)                    1 task\n2004-03-14  one                           "
            "  new\n"
            "1 appointment would be added.\nLeft out: 1 task.\n");
  EXPECT_EQ(AllRecords(calendar.file).Count(), 0U);
  EXPECT_EQ(run({file}), "0 1 appointment was added.\nLeft out: 1 task.\n");
  EXPECT_EQ(run({file, "--format=ics"}),
            "0 0 appointments were added.\n1 appointment is already there.\nLeft out: 1 task.\n");
  const std::pair<std::vector<std::string>, const char*> kWrong[] = {
      {{file, "--map=Date"}, "1 "},
      {{file, "--zone=Nowhere/City"}, "no time zone \"Nowhere/City\""},
      {{file, "--format=xml"}, "ics or csv"},
      {{file, "--format=csv", "--verbose"}, "--verbose is for iCalendar only"},
      {{folder.Join("none.ics")}, "2 "},
      {{folder.Path(), "--format=ics"}, "It is a folder."},
      {{calendar.Path(), "--format=ics"}, "It is the calendar"},
      {{folder.Write("old.ics", "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nEND:VCALENDAR\r\n")}, "2 "}};
  for (const auto& [words, why] : kWrong) EXPECT_NE(run(words).find(why), std::string::npos) << run(words);
  // A Reader is refused before the file is looked at.
  EXPECT_TRUE(run({folder.Join("none.ics")}, "read").starts_with("3 "));
  EXPECT_TRUE(run({folder.Join("none.ics"), "--dry-run"}, "read").starts_with("3 "));
  EXPECT_NE(
      run({folder.Write("empty.ics", "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n")}).find("nothing to import"),
      std::string::npos);
  EXPECT_EQ(AllRecords(calendar.file).Count(), 1U);
  // Nobody but the owner exports what is confidential.
  calendar.Add(Entry("secret").Confidential());
  const auto exported = [&](const char* password) {
    return RunCli({"export", calendar.Path(), "-", "--format=ics", "--password", password}).output;
  };
  EXPECT_NE(exported("own").find("secret"), std::string::npos);
  EXPECT_EQ(exported("assist").find("secret"), std::string::npos);
}

}  // namespace
}  // namespace tests
