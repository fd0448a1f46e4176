// How messages and timers reach windows, and what becomes of those that nobody handles.
#include <map>

#include "platform/desktop/cursor.h"
#include "platform/desktop/device_context.h"
#include "platform/desktop/frame.h"
#include "platform/desktop/qt/dialog_widget.h"
#include "platform/desktop/qt/frame_widget.h"
#include "platform/desktop/qt/rect.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/qt/window_widget.h"
#include "platform/desktop/window.h"

LRESULT SendMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr) return 0;
  switch (entry->kind) {
    case WindowKind::kWindow:
      return entry->windowClass->procedure(window, message, wParam, lParam);
    case WindowKind::kDialog:
      return SendToDialog(*entry, message, wParam, lParam);
    default:
      return SendToControl(*entry, message, wParam, lParam);
  }
}

bool PostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || entry->kind == WindowKind::kControl) return false;
  PostToWidget(entry->widget, message, wParam, lParam);
  return true;
}

void PostToAll(UINT message, WPARAM wParam, LPARAM lParam) {
  for (const HWND window : AllWindows()) {
    const QWidget* outer = OuterWidgetOf(window);
    if (WindowWidgetOf(window) != nullptr && outer->isWindow()) PostMessage(window, message, wParam, lParam);
  }
}

LRESULT DefWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  WindowWidget* widget = WindowWidgetOf(window);
  if (widget == nullptr) return 0;
  const WNDCLASS& windowClass = *FindWindowEntry(window)->windowClass;
  switch (message) {
    case WM_CLOSE:
      DestroyWindow(window);
      return 0;
    case WM_PAINT: {
      PAINTSTRUCT paint;
      BeginPaint(window, &paint);
      EndPaint(window, &paint);
      return 0;
    }
    case WM_ERASEBKGND:
      if (windowClass.background == kNoColour) return 0;
      reinterpret_cast<HDC>(wParam)->FillRect(FromQt(widget->rect()), windowClass.background);
      return 1;
    case WM_SETCURSOR:
      if (windowClass.cursor != nullptr) SetCursor(windowClass.cursor);
      return windowClass.cursor != nullptr;
    case WM_SETTEXT:
      OuterWidgetOf(window)->setWindowTitle(TextFromCodePage(reinterpret_cast<const char*>(lParam)));
      return 1;
    case WM_SYSCOMMAND:
      DefaultSysCommand(window, wParam);
      return 0;
    case WM_MOUSEWHEEL:
      return SendMessage(GetParent(window), message, wParam, lParam);
    case WM_NCHITTEST:
      return DefaultHitTest(window, PointFromLParam(lParam));
    case WM_NCACTIVATE:
      return 1;
    case WM_KEYDOWN:
      if (wParam == VK_TAB) widget->WalkTabStops();
      return 0;
    default:
      return 0;
  }
}

UINT RegisterWindowMessage(const char* name) {
  static std::map<std::string, UINT> numbers;
  return numbers.try_emplace(name, WM_REGISTERED + static_cast<UINT>(numbers.size())).first->second;
}

void SetTimer(HWND window, UINT id, int ms) {
  if (TimerSet* timers = TimersOf(window)) timers->Start(id, ms);
}

bool KillTimer(HWND window, UINT id) {
  TimerSet* timers = TimersOf(window);
  return timers != nullptr && timers->Stop(id);
}
