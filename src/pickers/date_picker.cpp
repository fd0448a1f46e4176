#include "pickers/date_picker.h"

#include <algorithm>

#include "framework/animations.h"
#include "framework/drawing.h"
#include "framework/services.h"

namespace {

constexpr int kTemplate = 1008;
constexpr int kCalendarId = 100;
constexpr int kMargin = 6;  // around the calendar

// The nearest place where a span of that length lies between two bounds; at the first bound when it is too
// long.
int KeepBetween(int start, int length, int first, int last) {
  return std::max(std::min(start, last - length), first);
}

}  // namespace

DatePickerDialog::DatePickerDialog(const core::Date& start)
    : calendar(kCalendarId, {RGB(255, 255, 255), kButtonFace, RGB(255, 0, 0)}) {
  calendar.SetDate(start.year, start.month, start.day);
}

bool DatePickerDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

void DatePickerDialog::Place() {
  if (!position) {
    ZarfDialog::Place();
    return;
  }
  RECT window;
  RECT client;
  GetWindowRect(hwnd, &window);
  GetClientRect(&client);
  const RECT desktop = DesktopRect(Parent());
  const int x = KeepBetween(position->x, Width(window), desktop.left, desktop.right);
  const int y = KeepBetween(position->y, Height(window), desktop.top, desktop.bottom);
  MoveWindow(hwnd, x, y, Width(client), Height(client));
}

void DatePickerDialog::PlaceCalendar() {
  RECT client;
  RECT button;
  GetClientRect(&client);
  if (!GetWindowRect(GetDlgItem(hwnd, IDOK), &button)) return;
  const int bottom = ScreenToClient(hwnd, {button.left, button.top}).y;
  calendar.Move(kMargin, kMargin, std::max(client.right - 2 * kMargin, 0), std::max(bottom - 2 * kMargin, 0),
                1);
}

LRESULT DatePickerDialog::OnInitDialog(const MessageRecord&) {
  if (animate) {
    RECT window;
    GetWindowRect(hwnd, &window);
    PlaySound("open.wav");
    RollDown(window.left, window.top, window.right, window.bottom);
  }
  calendar.Create(this);
  calendar.FocusDays();
  return 1;
}

LRESULT DatePickerDialog::OnSize(const MessageRecord&) {
  // Comes before the dialog is first shown as well, when its buttons have found their places.
  PlaceCalendar();
  return 0;
}

LRESULT DatePickerDialog::OnAfterCreate(const MessageRecord&) {
  // Only a dialog that is shown has its frame, which counts for the desktop's edges.
  Place();
  PlaceCalendar();
  return 0;
}

LRESULT DatePickerDialog::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  if (id == IDOK || id == IDCANCEL) PlaySound("close.wav");
  return ZarfDialog::OnCommand(record);
}
