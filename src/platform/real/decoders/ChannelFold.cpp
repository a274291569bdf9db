// See ChannelFold.h.
#include "platform/real/decoders/ChannelFold.h"

#include <sndfile.h>

#include <array>

namespace zemo {
namespace {

constexpr float kMinus3dB = 0.70710678F;

ChannelGain GainOf(int place) {
  switch (place) {
    case SF_CHANNEL_MAP_LEFT:
    case SF_CHANNEL_MAP_FRONT_LEFT:
      return {1, 0};
    case SF_CHANNEL_MAP_RIGHT:
    case SF_CHANNEL_MAP_FRONT_RIGHT:
      return {0, 1};
    case SF_CHANNEL_MAP_MONO:
      return {1, 1};
    case SF_CHANNEL_MAP_CENTER:
    case SF_CHANNEL_MAP_FRONT_CENTER:
      return {kMinus3dB, kMinus3dB};
    case SF_CHANNEL_MAP_REAR_CENTER:
      return {0.5F, 0.5F};
    case SF_CHANNEL_MAP_REAR_LEFT:
    case SF_CHANNEL_MAP_SIDE_LEFT:
    case SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER:
      return {kMinus3dB, 0};
    case SF_CHANNEL_MAP_REAR_RIGHT:
    case SF_CHANNEL_MAP_SIDE_RIGHT:
    case SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER:
      return {0, kMinus3dB};
    default:  // low frequencies, ceiling, unknown
      return {0, 0};
  }
}

// The usual order of WAV files without a channel mask.
std::array<int, 8> UsualPlaces(int channels) {
  constexpr int kL = SF_CHANNEL_MAP_LEFT, kR = SF_CHANNEL_MAP_RIGHT, kC = SF_CHANNEL_MAP_CENTER;
  constexpr int kLow = SF_CHANNEL_MAP_LFE, kBack = SF_CHANNEL_MAP_REAR_CENTER;
  constexpr int kRl = SF_CHANNEL_MAP_REAR_LEFT, kRr = SF_CHANNEL_MAP_REAR_RIGHT;
  constexpr int kSl = SF_CHANNEL_MAP_SIDE_LEFT, kSr = SF_CHANNEL_MAP_SIDE_RIGHT;
  switch (channels) {
    case 3:
      return {kL, kR, kC};
    case 4:
      return {kL, kR, kRl, kRr};
    case 5:
      return {kL, kR, kC, kRl, kRr};
    case 6:
      return {kL, kR, kC, kLow, kRl, kRr};
    case 7:
      return {kL, kR, kC, kLow, kBack, kSl, kSr};
    case 8:
      return {kL, kR, kC, kLow, kRl, kRr, kSl, kSr};
    default:
      return {kL, kR};
  }
}

}  // namespace

std::vector<ChannelGain> FoldToStereo(int channels, std::span<const int> map) {
  if (channels == 1) return {{1, 1}};
  std::vector<ChannelGain> gains(static_cast<size_t>(channels));
  // Two channels are left and right whatever a map calls them.
  const std::array<int, 8> usual = UsualPlaces(channels);
  const bool useMap = channels > 2 && map.size() == gains.size();
  bool heard = false;
  for (size_t i = 0; i < gains.size(); ++i) {
    if (useMap) gains[i] = GainOf(map[i]);
    if (!useMap && i < usual.size()) gains[i] = GainOf(usual[i]);
    heard = heard || gains[i].left > 0 || gains[i].right > 0;
  }
  return heard ? gains : FoldToStereo(channels, {});
}

}  // namespace zemo
