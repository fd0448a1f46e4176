#include "platform/desktop/qt/frame_widget.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWindow>

#include "platform/desktop/qt/mouse.h"
#include "platform/desktop/qt/mouse_wait.h"
#include "platform/desktop/qt/painter_context.h"
#include "platform/desktop/qt/system_drag.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/qt/window_widget.h"

FrameWidget::FrameWidget() : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_NoSystemBackground);
  setMouseTracking(true);
}

void FrameWidget::SetClient(WindowWidget* widget) {
  client = widget;
  setFocusProxy(widget);
  PlaceClient();
}

void FrameWidget::SetInsets(const RECT& widths) {
  insets = widths;
  PlaceClient();
}

void FrameWidget::PlaceClient() {
  client->setGeometry(insets.left, insets.top, width() - insets.left - insets.right,
                      height() - insets.top - insets.bottom);
  client->ReportSize();
}

void FrameWidget::paintEvent(QPaintEvent*) {
  const HWND window = HandleOf(this);
  WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr) return;
  QPainter painter(this);
  painter.setClipRegion(QRegion(rect()).subtracted(client->geometry()));
  PainterContext context(painter);
  entry->frameContext = &context;
  SendMessage(window, WM_NCPAINT, 1, 0);
  if (WindowEntry* living = FindWindowEntry(window)) living->frameContext = nullptr;
  client->NoteSeen();
}

void FrameWidget::resizeEvent(QResizeEvent*) {
  PlaceClient();
}

void FrameWidget::Mouse(QMouseEvent* event, UINT left, UINT right) {
  event->accept();
  if (GetCapture() != nullptr) {
    RouteMouseEvent(this, event);
    return;
  }
  if (event->type() == QEvent::MouseButtonPress && !isActiveWindow()) activateWindow();
  const HWND window = HandleOf(this);
  const QPoint point = event->globalPosition().toPoint();
  const LPARAM where = MakeLParam(point.x(), point.y());
  const LRESULT hit = SendMessage(window, WM_NCHITTEST, 0, where);
  NoteUnderMouse(this);
  SendMessage(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window), hit);
  const UINT message = event->button() == Qt::LeftButton    ? left
                       : event->button() == Qt::RightButton ? right
                                                            : 0;
  if (message != 0) SendMessage(window, message, static_cast<WPARAM>(hit), where);
}

void FrameWidget::mousePressEvent(QMouseEvent* event) {
  Mouse(event, WM_NCLBUTTONDOWN, WM_NCRBUTTONDOWN);
}
void FrameWidget::mouseReleaseEvent(QMouseEvent* event) {
  Mouse(event, WM_NCLBUTTONUP, WM_NCRBUTTONUP);
}
void FrameWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  Mouse(event, WM_NCLBUTTONDBLCLK, WM_NCRBUTTONDOWN);
}
void FrameWidget::mouseMoveEvent(QMouseEvent* event) {
  Mouse(event, 0, 0);
}

void FrameWidget::keyPressEvent(QKeyEvent* event) {
  QCoreApplication::sendEvent(client, event);
}
void FrameWidget::keyReleaseEvent(QKeyEvent* event) {
  QCoreApplication::sendEvent(client, event);
}

void FrameWidget::closeEvent(QCloseEvent* event) {
  event->ignore();  // whether the window goes is the program's decision
  SendMessage(HandleOf(this), WM_CLOSE, 0, 0);
}

void FrameWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) return;  // as in WindowWidget::event
  if (event->type() == QEvent::ActivationChange && isActiveWindow() != active) {
    active = isActiveWindow();
    const HWND window = HandleOf(this);
    SendMessage(window, WM_NCACTIVATE, active, 0);
    SendMessage(window, WM_ACTIVATE, active, 0);
  }
  QWidget::changeEvent(event);
}

void FrameWidget::FollowMouse(bool size) {
  const QPoint start = QCursor::pos();
  const QRect before = geometry();
  // A window manager takes the mouse away at once: a double click would never get its second press, and one
  // that hears of a short click too late would hold on to the window.
  const QPointer<FrameWidget> self = this;
  const SystemDrag drag;
  const std::optional<QPoint> dragged = WaitForDrag();
  QWindow* handle = self != nullptr ? windowHandle() : nullptr;
  if (!dragged || handle == nullptr) return;
  // A quick flick is over by now.
  if (QApplication::mouseButtons() & Qt::LeftButton && drag.HandOver(*handle, size)) return;
  const auto follow = [this, size, start, before](QPoint mouse) {
    const QPoint moved = mouse - start;
    if (size) {
      resize(before.width() + moved.x(), before.height() + moved.y());
    } else {
      move(before.topLeft() + moved);
    }
  };
  follow(*dragged);
  WaitForRelease(follow);
}

int DefaultHitTest(HWND window, POINT screenPoint) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || entry->frame == nullptr) return HTCLIENT;
  const QPoint point = entry->frame->mapFromGlobal(QPoint(screenPoint.x, screenPoint.y));
  if (!entry->frame->rect().contains(point)) return HTNOWHERE;
  if (entry->widget->geometry().contains(point)) return HTCLIENT;
  const RECT& insets = static_cast<FrameWidget*>(entry->frame)->Insets();
  const bool left = point.x() < insets.left;
  const bool right = point.x() >= entry->frame->width() - insets.right;
  const bool top =
      point.y() < insets.left;  // the sizing border above the title is as wide as those at the sides
  const bool bottom = point.y() >= entry->frame->height() - insets.bottom;
  if (top) return left ? HTTOPLEFT : right ? HTTOPRIGHT : HTTOP;
  if (bottom) return left ? HTBOTTOMLEFT : right ? HTBOTTOMRIGHT : HTBOTTOM;
  return left ? HTLEFT : right ? HTRIGHT : HTCAPTION;
}

void DefaultSysCommand(HWND window, WPARAM command) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr) return;
  auto* frame = static_cast<FrameWidget*>(entry->frame);
  switch (command & 0xFFF0) {
    case SC_CLOSE:
      PostMessage(window, WM_CLOSE, 0, 0);
      return;
    case SC_MINIMIZE:
      MinimizeWindow(window);
      return;
    case SC_MOVE:
    case SC_SIZE:
      if (frame != nullptr) frame->FollowMouse((command & 0xFFF0) == SC_SIZE);
      return;
    default:
      return;
  }
}
