// Hands the mouse that drags a window over to the window manager. Make one at the press, and hand over when
// the mouse has gone far enough to drag: the window then lies under the mouse as it did at the press.
#pragma once

#include <cstdint>

class QWindow;

class SystemDrag {
 public:
  SystemDrag();
  // Has the window moved or, from its bottom right corner, sized until the button goes up. False when nobody
  // takes that over.
  bool HandOver(QWindow& window, bool size) const;

 private:
  // Where the mouse was, in the screen's own pixels.
  std::int16_t rootX = 0;
  std::int16_t rootY = 0;
};
