#include "platform/desktop/window.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <map>

#include "platform/desktop/cursor.h"
#include "platform/desktop/device_context.h"
#include "platform/desktop/frame.h"
#include "platform/desktop/qt/dialog_owner.h"
#include "platform/desktop/qt/dialog_widget.h"
#include "platform/desktop/qt/frame_widget.h"
#include "platform/desktop/qt/mouse.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/qt/window_widget.h"

namespace {

// The registered classes with the storage of their names.
std::map<std::string, WNDCLASS>& Classes() {
  static std::map<std::string, WNDCLASS> classes;
  return classes;
}

// The sizes between which the user may drag a top-level window.
void ApplySizeBounds(HWND window, QWidget& outer) {
  MinMaxInfo info;
  SendMessage(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  if (info.minimum.cx > 0 && info.minimum.cy > 0) outer.setMinimumSize(info.minimum.cx, info.minimum.cy);
  if (info.maximum.cx > 0 && info.maximum.cy > 0) outer.setMaximumSize(info.maximum.cx, info.maximum.cy);
}

void DestroyChildren(const QWidget* widget) {
  for (QObject* child : QObjectList(widget->children())) {
    if (!child->isWidgetType()) continue;
    auto* childWidget = static_cast<QWidget*>(child);
    if (const HWND window = HandleOf(childWidget)) {
      DestroyWindow(window);
    } else {
      DestroyChildren(childWidget);
    }
  }
}

}  // namespace

bool RegisterClass(const WNDCLASS& windowClass) {
  const auto [place, added] = Classes().try_emplace(windowClass.className, windowClass);
  if (added) place->second.className = place->first.c_str();
  return added;
}

HWND CreateWindow(const char* className, const char* title, DWORD style, int x, int y, int width, int height,
                  HWND parent) {
  const auto found = Classes().find(className);
  if (found == Classes().end()) return nullptr;
  FrameWidget* frame = style & WS_OWNFRAME ? new FrameWidget : nullptr;
  auto* widget =
      new WindowWidget(frame != nullptr ? frame : WidgetOf(parent), frame != nullptr ? WS_CHILD : style);
  WindowEntry& entry = AddWindow(widget, WindowKind::kWindow, className);
  entry.windowClass = &found->second;
  if (frame != nullptr) {
    frame->SetClient(widget);
    AddFrame(entry, frame);
  }
  const HWND window = entry.handle;
  QWidget* outer = entry.Outer();
  outer->setWindowTitle(TextFromCodePage(title));
  widget->ShowIconLater(found->second.icon);
  if (width > 0 && height > 0) outer->resize(width, height);
  if (style & WS_CHILD) {
    widget->setGeometry(x, y, width, height);
    if (!(style & WS_VISIBLE)) widget->hide();  // else it would show when its parent does
  } else if (x != kDefaultPlace) {
    outer->move(x, y);
  }
  if (SendMessage(window, WM_CREATE, 0, 0) == -1) {
    DestroyWindow(window);
    return nullptr;
  }
  if (!IsWindow(window)) return nullptr;
  entry.created = true;
  if (outer->isWindow()) ApplySizeBounds(window, *outer);
  widget->ReportSize();
  if (style & WS_VISIBLE && IsWindow(window)) ShowWindow(window, SW_SHOW);
  return IsWindow(window) ? window : nullptr;
}

bool DestroyWindow(HWND window) {
  WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || entry->destroying) return false;
  entry->destroying = true;
  if (entry->kind != WindowKind::kControl) SendMessage(window, WM_DESTROY, 0, 0);
  QWidget* widget = entry->Outer();
  DestroyChildren(entry->widget);
  if (TimerSet* timers = TimersOf(window)) timers->StopAll();
  ForgetCapture(window);
  const bool control = entry->kind == WindowKind::kControl;
  RemoveWindow(window);
  if (!control) {
    // The widget may be on the stack of its own event handler: it goes when the loop runs again.
    widget->hide();
    widget->setParent(nullptr);
    widget->deleteLater();
  }
  return true;
}

bool IsWindow(HWND window) {
  return FindWindowEntry(window) != nullptr;
}

std::string GetClassName(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->className : std::string();
}

std::intptr_t GetWindowWord(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->word : 0;
}

void SetWindowWord(HWND window, std::intptr_t word) {
  if (WindowEntry* entry = FindWindowEntry(window)) entry->word = word;
}

HWND GetParent(HWND window) {
  const QWidget* widget = OuterWidgetOf(window);
  return widget != nullptr ? HandleAround(widget->parentWidget()) : nullptr;
}

void ShowWindow(HWND window, int how) {
  QWidget* widget = OuterWidgetOf(window);
  if (widget == nullptr) return;
  widget->setVisible(how != SW_HIDE);
  if (how != SW_HIDE && widget->isWindow()) widget->activateWindow();
}

void WaitUntilShown(HWND window) {
  ReadyOwner(window);
}

bool IsWindowVisible(HWND window) {
  const QWidget* widget = WidgetOf(window);
  return widget != nullptr && widget->isVisible();
}

void EnableWindow(HWND window, bool enabled) {
  if (QWidget* widget = WidgetOf(window)) widget->setEnabled(enabled);
}

bool IsWindowEnabled(HWND window) {
  const QWidget* widget = WidgetOf(window);
  return widget != nullptr && widget->isEnabled();
}

void SetWindowText(HWND window, const char* text) {
  SendMessage(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

std::string GetWindowText(HWND window) {
  const QWidget* widget = OuterWidgetOf(window);
  return widget != nullptr ? CodePageFromText(widget->windowTitle()) : std::string();
}
