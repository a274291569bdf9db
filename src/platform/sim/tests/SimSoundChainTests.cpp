// The sound chain on the virtual clock: ends at their ms, positions equal to the time that passed,
// and a sink that gets one frame for each frame of time.
#include <gtest/gtest.h>

#include <limits>

#include "platform/sim/SimSoundChain.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Constant;
using testing::LargestJump;
using testing::LargestMagnitude;
using testing::Lines;
using testing::Numbered;
using testing::ObserverLog;
using testing::Sine;
using testing::WaveOpener;

constexpr int64_t kNever = std::numeric_limits<int64_t>::max();

class SimSoundChainTest : public ::testing::Test {
 protected:
  SimSoundChainTest() {
    opener_.Add("long", Constant(0.5f), 100 * kSampleRate);
    opener_.Add("short", Constant(0.5f), kSampleRate);
    opener_.Add("numbered", Numbered(), 20 * kSampleRate);
    opener_.Add("tone", Sine(100.0, 0.5), 20 * kSampleRate);
    chain_.SetObserver(&log_);
  }

  void Record() {
    chain_.SetSink([this](const float* stereo, int frames) {
      sound_.insert(sound_.end(), stereo, stereo + 2 * frames);
    });
  }
  void Start(int slot, const std::string& file) {
    chain_.SetFileName(slot, file);
    chain_.SetChannelDone(slot, false);
  }
  float Left(int64_t frame) const { return sound_[static_cast<size_t>(2 * frame)]; }

  WaveOpener opener_;
  ObserverLog log_;
  SimSoundChain chain_{opener_};
  std::vector<float> sound_;
};

TEST_F(SimSoundChainTest, PositionIsTheTimeThatPassedWhateverTheMsOfTheStart) {
  chain_.Start();
  int64_t now = 0;
  for (int64_t start = 0; start < 441; ++start) {  // every place of a ms among the frames
    chain_.AdvanceTo(now += 1000);
    chain_.AdvanceTo(now += start % 10);
    Start(0, "long");
    for (const int64_t ms : {0, 1, 2, 9, 10, 17, 100, 333, 999}) {
      chain_.AdvanceTo(now + ms);
      ASSERT_EQ(chain_.Position(0), ms) << now;
    }
    now += 999;
  }
}

TEST_F(SimSoundChainTest, AFileEndsAtTheFirstMsInWhichItsLastFrameIsPast) {
  // 1000 frames are 22.676 ms. Started at 0 ms the last one is past at 23 ms. At 7 ms 308.7 frames
  // are past, so it starts with frame 308 and ends with frame 1308, at 29.66 ms.
  opener_.Add("1000", Constant(0.5f), 1000);
  chain_.Start();
  Start(0, "1000");
  EXPECT_EQ(chain_.NextDueMs(), 23);
  chain_.AdvanceTo(7);
  Start(1, "1000");
  chain_.AdvanceTo(22);
  EXPECT_FALSE(chain_.ChannelDone(0));
  chain_.AdvanceTo(23);
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(chain_.NextDueMs(), 30);
  chain_.AdvanceTo(29);
  EXPECT_FALSE(chain_.ChannelDone(1));
  chain_.AdvanceTo(30);
  EXPECT_TRUE(chain_.ChannelDone(1));
  EXPECT_EQ(chain_.NextDueMs(), kNever);
}

TEST_F(SimSoundChainTest, NothingIsDueWhileNothingSounds) {
  EXPECT_EQ(chain_.NextDueMs(), kNever);
  Start(0, "short");
  EXPECT_EQ(chain_.NextDueMs(), kNever);  // the output is not started
  chain_.AdvanceTo(500);
  chain_.Start();
  EXPECT_EQ(chain_.NextDueMs(), 1500);
  chain_.SetPaused(true);
  EXPECT_EQ(chain_.NextDueMs(), kNever);
  chain_.AdvanceTo(700);
  chain_.SetPaused(false);
  EXPECT_EQ(chain_.NextDueMs(), 1700);
  chain_.FadeOut(0, 250);
  EXPECT_EQ(chain_.NextDueMs(), 950);
}

