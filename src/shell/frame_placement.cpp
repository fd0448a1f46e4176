#include "shell/frame_placement.h"

#include <algorithm>

#include "shell/frame_metrics.h"

namespace {

constexpr const char* kSection = "Preference";

// A number from a settings file may be any; sums of two such must still be numbers.
constexpr std::int32_t kFarthest = 1000000;

std::optional<int> ReadEdge(const core::IniFile& settings, const char* key) {
  std::int32_t value = 0;
  if (!settings.ReadInt(kSection, key, value)) return std::nullopt;
  return std::clamp(value, -kFarthest, kFarthest);
}

}  // namespace

std::optional<RECT> ReadPlacement(const core::IniFile& settings, const RECT& desktop) {
  const auto left = ReadEdge(settings, "WPLeft");
  const auto top = ReadEdge(settings, "WPTop");
  const auto right = ReadEdge(settings, "WPRight");
  const auto bottom = ReadEdge(settings, "WPBottom");
  if (!left || !top || !right || !bottom) return std::nullopt;
  if (*left >= desktop.right || *top >= desktop.bottom) return std::nullopt;
  return RECT{*left, *top, *right, *bottom};
}

void WritePlacement(const core::IniFile& settings, const RECT& window) {
  settings.WriteInt(kSection, "WPLeft", window.left);
  settings.WriteInt(kSection, "WPTop", window.top);
  settings.WriteInt(kSection, "WPRight", window.right);
  settings.WriteInt(kSection, "WPBottom", window.bottom);
}

RECT MaximizedPlacement(const RECT& window, const RECT& desktop) {
  const bool large = Width(window) == kLargeFrame.cx && Height(window) == kLargeFrame.cy;
  const SIZE size = large ? kSmallFrame : kLargeFrame;
  int x = window.left;
  int y = window.top;
  // On a desktop smaller than the window the title stays in sight: without it there is no way back.
  if (!large && x + size.cx > desktop.right) x = std::max(desktop.right - size.cx, desktop.left);
  if (!large && y + size.cy > desktop.bottom) y = std::max(desktop.bottom - size.cy, desktop.top);
  return {x, y, x + size.cx, y + size.cy};
}
