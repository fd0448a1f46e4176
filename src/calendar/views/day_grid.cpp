#include "calendar/views/day_grid.h"

#include <algorithm>

#include "core/time_texts.h"
#include "framework/date_word.h"
#include "framework/drawing.h"
#include "platform/desktop/application.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/tip.h"

namespace {

constexpr unsigned kNextId = 101;
constexpr unsigned kPreviousId = 102;
constexpr unsigned kTodayId = 103;

constexpr UINT kTipTimer = 1;
constexpr int kTipMs = 500;
constexpr int kTipLineHeight = 18;  // about; a tip has to stay on the screen

constexpr int kWeekDays = 7;

bool Touch(const RECT& a, const RECT& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

std::string LongDate(const core::Date& date) {
  return core::WeekdayName(date) + ", " + core::MonthName(date) + " " + std::to_string(date.day) + ", " +
         std::to_string(date.year);
}

}  // namespace

DayGrid::DayGrid(int newCommandId, core::CalendarSession& calendarSession, GridShape newShape,
                 const GridLook& newLook, const char* newWindowClass, const char* newStepName)
    : commandId(newCommandId),
      session(calendarSession),
      shape(newShape),
      look(newLook),
      windowClassName(newWindowClass),
      stepName(newStepName),
      viewDate(core::Today()),
      today(viewDate),
      days(DaysAround(shape, viewDate)),
      previousButton(kPreviousId, SpinKind::kLeft, look.buttons),
      todayButton(kTodayId, SpinKind::kSquare, look.buttons),
      nextButton(kNextId, SpinKind::kRight, look.buttons) {
  core::FileWatch::OfProcess().Add(*this);
}

DayGrid::~DayGrid() {
  core::FileWatch::OfProcess().Remove(*this);
}

int DayGrid::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = windowClassName;
  windowClass->background = RGB(255, 255, 255);
  windowClass->cursor = nullptr;
  return 0;
}

int DayGrid::PreCreate(char*, DWORD* style, int*) {
  *style = WS_CHILD;
  return 0;
}

LRESULT DayGrid::OnCreate(const MessageRecord&) {
  // In the order in which Tab walks them.
  if (!previousButton.Create(this) || !todayButton.Create(this) || !nextButton.Create(this)) return -1;
  SetWindowText(previousButton.Handle(), ("Previous " + stepName).c_str());
  SetWindowText(todayButton.Handle(), "Today");
  SetWindowText(nextButton.Handle(), ("Next " + stepName).c_str());
  for (const ZarfWnd* stop : {static_cast<ZarfWnd*>(this), static_cast<ZarfWnd*>(&previousButton),
                              static_cast<ZarfWnd*>(&todayButton), static_cast<ZarfWnd*>(&nextButton)}) {
    SetTabStop(stop->Handle(), true);
  }
  timer.Start();
  return 0;
}

// ---- What is shown ----

void DayGrid::ShowSession() {
  viewDate = session.CurrentDate();
  days = DaysAround(shape, viewDate);
  Relist();
}

void DayGrid::Relist() {
  if (const core::RecordFile* file = session.File()) {
    cells.List(*file, days.first, days.count, session.Filter());
  } else {
    cells.Clear();
  }
  ShowListed();
}

// True when the days were listed anew because the file was changed since.
bool DayGrid::Refresh() {
  if (session.File() == nullptr || !cells.Refresh(*session.File())) return false;
  ShowListed();
  return true;
}

void DayGrid::Clear() {
  cells.Clear();
  SetTipDay(-1);
}

void DayGrid::ShowListed() {
  ReadLines();
  SetTipDay(-1);
  Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kItems);
}

void DayGrid::ReadLines() {
  if (session.File() != nullptr) cells.ReadLines(*session.File(), CellLines(Height(CellOf(0))));
}

const core::RecordFile* DayGrid::WatchedFile() const {
  return IsWindowVisible(hwnd) ? session.File() : nullptr;
}

void DayGrid::OnLook(const core::FileLook& news) {
  if (const core::Date now = core::Today(); !core::IsSameDate(now, today)) {
    today = now;
    Invalidate(nullptr, 0);
  }
  const bool changed = news.counted && news.changeCounter != cells.Stamp();
  if (changed && Refresh()) TellParent(commandId, 0, kGridListed);
}

