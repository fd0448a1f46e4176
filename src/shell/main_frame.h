// The program's one top-level window and, at the same time, its application object: it is there, without a
// window, before anything else. It draws its own frame from the skin (a title band with three caption
// buttons, borders, a grip in the corner) and holds, top to bottom, the pane bar, the toolbar and the current
// pane. A program derives its own class from it and adds its panes and commands.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "controls/toolbar.h"
#include "framework/zarf_wnd.h"
#include "shell/frame_buttons.h"
#include "shell/pane_bar.h"

class ZarfWndApp : public ZarfWnd {
 public:
  // `newModuleName` forms the window's class name and the name of the single-instance guard, `newProductName`
  // is the title.
  ZarfWndApp(const char* newModuleName, const char* newProductName);

  const std::string& ModuleName() const { return moduleName; }
  const std::string& ProductName() const { return productName; }
  // "ZarfWndApp_" and the module's name: class of the window, name of the guard.
  const std::string& WindowClass() const { return windowClass; }

  // Shows another pane, with an animation if asked for; an index that no pane has means the first one. False
  // when the current pane cannot be left or the new one not entered.
  bool SwitchPane(int index, bool animate);

  int PrepareClass(WNDCLASS* windowClassRecord) override;
  int PreCreate(char title[kTitleSize], DWORD* style, int placement[4]) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  // Saves the placement and the pane shown, destroys the window and frees what it drew with.
  LRESULT OnClose(const MessageRecord& record) override;
  // Ends the message loop.
  LRESULT OnDestroy(const MessageRecord& record) override;
  // Notices of other running copies first, then the router.
  LRESULT WindowProc(const MessageRecord& record) override;
  // The frame's own commands, and those that accelerators stand for. The program's are left to the derived
  // class.
  LRESULT OnCommand(const MessageRecord& record) override;
  LRESULT OnSysCommand(const MessageRecord& record) override;
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override;
  LRESULT OnEraseBkgnd(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  LRESULT OnSetCursor(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnRButtonDown(const MessageRecord& record) override;
  LRESULT OnGetMinMaxInfo(const MessageRecord& record) override;
  LRESULT OnNcLButtonDblClk(const MessageRecord& record) override;
  LRESULT OnNcLButtonDown(const MessageRecord& record) override;
  LRESULT OnNcRButtonDown(const MessageRecord& record) override;
  LRESULT OnNcHitTest(const MessageRecord& record) override;
  LRESULT OnNcPaint(const MessageRecord& record) override;
  LRESULT OnNcActivate(const MessageRecord& record) override;
  LRESULT OnSetText(const MessageRecord& record) override;

  // The caption buttons are its items.
  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  void DoAction(AccessibleAction action, int value) override;

  virtual void ShowFileMenu();
  virtual void ShowHelpMenu();
  // Paints the frame in its own pixels.
  virtual LRESULT DrawFrame(HDC windowContext);
  // Opens the help; the plain frame has none and beeps.
  virtual void ShowHelp(int topic);

 private:
  LRESULT OnNotice(const MessageRecord& record);
  void AddToolBarButtons();
  void PlaceChildren();
  void ShapeWindow();
  void RepaintSkin();
  void SaveState();
  void ToggleMaximize();
  void SizeByGrip(POINT screenPoint);
  bool OverGrip(POINT screenPoint) const;
  POINT MenuCorner(unsigned button) const;

  std::string moduleName;
  std::string productName;
  std::string windowClass;

  FrameButtons buttons{*this};
  std::optional<bool> largeAsked;  // by the last maximize; none when the user has sized the window since
  HCURSOR cursor = nullptr;
  std::unique_ptr<ZarfToolBar> toolBar;
  std::unique_ptr<ZarfPaneBar> paneBar;
};
