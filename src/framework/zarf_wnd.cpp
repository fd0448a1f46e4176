#include "framework/zarf_wnd.h"

#include <array>

#include "framework/drawing.h"
#include "platform/desktop/cursor.h"

namespace {

// The object whose window is being made: its first message binds the two.
ZarfWnd* beingCreated = nullptr;

}  // namespace

ZarfWnd::~ZarfWnd() {
  // By now the object is a plain ZarfWnd: what its window is still told does nothing.
  if (IsWindow(hwnd)) DestroyWindow(hwnd);
}

bool ZarfWnd::Create(ZarfWnd* parent, DWORD style) {
  beingCreated = this;
  std::array<int, 4> placement = {};
  std::array<char, kTitleSize> title = {};
  if (style == static_cast<DWORD>(-1)) style = WS_CHILD | WS_VISIBLE;
  WNDCLASS windowClass;
  windowClass.style = CS_SAVEBITS;
  windowClass.procedure = SharedWindowProcedure;
  windowClass.cursor = LoadCursor(IDC_ARROW);
  windowClass.background = kButtonFace;
  windowClass.className = "ZarfWnd";
  PrepareClass(&windowClass);
  RegisterClass(windowClass);
  PreCreate(title.data(), &style, placement.data());
  const HWND window = CreateWindow(windowClass.className, title.data(), style, placement[0], placement[1],
                                   placement[2], placement[3], parent != nullptr ? parent->hwnd : nullptr);
  beingCreated = nullptr;
  if (window == nullptr) return false;
  PostMessage(window, ZWM_AFTERCREATE, 0, 0);
  return true;
}

HWND ZarfWnd::Parent() const {
  return GetParent(hwnd);
}
ZarfWnd* ZarfWnd::ParentObject() const {
  return ObjectFromHandle(Parent());
}
RECT ZarfWnd::ClientArea() const {
  RECT client;
  ::GetClientRect(hwnd, &client);
  return client;
}
void ZarfWnd::TellParent(int id, LPARAM value, unsigned code) {
  PostMessage(Parent(), WM_COMMAND, MakeWParam(static_cast<unsigned>(id), code), value);
}

ZarfWnd* ObjectFromHandle(HWND window) {
  return IsWindow(window) ? reinterpret_cast<ZarfWnd*>(GetWindowWord(window)) : nullptr;
}

LRESULT ZarfWnd::SharedWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* object = reinterpret_cast<ZarfWnd*>(GetWindowWord(window));
  if (object == nullptr) {
    object = beingCreated;
    if (object == nullptr) return 0;
    SetWindowWord(window, reinterpret_cast<std::intptr_t>(object));
    object->hwnd = window;
  }
  return object->WindowProc({window, message, wParam, lParam});
}

LRESULT ZarfWnd::WindowProc(const MessageRecord& record) {
  switch (record.message) {
    case WM_CREATE:
      return OnCreate(record);
    case ZWM_AFTERCREATE:
      return OnAfterCreate(record);
    case WM_CLOSE:
      return OnClose(record);
    case WM_DESTROY:
      return OnDestroy(record);
    case WM_COMMAND:
      return OnCommand(record);
    case WM_SYSCOMMAND:
      return OnSysCommand(record);
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return OnEraseBkgnd(record);
    case WM_TIMER:
      return record.hwnd == hwnd ? OnTimer(record) : 0;
    case WM_SETCURSOR:
      return OnSetCursor(record);
    case WM_SIZE:
      return OnSize(record);
    case WM_ACTIVATE:
      return OnActivate(record);
    case WM_CHAR:
      return OnChar(record);
    case WM_SYSKEYDOWN:
      return OnSysKeyDown(record);
    case WM_SYSKEYUP:
      return OnSysKeyUp(record);
    case WM_KEYUP:
      return OnKeyUp(record);
    case WM_KEYDOWN:
      return OnKeyDown(record);
    default:
      return RouteMouse(record);
  }
}

LRESULT ZarfWnd::RouteMouse(const MessageRecord& record) {
  switch (record.message) {
    case WM_MOUSEMOVE:
      return OnMouseMove(record);
    case WM_LBUTTONUP:
      return OnLButtonUp(record);
    case WM_LBUTTONDBLCLK:
      return OnLButtonDblClk(record);
    case WM_LBUTTONDOWN:
      return OnLButtonDown(record);
    case WM_RBUTTONUP:
      return OnRButtonUp(record);
    case WM_RBUTTONDOWN:
      return OnRButtonDown(record);
    case WM_MOUSEWHEEL:
      return OnMouseWheel(record);
    default:
      return RouteFrame(record);
  }
}

