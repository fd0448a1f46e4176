// The pages of the main frame. One pane fills the middle of the frame at a time; its colours tint the frame's
// bands, the toolbar and the controls on it as well. Every pane joins the list of the process when it is
// made, in the order in which the pane bar shows them, and leaves it when it dies. Panes make hidden windows;
// the frame shows the current one.
#pragma once

#include <span>
#include <string>

#include "framework/owner_drawn.h"

// In the order in which panes are described. The frame draws its bands as 1, 3, 2, 4, from the outside in.
struct PaneColours {
  COLORREF background;  // of the pane's client area
  COLORREF accent;      // face of the button under the mouse, a little darker there
  COLORREF stripText;   // captions of the toolbar and of a pane's own title strip
  COLORREF band1;       // outermost
  COLORREF band3;       // inside band 1
  COLORREF band2;       // the shade at the pane's right and lower edge
  COLORREF band4;       // under the toolbar
  COLORREF extra1;      // for the pane's own use
  COLORREF extra2;
  COLORREF extra3;
};

class ZarfPane : public OwnerDrawn {
 public:
  // `newName` is the caption of its section button, cut to 254 bytes. The first pane of the list becomes the
  // current one. Beyond kMaxPanes a pane is not listed, but works otherwise.
  ZarfPane(const char* newName, const PaneColours& newColours);
  ~ZarfPane() override;

  const PaneColours& Colours() const { return colours; }
  const char* Name() const { return name.c_str(); }

  // Whether the frame may turn from this pane to another, or from another to this one.
  virtual bool CanLeave();  // true
  virtual bool CanEnter();  // true
  // The pane was just shown and has the keyboard.
  virtual bool OnEnter();  // true

  int PrepareClass(WNDCLASS* windowClass) override;
  int PreCreate(char title[kTitleSize], DWORD* style, int placement[4]) override;
  // The pane's background.
  void Paint(HDC hdc, const RECT& client) const override;
  void Describe(int item, AccessiblePart* part) override;

 private:
  const std::string name;
  const PaneColours colours;
};

constexpr int kMaxPanes = 100;
int PaneCount();
// The panes, in the order in which they were made. Valid until one is made or dies.
std::span<ZarfPane* const> PaneList();
// 0 when there is no pane.
int CurrentPaneIndex();
// Only notes it down. False, and nothing changed, unless 0 <= index < PaneCount().
bool SetCurrentPaneIndex(int index);
// Null when there is no pane.
ZarfPane* CurrentPane();
