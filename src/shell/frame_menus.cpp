#include "shell/frame_menus.h"

#include <span>

#include "platform/desktop/menu.h"
#include "resources/strings.h"
#include "resources/text_ids.h"
#include "shell/commands.h"
#include "shell/web_pages.h"

namespace {

struct MenuItem {
  unsigned command;  // 0: a separator
  int text;
  bool available;
};

constexpr MenuItem kFileMenu[] = {
    {ID_FILE_NEW, text::kNewFileItem, true},
    {ID_FILE_OPEN, text::kOpenFileItem, true},
    {0, 0, false},
    {ID_FILE_SAVE_AS, text::kSaveAsItem, true},
    {ID_COMPACT, text::kCompactItem, true},
    {0, 0, false},
    {ID_IMPORT, text::kImportItem, true},
    {ID_EXPORT, text::kExportItem, true},
    {0, 0, false},
    {ID_PRINT, text::kPrintReportItem, true},
    {0, 0, false},
    {ID_PASSWORDS, text::kPasswordsItem, true},
    {0, 0, false},
    {ID_ADDRESS_BOOK, text::kAddressBookItem, true},
    {ID_INTERNET_EVENTS, text::kInternetEventsItem, true},
    {ID_SERVER_SETUP, text::kServerSetupItem, true},
    {0, 0, false},
    {ID_OPTIONS, text::kOptionsItem, true},
    {0, 0, false},
    {ID_SKINS, text::kSkinsItem, true},
    {0, 0, false},
    {ID_EXIT, text::kExitItem, true},
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
      {ID_HELP_CONTENTS, text::kHelpContentsItem, true},
      {0, 0, false},
      {ID_COMPANY_WEB, text::kCompanyWebItem, *kCompanyPage != '\0'},
      {ID_PRODUCT_WEB, text::kProductWebItem, *kProductPage != '\0'},
      {0, 0, false},
      {ID_ABOUT, text::kAboutItem, true},
  };
  Track(items, frame, screenPoint);
}
