// The round trip on the virtual clock, where no device takes its time.
#pragma once

#include <string>

#include "platform/RoundTrip.h"
#include "platform/SoundSource.h"
#include "platform/sim/SimPrelisten.h"
#include "platform/sim/SimRecorder.h"

namespace zemo {

// Thread: the logic's, which is the only one.
class SimRoundTrip final : public RoundTrip {
 public:
  int32_t MeasureMs(int output, int input) override {
    if (output < 0 || output >= SimPrelisten::kOutputs)
      throw SoundError("output " + std::to_string(output) + " does not open");
    if (input < 0 || input >= SimRecorder::kInputs)
      throw SoundError("input " + std::to_string(input) + " does not open");
    return delayMs;
  }

  int32_t delayMs = 0;  // of the simulated machine
};

}  // namespace zemo
