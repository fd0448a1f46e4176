// What of a window is to be painted, and its paint.
#include "platform/desktop/qt/rect.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/qt/window_widget.h"
#include "platform/desktop/window.h"

void InvalidateRect(HWND window, const RECT* rect, BOOL erase) {
  WindowWidget* widget = WindowWidgetOf(window);
  if (widget == nullptr) return;
  widget->Mark(rect != nullptr ? ToQt(*rect) & widget->rect() : widget->rect(), erase != 0);
}

void UpdateWindow(HWND window) {
  WindowWidget* widget = WindowWidgetOf(window);
  if (widget != nullptr && !widget->Marked().isEmpty()) widget->PaintNow(widget->Marked());
}

void RepaintWindow(HWND window) {
  if (WindowWidget* widget = WindowWidgetOf(window)) widget->PaintNow(widget->rect());
}

HDC BeginPaint(HWND window, PAINTSTRUCT* paint) {
  WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || entry->paintContext == nullptr) return nullptr;
  paint->hdc = entry->paintContext;
  paint->paint = entry->paintBounds;
  if (entry->erasePending) {
    entry->erasePending = false;
    SendMessage(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0);
  }
  return paint->hdc;
}

void EndPaint(HWND, const PAINTSTRUCT*) {}
