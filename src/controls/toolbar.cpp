#include "controls/toolbar.h"

#include <string>

#include "controls/toolbar_geometry.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/pane.h"
#include "platform/desktop/tip.h"
#include "resources/strings.h"

namespace {

constexpr UINT kHoverTimer = 100;
constexpr int kHoverMs = 300;
constexpr int kTicksBeforeTip = 2;

constexpr int kFaceShade = 10;
constexpr int kFaceOverhang = 2;  // of the face to the left of its button
constexpr int kIconTop = 3;
constexpr int kCaptionLeft = 22;
constexpr int kTipGap = 4;

constexpr COLORREF kClassGrey = RGB(128, 128, 128);

std::unique_ptr<Bitmap> LoadIcon(int iconId) {
  return Bitmap::Load(("tool_" + std::to_string(iconId)).c_str());
}

}  // namespace

bool ZarfToolBar::AddButton(int commandId, int iconId, int captionStringId, int tipStringId, int kind) {
  if (buttons.size() >= kMaxButtons) return false;
  buttons.push_back({commandId, iconId, captionStringId, tipStringId, kind, nullptr});
  if (IsWindow(hwnd)) {
    buttons.back().icon = LoadIcon(iconId);
    Invalidate(nullptr, 0);
  }
  return true;
}

int ZarfToolBar::ButtonRect(int commandId, RECT* rect) {
  for (int index = 0; index < static_cast<int>(buttons.size()); ++index) {
    if (buttons[static_cast<std::size_t>(index)].commandId != commandId) continue;
    *rect = ToolButtonRect(ClientArea().bottom, index);
    return index;
  }
  return -1;
}

int ZarfToolBar::ItemAt(POINT point) {
  return ToolButtonAt(ClientArea().bottom, static_cast<int>(buttons.size()), point);
}

int ZarfToolBar::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfToolBar";
  windowClass->background = kClassGrey;
  return 0;
}

LRESULT ZarfToolBar::OnCreate(const MessageRecord&) {
  background = Bitmap::Load("tbar1");
  cornerPicture = Bitmap::Load("tbar1_corner");
  for (Button& button : buttons) button.icon = LoadIcon(button.iconId);
  return 0;
}

LRESULT ZarfToolBar::OnClose(const MessageRecord&) {
  if (hoverTimerRuns) KillTimer(hwnd, kHoverTimer);
  hoverTimerRuns = false;
  return 0;
}

void ZarfToolBar::PaintButton(HDC hdc, const RECT& rect, const Button& button, State state) const {
  const ZarfPane* pane = CurrentPane();
  if (state != State::kNone) {
    const RECT face{rect.left - kFaceOverhang, rect.top, rect.right, rect.bottom};
    hdc->FillRect(face, Darken(pane != nullptr ? pane->Colours().accent : kClassGrey, kFaceShade));
    const COLORREF outline = state == State::kHot ? RGB(0, 0, 0) : RGB(255, 255, 255);
    Frame3D(hdc, face, outline, outline);
  }
  if (button.icon != nullptr) hdc->DrawBitmap(*button.icon, rect.left, rect.top + kIconTop);
  hdc->SelectFont(GetFont(FontSmall, 400));
  hdc->SetTextColor(pane != nullptr ? pane->Colours().stripText : RGB(255, 255, 255));
  hdc->DrawText(resources::FindText(button.captionStringId),
                {rect.left + kCaptionLeft, rect.top, rect.right, rect.bottom}, DT_SINGLELINE | DT_VCENTER);
}

void ZarfToolBar::Paint(HDC hdc, const RECT& client) const {
  if (background != nullptr) hdc->StretchBitmap(*background, client);
  if (cornerPicture != nullptr) hdc->DrawBitmap(*cornerPicture, client.left, client.top);
  for (int index = 0; index < static_cast<int>(buttons.size()); ++index) {
    PaintButton(hdc, ToolButtonRect(Height(client), index), buttons[static_cast<std::size_t>(index)],
                index == activeIndex ? activeState : State::kNone);
  }
}

