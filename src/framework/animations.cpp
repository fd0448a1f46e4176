#include "framework/animations.h"

#include <algorithm>

#include "framework/services.h"

namespace {

constexpr int kSweepStride = 10;
constexpr int kSweepMs = 30;
constexpr int kRollStride = 20;
constexpr int kRollMs = 5;
constexpr int kZoomStride = 30;
constexpr int kZoomMs = 20;

void AddOutline(std::vector<Segment>& lines, const RECT& rect) {
  lines.push_back({{rect.left, rect.top}, {rect.right, rect.top}});
  lines.push_back({{rect.left, rect.bottom - 1}, {rect.right, rect.bottom - 1}});
  lines.push_back({{rect.left, rect.top}, {rect.left, rect.bottom}});
  lines.push_back({{rect.right - 1, rect.top}, {rect.right - 1, rect.bottom}});
}

// The rectangle around all lines, with room for the light line beside each.
RECT BoundsOf(const std::vector<AnimationStep>& steps) {
  RECT bounds;
  bool empty = true;
  for (const AnimationStep& step : steps) {
    for (const Segment& line : step.lines) {
      for (const POINT& point : {line.from, line.to}) {
        if (empty) bounds = {point.x, point.y, point.x, point.y};
        empty = false;
        bounds = {std::min(bounds.left, point.x), std::min(bounds.top, point.y),
                  std::max(bounds.right, point.x), std::max(bounds.bottom, point.y)};
      }
    }
  }
  return {bounds.left, bounds.top, bounds.right + 2, bounds.bottom + 2};
}

void Run(const std::vector<AnimationStep>& steps) {
  ScreenOverlay overlay(BoundsOf(steps));
  for (const AnimationStep& step : steps) {
    overlay.Show(step.lines);
    WaitMs(step.waitMs);
  }
}

}  // namespace

std::vector<AnimationStep> SweepSteps(const RECT& source, const RECT& target) {
  std::vector<AnimationStep> steps;
  int stride = 0;
  for (int y = source.top; y < source.bottom; y += stride) {
    stride += kSweepStride;
    steps.push_back({{{{source.left, y}, {source.right, y}},
                      {{source.left, y}, {target.left, target.top}},
                      {{source.right, y}, {target.right, target.top}}},
                     kSweepMs});
  }
  return steps;
}

std::vector<AnimationStep> RollDownSteps(const RECT& rect) {
  std::vector<AnimationStep> steps;
  for (int y = rect.top; y < rect.bottom; y += kRollStride) {
    steps.push_back({{}, kRollMs});
    AddOutline(steps.back().lines, {rect.left, rect.top, rect.right, y});
  }
  return steps;
}

std::vector<AnimationStep> ZoomSteps(const RECT& from, const RECT& to) {
  const RECT inner = {to.left + 1, to.top + 1, to.right - 1, to.bottom - 1};
  std::vector<AnimationStep> steps;
  std::vector<Segment> lines;
  for (RECT grown = from; grown != inner;) {
    grown = {std::max(grown.left - kZoomStride, inner.left), std::max(grown.top - kZoomStride, inner.top),
             std::min(grown.right + kZoomStride, inner.right),
             std::min(grown.bottom + kZoomStride, inner.bottom)};
    AddOutline(lines, grown);
    steps.push_back({lines, kZoomMs});
  }
  return steps;
}

void SweepAnimation(const RECT& source, const RECT& target) {
  if (!AnimationEnabled()) return;
  PlaySound("chpane.wav");
  Run(SweepSteps(source, target));
}

void RollDown(int left, int top, int right, int bottom) {
  if (AnimationEnabled()) Run(RollDownSteps({left, top, right, bottom}));
}

void ZoomRect(const RECT& from, const RECT& to) {
  Run(ZoomSteps(from, to));
}

void WaitMs(int ms) {
  WaitPainting(ms);
}
