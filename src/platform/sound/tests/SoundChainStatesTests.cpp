// The states of slots and output, and what the observer hears, on the simulated chain: the rules
// stand in the base that the real chain shares.
#include <gtest/gtest.h>

#include "platform/sim/SimSoundChain.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Constant;
using testing::Lines;
using testing::ObserverLog;
using testing::WaveOpener;

class SoundChainStates : public ::testing::Test {
 protected:
  SoundChainStates() {
    opener_.Add("long", Constant(0.5f), 10 * kSampleRate);
    opener_.Add("short", Constant(0.5f), kSampleRate);
    chain_.SetObserver(&log_);
  }

  void Sound(int slot, const std::string& file) {
    chain_.SetFileName(slot, file);
    chain_.SetChannelDone(slot, false);
    chain_.Start();
    log_.Take();
  }

  WaveOpener opener_;
  ObserverLog log_;
  SimSoundChain chain_{opener_};
};

TEST_F(SoundChainStates, AFreeSlotIsDoneAndHasNothing) {
  for (int slot = 0; slot < kSlots; ++slot) {
    EXPECT_TRUE(chain_.ChannelDone(slot));
    EXPECT_FALSE(chain_.Sounds(slot));
    EXPECT_EQ(chain_.FileName(slot), "");
    EXPECT_EQ(chain_.Position(slot), 0);
    EXPECT_EQ(chain_.Length(slot), 0);
    EXPECT_EQ(chain_.Volume(slot), kUnityVolume);
  }
}

TEST_F(SoundChainStates, AnOpenedFileIsSilentUntilItIsStarted) {
  chain_.Start();
  chain_.SetFileName(1, "long");
  chain_.AdvanceTo(500);
  EXPECT_TRUE(chain_.ChannelDone(1));
  EXPECT_EQ(chain_.Position(1), 0);
  EXPECT_EQ(chain_.Length(1), 10000);
  EXPECT_EQ(chain_.FileName(1), "long");
  EXPECT_EQ(log_.Take(), (Lines{"output open", "output start"}));
}

TEST_F(SoundChainStates, AChannelStartedBeforeTheOutputWaitsForIt) {
  chain_.SetFileName(0, "long");
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(1000);
  EXPECT_FALSE(chain_.ChannelDone(0));
  EXPECT_FALSE(chain_.Sounds(0));
  EXPECT_EQ(chain_.Position(0), 0);
  chain_.Start();
  EXPECT_TRUE(chain_.Sounds(0));
  chain_.AdvanceTo(1250);
  EXPECT_EQ(chain_.Position(0), 250);
  EXPECT_EQ(chain_.ChannelPosition(0), 250);
}

TEST_F(SoundChainStates, AChannelWrittenFalseWithoutAFileStaysSoUntilTheOutputRuns) {
  for (int slot = 0; slot < kSlots; ++slot) chain_.SetChannelDone(slot, false);
  chain_.SetFileName(2, "");
  for (int slot = 0; slot < kSlots; ++slot) EXPECT_FALSE(chain_.ChannelDone(slot));
  chain_.Open();
  EXPECT_FALSE(chain_.ChannelDone(0));
  chain_.Start();
  for (int slot = 0; slot < kSlots; ++slot) EXPECT_TRUE(chain_.ChannelDone(slot));
  chain_.SetChannelDone(0, false);  // with the output running there is nothing to wait for
  EXPECT_TRUE(chain_.ChannelDone(0));
}

TEST_F(SoundChainStates, AFileOpenedOnAChannelWrittenFalseIsSilentUntilItIsStarted) {
  chain_.SetChannelDone(1, false);
  chain_.SetFileName(1, "long");
  EXPECT_TRUE(chain_.ChannelDone(1));
  chain_.Start();
  EXPECT_FALSE(chain_.Sounds(1));
}

TEST_F(SoundChainStates, WritingTrueTakesBackAStartThatWaits) {
  chain_.SetFileName(0, "long");
  chain_.SetChannelDone(0, false);
  chain_.SetChannelDone(0, true);
  chain_.SetChannelDone(1, false);
  chain_.SetChannelDone(1, true);
  EXPECT_TRUE(chain_.ChannelDone(1));
  chain_.Start();
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(log_.Take(), (Lines{"output open", "output start"}));
}