bool ZarfToolBar::SetActive(int index, State state) {
  if (index == activeIndex && state == activeState) return false;
  activeIndex = index;
  activeState = state;
  hoverTicks = 0;
  Invalidate(nullptr, 0);
  return true;
}

LRESULT ZarfToolBar::OnLButtonDown(const MessageRecord& record) {
  const int index = ItemAt(PointFromLParam(record.lParam));
  // The click that closes a button's menu must not open it again.
  if (index == -1 || Tracking() || telling) return 0;
  SetActive(index, State::kPressed);
  Update();
  Track();
  return 0;
}

LRESULT ZarfToolBar::OnMouseMove(const MessageRecord& record) {
  if (telling) return 0;
  const int index = ItemAt(PointFromLParam(record.lParam));
  if (Tracking()) {
    SetActive(activeIndex, index == activeIndex ? State::kPressed : State::kHot);
    return 0;
  }
  if (!hoverTimerRuns) SetTimer(hwnd, kHoverTimer, kHoverMs);
  hoverTimerRuns = true;
  SetActive(index, index != -1 ? State::kHot : State::kNone);
  return 0;
}

LRESULT ZarfToolBar::OnLButtonUp(const MessageRecord& record) {
  if (!Tracking()) return 0;
  Release(ItemAt(PointFromLParam(record.lParam)));
  return 0;
}

void ZarfToolBar::Release(int index) {
  const HWND self = hwnd;
  if (index != -1 && index == activeIndex) {
    Tell(buttons[static_cast<std::size_t>(index)]);
    if (!IsWindow(self)) return;  // the command took the toolbar away
  }
  telling = false;
  EndTracking();
  SetActive(-1, State::kNone);
}

// The button stays drawn pressed meanwhile, but the mouse is free for the menu or the box that may open.
void ZarfToolBar::Tell(const Button& button) {
  if (button.kind != kMenuToolButton) {
    TellParent(button.commandId, 0);
    return;
  }
  telling = true;
  if (SetActive(activeIndex, State::kPressed)) Update();
  EndTracking();
  SendMessage(Parent(), WM_COMMAND, MakeWParam(static_cast<unsigned>(button.commandId), 0), 0);
}

// Losing the mouse to another window counts as letting go elsewhere.
void ZarfToolBar::OnTrackingEnd() {
  if (!telling) SetActive(-1, State::kNone);
}

LRESULT ZarfToolBar::OnTimer(const MessageRecord& record) {
  if (record.wParam != kHoverTimer || !hoverTimerRuns || Tracking() || telling) return 0;
  RECT place;
  GetWindowRect(hwnd, &place);
  if (Contains(place, GetCursorPos())) {
    if (activeIndex != -1 && ++hoverTicks == kTicksBeforeTip)
      ShowTipOf(buttons[static_cast<std::size_t>(activeIndex)]);
    return 0;
  }
  KillTimer(hwnd, kHoverTimer);
  hoverTimerRuns = false;
  SetActive(-1, State::kNone);
  return 0;
}

void ZarfToolBar::ShowTipOf(const Button& button) {
  RECT rect;
  ButtonRect(button.commandId, &rect);
  ShowTip(hwnd, {rect.left, rect.bottom + kTipGap}, resources::FindText(button.tipStringId));
}

void ZarfToolBar::Describe(int item, AccessiblePart* part) {
  if (item == kWholeWindow) {
    part->role = AccessibleRole::kToolBar;
    part->items = static_cast<int>(buttons.size());
    return;
  }
  const Button& button = buttons[static_cast<std::size_t>(item)];
  part->role = button.kind == kMenuToolButton ? AccessibleRole::kMenuButton : AccessibleRole::kButton;
  part->name = resources::FindText(button.tipStringId);
  part->state = item == activeIndex && activeState == State::kPressed ? kAccessiblePressed : 0;
  part->pressable = true;
  part->place = ToolButtonRect(ClientArea().bottom, item);
}

void ZarfToolBar::DoAction(AccessibleAction action, int value) {
  if (action != AccessibleAction::kPress || Tracking() || telling) return;
  if (value < 0 || value >= static_cast<int>(buttons.size())) return;
  SetActive(value, State::kPressed);
  Release(value);
}
