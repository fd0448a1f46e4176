// Assistive technology for tests: reads windows and what they draw, acts on it and hears what changes,
// through the same interfaces as a screen reader. Make a DesktopDriver first.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/desktop/window.h"

class ScreenReader {
 public:
  // It is connected, and hears, for as long as it lives; one at a time.
  ScreenReader();
  ~ScreenReader();
  ScreenReader(const ScreenReader&) = delete;
  ScreenReader& operator=(const ScreenReader&) = delete;

  // What there is to read about a window or, by number, about one of its children: the role in Qt's words,
  // the name in quotes and then, where there are any, the description in parentheses, the value after =, the
  // states and the number of children: 'ListItem "Lunch" selected focused', 'ComboBox "Year: 2004" = 2004'.
  // "none" when there is nothing.
  std::string Read(HWND window, int child = -1);
  // The same for the child at a client point.
  std::string ReadAt(HWND window, POINT point);
  // Does "Press" or "SetFocus" with a window or a child.
  void Act(HWND window, int child, const std::string& action);
  void MoveSlider(HWND window, int position);
  // The changes told of since the last call: "selection Lunch", "focus Lunch", "value 2004", "items".
  std::vector<std::string> TakeHeard();
  // Reads a window and its children, calls what destroys the window, and fails the test unless what was read
  // is invalid at once and gone when the loop has run.
  void ExpectEnd(HWND window, const std::function<void()>& destroy);
};
