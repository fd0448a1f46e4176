// Mouse cursors.
#pragma once

#include "platform/desktop/types.h"

// The desktop's own cursors, by the names the program uses for them.
constexpr const char* IDC_ARROW = "IDC_ARROW";
constexpr const char* IDC_WAIT = "IDC_WAIT";
constexpr const char* IDC_SIZENWSE = "IDC_SIZENWSE";

// A cursor of the desktop or one of the program's pictures ("CUR_HAND1", "CUR_DRAG_TRUE",
// "CUR_DRAG_TRUE_COPY", "CUR_DRAG_STOP"). Owned by the layer, the same for the same name. An unknown name
// gives the arrow.
HCURSOR LoadCursor(const char* name);

// Shows a cursor over the window under the mouse (the one with the capture, if any) until the next mouse move
// decides otherwise. Answers the one shown before.
HCURSOR SetCursor(HCURSOR cursor);

// While a window has the capture (window.h) it may keep the cursor in a rectangle of screen pixels (null:
// lets it go again), and hide it. Both end with the capture, whichever way that ends; without one nothing
// happens. Where the desktop lets no program move the cursor, it stays free, but mouse messages come as if it
// were not.
void ClipCursor(const RECT* screenRect);
void ShowCursor(bool show);
// Moves the cursor to a point of the screen. False where the desktop does not let it: it stays where it is.
bool SetCursorPos(POINT screenPoint);

// The hourglass over the whole program, and back. Calls nest.
void PushWaitCursor();
void PopWaitCursor();
