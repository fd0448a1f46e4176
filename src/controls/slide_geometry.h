// Where the thumb of a slide bar is, and which position a mouse height means. Heights are pixels from the top
// of the bar; `count` is the number of positions, with a fraction where rows do not fill up. Any value is
// taken: a count that is no number or below 1 has no positions.
#pragma once

#include <algorithm>
#include <optional>

#include "platform/desktop/messages.h"
#include "platform/desktop/types.h"

constexpr int kSlideThumbHeight = 20;
// More positions than a file can have records.
constexpr double kMaxSlideCount = 1e9;

// A count made fit for use: 0 for none.
constexpr double UsableCount(double count) {
  return count > 0 ? std::min(count, kMaxSlideCount) : 0;
}

// Pixels from one position to the next; 0 when there is at most one position.
constexpr double SlideStep(int height, double count) {
  return count > 1 && height > 0 ? height / (count - 1) : 0;
}

// The thumb's rectangle, inside `client` where it is high enough: at the position, or at the mouse while it
// is dragged.
constexpr RECT SlideThumb(const RECT& client, double count, int position, std::optional<int> mouseY) {
  const int lowest = std::max(Height(client) - kSlideThumbHeight, 0);
  const double wanted = mouseY ? *mouseY : SlideStep(Height(client), count) * position;
  const int y = client.top + static_cast<int>(std::clamp(wanted, 0.0, static_cast<double>(lowest)));
  return {client.left, y, client.right, y + kSlideThumbHeight};
}

// A mouse height brought into the bar: its bottom from the last thumb's height on.
constexpr int SlideMouseY(int y, int height) {
  if (y < 0) return 0;
  return y >= height - kSlideThumbHeight ? height : y;
}

// The position that a mouse height stands for. `position` is the present one, which stays when there is at
// most one.
constexpr int SlidePosition(int y, int height, double count, int position) {
  if (!(count > 1)) return position;
  y = SlideMouseY(y, height);
  const double step = SlideStep(height, count);
  return y >= height || step <= 0 ? static_cast<int>(count - 1) : static_cast<int>(y / step);
}

// The last position; -1 when there is none.
constexpr int LastSlidePosition(double count) {
  const double usable = UsableCount(count);
  const int whole = static_cast<int>(usable);
  return usable > whole ? whole : whole - 1;
}

// The position that a key moves to; nothing for a key that moves nothing.
constexpr std::optional<int> SlideKeyPosition(unsigned key, int position, double count) {
  constexpr int kPage = 10;
  const int last = LastSlidePosition(count);
  const auto step = [&](int by) { return std::clamp(position + by, 0, std::max(last, 0)); };
  switch (key) {
    case VK_UP:
    case VK_LEFT:
      return step(-1);
    case VK_DOWN:
    case VK_RIGHT:
      return step(1);
    case VK_PRIOR:
      return step(-kPage);
    case VK_NEXT:
      return step(kPage);
    case VK_HOME:
      return step(-position);
    case VK_END:
      return step(last - position);
    default:
      return std::nullopt;
  }
}
