#include "platform/WavHeader.h"

#include <algorithm>
#include <limits>

#include "platform/SoundSource.h"

namespace zemo {

namespace {

constexpr int kBitsASample = 8 * kWavSampleBytes;
constexpr int64_t kHeadBytes = 36;  // counted with the samples
constexpr int64_t kMostBytes = std::numeric_limits<uint32_t>::max() - kHeadBytes;

std::string Little(int64_t number, int bytes) {
  std::string text;
  for (int byte = 0; byte < bytes; ++byte)
    text += static_cast<char>(static_cast<uint64_t>(number) >> (8 * byte) & 0xFF);
  return text;
}

}  // namespace

std::string WavHeader(int channels, int64_t frames) {
  constexpr int64_t kFormatBytes = 16, kPcm = 1;
  const int64_t frameBytes = int64_t{kWavSampleBytes} * channels;
  const int64_t bytes = std::min(frames * frameBytes, kMostBytes / frameBytes * frameBytes);
  return "RIFF" + Little(kHeadBytes + bytes, 4) + "WAVEfmt " + Little(kFormatBytes, 4) +
         Little(kPcm, 2) + Little(channels, 2) + Little(kSampleRate, 4) +
         Little(kSampleRate * frameBytes, 4) + Little(frameBytes, 2) + Little(kBitsASample, 2) +
         "data" + Little(bytes, 4);
}

}  // namespace zemo
