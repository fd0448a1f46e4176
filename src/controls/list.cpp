#include "controls/list.h"

#include <algorithm>

#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "platform/desktop/cursor.h"

namespace {

constexpr UINT kFocusTimer = 101;
constexpr int kFocusMs = 200;

bool Overlap(const RECT& a, const RECT& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

}  // namespace

ZarfWndList::ZarfWndList(ListOwner& cellOwner, const ListSetup& listSetup)
    : owner(cellOwner), setup(listSetup) {
  setup.columns = UsableColumns(setup.columns);
}

ListLayout ZarfWndList::Layout() const {
  return LayoutIn(ClientArea());
}

ListLayout ZarfWndList::LayoutIn(const RECT& client) const {
  return {client.right, client.bottom, setup.rows, setup.columns, setup.rowHeight, firstRow};
}

void ZarfWndList::SetRows(double rows) {
  setup.rows = rows > 0 ? rows : 0;
  selected = -1;
  firstRow = UsableFirstRow(firstRow, setup.rows);
  Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kItems);
}

bool ZarfWndList::SetFirstRow(int row) {
  if (row < 0 || row >= setup.rows || row == firstRow) return false;
  firstRow = row;
  Invalidate(nullptr, 0);
  return true;
}

bool ZarfWndList::SetRowHeight(int rowHeight) {
  if (rowHeight == setup.rowHeight) return false;
  setup.rowHeight = rowHeight;
  Invalidate(nullptr, 0);
  return true;
}

bool ZarfWndList::SelectItem(int index) {
  const ListLayout layout = Layout();
  if (index < -1 || index >= layout.Cells()) return false;
  Select(index);
  if (index >= 0) SetFirstRow(FirstRowFor(layout, index));
  return true;
}

bool ZarfWndList::Select(int index) {
  if (index == selected) return false;
  // Where the selected cell is not in sight the focus mark is around all cells.
  const ListLayout layout = Layout();
  const bool aroundAll = !FindCell(layout, selected) || !FindCell(layout, index);
  if (aroundAll && ShowsFocus(hwnd)) Invalidate(nullptr, 0);
  InvalidateCell(selected);
  selected = index;
  InvalidateCell(selected);
  AnnounceChange(hwnd, AccessibleChange::kCurrentItem);
  return true;
}

void ZarfWndList::InvalidateCell(int index) {
  if (const auto cell = FindCell(Layout(), index)) Invalidate(&cell->rect, 0);
}

void ZarfWndList::Paint(HDC hdc, const RECT& client) const {
  const ListLayout layout = LayoutIn(client);
  const int cells = layout.Cells();
  for (int row = 0; row < layout.ShownRows(); ++row) {
    for (int column = 0; column < layout.columns; ++column) {
      const ListCell cell = CellAt(layout, row, column);
      if (!Overlap(cell.rect, hdc->Clip())) continue;  // drawing a cell may mean reading a record
      const COLORREF colour = cell.index % 2 == 0 ? setup.evenCell : setup.oddCell;
      hdc->FillRect(cell.rect, colour);
      if (cell.index >= cells) continue;
      hdc->SelectFont(GetFont(FontSans, 400));
      owner.DrawListCell(hdc, colour, cell.index, selected, cell.rect);
    }
  }
  if (layout.rows > 0) return;
  hdc->SelectFont(GetFont(FontSans, 400));
  owner.DrawListCell(hdc, setup.oddCell, -1, selected, client);
}

int ZarfWndList::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfWndList";
  windowClass->background = RGB(255, 255, 255);
  windowClass->cursor = nullptr;
  windowClass->style = CS_SAVEBITS | CS_DBLCLKS;
  return 0;
}

LRESULT ZarfWndList::OnCreate(const MessageRecord&) {
  SetTabStop(hwnd, true);
  SetTimer(hwnd, kFocusTimer, kFocusMs);
  return 0;
}

LRESULT ZarfWndList::OnClose(const MessageRecord&) {
  KillTimer(hwnd, kFocusTimer);
  return 0;
}

// Around the selected cell, or all of them where it is not in sight.
std::optional<OwnerDrawn::FocusMark> ZarfWndList::FocusMarkIn(const RECT& client) const {
  const auto cell = FindCell(LayoutIn(client), selected);
  return FocusMark{cell ? cell->rect : client, setup.evenCell};
}

LRESULT ZarfWndList::OnEraseBkgnd(const MessageRecord& record) {
  // Cells cover everything, unless there is no room for any.
  return Layout().ShownRows() > 0 ? 1 : DefaultProc(record);
}

LRESULT ZarfWndList::OnTimer(const MessageRecord& record) {
  if (record.wParam != kFocusTimer || selected < 0) return 0;
  const bool focused = GetFocus() == hwnd;
  if (focused != focusMark) {
    focusMark = focused;
    InvalidateCell(selected);
  }
  return 0;
}

const char* ZarfWndList::CursorAt(POINT point) {
  return ItemAt(point) >= 0 ? "CUR_HAND1" : IDC_ARROW;
}

