#include "shell/frame_menus.h"

#include <span>

#include "platform/desktop/menu.h"
#include "resources/strings.h"
#include "shell/commands.h"
#include "shell/web_pages.h"

namespace {

struct MenuItem {
  unsigned command;  // 0: a separator
  int text;
  bool available;
};

constexpr MenuItem kFileMenu[] = {
    {ID_FILE_NEW, 200, true},
    {ID_FILE_OPEN, 201, true},
    {0, 0, false},
    {ID_FILE_SAVE_AS, 202, true},
    {ID_COMPACT, 203, true},
    {0, 0, false},
    {ID_IMPORT, 204, false},
    {ID_EXPORT, 205, false},
    {0, 0, false},
    {ID_PRINT, 206, false},
    {0, 0, false},
    {ID_PASSWORDS, 207, true},
    {0, 0, false},
    {ID_OPTIONS, 208, true},
    {0, 0, false},
    {ID_SKINS, 209, true},
    {0, 0, false},
    {ID_EXIT, 210, true},
};

void Track(std::span<const MenuItem> items, HWND frame, POINT screenPoint) {
  const HMENU menu = CreatePopupMenu();
  for (const MenuItem& item : items) {
    const UINT flags = item.command == 0 ? MF_SEPARATOR : item.available ? MF_STRING : MF_STRING | MF_GRAYED;
    AppendMenu(menu, flags, item.command, item.command == 0 ? "" : resources::FindText(item.text));
  }
  TrackPopupMenu(menu, screenPoint, frame);
  DestroyMenu(menu);
}

}  // namespace

void TrackFileMenu(HWND frame, POINT screenPoint) {
  Track(kFileMenu, frame, screenPoint);
}
void TrackHelpMenu(HWND frame, POINT screenPoint) {
  const MenuItem items[] = {
      {ID_HELP_CONTENTS, 211, true},
      {0, 0, false},
      {ID_COMPANY_WEB, 212, *kCompanyPage != '\0'},
      {ID_PRODUCT_WEB, 213, *kProductPage != '\0'},
      {0, 0, false},
      {ID_ABOUT, 214, true},
  };
  Track(items, frame, screenPoint);
}
