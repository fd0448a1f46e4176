// The panes of the frame, the bar that turns to them, the title page and the link button.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "controls/slide_bar.h"
#include "controls/spin_button.h"
#include "controls/toolbar.h"
#include "framework/fonts.h"
#include "framework/link_button.h"
#include "framework/pane.h"
#include "shell/intro_pane.h"
#include "shell/pane_bar.h"
#include "shell/skins.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/recording_dc.h"
#include "support/temporary_folder.h"
#include "support/windows.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kGreen = RGB(188, 222, 1);
constexpr PaneColours kColours = {.background = kGreen,
                                  .accent = RGB(119, 144, 0),
                                  .stripText = RGB(250, 251, 252),
                                  .band1 = RGB(231, 113, 1),
                                  .band3 = RGB(128, 121, 149),
                                  .band2 = RGB(139, 164, 0),
                                  .band4 = RGB(231, 113, 1),
                                  .extra1 = 0,
                                  .extra2 = RGB(252, 183, 2),
                                  .extra3 = RGB(231, 113, 1)};

class Panes : public testing::Test {
 protected:
  // Before anything looks for the program's files: a folder without skins.
  void SetUp() override {
    setenv("DAYBRIX_FOLDER", folder.Path().c_str(), 1);
    UnloadSkin();
  }

  tests::TemporaryFolder folder;
  DesktopDriver driver;
  HostWindow host{{0, 0, 400, 400}};
};

TEST_F(Panes, TheListKeepsTheOrderOfMakingAndForgetsThoseThatDie) {
  EXPECT_EQ(PaneCount(), 0);
  EXPECT_EQ(CurrentPane(), nullptr);
  EXPECT_EQ(CurrentPaneIndex(), 0);
  EXPECT_FALSE(SetCurrentPaneIndex(0));

  ZarfPane first("Intro", kColours);
  auto second = std::make_unique<ZarfPane>("Work", kColours);
  ZarfPane third("More", kColours);
  EXPECT_EQ(CurrentPane(), &first);
  EXPECT_FALSE(SetCurrentPaneIndex(3));
  EXPECT_FALSE(SetCurrentPaneIndex(-1));
  EXPECT_TRUE(SetCurrentPaneIndex(2));
  EXPECT_EQ(CurrentPane(), &third);

  second.reset();
  ASSERT_EQ(PaneCount(), 2);
  EXPECT_EQ(PaneList()[0], &first);
  EXPECT_EQ(CurrentPane(), &third) << "it moved up, and stayed current";
  EXPECT_EQ(CurrentPaneIndex(), 1);
  {
    ZarfPane passing("Passing", kColours);
    EXPECT_EQ(CurrentPaneIndex(), 0) << "a new pane resets it";
    EXPECT_TRUE(SetCurrentPaneIndex(2));
    EXPECT_EQ(CurrentPane(), &passing);
  }
  EXPECT_EQ(CurrentPane(), &first);
  EXPECT_EQ(PaneCount(), 2);
}

TEST_F(Panes, APaneIsMadeHiddenAndFillsItselfWithItsGround) {
  ZarfPane pane(std::string(1000, 'x').c_str(), kColours);
  EXPECT_EQ(pane.Name(), std::string(254, 'x'));
  ASSERT_TRUE(pane.Create(&host));
  EXPECT_FALSE(IsWindowVisible(pane.Handle()));
  EXPECT_TRUE(pane.CanLeave() && pane.CanEnter() && pane.OnEnter());
  pane.Move(0, 0, 50, 40, 1);
  pane.Show();
  driver.Wait(20);
  EXPECT_EQ(driver.PixelAt(pane.Handle(), {49, 39}), kGreen);
}

class Bar : public Panes {
 protected:
  void SetUp() override {
    Panes::SetUp();
    ASSERT_TRUE(bar.Create(&host));
    bar.Move(0, 0, 300, 25, 1);
    driver.Wait(20);
  }
  // The pictures drawn, by the section they are in.
  std::vector<const Bitmap*> SectionPictures() {
    RecordingDc dc;
    bar.Paint(&dc, {0, 0, 300, 25});
    std::vector<const Bitmap*> pictures;
    for (const DrawingCall& call : dc.Of(DrawingKind::kBitmap)) pictures.push_back(call.bitmap);
    return pictures;
  }

