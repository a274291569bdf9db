// The live mode's browse list: which library it shows, and what goes from it into PL. Each
// procedure is one event of a control and records the operator's activity. Thread: the logic's.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "station/BrowseList.h"

namespace zemo {

struct Station;

namespace OnAir {

// Chooses what ListRech browses: music by its search, jingles, spots, other short elements, or what
// went on air today. A table that cannot be read is logged and leaves the list empty. With music
// the text that stands in Rech is looked for again, slice by slice (scheduling/LibrarySearch.h).
void MenuLive_Click(Station& station, BrowseList list);

void ListRech_MouseDown(Station& station);  // a row was pressed
// CODE of the card of music that the row (from 0) opens; 0: none, or the lists are locked.
int32_t CardOfBrowseRow(const Station& station, int row);

void SetColumnTitle(Station& station, int column, const std::string& title);
void SetColumnWidths(Station& station, const std::array<int, kColumns>& widths);

// The keyboard went into a text box, where digits and blanks are text, or out of it.
void TextBox_GotFocus(Station& station);
void TextBox_LostFocus(Station& station);

// A drop of rows of ListRech (from 0, in the order of the list) at that row of PL; past the last or
// 0: at the end. Rows without a library record are passed over. More than kMostDropped would hold
// the air up, and are a slip of the hand: the operator is told, and nothing is dropped (false).
inline constexpr size_t kMostDropped = 500;
bool DropBrowseRows(Station& station, const std::vector<int>& browseRows, int row);

}  // namespace OnAir

}  // namespace zemo