TEST_F(SoundChainStates, AStartThatWaitsAtTheEndOfItsFileIsDone) {
  chain_.SetFileName(0, "short");
  chain_.SetChannelDone(0, false);
  chain_.SetPosition(0, 300);
  EXPECT_FALSE(chain_.ChannelDone(0));
  chain_.SetPosition(0, 1000);
  EXPECT_TRUE(chain_.ChannelDone(0));
  chain_.Start();
  EXPECT_EQ(log_.Take(), (Lines{"output open", "output start"}));
}

TEST_F(SoundChainStates, SilencedAChannelKeepsItsPlaceAndGoesOnFromIt) {
  Sound(0, "long");
  chain_.AdvanceTo(700);
  chain_.SetChannelDone(0, true);
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(chain_.Position(0), 700);
  chain_.AdvanceTo(1500);
  EXPECT_EQ(chain_.Position(0), 700);
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(1800);
  EXPECT_EQ(chain_.Position(0), 1000);
  EXPECT_EQ(log_.Take(), (Lines{"end 0 stopped"}));
}

TEST_F(SoundChainStates, AtItsEndAFileKeepsItsNameAndStandsAtItsLength) {
  Sound(0, "short");
  chain_.AdvanceTo(999);
  EXPECT_FALSE(chain_.ChannelDone(0));
  chain_.AdvanceTo(1000);
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(chain_.FileName(0), "short");
  EXPECT_EQ(chain_.Position(0), 1000);
  EXPECT_EQ(chain_.Length(0), 1000);
  EXPECT_EQ(log_.Take(), (Lines{"end 0 file"}));
  chain_.SetChannelDone(0, false);  // nothing is left to play
  EXPECT_TRUE(chain_.ChannelDone(0));
  chain_.SetPosition(0, 400);
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(1100);
  EXPECT_EQ(chain_.Position(0), 500);
  EXPECT_EQ(log_.Take(), Lines{});
}

TEST_F(SoundChainStates, FreeingOrReplacingWhatSoundsEndsItForTheReasonGiven) {
  Sound(0, "long");
  chain_.SetFileName(0, "");
  EXPECT_EQ(log_.Take(), (Lines{"end 0 stopped"}));
  EXPECT_EQ(chain_.FileName(0), "");
  EXPECT_EQ(chain_.Length(0), 0);
  Sound(1, "long");
  chain_.SetFileName(1, "short", SlotEnd::kRestart);
  EXPECT_EQ(log_.Take(), (Lines{"end 1 restart"}));
  EXPECT_TRUE(chain_.ChannelDone(1));
  Sound(2, "long");
  chain_.SetChannelDone(2, true, SlotEnd::kRestart);
  EXPECT_EQ(log_.Take(), (Lines{"end 2 restart"}));
  chain_.SetFileName(2, "");  // it is silent already
  EXPECT_EQ(log_.Take(), Lines{});
}

TEST_F(SoundChainStates, AFileThatCannotBeOpenedLeavesTheSlotFree) {
  Sound(0, "long");
  EXPECT_THROW(chain_.SetFileName(0, "absent"), SoundError);
  EXPECT_EQ(log_.Take(), (Lines{"end 0 stopped"}));
  EXPECT_EQ(chain_.FileName(0), "");
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(chain_.Length(0), 0);
  opener_.Add("empty", Constant(0.5f), 0);
  EXPECT_THROW(chain_.SetFileName(0, "empty"), SoundError);
  EXPECT_EQ(chain_.FileName(0), "");
}

TEST_F(SoundChainStates, TheOutputTellsOnlyWhatReallyChanges) {
  EXPECT_EQ(chain_.State(), OutputState::kClosed);
  chain_.Stop();
  chain_.Close();
  EXPECT_EQ(log_.Take(), Lines{});
  chain_.Open();
  chain_.Open();
  EXPECT_EQ(chain_.State(), OutputState::kOpen);
  EXPECT_EQ(log_.Take(), (Lines{"output open"}));
  chain_.Start();
  chain_.Start();
  EXPECT_EQ(chain_.State(), OutputState::kStarted);
  EXPECT_EQ(log_.Take(), (Lines{"output start"}));
  chain_.Stop();
  chain_.Stop();
  EXPECT_EQ(chain_.State(), OutputState::kOpen);
  EXPECT_EQ(log_.Take(), (Lines{"output stop"}));
  chain_.Start();
  chain_.Close();
  EXPECT_EQ(chain_.State(), OutputState::kClosed);
  EXPECT_EQ(log_.Take(), (Lines{"output start", "output stop", "output close"}));
  chain_.Start();
  EXPECT_EQ(log_.Take(), (Lines{"output open", "output start"}));
}

