// Message boxes of the desktop.
#pragma once

#include <string>

#include "platform/desktop/types.h"

constexpr UINT MB_OK = 0x0000;
constexpr UINT MB_YESNO = 0x0004;
constexpr UINT MB_ICONQUESTION = 0x0020;
constexpr UINT MB_ICONINFORMATION = 0x0040;

constexpr int IDYES = 6;
constexpr int IDNO = 7;

// Shows a text (UTF-8, so that it may name any file) and waits for an answer: IDOK, IDYES or IDNO. Closing
// the box or Escape answers IDOK or IDNO.
int MessageBox(HWND owner, const std::string& text, const std::string& caption, UINT type);
