// What a font handle stands for. The font itself is made when it is first drawn or measured with: finding a
// face costs a millisecond, and most of the shared fonts are not seen at start.
#pragma once

#include <QFont>
#include <QFontMetrics>
#include <memory>
#include <string>

#include "platform/desktop/font.h"

// Begins to read the names of the installed fonts, on a thread of its own while the windows are made. Once an
// application stands.
void BeginReadingFonts();
// Waits for its end, which the application must see.
void EndReadingFonts();

// Gives Qt's own widgets, of which dialogs, menus and tips are made, their font. Before the first of them is
// made; it does nothing when called again.
void UseDialogFont();

struct ResolvedFont {
  QFont font;
  QFontMetrics metrics;
};

struct FontHandle {
  explicit FontHandle(const FontSpec& fontWanted) : face(fontWanted.face), wanted(fontWanted) {}
  const ResolvedFont& Resolve() const;

 private:
  std::string face;
  FontSpec wanted;
  mutable std::unique_ptr<ResolvedFont> resolved;
};
