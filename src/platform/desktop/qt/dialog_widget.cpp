#include "platform/desktop/qt/dialog_widget.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QShowEvent>
#include <QTimerEvent>

#include "platform/desktop/qt/dialog_owner.h"
#include "platform/desktop/qt/mouse.h"
#include "platform/desktop/qt/painter_context.h"
#include "platform/desktop/qt/posted_message.h"

DialogWidget::DialogWidget(QWidget* parent) : QDialog(parent) {
  TrimDialogFrame(*this);
  setMouseTracking(true);
}

void DialogWidget::reject() {
  SendMessage(HandleOf(this), WM_CLOSE, 0, 0);
}

bool DialogWidget::event(QEvent* event) {
  if (event->type() == PostedMessage::EventType()) {
    const auto* posted = static_cast<PostedMessage*>(event);
    SendMessage(HandleOf(this), posted->message, posted->wParam, posted->lParam);
    return true;
  }
  return QDialog::event(event);
}

void DialogWidget::closeEvent(QCloseEvent* event) {
  event->ignore();  // the procedure decides
  reject();
}

void DialogWidget::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  SendMessage(HandleOf(this), WM_SIZE, 0, MakeLParam(width(), height()));
}

void DialogWidget::showEvent(QShowEvent* event) {
  // Fixed only now: making the dialog may still size it.
  if (!property("sizable").toBool()) setFixedSize(size().expandedTo(minimumSizeHint()));
  QDialog::showEvent(event);
}

void DialogWidget::timerEvent(QTimerEvent* event) {
  if (const auto number = timers.NumberOf(event->timerId()))
    SendMessage(HandleOf(this), WM_TIMER, *number, 0);
}

void DialogWidget::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  SendPaint(*this, event->rect(), false);
}

void DialogWidget::mousePressEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}
void DialogWidget::mouseReleaseEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}
void DialogWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}
void DialogWidget::mouseMoveEvent(QMouseEvent* event) {
  RouteMouseEvent(this, event);
}

LRESULT SendToDialog(const WindowEntry& dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = dialog.handle;
  const LRESULT result = dialog.dialogProcedure(window, message, wParam, lParam);
  if (result != 0) return result;
  const WindowEntry* living = FindWindowEntry(window);
  if (living == nullptr) return 0;
  if (message == WM_CLOSE) SendMessage(window, WM_COMMAND, IDCANCEL, 0);
  if (message == WM_SETTEXT)
    living->widget->setWindowTitle(TextFromCodePage(reinterpret_cast<const char*>(lParam)));
  return 0;
}
