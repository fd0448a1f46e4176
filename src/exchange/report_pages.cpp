#include "exchange/report_pages.h"

#include <algorithm>

#include "platform/desktop/font.h"

namespace {

constexpr int kTitleLines = 2;  // the title and the space below it

}  // namespace

ReportPages::ReportPages(const std::string& text, HFONT textFont) : font(textFont) {
  blocks.emplace_back();
  for (std::size_t start = 0, number = 0; start < text.size(); ++number) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    start = end + 1;
    if (number == 0) {
      title = line;
    } else if (!line.empty()) {
      blocks.back().push_back(line);
    } else if (!blocks.back().empty()) {
      blocks.emplace_back();
    }
  }
}

int ReportPages::LineHeight() const {
  const TextMetrics metrics = GetTextMetrics(font);
  return metrics.height + metrics.externalLeading;
}

int ReportPages::LayOut(SIZE pageSize) {
  size = pageSize;
  linesOfPage = static_cast<std::size_t>(std::max(size.cy / LineHeight() - kTitleLines, 1));
  pages.assign(1, {});
  for (const std::vector<std::string>& block : blocks) {
    std::vector<std::string> broken;
    for (const std::string& line : block) {
      const std::vector<std::string> parts = Break(line);
      broken.insert(broken.end(), parts.begin(), parts.end());
    }
    Place(broken);
  }
  return static_cast<int>(pages.size());
}

void ReportPages::Place(const std::vector<std::string>& block) {
  if (block.empty()) return;
  const bool apart = !pages.back().empty();
  const std::size_t needed = pages.back().size() + (apart ? 1 : 0) + std::min(block.size(), linesOfPage);
  if (needed > linesOfPage) {
    pages.emplace_back();
  } else if (apart) {
    pages.back().emplace_back();
  }
  for (const std::string& line : block) {
    if (pages.back().size() == linesOfPage) pages.emplace_back();
    pages.back().push_back(line);
  }
}

// At least one character, however narrow the page.
std::size_t ReportPages::LengthThatFits(const std::string& line) const {
  std::size_t fits = 1;
  std::size_t tooLong = line.size() + 1;
  while (tooLong - fits > 1) {
    const std::size_t tried = fits + (tooLong - fits) / 2;
    if (MeasureText(font, line.substr(0, tried).c_str()).cx <= size.cx) {
      fits = tried;
    } else {
      tooLong = tried;
    }
  }
  return fits;
}

// Between words where there are any.
std::vector<std::string> ReportPages::Break(const std::string& line) const {
  std::vector<std::string> parts;
  std::string rest = line;
  for (;;) {
    const std::size_t fits = LengthThatFits(rest);
    if (fits >= rest.size()) break;
    const std::size_t blank = rest.rfind(' ', fits);
    const std::size_t length = blank == std::string::npos || blank == 0 ? fits : blank;
    parts.push_back(rest.substr(0, length));
    rest.erase(0, std::min(rest.find_first_not_of(' ', length), rest.size()));
  }
  if (!rest.empty() || parts.empty()) parts.push_back(rest);
  return parts;
}

void ReportPages::Paint(HDC hdc, int page) const {
  hdc->SelectFont(font);
  const int lineHeight = LineHeight();
  const std::string number = "Page " + std::to_string(page) + " of " + std::to_string(pages.size());
  const int numberLeft = size.cx - MeasureText(font, number.c_str()).cx - lineHeight;
  hdc->DrawText(title.c_str(), {0, 0, numberLeft - lineHeight, lineHeight}, DT_SINGLELINE | DT_END_ELLIPSIS);
  hdc->DrawText(number.c_str(), {numberLeft, 0, size.cx, lineHeight}, DT_RIGHT | DT_SINGLELINE);
  hdc->DrawLine(0, lineHeight + lineHeight / 4, size.cx, lineHeight + lineHeight / 4);
  int y = kTitleLines * lineHeight;
  for (const std::string& line : Lines(page)) {
    // What was measured on the screen may be a little wider on paper: the margin has room for it.
    hdc->DrawText(line.c_str(), {0, y, size.cx + lineHeight, y + lineHeight}, DT_SINGLELINE);
    y += lineHeight;
  }
}
