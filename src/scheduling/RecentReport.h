// What a request asks of the broadcast report: from memory where that is known to be what the base
// holds (reports/KnownReport.h), else of the base; where the base is out of reach from memory as it
// was read last.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zemo {

struct Station;

// Has the report in memory where that takes slices of reading only. Yields between these, the tick
// being held.
void KnowReport(Station& station);

// Both begin a request: what others write from then on counts for the next one, what this program
// writes at once.
//
// Auteur of the `count` newest music and other rows (no pip, jingle or spot), the newest first;
// among rows of one moment the highest CODE first. Where the newest is ahead of the clock, which
// went back then, those of the highest CODEs. Throws StoreError.
std::vector<std::string> NewestArtists(Station& station, int count);
// The highest CODE; none in an empty report. Throws StoreError.
std::optional<int64_t> NewestRow(Station& station);

// CODE of the artist's newest row; 0 when there is none, or none above `floor`. Throws StoreError.
int64_t NewestRowOf(Station& station, const std::string& artist, int64_t floor);

}  // namespace zemo
