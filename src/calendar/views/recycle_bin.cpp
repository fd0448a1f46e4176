#include "calendar/views/recycle_bin.h"

#include <string>

#include "calendar/views/palette.h"
#include "core/store/text_field.h"
#include "core/time_texts.h"
#include "framework/services.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/menu.h"
#include "platform/desktop/tip.h"
#include "shell/commands.h"

namespace {

// Commands of the menu to the bin itself.
constexpr unsigned kEmptyCommand = 1034;
constexpr unsigned kUndoCommand = 1035;

constexpr UINT kTipTimer = 1;
constexpr int kTipMs = 600;
constexpr int kTipGap = 4;

}  // namespace

RecycleBinWnd::RecycleBinWnd(core::CalendarSession& calendarSession)
    : session(calendarSession), emptyPicture("recicle1"), fullPicture("recicle2") {
  session.AddListener(*this);
}

RecycleBinWnd::~RecycleBinWnd() {
  session.RemoveListener(*this);
}

int RecycleBinWnd::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfClassWndBin";
  windowClass->background = kNoColour;
  windowClass->cursor = nullptr;
  return 0;
}

LRESULT RecycleBinWnd::OnCreate(const MessageRecord&) {
  SetWindowText(hwnd, "Recycle bin");
  SetTabStop(hwnd, true);
  return 0;
}

void RecycleBinWnd::OnSessionChange(core::SessionChange change) {
  if (change != core::SessionChange::kBin) return;
  Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kValue);
}

// ---- What it shows ----

const Bitmap* RecycleBinWnd::Picture() const {
  return session.Bin().IsEmpty() ? emptyPicture.Get() : fullPicture.Get();
}

std::string RecycleBinWnd::Purpose() const {
  core::Appointment record;
  if (!session.Bin().Read(&record, sizeof record)) return kBinIsEmptyText;
  return "Brings back " + std::string(core::ReadText(record.subject)) + ", " + core::FormatDate(record.date);
}

void RecycleBinWnd::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, kPanelBackground);
  const Bitmap* picture = Picture();
  if (picture == nullptr) return;
  const int centre = client.left + Width(client) / 2;
  hdc->DrawBitmap(*picture, centre - picture->Width() / 2, client.bottom - picture->Height());
}

std::optional<OwnerDrawn::FocusMark> RecycleBinWnd::FocusMarkIn(const RECT& client) const {
  const Bitmap* picture = Picture();
  return FocusMark{BinDropZone(client, picture != nullptr ? picture->Height() : 0), kPanelBackground};
}

bool RecycleBinWnd::Over(POINT point) const {
  const Bitmap* picture = Picture();
  return picture != nullptr && Contains(BinClickZone(ClientArea(), picture->Height()), point);
}

const char* RecycleBinWnd::CursorAt(POINT point) {
  return Over(point) ? "CUR_HAND1" : IDC_ARROW;
}

LRESULT RecycleBinWnd::OnMouseMove(const MessageRecord& record) {
  if (Over(PointFromLParam(record.lParam))) SetTimer(hwnd, kTipTimer, kTipMs);
  return 0;
}

LRESULT RecycleBinWnd::OnTimer(const MessageRecord& record) {
  if (record.wParam != kTipTimer) return 0;
  KillTimer(hwnd, kTipTimer);
  if (!Over(ScreenToClient(hwnd, GetCursorPos())) || WindowFromPoint(GetCursorPos()) != hwnd) return 0;
  ShowTip(hwnd, {0, ClientArea().bottom + kTipGap}, Purpose().c_str());
  return 0;
}

// ---- What it does ----

void RecycleBinWnd::Undo() {
  SendMessage(Parent(), WM_COMMAND, kBinId, session.Bin().IsEmpty() ? kBinIsEmpty : ID_UNDO_DELETE);
}

LRESULT RecycleBinWnd::OnLButtonDown(const MessageRecord& record) {
  if (Over(PointFromLParam(record.lParam))) Undo();
  return 0;
}

LRESULT RecycleBinWnd::OnRButtonDown(const MessageRecord& record) {
  const POINT point = PointFromLParam(record.lParam);
  if (Over(point)) ShowMenu(ClientToScreen(hwnd, point));
  return 0;
}

LRESULT RecycleBinWnd::OnKeyDown(const MessageRecord& record) {
  switch (record.wParam) {
    case VK_SPACE:
    case VK_RETURN:
      Undo();
      return 0;
    case VK_APPS: {
      const RECT mark = FocusMarkIn(ClientArea())->place;
      ShowMenu(ClientToScreen(hwnd, {mark.left, mark.top}));
      return 0;
    }
    default:
      return DefaultProc(record);
  }
}

void RecycleBinWnd::ShowMenu(POINT screenPoint) {
  const UINT flags = session.Bin().IsEmpty() ? MF_STRING | MF_GRAYED : MF_STRING;
  const HMENU menu = CreatePopupMenu();
  AppendMenu(menu, flags, kUndoCommand, "&Undo delete");
  AppendMenu(menu, MF_SEPARATOR, 0, "");
  AppendMenu(menu, flags, kEmptyCommand, "&Empty bin");
  TrackPopupMenu(menu, screenPoint, hwnd);
  DestroyMenu(menu);
}

LRESULT RecycleBinWnd::OnCommand(const MessageRecord& record) {
  const unsigned command = LowWord(record.wParam);
  switch (command) {
    case kEmptyCommand:
      session.EmptyBin();
      return 0;
    case kUndoCommand:
      Undo();
      return 0;
    case kDropQuery:
    case kDropMove:
      return record.lParam != 0 ? TakeDrop(command, *reinterpret_cast<const POINT*>(record.lParam)) : 0;
    default:
      return 0;
  }
}

LRESULT RecycleBinWnd::TakeDrop(unsigned command, POINT screenPoint) {
  const Bitmap* picture = Picture();
  if (picture == nullptr || !IsInForeground(hwnd)) return 0;
  const RECT zone = BinDropZone(ClientArea(), picture->Height());
  if (!Contains(zone, ScreenToClient(hwnd, screenPoint))) return 0;
  if (command == kDropMove && SendMessage(Parent(), WM_COMMAND, kBinId, ID_ITEM_DELETE) == 1) {
    PlaySound("bindel.wav");
  }
  return 1;
}

void RecycleBinWnd::Describe(int item, AccessiblePart* part) {
  if (item != kWholeWindow) return;
  part->role = AccessibleRole::kButton;
  part->description = Purpose();
  part->pressable = true;
}

void RecycleBinWnd::DoAction(AccessibleAction action, int) {
  if (action == AccessibleAction::kPress) Undo();
}
