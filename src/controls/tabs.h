// A strip of coloured tabs of one width, one of which is selected. A click on another tab selects it, posts
// the parent WM_COMMAND with the strip's id and, as lParam, the tab's id, and plays a sound.
#pragma once

#include <string>
#include <vector>

#include "framework/owner_drawn.h"

class TTabsWnd : public OwnerDrawn {
 public:
  static constexpr std::size_t kMaxTabs = 50;

  // `newTabWidth` is in pixels. `newFurtherColour` is the owner's: the strip has no use for it.
  TTabsWnd(int newCommandId, COLORREF newBackground, int newTabWidth, COLORREF newFurtherColour);

  // Adds a tab at the right; the first one is selected. `caption` is cut to 254 bytes. False when there
  // are 50.
  bool AddTab(int tabId, const char* caption, COLORREF faceColour, COLORREF textColour);
  // Selects the first tab with this id without telling anybody. False when there is none or it is selected
  // already.
  bool SelectTab(int tabId, bool repaint);
  int SelectedIndex() const { return selected; }
  COLORREF FurtherColour() const { return furtherColour; }

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  // Left, Right, Home and End select as a click does.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;

 private:
  struct Tab {
    int id;
    std::string caption;
    COLORREF face;
    COLORREF text;
  };

  void ChooseTab(int index);

  const int commandId;
  const COLORREF background;
  const int tabWidth;
  const COLORREF furtherColour;
  std::vector<Tab> tabs;
  int selected = 0;
};
