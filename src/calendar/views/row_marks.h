// The small marks and the category that rows of appointments have in common.
#pragma once

#include <memory>

#include "core/calendar/appointment.h"
#include "platform/desktop/bitmap.h"
#include "platform/desktop/device_context.h"

// Loaded once for all rows of a list. A picture that is missing is left out of the row.
struct RowMarks {
  std::unique_ptr<Bitmap> padlock;
  std::unique_ptr<Bitmap> bell;
  std::unique_ptr<Bitmap> paperClip;
  std::unique_ptr<Bitmap> squares;
};
RowMarks LoadRowMarks();

// A built-in picture with magenta as its transparent colour; null when it is missing.
std::unique_ptr<Bitmap> LoadRowPicture(const char* name);

// Draws what the appointment is, from left to right: confidential, with an alarm, with an attachment (unless
// that is not shown), repeating. Answers where the next thing stands.
int DrawRowMarks(HDC hdc, const core::Appointment& record, const RowMarks& marks, int x, int y,
                 bool attachments);

// Draws the category, if any, in brackets at the left end of a line and answers where it ends.
int DrawRowCategory(HDC hdc, const core::Appointment& record, const RECT& line);
