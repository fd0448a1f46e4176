// The words of the command line, and the program itself with pipes, full disks and files it may only read.
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "cli/arguments.h"
#include "support/child_process.h"
#include "support/command_line.h"
#include "support/source_folder.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

const std::string kCli = "'" TEMPOLINE_CLI "'";

TEST(CliWords, HelpVersionAndWrongUse) {
  EXPECT_EQ(RunCli({"--version"}).output, "tempoline-cli " DAYBRIX_VERSION "\n");
  EXPECT_EQ(RunCli({"--help"}).code, 0);
  EXPECT_NE(RunCli({"list", "--help"}).output.find("--from D"), std::string::npos);
  EXPECT_EQ(RunCli({"compact", "-h"}).output.find("--from D"), std::string::npos);
  for (const char* line :
       {"", "lst f", "list", "list f", "list f g --all", "list f --all --day 2004-01-01",
        "list f --from 2004-01-01", "list f --from 2004-01-02 --to 2004-01-01", "list f --all --format xml",
        "list f --all --find", "list f --all -x", "list f --all --password=a --password-file=b",
        "list f --month 2004-13", "list f --day 2004-01-01 --week 2004-01-01", "alarms f --at 2004-03-14",
        "move f 00000000000000f1", "edit f --subject=x", "info  "}) {
    const CommandResult result = RunCli(Words(line));
    EXPECT_EQ(result.code, 1) << line;
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.errors.starts_with("tempoline-cli: ") &&
                result.errors.find('\n') == result.errors.size() - 1)
        << result.errors;
  }
  EXPECT_EQ(RunCli({"info", "/nowhere/a.cld"}).code, 2);
  EXPECT_EQ(RunCli({"info", "/"}).code, 2);
}

// The manual page knows every command and every option, and so does the completion, each command its own.
TEST(CliWords, ManualAndCompletionAreWhole) {
  std::ifstream stream(tests::SourceFolder() + "/packaging/tempoline-cli.1.in");
  const std::string page{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  const auto completed = [](const std::string& line, const std::string& word) {
    return RunShell("bash -c '. \"" + tests::SourceFolder() +
                    "/packaging/tempoline-cli.bash\"; COMP_WORDS=(cli " + line + " " + word +
                    "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tempoline_cli; echo \" " +
                    "${COMPREPLY[*]} \"'")
        .output;
  };
  for (const std::string& word : cli::AllWords()) {
    std::string escaped;
    for (const char c : word) escaped += c == '-' ? "\\-" : std::string(1, c);
    EXPECT_NE(page.find(escaped), std::string::npos) << word;
    if (word.starts_with("--")) continue;
    EXPECT_NE(completed("", "\"\"").find(" " + word + " "), std::string::npos) << word;
    const std::string help = RunCli({word, "--help"}).output;
    const std::string offered = completed(word + " f", "--");
    for (std::size_t at = help.find("\n  --"); at != std::string::npos; at = help.find("\n  --", at + 1)) {
      const std::string option = help.substr(at + 3, help.find(' ', at + 3) - at - 3);
      EXPECT_NE(offered.find(" " + option + " "), std::string::npos) << word << option << offered;
    }
  }
}

TEST(CliWords, NamesOfFilesThatAreNoUtf8AreStillJson) {
  const TemporaryFolder folder;
  const std::string path = folder.Join("a\xE9\xC3\xA9\xED\xA0\x80\xF0\x9F\x98\x80\xF0.cld");
  ASSERT_EQ(RunCli({"new", path}).code, 0);
  const std::string json = RunCli({"info", path, "--format", "json"}).output;
  EXPECT_NE(json.find("a\\ufffd\xC3\xA9\\ufffd\\ufffd\\ufffd\xF0\x9F\x98\x80\\ufffd.cld\""),
            std::string::npos)
      << json;
}

class CliProgram : public testing::Test {
 protected:
  CliProgram() {
    for (int i = 0; i < 2000; ++i) calendar.Add(Entry("a subject that makes the output longer than a pipe"));
    calendar.file.Close();
    quoted = "'" + calendar.Path() + "'";
  }
  TemporaryCalendar calendar{{"geheim", "Assistant", "Reader"}};
  std::string quoted;
};

TEST_F(CliProgram, OutputThatCannotBeWrittenIsAnError) {
  const std::string before = calendar.Bytes();
  const std::string list = "TEMPOLINE_PASSWORD=geheim " + kCli + " list " + quoted + " --all";
  const CommandResult whole = RunShell(list);
  EXPECT_EQ(whole.code, 0) << whole.errors;
  EXPECT_EQ(std::count(whole.output.begin(), whole.output.end(), '\n'), 2000);
  for (const std::string& line :
       {"bash -c \"" + list + " | true; exit \\${PIPESTATUS[0]}\"", list + " >/dev/full", list + " >&-",
        list + " --format json >&- 2>&1 <&-"}) {
    const CommandResult result = RunShell(line);
    EXPECT_EQ(result.code, 2) << line << result.errors;
    EXPECT_EQ(calendar.Bytes(), before) << "no output goes into the file";
  }
  EXPECT_NE(RunShell(list + " >/dev/full").errors.find("could not be written"), std::string::npos);
  const CommandResult added = RunShell("TEMPOLINE_PASSWORD=geheim " + kCli + " add " + quoted +
                                       " --date=2004-01-01 --all-day --subject=x >/dev/full");
  EXPECT_EQ(added.code, 2);
  EXPECT_NE(added.errors.find("was added"), std::string::npos) << added.errors;
  EXPECT_EQ(RunShell(list + " | true").errors, "") << "a reader that has enough is no fault";
}

TEST_F(CliProgram, ALimitOfFileSizesIsAFullDisk) {
  const std::string before = calendar.Bytes();
  const CommandResult result = RunShell("ulimit -f 8; " + kCli + " compact " + quoted);
  EXPECT_EQ(result.code, 2) << result.errors;
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_FALSE(std::ifstream(calendar.Path() + ".temp").is_open());
  const CommandResult made = RunShell("ulimit -f 2; " + kCli + " new " + quoted + ".new");
  EXPECT_NE(made.errors.find("The disk is full."), std::string::npos) << made.errors;
}

TEST_F(CliProgram, PasswordsComeFromFileAndEnvironment) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("pw", "geheim\nmore\n");
  EXPECT_EQ(RunShell(kCli + " info " + quoted).code, 3);
  EXPECT_EQ(RunShell(kCli + " info " + quoted + " --password-file " + file).code, 0);
  EXPECT_EQ(RunShell(kCli + " info " + quoted + " --password-file " + folder.Join("none")).code, 2);
  EXPECT_EQ(RunShell("TEMPOLINE_PASSWORD=wrong " + kCli + " info " + quoted).code, 3);
  EXPECT_EQ(RunShell("TEMPOLINE_PASSWORD=wrong " + kCli + " info " + quoted + " --password geheim").code, 0);
}

