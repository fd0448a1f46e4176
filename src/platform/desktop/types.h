// The plain types in which windows talk: handles, geometry, colours and the message record. Pixels everywhere
// are device-independent: the desktop layer scales them on dense screens.
#pragma once

#include <cstdint>

// A window, a dialog or a control in a dialog, by handle. Handles are never reused in a process, so that a
// stale one can be told from a living one (IsWindow). Null is no window.
struct WindowHandle;
using HWND = WindowHandle*;

class DeviceContext;
using HDC = DeviceContext*;

struct FontHandle;
using HFONT = const FontHandle*;

struct CursorHandle;
using HCURSOR = const CursorHandle*;

struct MenuHandle;
using HMENU = MenuHandle*;

using UINT = std::uint32_t;
using DWORD = std::uint32_t;
using BOOL = int;
// Message words hold numbers and, inside one process, pointers.
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

struct POINT {
  int x = 0;
  int y = 0;
  bool operator==(const POINT&) const = default;
};

struct SIZE {
  int cx = 0;
  int cy = 0;
  bool operator==(const SIZE&) const = default;
};

// Right and bottom lie just outside the rectangle.
struct RECT {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  bool operator==(const RECT&) const = default;
};

constexpr int Width(const RECT& rect) {
  return rect.right - rect.left;
}
constexpr int Height(const RECT& rect) {
  return rect.bottom - rect.top;
}
constexpr bool Contains(const RECT& rect, POINT point) {
  return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}

// A colour as 0x00BBGGRR.
using COLORREF = std::uint32_t;
constexpr COLORREF RGB(int red, int green, int blue) {
  return static_cast<COLORREF>(red) | static_cast<COLORREF>(green) << 8 | static_cast<COLORREF>(blue) << 16;
}
constexpr int RedOf(COLORREF colour) {
  return static_cast<int>(colour & 0xFF);
}
constexpr int GreenOf(COLORREF colour) {
  return static_cast<int>(colour >> 8 & 0xFF);
}
constexpr int BlueOf(COLORREF colour) {
  return static_cast<int>(colour >> 16 & 0xFF);
}
// "No colour" where one may be left out.
constexpr COLORREF kNoColour = 0xFFFFFFFF;

// What every message handler receives. It returns the result of the message.
struct MessageRecord {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
};

constexpr unsigned LowWord(WPARAM value) {
  return static_cast<unsigned>(value & 0xFFFF);
}
constexpr unsigned HighWord(WPARAM value) {
  return static_cast<unsigned>(value >> 16 & 0xFFFF);
}
constexpr WPARAM MakeWParam(unsigned low, unsigned high) {
  return static_cast<WPARAM>(low & 0xFFFF) | static_cast<WPARAM>(high & 0xFFFF) << 16;
}
// A point or a size in one word, 16 bits signed each, as mouse and size messages carry it.
constexpr LPARAM MakeLParam(int low, int high) {
  return static_cast<LPARAM>((static_cast<std::uint32_t>(low) & 0xFFFF) |
                             (static_cast<std::uint32_t>(high) & 0xFFFF) << 16);
}
constexpr POINT PointFromLParam(LPARAM value) {
  return {static_cast<std::int16_t>(value & 0xFFFF), static_cast<std::int16_t>(value >> 16 & 0xFFFF)};
}
