// A list of cards beside the card: its rows in their order, which of them are selected, and whether
// it is seen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "station/BrowseList.h"

namespace zemo {

// Which columns of PLDisco hold what; of the other two lists only the code has a fixed place.
namespace DiscoCol {
enum Column : int { kArtist, kTitle, kLength, kGenre, kVariety, kCode, kLastPlayed, kCount };
}  // namespace DiscoCol

// Rows are counted from 0. Thread: the logic's.
struct CardList {
  PackedRows texts;
  std::vector<uint32_t> order;  // numbers into `texts`
  std::vector<bool> selected;   // a row each
  bool visible = false;
  // Counts up when there are other rows or another order, not when one reads otherwise. A view that
  // follows the list looks at it.
  uint64_t generation = 0;

  size_t Count() const { return order.size(); }
  std::string_view Cell(size_t row, int column) const { return texts.Cell(order[row], column); }
  int32_t Code(size_t row) const { return texts.Code(order[row]); }

  void Append(const Cells& cells, int32_t code);  // not selected, of a list that nobody follows
  void Renew(size_t row, const Cells& cells);     // the same card as it reads now
  void Remove(size_t row);
  void Show(CardList rows);                           // in place of all; seen as before
  void Reorder(const std::vector<uint32_t>& places);  // where each row stood
  void Clear() { Show({}); }
};

}  // namespace zemo
