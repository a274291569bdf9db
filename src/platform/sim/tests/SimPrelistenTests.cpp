// The prelisten player on the virtual clock: what it is after each order, and when it ends.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sim/SimLoop.h"
#include "platform/sim/SimPrelisten.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Constant;
using testing::Lines;
using testing::WaveOpener;
using State = Prelisten::State;

class SimPrelistenTest : public ::testing::Test {
 protected:
  SimPrelistenTest() {
    opener_.Add("a", Constant(0.5f), 10 * kSampleRate);
    opener_.Add("b", Constant(0.5f), 2 * kSampleRate);
    opener_.Add("empty", Constant(0.5f), 0);
    player_.SetDevice(1);
    player_.told = [this](const char* state, const std::string& file, int device) {
      told_.push_back(std::string(state) + " " + file + " " + std::to_string(device));
    };
    player_.OnEnd([this](bool lost) {
      ends_.push_back(loop_.MonotonicMs());
      EXPECT_FALSE(lost);
    });
  }
  void Play(const std::string& file) {
    player_.Open(file);
    player_.Start();
  }
  Lines Told() { return std::exchange(told_, {}); }

  WaveOpener opener_;
  SimLoop loop_{LocalDateTime{2026, 11, 21, 12, 0, 0, 0}};
  SimPrelisten player_{loop_, loop_, opener_};
  Lines told_;
  std::vector<int64_t> ends_;
};

TEST_F(SimPrelistenTest, AFileIsOpenAtItsBeginWithItsLength) {
  EXPECT_EQ(player_.PlayerState(), State::kClosed);
  player_.Open("a");
  EXPECT_EQ(player_.PlayerState(), State::kOpen);
  EXPECT_EQ(player_.FileName(), "a");
  EXPECT_EQ(player_.LengthMs(), 10000);
  EXPECT_EQ(player_.PositionMs(), 0);
  EXPECT_EQ(Told(), Lines{});
}

TEST_F(SimPrelistenTest, ThePositionMovesWithTheVirtualClockWhileItPlays) {
  Play("a");
  EXPECT_EQ(player_.PlayerState(), State::kPlaying);
  loop_.RunUntil(1234);
  EXPECT_EQ(player_.PositionMs(), 1234);
  player_.Pause();
  loop_.RunUntil(5000);
  EXPECT_EQ(player_.PlayerState(), State::kPaused);
  EXPECT_EQ(player_.PositionMs(), 1234);
  player_.Restart();
  loop_.RunUntil(6000);
  EXPECT_EQ(player_.PositionMs(), 2234);
  EXPECT_EQ(Told(), (Lines{"play a 1", "pause a 1", "play a 1"}));
}

TEST_F(SimPrelistenTest, AClockThatIsSetMovesNothing) {
  Play("b");
  loop_.ShiftWallClock(-3600000);
  loop_.RunUntil(1999);
  EXPECT_EQ(player_.PositionMs(), 1999);
  loop_.RunUntil(2000);
  EXPECT_EQ(ends_, std::vector<int64_t>{2000});
}

TEST_F(SimPrelistenTest, AtTheVeryInstantOfItsEndItIsOpenAtItsBeginAndThatIsTold) {
  player_.OnEnd([this](bool lost) {
    EXPECT_FALSE(lost);
    ends_.push_back(loop_.MonotonicMs());
    EXPECT_EQ(player_.PlayerState(), State::kOpen);
    EXPECT_EQ(player_.PositionMs(), 0);
    EXPECT_EQ(Told(), (Lines{"play b 1", "end b 1"}));
  });
  loop_.RunUntil(500);
  Play("b");
  loop_.RunUntil(20000);
  EXPECT_EQ(ends_, std::vector<int64_t>{2500});
  EXPECT_EQ(Told(), Lines{});
}

TEST_F(SimPrelistenTest, WhatHearsOfTheEndMayStartAnotherFile) {
  player_.OnEnd([this](bool) {
    ends_.push_back(loop_.MonotonicMs());
    player_.OnEnd([this](bool) { ends_.push_back(loop_.MonotonicMs()); });
    Play("a");
  });
  Play("b");
  loop_.RunUntil(60000);
  EXPECT_EQ(ends_, (std::vector<int64_t>{2000, 12000}));
}