TEST_F(SoundChainStates, StoppingTheOutputEndsWhatSounds) {
  Sound(0, "long");
  chain_.SetFileName(2, "short");
  chain_.SetChannelDone(2, false);
  chain_.AdvanceTo(300);
  chain_.Close();
  EXPECT_EQ(log_.Take(), (Lines{"end 0 stopped", "end 2 stopped", "output stop", "output close"}));
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(chain_.Position(0), 300);
}

TEST_F(SoundChainStates, AFadeEndsTheSlotAndIsToldWithItsTime) {
  Sound(0, "long");
  chain_.AdvanceTo(1000);
  chain_.FadeOut(0, 3000);
  chain_.AdvanceTo(3999);
  EXPECT_FALSE(chain_.ChannelDone(0));
  chain_.AdvanceTo(4000);
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(chain_.Position(0), 4000);
  EXPECT_EQ(log_.Take(), (Lines{"fade 0 3000", "end 0 fade"}));
}

TEST_F(SoundChainStates, AFadeThatWouldEndLaterThanTheRunningOneIsNotTold) {
  Sound(0, "long");
  chain_.FadeOut(0, 3000);
  chain_.AdvanceTo(1000);
  chain_.FadeOut(0, 2000);  // the same end
  chain_.FadeOut(0, 5000);
  EXPECT_EQ(log_.Take(), (Lines{"fade 0 3000"}));
  chain_.FadeOut(0, 500);
  chain_.AdvanceTo(1500);
  EXPECT_EQ(log_.Take(), (Lines{"fade 0 500", "end 0 fade"}));
}

TEST_F(SoundChainStates, AFadeOfNoTimeEndsTheSlotAtOnce) {
  Sound(0, "long");
  chain_.FadeOut(0, 0);
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(log_.Take(), (Lines{"fade 0 0", "end 0 fade"}));
  Sound(1, "long");
  chain_.FadeOut(1, -20);
  EXPECT_EQ(log_.Take(), (Lines{"fade 1 0", "end 1 fade"}));
}

TEST_F(SoundChainStates, AFadeOnASlotThatDoesNotSoundIsNothing) {
  chain_.FadeOut(0, 1000);
  chain_.SetFileName(0, "long");
  chain_.FadeOut(0, 1000);
  chain_.SetChannelDone(0, false);
  chain_.FadeOut(0, 1000);  // waits for the output
  chain_.Start();
  chain_.AdvanceTo(2000);
  EXPECT_TRUE(chain_.Sounds(0));
  EXPECT_EQ(log_.Take(), (Lines{"output open", "output start"}));
}

TEST_F(SoundChainStates, AFadeOfTheLastSoundIsOverForTheNext) {
  Sound(0, "long");
  chain_.FadeOut(0, 100);
  chain_.SetFileName(0, "long");
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(500);
  EXPECT_TRUE(chain_.Sounds(0));
  chain_.FadeOut(0, 300);
  EXPECT_EQ(log_.Take(), (Lines{"fade 0 100", "end 0 stopped", "fade 0 300"}));
}

TEST_F(SoundChainStates, VolumeReadsAtOnceAndIsToldOnlyWhenItChangesASound) {
  chain_.SetVolume(0, 6500);
  EXPECT_EQ(chain_.Volume(0), 6500);
  Sound(0, "long");
  chain_.SetVolume(0, 6500);
  EXPECT_EQ(log_.Take(), Lines{});
  chain_.SetVolume(0, 9000);
  EXPECT_EQ(chain_.Volume(0), 9000);
  chain_.SetVolume(0, 99999);
  EXPECT_EQ(chain_.Volume(0), 32768);
  chain_.SetVolume(0, -5);
  EXPECT_EQ(chain_.Volume(0), 0);
  EXPECT_EQ(log_.Take(), (Lines{"volume 0 6500>9000", "volume 0 9000>32768", "volume 0 32768>0"}));
}

