#include "shell/main_frame.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "controls/list_refresh.h"
#include "core/ini_file.h"
#include "framework/animations.h"
#include "framework/notices.h"
#include "framework/pane.h"
#include "framework/shell_services.h"
#include "platform/desktop/application.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/frame.h"
#include "shell/accelerators.h"
#include "shell/application.h"
#include "shell/application_object.h"
#include "shell/commands.h"
#include "shell/frame_menus.h"
#include "shell/frame_placement.h"
#include "shell/options_dialog.h"
#include "shell/skins.h"
#include "shell/skins_dialog.h"
#include "shell/skins_menu.h"
#include "shell/web_pages.h"

namespace {

constexpr UINT kHoverTimer = 3000;
constexpr int kHoverMs = 100;
constexpr int kMenuGap = 4;  // between a toolbar button and the menu under it

constexpr CaptionButton kHoverOrder[] = {CaptionButton::kMaximize, CaptionButton::kMinimize,
                                         CaptionButton::kClose};

// Which accelerators work only while a certain pane is current.
constexpr int kAnyPane = -1;
struct AcceleratorCommand {
  unsigned accelerator;
  unsigned command;
  LPARAM value = 0;
  int pane = kAnyPane;
};

constexpr AcceleratorCommand kAcceleratorCommands[] = {
    {kAccNew, ID_ITEM_NEW},          {kAccFind, ID_FIND},          {kAccNewFile, ID_FILE_NEW},
    {kAccOpenFile, ID_FILE_OPEN},    {kAccPrint, ID_PRINT},        {kAccHelp, ID_HELP_CONTENTS},
    {kAccFileMenu, ID_FILE_MENU},    {kAccHelpMenu, ID_HELP_MENU}, {kAccFirstPane, ID_PANE, 0},
    {kAccSecondPane, ID_PANE, 1, 0}, {kAccCut, ID_CUT, 0, 1},      {kAccCopy, ID_COPY},
    {kAccPaste, ID_PASTE},           {kAccUndo, ID_UNDO_DELETE},   {kAccOpenAttachment, ID_OPEN_ATTACHMENT},
    {kAccEdit, ID_ITEM_EDIT},        {kAccDelete, ID_ITEM_DELETE},
};

SIZE SizeOf(const RECT& rect) {
  return {Width(rect), Height(rect)};
}

void MoveTo(ZarfWnd& window, const RECT& rect) {
  window.Move(rect.left, rect.top, Width(rect), Height(rect), 0);
}

RECT ToScreen(HWND window, const RECT& rect) {
  const POINT topLeft = ClientToScreen(window, {rect.left, rect.top});
  return {topLeft.x, topLeft.y, topLeft.x + Width(rect), topLeft.y + Height(rect)};
}

}  // namespace

ZarfWndApp::ZarfWndApp(const char* newModuleName, const char* newProductName, int newModuleKind)
    : moduleName(newModuleName),
      productName(newProductName),
      windowClass("ZarfWndApp_" + moduleName),
      moduleKind(newModuleKind) {
  SetApplicationObject(this);
}

ZarfWndApp::~ZarfWndApp() {
  SetApplicationObject(nullptr);
}

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
  toolBar->AddButton(ID_FILE_MENU, 2000, 3004, 3004, kOpensMenu);
  toolBar->AddButton(ID_ITEM_NEW, 2001, 3000, 3000, kPlain);
  toolBar->AddButton(ID_ITEM_EDIT, 2002, 3001, 3001, kPlain);
  toolBar->AddButton(ID_ITEM_DELETE, 2003, 3002, 3002, kPlain);
  toolBar->AddButton(ID_FIND, 2004, 3003, 3003, kPlain);
  toolBar->AddButton(ID_HELP_MENU, 2005, 3005, 3005, kOpensMenu);
}

LRESULT ZarfWndApp::OnClose(const MessageRecord& record) {
  RECT window;
  GetWindowRect(hwnd, &window);
  WritePlacement(core::IniFile(), window);
  DestroyWindow(record.hwnd);
  UnloadSkin();
  return 0;
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
    RearmListViews();
  }
  if (record.wParam == kNotifySkin) RepaintSkin();
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
    PaintFrame(windowContext, SizeOf(window), *GetSkin(), GetWindowText(hwnd), captionStates);
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

bool ZarfWndApp::OverButton(CaptionButton button, POINT screenPoint) const {
  RECT window;
  GetWindowRect(hwnd, &window);
  const POINT point = {screenPoint.x - window.left, screenPoint.y - window.top};
  return Contains(CaptionButtonRect(SizeOf(window), button), point);
}

bool ZarfWndApp::OverGrip(POINT screenPoint) const {
  RECT client;
  ::GetClientRect(hwnd, &client);
  return Contains(GripRect(SizeOf(client)), ScreenToClient(hwnd, screenPoint)) &&
         WindowFromPoint(screenPoint) == hwnd;
}

void ZarfWndApp::SetButtonState(CaptionButton button, int state) {
  int& current = captionStates[static_cast<std::size_t>(button)];
  if (current == state) return;
  current = state;
  InvalidateFrame(hwnd);
}

