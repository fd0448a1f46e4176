#include "calendar/views/find_row.h"

#include <algorithm>

#include "calendar/views/day_row.h"
#include "calendar/views/palette.h"
#include "core/time_texts.h"
#include "framework/drawing.h"
#include "framework/fonts.h"

namespace {

constexpr COLORREF kLine = RGB(200, 200, 200);
constexpr COLORREF kText = RGB(0, 0, 0);

// From the row's left edge.
constexpr int kTimesLeft = 55;
constexpr int kMarksLeft = 138;
// The subject begins so far above the row's middle.
constexpr int kSubjectRise = 3;
// Between texts that would touch.
constexpr int kGap = 6;

constexpr const char* kVanished = "Record is deleted by other user.";
constexpr const char* kNothingFound = "No matching date has been found!";

RECT RowIn(const RECT& cell) {
  return {cell.left + 5, cell.top + 1, cell.right - 5, cell.bottom - 1};
}

std::string TimesOf(const core::Appointment& record) {
  if (record.allDay != 0) return "All day event";
  return core::FormatTime(record.startTime) + "-" + core::FormatTime(record.endTime);
}

// Draws a text and answers where the next one may begin, at `next` at the earliest.
int DrawPiece(HDC hdc, int weight, const std::string& text, const RECT& line, int next) {
  const HFONT font = GetFont(FontSmall, weight);
  hdc->SelectFont(font);
  hdc->SetTextColor(kText);
  hdc->DrawText(text.c_str(), line, DT_SINGLELINE);
  return std::max(next, line.left + MeasureText(font, text.c_str()).cx + kGap);
}

void DrawRecord(HDC hdc, const core::Appointment& record, const RowMarks& marks, const RECT& row) {
  const int middle = row.top + Height(row) / 2;
  RECT line = {row.left, row.top, row.right, middle};
  line.left = DrawPiece(hdc, 700, core::FormatDate(record.date), line, row.left + kTimesLeft);
  line.left = DrawPiece(hdc, 400, TimesOf(record), line, row.left + kMarksLeft);
  line.left = DrawRowMarks(hdc, record, marks, line.left, row.top, false);
  DrawRowCategory(hdc, record, line);
  hdc->SelectFont(GetFont(FontSans, 400));
  hdc->SetTextColor(kRowText);
  hdc->DrawText(std::string(core::ReadText(record.subject)).c_str(),
                {row.left, middle - kSubjectRise, row.right, row.bottom}, DT_SINGLELINE | DT_END_ELLIPSIS);
}

}  // namespace

void DrawFindRow(HDC hdc, const core::Appointment* record, const RowMarks& marks, bool selected,
                 const RECT& cell) {
  if (selected) hdc->FillRect(cell, kSelection);
  const RECT row = RowIn(cell);
  if (record == nullptr) {
    hdc->SelectFont(GetFont(FontSans, 400));
    hdc->SetTextColor(kRowMark);
    hdc->DrawText(kVanished, row, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    return;
  }
  DrawRecord(hdc, *record, marks, row);
  if (selected) return;
  hdc->SetPenColor(kLine);
  Line(hdc, row.left, row.bottom, row.right, row.bottom);
}

void DrawNothingFound(HDC hdc, const RECT& cell) {
  hdc->SelectFont(GetFont(FontSans, 400));
  hdc->SetTextColor(kRowText);
  hdc->DrawText(kNothingFound, RowIn(cell), DT_SINGLELINE);
}

std::string FindRowText(const core::Appointment* record) {
  if (record == nullptr) return kVanished;
  return core::FormatDate(record->date) + ", " + DayRowText(record);
}
