// General Options, and the splash screen that they switch.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "desktop/shell_fixture.h"
#include "framework/services.h"
#include "platform/desktop/dialog.h"
#include "platform/system/program_folder.h"
#include "platform/system/program_start.h"
#include "shell/options_dialog.h"
#include "shell/splash.h"

namespace tests {
namespace {

constexpr int kSoundBox = 100;
constexpr int kAnimationBox = 101;
constexpr int kSplashBox = 102;
constexpr int kRefreshList = 103;
constexpr int kTrayBox = 104;

class Options : public ShellTest {
 protected:
  void Open(const std::function<void(HWND)>& act) {
    driver.WhenDialogOpens(act);
    ShowOptionsDialog(&owner);
    driver.ProcessEvents();
  }
  static LRESULT Refresh(HWND dialog, UINT message, int value = 0) {
    return SendDlgItemMessage(dialog, kRefreshList, message, static_cast<WPARAM>(value), 0);
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
      for (const int box : {kSoundBox, kAnimationBox, kSplashBox}) {
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
      char text[16];
      GetDlgItemText(dialog, kRefreshList, text, sizeof text);
      EXPECT_EQ(std::string(text), expected < 0 ? "" : std::to_string(expected + 1) + " sec.");
      driver.ClickControl(dialog, IDOK);
    });
    EXPECT_EQ(Setting("NetworkRefresh"), after);
  }
}

TEST_F(Options, OkTellsTheOtherCopiesAndCancelChangesNothing) {
  Set("Sound", "maybe");
  SetSoundEnabled(1);
  const auto change = [&](HWND dialog) {
    for (const int box : {kSoundBox, kAnimationBox, kSplashBox}) driver.ClickControl(dialog, box);
    Refresh(dialog, CB_SETCURSEL, 9);
  };
  const std::string before = Folder().Read("Daybrix.ini");
  Open([&](HWND dialog) {
    change(dialog);
    driver.Press(dialog, VK_ESCAPE);
  });
  EXPECT_EQ(Folder().Read("Daybrix.ini"), before);
  EXPECT_TRUE(SoundEnabled());
  EXPECT_TRUE(owner.notices.empty());
  ASSERT_TRUE(application.Create(nullptr));
  Open([&](HWND dialog) {
    change(dialog);
    driver.ClickControl(dialog, IDOK);
  });
  EXPECT_EQ(Setting("Sound") + Setting("Annimation") + Setting("Splash") + Setting("NetworkRefresh"),
            "10010");
  EXPECT_FALSE(AnimationEnabled());
  // The frame is told as the sender, which knows already.
  const NoticedWindow::Notice notice{kNotifySettings, reinterpret_cast<LPARAM>(application.Handle())};
  EXPECT_EQ(owner.notices, std::vector<NoticedWindow::Notice>{notice});
}

TEST_F(Options, TheTrayProgramIsStartedWhenAskedForAndThere) {
  const std::string own = platform::ExecutablePath();
  const std::string program = own.substr(0, own.rfind('/') + 1) + "Daybrix";
  const auto start = [&](bool wanted) {
    Open([&](HWND dialog) {
      EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, kTrayBox)));
      EXPECT_FALSE(IsDlgButtonChecked(dialog, kTrayBox));
      if (wanted) driver.ClickControl(dialog, kTrayBox);
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
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, kTrayBox)));
    EXPECT_TRUE(IsDlgButtonChecked(dialog, kTrayBox));
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
    RECT window;
    RECT client;
    GetWindowRect(dialog, &window);
    GetClientRect(dialog, &client);
    EXPECT_EQ(client, (RECT{0, 0, 261, 226}));
    EXPECT_EQ(Width(window), 261);
    const RECT desktop = DesktopRect();
    EXPECT_EQ(window.left, (desktop.right - desktop.left) / 2 - 130);
    EXPECT_EQ(window.top, (desktop.bottom - desktop.top) / 2 - 113);
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
  ShortApplication() : ZarfWndApp("ShellTest", "Daybrix", 1) {}
  LRESULT OnAfterCreate(const MessageRecord&) override {
    Post(WM_CLOSE, 0, 0);
    return 0;
  }
};

TEST(Start, TheSplashComesBeforeTheFrameUnlessItIsOff) {
  const TemporaryFolder folder;
  setenv("DAYBRIX_FOLDER", folder.Path().c_str(), 1);
  setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
  DesktopDriver driver;
  RegisterResources();
  const core::IniFile settings("Daybrix.ini");
  for (const char* value : {"no", "0"}) {
    settings.WriteString("Preference", "Splash", value);
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
