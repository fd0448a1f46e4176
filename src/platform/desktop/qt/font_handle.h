// What a font handle stands for. The font itself is made when it is first drawn or measured with: finding a
// face costs a millisecond, and most of the shared fonts are not seen at start.
#pragma once

#include <QFont>
#include <QFontMetrics>
#include <memory>
#include <string>

#include "platform/desktop/font.h"

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