LRESULT ZarfWnd::RouteFrame(const MessageRecord& record) {
  switch (record.message) {
    case WM_GETMINMAXINFO:
      return OnGetMinMaxInfo(record);
    case WM_NCLBUTTONDBLCLK:
      return OnNcLButtonDblClk(record);
    case WM_NCLBUTTONDOWN:
      return OnNcLButtonDown(record);
    case WM_NCRBUTTONDOWN:
      return OnNcRButtonDown(record);
    case WM_NCRBUTTONUP:
      return OnNcRButtonUp(record);
    case WM_NCLBUTTONUP:
      return OnNcLButtonUp(record);
    case WM_NCHITTEST:
      return OnNcHitTest(record);
    case WM_NCPAINT:
      return OnNcPaint(record);
    case WM_NCACTIVATE:
      return OnNcActivate(record);
    case WM_SETTEXT:
      return OnSetText(record);
    default:
      return RouteAccess(record);
  }
}

LRESULT ZarfWnd::RouteAccess(const MessageRecord& record) {
  switch (record.message) {
    case WM_DESCRIBE:
      Describe(static_cast<int>(record.wParam), reinterpret_cast<AccessiblePart*>(record.lParam));
      return 1;
    case WM_ITEMAT:
      return ItemAt(PointFromLParam(record.lParam)) + 1;
    case WM_DOACTION:
      DoAction(static_cast<AccessibleAction>(record.wParam), static_cast<int>(record.lParam));
      return 0;
    default:
      return DefaultProc(record);
  }
}

void ZarfWnd::Paint() {
  PAINTSTRUCT paint;
  const HWND window = hwnd;
  if (const HDC hdc = BeginPaint(window, &paint)) OnPaint(hdc, paint);
  EndPaint(window, &paint);
}

LRESULT ZarfWnd::DefaultProc(const MessageRecord& record) {
  return DefWindowProc(record.hwnd, record.message, record.wParam, record.lParam);
}

int ZarfWnd::PrepareClass(WNDCLASS*) {
  return 0;
}
int ZarfWnd::PreCreate(char*, DWORD*, int*) {
  return 0;
}
LRESULT ZarfWnd::OnCreate(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnAfterCreate(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnClose(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnDestroy(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnCommand(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnSysCommand(const MessageRecord& record) {
  return DefaultProc(record);
}
void ZarfWnd::OnPaint(HDC, PAINTSTRUCT) {}
LRESULT ZarfWnd::OnEraseBkgnd(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnTimer(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnSetCursor(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnSize(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnMouseMove(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnLButtonUp(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnLButtonDblClk(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnLButtonDown(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnRButtonUp(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnRButtonDown(const MessageRecord&) {
  return 0;
}
LRESULT ZarfWnd::OnMouseWheel(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnGetMinMaxInfo(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcLButtonDblClk(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcLButtonDown(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcRButtonDown(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcRButtonUp(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcLButtonUp(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcHitTest(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcPaint(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnNcActivate(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnSetText(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnChar(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnSysKeyDown(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnSysKeyUp(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnKeyUp(const MessageRecord& record) {
  return DefaultProc(record);
}
bool ZarfWnd::KeepsKey(unsigned) const {
  return false;
}
LRESULT ZarfWnd::OnKeyDown(const MessageRecord& record) {
  return DefaultProc(record);
}
LRESULT ZarfWnd::OnActivate(const MessageRecord&) {
  return 0;
}

void ZarfWnd::Move(int x, int y, int width, int height, int repaint) {
  if (width == -1 && height == -1 && repaint == -1) {
    RECT client;
    ::GetClientRect(hwnd, &client);
    width = Width(client);
    height = Height(client);
  }
  MoveWindow(hwnd, x, y, width, height);
}

void ZarfWnd::Invalidate(const RECT* rect, BOOL erase) {
  InvalidateRect(hwnd, rect, erase);
}
void ZarfWnd::RedrawNow() {
  RepaintWindow(hwnd);
}
void ZarfWnd::PostRecord(const MessageRecord& record) {
  PostMessage(record.hwnd, record.message, record.wParam, record.lParam);
}
void ZarfWnd::Post(UINT message, WPARAM wParam, LPARAM lParam) {
  PostMessage(hwnd, message, wParam, lParam);
}
LRESULT ZarfWnd::SendRecord(const MessageRecord& record) {
  return SendMessage(record.hwnd, record.message, record.wParam, record.lParam);
}
LRESULT ZarfWnd::Send(UINT message, WPARAM wParam, LPARAM lParam) {
  return SendMessage(hwnd, message, wParam, lParam);
}
void ZarfWnd::GetClientRect(RECT* rect) {
  ::GetClientRect(hwnd, rect);
}

void ZarfWnd::Destroy() {
  const HWND window = hwnd;
  Send(WM_CLOSE, 0, 0);
  DestroyWindow(window);
}

void ZarfWnd::Hide() {
  ShowWindow(hwnd, SW_HIDE);
}
void ZarfWnd::Show() {
  ShowWindow(hwnd, SW_SHOW);
}
void ZarfWnd::Update() {
  UpdateWindow(hwnd);
}

void ZarfWnd::Describe(int, AccessiblePart*) {}
int ZarfWnd::ItemAt(POINT) {
  return -1;
}
void ZarfWnd::DoAction(AccessibleAction, int) {}
