// A report on paper: its text, broken into lines and pages. The first line of the text is the title and
// stands on every page; what lies between two empty lines is kept on one page where it can be.
#pragma once

#include <string>
#include <vector>

#include "platform/desktop/device_context.h"

class ReportPages {
 public:
  // `text` is in code page 1252; the font stays the caller's and must outlive the pages.
  ReportPages(const std::string& text, HFONT textFont);

  // Lays out for pages of a size, in pixels, and answers how many there are: at least one.
  int LayOut(SIZE pageSize);
  // Draws a page, from 1, at (0, 0).
  void Paint(HDC hdc, int page) const;

  // The lines of a page below the title.
  const std::vector<std::string>& Lines(int page) const { return pages[static_cast<std::size_t>(page) - 1]; }

 private:
  std::vector<std::string> Break(const std::string& line) const;
  std::size_t LengthThatFits(const std::string& line) const;
  void Place(const std::vector<std::string>& block);
  int LineHeight() const;

  HFONT font;
  std::string title;
  std::vector<std::vector<std::string>> blocks;
  std::vector<std::vector<std::string>> pages{{}};
  SIZE size;
  std::size_t linesOfPage = 1;
};
