#include "pickers/month_grid.h"

#include <algorithm>
#include <string>

#include "framework/date_word.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "platform/desktop/cursor.h"
#include "resources/strings.h"
#include "resources/text_ids.h"

namespace {

constexpr COLORREF kEdgeLight = RGB(255, 255, 255);
constexpr int kEdgeShade = 80;

}  // namespace

MonthGrid::MonthGrid(const CalendarColours& gridColours) : colours(gridColours), date(core::Today()) {}

bool MonthGrid::SetDate(int year, int month, int day) {
  if (year < core::kFirstYear || year > core::LastYear() || !core::IsValidMonth(month) || day < 1)
    return false;
  const core::Date wanted{std::min(day, core::DaysInMonth(year, month)), month, year};
  if (core::IsSameDate(wanted, date)) return false;
  const bool otherMonth = wanted.month != date.month || wanted.year != date.year;
  date = wanted;
  Invalidate(nullptr, 0);
  if (otherMonth) AnnounceChange(hwnd, AccessibleChange::kItems);
  AnnounceChange(hwnd, AccessibleChange::kCurrentItem);
  return true;
}

MonthGridLayout MonthGrid::LayoutIn(const RECT& client) const {
  return {client.right, client.bottom, date.year, date.month};
}

void MonthGrid::Paint(HDC hdc, const RECT& client) const {
  const MonthGridLayout layout = LayoutIn(client);
  const core::Date today = core::Today();
  hdc->FillRect(client, colours.background);
  hdc->SelectFont(GetFont(FontSmall, 400));
  for (int day = 1; day <= core::DaysInMonth(layout.year, layout.month); ++day) {
    const RECT cell = DayCell(layout, day);
    const core::Date shown{day, layout.month, layout.year};
    if (core::IsSameDate(shown, date)) {
      hdc->FillRect(cell, colours.selection);
      // The frame's bottom line lies on its bottom coordinate: one less keeps it in the cell.
      Frame3D(hdc, {cell.left, cell.top, cell.right, cell.bottom - 1}, kEdgeLight,
              Darken(colours.selection, kEdgeShade));
    }
    hdc->SetTextColor(core::IsSameDate(shown, today) ? colours.today : RGB(0, 0, 0));
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
  return 0;
}

std::optional<OwnerDrawn::FocusMark> MonthGrid::FocusMarkIn(const RECT& client) const {
  const RECT cell = DayCell(LayoutIn(client), date.day);
  return FocusMark{{cell.left + 1, cell.top + 1, cell.right - 1, cell.bottom - 1}, colours.selection};
}

LRESULT MonthGrid::OnEraseBkgnd(const MessageRecord&) {
  return 1;
}

const char* MonthGrid::CursorAt(POINT point) {
  return DayAt(Layout(), point) > 0 ? "CUR_HAND1" : IDC_ARROW;
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
  if (record.wParam == VK_SPACE || !core::IsSameDate(*next, date)) PickDate(*next);
  return 0;
}

void MonthGrid::Describe(int item, AccessiblePart* part) {
  const std::string month = resources::FindText(text::kJanuary + date.month - 1);
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
  part->name = resources::FindText(text::kSunday + core::Weekday(day));
  part->name += ", " + month + " " + std::to_string(day.day) + ", " + year;
  if (core::IsSameDate(day, core::Today())) part->description = "Today";
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
  if (!IsInForeground(hwnd)) return 0;
  const int day = DayAt(Layout(), ScreenToClient(hwnd, screenPoint));
  if (day < 1) return 0;
  if (command != kDropQuery && day != date.day) Report(command, {day, date.month, date.year});
  return 1;
}

void MonthGrid::Report(unsigned code, const core::Date& reported) {
  SendMessage(Parent(), WM_COMMAND, MakeWParam(kMonthGridId, code), WordFromDate(reported));
}
