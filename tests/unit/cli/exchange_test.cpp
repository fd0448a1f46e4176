// Export, report and import by their commands.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <fstream>

#include "core/date_time.h"
#include "core/time_texts.h"
#include "platform/system/code_page.h"
#include "support/command_line.h"
#include "support/era.h"
#include "support/source_folder.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

const std::string kOffice = tests::SourceFolder() + "/tests/data/office.cld";

// FNV-1a: what another program made of the same file is too long to keep.
std::uint64_t Hash(const std::string& bytes) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  return hash;
}

TEST(CliExport, IsWhatAnotherProgramWrites) {
  const Era era(core::kEarlyLastYear);
  core::SetClockMode(core::ClockMode::k24Hours);
  const std::vector<std::pair<std::vector<std::string>, std::uint64_t>> cases = {
      {{"export", kOffice, "-"}, 0xa1b09420ebf605e2},
      {{"report", kOffice}, 0xfce3486efac9d783},
      {{"report", kOffice, "--from=2004-03-01", "--to=2004-03-31"}, 0x53d2c32a403b1285},
      {{"report", kOffice, "-", "--from=2004-01-01", "--to=2004-12-31", "--subject=LUNCH"},
       0x992efb13fb0f0e4f},
  };
  for (const auto& [words, hash] : cases) EXPECT_EQ(Hash(RunCli(words).output), hash) << words[0];
}

TEST(CliExport, AwkwardFieldsAndOneRecord) {
  const Era era(core::kEarlyLastYear);
  core::SetClockMode(core::ClockMode::k12Hours);
  TemporaryCalendar calendar;
  Entry odd("say \"x\"");
  odd.On(1, 13, 2004).appointment.startTime = {14, 5, 0, core::kAfterNoon};
  std::memset(odd.appointment.notes, 'n', sizeof odd.appointment.notes);
  odd.appointment.allDay = 0xFFFFFFFF;
  odd.appointment.header.recordId = 0xAB;
  calendar.Add(odd);
  calendar.Add(Entry("last").On(31, 1, 2020));
  calendar.Add(Entry("beyond").On(1, 2, 2020));
  const std::string notes(1024, 'n');
  const std::string head =
      "\"Date\",\"Start Time\",\"End Time\",\"Category\",\"All day event\",\"Subject\",\"Notes\"\r\n";
  EXPECT_EQ(RunCli({"export", calendar.Path(), "-"}).output,
            head + "\"1/31/2020\",\"09:00 am\",\"09:00 am\",\"\",\"0\",\"last\",\"\"\r\n");
  EXPECT_EQ(RunCli({"report", calendar.Path(), "-", "--id=00000000000000ab"}).output,
            "Tempoline Report (from 1/1/2000 to 1/31/2020)\r\n\r\nDate: 13/1/2004\r\nTime: All day event\r\n"
            "Subject: say \"x\"\r\nCategory: \r\nNotes: " +
                notes + "\r\n\r\n");
  core::SetClockMode(core::ClockMode::k24Hours);
}

TEST(CliExport, ReplacesAWholeFileOrNothing) {
  TemporaryCalendar calendar;
  for (int i = 0; i < 100; ++i) calendar.Add(Entry("a subject").Notes(std::string(1000, 'n')));
  calendar.file.Close();
  const std::string before = calendar.Bytes();
  const TemporaryFolder folder;
  const std::string old = folder.Write("old.csv", "old");
  const std::string cli = "'" TEMPOLINE_CLI "' export '" + calendar.Path() + "' ";
  ASSERT_EQ(symlink(calendar.Path().c_str(), folder.Join("link").c_str()), 0);
  for (const std::string& target : {calendar.Path(), folder.Join("link"), folder.Path(),
                                    std::string("/dev/full"), folder.Join("no/folder")}) {
    EXPECT_EQ(RunShell(cli + target).code, 2) << target;
  }
  EXPECT_NE(RunShell("ulimit -f 40; " + cli + old).errors.find("The disk is full."), std::string::npos);
  EXPECT_EQ(RunCli({"report", calendar.Path(), old, "--id=0000000000000001"}).code, 3);
  EXPECT_EQ(folder.Read("old.csv"), "old");
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(RunShell(cli + old).code, 0);
  EXPECT_EQ(folder.Read("old.csv"), RunCli({"export", calendar.Path(), "-"}).output);
  EXPECT_EQ(RunShell("ls -A " + folder.Path()).output, "link\nold.csv\n") << "nothing is left beside it";
}

std::vector<int> Numbers(const Json& list) {
  std::vector<int> numbers;
  for (const Json& item : list.items) numbers.push_back(static_cast<int>(item.number));
  return numbers;
}

std::vector<int> Numbers(const core::TimeOfDay& time) {
  return {time.hour, time.minute, time.second, time.half};
}

