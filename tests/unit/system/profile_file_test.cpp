#include "platform/system/profile_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "platform/system/file.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_folder.h"

namespace {

using platform::ReadProfileString;
using platform::WriteProfileString;
using tests::ChildProcess;
using tests::FaultyCalls;
using tests::TemporaryFolder;
using tests::UntilKilled;

// The value in angle brackets, so that a missing key and an empty value differ.
std::string Value(const std::string& path, std::string_view section, std::string_view key) {
  std::string value = "left over";
  return ReadProfileString(path, section, key, value) ? '<' + value + '>' : "missing" + value;
}

TEST(ProfileFileTest, ReadsWhatPeopleWrite) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a.ini",
                                        "\xEF\xBB\xBF[ First ]\r\n; Sound=9\nSound=1\r\nsound=2\n"
                                        "\tSplash \t=  two words \t\r\nEmpty=\nEquals=a=b\nno value\n"
                                        "Double=\" x \"\nSingle='y'\nTwice=\"\"z\"\"\nHalf=\"h\n"
                                        "Mixed='m\"\nLone=\"\nBytes=\xE9\x01\xFF\n[broken\nStill=first\n"
                                        "[Second]\nSound=3\n[first]\nLate=1\n[a]b]\nLast=end");
  constexpr std::pair<const char*, const char*> kFirst[] = {
      {"Sound", "<1>"},           {" SOUND ", "<1>"},      {"Splash", "<two words>"}, {"Empty", "<>"},
      {"Equals", "<a=b>"},        {"no value", "missing"}, {"Double", "< x >"},       {"Single", "<y>"},
      {"Twice", "<\"z\">"},       {"Half", "<\"h>"},       {"Mixed", "<'m\">"},       {"Lone", "<\">"},
      {"Bytes", "<\xE9\x01\xFF>"}};
  for (const auto& [key, value] : kFirst) EXPECT_EQ(Value(path, "fIRST", key), value) << key;
  EXPECT_EQ(Value(path, "First", "Still"), "<first>") << "a broken line begins no section";
  EXPECT_EQ(Value(path, "First", "Late"), "missing") << "the first section of a name counts";
  EXPECT_EQ(Value(path, "Second", "Sound"), "<3>");
  EXPECT_EQ(Value(path, "Second", "Splash"), "missing");
  EXPECT_EQ(Value(path, "a]b", "Last"), "<end>");
  EXPECT_EQ(Value(path, "Third", "Sound"), "missing");
  EXPECT_EQ(Value(folder.Join("none.ini"), "First", "Sound"), "missing");
  EXPECT_EQ(Value(folder.Write("empty.ini", ""), "First", "Sound"), "missing");
}

TEST(ProfileFileTest, ChangesOneLineAndKeepsTheRest) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a.ini",
                                        "; mine\r\n[One]\r\nSound = 1\njunk\r\nEmpty=\r\n\r\n"
                                        "[Two]\nSound=2");
  EXPECT_TRUE(WriteProfileString(path, "one", "SOUND", "0"));
  EXPECT_TRUE(WriteProfileString(path, "One", "Empty", "full"));
  EXPECT_TRUE(WriteProfileString(path, "Two", "sound", "3"));
  EXPECT_TRUE(WriteProfileString(path, "One", "New", "n"));
  EXPECT_EQ(folder.Read("a.ini"),
            "; mine\r\n[One]\r\nSound = 0\njunk\r\nEmpty=full\r\nNew=n\r\n\r\n[Two]\nSound=3");
  EXPECT_TRUE(WriteProfileString(path, "Two", "More", "m"));
  EXPECT_TRUE(WriteProfileString(path, "Three", "Key", ""));
  EXPECT_EQ(folder.Read("a.ini"),
            "; mine\r\n[One]\r\nSound = 0\njunk\r\nEmpty=full\r\nNew=n\r\n\r\n"
            "[Two]\nSound=3\r\nMore=m\r\n[Three]\r\nKey=\r\n");

  EXPECT_TRUE(WriteProfileString(folder.Join("new.ini"), "A", "k", "v"));
  EXPECT_EQ(folder.Read("new.ini"), "[A]\nk=v\n");
}

TEST(ProfileFileTest, AnyValueReadsBack) {
  const TemporaryFolder folder;
  const std::string path = folder.Join("a.ini");
  for (const char* value : {"", " ", "plain", " front", "back\t", "\"quoted\"", "'", "\"", "in\"side", "a;b",
                            "[x]", "a=b", "\xE9\x80", "''", "\" "}) {
    ASSERT_TRUE(WriteProfileString(path, "S", "k", value));
    EXPECT_EQ(Value(path, "S", "k"), '<' + std::string(value) + '>');
  }
  ASSERT_TRUE(WriteProfileString(path, "S", "k", "two\r\nlines\n"));
  EXPECT_EQ(Value(path, "S", "k"), "<two  lines >");
  EXPECT_EQ(folder.Read("a.ini"), "[S]\nk=\"two  lines \"\n");

  // Names that would not be found again, or would break another line.
  const std::string before = folder.Read("a.ini");
  for (const char* key : {"", " ", "a=b", "a\nb", "[a", ";a"}) {
    EXPECT_FALSE(WriteProfileString(path, "S", key, "v")) << key;
  }
  EXPECT_FALSE(WriteProfileString(path, "S]\n[T", "k", "v"));
  EXPECT_EQ(folder.Read("a.ini"), before);
}

