// Lists: against a calendar that another program made, and what damage and awkward texts become.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

#include "support/command_line.h"
#include "support/source_folder.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

const std::string kData = tests::SourceFolder() + "/tests/data/";

std::set<std::string> Ids(const Json& rows) {
  std::set<std::string> ids;
  for (const Json& row : rows.items) ids.insert(row["id"].text);
  return ids;
}

std::set<std::string> Texts(const Json& list) {
  std::set<std::string> texts;
  for (const Json& item : list.items) texts.insert(item.text);
  return texts;
}

class SampleLists : public testing::Test {
 protected:
  SampleLists() : path(folder.Join("office.cld")) {
    std::filesystem::copy_file(kData + "office.cld", path);
    std::ifstream stream(kData + "office.expected.json");
    expected = Json::Parse({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
  }

  TemporaryFolder folder;
  std::string path;
  Json expected;
};

TEST_F(SampleLists, DaysOfTheOwnerAndOfACategory) {
  ASSERT_EQ(expected["days"].fields.size(), 44U);
  for (const auto& [date, lists] : expected["days"].fields) {
    std::vector<std::string> rows;
    std::vector<std::string> wanted;
    for (const Json& row : ListRows({path, "--day", date}).items) {
      const std::string time = row["allDay"].text == "true" ? "0 " : "1 ";
      rows.push_back(time + row["start"].text + ' ' + row["id"].text + ' ' + row["category"].text + '|' +
                     row["subject"].text);
      EXPECT_EQ(row["date"].text, date);
    }
    EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(), [](const std::string& a, const std::string& b) {
      return a.substr(0, 7) < b.substr(0, 7);
    })) << date;
    for (const Json& row : lists["owner"].items) {
      const int slot = static_cast<int>(row["slot"].number);
      char time[32];
      std::snprintf(time, sizeof time, "%d %02d:%02d ", row["allDay"].number != 0 ? 0 : 1, slot / 12,
                    slot % 12 * 5);
      wanted.push_back(time + row["id"].text + ' ' + row["category"].text + '|' + row["subject"].text);
    }
    std::sort(rows.begin(), rows.end());
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(rows, wanted) << date;
    EXPECT_EQ(Ids(ListRows({path, "--day", date, "--category", "calls"})), Texts(lists["calls_ids"])) << date;
  }
}

TEST_F(SampleLists, DaysOfAReader) {
  core::RecordFile file(path, "");
  ASSERT_TRUE(file.UpdateHeaderBlock([](core::HeaderBlock& header) {
    core::WriteText(header.ownerPassword, "own");
    core::WriteText(header.readerPassword, "r\xE9z");
  }));
  file.Close();
  const std::string before = folder.Read("office.cld");
  for (const auto& [date, lists] : expected["days"].fields) {
    EXPECT_EQ(Ids(ListRows({path, "--day", date, "--password", "réz"})), Texts(lists["reader_ids"])) << date;
  }
  EXPECT_EQ(folder.Read("office.cld"), before) << "listing writes nothing";
}

TEST_F(SampleLists, FindAndRanges) {
  for (const auto& [text, ids] : expected["find"].fields) {
    EXPECT_EQ(Ids(ListRows({path, "--all", "--find", text})), Texts(ids)) << text;
  }
  // A range is its days one after the other, which for single ones are the same.
  std::vector<std::string> days;
  for (const char* day : {"2004-02-28", "2004-02-29", "2004-03-01"}) {
    for (const Json& row : ListRows({path, "--day", day}).items) days.push_back(day + row["id"].text);
  }
  std::vector<std::string> range;
  for (const Json& row : ListRows({path, "--from", "2004-02-28", "--to", "2004-03-01"}).items) {
    range.push_back(row["date"].text + row["id"].text);
  }
  EXPECT_EQ(range, days);
  const auto inMarch = [this](const char* option, const std::string& value) {
    return Ids(ListRows({path, "--from", "2004-03-01", "--to", "2004-03-31", option, value}));
  };
  const std::set<std::string> march = Texts(expected["range_2004_03"]);
  const Json rows = ListRows({path, "--from", "2004-03-01", "--to", "2004-03-31"});
  EXPECT_EQ(Ids(rows), march);
  std::set<std::string> plain;
  for (const Json& row : rows.items) {
    if (row["category"].text.empty()) plain.insert(row["id"].text);
  }
  EXPECT_EQ(inMarch("--category", ""), plain);
  int both = 0;
  for (const auto& [text, ids] : expected["find"].fields) {
    std::set<std::string> wanted = Texts(ids);
    std::erase_if(wanted, [&march](const std::string& id) { return !march.contains(id); });
    EXPECT_EQ(inMarch("--find", text), wanted) << text;
    both += wanted.empty() ? 0 : 1;
  }
  EXPECT_GT(both, 0);
}

