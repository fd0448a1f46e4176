#include "pickers/picker_dialog.h"

#include <algorithm>

#include "framework/animations.h"
#include "framework/services.h"

namespace {

constexpr int kLeastGap = 4;  // pixels between what is picked from and the buttons

// The nearest place where a span of that length lies between two bounds; at the first bound when it is too
// long.
int KeepBetween(int start, int length, int first, int last) {
  return std::max(std::min(start, last - length), first);
}

}  // namespace

void PickerDialog::OpenBelow(HWND control) {
  RECT place;
  if (GetWindowRect(control, &place)) SetPosition({place.left, place.bottom});
  SetAnimate(true);
}

void PickerDialog::Place() {
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

void PickerDialog::PlaceContent() {
  RECT client;
  RECT button;
  GetClientRect(&client);
  if (!GetWindowRect(GetDlgItem(hwnd, IDOK), &button)) return;
  const int bottom = ScreenToClient(hwnd, {button.left, button.top}).y;
  const int margin = Margin();
  Content().Move(margin, margin, std::max(client.right - 2 * margin, 0),
                 std::max(bottom - margin - std::max(margin, kLeastGap), 0), 1);
}

LRESULT PickerDialog::OnInitDialog(const MessageRecord&) {
  if (animate) {
    RECT window;
    GetWindowRect(hwnd, &window);
    PlaySound("open.wav");
    RollDown(window.left, window.top, window.right, window.bottom);
  }
  Content().Create(this);
  FocusContent();
  return 1;
}

LRESULT PickerDialog::OnSize(const MessageRecord&) {
  // Comes before the dialog is first shown as well, when its buttons have found their places.
  PlaceContent();
  return 0;
}

LRESULT PickerDialog::OnAfterCreate(const MessageRecord&) {
  // Only a dialog that is shown has its frame, which counts for the desktop's edges.
  Place();
  PlaceContent();
  return 0;
}

LRESULT PickerDialog::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  if (id == IDOK || id == IDCANCEL) PlaySound("close.wav");
  return ZarfDialog::OnCommand(record);
}
