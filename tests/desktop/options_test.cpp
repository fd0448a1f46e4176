// General Options, and the splash screen that they switch.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "desktop/shell_fixture.h"
#include "framework/services.h"
#include "platform/system/program_folder.h"
#include "platform/system/program_start.h"
#include "shell/application.h"
#include "shell/main_frame.h"
#include "shell/options_dialog.h"
#include "shell/splash.h"
#include "support/windows.h"

namespace tests {
namespace {

class Options : public ShellTest {
 protected:
  void Open(const std::function<void(HWND)>& act) {
    driver.WhenDialogOpens(act);
    ShowOptionsDialog(owner);
    driver.ProcessEvents();
  }
  static LRESULT Refresh(HWND dialog, UINT message, int value = 0) {
    return SendDlgItemMessage(dialog, OptionsDialog::kRefreshList, message, static_cast<WPARAM>(value), 0);
  }
};

TEST_F(Options, WhatTheyShowAndWriteBack) {
  struct Case {
    const char* written;  // null: no such key
    bool shown;
    const char* after;  // OK
  };
  // A switch is on at start for anything but "0"; here only "1" or nothing shows as on.
  constexpr Case kSwitches[] = {
      {nullptr, true, "1"}, {"1", true, "1"}, {"0", false, "0"}, {"no", false, "0"}, {"01", false, "0"}};
  for (const Case& test : kSwitches) {
    SCOPED_TRACE(test.written != nullptr ? test.written : "missing");
    for (const char* key : {"Sound", "Annimation", "Splash"})
      Set(key, test.written != nullptr ? test.written : "");
    Open([&](HWND dialog) {
      for (const int box :
           {OptionsDialog::kSoundBox, OptionsDialog::kAnimationBox, OptionsDialog::kSplashBox}) {
        EXPECT_EQ(IsDlgButtonChecked(dialog, box), test.shown) << box;
      }
      driver.ClickControl(dialog, IDOK);
    });
    for (const char* key : {"Sound", "Annimation", "Splash"}) EXPECT_EQ(Setting(key), test.after) << key;
    EXPECT_EQ(SoundEnabled(), test.shown);
    EXPECT_EQ(AnimationEnabled(), test.shown);
  }
  constexpr std::tuple<const char*, int, const char*> kTimes[] = {
      {"", 1, "2"},   {"1", 0, "1"},   {"90", 89, "90"},         {"120", 119, "120"}, {"121", -1, "0"},
      {"0", -1, "0"}, {"-5", -1, "0"}, {"-2147483648", -1, "0"}, {"often", -1, "0"},  {" 7 seconds", 6, "7"}};
  for (const auto& [written, line, after] : kTimes) {
    SCOPED_TRACE(written);
    Set("NetworkRefresh", written);
    Open([&, expected = line](HWND dialog) {
      EXPECT_EQ(Refresh(dialog, CB_GETCOUNT), 120);
      EXPECT_EQ(Refresh(dialog, CB_GETCURSEL), expected);
      EXPECT_EQ(TextOf(dialog, OptionsDialog::kRefreshList),
                expected < 0 ? "" : std::to_string(expected + 1) + " sec.");
      driver.ClickControl(dialog, IDOK);
    });
    EXPECT_EQ(Setting("NetworkRefresh"), after);
  }
}

TEST_F(Options, OkTellsTheOtherCopiesAndCancelChangesNothing) {
  Set("Sound", "maybe");
  SetSoundEnabled(1);
  const auto change = [&](HWND dialog) {
    for (const int box : {OptionsDialog::kSoundBox, OptionsDialog::kAnimationBox, OptionsDialog::kSplashBox})
      driver.ClickControl(dialog, box);
    Refresh(dialog, CB_SETCURSEL, 9);
  };
  const std::string before = Folder().Read("Daybrix.ini");
  Open([&](HWND dialog) { change(dialog), driver.Press(dialog, VK_ESCAPE); });
  EXPECT_EQ(Folder().Read("Daybrix.ini"), before);
  EXPECT_TRUE(SoundEnabled());
  EXPECT_TRUE(owner.notices.empty());
  Open([&](HWND dialog) { change(dialog), driver.ClickControl(dialog, IDOK); });
  EXPECT_EQ(Setting("Sound") + Setting("Annimation") + Setting("Splash") + Setting("NetworkRefresh"),
            "10010");
  EXPECT_FALSE(AnimationEnabled());
  // The sender is named: it knows already.
  const NoticedWindow::Notice notice{kNotifySettings, reinterpret_cast<LPARAM>(owner.Handle())};
  EXPECT_EQ(owner.notices, std::vector<NoticedWindow::Notice>{notice});
}

TEST_F(Options, TheTrayProgramIsStartedWhenAskedForAndThere) {
  const std::string own = platform::ExecutablePath();
  const std::string program = own.substr(0, own.rfind('/') + 1) + "Daybrix";
  const auto start = [&](bool wanted) {
    Open([&](HWND dialog) {
      EXPECT_EQ(Enabled(dialog, OptionsDialog::kTrayBox), std::filesystem::exists(program));
      EXPECT_FALSE(IsDlgButtonChecked(dialog, OptionsDialog::kTrayBox));
      if (wanted && Enabled(dialog, OptionsDialog::kTrayBox))
        driver.ClickControl(dialog, OptionsDialog::kTrayBox);
      driver.ClickControl(dialog, IDOK);
    });
  };
  start(true);  // there is none
  std::ofstream(program) << "#!/bin/sh\necho started >> " << Folder().Join("started") << "\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  start(false);
  start(true);
  driver.WaitUntil([&] { return Folder().Read("started") == "started\n"; });
  // One that runs already is neither offered nor started again.
  std::filesystem::copy_file("/bin/sleep", program, std::filesystem::copy_options::overwrite_existing);
  const pid_t tray = fork();
  if (tray == 0) _exit(execl(program.c_str(), program.c_str(), "60", nullptr));
  driver.WaitUntil([&] { return platform::ProgramRuns(program); });
  Open([&](HWND dialog) {
    EXPECT_FALSE(Enabled(dialog, OptionsDialog::kTrayBox));
    EXPECT_TRUE(IsDlgButtonChecked(dialog, OptionsDialog::kTrayBox));
    driver.ClickControl(dialog, IDOK);
  });
  kill(tray, SIGKILL);
  waitpid(tray, nullptr, 0);
  EXPECT_FALSE(platform::ProgramRuns(program));
  std::filesystem::remove(program);
}

TEST_F(Options, TheSplashIsAPictureInTheMiddleThatGoesByItself) {
  const auto begin = std::chrono::steady_clock::now();
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_EQ(ClientOf(dialog), (RECT{0, 0, 261, 226}));
    const int left = Width(DesktopRect()) / 2 - 130;
    const int top = Height(DesktopRect()) / 2 - 113;
    EXPECT_EQ(PlaceOf(dialog), (RECT{left, top, left + 261, top + 226}));
    const auto picture = Bitmap::Load("splash");
    ASSERT_NE(picture, nullptr);
    for (const POINT point : {POINT{5, 5}, POINT{130, 60}, POINT{250, 200}}) {
      EXPECT_EQ(driver.PixelAt(dialog, point), picture->PixelAt(point.x, point.y));
    }
  });
  ShowSplash();
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(700));
}

// A frame that closes as soon as it is there.
class ShortApplication : public ZarfWndApp {
 public:
  ShortApplication() : ZarfWndApp("ShellTest", "Daybrix") {}
  LRESULT OnAfterCreate(const MessageRecord&) override {
    Post(WM_CLOSE, 0, 0);
    return 0;
  }
};

TEST_F(Options, TheSplashComesBeforeTheFrameUnlessItIsOff) {
  for (const char* value : {"no", "0"}) {
    Set("Splash", value);
    ShortApplication application;
    bool shown = false;
    if (std::string_view(value) != "0") {
      driver.WhenDialogOpens([&](HWND dialog) {
        shown = IsWindow(dialog) && application.Handle() == nullptr;
        driver.Press(dialog, VK_ESCAPE);
      });
    }
    EXPECT_EQ(RunApplication(application, "any.cld"), 0);
    EXPECT_EQ(shown, std::string_view(value) != "0");
  }
}

}  // namespace
}  // namespace tests
