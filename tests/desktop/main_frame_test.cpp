// The main frame: its measures, its caption buttons, sizes, menus, panes and placement.
#include <gtest/gtest.h>

#include "core/ini_file.h"
#include "framework/pane.h"
#include "platform/desktop/frame.h"
#include "shell/commands.h"
#include "shell/frame_metrics.h"
#include "shell/frame_placement.h"
#include "shell/web_pages.h"
#include "support/calendar_program.h"
#include "support/temporary_calendar.h"
#include "support/temporary_folder.h"

namespace {

using tests::CalendarProgram;

constexpr RECT kDesktop = {0, 0, 800, 700};

TEST(FrameMetrics, OffsetsAreThoseOfTheHouse) {
  const RECT title = TitleRect(kSmallFrame);
  EXPECT_EQ(title, (RECT{4, 4, 416, 22}));
  EXPECT_EQ(CaptionButtonRect(kSmallFrame, CaptionButton::kClose), (RECT{398, 5, 413, 20}));
  EXPECT_EQ(CaptionButtonRect(kSmallFrame, CaptionButton::kMaximize).left, title.right - 36);
  EXPECT_EQ(CaptionButtonRect(kSmallFrame, CaptionButton::kMinimize).left, title.right - 54);
  EXPECT_EQ(PaneBarRect({412, 403}), (RECT{1, 0, 411, 25}));
  EXPECT_EQ(ToolBarRect({412, 403}), (RECT{5, 26, 407, 51}));
  EXPECT_EQ(PaneRect({412, 403}), (RECT{17, 66, 390, 374}));
}

TEST(FramePlacement, MaximizeTogglesBetweenTwoSizesOnTheDesktop) {
  EXPECT_EQ(MaximizedPlacement({10, 20, 430, 450}, kDesktop), (RECT{10, 20, 570, 600}));
  EXPECT_EQ(MaximizedPlacement({10, 20, 570, 600}, kDesktop), (RECT{10, 20, 430, 450}));
  EXPECT_EQ(MaximizedPlacement({10, 20, 510, 520}, kDesktop), (RECT{10, 20, 570, 600}));
  EXPECT_EQ(MaximizedPlacement({600, 500, 1020, 930}, kDesktop), (RECT{240, 120, 800, 700}));
  EXPECT_EQ(MaximizedPlacement({50, 40, 470, 470}, {0, 0, 500, 480}), (RECT{0, 0, 560, 580}));
}

TEST(FramePlacement, IsReadOnlyWhenWholeAndOnTheDesktop) {
  const tests::TemporaryFolder folder;
  const core::IniFile settings = core::IniFile::FromPath(folder.Join("frame.ini"));
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  WritePlacement(settings, {30, 40, 460, 480});
  EXPECT_EQ(ReadPlacement(settings, kDesktop), (RECT{30, 40, 460, 480}));
  settings.WriteString("Preference", "WPRight", "");
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  WritePlacement(settings, {800, 40, 1300, 480});
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  WritePlacement(settings, {10, 700, 1300, 480});
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  settings.WriteString("Preference", "WPTop", "top");
  EXPECT_EQ(ReadPlacement(settings, kDesktop)->top, 0);
}

class MainFrame : public testing::Test {
 protected:
  void Run(const std::function<void()>& script) { EXPECT_EQ(program.Run(calendar.Path(), script), 0); }
  RECT Window() {
    RECT rect;
    GetWindowRect(program.Frame(), &rect);
    return rect;
  }
  // The middle of a caption button in client pixels.
  POINT Middle(CaptionButton button) {
    const RECT rect = CaptionButtonRect({Width(Window()), Height(Window())}, button);
    return {rect.left + 7 - kFrameInsets.left, rect.top + 7 - kFrameInsets.top};
  }
  void Press(CaptionButton button) {
    program.driver.PressAndRelease(program.Frame(), Middle(button), Middle(button));
  }

