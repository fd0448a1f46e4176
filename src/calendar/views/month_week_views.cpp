#include "calendar/views/month_week_views.h"

#include "core/time_texts.h"

namespace {

constexpr GridLook kMonthLook = {.triangle = RGB(233, 233, 233),
                                 .upperEllipse = RGB(255, 255, 128),
                                 .lowerEllipse = RGB(255, 227, 215),
                                 .title = RGB(64, 64, 255),
                                 .buttons = RGB(255, 227, 215)};
constexpr GridLook kWeekLook = {.triangle = RGB(229, 255, 139),
                                .upperEllipse = RGB(255, 232, 139),
                                .lowerEllipse = RGB(228, 210, 224),
                                .title = RGB(0, 0, 255),
                                .buttons = RGB(228, 210, 224)};

constexpr int kWeekDays = 7;

}  // namespace

MonthView::MonthView(core::CalendarSession& calendarSession)
    : DayGrid(kId, calendarSession, GridShape::kMonth, kMonthLook, "TMonthWndClass", "month") {}

bool MonthView::Step(core::Date& date, bool forward) const {
  return forward ? core::NextMonth(date) : core::PreviousMonth(date);
}

std::string MonthView::Name() const {
  return core::MonthName(ViewDate()) + " " + std::to_string(ViewDate().year);
}

WeekView::WeekView(core::CalendarSession& calendarSession)
    : DayGrid(kId, calendarSession, GridShape::kWeek, kWeekLook, "TWeekWndClass", "week") {}

// Not by core::NextWeek, which goes as far as the calendar does.
bool WeekView::Step(core::Date& date, bool forward) const {
  return core::DateFromIndex(core::DayIndex(date) + (forward ? kWeekDays : -kWeekDays), date);
}

std::string WeekView::Name() const {
  const core::Date& monday = Days().first;
  return "Week of " + core::MonthName(monday) + " " + std::to_string(monday.day) + ", " +
         std::to_string(monday.year);
}
