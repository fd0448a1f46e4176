// Printing, by way of the desktop's own dialog: it asks for a printer and its paper, or for a PDF file, which
// stays where there is no printer.
#pragma once

#include <functional>
#include <string>

#include "platform/desktop/types.h"

// What is to be printed. Sizes are in pixels of 1/96 inch, so that a font is as large on paper as on a screen
// of that density.
struct PrintJob {
  std::string title;  // UTF-8: what the list of print jobs shows
  std::function<int(SIZE area)>
      layOut;  // told the printable size of a page, answers how many pages there are
  std::function<void(HDC hdc, int page)> paint;  // a page, from 1, whose printable area begins at (0, 0)
};

enum class PrintResult {
  kDone,
  kCancelled,  // in the dialog
  kFailed,     // the printer does not take it, or the file could not be written whole
};

// Asks over `owner`, and prints. The pages are painted before it returns, those that the user asked for.
[[nodiscard]] PrintResult AskAndPrint(HWND owner, const PrintJob& job);
