// A vertical scroll bar: an arrow at each end and a slide bar between them. It posts its parent WM_COMMAND
// with its id and the new position when the user scrolls, be it by the arrows, the slide bar or the mouse
// wheel over it.
#pragma once

#include "controls/slide_bar.h"
#include "controls/spin_button.h"

class ZarfClassWndScrollBar : public ZarfWnd {
 public:
  // `count` positions from 0 on; the arrows are `buttonSize` pixels high.
  ZarfClassWndScrollBar(int commandId, double count, int buttonSize, COLORREF base);

  int Position() const { return position; }
  double Count() const { return count; }
  ZarfSlideBar& Slider() { return slider; }

  // As the slide bar's.
  bool SetPosition(int newPosition);
  bool SetCount(double newCount);

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;
  LRESULT OnMouseWheel(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 private:
  void StepUp();
  void StepDown();
  void Notify();

  const int commandId;
  const int buttonSize;
  int position = 0;
  double count;
  ZarfSpinButton upButton;
  ZarfSpinButton downButton;
  ZarfSlideBar slider;
};
