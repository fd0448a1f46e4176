// A small button with an arrow that repeats while it is held. On the press, half a second later and then
// every 25 ms it sends its parent WM_COMMAND with its id and, as lParam, a pointer to the button. It is made
// without a size: the parent moves it to its place.
#pragma once

#include <memory>

#include "framework/owner_drawn.h"
#include "platform/desktop/bitmap.h"

// What is on a spin button.
enum class SpinKind { kUp = 1, kDown = 2, kLeft = 3, kRight = 4, kSquare = 5 };

class ZarfSpinButton : public OwnerDrawn {
 public:
  ZarfSpinButton(int commandId, SpinKind kind, COLORREF background);

  // Three numbers of the owner's, 0 at first; the button has no use for them.
  void SetExtra(int a, int b, int c);
  int Extra(int index) const { return index >= 0 && index < 3 ? extra[index] : 0; }

  bool Pressed() const { return pressed; }
  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT WindowProc(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnLButtonUp(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  // Space tells once a stroke, and again as the key repeats. The owner decides whether it is a tab stop.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  LRESULT OnKeyUp(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  void OnTrackingEnd() override;

 private:
  void LetGo();
  void Notify();

  const int commandId;
  const SpinKind kind;
  const COLORREF background;
  std::unique_ptr<Bitmap> glyph;  // from the creation of the window on
  int extra[3] = {0, 0, 0};
  bool pressed = false;
  bool firstRepeat = false;
  bool notifying = false;
};

// The same button with a frame around it.
class ZarfFramedSpinButton : public ZarfSpinButton {
 public:
  using ZarfSpinButton::ZarfSpinButton;
  void Paint(HDC hdc, const RECT& client) const override;
};
