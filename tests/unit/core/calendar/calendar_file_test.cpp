#include "core/calendar/calendar_file.h"

#include <sys/stat.h>

#include <climits>
#include <filesystem>

#include "core/calendar/appointment_commands.h"
#include "core/calendar/calendar_session.h"
#include "core/ini_file.h"
#include "core/store/file_messages.h"
#include "core/store/file_passwords.h"
#include "core/time_texts.h"
#include "gtest/gtest.h"
#include "platform/system/program_folder.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"
#include "unit/core/program_folder.h"

namespace core {
namespace {

using tests::FaultyCalls;
using tests::ProgramFolder;
using tests::TemporaryCalendar;

// Every test begins with an empty program folder.
class CalendarFile : public testing::Test {
 protected:
  CalendarFile() {
    for (const auto& entry : std::filesystem::directory_iterator(ProgramFolder().Path())) {
      std::filesystem::remove_all(entry.path());
    }
  }
};

class Settings : public CalendarFile {};

PasswordPrompt Types(const std::string& text) {
  return [text](const std::string&, std::string& password) {
    password = text;
    return true;
  };
}

bool MustNotAsk(const std::string& path, std::string&) {
  ADD_FAILURE() << "asked for the password of " << path;
  return false;
}

TEST_F(CalendarFile, FirstStartCreatesTheDefaultFile) {
  const StartupChoice choice = ChooseStartupFile("", MustNotAsk);
  const std::string expected = ProgramFolder().Join("works/" + platform::ExecutableBaseName() + ".cld");
  ASSERT_TRUE(choice.chosen && choice.withExamples);
  EXPECT_EQ(choice.path, expected);  // the test program's name is lower case
  EXPECT_EQ(choice.password + choice.message, "");
  std::string value;
  EXPECT_TRUE(IniFile().ReadString("Preference", "DefaulFile", value));
  EXPECT_EQ(value, expected);
  EXPECT_TRUE(IniFile().ReadString("Preference", "RecordExample", value));
  EXPECT_EQ(value, "1");
  EXPECT_FALSE(std::filesystem::exists(expected));

  // The settings name a file that is not there.
  EXPECT_FALSE(ChooseStartupFile("", MustNotAsk).chosen);
  const OpenedCalendar opened = OpenCalendarFile(choice.path, choice.password, choice.withExamples);
  ASSERT_NE(opened.file, nullptr);
  HeaderBlock header;
  ASSERT_TRUE(opened.file->ReadHeaderBlock(header));
  EXPECT_EQ(tests::Value(header.changeCounter), 13U);
  EXPECT_EQ(opened.file->SlotsEnd(), 2625 + 3 * 2627);
  const StartupChoice again = ChooseStartupFile("", MustNotAsk);
  EXPECT_TRUE(again.chosen);
  EXPECT_EQ(again.path, expected);
  EXPECT_FALSE(again.withExamples);

  // Forgotten settings, but a file at the default path: the user decides.
  EXPECT_TRUE(IniFile().WriteString("Preference", "DefaulFile", ""));
  EXPECT_FALSE(ChooseStartupFile("", MustNotAsk).chosen);
  EXPECT_FALSE(IniFile().ReadString("Preference", "DefaulFile", value));
}

TEST_F(CalendarFile, PasswordsAtTheStart) {
  TemporaryCalendar guarded({"OwnerPw1", "Assist2", "Read3"});
  for (const char* password : {"OwnerPw1", "Assist2", "Read3", "", "ownerpw1", "OwnerPw1 "}) {
    const StartupChoice choice = ChooseStartupFile(guarded.Path(), Types(password));
    EXPECT_EQ(choice.message, choice.chosen ? "" : "Can't open this file. Incorrect password.");
    EXPECT_EQ(choice.chosen, password[0] == 'A' || password[0] == 'R' || password == std::string("OwnerPw1"));
    EXPECT_EQ(choice.password, choice.chosen ? password : "");
  }
  EXPECT_EQ(tests::Value(guarded.Header().openCount), 1U);  // asking leaves no trace
  TemporaryCalendar withoutOwner({"", "Assist2", "Read3"});
  EXPECT_TRUE(ChooseStartupFile(withoutOwner.Path(), MustNotAsk).chosen);
}

TEST_F(CalendarFile, DamagedFileIsNamedAndNotChosen) {
  const std::string path = ProgramFolder().Write("broken.cld", "nonsense");
  const StartupChoice choice = ChooseStartupFile(path, MustNotAsk);
  EXPECT_FALSE(choice.chosen);
  EXPECT_EQ(choice.message, "Can't open \"" + path + "\".\r\nThe file is incomplete.");
  const OpenedCalendar opened = OpenCalendarFile(path, "", true);
  EXPECT_EQ(opened.file, nullptr);
  EXPECT_EQ(opened.message, choice.message);
  EXPECT_EQ(ProgramFolder().Read("broken.cld"), "nonsense");

  const std::string noise = ProgramFolder().Write("noise.cld", std::string(9000, '\x7e'));
  for (const auto& [none, why] : {std::pair{ProgramFolder().Path(), "It is a folder."},
                                  std::pair{noise, "It is not a file of this program"}}) {
    EXPECT_NE(OpenCalendarFile(none, "", false).message.find(why), std::string::npos) << why;
  }
  HeaderBlock header;
  InitHeaderBlock(header, "Nameleaf", "Nameleaf", 1);
  const std::string contacts = ProgramFolder().Join("contacts.cld");
  ASSERT_TRUE(RecordFile(contacts, "").Create(header, DefaultCategories(), 859));
  EXPECT_EQ(OpenCalendarFile(contacts, "", false).message,
            "Can't open \"" + contacts + "\".\r\nIt is not a calendar.");
  for (int error = 1; error <= static_cast<int>(OpenError::kFailed); ++error) {
    EXPECT_NE(DescribeOpenError("x", static_cast<OpenError>(error)), "Can't open \"x\".\r\n") << error;
  }
}

// Counts what a session asks to be looked after.
class Troubles final : public SessionListener {
 public:
  explicit Troubles(CalendarSession& watched) : session(watched) { session.AddListener(*this); }
  ~Troubles() { session.RemoveListener(*this); }
  void OnSessionChange(SessionChange change) override { count += change == SessionChange::kTrouble ? 1 : 0; }
  int count = 0;

