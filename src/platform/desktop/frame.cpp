#include "platform/desktop/frame.h"

#include <QGuiApplication>
#include <QPolygon>

#include "platform/desktop/qt/frame_widget.h"
#include "platform/desktop/qt/mouse_wait.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/window.h"

namespace {

FrameWidget* FrameOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? static_cast<FrameWidget*>(entry->frame) : nullptr;
}

}  // namespace

void SetFrameInsets(HWND window, const RECT& insets) {
  if (FrameWidget* frame = FrameOf(window)) frame->SetInsets(insets);
}

void SetWindowShape(HWND window, std::span<const POINT> polygon) {
  FrameWidget* frame = FrameOf(window);
  if (frame == nullptr) return;
  QPolygon shape;
  for (const POINT& point : polygon) shape << QPoint(point.x, point.y);
  if (shape.isEmpty()) {
    frame->clearMask();
  } else {
    frame->setMask(QRegion(shape, Qt::WindingFill));
  }
}

void InvalidateFrame(HWND window) {
  FrameWidget* frame = FrameOf(window);
  if (frame == nullptr) return;
  frame->update(QRegion(frame->rect()).subtracted(FindWindowEntry(window)->widget->geometry()));
}

HDC GetFrameContext(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->frameContext : nullptr;
}

void MinimizeWindow(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry != nullptr && entry->kind == WindowKind::kWindow) entry->Outer()->showMinimized();
}

bool WindowsKnowTheirPlace() {
  return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

void WaitForLeftButtonUp() {
  WaitForRelease({});
}
