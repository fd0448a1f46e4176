#include "calendar/views/day_list.h"

#include "calendar/views/palette.h"

DayList::DayList(int commandId)
    : ZarfWndListView({.commandId = commandId,
                       .dragEnabled = true,
                       .oddCell = kOddRow,
                       .evenCell = kEvenRow,
                       .scrollBar = kPanelBackground}) {}

LRESULT DayList::OnCreate(const MessageRecord& record) {
  pictures = LoadDayRowPictures();
  SetRowHeight(DayRowHeight());
  return ZarfWndListView::OnCreate(record);
}

void DayList::DrawRecordCell(core::RecordFile& calendar, core::RecordList& shown, HDC hdc, COLORREF,
                             int index, int state, const RECT& rect) {
  if (index < 0) return;
  RowSelection selection = RowSelection::kNone;
  if (state == 1) selection = HasFocusMark() ? RowSelection::kFocused : RowSelection::kIdle;
  core::Appointment record;
  const bool readable = calendar.ReadRecord(&record, shown.KeyAt(static_cast<std::size_t>(index)));
  DrawDayRow(hdc, readable ? &record : nullptr, pictures, selection, rect);
}

std::string DayList::RecordCellText(core::RecordFile& calendar, core::RecordList& shown, int index) {
  core::Appointment record;
  const bool readable = calendar.ReadRecord(&record, shown.KeyAt(static_cast<std::size_t>(index)));
  return DayRowText(readable ? &record : nullptr);
}
