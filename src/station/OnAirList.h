// The on-air list PL: the ordered queue of what will be played next.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "station/OnAirElement.h"

namespace zemo {

struct OnAirRow : OnAirElement {
  int64_t key = 0;  // unique for the run

  // The element alone, for who copies it out of the list.
  const OnAirElement& AsElement() const { return *this; }
};

// Rows are counted from 1, as the operator counts them. Writers: the tick, the requests and
// inserters, the operator. Thread: the logic's.
class OnAirList {
 public:
  int Count() const { return static_cast<int>(rows_.size()); }
  bool Empty() const { return rows_.empty(); }
  OnAirRow& Row(int row) { return rows_[static_cast<size_t>(row - 1)]; }
  const OnAirRow& Row(int row) const { return rows_[static_cast<size_t>(row - 1)]; }
  OnAirRow& Add(OnAirElement element);              // at the end
  OnAirRow& Insert(int row, OnAirElement element);  // before that row; past the end: at the end
  void InsertAll(int row, std::vector<OnAirElement> elements);  // the first one before that row
  void Remove(int row);
  void TakeToAir(int64_t key);  // the row, where it still stands here, and that it has aired
  bool HasAired(int64_t key) const;
  void SwapElements(int row, int other);  // the keys stay where they are
  void Clear() { rows_.clear(); }         // the key counter runs on
  void Restore(std::vector<OnAirRow> rows) { rows_ = std::move(rows); }  // with the keys they had
  std::vector<int32_t> Codes() const;                                    // of every row
  int RowOfKey(int64_t key) const;                                       // 0 when it has gone
  auto begin() const { return rows_.begin(); }
  auto end() const { return rows_.end(); }

 private:
  std::vector<OnAirRow> rows_;
  std::vector<int64_t> aired_;  // keys, the newest last; as many as an order can have met
  int64_t nextKey_ = 1;
};

}  // namespace zemo
