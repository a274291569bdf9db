// The day's grid of spot and news breaks, GPubJour: a table of text cells, row 0 the heading.
#pragma once

#include <string>
#include <vector>

namespace zemo {

// Cells of a row: 0 moment "hh:mm", 1 break length, 2 break type, 3 to 49 elements, 53 to 99 their
// files; cell (0,53) the date stamp. Writer: the composition. Thread: the logic's.
class DayGrid {
 public:
  int RowCount() const { return static_cast<int>(rows_.size()); }  // the heading row included
  const std::string& Cell(int row, int column) const;              // "" where nothing was set
  void SetCell(int row, int column, std::string text);             // grows the table
  void Clear() { rows_.clear(); }
  const std::vector<std::vector<std::string>>& Rows() const { return rows_; }

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace zemo
