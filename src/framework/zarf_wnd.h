// Every window of the program is an object of a class derived from ZarfWnd. The object makes its window
// (Create) and from then on receives every message of it as a call of one virtual operation; a class changes
// behaviour only by overriding operations. Owners make objects and free them; destroying an object destroys a
// window that still lives. Nothing clears `hwnd` when a window dies: code that may outlive the window asks
// IsWindow.
//
// An operation answers the result of its message. "Default" below: the desktop layer's own handling.
#pragma once

#include <cstddef>

#include "platform/desktop/accessible.h"
#include "platform/desktop/window.h"

// Posted to every window and dialog once it is made; arrives when the loop runs again, never inside Create.
constexpr UINT ZWM_AFTERCREATE = 4000;

// Room for a window's title.
constexpr std::size_t kTitleSize = 255;

class ZarfWnd {
 public:
  ZarfWnd() = default;
  virtual ~ZarfWnd();
  ZarfWnd(const ZarfWnd&) = delete;
  ZarfWnd& operator=(const ZarfWnd&) = delete;

  // Makes the window: asks PrepareClass and PreCreate, registers the class if its name is new, and posts
  // ZWM_AFTERCREATE. `style` -1 is a visible child. False when the window cannot be made.
  bool Create(ZarfWnd* parent, DWORD style = static_cast<DWORD>(-1));

  HWND Handle() const { return hwnd; }
  HWND Parent() const;
  // The object of the parent window, null when it is none of ours.
  ZarfWnd* ParentObject() const;
  // The client area: (0, 0) and its size.
  RECT ClientArea() const;

  // Before the window is made: change what the class (name, background, cursor, style) or the window (title,
  // style, placement as x, y, width, height) should be. The defaults: class "ZarfWnd", button-face
  // background, arrow; no title, no size.
  virtual int PrepareClass(WNDCLASS* windowClass);
  virtual int PreCreate(char title[kTitleSize], DWORD* style, int placement[4]);

  virtual LRESULT OnCreate(const MessageRecord& record);       // 0
  virtual LRESULT OnAfterCreate(const MessageRecord& record);  // 0
  virtual LRESULT OnClose(const MessageRecord& record);        // 0: the window stays
  virtual LRESULT OnDestroy(const MessageRecord& record);      // 0

  // Routes a message to its operation.
  virtual LRESULT WindowProc(const MessageRecord& record);
  // What becomes of a message that nobody handles.
  virtual LRESULT DefaultProc(const MessageRecord& record);

  virtual LRESULT OnCommand(const MessageRecord& record);     // 0
  virtual LRESULT OnSysCommand(const MessageRecord& record);  // default
  virtual void OnPaint(HDC hdc, PAINTSTRUCT paint);           // nothing
  virtual LRESULT OnEraseBkgnd(const MessageRecord& record);  // default
  virtual LRESULT OnTimer(const MessageRecord& record);       // 0
  virtual LRESULT OnSetCursor(const MessageRecord& record);   // default
  virtual LRESULT OnSize(const MessageRecord& record);        // 0

  // Mouse: 0, but for the wheel: default.
  virtual LRESULT OnMouseMove(const MessageRecord& record);
  virtual LRESULT OnLButtonUp(const MessageRecord& record);
  virtual LRESULT OnLButtonDblClk(const MessageRecord& record);
  virtual LRESULT OnLButtonDown(const MessageRecord& record);
  virtual LRESULT OnRButtonUp(const MessageRecord& record);
  virtual LRESULT OnRButtonDown(const MessageRecord& record);
  virtual LRESULT OnMouseWheel(const MessageRecord& record);

  // The frame around a top-level window: default.
  virtual LRESULT OnGetMinMaxInfo(const MessageRecord& record);
  virtual LRESULT OnNcLButtonDblClk(const MessageRecord& record);
  virtual LRESULT OnNcLButtonDown(const MessageRecord& record);
  virtual LRESULT OnNcRButtonDown(const MessageRecord& record);
  virtual LRESULT OnNcRButtonUp(const MessageRecord& record);
  virtual LRESULT OnNcLButtonUp(const MessageRecord& record);
  virtual LRESULT OnNcHitTest(const MessageRecord& record);
  virtual LRESULT OnNcPaint(const MessageRecord& record);
  virtual LRESULT OnNcActivate(const MessageRecord& record);
  virtual LRESULT OnSetText(const MessageRecord& record);

  // Keyboard: default.
  virtual LRESULT OnChar(const MessageRecord& record);
  virtual LRESULT OnSysKeyDown(const MessageRecord& record);
  virtual LRESULT OnSysKeyUp(const MessageRecord& record);
  virtual LRESULT OnKeyUp(const MessageRecord& record);
  virtual LRESULT OnKeyDown(const MessageRecord& record);
  // Whether a key is the window's own while it has the keyboard, also one that stands for a command of the
  // main window. None, by default.
  virtual bool KeepsKey(unsigned key) const;

  virtual LRESULT OnActivate(const MessageRecord& record);  // 0

  // Calls on the window, from outside. Without width, height and repaint, Move keeps the size.
  virtual void Move(int x, int y, int width = -1, int height = -1, int repaint = -1);
  virtual void Invalidate(const RECT* rect, BOOL erase);
  // Paints the whole window before it returns.
  virtual void RedrawNow();
  virtual void PostRecord(const MessageRecord& record);
  virtual void Post(UINT message, WPARAM wParam, LPARAM lParam);
  virtual LRESULT SendRecord(const MessageRecord& record);
  virtual LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam);
  virtual void GetClientRect(RECT* rect);
  // Sends WM_CLOSE, so that OnClose runs, then destroys the window.
  virtual void Destroy();
  virtual void Hide();
  virtual void Show();
  // Paints at once what waits to be painted.
  virtual void Update();

  // For assistive technology; platform/desktop/accessible.h tells what is asked.
  // Says what the window, or one of its items, is. A pane, by default, that has no items.
  virtual void Describe(int item, AccessiblePart* part);
  // The item at a client point; -1, the default, for none.
  virtual int ItemAt(POINT point);
  // Does to an item, kWholeWindow or a position what a user does with the mouse. Nothing, by default.
  virtual void DoAction(AccessibleAction action, int value);

 protected:
  // Posts the parent WM_COMMAND with an id and a notification code.
  void TellParent(int id, LPARAM value, unsigned code = 0);

  HWND hwnd = nullptr;

 private:
  static LRESULT SharedWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT RouteMouse(const MessageRecord& record);
  LRESULT RouteFrame(const MessageRecord& record);
  LRESULT RouteAccess(const MessageRecord& record);
  void Paint();
  friend class ZarfDialog;
};

// The object bound to a window; null for a dead window or one that is none of ours.
ZarfWnd* ObjectFromHandle(HWND window);
