// The list of what Find has found. It tells its parent of each selection, by the mouse and by keys.
#pragma once

#include "calendar/views/row_marks.h"
#include "controls/list_view.h"

class FindList : public ZarfWndListView {
 public:
  explicit FindList(int listId);

  LRESULT OnCreate(const MessageRecord& record) override;
  bool SelectItem(int index) override;
  void DrawRecordCell(core::RecordFile& calendar, core::RecordList& shown, HDC hdc, COLORREF colour,
                      int index, int state, const RECT& rect) override;
  std::string RecordCellText(core::RecordFile& calendar, core::RecordList& shown, int index) override;

 private:
  const int id;
  RowMarks marks;  // from the creation of the window on
};
