#include "framework/owner_drawn.h"

#include "framework/drawing.h"
#include "platform/desktop/cursor.h"

LRESULT OwnerDrawn::WindowProc(const MessageRecord& record) {
  if (record.message == WM_CAPTURECHANGED) EndTracking();
  if (record.message == WM_MOUSEMOVE && !tracking) {
    if (const char* cursor = CursorAt(PointFromLParam(record.lParam))) SetCursor(LoadCursor(cursor));
  }
  return ZarfWnd::WindowProc(record);
}

void OwnerDrawn::OnPaint(HDC hdc, PAINTSTRUCT) {
  const RECT client = ClientArea();
  Paint(hdc, client);
  if (!ShowsFocus(hwnd)) return;
  if (const auto mark = FocusMarkIn(client)) DrawFocusMark(hdc, mark->place, mark->ground);
}

std::optional<OwnerDrawn::FocusMark> OwnerDrawn::FocusMarkIn(const RECT&) const {
  return std::nullopt;
}

const char* OwnerDrawn::CursorAt(POINT) {
  return nullptr;
}

void OwnerDrawn::Track() {
  tracking = true;
  SetCapture(hwnd);
}

void OwnerDrawn::EndTracking() {
  if (!tracking) return;
  tracking = false;
  if (GetCapture() == hwnd) ReleaseCapture();
  OnTrackingEnd();
}

void OwnerDrawn::OnTrackingEnd() {}
