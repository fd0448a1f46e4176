// The commands of the program's menus and keys, as WM_COMMAND carries them in its low word.
#pragma once

constexpr unsigned ID_ITEM_NEW = 1001;
constexpr unsigned ID_ITEM_EDIT = 1002;
constexpr unsigned ID_ITEM_DELETE = 1003;
