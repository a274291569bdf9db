// The shape of a sound, whatever the blocks in which it comes.
#include <gtest/gtest.h>

#include <vector>

#include "platform/SoundSource.h"
#include "platform/real/decoders/ShapeMaker.h"

namespace zemo {
namespace {

// Adds `frames` of silence but for one sample, in blocks of `block` frames.
WavePeaks WithOneSample(int64_t length, int64_t at, int channel, float sample, int block) {
  ShapeMaker shape(length);
  std::vector<float> stereo;
  for (int64_t begin = 0; begin < length; begin += block) {
    const auto frames = static_cast<int>(std::min<int64_t>(block, length - begin));
    stereo.assign(static_cast<size_t>(frames) * kChannels, 0);
    if (at >= begin && at < begin + frames) {
      stereo[static_cast<size_t>((at - begin) * kChannels + channel)] = sample;
    }
    shape.Add(stereo.data(), frames);
  }
  return shape.Peaks();
}

// 2500 frames: a stretch is 2.5 of them, so frames 5, 6 and 7 lie at 2.0, 2.4 and 2.8 stretches.
TEST(ShapeMaker, ASampleShowsInTheStretchInWhichItLies) {
  for (const int block : {1, 3, 7, 2500}) {
    for (const int64_t frame : {5, 6, 7}) {
      const WavePeaks peaks = WithOneSample(2500, frame, 1, -1.0F, block);
      EXPECT_EQ(peaks[1], 0) << frame;
      EXPECT_EQ(peaks[2], 255) << frame;
      EXPECT_EQ(peaks[3], 0) << frame;
    }
    EXPECT_EQ(WithOneSample(2500, 8, 0, 1.0F, block)[3], 255);
    EXPECT_EQ(WithOneSample(2500, 2499, 0, 1.0F, block)[999], 255);
  }
}

// 0.5 * 255 = 127.5, 0.25 * 255 = 63.75.
TEST(ShapeMaker, FullScaleIs255AndWhatGoesBeyondIsToo) {
  EXPECT_EQ(WithOneSample(5000, 0, 0, 0.5F, 100)[0], 128);
  EXPECT_EQ(WithOneSample(5000, 0, 0, -0.25F, 100)[0], 64);
  EXPECT_EQ(WithOneSample(5000, 0, 0, 3.0F, 100)[0], 255);
}

TEST(ShapeMaker, AFileOfFewerFramesThanStretchesPassesSomeOver) {
  ShapeMaker shape(4);
  const std::vector<float> stereo(8, 1.0F);
  shape.Add(stereo.data(), 4);
  for (size_t i = 0; i < kWavePeaks; ++i) EXPECT_EQ(shape.Peaks()[i], i % 250 == 0 ? 255 : 0) << i;
}

TEST(ShapeMaker, FramesBehindTheStatedLengthCountToTheLastStretch) {
  ShapeMaker shape(1000);
  std::vector<float> stereo(2400, 0.0F);
  stereo.back() = 1.0F;
  shape.Add(stereo.data(), 1200);
  EXPECT_EQ(shape.Peaks()[998], 0);
  EXPECT_EQ(shape.Peaks()[999], 255);
}

}  // namespace
}  // namespace zemo
