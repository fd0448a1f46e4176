#include "pickers/time_track.h"

#include "core/time_texts.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "platform/desktop/bitmap.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/message_box.h"

namespace {

constexpr int kListId = 100;
constexpr unsigned kOpenerId = 101;

constexpr const char* kPlatePicture = "2012";
constexpr const char* kMarkerPicture = "2013";
constexpr int kPlateTop = 2;
constexpr RECT kOpenerPlace{2, 3, 12, 19};
constexpr int kLabelTop = 6;
constexpr int kLabelInset = 7;     // of the start's label, beside the button
constexpr int kDurationInset = 3;  // right of the line
constexpr int kDurationHeight = 12;

constexpr COLORREF kBackground = RGB(255, 255, 255);
constexpr COLORREF kMarkerColour = RGB(255, 0, 0);
constexpr COLORREF kPlateGrey = RGB(192, 192, 192);
constexpr COLORREF kShadow = RGB(128, 128, 128);
constexpr COLORREF kBlack = RGB(0, 0, 0);

constexpr unsigned kF4 = VK_F1 + 3;

void DrawCentred(HDC hdc, const Bitmap& bitmap, const RECT& client, int y) {
  hdc->DrawBitmap(bitmap, client.left + (Width(client) - bitmap.Width()) / 2, y);
}

void DrawLabel(HDC hdc, const core::TimeOfDay& time, const RECT& box) {
  hdc->DrawText(core::FormatTime(time).c_str(), box, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

}  // namespace

TimeTrack::TimeTrack(const TimeRange& shown, TimePicking what)
    : picking(what),
      times(PickableRange(what == TimePicking::kRange ? shown : TimeRange{shown.start, shown.start})),
      list(kListId),
      opener(static_cast<int>(kOpenerId), SpinKind::kDown, kButtonFace) {}

int TimeTrack::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfTimeTrack";
  windowClass->background = kBackground;
  windowClass->cursor = nullptr;
  return 0;
}

LRESULT TimeTrack::OnCreate(const MessageRecord&) {
  plate = Bitmap::Load(kPlatePicture);
  marker = Bitmap::Load(kMarkerPicture);
  if (plate != nullptr) {
    plate->ReplaceColour(kMagenta, kBackground);
    plate->ReplaceColour(kPlateGrey, kButtonFace);
    plate->ReplaceColour(RGB(255, 0, 0), kMarkerColour);
  }
  if (marker != nullptr) {
    marker->ReplaceColour(kMagenta, kBackground);
    marker->ReplaceColour(RGB(255, 0, 0), kMarkerColour);
  }
  SetTabStop(hwnd, IsRange());
  if (IsRange() && !opener.Create(this)) return -1;
  if (!list.Create(this)) return -1;
  SetWindowText(opener.Handle(), "Start time");
  if (IsRange()) {
    list.Hide();
  } else {
    list.ShowSlot(core::TimeSlot(times.start));
  }
  return 0;
}

LRESULT TimeTrack::OnEraseBkgnd(const MessageRecord&) {
  return 1;
}

LRESULT TimeTrack::OnSize(const MessageRecord&) {
  const RECT client = ClientArea();
  if (IsRange()) {
    opener.Move(kOpenerPlace.left, kOpenerPlace.top, Width(kOpenerPlace), Height(kOpenerPlace), 1);
  }
  list.Move(1, kTrackTop, std::max(client.right - 3, 0), std::max(client.bottom - kTrackTop - 2, 0), 1);
  list.ShowSlot(core::TimeSlot(times.start));
  return 0;
}

void TimeTrack::FocusTimes() {
  if (IsRange()) {
    SetFocus(hwnd);
  } else {
    list.FocusList();
  }
}

// ---- Looks ----

void TimeTrack::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, kButtonFace);
  hdc->FillRect({client.left + 1, client.top, client.right - 2, client.bottom}, kBackground);
  if (plate != nullptr) DrawCentred(hdc, *plate, client, kPlateTop);
  hdc->SelectFont(GetFont(FontSmall, 400));
  hdc->SetTextColor(kBlack);
  if (IsRange()) PaintTrack(hdc, client);
  DrawLabel(hdc, times.start,
            {client.left + (IsRange() ? kLabelInset : 0), client.top + kLabelTop, client.right, kTrackTop});
  // The frame's bottom line lies on its bottom coordinate.
  Frame3D(hdc, {client.left, client.top, client.right, client.bottom - 1}, kButtonFace, kShadow);
}

void TimeTrack::PaintTrack(HDC hdc, const RECT& client) const {
  const int top = static_cast<int>(MarkerTop(LayoutIn(client)));
  const int middle = client.left + Width(client) / 2;
  hdc->SetPenColor(kBlack);
  Line(hdc, middle, kTrackTop, middle, top);
  if (top - kTrackTop >= kDurationHeight) {
    const int y = (kTrackTop + top - kDurationHeight) / 2;
    hdc->DrawText(DurationLabel(times).c_str(),
                  {middle + kDurationInset, y, client.right - 2, y + kDurationHeight},
                  DT_LEFT | DT_VCENTER | DT_SINGLELINE);
  }
  if (marker != nullptr) DrawCentred(hdc, *marker, client, top);
  const int label = top + kMarkerHeight;
  DrawLabel(hdc, times.end, {client.left, label, client.right, label + kMarkerLabelHeight});
}

std::optional<OwnerDrawn::FocusMark> TimeTrack::FocusMarkIn(const RECT& client) const {
  if (!IsRange()) return std::nullopt;
  const int top = static_cast<int>(MarkerTop(LayoutIn(client)));
  return FocusMark{{client.left + 3, top, client.right - 4, top + kMarkerHeight + kMarkerLabelHeight},
                   kBackground};
}

