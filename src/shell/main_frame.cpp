#include "shell/main_frame.h"

#include <algorithm>

#include "controls/watch_timer.h"
#include "core/ini_file.h"
#include "framework/animations.h"
#include "framework/pane.h"
#include "platform/desktop/application.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/frame.h"
#include "platform/system/running_copies.h"
#include "resources/text_ids.h"
#include "shell/commands.h"
#include "shell/copy_notices.h"
#include "shell/frame_commands.h"
#include "shell/frame_menus.h"
#include "shell/frame_placement.h"
#include "shell/skins.h"
#include "shell/skins_menu.h"
#include "shell/switches.h"

namespace {

constexpr UINT kHoverTimer = 3000;
constexpr int kHoverMs = 100;
constexpr int kMenuGap = 4;  // between a toolbar button and the menu under it

void MoveTo(ZarfWnd& window, const RECT& rect) {
  window.Move(rect.left, rect.top, Width(rect), Height(rect), 0);
}

RECT ToScreen(HWND window, const RECT& rect) {
  const POINT topLeft = ClientToScreen(window, {rect.left, rect.top});
  return {topLeft.x, topLeft.y, topLeft.x + Width(rect), topLeft.y + Height(rect)};
}

}  // namespace

ZarfWndApp::ZarfWndApp(const char* newModuleName, const char* newProductName)
    : moduleName(newModuleName), productName(newProductName), windowClass("ZarfWndApp_" + moduleName) {}

// ---- The window's life ----

int ZarfWndApp::PrepareClass(WNDCLASS* windowClassRecord) {
  windowClassRecord->className = windowClass.c_str();
  windowClassRecord->style = CS_VREDRAW | CS_DBLCLKS;
  windowClassRecord->icon = "icon";
  windowClassRecord->background = kNoColour;
  windowClassRecord->cursor = nullptr;
  return 0;
}

int ZarfWndApp::PreCreate(char title[kTitleSize], DWORD* style, int placement[4]) {
  title[productName.copy(title, kTitleSize - 1)] = '\0';
  *style = WS_OWNFRAME;
  placement[0] = kDefaultPlace;
  placement[1] = kDefaultPlace;
  placement[2] = kSmallFrame.cx;
  placement[3] = kSmallFrame.cy;
  // A second copy would hide the first one if it opened where that one was left.
  if (OtherCopiesRun()) return 0;
  if (const auto saved = ReadPlacement(core::IniFile(), AllScreensRect())) {
    const int width = std::clamp(Width(*saved), kSmallFrame.cx, kLargeFrame.cx);
    const int height = std::clamp(Height(*saved), kSmallFrame.cy, kLargeFrame.cy);
    // A window that nobody can see could not be brought back, and would keep a second copy from starting.
    if (!IsOnScreen({saved->left, saved->top, saved->left + width, saved->top + height})) return 0;
    placement[0] = saved->left;
    placement[1] = saved->top;
    placement[2] = width;
    placement[3] = height;
  }
  return 0;
}

LRESULT ZarfWndApp::OnCreate(const MessageRecord&) {
  SetFrameInsets(hwnd, kFrameInsets);
  toolBar = std::make_unique<ZarfToolBar>();
  AddToolBarButtons();
  paneBar = std::make_unique<ZarfPaneBar>();
  if (!toolBar->Create(this) || !paneBar->Create(this)) return -1;
  SetWindowText(toolBar->Handle(), "Toolbar");
  SetWindowText(paneBar->Handle(), "Panes");
  cursor = LoadCursor(IDC_ARROW);
  SetTimer(hwnd, kHoverTimer, kHoverMs);
  return 0;
}

void ZarfWndApp::AddToolBarButtons() {
  constexpr int kOpensMenu = 1;
  constexpr int kPlain = 2;
  toolBar->AddButton(ID_FILE_MENU, 2000, text::kFileButton, text::kFileButton, kOpensMenu);
  toolBar->AddButton(ID_ITEM_NEW, 2001, text::kNewButton, text::kNewButton, kPlain);
  toolBar->AddButton(ID_ITEM_EDIT, 2002, text::kEditButton, text::kEditButton, kPlain);
  toolBar->AddButton(ID_ITEM_DELETE, 2003, text::kDeleteButton, text::kDeleteButton, kPlain);
  toolBar->AddButton(ID_FIND, 2004, text::kFindButton, text::kFindButton, kPlain);
  toolBar->AddButton(ID_HELP_MENU, 2005, text::kHelpButton, text::kHelpButton, kOpensMenu);
}

