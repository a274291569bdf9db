// The limiter alone: exact while nothing is loud, never above full scale, gentle in between.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "platform/sound/Limiter.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::LargestMagnitude;

// Feeds all frames in calls of `call` frames and as many of silence as the limiter holds back;
// gives what came out for each frame that went in.
std::vector<float> Limited(Limiter& limiter, const std::vector<float>& stereo, int call) {
  std::vector<float> padded = stereo;
  padded.resize(stereo.size() + 2 * Limiter::kLatencyFrames, 0.0f);
  std::vector<float> out(padded.size());
  const int frames = static_cast<int>(padded.size() / 2);
  for (int done = 0; done < frames;) {
    const int count = std::min(call, frames - done);
    std::copy_n(padded.data() + 2 * done, 2 * count, limiter.Input());
    limiter.Process(out.data() + 2 * done, count);
    done += count;
  }
  out.erase(out.begin(), out.begin() + 2 * Limiter::kLatencyFrames);
  return out;
}

std::vector<float> Noise(int frames, float amplitude, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> sample(-amplitude, amplitude);
  std::vector<float> stereo(2 * static_cast<size_t>(frames));
  for (float& value : stereo) value = sample(random);
  return stereo;
}

std::vector<float> Sines(int frames, std::initializer_list<double> hertz, double amplitude) {
  std::vector<float> stereo(2 * static_cast<size_t>(frames));
  for (const double each : hertz) {
    const testing::Wave wave = testing::Sine(each, amplitude);
    for (int i = 0; i < frames; ++i) {
      stereo[2 * i] += wave(i);
      stereo[2 * i + 1] += wave(i);
    }
  }
  return stereo;
}

TEST(Limiter, UpToFullScaleEverySamplePassesBitForBit) {
  std::vector<float> stereo = Noise(20000, 1.0f, 1);
  stereo[777] = 1.0f;
  stereo[7777] = -1.0f;
  Limiter limiter;
  EXPECT_EQ(Limited(limiter, stereo, 1000), stereo);
}

TEST(Limiter, HowItIsCalledMakesNoDifference) {
  std::vector<float> stereo = Noise(30000, 0.9f, 2);
  for (int i = 8000; i < 9000; ++i) stereo[i] *= 2.5f;
  for (int i = 30000; i < 30100; ++i) stereo[i] *= 1.5f;
  Limiter whole;
  const std::vector<float> expected = Limited(whole, stereo, Limiter::kMaxFrames);
  for (const int call : {1, 7, 32, 33, 441, 2048}) {
    Limiter limiter;
    EXPECT_EQ(Limited(limiter, stereo, call), expected) << call;
  }
}

TEST(Limiter, AnImpulseAnywhereInABlockStaysWithinFullScaleAndKeepsItsPlace) {
  for (int at = 1000; at < 1000 + 2 * Limiter::kBlockFrames; ++at) {
    std::vector<float> stereo(2 * 4000, 0.0f);
    stereo[2 * at] = 4.0f;
    stereo[2 * at + 1] = -3.0f;
    Limiter limiter;
    const std::vector<float> out = Limited(limiter, stereo, 512);
    EXPECT_LE(out[2 * at], 1.0f);
    EXPECT_GT(out[2 * at], 0.999f);
    EXPECT_NEAR(out[2 * at + 1], -0.75f, 0.001f);  // both sides by the same gain
    EXPECT_EQ(out[2 * at + 2], 0.0f);
  }
}

TEST(Limiter, TwoFullScaleSinesOverEachOtherNeverExceedFullScale) {
  Limiter limiter;
  const std::vector<float> out = Limited(limiter, Sines(5 * kSampleRate, {440.0, 554.4}, 1.0), 882);
  EXPECT_LE(LargestMagnitude(out), 1.0f);
  EXPECT_GT(LargestMagnitude(out), 0.99f);
}

TEST(Limiter, NoiseFarAboveFullScaleNeverExceedsIt) {
  Limiter limiter;
  EXPECT_LE(LargestMagnitude(Limited(limiter, Noise(100000, 6.0f, 3), 1111)), 1.0f);
}

// Two sines of 1 beat between 0 and 2: the gain has to hold near 0.5 between the beats, not pump.
TEST(Limiter, BetweenTheBeatsOfTwoLoudTonesTheGainHardlyMoves) {
  Limiter limiter;
  const std::vector<float> stereo = Sines(2 * kSampleRate, {440.0, 470.0}, 1.0);
  std::vector<float> out(2 * 441);
  float least = 1.0f;
  float most = 0.0f;
  for (int block = 0; block < 200; ++block) {  // of 10 ms
    std::copy_n(stereo.data() + 2 * 441 * block, 2 * 441, limiter.Input());
    limiter.Process(out.data(), 441);
    if (block < 20) continue;
    least = std::min(least, limiter.Gain());
    most = std::max(most, limiter.Gain());
  }
  EXPECT_NEAR(least, 0.5f, 0.002f);
  EXPECT_LT(20.0f * std::log10(most / least), 0.5f);  // dB
}

TEST(Limiter, TheGainGoesDownInSmallStepsBeforeALoudMoment) {
  std::vector<float> stereo(2 * 10000, 0.5f);
  for (size_t i = 2 * 5000; i < stereo.size(); ++i) stereo[i] = 2.0f;
  Limiter limiter;
  const std::vector<float> out = Limited(limiter, stereo, 700);
  for (int i = 1; i < 5000; ++i) {
    // From gain 1 to 0.5 within 7 blocks of 32 frames: at most 0.5 / 224 a frame, times the level.
    ASSERT_LE(out[2 * i - 2] - out[2 * i], 0.5f * 0.5f / 224 + 1e-6f) << i;
    ASSERT_LE(out[2 * i], out[2 * i - 2]) << i;
  }
  EXPECT_EQ(out[2 * (5000 - 257)], 0.5f);  // not before it must
}

TEST(Limiter, AfterALoudMomentItComesBackToBitForBit) {
  std::vector<float> stereo = Noise(6 * kSampleRate, 0.5f, 4);
  for (int i = 0; i < 2000; ++i) stereo[i] = 1.9f;
  Limiter limiter;
  const std::vector<float> out = Limited(limiter, stereo, 2000);
  EXPECT_TRUE(limiter.Idle());
  const auto later = 2 * 5 * static_cast<long>(kSampleRate);  // the release takes 300 ms to 1/e
  EXPECT_TRUE(std::equal(out.begin() + later, out.end(), stereo.begin() + later));
  EXPECT_LT(std::abs(out[2 * 3000]), std::abs(stereo[2 * 3000]));
}

TEST(Limiter, WhatIsNoNumberBecomesSilenceAndLeavesNothingBehind) {
  std::vector<float> stereo(2 * 5 * kSampleRate, 0.25f);
  stereo[2 * 300] = std::nanf("");
  stereo[2 * 301] = std::numeric_limits<float>::infinity();
  Limiter limiter;
  const std::vector<float> out = Limited(limiter, stereo, 1000);
  EXPECT_LE(LargestMagnitude(out), 1.0f);  // false too if any were no number
  EXPECT_TRUE(std::none_of(out.begin(), out.end(), [](float x) { return std::isnan(x); }));
  EXPECT_EQ(out.back(), 0.25f);
}

}  // namespace
}  // namespace zemo
