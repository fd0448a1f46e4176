#include "shell/frame_placement.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "shell/frame_metrics.h"

namespace {

constexpr const char* kSection = "Preference";
constexpr const char* kPaneKey = "PaneId";

// A number from a settings file may be any; sums of two such must still be numbers.
constexpr std::int32_t kFarthest = 1000000;

constexpr int kRounding = 2;  // pixels

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

int ReadPane(const core::IniFile& settings, int other) {
  std::int32_t pane = other;
  settings.ReadInt(kSection, kPaneKey, pane);
  return pane;
}

void WriteFrameState(const core::IniFile& settings, const RECT& window, int pane) {
  const core::IniEntry entries[] = {{"WPLeft", std::to_string(window.left)},
                                    {"WPTop", std::to_string(window.top)},
                                    {"WPRight", std::to_string(window.right)},
                                    {"WPBottom", std::to_string(window.bottom)},
                                    {kPaneKey, std::to_string(pane)}};
  // A place that is forgotten is nothing to keep the user from leaving for.
  static_cast<void>(settings.Write(kSection, entries));
}

bool HasLargeSize(const RECT& window) {
  return std::abs(Width(window) - kLargeFrame.cx) <= kRounding &&
         std::abs(Height(window) - kLargeFrame.cy) <= kRounding;
}

RECT MaximizedPlacement(const RECT& window, const RECT& desktop, bool large) {
  const SIZE size = large ? kLargeFrame : kSmallFrame;
  int x = window.left;
  int y = window.top;
  // On a desktop smaller than the window the title stays in sight: without it there is no way back.
  if (large && x + size.cx > desktop.right) x = std::max(desktop.right - size.cx, desktop.left);
  if (large && y + size.cy > desktop.bottom) y = std::max(desktop.bottom - size.cy, desktop.top);
  return {x, y, x + size.cx, y + size.cy};
}
