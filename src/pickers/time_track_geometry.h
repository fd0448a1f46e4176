// Where things are on a time track and which time a mouse height means. The track runs from the start of the
// range, at its top, to kLastPick at its bottom; the marker hangs on it at the range's end.
#pragma once

#include <algorithm>

#include "pickers/time_range.h"
#include "platform/desktop/types.h"

constexpr int kTrackTop = 20;   // y, and the height above the track
constexpr int kTrackFoot = 38;  // pixels below it: for the marker and its time
constexpr int kMarkerHeight = 25;
constexpr int kMarkerLabelHeight = 10;

struct TrackLayout {
  int width = 0;  // of the client area
  int height = 0;
  TimeRange times;

  int Bottom() const { return std::max(height - kTrackFoot, kTrackTop); }
  // Slots from the start to the bottom.
  int Slots() const { return std::max(kLastPick - core::TimeSlot(times.start), 0); }
  // Pixels of a slot; 0 where the track has none.
  double SlotHeight() const { return Slots() > 0 ? static_cast<double>(Bottom() - kTrackTop) / Slots() : 0; }
};

// The top of the marker, always on the track.
inline double MarkerTop(const TrackLayout& layout) {
  const int slots = core::TimeSlot(layout.times.end) - core::TimeSlot(layout.times.start);
  return std::clamp<double>(slots * layout.SlotHeight() + kTrackTop, kTrackTop, layout.Bottom());
}

inline bool HitsMarker(const TrackLayout& layout, int y) {
  return y >= MarkerTop(layout) && y <= MarkerTop(layout) + kMarkerHeight;
}

// The end of the range while the marker is dragged to a mouse height.
inline core::TimeOfDay EndAtHeight(const TrackLayout& layout, int mouseY) {
  const int y = mouseY - kTrackTop;
  if (y < 1) return layout.times.start;
  if (y >= layout.Bottom() - kTrackTop) return TimeOfSlot(kLastPick);
  const int steps = layout.SlotHeight() > 0 ? static_cast<int>(y / layout.SlotHeight()) : 0;
  return Later(layout.times.start, steps * 5);
}

// The mouse height at which the marker stays where it is.
inline int MarkerHandle(const TrackLayout& layout) {
  const double top = MarkerTop(layout);
  const int whole = static_cast<int>(top);
  return whole < top ? whole + 1 : whole;
}

// The part of the client area in which the mouse drags the marker.
inline RECT DragArea(const TrackLayout& layout) {
  return {0, kTrackTop, layout.width, layout.Bottom() + 1};
}