TEST_F(SimSoundChainTest, AFadeOfAnyStartEndsAfterItsMs) {
  chain_.Start();
  int64_t now = 0;
  for (int i = 0; i < 50; ++i) {
    chain_.AdvanceTo(now += 13);
    Start(0, "long");
    chain_.AdvanceTo(now += 7);
    chain_.FadeOut(0, 1500);
    // Frames lie at most one frame, 0.023 ms, from the ms: the end shows in the ms itself or the
    // next.
    EXPECT_GE(chain_.NextDueMs(), now + 1500);
    EXPECT_LE(chain_.NextDueMs(), now + 1501);
    now += 1501;
    chain_.AdvanceTo(now);
    EXPECT_TRUE(chain_.ChannelDone(0));
  }
}

TEST_F(SimSoundChainTest, WhatEndsOnTheWayIsToldInTheOrderOfItsFrames) {
  opener_.Add("a", Constant(0.1f), 30000);
  opener_.Add("b", Constant(0.1f), 10000);
  opener_.Add("c", Constant(0.1f), 20000);
  chain_.Start();
  Start(0, "a");
  Start(1, "b");
  Start(2, "c");
  log_.Take();
  chain_.AdvanceTo(5000);
  EXPECT_EQ(log_.Take(), (Lines{"end 1 file", "end 2 file", "end 0 file"}));
}

TEST_F(SimSoundChainTest, TheOutputPositionCountsFromItsStart) {
  chain_.AdvanceTo(333);
  EXPECT_EQ(chain_.OutputPosition(), 0);
  chain_.Start();
  chain_.AdvanceTo(90333);
  EXPECT_EQ(chain_.OutputPosition(), 90000);
  chain_.Stop();
  EXPECT_EQ(chain_.OutputPosition(), 0);
  chain_.AdvanceTo(91000);
  chain_.Start();
  chain_.AdvanceTo(91500);
  EXPECT_EQ(chain_.OutputPosition(), 500);
}

TEST_F(SimSoundChainTest, ARestartOfTheOutputGoesOnWithSlot0) {
  chain_.Start();
  Start(1, "long");
  chain_.AdvanceTo(5000);
  chain_.FadeOut(1, 400);
  chain_.AdvanceTo(6900);
  log_.Take();
  chain_.Stop();
  chain_.Close();
  chain_.Open();
  for (int slot = 0; slot < kSlots; ++slot) chain_.SetFileName(slot, "", SlotEnd::kRestart);
  chain_.SetFileName(0, "short");
  chain_.SetChannelDone(0, false);
  chain_.SetChannelDone(1, true);
  chain_.Start();
  EXPECT_EQ(log_.Take(), (Lines{"output stop", "output close", "output open", "output start"}));
  EXPECT_TRUE(chain_.Sounds(0));
  EXPECT_TRUE(chain_.ChannelDone(1));
  EXPECT_EQ(chain_.NextDueMs(), 7900);
}

TEST_F(SimSoundChainTest, TheSinkGetsEachFrameAtItsTime) {
  Record();
  chain_.AdvanceTo(1000);  // not started: silence
  chain_.Start();
  Start(0, "numbered");
  chain_.AdvanceTo(3000);
  chain_.FlushSink();
  ASSERT_EQ(sound_.size(), 2u * 3 * kSampleRate);
  EXPECT_EQ(Left(44099), 0.0f);
  for (int64_t frame = 0; frame < 2 * kSampleRate; ++frame) {
    ASSERT_EQ(Left(44100 + frame), Numbered()(frame));
  }
}

TEST_F(SimSoundChainTest, FlushingInMidAirLosesAndDoublesNothing) {
  Record();
  chain_.Start();
  Start(0, "tone");
  for (int64_t ms = 500; ms <= 2000; ms += 500) {
    chain_.AdvanceTo(ms);
    chain_.FlushSink();
    ASSERT_EQ(sound_.size(), 2u * static_cast<size_t>(ms * 441 / 10));
  }
  EXPECT_EQ(Left(21000), Sine(100.0, 0.5)(21000));
  EXPECT_EQ(Left(43000), Sine(100.0, 0.5)(43000));  // the stretch just behind a flush glides in
}

