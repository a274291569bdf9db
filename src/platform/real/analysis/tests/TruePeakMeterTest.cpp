// True peaks of sounds whose peak is known, and of others by libebur128's measure of all of it.
#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <vector>

#include "platform/SoundSource.h"
#include "platform/real/analysis/TruePeakMeter.h"

namespace zemo {
namespace {

float TruePeak(const std::vector<float>& stereo, int block) {
  TruePeakMeter meter;
  const auto frames = static_cast<int>(stereo.size()) / kChannels;
  for (int at = 0; at < frames; at += block) {
    meter.Add(stereo.data() + static_cast<ptrdiff_t>(at) * kChannels, std::min(block, frames - at));
  }
  return meter.Finish();
}

double TruePeakByLibrary(std::vector<float> stereo) {
  stereo.resize(stereo.size() + 64, 0.0F);  // the silence behind the end
  ebur128_state* state = ebur128_init(kChannels, kSampleRate, EBUR128_MODE_TRUE_PEAK);
  ebur128_add_frames_float(state, stereo.data(), stereo.size() / kChannels);
  double left = 0;
  double right = 0;
  ebur128_true_peak(state, 0, &left);
  ebur128_true_peak(state, 1, &right);
  ebur128_destroy(&state);
  return std::max(left, right);
}

std::vector<float> Made(int frames, const std::function<double(int frame, int channel)>& sample) {
  std::vector<float> stereo;
  for (int i = 0; i < frames; ++i) {
    for (int channel = 0; channel < kChannels; ++channel) {
      stereo.push_back(static_cast<float>(sample(i, channel)));
    }
  }
  return stereo;
}

void ExpectAsByLibrary(const std::vector<float>& stereo, const char* what) {
  const double whole = TruePeakByLibrary(stereo);
  for (const int block : {1, 37, 4096}) {
    EXPECT_NEAR(TruePeak(stereo, block), whole, 2e-6 * whole) << what << ", blocks of " << block;
  }
}

// A quarter of the rate, 45 degrees off: every sample is at 0.707 of the peak.
TEST(TruePeakMeter, APeakBetweenTwoSamplesIsFound) {
  const auto stereo = Made(44100, [](int i, int) {
    return 0.5 * std::sin(std::numbers::pi / 2 * i + std::numbers::pi / 4);
  });
  EXPECT_NEAR(TruePeak(stereo, 4096), 0.5, 0.01);
}

TEST(TruePeakMeter, TheLouderChannelCounts) {
  for (const int loud : {0, 1}) {
    const auto stereo = Made(1000, [&](int i, int channel) {
      return (channel == loud ? 0.8 : 0.1) * std::sin(0.1 * i);
    });
    EXPECT_NEAR(TruePeak(stereo, 100), 0.8, 0.002);
  }
}

TEST(TruePeakMeter, SilenceHasNone) {
  EXPECT_EQ(TruePeak(std::vector<float>(2000, 0.0F), 300), 0);
  EXPECT_EQ(TruePeak({}, 300), 0);
}

TEST(TruePeakMeter, ASingleSampleAtTheVeryEndCounts) {
  std::vector<float> stereo(2001 * 2, 0.0F);
  stereo.back() = -0.7F;
  EXPECT_FLOAT_EQ(TruePeak(stereo, 300), 0.7F);
}

// What is left out of the measuring costs nothing: every kind of level, slow and sudden.
TEST(TruePeakMeter, IsWhatLibebur128MeasuresOfAllOfTheSound) {
  std::mt19937 random(3);
  const auto noise = [&] { return static_cast<double>(random()) / 2147483648.0 - 1; };
  constexpr int kFrames = 30'000;
  ExpectAsByLibrary(Made(kFrames, [&](int, int) { return 0.3 * noise(); }), "noise");
  ExpectAsByLibrary(Made(kFrames, [&](int, int) { return std::clamp(3 * noise(), -1.0, 1.0); }),
                    "a limited master");
  ExpectAsByLibrary(Made(kFrames, [&](int i, int) { return 0.0001 * i / kFrames * noise(); }),
                    "noise that rises");
  ExpectAsByLibrary(Made(kFrames, [&](int i, int) { return (1 - 1.0 * i / kFrames) * noise(); }),
                    "noise that falls");
  ExpectAsByLibrary(Made(kFrames, [&](int i, int) { return i % 977 == 0 ? noise() : 0; }),
                    "single samples");
  for (int i = 0; i < 20; ++i) {
    const double step = std::numbers::pi * std::fabs(noise());
    ExpectAsByLibrary(Made(kFrames, [&](int f, int c) { return 0.9 * std::sin(step * f + c); }),
                      "a tone");
  }
}

// The worst sound there is: each of the twelve samples has the sign of its factor half way, so that
// a peak of 1.86 stands among samples of 1. In front of it lies a peak of 1.8 that all but hides
// it.
TEST(TruePeakMeter, ThePeakThatTheBoundStandsForIsFound) {
  std::vector<float> stereo(4000, 0.0F);
  stereo[200] = 1.8F;
  for (int tap = 0; tap < 12; ++tap) {
    const double distance = tap - 5.5;
    const double sign = std::sin(distance * std::numbers::pi) / distance > 0 ? 1 : -1;
    stereo[2 * static_cast<size_t>(1000 + tap)] = static_cast<float>(sign);
  }
  ExpectAsByLibrary(stereo, "the worst sound");
  EXPECT_GT(TruePeak(stereo, 300), 1.85F);
  EXPECT_LT(TruePeak(stereo, 300), TruePeakMeter::kMostGain);
}

}  // namespace
}  // namespace zemo
