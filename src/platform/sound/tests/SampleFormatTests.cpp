// Peaks, scrubbing and 16-bit output.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/sound/SampleFormat.h"

namespace zemo {
namespace {

TEST(SampleFormat, Every16BitSampleComesBackAsItself) {
  std::vector<float> samples;
  for (int value = -32768; value <= 32767; ++value) samples.push_back(value / 32768.0f);
  std::vector<int16_t> out(samples.size());
  FloatToInt16(samples.data(), out.data(), static_cast<int>(out.size()));
  for (int i = 0; i < 65536; ++i) ASSERT_EQ(out[i], i - 32768);
}

TEST(SampleFormat, RoundsToTheNearestAndSaturatesInVectorsAndInTheRest) {
  const std::vector<float> values{0.0f,         0.5f, 1.0f,  -1.0f, 1.4f / 32768, -1.4f / 32768,
                                  1.6f / 32768, 2.0f, -2.0f, 1e30f, -1e30f};
  const std::vector<int> expected{0, 16384, 32767, -32768, 1, -1, 2, 32767, -32768, 32767, -32768};
  for (size_t lead = 0; lead < 9; ++lead) {  // so that each value stands in a vector and behind one
    std::vector<float> samples(lead, 0.0f);
    samples.insert(samples.end(), values.begin(), values.end());
    std::vector<int16_t> out(samples.size());
    FloatToInt16(samples.data(), out.data(), static_cast<int>(out.size()));
    for (size_t i = 0; i < values.size(); ++i) EXPECT_EQ(out[lead + i], expected[i]) << values[i];
  }
}

TEST(SampleFormat, PeakIsTheLargestMagnitudeOfAnyLengthAndSign) {
  for (int count = 1; count < 40; ++count) {
    for (int at = 0; at < count; ++at) {
      std::vector<float> samples(count, 0.25f);
      samples[at] = at % 2 == 0 ? -0.75f : 0.75f;
      ASSERT_EQ(PeakBits(samples.data(), count), std::bit_cast<uint32_t>(0.75f));
    }
  }
  EXPECT_EQ(PeakBits(nullptr, 0), 0u);
}

TEST(SampleFormat, WhatIsNoNumberPeaksAboveEveryNumberAndIsScrubbedToSilence) {
  std::vector<float> samples{0.5f, std::nanf(""), std::numeric_limits<float>::infinity(), -40.0f};
  EXPECT_GT(PeakBits(samples.data(), 4),
            std::bit_cast<uint32_t>(std::numeric_limits<float>::max()));
  Scrub(samples.data(), 4, 32.0f);
  EXPECT_EQ(samples, (std::vector<float>{0.5f, 0.0f, 32.0f, -32.0f}));
}

}  // namespace
}  // namespace zemo