  ZarfPane intro{"Intro", kColours};
  ZarfPane work{"Work", kColours};
  ZarfPaneBar bar;
};

TEST_F(Bar, AClickOnAnotherSectionSendsItsIndexWhileItIsDrawnPressed) {
  const std::vector<const Bitmap*> atFirst = SectionPictures();
  ASSERT_EQ(atFirst.size(), 2u) << "both pictures exist";
  EXPECT_NE(atFirst[0], atFirst[1]);

  host.onCommand = [&](const HostWindow::Command&) -> LRESULT {
    EXPECT_EQ(CurrentPaneIndex(), 0) << "turning to it is the frame's business";
    EXPECT_EQ(SectionPictures(), (std::vector<const Bitmap*>{atFirst[1], atFirst[0]}));
    return 0;
  };
  // In order: beside them all, in the gap, the current one, the other one. The host refuses to turn to it.
  for (const int x : {1, 77, 40}) SendMessage(bar.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(x, 10));
  EXPECT_TRUE(host.commands.empty());
  SendMessage(bar.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(100, 10));
  EXPECT_EQ(host.Values(1000), std::vector<LPARAM>{1}) << "sent";
  EXPECT_EQ(SectionPictures(), atFirst);

  host.onCommand = [](const HostWindow::Command& command) -> LRESULT {
    SetCurrentPaneIndex(static_cast<int>(command.value));
    return 0;
  };
  driver.Click(bar.Handle(), {100, 10});
  driver.Click(bar.Handle(), {100, 10});
  EXPECT_EQ(host.Values(1000), (std::vector<LPARAM>{1, 1})) << "it is the current one now";
  EXPECT_EQ(SectionPictures(), (std::vector<const Bitmap*>{atFirst[1], atFirst[0]}));
}

TEST_F(Bar, TheSkinGivesTheGroundAndThePanesTheCaptions) {
  RecordingDc plain;
  bar.Paint(&plain, {0, 0, 300, 25});
  EXPECT_EQ(plain.ColourAt({299, 24}), kUnsetColour) << "no skin at all";
  ASSERT_NE(plain.FindText("Work"), nullptr);
  EXPECT_EQ(plain.FindText("Work")->rect, (RECT{79, 7, 151, 20}));
  EXPECT_EQ(plain.FindText("Work")->colour, kWhite);
  EXPECT_EQ(plain.FindText("Work")->format, DT_SINGLELINE | DT_CENTER | DT_VCENTER);

  GetSkin()->subTitle = Bitmap::Load("2001");
  RecordingDc skinned;
  bar.Paint(&skinned, {0, 0, 300, 25});
  ASSERT_EQ(skinned.Of(DrawingKind::kStretch).size(), 1u);
  EXPECT_EQ(skinned.Of(DrawingKind::kStretch)[0].rect, (RECT{-5, 0, 305, 25}));
  EXPECT_TRUE(skinned.Of(DrawingKind::kFill).empty());
}

TEST_F(Bar, TheRightButtonIsTheFrames) {
  class Frame : public HostWindow {
   public:
    LRESULT OnRButtonDown(const MessageRecord& record) override {
      pressed = PointFromLParam(record.lParam);
      return 0;
    }
    POINT pressed;
  } frame;
  ZarfPaneBar own;
  ASSERT_TRUE(own.Create(&frame));
  own.Move(20, 30, 200, 25, 1);
  SendMessage(own.Handle(), WM_RBUTTONDOWN, MK_RBUTTON, MakeLParam(7, 9));
  EXPECT_EQ(frame.pressed, (POINT{27, 39}));
}

