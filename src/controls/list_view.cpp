#include "controls/list_view.h"

#include <algorithm>

#include "controls/list_refresh.h"
#include "core/ini_file.h"
#include "framework/services.h"

namespace {

constexpr UINT kRefreshTimer = 100;
constexpr int kListId = 0;
constexpr unsigned kScrollBarId = 10;
constexpr int kScrollBarWidth = 20;
constexpr int kScrollButtonSize = 20;

double RowsOf(int items, int columns) {
  return static_cast<double>(std::max(items, 0)) / UsableColumns(columns);
}

ListSetup ListPart(const ListViewSetup& setup) {
  return {kListId,          RowsOf(setup.itemCount, setup.columns),
          setup.rowHeight,  setup.columns,
          setup.oddCell,    setup.evenCell,
          setup.dragEnabled};
}

}  // namespace

ZarfWndListView::ZarfWndListView(const ListViewSetup& setup)
    : viewSetup(setup),
      scrollBar(kScrollBarId, RowsOf(viewSetup.itemCount, viewSetup.columns), kScrollButtonSize,
                viewSetup.scrollBar),
      cellList(*this, ListPart(setup)) {
  RegisterListView(this);
}

ZarfWndListView::~ZarfWndListView() {
  ForgetListView(this);
}

void ZarfWndListView::SetFile(core::RecordFile* newFile, core::RecordQuery* newRecords) {
  shownFile = newFile;
  shownRecords = newRecords;
  SetItemCount(ShowsFile() ? static_cast<int>(shownRecords->OffsetCount()) : 0);
}

void ZarfWndListView::SetItemCount(int count) {
  const double rows = RowsOf(count, viewSetup.columns);
  cellList.SetRows(rows);
  scrollBar.SetCount(rows);
  scrollBar.SetPosition(cellList.FirstRow());
}

bool ZarfWndListView::SelectItem(int index) {
  if (!cellList.SelectItem(index)) return false;
  scrollBar.SetPosition(cellList.FirstRow());
  return true;
}

bool ZarfWndListView::SelectRecord(const void* record) {
  if (!ShowsFile()) return false;
  const auto& wanted = *static_cast<const core::RecordHeader*>(record);
  for (std::size_t index = 0; index < shownRecords->OffsetCount(); ++index) {
    core::RecordHeader header;
    if (!shownFile->ReadBytes(&header, sizeof header, shownRecords->OffsetAt(index))) continue;
    if (header.recordId == wanted.recordId) return SelectItem(static_cast<int>(index));
  }
  return false;
}

std::int32_t ZarfWndListView::RecordOffset(int index) const {
  return shownRecords != nullptr && index >= 0 ? shownRecords->OffsetAt(static_cast<std::size_t>(index)) : -1;
}

void ZarfWndListView::SetFirstRow(int row) {
  cellList.SetFirstRow(row);
  scrollBar.SetPosition(cellList.FirstRow());
}

void ZarfWndListView::FocusList() {
  SetFocus(cellList.Handle());
}

POINT ZarfWndListView::MenuPoint(int index) const {
  const auto cell = FindCell(cellList.Layout(), index);
  return ClientToScreen(cellList.Handle(), cell ? POINT{cell->rect.left, cell->rect.bottom} : POINT{});
}

LPARAM ZarfWndListView::NoticeValue(ListRefresh cause, bool before) const {
  return (cause == ListRefresh::kByTimer ? 2 : 0) + (before ? 1 : 0);
}

bool ZarfWndListView::RefreshFromFile(ListRefresh cause) {
  if (!ShowsFile() || !IsWindow(hwnd)) return false;
  // A drag that is under way means a record: the list waits.
  if (cause == ListRefresh::kByTimer && cellList.Dragging()) return false;
  const WPARAM notice = MakeWParam(static_cast<unsigned>(viewSetup.commandId), kListFileChanged);
  const bool rebuilt = shownRecords->RefreshIfChanged(*shownFile, [this, notice, cause] {
    SendMessage(Parent(), WM_COMMAND, notice, NoticeValue(cause, true));
  });
  if (!rebuilt) {
    // A rebuild that failed halfway may have left fewer records than are shown.
    if (static_cast<int>(shownRecords->OffsetCount()) != ItemCount()) {
      SetItemCount(static_cast<int>(shownRecords->OffsetCount()));
    }
    return false;
  }
  BeginWaitCursor();
  SetItemCount(static_cast<int>(shownRecords->OffsetCount()));
  PostMessage(Parent(), WM_COMMAND, notice, NoticeValue(cause, false));
  EndWaitCursor();
  return true;
}