TEST(CliImport, AddsWhatAnotherProgramReads) {
  const std::string folder = tests::SourceFolder() + "/tests/data/import/";
  std::ifstream stream(folder + "expected.json");
  const Json expected =
      Json::Parse({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
  ASSERT_EQ(expected.fields.size(), 7U);
  for (const auto& [name, wanted] : expected.fields) {
    TemporaryCalendar calendar;
    const std::string header = wanted["header"].text == "true" ? "--header=yes" : "--header=no";
    const CommandResult result = RunCli({"import", calendar.Path(), folder + name, header});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_TRUE(result.output.starts_with(std::to_string(wanted["rows"].items.size()))) << result.output;
    const core::RecordQuery records = AllRecords(calendar.file);
    ASSERT_EQ(records.Count(), wanted["rows"].items.size()) << name;
    for (std::size_t i = 0; i < records.Count(); ++i) {
      core::Appointment record;
      ASSERT_TRUE(calendar.file.ReadRecord(&record, records.KeyAt(i)));
      const Json& row = wanted["rows"].items[i];
      EXPECT_EQ((std::vector<int>{record.date.day, record.date.month, record.date.year}),
                Numbers(row["date"]));
      EXPECT_EQ(Numbers(record.startTime), Numbers(row["start"]));
      EXPECT_EQ(Numbers(record.endTime), Numbers(row["end"]));
      EXPECT_EQ(platform::Utf8FromCodePage(core::ReadText(record.header.category)), row["category"].text);
      EXPECT_EQ(Value(record.allDay), row["allDay"].number);
      EXPECT_EQ(platform::Utf8FromCodePage(core::ReadText(record.subject)), row["subject"].text);
      EXPECT_EQ(platform::Utf8FromCodePage(core::ReadText(record.notes)), row["notes"].text);
    }
  }
}

TEST(CliImport, SaysWhatItDidAndWhatIsWrong) {
  const TemporaryFolder folder;
  TemporaryCalendar calendar;
  const auto import = [&](const std::string& text, const std::string& options) {
    const std::string file = folder.Write("in.txt", text);
    std::vector<std::string> words = Words("import " + calendar.Path() + ' ' + file + options);
    const CommandResult result = RunCli(words);
    return std::to_string(result.code) + ' ' + (result.code == 0 ? result.output : result.errors);
  };
  const std::string broken =
      "\xEF\xBB\xBF"
      "1/2/2004,a\xE6\x97\xA5\n13/1/2004,b\nnever,c\n1/2/1999,d\n";
  EXPECT_EQ(
      import(broken, " --header=no --map=Date,Subject --dry-run"),
      "0 4 appointments would be added. 1 line could not be completed. 3 have a date outside the calendar. "
      "The first number of a date is read as the month. In 1 text a \"?\" stands for characters that cannot "
      "be stored.\n");
  EXPECT_EQ(AllRecords(calendar.file).Count(), 0U);
  EXPECT_EQ(import("x\t1/2/2004\n", " --header=no --map=-,Date --separator=tab --quote=no"),
            "0 1 appointment was added.\n");
  const std::vector<std::array<const char*, 3>> wrong = {{"a", "", "No column"},
                                                         {"a", " --map=-,-", "No column"},
                                                         {"a", " --map=Day", "no field \"Day\""},
                                                         {"a", " --header=maybe", "yes or no"},
                                                         {"a", " --separator=;", "comma or tab"}};
  for (const auto& [text, options, why] : wrong) {
    const std::string said = import(text, options);
    EXPECT_TRUE(said.starts_with("1 ") && said.find(why) != std::string::npos) << said;
  }
  EXPECT_NE(import("", "").find("It is empty."), std::string::npos);
  EXPECT_NE(import("\xFF\xFE"
                   "a",
                   "")
                .find("UTF-16"),
            std::string::npos);
  const std::vector<std::pair<std::string, std::string>> unfit = {
      {folder.Join("none"), "Import file could not be found."},
      {folder.Path(), "It is a folder."},
      {"/dev/zero", "not a regular file"},
      {calendar.Path(), "It is the calendar"}};
  for (const auto& [path, why] : unfit) {
    const CommandResult result = RunCli({"import", calendar.Path(), path});
    EXPECT_EQ(result.code, 2);
    EXPECT_NE(result.errors.find(why), std::string::npos) << result.errors;
  }
  EXPECT_EQ(AllRecords(calendar.file).Count(), 1U);
  const std::string cli = "'" TEMPOLINE_CLI "' ";
  EXPECT_EQ(
      RunShell(cli + "export '" + calendar.Path() + "' - | " + cli + "import '" + calendar.Path() + "' -")
          .code,
      0);
  EXPECT_EQ(AllRecords(calendar.file).Count(), 2U);
}

}  // namespace
}  // namespace tests
