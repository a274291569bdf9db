// How the channels of a file become left and right.
#pragma once

#include <span>
#include <vector>

namespace zemo {

// What one channel of the file gives to each side.
struct ChannelGain {
  float left = 0;
  float right = 0;
};

// Gains for a file of `channels` channels. `map` are libsndfile's SF_CHANNEL_MAP_ names, or empty:
// then the order of WAV files. Front left and right stay as they are; centre and surrounds come in
// 3 dB lower; the low-frequency channel is left out. One channel goes to both sides.
std::vector<ChannelGain> FoldToStereo(int channels, std::span<const int> map);

}  // namespace zemo