TEST_F(SampleLists, InfoCountsWhatIsListed) {
  const Json info = Json::Parse(RunCli({"info", path, "--format", "json"}).output);
  for (const auto& [counted, name] : {std::pair{"records", "live"}, std::pair{"freeSlots", "free"},
                                      std::pair{"confidential", "confidential_live"}}) {
    EXPECT_EQ(info[counted].number, expected[name].number) << counted;
  }
  EXPECT_EQ(ListRows({path, "--all"}).items.size(), expected["live"].number);
}

TEST(CliAlarms, TheDueOnesAndTheNext) {
  const auto alarms = [](const char* at, const char* format) {
    return RunCli({"alarms", kData + "alarms.cld", "--at", at, "--format", format}).output;
  };
  const std::string row = ",2003-01-22,22:15,Invoice invoice,\r\n";
  EXPECT_EQ(alarms("2003-01-22T22:14", "csv"),
            "id,due,ring,time,subject,target\r\n5de12fb9d408f1b5,false" + row);
  EXPECT_NE(alarms("2003-01-22T22:19", "csv").find("5de12fb9d408f1b5,true" + row), std::string::npos);
  const Json rows = Json::Parse(alarms("2004-03-14T10:43", "json"));
  ASSERT_EQ(rows.items.size(), 11U);
  EXPECT_EQ(rows.items[1]["id"].text, "52cfd248254306ad");
  EXPECT_EQ(rows.items[10]["due"].text, "false");
}

TEST(Grid, HasABoxForEachDay) {
  setenv("COLUMNS", "65", 1);
  TemporaryCalendar calendar;
  calendar.Add(Entry("Standup \xE9").On(26, 2, 2004).Every(1, core::kRepeatDaily).Until(27, 2, 2004));
  calendar.Add(Entry("Fair\nand square").On(27, 2, 2004).AllDay());
  calendar.Add(Entry("Sunday lunch, the long one").On(29, 2, 2004).At(12, 0).Category("Food"));
  const auto grid = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"list", calendar.Path()});
    return RunCli(words).output;
  };
  const std::string rule = "+---------------+---------------+---------------+---------------+\n";
  EXPECT_EQ(grid({"--week", "2004-02-29"}),
            "February 2004\n" + rule +
                "|23 Monday      |24 Tuesday     |25 Wednesday   |26 Thursday    |\n"
                "|               |               |               |09:00 Standup é|\n" +
                rule +
                "|27 Friday      |28 Saturday    |29 Sunday      |               |\n"
                "|Fair and square|               |12:00 Sunday lu|               |\n"
                "|09:00 Standup é|               |               |               |\n" +
                rule);
  const std::string month = grid({"--month=2004-02", "--category=food", "--find", "LUNCH"});
  EXPECT_EQ(std::count(month.begin(), month.end(), '\n'), 15) << month;
  EXPECT_NE(month.find("|29      |        |"), std::string::npos) << month;
  EXPECT_NE(month.find("|12:00 Su|"), std::string::npos) << month;
  EXPECT_EQ(month.find("Standup"), std::string::npos) << month;
  EXPECT_EQ(ListRows({calendar.Path(), "--month=2004-02"}).items.size(), 4U);
  unsetenv("COLUMNS");
}

// A calendar with one record whose every field is awkward.
class AwkwardLists : public testing::Test {
 protected:
  std::string Output(const std::string& format) {
    return RunCli({"list", calendar.Path(), "--all", "--format", format}).output;
  }
  std::int32_t Add(Entry entry) {
    entry.appointment.header.recordId = 0xABC;
    return calendar.Add(entry);
  }
  TemporaryCalendar calendar;
};

