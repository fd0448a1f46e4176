// The small controls and the tab strip, driven by the mouse as a user drives them, and what they paint.
#include <gtest/gtest.h>

#include <memory>

#include "controls/fly_menu.h"
#include "controls/scroll_bar.h"
#include "controls/slide_bar.h"
#include "controls/spin_button.h"
#include "controls/tabs.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "platform/desktop/cursor.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/recording_dc.h"
#include "support/windows.h"

namespace {

using Values = std::vector<LPARAM>;

constexpr COLORREF kBase = RGB(100, 120, 140);
constexpr COLORREF kBlack = RGB(0, 0, 0);

class Controls : public testing::Test {
 protected:
  // Makes a control on the host, in a place of its client area.
  void Put(ZarfWnd& control, const RECT& place) {
    ASSERT_TRUE(control.Create(&host));
    control.Move(place.left, place.top, Width(place), Height(place), 1);
    driver.Wait(20);
  }

  DesktopDriver driver;
  HostWindow host;
};

TEST_F(Controls, AHeldSpinButtonFiresAtOnceThenAfterHalfASecondThenQuickly) {
  ZarfSpinButton button(7, SpinKind::kUp, kBase);
  Put(button, {10, 10, 30, 30});
  const auto fired = [this] { return host.Values(7).size(); };

  SendMessage(button.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(5, 5));
  EXPECT_EQ(fired(), 1u) << "sent, not posted";
  EXPECT_EQ(host.Values(7).at(0), reinterpret_cast<LPARAM>(&button));
  EXPECT_TRUE(button.Pressed());
  driver.Wait(300);
  EXPECT_EQ(fired(), 1u);
  ASSERT_TRUE(driver.WaitUntil([&] { return fired() >= 5; }));
  SendMessage(button.Handle(), WM_LBUTTONUP, 0, MakeLParam(5, 5));
  EXPECT_FALSE(button.Pressed());
  EXPECT_EQ(GetCapture(), nullptr);
  const std::size_t sent = fired();
  driver.Wait(120);
  EXPECT_EQ(fired(), sent) << "released";
}

TEST_F(Controls, AParentMayTakeItsSpinButtonAway) {
  auto victim = std::make_unique<ZarfSpinButton>(8, SpinKind::kUp, kBase);
  Put(*victim, {40, 10, 60, 30});
  const HWND window = victim->Handle();
  host.onCommand = [&](const HostWindow::Command&) {
    victim.reset();
    return 0;
  };
  SendMessage(window, WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(5, 5));
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Controls, ASpinButtonDrawsItsArrowInTheMiddleAndLowerWhilePressed) {
  ZarfSpinButton plain(7, SpinKind::kLeft, kBase);
  ZarfFramedSpinButton framed(8, SpinKind::kDown, kBase);
  Put(plain, {0, 0, 30, 40});
  Put(framed, {50, 0, 80, 40});
  constexpr RECT kFace{0, 0, 30, 40};

  RecordingDc rest;
  plain.Paint(&rest, kFace);
  ASSERT_EQ(rest.Of(DrawingKind::kBitmap).size(), 1u);
  EXPECT_EQ(rest.ColourAt({29, 39}), kBase);
  EXPECT_TRUE(rest.Of(DrawingKind::kLine).empty());
  const Bitmap& arrow = *rest.Of(DrawingKind::kBitmap)[0].bitmap;
  const int x = 15 - arrow.Width() / 2;
  const int y = 20 - arrow.Height() / 2;
  EXPECT_EQ(rest.Of(DrawingKind::kBitmap)[0].rect, (RECT{x, y, x, y}));
  EXPECT_EQ(arrow.PixelAt(0, 0), kBase) << "the ground takes the button's colour";

  SendMessage(plain.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, 0);
  RecordingDc down;
  plain.Paint(&down, kFace);
  SendMessage(plain.Handle(), WM_LBUTTONUP, 0, 0);
  EXPECT_EQ(down.Of(DrawingKind::kBitmap).at(0).rect, (RECT{x + 1, y + 1, x + 1, y + 1}));

  RecordingDc edge;
  framed.Paint(&edge, kFace);
  edge.ExpectColour(kBlack, {{0, 0}, {29, 0}, {0, 39}, {29, 39}});
  edge.ExpectColour(kBase, {{1, 1}});
}

TEST_F(Controls, TheSlideBarFollowsTheMouseAndTellsItsParent) {
  ZarfSlideBar bar(6, kBase, 5);
  Put(bar, {10, 10, 30, 130});
  driver.Click(bar.Handle(), {10, 65});
  EXPECT_EQ(bar.Position(), 2);
  EXPECT_EQ(host.Values(6), Values{2});

  driver.MouseDown(bar.Handle(), {10, 65});
  EXPECT_TRUE(bar.Dragging());
  driver.MoveMouse(bar.Handle(), {10, 119});
  driver.MoveMouse(bar.Handle(), {10, 280});
  driver.MoveMouse(bar.Handle(), {10, -30});
  driver.MouseUp(bar.Handle(), {10, -30});
  EXPECT_EQ(host.Values(6), (Values{2, 4, 0})) << "once for each change";
  EXPECT_FALSE(bar.Dragging());
  EXPECT_EQ(GetCapture(), nullptr);
  driver.MoveMouse(bar.Handle(), {10, 119});
  EXPECT_EQ(bar.Position(), 0) << "not dragging any more";
}

TEST_F(Controls, TheSlideBarPaintsTrackThumbAndItsOwnColours) {
  ZarfSlideBar bar(6, kBase, 5);
  constexpr RECT kBar{0, 0, 20, 120};
  bar.SetPosition(1);
  RecordingDc plain;
  bar.Paint(&plain, kBar);
  const COLORREF track = Lighten(kBase, 40);
  // The thumb has an outline and a grip of three lines.
  plain.ExpectColour(kBlack, {{0, 5}, {19, 5}, {10, 30}, {10, 50}, {10, 38}, {10, 40}, {10, 42}});
  plain.ExpectColour(track, {{10, 5}, {10, 51}});
  plain.ExpectColour(kBase, {{10, 31}, {10, 39}});
  bar.SetColours(RGB(1, 1, 1), RGB(2, 2, 2), RGB(3, 3, 3), RGB(4, 4, 4));
  RecordingDc own;
  bar.Paint(&own, kBar);
  own.ExpectColour(RGB(1, 1, 1), {{10, 5}});
  own.ExpectColour(RGB(2, 2, 2), {{10, 31}});
  own.ExpectColour(RGB(3, 3, 3), {{10, 30}});
  own.ExpectColour(RGB(4, 4, 4), {{0, 5}});

  bar.SetPosition(4);
  RecordingDc last;
  bar.Paint(&last, kBar);
  EXPECT_EQ(last.ColourAt({10, 119}), RGB(3, 3, 3)) << "the thumb is whole at the end of the bar";
}

TEST_F(Controls, TheScrollBarStepsByItsArrowsAndStopsAtTheEnds) {
  ZarfClassWndScrollBar bar(10, 3, 20, kBase);
  Put(bar, {10, 10, 30, 210});
  const POINT up{10, 10};
  const POINT down{10, 190};
  const auto press = [&](POINT point) {
    const HWND part = WindowFromPoint(ClientToScreen(bar.Handle(), point));
    ASSERT_EQ(GetParent(part), bar.Handle());
    driver.Click(part, ScreenToClient(part, ClientToScreen(bar.Handle(), point)));
  };
  press(up);
  EXPECT_TRUE(host.commands.empty());
  press(down);
  press(down);
  press(down);
  EXPECT_EQ(host.Values(10), (Values{1, 2}));
  EXPECT_EQ(bar.Slider().Position(), 2);
  press(up);
  EXPECT_EQ(host.Values(10), (Values{1, 2, 1}));

  driver.Click(bar.Slider().Handle(), {5, 155});
  EXPECT_EQ(host.Values(10).back(), 2);
  EXPECT_EQ(bar.Position(), 2);
  EXPECT_TRUE(bar.SetCount(1));
  EXPECT_EQ(bar.Position(), 0);
  const std::size_t told = host.commands.size();
  SendMessage(bar.Handle(), WM_COMMAND, 6, 1);
  EXPECT_EQ(bar.Position(), 0) << "a late word of the slide bar";
  EXPECT_EQ(host.commands.size(), told);
}

TEST_F(Controls, TheFlyOutMenuOpensAtItsArrowOnlyAndTellsOfEveryChoice) {
  TFlyMenu menu(RGB(255, 255, 255), kBlack);
  Put(menu, {10, 10, 110, 25});
  EXPECT_TRUE(menu.AddItem(2010, 0));
  EXPECT_TRUE(menu.AddSeparator());
  EXPECT_TRUE(menu.AddItemText("R&D", 501));
  EXPECT_TRUE(menu.SetCurrent(501));
  EXPECT_FALSE(menu.SetCurrent(501)) << "no change";
  EXPECT_FALSE(menu.SetCurrent(9));
  RecordingDc face;
  menu.Paint(&face, {0, 0, 100, 15});
  ASSERT_NE(face.FindText("R&D"), nullptr);
  EXPECT_GE(face.FindText("R&D")->rect.left, face.Of(DrawingKind::kBitmap).at(0).rect.left + 5);
  driver.Click(menu.Handle(), {40, 7});  // an open menu that nobody expects would fail the test
  EXPECT_TRUE(host.commands.empty());

  SendMessage(menu.Handle(), WM_COMMAND, 77, 0);  // none of its items
  for (const char* choice : {"R&D", "January"}) {
    driver.ChooseMenuItem(choice);
    driver.Click(menu.Handle(), {5, 7});
    driver.ProcessEvents();
    EXPECT_STREQ(menu.Caption(), choice);
  }
  EXPECT_EQ(driver.LastMenu(), (std::vector<std::string>{"January", "-", "R&D"}));
  EXPECT_EQ(host.Values(501), Values{reinterpret_cast<LPARAM>(menu.Caption())}) << "also when it is the same";
  EXPECT_EQ(host.commands.size(), 2u);
  EXPECT_FALSE(menu.Pressed());
}

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
