#include "pickers/mini_calendar.h"

#include <algorithm>
#include <string>

#include "framework/date_word.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "resources/strings.h"
#include "resources/text_ids.h"

namespace {

constexpr unsigned kPreviousId = 101;
constexpr unsigned kNextId = 102;
constexpr unsigned kTodayId = 103;

constexpr int kChoiceHeight = 15;
constexpr int kGridTop = 29;
constexpr int kGridRest = 45;  // what the grid leaves of the height
constexpr int kButtonSize = 10;
constexpr int kButtonRise = 14;

}  // namespace

MiniCalendar::MiniCalendar(int id, const CalendarColours& calendarColours)
    : commandId(id),
      colours(calendarColours),
      years(colours.background, RGB(0, 0, 0)),
      months(colours.background, RGB(0, 0, 0)),
      previousButton(kPreviousId, SpinKind::kLeft, colours.background),
      nextButton(kNextId, SpinKind::kRight, colours.background),
      todayButton(kTodayId, SpinKind::kSquare, colours.background),
      grid(colours) {
  for (int year = core::kFirstYear; year <= core::LastYear(); ++year) {
    years.AddItemText(std::to_string(year).c_str(), year);
  }
  for (int month = 0; month < 12; ++month) months.AddItem(text::kJanuary + month, month);
  ShowChoices();
}

bool MiniCalendar::SetDate(int year, int month, int day) {
  if (!grid.SetDate(year, month, day)) return false;
  ShowChoices();
  return true;
}

void MiniCalendar::ShowChoices() {
  years.SetCurrent(Date().year);
  months.SetCurrent(Date().month - 1);
}

int MiniCalendar::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarMiniCalendar";
  windowClass->background = RGB(255, 255, 255);
  return 0;
}

LRESULT MiniCalendar::OnCreate(const MessageRecord&) {
  // In the order in which Tab walks them.
  const bool made = years.Create(this) && months.Create(this) && grid.Create(this) &&
                    previousButton.Create(this) && todayButton.Create(this) && nextButton.Create(this);
  if (!made) return -1;
  SetWindowText(hwnd, "Dates");
  SetWindowText(years.Handle(), "Year");
  SetWindowText(months.Handle(), "Month");
  SetWindowText(previousButton.Handle(), "Previous month");
  SetWindowText(todayButton.Handle(), "Today");
  SetWindowText(nextButton.Handle(), "Next month");
  for (const ZarfWnd* button : {&previousButton, &todayButton, &nextButton})
    SetTabStop(button->Handle(), true);
  return 0;
}

LRESULT MiniCalendar::OnSize(const MessageRecord&) {
  const RECT client = ClientArea();
  const int width = client.right;
  const int height = client.bottom;
  years.Move(0, 0, width / 3, kChoiceHeight, 1);
  months.Move(width / 3, 0, width - width / 3, kChoiceHeight, 1);
  grid.Move(0, kGridTop, width, std::max(height - kGridRest, 0), 1);
  const int buttonTop = height - kButtonRise;
  previousButton.Move(0, buttonTop, kButtonSize, kButtonSize, 1);
  todayButton.Move(width / 2 - kButtonSize / 2, buttonTop, kButtonSize, kButtonSize, 1);
  nextButton.Move(width - kButtonSize, buttonTop, kButtonSize, kButtonSize, 1);
  return 0;
}

void MiniCalendar::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, colours.background);
  hdc->SelectFont(GetFont(FontSmall, 400));
  const int column = client.right / kGridColumns;
  for (int weekday = 0; weekday < kGridColumns; ++weekday) {
    const int left = weekday * column;
    hdc->SetTextColor(weekday == 0 ? RGB(255, 0, 0) : RGB(0, 0, 0));
    hdc->DrawText(resources::FindText(text::kSundayInitial + weekday),
                  {left, kChoiceHeight, left + column, kGridTop}, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
  hdc->SetPenColor(RGB(0, 0, 0));
  Line(hdc, 0, kGridTop - 1, client.right - 2, kGridTop - 1);
}

LRESULT MiniCalendar::OnEraseBkgnd(const MessageRecord&) {
  return 1;
}

LRESULT MiniCalendar::OnCommand(const MessageRecord& record) {
  const auto id = static_cast<int>(LowWord(record.wParam));
  core::Date date = Date();
  if (id >= core::kFirstYear && id <= core::LastYear()) {
    date.year = id;
    Pick(date, 0);
  } else if (id >= 0 && id < 12) {
    date.month = id + 1;
    Pick(date, 0);
  } else if (id == kMonthGridId && record.lParam != 0) {
    Pick(DateFromWord(record.lParam), HighWord(record.wParam));
  } else {
    OnButton(static_cast<unsigned>(id));
  }
  return 0;
}

void MiniCalendar::OnButton(unsigned id) {
  core::Date date = Date();
  bool moved = false;
  if (id == kPreviousId) {
    moved = core::PreviousMonth(date);
  } else if (id == kNextId) {
    moved = core::NextMonth(date);
  } else if (id == kTodayId) {
    date = core::Today();
    moved = core::DayIndex(date) != core::DayIndex(Date());
  }
  if (moved) Pick(date, 0);
}

void MiniCalendar::Pick(const core::Date& date, unsigned code) {
  core::Date picked = date;
  if (code == 0) {
    grid.SetDate(date.year, date.month, date.day);
    ShowChoices();    // also when the grid has moved to another month by itself
    picked = Date();  // a day that the month lacks has become its last
  }
  TellParent(commandId, WordFromDate(picked), code);
}
