// The one widget behind every window of the program: it turns Qt's events into messages for the window's
// procedure.
#pragma once

#include <QRegion>
#include <QWidget>

#include "platform/desktop/qt/timer_set.h"
#include "platform/desktop/window.h"

class WindowWidget : public QWidget {
 public:
  WindowWidget(QWidget* parent, DWORD style);

  // Tells the procedure the size if it does not know it yet.
  void ReportSize();
  void Mark(const QRegion& region, bool erase);
  void PaintNow(const QRegion& region);
  TimerSet& Timers() { return timers; }
  // The window's icon by picture name (null for none), loaded once the window has been seen: it can wait.
  void ShowIconLater(const char* name) { waitingIcon = name; }
  // The window, or the frame around it, was painted.
  void NoteSeen();
  const QRegion& Marked() const { return marked; }
  // Tab, with Shift backwards, from this window.
  void WalkTabStops();
  bool ShowsFocus() const;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  // Tab is a key like any other, but in a dialog it walks the controls.
  bool focusNextPrevChild(bool next) override;

 private:
  bool InDialog() const;
  LRESULT Tell(UINT message, WPARAM wParam, LPARAM lParam);

  QSize reportedSize{-1, -1};
  QRegion marked;
  bool markedErase = false;
  TimerSet timers{*this};
  int wheelRest = 0;
  bool active = false;
  const char* waitingIcon = nullptr;
};

// The widget of a window that is no dialog and no control; null for these and for a dead one.
WindowWidget* WindowWidgetOf(HWND window);
// The timers of a window or a dialog; null for controls and dead ones.
TimerSet* TimersOf(HWND window);
