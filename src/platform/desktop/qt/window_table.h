// The table behind window handles: which widget a handle stands for and who is told its messages.
#pragma once

#include <string>
#include <vector>

#include "platform/desktop/dialog.h"
#include "platform/desktop/window.h"

class QString;
class QWidget;

enum class WindowKind { kWindow, kDialog, kControl };

// One living window.
struct WindowEntry {
  HWND handle = nullptr;
  QWidget* widget = nullptr;  // owned by its Qt parent or by itself
  QWidget* frame = nullptr;   // around `widget`, of windows that draw their own frame
  WindowKind kind = WindowKind::kWindow;
  std::string className;
  const WNDCLASS* windowClass = nullptr;      // of kWindow
  DialogProcedure dialogProcedure = nullptr;  // of kDialog
  std::intptr_t word = 0;
  int controlId = 0;        // of kControl
  bool created = false;     // WM_CREATE was handled
  bool destroying = false;  // WM_DESTROY is on its way
  // Of the paint under way; no context outside of one.
  HDC paintContext = nullptr;
  RECT paintBounds;
  bool erasePending = false;
  HDC frameContext = nullptr;

  // The widget that is moved, sized, shown and titled.
  QWidget* Outer() const { return frame != nullptr ? frame : widget; }
};

WindowEntry& AddWindow(QWidget* widget, WindowKind kind, const std::string& className);
// Makes a frame part of a window: its handle is the window's.
void AddFrame(WindowEntry& entry, QWidget* frame);
void RemoveWindow(HWND window);
// Null for a handle whose window is gone.
WindowEntry* FindWindowEntry(HWND window);
// The widget of a window, and the one that is moved and shown for it; null for a dead one.
QWidget* WidgetOf(HWND window);
QWidget* OuterWidgetOf(HWND window);
// The window of just this widget, and of it or the nearest widget around it.
HWND HandleOf(const QWidget* widget);
HWND HandleAround(const QWidget* widget);
std::vector<HWND> AllWindows();

// Texts of the program and of Qt.
QString TextFromCodePage(const char* text);
std::string CodePageFromText(const QString& text);

// Posts to a widget of ours; WindowWidget and DialogWidget turn the event back into a message.
void PostToWidget(QWidget* widget, UINT message, WPARAM wParam, LPARAM lParam);
