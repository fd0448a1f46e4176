// The toolbar as the mouse works it, what it paints, and that it leaves its neighbours alone.
#include "controls/toolbar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "desktop/recording_window.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/pane.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/recording_dc.h"

namespace {

constexpr COLORREF kAccent = RGB(119, 144, 0);
constexpr COLORREF kStripText = RGB(250, 250, 250);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);

constexpr unsigned kFile = 1005;
constexpr unsigned kNew = 1001;
constexpr unsigned kFind = 1004;
// The bar is 25 pixels high: its first three buttons lie side by side from x = 15 on, from y = 3 to 22.
constexpr RECT kBarPlace = {10, 40, 290, 65};
constexpr RECT kClient = {0, 0, 280, 25};
constexpr POINT kOnFile = {30, 10};
constexpr POINT kOnNew = {90, 10};
constexpr POINT kOnNothing = {250, 10};

using State = ZarfToolBar::State;

class CountingToolBar : public ZarfToolBar {
 public:
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override {
    ++paints;
    ZarfToolBar::OnPaint(hdc, paint);
  }
  int paints = 0;
};

class CountingHost : public HostWindow {
 public:
  void OnPaint(HDC, PAINTSTRUCT) override { ++paints; }
  int paints = 0;
};

class Toolbar : public testing::Test {
 protected:
  void SetUp() override {
    bar->AddButton(kFile, 2000, 3004, 3004, kMenuToolButton);
    bar->AddButton(kNew, 2001, 3000, 3000, kPlainToolButton);
    bar->AddButton(kFind, 2004, 3003, 3003, kPlainToolButton);
    ASSERT_TRUE(bar->Create(&host));
    bar->Move(kBarPlace.left, kBarPlace.top, Width(kBarPlace), Height(kBarPlace), 1);
    PutCursorOnBar();
    driver.Wait(20);
  }
  // The driver's moves leave the desktop's cursor where it is; the bar asks for it. So the bar goes to it.
  void PutCursorOnBar() {
    const POINT cursor = GetCursorPos();
    MoveWindow(host.Handle(), cursor.x - kBarPlace.left - kOnNothing.x,
               cursor.y - kBarPlace.top - kOnNothing.y, 300, 300);
  }
  void PutCursorElsewhere() {
    const POINT cursor = GetCursorPos();
    MoveWindow(host.Handle(), cursor.x + 100, cursor.y + 100, 300, 300);
  }
  void Send(UINT message, POINT point) {
    SendMessage(bar->Handle(), message, MK_LBUTTON, MakeLParam(point.x, point.y));
  }
  void ExpectActive(int index, State state) {
    EXPECT_EQ(bar->ActiveIndex(), index);
    EXPECT_EQ(bar->ActiveState(), state);
  }

  DesktopDriver driver;
  ZarfPane pane{"Work",
                {.background = kWhite,
                 .accent = kAccent,
                 .stripText = kStripText,
                 .band1 = 0,
                 .band3 = 0,
                 .band2 = 0,
                 .band4 = 0,
                 .extra1 = 0,
                 .extra2 = 0,
                 .extra3 = 0}};
  CountingHost host;
  std::unique_ptr<CountingToolBar> bar = std::make_unique<CountingToolBar>();
};

TEST_F(Toolbar, AMenuButtonTellsAtOnceWhileItIsStillDrawnPressed) {
  int told = 0;
  host.onCommand = [&](const HostWindow::Command& command) -> LRESULT {
    if (command.id != kFile || ++told > 1) return 0;
    ExpectActive(0, State::kPressed);
    EXPECT_EQ(GetCapture(), nullptr) << "the menu needs the mouse";
    EXPECT_EQ(driver.PixelAt(bar->Handle(), {60, 5}), Darken(kAccent, 10));
    EXPECT_EQ(driver.PixelAt(bar->Handle(), {13, 10}), kWhite);
    // What happens to the bar while its menu is open changes nothing, and a click does not open it twice.
    Send(WM_MOUSEMOVE, kOnNew);
    Send(WM_LBUTTONDOWN, kOnFile);
    Send(WM_LBUTTONUP, kOnFile);
    SendMessage(bar->Handle(), WM_TIMER, 100, 0);
    ExpectActive(0, State::kPressed);
    return 0;
  };
  PutCursorElsewhere();
  Send(WM_MOUSEMOVE, kOnFile);
  Send(WM_LBUTTONDOWN, kOnFile);
  EXPECT_EQ(told, 0);
  Send(WM_LBUTTONUP, kOnFile);
  EXPECT_EQ(told, 1) << "sent";
  ExpectActive(-1, State::kNone);

  Send(WM_LBUTTONDOWN, kOnNew);
  Send(WM_LBUTTONUP, kOnNew);
  EXPECT_TRUE(host.Values(kNew).empty()) << "posted";
  ASSERT_TRUE(driver.WaitUntil([this] { return !host.Values(kNew).empty(); }));
}

