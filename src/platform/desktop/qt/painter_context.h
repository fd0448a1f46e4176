// A device context that draws with Qt.
#pragma once

#include "platform/desktop/device_context.h"

class QPainter;
class QRect;
class QWidget;

class PainterContext : public DeviceContext {
 public:
  explicit PainterContext(QPainter& target) : painter(target) {}

  void SelectRegion(const RECT* region) override;
  void FillRect(const RECT& rect, COLORREF colour) override;
  void DrawLine(int x1, int y1, int x2, int y2) override;
  void Polygon(std::span<const POINT> corners, COLORREF colour) override;
  void Ellipse(const RECT& box, COLORREF colour) override;
  void DrawText(const char* text, const RECT& rect, UINT format) override;
  void DrawBitmap(const Bitmap& bitmap, int x, int y) override;
  void StretchBitmap(const Bitmap& bitmap, const RECT& rect) override;

 private:
  void FillStrip(int x, int y, int width, int height);
  void BeginShape(COLORREF colour);

  QPainter& painter;
};

// Has a window paint itself: sends it WM_PAINT while there is a context for BeginPaint to give. Only in a
// paint event.
void SendPaint(QWidget& widget, const QRect& bounds, bool erase);
