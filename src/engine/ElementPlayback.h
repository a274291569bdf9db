// Element playback: starts one element on the free slot, waits out the overlap, and only then
// updates the card, writes the report and tells the outside.
#pragma once

#include <cstdint>

#include "station/OnAirElement.h"

namespace zemo {

struct Station;

// Never throws but the end of a simulation; holds MainTimer and yields during the overlap, in which
// a row of the list can go: `element` is none of them.
void PlayWave(Station& station, const OnAirElement& element);

// Row 1 of PL, which has one: plays it and takes it out of the list. What the operator puts before
// it during the overlap stays. Gives what was played.
OnAirElement PlayFirstRow(Station& station);

// BufferOffsetSec from the output's buffers; after any change of them and at each start.
void ComputeBufferOffset(Station& station);

// Volume of a slot from `from` upward by 1 to `to`, yielding after each step; downward at once.
void ChangeVolume(Station& station, int channel, int from, int to);

// Waits that long with yields, by the clock of the wall; begins again when the clock goes back.
void WaitSeconds(Station& station, float seconds);

// True when nothing sounds on slots 0 and 1: both channels done, or, with the output closed, freed.
bool NothingOnAir(const Station& station);

}  // namespace zemo
