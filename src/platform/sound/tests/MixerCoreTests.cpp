// The mixer core: levels, ramps, fades and ends, to the frame.
#include <gtest/gtest.h>

#include <random>

#include "platform/sound/MixerCore.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Constant;
using testing::LargestJump;
using testing::LargestMagnitude;
using testing::Numbered;
using testing::Sine;
using testing::WaveSource;

constexpr int kLong = 1 << 19;

class MixerCoreTest : public ::testing::Test {
 protected:
  // The next frames as they leave the mixer, its latency taken off: the first one is the first
  // frame mixed after the call before. Each test asks once or goes on seamlessly.
  std::vector<float> Render(MixerCore& core, int frames) {
    std::vector<float> out(2 * static_cast<size_t>(frames));
    core.Render(out.data(), frames);
    return out;
  }
  void Start(int slot, WaveSource& source, int64_t frame = 0) {
    core_.Start(slot, &source, source.LengthFrames(), frame);
  }
  // Frames mixed from now on, with the limiter's latency behind them.
  std::vector<float> Mixed(int frames) {
    std::vector<float> out = Render(core_, frames + MixerCore::kLatencyFrames);
    out.erase(out.begin(), out.begin() + 2 * MixerCore::kLatencyFrames);
    return out;
  }

  MixerCore core_{true};
};

TEST_F(MixerCoreTest, VolumeIsAFactorWithUnityAt16384) {
  struct {
    int volume;
    float factor;
  } const cases[] = {{0, 0.0f}, {6500, 0.396728515625f}, {16384, 1.0f}, {32768, 2.0f}};
  for (const auto& each : cases) {
    MixerCore core(true);
    WaveSource source(Constant(0.25f), kLong);
    core.SetRunning(true);
    core.SetVolume(0, each.volume);
    core.Start(0, &source, kLong, 0);
    const std::vector<float> out = Render(core, 1000);
    EXPECT_EQ(out[2 * MixerCore::kLatencyFrames], 0.25f * each.factor) << each.volume;  // at once
    EXPECT_EQ(out[2 * 999], 0.25f * each.factor) << each.volume;
    EXPECT_EQ(out[2 * 999 + 1], -0.25f * each.factor) << each.volume;
  }
}

TEST_F(MixerCoreTest, AGainIsAFactorAheadOfTheVolume) {
  struct {
    double gain;
    int volume;
    float level;
  } const cases[] = {
      {0.0, 16384, 0.0f}, {0.5, 16384, 0.125f}, {3.0, 16384, 0.75f}, {0.5, 32768, 0.25f}};
  for (const auto& each : cases) {
    MixerCore core(true);
    WaveSource source(Constant(0.25f), kLong);
    core.SetRunning(true);
    core.SetVolume(0, each.volume);
    core.Start(0, &source, kLong, 0, each.gain);
    const std::vector<float> out = Render(core, 1000);
    EXPECT_EQ(out[2 * MixerCore::kLatencyFrames], each.level) << each.gain;  // at once
    EXPECT_EQ(out[2 * 999], each.level) << each.gain;
    EXPECT_EQ(out[2 * 999 + 1], -each.level) << each.gain;
  }
}

// A power of two scales every sample without rounding: any other change of the sum would be seen.
TEST_F(MixerCoreTest, AGainLeavesRampsAndFadesAsTheyAre) {
  const auto play = [this](double gain) {
    MixerCore core(true);
    WaveSource source(Sine(440.0, 0.4), kLong);
    core.SetRunning(true);
    core.Start(0, &source, kLong, 1000, gain);
    std::vector<float> all = Render(core, 2000);
    core.SetVolume(0, 6500);
    for (const float sample : Render(core, 1000)) all.push_back(sample);
    core.Seek(0, &source, 30000);
    core.Fade(0, 700);
    for (const float sample : Render(core, 2000)) all.push_back(sample);
    return all;
  };
  const std::vector<float> plain = play(1.0), half = play(0.5);
  for (size_t i = 0; i < plain.size(); ++i) ASSERT_EQ(half[i], plain[i] / 2) << i;
}

