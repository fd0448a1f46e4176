// The commands of the File menu that deal with calendar files, and the start of the program without one.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "calendar/dialogs/new_file_dialog.h"
#include "calendar/dialogs/password_dialogs.h"
#include "core/ini_file.h"
#include "framework/password_dialog.h"
#include "platform/desktop/message_box.h"
#include "platform/system/file.h"
#include "shell/commands.h"
#include "support/calendar_program.h"
#include "support/child_process.h"
#include "support/source_folder.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

constexpr const char* kWrongPassword = "Can't open this file. Incorrect password.";
constexpr const char* kNoPermission = "You don't have permission for this action.";
constexpr const char* kNoAccess = "\".\r\nAccess has been denied";

using Passwords = std::array<std::string, 3>;

// A program whose settings are empty, on a calendar that the test has open as well.
class FileCommands : public testing::Test {
 protected:
  FileCommands() : FileCommands(TemporaryCalendar::Passwords{}) {}
  explicit FileCommands(const TemporaryCalendar::Passwords& passwords) : calendar(passwords) {
    for (const auto& entry : std::filesystem::directory_iterator(CalendarProgramFolder())) {
      if (entry.path().filename() != "Daybrix.ini") std::filesystem::remove_all(entry.path());
    }
    calendar.Add(Entry("Ours").On(14, 3, 2004));
  }

  static std::string Works(const std::string& name) { return CalendarProgramFolder() + "/works/" + name; }
  static std::string Setting(const char* key) {
    std::string value;
    core::IniFile().ReadString("Preference", key, value);
    return value;
  }
  static std::string Bytes(const std::string& path) {
    std::string bytes;
    platform::ReadWholeFile(path, 1 << 20, bytes);
    return bytes;
  }
  static std::uint32_t OpenCount(const std::string& path) {
    core::HeaderBlock header;
    std::memcpy(&header, Bytes(path).substr(core::kHeaderBlockOffset).data(), sizeof header);
    return header.openCount;
  }
  // Gives a command, Open by its key, that asks for a file and perhaps for its password and, when a text is
  // given, ends in a box with it.
  void CommandOn(unsigned id, const std::string& path, const std::string& box = "",
                 const char* password = nullptr) {
    driver.ChooseFile(path);
    if (password != nullptr) EnterPassword(password);
    if (!box.empty()) driver.AnswerMessageBox(box, IDOK);
    if (id == ID_FILE_OPEN) driver.Press(program.List(), 'O', MK_CONTROL);
    if (id != ID_FILE_OPEN) Command(id);
  }
  std::string Sample() const {
    std::string copy = folder.Join("guarded.cld");
    std::filesystem::copy_file(tests::SourceFolder() + "/tests/data/guarded.cld", copy);
    return copy;
  }

  void Command(unsigned id) { SendMessage(program.Frame(), WM_COMMAND, id, 0); }
  void OpenFile(const std::string& path, const char* password = nullptr) {
    CommandOn(ID_FILE_OPEN, path, "", password);
  }
  // An empty one cancels.
  void EnterPassword(const std::string& password) {
    driver.WhenDialogOpens([this, password](HWND dialog) {
      EXPECT_FALSE(Enabled(dialog, IDOK));
      driver.TypeInto(dialog, PasswordDialog::kPasswordEdit, password);
      driver.Press(dialog, password.empty() ? VK_ESCAPE : VK_RETURN);
    });
  }
  // Types into the dialog for three passwords that opens next; `shown` is what it is to begin with.
  void EnterPasswords(const Passwords& shown, const Passwords& typed, int answer = IDOK) {
    driver.WhenDialogOpens([this, shown, typed, answer](HWND dialog) {
      for (int i = 0; i < 3; ++i) {
        const std::string& text = typed[static_cast<std::size_t>(i)];
        EXPECT_EQ(TextOf(dialog, NetworkPasswordsDialog::kOwnerEdit + i), shown[static_cast<std::size_t>(i)]);
        driver.TypeInto(dialog, NetworkPasswordsDialog::kOwnerEdit + i, text);
        if (text.empty()) driver.Press(dialog, VK_DELETE);
      }
      driver.ClickControl(dialog, answer);
    });
  }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  TemporaryCalendar calendar;
  TemporaryFolder folder;
};

