// The sound chain of a preview on the virtual clock.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/PreviewChain.h"
#include "platform/SoundSource.h"
#include "platform/sim/SimPrelisten.h"
#include "platform/sim/SimSoundChain.h"

namespace zemo {

// Thread: the logic's, which is the only one.
class SimPreview final : public PreviewChain {
 public:
  explicit SimPreview(SoundOpener& opener) : chain_(opener) {}  // not owned

  SimSoundChain& Sound() override { return chain_; }
  void UseDevice(int number) override {
    if (number < 0 || number >= SimPrelisten::kOutputs)
      throw SoundError("output " + std::to_string(number) + " does not open");
    device_ = number;
  }
  Levels HeardLevels() override { return {}; }
  void OnLost(std::function<void()> lost) override { lost_ = std::move(lost); }

  // The device goes, in the middle of a join.
  void Lose() const { lost_(); }
  int Device() const { return device_; }  // the last one that did not refuse; -1: none yet

 private:
  SimSoundChain chain_;
  std::function<void()> lost_;
  int device_ = -1;
};

}  // namespace zemo
