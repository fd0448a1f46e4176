// What the main frame does for commands that concern neither its panes nor its menus, and what its keys stand
// for.
#pragma once

#include <string>

#include "framework/zarf_wnd.h"

// Posts to the frame the command that an accelerator of the main table stands for. Some stand for one only
// while a certain pane is current; nothing is posted at other times. False when `id` is no accelerator.
bool PostAccelerator(HWND frame, unsigned id);

// Opens the options, the skins or a web page over the frame, chooses a skin, shows `about`, or closes the
// frame. Other commands are ignored.
void RunFrameCommand(ZarfWnd& frame, unsigned id, const std::string& about);
