#include "calendar/views/find_list.h"

#include "calendar/views/day_row.h"
#include "calendar/views/find_row.h"

FindList::FindList(int listId) : ZarfWndListView({.commandId = listId}), id(listId) {}

LRESULT FindList::OnCreate(const MessageRecord& record) {
  marks = LoadRowMarks();
  SetRowHeight(DayRowHeight());
  return ZarfWndListView::OnCreate(record);
}

bool FindList::SelectItem(int index) {
  if (!ZarfWndListView::SelectItem(index)) return false;
  TellParent(id, index, kListSelected);
  return true;
}

void FindList::DrawRecordCell(core::RecordFile& calendar, core::RecordList& shown, HDC hdc, COLORREF,
                              int index, int state, const RECT& rect) {
  if (index < 0) {
    DrawNothingFound(hdc, rect);
    return;
  }
  core::Appointment record;
  const bool readable = calendar.ReadRecord(&record, shown.KeyAt(static_cast<std::size_t>(index)));
  DrawFindRow(hdc, readable ? &record : nullptr, marks, state == 1, rect);
}

std::string FindList::RecordCellText(core::RecordFile& calendar, core::RecordList& shown, int index) {
  core::Appointment record;
  const bool readable = calendar.ReadRecord(&record, shown.KeyAt(static_cast<std::size_t>(index)));
  return FindRowText(readable ? &record : nullptr);
}