LRESULT ZarfWndApp::OnClose(const MessageRecord& record) {
  SaveState();
  DestroyWindow(record.hwnd);
  UnloadSkin();
  return 0;
}

void ZarfWndApp::SaveState() {
  const core::IniFile settings;
  RECT window;
  GetWindowRect(hwnd, &window);
  // Where windows do not know their place the noted one is not to be lost; the size is the user's all the
  // same.
  if (!WindowsKnowTheirPlace()) {
    const RECT noted = ReadPlacement(settings, AllScreensRect()).value_or(window);
    window = {noted.left, noted.top, noted.left + Width(window), noted.top + Height(window)};
  }
  WriteFrameState(settings, window, CurrentPaneIndex());
}

LRESULT ZarfWndApp::OnDestroy(const MessageRecord&) {
  PostQuitMessage(0);
  return 0;
}

LRESULT ZarfWndApp::WindowProc(const MessageRecord& record) {
  return record.message == NotifyMessage() ? OnNotice(record) : ZarfWnd::WindowProc(record);
}

LRESULT ZarfWndApp::OnNotice(const MessageRecord& record) {
  // The sender has the new values already.
  const bool ownNotice = record.lParam != 0 && record.lParam == reinterpret_cast<LPARAM>(hwnd);
  if (record.wParam == kNotifySettings && !ownNotice) {
    ReloadSwitches();
    RearmWatchTimer();
  }
  if (record.wParam == kNotifySkin) RepaintSkin();
  if (record.wParam == kNotifyRaise && platform::HoldsInstance(WindowClass())) BringToFront(hwnd);
  return 0;
}

void ZarfWndApp::RepaintSkin() {
  UnloadSkin();
  Invalidate(nullptr, 1);
  paneBar->Invalidate(nullptr, 1);
  InvalidateFrame(hwnd);
}

// ---- Layout and painting ----

LRESULT ZarfWndApp::OnSize(const MessageRecord&) {
  PlaceChildren();
  ShapeWindow();
  Invalidate(nullptr, 1);
  return 0;
}

void ZarfWndApp::PlaceChildren() {
  RECT client;
  GetClientRect(&client);
  if (toolBar == nullptr || paneBar == nullptr) return;
  MoveTo(*paneBar, PaneBarRect(SizeOf(client)));
  MoveTo(*toolBar, ToolBarRect(SizeOf(client)));
  if (ZarfPane* pane = CurrentPane(); pane != nullptr && IsWindow(pane->Handle())) {
    MoveTo(*pane, PaneRect(SizeOf(client)));
  }
}

void ZarfWndApp::ShapeWindow() {
  RECT window;
  GetWindowRect(hwnd, &window);
  const auto [width, height] = SizeOf(window);
  const POINT shape[] = {{kCornerClip, 0}, {0, kCornerClip},     {0, height},
                         {width, height},  {width, kCornerClip}, {width - kCornerClip, 0}};
  SetWindowShape(hwnd, shape);
}

void ZarfWndApp::OnPaint(HDC hdc, PAINTSTRUCT) {
  RECT client;
  GetClientRect(&client);
  if (const ZarfPane* pane = CurrentPane()) PaintBands(hdc, SizeOf(client), *GetSkin(), *pane);
}

LRESULT ZarfWndApp::OnEraseBkgnd(const MessageRecord& record) {
  RECT client;
  GetClientRect(&client);
  reinterpret_cast<HDC>(record.wParam)->FillRect(client, GetSkin()->colorBack);
  return 1;
}

LRESULT ZarfWndApp::DrawFrame(HDC windowContext) {
  RECT window;
  GetWindowRect(hwnd, &window);
  if (windowContext != nullptr) {
    PaintFrame(windowContext, SizeOf(window), *GetSkin(), GetWindowText(hwnd), buttons.States());
  }
  return 1;
}

