// The prelisten player with its threads, on devices that a test plays.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/real/sound/RealPrelisten.h"
#include "platform/real/sound/RealSoundChain.h"
#include "platform/real/sound/tests/OrderQueue.h"
#include "platform/real/sound/tests/SoundTestSupport.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Constant;
using testing::kBoundMs;
using testing::OrderQueue;
using testing::PlayedDevice;
using testing::WaveOpener;
using State = Prelisten::State;
using Conduct = PlayedDevice::Conduct;
using Samples = std::vector<int16_t>;

constexpr int kCounted = 32000;   // frames of a file whose 16-bit samples are 1, 2, 3, ...
constexpr int kCountedMs = 726;   // 725.6
constexpr int kRampFrames = 441;  // over which what begins inside of a file rises
constexpr size_t kRingFrames = 8192;
constexpr int kSlackMs = 60;  // a device's calls, a mixer's turns, a busy machine
constexpr auto kShortPatience = std::chrono::milliseconds(300);

#ifdef __SANITIZE_THREAD__
constexpr bool kSanitizerHasAThread = true;
#else
constexpr bool kSanitizerHasAThread = false;
#endif

size_t ThreadsOfProcess() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  return static_cast<size_t>(std::distance(begin(tasks), end(tasks)));
}

// How often all threads but the calling one went to sleep so far.
uint64_t SleepsOfOtherThreads() {
  uint64_t sleeps = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    if (task.path().filename() == std::to_string(::gettid())) continue;
    std::ifstream status(task.path() / "status");
    for (std::string word; status >> word;) {
      uint64_t count = 0;
      if (word == "voluntary_ctxt_switches:" && status >> count) sleeps += count;
    }
  }
  return sleeps;
}

class RealPrelistenTest : public ::testing::Test {
 protected:
  RealPrelistenTest() {
    opener_.Add(
        "counted", [](int64_t frame) { return static_cast<float>(1 + frame) / 32768.0f; },
        kCounted);
    opener_.Add("level", Constant(0.5f), 60 * kSampleRate);
    opener_.Add("dry", Constant(0.5f), 60 * kSampleRate, 4410);
    opener_.Add("empty", Constant(0.5f), 0);
    Make();
  }

  void Make(std::chrono::milliseconds patience = RealPrelisten::kPatience) {
    player_.emplace(
        loop_, opener_,
        [this](int number) {
          if (number < 0 || number > 1) throw SoundError("no device");
          WishedDevice wished;
          wished.systems.push_back(devices_[number].Make());
          return wished;
        },
        patience);
    player_->SetDevice(0);
    player_->OnEnd([this](bool lost) {
      ends_.push_back(lost);
      EXPECT_EQ(player_->PlayerState(), State::kOpen);
      EXPECT_EQ(player_->PositionMs(), 0);
    });
  }
  void Play(const std::string& file) {
    player_->Open(file);
    player_->Start();
  }
  bool Within(const std::function<bool()>& condition) {
    return testing::Within(kBoundMs, [&] {
      player_->Poll();
      loop_.Yield();
      return condition();
    });
  }
  bool Ended() {
    return Within([this] { return !ends_.empty(); });
  }
  // Left samples that were heard, without the silence before, behind and between them.
  Samples Heard(int device = 0) {
    Samples heard;
    const Samples stereo = devices_[device].Played();
    for (size_t i = 0; i < stereo.size(); i += 2)
      if (stereo[i] != 0) heard.push_back(stereo[i]);
    return heard;
  }
  bool HeardWithin(size_t frames) {
    return Within([&] { return Heard().size() >= frames; });
  }
  // Of the counted file.
  int LastHeardMs() {
    const Samples heard = Heard();
    return heard.empty() ? 0 : static_cast<int>(FramesToMs(heard.back()));
  }
  static Samples Counted(int count) {
    Samples samples;
    for (int i = 1; i <= count; ++i) samples.push_back(static_cast<int16_t>(i));
    return samples;
  }

  WaveOpener opener_;
  OrderQueue loop_;
  PlayedDevice devices_[2];
  std::vector<bool> ends_;
  std::optional<RealPrelisten> player_;
};

