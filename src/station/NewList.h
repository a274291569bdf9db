// A new stored list in place of what stands in PL.
#pragma once

namespace zemo {

struct Station;

// Empties PL and the fields of the panel of stored lists. An operator's order holds a ListOrder
// around it. Thread: the logic's.
void BeginNewList(Station& station);

}  // namespace zemo
