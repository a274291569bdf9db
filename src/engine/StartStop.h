// Start and stop of the on-air engine.
#pragma once

namespace zemo {

struct Station;

// true starts, false stops: a stop only clears the running flag, the tick lets the element on air
// end and drains the buffers.
void StartStopZemoRadio(Station& station, bool start);

}  // namespace zemo
