// The main frame: its measures, its caption buttons, sizes, menus, panes and placement.
#include <gtest/gtest.h>

#include "core/ini_file.h"
#include "framework/pane.h"
#include "platform/desktop/frame.h"
#include "shell/frame_metrics.h"
#include "shell/frame_painting.h"
#include "shell/frame_placement.h"
#include "shell/skins.h"
#include "shell/web_pages.h"
#include "support/calendar_program.h"
#include "support/recording_dc.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace {

using tests::CalendarProgram;

constexpr RECT kDesktop = {0, 0, 800, 700};

TEST(FrameMetrics, OffsetsAreThoseOfTheHouse) {
  EXPECT_EQ(TitleRect(kSmallFrame), (RECT{4, 4, 416, 22}));
  EXPECT_EQ(CaptionButtonRect(kSmallFrame, CaptionButton::kClose), (RECT{398, 5, 413, 20}));
  EXPECT_EQ(CaptionButtonRect(kSmallFrame, CaptionButton::kMaximize).left, 380);
  EXPECT_EQ(CaptionButtonRect(kSmallFrame, CaptionButton::kMinimize).left, 362);
  EXPECT_EQ(PaneBarRect({412, 403}), (RECT{1, 0, 411, 25}));
  EXPECT_EQ(ToolBarRect({412, 403}), (RECT{5, 26, 407, 51}));
  EXPECT_EQ(PaneRect({412, 403}), (RECT{17, 66, 390, 374}));
}

TEST(FramePlacement, MaximizeTakesOneOfTwoSizesOnTheDesktop) {
  EXPECT_EQ(MaximizedPlacement({10, 20, 430, 450}, kDesktop, true), (RECT{10, 20, 570, 600}));
  EXPECT_EQ(MaximizedPlacement({10, 20, 570, 600}, kDesktop, false), (RECT{10, 20, 430, 450}));
  EXPECT_EQ(MaximizedPlacement({600, 500, 1020, 930}, kDesktop, true), (RECT{240, 120, 800, 700}));
  EXPECT_EQ(MaximizedPlacement({50, 40, 470, 470}, {0, 0, 500, 480}, true), (RECT{0, 0, 560, 580}));
  EXPECT_TRUE(HasLargeSize({10, 20, 569, 599})) << "a pixel was lost to the screen's scale";
  EXPECT_FALSE(HasLargeSize({10, 20, 510, 600}));
}

TEST(FramePlacement, IsReadOnlyWhenWholeAndOnTheDesktop) {
  const tests::TemporaryFolder folder;
  const core::IniFile settings = core::IniFile::FromPath(folder.Join("frame.ini"));
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  EXPECT_EQ(ReadPane(settings, 5), 5);
  WriteFrameState(settings, {30, 40, 460, 480}, 1);
  EXPECT_EQ(ReadPlacement(settings, kDesktop), (RECT{30, 40, 460, 480}));
  EXPECT_EQ(ReadPane(settings, 5), 1);
  EXPECT_TRUE(settings.WriteString("Preference", "WPRight", ""));
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  WriteFrameState(settings, {800, 40, 1300, 480}, 1);
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  WriteFrameState(settings, {10, 700, 1300, 480}, 1);
  EXPECT_FALSE(ReadPlacement(settings, kDesktop));
  EXPECT_TRUE(settings.WriteString("Preference", "WPTop", "top"));
  EXPECT_EQ(ReadPlacement(settings, kDesktop)->top, 0);
}

TEST(FramePainting, TheTitleBandIsNeverLeftAsItWas) {
  const DesktopDriver driver;
  SkinRecord skin;
  const auto title = [&skin] {
    RecordingDc dc;
    PaintFrame(&dc, kSmallFrame, skin, "", {});
    return dc.ColourAt({200, 10});
  };
  EXPECT_NE(title(), kNoColour) << "a skin without colour and picture";
  skin.colorTitle = RGB(1, 2, 3);
  EXPECT_EQ(title(), RGB(1, 2, 3));
}

class MainFrame : public testing::Test {
 protected:
  void Run(const std::function<void()>& script) { EXPECT_EQ(program.Run(calendar.Path(), script), 0); }
  RECT Window() { return tests::PlaceOf(program.Frame()); }
  SIZE Size() { return {Width(Window()), Height(Window())}; }
  // The last menu's.
  std::string Items() {
    std::string all;
    for (const std::string& item : driver.LastMenu()) all += item + "|";
    return all;
  }
  // The middle of a caption button in client pixels.
  POINT Middle(CaptionButton button) {
    const RECT rect = CaptionButtonRect(Size(), button);
    return {rect.left + 7 - kFrameInsets.left, rect.top + 7 - kFrameInsets.top};
  }
  void Press(CaptionButton button) {
    driver.PressAndRelease(program.Frame(), Middle(button), Middle(button));
  }

  CalendarProgram program;  // first: making a calendar already asks for the program folder
  tests::TemporaryCalendar calendar;
  DesktopDriver& driver = program.driver;
};

