#include "framework/drawing.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>

namespace {

// The picture that painting by name uses, read at its first use; null when it is missing.
const Bitmap* KeptPicture(const char* name) {
  static std::map<std::string, std::unique_ptr<Bitmap>, std::less<>> pictures;
  const auto found = pictures.find(name);
  if (found != pictures.end()) return found->second.get();
  return pictures.emplace(name, LoadBmpResource(name)).first->second.get();
}

}  // namespace

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

void DrawFocusMark(HDC hdc, const RECT& rect, COLORREF ground) {
  constexpr int kMiddleGrey = 3 * 128;
  const bool light = RedOf(ground) + GreenOf(ground) + BlueOf(ground) >= kMiddleGrey;
  const COLORREF colour = light ? RGB(0, 0, 0) : RGB(255, 255, 255);
  const auto dot = [&](int x, int y) {
    // Every other pixel all the way round, so that the dots meet at the corners.
    if ((x + y - rect.left - rect.top) % 2 == 0) hdc->FillRect({x, y, x + 1, y + 1}, colour);
  };
  for (int x = rect.left; x < rect.right; ++x) {
    dot(x, rect.top);
    dot(x, rect.bottom - 1);
  }
  for (int y = rect.top + 1; y < rect.bottom - 1; ++y) {
    dot(rect.left, y);
    dot(rect.right - 1, y);
  }
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

void StretchBitmap(HDC hdc, const Bitmap* bitmap, const RECT& rect) {
  if (bitmap != nullptr) hdc->StretchBitmap(*bitmap, rect);
}

std::unique_ptr<Bitmap> LoadBmpResource(const char* name) {
  constexpr std::string_view kEnding = ".bmp";
  std::string picture = name;
  if (picture.ends_with(kEnding)) picture.resize(picture.size() - kEnding.size());
  auto bitmap = Bitmap::Load(picture.c_str());
  if (bitmap == nullptr) std::fprintf(stderr, "Unable to find resource: %s\n", name);
  assert(bitmap != nullptr);
  return bitmap;
}

void DrawBmpResource(HDC hdc, int x, int y, const char* name) {
  if (const Bitmap* picture = KeptPicture(name)) hdc->DrawBitmap(*picture, x, y);
}

void StretchBmpResource(HDC hdc, const char* name, const RECT& rect) {
  StretchBitmap(hdc, KeptPicture(name), rect);
}

void DrawBitmapId(HDC hdc, int x, int y, int id, COLORREF from, COLORREF to) {
  const std::string name = std::to_string(id);
  if (from == kNoColour && to == kNoColour) {
    DrawBmpResource(hdc, x, y, name.c_str());
  } else {
    DrawBitmap(hdc, LoadBmpResource(name.c_str()).get(), x, y, from, to);
  }
}
