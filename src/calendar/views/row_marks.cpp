#include "calendar/views/row_marks.h"

#include <algorithm>
#include <string>

#include "calendar/views/palette.h"
#include "framework/drawing.h"
#include "framework/fonts.h"

namespace {

// Draws a mark and answers where the next one stands.
int DrawMark(HDC hdc, const std::unique_ptr<Bitmap>& mark, bool wanted, int x, int y, int advance) {
  if (!wanted) return x;
  if (mark != nullptr) hdc->DrawBitmap(*mark, x, y);
  return x + advance;
}

}  // namespace

std::unique_ptr<Bitmap> LoadRowPicture(const char* name) {
  std::unique_ptr<Bitmap> picture = Bitmap::Load(name);
  if (picture != nullptr) picture->MakeTransparent(kMagenta);
  return picture;
}

RowMarks LoadRowMarks() {
  return {LoadRowPicture("mark_padlock"), LoadRowPicture("mark_bell"), LoadRowPicture("mark_paper_clip"),
          LoadRowPicture("mark_squares")};
}

int DrawRowMarks(HDC hdc, const core::Appointment& record, const RowMarks& marks, int x, int y,
                 bool attachments) {
  x = DrawMark(hdc, marks.padlock, record.header.confidential != 0, x, y, 12);
  x = DrawMark(hdc, marks.bell, record.alarmOn != 0, x, y, 14);
  x = DrawMark(hdc, marks.paperClip, attachments && core::HasAttachment(record), x, y, 12);
  return DrawMark(hdc, marks.squares, core::HasRepeat(record), x, y, 12);
}

int DrawRowCategory(HDC hdc, const core::Appointment& record, const RECT& line) {
  const std::string_view category = core::ReadText(record.header.category);
  if (category.empty()) return line.left;
  std::string text("[");
  text.append(category).push_back(']');
  const HFONT font = GetFont(FontSmall, 400);
  hdc->SelectFont(font);
  hdc->SetTextColor(kRowMark);
  hdc->DrawText(text.c_str(), line, DT_SINGLELINE | DT_END_ELLIPSIS);
  return std::min(line.left + MeasureText(font, text.c_str()).cx, line.right);
}
