// ListRech, the browse list of the live mode: what it browses, its heads and its rows.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "station/OnAirList.h"

namespace zemo {

// The entries of MenuLive in their order.
enum class BrowseList { kMusic = 0, kJingles = 1, kSpots = 2, kOthers = 3, kToday = 4 };

struct BrowseRow {
  Cells cells;       // text and sub-items in the order of the list's query
  int32_t code = 0;  // CODE in the table that is browsed; 0: the row is no library record
};

// Thread: the logic's. Writers: MenuLive, the library search, the heads.
struct BrowseRows {
  BrowseList list = BrowseList::kMusic;
  std::array<std::string, kColumns> titles;  // heads; an empty one has no text
  std::array<int, kColumns> widths{};        // in 1/15 of a pixel at 96 dots an inch; 0: hidden
  std::vector<BrowseRow> rows;
  bool sorted = false;  // ascending by sortColumn; a new fill ends it
  int sortColumn = 0;
};

}  // namespace zemo
