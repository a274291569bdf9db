// Planned times of the on-air list and its total.
#pragma once

#include <cstdint>

namespace zemo {

struct Station;
struct StoredListEditor;

// The editor of stored lists is open, and a time stands in it, whole or half typed.
bool HasListTime(const StoredListEditor& editor);

// Writes plannedMs of every row: from now and what the element on air still runs up to its exit
// point; in the stored-list editor from the list's own time, where one stands there.
void RefreshPlanTimes(Station& station);

// What the rows take together, each up to its exit point, whole seconds.
int32_t ListTotalSec(const Station& station);

}  // namespace zemo
