// Loudness of sounds whose loudness is known, and of others by libebur128's measure.
#include <ebur128.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "platform/real/analysis/LoudnessMeter.h"

namespace zemo {
namespace {

std::optional<double> Lufs(const std::vector<float>& stereo, int block) {
  LoudnessMeter meter;
  const auto frames = static_cast<int>(stereo.size()) / kChannels;
  for (int at = 0; at < frames; at += block) {
    meter.Add(stereo.data() + static_cast<ptrdiff_t>(at) * kChannels, std::min(block, frames - at));
  }
  return IntegratedLufs(meter.TakePowers());
}

double LufsByLibrary(const std::vector<float>& stereo) {
  ebur128_state* state = ebur128_init(kChannels, kSampleRate, EBUR128_MODE_I);
  ebur128_add_frames_float(state, stereo.data(), stereo.size() / kChannels);
  double lufs = 0;
  ebur128_loudness_global(state, &lufs);
  ebur128_destroy(&state);
  return lufs;
}

// Both channels alike; `db` is the peak over full scale.
void AddTone(std::vector<float>& stereo, double seconds, double db, double hertz = 1000) {
  const auto frames = static_cast<int>(seconds * kSampleRate);
  const double level = std::pow(10, db / 20);
  for (int i = 0; i < frames; ++i) {
    const double turn = 2 * std::numbers::pi * hertz * i / kSampleRate;
    stereo.insert(stereo.end(), 2, static_cast<float>(level * std::sin(turn)));
  }
}

// EBU Tech 3341, case 1: a tone of 1 kHz at -23 dBFS in both channels is -23 LUFS.
TEST(LoudnessMeter, AToneAtMinus23IsMinus23Lufs) {
  std::vector<float> stereo;
  AddTone(stereo, 20, -23);
  EXPECT_NEAR(Lufs(stereo, 4096).value(), -23, 0.1);
}

// EBU Tech 3341, case 3: what lies 10 LU below is not counted.
TEST(LoudnessMeter, QuietPartsAreNotCounted) {
  std::vector<float> stereo;
  AddTone(stereo, 10, -36);
  AddTone(stereo, 60, -23);
  AddTone(stereo, 10, -36);
  EXPECT_NEAR(Lufs(stereo, 4096).value(), -23, 0.1);
}

// EBU Tech 3341, case 4: nor is what lies below -70 LUFS, ahead of the gate of 10 LU.
TEST(LoudnessMeter, WhatNobodyHearsIsNotCounted) {
  std::vector<float> stereo;
  AddTone(stereo, 10, -72);
  AddTone(stereo, 10, -36);
  AddTone(stereo, 60, -23);
  AddTone(stereo, 10, -36);
  AddTone(stereo, 10, -72);
  EXPECT_NEAR(Lufs(stereo, 4096).value(), -23, 0.1);
}

TEST(LoudnessMeter, OneChannelAloneIsHalfThePower) {
  std::vector<float> stereo;
  AddTone(stereo, 5, -20);
  for (size_t i = 1; i < stereo.size(); i += 2) stereo[i] = 0;
  EXPECT_NEAR(Lufs(stereo, 4096).value(), -23.01, 0.1);
}

TEST(LoudnessMeter, ASoundShorterThanABlockIsMeasuredAsAWhole) {
  std::vector<float> stereo;
  AddTone(stereo, 0.2, -23);
  EXPECT_NEAR(Lufs(stereo, 4096).value(), -23, 0.2);
}

TEST(LoudnessMeter, WhatNobodyHearsHasNoLoudness) {
  std::vector<float> stereo;
  AddTone(stereo, 5, -75);
  EXPECT_FALSE(Lufs(stereo, 4096));
  EXPECT_FALSE(Lufs({}, 4096));
}

// Noise and tones of changing level, from the lowest to the highest frequencies, with rests.
TEST(LoudnessMeter, AgreesWithLibebur128WhateverTheBlocks) {
  std::mt19937 random(7);
  const auto between = [&](double low, double high) {
    return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
  };
  for (int i = 0; i < 8; ++i) {
    std::vector<float> stereo;
    for (int part = 0; part < 10; ++part) {
      const size_t from = stereo.size();
      AddTone(stereo, between(0.05, 1.5), between(-50, 0), std::pow(10, between(1.3, 4.3)));
      const double hiss = std::pow(10, between(-60, 0) / 20);
      for (size_t at = from; at < stereo.size(); ++at) {
        stereo[at] += static_cast<float>(hiss * between(-1, 1));
      }
      stereo.resize(stereo.size() + 2 * static_cast<size_t>(between(0, 20'000)), 0.0F);
    }
    const int block = 1 + static_cast<int>(between(0, 5000));
    EXPECT_NEAR(Lufs(stereo, block).value(), LufsByLibrary(stereo), 1e-4) << i;
  }
}

TEST(LoudnessMeter, AWindowHasThePowerOfItsTenMilliseconds) {
  std::vector<float> stereo;
  AddTone(stereo, 0.1, -120);
  AddTone(stereo, 0.1, -23);
  LoudnessMeter meter;
  meter.Add(stereo.data(), static_cast<int>(stereo.size()) / kChannels);
  const std::vector<float> powers = meter.TakePowers();
  ASSERT_EQ(powers.size(), 20U);
  EXPECT_LT(LufsOfPower(powers[9]), -100);
  EXPECT_NEAR(LufsOfPower(powers[15]), -23, 0.2);
}

}  // namespace
}  // namespace zemo
