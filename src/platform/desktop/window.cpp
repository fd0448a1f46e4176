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

WindowWidget* WidgetOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr && entry->kind == WindowKind::kWindow ? static_cast<WindowWidget*>(entry->widget)
                                                                : nullptr;
}

QWidget* AnyWidgetOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->widget : nullptr;
}

QWidget* OuterWidgetOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->Outer() : nullptr;
}

TimerSet* TimersOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || entry->kind == WindowKind::kControl) return nullptr;
  return entry->kind == WindowKind::kWindow ? &static_cast<WindowWidget*>(entry->widget)->Timers()
                                            : &static_cast<DialogWidget*>(entry->widget)->Timers();
}

// The sizes between which the user may drag a top-level window.
void ApplySizeBounds(HWND window, QWidget& outer) {
  MinMaxInfo info;
  SendMessage(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  if (info.minimum.cx > 0 && info.minimum.cy > 0) outer.setMinimumSize(info.minimum.cx, info.minimum.cy);
  if (info.maximum.cx > 0 && info.maximum.cy > 0) outer.setMaximumSize(info.maximum.cx, info.maximum.cy);
}

QRect ToQt(const RECT& rect) {
  return {rect.left, rect.top, Width(rect), Height(rect)};
}

RECT FromQt(const QRect& rect) {
  return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
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

bool GetClassInfo(const char* className, WNDCLASS* windowClass) {
  const auto found = Classes().find(className);
  if (found == Classes().end()) return false;
  *windowClass = found->second;
  return true;
}

HWND CreateWindow(const char* className, const char* title, DWORD style, int x, int y, int width, int height,
                  HWND parent) {
  const auto found = Classes().find(className);
  if (found == Classes().end()) return nullptr;
  FrameWidget* frame = style & WS_OWNFRAME ? new FrameWidget : nullptr;
  auto* widget =
      new WindowWidget(frame != nullptr ? frame : AnyWidgetOf(parent), frame != nullptr ? WS_CHILD : style);
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
  const QWidget* widget = AnyWidgetOf(window);
  return widget != nullptr && widget->isVisible();
}

void EnableWindow(HWND window, bool enabled) {
  if (QWidget* widget = AnyWidgetOf(window)) widget->setEnabled(enabled);
}

bool IsWindowEnabled(HWND window) {
  const QWidget* widget = AnyWidgetOf(window);
  return widget != nullptr && widget->isEnabled();
}

void SetWindowText(HWND window, const char* text) {
  SendMessage(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

std::string GetWindowText(HWND window) {
  const QWidget* widget = OuterWidgetOf(window);
  return widget != nullptr ? CodePageFromText(widget->windowTitle()) : std::string();
}

void MoveWindow(HWND window, int x, int y, int width, int height) {
  QWidget* widget = OuterWidgetOf(window);
  if (widget == nullptr) return;
  if (widget->isWindow()) {
    widget->move(x, y);
    widget->resize(width, height);
  } else {
    widget->setGeometry(x, y, width, height);
  }
  if (WindowWidget* own = WidgetOf(window)) own->ReportSize();
}

bool GetClientRect(HWND window, RECT* rect) {
  const QWidget* widget = AnyWidgetOf(window);
  *rect = widget != nullptr ? FromQt(widget->rect()) : RECT{};
  return widget != nullptr;
}

bool GetWindowRect(HWND window, RECT* rect) {
  const QWidget* widget = OuterWidgetOf(window);
  *rect = {};
  if (widget == nullptr) return false;
  *rect = FromQt(widget->isWindow() ? widget->frameGeometry()
                                    : QRect(widget->mapToGlobal(QPoint()), widget->size()));
  return true;
}

POINT ClientToScreen(HWND window, POINT point) {
  const QWidget* widget = AnyWidgetOf(window);
  if (widget == nullptr) return point;
  const QPoint global = widget->mapToGlobal(QPoint(point.x, point.y));
  return {global.x(), global.y()};
}

POINT ScreenToClient(HWND window, POINT point) {
  const QWidget* widget = AnyWidgetOf(window);
  if (widget == nullptr) return point;
  const QPoint local = widget->mapFromGlobal(QPoint(point.x, point.y));
  return {local.x(), local.y()};
}

HWND WindowFromPoint(POINT screenPoint) {
  return HandleAround(QApplication::widgetAt(screenPoint.x, screenPoint.y));
}

RECT DesktopRect(HWND window) {
  const QWidget* widget = OuterWidgetOf(window);
  return FromQt((widget != nullptr ? widget->screen() : QGuiApplication::primaryScreen())->geometry());
}

RECT AllScreensRect() {
  return FromQt(QGuiApplication::primaryScreen()->virtualGeometry());
}

bool IsOnScreen(const RECT& rect) {
  const QList<QScreen*> screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(),
                     [&](const QScreen* screen) { return screen->geometry().intersects(ToQt(rect)); });
}

void InvalidateRect(HWND window, const RECT* rect, BOOL erase) {
  WindowWidget* widget = WidgetOf(window);
  if (widget == nullptr) return;
  widget->Mark(rect != nullptr ? ToQt(*rect) & widget->rect() : widget->rect(), erase != 0);
}

void UpdateWindow(HWND window) {
  WindowWidget* widget = WidgetOf(window);
  if (widget != nullptr && !widget->Marked().isEmpty()) widget->PaintNow(widget->Marked());
}

void RepaintWindow(HWND window) {
  if (WindowWidget* widget = WidgetOf(window)) widget->PaintNow(widget->rect());
}

HDC BeginPaint(HWND window, PAINTSTRUCT* paint) {
  WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || entry->paintContext == nullptr) return nullptr;
  paint->hdc = entry->paintContext;
  paint->paint = entry->paintBounds;
  if (entry->erasePending) {
    entry->erasePending = false;
    SendMessage(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0);
  }
  return paint->hdc;
}

void EndPaint(HWND, const PAINTSTRUCT*) {}

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
    if (WidgetOf(window) != nullptr && outer->isWindow()) PostMessage(window, message, wParam, lParam);
  }
}

LRESULT DefWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  WindowWidget* widget = WidgetOf(window);
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

void SetFocus(HWND window) {
  if (QWidget* widget = AnyWidgetOf(window)) widget->setFocus(Qt::OtherFocusReason);
}

HWND GetFocus() {
  return HandleAround(QApplication::focusWidget());
}

void SetTabStop(HWND window, bool stop) {
  // Not by a click: which windows take the focus then is theirs to say.
  if (QWidget* widget = AnyWidgetOf(window)) widget->setFocusPolicy(stop ? Qt::TabFocus : Qt::NoFocus);
}

bool ShowsFocus(HWND window) {
  const WindowWidget* widget = WidgetOf(window);
  return widget != nullptr && widget->ShowsFocus();
}

HWND GetForegroundWindow() {
  return HandleOf(QApplication::activeWindow());
}

void SetForegroundWindow(HWND window) {
  QWidget* widget = AnyWidgetOf(window);
  if (widget == nullptr) return;
  widget->window()->raise();
  widget->window()->activateWindow();
}
