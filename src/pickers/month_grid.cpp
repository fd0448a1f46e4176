#include "pickers/month_grid.h"

#include <algorithm>
#include <string>

#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "platform/desktop/cursor.h"
#include "resources/strings.h"

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
  const bool otherMonth = wanted.month != date.month || wanted.year != date.year;
  date = wanted;
  Invalidate(nullptr, 0);
  if (otherMonth) AnnounceChange(hwnd, AccessibleChange::kItems);
  AnnounceChange(hwnd, AccessibleChange::kCurrentItem);
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

LRESULT MonthGrid::OnCreate(const MessageRecord&) {
  SetTabStop(hwnd, true);
  return 0;
}

int MonthGrid::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfCalMonth";
  windowClass->background = RGB(255, 255, 255);
  windowClass->cursor = nullptr;
  cursor = LoadCursor(IDC_ARROW);
  return 0;
}

void MonthGrid::OnPaint(HDC hdc, PAINTSTRUCT) {
  const MonthGridLayout layout = Layout();
  Paint(hdc, layout, core::Today());
  if (!ShowsFocus(hwnd)) return;
  const RECT cell = DayCell(layout, date.day);
  DrawFocusMark(hdc, {cell.left + 1, cell.top + 1, cell.right - 1, cell.bottom - 1}, colours.selection);
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
  if (day >= 1) PickDate({day, date.month, date.year});
  return 0;
}

void MonthGrid::PickDate(const core::Date& picked) {
  SetDate(picked.year, picked.month, picked.day);
  Report(0, date);
}

LRESULT MonthGrid::OnKeyDown(const MessageRecord& record) {
  const auto next = KeyDate(static_cast<unsigned>(record.wParam), date);
  if (!next) return DefaultProc(record);
  if (record.wParam == VK_SPACE || !SameDate(*next, date)) PickDate(*next);
  return 0;
}

void MonthGrid::Describe(int item, AccessiblePart* part) {
  constexpr int kMonthNames = 2009;  // strings, + the month
  constexpr int kWeekdayNames = 2022;
  const std::string month = resources::FindText(kMonthNames + date.month);
  const std::string year = std::to_string(date.year);
  if (item == kWholeWindow) {
    part->role = AccessibleRole::kCalendar;
    part->name = month + " " + year;
    part->items = core::DaysInMonth(date.year, date.month);
    part->currentItem = date.day - 1;
    return;
  }
  const core::Date day{item + 1, date.month, date.year};
  part->role = AccessibleRole::kDay;
  part->name = resources::FindText(kWeekdayNames + core::Weekday(day));
  part->name += ", " + month + " " + std::to_string(day.day) + ", " + year;
  if (SameDate(day, core::Today())) part->description = "Today";
  part->state = kAccessibleSelectable | (day.day == date.day ? kAccessibleSelected : 0);
  part->pressable = true;
  part->place = DayCell(Layout(), day.day);
}

int MonthGrid::ItemAt(POINT point) {
  return DayAt(Layout(), point) - 1;
}

void MonthGrid::DoAction(AccessibleAction action, int value) {
  if (value < 0 || value >= core::DaysInMonth(date.year, date.month)) return;
  if (action == AccessibleAction::kSelect) SetFocus(hwnd);
  PickDate({value + 1, date.month, date.year});
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
