// Planned times of the on-air list and its total.
#pragma once

#include <cstdint>

namespace zemo {

struct Station;

// Writes plannedMs of every row: from now and what the element on air still runs up to its exit
// point; in the stored-list editor from the list's own time, where one stands there.
void RefreshPlanTimes(Station& station);

// What the rows take together, each up to its exit point, whole seconds.
int32_t ListTotalSec(const Station& station);

}  // namespace zemo
