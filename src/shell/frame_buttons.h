// The three buttons in the title band of the main frame: which of them the mouse is over or presses, and what
// a press does. How they look is in frame_painting.
#pragma once

#include <optional>

#include "framework/zarf_wnd.h"
#include "shell/frame_painting.h"

class FrameButtons {
 public:
  // Of a frame whose window need not be there yet.
  explicit FrameButtons(ZarfWnd& newFrame) : frame(newFrame) {}

  const CaptionStates& States() const { return states; }
  // The button at a point of the screen.
  std::optional<CaptionButton> At(POINT screenPoint) const;
  // Shows which one the mouse is over; a pressed one stays as it is.
  void ShowHover(POINT mouse);
  // Shows a button pressed until the mouse is released, and presses it if that is over it. The frame's window
  // may be gone afterwards.
  void Track(CaptionButton button);

  // For assistive technology: the buttons are the items of the frame, by their numbers.
  int Count() const { return static_cast<int>(states.size()); }
  void Describe(int item, AccessiblePart* part) const;
  void Press(CaptionButton button);

 private:
  void SetState(CaptionButton button, int state);
  int& StateOf(CaptionButton button) { return states[static_cast<std::size_t>(button)]; }

  ZarfWnd& frame;
  CaptionStates states{};
};