TEST_F(Toolbar, ACommandMayTakeTheToolbarAway) {
  const HWND window = bar->Handle();
  host.onCommand = [this](const HostWindow::Command&) -> LRESULT {
    bar.reset();
    return 0;
  };
  Send(WM_LBUTTONDOWN, kOnFile);
  SendMessage(window, WM_LBUTTONUP, 0, MakeLParam(kOnFile.x, kOnFile.y));
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Toolbar, AHoverRepaintsTheToolbarAloneAndOnlyWhenItChangesSomething) {
  RecordingWindow neighbour;
  neighbour.rect = {10, 65, 290, 120};
  ASSERT_TRUE(neighbour.Create(&host));
  driver.MoveMouse(bar->Handle(), kOnNothing);
  driver.Wait(50);
  const int hostPaints = host.paints;
  neighbour.log.clear();
  bar->paints = 0;

  driver.MoveMouse(bar->Handle(), kOnFile);
  driver.ProcessEvents();
  ExpectActive(0, State::kHot);
  EXPECT_EQ(bar->paints, 1);
  driver.MoveMouse(bar->Handle(), {kOnFile.x + 5, kOnFile.y});
  driver.ProcessEvents();
  EXPECT_EQ(bar->paints, 1) << "still on the same button";
  driver.MoveMouse(bar->Handle(), kOnNew);
  driver.ProcessEvents();
  ExpectActive(1, State::kHot);
  driver.MoveMouse(bar->Handle(), kOnNothing);
  driver.ProcessEvents();
  ExpectActive(-1, State::kNone);
  EXPECT_EQ(bar->paints, 3);
  EXPECT_EQ(host.paints, hostPaints);
  EXPECT_EQ(neighbour.Count(WM_PAINT), 0);
}

TEST_F(Toolbar, TheMouseThatLeftIsNoticedByTheTimer) {
  PutCursorElsewhere();
  Send(WM_MOUSEMOVE, kOnNew);
  ExpectActive(1, State::kHot);
  EXPECT_TRUE(driver.WaitUntil([this] { return bar->ActiveIndex() == -1; }));
  driver.Wait(20);
  bar->paints = 0;
  driver.Wait(700);
  EXPECT_EQ(bar->paints, 0) << "an idle bar paints nothing";
  EXPECT_EQ(driver.ShownTip(), "");

  PutCursorOnBar();
  Send(WM_MOUSEMOVE, kOnNew);
  driver.Wait(20);
  bar->paints = 0;
  EXPECT_TRUE(driver.WaitUntil([this] { return driver.ShownTip() == "New"; }));
  driver.Wait(300);
  ExpectActive(1, State::kHot);
  EXPECT_EQ(bar->paints, 0);
}

TEST_F(Toolbar, ButtonsAreDrawnInTheColoursOfThePane) {
  RecordingDc rest;
  bar->Paint(&rest, kClient);
  EXPECT_TRUE(rest.Of(DrawingKind::kFill).empty()) << "flat";
  for (const char* caption : {"File", "New", "Find"}) ASSERT_NE(rest.FindText(caption), nullptr) << caption;
  const DrawingCall& caption = *rest.FindText("New");
  EXPECT_EQ(caption.rect, (RECT{87, 3, 115, 22}));
  EXPECT_EQ(caption.colour, kStripText);
  EXPECT_EQ(caption.format, DT_SINGLELINE | DT_VCENTER);
  EXPECT_EQ(caption.font, GetFont(FontSmall, 400));
  EXPECT_EQ(rest.Of(DrawingKind::kStretch).at(0).rect, kClient);
  const std::vector<DrawingCall> pictures = rest.Of(DrawingKind::kBitmap);
  EXPECT_TRUE(std::any_of(pictures.begin(), pictures.end(), [](const DrawingCall& call) {
    return call.rect == RECT{65, 6, 65, 6};
  }));

  for (const State state : {State::kHot, State::kPressed}) {
    Send(state == State::kHot ? WM_MOUSEMOVE : WM_LBUTTONDOWN, kOnNew);
    RecordingDc up;
    bar->Paint(&up, kClient);
    const COLORREF outline = state == State::kHot ? kBlack : kWhite;
    EXPECT_EQ(up.ColourAt({64, 10}), RGB(109, 134, 0)) << "the accent, 10 darker";
    up.ExpectColour(outline, {{63, 3}, {63, 21}, {114, 10}, {80, 3}, {80, 22}});
    up.ExpectColour(kNoColour, {{62, 10}, {115, 10}});
  }
  Send(WM_LBUTTONUP, kOnNothing);
}

TEST_F(Toolbar, ButtonsAreFoundByCommand) {
  RECT rect{1, 2, 3, 4};
  EXPECT_EQ(bar->ButtonRect(77, &rect), -1);
  EXPECT_EQ(rect, (RECT{1, 2, 3, 4}));
  EXPECT_EQ(bar->ButtonRect(kFind, &rect), 2);
  EXPECT_EQ(rect, (RECT{115, 3, 165, 22}));
}

}  // namespace
