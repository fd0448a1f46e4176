#include "calendar/views/day_row.h"

#include <algorithm>
#include <string>

#include "calendar/views/palette.h"
#include "core/time_texts.h"
#include "framework/drawing.h"
#include "framework/fonts.h"

namespace {

// Where the marks of a timed row begin, from the row's left edge.
constexpr int kMarksLeft = 95;
constexpr int kSubjectIndent = 20;
constexpr int kAllDayIndent = 7;
// From the top of an all-day row to its marks.
constexpr int kAllDayMarksTop = 7;
// Of an all-day row: what its category leaves to the subject is at least the rest.
constexpr int kCategoryShare = 3;
// Between marks and text that would touch.
constexpr int kGap = 6;

constexpr const char* kVanished = "Record is deleted by another user.";

std::string TimesOf(const core::Appointment& record) {
  return core::FormatTime(record.startTime) + "-" + core::FormatTime(record.endTime);
}

void DrawRowText(HDC hdc, const std::string& text, const RECT& rect, UINT format) {
  hdc->SelectFont(GetFont(FontSans, 400));
  hdc->SetTextColor(kRowText);
  hdc->DrawText(text.c_str(), rect, format | DT_SINGLELINE);
}

// Where a line in the small font begins whose letters stand as those of the subject do, which is in the
// middle of the row.
int SmallLineTop(const RECT& row) {
  const TextMetrics subject = GetTextMetrics(GetFont(FontSans, 400));
  const int subjectTop = row.top + (Height(row) - subject.height) / 2;
  return subjectTop + subject.ascent - GetTextMetrics(GetFont(FontSmall, 400)).ascent;
}

// An all-day row has no times; what marks it stands where they would, the subject after it.
void DrawAllDay(HDC hdc, const core::Appointment& record, const DayRowPictures& pictures, RECT row) {
  row.top += 1;
  row.bottom -= 2;
  if (pictures.allDay != nullptr) hdc->StretchBitmap(*pictures.allDay, row);
  if (pictures.allDayLeft != nullptr) {
    hdc->StretchBitmap(*pictures.allDayLeft,
                       {row.left, row.top, row.left + pictures.allDayLeft->Width(), row.bottom});
  }
  if (pictures.allDayRight != nullptr) {
    hdc->StretchBitmap(*pictures.allDayRight, {row.right - 4, row.top, row.right, row.bottom});
  }
  const int start = row.left + kAllDayIndent;
  const int end = row.right - kAllDayIndent;
  int x = DrawRowMarks(hdc, record, pictures.marks, start, row.top + kAllDayMarksTop, true);
  const int categoryEnd = std::min(x + Width(row) / kCategoryShare, end);
  x = DrawRowCategory(hdc, record, {x, SmallLineTop(row), categoryEnd, row.bottom});
  if (x != start) x += kGap;
  DrawRowText(hdc, std::string(core::ReadText(record.subject)), {x, row.top, end, row.bottom},
              DT_VCENTER | DT_END_ELLIPSIS);
}

void DrawTimed(HDC hdc, const core::Appointment& record, const DayRowPictures& pictures, bool selected,
               const RECT& row) {
  const int middle = row.top + Height(row) / 2;
  const RECT firstLine = {row.left, row.top, row.right, middle};
  const std::string times = TimesOf(record);
  DrawRowText(hdc, times, firstLine, DT_LEFT);
  DrawRowText(hdc, std::string(core::ReadText(record.subject)),
              {row.left + kSubjectIndent, middle, row.right, row.bottom}, DT_END_ELLIPSIS);
  // With the 12-hour clock the times can be wider than their usual place.
  const int timesWidth = MeasureText(GetFont(FontSans, 400), times.c_str()).cx;
  const int marksLeft = row.left + std::max(kMarksLeft, timesWidth + kGap);
  const int categoryLeft = DrawRowMarks(hdc, record, pictures.marks, marksLeft, row.top + 1, true);
  DrawRowCategory(hdc, record, {categoryLeft, row.top, row.right, middle});
  if (selected) return;
  hdc->SetPenColor(kRowLine);
  Line(hdc, row.left, row.bottom, row.right * 2 / 3, row.bottom);
}

}  // namespace

DayRowPictures LoadDayRowPictures() {
  return {LoadRowPicture("all_day"), LoadRowPicture("all_day_left"), LoadRowPicture("all_day_right"),
          LoadRowMarks()};
}

int DayRowHeight() {
  const TextMetrics metrics = GetTextMetrics(GetFont(FontSans, 400));
  return 2 * (metrics.height + metrics.externalLeading) + 3;
}

void DrawDayRow(HDC hdc, const core::Appointment* record, const DayRowPictures& pictures,
                RowSelection selection, const RECT& cell) {
  const bool selected = selection != RowSelection::kNone;
  if (selected) hdc->FillRect(cell, selection == RowSelection::kFocused ? kSelection : kIdleSelection);
  const RECT row = {cell.left + 5, cell.top + 1, cell.right - 5, cell.bottom - 1};
  if (record == nullptr) {
    hdc->SelectFont(GetFont(FontSans, 400));
    hdc->SetTextColor(kRowMark);
    hdc->DrawText(kVanished, row, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
  } else if (record->allDay != 0) {
    DrawAllDay(hdc, *record, pictures, row);
  } else {
    DrawTimed(hdc, *record, pictures, selected, row);
  }
}

std::string DayRowText(const core::Appointment* record) {
  if (record == nullptr) return kVanished;
  std::string text = record->allDay != 0 ? "All day" : TimesOf(*record);
  text.append(", ").append(core::ReadText(record->subject));
  const std::string_view category = core::ReadText(record->header.category);
  if (!category.empty()) text.append(", category ").append(category);
  if (record->header.confidential != 0) text += ", confidential";
  if (record->alarmOn != 0) text += ", alarm";
  if (core::HasAttachment(*record)) text += ", attachment";
  if (core::HasRepeat(*record)) text += ", repeats";
  return text;
}
