// The small pictures on controls: arrows and marks, by number. They are drawn in black on magenta and take
// the colours of the control they are for when they are loaded, so that painting just copies them.
#pragma once

#include <memory>

#include "platform/desktop/bitmap.h"
#include "platform/desktop/types.h"

constexpr int kGlyphUp = 2001;
constexpr int kGlyphDown = 2002;
constexpr int kGlyphLeft = 2003;
constexpr int kGlyphRight = 2004;
constexpr int kGlyphSquare = 2005;

// The picture with its ground in `background` and its black in `ink` (kNoColour: stays black). Null when
// there is no picture of that number.
std::unique_ptr<Bitmap> LoadGlyph(int number, COLORREF background, COLORREF ink = kNoColour);
