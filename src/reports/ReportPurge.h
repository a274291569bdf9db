// The report kept to size.
#pragma once

#include <cstdint>

namespace zemo {

struct Station;

// Deletes the rows up to midnight of the day that lies that many days back, 0 being today. A fault
// is logged and leaves the table as it was. Thread: the logic's.
void PurgeRapport(Station& station, int64_t days);

}  // namespace zemo