// The sum of a ramp of the volume and of a fade, as it was before there was a gain.
TEST_F(MixerCoreTest, AGainOfOneLeavesEverySampleBitForBit) {
  WaveSource source(Sine(440.0, 0.4), kLong);
  core_.SetRunning(true);
  core_.Start(0, &source, kLong, 0, 1.0);
  Render(core_, 1000);
  core_.SetVolume(0, 6500);
  core_.Fade(0, 441);
  const std::vector<float> out = Mixed(441);
  const double down = 6500.0 / 16384 - 1.0;
  const double first = 6500.0 / 16384 - down * 440 / 441, firstFade = 440.0 / 441;
  const auto volume = static_cast<float>(1.0 + (first - 1.0));
  const auto volumeStep = static_cast<float>(first - 1.0);
  const auto fade = static_cast<float>(1.0 + (firstFade - 1.0));
  const auto fadeStep = static_cast<float>(firstFade - 1.0);
  const testing::Wave wave = Sine(440.0, 0.4);
  for (int i = 0; i < 441; ++i) {
    const auto x = static_cast<float>(i);
    ASSERT_EQ(out[2 * i], wave(1000 + i) * ((volume + volumeStep * x) * (fade + fadeStep * x)))
        << i;
  }
}

TEST_F(MixerCoreTest, WhatIsCutGlidesOutAtItsOwnGain) {
  WaveSource first(Constant(0.5f), kLong);
  WaveSource second(Constant(0.0f), kLong);
  core_.SetRunning(true);
  core_.Start(0, &first, kLong, 0, 0.5);
  std::vector<float> all = Render(core_, 3000);
  core_.Start(0, &second, kLong, 0, 4.0);
  const std::vector<float> out = Render(core_, 2000);
  all.insert(all.end(), out.begin(), out.end());
  EXPECT_NEAR(all[2 * (3000 + MixerCore::kLatencyFrames)], 0.25f * 440 / 441, 1e-6f);
}

TEST_F(MixerCoreTest, BelowFullScaleTheOutputIsTheSumBitForBit) {
  WaveSource first(Sine(440.0, 0.4), kLong);
  WaveSource second(Sine(523.0, 0.3), kLong);
  WaveSource third(Sine(30.0, 0.2), kLong);
  core_.SetRunning(true);
  Start(0, first);
  Start(1, second);
  Start(2, third);
  const std::vector<float> out = Mixed(10000);
  const testing::Wave a = Sine(440.0, 0.4), b = Sine(523.0, 0.3), c = Sine(30.0, 0.2);
  for (int i = 0; i < 10000; ++i) ASSERT_EQ(out[2 * i], a(i) + b(i) + c(i)) << i;
}

TEST_F(MixerCoreTest, TwoFullScaleSinesAtUnityStayWithinFullScale) {
  WaveSource first(Sine(440.0, 1.0), kLong);
  WaveSource second(Sine(660.0, 1.0), kLong);
  core_.SetRunning(true);
  Start(0, first);
  Start(1, second);
  EXPECT_LE(LargestMagnitude(Mixed(200000)), 1.0f);
}

TEST_F(MixerCoreTest, AStartIsHeardFromItsFirstSampleOn) {
  WaveSource source(Constant(0.5f), kLong);
  core_.SetRunning(true);
  Render(core_, 1000);
  Start(0, source);
  const std::vector<float> out = Render(core_, 1000);
  EXPECT_EQ(out[2 * (MixerCore::kLatencyFrames - 1)], 0.0f);
  EXPECT_EQ(out[2 * MixerCore::kLatencyFrames], 0.5f);
}

TEST_F(MixerCoreTest, AStartInsideAFileGlidesIn) {
  WaveSource source(Constant(0.5f), kLong);
  core_.SetRunning(true);
  Start(0, source, 5000);
  const std::vector<float> out = Mixed(1000);
  EXPECT_LE(LargestJump(out), 0.5f / 441 + 1e-6f);
  EXPECT_NEAR(out[0], 0.5f / 441, 1e-6f);
  EXPECT_EQ(out[2 * 440], 0.5f);
}

