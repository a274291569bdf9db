// The operator's choice of output, and the clocks that stand in for a device.
#include <gtest/gtest.h>

#include "platform/real/sound/ClockDrain.h"
#include "platform/real/sound/MovingFrame.h"
#include "platform/real/sound/OutputSpec.h"

namespace zemo {
namespace {

using Kind = OutputSpec::Kind;

TEST(OutputSpec, TheFourFormsAreRead) {
  EXPECT_EQ(ParseOutputSpec("device")->kind, Kind::kDevice);
  EXPECT_EQ(ParseOutputSpec("device")->name, "");
  EXPECT_EQ(ParseOutputSpec("device:Studio: 1")->name, "Studio: 1");
  EXPECT_EQ(ParseOutputSpec("null")->kind, Kind::kNull);
  EXPECT_EQ(ParseOutputSpec("file:a b.wav")->kind, Kind::kFile);
  EXPECT_EQ(ParseOutputSpec("file:a b.wav")->name, "a b.wav");
}

TEST(OutputSpec, AnythingElseIsRefused) {
  for (const char* text : {"", "device:", "file:", "file", "Null", "null ", "speaker"}) {
    EXPECT_FALSE(ParseOutputSpec(text).has_value()) << text;
  }
}

SteadyTime At(double seconds) {
  return SteadyTime() +
         std::chrono::duration_cast<SteadyTime::duration>(std::chrono::duration<double>(seconds));
}

TEST(ClockDrain, OwesTheFramesOfTheTimeThatPassedAndNoFractionIsLost) {
  ClockDrain clock;
  clock.Restart(At(10.0), 44100);
  EXPECT_EQ(clock.Due(At(10.0)), 0);
  EXPECT_EQ(clock.Due(At(10.5)), 22050);
  int64_t all = 22050;
  for (int ms = 501; ms <= 2000; ms += 7) all += clock.Due(At(10.0 + ms / 1000.0));
  EXPECT_EQ(all, static_cast<int64_t>(1.999 * 44100));  // 501 + 214 * 7 = 1999
}

// Of 42 bits half are for what lies below 0: 577 days of the clock.
TEST(MovingFrame, StaysItselfHoweverLongTheClockHasRun) {
  constexpr int64_t kTwoYears = int64_t{2} * 365 * 86400 * 44100;
  for (const int64_t clock : {int64_t{0}, int64_t{1} << 41, kTwoYears}) {
    const uint64_t bits = FrameBits(1000 - clock) | uint64_t{5} << kFrameBits;
    EXPECT_EQ(FrameOf(bits, clock), 1000);
    EXPECT_EQ(FrameOf(bits, clock + 441), 1441);
  }
}

class DeviceWatchTest : public ::testing::Test {
 protected:
  // Lets `seconds` pass in turns of 20 ms while the device asks for `speed` times as many frames.
  const char* Run(double seconds, double speed) {
    for (double passed = 0.0; passed < seconds; passed += 0.02) {
      now_ += 0.02;
      asked_ += 0.02 * 44100 * speed;
      if (const char* trouble = watch_.Look(At(now_), static_cast<uint64_t>(asked_)))
        return trouble;
    }
    return nullptr;
  }
  DeviceWatchTest() { watch_.Restart(At(0.0), 0, 44100); }

  DeviceWatch watch_;
  double now_ = 0.0;
  double asked_ = 0.0;
};

TEST_F(DeviceWatchTest, ADeviceWhoseClockIsALittleOffIsTrustedForADay) {
  EXPECT_EQ(Run(86400.0, 1.001), nullptr);
  watch_.Restart(At(now_), static_cast<uint64_t>(asked_), 44100);
  EXPECT_EQ(Run(86400.0, 0.999), nullptr);
}

// Turns of 80 ms, on a busy machine: what one of them came late it also let the device play.
TEST_F(DeviceWatchTest, TurnsThatComeLateDoNotMakeADeviceFast) {
  for (int turn = 0; turn < 10000; ++turn) {
    const double seconds = turn % 10 == 0 ? 0.13 : 0.08;
    now_ += seconds;
    asked_ += seconds * 44100;
    ASSERT_EQ(watch_.Look(At(now_), static_cast<uint64_t>(asked_)), nullptr) << turn;
  }
}

TEST_F(DeviceWatchTest, ADeviceMayFillItsOwnBuffersAtFirst) {
  asked_ = 2.0 * 44100;
  EXPECT_EQ(Run(60.0, 1.0), nullptr);
}

TEST_F(DeviceWatchTest, ADeviceThatAsksForNothingIsFoundOutWithinASecond) {
  EXPECT_EQ(Run(20.0, 1.0), nullptr);
  const double stopped = now_;
  EXPECT_STREQ(Run(1.0, 0.0), "it takes no more sound");
  EXPECT_NEAR(SecondsBetween(At(stopped), watch_.LastMoved()), 0.0, 1e-6);
}

// It calls every `seconds` for all of that time.
TEST_F(DeviceWatchTest, ADeviceIsJudgedByItsOwnRhythm) {
  const auto rests = [this](double seconds) {
    const char* trouble = Run(seconds, 0.0);
    asked_ += seconds * 44100;
    return trouble;
  };
  // It rests for 1.2 s while it settles: 1.25 times as much is no fault afterwards, more is.
  for (int i = 0; i < 10; ++i) ASSERT_EQ(rests(1.2), nullptr) << i;
  EXPECT_EQ(rests(1.4), nullptr);
  EXPECT_STREQ(rests(2.0), "it takes no more sound");
}

TEST_F(DeviceWatchTest, NoRhythmIsSlowerThanThreeSeconds) {
  EXPECT_EQ(Run(2.9, 0.0), nullptr);
  EXPECT_STREQ(Run(0.2, 0.0), "it takes no more sound");
}

TEST_F(DeviceWatchTest, TheSameDeviceKeepsItsRhythmWhenNobodyLookedMeanwhile) {
  EXPECT_EQ(Run(20.0, 1.0), nullptr);
  now_ += 60.0;
  asked_ += 60.0 * 44100;
  watch_.Resume(At(now_), static_cast<uint64_t>(asked_));
  EXPECT_EQ(Run(0.4, 0.0), nullptr);
  EXPECT_STREQ(Run(0.2, 0.0), "it takes no more sound");
}

TEST_F(DeviceWatchTest, ADeviceThatRacesAwayIsFoundOut) {
  EXPECT_EQ(Run(20.0, 1.0), nullptr);
  EXPECT_STREQ(Run(0.1, 50.0), "it no longer keeps time");
}

TEST_F(DeviceWatchTest, AMixerThatWasHeldUpDoesNotBlameTheDevice) {
  EXPECT_EQ(Run(20.0, 1.0), nullptr);
  now_ += 5.0;  // nobody looked, nobody filled, the device asked for little
  EXPECT_EQ(watch_.Look(At(now_), static_cast<uint64_t>(asked_)), nullptr);
  EXPECT_EQ(Run(10.0, 1.0), nullptr);
}

}  // namespace
}  // namespace zemo
