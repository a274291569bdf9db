// The sorting of a list of any length in slices, each short enough to stand between two ticks:
// the keys first, then sorted runs, then runs merged by twos.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "station/BrowseList.h"

namespace zemo {

// Ascending by a column's text without regard to case; rows of one text keep their order. The rows
// must stay as they are meanwhile. Thread: the logic's.
class RowSort {
 public:
  RowSort(const BrowsedRows& rows, int column) : rows_(rows), column_(column) {}

  // One slice, about 5 ms; true once all is sorted.
  bool Slice();
  // Where each row of the sorted list stood.
  std::vector<uint32_t> Places() const;

 private:
  struct Entry {
    uint64_t head;  // the key's first bytes, as a number that orders as they do
    uint32_t place;
  };
  std::string_view Key(uint32_t place) const;
  bool Before(const Entry& a, const Entry& b) const;
  void ReadKeys();
  void SortRun();
  void MergeRuns();

  const BrowsedRows& rows_;
  int column_;
  std::string keys_;              // of all rows, one behind the other
  std::vector<uint32_t> keyEnd_;  // of each
  std::vector<Entry> entries_, merged_;
  size_t sorted_ = 0;    // entries that stand in sorted runs
  size_t run_ = 0;       // the length of the runs that are being merged
  size_t mergedTo_ = 0;  // how far this pass has come
};

}  // namespace zemo
