// The emergency folder on air: what plays while the engine runs and nothing else can.
//
//   waiting -> (nothing sounds for 2 s) -> on air -> (something else sounds, or a stop) -> waiting
//
// On air its elements follow one another at their exit points, and give way to the list:
// - automatic mode: a row that can sound is faded to at once, as by "next";
// - live mode: the presenter's row comes at the exit point, or by "next";
// - a stop fades it, where other elements play to their end.
// Silence that is meant stays silence: a stopped engine (topage, satellite news, no local
// programme, the drain), and in live mode an empty list, which is the presenter's. Rows of a live
// list that start nothing are no such silence.
#pragma once

namespace zemo {

struct Station;

// At the head of each tick, so that a fault of the tick cannot keep it from the air. Does nothing
// without a playable file in the folder. Needs no base. Never throws but the end of a simulation;
// holds MainTimer and yields as PlayWave does.
void ServeEmergencyAir(Station& station);

// While the folder has the air automatic requests rest for 10 s between two; else always true.
bool EmergencyLetsRequest(Station& station);

}  // namespace zemo
