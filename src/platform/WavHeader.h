// The head of a WAV file of 44.1 kHz and 16 bits.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

inline constexpr int kWavSampleBytes = 2;

// 44 bytes, behind which the samples follow: frames x channels of them, the least byte first. More
// than a WAV file can tell is told as the most that it can.
std::string WavHeader(int channels, int64_t frames);

}  // namespace zemo
