#include "shell/skins_menu.h"

#include <utility>
#include <vector>

#include "framework/zarf_wnd.h"
#include "platform/desktop/menu.h"
#include "shell/commands.h"
#include "shell/skins.h"

namespace {

// In the last menu: the folder may change before its choice arrives.
std::vector<SkinListEntry>& OfferedSkins() {
  static std::vector<SkinListEntry> skins;
  return skins;
}

}  // namespace

void ShowSkinsMenu(ZarfWnd& owner) {
  OfferedSkins() = BuildSkinList();
  if (OfferedSkins().empty()) return;
  const HMENU menu = CreatePopupMenu();
  unsigned command = ID_FIRST_SKIN;
  for (const SkinListEntry& skin : OfferedSkins()) {
    const UINT current = IsCurrentSkin(skin.fileName) ? MF_CHECKED | MF_GRAYED : 0;
    AppendMenu(menu, MF_STRING | MF_LITERAL | current, command++, skin.name.c_str());
  }
  TrackPopupMenu(menu, GetCursorPos(), owner.Handle());
  DestroyMenu(menu);
}

void SelectSkin(ZarfWnd* owner, int index) {
  if (index < 0 || !std::cmp_less(index, OfferedSkins().size())) return;
  ChooseSkin(owner, OfferedSkins()[static_cast<std::size_t>(index)].fileName);
}
