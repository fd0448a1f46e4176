// What the user sees while the program keeps him waiting: animations, step by step, and the window that shows
// how far a long piece of work is.
#include <gtest/gtest.h>

#include "framework/animations.h"
#include "framework/progress_window.h"
#include "framework/services.h"
#include "platform/desktop/application.h"
#include "platform/system/clock.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/windows.h"

namespace tests {
namespace {

using Lines = std::vector<Segment>;

TEST(Animations, TheSweepFallsInGrowingStrides) {
  const auto steps = SweepSteps({10, 100, 200, 161}, {40, 300, 170, 500});
  std::vector<int> tops;
  for (const AnimationStep& step : steps) {
    const int y = step.lines[0].from.y;
    EXPECT_EQ(step.lines, (Lines{{{10, y}, {200, y}}, {{10, y}, {40, 300}}, {{200, y}, {170, 300}}}));
    EXPECT_EQ(step.waitMs, 30);
    tops.push_back(y);
  }
  EXPECT_EQ(tops, (std::vector<int>{100, 110, 130, 160}));
  EXPECT_EQ(SweepSteps({10, 100, 200, 160}, {}).size(), 3u) << "the bottom itself lies outside";
  EXPECT_TRUE(SweepSteps({10, 100, 200, 100}, {}).empty());
}

TEST(Animations, RollingDownGrowsFromTheTop) {
  const auto steps = RollDownSteps({5, 50, 105, 91});
  ASSERT_EQ(steps.size(), 3u);
  EXPECT_EQ(steps[2].lines,
            (Lines{{{5, 50}, {105, 50}}, {{5, 89}, {105, 89}}, {{5, 50}, {5, 90}}, {{104, 50}, {104, 90}}}));
  EXPECT_EQ(steps[0].waitMs, 5);
  EXPECT_EQ(RollDownSteps({5, 50, 105, 90}).size(), 2u);
}

TEST(Animations, ZoomingEndsJustInsideTheTarget) {
  const RECT target = {0, 0, 200, 100};
  const auto steps = ZoomSteps({100, 50, 100, 50}, target);
  ASSERT_EQ(steps.size(), 4u);
  EXPECT_EQ(steps[0].lines[0], (Segment{{70, 20}, {130, 20}}));
  EXPECT_EQ(steps[1].lines[4], (Segment{{40, 1}, {160, 1}})) << "held by the target's edge";
  EXPECT_EQ(steps[3].lines[12], (Segment{{1, 1}, {199, 1}}));
  EXPECT_EQ(steps[3].lines[13], (Segment{{1, 98}, {199, 98}}));
  EXPECT_EQ(steps[3].lines.size(), 16u) << "earlier outlines stay";
  EXPECT_EQ(steps[3].waitMs, 20);
  // It ends whatever the rectangles are.
  for (const RECT& strange : {RECT{0, 0, 1, 1}, RECT{0, 0, 0, 0}, RECT{500, 500, 501, 900}}) {
    EXPECT_LT(ZoomSteps({100, 50, 100, 50}, strange).size(), 60u);
  }
}

// Counts what reaches it.
class BusyWindow : public HostWindow {
 public:
  void OnPaint(HDC, PAINTSTRUCT) override { ++paints; }
  LRESULT OnLButtonDown(const MessageRecord&) override { return ++clicks; }
  LRESULT OnTimer(const MessageRecord&) override { return ++ticks; }
  int paints = 0;
  int clicks = 0;
  int ticks = 0;
};

TEST(Animations, WindowsPaintDuringAWaitAndEverythingElseComesAfterIt) {
  DesktopDriver driver;
  BusyWindow window;
  driver.WaitUntil([&] { return window.paints > 0; });
  SetTimer(window.Handle(), 1, 2);
  window.paints = 0;
  window.commands.clear();
  window.Post(WM_COMMAND, 1, 0);
  window.Post(WM_COMMAND, 2, 0);
  window.Invalidate(nullptr, 0);
  const std::int64_t begin = platform::TickMs();
  WaitMs(50);
  EXPECT_GE(platform::TickMs() - begin, 50);
  EXPECT_GT(window.paints, 0);
  EXPECT_EQ(window.ticks, 0);
  EXPECT_TRUE(window.commands.empty());
  window.Post(WM_COMMAND, 3, 0);
  driver.ProcessEvents();
  ASSERT_EQ(window.commands.size(), 3u);
  for (unsigned i = 0; i < 3; ++i) EXPECT_EQ(window.commands[i].id, i + 1) << "in the order of posting";
  EXPECT_TRUE(driver.WaitUntil([&] { return window.ticks > 0; })) << "timers go on";
}

TEST(Animations, OnlyZoomingIgnoresTheSwitch) {
  const DesktopDriver driver;
  const auto took = [](const auto& run) {
    const std::int64_t begin = platform::TickMs();
    run();
    return platform::TickMs() - begin;
  };
  const RECT rect = {0, 0, 300, 2000};
  SetAnimationEnabled(0);
  EXPECT_LT(took([&] { SweepAnimation(rect, rect); }), 30);
  EXPECT_LT(took([&] { RollDown(0, 0, 300, 2000); }), 30);
  EXPECT_GE(took([] { ZoomRect({50, 50, 50, 50}, {0, 0, 100, 100}); }), 40);
  SetAnimationEnabled(1);
  EXPECT_GE(took([] { RollDown(0, 0, 300, 200); }), 50);
}

TEST(ProgressWindow, PaintsByThePixelAndTakesTheInputAway) {
  constexpr std::uint32_t kSteps = 100000;
  DesktopDriver driver;
  BusyWindow owner;
  SetTimer(owner.Handle(), 1, 1);
  ProgressWindow progress;
  const std::string line = "Compacting \"Ημερολόγιο.cld\"";
  progress.Begin(&owner, line, kSteps);
  const HWND window = progress.Handle();
  EXPECT_EQ(GetDlgItemPath(window, 99), line);
  const RECT bar = ClientOf(GetDlgItem(window, 100));
  const POINT middle = {Width(bar) / 2, Height(bar) / 2};
  const COLORREF empty = driver.PixelAt(GetDlgItem(window, 100), middle);
  const int before = driver.Paints();
  owner.ticks = 0;
  for (std::uint32_t step = 0; step < kSteps; ++step) {
    if (step == kSteps / 4) {
      driver.Click(owner.Handle(), {150, 150});
      driver.Press(window, VK_ESCAPE);
      PostMessage(window, WM_CLOSE, 0, 0);
    }
    progress.Step();
  }
  progress.Step();  // a file may have grown meanwhile
  EXPECT_NE(driver.PixelAt(GetDlgItem(window, 100), middle), empty);
  // The desktop's bar grows by a few pixels at a time.
  EXPECT_GE(driver.Paints() - before, Width(bar) / 10);
  EXPECT_LE(driver.Paints() - before, 2 * Width(bar));
  EXPECT_GT(owner.ticks, 0) << "messages are handled meanwhile";
  EXPECT_EQ(owner.clicks, 0);
  ASSERT_TRUE(IsWindow(window));
  progress.Close();
  EXPECT_FALSE(IsWindow(window));
  driver.Click(owner.Handle(), {5, 5});
  EXPECT_EQ(owner.clicks, 1);
  EXPECT_EQ(GetForegroundWindow(), owner.Handle());
}

TEST(ProgressWindow, IsCancelledOnlyWhereItCanBe) {
  DesktopDriver driver;
  HostWindow owner;
  ProgressWindow progress;
  progress.BeginCancellable(&owner, "Import...", "in.csv");
  EXPECT_EQ(GetWindowText(progress.Handle()), "Import...");
  EXPECT_TRUE(progress.Advance(1, 1000000));
  EXPECT_TRUE(progress.Advance(0, 0)) << "an empty file";
  driver.ClickControl(progress.Handle(), IDCANCEL);
  EXPECT_FALSE(progress.Advance(2, 1000000));
  progress.Begin(&owner, "Compacting", 10);
  EXPECT_FALSE(IsWindowVisible(GetDlgItem(progress.Handle(), IDCANCEL)));
  EXPECT_TRUE(progress.Advance(1, 10)) << "begun anew";
}

TEST(ProgressWindow, ALongNameDoesNotWidenItAndNothingToDoIsFine) {
  DesktopDriver driver;
  HostWindow owner;
  ProgressWindow progress;
  progress.Begin(&owner, "short", 0);
  const RECT first = ClientOf(progress.Handle());
  progress.Step();
  progress.Begin(&owner, "Compacting \"" + std::string(250, 'w') + ".cld\"", 3);
  EXPECT_EQ(ClientOf(progress.Handle()), first);
}

}  // namespace
}  // namespace tests
