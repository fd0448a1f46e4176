// Windows: registering their classes, making, placing and destroying them, and the messages, timers, focus
// and capture that go with them. One window procedure receives everything a window is told, as numbers and
// words; what the program does not care for it hands to DefWindowProc.
//
// Rules that hold for every window:
//   - SendMessage is a direct call; PostMessage travels through the event loop. Posted messages to one window
//   arrive
//     in the order they were posted, timers and paints come after them.
//   - WM_CREATE arrives inside CreateWindow. A window that is moved or resized gets WM_SIZE inside
//   MoveWindow.
//   - Painting happens inside WM_PAINT only, and only what was invalidated or uncovered is painted.
//   - A window may be destroyed from inside its own handlers: from then on IsWindow is false and no message
//   reaches it.
//   - Without capture a mouse message goes to the window under the cursor, whichever window the button went
//   down on.
//   - Everything is called from the thread that called StartDesktop.
#pragma once

#include <climits>
#include <string>

#include "platform/desktop/messages.h"
#include "platform/desktop/types.h"

using WindowProcedure = LRESULT (*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Class style: a quick second press arrives as WM_LBUTTONDBLCLK.
constexpr UINT CS_VREDRAW = 0x0001;
constexpr UINT CS_DBLCLKS = 0x0008;
constexpr UINT CS_SAVEBITS = 0x0800;

// What windows of one class have in common.
struct WNDCLASS {
  UINT style = 0;
  WindowProcedure procedure = nullptr;
  COLORREF background = kNoColour;  // painted before WM_PAINT is handled; kNoColour: the window covers itself
  HCURSOR cursor = nullptr;         // shown over the window; null: the window sets one itself
  const char* icon = nullptr;       // picture name of a top-level window's icon; must outlive the class
  const char* className = "";       // copied on registration
};

// False when the name is taken; the first registration of a name stays in force.
bool RegisterClass(const WNDCLASS& windowClass);

constexpr DWORD WS_OVERLAPPEDWINDOW = 0x00CF0000;  // a decorated top-level window
constexpr DWORD WS_POPUP = 0x80000000;             // an undecorated top-level window
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_VISIBLE = 0x10000000;

// As x and y of a top-level window: where the desktop puts it.
constexpr int kDefaultPlace = INT_MIN;

// Makes a window of a registered class. `title` is a text in code page 1252, x and y are relative to the
// parent's client area (on the screen for top-level windows). Null when the class is unknown or WM_CREATE
// answered -1.
HWND CreateWindow(const char* className, const char* title, DWORD style, int x, int y, int width, int height,
                  HWND parent);
// Sends WM_DESTROY to the window, then to its children, and takes it away. False when it is no window.
bool DestroyWindow(HWND window);
bool IsWindow(HWND window);

// The name of the window's class; "Edit", "ComboBox", "ListBox", "Button", "Static" for controls of dialogs.
// Empty for no window.
std::string GetClassName(HWND window);
// One word of the owner's in each window, 0 at first.
std::intptr_t GetWindowWord(HWND window);
void SetWindowWord(HWND window, std::intptr_t word);

HWND GetParent(HWND window);

constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_SHOW = 5;
void ShowWindow(HWND window, int how);
// Handles messages, but no input, until a window that was shown is on the screen; at most a second.
void WaitUntilShown(HWND window);
bool IsWindowVisible(HWND window);
void EnableWindow(HWND window, bool enabled);
bool IsWindowEnabled(HWND window);
void SetWindowText(HWND window, const char* text);
std::string GetWindowText(HWND window);

// Client rectangles start at (0, 0). Window rectangles are in screen pixels, including a frame that the
// window manager draws, as far as it is known.
void MoveWindow(HWND window, int x, int y, int width, int height);
bool GetClientRect(HWND window, RECT* rect);
bool GetWindowRect(HWND window, RECT* rect);
POINT ClientToScreen(HWND window, POINT point);
POINT ScreenToClient(HWND window, POINT point);
// The visible window of this program under a screen point, the innermost one; null when there is none.
HWND WindowFromPoint(POINT screenPoint);
// The whole area of the screen that a window is on; of the primary screen for null or a dead one.
RECT DesktopRect(HWND window = nullptr);
// The smallest rectangle that has all screens in it.
RECT AllScreensRect();
// Whether any part of a rectangle of screen pixels lies on one of the screens.
bool IsOnScreen(const RECT& rect);

// Marks a part of the window (null: all) to be painted again; `erase` also repaints the class's background.
void InvalidateRect(HWND window, const RECT* rect, BOOL erase);
// Paints at once what is marked.
void UpdateWindow(HWND window);
// Paints the whole window at once.
void RepaintWindow(HWND window);

struct PAINTSTRUCT {
  HDC hdc = nullptr;
  RECT paint;  // what needs painting; drawing outside it has no effect
};
// Only while WM_PAINT is handled: a device context that draws into the window, its background painted where
// asked. Null at any other time.
HDC BeginPaint(HWND window, PAINTSTRUCT* paint);
void EndPaint(HWND window, const PAINTSTRUCT* paint);

LRESULT SendMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// False when it is no window.
bool PostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// Posts to every top-level window of this copy.
void PostToAll(UINT message, WPARAM wParam, LPARAM lParam);
LRESULT DefWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// A message number of the program's own for a name; the same name gets the same number.
UINT RegisterWindowMessage(const char* name);

// Timer `id` of the window sends WM_TIMER every `ms` milliseconds; setting it again starts it anew.
void SetTimer(HWND window, UINT id, int ms);
bool KillTimer(HWND window, UINT id);

// The keyboard focus. GetFocus is null while another program has the keyboard.
void SetFocus(HWND window);
HWND GetFocus();
// Whether Tab reaches the window. It does so in dialogs, and where the window with the focus leaves the key
// to the default handling; it walks in the order in which windows were made. A click alone focuses nothing.
void SetTabStop(HWND window, bool stop);
// Whether the window has the focus and Tab brought it there: only then is the user helped by a mark that
// shows where it is. A tab stop is painted again when that changes.
bool ShowsFocus(HWND window);
// The window the user works in, when it is one of ours.
HWND GetForegroundWindow();
void SetForegroundWindow(HWND window);
// The same, out of the task bar too, for what the user has to see now. Where the desktop lets no program put
// itself in front, it asks for attention instead.
void BringToFront(HWND window);

// All mouse messages go to the window that holds the capture.
void SetCapture(HWND window);
void ReleaseCapture();
HWND GetCapture();
POINT GetCursorPos();
