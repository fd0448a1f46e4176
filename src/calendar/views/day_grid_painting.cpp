#include "calendar/views/day_grid_painting.h"

#include "core/time_texts.h"
#include "framework/drawing.h"
#include "framework/fonts.h"
#include "resources/strings.h"
#include "resources/text_ids.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kGridLine = RGB(220, 220, 220);
constexpr COLORREF kWeekdayHead = RGB(192, 192, 192);
constexpr COLORREF kDayHead = RGB(0, 0, 255);
constexpr COLORREF kTodayHead = RGB(255, 0, 0);
constexpr COLORREF kEntry = RGB(0, 0, 0);

constexpr int kHeadRight = 10;  // from a column's edge to the weekday's head, on either side
constexpr int kLinesEnd = 10;   // no line so close to the right or the bottom edge
constexpr int kHeadHeight = 10;

// A head is drawn up to a column's right edge only where that lies within the area: in one that is a whole
// number of columns wide, the last column goes without.
void DrawColumns(HDC hdc, const RECT& client, GridShape shape) {
  const int width = client.right / GridColumns(shape);
  for (int column = 0; column < GridColumns(shape); ++column) {
    const int right = (column + 1) * width;
    if (width == 0 || right >= client.right) return;
    if (shape == GridShape::kMonth) {
      hdc->DrawText(resources::FindText(text::kSundayHead + column),
                    {right - width + kHeadRight, client.top, right + kHeadRight, client.top + kHeadHeight},
                    DT_SINGLELINE);
    }
    if (right < client.right - kLinesEnd) Line(hdc, right, 0, right, client.bottom);
  }
}

void DrawRows(HDC hdc, const RECT& client, GridShape shape) {
  const int height = client.bottom / GridRows(shape);
  for (int row = 1; height > 0 && row * height < client.bottom - kLinesEnd; ++row) {
    Line(hdc, 0, row * height, client.right, row * height);
  }
}

}  // namespace

void DrawGridGround(HDC hdc, const RECT& client, GridShape shape, const GridLook& look) {
  hdc->SelectRegion(&client);
  hdc->FillRect(client, kWhite);
  const GridShapes shapes = ShapesBehind(client);
  hdc->Polygon(shapes.triangle, look.triangle);
  hdc->Ellipse(shapes.upperEllipse, look.upperEllipse);
  hdc->Ellipse(shapes.lowerEllipse, look.lowerEllipse);
  hdc->SetPenColor(kGridLine, 0);
  hdc->SelectFont(GetFont(FontSmall, 400));
  hdc->SetTextColor(kWeekdayHead);
  DrawColumns(hdc, client, shape);
  DrawRows(hdc, client, shape);
  hdc->SelectRegion(nullptr);
}

void DrawGridTitle(HDC hdc, const RECT& client, const core::Date& date, const GridLook& look) {
  hdc->SelectFont(GetFont(FontSans, 700));
  hdc->SetTextColor(look.title);
  const std::string title = core::MonthName(date) + " " + std::to_string(date.year);
  hdc->DrawText(title.c_str(), GridTitle(client), DT_SINGLELINE | DT_RIGHT | DT_BOTTOM);
}

void DrawGridDay(HDC hdc, const RECT& cell, GridShape shape, const core::Date& date,
                 const std::vector<const std::string*>& lines) {
  hdc->SelectFont(GetFont(FontSmall, 400));
  hdc->SetTextColor(core::IsSameDate(date, core::Today()) ? kTodayHead : kDayHead);
  std::string head = std::to_string(date.day);
  if (shape == GridShape::kWeek) head.append(" ").append(core::WeekdayName(date));
  // In line with what stands under it, and clear of the grid's line.
  hdc->DrawText(head.c_str(), {CellLine(cell, 0).left, cell.top, cell.right, cell.bottom}, DT_SINGLELINE);
  hdc->SetTextColor(kEntry);
  const int count = std::min(static_cast<int>(lines.size()), CellLines(Height(cell)));
  for (int line = 0; line < count; ++line) {
    hdc->DrawText(lines[static_cast<std::size_t>(line)]->c_str(), CellLine(cell, line),
                  DT_SINGLELINE | DT_VCENTER);
  }
}
