// Planned times of the on-air list and its total.
#pragma once

namespace zemo {

struct Station;

// Writes plannedMs of every row and the list's total: from now and what the element
// on air still runs up to its exit point; in the stored-list editor from the list's own time.
void RefreshPlanTimes(Station& station);

}  // namespace zemo