TEST_F(SoundChainStates, AGainGoesWithItsFile) {
  EXPECT_EQ(chain_.Gain(0), 1.0);
  chain_.SetFileName(0, "long");
  chain_.SetGain(0, 0.25);
  EXPECT_EQ(chain_.Gain(0), 0.25);
  EXPECT_EQ(chain_.Gain(1), 1.0);
  EXPECT_EQ(chain_.Volume(0), kUnityVolume);
  chain_.SetFileName(0, "short");
  EXPECT_EQ(chain_.Gain(0), 1.0);
  chain_.SetGain(0, 0.25);
  chain_.SetFileName(0, "");
  EXPECT_EQ(chain_.Gain(0), 1.0);
  chain_.SetGain(0, 0.25);
  EXPECT_THROW(chain_.SetFileName(0, "nowhere"), SoundError);
  EXPECT_EQ(chain_.Gain(0), 1.0);
}

TEST_F(SoundChainStates, AGainIsKeptWithin40Decibels) {
  for (const auto& [given, kept] :
       {std::pair{-1.0, 0.0}, {0.0, 0.0}, {100.0, 100.0}, {100.1, 100.0}, {INFINITY, 100.0}}) {
    chain_.SetGain(0, given);
    EXPECT_EQ(chain_.Gain(0), kept);
  }
}

TEST_F(SoundChainStates, AGainCountsFromTheNextStartOnAndIsToldToNobody) {
  std::vector<float> heard;
  chain_.SetSink([&](const float* stereo, int frames) {
    for (int i = 0; i < frames; ++i) heard.push_back(stereo[2 * i]);
  });
  chain_.Start();
  chain_.SetFileName(0, "long");
  chain_.SetGain(0, 0.5);
  chain_.SetChannelDone(0, false);
  log_.Take();
  chain_.AdvanceTo(1000);
  chain_.SetGain(0, 0.25);
  chain_.AdvanceTo(2000);
  EXPECT_TRUE(log_.Take().empty());
  EXPECT_EQ(heard.at(40000), 0.25f);
  EXPECT_EQ(heard.at(80000), 0.25f);
  chain_.SetChannelDone(0, true);
  chain_.SetChannelDone(0, false);
  chain_.AdvanceTo(3000);
  EXPECT_EQ(heard.at(130000), 0.125f);
}

TEST_F(SoundChainStates, PositionsAreKeptWithinTheFile) {
  chain_.SetPosition(0, 500);  // no file
  EXPECT_EQ(chain_.Position(0), 0);
  chain_.SetFileName(0, "short");
  chain_.SetPosition(0, -10);
  EXPECT_EQ(chain_.Position(0), 0);
  for (const int32_t ms : {1, 333, 501, 998, 999}) {
    chain_.SetPosition(0, ms);
    EXPECT_EQ(chain_.Position(0), ms);
  }
  chain_.SetPosition(0, 5000);
  EXPECT_EQ(chain_.Position(0), 1000);
}

TEST_F(SoundChainStates, APositionWrittenWhileItSoundsIsPlayedOnFrom) {
  Sound(0, "long");
  chain_.AdvanceTo(1000);
  chain_.SetPosition(0, 5000);
  chain_.AdvanceTo(1500);
  EXPECT_EQ(chain_.Position(0), 5500);
  chain_.SetPosition(0, 10000);
  EXPECT_TRUE(chain_.ChannelDone(0));
  EXPECT_EQ(log_.Take(), (Lines{"end 0 file"}));
}

TEST_F(SoundChainStates, AFadeGoesOnOverAWrittenPosition) {
  Sound(0, "long");
  chain_.FadeOut(0, 2000);
  chain_.AdvanceTo(500);
  chain_.SetPosition(0, 8000);
  chain_.FadeOut(0, 1900);  // later than the 1500 ms that the first one has left
  chain_.AdvanceTo(1999);
  EXPECT_TRUE(chain_.Sounds(0));
  chain_.AdvanceTo(2000);
  EXPECT_EQ(log_.Take(), (Lines{"fade 0 2000", "end 0 fade"}));
}

TEST_F(SoundChainStates, TheObserverFindsSettledStates) {
  Sound(0, "short");
  bool done = false;
  log_.onNote = [&] { done = chain_.ChannelDone(0) && chain_.Position(0) == 1000; };
  chain_.AdvanceTo(1500);
  EXPECT_TRUE(done);
}

TEST_F(SoundChainStates, BuffersAndCycleReadBackAsWritten) {
  chain_.SetOutputBuffers(8192, 6);
  chain_.SetCycleMax(7200000);
  EXPECT_EQ(chain_.OutputBufferSize(), 8192);
  EXPECT_EQ(chain_.OutputNumBuffers(), 6);
  EXPECT_EQ(chain_.CycleMax(), 7200000);
}

}  // namespace
}  // namespace zemo
