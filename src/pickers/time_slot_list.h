// The list of the times from kFirstPick to before kLastPick, one row every five minutes. A time that a key
// selects is posted to the parent as the code kListOwn of WM_COMMAND; what the mouse selects comes as from
// every list.
#pragma once

#include "controls/list_view.h"

class TimeSlotList : public ZarfWndListView {
 public:
  explicit TimeSlotList(int commandId);

  // Selects the row of a slot (of a day), and tells nobody; none for a slot that has no row.
  void ShowSlot(int slot);
  // The slot of a row.
  static int SlotOf(int row);

  LRESULT OnCreate(const MessageRecord& record) override;
  bool SelectItem(int index) override;
  void DrawCell(HDC hdc, COLORREF colour, int index, int state, const RECT& rect) override;
  std::string CellText(int index) override;

 private:
  const int commandId;
};