TEST_F(MainFrame, HoldsBarsAndPaneAndKeepsThemPlaced) {
  Run([&] {
    EXPECT_EQ(Width(Window()), kSmallFrame.cx);
    EXPECT_EQ(Height(Window()), kSmallFrame.cy);
    EXPECT_EQ(tests::ClientOf(program.Frame()), (RECT{0, 0, 412, 403}));
    const HWND pane = CurrentPane()->Handle();
    EXPECT_EQ(ScreenToClient(program.Frame(), ClientToScreen(pane, {0, 0})), (POINT{17, 66}));
    Press(CaptionButton::kMaximize);
    driver.WaitUntil([&] { return Width(Window()) == kLargeFrame.cx; });
    EXPECT_EQ(Height(Window()), kLargeFrame.cy);
    EXPECT_EQ(tests::ClientOf(pane), (RECT{0, 0, kLargeFrame.cx - 8 - 39, kLargeFrame.cy - 27 - 95}));
    Press(CaptionButton::kMaximize);
    driver.WaitUntil([&] { return Width(Window()) == kSmallFrame.cx; });
  });
}

TEST_F(MainFrame, OnlyTheCornerSizes) {
  Run([&] {
    const RECT window = Window();
    constexpr std::pair<POINT, LRESULT> kHits[] = {
        {{1, 200}, HTNOWHERE},       {{418, 200}, HTNOWHERE}, {{200, 1}, HTNOWHERE}, {{1, 428}, HTNOWHERE},
        {{418, 428}, HTBOTTOMRIGHT}, {{200, 12}, HTCAPTION},  {{200, 200}, HTCLIENT}};
    for (const auto& [point, part] : kHits) {
      const LPARAM place = MakeLParam(window.left + point.x, window.top + point.y);
      EXPECT_EQ(SendMessage(program.Frame(), WM_NCHITTEST, 0, place), part) << point.x << "," << point.y;
    }
    // The grip, dragged far beyond both bounds.
    driver.PressAndRelease(program.Frame(), {408, 399}, {708, 699});
    driver.WaitUntil([&] { return Width(Window()) == kLargeFrame.cx && Height(Window()) == kLargeFrame.cy; });
  });
}

TEST_F(MainFrame, AButtonActsOnlyWhenReleasedOverIt) {
  Run([&] {
    driver.PressAndRelease(program.Frame(), Middle(CaptionButton::kClose), {100, 100});
    driver.Wait(30);
    EXPECT_TRUE(IsWindow(program.Frame()));
    const HWND frame = program.Frame();
    Press(CaptionButton::kClose);
    driver.WaitUntil([&] { return !IsWindow(frame); });
  });
}

TEST_F(MainFrame, MenusOpenUnderTheirButtonsAndByKey) {
  Run([&] {
    driver.ChooseMenuItem("");
    driver.Press(program.Frame(), 'F', 0, true);
    driver.Wait(50);
    EXPECT_EQ(Items(),
              "New...|Open...|-|Save As...|Compact...|-|Import...|Export...|-|Print Report..|-|"
              "Network Passwords...|-|Nameleaf...|Internet Events...|Zarf Server Setup|-|General "
              "Options...|-|Skins...|-|Exit|");
    driver.ChooseMenuItem("About...");
    driver.AnswerMessageBox("Daybrix Tempoline", 1);
    driver.Press(program.Frame(), 'H', 0, true);
    driver.Wait(100);
    EXPECT_EQ(Items(), std::string("Contents...|-|") +
                           (*kCompanyPage != '\0' ? "Company Web" : "(Company Web)") + "|" +
                           (*kProductPage != '\0' ? "Daybrix Web" : "(Daybrix Web)") + "|-|About...|");
    const HWND frame = program.Frame();
    driver.ChooseMenuItem("Exit");
    driver.Press(frame, 'F', 0, true);
    driver.WaitUntil([&] { return !IsWindow(frame); });
  });
}

TEST_F(MainFrame, PanesAreSwitchedByKeyAndRemembered) {
  EXPECT_TRUE(core::IniFile("Daybrix.ini").WriteString("Preference", "Annimation", "0"));
  EXPECT_TRUE(core::IniFile().WriteInt("Preference", "PaneId", 7));
  Run([&] {
    EXPECT_EQ(CurrentPaneIndex(), 0) << "a pane that there is not means the first";
    driver.Press(program.Frame(), VK_DELETE);  // nothing to delete on the title page
    driver.Press(program.Frame(), '2', 0, true);
    driver.WaitUntil([&] { return CurrentPaneIndex() == 1; });
    EXPECT_TRUE(IsWindowVisible(program.Panel().Handle()));
    EXPECT_EQ(GetFocus(), program.List());
    driver.Press(program.Frame(), '1', 0, true);
    driver.WaitUntil([&] { return CurrentPaneIndex() == 0; });
    EXPECT_FALSE(IsWindowVisible(program.Panel().Handle()));
    driver.Press(program.Frame(), '2', 0, true);
    driver.WaitUntil([&] { return CurrentPaneIndex() == 1; });
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
  WriteFrameState(core::IniFile(), {-6000, -6000, -5500, -5500}, 1);
  Run([&] { EXPECT_TRUE(IsOnScreen(Window())) << "left on a screen that is gone"; });
  WriteFrameState(core::IniFile(), {-100, 70, 380, 570}, 1);
  Run([&] { EXPECT_EQ(Window().left, -100) << "partly off the screen is a place like any other"; });
  EXPECT_TRUE(core::IniFile().WriteString("Preference", "WPLeft", ""));
  Run([&] { EXPECT_EQ(Width(Window()), kSmallFrame.cx); });
}

TEST_F(MainFrame, AnIdleFramePaintsNothing) {
  Run([&] {
    EXPECT_EQ(driver.PixelAt(program.Frame(), {8, 52}), CurrentPane()->Colours().band1);
    driver.Wait(500);
    const int before = driver.Paints();
    driver.Wait(2500);  // longer than any timer of the windows but the alarm's
    EXPECT_EQ(driver.Paints(), before);
  });
}

}  // namespace
