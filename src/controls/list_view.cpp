#include "controls/list_view.h"

#include <algorithm>

#include "core/store/value_compare.h"
#include "framework/services.h"

namespace {

constexpr int kListId = 0;
constexpr unsigned kScrollBarId = 10;
constexpr int kScrollBarWidth = 20;
constexpr int kScrollButtonSize = 20;

int watchingLists = 0;

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
      cellList(*this, ListPart(setup)),
      watching(watchingLists < kMostWatchingLists) {
  if (!watching) return;
  ++watchingLists;
  core::FileWatch::OfProcess().Add(*this);
}

ZarfWndListView::~ZarfWndListView() {
  if (!watching) return;
  --watchingLists;
  core::FileWatch::OfProcess().Remove(*this);
}

void ZarfWndListView::SetFile(core::RecordFile* newFile, core::RecordList* newRecords) {
  shownFile = newFile;
  shownRecords = newRecords;
  cellList.SetFirstRow(0);
  SetItemCount(ShowsFile() ? static_cast<int>(shownRecords->Count()) : 0);
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

bool ZarfWndListView::SelectRecord(std::uint64_t recordId) {
  if (!ShowsFile()) return false;
  for (std::size_t index = 0; index < shownRecords->Count(); ++index) {
    if (shownRecords->KeyAt(index).id == recordId) return SelectItem(static_cast<int>(index));
  }
  return false;
}

core::RecordKey ZarfWndListView::KeyAt(int index) const {
  if (shownRecords == nullptr || index < 0) return {};
  return shownRecords->KeyAt(static_cast<std::size_t>(index));
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

bool ZarfWndListView::RefreshFromFile(ListRefresh cause) {
  if (!ShowsFile() || !IsWindow(hwnd)) return false;
  // A drag that is under way means a record: the list waits.
  const bool byWatch = cause == ListRefresh::kByWatch;
  if (byWatch && cellList.Dragging()) return false;
  const WPARAM notice = MakeWParam(static_cast<unsigned>(viewSetup.commandId), kListFileChanged);
  const bool rebuilt = shownRecords->RefreshIfChanged(*shownFile, [this, notice, byWatch] {
    SendMessage(Parent(), WM_COMMAND, notice, byWatch ? kRebuildByWatch : kRebuildByProgram);
  });
  if (!rebuilt) {
    // A rebuild that failed halfway may have left fewer records than are shown.
    if (static_cast<int>(shownRecords->Count()) != ItemCount()) {
      SetItemCount(static_cast<int>(shownRecords->Count()));
    }
    return false;
  }
  BeginWaitCursor();
  SetItemCount(static_cast<int>(shownRecords->Count()));
  PostMessage(Parent(), WM_COMMAND, notice, byWatch ? kRebuiltByWatch : kRebuiltByProgram);
  EndWaitCursor();
  return true;
}

void ZarfWndListView::OnLook(const core::FileLook& look) {
  if (look.counted && look.changeCounter != shownRecords->Stamp()) RefreshFromFile(ListRefresh::kByWatch);
}

LRESULT ZarfWndListView::OnCreate(const MessageRecord&) {
  if (!cellList.Create(this) || !scrollBar.Create(this)) return -1;
  timer.Start();
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

// From the selected item on, and at the end from the top again.
void ZarfWndListView::ListCharacter(char typed) {
  const unsigned char letter = core::FoldCase(static_cast<unsigned char>(typed));
  if (!viewSetup.findsByLetter || letter <= ' ') return;
  const int count = ItemCount();
  for (int step = 1; step <= count; ++step) {
    const int index = (SelectedItem() + step) % count;
    const std::string text = ListCellText(index);
    if (!text.empty() && core::FoldCase(static_cast<unsigned char>(text.front())) == letter) {
      SelectItem(index);
      return;
    }
  }
}

void ZarfWndListView::DrawCell(HDC, COLORREF, int, int, const RECT&) {}
void ZarfWndListView::OnCellMouseMove(POINT, int, const RECT&) {}
void ZarfWndListView::OnCellLButtonDown(POINT, int, const RECT&) {}
void ZarfWndListView::OnCellLButtonUp(POINT, int, const RECT&) {}
void ZarfWndListView::DrawRecordCell(core::RecordFile&, core::RecordList&, HDC, COLORREF, int, int,
                                     const RECT&) {}
void ZarfWndListView::OnRecordCellMouseMove(core::RecordFile&, core::RecordList&, POINT, int, const RECT&) {}
void ZarfWndListView::OnRecordCellLButtonDown(core::RecordFile&, core::RecordList&, POINT, int, const RECT&) {
}
void ZarfWndListView::OnRecordCellLButtonUp(core::RecordFile&, core::RecordList&, POINT, int, const RECT&) {}
std::string ZarfWndListView::CellText(int) {
  return {};
}
std::string ZarfWndListView::RecordCellText(core::RecordFile&, core::RecordList&, int) {
  return {};
}
bool ZarfWndListView::OnListKey(unsigned) {
  return false;
}
