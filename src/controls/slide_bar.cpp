#include "controls/slide_bar.h"

#include <algorithm>

#include "controls/slide_geometry.h"
#include "framework/drawing.h"

namespace {

constexpr int kShade = 40;
constexpr COLORREF kBlack = RGB(0, 0, 0);

// Three lines across the middle of the thumb.
void PaintGrip(HDC hdc, const RECT& thumb) {
  const int middle = (thumb.top + thumb.bottom) / 2;
  const int inset = Width(thumb) / 4;
  for (int y = middle - 2; y <= middle + 2; y += 2) Line(hdc, thumb.left + inset, y, thumb.right - inset, y);
}

}  // namespace

ZarfSlideBar::ZarfSlideBar(int id, COLORREF baseColour, double positions)
    : commandId(id), base(baseColour), count(UsableCount(positions)) {}

bool ZarfSlideBar::SetPosition(int newPosition) {
  if (newPosition < 0 || newPosition >= count) return false;
  if (newPosition == position) return true;
  position = newPosition;
  Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kValue);
  return true;
}

bool ZarfSlideBar::SetCount(double newCount) {
  newCount = UsableCount(newCount);
  if (newCount == count) return false;
  count = newCount;
  if (position >= count) position = static_cast<int>(count - 1);
  if (position < 0) position = 0;
  Invalidate(nullptr, 0);
  return true;
}

void ZarfSlideBar::SetColours(COLORREF face, COLORREF track, COLORREF frame, COLORREF thumbEdge) {
  faceColour = face;
  trackColour = track;
  frameColour = frame;
  edgeColour = thumbEdge;
  Invalidate(nullptr, 0);
}

int ZarfSlideBar::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfSlideBar";
  windowClass->background = RGB(255, 255, 255);
  return 0;
}

void ZarfSlideBar::Paint(HDC hdc, const RECT& client) const {
  const bool own = trackColour != kNoColour;
  hdc->FillRect(client, own ? faceColour : Lighten(base, kShade));
  hdc->SetPenColor(own ? edgeColour : kBlack);
  Line(hdc, client.left, client.top, client.left, client.bottom);
  Line(hdc, client.right - 1, client.top, client.right - 1, client.bottom);
  if (count < 1) return;

  RECT thumb = SlideThumb(client, count, position, mouseY);
  const COLORREF fill = own ? trackColour : base;
  // Its lowest line stays in the bar.
  thumb.bottom = std::min(thumb.bottom + 1, client.bottom);
  hdc->FillRect(thumb, Tracking() ? Darken(fill, kShade) : fill);
  PaintGrip(hdc, thumb);
  if (own) hdc->SetPenColor(frameColour);
  OutlineRect(hdc, thumb);
}

std::optional<OwnerDrawn::FocusMark> ZarfSlideBar::FocusMarkIn(const RECT& client) const {
  return FocusMark{client, trackColour != kNoColour ? faceColour : base};
}

LRESULT ZarfSlideBar::OnLButtonDown(const MessageRecord& record) {
  if (count < 1) return 0;
  RECT thumb = SlideThumb(ClientArea(), count, position, std::nullopt);
  thumb.bottom += 1;
  Track();
  Invalidate(nullptr, 0);
  const POINT point = PointFromLParam(record.lParam);
  if (!Contains(thumb, point)) Follow(point.y);
  return 0;
}

LRESULT ZarfSlideBar::OnMouseMove(const MessageRecord& record) {
  if (Tracking()) Follow(PointFromLParam(record.lParam).y);
  return 0;
}

LRESULT ZarfSlideBar::OnLButtonUp(const MessageRecord& record) {
  if (!Tracking()) return 0;
  Follow(PointFromLParam(record.lParam).y);
  EndTracking();
  return 0;
}

void ZarfSlideBar::Follow(int y) {
  const int height = ClientArea().bottom;
  mouseY = SlideMouseY(y, height);
  MoveTo(SlidePosition(y, height, count, position));
  Invalidate(nullptr, 0);
}

// By the user's hand: the parent is told.
void ZarfSlideBar::MoveTo(int wanted) {
  if (wanted == position || !SetPosition(wanted)) return;
  TellParent(commandId, position);
}

LRESULT ZarfSlideBar::OnKeyDown(const MessageRecord& record) {
  const auto wanted = SlideKeyPosition(static_cast<unsigned>(record.wParam), position, count);
  if (!wanted) return DefaultProc(record);
  MoveTo(*wanted);
  return 0;
}

void ZarfSlideBar::Describe(int, AccessiblePart* part) {
  part->role = AccessibleRole::kSlider;
  part->position = position;
  part->lastPosition = LastSlidePosition(count);
}

void ZarfSlideBar::DoAction(AccessibleAction action, int value) {
  if (action == AccessibleAction::kSetPosition) MoveTo(value);
}

void ZarfSlideBar::OnTrackingEnd() {
  mouseY.reset();
  Invalidate(nullptr, 0);
}
