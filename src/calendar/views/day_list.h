// The list of one day's appointments.
#pragma once

#include "calendar/views/day_row.h"
#include "controls/list_view.h"

class DayList : public ZarfWndListView {
 public:
  explicit DayList(int commandId);

  LRESULT OnCreate(const MessageRecord& record) override;
  void DrawRecordCell(core::RecordFile& calendar, core::RecordList& shown, HDC hdc, COLORREF colour,
                      int index, int state, const RECT& rect) override;
  std::string RecordCellText(core::RecordFile& calendar, core::RecordList& shown, int index) override;

 private:
  DayRowPictures pictures;  // from the creation of the window on
};
