// The newest rows of the broadcast report, for the artist tests, without reading all of it (see
// reports/ReportBound.h).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zemo {

struct Station;

// Auteur of the `count` newest music and other rows (no pip, jingle or spot), the newest first;
// among rows of one moment the highest CODE first. Throws StoreError.
std::vector<std::string> NewestArtists(Station& station, int count);

// CODE of the artist's newest row; 0 when there is none, or none above `floor`, which the caller
// then need not know. Throws StoreError.
int64_t NewestRowOf(Station& station, const std::string& artist, int64_t floor);

}  // namespace zemo
