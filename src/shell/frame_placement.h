// Where the main frame opens and how large it is: placed as it was left, sized between two bounds,
// "maximized" between two fixed sizes.
#pragma once

#include <optional>

#include "core/ini_file.h"
#include "platform/desktop/types.h"

// The rectangle the frame was left at, in screen pixels. None when one of its four numbers is missing or its
// top left corner lies off the desktop to the right or below.
std::optional<RECT> ReadPlacement(const core::IniFile& settings, const RECT& desktop);
void WritePlacement(const core::IniFile& settings, const RECT& window);

// The rectangle a frame takes when its maximize button is pressed: the large size, moved so that it ends on
// the desktop (or begins on it, where that is too small), or the small one if it has just the large one.
RECT MaximizedPlacement(const RECT& window, const RECT& desktop);
