// What the air's output measures of itself, for several who look at it: each gets the peaks since
// his own last look.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "engine/HealthLine.h"
#include "platform/real/sound/RealSoundChain.h"

namespace zemo {

inline OutputFigures FiguresOf(const SoundHealth& health) {
  return {.output = health.output,
          .heard = health.heard,
          .underruns = health.underruns,
          .lateFrames = health.lateFrames,
          .peakLeft = health.peakLeft,
          .peakRight = health.peakRight,
          .device = health.device};
}

// Thread: the logic's.
class AirFigures {
 public:
  enum Looker : size_t { kScreen, kControl, kLookers };

  explicit AirFigures(RealSoundChain& sound) : sound_(sound) {}  // not owned

  SoundHealth Take(Looker looker) {
    SoundHealth health = sound_.TakeHealth();
    for (Peaks& held : held_) {
      held.left = std::max(held.left, health.peakLeft);
      held.right = std::max(held.right, health.peakRight);
    }
    health.peakLeft = held_[looker].left;
    health.peakRight = held_[looker].right;
    held_[looker] = {};
    return health;
  }

 private:
  struct Peaks {
    float left = 0, right = 0;
  };
  RealSoundChain& sound_;
  std::array<Peaks, kLookers> held_;
};

}  // namespace zemo
