#include "platform/desktop/qt/painter_context.h"

#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "platform/desktop/qt/bitmap_pixels.h"
#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"

namespace {

QColor ToQt(COLORREF colour) {
  return {RedOf(colour), GreenOf(colour), BlueOf(colour)};
}

int AlignmentOf(UINT format) {
  int flags = format & DT_CENTER ? Qt::AlignHCenter : format & DT_RIGHT ? Qt::AlignRight : Qt::AlignLeft;
  flags |= format & DT_VCENTER ? Qt::AlignVCenter : Qt::AlignTop;
  if (format & DT_SINGLELINE) flags |= Qt::TextSingleLine;
  if (format & DT_WORDBREAK) flags |= Qt::TextWordWrap;
  return flags;
}

// Control characters have no look of their own; on one line a line end is one of them.
void BlankControls(QString& text, bool singleLine) {
  for (QChar& character : text) {
    const bool lineEnd = character == u'\n' && !singleLine;
    if (!lineEnd && character.category() == QChar::Other_Control) character = u' ';
  }
}

}  // namespace

void PainterContext::FillRect(const RECT& rect, COLORREF colour) {
  painter.fillRect(rect.left, rect.top, Width(rect), Height(rect), ToQt(colour));
}

void PainterContext::DrawLine(int x1, int y1, int x2, int y2) {
  // Straight lines are filled: that keeps them one whole pixel wide on every screen.
  if (y1 == y2) {
    const int left = x1 <= x2 ? x1 : x2 + 1;
    painter.fillRect(left, y1, std::abs(x2 - x1), 1, ToQt(PenColor()));
  } else if (x1 == x2) {
    const int top = y1 <= y2 ? y1 : y2 + 1;
    painter.fillRect(x1, top, 1, std::abs(y2 - y1), ToQt(PenColor()));
  } else {
    const int steps = std::max(std::abs(x2 - x1), std::abs(y2 - y1));
    for (int step = 0; step < steps; ++step) {
      const int x = x1 + (x2 - x1) * step / steps;
      const int y = y1 + (y2 - y1) * step / steps;
      painter.fillRect(x, y, 1, 1, ToQt(PenColor()));
    }
  }
}

void PainterContext::DrawText(const char* text, const RECT& rect, UINT format) {
  if (Width(rect) <= 0 || Height(rect) <= 0) return;
  QString shown = TextFromCodePage(text);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  BlankControls(shown, format & DT_SINGLELINE);
  if (Font() != nullptr) {
    painter.setFont(Font()->Resolve().font);
    if (format & DT_END_ELLIPSIS)
      shown = Font()->Resolve().metrics.elidedText(shown, Qt::ElideRight, Width(rect));
  }
  painter.setPen(ToQt(TextColor()));
  painter.drawText(QRect(rect.left, rect.top, Width(rect), Height(rect)), AlignmentOf(format), shown);
}

void PainterContext::DrawBitmap(const Bitmap& bitmap, int x, int y) {
  const QImage& image = BitmapAccess::ImageOf(bitmap);
  // Between two whole scales the picture has more pixels than there is room for: left out, they would take
  // parts of lines with them.
  const qreal scale = painter.device()->devicePixelRatio();
  painter.setRenderHint(QPainter::SmoothPixmapTransform, scale != std::floor(scale));
  painter.drawImage(QPoint(x, y), image);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
}

void PainterContext::StretchBitmap(const Bitmap& bitmap, const RECT& rect) {
  painter.drawImage(QRect(rect.left, rect.top, Width(rect), Height(rect)), BitmapAccess::ImageOf(bitmap));
}

void SendPaint(QWidget& widget, const QRect& bounds, bool erase) {
  const HWND window = HandleOf(&widget);
  WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr) return;
  QPainter painter(&widget);
  PainterContext context(painter);
  entry->paintContext = &context;
  entry->paintBounds = {bounds.left(), bounds.top(), bounds.left() + bounds.width(),
                        bounds.top() + bounds.height()};
  context.SetClip(entry->paintBounds);
  entry->erasePending = erase;
  SendMessage(window, WM_PAINT, 0, 0);
  if (WindowEntry* living = FindWindowEntry(window)) living->paintContext = nullptr;
}