TEST_F(RealPrelistenTest, AFileIsHeardWholeBeforeItsEndIsTold) {
  player_->OnEnd([this](bool lost) {
    EXPECT_EQ(Heard().size(), static_cast<size_t>(kCounted));
    ends_.push_back(lost);
  });
  Play("counted");
  EXPECT_EQ(player_->PlayerState(), State::kPlaying);
  EXPECT_EQ(player_->LengthMs(), kCountedMs);
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{false});
  EXPECT_EQ(player_->PlayerState(), State::kOpen);
  EXPECT_EQ(player_->PositionMs(), 0);
  EXPECT_EQ(Heard(), Counted(kCounted));
}

// The air goes on by the clock after 2.5 s, unheard; a file that somebody wants to hear waits.
TEST_F(RealPrelistenTest, ADeviceThatBeginsLateIsHeardFromTheBeginOfTheFile) {
  devices_[0].conduct = Conduct::kStandsStill;
  Play("counted");
  const auto late = std::chrono::steady_clock::now() + std::chrono::milliseconds(3000);
  ASSERT_TRUE(Within([&] { return std::chrono::steady_clock::now() > late; }));
  EXPECT_EQ(player_->PlayerState(), State::kPlaying);
  EXPECT_EQ(player_->PositionMs(), 0);
  devices_[0].conduct = Conduct::kPlays;
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{false});
  EXPECT_EQ(Heard(), Counted(kCounted));
}

TEST_F(RealPrelistenTest, ADeviceThatTakesItsTimeToOpenHoldsNobody) {
  devices_[0].holds = true;
  Play("counted");
  ASSERT_TRUE(Within([this] { return devices_[0].asked == 1; }));
  player_->SetPositionMs(500);
  player_->Pause();
  EXPECT_EQ(player_->PositionMs(), 500);
  player_->Close();
  Play("counted");
  EXPECT_EQ(devices_[0].openings, 0);
  devices_[0].holds = false;
  ASSERT_TRUE(Ended());
  EXPECT_EQ(Heard(), Counted(kCounted));
  EXPECT_EQ(devices_[0].openings, 1);
}

TEST_F(RealPrelistenTest, ADeviceThatDoesNotOpenIsToldAsLost) {
  devices_[0].absent = true;
  Play("counted");
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{true});
  devices_[0].absent = false;
  player_->Start();
  ASSERT_TRUE(Within([this] { return ends_.size() == 2; }));
  EXPECT_EQ(ends_, (std::vector<bool>{true, false}));
  EXPECT_EQ(Heard(), Counted(kCounted));
}

TEST_F(RealPrelistenTest, WhatALostDeviceLeftBehindComesToRest) {
  devices_[0].absent = true;
  Play("counted");
  ASSERT_TRUE(Ended());
  devices_[0].absent = false;
  player_->Start();
  ASSERT_TRUE(Within([this] { return ends_.size() == 2; }));
  player_->Close();
  EXPECT_TRUE(Within([this] { return player_->Rests(); }));
}

TEST_F(RealPrelistenTest, ADeviceThatDoesNotBeginIsGivenUp) {
  Make(kShortPatience);
  devices_[0].conduct = Conduct::kStandsStill;
  Play("counted");
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{true});
  EXPECT_EQ(Heard(), Samples{});
  ASSERT_TRUE(Within([this] { return devices_[0].closings == 1; }));
}

TEST_F(RealPrelistenTest, ADeviceThatRefusesAtOnceIsAnErrorOfTheStart) {
  player_->SetDevice(2);
  player_->Open("counted");
  player_->SetPositionMs(300);
  EXPECT_THROW(player_->Start(), SoundError);
  EXPECT_EQ(player_->PlayerState(), State::kOpen);
  EXPECT_EQ(player_->PositionMs(), 300);
  EXPECT_THROW(PrelistenDevice("", -1), SoundError);
  EXPECT_TRUE(player_->Rests());
}

TEST_F(RealPrelistenTest, ADeviceThatIsUnpluggedEndsItAndIsHeardAgainWhenItIsBack) {
  Play("level");
  ASSERT_TRUE(HeardWithin(4410));
  devices_[0].gone = devices_[0].absent = true;
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{true});
  ASSERT_TRUE(Within([this] { return devices_[0].closings == 1; }));
  devices_[0].gone = devices_[0].absent = false;
  const size_t before = Heard().size();
  player_->Start();
  EXPECT_TRUE(HeardWithin(before + 4410));
  EXPECT_EQ(ends_.size(), 1u);
}

