// The main tick: MainTimer's routine, every 100 ms the only clock of the engine.
#pragma once

namespace zemo {

struct Station;

namespace OnAir {

void MainTimer_Timer(Station& station);

}  // namespace OnAir

// What is still to be read, as of the last tick, before the exit point of the element on air, in
// milliseconds; below 0 behind it.
double MsToExitPoint(const Station& station);

}  // namespace zemo
