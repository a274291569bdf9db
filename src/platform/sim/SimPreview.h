// The sound chain of a preview on the virtual clock.
#pragma once

#include <string>

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
  }

 private:
  SimSoundChain chain_;
};

}  // namespace zemo
