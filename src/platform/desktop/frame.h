// Top-level windows that draw their own frame. Such a window has a client area inside a frame of given
// widths; the frame is painted in WM_NCPAINT and worked by WM_NC... mouse messages, whose points are in
// screen pixels. Children, client messages and client rectangles are those of the inner area; moving, sizing
// and window rectangles are the whole's.
#pragma once

#include <span>

#include "platform/desktop/messages.h"
#include "platform/desktop/types.h"

constexpr DWORD WS_OWNFRAME =
    0x00010000;  // for CreateWindow: a top-level window without the desktop's decoration

// What WM_NCHITTEST answers.
constexpr int HTCAPTION = 2;
constexpr int HTLEFT = 10;
constexpr int HTRIGHT = 11;
constexpr int HTTOP = 12;
constexpr int HTTOPLEFT = 13;
constexpr int HTTOPRIGHT = 14;
constexpr int HTBOTTOM = 15;
constexpr int HTBOTTOMLEFT = 16;
constexpr int HTBOTTOMRIGHT = 17;

// What WM_SYSCOMMAND asks, the low four bits left out; lParam is the screen point it was asked at. The
// default handling moves or sizes the window with the mouse that is down: through the window manager, or
// following the mouse itself where there is none. Sizing keeps to the bounds of WM_GETMINMAXINFO.
constexpr unsigned SC_SIZE = 0xF000;
constexpr unsigned SC_MOVE = 0xF010;
constexpr unsigned SC_MINIMIZE = 0xF020;
constexpr unsigned SC_MAXIMIZE = 0xF030;
constexpr unsigned SC_CLOSE = 0xF060;
constexpr unsigned SC_KEYMENU = 0xF100;
constexpr unsigned SC_MOUSEMENU = 0xF090;
constexpr unsigned WMSZ_BOTTOMRIGHT = 8;

// The widths of the frame, to be called in WM_CREATE of a WS_OWNFRAME window.
void SetFrameInsets(HWND window, const RECT& insets);
// Cuts the window to a polygon in window pixels; an empty one restores the rectangle.
void SetWindowShape(HWND window, std::span<const POINT> polygon);
// Marks the frame to be painted again.
void InvalidateFrame(HWND window);
// The context of the frame while WM_NCPAINT is handled, in window pixels, the client area excluded; null at
// any other time.
HDC GetFrameContext(HWND window);
void MinimizeWindow(HWND window);
// Whether the rectangles of top-level windows tell where these are. On Wayland they do not: only the desktop
// knows.
bool WindowsKnowTheirPlace();

// Runs messages until the left button, which is down, goes up. That release reaches no window.
void WaitForLeftButtonUp();
