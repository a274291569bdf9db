// The day's grid of spot and news breaks, GPubJour: a table of text cells, row 0 the heading.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zemo {

// Columns of the day's grid. An element's file stands kFileOffset columns on from its advertiser.
namespace GridCol {
inline constexpr int kMoment = 0;        // "hh:mm"
inline constexpr int kLength = 1;        // of the break, "mm:ss"
inline constexpr int kType = 2;          // "Pubs" or "Rubriques"
inline constexpr int kFirstElement = 3;  // advertiser of the first element
inline constexpr int kLastElement = 49;
inline constexpr int kFileOffset = 50;
inline constexpr int kDateStamp = 53;  // of row 0
inline constexpr int kCount = 100;
}  // namespace GridCol

// Cells of a row: 0 moment "hh:mm", 1 break length, 2 break type, 3 to 49 elements, 53 to 99 their
// files; cell (0,53) the date stamp: whoever changes campaigns empties it, and the grid is composed
// again while its breaks keep firing. Writer: the composition. Thread: the logic's.
class DayGrid {
 public:
  int RowCount() const { return static_cast<int>(rows_.size()); }  // the heading row included
  const std::string& Cell(int row, int column) const;              // "" where nothing was set
  bool IsSpots(int row) const { return Cell(row, GridCol::kType) == "Pubs"; }  // else news
  void SetCell(int row, int column, std::string text);                         // grows the table
  void Clear();
  // The day that the rows were composed for, "yyyymmdd"; empty: for none.
  const std::string& Day() const { return day_; }
  void SetDay(std::string day) { day_ = std::move(day); }
  const std::vector<std::vector<std::string>>& Rows() const { return rows_; }

 private:
  std::vector<std::vector<std::string>> rows_;
  std::string day_;
};

}  // namespace zemo
