#include "shell/skins_dialog.h"

namespace {

constexpr int kTemplate = 2020;

}  // namespace

LRESULT SkinsDialog::OnInitDialog(const MessageRecord&) {
  skins = BuildSkinList();
  int current = -1;
  for (const SkinListEntry& skin : skins) {
    const int line = list.Add(skin.name);
    if (current < 0 && IsCurrentSkin(skin.fileName)) current = line;
  }
  EnableWindow(GetDlgItem(hwnd, IDOK), false);
  list.Select(current);
  list.Focus();
  return 0;
}

LRESULT SkinsDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kSkinList:
      if (HighWord(record.wParam) == LBN_SELCHANGE) EnableWindow(GetDlgItem(hwnd, IDOK), true);
      if (HighWord(record.wParam) == LBN_DBLCLK) Post(WM_COMMAND, IDOK, 0);
      return 0;
    case IDOK: {
      const int chosen = list.Selected();
      if (chosen >= 0) ChooseSkin(this, skins[static_cast<std::size_t>(chosen)].fileName);
      EndDialog(1);
      return 1;
    }
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void ShowSkinsDialog(ZarfWnd* owner) {
  SkinsDialog().Open(owner, kTemplate);
}
