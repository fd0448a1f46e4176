// How windows are made and destroyed and in which order messages reach them.
#include <gtest/gtest.h>

#include <memory>

#include "desktop/recording_window.h"
#include "platform/desktop/application.h"
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

TEST_F(Window, TheFirstMessageBindsTheObjectAndAfterCreateWaitsForTheLoop) {
  ASSERT_FALSE(window.log.empty());
  EXPECT_EQ(window.log.front().message, WM_CREATE);
  EXPECT_EQ(window.log.front().hwnd, window.Handle());
  EXPECT_EQ(window.Count(ZWM_AFTERCREATE), 0);
  driver.ProcessEvents();
  EXPECT_EQ(window.Count(ZWM_AFTERCREATE), 1);
  EXPECT_EQ(ObjectFromHandle(window.Handle()), &window);
}

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

TEST_F(Window, TheFirstRegistrationOfAClassStays) {
  RecordingWindow first("SharedName");
  first.background = RGB(1, 2, 3);
  RecordingWindow second("SharedName");
  second.background = RGB(200, 0, 0);
  ASSERT_TRUE(first.CreateTop());
  ASSERT_TRUE(second.CreateTop());
  EXPECT_EQ(driver.PixelAt(second.Handle(), {5, 5}), RGB(1, 2, 3));
  EXPECT_EQ(GetClassName(second.Handle()), "SharedName");
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

TEST_F(Window, MovingTellsTheSizeAtOnceAndOnlyWhenItChanged) {
  ASSERT_TRUE(child.Create(&window));
  driver.ProcessEvents();
  child.log.clear();
  child.Move(10, 20, 70, 30);
  ASSERT_EQ(child.Count(WM_SIZE), 1);
  EXPECT_EQ(child.log.front().lParam, MakeLParam(70, 30));
  child.Move(15, 25);
  driver.ProcessEvents();
  EXPECT_EQ(child.Count(WM_SIZE), 1);
  EXPECT_EQ(tests::ClientOf(child.Handle()), (RECT{0, 0, 70, 30}));
  EXPECT_EQ(ClientToScreen(child.Handle(), {0, 0}), ClientToScreen(window.Handle(), {15, 25}));
  EXPECT_EQ(GetParent(child.Handle()), window.Handle());
  EXPECT_EQ(child.ParentObject(), &window);
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

TEST_F(Window, ATimerOfAnotherWindowIsNotOurs) {
  class Ticking : public RecordingWindow {
   public:
    LRESULT OnTimer(const MessageRecord&) override { return 5; }
  } ticking;
  ASSERT_TRUE(ticking.CreateTop());
  EXPECT_EQ(ticking.WindowProc({ticking.Handle(), WM_TIMER, 1, 0}), 5);
  EXPECT_EQ(ticking.WindowProc({nullptr, WM_TIMER, 1, 0}), 0);
}

TEST_F(Window, FocusMovesAndKeysGoToItAlone) {
  child.rect = {0, 0, 50, 50};
  ASSERT_TRUE(child.Create(&window));
  driver.Press(window.Handle(), VK_ESCAPE);
  SetFocus(child.Handle());
  EXPECT_EQ(GetFocus(), child.Handle());
  EXPECT_EQ(child.Count(WM_SETFOCUS), 1);
  window.log.clear();
  child.log.clear();
  driver.Press(window.Handle(), 'A', MK_CONTROL);
  EXPECT_EQ(window.Count(WM_KEYDOWN), 0);
  EXPECT_EQ(child.Count(WM_KEYDOWN), 1);
  child.log.clear();
  driver.Type(window.Handle(), "\xE9");
  ASSERT_EQ(child.Messages(), (std::vector<UINT>{WM_CHAR}));
  EXPECT_EQ(child.log.front().wParam, 0xE9U);
}

TEST_F(Window, RegisteredMessagesReachEveryTopLevelWindow) {
  ASSERT_TRUE(child.CreateTop());
  const UINT number = RegisterWindowMessage("A name of its own");
  EXPECT_GE(number, WM_REGISTERED);
  EXPECT_EQ(RegisterWindowMessage("A name of its own"), number);
  EXPECT_NE(RegisterWindowMessage("Another"), number);
  PostToAll(number, 100, 0);
  driver.ProcessEvents();
  EXPECT_EQ(window.Count(number), 1);
  EXPECT_EQ(child.Count(number), 1);
}

}  // namespace