TEST_F(RealPrelistenTest, ADeviceThatTakesNoMoreSoundEndsIt) {
  Play("level");
  ASSERT_TRUE(HeardWithin(4410));
  devices_[0].conduct = Conduct::kStandsStill;
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{true});
}

TEST_F(RealPrelistenTest, ThePositionIsThatOfWhatIsHeard) {
  Play("counted");
  for (const size_t frames : {4410, 8820, 17640, 26460}) {
    ASSERT_TRUE(HeardWithin(frames));
    EXPECT_NEAR(player_->PositionMs(), LastHeardMs(), kSlackMs);
  }
}

TEST_F(RealPrelistenTest, WhatADeviceStillHoldsIsNotHeardYet) {
  devices_[0].delayMs = 400;
  Play("counted");
  ASSERT_TRUE(HeardWithin(8820));
  EXPECT_EQ(player_->PositionMs(), 0);
  ASSERT_TRUE(HeardWithin(26460));
  EXPECT_NEAR(player_->PositionMs(), LastHeardMs() - 400, kSlackMs);
  ASSERT_TRUE(HeardWithin(kCounted));
  EXPECT_EQ(ends_.size(), 0u) << "its end is still on the way";
  ASSERT_TRUE(Ended());
}

TEST_F(RealPrelistenTest, APauseIsSilentAndClosesTheDeviceAndARestartGoesOnThere) {
  Play("counted");
  ASSERT_TRUE(HeardWithin(8820));
  player_->Pause();
  const int at = player_->PositionMs();
  EXPECT_EQ(player_->PlayerState(), State::kPaused);
  EXPECT_NEAR(at, LastHeardMs(), kSlackMs);
  ASSERT_TRUE(Within([this] { return devices_[0].closings == 1; }));
  EXPECT_EQ(player_->PositionMs(), at);
  const size_t before = Heard().size();
  player_->Restart();
  EXPECT_EQ(player_->PlayerState(), State::kPlaying);
  ASSERT_TRUE(Ended());
  const Samples heard = Heard();
  ASSERT_GT(heard.size(), before + 2 * kRampFrames);
  EXPECT_EQ(heard.back(), kCounted);
  // The first samples of a ramp are 0.
  EXPECT_NEAR(static_cast<double>(kCounted - (heard.size() - before)), MsToFrames(at), 50);
}

TEST_F(RealPrelistenTest, APositionThatIsSetIsHeardAtOnceAndNothingInBetween) {
  Play("counted");
  ASSERT_TRUE(HeardWithin(4410));
  const size_t before = Heard().size();
  player_->SetPositionMs(500);
  EXPECT_EQ(player_->PositionMs(), 500);
  ASSERT_TRUE(Ended());
  const Samples heard = Heard();
  EXPECT_EQ(heard.back(), kCounted);
  const size_t behind = kCounted - MsToFrames(500);
  ASSERT_GT(heard.size(), behind);
  EXPECT_LT(heard.size() - behind, before + kRingFrames / 2) << "what the ring held is given up";
  EXPECT_EQ(devices_[0].openings, 1);
}

TEST_F(RealPrelistenTest, APositionAtTheEndEndsIt) {
  Play("level");
  ASSERT_TRUE(HeardWithin(4410));
  player_->SetPositionMs(99999999);
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{false});
}

TEST_F(RealPrelistenTest, AFileThatIsCutShortEndsWhereItsSoundDoes) {
  Play("dry");
  ASSERT_TRUE(testing::Within(5000, [this] {
    player_->Poll();
    loop_.Yield();
    return !ends_.empty();
  }));
  EXPECT_EQ(ends_, std::vector<bool>{false});
  EXPECT_EQ(Heard().size(), 4410u);
}

// Levels of 16 bits: a file of 8192 for a second, and one of 4096 for half of one.
class RealPrelistenJoinTest : public RealPrelistenTest {
 protected:
  static constexpr int16_t kFirst = 8192, kSecond = 4096;
  RealPrelistenJoinTest() {
    opener_.Add("first", Constant(0.25f), kSampleRate);
    opener_.Add("second", Constant(0.125f), kSampleRate / 2);
  }
  // ms that were heard at about that level, within a thousandth of full scale.
  int HeardMsAt(int16_t level) {
    const Samples heard = Heard();
    return static_cast<int>(FramesToMs(std::count_if(
        heard.begin(), heard.end(), [level](int16_t s) { return std::abs(s - level) < 33; })));
  }
};

