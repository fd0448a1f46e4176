// A device context that draws nothing and writes down the calls, for tests of what a control paints.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/device_context.h"

enum class DrawingKind { kFill, kLine, kText, kBitmap, kStretch, kPolygon, kEllipse };

struct DrawingCall {
  DrawingKind kind;
  RECT rect;  // of a line: its two ends; of a picture drawn in its own size: its corner, twice; of a polygon:
              // nothing
  COLORREF colour = kNoColour;  // of the fill, the pen or the text
  std::string text = {};        // code page 1252
  UINT format = 0;              // DT_...
  HFONT font = nullptr;
  const Bitmap* bitmap = nullptr;  // only to be compared
  std::vector<POINT> corners = {};
  int penWidth = 1;              // of a line
  std::optional<RECT> region{};  // selected when it was drawn
};

class RecordingDc : public DeviceContext {
 public:
  std::vector<DrawingCall> calls;

  void SelectRegion(const RECT* newRegion) override {
    region = newRegion != nullptr ? std::optional(*newRegion) : std::nullopt;
  }
  void FillRect(const RECT& rect, COLORREF colour) override {
    Note({.kind = DrawingKind::kFill, .rect = rect, .colour = colour});
  }
  void DrawLine(int x1, int y1, int x2, int y2) override {
    Note(
        {.kind = DrawingKind::kLine, .rect = {x1, y1, x2, y2}, .colour = PenColor(), .penWidth = PenWidth()});
  }
  void DrawText(const char* text, const RECT& rect, UINT format) override {
    Note({DrawingKind::kText, rect, TextColor(), text, format, Font()});
  }
  void DrawBitmap(const Bitmap& bitmap, int x, int y) override {
    Note({.kind = DrawingKind::kBitmap, .rect = {x, y, x, y}, .bitmap = &bitmap});
  }
  void StretchBitmap(const Bitmap& bitmap, const RECT& rect) override {
    Note({.kind = DrawingKind::kStretch, .rect = rect, .bitmap = &bitmap});
  }
  void Polygon(std::span<const POINT> corners, COLORREF colour) override {
    Note({.kind = DrawingKind::kPolygon,
          .rect = {},
          .colour = colour,
          .corners = {corners.begin(), corners.end()}});
  }
  void Ellipse(const RECT& box, COLORREF colour) override {
    Note({.kind = DrawingKind::kEllipse, .rect = box, .colour = colour});
  }

  // The calls of one kind, in order.
  std::vector<DrawingCall> Of(DrawingKind kind) const {
    std::vector<DrawingCall> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [kind](const DrawingCall& call) { return call.kind == kind; });
    return found;
  }
  // The first text drawn that reads so; null when there is none.
  const DrawingCall* FindText(const std::string& text) const {
    const auto found = std::find_if(calls.begin(), calls.end(), [&text](const DrawingCall& call) {
      return call.kind == DrawingKind::kText && call.text == text;
    });
    return found != calls.end() ? &*found : nullptr;
  }
  // The colour that fills and lines leave at a point; kNoColour where they leave nothing. Slanted lines do
  // not count.
  COLORREF ColourAt(POINT point) const {
    COLORREF colour = kNoColour;
    for (const DrawingCall& call : calls) {
      if (Covers(call, point)) colour = call.colour;
    }
    return colour;
  }
  // Expects a colour at points; a failure names the point.
  void ExpectColour(COLORREF colour, const std::vector<POINT>& points) const {
    for (const POINT& point : points) EXPECT_EQ(ColourAt(point), colour) << point.x << "," << point.y;
  }

 private:
  void Note(DrawingCall call) {
    call.region = region;
    calls.push_back(std::move(call));
  }
  static bool Covers(const DrawingCall& call, POINT point) {
    if (call.region && !Contains(*call.region, point)) return false;
    if (call.kind == DrawingKind::kFill) return Contains(call.rect, point);
    if (call.kind != DrawingKind::kLine) return false;
    const auto [x1, y1, x2, y2] = call.rect;
    if (x1 != x2 && y1 != y2) return false;
    // The end itself is not drawn, wherever the line comes from.
    const auto within = [](int value, int from, int to) {
      return from <= to ? value >= from && value < to : value > to && value <= from;
    };
    return y1 == y2 ? point.y == y1 && within(point.x, x1, x2) : point.x == x1 && within(point.y, y1, y2);
  }

  std::optional<RECT> region;
};
