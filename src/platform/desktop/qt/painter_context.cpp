#include "platform/desktop/qt/painter_context.h"

#include <QPainter>
#include <QPolygon>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "platform/desktop/qt/bitmap_pixels.h"
#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/rect.h"
#include "platform/desktop/qt/window_table.h"

namespace {

// Between a line of one screen pixel and the edges of that pixel.
constexpr qreal kPixelMargin = 0.25;

QColor ToQt(COLORREF colour) {
  return {RedOf(colour), GreenOf(colour), BlueOf(colour)};
}

int AlignmentOf(UINT format) {
  int flags = format & DT_CENTER ? Qt::AlignHCenter : format & DT_RIGHT ? Qt::AlignRight : Qt::AlignLeft;
  flags |= format & DT_VCENTER ? Qt::AlignVCenter : format & DT_BOTTOM ? Qt::AlignBottom : Qt::AlignTop;
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

void PainterContext::SelectRegion(const RECT* region) {
  if (region != nullptr) {
    painter.setClipRect(ToQt(*region));
  } else {
    painter.setClipping(false);
  }
}

void PainterContext::FillRect(const RECT& rect, COLORREF colour) {
  painter.fillRect(rect.left, rect.top, Width(rect), Height(rect), ToQt(colour));
}

// One pixel of a straight line's width, or as many pixels of the screen.
void PainterContext::FillStrip(int x, int y, int width, int height) {
  const QColor colour = ToQt(PenColor());
  if (PenWidth() != 0) {
    painter.fillRect(x, y, width, height, colour);
    return;
  }
  const QTransform toScreen = painter.deviceTransform();
  const QRectF strip = toScreen.mapRect(QRectF(x, y, width, height));
  const bool flat = height == 1;
  // In the middle of its pixels: rounding cannot take it to two of them, nor to none.
  const QRectF fine =
      flat ? QRectF(strip.left(), std::floor(strip.top()) + kPixelMargin, strip.width(), 1 - 2 * kPixelMargin)
           : QRectF(std::floor(strip.left()) + kPixelMargin, strip.top(), 1 - 2 * kPixelMargin,
                    strip.height());
  painter.fillRect(toScreen.inverted().mapRect(fine), colour);
}

void PainterContext::DrawLine(int x1, int y1, int x2, int y2) {
  // Straight lines are filled: that keeps them one whole pixel wide on every screen.
  if (y1 == y2) {
    FillStrip(x1 <= x2 ? x1 : x2 + 1, y1, std::abs(x2 - x1), 1);
  } else if (x1 == x2) {
    FillStrip(x1, y1 <= y2 ? y1 : y2 + 1, 1, std::abs(y2 - y1));
  } else {
    const int steps = std::max(std::abs(x2 - x1), std::abs(y2 - y1));
    for (int step = 0; step < steps; ++step) {
      const int x = x1 + (x2 - x1) * step / steps;
      const int y = y1 + (y2 - y1) * step / steps;
      painter.fillRect(x, y, 1, 1, ToQt(PenColor()));
    }
  }
}

void PainterContext::BeginShape(COLORREF colour) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(ToQt(colour));
}

void PainterContext::Polygon(std::span<const POINT> corners, COLORREF colour) {
  QPolygon polygon;
  for (const POINT& corner : corners) polygon << QPoint(corner.x, corner.y);
  BeginShape(colour);
  painter.drawPolygon(polygon);
}

void PainterContext::Ellipse(const RECT& box, COLORREF colour) {
  BeginShape(colour);
  painter.drawEllipse(QRectF(box.left, box.top, Width(box), Height(box)));
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
