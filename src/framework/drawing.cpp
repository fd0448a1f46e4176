#include "framework/drawing.h"

#include <algorithm>

void Line(HDC hdc, int x1, int y1, int x2, int y2) {
  hdc->DrawLine(x1, y1, x2, y2);
}

void OutlineRect(HDC hdc, const RECT& rect) {
  Line(hdc, rect.left, rect.top, rect.right, rect.top);
  Line(hdc, rect.left, rect.bottom - 1, rect.right, rect.bottom - 1);
  Line(hdc, rect.left, rect.top, rect.left, rect.bottom);
  Line(hdc, rect.right - 1, rect.top, rect.right - 1, rect.bottom);
}

void Frame3D(HDC hdc, const RECT& rect, COLORREF bottomRight, COLORREF topLeft) {
  hdc->SetPenColor(topLeft);
  Line(hdc, rect.left, rect.top, rect.right, rect.top);
  Line(hdc, rect.left, rect.top, rect.left, rect.bottom);
  hdc->SetPenColor(bottomRight);
  Line(hdc, rect.left, rect.bottom, rect.right, rect.bottom);
  Line(hdc, rect.right - 1, rect.bottom, rect.right - 1, rect.top - 1);
}

COLORREF Lighten(COLORREF colour, int n) {
  if (n < 1) return colour;
  const int step = std::min(n, 255);
  return RGB(std::min(RedOf(colour) + step, 255), std::min(GreenOf(colour) + step, 255),
             std::min(BlueOf(colour) + step, 255));
}

COLORREF Darken(COLORREF colour, int n) {
  if (n < 1) return colour;
  const int step = std::min(n, 255);
  return RGB(std::max(RedOf(colour) - step, 0), std::max(GreenOf(colour) - step, 0),
             std::max(BlueOf(colour) - step, 0));
}

void DrawBitmap(HDC hdc, Bitmap* bitmap, int x, int y, COLORREF from, COLORREF to) {
  if (bitmap == nullptr) return;
  if (from != kNoColour || to != kNoColour) ReplaceColour(bitmap, from, to);
  hdc->DrawBitmap(*bitmap, x, y);
}

bool ReplaceColour(Bitmap* bitmap, COLORREF from, COLORREF to) {
  if (bitmap == nullptr) return false;
  if (from != to) bitmap->ReplaceColour(from, to);
  return true;
}
