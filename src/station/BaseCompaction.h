// Repair and compaction of the station's base: once a month at start, and on the operator's demand.
#pragma once

namespace zemo {

struct Station;

// Repairs and compacts the base, which is open again afterwards; the one before stays as
// "Triskin.BAK". Throws StoreError or FileError when it cannot be done: the base is as it was then,
// and open. kErrLocked while anybody else has it open.
void RepairAndCompact(Station& station);

// The same with its fault logged. True when the base was compacted.
bool CompactStationBase(Station& station);

// At start: when the month of the last compaction is not today's. The moment is kept as
// LastCompactage once it is done.
void CompactOnceAMonth(Station& station);
void KeepLastCompaction(Station& station);  // now; throws FileError

}  // namespace zemo
