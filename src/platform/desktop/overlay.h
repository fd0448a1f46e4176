// Lines over the screen, above every window, for the short animations with which dialogs open and panes
// change. A dark line with a light one beside it shows on any ground.
//
//   ScreenOverlay overlay(area);
//   overlay.Show(lines);
//   WaitPainting(30);
//
// Where a program cannot put a window at a place of the screen of its choice (Wayland), or there is no
// screen, nothing is shown and everything else is the same.
#pragma once

#include <memory>
#include <span>

#include "platform/desktop/types.h"

// A line between two screen points; the end point itself is not drawn.
struct Segment {
  POINT from;
  POINT to;
  bool operator==(const Segment&) const = default;
};

class ScreenOverlay {
 public:
  // Covers `area`, in screen pixels, as far as it lies on the desktop; lines outside are cut. Takes no mouse
  // and no key. Shows nothing at first; with its end every line is gone.
  explicit ScreenOverlay(const RECT& area);
  ~ScreenOverlay();
  ScreenOverlay(const ScreenOverlay&) = delete;
  ScreenOverlay& operator=(const ScreenOverlay&) = delete;

  // Replaces what is shown by these lines; none takes all away.
  void Show(std::span<const Segment> lines);

 private:
  class Surface;
  std::unique_ptr<Surface> surface;  // null where nothing can be shown
};

// Waits `ms` milliseconds and lets windows paint meanwhile, and nothing else: what the user does and what is
// posted comes afterwards, in order; window timers skip the ticks that fall into the wait.
void WaitPainting(int ms);
