// When the day's grid is composed anew: on another day, where it was left without a stamp, and at a
// neighbour's signal.
#pragma once

namespace zemo {

struct Moment;
struct Station;

// The tick's steps. On air a composition waits for the middle of an element.
void RebuildGrid(Station& station, const Moment& at);
// Stopped and silent there is no element under which it would have to wait.
void ServeGridSignalAtRest(Station& station, const Moment& at);

}  // namespace zemo