LRESULT ZarfWndApp::OnNcPaint(const MessageRecord&) {
  DrawFrame(GetFrameContext(hwnd));
  return 0;
}

LRESULT ZarfWndApp::OnNcActivate(const MessageRecord& record) {
  if (record.wParam != 0) Update();
  return 1;
}

LRESULT ZarfWndApp::OnSetText(const MessageRecord& record) {
  const LRESULT result = DefaultProc(record);
  InvalidateFrame(hwnd);
  return result;
}

LRESULT ZarfWndApp::OnGetMinMaxInfo(const MessageRecord& record) {
  auto* const info = reinterpret_cast<MinMaxInfo*>(record.lParam);
  info->minimum = kSmallFrame;
  info->maximum = kLargeFrame;
  return DefaultProc(record);
}

// ---- The mouse on the frame ----

bool ZarfWndApp::OverGrip(POINT screenPoint) const {
  RECT client;
  ::GetClientRect(hwnd, &client);
  return Contains(GripRect(SizeOf(client)), ScreenToClient(hwnd, screenPoint)) &&
         WindowFromPoint(screenPoint) == hwnd;
}

LRESULT ZarfWndApp::OnTimer(const MessageRecord& record) {
  if (record.wParam != kHoverTimer || GetForegroundWindow() != hwnd) return 0;
  const POINT mouse = GetCursorPos();
  buttons.ShowHover(mouse);
  if (OverGrip(mouse)) {
    cursor = LoadCursor(IDC_SIZENWSE);
    SetCursor(cursor);
  } else if (GetCapture() == nullptr && WindowFromPoint(mouse) == hwnd) {
    cursor = LoadCursor(IDC_ARROW);
    SetCursor(cursor);
  }
  return 0;
}

LRESULT ZarfWndApp::OnSetCursor(const MessageRecord&) {
  SetCursor(cursor);
  return 0;
}

LRESULT ZarfWndApp::OnNcHitTest(const MessageRecord& record) {
  const LRESULT hit = DefaultProc(record);
  return hit >= HTLEFT && hit <= HTBOTTOMLEFT ? HTNOWHERE : hit;
}

void ZarfWndApp::SizeByGrip(POINT screenPoint) {
  SetCursor(LoadCursor(IDC_SIZENWSE));
  largeAsked.reset();
  Send(WM_SYSCOMMAND, SC_SIZE | WMSZ_BOTTOMRIGHT, MakeLParam(screenPoint.x, screenPoint.y));
}

LRESULT ZarfWndApp::OnNcLButtonDown(const MessageRecord& record) {
  const POINT mouse = PointFromLParam(record.lParam);
  if (const auto button = buttons.At(mouse)) {
    buttons.Track(*button);
    return 0;
  }
  RECT window;
  GetWindowRect(hwnd, &window);
  if (Contains(TitleRect(SizeOf(window)), {mouse.x - window.left, mouse.y - window.top})) {
    if (GetForegroundWindow() != hwnd) SetForegroundWindow(hwnd);
    Send(WM_SYSCOMMAND, SC_MOVE | HTCAPTION, record.lParam);
    return 0;
  }
  if (OverGrip(mouse)) {
    SizeByGrip(mouse);
    return 0;
  }
  return DefaultProc(record);
}

LRESULT ZarfWndApp::OnLButtonDown(const MessageRecord& record) {
  const POINT mouse = ClientToScreen(hwnd, PointFromLParam(record.lParam));
  if (OverGrip(mouse)) SizeByGrip(mouse);
  return 0;
}

LRESULT ZarfWndApp::OnRButtonDown(const MessageRecord&) {
  ShowSkinsMenu(*this);
  return 0;
}

LRESULT ZarfWndApp::OnNcRButtonDown(const MessageRecord& record) {
  return OnRButtonDown(record);
}

