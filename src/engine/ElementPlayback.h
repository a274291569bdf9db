// Element playback: starts one element on the free slot, waits out the overlap, and only then
// updates the card, writes the report and tells the outside.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

struct Station;

// `file` is the stored path of row 1 of PL, `code` its element code. Never throws but the end of a
// simulation; holds MainTimer and yields during the overlap.
void PlayWave(Station& station, const std::string& file, int32_t code);

// BufferOffsetSec from the output's buffers; after any change of them and at each start.
void ComputeBufferOffset(Station& station);

// Volume of a slot from `from` upward by 1 to `to`, yielding after each step; downward at once.
void ChangeVolume(Station& station, int channel, int from, int to);

// Waits that long with yields, by the clock of the wall; begins again when the clock goes back.
void WaitSeconds(Station& station, float seconds);

// True when nothing sounds on slots 0 and 1: both channels done, or, with the output closed, freed.
bool NothingOnAir(const Station& station);

}  // namespace zemo