LRESULT ZarfWndList::OnMouseMove(const MessageRecord& record) {
  const POINT point = PointFromLParam(record.lParam);
  const auto keys = static_cast<unsigned>(record.wParam);
  if (Tracking()) {
    DragFeedback({hwnd, keys, point});
    return 0;
  }
  if (!(keys & MK_LBUTTON)) dragArmed = false;  // released elsewhere
  if (dragArmed) {
    Track();
    return 0;
  }
  const ListCell hit = HitCell(Layout(), point);
  if (hit.index >= 0) owner.ListMouseMove(point, hit.index, hit.rect);
  return 0;
}

LRESULT ZarfWndList::OnLButtonDown(const MessageRecord& record) {
  SetFocus(hwnd);
  const POINT point = PointFromLParam(record.lParam);
  const ListCell hit = HitCell(Layout(), point);
  if (hit.index < 0) return 0;
  Select(hit.index);
  Notify(kListFirstRow, firstRow);
  Notify(kListSelected, hit.index);
  dragArmed = setup.dragEnabled;
  Update();
  owner.ListLButtonDown(point, hit.index, hit.rect);
  return 0;
}

LRESULT ZarfWndList::OnLButtonUp(const MessageRecord& record) {
  dragArmed = false;
  if (Tracking()) {
    Drop(record);
    return 0;
  }
  const POINT point = PointFromLParam(record.lParam);
  const ListCell hit = HitCell(Layout(), point);
  if (hit.index >= 0) owner.ListLButtonUp(point, hit.index, hit.rect);
  return 0;
}

void ZarfWndList::Drop(const MessageRecord& record) {
  // The capture goes first: who takes the drop may open a box, which needs the mouse.
  EndTracking();
  DragDrop({hwnd, static_cast<unsigned>(record.wParam), PointFromLParam(record.lParam)});
}

void ZarfWndList::OnTrackingEnd() {
  dragArmed = false;
  SetCursor(LoadCursor(IDC_ARROW));
}

LRESULT ZarfWndList::OnLButtonDblClk(const MessageRecord& record) {
  SetFocus(hwnd);
  const ListCell hit = HitCell(Layout(), PointFromLParam(record.lParam));
  if (hit.index >= 0) Select(hit.index);
  Notify(kListDoubleClick, hit.index);
  Update();
  return 0;
}

LRESULT ZarfWndList::OnRButtonUp(const MessageRecord& record) {
  SetFocus(hwnd);
  const ListCell hit = HitCell(Layout(), PointFromLParam(record.lParam));
  if (hit.index >= 0) {
    Select(hit.index);
    Notify(kListFirstRow, firstRow);
  }
  Notify(kListRightClick, hit.index);
  Update();
  return 0;
}

LRESULT ZarfWndList::OnMouseWheel(const MessageRecord& record) {
  if (SetFirstRow(WheelFirstRow(WheelDelta(record.wParam), firstRow, setup.rows))) {
    Notify(kListFirstRow, firstRow);
    Update();
  }
  return DefaultProc(record);
}

LRESULT ZarfWndList::OnKeyDown(const MessageRecord& record) {
  const auto key = static_cast<unsigned>(record.wParam);
  if (key == VK_ESCAPE && Tracking()) {
    EndTracking();
    return 0;
  }
  if (key == VK_ESCAPE && Select(-1)) return 0;
  if (key == VK_APPS) {
    Notify(kListRightClick, selected);
    return 0;
  }
  if (key == VK_SPACE && selected >= 0) {
    Notify(kListDoubleClick, selected);
    return 0;
  }
  const ListLayout layout = Layout();
  if (const auto next = KeySelection(key, selected, layout.Cells(), layout.VisibleRows() * layout.columns)) {
    owner.SelectItem(*next);
    return 0;
  }
  return owner.ListKey(key) ? 0 : DefaultProc(record);
}

LRESULT ZarfWndList::OnChar(const MessageRecord& record) {
  owner.ListCharacter(static_cast<char>(record.wParam));
  return 0;
}

void ZarfWndList::Notify(unsigned code, int value) {
  PostMessage(Parent(), WM_COMMAND, code, value);
}

void ZarfWndList::Describe(int item, AccessiblePart* part) {
  const ListLayout layout = Layout();
  if (item == kWholeWindow) {
    part->role = AccessibleRole::kList;
    part->name = GetWindowText(Parent());
    part->items = layout.Cells();
    part->currentItem = selected;
    return;
  }
  part->role = AccessibleRole::kListItem;
  part->name = owner.ListCellText(item);
  part->state = kAccessibleSelectable | (item == selected ? kAccessibleSelected : 0);
  part->pressable = true;
  if (const auto cell = FindCell(layout, item)) part->place = cell->rect;
}

int ZarfWndList::ItemAt(POINT point) {
  return HitCell(Layout(), point).index;
}

void ZarfWndList::DoAction(AccessibleAction action, int value) {
  // The row may be gone by now.
  if (value < 0 || !owner.SelectItem(value)) return;
  SetFocus(hwnd);
  if (action == AccessibleAction::kPress) Notify(kListDoubleClick, value);
}