TEST_F(FileCommands, NewMakesACalendarOnceItsNameIsGood) {
  program.Run(calendar.Path(), [&] {
    const std::string taken = folder.Write("taken.cld", "not ours to touch");
    driver.WhenDialogOpens([&](HWND dialog) {
      EXPECT_EQ(GetWindowText(dialog), "Create New File");
      EXPECT_EQ(GetDlgItemPath(dialog, NewFileDialog::kFolderEdit), CalendarProgramFolder() + "/works");
      EXPECT_TRUE(IsDlgButtonChecked(dialog, NewFileDialog::kExamplesBox));
      EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, NewFileDialog::kNoteLine)));
      EXPECT_FALSE(Enabled(dialog, IDOK));
      driver.TypeInto(dialog, NewFileDialog::kNameEdit, "taken");
      driver.TypeInto(dialog, NewFileDialog::kFolderEdit, folder.Path() + "//.");
      driver.AnswerMessageBox("This file alredy exists.\r\nPlease selact another file name.", IDOK);
      driver.Press(dialog, VK_RETURN);
      for (const std::string& bad : {std::string("no/such/folder"), std::string(255, 'n')}) {
        driver.TypeInto(dialog, NewFileDialog::kNameEdit, bad);
        driver.AnswerMessageBox("Error in creating a file.", IDOK);
        driver.ClickControl(dialog, IDOK);
      }
      EXPECT_EQ(Setting("RecordExample"), "");
      driver.ClickControl(dialog, NewFileDialog::kExamplesBox);
      driver.TypeInto(dialog, NewFileDialog::kNameEdit, "Team.2");
      driver.ClickControl(dialog, IDOK);
    });
    driver.Press(program.List(), 'N', MK_CONTROL);
    const std::string made = folder.Join("Team.2.cld");
    EXPECT_EQ(program.File()->Path(), made);
    EXPECT_EQ(Setting("DefaulFile"), made);
    EXPECT_EQ(Setting("RecordExample"), "0");
    EXPECT_EQ(Bytes(made).size(), 2625U);
    EXPECT_EQ(OpenCount(made), 1U);
    EXPECT_EQ(Bytes(taken), "not ours to touch");
    EXPECT_EQ(+calendar.Header().openCount, 1U) << "the test's own";
    EXPECT_EQ(folder.Count(), 2U);
    EXPECT_EQ(GetFocus(), program.List());

    driver.WhenDialogOpens([&](HWND dialog) {
      driver.ClickControl(dialog, NewFileDialog::kExamplesBox);
      driver.Press(dialog, VK_ESCAPE);
    });
    Command(ID_FILE_NEW);
    EXPECT_EQ(Setting("RecordExample"), "0");
  });
}

// A folder whose name the code page lacks, chosen by hand, and a name typed with it.
TEST_F(FileCommands, AnyPathWillDo) {
  const std::string greek = folder.Join("Ημερολόγιο");
  ASSERT_TRUE(platform::MakeFolder(greek));
  program.Run(calendar.Path(), [&] {
    driver.WhenDialogOpens([&](HWND dialog) {
      driver.ChooseFile(greek);
      driver.ClickControl(dialog, NewFileDialog::kBrowseButton);
      EXPECT_EQ(GetDlgItemPath(dialog, NewFileDialog::kFolderEdit), greek);
      driver.TypeInto(dialog, NewFileDialog::kNameEdit, "Caf\xE9");
      driver.ClickControl(dialog, IDOK);
    });
    Command(ID_FILE_NEW);
    EXPECT_EQ(program.File()->Path(), greek + "/Café.cld");
    EXPECT_EQ(program.Subjects().size(), 3U);
    OpenFile(calendar.Path());
    EXPECT_EQ(program.Subjects(), std::vector<std::string>{"Ours"});
    OpenFile(greek + "/Café.cld");
    EXPECT_EQ(program.Subjects().size(), 3U);
  });
  program.Run("", [&] { EXPECT_EQ(program.File()->Path(), greek + "/Café.cld"); });
}

