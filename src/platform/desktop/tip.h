// The small notes that explain what the mouse points at.
#pragma once

#include "platform/desktop/types.h"

// Shows a text in code page 1252 at a point in client pixels, until the mouse leaves the window or some
// seconds have passed. An empty text takes the tip away. Nothing is shown for a window that is gone, or while
// a menu is open.
void ShowTip(HWND window, POINT point, const char* text);
