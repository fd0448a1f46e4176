// What add, edit, delete, new and compact do to a file, and what they refuse.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "support/command_line.h"
#include "support/era.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

constexpr std::int32_t kFirst = 2625;

// A + before a field of a record makes a copy: a reference to it would not be aligned.

class CliChanges : public testing::Test {
 protected:
  CliChanges() {
    Entry entry("First");
    entry.appointment.header.recordId = 0xF1;
    calendar.Add(entry);
  }

  core::Appointment Last() {
    return calendar.Slot(static_cast<std::int32_t>(calendar.file.SlotsEnd()) - 2627);
  }
  int Run(std::string command, std::vector<std::string> rest, const std::string& password = "Owner") {
    rest.insert(rest.begin(), {std::move(command), calendar.Path()});
    rest.insert(rest.end(), {"--password", password});
    result = RunCli(rest);
    return result.code;
  }

  const std::string first = "00000000000000f1";
  TemporaryCalendar calendar{{"Owner", "Assistant", "Reader"}};
  CommandResult result;
};

TEST_F(CliChanges, AddFillsARecordAsTheEditorDoes) {
  ASSERT_EQ(Run("add", {"--date", "2004-03-14", "--start=13:30", "--end=14:15", "--subject", "Café – €",
                        "--notes", "one\ntwo", "--category", "Calls", "--confidential", "--repeat",
                        "weekly:2:mon,fri", "--until=2004-04-01"}),
            0)
      << result.errors;
  const core::Appointment added = Last();
  core::Appointment expected{};
  ASSERT_TRUE(core::NewAppointment(calendar.file, expected));
  expected.header.recordId = added.header.recordId;
  expected.header.creationTime = expected.header.secondTime = added.header.creationTime;
  expected.header.confidential = 1;
  core::WriteText(expected.header.category, "Calls");
  expected.date = expected.alarmDate = {14, 3, 2004};
  expected.startTime = expected.alarmTime = {1, 30, 0, core::kAfterNoon};
  expected.endTime = {2, 15, 0, core::kAfterNoon};
  expected.alarmStartKind = core::kAlarmStartsDocument;
  expected.repeat = {core::kRepeatWeekly, {1, 4, 2004}, 2, 0x22};
  core::WriteText(expected.subject, "Caf\xE9 \x96 \x80");
  core::WriteText(expected.notes, "one\r\ntwo");
  EXPECT_EQ(std::memcmp(&added, &expected, sizeof added), 0);
  char id[32];
  std::snprintf(id, sizeof id, "%016llx\n", static_cast<unsigned long long>(+added.header.recordId));
  EXPECT_EQ(result.output, id);

  // The days of a rule come from the date where it does not tell them.
  const struct {
    const char* rule;
    core::RepeatRule stored;
  } kRules[] = {{"daily", {core::kRepeatDaily, core::kNoEndDate, 1, 0}},
                {"weekly:99", {core::kRepeatWeekly, core::kNoEndDate, 99, 1}},
                {"monthly:3", {core::kRepeatMonthly, core::kNoEndDate, 3, 14}},
                {"yearly:1", {core::kRepeatYearly, core::kNoEndDate, 1, 3 << 16 | 14}}};
  for (const auto& rule : kRules) {
    ASSERT_EQ(Run("add", {"--date=2004-03-14", "--all-day", "--subject=x", "--repeat", rule.rule}), 0);
    const core::RepeatRule stored = Last().repeat;
    EXPECT_EQ(std::memcmp(&stored, &rule.stored, sizeof stored), 0) << rule.rule;
  }
}

TEST_F(CliChanges, MoveAndCopyGoToADay) {
  ASSERT_EQ(Run("move", {first, "--to", "2004-03-20"}), 0) << result.errors;
  EXPECT_EQ(core::DayIndex(calendar.Slot(kFirst).date), core::DayIndex(2004, 3, 20));
  ASSERT_EQ(Run("copy", {first, "--to=2004-03-22"}), 0) << result.errors;
  EXPECT_EQ(core::DayIndex(Last().date), core::DayIndex(2004, 3, 22));
  EXPECT_EQ(result.output.substr(0, 16).find(first), std::string::npos) << "its own id";
  EXPECT_EQ(Run("copy", {first}), 1);
}

