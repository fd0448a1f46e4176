#include "controls/scroll_bar.h"

#include <algorithm>

#include "controls/slide_geometry.h"

namespace {

constexpr unsigned kUpId = 1;
constexpr unsigned kDownId = 2;
constexpr unsigned kSliderId = 6;

}  // namespace

ZarfClassWndScrollBar::ZarfClassWndScrollBar(int id, double positions, int arrowSize, COLORREF base)
    : commandId(id),
      buttonSize(std::max(arrowSize, 0)),
      count(UsableCount(positions)),
      upButton(kUpId, SpinKind::kUp, base),
      downButton(kDownId, SpinKind::kDown, base),
      slider(kSliderId, base, positions) {}

bool ZarfClassWndScrollBar::SetPosition(int newPosition) {
  if (!slider.SetPosition(newPosition)) return false;
  const bool moved = newPosition != position;
  position = newPosition;
  if (moved) AnnounceChange(hwnd, AccessibleChange::kValue);
  return true;
}

bool ZarfClassWndScrollBar::SetCount(double newCount) {
  const bool changed = slider.SetCount(newCount);
  count = slider.Count();
  position = slider.Position();
  return changed;
}

int ZarfClassWndScrollBar::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfClassWndScrollBar";
  windowClass->background = RGB(255, 255, 255);
  return 0;
}

LRESULT ZarfClassWndScrollBar::OnCreate(const MessageRecord&) {
  if (!upButton.Create(this) || !downButton.Create(this) || !slider.Create(this)) return -1;
  SetWindowText(upButton.Handle(), "Up");
  SetWindowText(downButton.Handle(), "Down");
  return 0;
}

LRESULT ZarfClassWndScrollBar::OnSize(const MessageRecord&) {
  const RECT client = ClientArea();
  upButton.Move(0, 0, client.right, buttonSize, 1);
  downButton.Move(0, client.bottom - buttonSize, client.right, buttonSize, 1);
  slider.Move(0, buttonSize, client.right, std::max(client.bottom - 2 * buttonSize, 0), 1);
  return 0;
}

LRESULT ZarfClassWndScrollBar::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kUpId:
      StepUp();
      break;
    case kDownId:
      StepDown();
      break;
    case kSliderId:
      if (record.lParam >= 0 && static_cast<double>(record.lParam) < count) {
        position = static_cast<int>(record.lParam);
        AnnounceChange(hwnd, AccessibleChange::kValue);
        Notify();
      }
      break;
    default:
      break;
  }
  return 0;
}

LRESULT ZarfClassWndScrollBar::OnMouseWheel(const MessageRecord& record) {
  if (WheelDelta(record.wParam) < kWheelStep) {
    StepDown();
  } else {
    StepUp();
  }
  return 0;
}

void ZarfClassWndScrollBar::StepUp() {
  if (position >= 1 && SetPosition(position - 1)) Notify();
}

void ZarfClassWndScrollBar::StepDown() {
  if (position < count - 1 && SetPosition(position + 1)) Notify();
}

void ZarfClassWndScrollBar::Notify() {
  TellParent(commandId, position);
}

void ZarfClassWndScrollBar::Describe(int, AccessiblePart* part) {
  part->role = AccessibleRole::kScrollBar;
  part->position = position;
  part->lastPosition = LastSlidePosition(count);
}

void ZarfClassWndScrollBar::DoAction(AccessibleAction action, int value) {
  if (action == AccessibleAction::kSetPosition && value != position && SetPosition(value)) Notify();
}
