// The keys by which the operator plays short elements.
#pragma once

namespace zemo {

struct Station;

// lists.Touches from DiscothequeVirgule: number and trimmed file name of each element with a key,
// at most 100 of them. At the start and whenever the table changes. Throws StoreError.
void LoadHotKeys(Station& station);

}  // namespace zemo