TEST_F(RealPrelistenJoinTest, ASecondFileIsHeardOverTheEndOfTheFirst) {
  player_->Open("first");
  player_->Follow({.path = "second", .atMs = 700});
  player_->Start();
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{false});
  EXPECT_NEAR(HeardMsAt(kFirst), 700, kSlackMs);
  EXPECT_NEAR(HeardMsAt(kFirst + kSecond), 300, kSlackMs);
  EXPECT_NEAR(HeardMsAt(kSecond), 200, kSlackMs);
  EXPECT_NEAR(FramesToMs(static_cast<int64_t>(Heard().size())), 1200, kSlackMs);
}

TEST_F(RealPrelistenJoinTest, TheFirstFadesFromWhereTheSecondBegins) {
  player_->Open("first");
  player_->Follow({.path = "second", .atMs = 600, .fadeMs = 200});
  player_->Start();
  ASSERT_TRUE(Ended());
  EXPECT_NEAR(HeardMsAt(kFirst), 600, kSlackMs);
  EXPECT_NEAR(HeardMsAt(kFirst + kSecond), 0, 20) << "it falls from the first frame on";
  EXPECT_NEAR(HeardMsAt(kSecond), 300, kSlackMs);
  EXPECT_NEAR(FramesToMs(static_cast<int64_t>(Heard().size())), 1100, kSlackMs);
}

TEST_F(RealPrelistenJoinTest, EachHasItsGain) {
  player_->Open("first");
  player_->Follow({.path = "second", .atMs = 700, .openGain = 0.5, .gain = 2});
  player_->Start();
  ASSERT_TRUE(Ended());
  EXPECT_NEAR(HeardMsAt(kFirst / 2), 700, kSlackMs);
  EXPECT_NEAR(HeardMsAt(kFirst / 2 + 2 * kSecond), 300, kSlackMs);
  EXPECT_NEAR(HeardMsAt(2 * kSecond), 200, kSlackMs);
}

TEST_F(RealPrelistenJoinTest, ThePlayerIsAtTheSecondFileOnceThatIsHeard) {
  opener_.Add(
      "then", [](int64_t frame) { return static_cast<float>(1 + frame) / 32768.0f; }, kCounted);
  opener_.Add("silence", Constant(0.0f), kSampleRate / 4);
  player_->Open("silence");
  player_->Follow({.path = "then", .atMs = 250});
  player_->Start();
  EXPECT_EQ(player_->FileName(), "silence");
  EXPECT_EQ(player_->LengthMs(), 250);
  ASSERT_TRUE(HeardWithin(8820));
  EXPECT_EQ(player_->FileName(), "then");
  EXPECT_EQ(player_->LengthMs(), kCountedMs);
  EXPECT_NEAR(player_->PositionMs(), LastHeardMs(), kSlackMs);
  EXPECT_GT(player_->HeardLevels().left, 0.1f);
  ASSERT_TRUE(Ended());
  const Samples heard = Heard();
  EXPECT_EQ(heard.front(), 1);
  EXPECT_EQ(heard.back(), kCounted);
  EXPECT_NEAR(static_cast<double>(heard.size()), kCounted, MsToFrames(kSlackMs));
}

TEST_F(RealPrelistenJoinTest, PausedInTheSecondFileItGoesOnThere) {
  player_->Open("first");
  player_->Follow({.path = "level", .atMs = 200, .fadeMs = 100});
  player_->Start();
  ASSERT_TRUE(Within([this] { return player_->FileName() == "level"; }));
  ASSERT_TRUE(Within([this] { return player_->PositionMs() > 200; }));
  player_->Pause();
  const int at = player_->PositionMs();
  player_->Restart();
  EXPECT_EQ(player_->FileName(), "level");
  ASSERT_TRUE(Within([&] { return player_->PositionMs() > at + 100; }));
  player_->SetPositionMs(59500);
  ASSERT_TRUE(Ended());
  EXPECT_EQ(player_->FileName(), "level");
}

TEST_F(RealPrelistenJoinTest, PausedAheadOfItTheSecondFileStillComesIn) {
  player_->Open("level");
  player_->Follow({.path = "second", .atMs = 500, .fadeMs = 50});
  player_->Start();
  ASSERT_TRUE(HeardWithin(4410));
  player_->Pause();
  player_->Restart();
  ASSERT_TRUE(Ended());
  EXPECT_EQ(player_->FileName(), "second");
}

