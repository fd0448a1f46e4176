// The drawing helpers that all windows and controls share. Lines are one pixel wide.
#pragma once

#include <memory>

#include "platform/desktop/bitmap.h"
#include "platform/desktop/device_context.h"

// The transparent colour of built-in pictures.
constexpr COLORREF kMagenta = RGB(255, 0, 255);
// The face of buttons and dialogs.
constexpr COLORREF kButtonFace = RGB(212, 208, 200);

// With the context's pen; the end point itself is not drawn.
void Line(HDC hdc, int x1, int y1, int x2, int y2);
// Four lines around a rectangle, inside it, with the context's pen.
void OutlineRect(HDC hdc, const RECT& rect);
// A raised or sunk edge: top (l, t)-(r, t) and left (l, t)-(l, b) in one colour, bottom (l, b)-(r, b) and
// right (r - 1, b)-(r - 1, t - 1) in the other. Note that the bottom line lies on y = b.
void Frame3D(HDC hdc, const RECT& rect, COLORREF bottomRight, COLORREF topLeft);

// n steps towards white or black, each component by 1 a step and no further than 255 or 0. n below 1:
// unchanged.
COLORREF Lighten(COLORREF colour, int n);
COLORREF Darken(COLORREF colour, int n);

// A whole picture at (x, y) in its own size; when the two colours differ, the picture itself is recoloured
// first.
void DrawBitmap(HDC hdc, Bitmap* bitmap, int x, int y, COLORREF from, COLORREF to);
// False for no bitmap.
bool ReplaceColour(Bitmap* bitmap, COLORREF from, COLORREF to);
