// The troubles of a station on air, and what the processes that make them tell of them: shared
// memory.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace zemo::bench {

enum Trouble { kExclusive, kImmediate, kShared, kDiskFull, kSoundGone, kSideGone, kDeviceGone };
inline constexpr int kTroubles = 7;
inline constexpr std::array<const char*, kTroubles> kTroubleNames = {
    "base locked exclusively", "base locked for writing", "base locked by a reader", "disk full",
    "a sound file gone",       "a side file gone",        "device unloaded"};

struct TroubleFigures {
  std::atomic<int> times, now;  // how often; whether it is at this moment
  std::atomic<int64_t> allMs, mostMs;
};

struct TroubleBoard {
  std::atomic<bool> begun, over;
  std::array<TroubleFigures, kTroubles> figures;
};

}  // namespace zemo::bench