TEST_F(AwkwardLists, TextsAreQuotedAndHarmless) {
  Add(Entry("a \"b\", \x1B[31m\x9D\xE9").Category("C, D").Notes("x\r\ny\\").Confidential());
  EXPECT_EQ(
      Output("json"),
      "[\n {\"id\": \"0000000000000abc\", \"offset\": 2625, \"date\": \"2004-03-01\", \"start\": \"09:00\", "
      "\"end\": \"09:00\", \"allDay\": false, \"category\": \"C, D\", \"subject\": \"a \\\"b\\\", "
      "\\u001b[31m\\u009dé\", \"notes\": \"x\\ny\\\\\", \"confidential\": true, \"alarm\": false, "
      "\"attachment\": false, \"repeats\": false, \"locked\": false}\n]\n");
  EXPECT_EQ(Output("csv"),
            "id,offset,date,start,end,allDay,category,subject,notes,confidential,alarm,attachment,repeats,"
            "locked\r\n"
            "0000000000000abc,2625,2004-03-01,09:00,09:00,false,\"C, D\",\"a \"\"b\"\", "
            "\x1B[31m\xC2\x9Dé\",\"x\ny\\\","
            "true,false,false,false,false\r\n");
  EXPECT_EQ(Output("text"), "0000000000000abc  2004-03-01  09:00  09:00  C----  C, D  a \"b\",  [31m é\n");
}

TEST_F(AwkwardLists, DamageIsShownAsSuch) {
  Entry damaged("");
  damaged.On(31, 2, 2004).Every(0, static_cast<core::RepeatType>(9));
  damaged.appointment.startTime = {9, 57, 0, 1};
  damaged.appointment.endTime = {-5, 1 << 30, 0, 77};
  std::memset(damaged.appointment.subject, 's', sizeof damaged.appointment.subject);
  const std::int32_t offset = Add(damaged);
  ASSERT_TRUE(calendar.file.LockRecord(offset));
  EXPECT_EQ(Output("text"),
            "0000000000000abc  -           -      -      ---RL    " + std::string(150, 's') + "\n");
  const std::string json = Output("json");
  EXPECT_NE(json.find("\"date\": null, \"start\": null, \"end\": null"), std::string::npos) << json;
  EXPECT_NE(Output("csv").find("0000000000000abc,2625,,,,false,,sss"), std::string::npos);
  EXPECT_EQ(ListRows({calendar.Path(), "--from", "2000-01-01", "--to", "2020-12-31"}).items.size(), 0U);
}

// More than a list of the window program holds.
TEST_F(AwkwardLists, LongFilesAreListedWhole) {
  const Entry entry("many");
  std::string slots;
  for (int i = 0; i < 10'050; ++i) slots.append(reinterpret_cast<const char*>(&entry.appointment), 2627);
  calendar.file.Close();
  const std::string path = calendar.Path();
  std::ofstream(path, std::ios::binary | std::ios::app) << slots;
  const CommandResult result = RunCli({"list", path, "--day", "2004-03-01"});
  EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 10'050);
}

TEST(HostileFiles, EndInALineAndACode) {
  std::string sound;
  {
    TemporaryCalendar calendar;
    calendar.Add(Entry("a"));
    calendar.file.Close();
    sound = calendar.Bytes();
  }
  const TemporaryFolder folder;
  // core tells each damage; here it is what all commands make of one.
  const std::string files[] = {"", sound.substr(0, 2624), std::string(sound).replace(16, 7, "Nothing")};
  for (const std::string& bytes : files) {
    const std::string path = folder.Write("a.cld", bytes);
    for (const char* command : {"info", "check", "list --all", "add --date=2004-01-01 --all-day --subject=x",
                                "delete 0123456789abcdef", "compact", "new"}) {
      std::vector<std::string> words = Words(command);
      words.insert(words.begin() + 1, path);
      const CommandResult result = RunCli(words);
      EXPECT_EQ(result.code, 2) << command << " " << bytes.size();
      EXPECT_NE(result.errors.find(path), std::string::npos) << result.errors;
      EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    }
    EXPECT_EQ(folder.Read("a.cld"), bytes);
  }
  // A cut last slot hides nothing.
  const std::string cut = folder.Write("cut.cld", sound + "tail");
  EXPECT_EQ(ListRows({cut, "--all"}).items.size(), 1U);
  EXPECT_EQ(RunCli({"check", cut}).code, 2);
}

}  // namespace
}  // namespace tests
