// The music title tied to a spot: one of the genre that its campaign names.
#pragma once

#include <string>

namespace zemo {

struct Station;

// Puts in that row of PL the title of the genre of the campaign with that sound file (stored path)
// that rested longest, among those allowed at this hour and on this day of the year. No rotation
// rule is asked, and two spots of one genre get the same title. True: a row was put in. A fault is
// logged and leaves the spot without its title. Thread: the logic's.
bool InsertTitleOfSpot(Station& station, const std::string& file, int position);

}  // namespace zemo
