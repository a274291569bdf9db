// Rows of the list made anew from their cards, as the end-of-hour fitting rebuilds it.
#pragma once

#include <cstdint>
#include <vector>

#include "station/OnAirList.h"

namespace zemo {

struct Station;

// The music rows of these codes, in their order; a code without a card (a jingle, a spot, any
// element with a negative code) has no row. Throws StoreError.
std::vector<OnAirElement> RowsOfCards(Station& station, const std::vector<int32_t>& codes);

}  // namespace zemo
