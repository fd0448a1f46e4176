// Where mouse messages go: by capture, by the window under the cursor, through drags, and what cursors show.
#include <gtest/gtest.h>

#include "desktop/recording_window.h"
#include "framework/services.h"
#include "platform/desktop/cursor.h"
#include "support/desktop_driver.h"

namespace {

// Two windows side by side in one top-level window.
class Mouse : public testing::Test {
 protected:
  void SetUp() override {
    frame.rect = {0, 0, 200, 100};
    ASSERT_TRUE(frame.CreateTop());
    left.rect = {0, 0, 100, 100};
    right.rect = {100, 0, 200, 100};
    ASSERT_TRUE(left.Create(&frame));
    ASSERT_TRUE(right.Create(&frame));
    driver.Wait(20);
    left.log.clear();
    right.log.clear();
  }

  DesktopDriver driver;
  RecordingWindow frame{"MouseFrame"};
  RecordingWindow left{"MouseLeft"};
  RecordingWindow right{"MouseRight", CS_DBLCLKS};
};

TEST_F(Mouse, WithoutCaptureTheWindowUnderTheCursorGetsTheMessage) {
  driver.Drag(left.Handle(), {90, 50}, right.Handle(), {30, 40});
  EXPECT_EQ(left.Count(WM_LBUTTONDOWN), 1);
  EXPECT_EQ(left.Count(WM_LBUTTONUP), 0);
  ASSERT_EQ(right.Count(WM_LBUTTONUP), 1);
  EXPECT_EQ(PointFromLParam(right.log.back().lParam), (POINT{30, 40}));
}

TEST_F(Mouse, CaptureHoldsUntilReleased) {
  left.hook = [&](const MessageRecord& record) -> LRESULT {
    if (record.message == WM_LBUTTONDOWN) SetCapture(left.Handle());
    if (record.message == WM_LBUTTONUP) ReleaseCapture();
    return 0;
  };
  driver.Drag(left.Handle(), {90, 50}, right.Handle(), {30, 40});
  EXPECT_EQ(right.Count(WM_LBUTTONUP), 0);
  EXPECT_EQ(left.Count(WM_LBUTTONUP), 1);
  EXPECT_EQ(left.Count(WM_CAPTURECHANGED), 1);
  for (const MessageRecord& record : left.log) {
    if (record.message == WM_LBUTTONUP) {
      EXPECT_EQ(PointFromLParam(record.lParam), (POINT{130, 40}));
    }
  }
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Mouse, AWindowThatDiesLosesTheCapture) {
  SetCapture(left.Handle());
  DestroyWindow(left.Handle());
  EXPECT_EQ(GetCapture(), nullptr);
  driver.Click(right.Handle(), {10, 10});
  EXPECT_EQ(right.Count(WM_LBUTTONDOWN), 1);
}

TEST_F(Mouse, TheCaptureKeepsTheCursorWhereItIsToldTo) {
  const auto cornerOf = [&](int x, int y) { return ClientToScreen(left.Handle(), {x, y}); };
  const RECT bounds{cornerOf(10, 20).x, cornerOf(10, 20).y, cornerOf(50, 60).x, cornerOf(50, 60).y};
  const auto moveTo = [&](POINT point) {
    driver.ProcessEvents();  // of the cursor's own moves
    driver.MoveMouse(left.Handle(), point);
    return PointFromLParam(left.log.back().lParam);
  };
  ClipCursor(&bounds);
  EXPECT_EQ(moveTo({90, 5}), (POINT{90, 5})) << "without the capture nobody keeps it";
  SetCapture(left.Handle());
  ClipCursor(&bounds);
  EXPECT_EQ(moveTo({95, 5}), (POINT{49, 20}));
  EXPECT_TRUE(SetCursorPos(cornerOf(30, 30)));
  EXPECT_EQ(GetCursorPos(), cornerOf(30, 30));
  SetCapture(right.Handle());  // takes it away
  SetCapture(left.Handle());
  EXPECT_EQ(moveTo({90, 8}), (POINT{90, 8}));
  ReleaseCapture();
}

TEST_F(Mouse, ASecondQuickPressIsADoubleClickOnlyForClassesThatWantIt) {
  driver.DoubleClick(right.Handle(), {10, 10});
  EXPECT_EQ(right.Count(WM_LBUTTONDBLCLK), 1);
  EXPECT_EQ(right.Count(WM_LBUTTONDOWN), 1);
  driver.DoubleClick(left.Handle(), {10, 10});
  EXPECT_EQ(left.Count(WM_LBUTTONDBLCLK), 0);
  EXPECT_EQ(left.Count(WM_LBUTTONDOWN), 2);
}

TEST_F(Mouse, TheCursorIsAskedForBeforeEachMove) {
  driver.MoveMouse(right.Handle(), {10, 10});
  driver.MoveMouse(right.Handle(), {12, 10});
  std::vector<UINT> seen;
  for (const UINT message : right.Messages()) {
    if (message == WM_SETCURSOR || message == WM_MOUSEMOVE) seen.push_back(message);
  }
  ASSERT_GE(seen.size(), 4U);
  EXPECT_EQ(seen[seen.size() - 2], WM_SETCURSOR);
  EXPECT_EQ(seen.back(), WM_MOUSEMOVE);
}

TEST_F(Mouse, TheWheelArrivesInWholeStepsAndClimbsToTheParent) {
  driver.Wheel(left.Handle(), {10, 10}, -1);
  driver.Wheel(left.Handle(), {10, 10}, 2);
  std::vector<int> deltas;
  for (const MessageRecord& record : left.log) {
    if (record.message == WM_MOUSEWHEEL) deltas.push_back(WheelDelta(record.wParam));
  }
  EXPECT_EQ(deltas, (std::vector<int>{-120, 120, 120}));
  EXPECT_EQ(frame.Count(WM_MOUSEWHEEL), 3);
}

TEST_F(Mouse, ADragAsksAndTellsTheWindowUnderTheCursor) {
  POINT asked;
  std::vector<unsigned> commands;
  right.hook = [&](const MessageRecord& record) -> LRESULT {
    if (record.message != WM_COMMAND) return 0;
    commands.push_back(LowWord(record.wParam));
    asked = *reinterpret_cast<const POINT*>(record.lParam);
    return 1;
  };
  const POINT over = {120, 60};  // in the left window's pixels, 20 into the right one
  DragFeedback({left.Handle(), MK_LBUTTON, over});
  DragDrop({left.Handle(), MK_LBUTTON, over});
  DragDrop({left.Handle(), MK_LBUTTON | MK_CONTROL, over});
  DragFeedback({left.Handle(), MK_LBUTTON, {5, 5}});
  DragDrop({left.Handle(), MK_LBUTTON, {5, 5}});
  EXPECT_EQ(commands, (std::vector<unsigned>{kDropQuery, kDropMove, kDropCopy}));
  EXPECT_EQ(ScreenToClient(right.Handle(), asked), (POINT{20, 60}));
  EXPECT_EQ(left.Count(WM_COMMAND), 0);
}

}  // namespace
