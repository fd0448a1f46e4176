#include "cli/text_grid.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "cli/table.h"
#include "core/time_texts.h"
#include "platform/system/standard_streams.h"

namespace cli {
namespace {

// Characters of a whole line of boxes.
std::size_t GridWidth() {
  constexpr int kNarrowest = 40;
  constexpr int kWidest = 1000;
  const char* columns = std::getenv("COLUMNS");
  const int said = columns == nullptr ? 0 : std::atoi(columns);  // NOLINT(cert-err34-c): 0 for no number
  const int width = said > 0 ? said : platform::TerminalWidth();
  return static_cast<std::size_t>(width > 0 ? std::clamp(width, kNarrowest, kWidest) : 120);
}

// The text in exactly so many characters.
std::string Fitted(std::string_view text, std::size_t width) {
  std::string fitted;
  std::size_t count = 0;
  for (const char c : OneLine(text)) {
    const bool begins = (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    if (begins && ++count > width) break;
    fitted += c;
  }
  return fitted + std::string(width - std::min(count, width), ' ');
}

std::string Rule(std::size_t columns, std::size_t width) {
  std::string rule = "+";
  for (std::size_t i = 0; i < columns; ++i) rule.append(width, '-').append("+");
  return rule + "\n";
}

// One line of boxes, of which `row` are the days: null where there is none.
void WriteRow(Output& output, const std::vector<const GridDay*>& row, std::size_t width) {
  std::size_t height = 0;
  for (const GridDay* day : row) height = std::max(height, day == nullptr ? 0 : day->lines.size() + 1);
  for (std::size_t i = 0; i < height; ++i) {
    std::string line = "|";
    for (const GridDay* day : row) {
      const bool has = day != nullptr && i <= day->lines.size();
      const std::string text = !has ? "" : i == 0 ? day->head : day->lines[i - 1];
      line.append(Fitted(text, width)).append("|");
    }
    output.Write(line + "\n");
  }
  output.Write(Rule(row.size(), width));
}

}  // namespace

void GridDays(GridShape shape, const core::Date& day, core::Date& from, core::Date& to) {
  from = day;
  to = day;
  if (shape == GridShape::kMonth) {
    from.day = 1;
    to.day = core::DaysInMonth(day.year, day.month);
    return;
  }
  while (core::Weekday(from) != 1 && core::PreviousDay(from)) continue;
  while (core::Weekday(to) != 0 && core::NextDay(to)) continue;
}

void WriteGrid(Output& output, GridShape shape, const core::Date& titled, const core::Date& from,
               const std::vector<GridDay>& days) {
  const bool month = shape == GridShape::kMonth;
  const std::size_t columns = month ? 7 : 4;
  const std::size_t width = (GridWidth() - 1) / columns - 1;
  output.Write(core::MonthName(titled) + " " + std::to_string(titled.year) + "\n" + Rule(columns, width));
  const int weekday = core::Weekday(from);
  std::vector<const GridDay*> row(static_cast<std::size_t>(month ? weekday : (weekday + 6) % 7), nullptr);
  if (month) {
    std::string line = "|";
    core::Date sunday{4, 1, 2004};
    for (int i = 0; i < 7; ++i, ++sunday.day)
      line.append(Fitted(core::WeekdayName(sunday), width)).append("|");
    output.Write(line + "\n" + Rule(columns, width));
  }
  for (const GridDay& day : days) {
    if (row.size() == columns) {
      WriteRow(output, row, width);
      row.clear();
    }
    row.push_back(&day);
  }
  row.resize(columns, nullptr);
  WriteRow(output, row, width);
}

}  // namespace cli
