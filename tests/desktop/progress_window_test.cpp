// The window that shows how far a long piece of work is.
#include "framework/progress_window.h"

#include <gtest/gtest.h>

#include "platform/desktop/application.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/windows.h"

namespace tests {
namespace {

class ClickedWindow : public HostWindow {
 public:
  LRESULT OnLButtonDown(const MessageRecord&) override { return ++clicks; }
  LRESULT OnTimer(const MessageRecord&) override { return ++ticks; }
  int clicks = 0;
  int ticks = 0;
};

TEST(ProgressWindow, PaintsByThePixelAndTakesTheInputAway) {
  constexpr std::uint32_t kSteps = 100000;
  DesktopDriver driver;
  ClickedWindow owner;
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
