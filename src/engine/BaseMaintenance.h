// Upkeep of the station's base: structure checks at start, monthly compaction, a new base dropped
// in.
#pragma once

namespace zemo {

struct Station;

void CheckStructures(Station& station);    // old settings field and the six tables, at start
void CompactageTriskin(Station& station);  // repair and compaction
void SurveilleNewBase(Station& station);   // files dropped beside the base; after each music start

}  // namespace zemo