LRESULT DayGrid::OnSize(const MessageRecord&) {
  const GridButtons places = ButtonsIn(ClientArea());
  previousButton.Move(places.previous.x, places.previous.y, kGridButtonSize, kGridButtonSize, 1);
  todayButton.Move(places.today.x, places.today.y, kGridButtonSize, kGridButtonSize, 1);
  nextButton.Move(places.next.x, places.next.y, kGridButtonSize, kGridButtonSize, 1);
  ReadLines();
  return 0;
}

LRESULT DayGrid::OnEraseBkgnd(const MessageRecord&) {
  return 1;
}

void DayGrid::Paint(HDC hdc, const RECT& client) const {
  DrawGridGround(hdc, client, shape, look);
  DrawGridTitle(hdc, client, viewDate, look);
  for (int day = 0; day < days.count; ++day) {
    const RECT cell = GridCell(shape, client, days, day);
    if (Touch(cell, hdc->Clip())) DrawGridDay(hdc, cell, shape, DateOf(day), cells.Lines(day));
  }
}

void DayGrid::OnPaint(HDC hdc, PAINTSTRUCT) {
  const RECT client = ClientArea();
  Paint(hdc, client);
  const auto mark = FocusMarkIn(client);
  if (mark && (keysUsed || ShowsFocus(hwnd))) DrawFocusMark(hdc, mark->place, mark->ground);
}

std::optional<OwnerDrawn::FocusMark> DayGrid::FocusMarkIn(const RECT& client) const {
  const int day = DayOf(days, viewDate);
  if (day < 0) return std::nullopt;
  const RECT cell = GridCell(shape, client, days, day);
  return FocusMark{{cell.left + 1, cell.top + 1, cell.right, cell.bottom}, RGB(255, 255, 255)};
}

// ---- Where it goes ----

core::Date DayGrid::DateOf(int day) const {
  core::Date date = days.first;
  core::DateFromIndex(core::DayIndex(days.first) + day, date);
  return date;
}

void DayGrid::GoTo(const core::Date& date) {
  viewDate = date;
  const GridDays wanted = DaysAround(shape, date);
  if (!core::IsSameDate(wanted.first, days.first)) {
    days = wanted;
    Relist();
  }
  Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kCurrentItem);
}

void DayGrid::StepOrBeep(bool forward) {
  core::Date date = viewDate;
  if (!Step(date, forward)) {
    MessageBeep();
    return;
  }
  GoTo(date);
  Update();  // also while a held key or button leaves the loop no time to paint
}

void DayGrid::OpenDay(const core::Date& date) {
  GoTo(date);
  TellParent(commandId, WordFromDate(date));
}

LRESULT DayGrid::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kNextId:
      StepOrBeep(true);
      break;
    case kPreviousId:
      StepOrBeep(false);
      break;
    case kTodayId:
      GoTo(core::Today());
      break;
    default:
      break;
  }
  return 0;
}

LRESULT DayGrid::OnMouseWheel(const MessageRecord& record) {
  StepOrBeep(WheelDelta(record.wParam) < 0);
  return 0;
}

// ---- Keys ----

bool DayGrid::KeepsKey(unsigned key) const {
  return key == VK_RETURN;
}

LRESULT DayGrid::OnKeyDown(const MessageRecord& record) {
  const auto key = static_cast<unsigned>(record.wParam);
  switch (key) {
    case VK_PRIOR:
    case VK_NEXT:
      StepOrBeep(key == VK_NEXT);
      break;
    case VK_HOME:
      GoTo(core::Today());
      break;
    case VK_RETURN:
    case VK_SPACE:
      OpenDay(viewDate);
      break;
    default:
      if (!OnArrow(key)) return DefaultProc(record);
  }
  keysUsed = true;
  return 0;
}

