// The highest level among many samples: what shapes and peaks are made of.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace zemo {

// Of absolute values, full scale 1.0; 0 without samples. Inline, as it is asked of few samples at a
// time, and in the compiler's vectors, as it may not reorder a maximum of floats by itself.
inline float HighestLevel(const float* samples, size_t count) {
  using Four = float __attribute__((vector_size(16)));
  Four high{};
  Four low{};
  const size_t whole = count / 4 * 4;
  for (size_t i = 0; i < whole; i += 4) {
    Four four;
    std::memcpy(&four, samples + i, sizeof four);
    high = high > four ? high : four;
    low = low < four ? low : four;
  }
  low = -low;
  high = high > low ? high : low;
  float highest = std::max(std::max(high[0], high[1]), std::max(high[2], high[3]));
  for (size_t i = whole; i < count; ++i) highest = std::max(highest, std::fabs(samples[i]));
  return highest;
}

}  // namespace zemo
