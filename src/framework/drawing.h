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

// Shows which control has the keyboard: dots along the inside of a rectangle, black on light ground and white
// on dark.
void DrawFocusMark(HDC hdc, const RECT& rect, COLORREF ground);

// n steps towards white or black, each component by 1 a step and no further than 255 or 0. n below 1:
// unchanged.
COLORREF Lighten(COLORREF colour, int n);
COLORREF Darken(COLORREF colour, int n);

// A whole picture at (x, y) in its own size; when the two colours differ, the picture itself is recoloured
// first.
void DrawBitmap(HDC hdc, Bitmap* bitmap, int x, int y, COLORREF from, COLORREF to);
// False for no bitmap.
bool ReplaceColour(Bitmap* bitmap, COLORREF from, COLORREF to);
// The whole picture stretched into a rectangle; nothing for no bitmap.
void StretchBitmap(HDC hdc, const Bitmap* bitmap, const RECT& rect);

// Built-in pictures by their file name, "splash.bmp", or without the ending. Every name that the program
// draws has to be built in: a missing one is said on standard error, ends a debug build, and a test of the
// tree finds it; a program that is in use draws nothing then.
// The picture as the caller's own, to be recoloured or kept; null when it is missing.
std::unique_ptr<Bitmap> LoadBmpResource(const char* name);
// Draws it at (x, y) in its own size. The picture is read once and kept, so that painting stays cheap.
void DrawBmpResource(HDC hdc, int x, int y, const char* name);
// The same for painting that stretches it.
void StretchBmpResource(HDC hdc, const char* name, const RECT& rect);
// A picture with a number for a name, drawn as DrawBitmap does.
void DrawBitmapId(HDC hdc, int x, int y, int id, COLORREF from = kNoColour, COLORREF to = kNoColour);
