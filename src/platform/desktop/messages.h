// Message numbers, keys and the flags that come with them. The numbers are part of what parts of the program
// agree on among themselves (a posted number must mean the same everywhere); nothing outside the process sees
// them.
#pragma once

#include "platform/desktop/types.h"

constexpr UINT WM_CREATE = 0x0001;    // first message of a window; result -1 abandons the creation
constexpr UINT WM_DESTROY = 0x0002;   // last message of a window, its children still live
constexpr UINT WM_SIZE = 0x0005;      // lParam: client width, height
constexpr UINT WM_ACTIVATE = 0x0006;  // wParam: 1 activated, 0 deactivated; top-level windows
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_SETTEXT = 0x000C;  // lParam: the new text (const char*)
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_ERASEBKGND = 0x0014;  // wParam: the device context; result 1 when the background was drawn
constexpr UINT WM_SETCURSOR = 0x0020;   // before each mouse move without capture; lParam low word: hit code
constexpr UINT WM_GETMINMAXINFO = 0x0024;  // lParam: MinMaxInfo*
constexpr UINT WM_SETFONT = 0x0030;        // the first message of a dialog; gives a control its font
constexpr UINT WM_NCHITTEST = 0x0084;
constexpr UINT WM_NCPAINT = 0x0085;
constexpr UINT WM_NCACTIVATE = 0x0086;
constexpr UINT WM_NCLBUTTONDOWN = 0x00A1;
constexpr UINT WM_NCLBUTTONUP = 0x00A2;
constexpr UINT WM_NCLBUTTONDBLCLK = 0x00A3;
constexpr UINT WM_NCRBUTTONDOWN = 0x00A4;
constexpr UINT WM_NCRBUTTONUP = 0x00A5;
constexpr UINT WM_KEYDOWN = 0x0100;  // wParam: key (VK_...)
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;        // wParam: byte of code page 1252
constexpr UINT WM_SYSKEYDOWN = 0x0104;  // with Alt held
constexpr UINT WM_SYSKEYUP = 0x0105;
// The controls exist. A control given the focus here keeps it; else the first in tab order has it.
constexpr UINT WM_INITDIALOG = 0x0110;
constexpr UINT WM_COMMAND = 0x0111;     // wParam: low word id, high word notification code
constexpr UINT WM_SYSCOMMAND = 0x0112;  // wParam: SC_...
constexpr UINT WM_TIMER = 0x0113;       // wParam: timer number
// Mouse messages: lParam is the point in client pixels (of the wheel: in screen pixels), wParam has MK_...
// flags.
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK =
    0x0203;  // only for classes with CS_DBLCLKS; others get a second WM_LBUTTONDOWN
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_MOUSEWHEEL =
    0x020A;  // wParam high word: signed delta, 120 a notch, positive away from the user
constexpr UINT WM_CAPTURECHANGED = 0x0215;  // the capture was lost
constexpr UINT WM_REGISTERED = 0xC000;      // RegisterWindowMessage answers numbers from here on

constexpr unsigned MK_LBUTTON = 0x0001;
constexpr unsigned MK_RBUTTON = 0x0002;
constexpr unsigned MK_SHIFT = 0x0004;
constexpr unsigned MK_CONTROL = 0x0008;
constexpr unsigned MK_MBUTTON = 0x0010;

constexpr int kWheelStep = 120;
constexpr int WheelDelta(WPARAM wParam) {
  return static_cast<std::int16_t>(wParam >> 16 & 0xFFFF);
}

// Keys. Letters and digits are their capital ASCII codes.
constexpr unsigned VK_BACK = 0x08;
constexpr unsigned VK_TAB = 0x09;
constexpr unsigned VK_RETURN = 0x0D;  // both Enter keys
constexpr unsigned VK_ESCAPE = 0x1B;
constexpr unsigned VK_SPACE = 0x20;
constexpr unsigned VK_PRIOR = 0x21;  // page up
constexpr unsigned VK_NEXT = 0x22;   // page down
constexpr unsigned VK_END = 0x23;
constexpr unsigned VK_HOME = 0x24;
constexpr unsigned VK_LEFT = 0x25;
constexpr unsigned VK_UP = 0x26;
constexpr unsigned VK_RIGHT = 0x27;
constexpr unsigned VK_DOWN = 0x28;
constexpr unsigned VK_INSERT = 0x2D;
constexpr unsigned VK_DELETE = 0x2E;
constexpr unsigned VK_APPS = 0x5D;  // the menu key, or Shift+F10
constexpr unsigned VK_F1 = 0x70;    // VK_F1 + n is F(n + 1), up to F12

constexpr int HTNOWHERE = 0;
constexpr int HTCLIENT = 1;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;

// For WM_GETMINMAXINFO: the sizes, in pixels, that the user may drag a top-level window to. 0: no bound.
struct MinMaxInfo {
  SIZE minimum;
  SIZE maximum;
};
