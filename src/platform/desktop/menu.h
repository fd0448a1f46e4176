// Popup menus. The desktop's own: they open by mouse and keyboard, can be walked with the arrow keys and read
// aloud.
#pragma once

#include "platform/desktop/types.h"

constexpr UINT MF_STRING = 0x0000;
constexpr UINT MF_GRAYED = 0x0001;
constexpr UINT MF_CHECKED = 0x0008;
constexpr UINT MF_SEPARATOR = 0x0800;
// The text is the user's own: an & in it is an &, and what is very long is cut.
constexpr UINT MF_LITERAL = 0x10000;

// An empty menu, owned by the caller until DestroyMenu.
HMENU CreatePopupMenu();
void DestroyMenu(HMENU menu);
// Adds an item at the end. `text` is in code page 1252: & marks the next letter as the item's key, a tab sets
// off the name of the shortcut. `command` is what the owner is told.
void AppendMenu(HMENU menu, UINT flags, unsigned command, const char* text);
// Puts the mark of the current choice on one item, and opens the menu there.
void SetMenuCurrent(HMENU menu, unsigned command);

// Whether a menu, or the list of a drop-down box, is open and has mouse and keys until it is left.
bool IsMenuOpen();

// Opens the menu with its corner at a screen point and waits until an item is chosen or the menu is left. A
// chosen item is posted to the owner as WM_COMMAND with its command and answered; 0 for none.
unsigned TrackPopupMenu(HMENU menu, POINT screenPoint, HWND owner);
