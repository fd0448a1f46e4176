// The program's texts by number, in code page 1252 (they are plain ASCII). Numbers are fixed: code, dialogs
// and the menus of the views refer to them.
#pragma once

namespace resources {

// The text with this number, zero-terminated, owned by the table; the empty text when there is none.
const char* FindText(int id);

}  // namespace resources
