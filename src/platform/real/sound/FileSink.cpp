#include "platform/real/sound/FileSink.h"

#include <algorithm>
#include <array>

namespace zemo {

void FileSink::Write(const int16_t* stereo, int frames) {
  try {
    file_.Write(stereo, static_cast<int>(std::min<int64_t>(frames, mostFrames_ - file_.Frames())));
  } catch (const SoundError& error) {
    throw SoundError(std::string(error.what()) + ": the air goes on unrecorded");
  }
}

void FileSink::WriteLost(int64_t frames) {
  constexpr int kBlockFrames = 4096;
  static constexpr std::array<int16_t, kChannels * kBlockFrames> kSilence{};
  while (frames > 0) {
    const int count = static_cast<int>(std::min<int64_t>(frames, kBlockFrames));
    Write(kSilence.data(), count);
    frames -= count;
  }
}

}  // namespace zemo
