// Composition of the day's grid of spot and news breaks.
#pragma once

namespace zemo {

struct Station;

// Composes GPubJour for today and stamps it with the date.
void MakePubduJour(Station& station);

}  // namespace zemo
