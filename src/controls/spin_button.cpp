#include "controls/spin_button.h"

#include "controls/glyph.h"
#include "framework/drawing.h"
#include "platform/desktop/cursor.h"

namespace {

constexpr UINT kRepeatTimer = 150;
constexpr int kFirstRepeatMs = 500;
constexpr int kRepeatMs = 25;

}  // namespace

ZarfSpinButton::ZarfSpinButton(int id, SpinKind what, COLORREF colour)
    : commandId(id), kind(what), background(colour) {}

void ZarfSpinButton::SetExtra(int a, int b, int c) {
  extra[0] = a;
  extra[1] = b;
  extra[2] = c;
}

int ZarfSpinButton::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfSpinButton";
  windowClass->background = RGB(255, 255, 255);
  windowClass->cursor = LoadCursor("CUR_HAND1");
  return 0;
}

LRESULT ZarfSpinButton::OnCreate(const MessageRecord&) {
  glyph = LoadGlyph(kGlyphUp - 1 + static_cast<int>(kind), background);
  return 0;
}

void ZarfSpinButton::Paint(HDC hdc, const RECT& client) const {
  if (glyph == nullptr) return;
  hdc->FillRect(client, background);
  const int shift = pressed ? 1 : 0;
  hdc->DrawBitmap(*glyph, client.left + Width(client) / 2 - glyph->Width() / 2 + shift,
                  client.top + Height(client) / 2 - glyph->Height() / 2 + shift);
}

std::optional<OwnerDrawn::FocusMark> ZarfSpinButton::FocusMarkIn(const RECT& client) const {
  return FocusMark{client, background};
}

LRESULT ZarfSpinButton::WindowProc(const MessageRecord& record) {
  if (record.message == WM_KILLFOCUS) LetGo();
  return OwnerDrawn::WindowProc(record);
}

LRESULT ZarfSpinButton::OnLButtonDown(const MessageRecord&) {
  if (!Tracking()) SetTimer(hwnd, kRepeatTimer, kFirstRepeatMs);
  pressed = true;
  firstRepeat = true;
  RedrawNow();
  Track();
  Notify();
  return 0;
}

LRESULT ZarfSpinButton::OnLButtonUp(const MessageRecord&) {
  LetGo();
  return 0;
}

LRESULT ZarfSpinButton::OnTimer(const MessageRecord& record) {
  if (record.wParam != kRepeatTimer || !Tracking()) return 0;
  if (firstRepeat) SetTimer(hwnd, kRepeatTimer, kRepeatMs);
  firstRepeat = false;
  Notify();
  return 0;
}

void ZarfSpinButton::OnTrackingEnd() {
  KillTimer(hwnd, kRepeatTimer);
  LetGo();
}

// By the mouse or by a key.
void ZarfSpinButton::LetGo() {
  EndTracking();
  if (pressed) Invalidate(nullptr, 0);
  pressed = false;
}

void ZarfSpinButton::Notify() {
  // The parent may open a box, inside which the timer goes on, and it may destroy this button.
  if (notifying) return;
  notifying = true;
  const HWND self = hwnd;
  SendMessage(Parent(), WM_COMMAND, MakeWParam(static_cast<unsigned>(commandId), 0),
              reinterpret_cast<LPARAM>(this));
  if (IsWindow(self)) notifying = false;
}

void ZarfFramedSpinButton::Paint(HDC hdc, const RECT& client) const {
  ZarfSpinButton::Paint(hdc, client);
  hdc->SetPenColor(RGB(0, 0, 0));
  OutlineRect(hdc, client);
}

LRESULT ZarfSpinButton::OnKeyDown(const MessageRecord& record) {
  if (record.wParam != VK_SPACE) return DefaultProc(record);
  pressed = true;
  RedrawNow();
  Notify();
  return 0;
}

LRESULT ZarfSpinButton::OnKeyUp(const MessageRecord& record) {
  if (record.wParam != VK_SPACE) return DefaultProc(record);
  LetGo();
  return 0;
}

void ZarfSpinButton::Describe(int, AccessiblePart* part) {
  part->role = AccessibleRole::kButton;
  part->state = pressed ? kAccessiblePressed : 0;
  part->pressable = true;
}

void ZarfSpinButton::DoAction(AccessibleAction action, int) {
  if (action == AccessibleAction::kPress) Notify();
}
