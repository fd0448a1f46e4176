// What the animations show, step by step, and what goes on while they wait.
#include "framework/animations.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/services.h"
#include "platform/system/clock.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"

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

// Writes down what reaches it.
class BusyWindow : public HostWindow {
 public:
  void OnPaint(HDC, PAINTSTRUCT) override { ++paints; }
  LRESULT OnTimer(const MessageRecord&) override {
    ++ticks;
    return 0;
  }
  int paints = 0;
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

}  // namespace
}  // namespace tests
