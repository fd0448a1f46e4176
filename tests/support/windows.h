// What tests ask of windows and of the controls in dialogs, each in one expression.
#pragma once

#include <string>

#include "platform/desktop/dialog.h"
#include "platform/desktop/window.h"

namespace tests {

// On the screen, and without the frame from (0, 0) on.
inline RECT PlaceOf(HWND window) {
  RECT rect;
  GetWindowRect(window, &rect);
  return rect;
}
inline RECT ClientOf(HWND window) {
  RECT rect;
  GetClientRect(window, &rect);
  return rect;
}
// In code page 1252.
inline std::string TextOf(HWND dialog, int id) {
  char text[3000];
  GetDlgItemText(dialog, id, text, sizeof text);
  return text;
}
inline bool Enabled(HWND dialog, int id) {
  return IsWindowEnabled(GetDlgItem(dialog, id));
}

}  // namespace tests