 private:
  CalendarSession& session;
};

TEST_F(CalendarFile, WhatMayNotBeWrittenIsOpenAsForAReaderUntilItMay) {
  // Answers the last step that came out as it should.
  const int steps = tests::RunUnprivileged([] {
    TemporaryCalendar other;
    other.Add(tests::Entry("seen"));
    other.Add(tests::Entry("hidden").Confidential());
    chmod(other.Path().c_str(), 0444);
    const std::string before = other.Bytes();
    CalendarSession session;
    Troubles troubles(session);
    std::string message;
    if (!session.Open(other.Path(), "", false, message) || message != OpenAsReaderText(other.Path()))
      return 0;
    const auto subjects = [&] {
      return tests::Subjects(*session.File(), tests::AllRecords(*session.File()));
    };
    if (subjects() != std::vector<std::string>{"seen"}) return 1;
    FilePasswords passwords;
    EditLock lock(*session.File());
    if (AddAppointment(*session.File(), tests::Entry("mine").appointment) != CommandResult::kReader ||
        lock.Take(tests::AllRecords(*session.File()).KeyAt(0)) != CommandResult::kReader ||
        ReadPasswords(*session.File(), passwords) != CommandResult::kReader ||
        session.File()->UpdateHeaderBlock([](HeaderBlock& header) { header.openCount = 9; }) ||
        !SaveCopy(*session.File(), other.Folder() + "/copy.cld").clean || other.Bytes() != before) {
      return 2;
    }
    other.Add(tests::Entry("later"));
    FileWatch::OfProcess().Look();
    if (subjects().size() != 2 || troubles.count != 0 || !session.LookAfterFile().empty()) return 3;
    chmod(other.Path().c_str(), 0644);
    FileWatch::OfProcess().Look();
    if (troubles.count != 1 || !session.LookAfterFile().empty() || subjects().size() != 3) return 4;
    const CommandResult added = AddAppointment(*session.File(), tests::Entry("mine").appointment);
    FileWatch::OfProcess().Look();
    return added == CommandResult::kDone && troubles.count == 1 ? 6 : 5;
  });
  EXPECT_EQ(steps, 6);
}

// Another copy creates the calendar, and adds to it, after this one found it missing.
TEST_F(CalendarFile, CopiesThatCreateAtOnceShareOneFile) {
  const std::string path = ProgramFolder().Join("new.cld");
  const auto openAndAdd = [&](const char* subject) {
    const OpenedCalendar opened = OpenCalendarFile(path, "", true);
    const tests::Entry entry(subject);
    return opened.file != nullptr && opened.file->AddRecord(&entry.appointment) == Result::kDone;
  };
  {
    FaultyCalls faults;
    faults.Before(FaultyCalls::kRenameNew, 1, [&] {
      tests::ChildProcess other([&](const auto&) { return openAndAdd("theirs") ? 0 : 1; });
      EXPECT_EQ(other.ExitCode(), 0);
    });
    EXPECT_TRUE(openAndAdd("ours"));
  }
  const RecordFile file(path, "");
  const std::vector<std::string> subjects = tests::Subjects(file, tests::AllRecords(file));
  ASSERT_EQ(subjects.size(), 5U);  // the examples of one copy, and both additions
  EXPECT_EQ(subjects[3], "theirs");
  EXPECT_EQ(subjects[4], "ours");
  EXPECT_EQ(ProgramFolder().Count(), 1U);
}

TEST_F(Settings, ValuesAndNumbers) {
  const IniFile file("Daybrix.ini");
  EXPECT_EQ(file.Path(), ProgramFolder().Join("Daybrix.ini"));
  EXPECT_EQ(IniFile().Path(), ProgramFolder().Join(platform::ExecutableBaseName() + ".ini"));
  std::string text = "old";
  std::int32_t number = 77;
  EXPECT_FALSE(file.ReadString("Preference", "Sound", text) || file.ReadInt("Preference", "Sound", number));
  EXPECT_EQ(text, "");
  EXPECT_EQ(number, 77);
  EXPECT_TRUE(file.WriteString("Preference", "Empty", ""));
  EXPECT_FALSE(file.ReadString("Preference", "Empty", text));  // an empty value counts as missing
  EXPECT_TRUE(file.WriteInt("Preference", "WPLeft", INT_MIN));
  EXPECT_TRUE(IniFile::FromPath(file.Path()).ReadInt("preference", "wpleft", number));
  EXPECT_EQ(number, INT_MIN);

  const struct {
    const char* text;
    std::int32_t number;
  } kNumbers[] = {{"42", 42},
                  {"-7x", -7},
                  {"+3 4", 3},
                  {"none", 0},
                  {"- 5", 0},
                  {"2147483647", INT_MAX},
                  {"99999999999999999999", INT_MAX},
                  {"-99999999999999999999", INT_MIN}};
  for (const auto& [written, expected] : kNumbers) {
    EXPECT_TRUE(file.WriteString("Preference", "Number", written));
    EXPECT_TRUE(file.ReadInt("Preference", "Number", number));
    EXPECT_EQ(number, expected) << written;
  }
}

TEST_F(Settings, NetworkRefreshIsHeldInItsRange) {
  EXPECT_EQ(NetworkRefreshSeconds(), 2);
  for (const auto& [written, seconds] : {std::pair{"30", 30}, std::pair{"90", 60}, std::pair{"0", 1},
                                         std::pair{"text", 1}, std::pair{"", 2}}) {
    EXPECT_TRUE(IniFile("Daybrix.ini").WriteString("Preference", "NetworkRefresh", written));
    EXPECT_EQ(NetworkRefreshSeconds(), seconds) << written;
  }
}

TEST_F(Settings, ClockModeIsReadOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        EXPECT_TRUE(IniFile("Daybrix.ini").WriteString("intl", "iTime", "0"));
        const bool twelve = GetClockMode() == ClockMode::k12Hours;
        EXPECT_TRUE(IniFile("Daybrix.ini").WriteString("intl", "iTime", "1"));
        std::_Exit(twelve && GetClockMode() == ClockMode::k12Hours ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace core
