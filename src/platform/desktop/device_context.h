// What is drawn on. The layer gives one to WM_PAINT; tests draw on one that only writes down the calls. Texts
// are in code page 1252, zero-terminated; control characters show as blanks. Nothing is smoothed but letters.
#pragma once

#include <climits>
#include <span>

#include "platform/desktop/types.h"

class Bitmap;

// How DrawText places a text in its rectangle. Without kSingleLine it is broken into lines at line ends, and
// between words too with kWordBreak.
constexpr UINT DT_LEFT = 0x0000;
constexpr UINT DT_CENTER = 0x0001;
constexpr UINT DT_RIGHT = 0x0002;
constexpr UINT DT_VCENTER = 0x0004;
constexpr UINT DT_BOTTOM = 0x0008;
constexpr UINT DT_WORDBREAK = 0x0010;
constexpr UINT DT_SINGLELINE = 0x0020;
constexpr UINT DT_END_ELLIPSIS = 0x8000;

class DeviceContext {
 public:
  virtual ~DeviceContext() = default;

  // The font, the text colour and the pen that the calls below use. A new context has none, black and black.
  // A pen is one pixel wide; one of width 0 draws the finest line there is, one pixel of the screen itself,
  // however dense that is.
  void SelectFont(HFONT newFont) { font = newFont; }
  void SetTextColor(COLORREF colour) { textColour = colour; }
  void SetPenColor(COLORREF colour, int width = 1) {
    penColour = colour;
    penWidth = width;
  }
  HFONT Font() const { return font; }
  COLORREF TextColor() const { return textColour; }
  COLORREF PenColor() const { return penColour; }
  int PenWidth() const { return penWidth; }

  // What is to be drawn: drawing elsewhere has no effect. Without bounds at first.
  void SetClip(const RECT& bounds) { clip = bounds; }
  const RECT& Clip() const { return clip; }
  // Keeps what is drawn from now on within a region as well; null: no longer.
  virtual void SelectRegion(const RECT* region) = 0;

  virtual void FillRect(const RECT& rect, COLORREF colour) = 0;
  // The end point itself is not drawn.
  virtual void DrawLine(int x1, int y1, int x2, int y2) = 0;
  // Filled, without an outline: what lies within the corners, and the ellipse that touches a box from inside.
  virtual void Polygon(std::span<const POINT> corners, COLORREF colour) = 0;
  virtual void Ellipse(const RECT& box, COLORREF colour) = 0;
  // Clipped to the rectangle. The background stays.
  virtual void DrawText(const char* text, const RECT& rect, UINT format) = 0;
  // The whole picture, at (x, y) in its own size or stretched into a rectangle, without smoothing.
  virtual void DrawBitmap(const Bitmap& bitmap, int x, int y) = 0;
  virtual void StretchBitmap(const Bitmap& bitmap, const RECT& rect) = 0;

 private:
  HFONT font = nullptr;
  COLORREF textColour = 0;
  COLORREF penColour = 0;
  int penWidth = 1;
  RECT clip{INT_MIN, INT_MIN, INT_MAX, INT_MAX};
};
