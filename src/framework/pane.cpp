#include "framework/pane.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t kNameSize = 255;  // with the zero byte

std::vector<ZarfPane*>& Panes() {
  static std::vector<ZarfPane*> panes;
  return panes;
}

int currentPane = 0;

}  // namespace

ZarfPane::ZarfPane(const char* newName, const PaneColours& newColours)
    : name(newName, strnlen(newName, kNameSize - 1)), colours(newColours) {
  if (PaneCount() < kMaxPanes) Panes().push_back(this);
  currentPane = 0;
}

ZarfPane::~ZarfPane() {
  const auto found = std::find(Panes().begin(), Panes().end(), this);
  if (found == Panes().end()) return;
  const auto index = static_cast<int>(found - Panes().begin());
  Panes().erase(found);
  // The current one stays current at its new place; with it gone, the first one is.
  if (index == currentPane) {
    currentPane = 0;
  } else if (index < currentPane) {
    --currentPane;
  }
}

bool ZarfPane::CanLeave() {
  return true;
}
bool ZarfPane::CanEnter() {
  return true;
}
bool ZarfPane::OnEnter() {
  return true;
}

int ZarfPane::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfPane";
  windowClass->background = RGB(255, 255, 255);
  return 0;
}

int ZarfPane::PreCreate(char*, DWORD* style, int*) {
  *style = WS_CHILD;
  return 0;
}

void ZarfPane::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, colours.background);
}

void ZarfPane::Describe(int, AccessiblePart* part) {
  part->name = name;
}

int PaneCount() {
  return static_cast<int>(Panes().size());
}

std::span<ZarfPane* const> PaneList() {
  return Panes();
}

int CurrentPaneIndex() {
  return currentPane;
}

bool SetCurrentPaneIndex(int index) {
  if (index < 0 || index >= PaneCount()) return false;
  currentPane = index;
  return true;
}

ZarfPane* CurrentPane() {
  return Panes().empty() ? nullptr : Panes()[static_cast<std::size_t>(currentPane)];
}
