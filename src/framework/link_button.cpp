#include "framework/link_button.h"

#include <cstring>

#include "framework/drawing.h"
#include "framework/fonts.h"
#include "resources/strings.h"

namespace {

constexpr std::size_t kCaptionSize = 255;  // with the zero byte

}  // namespace

ZarfClassLinkButton::ZarfClassLinkButton(int newCommandId, const Look& newLook, const char* newCaption,
                                         int newCaptionStringId, UINT newFormat)
    : commandId(newCommandId),
      look(newLook),
      caption(newCaption, strnlen(newCaption, kCaptionSize - 1)),
      captionStringId(newCaptionStringId),
      format(newFormat) {}

int ZarfClassLinkButton::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfClassLinkButton";
  windowClass->background = kButtonFace;
  windowClass->cursor = nullptr;
  return 0;
}

void ZarfClassLinkButton::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, look.background);
  hdc->SelectFont(GetFont(FontSans, 400));
  hdc->SetTextColor(hot ? look.hotText : look.text);
  hdc->DrawText(Caption(), client, format);
}

const char* ZarfClassLinkButton::Caption() const {
  return captionStringId != -1 ? resources::FindText(captionStringId) : caption.c_str();
}

LRESULT ZarfClassLinkButton::OnCreate(const MessageRecord&) {
  SetTabStop(hwnd, true);
  return 0;
}

std::optional<OwnerDrawn::FocusMark> ZarfClassLinkButton::FocusMarkIn(const RECT& client) const {
  return FocusMark{client, look.background};
}

const char* ZarfClassLinkButton::CursorAt(POINT) {
  return "CUR_HAND1";
}

LRESULT ZarfClassLinkButton::OnLButtonDown(const MessageRecord&) {
  SetHot(true);
  Track();
  return 0;
}

LRESULT ZarfClassLinkButton::OnMouseMove(const MessageRecord& record) {
  if (Tracking()) SetHot(Inside(record));
  return 0;
}

LRESULT ZarfClassLinkButton::OnLButtonUp(const MessageRecord& record) {
  if (!Tracking()) return 0;
  EndTracking();
  if (Inside(record)) Tell();
  return 0;
}

void ZarfClassLinkButton::OnTrackingEnd() {
  SetHot(false);
}

LRESULT ZarfClassLinkButton::OnKeyDown(const MessageRecord& record) {
  if (record.wParam != VK_SPACE && record.wParam != VK_RETURN) return DefaultProc(record);
  Tell();
  return 0;
}

void ZarfClassLinkButton::Tell() {
  TellParent(commandId, 0);
}

void ZarfClassLinkButton::Describe(int, AccessiblePart* part) {
  part->role = AccessibleRole::kLink;
  part->name = Caption();
  part->state = hot ? kAccessiblePressed : 0;
  part->pressable = true;
}

void ZarfClassLinkButton::DoAction(AccessibleAction action, int) {
  if (action == AccessibleAction::kPress) Tell();
}

void ZarfClassLinkButton::SetHot(bool newHot) {
  if (newHot == hot) return;
  hot = newHot;
  Invalidate(nullptr, 0);
}

bool ZarfClassLinkButton::Inside(const MessageRecord& mouse) const {
  return Contains(ClientArea(), PointFromLParam(mouse.lParam));
}
