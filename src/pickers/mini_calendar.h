// A month to pick a day from, with a year and a month to choose, buttons for the month before and after and
// for today. Whenever its date changes by the user's hand it posts its parent WM_COMMAND with its id in the
// low word and 0 in the high word. A drop on a day is posted with 1021 (move) or 1022 (copy) in the high word
// and leaves its date alone. lParam is the date as a word (framework/date_word.h).
#pragma once

#include "controls/fly_menu.h"
#include "controls/spin_button.h"
#include "pickers/month_grid.h"

class MiniCalendar : public OwnerDrawn {
 public:
  // Shows today at first.
  MiniCalendar(int commandId, const CalendarColours& colours);

  const core::Date& Date() const { return grid.Date(); }
  // Shows a date without telling the parent. A day beyond the month's end becomes its last. False, and
  // nothing changes, when the date is the same or none of the calendar's.
  bool SetDate(int year, int month, int day);

  // Gives the keyboard to the days.
  void FocusDays() { SetFocus(grid.Handle()); }

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnEraseBkgnd(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

  // What is around the choosers, the grid and the buttons.
  void Paint(HDC hdc, const RECT& client) const override;

 private:
  void ShowChoices();
  void Pick(const core::Date& date, unsigned code);
  void OnButton(unsigned id);

  const int commandId;
  const CalendarColours colours;
  TFlyMenu years;
  TFlyMenu months;
  ZarfSpinButton previousButton;
  ZarfSpinButton nextButton;
  ZarfSpinButton todayButton;
  MonthGrid grid;
};
