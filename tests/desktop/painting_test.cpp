// What is painted, when, and pixel by pixel.
#include <gtest/gtest.h>

#include "desktop/recording_window.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "resources/resources.h"
#include "support/desktop_driver.h"

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kPaper = RGB(250, 250, 250);

class Painting : public testing::Test {
 protected:
  void SetUp() override {
    window.background = kPaper;
    window.rect = {0, 0, 60, 40};
  }
  COLORREF At(int x, int y) { return driver.PixelAt(window.Handle(), {x, y}); }

  DesktopDriver driver;
  RecordingWindow window{"PaintingWindow"};
};

TEST_F(Painting, OnlyInPaintMessagesAndOnlyWhatIsMarked) {
  PAINTSTRUCT outside;
  ASSERT_TRUE(window.CreateTop());
  EXPECT_EQ(BeginPaint(window.Handle(), &outside), nullptr);
  driver.Wait(30);
  RECT painted;
  window.paintHook = [&](HDC, const PAINTSTRUCT& paint) { painted = paint.paint; };
  window.log.clear();
  const RECT part = {10, 5, 20, 15};
  window.Invalidate(&part, 1);
  window.Update();
  EXPECT_EQ(window.Count(WM_PAINT), 1);
  EXPECT_EQ(painted, part);
  window.Update();
  EXPECT_EQ(window.Count(WM_PAINT), 1);
  window.RedrawNow();
  EXPECT_EQ(window.Count(WM_PAINT), 2);
  EXPECT_EQ(painted, (RECT{0, 0, 60, 40}));
  driver.Wait(30);
  EXPECT_EQ(window.Count(WM_PAINT), 2) << "an idle window paints nothing";
}

TEST_F(Painting, LinesAndFramesLieWhereTheyShould) {
  window.paintHook = [](HDC hdc, const PAINTSTRUCT&) {
    hdc->SetPenColor(kRed);
    Line(hdc, 2, 3, 6, 3);
    Line(hdc, 9, 8, 9, 4);
    Line(hdc, 12, 2, 16, 6);
    Frame3D(hdc, {20, 5, 30, 15}, kGreen, kRed);
    hdc->SetPenColor(0);
    OutlineRect(hdc, {40, 5, 50, 15});
  };
  ASSERT_TRUE(window.CreateTop());
  // The end point of a line is not drawn.
  constexpr std::pair<POINT, COLORREF> kPixels[] = {
      {{1, 3}, kPaper},   {{2, 3}, kRed},    {{5, 3}, kRed},    {{6, 3}, kPaper},  {{9, 8}, kRed},
      {{9, 5}, kRed},     {{9, 4}, kPaper},  {{15, 5}, kRed},   {{16, 6}, kPaper}, {{20, 5}, kRed},
      {{25, 15}, kGreen}, {{29, 5}, kGreen}, {{20, 14}, kRed},  {{40, 14}, 0},     {{49, 5}, 0},
      {{41, 6}, kPaper},  {{49, 10}, 0},     {{50, 10}, kPaper}};
  for (const auto& [point, colour] : kPixels)
    EXPECT_EQ(At(point.x, point.y), colour) << point.x << "," << point.y;
}

TEST_F(Painting, ShapesAreFilledWithinTheirBoundsAndTheRegion) {
  window.paintHook = [](HDC hdc, const PAINTSTRUCT&) {
    constexpr POINT kTriangle[] = {{0, 0}, {20, 0}, {0, 20}};
    hdc->Polygon(kTriangle, kRed);
    hdc->Ellipse({22, 0, 42, 20}, kGreen);
    constexpr RECT kRegion = {44, 0, 50, 10};
    hdc->SelectRegion(&kRegion);
    hdc->Ellipse({40, -10, 80, 30}, kRed);
    hdc->SelectRegion(nullptr);
    hdc->FillRect({52, 0, 54, 2}, kGreen);
  };
  ASSERT_TRUE(window.CreateTop());
  constexpr std::pair<POINT, COLORREF> kPixels[] = {
      {{0, 0}, kRed},     {{8, 8}, kRed},    {{12, 12}, kPaper}, {{21, 0}, kPaper}, {{0, 20}, kPaper},
      {{22, 0}, kPaper},  {{32, 1}, kGreen}, {{22, 10}, kGreen}, {{41, 9}, kGreen}, {{42, 10}, kPaper},
      {{41, 19}, kPaper}, {{43, 9}, kPaper}, {{44, 9}, kRed},    {{49, 0}, kRed},   {{50, 9}, kPaper},
      {{47, 10}, kPaper}, {{53, 1}, kGreen}};
  for (const auto& [point, colour] : kPixels)
    EXPECT_EQ(At(point.x, point.y), colour) << point.x << "," << point.y;
  for (int at = 0; at < 60 * 40; ++at) {
    const COLORREF colour = At(at % 60, at / 60);
    ASSERT_TRUE(colour == kRed || colour == kGreen || colour == kPaper) << "smoothed at " << at;
  }
}

