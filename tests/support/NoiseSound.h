// A sound file that is heard from its first sample on: noise, 44.1 kHz, stereo, 16-bit WAV.
#pragma once

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

namespace zemo::test {

// Throws std::runtime_error when it cannot be written.
inline void MakeNoiseSound(const std::string& path, int ms) {
  constexpr uint32_t kRate = 44100;
  const uint32_t bytes = static_cast<uint32_t>(int64_t{kRate} * ms / 1000) * 4;
  const auto little = [](uint32_t number, int size) {
    std::string text;
    for (int i = 0; i < size; ++i) text += static_cast<char>(number >> (8 * i));
    return text;
  };
  std::string samples(bytes, '\0');
  unsigned noise = 1;
  for (size_t i = 1; i < samples.size(); i += 2) {
    noise = noise * 1664525U + 1013904223U;
    samples[i] = static_cast<char>(noise >> 29);
  }
  std::ofstream file(path, std::ios::binary);
  file << "RIFF" + little(36 + bytes, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) +
              little(2, 2) + little(kRate, 4) + little(kRate * 4, 4) + little(4, 2) +
              little(16, 2) + "data" + little(bytes, 4)
       << samples;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

}  // namespace zemo::test
