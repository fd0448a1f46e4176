#include "controls/tabs.h"

#include <algorithm>
#include <cstring>

#include "controls/tabs_geometry.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "platform/desktop/cursor.h"

namespace {

constexpr std::size_t kCaptionSize = 255;  // with the zero byte
constexpr int kFootHeight = 3;             // of the strip that joins the tabs to what is below
constexpr int kShade = 40;
constexpr int kFocusInset = 2;

}  // namespace

TTabsWnd::TTabsWnd(int newCommandId, COLORREF newBackground, int newTabWidth, COLORREF newFurtherColour)
    : commandId(newCommandId),
      background(newBackground),
      tabWidth(newTabWidth),
      furtherColour(newFurtherColour) {}

bool TTabsWnd::AddTab(int tabId, const char* caption, COLORREF faceColour, COLORREF textColour) {
  if (tabs.size() >= kMaxTabs) return false;
  tabs.push_back({tabId, std::string(caption, strnlen(caption, kCaptionSize - 1)), faceColour, textColour});
  Invalidate(nullptr, 0);
  return true;
}

bool TTabsWnd::SelectTab(int tabId, bool repaint) {
  const auto found =
      std::find_if(tabs.begin(), tabs.end(), [tabId](const Tab& tab) { return tab.id == tabId; });
  const auto index = static_cast<int>(found - tabs.begin());
  if (found == tabs.end() || index == selected) return false;
  selected = index;
  if (repaint) Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kCurrentItem);
  return true;
}

int TTabsWnd::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "TTabsWnd";
  windowClass->background = RGB(255, 255, 255);
  windowClass->cursor = nullptr;
  return 0;
}

LRESULT TTabsWnd::OnCreate(const MessageRecord&) {
  SetTabStop(hwnd, true);
  return 0;
}

void TTabsWnd::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, background);
  hdc->SelectFont(GetFont(FontSmall, 700));
  for (int index = 0; index < static_cast<int>(tabs.size()); ++index) {
    const Tab& tab = tabs[static_cast<std::size_t>(index)];
    const RECT rect = TabRect(client, tabWidth, index, index == selected);
    hdc->FillRect(rect, tab.face);
    hdc->SetTextColor(tab.text);
    hdc->DrawText(tab.caption.c_str(), {rect.left, rect.top, rect.right, rect.bottom - kFootHeight},
                  DT_SINGLELINE | DT_CENTER | DT_VCENTER);
  }
  if (tabs.empty()) return;
  const COLORREF face = tabs[static_cast<std::size_t>(selected)].face;
  const int footTop = client.bottom - kFootHeight;
  hdc->FillRect({client.left, footTop, client.right, client.bottom}, face);
  hdc->SetPenColor(Darken(face, kShade));
  Line(hdc, TabRect(client, tabWidth, selected, true).right - 1, footTop, client.right, footTop);
}

std::optional<OwnerDrawn::FocusMark> TTabsWnd::FocusMarkIn(const RECT& client) const {
  if (tabs.empty()) return std::nullopt;
  const RECT tab = TabRect(client, tabWidth, selected, true);
  return FocusMark{
      {tab.left + kFocusInset, tab.top + kFocusInset, tab.right - kFocusInset, tab.bottom - kFootHeight},
      tabs[static_cast<std::size_t>(selected)].face};
}

int TTabsWnd::ItemAt(POINT point) {
  return TabAt(ClientArea(), tabWidth, static_cast<int>(tabs.size()), selected, point);
}

const char* TTabsWnd::CursorAt(POINT point) {
  return ItemAt(point) != -1 ? "CUR_HAND1" : IDC_ARROW;
}

LRESULT TTabsWnd::OnLButtonDown(const MessageRecord& record) {
  ChooseTab(ItemAt(PointFromLParam(record.lParam)));
  return 0;
}

LRESULT TTabsWnd::OnKeyDown(const MessageRecord& record) {
  const int last = static_cast<int>(tabs.size()) - 1;
  switch (record.wParam) {
    case VK_LEFT:
      ChooseTab(selected - 1);
      return 0;
    case VK_RIGHT:
      ChooseTab(std::min(selected + 1, last));
      return 0;
    case VK_HOME:
      ChooseTab(std::min(0, last));
      return 0;
    case VK_END:
      ChooseTab(last);
      return 0;
    default:
      return DefaultProc(record);
  }
}

void TTabsWnd::ChooseTab(int index) {
  if (index == -1 || index == selected) return;
  selected = index;
  RedrawNow();
  AnnounceChange(hwnd, AccessibleChange::kCurrentItem);
  TellParent(commandId, tabs[static_cast<std::size_t>(index)].id);
  PlaySound("select.wav");
}

void TTabsWnd::Describe(int item, AccessiblePart* part) {
  if (item == kWholeWindow) {
    part->role = AccessibleRole::kTabList;
    part->items = static_cast<int>(tabs.size());
    part->currentItem = tabs.empty() ? -1 : selected;
    return;
  }
  part->role = AccessibleRole::kTab;
  part->name = tabs[static_cast<std::size_t>(item)].caption;
  part->state = kAccessibleSelectable | (item == selected ? kAccessibleSelected : 0);
  part->pressable = true;
  part->place = TabRect(ClientArea(), tabWidth, item, item == selected);
}

void TTabsWnd::DoAction(AccessibleAction action, int value) {
  if (value < 0 || value >= static_cast<int>(tabs.size())) return;
  if (action == AccessibleAction::kSelect) SetFocus(hwnd);
  ChooseTab(value);
}