TEST_F(SimPrelistenTest, APositionThatIsSetMovesTheEnd) {
  player_.Open("a");
  player_.SetPositionMs(8000);
  EXPECT_EQ(player_.PositionMs(), 8000);
  player_.Start();
  loop_.RunUntil(1000);
  player_.SetPositionMs(4000);
  loop_.RunUntil(2000);
  EXPECT_EQ(player_.PositionMs(), 5000);
  EXPECT_EQ(Told(), Lines{"play a 1"});
  loop_.RunUntil(60000);
  EXPECT_EQ(ends_, std::vector<int64_t>{7000});
}

TEST_F(SimPrelistenTest, APositionOutsideOfTheFileIsItsNearerEnd) {
  player_.Open("a");
  player_.SetPositionMs(-5);
  EXPECT_EQ(player_.PositionMs(), 0);
  player_.SetPositionMs(10001);
  EXPECT_EQ(player_.PositionMs(), 10000);
  player_.Start();
  loop_.RunUntil(0);
  EXPECT_EQ(ends_, std::vector<int64_t>{0});
}

TEST_F(SimPrelistenTest, StopAndCloseAreToldOnlyOfWhatPlayedOrWasPaused) {
  Play("a");
  loop_.RunUntil(1000);
  player_.Stop();
  EXPECT_EQ(player_.PlayerState(), State::kOpen);
  EXPECT_EQ(player_.PositionMs(), 0);
  EXPECT_EQ(Told(), (Lines{"play a 1", "stop a 1"}));
  player_.Stop();
  player_.Close();
  EXPECT_EQ(Told(), Lines{});
  EXPECT_EQ(player_.PlayerState(), State::kClosed);
  EXPECT_EQ(player_.FileName(), "");
  EXPECT_EQ(player_.LengthMs(), 0);
  Play("a");
  player_.Pause();
  player_.Close();
  EXPECT_EQ(Told(), (Lines{"play a 1", "pause a 1", "stop a 1"}));
  loop_.RunUntil(60000);
  EXPECT_EQ(ends_, std::vector<int64_t>{});
}

TEST_F(SimPrelistenTest, OrdersThatDoNotFitTheStateDoNothing) {
  player_.Start();
  player_.Pause();
  player_.Restart();
  player_.Stop();
  player_.SetPositionMs(5);
  EXPECT_EQ(player_.PlayerState(), State::kClosed);
  EXPECT_EQ(player_.PositionMs(), 0);
  player_.Open("a");
  player_.Pause();
  player_.Restart();
  EXPECT_EQ(player_.PlayerState(), State::kOpen);
  player_.Start();
  player_.Start();
  player_.Restart();
  EXPECT_EQ(Told(), Lines{"play a 1"});
}

TEST_F(SimPrelistenTest, AnotherFileClosesTheOneThatPlays) {
  Play("a");
  player_.Open("b");
  EXPECT_EQ(player_.PlayerState(), State::kOpen);
  EXPECT_EQ(player_.LengthMs(), 2000);
  EXPECT_EQ(Told(), (Lines{"play a 1", "stop a 1"}));
}

TEST_F(SimPrelistenTest, TheFileThatIsOpenCanBeOpenedAnew) {
  Play("a");
  loop_.RunUntil(1000);
  player_.Open(player_.FileName());
  EXPECT_EQ(player_.FileName(), "a");
  EXPECT_EQ(player_.PlayerState(), State::kOpen);
  EXPECT_EQ(player_.PositionMs(), 0);
}

TEST_F(SimPrelistenTest, AFileThatCannotBeOpenedLeavesItClosed) {
  player_.Open("a");
  EXPECT_THROW(player_.Open("nothing"), SoundError);
  EXPECT_EQ(player_.PlayerState(), State::kClosed);
  EXPECT_EQ(player_.FileName(), "");
  EXPECT_THROW(player_.Open("empty"), SoundError);
  EXPECT_EQ(player_.PlayerState(), State::kClosed);
}