TEST_F(CliProgram, FilesThatMayNotBeWrittenAreRead) {
  const std::string path = calendar.Path();
  const std::string folder = path.substr(0, path.rfind('/'));
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  ASSERT_EQ(chmod(folder.c_str(), 0555), 0);
  const auto code = [&path](const std::string& command, const std::string& options) {
    std::vector<std::string> words = Words(command + " " + path + options);
    return RunUnprivileged([&words] { return RunCli(words).code; });
  };
  const std::string password = " --password=geheim";
  const auto expectReading = [&](int expected) {
    EXPECT_EQ(code("info", password), expected);
    EXPECT_EQ(code("list", " --all" + password), expected);
    EXPECT_EQ(code("check", ""), expected);
  };
  expectReading(0);
  EXPECT_EQ(code("add", " --date=2004-01-01 --all-day --subject=x" + password), 2);
  EXPECT_EQ(code("compact", ""), 2);
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  expectReading(2);
  ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
}

unsigned ModeOf(const std::string& path) {
  struct stat about = {};
  return stat(path.c_str(), &about) == 0 ? about.st_mode & 07777 : 0;
}

TEST(CliSharing, AGroupGetsTheCalendarAndItsFolder) {
  const struct group* const own = getgrgid(getegid());
  ASSERT_NE(own, nullptr);
  const std::string group = std::string("--group=") + own->gr_name;
  const TemporaryFolder folder;
  ASSERT_EQ(chmod(folder.Path().c_str(), 0755), 0);
  const std::string path = folder.Join("team/team.cld");
  const mode_t mask = umask(022);
  ASSERT_EQ(RunCli({"new", path, group}).code, 0);
  EXPECT_EQ(ModeOf(folder.Join("team")), 02775U);
  EXPECT_EQ(ModeOf(path), 0664U);
  // One that was there before, with its participants.
  for (const char* name : {"team/b.cld", "team/b.cld.tsi", "b.cld"}) {
    ASSERT_EQ(RunCli({"new", folder.Join(name)}).code, 0);
    ASSERT_EQ(chmod(folder.Join(name).c_str(), 0600), 0);
  }
  ASSERT_EQ(chmod(folder.Join("team").c_str(), 0755), 0);
  EXPECT_EQ(RunCli({"share", folder.Join("team/b.cld"), group}).code, 0);
  EXPECT_EQ(ModeOf(folder.Join("team")), 02775U);
  EXPECT_EQ(ModeOf(folder.Join("team/b.cld")) & ModeOf(folder.Join("team/b.cld.tsi")), 0660U);
  umask(mask);

  const auto refused = [](const std::vector<std::string>& words, const std::string& why) {
    const CommandResult result = RunCli(words);
    EXPECT_EQ(result.code, 2);
    EXPECT_NE(result.errors.find(why), std::string::npos) << result.errors;
  };
  refused({"share", path, "--group=no such group"}, "There is no group \"no such group\".");
  refused({"new", path, group}, "There is a file already.");
  refused({"share", folder.Join("none.cld"), group}, "does not exist");
  refused({"share", folder.Join("b.cld"), group}, "Other files lie in \"" + folder.Path() + "\"");
  EXPECT_EQ(ModeOf(folder.Path()), 0755U);
  EXPECT_EQ(ModeOf(folder.Join("b.cld")), 0600U);
  EXPECT_EQ(RunCli({"share", path}).code, 1);
  if (geteuid() != 0) return;
  const std::vector<std::string> words = {"share", folder.Join("team/b.cld"), group};
  EXPECT_EQ(RunUnprivileged([&] {
              return RunCli(words).errors.find("You are not in the group") != std::string::npos ? 1 : 0;
            }),
            1);
}

}  // namespace
}  // namespace tests
