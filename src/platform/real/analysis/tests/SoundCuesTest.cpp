// Cues of powers that no plain fade has: beats, a last chord, the limits of a card.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/real/analysis/LoudnessMeter.h"
#include "platform/real/analysis/SoundCues.h"

namespace zemo {
namespace {

constexpr double kLufs = -10;

// `seconds` at `lu` over the title's loudness.
void Add(std::vector<float>& powers, double seconds, double lu) {
  powers.insert(powers.end(), static_cast<size_t>(std::lround(seconds * 100)),
                static_cast<float>(PowerOfLufs(kLufs + lu)));
}

SoundCues Cues(const std::vector<float>& powers) {
  return FindCues(powers, kLufs, static_cast<int32_t>(powers.size()) * kPowerWindowMs);
}

// 60 s of a fade by 2 LU a second, the mean of beats of 50 ms, 9 LU over it (of all the power, but
// for a hundredth), two a second: the mean is 14 LU down after 7 s, the beats after 11.5.
TEST(SoundCues, BeatsThatStickOutOfASlowFadeDoNotHoldTheExitBack) {
  std::vector<float> powers;
  Add(powers, 60, 0);
  for (int window = 0; window < 3000; ++window) {
    const double mean = -2.0 * window / 100;
    Add(powers, 0.01, window % 50 < 5 ? mean + 9.95 : mean - 20);
  }
  const SoundCues cues = Cues(powers);
  EXPECT_NEAR(90'000 - cues.exitMs, 67'000, 300);
}

// The same beats in a fade of 4 s that is even in amplitude: a fifth is left after 3.2 s, and the
// last beat over it ends after 3.55 s.
TEST(SoundCues, NorDoTheyInAShortFade) {
  std::vector<float> powers;
  Add(powers, 60, 0);
  for (int window = 0; window < 400; ++window) {
    const double mean = 20 * std::log10(1 - window / 400.0);
    Add(powers, 0.01, window % 50 < 5 ? mean + 9.95 : mean - 20);
  }
  EXPECT_NEAR(64'000 - Cues(powers).exitMs, 63'200, 300);
}

TEST(SoundCues, ALastChordBehindARestIsOfTheTitle) {
  std::vector<float> powers;
  Add(powers, 60, 0);
  Add(powers, 1.5, -60);
  Add(powers, 0.3, -2);
  Add(powers, 1, -60);
  EXPECT_EQ(Cues(powers).exitMs, 1000);
}

// 40 s behind the exit: more than the 16 bits of POINTSORTIE.
TEST(SoundCues, TheExitIsNoEarlierThanACardCanHold) {
  std::vector<float> powers;
  Add(powers, 60, 0);
  Add(powers, 40, -20);
  EXPECT_EQ(Cues(powers).exitMs, 32'767);
}

TEST(SoundCues, AFifthOfTheLevelIsLoudEnoughAndLessIsNot) {
  std::vector<float> powers;
  Add(powers, 60, 0);
  Add(powers, 10, -13.9);
  EXPECT_LE(Cues(powers).exitMs, 50);
  powers.resize(6000);
  Add(powers, 10, -14.1);
  EXPECT_NEAR(Cues(powers).exitMs, 10'000, 20);
}

TEST(SoundCues, SoundIsWhatLiesLessThan45Below) {
  std::vector<float> powers;
  Add(powers, 1, -46);
  Add(powers, 1, -44);
  Add(powers, 30, 0);
  Add(powers, 2, -44);
  Add(powers, 3, -46);
  const SoundCues cues = Cues(powers);
  EXPECT_EQ(cues.beginMs, 1000);
  EXPECT_EQ(cues.endMs, 34'000);
}

// The last window is longer than the file.
TEST(SoundCues, NoCueLiesBehindTheEnd) {
  std::vector<float> powers;
  Add(powers, 1, 0);
  const SoundCues cues = FindCues(powers, kLufs, 994);
  EXPECT_EQ(cues.endMs, 994);
  EXPECT_EQ(cues.exitMs, 1);
}

}  // namespace
}  // namespace zemo
