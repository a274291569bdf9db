// Jingle selection: station jingles and linking elements, the least recently played first.
// A fault is logged under the name that docs/glossary.md has for the routine, and the caller goes
// on without a jingle. Thread: the logic's.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

struct Station;

// A jingle at the head of PL, or over the introduction on slot 2, there only one shorter than that
// many ms (below 1: any). Never the one that was chosen last.
void FindJingle(Station& station, bool overlay, int32_t maxMs);
// The title's own jingle over its introduction. True: one was found.
bool FindAssociatedJingle(Station& station, int32_t titleCode);
// The own jingles of the title in row 1, else those of its artist, before and behind it.
void FindJingleBeforeTitle(Station& station, int32_t titleCode);
// The genre's jingle at the head of PL. True: one was found.
bool FindGenreJingle(Station& station, const std::string& genre);
// The jingle that announces extracts, in that row of PL; without one a row that only starts them.
void FindExtractJingle(Station& station, int16_t row);
// The linking element at the head of PL. True: one was put there.
bool FindLinkJingle(Station& station);
// Author and composer of the jingle with that file (stored path), "" when it is no jingle.
std::string ComposerOfJingle(Station& station, const std::string& file);

}  // namespace zemo
