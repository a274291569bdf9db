// A table of text cells, as the editors show it.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zemo {

// A table of text cells. A cell that was never set reads as empty.
class TextGrid {
 public:
  using Row = std::vector<std::string>;

  int RowCount() const { return static_cast<int>(rows_.size()); }
  const Row& At(int row) const { return rows_[static_cast<size_t>(row)]; }
  const std::string& Cell(int row, int column) const {
    static const std::string none;
    if (row < 0 || row >= RowCount() || column < 0 || column >= static_cast<int>(At(row).size()))
      return none;
    return At(row)[static_cast<size_t>(column)];
  }
  // The row must exist; the column grows.
  void SetCell(int row, int column, std::string text) {
    Row& cells = rows_[static_cast<size_t>(row)];
    if (column >= static_cast<int>(cells.size())) cells.resize(static_cast<size_t>(column) + 1);
    cells[static_cast<size_t>(column)] = std::move(text);
  }
  void AddRow(Row cells) { rows_.push_back(std::move(cells)); }
  void InsertRow(int row, Row cells) { rows_.insert(rows_.begin() + row, std::move(cells)); }
  void RemoveRow(int row) { rows_.erase(rows_.begin() + row); }
  void Clear() { rows_.clear(); }

 private:
  std::vector<Row> rows_;
};

// A cell by row and column, both from 0.
struct GridPlace {
  int row = 0;
  int column = 0;
};

}  // namespace zemo
