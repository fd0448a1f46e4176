#include "controls/fly_menu.h"

#include <algorithm>
#include <cstring>

#include "controls/glyph.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/menu.h"
#include "resources/strings.h"

namespace {

constexpr int kArrowAreaWidth = 10;
constexpr int kArrowLeft = 2;
constexpr int kCaptionGap = 3;
constexpr int kFocusGap = 2;

}  // namespace

TFlyMenu::TFlyMenu(COLORREF ground, COLORREF text) : background(ground), textColour(text) {}

void TFlyMenu::ClearItems() {
  items.clear();
  hasCurrent = false;
}

bool TFlyMenu::Add(const Item& item) {
  if (items.size() >= kMaxItems) return false;
  items.push_back(item);
  return true;
}

bool TFlyMenu::AddItem(int stringId, int commandId) {
  return Add({stringId, commandId, "", false});
}

bool TFlyMenu::AddItemText(const char* text, int commandId) {
  return Add({-1, commandId, std::string(text, strnlen(text, kCaptionSize - 1)), false});
}

bool TFlyMenu::AddSeparator() {
  return Add({-1, 0, "", true});
}

const TFlyMenu::Item* TFlyMenu::FindItem(int commandId) const {
  const auto found = std::find_if(items.begin(), items.end(), [commandId](const Item& item) {
    return !item.separator && item.commandId == commandId;
  });
  return found != items.end() ? &*found : nullptr;
}

bool TFlyMenu::SetCurrent(int commandId) {
  const Item* item = FindItem(commandId);
  return item != nullptr && TakeCaption(*item);
}

bool TFlyMenu::TakeCaption(const Item& item) {
  current = item.commandId;
  hasCurrent = true;
  const char* text = item.text.empty() ? resources::FindText(item.stringId) : item.text.c_str();
  if (std::strncmp(caption, text, kCaptionSize - 1) == 0) return false;
  std::memset(caption, 0, sizeof caption);
  std::memcpy(caption, text, strnlen(text, kCaptionSize - 1));
  Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kValue);
  return true;
}

RECT TFlyMenu::ActiveArea() const {
  RECT client = ClientArea();
  client.right = std::min(client.right, client.left + kArrowAreaWidth);
  return client;
}

int TFlyMenu::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "TFlyMenu";
  windowClass->background = RGB(255, 255, 255);
  windowClass->cursor = nullptr;
  return 0;
}

LRESULT TFlyMenu::OnCreate(const MessageRecord&) {
  SetTabStop(hwnd, true);
  arrow = LoadGlyph(kGlyphDown, background, textColour);
  return 0;
}

void TFlyMenu::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, background);
  int left = client.left + kArrowLeft;
  if (arrow != nullptr) {
    const int shift = pressed ? 1 : 0;
    hdc->DrawBitmap(*arrow, left + shift, client.top + Height(client) / 2 - arrow->Height() / 2 + shift);
    left += arrow->Width() + kCaptionGap;
  }
  hdc->SelectFont(GetFont(FontSmall, 400));
  hdc->SetTextColor(textColour);
  hdc->DrawText(caption, {left, client.top, client.right, client.bottom},
                DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
}

// As wide as arrow and caption, so that it can be seen what it belongs to.
std::optional<OwnerDrawn::FocusMark> TFlyMenu::FocusMarkIn(const RECT& client) const {
  const SIZE text = MeasureText(GetFont(FontSmall, 400), caption);
  const int middle = client.top + Height(client) / 2;
  const int rise = text.cy / 2 + kFocusGap;
  const int right = kArrowLeft + (arrow != nullptr ? arrow->Width() + kCaptionGap : 0) + text.cx + kFocusGap;
  return FocusMark{{client.left, std::max(middle - rise, client.top),
                    std::min(client.left + right, client.right), std::min(middle + rise, client.bottom)},
                   background};
}

const char* TFlyMenu::CursorAt(POINT point) {
  return Contains(ActiveArea(), point) ? "CUR_HAND1" : IDC_ARROW;
}

HMENU TFlyMenu::BuildMenu() const {
  const HMENU menu = CreatePopupMenu();
  for (const Item& item : items) {
    const auto command = static_cast<unsigned>(item.commandId);
    if (item.separator) {
      AppendMenu(menu, MF_SEPARATOR, 0, "");
    } else if (item.stringId == -1) {
      AppendMenu(menu, MF_STRING | MF_LITERAL, command, item.text.c_str());
    } else {
      AppendMenu(menu, MF_STRING, command, resources::FindText(item.stringId));
    }
  }
  if (hasCurrent) SetMenuCurrent(menu, static_cast<unsigned>(current));
  return menu;
}

LRESULT TFlyMenu::OnLButtonDown(const MessageRecord& record) {
  if (Contains(ActiveArea(), PointFromLParam(record.lParam))) OpenMenu();
  return 0;
}

LRESULT TFlyMenu::OnKeyDown(const MessageRecord& record) {
  constexpr unsigned kF4 = VK_F1 + 3;
  const WPARAM key = record.wParam;
  if (key != VK_SPACE && key != VK_UP && key != VK_DOWN && key != kF4) return DefaultProc(record);
  OpenMenu();
  return 0;
}

void TFlyMenu::OpenMenu() {
  if (pressed) return;
  pressed = true;
  RedrawNow();
  const HWND self = hwnd;
  const HMENU menu = BuildMenu();
  // The choice comes as a posted command: an item's number may be 0, which the answer cannot tell from none.
  TrackPopupMenu(menu, ClientToScreen(self, {0, ClientArea().bottom}), self);
  DestroyMenu(menu);
  if (!IsWindow(self)) return;  // the program ended while the menu was open
  pressed = false;
  SetCursor(LoadCursor(IDC_ARROW));
  Invalidate(nullptr, 0);
}

LRESULT TFlyMenu::OnCommand(const MessageRecord& record) {
  const Item* item = FindItem(static_cast<int>(LowWord(record.wParam)));
  if (item == nullptr) return 0;
  TakeCaption(*item);
  TellParent(item->commandId, reinterpret_cast<LPARAM>(caption));
  return 0;
}

void TFlyMenu::Describe(int, AccessiblePart* part) {
  part->role = AccessibleRole::kChooser;
  part->value = caption;
  part->pressable = true;
}

void TFlyMenu::DoAction(AccessibleAction action, int) {
  if (action == AccessibleAction::kPress) OpenMenu();
}
