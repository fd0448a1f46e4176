#include "platform/desktop/qt/mouse.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>
#include <algorithm>
#include <optional>

#include "platform/desktop/cursor.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/window.h"

namespace {

HWND captureWindow = nullptr;
// Where the window with the capture keeps the cursor, in screen pixels.
std::optional<RECT> cursorBounds;

QPointer<QWidget>& LastUnderMouse() {
  static QPointer<QWidget> widget;
  return widget;
}

// The window an event at a screen point belongs to; null when it is outside the program's windows, or on one
// that a dialog blocks.
WindowEntry* Target(QWidget* receiver, QPoint global) {
  if (WindowEntry* captured = FindWindowEntry(captureWindow)) return captured;
  QWidget* under = receiver;
  if (!receiver->rect().contains(receiver->mapFromGlobal(global))) {
    under = QApplication::widgetAt(global);
    const QWidget* modal = QApplication::activeModalWidget();
    if (under == nullptr || (modal != nullptr && under->window() != modal)) return nullptr;
  }
  WindowEntry* entry = FindWindowEntry(HandleOf(under));
  return entry != nullptr && entry->kind != WindowKind::kControl ? entry : nullptr;
}

UINT MessageOf(const QMouseEvent& event, const WindowEntry& target) {
  const bool right = event.button() == Qt::RightButton;
  switch (event.type()) {
    case QEvent::MouseMove:
      return WM_MOUSEMOVE;
    case QEvent::MouseButtonRelease:
      return right ? WM_RBUTTONUP : WM_LBUTTONUP;
    case QEvent::MouseButtonDblClick:
      if (!right && target.windowClass != nullptr && target.windowClass->style & CS_DBLCLKS)
        return WM_LBUTTONDBLCLK;
      [[fallthrough]];
    default:
      return right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN;
  }
}

// A mouse event's place, brought back to where the cursor is kept, and the cursor with it.
QPoint KeptInBounds(const QMouseEvent& event) {
  const QPoint point = event.globalPosition().toPoint();
  if (!cursorBounds) return point;
  const QPoint kept(std::clamp(point.x(), cursorBounds->left, cursorBounds->right - 1),
                    std::clamp(point.y(), cursorBounds->top, cursorBounds->bottom - 1));
  if (kept != point) SetCursorPos({kept.x(), kept.y()});
  return kept;
}

// What the window did with the cursor ends with its capture.
void FreeCursor() {
  cursorBounds.reset();
  ShowCursor(true);
}

}  // namespace

unsigned MouseKeys(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
  return (buttons & Qt::LeftButton ? MK_LBUTTON : 0) | (buttons & Qt::RightButton ? MK_RBUTTON : 0) |
         (buttons & Qt::MiddleButton ? MK_MBUTTON : 0) | (modifiers & Qt::ShiftModifier ? MK_SHIFT : 0) |
         (modifiers & Qt::ControlModifier ? MK_CONTROL : 0);
}

void RouteMouseEvent(QWidget* receiver, QMouseEvent* event) {
  event->accept();
  const bool move = event->type() == QEvent::MouseMove;
  if (!move && event->button() != Qt::LeftButton && event->button() != Qt::RightButton) return;
  const QPoint global = KeptInBounds(*event);
  const WindowEntry* target = Target(receiver, global);
  if (target == nullptr) return;
  // Where no window manager hands out the keyboard, a click must.
  if (event->type() == QEvent::MouseButtonPress && !target->widget->isActiveWindow()) {
    target->widget->window()->activateWindow();
  }
  LastUnderMouse() = target->widget;
  const HWND window = target->handle;
  const UINT message = MessageOf(*event, *target);
  const QPoint point = target->widget->mapFromGlobal(global);
  if (captureWindow == nullptr) {
    SendMessage(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                static_cast<LPARAM>(MakeWParam(HTCLIENT, message)));
  }
  SendMessage(window, message, MouseKeys(event->buttons(), event->modifiers()),
              MakeLParam(point.x(), point.y()));
}

void SetCapture(HWND window) {
  WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || captureWindow == window) return;
  ReleaseCapture();
  captureWindow = window;
  // While a button is down Qt keeps sending to the pressed widget by itself.
  if (QApplication::mouseButtons() == Qt::NoButton) entry->widget->grabMouse();
}

void ReleaseCapture() {
  const HWND old = captureWindow;
  if (old == nullptr) return;
  captureWindow = nullptr;
  FreeCursor();
  if (QWidget* grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
  SendMessage(old, WM_CAPTURECHANGED, 0, 0);
}

HWND GetCapture() {
  return captureWindow;
}

void NoteUnderMouse(QWidget* widget) {
  LastUnderMouse() = widget;
}

void ForgetCapture(HWND window) {
  if (captureWindow != window) return;
  captureWindow = nullptr;
  FreeCursor();
  if (QWidget* grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
}

void ClipCursor(const RECT* screenRect) {
  cursorBounds.reset();
  const bool room = screenRect != nullptr && Width(*screenRect) > 0 && Height(*screenRect) > 0;
  if (room && captureWindow != nullptr) cursorBounds = *screenRect;
}

QWidget* CursorWidget() {
  if (const WindowEntry* captured = FindWindowEntry(captureWindow)) return captured->widget;
  return LastUnderMouse();
}

POINT GetCursorPos() {
  const QPoint point = QCursor::pos();
  return {point.x(), point.y()};
}