TEST_F(CliChanges, ValuesThatCannotBeTakenAreUsageErrors) {
  const std::string before = calendar.Bytes();
  const struct {
    std::vector<std::string> words;
    const char* message;
    int lastYear = 2020;
  } kCases[] = {
      {{"--date=2004-02-30"}, "2004-02-30"},
      {{"--date=1999-12-31"}, "in the years 2000 to"},
      {{"--date=04-02-03"}, "no date"},
      {{"--start=24:00"}, "24:00"},
      {{"--start=9:00"}, "no time"},
      {{"--start=09:03"}, "five minutes"},
      {{"--start=10:00", "--end=09:55"}, "before the start"},
      {{"--subject=Привет"}, "П (U+041F)"},
      {{"--subject=a😀"}, "U+1F600"},
      {{"--subject=\xC3"}, "UTF-8"},
      {{"--subject=a\nb"}, "U+000A"},
      {{"--notes=a\x1B"}, "U+001B"},
      {{"--subject=" + std::string(150, 'x')}, "149"},
      {{"--notes=" + std::string(1022, 'x') + "\n"}, "1024 characters"},
      {{"--category=" + std::string(30, 'x')}, "29"},
      {{"--subject="}, "--subject"},
      {{"--repeat=daily:0"}, "daily:0"},
      {{"--repeat=daily:100"}, "daily:100"},
      {{"--repeat=weekly:1:mo"}, "weekly:1:mo"},
      {{"--repeat=hourly:1"}, "hourly:1"},
      {{"--repeat=daily:1:mon"}, "daily:1:mon"},
      {{"--until=2004-05-01"}, "--until"},
      {{"--repeat=daily:1", "--until=2004-02-29"}, "before the date"},
      {{"--no-repeat", "--repeat=daily:1"}, "--no-repeat"},
      {{"--all-day", "--no-all-day"}, "--all-day"},
      {{"--date=2004-01-01", "--date=2004-01-01"}, "twice"},
      {{"--examples"}, "--examples"},
      {{"--all-day=1"}, "no value"},
      {{}, "what to change"},
      {{"--date=2021-01-01"}, "in the years 2000 to 2020"},
      {{"--date=2100-01-01"}, "in the years 2000 to 2099", 2099},
      {{"--repeat=daily", "--until=2020-12-31"}, "cannot end on 2020-12-31", 2099},
  };
  for (const auto& wrong : kCases) {
    const tests::Era era(wrong.lastYear);
    std::vector<std::string> words = wrong.words;
    words.insert(words.begin(), first);
    EXPECT_EQ(Run("edit", words), 1) << wrong.message;
    EXPECT_NE(result.errors.find(wrong.message), std::string::npos) << wrong.message << ": " << result.errors;
  }
  EXPECT_EQ(Run("add", {"--date=2004-03-14", "--subject=x"}), 1);
  EXPECT_EQ(Run("delete", {"f1"}), 1);
  EXPECT_EQ(calendar.Bytes(), before);
}

// What the editor makes of the same steps: a rule goes its way when the date changes, until repeats are
// chosen anew, and an alarm follows only when it is off.
TEST_F(CliChanges, EditStoresTheBytesThatTheEditorStores) {
  constexpr core::Date kOldEnd{1, 3, 2010};
  constexpr core::Date kNewEnd{1, 1, 2011};
  constexpr std::uint32_t kMarch1 = 3 << 16 | 1;
  constexpr std::uint32_t kJune7 = 6 << 16 | 7;
  constexpr core::Date kMoved{7, 6, 2005};
  core::Appointment start = calendar.Slot(kFirst);
  start.repeat = {core::kRepeatYearly, kOldEnd, 1, kMarch1};
  const core::Date stays = start.date;
  const struct {
    std::vector<std::string> words;
    core::Date date;
    core::RepeatRule rule;
  } kEdits[] = {
      {{"--date=2005-06-07"}, kMoved, start.repeat},
      {{"--until=2011-01-01"}, stays, {core::kRepeatYearly, kNewEnd, 1, kMarch1}},
      {{"--date=2005-06-07", "--until=2011-01-01"}, kMoved, {core::kRepeatYearly, kNewEnd, 1, kJune7}},
      {{"--date=2005-06-07", "--repeat=weekly:2"}, kMoved, {core::kRepeatWeekly, core::kNoEndDate, 2, 4}},
      {{"--date=2011-06-07", "--no-repeat"}, {7, 6, 2011}, {}},
  };
  for (const bool alarmOn : {false, true}) {
    for (const auto& edit : kEdits) {
      core::Appointment expected = start;
      expected.alarmOn = alarmOn ? 1 : 0;
      expected.alarmDate = {2, 2, 2002};
      ASSERT_TRUE(calendar.file.WriteSlot(&expected, kFirst));
      std::vector<std::string> words = edit.words;
      words.insert(words.begin(), first);
      ASSERT_EQ(Run("edit", words), 0) << result.errors;
      expected.date = edit.date;
      expected.repeat = edit.rule;
      if (!alarmOn) core::ResetAlarm(expected);
      const core::Appointment edited = calendar.Slot(kFirst);
      EXPECT_EQ(std::memcmp(&edited, &expected, sizeof edited), 0) << words[1] << alarmOn;
    }
  }
  EXPECT_EQ(Run("edit", {first, "--repeat=daily", "--until=2012-03-01"}, "Assistant"), 0) << result.errors;
  EXPECT_EQ(Run("edit", {first, "--date=2012-03-02"}), 1) << "after the rule's end";
}

