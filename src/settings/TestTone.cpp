#include "settings/TestTone.h"

#include <cmath>
#include <cstdint>
#include <numbers>

namespace zemo {

namespace {

constexpr uint32_t kRate = 44100, kSeconds = 10, kChannels = 2, kBytes = 2, kHz = 1000;
constexpr double kPeak = 4125;  // of 32768

void Append(std::string& bytes, uint32_t number, int count) {
  for (int byte = 0; byte < count; ++byte) bytes += static_cast<char>(number >> (8 * byte) & 0xff);
}

}  // namespace

std::string TestToneWav() {
  constexpr uint32_t kData = kRate * kSeconds * kChannels * kBytes, kBehindSize = 36;
  std::string wav = "RIFF";
  Append(wav, kBehindSize + kData, 4);
  wav += "WAVEfmt ";
  Append(wav, 16, 4);
  Append(wav, 1, 2);  // PCM
  Append(wav, kChannels, 2);
  Append(wav, kRate, 4);
  Append(wav, kRate * kChannels * kBytes, 4);
  Append(wav, kChannels * kBytes, 2);
  Append(wav, 8 * kBytes, 2);
  wav += "data";
  Append(wav, kData, 4);
  for (uint32_t frame = 0; frame < kRate * kSeconds; ++frame) {
    const double turn = 2 * std::numbers::pi * kHz * frame / kRate;
    const auto sample = static_cast<int16_t>(std::lround(kPeak * std::sin(turn)));
    for (uint32_t channel = 0; channel < kChannels; ++channel)
      Append(wav, static_cast<uint16_t>(sample), kBytes);
  }
  return wav;
}

}  // namespace zemo
