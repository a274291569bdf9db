// The noise of the round trip, found among other sound.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "platform/SoundSource.h"
#include "platform/real/sound/RealRoundTrip.h"

namespace zemo {
namespace {

// A hum at a tenth of the noise's level, and what a room adds: half of it again 3 ms later.
std::vector<int16_t> HeardInARoom(int64_t atFrame, double factor) {
  std::vector<double> heard(kSampleRate);
  for (size_t i = 0; i < heard.size(); ++i)
    heard[i] = 800 * std::sin(2 * M_PI * 50 * static_cast<double>(i) / kSampleRate);
  const std::vector<int16_t> noise = RoundTripNoise();
  for (size_t i = 0; i < noise.size(); ++i) {
    heard[static_cast<size_t>(atFrame) + i] += factor * noise[i];
    heard[static_cast<size_t>(atFrame) + i + 132] += factor / 2 * noise[i];
  }
  return {heard.begin(), heard.end()};
}

TEST(RoundTripNoise, IsFoundToTheFrame) {
  EXPECT_EQ(NoisePlace(HeardInARoom(12345, 1)), 12345);
  EXPECT_EQ(NoisePlace(HeardInARoom(0, 0.25)), 0);
  EXPECT_EQ(NoisePlace(HeardInARoom(30000, -0.5)), 30000) << "a loudspeaker wired the other way";
}

TEST(RoundTripNoise, IsNotFoundWhereItIsNot) {
  EXPECT_EQ(NoisePlace(HeardInARoom(100, 0)), std::nullopt);
  EXPECT_EQ(NoisePlace(std::vector<int16_t>(kSampleRate, 0)), std::nullopt);
  EXPECT_EQ(NoisePlace({}), std::nullopt);
  std::vector<int16_t> other(2 * kSampleRate);
  uint32_t state = 77;
  for (int16_t& sample : other) {
    state = state * 22695477U + 1U;
    sample = static_cast<int16_t>(state >> 16);
  }
  EXPECT_EQ(NoisePlace(other), std::nullopt);
}

}  // namespace
}  // namespace zemo
