#include "platform/desktop/font.h"

#include <QStringList>

#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"

namespace {

QFont FontOf(const std::string& face, const FontSpec& spec, int pixelSize) {
  QFont font;
  font.setFamilies(
      {QString::fromStdString(face), QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
  font.setPixelSize(pixelSize);
  font.setWeight(spec.weight >= 600 ? QFont::Bold : QFont::Normal);
  font.setUnderline(spec.underline);
  font.setHintingPreference(QFont::PreferFullHinting);
  return font;
}

int LineHeight(const QFontMetrics& metrics) {
  return metrics.ascent() + metrics.descent();
}

}  // namespace

const ResolvedFont& FontHandle::Resolve() const {
  if (resolved == nullptr) {
    int pixelSize = spec.height < 0 ? -spec.height : spec.height;
    if (pixelSize == 0) pixelSize = 1;
    QFont font = FontOf(face, spec, pixelSize);
    // A positive height is that of a whole line: the characters are as large as fit into it.
    while (spec.height > 0 && pixelSize > 1 && LineHeight(QFontMetrics(font)) > spec.height) {
      font = FontOf(face, spec, --pixelSize);
    }
    resolved = std::make_unique<ResolvedFont>(ResolvedFont{font, QFontMetrics(font)});
  }
  return *resolved;
}

HFONT CreateFont(const FontSpec& spec) {
  return new FontHandle(spec);
}
void DeleteFont(HFONT font) {
  delete font;
}

TextMetrics GetTextMetrics(HFONT font) {
  const QFontMetrics& metrics = font->Resolve().metrics;
  return {LineHeight(metrics), metrics.ascent(), metrics.leading() > 0 ? metrics.leading() : 0};
}

SIZE MeasureText(HFONT font, const char* text) {
  const QFontMetrics& metrics = font->Resolve().metrics;
  return {metrics.horizontalAdvance(TextFromCodePage(text)), LineHeight(metrics)};
}