TEST_F(MixerCoreTest, AFileEndsExactlyAtItsLastFrame) {
  WaveSource source(Constant(0.5f), 12345);
  core_.SetRunning(true);
  Start(0, source);
  EXPECT_EQ(core_.FramesToNextEvent(), 12345);
  Render(core_, 12344);
  EXPECT_TRUE(core_.Plays(0));
  EXPECT_EQ(core_.FramesToNextEvent(), 1);
  EXPECT_EQ(core_.TakeEnd(0), std::nullopt);
  const std::vector<float> out = Render(core_, 1000);
  EXPECT_EQ(core_.TakeEnd(0), MixerCore::End::kFile);
  EXPECT_EQ(core_.TakeEnd(0), std::nullopt);  // told once
  EXPECT_FALSE(core_.Plays(0));
  EXPECT_EQ(core_.Position(0), 12345);
  EXPECT_EQ(out[2 * MixerCore::kLatencyFrames], 0.5f);      // frame 12344
  EXPECT_EQ(out[2 * MixerCore::kLatencyFrames + 2], 0.0f);  // and no more
  EXPECT_EQ(core_.FramesToNextEvent(), std::numeric_limits<int64_t>::max());
}

TEST_F(MixerCoreTest, AFadeFallsInEqualStepsToSilenceAndEndsAtItsFrame) {
  WaveSource source(Constant(0.5f), kLong);
  core_.SetRunning(true);
  Start(0, source);
  Render(core_, 3000);
  core_.Fade(0, 4000);
  EXPECT_EQ(core_.FramesToNextEvent(), 4000);
  std::vector<float> out = Render(core_, 3999);
  EXPECT_TRUE(core_.Plays(0));
  const std::vector<float> rest = Render(core_, 1000);
  EXPECT_EQ(core_.TakeEnd(0), MixerCore::End::kFade);
  EXPECT_EQ(core_.Position(0), 7000);
  out.insert(out.end(), rest.begin(), rest.end());
  const float* faded = out.data() + 2 * MixerCore::kLatencyFrames;
  for (int i = 0; i < 4000; ++i) {
    ASSERT_NEAR(faded[2 * i], 0.5f * static_cast<float>(3999 - i) / 4000, 1e-6f) << i;
  }
  EXPECT_EQ(faded[2 * 4000], 0.0f);
}

TEST_F(MixerCoreTest, AFadeAskedWhileOneRunsKeepsTheEarlierEnd) {
  WaveSource source(Constant(0.5f), kLong);
  core_.SetRunning(true);
  Start(0, source);
  Render(core_, 1000);
  core_.Fade(0, 2000);
  Render(core_, 500);
  core_.Fade(0, 1500);  // the same end
  core_.Fade(0, 40000);
  EXPECT_EQ(core_.FramesToNextEvent(), 1500);
  core_.Fade(0, 600);
  EXPECT_EQ(core_.FramesToNextEvent(), 600);
  const std::vector<float> out = Render(core_, 1000);
  EXPECT_EQ(core_.Position(0), 2100);
  // It went on from the level of the first fade: 1500/2000 of 0.5 at the second one.
  const float* faded = out.data() + 2 * MixerCore::kLatencyFrames;
  EXPECT_NEAR(faded[0], 0.375f * 599 / 600, 1e-6f);
  EXPECT_NEAR(faded[2 * 299], 0.375f / 2, 1e-6f);
  for (int i = 1; i < 600; ++i) ASSERT_LT(faded[2 * i], faded[2 * i - 2]);
}

TEST_F(MixerCoreTest, AFadeLongerThanTheFileLetsTheFileEnd) {
  WaveSource source(Constant(0.5f), 10000);
  core_.SetRunning(true);
  Start(0, source);
  core_.Fade(0, 20000);
  EXPECT_EQ(core_.FramesToNextEvent(), 10000);
  Render(core_, 10000);
  EXPECT_EQ(core_.TakeEnd(0), MixerCore::End::kFile);
}

TEST_F(MixerCoreTest, AFadeOfNothingEndsTheSlotNowAndGlidesInTheSound) {
  WaveSource source(Constant(0.5f), kLong);
  core_.SetRunning(true);
  Start(0, source);
  Render(core_, 1000);
  core_.Fade(0, 0);
  EXPECT_FALSE(core_.Plays(0));
  EXPECT_EQ(core_.TakeEnd(0), MixerCore::End::kFade);
  EXPECT_EQ(core_.Position(0), 1000);
  EXPECT_LE(LargestJump(Render(core_, 2000)), 0.5f / 441 + 1e-6f);
}

