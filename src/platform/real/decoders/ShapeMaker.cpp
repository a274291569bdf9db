#include "platform/real/decoders/ShapeMaker.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/SoundSource.h"
#include "platform/real/decoders/HighestLevel.h"

namespace zemo {

namespace {

constexpr auto kStretches = static_cast<int64_t>(kWavePeaks);

}  // namespace

ShapeMaker::ShapeMaker(int64_t lengthFrames)
    : length_(std::max<int64_t>(1, lengthFrames)), peaks_(kWavePeaks, 0) {
  EnterStretch();
}

// Where a file has fewer frames than stretches, some are passed over.
void ShapeMaker::EnterStretch() {
  const int64_t stretch = std::min(frame_ * kStretches / length_, kStretches - 1);
  stretch_ = static_cast<size_t>(stretch);
  stretchEnd_ = stretch == kStretches - 1 ? std::numeric_limits<int64_t>::max()
                                          : ((stretch + 1) * length_ + kStretches - 1) / kStretches;
}

void ShapeMaker::Add(const float* stereo, int frames) {
  while (frames > 0) {
    const int run = static_cast<int>(std::min<int64_t>(frames, stretchEnd_ - frame_));
    const float level = HighestLevel(stereo, static_cast<size_t>(run) * kChannels);
    const auto scaled = static_cast<uint8_t>(std::lround(std::min(level, 1.0F) * 255));
    peaks_[stretch_] = std::max(peaks_[stretch_], scaled);
    stereo += static_cast<ptrdiff_t>(run) * kChannels;
    frames -= run;
    frame_ += run;
    if (frame_ == stretchEnd_) EnterStretch();
  }
}

}  // namespace zemo
