// The short line animations of the shell. They block until they are over, a few hundred milliseconds at most,
// while windows go on painting. The sequences are made apart from showing them.
#pragma once

#include <vector>

#include "platform/desktop/overlay.h"

// What is on the screen at once, and how many milliseconds it stays before the next step takes its place.
// After the last step everything is gone.
struct AnimationStep {
  std::vector<Segment> lines;
  int waitMs;
};

// All rectangles are in screen pixels.

// Lines that close in on a pane from above: a bar as wide as `source`, which falls from its top in strides of
// 10, 20, 30, ... pixels, tied to the top corners of `target`.
std::vector<AnimationStep> SweepSteps(const RECT& source, const RECT& target);
// Outlines that grow downwards by 20 pixels a step.
std::vector<AnimationStep> RollDownSteps(const RECT& rect);
// Outlines that grow out of `from` by 30 pixels on each side, each staying when the next comes, until the one
// that lies one pixel inside `to` is there.
std::vector<AnimationStep> ZoomSteps(const RECT& from, const RECT& to);

// A pane gives way to another one, with a sound; nothing, not even the sound, while animations are off.
void SweepAnimation(const RECT& source, const RECT& target);
// A picker drops down; nothing while animations are off.
void RollDown(int left, int top, int right, int bottom);
// A dialog grows to its place, whether or not animations are on.
void ZoomRect(const RECT& from, const RECT& to);

// Waits, with windows painting and everything else held back until after it.
void WaitMs(int ms);
