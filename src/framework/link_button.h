// A push button that is a text only and changes its colour while the mouse presses it. A press that is let go
// inside it posts its parent WM_COMMAND with its id; one that is let go elsewhere does nothing.
#pragma once

#include <string>

#include "framework/owner_drawn.h"

class ZarfClassLinkButton : public OwnerDrawn {
 public:
  struct Look {
    COLORREF background;
    COLORREF text;
    COLORREF hotText;  // while it is pressed
  };
  // What it reads: text `captionStringId` of the string table or, when that is -1, `newCaption` (cut to 254
  // bytes). `newFormat`: DT_... flags that place the text in the button.
  ZarfClassLinkButton(int newCommandId, const Look& newLook, const char* newCaption, int newCaptionStringId,
                      UINT newFormat);

  bool Hot() const { return hot; }
  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnLButtonUp(const MessageRecord& record) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  // Space presses it, and Enter where it is nobody else's.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;
  void OnTrackingEnd() override;

 private:
  const char* Caption() const;
  void Tell();
  void SetHot(bool newHot);
  bool Inside(const MessageRecord& mouse) const;

  const int commandId;
  const Look look;
  const std::string caption;
  const int captionStringId;
  const UINT format;
  bool hot = false;
};
