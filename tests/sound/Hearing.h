// Listening by numbers: 16-bit stereo WAV files of 44.1 kHz, and how loud a tone is in them when.
// Windows are 10 ms (441 frames), in which every multiple of 100 Hz stands for itself alone.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

namespace zemo::hearing {

inline constexpr int kRate = 44100;
inline constexpr int kWindow = 441;

struct Recording {
  std::vector<float> left;  // full scale 1.0; both channels were the same
  double Seconds() const { return static_cast<double>(left.size()) / kRate; }
};

// Both channels have these samples.
inline void WriteWav(const std::string& path, const std::vector<double>& samples) {
  const auto frames = static_cast<uint32_t>(samples.size());
  std::ofstream file(path, std::ios::binary);
  const auto little = [&file](uint32_t number, int size) {
    for (int i = 0; i < size; ++i) file.put(static_cast<char>(number >> (8 * i)));
  };
  file << "RIFF";
  little(36 + frames * 4, 4);
  file << "WAVEfmt ";
  little(16, 4), little(1, 2), little(2, 2), little(kRate, 4), little(kRate * 4, 4), little(4, 2),
      little(16, 2);
  file << "data";
  little(frames * 4, 4);
  for (const double value : samples) {
    const auto sample = static_cast<uint16_t>(static_cast<int16_t>(std::lround(value * 32767)));
    little(sample, 2), little(sample, 2);
  }
}

inline void WriteTone(const std::string& path, double hertz, double level, double seconds) {
  std::vector<double> samples(static_cast<size_t>(std::lround(seconds * kRate)));
  for (size_t i = 0; i < samples.size(); ++i)
    samples[i] = level * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / kRate);
  WriteWav(path, samples);
}

// The file must be what the program writes: a 44-byte header before 16-bit stereo frames, or one
// whose chunks are walked.
inline Recording ReadWav(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(file)), {});
  if (bytes.compare(0, 4, "RIFF") != 0) throw std::runtime_error(path + " is no WAV");
  size_t at = 12;
  while (at + 8 <= bytes.size()) {
    uint32_t size = 0;
    std::memcpy(&size, bytes.data() + at + 4, 4);
    if (bytes.compare(at, 4, "data") == 0) {
      Recording recording;
      for (size_t i = at + 8; i + 4 <= std::min<size_t>(bytes.size(), at + 8 + size); i += 4) {
        int16_t left = 0;
        int16_t right = 0;
        std::memcpy(&left, bytes.data() + i, 2);
        std::memcpy(&right, bytes.data() + i + 2, 2);
        if (left != right) throw std::runtime_error("the channels differ");
        recording.left.push_back(static_cast<float>(left) / 32768.0F);
      }
      return recording;
    }
    at += 8 + size + (size & 1U);
  }
  throw std::runtime_error(path + " holds no data");
}

// Amplitude of the tone in the 10 ms that begin at that moment.
inline double Level(const Recording& heard, double hertz, double atSeconds) {
  const auto first = static_cast<size_t>(std::lround(atSeconds * kRate));
  if (first + kWindow > heard.left.size()) return 0;
  double re = 0;
  double im = 0;
  for (size_t i = 0; i < kWindow; ++i) {
    const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / kRate;
    re += heard.left[first + i] * std::cos(angle);
    im += heard.left[first + i] * std::sin(angle);
  }
  return 2 * std::hypot(re, im) / kWindow;
}

// The first moment, in ms, from which the tone has at least half that level.
inline int64_t BeginsMs(const Recording& heard, double hertz, double level, int64_t fromMs = 0) {
  for (int64_t ms = fromMs; ms + 10 < static_cast<int64_t>(heard.Seconds() * 1000); ++ms)
    if (Level(heard, hertz, static_cast<double>(ms) / 1000) >= level / 2) return ms + 5;
  return -1;
}

// The first moment from `fromMs` on at which the tone has less than half that level.
inline int64_t EndsMs(const Recording& heard, double hertz, double level, int64_t fromMs) {
  for (int64_t ms = fromMs; ms + 10 < static_cast<int64_t>(heard.Seconds() * 1000); ++ms)
    if (Level(heard, hertz, static_cast<double>(ms) / 1000) < level / 2) return ms + 5;
  return -1;
}

inline float LargestStep(const Recording& heard, double fromSeconds, double toSeconds) {
  float largest = 0;
  const auto last = std::min(heard.left.size(), static_cast<size_t>(toSeconds * kRate));
  for (size_t i = static_cast<size_t>(fromSeconds * kRate) + 1; i < last; ++i)
    largest = std::max(largest, std::fabs(heard.left[i] - heard.left[i - 1]));
  return largest;
}

inline float Peak(const Recording& heard, double fromSeconds, double toSeconds) {
  float peak = 0;
  const auto last = std::min(heard.left.size(), static_cast<size_t>(toSeconds * kRate));
  for (size_t i = static_cast<size_t>(fromSeconds * kRate); i < last; ++i)
    peak = std::max(peak, std::fabs(heard.left[i]));
  return peak;
}

// Longest run of frames below -80 dB, in ms.
inline double LongestSilenceMs(const Recording& heard, double fromSeconds, double toSeconds) {
  size_t longest = 0;
  size_t run = 0;
  const auto last = std::min(heard.left.size(), static_cast<size_t>(toSeconds * kRate));
  for (size_t i = static_cast<size_t>(fromSeconds * kRate); i < last; ++i) {
    run = std::fabs(heard.left[i]) < 1e-4F ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  return 1000.0 * static_cast<double>(longest) / kRate;
}

}  // namespace zemo::hearing