TEST_F(SimSoundChainTest, ASinkThatComesLateHearsTheFileWhereItIs) {
  chain_.Start();
  Start(0, "numbered");
  chain_.AdvanceTo(2000);
  Record();
  chain_.AdvanceTo(3000);
  chain_.FlushSink();
  ASSERT_EQ(sound_.size(), 2u * kSampleRate);
  EXPECT_EQ(Left(0), Numbered()(88200));
  EXPECT_EQ(Left(44099), Numbered()(132299));
}

TEST_F(SimSoundChainTest, ACrossfadeIsTheSumOfBothAndHasNoJumpOfItsOwn) {
  Record();
  chain_.Start();
  Start(0, "tone");
  chain_.AdvanceTo(5000);
  chain_.FadeOut(0, 3000);
  Start(1, "tone");
  chain_.AdvanceTo(9000);
  chain_.FlushSink();
  const double own = 0.5 * 2 * M_PI * 100.0 / kSampleRate;
  EXPECT_LE(LargestJump(sound_), 2 * own);
  // In the middle of the fade the old one has half its level left.
  const int64_t middle = 6500 * 441 / 10;
  EXPECT_NEAR(Left(middle), Sine(100.0, 0.25)(middle) + Sine(100.0, 0.5)(middle - 220500), 1e-4);
  EXPECT_EQ(Left(8500 * 441 / 10), Sine(100.0, 0.5)(8500 * 441 / 10 - 220500));
}

TEST_F(SimSoundChainTest, NothingThatIsCutClicks) {
  opener_.Add("level", Constant(0.5f), 20 * kSampleRate);
  Record();
  chain_.SetVolume(0, 0);
  chain_.Start();
  Start(0, "level");
  chain_.SetVolume(0, 0);
  chain_.AdvanceTo(100);
  chain_.SetVolume(0, kUnityVolume);
  chain_.AdvanceTo(500);
  chain_.SetVolume(0, 6500);
  chain_.AdvanceTo(1000);
  chain_.SetChannelDone(0, true);
  chain_.AdvanceTo(1500);
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(2000);
  chain_.SetPosition(0, 9000);
  chain_.AdvanceTo(2500);
  chain_.FadeOut(0, 0);
  chain_.AdvanceTo(3000);
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(3500);
  chain_.SetFileName(0, "");
  chain_.AdvanceTo(4000);
  chain_.SetFileName(0, "level");
  chain_.SetPosition(0, 50);
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(4500);
  chain_.SetPaused(true);
  chain_.AdvanceTo(5000);
  chain_.SetPaused(false);
  chain_.AdvanceTo(5500);
  chain_.Close();
  chain_.AdvanceTo(6000);
  chain_.FlushSink();
  EXPECT_LE(LargestJump(sound_), 0.5f / 441 + 1e-6f);
  EXPECT_EQ(LargestMagnitude(sound_), 0.5f);
  EXPECT_EQ(Left(264599), 0.0f);
}

TEST_F(SimSoundChainTest, WithAndWithoutASinkTheSameEndsComeAtTheSameMs) {
  const auto run = [this](bool sink) {
    SimSoundChain chain(opener_);
    ObserverLog log;
    int64_t now = 0;
    Lines lines;
    chain.SetObserver(&log);
    if (sink) chain.SetSink([](const float*, int) {});
    log.onNote = [&] { lines.push_back(std::to_string(now) + " " + log.Take().front()); };
    chain.Start();
    for (; now < 60000; ++now) {
      chain.AdvanceTo(now);
      if (now % 1700 == 0) {
        const int slot = static_cast<int>(now / 1700) % kSlots;
        chain.SetFileName(slot, now % 3 == 0 ? "short" : "tone");
        chain.SetPosition(slot, static_cast<int32_t>(now % 777));
        chain.SetChannelDone(slot, false);
      }
      if (now % 2300 == 0) chain.FadeOut(static_cast<int>(now / 2300) % kSlots, 900);
      if (now % 9100 == 0) {
        chain.Stop();
        chain.Start();
      }
    }
    return lines;
  };
  const Lines silent = run(false);
  EXPECT_GT(silent.size(), 60u);
  EXPECT_EQ(run(true), silent);
}

}  // namespace
}  // namespace zemo
