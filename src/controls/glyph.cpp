#include "controls/glyph.h"

#include <string>

#include "framework/drawing.h"

std::unique_ptr<Bitmap> LoadGlyph(int number, COLORREF background, COLORREF ink) {
  auto glyph = Bitmap::Load(std::to_string(number).c_str());
  if (glyph == nullptr) return nullptr;
  // The ink goes first: a black background must not be taken for it.
  if (ink != kNoColour) ReplaceColour(glyph.get(), RGB(0, 0, 0), ink);
  ReplaceColour(glyph.get(), kMagenta, background);
  return glyph;
}
