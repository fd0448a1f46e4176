// The dialog "Date": a mini calendar to pick a date from.
#pragma once

#include "pickers/mini_calendar.h"
#include "pickers/picker_dialog.h"

class DatePickerDialog : public PickerDialog {
 public:
  // Starts with a date; with today when it is none of the calendar's.
  explicit DatePickerDialog(const core::Date& start);

  // True when the user accepted a date.
  bool Run(ZarfWnd* owner);
  const core::Date& Date() const { return calendar.Date(); }

 protected:
  ZarfWnd& Content() override { return calendar; }
  void FocusContent() override { calendar.FocusDays(); }
  int Margin() const override;

 private:
  MiniCalendar calendar;
};
