// Sounds, files to be chosen, help, and other programs of the desktop.
#include "framework/services.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "framework/drawing.h"
#include "framework/menu_entry.h"
#include "framework/shell_services.h"
#include "platform/desktop/message_box.h"
#include "platform/system/file.h"
#include "platform/system/program_folder.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/recording_dc.h"
#include "support/temporary_folder.h"
#include "support/windows.h"

namespace tests {
namespace {

// The program's folder in this process.
const TemporaryFolder& Folder() {
  static const TemporaryFolder folder;
  return folder;
}

class Services : public testing::Test {
 protected:
  // Programs of the desktop are found in a folder where each is a script that writes down its arguments.
  Services() {
    setenv("DAYBRIX_FOLDER", Folder().Path().c_str(), 1);
    EXPECT_EQ(platform::ProgramFolder(), Folder().Path());
    setenv("PATH", programs.Path().c_str(), 1);
  }
  void AddProgram(const std::string& name) {
    const std::string script = "#!/bin/sh\nfor word; do echo \"$word\"; done >>'" +
                               programs.Join(name + ".log") + "'\necho . >>'" + programs.Join(name + ".log") +
                               "'\n";
    chmod(programs.Write(name, script).c_str(), 0755);
  }
  // What a program was called with, one word a line; waits for it.
  std::string Called(const std::string& name) {
    const std::string log = name + ".log";
    driver.WaitUntil([&] { return programs.Read(log).ends_with(".\n"); });
    const std::string text = programs.Read(log);
    unlink(programs.Join(log).c_str());
    return text.size() < 2 ? text : text.substr(0, text.size() - 2);
  }
  bool WasCalled(const std::string& name) { return platform::FileExists(programs.Join(name + ".log")); }

  const TemporaryFolder programs;
  DesktopDriver driver;
};

// What opens over a window stays on that window's screen.
TEST(Screens, ADialogIsPlacedOnItsOwnersScreen) {
  const TemporaryFolder folder;
  const std::string screen = R"("y": 0, "width": 800, "height": 700, "logicalDpi": 96, "dpr": 1})";
  const std::string screens =
      folder.Write("screens.json", R"({"screens": [{"name": "left", "x": 0, )" + screen +
                                       R"(, {"name": "right", "x": 800, )" + screen + "]}");
  setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screens).c_str(), 1);
  const DesktopDriver driver;
  if (AllScreensRect() != RECT{0, 0, 1600, 700}) GTEST_SKIP() << "started with one screen by another test";
  const HostWindow owner({1500, 650, 1580, 690});
  const HostWindow dialog({0, 0, 300, 200});
  CenterOver(owner.Handle(), dialog.Handle());
  EXPECT_EQ(PlaceOf(dialog.Handle()), (RECT{1300, 500, 1600, 700}));
  EXPECT_EQ(DesktopRect(owner.Handle()), (RECT{800, 0, 1600, 700}));
  CenterOver(nullptr, dialog.Handle());
  EXPECT_EQ(PlaceOf(dialog.Handle()), (RECT{250, 250, 550, 450})) << "the middle of the first screen";
}

TEST_F(Services, SoundsAreSilentWhileSoundIsOffButForTones) {
  Folder().Write("add.wav", std::string("RIFF\4\0\0\0WAVE", 12));
  SetSoundEnabled(0);
  PlaySound("add.wav");
  EXPECT_FALSE(platform::FileExists(Folder().Join("add.wav.played")));
  SetSoundEnabled(1);
  PlaySound("missing.wav");
  EXPECT_FALSE(platform::FileExists(Folder().Join("missing.wav.played")));
  PlaySound("add.wav");
  EXPECT_TRUE(platform::FileExists(Folder().Join("add.wav.played")));

  SetSoundEnabled(0);  // for which a tone does not ask
  const std::string tone = Folder().Write("tone.wav", std::string("RIFF\4\0\0\0WAVE", 12));
  EXPECT_TRUE(PlayTone(tone));
  EXPECT_TRUE(platform::FileExists(tone + ".played"));
  const std::string text = Folder().Write("text.wav", "RIFF is not enough");
  const std::string pipe = Folder().Join("pipe.wav");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& none : {text, pipe, Folder().Path(), Folder().Join("none.wav"), std::string()}) {
    EXPECT_FALSE(PlayTone(none)) << none;
  }
  SetSoundEnabled(1);
}

TEST_F(Services, FiltersAreReadWithTheirOwnSeparator) {
  using Filters = std::vector<FileFilter>;
  EXPECT_EQ(ParseFileFilter("Sounds#*.wav;*.mp3#All | files#*.*##"),
            (Filters{{"Sounds", {"*.wav", "*.mp3"}}, {"All | files", {"*.*"}}}));
  for (const char* incomplete : {"", "|", "||", "Text||", "|*.txt||"}) {
    EXPECT_TRUE(ParseFileFilter(incomplete).empty()) << incomplete;
  }
}

TEST_F(Services, AFileToOpenNeedsNoDotAndAChoiceOfNoneChangesNothing) {
  const HostWindow host;
  const TemporaryFolder folder;
  folder.Write("a.cld", "x");
  std::string path;
  driver.ChooseFile(folder.Join("a.cld"));
  EXPECT_TRUE(
      FileDialog(kFileDialogOpen, "Files (*.cld)|*.cld||", "cld", host.Handle(), path, kInWorksFolder));
  EXPECT_EQ(path, folder.Join("a.cld"));
  EXPECT_TRUE(platform::FileExists(Folder().Join("works")));
  folder.Write("no dot", "x");
  driver.ChooseFile(folder.Join("no dot"));
  EXPECT_TRUE(FileDialog(kFileDialogOpen, "(*.*)|*.*||", "", host.Handle(), path, kInCurrentFolder));
  EXPECT_EQ(driver.LastFileKinds(), (std::vector<std::string>{"(*)"}));
  driver.ChooseFile("");
  EXPECT_FALSE(BrowseFolder(host.Handle(), path));
  driver.ChooseFile("mine");
  EXPECT_TRUE(FileDialog(kFileDialogSave, "(*.cld)|*.cld||", "cld", host.Handle(), path, kInProgramFolder));
  EXPECT_EQ(path, Folder().Join("mine.cld")) << "begins in the program's folder";
}