TEST_F(MixerCoreTest, AFadeOnASilentSlotIsNothing) {
  core_.SetRunning(true);
  core_.Fade(0, 1000);
  WaveSource source(Constant(0.5f), kLong);
  Start(0, source);
  EXPECT_EQ(core_.FramesToNextEvent(), kLong);
  EXPECT_EQ(Mixed(2000)[2 * 1999], 0.5f);
}

TEST_F(MixerCoreTest, AVolumeStepIsARampAndCountsAtItsEnd) {
  WaveSource source(Constant(0.5f), kLong);
  core_.SetRunning(true);
  Start(0, source);
  Render(core_, 1000);
  core_.SetVolume(0, 6500);
  const std::vector<float> out = Render(core_, 2000);
  EXPECT_LE(LargestJump(out), 0.5f * (1.0f - 6500.0f / 16384) / 441 + 1e-6f);
  EXPECT_NEAR(out[2 * (MixerCore::kLatencyFrames + 440)], 0.5f * 6500 / 16384, 1e-6f);
}

TEST_F(MixerCoreTest, TenThousandSmallVolumeStepsMakeNoNoise) {
  WaveSource source(Sine(200.0, 0.4), kLong);
  core_.SetRunning(true);
  core_.SetVolume(0, 6500);
  Start(0, source);
  std::vector<float> all;
  for (int volume = 6500; volume <= 16384; volume += 4) {
    core_.SetVolume(0, volume);
    const std::vector<float> out = Render(core_, 37);
    all.insert(all.end(), out.begin(), out.end());
  }
  const double own =
      0.4 * 2 * M_PI * 200.0 / kSampleRate;  // the tone's steepest step at full volume
  EXPECT_LE(LargestJump(all), own * 1.01);
}

TEST_F(MixerCoreTest, WhatIsSilencedGlidesOutWhileTheSlotIsDoneAtOnce) {
  WaveSource source(Sine(100.0, 0.5), kLong);
  core_.SetRunning(true);
  Start(0, source);
  std::vector<float> all = Render(core_, 5000);
  core_.Silence(0);
  EXPECT_FALSE(core_.Plays(0));
  EXPECT_EQ(core_.TakeEnd(0), std::nullopt);
  const std::vector<float> out = Render(core_, 2000);
  all.insert(all.end(), out.begin(), out.end());
  const double own = 0.5 * 2 * M_PI * 100.0 / kSampleRate;
  EXPECT_LE(LargestJump(all), own + 0.5 / 441);
  EXPECT_EQ(all[2 * (5000 + MixerCore::kLatencyFrames + 441)], 0.0f);
  EXPECT_NE(all[2 * (5000 + MixerCore::kLatencyFrames + 300)], 0.0f);
}

TEST_F(MixerCoreTest, ANewFileOverASoundingOneBeginsAtOnceOverItsTail) {
  WaveSource first(Constant(0.5f), kLong);
  WaveSource second(Constant(0.0f), kLong);
  core_.SetRunning(true);
  Start(0, first);
  std::vector<float> all = Render(core_, 3000);
  Start(0, second);
  EXPECT_EQ(core_.Position(0), 0);
  const std::vector<float> out = Render(core_, 2000);
  all.insert(all.end(), out.begin(), out.end());
  // The second one is silent: what is heard after the change is the tail of the first.
  const float* from = all.data() + 2 * (3000 + MixerCore::kLatencyFrames);
  EXPECT_NEAR(from[0], 0.5f * 440 / 441, 1e-6f);
  EXPECT_EQ(from[2 * 441], 0.0f);
}

TEST_F(MixerCoreTest, StartedAndSilencedInOneInstantNothingIsHeard) {
  WaveSource source(Constant(0.5f), kLong);
  core_.SetRunning(true);
  Start(0, source);
  core_.Silence(0);
  EXPECT_EQ(LargestMagnitude(Render(core_, 2000)), 0.0f);
}

TEST_F(MixerCoreTest, ASeekGoesOnAtTheNewFrameWithoutAJump) {
  WaveSource source(Sine(50.0, 0.5), kLong);
  core_.SetRunning(true);
  Start(0, source);
  std::vector<float> all = Render(core_, 4000);
  core_.Seek(0, &source, 100225);  // a quarter of a turn elsewhere
  EXPECT_EQ(core_.Position(0), 100225);
  const std::vector<float> out = Render(core_, 3000);
  all.insert(all.end(), out.begin(), out.end());
  EXPECT_EQ(core_.Position(0), 103225);
  const double own = 0.5 * 2 * M_PI * 50.0 / kSampleRate;
  EXPECT_LE(LargestJump(all), 2 * (own + 0.5 / 441));
  EXPECT_EQ(all[2 * (4000 + MixerCore::kLatencyFrames + 1000)], Sine(50.0, 0.5)(101225));
}

