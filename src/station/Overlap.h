// How an element gives way to the next one, by its exit distance: ms before its end.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace zemo {

// A longer overlap fades the old element, a shorter does not.
inline constexpr int32_t kLongOverlapMs = 3000;

// The fade of the old element where a new one of that length begins over it; none: it plays on to
// its end. A new one that is shorter than the overlap fades it within its own length.
inline std::optional<int32_t> OverlapFadeMs(int32_t exitMs, int32_t fadeOutMs,
                                            int32_t newLengthMs) {
  if (exitMs > newLengthMs) return std::min(fadeOutMs, newLengthMs);
  return exitMs > kLongOverlapMs ? std::optional(fadeOutMs) : std::nullopt;
}

}  // namespace zemo
