#include "traffic/DayGridPrint.h"

#include <algorithm>

#include "station/DayGrid.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr int kSmallestSize = 6;

std::string PrintedRow(const DayGrid& grid, int row) {
  std::string line;
  for (int column = 0; !grid.Cell(row, column).empty(); ++column)
    line += (column == 0 ? "" : " ") + grid.Cell(row, column);
  return line;
}
}  // namespace

int PrintSize(std::string_view answer) {
  return std::max(kSmallestSize, ValInt(answer));
}

std::vector<std::string> PrintedDayGrid(const DayGrid& grid) {
  std::vector<std::string> lines;
  for (int row = 0; row < grid.RowCount(); ++row) {
    lines.push_back(PrintedRow(grid, row));
    if (row == 0) lines.emplace_back();
  }
  return lines;
}

}  // namespace zemo
