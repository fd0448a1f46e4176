// The commands of the program's menus, toolbar and keys, as WM_COMMAND carries them in its low word.
#pragma once

constexpr unsigned ID_PANE = 1000;  // lParam: index of the pane to show
constexpr unsigned ID_ITEM_NEW = 1001;
constexpr unsigned ID_ITEM_EDIT = 1002;
constexpr unsigned ID_ITEM_DELETE = 1003;
constexpr unsigned ID_FIND = 1004;
constexpr unsigned ID_FILE_MENU = 1005;
constexpr unsigned ID_FILE_NEW = 1006;
constexpr unsigned ID_FILE_OPEN = 1007;
constexpr unsigned ID_OPTIONS = 1009;
constexpr unsigned ID_PASSWORDS = 1010;
constexpr unsigned ID_COMPACT = 1011;
constexpr unsigned ID_EXIT = 1012;
constexpr unsigned ID_ADDRESS_BOOK = 1013;
constexpr unsigned ID_HELP_MENU = 1014;
constexpr unsigned ID_ABOUT = 1016;
constexpr unsigned ID_UNDO_DELETE = 1023;
constexpr unsigned ID_CUT = 1024;
constexpr unsigned ID_COPY = 1025;
constexpr unsigned ID_PASTE = 1026;
constexpr unsigned ID_INTERNET_EVENTS = 1027;
constexpr unsigned ID_SERVER_SETUP = 1028;
constexpr unsigned ID_FILE_SAVE_AS = 1031;
constexpr unsigned ID_PRODUCT_WEB = 1032;
constexpr unsigned ID_OPEN_ATTACHMENT = 1033;
constexpr unsigned ID_PRINT = 1036;
constexpr unsigned ID_IMPORT = 1037;
constexpr unsigned ID_EXPORT = 1038;
constexpr unsigned ID_HELP_CONTENTS = 1039;
constexpr unsigned ID_COMPANY_WEB = 1041;
constexpr unsigned ID_SKINS = 1042;
constexpr unsigned ID_FIRST_SKIN = 1500;  // + number in the list of skins
constexpr unsigned ID_LAST_SKIN = 1999;
