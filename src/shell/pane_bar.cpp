#include "shell/pane_bar.h"

#include "framework/pane.h"
#include "platform/desktop/device_context.h"
#include "platform/desktop/font.h"
#include "shell/commands.h"
#include "shell/frame_metrics.h"
#include "shell/pane_bar_geometry.h"
#include "shell/skins.h"

namespace {

constexpr FontSpec kCaptionFont = {"Verdana", -9, 700, false};
constexpr int kCaptionDrop = 3;
constexpr COLORREF kCaptionColour = RGB(255, 255, 255);

}  // namespace

ZarfPaneBar::~ZarfPaneBar() {
  if (captionFont != nullptr) DeleteFont(captionFont);
}

int ZarfPaneBar::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfPaneBar";
  windowClass->background = kNoColour;
  return 0;
}

LRESULT ZarfPaneBar::OnCreate(const MessageRecord&) {
  upPicture = Bitmap::Load("section_button_up");
  downPicture = Bitmap::Load("section_button_down");
  captionFont = CreateFont(kCaptionFont);
  return 0;
}

void ZarfPaneBar::PaintSection(HDC hdc, const RECT& rect, const char* caption, bool pressed) const {
  const Bitmap* picture = pressed ? downPicture.get() : upPicture.get();
  if (picture != nullptr) hdc->DrawBitmap(*picture, rect.left, rect.top);
  hdc->SelectFont(captionFont);
  hdc->SetTextColor(kCaptionColour);
  hdc->DrawText(caption, {rect.left, rect.top + kCaptionDrop, rect.right, rect.bottom},
                DT_SINGLELINE | DT_CENTER | DT_VCENTER);
}

void ZarfPaneBar::Paint(HDC hdc, const RECT& client) const {
  const SkinRecord& skin = *GetSkin();
  if (skin.subTitle != nullptr) {
    // As wide as the whole window, so that it goes on where the title band ends.
    hdc->StretchBitmap(*skin.subTitle,
                       {client.left - kFrameX, client.top, client.right + kFrameX, client.bottom});
  } else {
    hdc->FillRect(client, skin.colorBack);
  }
  const int shown = clicked != -1 ? clicked : CurrentPaneIndex();
  int index = 0;
  for (const ZarfPane* pane : PaneList()) {
    PaintSection(hdc, SectionRect(Height(client), index), pane->Name(), index == shown);
    ++index;
  }
}

LRESULT ZarfPaneBar::OnLButtonDown(const MessageRecord& record) {
  TurnTo(ItemAt(PointFromLParam(record.lParam)));
  return 0;
}

void ZarfPaneBar::TurnTo(int index) {
  if (index == -1 || index == CurrentPaneIndex() || clicked != -1) return;
  // Turning to a pane takes its time; the button answers at once.
  clicked = index;
  RedrawNow();
  const HWND self = hwnd;
  SendMessage(Parent(), WM_COMMAND, ID_PANE, index);
  if (!IsWindow(self)) return;
  clicked = -1;
  if (CurrentPaneIndex() != index) Invalidate(nullptr, 0);  // the frame stays where it is
}

void ZarfPaneBar::Describe(int item, AccessiblePart* part) {
  if (item == kWholeWindow) {
    part->role = AccessibleRole::kTabList;
    part->items = PaneCount();
    part->currentItem = PaneCount() > 0 ? CurrentPaneIndex() : -1;
    return;
  }
  part->role = AccessibleRole::kTab;
  part->name = PaneList()[static_cast<std::size_t>(item)]->Name();
  part->state = kAccessibleSelectable | (item == CurrentPaneIndex() ? kAccessibleSelected : 0);
  part->pressable = true;
  part->place = SectionRect(ClientArea().bottom, item);
}

int ZarfPaneBar::ItemAt(POINT point) {
  return SectionAt(ClientArea().bottom, PaneCount(), point);
}

void ZarfPaneBar::DoAction(AccessibleAction, int value) {
  if (value >= 0 && value < PaneCount()) TurnTo(value);
}

LRESULT ZarfPaneBar::OnRButtonDown(const MessageRecord& record) {
  const POINT point = ScreenToClient(Parent(), ClientToScreen(hwnd, PointFromLParam(record.lParam)));
  return SendMessage(Parent(), WM_RBUTTONDOWN, record.wParam, MakeLParam(point.x, point.y));
}
