// The tab strip.
#include "controls/tabs.h"

#include <gtest/gtest.h>

#include "framework/drawing.h"
#include "framework/fonts.h"
#include "platform/desktop/cursor.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/recording_dc.h"

namespace {

constexpr COLORREF kGround = RGB(10, 20, 30);
constexpr COLORREF kDayFace = RGB(200, 100, 50);
constexpr COLORREF kWeekFace = RGB(100, 200, 150);
constexpr COLORREF kText = RGB(1, 2, 3);
constexpr RECT kStrip = {0, 0, 200, 20};

// Tabs of 40 pixels from x = 5 on: Day, with id 11, and Week, with id 12.
class Tabs : public testing::Test {
 protected:
  void SetUp() override {
    EXPECT_TRUE(tabs.AddTab(11, "Day", kDayFace, kText));
    EXPECT_TRUE(tabs.AddTab(12, "Week", kWeekFace, kText));
    ASSERT_TRUE(tabs.Create(&host));
    tabs.Move(0, 0, 200, 20, 1);
    driver.Wait(20);
  }

  DesktopDriver driver;
  HostWindow host;
  TTabsWnd tabs{30, kGround, 40, RGB(9, 9, 9)};
};

TEST_F(Tabs, AClickOnAnotherTabSelectsItAndTellsOnce) {
  driver.Click(tabs.Handle(), {10, 10});
  driver.Click(tabs.Handle(), {60, 1});
  driver.Click(tabs.Handle(), {100, 10});
  driver.Wait(20);
  EXPECT_TRUE(host.commands.empty()) << "the selected one, above an idle one, beside them all";

  SendMessage(tabs.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(60, 10));
  EXPECT_EQ(tabs.SelectedIndex(), 1);
  EXPECT_TRUE(host.commands.empty()) << "posted";
  EXPECT_EQ(driver.PixelAt(tabs.Handle(), {50, 1}), kWeekFace);
  driver.Click(tabs.Handle(), {60, 10});
  driver.Wait(20);
  EXPECT_EQ(host.Values(30), std::vector<LPARAM>{12});
}

TEST_F(Tabs, TheProgramSelectsById) {
  EXPECT_FALSE(tabs.SelectTab(11, true)) << "selected already";
  EXPECT_FALSE(tabs.SelectTab(99, true));
  EXPECT_TRUE(tabs.SelectTab(12, true));
  EXPECT_EQ(tabs.SelectedIndex(), 1);
  for (int index = 2; index < 50; ++index) EXPECT_TRUE(tabs.AddTab(11, "more", kDayFace, kText));
  EXPECT_FALSE(tabs.AddTab(50, "one more", kDayFace, kText));
  EXPECT_TRUE(tabs.SelectTab(11, false));
  EXPECT_EQ(tabs.SelectedIndex(), 0) << "the first with that id";
  driver.Wait(20);
  EXPECT_TRUE(host.commands.empty()) << "only users are told of";
}

TEST_F(Tabs, TheHandShowsOverTabsOnly) {
  const HCURSOR hand = LoadCursor("CUR_HAND1");
  const HCURSOR arrow = LoadCursor(IDC_ARROW);
  driver.MoveMouse(tabs.Handle(), {60, 10});
  EXPECT_EQ(SetCursor(arrow), hand);
  driver.MoveMouse(tabs.Handle(), {150, 10});
  EXPECT_EQ(SetCursor(hand), arrow);
}

TEST_F(Tabs, TheSelectedTabIsJoinedToWhatIsBelow) {
  RecordingDc dc;
  tabs.Paint(&dc, kStrip);
  // There is a line below but under the selected tab.
  const COLORREF line = Darken(kDayFace, 40);
  dc.ExpectColour(kGround, {{2, 5}, {45, 2}, {85, 16}});
  dc.ExpectColour(kDayFace, {{5, 0}, {44, 16}, {0, 17}, {30, 17}, {43, 17}, {199, 18}});
  dc.ExpectColour(kWeekFace, {{45, 3}, {84, 16}});
  dc.ExpectColour(line, {{44, 17}, {199, 17}});
  ASSERT_NE(dc.FindText("Week"), nullptr);
  EXPECT_EQ(dc.FindText("Week")->rect, (RECT{45, 3, 85, 17}));
  EXPECT_EQ(dc.FindText("Day")->rect, (RECT{5, 0, 45, 17}));
  EXPECT_EQ(dc.FindText("Day")->font, GetFont(FontSmall, 700));
  EXPECT_EQ(dc.FindText("Day")->colour, kText);

  RecordingDc none;
  TTabsWnd(31, kGround, 40, 0).Paint(&none, kStrip);
  EXPECT_EQ(none.calls.size(), 1u) << "a strip without tabs is its ground";
}

}  // namespace