TEST_F(Painting, TextStaysInItsRectangleAndShowsTheCodePage) {
  window.rect = {0, 0, 200, 40};
  window.paintHook = [](HDC hdc, const PAINTSTRUCT&) {
    hdc->SelectFont(GetFont(FontSans, 400));
    hdc->SetTextColor(0);
    hdc->DrawText("a long text that cannot fit into so little room", {10, 5, 60, 25},
                  DT_SINGLELINE | DT_VCENTER);
  };
  ASSERT_TRUE(window.CreateTop());
  int inside = 0;
  for (int at = 0; at <= 30 * 200 + 199; ++at) {
    const POINT point{at % 200, at / 200};
    const bool ink = At(point.x, point.y) != kPaper;
    if (Contains(RECT{10, 5, 60, 25}, point)) {
      inside += ink;
    } else {
      ASSERT_FALSE(ink) << point.x << "," << point.y;
    }
  }
  EXPECT_GT(inside, 40);
  const HFONT font = GetFont(FontSans, 400);
  EXPECT_GT(MeasureText(font, "WWW").cx, MeasureText(font, "iii").cx);
  EXPECT_EQ(MeasureText(font, "\xC4").cy, GetTextMetrics(font).height);
}

TEST_F(Painting, PicturesAreRecoloured) {
  RegisterResources();
  const auto arrow = Bitmap::Load("2002");
  ASSERT_NE(arrow, nullptr);
  EXPECT_EQ(arrow->PixelAt(0, 0), kMagenta);
  EXPECT_TRUE(ReplaceColour(arrow.get(), kMagenta, kGreen));
  EXPECT_EQ(arrow->PixelAt(0, 0), kGreen);
  EXPECT_FALSE(ReplaceColour(nullptr, kMagenta, kGreen));
  EXPECT_EQ(Bitmap::Load("no such picture"), nullptr);
  window.paintHook = [&](HDC hdc, const PAINTSTRUCT&) {
    DrawBitmap(hdc, arrow.get(), 4, 5, kGreen, kRed);
    hdc->StretchBitmap(*arrow, {30, 0, 60, 30});
  };
  ASSERT_TRUE(window.CreateTop());
  EXPECT_EQ(At(4, 5), kRed);
  EXPECT_EQ(At(31, 1), kRed);
}

TEST(Drawing, ColoursMoveByStepsAndSaturate) {
  EXPECT_EQ(Lighten(RGB(250, 10, 0), 10), RGB(255, 20, 10));
  EXPECT_EQ(Darken(RGB(250, 10, 0), 20), RGB(230, 0, 0));
  for (const int none : {0, -5}) EXPECT_EQ(Darken(RGB(1, 2, 3), none), RGB(1, 2, 3)) << none;
  EXPECT_EQ(Lighten(RGB(1, 2, 3), 2000000000), RGB(255, 255, 255));
}

TEST(Fonts, OddWeightsTakeTheBoldSlot) {
  DesktopDriver driver;
  DeleteFonts();
  const HFONT normal = GetFont(FontSmall, 400);
  EXPECT_EQ(GetFont(FontSmall, 400), normal);
  const HFONT odd = GetFont(FontSmall, 600);
  EXPECT_EQ(GetFont(FontSmall, 700), odd);
  EXPECT_NE(odd, normal);
  // A positive height is that of a line.
  EXPECT_LE(GetTextMetrics(GetFont(FontArial, 400)).height, 20);
  EXPECT_GE(GetTextMetrics(GetFont(FontArial, 400)).height, 17);
}

}  // namespace
