// The bar at the top of the frame with one section button a pane, in the order of the pane list; the current
// pane's is drawn pressed. A click on another one sends the frame the command that turns to it. The bar never
// takes the keyboard: the frame has keys for the panes.
#pragma once

#include <memory>

#include "framework/owner_drawn.h"
#include "platform/desktop/bitmap.h"

class ZarfPaneBar : public OwnerDrawn {
 public:
  ZarfPaneBar() = default;
  ~ZarfPaneBar() override;

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  // Hands the press to the frame, which has a menu for it.
  LRESULT OnRButtonDown(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  void DoAction(AccessibleAction action, int value) override;

 private:
  void TurnTo(int index);
  void PaintSection(HDC hdc, const RECT& rect, const char* caption, bool pressed) const;

  // All from the creation of the window on.
  std::unique_ptr<Bitmap> upPicture;
  std::unique_ptr<Bitmap> downPicture;
  HFONT captionFont = nullptr;
  int clicked = -1;  // the section that is drawn pressed while the frame turns to it; -1: the current pane's
};