LRESULT ZarfWndApp::OnTimer(const MessageRecord& record) {
  if (record.wParam != kHoverTimer || GetForegroundWindow() != hwnd) return 0;
  const POINT mouse = GetCursorPos();
  for (const CaptionButton button : kHoverOrder) {
    if (!OverButton(button, mouse) && ButtonState(button) == 1) SetButtonState(button, 0);
  }
  for (const CaptionButton button : kHoverOrder) {
    if (OverButton(button, mouse) && ButtonState(button) == 0) SetButtonState(button, 1);
  }
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

// A caption button shows pressed until the mouse is released, and acts if that is over it.
void ZarfWndApp::TrackButton(CaptionButton button) {
  SetButtonState(button, 2);
  captured = true;
  WaitForLeftButtonUp();
  captured = false;
  if (!IsWindow(hwnd)) return;
  SetButtonState(button, 0);
  if (OverButton(button, GetCursorPos())) PressButton(button);
}

void ZarfWndApp::PressButton(CaptionButton button) {
  if (button == CaptionButton::kMaximize) Post(WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  if (button == CaptionButton::kMinimize) MinimizeWindow(hwnd);
  if (button == CaptionButton::kClose) Post(WM_CLOSE, 0, 0);
}

void ZarfWndApp::SizeByGrip(POINT screenPoint) {
  SetCursor(LoadCursor(IDC_SIZENWSE));
  Send(WM_SYSCOMMAND, SC_SIZE | WMSZ_BOTTOMRIGHT, MakeLParam(screenPoint.x, screenPoint.y));
}

LRESULT ZarfWndApp::OnNcLButtonDown(const MessageRecord& record) {
  const POINT mouse = PointFromLParam(record.lParam);
  for (const CaptionButton button : kHoverOrder) {
    if (!OverButton(button, mouse)) continue;
    TrackButton(button);
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

LRESULT ZarfWndApp::OnNcLButtonUp(const MessageRecord& record) {
  if (captured) ReleaseCapture();
  captured = false;
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
  RECT window;
  GetWindowRect(hwnd, &window);
  const POINT mouse = PointFromLParam(record.lParam);
  // A quick second press on a button is a press of the button.
  for (const CaptionButton button : kHoverOrder) {
    if (OverButton(button, mouse)) return OnNcLButtonDown(record);
  }
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
  const RECT next = MaximizedPlacement(window, DesktopRect(hwnd));
  MoveWindow(hwnd, next.left, next.top, Width(next), Height(next));
}

void ZarfWndApp::Describe(int item, AccessiblePart* part) {
  constexpr const char* kNames[] = {"Minimize", "Maximize", "Close"};  // by CaptionButton
  if (item == kWholeWindow) {
    part->items = static_cast<int>(std::size(kNames));
    return;
  }
  RECT window;
  GetWindowRect(hwnd, &window);
  const auto button = static_cast<CaptionButton>(item);
  const RECT place = CaptionButtonRect(SizeOf(window), button);
  part->role = AccessibleRole::kButton;
  part->name = kNames[item];
  part->state = ButtonState(button) == 2 ? kAccessiblePressed : 0;
  part->pressable = true;
  part->place = {place.left - kFrameInsets.left, place.top - kFrameInsets.top,
                 place.right - kFrameInsets.left, place.bottom - kFrameInsets.top};
}

int ZarfWndApp::ItemAt(POINT point) {
  const POINT screenPoint = ClientToScreen(hwnd, point);
  for (const CaptionButton button : kHoverOrder) {
    if (OverButton(button, screenPoint)) return static_cast<int>(button);
  }
  return -1;
}

void ZarfWndApp::DoAction(AccessibleAction action, int value) {
  const bool button = value >= 0 && value <= static_cast<int>(CaptionButton::kClose);
  if (action == AccessibleAction::kPress && button) PressButton(static_cast<CaptionButton>(value));
}

// ---- Commands ----

bool ZarfWndApp::PostAccelerator(unsigned accelerator) {
  const auto* const found = std::find_if(
      std::begin(kAcceleratorCommands), std::end(kAcceleratorCommands),
      [accelerator](const AcceleratorCommand& entry) { return entry.accelerator == accelerator; });
  if (found == std::end(kAcceleratorCommands)) return false;
  if (found->pane == kAnyPane || found->pane == CurrentPaneIndex())
    Post(WM_COMMAND, found->command, found->value);
  return true;
}

LRESULT ZarfWndApp::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  if (PostAccelerator(id)) return 0;
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
    case ID_PRODUCT_WEB:
      ShellOpen(kProductPage);
      return 0;
    case ID_COMPANY_WEB:
      ShellOpen(kCompanyPage);
      return 0;
    case ID_OPTIONS:
      ShowOptionsDialog(this);
      return 0;
    case ID_SKINS:
      ShowSkinsDialog(this);
      return 0;
    case ID_EXIT:
      Post(WM_CLOSE, 0, 0);
      return 0;
    case ID_ABOUT:
      ShowInfo(this, ProductName() + " " + ModuleName() + " " DAYBRIX_VERSION);
      return 0;
    default:
      if (id >= ID_FIRST_SKIN && id <= ID_LAST_SKIN) SelectSkin(static_cast<int>(id - ID_FIRST_SKIN));
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
