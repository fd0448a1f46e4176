// Where windows are, on the screen and to each other.
#include <QApplication>
#include <QScreen>
#include <algorithm>

#include "platform/desktop/qt/rect.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/qt/window_widget.h"
#include "platform/desktop/window.h"

void MoveWindow(HWND window, int x, int y, int width, int height) {
  QWidget* widget = OuterWidgetOf(window);
  if (widget == nullptr) return;
  if (widget->isWindow()) {
    widget->move(x, y);
    widget->resize(width, height);
  } else {
    widget->setGeometry(x, y, width, height);
  }
  if (WindowWidget* own = WindowWidgetOf(window)) own->ReportSize();
}

bool GetClientRect(HWND window, RECT* rect) {
  const QWidget* widget = WidgetOf(window);
  *rect = widget != nullptr ? FromQt(widget->rect()) : RECT{};
  return widget != nullptr;
}

bool GetWindowRect(HWND window, RECT* rect) {
  const QWidget* widget = OuterWidgetOf(window);
  *rect = {};
  if (widget == nullptr) return false;
  *rect = FromQt(widget->isWindow() ? widget->frameGeometry()
                                    : QRect(widget->mapToGlobal(QPoint()), widget->size()));
  return true;
}

POINT ClientToScreen(HWND window, POINT point) {
  const QWidget* widget = WidgetOf(window);
  if (widget == nullptr) return point;
  const QPoint global = widget->mapToGlobal(QPoint(point.x, point.y));
  return {global.x(), global.y()};
}

POINT ScreenToClient(HWND window, POINT point) {
  const QWidget* widget = WidgetOf(window);
  if (widget == nullptr) return point;
  const QPoint local = widget->mapFromGlobal(QPoint(point.x, point.y));
  return {local.x(), local.y()};
}

HWND WindowFromPoint(POINT screenPoint) {
  return HandleAround(QApplication::widgetAt(screenPoint.x, screenPoint.y));
}

RECT DesktopRect(HWND window) {
  const QWidget* widget = OuterWidgetOf(window);
  return FromQt((widget != nullptr ? widget->screen() : QGuiApplication::primaryScreen())->geometry());
}

RECT AllScreensRect() {
  return FromQt(QGuiApplication::primaryScreen()->virtualGeometry());
}

bool IsOnScreen(const RECT& rect) {
  const QList<QScreen*> screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(),
                     [&](const QScreen* screen) { return screen->geometry().intersects(ToQt(rect)); });
}