// A week has no rows above and below it: there the keys go from one of its rows to the other only.
bool DayGrid::OnArrow(unsigned key) {
  const int row = shape == GridShape::kMonth ? kWeekDays : GridColumns(shape);
  int step = 0;
  switch (key) {
    case VK_LEFT:
      step = -1;
      break;
    case VK_RIGHT:
      step = 1;
      break;
    case VK_UP:
      step = -row;
      break;
    case VK_DOWN:
      step = row;
      break;
    default:
      return false;
  }
  core::Date date = viewDate;
  const bool moved = core::DateFromIndex(core::DayIndex(viewDate) + step, date);
  const bool overRows = shape == GridShape::kWeek && std::abs(step) != 1;
  if (moved && (!overRows || DayOf(days, date) >= 0)) GoTo(date);
  return true;
}

LRESULT DayGrid::WindowProc(const MessageRecord& record) {
  if (record.message == WM_KILLFOCUS && keysUsed) {
    keysUsed = false;
    Invalidate(nullptr, 0);
  }
  return OwnerDrawn::WindowProc(record);
}

// ---- The mouse ----

int DayGrid::DayAt(POINT point) const {
  return GridDayAt(shape, ClientArea(), days, point);
}

const char* DayGrid::CursorAt(POINT point) {
  return DayAt(point) >= 0 ? "CUR_HAND1" : IDC_ARROW;
}

LRESULT DayGrid::OnLButtonDown(const MessageRecord& record) {
  SetFocus(hwnd);
  const int day = DayAt(PointFromLParam(record.lParam));
  if (day >= 0) OpenDay(DateOf(day));
  return 0;
}

LRESULT DayGrid::OnMouseMove(const MessageRecord& record) {
  const int day = DayAt(PointFromLParam(record.lParam));
  const bool hasMore =
      day >= 0 && cells.Listed(day) > static_cast<std::size_t>(CellLines(Height(CellOf(day))));
  SetTipDay(hasMore ? day : -1);
  return 0;
}

void DayGrid::SetTipDay(int day) {
  if (tipDay == day) return;
  tipDay = day;
  ShowTip(hwnd, {}, "");
  KillTimer(hwnd, kTipTimer);
  if (tipDay >= 0) SetTimer(hwnd, kTipTimer, kTipMs);
}

LRESULT DayGrid::OnTimer(const MessageRecord& record) {
  if (record.wParam != kTipTimer) return 0;
  KillTimer(hwnd, kTipTimer);
  const POINT point = ScreenToClient(hwnd, GetCursorPos());
  if (tipDay >= 0 && DayAt(point) == tipDay) ShowTip(hwnd, point, TipOf(tipDay).c_str());
  return 0;
}

std::string DayGrid::TipOf(int day) {
  if (session.File() == nullptr) return "";
  const std::vector<std::string> lines = cells.AllLines(*session.File(), day);
  const auto room = static_cast<std::size_t>(std::max(Height(DesktopRect(hwnd)) / kTipLineHeight - 4, 1));
  std::string tip = LongDate(DateOf(day));
  for (std::size_t i = 0; i < std::min(lines.size(), room); ++i) tip.append("\n").append(lines[i]);
  if (lines.size() > room) tip.append("\nand ").append(std::to_string(lines.size() - room)).append(" more");
  return tip;
}

// ---- Assistive technology ----

void DayGrid::Describe(int item, AccessiblePart* part) {
  if (item == kWholeWindow) {
    part->role = AccessibleRole::kCalendar;
    part->name = Name();
    part->items = days.count;
    part->currentItem = DayOf(days, viewDate);
    return;
  }
  const core::Date date = DateOf(item);
  part->role = AccessibleRole::kDay;
  part->name = LongDate(date);
  if (core::IsSameDate(date, core::Today())) part->description = "Today";
  if (session.File() != nullptr) {
    for (const std::string& line : cells.AllLines(*session.File(), item)) {
      if (!part->description.empty()) part->description += "\n";
      part->description += line;
    }
  }
  part->state = kAccessibleSelectable | (core::IsSameDate(date, viewDate) ? kAccessibleSelected : 0);
  part->pressable = true;
  part->place = CellOf(item);
}

int DayGrid::ItemAt(POINT point) {
  return DayAt(point);
}

void DayGrid::DoAction(AccessibleAction action, int value) {
  if (value < 0 || value >= days.count) return;
  if (action == AccessibleAction::kSelect) {
    SetFocus(hwnd);
    GoTo(DateOf(value));
  } else {
    OpenDay(DateOf(value));
  }
}
