// The two grids of days: a month and a week.
#pragma once

#include "calendar/views/day_grid.h"

// A month, Sunday first. It steps by months.
class MonthView : public DayGrid {
 public:
  static constexpr int kId = 104;
  // `calendarSession` must outlive the view.
  explicit MonthView(core::CalendarSession& calendarSession);

 protected:
  bool Step(core::Date& date, bool forward) const override;
  std::string Name() const override;
};

// Monday to Sunday. It steps by seven days.
class WeekView : public DayGrid {
 public:
  static constexpr int kId = 105;
  explicit WeekView(core::CalendarSession& calendarSession);

 protected:
  bool Step(core::Date& date, bool forward) const override;
  std::string Name() const override;
};
