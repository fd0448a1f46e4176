// The File and Help menus of the main frame.
#pragma once

#include "platform/desktop/types.h"

// Opens the menu with its corner at a screen point; what is chosen is posted to `frame` as WM_COMMAND. Items
// whose command the program does not have are grey.
void TrackFileMenu(HWND frame, POINT screenPoint);
void TrackHelpMenu(HWND frame, POINT screenPoint);
