// What keeps the on-air list whole in automatic mode: the fitting of the hour's end, stored lists
// whose time has come, and the refill.
#pragma once

namespace zemo {

struct Moment;
struct Station;

// The tick's steps.
void FitEndOfHour(Station& station, const Moment& at);
void WatchPlaylists(Station& station, Moment& at);
void Refill(Station& station);

}  // namespace zemo
