#include "platform/desktop/qt/window_widget.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QTimer>
#include <QTimerEvent>
#include <QWheelEvent>

#include "platform/desktop/qt/accessible_window.h"
#include "platform/desktop/qt/dialog_widget.h"
#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/icon.h"
#include "platform/desktop/qt/keyboard.h"
#include "platform/desktop/qt/mouse.h"
#include "platform/desktop/qt/painter_context.h"
#include "platform/desktop/qt/posted_message.h"
#include "platform/desktop/qt/window_table.h"

namespace {

// How the focus came to where it is; of the whole program, since there is one focus.
bool focusByKeyboard = false;

// While a window walks the tab stops outside of dialogs.
bool walking = false;

Qt::WindowFlags FlagsOf(DWORD style) {
  if (style & WS_CHILD) return Qt::Widget;
  return style & WS_POPUP ? Qt::Window | Qt::FramelessWindowHint : Qt::Window;
}

}  // namespace

WindowWidget::WindowWidget(QWidget* parent, DWORD style) : QWidget(parent, FlagsOf(style)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_NoSystemBackground);
  setMouseTracking(true);
}

LRESULT WindowWidget::Tell(UINT message, WPARAM wParam, LPARAM lParam) {
  return SendMessage(HandleOf(this), message, wParam, lParam);
}

void WindowWidget::ReportSize() {
  const WindowEntry* entry = FindWindowEntry(HandleOf(this));
  if (entry == nullptr || !entry->created || size() == reportedSize) return;
  reportedSize = size();
  Tell(WM_SIZE, 0, MakeLParam(width(), height()));
}

void WindowWidget::Mark(const QRegion& region, bool erase) {
  marked += region;
  markedErase = markedErase || erase;
  update(region);
}

void WindowWidget::PaintNow(const QRegion& region) {
  const WindowEntry* entry = FindWindowEntry(HandleOf(this));
  if (entry == nullptr || entry->paintContext != nullptr) {
    update(region);  // already painting: Qt cannot paint a window from inside its own paint
  } else {
    repaint(region);
  }
}

bool WindowWidget::event(QEvent* event) {
  // Our windows draw with fonts of their own: that the dialogs have got theirs is no reason to paint.
  if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange) return true;
  if (event->type() == PostedMessage::EventType()) {
    const auto* posted = static_cast<PostedMessage*>(event);
    Tell(posted->message, posted->wParam, posted->lParam);
    return true;
  }
  return QWidget::event(event);
}

void WindowWidget::paintEvent(QPaintEvent* event) {
  // Whatever was uncovered, and not asked for by the program, needs its background as well.
  const bool erase = markedErase || !event->region().subtracted(marked).isEmpty();
  marked -= event->region();
  if (marked.isEmpty()) markedErase = false;
  SendPaint(*this, event->rect(), erase);
  NoteSeen();
}

void WindowWidget::NoteSeen() {
  if (waitingIcon == nullptr) return;
  QTimer::singleShot(0, this, [this, name = waitingIcon] {
    window()->setWindowIcon(LoadIcon(name));
    UseDialogFont();
  });
  waitingIcon = nullptr;
}

void WindowWidget::resizeEvent(QResizeEvent*) {
  ReportSize();
}

void WindowWidget::mousePressEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}
void WindowWidget::mouseReleaseEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}
void WindowWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}
void WindowWidget::mouseMoveEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}

void WindowWidget::wheelEvent(QWheelEvent* event) {
  event->accept();
  // Touch pads send fractions of a step; they are gathered, so that every message is a whole number of steps.
  wheelRest += event->angleDelta().y();
  const int steps = wheelRest / kWheelStep;
  wheelRest -= steps * kWheelStep;
  const unsigned keys = MouseKeys(event->buttons(), event->modifiers());
  const QPoint point = event->globalPosition().toPoint();
  const int delta = steps > 0 ? kWheelStep : -kWheelStep;
  for (int step = 0; step < std::abs(steps); ++step) {
    Tell(WM_MOUSEWHEEL, MakeWParam(keys, static_cast<unsigned>(delta)), MakeLParam(point.x(), point.y()));
  }
}

bool WindowWidget::InDialog() const {
  const WindowEntry* top = FindWindowEntry(HandleOf(window()));
  return top != nullptr && top->kind == WindowKind::kDialog;
}

bool WindowWidget::focusNextPrevChild(bool next) {
  return (InDialog() || walking) && QWidget::focusNextPrevChild(next);
}

void WindowWidget::keyPressEvent(QKeyEvent* event) {
  const unsigned pressed = KeyOf(*event);
  if (InDialog() && (pressed == VK_RETURN || pressed == VK_ESCAPE)) {
    event->ignore();  // they end the dialog, whichever of its windows has the focus
    return;
  }
  event->accept();
  const HWND window = HandleOf(this);
  if (pressed != 0) SendMessage(window, KeyDownMessage(*event), pressed, 0);
  if (event->modifiers() & Qt::AltModifier) return;
  for (const char byte : CodePageFromText(event->text())) {
    SendMessage(window, WM_CHAR, static_cast<unsigned char>(byte), 0);
  }
}

void WindowWidget::keyReleaseEvent(QKeyEvent* event) {
  event->accept();
  if (event->isAutoRepeat()) return;
  if (const unsigned key = KeyOf(*event)) {
    Tell(event->modifiers() & Qt::AltModifier ? WM_SYSKEYUP : WM_KEYUP, key, 0);
  }
}

void WindowWidget::WalkTabStops() {
  walking = true;  // the windows around this one are asked, too
  focusNextPrevChild(!(QGuiApplication::keyboardModifiers() & Qt::ShiftModifier));
  walking = false;
}

bool WindowWidget::ShowsFocus() const {
  return focusByKeyboard && hasFocus();
}

void WindowWidget::focusInEvent(QFocusEvent* event) {
  // A window or a menu that closes gives the focus back as it was.
  const Qt::FocusReason reason = event->reason();
  const bool walked = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
  if (walked || reason == Qt::OtherFocusReason || reason == Qt::MouseFocusReason) focusByKeyboard = walked;
  if (focusByKeyboard) update();
  // When Qt has told that the window has the focus, it is told which of its items has it.
  if (AccessibilityIsHeard()) QTimer::singleShot(0, this, [this] { AnnounceFocus(this); });
  Tell(WM_SETFOCUS, 0, 0);
}

void WindowWidget::focusOutEvent(QFocusEvent*) {
  if (focusByKeyboard) update();
  Tell(WM_KILLFOCUS, 0, 0);
}

void WindowWidget::timerEvent(QTimerEvent* event) {
  if (const auto number = timers.NumberOf(event->timerId())) Tell(WM_TIMER, *number, 0);
}

void WindowWidget::closeEvent(QCloseEvent* event) {
  event->ignore();  // whether the window goes is the program's decision
  Tell(WM_CLOSE, 0, 0);
}

void WindowWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isWindow() && isActiveWindow() != active) {
    active = isActiveWindow();
    Tell(WM_NCACTIVATE, active, 0);
    Tell(WM_ACTIVATE, active, 0);
  }
  QWidget::changeEvent(event);
}

WindowWidget* WindowWidgetOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr && entry->kind == WindowKind::kWindow ? static_cast<WindowWidget*>(entry->widget)
                                                                : nullptr;
}

TimerSet* TimersOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || entry->kind == WindowKind::kControl) return nullptr;
  return entry->kind == WindowKind::kWindow ? &static_cast<WindowWidget*>(entry->widget)->Timers()
                                            : &static_cast<DialogWidget*>(entry->widget)->Timers();
}
