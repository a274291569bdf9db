// The main tick: MainTimer's routine, every 100 ms the only clock of the engine.
#pragma once

namespace zemo {

struct Station;

void MainTimer_Timer(Station& station);

}  // namespace zemo
