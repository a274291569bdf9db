// Loops over samples that the mixer and the outputs share: peaks, and floats to 16 bits.
#pragma once

#include <cstdint>

namespace zemo {

// The largest magnitude of `count` samples as the bits of a float without its sign. Bits order as
// the numbers do, with infinity and what is no number above every number.
uint32_t PeakBits(const float* samples, int count);

// What is no number becomes 0, all else is kept within -limit..limit.
void Scrub(float* samples, int count, float limit);

// Rounds to the nearest and saturates; full scale 1.0 is 32768, so that 16-bit material comes out
// with the very samples it went in with.
void FloatToInt16(const float* samples, int16_t* out, int count);

}  // namespace zemo
