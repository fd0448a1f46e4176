// The frame around a window that draws its own: holds the window's widget inside and turns its own events
// into the WM_NC... messages.
#pragma once

#include <QWidget>

#include "platform/desktop/frame.h"

class WindowWidget;

class FrameWidget : public QWidget {
 public:
  FrameWidget();

  void SetClient(WindowWidget* widget);
  void SetInsets(const RECT& widths);
  const RECT& Insets() const { return insets; }
  // Moves or, from the bottom right corner, sizes the window with the mouse that is down.
  void FollowMouse(bool size);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  // Keys that reach the frame, when nothing inside has the focus, are the window's.
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void PlaceClient();
  void Mouse(QMouseEvent* event, UINT left, UINT right);

  WindowWidget* client = nullptr;
  RECT insets;
  bool active = false;
};

// The window's own parts of WM_NCHITTEST and WM_SYSCOMMAND.
int DefaultHitTest(HWND window, POINT screenPoint);
void DefaultSysCommand(HWND window, WPARAM command);