TEST_F(SimPrelistenTest, OutputsBut0To3RefuseAtTheStart) {
  for (const int device : {-1, 4, 99}) {
    player_.SetDevice(device);
    player_.Open("a");
    player_.SetPositionMs(700);
    EXPECT_THROW(player_.Start(), SoundError) << device;
    EXPECT_EQ(player_.PlayerState(), State::kOpen);
    EXPECT_EQ(player_.PositionMs(), 700);
    EXPECT_EQ(Told(), Lines{"refused a " + std::to_string(device)});
    player_.Close();
    EXPECT_EQ(Told(), Lines{});
  }
  for (const int device : {0, 3}) {
    player_.SetDevice(device);
    Play("a");
    player_.Close();
  }
  EXPECT_EQ(Told(), (Lines{"play a 0", "stop a 0", "play a 3", "stop a 3"}));
}

TEST_F(SimPrelistenTest, ADeviceIsTakenWhileItIsClosedOnly) {
  EXPECT_EQ(SimPrelisten(loop_, loop_, opener_).Device(), -1);
  player_.Open("a");
  player_.SetDevice(2);
  EXPECT_EQ(player_.Device(), 1);
  player_.Close();
  player_.SetDevice(2);
  EXPECT_EQ(player_.Device(), 2);
}

TEST_F(SimPrelistenTest, AFileThatFollowsComesInAtItsPositionAndIsTheOneThatEnds) {
  player_.Open("a");
  player_.SetPositionMs(3000);
  player_.Follow({.path = "b", .atMs = 8000});
  player_.Start();
  loop_.RunUntil(4999);
  EXPECT_EQ(player_.FileName(), "a");
  EXPECT_EQ(player_.PositionMs(), 7999);
  loop_.RunUntil(5500);
  EXPECT_EQ(player_.FileName(), "b");
  EXPECT_EQ(player_.LengthMs(), 2000);
  EXPECT_EQ(player_.PositionMs(), 500);
  loop_.RunUntil(60000);
  EXPECT_EQ(ends_, std::vector<int64_t>{7000});
  EXPECT_EQ(Told(), (Lines{"play a 1", "play b 1", "end b 1"}));
}

TEST_F(SimPrelistenTest, WhatFollowsIsKeptOverAPauseAndForgottenByStop) {
  player_.Open("a");
  player_.Follow({.path = "b", .atMs = 8000});
  player_.Start();
  loop_.RunUntil(1000);
  player_.Pause();
  loop_.RunUntil(20000);
  player_.Restart();
  loop_.RunUntil(27500);
  EXPECT_EQ(player_.FileName(), "b");
  EXPECT_EQ(player_.PositionMs(), 500);

  player_.Open("a");
  player_.Follow({.path = "b", .atMs = 8000});
  player_.Start();
  player_.Stop();
  player_.Start();
  loop_.RunUntil(36500);
  EXPECT_EQ(player_.FileName(), "a");
}

TEST_F(SimPrelistenTest, BehindTheEndOfTheFileTheNextBeginsAtItsEnd) {
  player_.Open("b");
  player_.Follow({.path = "a", .atMs = 99999});
  player_.Start();
  loop_.RunUntil(2100);
  EXPECT_EQ(player_.FileName(), "a");
  EXPECT_EQ(player_.PositionMs(), 100);
}

TEST_F(SimPrelistenTest, WhatCannotBeOpenedDoesNotFollow) {
  player_.Follow({.path = "b", .atMs = 1});  // closed: nothing for it to follow
  player_.Open("a");
  EXPECT_THROW(player_.Follow({.path = "nothing", .atMs = 100}), SoundError);
  EXPECT_THROW(player_.Follow({.path = "empty", .atMs = 100}), SoundError);
  player_.Start();
  player_.Follow({.path = "b", .atMs = 100});  // while it plays
  loop_.RunUntil(5000);
  EXPECT_EQ(player_.FileName(), "a");
}

TEST_F(SimPrelistenTest, APlayerThatGoesWhilePlayingEndsNothing) {
  {
    SimPrelisten other(loop_, loop_, opener_);
    other.SetDevice(0);
    other.OnEnd([this](bool) { ends_.push_back(loop_.MonotonicMs()); });
    other.Open("b");
    other.Start();
  }
  loop_.RunUntil(60000);
  EXPECT_EQ(ends_, std::vector<int64_t>{});
}

}  // namespace
}  // namespace zemo
