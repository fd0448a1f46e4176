// The days of one month, of which the user picks one. It also takes appointments dropped on a day. It tells
// its parent by WM_COMMAND, sent, with id 100 in the low word: of a day picked with 0 in the high word, of a
// drop with 1021 (move) or 1022 (copy); lParam is the date as a word (framework/date_word.h).
#pragma once

#include "core/date_time.h"
#include "framework/owner_drawn.h"
#include "pickers/month_grid_geometry.h"

constexpr unsigned kMonthGridId = 100;

// The colours of a month grid and of a mini calendar.
struct CalendarColours {
  COLORREF background = RGB(255, 255, 255);
  COLORREF selection = RGB(212, 208, 200);
  COLORREF today = RGB(255, 0, 0);
};

class MonthGrid : public OwnerDrawn {
 public:
  explicit MonthGrid(const CalendarColours& colours);

  // The selected day, whose month is shown.
  const core::Date& Date() const { return date; }
  // Shows a date; a day beyond the month's end becomes its last. False, and nothing changes, when the date is
  // the same or its year, month or day is none of the calendar's.
  bool SetDate(int year, int month, int day);

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnEraseBkgnd(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  // Arrows pick the next day or week, Home and End the month's first and last day, Page Up and Page Down the
  // same day of the month before and after; Space picks the selected day again.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;

 private:
  MonthGridLayout LayoutIn(const RECT& client) const;
  MonthGridLayout Layout() const { return LayoutIn(ClientArea()); }
  void PickDate(const core::Date& picked);
  LRESULT TakeDrop(unsigned command, POINT screenPoint);
  void Report(unsigned code, const core::Date& reported);

  const CalendarColours colours;
  core::Date date;
};
