// The measures of the frame that the program draws around itself, in pixels. The caption squares, the bars
// and the pane are placed relative to them; these values make the title band 23 pixels high and the borders 5
// pixels wide.
#pragma once

#include "platform/desktop/types.h"

constexpr int kSizeFrameX = 4;  // the sizing border at the sides
constexpr int kSizeFrameY = 4;  // and at top and bottom
constexpr int kBorderX = 1;     // the line around it
constexpr int kBorderY = 1;
constexpr int kCaptionHeight = 18;

constexpr int kFrameX = kSizeFrameX + kBorderX;

// What the frame takes from each side of the window; the client area lies inside.
constexpr RECT kFrameInsets = {kSizeFrameX, kSizeFrameY + kCaptionHeight + 1, kSizeFrameX, kSizeFrameY};

constexpr SIZE kSmallFrame = {420, 430};  // the first and the smallest size
constexpr SIZE kLargeFrame = {560, 580};  // the maximized and the largest size
constexpr int kCaptionButton = 15;        // side of a caption button's square
constexpr int kCornerClip = 3;            // cut off diagonally at the two top corners

constexpr SIZE SizeOf(const RECT& rect) {
  return {Width(rect), Height(rect)};
}

// Where things lie in a window of this size, in window pixels.
constexpr RECT TitleRect(SIZE window) {
  return {kFrameX - 1, kSizeFrameY, window.cx - (kFrameX - 1), kSizeFrameY + kCaptionHeight};
}

enum class CaptionButton { kMinimize, kMaximize, kClose };

constexpr RECT CaptionButtonRect(SIZE window, CaptionButton button) {
  const RECT title = TitleRect(window);
  const int fromRight = button == CaptionButton::kClose ? 18 : button == CaptionButton::kMaximize ? 36 : 54;
  const int left = title.right - fromRight;
  const int top = title.top + (title.bottom - title.top) / 2 - 8;
  return {left, top, left + kCaptionButton, top + kCaptionButton};
}

// In client pixels, of a client area of this size.
constexpr RECT PaneBarRect(SIZE client) {
  return {1, 0, client.cx - 1, 25};
}
constexpr RECT ToolBarRect(SIZE client) {
  return {5, 26, client.cx - 5, 51};
}
constexpr RECT PaneRect(SIZE client) {
  return {17, 66, 17 + client.cx - 39, 66 + client.cy - 95};
}
// The corner that sizes the window: some of it lies in the frame.
constexpr RECT GripRect(SIZE client) {
  return {client.cx - 15, client.cy - 15, client.cx + kFrameX, client.cy + kSizeFrameY + kBorderY};
}
