// Fonts of the desktop.
#pragma once

#include "platform/desktop/types.h"

struct FontSpec {
  const char*
      face;    // "MS Sans Serif", "Small Fonts", "Arial", "Verdana" fall back to Liberation Sans, DejaVu Sans
  int height;  // pixels: negative is the height of the characters, positive the height of a line of text
  int weight;  // 400 normal, 700 bold
  bool underline;
};

// Always gives a font. The caller frees it with DeleteFont.
HFONT CreateFont(const FontSpec& wanted);
void DeleteFont(HFONT font);

struct TextMetrics {
  int height;  // of a line: ascent and descent, in pixels
  int ascent;
  int externalLeading;  // what the font adds between lines
};
TextMetrics GetTextMetrics(HFONT font);
// Width and height in pixels of a text in code page 1252 on one line.
SIZE MeasureText(HFONT font, const char* text);
