// Where the cells of a list are, what the mouse hits, and where keys and wheel go. Cells are numbered row by
// row from 0; -1 is no cell. Row counts carry a fraction when the last row does not fill up (items /
// columns). Everything takes any value: a row height below 1 shows no cells, a row count that is no number
// has none.
#pragma once

#include <algorithm>
#include <optional>

#include "platform/desktop/messages.h"
#include "platform/desktop/types.h"

constexpr int kMaxListCells = 1'000'000'000;
constexpr int kMaxListColumns = 256;

constexpr int UsableColumns(int columns) {
  return std::clamp(columns, 1, kMaxListColumns);
}

// rows x columns, whole: what dividing items by columns took off in the last digits comes back.
constexpr int CellCount(double rows, int columns) {
  const double cells = rows * UsableColumns(columns);
  if (!(cells > 0)) return 0;
  if (cells >= kMaxListCells) return kMaxListCells;
  const int whole = static_cast<int>(cells);
  return cells - whole > 1e-6 * (whole + 1) ? whole + 1 : whole;
}

struct ListLayout {
  int width = 0;  // of the list's client area
  int height = 0;
  double rows = 0;
  int columns = 1;
  int rowHeight = 0;
  int firstRow = 0;  // the row at the top

  constexpr int Cells() const { return CellCount(rows, columns); }
  // Rows that fit in whole.
  constexpr int VisibleRows() const { return rowHeight > 0 ? height / rowHeight : 0; }
  // Rows of which something can be seen.
  constexpr int ShownRows() const { return rowHeight > 0 && height > 0 ? (height - 1) / rowHeight + 1 : 0; }
};

struct ListCell {
  int index;  // may lie beyond the last cell: the rest of the area is striped like cells
  RECT rect;
};

// The cell in a column of the row that is shown `row` rows below the top.
constexpr ListCell CellAt(const ListLayout& layout, int row, int column) {
  const int columns = UsableColumns(layout.columns);
  const double width = static_cast<double>(layout.width) / columns;
  const long long index = (static_cast<long long>(layout.firstRow) + row) * columns + column;
  const int right = column + 1 == columns ? layout.width : static_cast<int>(width * (column + 1));
  return {static_cast<int>(std::min<long long>(index, kMaxListCells)),
          {static_cast<int>(width * column), row * layout.rowHeight, right, (row + 1) * layout.rowHeight}};
}

// The cell at a client point; index -1 when there is none.
constexpr ListCell HitCell(const ListLayout& layout, POINT point) {
  constexpr ListCell kNone{-1, {}};
  if (layout.rowHeight < 1 || point.y < 0 || point.y >= layout.height) return kNone;
  for (int column = 0; column < UsableColumns(layout.columns); ++column) {
    const ListCell cell = CellAt(layout, point.y / layout.rowHeight, column);
    if (Contains(cell.rect, point)) return cell.index < layout.Cells() ? cell : kNone;
  }
  return kNone;
}

// A cell by its number; nothing when it is not in sight.
constexpr std::optional<ListCell> FindCell(const ListLayout& layout, int index) {
  const int columns = UsableColumns(layout.columns);
  const int row = index / columns - layout.firstRow;
  if (index < 0 || index >= layout.Cells() || row < 0 || row >= layout.ShownRows()) return std::nullopt;
  return CellAt(layout, row, index % columns);
}

// The first row that brings a cell into sight: the top for what is seen from there, else the cell in the
// middle.
constexpr int FirstRowFor(const ListLayout& layout, int index) {
  const int row = index / UsableColumns(layout.columns);
  const int visible = layout.VisibleRows();
  return row < visible ? 0 : std::max(row - visible / 2, 0);
}

// A first row brought below the row count.
constexpr int UsableFirstRow(int firstRow, double rows) {
  if (firstRow < rows) return std::max(firstRow, 0);
  return rows > 1 ? static_cast<int>(std::min(rows - 1, static_cast<double>(kMaxListCells))) : 0;
}

// The first row after a turn of the wheel: one row up or down, where there is one.
constexpr int WheelFirstRow(int delta, int firstRow, double rows) {
  if (delta < kWheelStep) return firstRow < rows - 1 ? firstRow + 1 : firstRow;
  return firstRow >= 1 ? firstRow - 1 : firstRow;
}

// The cell that a key moves the selection to; nothing when the key leaves it where it is. A page is that many
// cells.
constexpr std::optional<int> KeySelection(unsigned key, int selected, int cells, int page) {
  switch (key) {
    case VK_NEXT:
      if (selected + 1 < cells) return std::min(std::max(selected, 0) + std::max(page, 1), cells - 1);
      return std::nullopt;
    case VK_PRIOR:
      if (selected >= 1) return std::max(selected - std::max(page, 1), 0);
      return std::nullopt;
    case VK_RIGHT:
    case VK_DOWN:
      if (selected + 1 < cells) return selected + 1;
      return std::nullopt;
    case VK_LEFT:
    case VK_UP:
      if (selected >= 1) return selected - 1;
      return std::nullopt;
    case VK_HOME:
      if (cells >= 2 && selected >= 1) return 0;
      return std::nullopt;
    case VK_END:
      if (cells >= 1 && selected != cells - 1) return cells - 1;
      return std::nullopt;
    default:
      return std::nullopt;
  }
}
