// The newest rows of the broadcast report, for the artist tests, without reading all of it: a
// report holds hundreds of thousands of rows and has no index on its moment.
//
// Rows come with rising CODE, and all but always with rising DATENUM. So it is enough to know, for
// the rows up to some CODE, the highest DATENUM among them: newer rows above that moment are the
// newest of all. Where the clock was set back and that does not hold, the whole report is asked.
// The bound stays true while rows are added and deleted; it is read anew when the base is another
// one.
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
