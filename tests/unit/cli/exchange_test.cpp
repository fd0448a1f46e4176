// Export and report by their commands.
#include <gtest/gtest.h>
#include <unistd.h>

#include "core/date_time.h"
#include "core/time_texts.h"
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

}  // namespace
}  // namespace tests
