// What contacts and joystick buttons bring about alike: satellite news, the local programme, and
// one element at a pulse.
#pragma once

namespace zemo {

struct Station;

// InputsAllowed: false while the minute lies in a period of the exclusion table, both ends
// included. A period whose end comes before its start holds no minute: one over midnight is two
// rows.
void ComputeInputsAllowed(Station& station);

// The satellite takes the air, and gives it back.
void BeginSatellite(Station& station);
void EndSatellite(Station& station);
// While the satellite has the air: the list for the return is made at the one moment when both
// channels are done, before the drain that follows writes them otherwise.
void PrepareReturnFromSatellite(Station& station);

void BeginLocalProgramme(Station& station);
void EndLocalProgramme(Station& station);

// One element, led in by a linking element, while the engine is stopped and the output silent.
void StartPulse(Station& station);

}  // namespace zemo
