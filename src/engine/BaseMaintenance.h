// Upkeep of the station's base: structure checks at start, and a new base dropped beside it. The
// compaction stands in station/BaseCompaction.h.
#pragma once

#include <string>

namespace zemo {

class Folder;
struct Station;

// At start, once the fixed rows are seeded, on every machine: drops the old settings field and
// makes the tables anew whose count of fields is another. Each that was is told; a fault is logged
// and the others go on.
void CheckStructures(Station& station);

// What FinishInterruptedChange would put in the place of a base that is missing; empty: nothing.
std::string FileForMissingBase(const Folder& station);

// At start, before the base is opened or created: a change of the base that was interrupted between
// its two renames, which leaves no base under its name, is brought to its end. Says so in the error
// log. Throws nothing.
void FinishInterruptedChange(Station& station);

// After each music start: a base dropped as "New.mdb" takes the place of the station's, then
// "ExportPubs.Txt" is taken in. A file that cannot be the base is left where it is and told once.
// Throws nothing.
void TakeDroppedBase(Station& station);

}  // namespace zemo
