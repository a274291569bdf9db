// The request by percentages: appends music to PL so that the genres of the hour and the varieties
// of the library get their shares, the titles played longest ago first. No chance is in it: the
// same library, model and clock give the same titles.
#pragma once

#include <cstdint>

namespace zemo {

struct Station;

// Appends about `minutes` of music (0 or less: 60) by the model of the hour, or along the skeleton
// where the setting Squelette says so. Yields; never throws. Twice in one call stack is possible,
// as the operator's events are served.
void RequestMusic(Station& station, int16_t& minutes);

// The request as the tick, the start and the inputs ask it: TempRequette minutes.
void AutomaticRequest(Station& station);

// Parts rows of one genre from row `first` on (1 becomes 2), by swapping with the next row of
// another genre. Never throws.
void MixGenres(Station& station, int16_t& first);

}  // namespace zemo
