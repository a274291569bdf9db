#include "station/DayGrid.h"

#include <utility>

namespace zemo {

const std::string& DayGrid::Cell(int row, int column) const {
  static const std::string empty;
  if (row < 0 || row >= RowCount()) return empty;
  const auto& cells = rows_[static_cast<size_t>(row)];
  if (column < 0 || column >= static_cast<int>(cells.size())) return empty;
  return cells[static_cast<size_t>(column)];
}

void DayGrid::SetCell(int row, int column, std::string text) {
  if (row >= RowCount()) rows_.resize(static_cast<size_t>(row) + 1);
  auto& cells = rows_[static_cast<size_t>(row)];
  if (column >= static_cast<int>(cells.size())) cells.resize(static_cast<size_t>(column) + 1);
  cells[static_cast<size_t>(column)] = std::move(text);
}

void DayGrid::Clear() {
  rows_.clear();
  day_.clear();
}

}  // namespace zemo
