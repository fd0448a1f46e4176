#include "shell/skins_dialog.h"

#include "framework/services.h"

namespace {

constexpr int kTemplate = 2020;
constexpr int kSkinList = 100;

}  // namespace

LRESULT SkinsDialog::OnInitDialog(const MessageRecord&) {
  skins = BuildSkinList();
  SendItemMessage(kSkinList, LB_RESETCONTENT, 0, 0);
  int current = -1;
  for (const SkinListEntry& skin : skins) {
    const auto line =
        SendItemMessage(kSkinList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(skin.name.c_str()));
    if (current < 0 && IsCurrentSkin(skin.fileName)) current = static_cast<int>(line);
  }
  EnableWindow(GetDlgItem(hwnd, IDOK), false);
  SendItemMessage(kSkinList, LB_SETCURSEL, static_cast<WPARAM>(current), 0);
  SetFocus(GetDlgItem(hwnd, kSkinList));
  CenterOver(Parent(), hwnd);
  return 0;
}

LRESULT SkinsDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kSkinList:
      if (HighWord(record.wParam) == LBN_SELCHANGE) EnableWindow(GetDlgItem(hwnd, IDOK), true);
      if (HighWord(record.wParam) == LBN_DBLCLK) Post(WM_COMMAND, IDOK, 0);
      return 0;
    case IDOK: {
      const LRESULT chosen = SendItemMessage(kSkinList, LB_GETCURSEL, 0, 0);
      if (chosen >= 0) ChooseSkin(skins[static_cast<std::size_t>(chosen)].fileName);
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
