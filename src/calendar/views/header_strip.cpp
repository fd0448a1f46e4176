#include "calendar/views/header_strip.h"

#include "framework/drawing.h"
#include "framework/fonts.h"

namespace {

constexpr int kIndent = 8;
constexpr COLORREF kCaption = RGB(255, 255, 255);

}  // namespace

void HeaderStrip::Paint(HDC hdc, const RECT& client) const {
  StretchBmpResource(hdc, "tbar2", client);
  hdc->SelectFont(GetFont(FontSmall, 700));
  hdc->SetTextColor(kCaption);
  hdc->DrawText(caption.c_str(), {client.left + kIndent, client.top, client.right, client.bottom},
                DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
}

int HeaderStrip::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "HeaderStrip";
  windowClass->background = kNoColour;
  return 0;
}
