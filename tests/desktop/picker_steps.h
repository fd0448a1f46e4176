// What tests do in the dialog "Date".
#pragma once

#include "platform/desktop/message_box.h"
#include "support/desktop_driver.h"

namespace tests {

// Accepts the date that lies a month after (1), a month before (-1) or at (0) the one the picker shows.
inline void PickMonth(DesktopDriver& driver, HWND picker, int step) {
  RECT client;
  GetClientRect(picker, &client);
  // The arrows stand in the lower corners of the calendar, above the buttons.
  HWND arrow = nullptr;
  for (int y = Height(client) - 1; step != 0 && y > 0 && arrow == nullptr; --y) {
    const int x = step > 0 ? Width(client) - 11 : 11;
    const HWND at = WindowFromPoint(ClientToScreen(picker, {x, y}));
    if (GetClassName(at) == "ZarfSpinButton") arrow = at;
  }
  if (arrow != nullptr) driver.Click(arrow, {5, 5});
  driver.ClickControl(picker, IDOK);
}

}  // namespace tests
