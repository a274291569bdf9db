// A frame that moves with a clock, in the lower bits of an atomic word: kept less by the clock, so
// that it needs no writing as it moves. The sum is cut to the bits, so that neither the clock nor
// the difference needs to fit into them: only the frame itself, up to 1.5 years of sound.
#pragma once

#include <cstdint>

namespace zemo {

inline constexpr int kFrameBits = 42;

inline uint64_t FrameBits(int64_t frame) {
  return static_cast<uint64_t>(frame) & ((uint64_t{1} << kFrameBits) - 1);
}

// `now`: what the clock adds, 0 for one that does not move. Bits above the frame's do not count.
inline int64_t FrameOf(uint64_t bits, int64_t now) {
  constexpr int kUpperBits = 64 - kFrameBits;
  return static_cast<int64_t>((bits + static_cast<uint64_t>(now)) << kUpperBits) >> kUpperBits;
}

}  // namespace zemo
