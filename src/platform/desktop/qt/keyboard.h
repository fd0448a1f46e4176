// Keys of Qt as keys of the program.
#pragma once

#include "platform/desktop/types.h"

class QKeyEvent;

// The VK_... number of the event's key, 0 for a key the program has no name for. With Ctrl or Alt a key that
// types no Latin letter (on a Russian layout, say) counts as the letter that a Latin keyboard has in its
// place.
unsigned KeyOf(const QKeyEvent& event);
// WM_KEYDOWN, or WM_SYSKEYDOWN with Alt.
UINT KeyDownMessage(const QKeyEvent& event);
