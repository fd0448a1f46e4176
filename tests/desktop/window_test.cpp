// How windows are made and destroyed, in which order messages reach them, and where those of the mouse go.
#include <gtest/gtest.h>

#include <memory>

#include "desktop/recording_window.h"
#include "framework/services.h"
#include "platform/desktop/application.h"
#include "platform/desktop/cursor.h"
#include "support/desktop_driver.h"
#include "support/windows.h"

namespace {

constexpr UINT kFirst = 0x0501;
constexpr UINT kSecond = 0x0502;

class Window : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(window.CreateTop()); }

  DesktopDriver driver;
  RecordingWindow window;
  RecordingWindow child{"Child"};
};

TEST_F(Window, CreateFailsWhenCreationIsRefused) {
  child.hook = [](const MessageRecord& record) -> LRESULT { return record.message == WM_CREATE ? -1 : 0; };
  EXPECT_FALSE(child.Create(nullptr));
  EXPECT_FALSE(IsWindow(child.Handle()));
  EXPECT_EQ(ObjectFromHandle(child.Handle()), nullptr);
}

TEST_F(Window, AChildThatIsMadeHiddenStaysSoWhenItsParentShows) {
  RecordingWindow parent;
  ASSERT_TRUE(parent.Create(nullptr, WS_POPUP));
  ASSERT_TRUE(child.Create(&parent, WS_CHILD));
  parent.Show();
  EXPECT_FALSE(IsWindowVisible(child.Handle()));
  child.Show();
  EXPECT_TRUE(IsWindowVisible(child.Handle()));
}

TEST_F(Window, SentMessagesAreCallsAndPostedOnesKeepTheirOrder) {
  driver.ProcessEvents();
  window.wanted = [](UINT message) { return message == kFirst || message == kSecond || message == WM_PAINT; };
  window.log.clear();
  window.Invalidate(nullptr, 1);
  window.Post(kSecond, 1, 0);
  window.Post(kFirst, 2, 0);
  window.Post(kSecond, 3, 0);
  EXPECT_TRUE(window.log.empty());
  window.hook = [](const MessageRecord& record) -> LRESULT { return record.message == kFirst ? 42 : 0; };
  EXPECT_EQ(window.Send(kFirst, 0, 0), 42);
  ASSERT_EQ(window.log.size(), 1U);
  ASSERT_TRUE(driver.WaitUntil([&] { return window.Count(WM_PAINT) > 0; }));
  EXPECT_EQ(window.Messages(), (std::vector<UINT>{kFirst, kSecond, kFirst, kSecond, WM_PAINT}));
  EXPECT_EQ(window.log[3].wParam, 3U);
}

TEST_F(Window, DestroyClosesFirstThenParentBeforeChildren) {
  ASSERT_TRUE(child.Create(&window));
  std::vector<std::string> order;
  window.hook = [&](const MessageRecord& record) -> LRESULT {
    if (record.message == WM_CLOSE) order.emplace_back("close");
    if (record.message == WM_DESTROY)
      order.emplace_back(IsWindow(child.Handle()) ? "parent, child lives" : "parent");
    return 0;
  };
  child.hook = [&](const MessageRecord& record) -> LRESULT {
    if (record.message == WM_DESTROY) order.emplace_back("child");
    return 0;
  };
  window.Destroy();
  EXPECT_EQ(order, (std::vector<std::string>{"close", "parent, child lives", "child"}));
  EXPECT_FALSE(IsWindow(window.Handle()));
  EXPECT_FALSE(IsWindow(child.Handle()));
  driver.ProcessEvents();
}

TEST_F(Window, MayBeDestroyedFromItsOwnHandlers) {
  for (const UINT when : {kFirst, WM_PAINT, WM_LBUTTONDOWN, WM_TIMER, WM_KEYDOWN}) {
    RecordingWindow brief("Short");
    brief.hook = [&](const MessageRecord& record) -> LRESULT {
      if (record.message == when) DestroyWindow(brief.Handle());
      return 0;
    };
    ASSERT_TRUE(brief.CreateTop());
    driver.Wait(20);
    const HWND handle = brief.Handle();
    if (when == kFirst) brief.Post(kFirst, 0, 0);
    if (when == WM_TIMER) SetTimer(handle, 7, 5);
    if (when == WM_LBUTTONDOWN) driver.Click(handle, {5, 5});
    if (when == WM_KEYDOWN) driver.Press(handle, VK_RETURN);
    driver.WaitUntil([&] { return !IsWindow(handle); });
    brief.log.clear();
    SendMessage(handle, kSecond, 0, 0);
    EXPECT_FALSE(PostMessage(handle, kSecond, 0, 0));
    driver.ProcessEvents();
    EXPECT_TRUE(brief.log.empty()) << "message " << when;
  }
}

TEST_F(Window, TimersTickByNumberUntilKilled) {
  SetTimer(window.Handle(), 100, 5);
  SetTimer(window.Handle(), 101, 5000);
  ASSERT_TRUE(driver.WaitUntil([&] { return window.Count(WM_TIMER) >= 3; }));
  EXPECT_TRUE(KillTimer(window.Handle(), 100));
  EXPECT_FALSE(KillTimer(window.Handle(), 100));
  const int ticks = window.Count(WM_TIMER);
  driver.Wait(40);
  EXPECT_EQ(window.Count(WM_TIMER), ticks);
  for (const MessageRecord& record : window.log)
    EXPECT_TRUE(record.message != WM_TIMER || record.wParam == 100);
}

TEST_F(Window, DeletingAnObjectDestroysItsWindowOnceAndPostedMessagesDie) {
  auto brief = std::make_unique<RecordingWindow>();
  ASSERT_TRUE(brief->CreateTop());
  const HWND handle = brief->Handle();
  brief->Post(kFirst, 0, 0);
  brief.reset();
  EXPECT_FALSE(IsWindow(handle));
  driver.ProcessEvents();
  RecordingWindow other;
  ASSERT_TRUE(other.CreateTop());
  EXPECT_NE(other.Handle(), handle);
}

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

}  // namespace
