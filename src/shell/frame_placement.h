// Where the main frame opens and how large it is: placed as it was left, sized between two bounds,
// "maximized" between two fixed sizes.
#pragma once

#include <optional>

#include "core/ini_file.h"
#include "platform/desktop/types.h"

// The rectangle the frame was left at, in screen pixels. None when one of its four numbers is missing or its
// top left corner lies off the desktop to the right or below.
std::optional<RECT> ReadPlacement(const core::IniFile& settings, const RECT& desktop);
// The number of the pane that was shown last; `other` when none is noted down.
int ReadPane(const core::IniFile& settings, int other);
// Notes both down, in one write: who closes the program should not have to wait for a busy file more than
// once.
void WriteFrameState(const core::IniFile& settings, const RECT& window, int pane);

// Whether a frame has the large one of its two sizes. A window manager may leave a pixel or two of what was
// asked for where the screen's scale is no whole number.
bool HasLargeSize(const RECT& window);
// The rectangle of a frame that is to take the large size, moved so that it ends on the desktop (or begins on
// it, where that is too small), or the small one.
RECT MaximizedPlacement(const RECT& window, const RECT& desktop, bool large);