TEST_F(FileCommands, OpenLeavesTheOldFileUnlessTheNewOneOpens) {
  const std::string guarded = Sample();
  const std::string letter = folder.Write("letter.cld", "Dear reader");
  program.Run(calendar.Path(), [&] {
    for (const char* wrong : {"read3", ""}) CommandOn(ID_FILE_OPEN, guarded, kWrongPassword, wrong);
    EXPECT_EQ(driver.LastFileKinds(), std::vector<std::string>{"Tempoline file (*.cld)"});
    CommandOn(ID_FILE_OPEN, letter, letter + "\".\r\nThe file is incomplete.");
    CommandOn(ID_FILE_OPEN, "");
    EXPECT_EQ(program.Subjects(), std::vector<std::string>{"Ours"});
    EXPECT_EQ(Setting("DefaulFile"), "");
    EXPECT_EQ(OpenCount(guarded), 2U) << "only looked at";

    OpenFile(guarded, "Read3");
    EXPECT_EQ(program.File()->Path(), guarded);
    EXPECT_EQ(program.File()->AccessLevel(), core::Access::kReader);
    EXPECT_EQ(Setting("DefaulFile"), guarded);
    EXPECT_EQ(OpenCount(guarded), 1U) << "a file left open by a dead program is brought in order";
    EXPECT_EQ(+calendar.Header().openCount, 1U) << "the test's own";
    OpenFile(guarded, "OwnerPw1");  // the open file itself
    EXPECT_EQ(program.File()->AccessLevel(), core::Access::kOwner);
    EXPECT_EQ(OpenCount(guarded), 1U);
  });
  EXPECT_EQ(OpenCount(guarded), 0U);
}

TEST_F(FileCommands, TheOwnerSetsThePasswordsTypingThemTwice) {
  const std::string twenty = "abcdefghij0123456789";
  program.Run(calendar.Path(), [&] {
    const std::string opened = calendar.Bytes();
    EnterPasswords({}, {"x", "y", "z"}, IDCANCEL);
    Command(ID_PASSWORDS);
    EnterPasswords({}, {"x", "y", "z"});
    EnterPasswords({}, {"x", "y", "z"}, IDCANCEL);
    Command(ID_PASSWORDS);
    EXPECT_EQ(calendar.Bytes(), opened);

    const Passwords set = {twenty, "caf\xE9", ""};
    EnterPasswords({}, set);
    EnterPasswords({}, {twenty, "Caf\xE9", ""});
    driver.AnswerMessageBox("You did not enter the same password. Try again.", IDOK);
    EnterPasswords({}, set);
    Command(ID_PASSWORDS);
    EXPECT_EQ(program.File()->AccessLevel(), core::Access::kOwner);
    std::string expected = opened;
    expected.replace(12 + 217, 19, twenty.substr(0, 19)).replace(12 + 237, 4, "caf\xE9");
    EXPECT_EQ(calendar.Bytes(), expected);

    OpenFile(calendar.Path(), "caf\xE9");
    EXPECT_EQ(program.File()->AccessLevel(), core::Access::kAssistant);
    driver.AnswerMessageBox(kNoPermission, IDOK);
    Command(ID_PASSWORDS);
    EXPECT_EQ(calendar.Bytes(), expected);
    OpenFile(calendar.Path(), twenty.substr(0, 19).c_str());
    EnterPasswords({twenty.substr(0, 19), "caf\xE9", ""}, {});
    EnterPasswords({}, {});
    Command(ID_PASSWORDS);
    EXPECT_EQ(calendar.Bytes(), opened) << "empty ones are taken away";
  });
}

TEST_F(FileCommands, SaveAsWritesACompactedCopyBesideTheOpenFile) {
  const std::int32_t gone = calendar.Add(Entry("Gone"));
  ASSERT_EQ(calendar.file.DeleteRecord(gone), core::Result::kDone);
  const auto saveAs = [&](const std::string& target, const std::string& box = "") {
    driver.ChooseFile(target);
    if (platform::FileExists(target)) driver.AnswerMessageBox("already exists", IDYES);
    if (!box.empty()) driver.AnswerMessageBox(box, IDOK);
    Command(ID_FILE_SAVE_AS);
  };
  program.Run(calendar.Path(), [&] {
    const std::string opened = calendar.Bytes();
    const std::string copy = folder.Join("copy.cld");
    saveAs(folder.Join("copy"));
    EXPECT_EQ(Bytes(copy).size(), 2625U + 2627U);
    EXPECT_EQ(program.File()->Path(), calendar.Path());
    EXPECT_EQ(Setting("DefaulFile"), "");

    folder.Write("copy.cld", "replaced");
    saveAs(copy);
    EXPECT_EQ(Bytes(copy).size(), 2625U + 2627U);

    saveAs(calendar.Path());
    {
      const core::RecordFile other(copy, "");
      saveAs(copy, copy + kNoAccess);
    }
    saveAs("");
    EXPECT_EQ(calendar.Bytes(), opened);
    EXPECT_EQ(folder.Count(), 1U);

    std::filesystem::remove(calendar.Path());
    saveAs(calendar.Path());
    EXPECT_EQ(Bytes(calendar.Path()).size(), 2625U + 2627U) << "a file that lost its name gets it back";
  });
}

