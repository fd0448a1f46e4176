// How the main frame looks: the band with the title and the caption buttons, the borders, and the coloured
// bands around the pane. Everything is a function of the sizes, the skin and the pane's colours.
#pragma once

#include <array>
#include <string>

#include "platform/desktop/device_context.h"
#include "shell/frame_metrics.h"

class ZarfPane;
struct SkinRecord;

// What a caption button shows.
constexpr int kNormalButton = 0;
constexpr int kHotButton = 1;  // the mouse is over it
constexpr int kPressedButton = 2;
using CaptionStates = std::array<int, 3>;  // by CaptionButton

// The frame of a window of this size, in window pixels, with its title (code page 1252).
void PaintFrame(HDC hdc, SIZE window, const SkinRecord& skin, const std::string& title,
                const CaptionStates& states);
// The bands and the sizing grip in the client area, in client pixels.
void PaintBands(HDC hdc, SIZE client, const SkinRecord& skin, const ZarfPane& pane);
