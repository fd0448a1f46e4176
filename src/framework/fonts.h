// The fonts that all windows share: eight kinds, each normal and bold, made on first use and freed at the
// end.
#pragma once

#include "platform/desktop/device_context.h"
#include "platform/desktop/font.h"

enum FontKind {
  FontSmall,
  FontSans,
  FontArial,
  FontArialLarge,
  FontSmallLink,
  FontSansLink,
  FontArialLink,
  FontArialLargeLink,
};

// The shared font of a kind; never null, never to be freed. Weight 400 is the normal one; every other weight
// has the bold slot: 700 answers whatever is there, any other weight puts a font of that weight there.
HFONT GetFont(FontKind kind, int weight);
// Makes all sixteen, at start.
void CreateFonts();
// Frees all of them, at the end.
void DeleteFonts();

// Height of a line of text in pixels, with the space between lines.
int TextHeight(HDC hdc, HFONT font);
// Width in the low word, height in the high word, in pixels.
DWORD TextExtent(HDC hdc, HFONT font, const char* text);
