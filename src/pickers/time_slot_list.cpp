#include "pickers/time_slot_list.h"

#include "core/time_texts.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "pickers/time_range.h"

namespace {

constexpr int kRowHeight = 12;
constexpr int kTextInset = 2;
constexpr int kRows = kLastPick - kFirstPick;
constexpr int kFullHour = 12;  // slots

constexpr COLORREF kFullHourText = RGB(255, 0, 0);

}  // namespace

TimeSlotList::TimeSlotList(int id)
    : ZarfWndListView({.commandId = id, .itemCount = kRows, .rowHeight = kRowHeight}), commandId(id) {}

int TimeSlotList::SlotOf(int row) {
  return kFirstPick + row;
}

void TimeSlotList::ShowSlot(int slot) {
  const bool present = slot >= kFirstPick && slot < kLastPick;
  ZarfWndListView::SelectItem(present ? slot - kFirstPick : -1);
}

LRESULT TimeSlotList::OnCreate(const MessageRecord& record) {
  if (ZarfWndListView::OnCreate(record) == -1) return -1;
  SetWindowText(hwnd, "Times");
  return 0;
}

bool TimeSlotList::SelectItem(int index) {
  if (!ZarfWndListView::SelectItem(index)) return false;
  TellParent(commandId, index, kListOwn);
  return true;
}

void TimeSlotList::DrawCell(HDC hdc, COLORREF, int index, int state, const RECT& rect) {
  if (index < 0) return;
  if (state != 0) hdc->FillRect(rect, kButtonFace);
  hdc->SelectFont(GetFont(FontSmall, 400));
  hdc->SetTextColor(SlotOf(index) % kFullHour == 0 ? kFullHourText : RGB(0, 0, 0));
  hdc->DrawText(CellText(index).c_str(), {rect.left + kTextInset, rect.top, rect.right, rect.bottom},
                DT_SINGLELINE | DT_VCENTER);
}

std::string TimeSlotList::CellText(int index) {
  return core::FormatTimeCompact(TimeOfSlot(SlotOf(index)));
}
