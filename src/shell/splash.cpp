#include "shell/splash.h"

#include "framework/services.h"
#include "platform/desktop/device_context.h"

namespace {

constexpr int kTemplate = 1010;
constexpr UINT kEndTimer = 100;
constexpr int kShownMs = 800;
constexpr SIZE kSize = {261, 226};

}  // namespace

LRESULT SplashDialog::OnInitDialog(const MessageRecord&) {
  picture = Bitmap::Load("splash");
  SetDialogFrameless(hwnd);
  SetTimer(hwnd, kEndTimer, kShownMs);
  MoveWindow(hwnd, 0, 0, kSize.cx, kSize.cy);
  CenterOver(nullptr, hwnd);
  return 1;
}

void SplashDialog::OnPaint(HDC hdc, PAINTSTRUCT) {
  if (picture != nullptr) hdc->DrawBitmap(*picture, 0, 0);
}

LRESULT SplashDialog::OnTimer(const MessageRecord&) {
  KillTimer(hwnd, kEndTimer);
  EndDialog(0);
  return 0;
}

void ShowSplash() {
  SplashDialog().Open(nullptr, kTemplate);
}
