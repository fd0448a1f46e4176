// A push button that is a text only and changes its colour while the mouse presses it. A press that is let go
// inside it posts its parent WM_COMMAND with its id; one that is let go elsewhere does nothing.
#pragma once

#include <string>

#include "framework/zarf_wnd.h"

class ZarfClassLinkButton : public ZarfWnd {
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
  // Draws the button into `client`.
  void Paint(HDC hdc, const RECT& client) const;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT WindowProc(const MessageRecord& record) override;
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override;
  LRESULT OnSetCursor(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnLButtonUp(const MessageRecord& record) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  // Space presses it, and Enter where it is nobody else's.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 private:
  const char* Caption() const;
  void Tell();
  void SetHot(bool newHot);
  bool Inside(LPARAM point);
  void LetGo();

  const int commandId;
  const Look look;
  const std::string caption;
  const int captionStringId;
  const UINT format;
  bool hot = false;
  bool captured = false;
};
