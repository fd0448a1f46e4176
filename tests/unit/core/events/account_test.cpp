#include "core/events/account.h"

#include <sys/stat.h>

#include "core/ini_file.h"
#include "gtest/gtest.h"
#include "support/temporary_calendar.h"
#include "unit/core/program_folder.h"

namespace core {
namespace {

unsigned Mode(const std::string& path) {
  struct stat about = {};
  return stat(path.c_str(), &about) == 0 ? about.st_mode & 0777 : 0;
}

TEST(Account, IsCheckedInOrder) {
  const struct {
    ServerAccount account;
    const char* confirmation;
    const char* fault;
  } kCases[] = {{{"n", "e", "pw", "", ""}, "pw", nullptr},
                {{"n", "e", "pw", "", ""}, "Pw", "Incorrect Password"},
                {{"", "", "pw", "", ""}, "other", "Incorrect Password"},
                {{"", "", "", "", ""}, "", "Incorrect Name"},
                {{"n", "", "", "", ""}, "", "Incorrect E-mail"},
                {{"n", "e", "", "", ""}, "", "Incorrect Password"},
                {{"n", "e", "abcdefghij", "", ""}, "abcdefghix", nullptr}};
  for (const auto& one : kCases) EXPECT_STREQ(FaultOfAccount(one.account, one.confirmation), one.fault);
}

TEST(Account, IsKeptForItsUserAlone) {
  const IniFile settings("Daybrix.ini");
  ASSERT_TRUE(settings.WriteString("Zarf Server", "defaultport", "5000"));
  ASSERT_EQ(chmod(settings.Path().c_str(), 0664), 0);
  EXPECT_EQ(ReadServerAccount().port, "5000");
  EXPECT_FALSE(IsServerPasswordSet());
  const std::string longText(300, 't');
  ASSERT_TRUE(StoreServerAccount({longText, "no at sign", "abcdefghij", longText, ""}));
  ASSERT_TRUE(settings.WriteString("Preference", "Splash", "0"));
  EXPECT_EQ(Mode(settings.Path()), 0600U);
  const ServerAccount read = ReadServerAccount();
  EXPECT_EQ(read.name, longText.substr(0, 49));
  EXPECT_EQ(read.server, longText.substr(0, 259));
  EXPECT_EQ(read.password, "abcdefghi");
  EXPECT_EQ(read.port, "5000");
  EXPECT_TRUE(IsServerPasswordSet());
  for (const auto& [typed, right] : {std::pair{"abcdefghi", true}, std::pair{"abcdefghij", true},
                                     std::pair{"abcdefgh", false}, std::pair{"Abcdefghi", false}}) {
    EXPECT_EQ(IsServerPassword(typed), right) << typed;
  }
}

TEST(Account, StampsCalendarsOfTheDefaultOwner) {
  tests::TemporaryCalendar calendar({"own", "", "read"});
  const IniFile settings("Daybrix.ini");
  ASSERT_TRUE(settings.WriteString("eServer", "server", "events.example"));
  ASSERT_TRUE(settings.WriteString("eServer", "port", "4711"));
  EXPECT_EQ(CheckMaySetUp(calendar.file), CommandResult::kDone);
  EXPECT_EQ(CheckMaySetUp(RecordFile(calendar.Path(), "read")), CommandResult::kReader);
  std::string expected = calendar.Bytes();
  expected.replace(12 + 486, 14, "events.example").replace(12 + 746, 4, "4711");
  EXPECT_EQ(StampServerAddress(calendar.file), CommandResult::kDone);
  EXPECT_EQ(calendar.Bytes(), expected);

  ASSERT_TRUE(calendar.file.UpdateHeaderBlock([](HeaderBlock& block) {
    WriteText(block.ownerIdentity.userName, "Nora");
    WriteText(block.serverPort, "1");
  }));
  const std::string theirs = calendar.Bytes();
  EXPECT_EQ(CheckMaySetUp(calendar.file), CommandResult::kReader);
  EXPECT_EQ(StampServerAddress(calendar.file), CommandResult::kDone);
  EXPECT_EQ(calendar.Bytes(), theirs);
}

}  // namespace
}  // namespace core
