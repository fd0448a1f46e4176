#include "calendar/view_switch.h"

#include <utility>

#include "calendar/views/palette.h"
#include "framework/drawing.h"

namespace {

constexpr int kTabWidth = 70;
constexpr COLORREF kWeekTab = RGB(228, 210, 224);
constexpr COLORREF kMonthTab = RGB(255, 227, 215);
constexpr COLORREF kFrame = RGB(0, 0, 0);

void PlaceAt(ZarfWnd& window, const RECT& rect) {
  window.Move(rect.left, rect.top, Width(rect), Height(rect), 1);
}

}  // namespace

ViewSwitch::ViewSwitch(core::CalendarSession& calendarSession)
    : week(calendarSession), month(calendarSession), tabs(kTabsId, kPanelBackground, kTabWidth, kNoColour) {
  tabs.AddTab(static_cast<int>(CalendarView::kDay), "Day", kSelection, kPanelText);
  tabs.AddTab(static_cast<int>(CalendarView::kWeek), "Week", kWeekTab, kPanelText);
  tabs.AddTab(static_cast<int>(CalendarView::kMonth), "Month", kMonthTab, kPanelText);
}

bool ViewSwitch::Create(ZarfWnd* newPanel, std::vector<ZarfWnd*> partsOfDay) {
  panel = newPanel;
  dayParts = std::move(partsOfDay);
  if (!week.Create(panel) || !month.Create(panel) || !tabs.Create(panel)) return false;
  SetWindowText(tabs.Handle(), "View");
  return true;
}

void ViewSwitch::Place(const PanelLayout& layout) {
  const RECT& grid = layout.grid;
  // The week has a thin frame.
  PlaceAt(week, {grid.left + 1, grid.top + 1, grid.right - 1, grid.bottom - 1});
  PlaceAt(month, grid);
  PlaceAt(tabs, layout.viewTabs);
}

void ViewSwitch::PaintFrame(HDC hdc, const PanelLayout& layout) const {
  if (shown != CalendarView::kWeek) return;
  hdc->SetPenColor(kFrame);
  OutlineRect(hdc, layout.grid);
}

bool ViewSwitch::Show(CalendarView view) {
  tabs.SelectTab(static_cast<int>(view), true);
  if (view == shown) return false;
  DayGrid* before = Grid();
  shown = view;
  for (ZarfWnd* part : dayParts) {
    if (ShowingDay()) {
      part->Show();
    } else {
      part->Hide();
    }
  }
  if (DayGrid* grid = Grid()) {
    grid->ShowSession();
    grid->Show();
    SetFocus(grid->Handle());
  }
  if (before != nullptr) {
    before->Hide();
    before->Clear();
  }
  panel->Invalidate(nullptr, 0);
  return true;
}

DayGrid* ViewSwitch::Grid() {
  switch (shown) {
    case CalendarView::kWeek:
      return &week;
    case CalendarView::kMonth:
      return &month;
    default:
      return nullptr;
  }
}