const char* TimeTrack::CursorAt(POINT point) {
  return IsRange() && HitsMarker(LayoutIn(ClientArea()), point.y) ? "CUR_HAND1" : IDC_ARROW;
}

// ---- The marker ----

LRESULT TimeTrack::OnLButtonDown(const MessageRecord& record) {
  if (!IsRange()) return 0;
  SetFocus(hwnd);
  if (listOpen) CloseList(false);
  const TrackLayout layout = LayoutIn(ClientArea());
  const POINT point = PointFromLParam(record.lParam);
  if (!HitsMarker(layout, point.y)) return 0;
  const RECT area = DragArea(layout);
  const POINT corner = ClientToScreen(hwnd, {area.left, area.top});
  const RECT bounds{corner.x, corner.y, corner.x + Width(area), corner.y + Height(area)};
  Track();
  ClipCursor(&bounds);
  ShowCursor(false);
  // Where the cursor cannot be moved to the marker's handle, the marker follows from where it is held.
  const int handle = MarkerHandle(layout);
  grip = SetCursorPos(ClientToScreen(hwnd, {layout.width / 2, handle})) ? 0 : point.y - handle;
  untouched = handle;
  return 0;
}

// Where a slot has less than a pixel, or the end lies beside the slots, taking hold must not move it.
LRESULT TimeTrack::OnMouseMove(const MessageRecord& record) {
  const int y = PointFromLParam(record.lParam).y - grip;
  if (!Tracking() || y == untouched) return 0;
  untouched.reset();
  SetEnd(EndAtHeight(LayoutIn(ClientArea()), y));
  return 0;
}

LRESULT TimeTrack::OnLButtonUp(const MessageRecord&) {
  EndTracking();
  return 0;
}

LRESULT TimeTrack::OnKeyDown(const MessageRecord& record) {
  const auto key = static_cast<unsigned>(record.wParam);
  const auto end = IsRange() && !listOpen ? KeyEnd(key, times) : std::nullopt;
  if (end) {
    SetEnd(*end);
  } else if (IsRange() && key == kF4) {
    OpenList();
  } else {
    return DefaultProc(record);
  }
  return 0;
}

LRESULT TimeTrack::OnSysKeyDown(const MessageRecord& record) {
  if (!IsRange() || record.wParam != VK_DOWN) return DefaultProc(record);
  OpenList();
  return 0;
}

void TimeTrack::SetEnd(const core::TimeOfDay& end) {
  times.end = end;
  RedrawNow();
  AnnounceChange(hwnd, AccessibleChange::kValue);
}

void TimeTrack::SetBoth(const core::TimeOfDay& time) {
  times = {time, time};
  Invalidate(nullptr, 0);
  AnnounceChange(hwnd, AccessibleChange::kValue);
}

// ---- The list ----

void TimeTrack::OpenList() {
  EndTracking();
  listOpen = true;
  list.ShowSlot(core::TimeSlot(times.start));
  list.Show();
  list.FocusList();
}

bool TimeTrack::ChoosesStart() const {
  return listOpen && GetFocus() != nullptr && GetParent(GetFocus()) == list.Handle();
}

void TimeTrack::CloseList(bool take) {
  if (!listOpen) return;
  listOpen = false;
  const int row = list.SelectedItem();
  if (take && row >= 0) SetBoth(TimeOfSlot(TimeSlotList::SlotOf(row)));
  SetFocus(hwnd);
  list.Hide();
}

void TimeTrack::TakeSelection() {
  const int row = list.SelectedItem();
  if (IsRange() || row < 0) return;
  const int slot = TimeSlotList::SlotOf(row);
  if (slot != core::TimeSlot(times.start)) SetBoth(TimeOfSlot(slot));
}

LRESULT TimeTrack::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  if (id == kOpenerId) {
    ReleaseCapture();  // a button that is held repeats
    if (listOpen) {
      CloseList(false);
    } else {
      OpenList();
    }
  } else if (id == kListId) {
    OnListNotice(HighWord(record.wParam), static_cast<int>(record.lParam));
  }
  return 0;
}

// What the mouse selects closes the list of a range; a key only moves the selection in it.
void TimeTrack::OnListNotice(unsigned code, int row) {
  const bool selected = code == kListSelected || code == kListDoubleClick;
  if (row < 0 || (!selected && code != kListOwn)) return;
  if (!IsRange()) {
    SetBoth(TimeOfSlot(TimeSlotList::SlotOf(row)));
    if (code == kListDoubleClick) PostMessage(Parent(), WM_COMMAND, IDOK, 0);
  } else if (selected) {
    CloseList(true);
  }
}

// ---- For those who do not see it ----

void TimeTrack::Describe(int, AccessiblePart* part) {
  if (!IsRange()) {
    part->name = "Time";
    part->description = core::FormatTime(times.start);
    return;
  }
  part->role = AccessibleRole::kSlider;
  part->name = "Time";
  part->description = core::FormatTime(times.start) + " to " + core::FormatTime(times.end) + ", duration " +
                      DurationLabel(times);
  const TrackLayout layout{0, 0, times};
  part->position = std::clamp(core::TimeSlot(times.end) - core::TimeSlot(times.start), 0, layout.Slots());
  part->lastPosition = layout.Slots();
}

void TimeTrack::DoAction(AccessibleAction action, int value) {
  const int slots = TrackLayout{0, 0, times}.Slots();
  if (IsRange() && action == AccessibleAction::kSetPosition)
    SetEnd(Later(times.start, std::clamp(value, 0, slots) * 5));
}
