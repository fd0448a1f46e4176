// The dialog "Date": a mini calendar to pick a date from. It lives on the stack of its caller for one Run.
#pragma once

#include <optional>

#include "framework/zarf_dialog.h"
#include "pickers/mini_calendar.h"

class DatePickerDialog : public ZarfDialog {
 public:
  // Starts with a date; with today when it is none of the calendar's.
  explicit DatePickerDialog(const core::Date& start);

  // Where the dialog opens: its top left corner, in screen pixels. It is kept on the desktop.
  void SetPosition(POINT topLeft) { position = topLeft; }
  // Opens with a sound and rolling down.
  void SetAnimate(bool on) { animate = on; }

  // True when the user accepted a date.
  bool Run(ZarfWnd* owner);
  const core::Date& Date() const { return calendar.Date(); }

  void Place() override;
  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void PlaceCalendar();

  MiniCalendar calendar;
  std::optional<POINT> position;
  bool animate = false;
};