TEST_F(Panes, TheTitlePageHasAStripThePictureAndTheNameInLargeLetters) {
  constexpr COLORREF kLarge = RGB(254, 253, 252);
  ZarfIntroPane tall("Intro", "Tempoline", kColours,
                     {ZarfIntroPane::Layout::kTallPicture, false, 4000, kWhite, kLarge});
  ZarfIntroPane wide("Intro", "Tempoline", kColours,
                     {ZarfIntroPane::Layout::kWidePicture, false, 99999, kNoColour, kLarge});
  constexpr RECT kPage{0, 0, 380, 335};
  const struct {
    ZarfIntroPane& pane;
    RECT picture;
    RECT name;
  } pages[] = {{tall, {0, 26, 140, 276}, {150, 35, 380, 54}}, {wide, {0, 26, 311, 112}, {10, 130, 380, 160}}};
  for (const auto& page : pages) {
    ASSERT_TRUE(page.pane.Create(&host));
    page.pane.Move(0, 0, 380, 335, 1);
    const HWND picture = page.pane.Picture().Handle();
    EXPECT_EQ(ScreenToClient(page.pane.Handle(), ClientToScreen(picture, {0, 0})),
              (POINT{page.picture.left, page.picture.top}));
    EXPECT_EQ(tests::ClientOf(picture), (RECT{0, 0, Width(page.picture), Height(page.picture)}));
    RecordingDc dc;
    page.pane.Paint(&dc, kPage);
    EXPECT_EQ(dc.ColourAt({379, 334}), kGreen);
    const std::vector<DrawingCall> names = dc.Of(DrawingKind::kText);
    ASSERT_EQ(names.size(), 2u);
    EXPECT_EQ(names[0].text + names[1].text, "TempolineTempoline");
    EXPECT_EQ(names[0].rect, (RECT{15, 0, 380, 26}));
    EXPECT_EQ(names[0].colour, kColours.stripText);
    EXPECT_EQ(names[0].font, GetFont(FontSmall, 700));
    EXPECT_EQ(names[1].rect, page.name);
    EXPECT_EQ(names[1].colour, kLarge);
    EXPECT_EQ(names[1].font, GetFont(FontArial, 700));
  }
  ASSERT_EQ(Bitmap::Load("99999"), nullptr);
  RecordingDc without;
  wide.Picture().Paint(&without, {0, 0, 311, 86});
  EXPECT_EQ(without.calls.size(), 2u) << "no ground, no picture: the two edges";
  EXPECT_EQ(without.ColourAt({0, 85}), 0u);
  EXPECT_EQ(without.ColourAt({310, 0}), 0u);
}

TEST_F(Panes, ThePictureTellsItsStoryOnceAndOnlyWhereItIsAnimated) {
  constexpr auto kTall = ZarfIntroPane::Layout::kTallPicture;
  ZarfIntroPane still("Intro", "Tempoline", kColours, {kTall, false, 4000, kWhite, kWhite});
  ZarfIntroPane moving("Intro", "Tempoline", kColours, {kTall, true, 4000, kWhite, kWhite});
  ZarfIntroPane left("Intro", "Tempoline", kColours, {kTall, true, 4000, kWhite, kWhite});
  for (ZarfIntroPane* pane : {&still, &moving, &left}) {
    ASSERT_TRUE(pane->Create(&host));
    pane->Move(0, 0, 380, 335, 1);
    EXPECT_TRUE(pane->OnEnter());
  }
  EXPECT_FALSE(still.TimerRuns());
  ASSERT_TRUE(moving.TimerRuns());
  const auto tick = [&moving] { SendMessage(moving.Handle(), WM_TIMER, 100, 0); };
  const auto pictures = [&moving] {
    RecordingDc dc;
    moving.Picture().Paint(&dc, {0, 0, 140, 250});
    return dc.Of(DrawingKind::kBitmap);
  };
  ASSERT_EQ(pictures().size(), 1u);
  for (int frame = 1; frame <= 3; ++frame) {
    tick();
    EXPECT_EQ(moving.Picture().Frame(), frame);
    ASSERT_EQ(pictures().size(), 2u);
    EXPECT_EQ(pictures()[1].rect, (RECT{10, 154, 10, 154}));
    EXPECT_TRUE(moving.TimerRuns());
  }
  tick();
  tick();
  EXPECT_EQ(moving.Picture().Frame(), 3);
  EXPECT_FALSE(moving.TimerRuns());
  EXPECT_TRUE(moving.OnEnter());
  EXPECT_FALSE(moving.TimerRuns()) << "told once";

  EXPECT_TRUE(left.CanLeave());
  EXPECT_FALSE(left.TimerRuns());
  EXPECT_EQ(left.Picture().Frame(), 3) << "leaving ends it";
}

