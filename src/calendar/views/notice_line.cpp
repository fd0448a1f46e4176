#include "calendar/views/notice_line.h"

#include "calendar/views/palette.h"
#include "framework/fonts.h"

bool NoticeLine::Say(const std::string& text) {
  if (text == notice) return false;
  const bool wasShown = IsShown();
  notice = text;
  Invalidate(nullptr, 0);
  if (IsShown() == wasShown) return false;
  if (IsShown()) {
    Show();
  } else {
    Hide();
  }
  return true;
}

void NoticeLine::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, kPanelBackground);
  hdc->SelectFont(GetFont(FontSans, 400));
  hdc->SetTextColor(kRowMark);
  hdc->DrawText(notice.c_str(), client, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
}

int NoticeLine::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "NoticeLine";
  windowClass->background = kNoColour;
  return 0;
}

LRESULT NoticeLine::OnCreate(const MessageRecord&) {
  Hide();
  return 0;
}

void NoticeLine::Describe(int item, AccessiblePart* part) {
  if (item != kWholeWindow) return;
  part->role = AccessibleRole::kText;
  part->name = notice;
}