TEST_F(Services, HelpIsShownByTheDesktopOrSaidToBeMissing) {
  const HostWindow host;
  AddProgram("xdg-open");
  driver.AnswerMessageBox("Help file '" + Folder().Join("Help/calendar.htm") + "'\r\ndoes not exist.", IDOK);
  OpenHelp("calendar.htm", false);
  EXPECT_FALSE(WasCalled("xdg-open"));
  platform::MakeFolder(Folder().Join("Help"));
  Folder().Write("Help/calendar.htm", "<html>");
  OpenHelp("calendar.htm", false);
  EXPECT_EQ(Called("xdg-open"), "file://" + Folder().Join("Help/calendar.htm") + "\n");
}

TEST_F(Services, WhatIsOpenedIsNeverTakenForAnOptionAndAMailAddressForNothingElse) {
  AddProgram("xdg-open");
  const TemporaryFolder folder;
  folder.Write("-v", "x");
  folder.Write("a:b c.txt", "x");
  ASSERT_EQ(chdir(folder.Path().c_str()), 0);
  const std::pair<const char*, std::string> opened[] = {
      {"-v", "file://" + folder.Join("-v")},
      {"a:b c.txt", "file://" + folder.Join("a:b%20c.txt")},
      {"https://example.org/a b?c=d", "https://example.org/a%20b?c=d"},
      {"www.example.org", "https://www.example.org"}};
  for (const auto& [what, called] : opened) {
    ShellOpen(what);
    EXPECT_EQ(Called("xdg-open"), called + "\n") << what;
  }
  for (const char* nothing : {"", "--version", "no such file.txt", "mailto", ":"}) ShellOpen(nothing);
  driver.Wait(100);
  EXPECT_FALSE(WasCalled("xdg-open"));
  ASSERT_EQ(chdir("/"), 0);
  constexpr std::pair<const char*, const char*> kAddresses[] = {
      {"ann@example.org", "mailto:ann@example.org\n"},
      {"a b@example.org?attach=/etc/passwd&cc=x%0A",
       "mailto:a%20b@example.org%3Fattach%3D%2Fetc%2Fpasswd%26cc%3Dx%250A\n"},
      {nullptr, "mailto:\n"}};
  for (const auto& [address, called] : kAddresses) {
    MailTo(address);
    EXPECT_EQ(Called("xdg-open"), called);
  }
}

TEST_F(Services, WhatNothingOpensIsToldOf) {
  HostWindow host;
  driver.AnswerMessageBox("\"no such file.txt\" cannot be opened.", IDOK);
  OpenOrTell(&host, "no such file.txt");
  // The program that was to open it fails only when it runs.
  chmod(programs.Write("xdg-open", "#!/bin/sh\nexit 4\n").c_str(), 0755);
  driver.AnswerMessageBox("\"mailto:ann@example.org\" cannot be opened.", IDOK);
  MailOrTell(&host, "ann@example.org");
  driver.Wait(300);
  platform::MakeFolder(Folder().Join("Help"));
  Folder().Write("Help/page.htm", "x");
  driver.AnswerMessageBox(
      "No program here shows the help. Its pages lie in\r\n\"" + Folder().Join("Help") + "\".", IDOK);
  OpenHelp("page.htm", false);
  driver.Wait(300);
  AddProgram("xdg-open");
  OpenOrTell(&host, "https://example.org");
  EXPECT_EQ(Called("xdg-open"), "https://example.org\n");
}

TEST_F(Services, PrintingGoesToThePrinterOrElseToAProgramThatCan) {
  AddProgram("xdg-open");
  const std::string file = Folder().Write("report.txt", "x");
  ShellPrint(file);
  EXPECT_EQ(Called("xdg-open"), "file://" + file + "\n");
  AddProgram("lp");
  ShellPrint(file);
  EXPECT_EQ(Called("lp"), file + "\n");
  EXPECT_FALSE(WasCalled("xdg-open"));
}

TEST(MenuEntry, IsStaleOnlyIfACloneWroteItForAnotherProgram) {
  const auto stale = [](const std::string& command) {
    return IsStaleMenuEntry("[Desktop Entry]\nType=Application\nExec=" + command + "\nIcon=tempoline\n",
                            "/usr/bin/tempoline");
  };
  EXPECT_TRUE(stale("\"/home/ann/a clone/build/release/bin/tempoline\" %f"));
  EXPECT_TRUE(stale("\"/tempoline\" %f"));
  EXPECT_FALSE(stale("\"/usr/bin/tempoline\" %f")) << "this program";
  EXPECT_FALSE(stale("tempoline %f")) << "an installed one";
  EXPECT_FALSE(stale("env LANG=de_DE.UTF-8 \"/opt/tempoline\" %f")) << "the user's own";
  EXPECT_FALSE(stale("\"/opt/tempoline\" --fresh %f"));
  EXPECT_FALSE(stale("\"/opt/nameleaf\" %f\nComment=\"/opt/tempoline\" %f"));
  EXPECT_FALSE(IsStaleMenuEntry("\nExec=\"/", "/usr/bin/tempoline"));
}

}  // namespace
}  // namespace tests