LRESULT ZarfWndApp::OnNcLButtonDblClk(const MessageRecord& record) {
  // A quick second press on a button is a press of the button.
  if (buttons.At(PointFromLParam(record.lParam))) return OnNcLButtonDown(record);
  Post(WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  return 0;
}

LRESULT ZarfWndApp::OnSysCommand(const MessageRecord& record) {
  switch (record.wParam & 0xFFF0) {
    case SC_KEYMENU:
    case SC_MOUSEMENU:
      return 0;
    case SC_MAXIMIZE:
      ToggleMaximize();
      return 0;
    default: {
      const LRESULT result = DefaultProc(record);
      InvalidateFrame(hwnd);
      return result;
    }
  }
}

void ZarfWndApp::ToggleMaximize() {
  RECT window;
  GetWindowRect(hwnd, &window);
  // What was asked for counts, not what a window manager with other ideas made of it.
  largeAsked = !largeAsked.value_or(HasLargeSize(window));
  const RECT next = MaximizedPlacement(window, DesktopRect(hwnd), *largeAsked);
  MoveWindow(hwnd, next.left, next.top, Width(next), Height(next));
}

void ZarfWndApp::Describe(int item, AccessiblePart* part) {
  if (item == kWholeWindow) {
    part->items = buttons.Count();
  } else {
    buttons.Describe(item, part);
  }
}

int ZarfWndApp::ItemAt(POINT point) {
  const auto button = buttons.At(ClientToScreen(hwnd, point));
  return button ? static_cast<int>(*button) : -1;
}

void ZarfWndApp::DoAction(AccessibleAction action, int value) {
  if (action == AccessibleAction::kPress && value >= 0 && value < buttons.Count())
    buttons.Press(static_cast<CaptionButton>(value));
}

// ---- Commands ----

LRESULT ZarfWndApp::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  if (PostAccelerator(hwnd, id)) return 0;
  switch (id) {
    case ID_PANE:
      SwitchPane(static_cast<int>(record.lParam), true);
      return 0;
    case ID_FILE_MENU:
      ShowFileMenu();
      return 0;
    case ID_HELP_MENU:
      ShowHelpMenu();
      return 0;
    case ID_HELP_CONTENTS:
      ShowHelp(0);
      return 0;
    default:
      RunFrameCommand(*this, id, ProductName() + " " + ModuleName() + " " DAYBRIX_VERSION);
      return 0;
  }
}

POINT ZarfWndApp::MenuCorner(unsigned button) const {
  RECT rect{};
  toolBar->ButtonRect(static_cast<int>(button), &rect);
  return ClientToScreen(toolBar->Handle(), {rect.left, rect.bottom + kMenuGap});
}

void ZarfWndApp::ShowFileMenu() {
  TrackFileMenu(hwnd, MenuCorner(ID_FILE_MENU));
}
void ZarfWndApp::ShowHelpMenu() {
  TrackHelpMenu(hwnd, MenuCorner(ID_HELP_MENU));
}

void ZarfWndApp::ShowHelp(int topic) {
  if (topic == 0) MessageBeep();
}

bool ZarfWndApp::SwitchPane(int index, bool animate) {
  ZarfPane* current = CurrentPane();
  if (current == nullptr) return false;
  if (animate) {
    RECT area;
    current->GetClientRect(&area);
    SweepAnimation(
        ToScreen(current->Handle(), {area.left - 26, area.top - 98, area.right + 30, area.bottom + 43}),
        ToScreen(current->Handle(), area));
  }
  if (index < 0 || index >= PaneCount()) index = 0;
  ZarfPane* next = PaneList()[static_cast<std::size_t>(index)];
  if (!current->CanLeave() || !next->CanEnter()) return false;
  current->Hide();
  SetCurrentPaneIndex(index);
  PlaceChildren();
  next->Show();
  RECT client;
  GetClientRect(&client);
  toolBar->Invalidate(nullptr, 1);
  paneBar->Invalidate(nullptr, 1);
  const RECT below = {client.left, client.top + 73, client.right, client.bottom};
  Invalidate(&below, 0);
  Update();
  AnnounceChange(paneBar->Handle(), AccessibleChange::kCurrentItem);
  SetFocus(next->Handle());
  next->OnEnter();
  return true;
}
