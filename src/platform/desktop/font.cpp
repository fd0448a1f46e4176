#include "platform/desktop/font.h"

#include <QApplication>
#include <QFontDatabase>
#include <QStringList>
#include <future>

#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"

namespace {

// Made after the application and destroyed, which waits for the thread, before it.
std::future<QStringList>& Reading() {
  static std::future<QStringList> reading;
  return reading;
}

const QStringList& InstalledFonts() {
  static const QStringList kNames = Reading().get();
  return kNames;
}

// The first face there is. The search for a missing one would sort all the fonts there are, again for each
// face and weight; and faces that are replaced by the same one are loaded once.
QString FamilyOf(const std::string& face) {
  QString wanted = QString::fromStdString(face);
  for (const QString& family : {wanted, QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")}) {
    if (InstalledFonts().contains(family, Qt::CaseInsensitive)) return family;
  }
  return wanted;
}

QFont FontOf(const std::string& face, const FontSpec& wanted, int pixelSize) {
  QFont font(FamilyOf(face));
  font.setPixelSize(pixelSize);
  font.setWeight(wanted.weight >= 600 ? QFont::Bold : QFont::Normal);
  font.setUnderline(wanted.underline);
  // On dense screens letters fitted to whole pixels of this size would stand too far apart.
  if (qGuiApp->devicePixelRatio() <= 1.0) font.setHintingPreference(QFont::PreferFullHinting);
  return font;
}

int LineHeight(const QFontMetrics& metrics) {
  return metrics.ascent() + metrics.descent();
}

}  // namespace

void BeginReadingFonts() {
  Reading() = std::async(std::launch::async, [] { return QFontDatabase::families(); });
}

void EndReadingFonts() {
  if (Reading().valid()) Reading().wait();
}

void UseDialogFont() {
  static const bool kUsed = [] {
    QApplication::setFont(FontHandle({"MS Sans Serif", -11, 400, false}).Resolve().font);
    return true;
  }();
  static_cast<void>(kUsed);
}

const ResolvedFont& FontHandle::Resolve() const {
  if (resolved == nullptr) {
    int pixelSize = wanted.height < 0 ? -wanted.height : wanted.height;
    if (pixelSize == 0) pixelSize = 1;
    QFont font = FontOf(face, wanted, pixelSize);
    // A positive height is that of a whole line: the characters are as large as fit into it.
    while (wanted.height > 0 && pixelSize > 1 && LineHeight(QFontMetrics(font)) > wanted.height) {
      font = FontOf(face, wanted, --pixelSize);
    }
    resolved = std::make_unique<ResolvedFont>(ResolvedFont{font, QFontMetrics(font)});
  }
  return *resolved;
}

HFONT CreateFont(const FontSpec& wanted) {
  return new FontHandle(wanted);
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
