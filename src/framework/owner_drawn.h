// The base of windows that draw themselves: controls, pickers, bars and panes. A derived class says how it
// looks (Paint), where the focus mark goes (FocusMarkIn) and which cursor shows where (CursorAt), and may
// follow a pressed mouse to wherever it goes (Track).
//
//   class Knob : public OwnerDrawn {
//    public:
//     void Paint(HDC hdc, const RECT& client) const override;
//     LRESULT OnLButtonDown(const MessageRecord&) override { Track(); ... }
//     LRESULT OnMouseMove(const MessageRecord& record) override { if (Tracking()) ... }
//     LRESULT OnLButtonUp(const MessageRecord&) override { EndTracking(); ... }
//   };
#pragma once

#include <optional>

#include "framework/zarf_wnd.h"
#include "platform/desktop/device_context.h"

class OwnerDrawn : public ZarfWnd {
 public:
  // Draws the window as it now is into `client`, and changes nothing. What lies outside of hdc->Clip() may be
  // left out.
  virtual void Paint(HDC hdc, const RECT& client) const = 0;

  LRESULT WindowProc(const MessageRecord& record) override;
  // Paints, with the focus mark where it is due.
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override;

 protected:
  // Around what the keys work on, and the ground that is drawn there.
  struct FocusMark {
    RECT place;
    COLORREF ground;
  };
  // Nothing, by default: the window takes no keys.
  virtual std::optional<FocusMark> FocusMarkIn(const RECT& client) const;

  // The name of the cursor over a client point; null, the default, for the class's.
  virtual const char* CursorAt(POINT point);

  // Gives the window all mouse messages, until EndTracking or until somebody else takes the mouse. However it
  // ends, OnTrackingEnd follows once, with the mouse already free.
  void Track();
  void EndTracking();
  bool Tracking() const { return tracking; }
  virtual void OnTrackingEnd();  // nothing

 private:
  bool tracking = false;
};