TEST_F(RealPrelistenJoinTest, AFirstFileThatIsCutShortGivesWayWhereItsSoundEnds) {
  player_->Open("dry");
  player_->Follow({.path = "second", .atMs = 30000});
  player_->Start();
  ASSERT_TRUE(Ended());
  EXPECT_EQ(player_->FileName(), "second");
  EXPECT_EQ(HeardMsAt(kSecond), 500);
}

TEST_F(RealPrelistenJoinTest, ASecondFileThatIsGoneIsLeftOut) {
  player_->Open("first");
  EXPECT_THROW(player_->Follow({.path = "nothing", .atMs = 100}), SoundError);
  EXPECT_THROW(player_->Follow({.path = "empty", .atMs = 100}), SoundError);
  player_->Start();
  ASSERT_TRUE(Ended());
  EXPECT_EQ(player_->FileName(), "first");
  EXPECT_EQ(Heard().size(), static_cast<size_t>(kSampleRate));
}

TEST_F(RealPrelistenTest, TheFileThatIsOpenCanBeOpenedAnew) {
  Play("counted");
  ASSERT_TRUE(HeardWithin(4410));
  player_->Open(player_->FileName());
  EXPECT_EQ(player_->FileName(), "counted");
  EXPECT_EQ(player_->PlayerState(), State::kOpen);
  player_->Start();
  ASSERT_TRUE(Ended());
  EXPECT_EQ(Heard().back(), kCounted);
}

TEST_F(RealPrelistenTest, AFileThatCannotBeOpenedLeavesItClosedAndOneThatIsGoneDoesNotStart) {
  EXPECT_THROW(player_->Open("nothing"), SoundError);
  EXPECT_THROW(player_->Open("empty"), SoundError);
  EXPECT_EQ(player_->PlayerState(), State::kClosed);
  EXPECT_EQ(player_->FileName(), "");
  player_->Open("level");
  opener_.Remove("level");
  EXPECT_THROW(player_->Start(), SoundError);
  EXPECT_EQ(player_->PlayerState(), State::kOpen);
}

TEST_F(RealPrelistenTest, LevelsAreThoseOfWhatIsHeard) {
  player_->Open("level");
  EXPECT_EQ(player_->HeardLevels().left, 0.0f);
  devices_[0].conduct = Conduct::kStandsStill;
  player_->Start();
  ASSERT_TRUE(Within([this] { return devices_[0].openings == 1; }));
  EXPECT_EQ(player_->HeardLevels().left, 0.0f);
  devices_[0].conduct = Conduct::kPlays;
  ASSERT_TRUE(Within([this] { return player_->HeardLevels().left > 0.0f; }));
  EXPECT_NEAR(player_->HeardLevels().left, 0.5, 0.01);
  EXPECT_NEAR(player_->HeardLevels().right, 0.5, 0.01);
  player_->Pause();
  EXPECT_EQ(player_->HeardLevels().left, 0.0f);
}

TEST_F(RealPrelistenTest, ALevelIsShownWhenItIsHeardAndNotWhenItIsMixed) {
  opener_.Add(
      "late", [](int64_t frame) { return frame < kSampleRate / 2 ? 0.0f : 0.5f; }, kSampleRate);
  devices_[0].delayMs = 300;
  Play("late");
  ASSERT_TRUE(Within([this] { return player_->HeardLevels().left > 0.1f; }));
  EXPECT_NEAR(player_->PositionMs(), 500, kSlackMs);
}

TEST_F(RealPrelistenTest, WhenItIsClosedNoThreadOfItIsLeft) {
  if (kSanitizerHasAThread) GTEST_SKIP() << "the sanitizer begins a thread of its own";
  const size_t before = ThreadsOfProcess();
  player_->Open("level");
  EXPECT_EQ(ThreadsOfProcess(), before);
  player_->Start();
  ASSERT_TRUE(HeardWithin(4410));
  EXPECT_GT(ThreadsOfProcess(), before);
  player_->Close();
  EXPECT_FALSE(player_->Rests());
  ASSERT_TRUE(Within([this] { return player_->Rests(); }));
  EXPECT_EQ(ThreadsOfProcess(), before);
  EXPECT_EQ(devices_[0].closings, 1);
}