TEST_F(CliChanges, LevelsAndLocksAreKept) {
  Entry secret("Secret");
  secret.appointment.header.recordId = 0x5EC;
  calendar.Add(secret.Confidential());
  const std::string hidden = "00000000000005ec";
  calendar.Add(Entry("x"));
  ASSERT_TRUE(calendar.file.LockRecord(kFirst));
  const std::string before = calendar.Bytes();
  for (const char* command : {"edit", "delete"}) {
    std::vector<std::string> words = {first};
    if (std::string(command) == "edit") words.push_back("--subject=x");
    EXPECT_EQ(Run(command, words), 4) << command;
    EXPECT_EQ(Run(command, words, "Reader"), 3) << command;
    EXPECT_EQ(Run(command, words, "owner"), 3) << command;
    words[0] = hidden;
    EXPECT_EQ(Run(command, words, "Assistant"), 3) << command;
    EXPECT_NE(result.errors.find("no record"), std::string::npos) << "as if it were not there";
  }
  EXPECT_EQ(Run("add", {"--date=2004-03-14", "--subject=x", "--all-day", "--confidential"}, "Assistant"), 3);
  EXPECT_EQ(Run("add", {"--date=2004-03-14", "--subject=x", "--all-day"}, "Reader"), 3);
  EXPECT_EQ(Run("compact", {}), 1) << "it takes no password";
  EXPECT_EQ(RunCli({"compact", calendar.Path()}).code, 4);
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(Run("delete", {hidden}), 0) << result.errors;
  EXPECT_EQ(Run("delete", {hidden}), 3);
}

TEST_F(CliChanges, AnOffsetChoosesAmongEqualIds) {
  core::Appointment twin = calendar.Slot(kFirst);
  core::WriteText(twin.subject, "Twin");
  ASSERT_EQ(calendar.file.AddRecord(&twin), core::Result::kDone);
  const std::string before = calendar.Bytes();
  EXPECT_EQ(Run("delete", {first}), 3);
  EXPECT_NE(result.errors.find("2625 5252"), std::string::npos) << result.errors;
  EXPECT_EQ(Run("delete", {first, "--offset=7879"}), 3);
  EXPECT_EQ(Run("delete", {"00000000000000f2", "--offset=5252"}), 3) << "and only among them";
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(Run("edit", {"00000000000000F1", "--offset", "5252", "--subject=Chosen"}), 0) << result.errors;
  EXPECT_EQ(core::ReadText(calendar.Slot(kFirst).subject), "First");
  EXPECT_EQ(core::ReadText(Last().subject), "Chosen");
}

TEST_F(CliChanges, WhatTheDiskRefusesOrDoesNotConfirmIsTold) {
  const std::string before = calendar.Bytes();
  FaultyCalls faults;
  // 1 counts the user of the file, 2 takes the lock, 3 is the record.
  faults.Fail(FaultyCalls::kWrite, 3, ENOSPC);
  EXPECT_EQ(Run("edit", {first, "--subject=x"}), 2);
  EXPECT_EQ(calendar.Bytes(), before) << "and no lock stays";
  faults.Fail(FaultyCalls::kFlush, 1, EIO, FaultyCalls::kForEver);
  EXPECT_EQ(Run("add", {"--date=2004-03-14", "--all-day", "--subject=y"}), 2);
}

TEST(CliFiles, NewCompactAndRepair) {
  const TemporaryFolder folder;
  const std::string path = folder.Join("a.cld");
  ASSERT_EQ(RunCli({"new", path, "--examples"}).code, 0);
  EXPECT_EQ(RunCli({"check", path}).output, "");
  const Json rows = ListRows({path, "--all"});
  ASSERT_EQ(rows.items.size(), 3U);
  EXPECT_EQ(RunCli({"new", path}).code, 2) << "nothing is replaced";
  EXPECT_EQ(RunCli({"new", folder.Join("none/a.cld")}).code, 2);
  ASSERT_EQ(RunCli({"delete", path, rows.items[0]["id"].text}).code, 0);
  EXPECT_EQ(folder.Read("a.cld").size(), 2625U + 3 * 2627);
  ASSERT_EQ(RunCli({"compact", path}).code, 0);
  EXPECT_EQ(folder.Read("a.cld").size(), 2625U + 2 * 2627);

  // As a program leaves it that dies while it edits.
  std::string left = folder.Read("a.cld");
  left[12 + 1018] = 2;
  left[2625 + 5] = 1;
  folder.Write("a.cld", left);
  folder.Write("a.cld.temp", "rest");
  const CommandResult check = RunCli({"check", path, "--format", "csv"});
  EXPECT_EQ(check.code, 2);
  EXPECT_EQ(std::count(check.output.begin(), check.output.end(), '\n'), 3);
  EXPECT_EQ(ListRows({path, "--all", "--category", "Calls"}).items[0]["locked"].text, "false");
  EXPECT_EQ(folder.Read("a.cld"), left) << "who only reads repairs nothing";
  const CommandResult edit = RunCli({"edit", path, rows.items[1]["id"].text, "--notes=x"});
  EXPECT_EQ(edit.code, 0) << edit.errors;
  EXPECT_NE(edit.errors.find("a.cld.temp.1"), std::string::npos) << "what was found is told: " << edit.errors;
  EXPECT_EQ(RunCli({"check", path}).code, 0);
  EXPECT_EQ(folder.Read("a.cld.temp.1"), "rest");
}

}  // namespace
}  // namespace tests
