// The widget behind a dialog: turns what happens into messages for the dialog's procedure. The user can size
// it only where its template has the dynamic property `sizable`.
#pragma once

#include <QDialog>

#include "platform/desktop/qt/timer_set.h"
#include "platform/desktop/qt/window_table.h"

class DialogWidget : public QDialog {
 public:
  explicit DialogWidget(QWidget* parent);

  TimerSet& Timers() { return timers; }
  // Escape and the window's close button.
  void reject() override;

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  TimerSet timers{*this};
};

// What SendMessage does for a dialog: the procedure first, then the layer's own handling.
LRESULT SendToDialog(const WindowEntry& dialog, UINT message, WPARAM wParam, LPARAM lParam);
// What SendMessage does for a control.
LRESULT SendToControl(const WindowEntry& control, UINT message, WPARAM wParam, LPARAM lParam);
