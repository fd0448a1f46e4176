// The small controls, driven by the mouse as a user drives them, and what they paint.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "controls/fly_menu.h"
#include "controls/scroll_bar.h"
#include "controls/slide_bar.h"
#include "controls/spin_button.h"
#include "framework/drawing.h"
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

  driver.Click(button.Handle(), {5, 5});
  EXPECT_EQ(fired(), sent + 1);
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

TEST_F(Controls, TheSlideBarKeepsItsPositionInItsCount) {
  ZarfSlideBar bar(6, kBase, 5);
  EXPECT_TRUE(bar.SetPosition(4));
  EXPECT_FALSE(bar.SetPosition(5));
  EXPECT_FALSE(bar.SetPosition(-1));
  EXPECT_EQ(bar.Position(), 4);
  EXPECT_TRUE(bar.SetCount(3));
  EXPECT_EQ(bar.Position(), 2);
  EXPECT_FALSE(bar.SetCount(3)) << "no change";
  EXPECT_TRUE(bar.SetCount(0));
  EXPECT_EQ(bar.Position(), 0);
  EXPECT_TRUE(host.commands.empty()) << "only users are told of";
}

TEST_F(Controls, ASlideBarWithOnePositionNeverMovesAndOneWithNoneTakesNoMouse) {
  ZarfSlideBar one(6, kBase, 1);
  ZarfSlideBar none(5, kBase, 0);
  Put(one, {10, 10, 30, 130});
  Put(none, {40, 10, 60, 130});
  for (const ZarfSlideBar* bar : {&one, &none}) {
    driver.MouseDown(bar->Handle(), {10, 60});
    EXPECT_EQ(bar->Dragging(), bar == &one);
    driver.MoveMouse(bar->Handle(), {10, 110});
    driver.MouseUp(bar->Handle(), {10, 110});
    EXPECT_EQ(bar->Position(), 0);
  }
  EXPECT_TRUE(host.commands.empty());
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

TEST_F(Controls, TheScrollBarStepsByArrowsAndWheelAndStopsAtTheEnds) {
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

  driver.Wheel(bar.Slider().Handle(), {5, 50}, 1);
  driver.Wheel(bar.Slider().Handle(), {5, 50}, 1);
  driver.Wheel(bar.Slider().Handle(), {5, 50}, -1);
  EXPECT_EQ(host.Values(10), (Values{1, 2, 1, 0, 1}));

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

TEST_F(Controls, AScrollBarWithoutRoomStaysWhole) {
  ZarfClassWndScrollBar bar(10, 1e30, 20, kBase);
  Put(bar, {10, 10, 30, 30});
  const RECT slider = tests::ClientOf(bar.Slider().Handle());
  EXPECT_EQ(slider.bottom, 0);
  RecordingDc dc;
  bar.Slider().Paint(&dc, slider);
  SendMessage(bar.Slider().Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(-32768, 32767));
  SendMessage(bar.Slider().Handle(), WM_LBUTTONUP, 0, MakeLParam(40000, 40000));
  EXPECT_FALSE(bar.Slider().Dragging());
}

TEST_F(Controls, TheFlyOutMenuTellsOfEveryChoiceWithItsCaption) {
  TFlyMenu menu(RGB(255, 255, 255), kBlack);
  Put(menu, {10, 10, 110, 25});
  EXPECT_TRUE(menu.AddItem(2010, 0));
  EXPECT_TRUE(menu.AddSeparator());
  EXPECT_TRUE(menu.AddItemText("R&D", 501));
  EXPECT_STREQ(menu.Caption(), "");
  EXPECT_TRUE(menu.SetCurrent(501));
  EXPECT_FALSE(menu.SetCurrent(501)) << "no change";
  EXPECT_FALSE(menu.SetCurrent(9));
  EXPECT_STREQ(menu.Caption(), "R&D");
  driver.Wait(20);
  EXPECT_TRUE(host.commands.empty());

  for (const unsigned choice : {0u, 501u, 501u, 77u}) SendMessage(menu.Handle(), WM_COMMAND, choice, 0);
  ASSERT_TRUE(driver.WaitUntil([this] { return host.commands.size() >= 3; }));
  driver.Wait(20);
  EXPECT_EQ(host.Values(0).size(), 1u) << "January; the separator is no choice";
  EXPECT_EQ(host.Values(501), Values(2, reinterpret_cast<LPARAM>(menu.Caption())));
  EXPECT_TRUE(host.Values(77).empty());
  EXPECT_STREQ(menu.Caption(), "R&D");

  RecordingDc face;
  menu.Paint(&face, {0, 0, 100, 15});
  ASSERT_NE(face.FindText("R&D"), nullptr);
  EXPECT_GE(face.FindText("R&D")->rect.left, face.Of(DrawingKind::kBitmap).at(0).rect.left + 5);
}

TEST_F(Controls, AFlyOutMenuHasRoomForAHundredItemsAndLongTexts) {
  TFlyMenu menu(RGB(255, 255, 255), kBlack);
  EXPECT_TRUE(menu.AddItemText(std::string(1000, 'x').c_str(), 0));
  for (int item = 1; item < 100; ++item) EXPECT_TRUE(menu.AddItemText("item", item));
  EXPECT_FALSE(menu.AddItemText("one more", 100));
  EXPECT_FALSE(menu.AddItem(2010, 100));
  EXPECT_FALSE(menu.AddSeparator());
  menu.SetCurrent(0);
  EXPECT_EQ(std::string(menu.Caption()), std::string(254, 'x'));
  menu.ClearItems();
  EXPECT_EQ(menu.ItemCount(), 0u);
  EXPECT_FALSE(menu.SetCurrent(1));
}

TEST_F(Controls, TheFlyOutMenuOpensAtItsArrowOnly) {
  TFlyMenu menu(RGB(255, 255, 255), kBlack);
  Put(menu, {10, 10, 110, 25});
  menu.AddItemText("first", 1);
  menu.AddItemText("R&D", 2);
  menu.AddSeparator();
  menu.AddItemText("third", 3);
  menu.SetCurrent(2);
  driver.Click(menu.Handle(), {40, 7});  // an open menu that nobody expects would fail the test

  driver.ChooseMenuItem("third");
  driver.Click(menu.Handle(), {5, 7});
  ASSERT_TRUE(driver.WaitUntil([this] { return !host.commands.empty(); }));
  EXPECT_EQ(host.commands[0].id, 3u);
  EXPECT_STREQ(menu.Caption(), "third");
  EXPECT_EQ(driver.LastMenu(), (std::vector<std::string>{"first", "R&D", "-", "third"}));
  EXPECT_FALSE(menu.Pressed());
}

}  // namespace