// Its outcome is told when it is released, but for what acts at the press.
TEST_F(Panes, APressFollowsTheMouseAndEndsWhereItIsLetGo) {
  ZarfClassLinkButton link(17, {kGreen, 0, 0}, "More...", -1, DT_SINGLELINE);
  ZarfToolBar tools;
  tools.AddButton(1001, 2001, 3000, 3000, kPlainToolButton);
  ZarfSpinButton spin(18, SpinKind::kUp, kGreen);
  ZarfSlideBar slide(19, kGreen, 5);
  struct Row {
    const char* name;
    ZarfWnd& control;
    std::function<bool()> pressed;
    bool pressedOutside;
    const char* told;  // how often: let go inside, outside, inside after a way outside; mouse lost
  };
  const Row rows[] = {
      {"link", link, [&] { return link.Hot(); }, false, "1010"},
      {"toolbar", tools, [&] { return tools.ActiveState() == ZarfToolBar::State::kPressed; }, false, "1010"},
      {"spin", spin, [&] { return spin.Pressed(); }, true, "1111"},
      {"slide", slide, [&] { return slide.Dragging(); }, true, "1000"}};
  for (const auto& [name, control, pressed, pressedOutside, told] : rows) {
    ASSERT_TRUE(control.Create(&host));
    control.Move(10, 10, 60, 25, 1);
    driver.Wait(20);
    const HWND window = control.Handle();
    std::string heard;
    for (const int way : {0, 1, 2, 3}) {
      SCOPED_TRACE(testing::Message() << name << " " << way);
      host.commands.clear();
      driver.MouseDown(window, {20, 10});
      EXPECT_TRUE(pressed() && GetCapture() == window);
      if (way == 1 || way == 2) driver.MoveMouse(window, {200, 10});
      EXPECT_TRUE(pressed() == pressedOutside || way == 0 || way == 3);
      if (way == 2) driver.MoveMouse(window, {20, 10});
      EXPECT_TRUE(pressed() || way == 1);
      if (way == 3) ReleaseCapture();
      EXPECT_TRUE(!pressed() || way != 3);
      driver.MouseUp(window, {way == 1 ? 200 : 20, 10});
      EXPECT_TRUE(!pressed() && GetCapture() == nullptr);
      // A held button of this kind would fire again after half a second.
      driver.Wait(way == 3 && &control == &spin ? 700 : 20);
      heard += std::to_string(host.commands.size());
    }
    EXPECT_EQ(heard, told) << name;
    control.Destroy();
  }
}

TEST_F(Panes, ALinkButtonIsHotWhileItIsPressed) {
  const ZarfClassLinkButton::Look look = {kGreen, RGB(1, 1, 1), RGB(2, 2, 2)};
  ZarfClassLinkButton button(17, look, "More...", -1, DT_SINGLELINE | DT_VCENTER);
  ZarfClassLinkButton fromTable(18, look, "unused", 3001, DT_CENTER);
  ASSERT_TRUE(button.Create(&host));
  button.Move(10, 10, 60, 20, 1);
  driver.Wait(20);
  const auto textColour = [&button] {
    RecordingDc dc;
    button.Paint(&dc, {0, 0, 60, 20});
    EXPECT_EQ(dc.ColourAt({59, 19}), kGreen);
    const DrawingCall* const text = dc.FindText("More...");
    return text != nullptr ? text->colour : kNoColour;
  };
  driver.MoveMouse(button.Handle(), {5, 5});
  EXPECT_EQ(textColour(), look.text) << "not pressed";
  driver.MouseDown(button.Handle(), {5, 5});
  EXPECT_EQ(textColour(), look.hotText);
  driver.MouseUp(button.Handle(), {5, 5});
  RecordingDc dc;
  fromTable.Paint(&dc, {0, 0, 60, 20});
  const DrawingCall* const text = dc.FindText("Edit");
  ASSERT_NE(text, nullptr) << "the text of the table";
  EXPECT_EQ(text->font, GetFont(FontSans, 400));
}

}  // namespace