TEST_F(MixerCoreTest, NotRunningItHoldsEverySlotAndRendersSilence) {
  WaveSource source(Numbered(), kLong);
  Start(0, source);
  core_.Fade(0, 1000);
  EXPECT_EQ(LargestMagnitude(Render(core_, 5000)), 0.0f);
  EXPECT_EQ(core_.Position(0), 0);
  EXPECT_EQ(core_.FramesToNextEvent(), std::numeric_limits<int64_t>::max());
  core_.SetRunning(true);
  EXPECT_EQ(core_.FramesToNextEvent(), 1000);
}

TEST_F(MixerCoreTest, AfterAPauseItGoesOnWithTheFrameItStoodAt) {
  WaveSource source(Numbered(), kLong);
  core_.SetRunning(true);
  Start(0, source);
  Render(core_, 3000);
  core_.SetRunning(false);
  Render(core_, 3000);
  EXPECT_EQ(core_.Position(0), 3000);
  core_.SetRunning(true);
  const std::vector<float> out = Mixed(1000);
  EXPECT_EQ(out[2 * 500], Numbered()(3500));
}

TEST_F(MixerCoreTest, ASourceThatDriesUpEarlyEndsItsSlot) {
  WaveSource source(Constant(0.5f), kLong, 5000);
  core_.SetRunning(true);
  Start(0, source);
  Render(core_, 4000);
  EXPECT_EQ(core_.TakeEnd(0), std::nullopt);
  Render(core_, 4000);
  EXPECT_EQ(core_.TakeEnd(0), MixerCore::End::kFile);
  EXPECT_EQ(core_.Position(0), 5000);
}

// Two cores get the same orders at the same frames; one renders sound, the other only moves.
TEST_F(MixerCoreTest, WithoutSoundEverythingEndsAtTheSameFrames) {
  std::mt19937 random(7);
  const auto below = [&random](int limit) { return static_cast<int>(random() % limit); };
  MixerCore silent(false);
  std::vector<std::unique_ptr<WaveSource>> sources;
  std::vector<float> out(2 * 6000);
  int ends = 0;
  core_.SetRunning(true);
  silent.SetRunning(true);
  for (int step = 0; step < 3000; ++step) {
    const int slot = below(kSlots);
    switch (below(6)) {
      case 0: {
        const int length = 1 + below(20000);
        const int frame = below(2) * below(length);
        sources.push_back(std::make_unique<WaveSource>(Sine(300.0, 0.9), length));
        core_.Start(slot, sources.back().get(), length, frame);
        silent.Start(slot, sources.back().get(), length, frame);
        break;
      }
      case 1: {
        const int frames = below(8000) - 100;
        core_.Fade(slot, frames);
        silent.Fade(slot, frames);
        break;
      }
      case 2: {
        const int volume = below(32769);
        core_.SetVolume(slot, volume);
        silent.SetVolume(slot, volume);
        break;
      }
      case 3:
        if (below(4) == 0) {
          core_.Silence(slot);
          silent.Silence(slot);
        }
        break;
      default:
        break;
    }
    ASSERT_EQ(core_.FramesToNextEvent(), silent.FramesToNextEvent());
    const int frames = below(6000);
    core_.Render(out.data(), frames);
    silent.Render(nullptr, frames);
    for (int each = 0; each < kSlots; ++each) {
      ASSERT_EQ(core_.Position(each), silent.Position(each)) << step;
      ASSERT_EQ(core_.Plays(each), silent.Plays(each)) << step;
      const auto end = core_.TakeEnd(each);
      ASSERT_EQ(end, silent.TakeEnd(each)) << step;
      ends += end.has_value() ? 1 : 0;
    }
    for (int i = 0; i < 2 * frames; ++i) ASSERT_LE(std::abs(out[i]), 1.0f);
  }
  EXPECT_GT(ends, 200);
}

}  // namespace
}  // namespace zemo