TEST(ProfileFileTest, ProcessesThatWriteDifferentKeysLoseNone) {
  const TemporaryFolder folder;
  const std::string path = folder.Join("a.ini");
  constexpr int kRounds = 60;
  const auto writer = [&](const char* section, const char* key) {
    return [&path, section, key](const ChildProcess::Signal&) {
      for (int i = 1; i <= kRounds; ++i) {
        const std::string own = key + std::to_string(i);
        if (!WriteProfileString(path, section, own, "x") ||
            !WriteProfileString(path, section, key, std::to_string(i))) {
          return 1;
        }
      }
      return 0;
    };
  };
  ChildProcess one(writer("Shared", "one"));
  ChildProcess two(writer("Shared", "two"));
  EXPECT_EQ(one.ExitCode(), 0);
  EXPECT_EQ(two.ExitCode(), 0);
  for (const std::string key : {"one", "two"}) {
    EXPECT_EQ(Value(path, "Shared", key), '<' + std::to_string(kRounds) + '>');
    for (int i = 1; i <= kRounds; ++i) {
      EXPECT_EQ(Value(path, "Shared", key + std::to_string(i)), "<x>") << key << i;
    }
  }
}

TEST(ProfileFileTest, FailureLeavesTheOldSettings) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a.ini", "[S]\nk=1\n");
  {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kWrite, 1, ENOSPC);
    EXPECT_FALSE(WriteProfileString(path, "S", "k", "2"));
    faults.Fail(FaultyCalls::kRead, faults.Count(FaultyCalls::kRead) + 1, EIO);
    EXPECT_FALSE(WriteProfileString(path, "S", "k", "2")) << "what cannot be read is not replaced";
    EXPECT_TRUE(WriteProfileString(path, "S", "k", "1")) << "what is there already needs no disk";
    EXPECT_EQ(faults.Count(FaultyCalls::kWrite), 1);
    const platform::ProfileEntry some[] = {{"a", "1"}, {"k", "2"}};
    const platform::ProfileEntry bad[] = {{"b", "1"}, {"b=", "2"}};
    EXPECT_FALSE(WriteProfileStrings(path, "S", bad));
    EXPECT_TRUE(WriteProfileStrings(path, "S", some));
    EXPECT_EQ(faults.Count(FaultyCalls::kWrite), 2) << "several keys are one write";
    EXPECT_EQ(folder.Read("a.ini"), "[S]\nk=2\na=1\n");
    EXPECT_TRUE(WriteProfileString(path, "S", "k", "1"));
  }
  EXPECT_EQ(folder.Read("a.ini"), "[S]\nk=1\na=1\n");
  EXPECT_FALSE(WriteProfileString(folder.Join("none/a.ini"), "S", "k", "2"));

  const std::string huge = folder.Write("huge.ini", "[S]\nk=1\n" + std::string(1 << 20, ';'));
  EXPECT_EQ(Value(huge, "S", "k"), "missing");
  EXPECT_FALSE(WriteProfileString(huge, "S", "k", "2"));
  EXPECT_FALSE(WriteProfileString(path, "S", "k", std::string(1 << 20, 'x')));
  EXPECT_EQ(Value(path, "S", "k"), "<1>");
  ASSERT_TRUE(platform::MakeFolder(folder.Join("sub")));
  EXPECT_FALSE(WriteProfileString(folder.Join("sub"), "S", "k", "2"));
}

TEST(ProfileFileTest, WriterWaitsForAnotherAndGivesUpOnAStuckOne) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a.ini", "[S]\nk=1\n");
  ASSERT_EQ(symlink("a.ini", folder.Join("link.ini").c_str()), 0);
  ChildProcess stuck([&](const ChildProcess::Signal& ready) {
    FaultyCalls faults;
    faults.Before(FaultyCalls::kRename, 1, [&] {
      ready();
      UntilKilled();
    });
    return WriteProfileString(path, "S", "stuck", "1") ? 0 : 1;
  });
  ASSERT_TRUE(stuck.Ready());
  EXPECT_FALSE(WriteProfileString(folder.Join("link.ini"), "S", "k", "2")) << "a link leads to the same lock";
  EXPECT_EQ(Value(path, "S", "k"), "<1>");
  stuck.Kill();
  EXPECT_TRUE(WriteProfileString(folder.Join("link.ini"), "S", "k", "2"));
  EXPECT_EQ(folder.Read("a.ini"), "[S]\nk=2\n");
}

}  // namespace