void ZarfWndListView::ArmRefreshTimer() {
  if (!IsWindow(hwnd)) return;
  SetTimer(hwnd, kRefreshTimer, core::NetworkRefreshSeconds() * 1000);
}

LRESULT ZarfWndListView::OnCreate(const MessageRecord&) {
  if (!cellList.Create(this) || !scrollBar.Create(this)) return -1;
  ArmRefreshTimer();
  FocusList();
  return 0;
}

LRESULT ZarfWndListView::OnSize(const MessageRecord&) {
  RECT client;
  GetClientRect(&client);
  const int listWidth = std::max(client.right - kScrollBarWidth, 0);
  const int barLeft = viewSetup.scrollBarOnLeft ? 0 : client.right - kScrollBarWidth;
  scrollBar.Move(barLeft, 0, kScrollBarWidth, client.bottom, 1);
  cellList.Move(viewSetup.scrollBarOnLeft ? kScrollBarWidth : 0, 0, listWidth, client.bottom, 1);
  return 0;
}

LRESULT ZarfWndListView::OnTimer(const MessageRecord& record) {
  if (record.wParam == kRefreshTimer) RefreshListViews();
  return 0;
}

LRESULT ZarfWndListView::OnCommand(const MessageRecord& record) {
  const unsigned code = LowWord(record.wParam);
  switch (code) {
    case kScrollBarId:
      cellList.SetFirstRow(static_cast<int>(record.lParam));
      break;
    case kListFirstRow:
      scrollBar.SetPosition(static_cast<int>(record.lParam));
      break;
    case kListSelected:
    case kListDoubleClick:
    case kListRightClick:
    case kListFileChanged:
    case kListOwn:
      PostMessage(Parent(), WM_COMMAND, MakeWParam(static_cast<unsigned>(viewSetup.commandId), code),
                  record.lParam);
      break;
    default:
      break;
  }
  return 0;
}

void ZarfWndListView::DrawListCell(HDC hdc, COLORREF colour, int index, int selected, const RECT& rect) {
  const int state = index >= 0 && index == selected ? 1 : 0;
  if (ShowsFile()) {
    DrawRecordCell(*shownFile, *shownRecords, hdc, colour, index, state, rect);
  } else {
    DrawCell(hdc, colour, index, state, rect);
  }
}

void ZarfWndListView::ListMouseMove(POINT point, int index, const RECT& rect) {
  if (ShowsFile()) {
    OnRecordCellMouseMove(*shownFile, *shownRecords, point, index, rect);
  } else {
    OnCellMouseMove(point, index, rect);
  }
}

void ZarfWndListView::ListLButtonDown(POINT point, int index, const RECT& rect) {
  if (ShowsFile()) {
    OnRecordCellLButtonDown(*shownFile, *shownRecords, point, index, rect);
  } else {
    OnCellLButtonDown(point, index, rect);
  }
}

void ZarfWndListView::ListLButtonUp(POINT point, int index, const RECT& rect) {
  if (ShowsFile()) {
    OnRecordCellLButtonUp(*shownFile, *shownRecords, point, index, rect);
  } else {
    OnCellLButtonUp(point, index, rect);
  }
}

std::string ZarfWndListView::ListCellText(int index) {
  return ShowsFile() ? RecordCellText(*shownFile, *shownRecords, index) : CellText(index);
}

void ZarfWndListView::DrawCell(HDC, COLORREF, int, int, const RECT&) {}
void ZarfWndListView::OnCellMouseMove(POINT, int, const RECT&) {}
void ZarfWndListView::OnCellLButtonDown(POINT, int, const RECT&) {}
void ZarfWndListView::OnCellLButtonUp(POINT, int, const RECT&) {}
void ZarfWndListView::DrawRecordCell(core::RecordFile&, core::RecordQuery&, HDC, COLORREF, int, int,
                                     const RECT&) {}
void ZarfWndListView::OnRecordCellMouseMove(core::RecordFile&, core::RecordQuery&, POINT, int, const RECT&) {}
void ZarfWndListView::OnRecordCellLButtonDown(core::RecordFile&, core::RecordQuery&, POINT, int,
                                              const RECT&) {}
void ZarfWndListView::OnRecordCellLButtonUp(core::RecordFile&, core::RecordQuery&, POINT, int, const RECT&) {}
std::string ZarfWndListView::CellText(int) {
  return {};
}
std::string ZarfWndListView::RecordCellText(core::RecordFile&, core::RecordQuery&, int) {
  return {};
}
