#include "platform/real/decoders/ShapeMaker.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/SoundSource.h"
#include "platform/real/decoders/HighestLevel.h"

namespace zemo {

ShapeMaker::ShapeMaker(int64_t lengthFrames, size_t stretches)
    : length_(std::max<int64_t>(1, lengthFrames)),
      stretches_(static_cast<int64_t>(stretches)),
      peaks_(stretches, 0) {
  EnterStretch();
}

// Where a file has fewer frames than stretches, some are passed over.
void ShapeMaker::EnterStretch() {
  const int64_t stretch = std::min(frame_ * stretches_ / length_, stretches_ - 1);
  stretch_ = static_cast<size_t>(stretch);
  stretchEnd_ = stretch == stretches_ - 1 ? std::numeric_limits<int64_t>::max()
                                          : ((stretch + 1) * length_ + stretches_ - 1) / stretches_;
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
