// Which of its three views the calendar panel shows. Here are the tabs to choose one by and the two grids of
// days; the parts of the Day view are the panel's, and are shown and hidden with it.
#pragma once

#include <vector>

#include "calendar/panel_layout.h"
#include "calendar/views/month_week_views.h"
#include "controls/tabs.h"

// The numbers are those of the tabs.
enum class CalendarView { kDay = 0, kWeek = 1, kMonth = 2 };

class ViewSwitch {
 public:
  // What the tabs tell the panel by, with the number of the chosen one.
  static constexpr int kTabsId = 103;

  // `calendarSession` must outlive the switch.
  explicit ViewSwitch(core::CalendarSession& calendarSession);

  // Makes the windows: to be called after the parts of the Day view are made, so that Tab walks those first.
  // All of them stay the caller's.
  [[nodiscard]] bool Create(ZarfWnd* newPanel, std::vector<ZarfWnd*> partsOfDay);
  void Place(const PanelLayout& layout);
  // What the panel has to draw around a view.
  void PaintFrame(HDC hdc, const PanelLayout& layout) const;

  // Shows a view, a grid with what the session has, and gives a grid the keyboard. The tab follows. False
  // when the view shows already.
  bool Show(CalendarView view);
  CalendarView Shown() const { return shown; }
  bool ShowingDay() const { return shown == CalendarView::kDay; }
  // The grid that shows; null in the Day view.
  DayGrid* Grid();

 private:
  ZarfWnd* panel = nullptr;
  std::vector<ZarfWnd*> dayParts;
  CalendarView shown = CalendarView::kDay;

  WeekView week;
  MonthView month;
  TTabsWnd tabs;
};