  CalendarProgram program;  // first: making a calendar already asks for the program folder
  tests::TemporaryCalendar calendar;
};

TEST_F(MainFrame, HoldsBarsAndPaneAndKeepsThemPlaced) {
  Run([&] {
    EXPECT_EQ(Width(Window()), kSmallFrame.cx);
    EXPECT_EQ(Height(Window()), kSmallFrame.cy);
    RECT client;
    GetClientRect(program.Frame(), &client);
    EXPECT_EQ(client, (RECT{0, 0, 412, 403}));
    const HWND pane = CurrentPane()->Handle();
    EXPECT_EQ(ScreenToClient(program.Frame(), ClientToScreen(pane, {0, 0})), (POINT{17, 66}));
    Press(CaptionButton::kMaximize);
    program.driver.WaitUntil([&] { return Width(Window()) == kLargeFrame.cx; });
    EXPECT_EQ(Height(Window()), kLargeFrame.cy);
    GetClientRect(pane, &client);
    EXPECT_EQ(Width(client), kLargeFrame.cx - 8 - 39);
    EXPECT_EQ(Height(client), kLargeFrame.cy - 27 - 95);
    Press(CaptionButton::kMaximize);
    program.driver.WaitUntil([&] { return Width(Window()) == kSmallFrame.cx; });
  });
}

TEST_F(MainFrame, AHoverOverTheToolBarPaintsTheToolBarAlone) {
  Run([&] {
    const HWND toolBar = WindowFromPoint(ClientToScreen(program.Frame(), {20, 35}));
    ASSERT_EQ(GetClassName(toolBar), "ZarfToolBar");
    program.driver.Wait(100);
    const int before = program.driver.Paints();
    program.driver.MoveMouse(toolBar, {20, 12});
    program.driver.Wait(100);
    EXPECT_EQ(program.driver.Paints(), before + 1);
  });
}

TEST_F(MainFrame, OnlyTheCornerSizes) {
  Run([&] {
    const RECT window = Window();
    const auto hit = [&](int x, int y) {
      return SendMessage(program.Frame(), WM_NCHITTEST, 0, MakeLParam(window.left + x, window.top + y));
    };
    EXPECT_EQ(hit(1, 200), HTNOWHERE);
    EXPECT_EQ(hit(418, 200), HTNOWHERE);
    EXPECT_EQ(hit(200, 1), HTNOWHERE);
    EXPECT_EQ(hit(1, 428), HTNOWHERE);
    EXPECT_EQ(hit(418, 428), HTBOTTOMRIGHT);
    EXPECT_EQ(hit(200, 12), HTCAPTION);
    EXPECT_EQ(hit(200, 200), HTCLIENT);
    // The grip, dragged far beyond both bounds.
    program.driver.PressAndRelease(program.Frame(), {408, 399}, {708, 699});
    program.driver.WaitUntil(
        [&] { return Width(Window()) == kLargeFrame.cx && Height(Window()) == kLargeFrame.cy; });
  });
}

TEST_F(MainFrame, AButtonActsOnlyWhenReleasedOverIt) {
  Run([&] {
    program.driver.PressAndRelease(program.Frame(), Middle(CaptionButton::kClose), {100, 100});
    program.driver.Wait(30);
    EXPECT_TRUE(IsWindow(program.Frame()));
    const HWND frame = program.Frame();
    Press(CaptionButton::kClose);
    program.driver.WaitUntil([&] { return !IsWindow(frame); });
  });
}

TEST_F(MainFrame, MenusOpenUnderTheirButtonsAndByKey) {
  Run([&] {
    program.driver.ChooseMenuItem("");
    program.driver.Press(program.Frame(), 'F', 0, true);
    program.driver.Wait(50);
    const std::vector<std::string> file = {"New...",      "Open...",
                                           "-",           "Save As...",
                                           "Compact...",  "-",
                                           "(Import...)", "(Export...)",
                                           "-",           "(Print Report..)",
                                           "-",           "Network Passwords...",
                                           "-",           "General Options...",
                                           "-",           "Skins...",
                                           "-",           "Exit"};
    EXPECT_EQ(program.driver.LastMenu(), file);
    program.driver.ChooseMenuItem("About...");
    program.driver.AnswerMessageBox("Daybrix Tempoline", 1);
    program.driver.Press(program.Frame(), 'H', 0, true);
    program.driver.Wait(100);
    const std::vector<std::string> help = {"Contents...",
                                           "-",
                                           *kCompanyPage != '\0' ? "Company Web" : "(Company Web)",
                                           *kProductPage != '\0' ? "Daybrix Web" : "(Daybrix Web)",
                                           "-",
                                           "About..."};
    EXPECT_EQ(program.driver.LastMenu(), help);
    const HWND frame = program.Frame();
    program.driver.ChooseMenuItem("Exit");
    program.driver.Press(frame, 'F', 0, true);
    program.driver.WaitUntil([&] { return !IsWindow(frame); });
  });
}

TEST_F(MainFrame, PanesAreSwitchedByKeyAndRemembered) {
  core::IniFile("Daybrix.ini").WriteString("Preference", "Annimation", "0");
  core::IniFile().WriteInt("Preference", "PaneId", 7);
  Run([&] {
    EXPECT_EQ(CurrentPaneIndex(), 0) << "a pane that there is not means the first";
    program.driver.Press(program.Frame(), VK_DELETE);  // nothing to delete on the title page
    program.driver.Press(program.Frame(), '2', 0, true);
    program.driver.WaitUntil([&] { return CurrentPaneIndex() == 1; });
    EXPECT_TRUE(IsWindowVisible(program.Panel().Handle()));
    EXPECT_EQ(GetFocus(), program.List());
    program.driver.Press(program.Frame(), '1', 0, true);
    program.driver.WaitUntil([&] { return CurrentPaneIndex() == 0; });
    EXPECT_FALSE(IsWindowVisible(program.Panel().Handle()));
    program.driver.Press(program.Frame(), '2', 0, true);
    program.driver.WaitUntil([&] { return CurrentPaneIndex() == 1; });
  });
  std::int32_t pane = -1;
  EXPECT_TRUE(core::IniFile().ReadInt("Preference", "PaneId", pane));
  EXPECT_EQ(pane, 1);
}

TEST_F(MainFrame, IsPlacedAsItWasLeft) {
  Run([&] { MoveWindow(program.Frame(), 90, 70, 480, 500); });
  Run([&] {
    EXPECT_EQ(Width(Window()), 480);
    EXPECT_EQ(Height(Window()), 500);
  });
  WritePlacement(core::IniFile(), {-6000, -6000, -5500, -5500});
  Run([&] { EXPECT_TRUE(IsOnScreen(Window())) << "left on a screen that is gone"; });
  WritePlacement(core::IniFile(), {-100, 70, 380, 570});
  Run([&] { EXPECT_EQ(Window().left, -100) << "partly off the screen is a place like any other"; });
  core::IniFile().WriteString("Preference", "WPLeft", "");
  Run([&] { EXPECT_EQ(Width(Window()), kSmallFrame.cx); });
}

TEST_F(MainFrame, AnIdleFramePaintsNothing) {
  Run([&] {
    EXPECT_EQ(program.driver.PixelAt(program.Frame(), {8, 52}), CurrentPane()->Colours().band1);
    program.driver.Wait(500);
    const int before = program.driver.Paints();
    program.driver.Wait(2500);  // longer than any timer of the windows but the alarm's
    EXPECT_EQ(program.driver.Paints(), before);
  });
}

}  // namespace
