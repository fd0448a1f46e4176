#include "framework/progress_window.h"

#include <algorithm>

#include "framework/services.h"
#include "platform/desktop/application.h"
#include "platform/system/clock.h"

namespace {

constexpr int kTemplate = 1009;
constexpr int kLine = 99;
constexpr int kBar = 100;

constexpr std::int64_t kLookEveryMs = 100;

}  // namespace

ProgressWindow::~ProgressWindow() {
  Close();
}

void ProgressWindow::Begin(ZarfWnd* owner, const std::string& text, std::uint32_t newSteps) {
  Close();
  dialogOwner = owner;
  cancelled = false;
  steps = std::max<std::uint32_t>(newSteps, 1);
  done = 0;
  shown = 0;
  if (Open(owner, kTemplate) != 1) return;
  SetDlgItemPath(hwnd, kLine, text);
  const HWND bar = GetDlgItem(hwnd, kBar);
  RECT area;
  if (::GetClientRect(bar, &area)) barWidth = static_cast<std::uint64_t>(Width(area));
  SendMessage(bar, PBM_SETRANGE32, 0, static_cast<LPARAM>(barWidth));
  WaitUntilShown(hwnd);
}

void ProgressWindow::BeginCancellable(ZarfWnd* owner, const std::string& title, const std::string& text) {
  cancellable = true;
  Begin(owner, text, 1);
  cancellable = false;
  SetDialogTitle(hwnd, title);
}

void ProgressWindow::Step() {
  ++done;
  const std::uint64_t pixels = std::min(done, steps) * barWidth / steps;
  if (pixels != shown) Grow(pixels);
}

bool ProgressWindow::Advance(std::int64_t doneSoFar, std::int64_t whole) {
  const double part = whole > 0 ? static_cast<double>(doneSoFar) / static_cast<double>(whole) : 0;
  const auto pixels = static_cast<std::uint64_t>(std::clamp(part, 0.0, 1.0) * static_cast<double>(barWidth));
  // The user may cancel what takes its time over one pixel.
  if (pixels != shown || platform::TickMs() >= nextLookMs) Grow(pixels);
  return !cancelled;
}

void ProgressWindow::Grow(std::uint64_t pixels) {
  shown = pixels;
  SendItemMessage(kBar, PBM_SETPOS, pixels, 0);
  RunWaitingMessages();
  nextLookMs = platform::TickMs() + kLookEveryMs;
}

void ProgressWindow::Close() {
  barWidth = 0;
  if (!IsWindow(hwnd)) return;
  // Who went on to another program meanwhile is not to be called back.
  const bool usersWindow = GetForegroundWindow() != nullptr;
  DestroyWindow(hwnd);
  if (usersWindow && dialogOwner != nullptr) SetForegroundWindow(dialogOwner->Handle());
}

int ProgressWindow::Open(ZarfWnd* owner, int templateId) {
  return CreateModeless(owner, templateId) ? 1 : -1;
}

LRESULT ProgressWindow::OnInitDialog(const MessageRecord&) {
  BlockOtherWindows(hwnd);
  ShowWindow(GetDlgItem(hwnd, IDCANCEL), cancellable ? SW_SHOW : SW_HIDE);
  return 1;
}

LRESULT ProgressWindow::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) == IDCANCEL) cancelled = true;
  return 1;
}