TEST_F(RealPrelistenTest, WhilePausedItWakesNobody) {
  if (kSanitizerHasAThread) GTEST_SKIP() << "the sanitizer's own thread wakes ten times a second";
  Play("level");
  ASSERT_TRUE(HeardWithin(4410));
  player_->Pause();
  ASSERT_TRUE(Within([this] { return devices_[0].closings == 1; }));
  uint64_t sleeps = 0;
  EXPECT_TRUE(Within([&] {
    const uint64_t before = std::exchange(sleeps, SleepsOfOtherThreads());
    if (before == sleeps) return true;
    const auto later = std::chrono::steady_clock::now() + std::chrono::milliseconds(300);
    return !testing::Within(kBoundMs, [&] { return std::chrono::steady_clock::now() > later; });
  })) << "no 300 ms without one that woke";
}

TEST_F(RealPrelistenTest, AnotherDeviceIsTheOnlyOneHeardFromTheNextStartOn) {
  Play("level");
  ASSERT_TRUE(HeardWithin(4410));
  player_->SetDevice(1);  // not while it is open
  EXPECT_EQ(player_->Device(), 0);
  player_->Close();
  player_->SetDevice(1);
  Play("counted");
  ASSERT_TRUE(Ended());
  EXPECT_EQ(Heard(1), Counted(kCounted));
  EXPECT_EQ(devices_[0].openings, 1);
  EXPECT_EQ(devices_[0].closings, 1);
}

TEST_F(RealPrelistenTest, StartedAnewAtOnceItPlaysOnTheDeviceThatIsOpen) {
  Play("level");
  ASSERT_TRUE(HeardWithin(4410));
  player_->Stop();
  EXPECT_EQ(player_->PlayerState(), State::kOpen);
  player_->Start();
  const size_t before = Heard().size();
  ASSERT_TRUE(HeardWithin(before + 22050));
  EXPECT_EQ(devices_[0].openings - devices_[0].closings, 1);
  EXPECT_EQ(ends_.size(), 0u);
}

TEST_F(RealPrelistenTest, AnEndThatIsOnItsWayIsNotToldOfWhatPlaysByThen) {
  Play("counted");
  ASSERT_TRUE(testing::Within(kBoundMs, [this] {
    player_->Poll();
    return loop_.Waits();
  }));
  Play("level");
  loop_.Yield();
  EXPECT_EQ(ends_.size(), 0u);
  EXPECT_EQ(player_->PlayerState(), State::kPlaying);
}

TEST_F(RealPrelistenTest, OneThatIsGoneTellsNothing) {
  Play("counted");
  ASSERT_TRUE(testing::Within(kBoundMs, [this] {
    player_->Poll();
    return loop_.Waits();
  }));
  player_.reset();
  loop_.Yield();
  EXPECT_EQ(ends_.size(), 0u);
}

TEST_F(RealPrelistenTest, TheAirHearsNothingOfIt) {
  constexpr int kSteps = 30000;
  opener_.Add(
      "air", [](int64_t frame) { return static_cast<float>(1 + frame % kSteps) / 32768.0f; },
      60 * kSampleRate);
  PlayedDevice airDevice;
  WishedDevice wished;
  wished.systems.push_back(airDevice.Make());
  RealSoundChain air(opener_, std::move(wished), nullptr, "air", nullptr);
  air.SetOutputBuffers(16384, 8);
  air.SetFileName(0, "air");
  air.SetChannelDone(0, false);
  air.Start();
  ASSERT_TRUE(Within([&] { return airDevice.Played().size() > 44100; }));

  for (int i = 0; i < 3; ++i) {
    Play("level");
    ASSERT_TRUE(HeardWithin(Heard().size() + 4410));
    player_->SetPositionMs(30000);
    player_->Pause();
    player_->Restart();
    ASSERT_TRUE(HeardWithin(Heard().size() + 4410));
    player_->Stop();
  }
  player_->Start();
  ASSERT_TRUE(HeardWithin(Heard().size() + 4410));
  devices_[0].gone = devices_[0].absent = true;
  ASSERT_TRUE(Ended());

  const Samples stereo = airDevice.Played();
  air.Close();
  EXPECT_EQ(air.TakeHealth().underruns, 0u);
  size_t i = 0;
  while (i < stereo.size() && stereo[i] == 0) i += 2;
  int wrong = 0;
  for (int frame = 0; i < stereo.size(); i += 2, ++frame)
    if (stereo[i] != 1 + frame % kSteps) ++wrong;
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace zemo
