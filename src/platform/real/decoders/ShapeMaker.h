// The shape of a sound file (platform/Waveforms.h) as it is decoded, block after block.
#pragma once

#include <cstdint>

#include "platform/Waveforms.h"

namespace zemo {

// One thread at a time.
class ShapeMaker {
 public:
  // Frames and stretches of the whole.
  explicit ShapeMaker(int64_t lengthFrames, size_t stretches = kWavePeaks);

  // The frames that follow the ones before; those behind the length count to the last stretch.
  void Add(const float* stereo, int frames);

  // Of what was added so far; stretches that were not reached are silent.
  const WavePeaks& Peaks() const { return peaks_; }

 private:
  void EnterStretch();

  int64_t length_, stretches_;
  int64_t frame_ = 0;  // the next one
  size_t stretch_ = 0;
  int64_t stretchEnd_ = 0;  // its first frame that belongs to the next one
  WavePeaks peaks_;
};

}  // namespace zemo
