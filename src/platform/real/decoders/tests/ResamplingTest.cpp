// Files of other rates as 44.1 kHz: length, level, position, what must not be heard, seeks.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <numbers>

#include "TestSounds.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

constexpr int kFloatWave = SF_FORMAT_WAV | SF_FORMAT_FLOAT;

class Resampling : public testing::Test {
 protected:
  std::unique_ptr<SoundSource> OpenTones(const Tones& tones) {
    WriteSound(folder_.Path("tone.wav"), kFloatWave, tones);
    return SoundFileOpener().Open(folder_.Path("tone.wav"));
  }

  // The left side without the ends, where the filter sees the sound begin and stop.
  std::vector<float> MiddleOf(const Tones& tones) {
    const auto left = Left(ReadAll(*OpenTones(tones)));
    return {left.begin() + 4410, left.end() - 4410};
  }

  TestFolder folder_;
};

TEST_F(Resampling, LengthCountsTheFramesThatBeginBeforeTheEnd) {
  const auto lengthOf = [&](int rate, int64_t frames) {
    return OpenTones({.rate = rate, .hertz = {100}, .frames = frames})->LengthFrames();
  };
  EXPECT_EQ(lengthOf(48000, 48000), 44100);
  EXPECT_EQ(lengthOf(48000, 160), 147);
  EXPECT_EQ(lengthOf(48000, 1), 1);
  EXPECT_EQ(lengthOf(48000, 161), 148);
  EXPECT_EQ(lengthOf(22050, 1000), 2000);
  EXPECT_EQ(lengthOf(8000, 1), 6);   // 5.5125
  EXPECT_EQ(lengthOf(96000, 3), 2);  // 1.378
}

TEST_F(Resampling, AllFramesOfTheLengthAreRead) {
  for (const int rate : {8000, 11025, 22050, 32000, 44056, 47999, 48000, 88200, 96000, 192000}) {
    SCOPED_TRACE(rate);
    const auto source = OpenTones({.rate = rate, .hertz = {100, 200}, .frames = 30011});
    EXPECT_EQ(static_cast<int64_t>(ReadAll(*source).size()), 2 * source->LengthFrames());
  }
}

TEST_F(Resampling, ToneKeepsItsPlaceAndLevel) {
  for (const int rate : {8000, 16000, 32000, 48000, 96000}) {
    SCOPED_TRACE(rate);
    const auto left =
        Left(ReadAll(*OpenTones({.rate = rate, .hertz = {1000, 300}, .frames = rate})));
    double largest = 0;
    for (size_t i = 1000; i < 43000; ++i) {
      const double turn = 2 * std::numbers::pi * 1000 * static_cast<double>(i) / 44100;
      largest = std::max(largest, std::abs(left[i] - 0.5 * std::sin(turn)));
    }
    EXPECT_LT(largest, 0.002);
  }
}

TEST_F(Resampling, HighTonesOfTheBandKeepTheirLevel) {
  EXPECT_NEAR(ToneLevel(MiddleOf({.rate = 48000, .hertz = {15000}, .frames = 96000}), 15000), 0.5,
              0.01);
}

TEST_F(Resampling, ToneAboveTheBandIsNotFoldedIntoIt) {
  // 30 kHz would come back at 44.1 - 30 = 14.1 kHz.
  const auto middle = MiddleOf({.rate = 96000, .hertz = {30000}, .frames = 192000});
  EXPECT_LT(ToneLevel(middle, 14100), 0.0001);
  for (const float sample : middle) ASSERT_LT(std::abs(sample), 0.001);
}

TEST_F(Resampling, LowRateHasNoMirrorTone) {
  // 1 kHz at 8 kHz would come back at 8 - 1 = 7 kHz.
  EXPECT_LT(ToneLevel(MiddleOf({.rate = 8000, .hertz = {1000}, .frames = 16000}), 7000), 0.0001);
}

TEST_F(Resampling, SeeksAreExact) {
  for (const int rate : {8000, 11025, 22050, 32000, 44056, 48000, 96000, 192000}) {
    SCOPED_TRACE(rate);
    const auto source = OpenTones({.rate = rate, .hertz = {441, 1237}, .frames = 2 * rate + 7});
    ExpectExactSeeks(*source, ReadAll(*source), 2e-6);
  }
}

TEST_F(Resampling, RateBeyondReasonIsAnError) {
  for (const int rate : {10, 999, 2000000}) {
    WriteBytes(folder_.Path("odd.wav"),
               WaveBytes({.channels = 1, .rate = rate}, std::string(1000, '\0')));
    EXPECT_THROW(SoundFileOpener().Open(folder_.Path("odd.wav")), SoundError) << rate;
  }
}

}  // namespace
}  // namespace zemo
