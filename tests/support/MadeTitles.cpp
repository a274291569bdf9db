#include "support/MadeTitles.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <utility>

namespace zemo::test {

namespace {

double GainOf(Law law, double share) {
  switch (law) {
    case Law::kSteady:
      return 1;
    case Law::kLinear:
      return 1 - share;
    case Law::kDecibels:
      return std::pow(10.0, -3 * share);
    case Law::kCosine:
      return std::cos(share * std::numbers::pi / 2);
  }
  return 0;
}

int64_t Frames(const Section& section) {
  return std::llround(section.seconds * kSampleRate);
}

}  // namespace

double KnownTitle::Seconds() const {
  double seconds = 0;
  for (const Section& section : sections) seconds += section.seconds;
  return seconds;
}

// The laws the other way round.
double ShareAt(Law law, double gain) {
  switch (law) {
    case Law::kSteady:
      return 1;
    case Law::kLinear:
      return 1 - gain;
    case Law::kDecibels:
      return -std::log10(gain) / 3;
    case Law::kCosine:
      return std::acos(gain) * 2 / std::numbers::pi;
  }
  return 0;
}

std::vector<float> LoopOf(Material material, bool mono, uint32_t seed) {
  constexpr double kBeatSeconds = 0.5;
  std::mt19937 random(seed);
  const auto noise = [&] { return static_cast<double>(random()) / 2147483648.0 - 1; };
  const double hertz = 110 + random() % 200;
  std::vector<float> loop(static_cast<size_t>(kSampleRate) * kChannels);
  for (int i = 0; i < kSampleRate; ++i) {
    const double second = static_cast<double>(i) / kSampleRate;
    const double turn = 2 * std::numbers::pi * hertz * second;
    const double chord =
        std::sin(turn) + std::sin(2 * turn) + std::sin(3 * turn) + std::sin(5 * turn);
    const double beat = std::exp(-std::fmod(second, kBeatSeconds) / 0.05);
    for (int channel = 0; channel < kChannels; ++channel) {
      const size_t at = static_cast<size_t>(i) * kChannels + static_cast<size_t>(channel);
      double value = noise();
      if (material == Material::kChord) value = 0.2 * chord;
      if (material == Material::kBeat) value = 0.1 * chord + 0.6 * beat * value;
      if (material == Material::kWords && std::fmod(second, 0.25) > 0.18) value = 0;
      loop[at] = static_cast<float>(channel == 1 && mono ? loop[at - 1] : value);
    }
  }
  return loop;
}

MadeTitle::MadeTitle(KnownTitle title)
    : title_(std::move(title)), loop_(LoopOf(title_.material, title_.mono, title_.seed)) {
  for (const Section& section : title_.sections) ends_.push_back(length_ += Frames(section));
}

void MadeTitle::Seek(int64_t frame) {
  at_ = std::clamp<int64_t>(frame, 0, length_);
}

int MadeTitle::Read(float* stereo, int frames) {
  const int given = static_cast<int>(std::min<int64_t>(frames, length_ - at_));
  for (int i = 0; i < given; ++i, ++at_) {
    const auto from = static_cast<size_t>(at_ % kSampleRate) * kChannels;
    const auto gain = static_cast<float>(Gain());
    stereo[2 * i] = gain * loop_[from];
    stereo[2 * i + 1] = gain * loop_[from + 1];
  }
  return given;
}

double MadeTitle::Gain() const {
  const auto end = std::upper_bound(ends_.begin(), ends_.end(), at_);
  const Section& section = title_.sections[static_cast<size_t>(end - ends_.begin())];
  const auto left = static_cast<double>(*end - at_);
  const double share = 1 - left / static_cast<double>(Frames(section));
  return title_.level * section.level * GainOf(section.law, share);
}

MadeOpener::MadeOpener(KnownTitle title) : title_(std::move(title)) {}

std::unique_ptr<SoundSource> MadeOpener::Open(const std::string&) {
  return std::make_unique<MadeTitle>(title_);
}

}  // namespace zemo::test
