#include "pickers/month_grid.h"

#include <algorithm>
#include <string>

#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "platform/desktop/cursor.h"

namespace {

constexpr COLORREF kEdgeLight = RGB(255, 255, 255);
constexpr int kEdgeShade = 80;

bool SameDate(const core::Date& a, const core::Date& b) {
  return a.day == b.day && a.month == b.month && a.year == b.year;
}

// The window at the root: a dialog counts as part of the window it was opened over.
HWND MainWindowOf(HWND window) {
  while (const HWND parent = GetParent(window)) window = parent;
  return window;
}

}  // namespace

MonthGrid::MonthGrid(const CalendarColours& gridColours) : colours(gridColours), date(core::Today()) {}

bool MonthGrid::SetDate(int year, int month, int day) {
  if (year < core::kFirstYear || year > core::kLastYear || !core::IsValidMonth(month) || day < 1)
    return false;
  const core::Date wanted{std::min(day, core::DaysInMonth(year, month)), month, year};
  if (SameDate(wanted, date)) return false;
  date = wanted;
  Invalidate(nullptr, 0);
  return true;
}

MonthGridLayout MonthGrid::Layout() const {
  RECT client;
  ::GetClientRect(hwnd, &client);
  return {client.right, client.bottom, date.year, date.month};
}

void MonthGrid::Paint(HDC hdc, const MonthGridLayout& layout, const core::Date& today) const {
  hdc->FillRect({0, 0, layout.width, layout.height}, colours.background);
  hdc->SelectFont(GetFont(FontSmall, 400));
  for (int day = 1; day <= core::DaysInMonth(layout.year, layout.month); ++day) {
    const RECT cell = DayCell(layout, day);
    const core::Date shown{day, layout.month, layout.year};
    if (SameDate(shown, date)) {
      hdc->FillRect(cell, colours.selection);
      // The frame's bottom line lies on its bottom coordinate: one less keeps it in the cell.
      Frame3D(hdc, {cell.left, cell.top, cell.right, cell.bottom - 1}, kEdgeLight,
              Darken(colours.selection, kEdgeShade));
    }
    hdc->SetTextColor(SameDate(shown, today) ? colours.today : RGB(0, 0, 0));
    hdc->DrawText(std::to_string(day).c_str(), cell, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
}

int MonthGrid::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfCalMonth";
  windowClass->background = RGB(255, 255, 255);
  windowClass->cursor = nullptr;
  cursor = LoadCursor(IDC_ARROW);
  return 0;
}

void MonthGrid::OnPaint(HDC hdc, PAINTSTRUCT) {
  Paint(hdc, Layout(), core::Today());
}

LRESULT MonthGrid::OnEraseBkgnd(const MessageRecord&) {
  return 1;
}

LRESULT MonthGrid::OnSetCursor(const MessageRecord&) {
  SetCursor(cursor);
  return 1;
}

LRESULT MonthGrid::OnMouseMove(const MessageRecord& record) {
  cursor = LoadCursor(DayAt(Layout(), PointFromLParam(record.lParam)) > 0 ? "CUR_HAND1" : IDC_ARROW);
  SetCursor(cursor);
  return 0;
}

LRESULT MonthGrid::OnLButtonDown(const MessageRecord& record) {
  const int day = DayAt(Layout(), PointFromLParam(record.lParam));
  if (day < 1) return 0;
  SetDate(date.year, date.month, day);
  Report(0, date);
  return 0;
}

LRESULT MonthGrid::OnCommand(const MessageRecord& record) {
  const unsigned command = LowWord(record.wParam);
  const auto* screenPoint = reinterpret_cast<const POINT*>(record.lParam);
  const bool drop = command == kDropQuery || command == kDropMove || command == kDropCopy;
  return drop && screenPoint != nullptr ? TakeDrop(command, *screenPoint) : 0;
}

LRESULT MonthGrid::TakeDrop(unsigned command, POINT screenPoint) {
  // With a dialog or another program in front, nothing may be dropped.
  if (GetForegroundWindow() != MainWindowOf(hwnd)) return 0;
  const int day = DayAt(Layout(), ScreenToClient(hwnd, screenPoint));
  if (day < 1) return 0;
  if (command != kDropQuery && day != date.day) Report(command, {day, date.month, date.year});
  return 1;
}

void MonthGrid::Report(unsigned code, const core::Date& reported) {
  const core::Date copy = reported;  // the parent may set another date while it reads this one
  SendMessage(Parent(), WM_COMMAND, MakeWParam(kMonthGridId, code), reinterpret_cast<LPARAM>(&copy));
}
