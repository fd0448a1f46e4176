// The program's entry in the desktop's menu. A package brings it, with the file type and the icons; a clone
// has one only for a user who asked for it by `./run --register`.
#pragma once

#include <string_view>

// Whether a desktop entry (the text of its file) was written for a clone and starts another program than
// `program`, a full path. One that its user wrote or changed is never stale.
bool IsStaleMenuEntry(std::string_view entry, std::string_view program);

// Clears an installed program's way to the menu: an entry of the user's hides the installed one, also when
// the program that it names is gone. Where it is stale it is removed below $XDG_DATA_HOME (~/.local/share),
// with the file type and the icons that came with it, and the desktop looks again. Does nothing for a program
// that is not installed, or while DAYBRIX_FOLDER is set: what is under test changes nothing outside that
// folder.
void RemoveStaleMenuEntry();