TEST_F(FileCommands, CompactTakesAFileThatNobodyHasOpen) {
  const std::string guarded = Sample();
  program.Run(calendar.Path(), [&] {
    CommandOn(ID_COMPACT, calendar.Path(), calendar.Path() + kNoAccess);
    CommandOn(ID_COMPACT, guarded);
    EXPECT_EQ(OpenCount(guarded), 0U);
    const std::string text = folder.Write("text.cld", "no calendar");
    CommandOn(ID_COMPACT, text, text);
    EXPECT_EQ(Bytes(text), "no calendar");
  });
}

TEST_F(FileCommands, OneAtATimeAndTheFrameWaitsForItsEnd) {
  bool ended = false;
  program.Run(calendar.Path(), [&] {
    const HWND frame = program.Frame();
    driver.WhenDialogOpens([&](HWND dialog) {
      PostMessage(frame, WM_COMMAND, ID_FILE_OPEN, 0);
      PostMessage(frame, WM_COMMAND, ID_ITEM_NEW, 0);
      PostMessage(frame, WM_CLOSE, 0, 0);
      driver.ProcessEvents();
      EXPECT_TRUE(IsWindow(frame));
      driver.ClickControl(dialog, IDCANCEL);
    });
    Command(ID_FILE_NEW);
    driver.WaitUntil([&] { return !IsWindow(frame); });
    ended = true;
  });
  EXPECT_TRUE(ended);
}

class StartWithoutAFile : public FileCommands {
 protected:
  StartWithoutAFile() : FileCommands({"Owner", "", ""}) {}

  // The dialog that makes a calendar comes next; it is left by Escape, or with a name.
  void ExpectNew(const std::string& note, const std::string& name = "") {
    driver.WhenDialogOpens([this, note, name](HWND dialog) {
      EXPECT_EQ(GetWindowText(dialog), "Create New File");
      EXPECT_EQ(GetDlgItemPath(dialog, NewFileDialog::kNoteLine), note);
      driver.TypeInto(dialog, NewFileDialog::kNameEdit, name);
      driver.Press(dialog, name.empty() ? VK_ESCAPE : VK_RETURN);
    });
  }
  // True when the program came to its message loop with a calendar.
  bool Starts(const std::string& file) {
    bool started = false;
    EXPECT_EQ(program.Run(file, [&] { started = IsWindow(program.Frame()) && program.File() != nullptr; }),
              0);
    return started;
  }
  static void SetDefault(const std::string& path) {
    EXPECT_TRUE(core::IniFile().WriteString("Preference", "DefaulFile", path));
  }
};

TEST_F(StartWithoutAFile, TheUserMakesOneOrTheProgramEnds) {
  EnterPassword("owner");
  driver.AnswerMessageBox(kWrongPassword, IDOK);
  ExpectNew("");
  EXPECT_FALSE(Starts(calendar.Path()));
  EXPECT_EQ(Setting("DefaulFile"), "");
  EnterPassword("Owner");
  EXPECT_TRUE(Starts(calendar.Path()));

  SetDefault(folder.Join("gone.cld"));
  ExpectNew("The calendar \"" + folder.Join("gone.cld") + "\" does not exist.");
  EXPECT_FALSE(Starts(""));
  EXPECT_EQ(Setting("DefaulFile"), folder.Join("gone.cld"));
  ExpectNew("The calendar \"" + folder.Join("gone.cld") + "\" does not exist.", "mine");
  EXPECT_TRUE(Starts(""));
  EXPECT_EQ(Setting("DefaulFile"), Works("mine.cld"));
  EXPECT_TRUE(Starts(""));

  // A calendar of the first start that the settings have forgotten.
  std::filesystem::remove(Works("mine.cld"));
  SetDefault("");
  EXPECT_TRUE(Starts(""));
  const std::string first = Setting("DefaulFile");
  SetDefault("");
  ExpectNew("The calendar \"" + first + "\" exists already.");
  EXPECT_FALSE(Starts(""));
}

}  // namespace
}  // namespace tests
