// Which window has the keyboard.
#include <QApplication>

#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/qt/window_widget.h"
#include "platform/desktop/window.h"

void SetFocus(HWND window) {
  if (QWidget* widget = WidgetOf(window)) widget->setFocus(Qt::OtherFocusReason);
}

HWND GetFocus() {
  return HandleAround(QApplication::focusWidget());
}

void SetTabStop(HWND window, bool stop) {
  // Not by a click: which windows take the focus then is theirs to say.
  if (QWidget* widget = WidgetOf(window)) widget->setFocusPolicy(stop ? Qt::TabFocus : Qt::NoFocus);
}

bool ShowsFocus(HWND window) {
  const WindowWidget* widget = WindowWidgetOf(window);
  return widget != nullptr && widget->ShowsFocus();
}

HWND GetForegroundWindow() {
  return HandleOf(QApplication::activeWindow());
}

void SetForegroundWindow(HWND window) {
  QWidget* widget = WidgetOf(window);
  if (widget == nullptr) return;
  widget->window()->raise();
  widget->window()->activateWindow();
}

void BringToFront(HWND window) {
  QWidget* widget = OuterWidgetOf(window);
  if (widget == nullptr || !widget->isVisible()) return;
  if (widget->isMinimized()) widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
  SetForegroundWindow(window);
  QApplication::alert(widget->window());
}
