// The real sound chain with its threads: the clock, a file and a played device as outputs.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <chrono>
#include <random>
#include <string>

#include "platform/real/sound/FileSink.h"
#include "platform/real/sound/RealSoundChain.h"
#include "platform/real/sound/SoundDevices.h"
#include "platform/real/sound/tests/SoundTestSupport.h"
#include "platform/sound/MixerCore.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Constant;
using testing::HeldSink;
using testing::kBoundMs;
using testing::Lines;
using testing::ObserverLog;
using testing::PlayedDevice;
using testing::Sine;
using testing::TestFolder;
using testing::WaveOpener;

// 16-bit samples 1, 2, 3, ... that tell which frame is heard.
testing::Wave Counted() {
  return [](int64_t frame) { return static_cast<float>(1 + frame % 32000) / 32768.0f; };
}

// Of Make's buffers: 16384 bytes times 8. More than a busy machine keeps a thread waiting.
constexpr int kRingMs = 744;

class RealSoundChainTest : public ::testing::Test {
 protected:
  RealSoundChainTest() {
    opener_.Add("counted", Counted(), 30000);
    opener_.Add("two seconds", Constant(0.5f), 2 * kSampleRate);
    opener_.Add("level", Constant(0.5f), 60 * kSampleRate);
    opener_.Add("high", Constant(31000.0f / 32768), 60 * kSampleRate);
    opener_.Add("short", Constant(0.25f), 4410);
    opener_.Add("tone", Sine(1000.0, 0.5), 60 * kSampleRate);
  }

  RealSoundChain& Make(std::unique_ptr<OutputDevice> device = nullptr,
                       std::unique_ptr<AirSink> sink = nullptr) {
    WishedDevice wished;
    if (device != nullptr) wished.systems.push_back(std::move(device));
    chain_ = std::make_unique<RealSoundChain>(
        opener_, std::move(wished), std::move(sink), "test",
        [this](const std::string& line) { told_.push_back(line); });
    chain_->SetObserver(&log_);
    chain_->SetOutputBuffers(16384, 8);
    return *chain_;
  }
  void Sound(int slot, const std::string& file) {
    chain_->SetFileName(slot, file);
    chain_->SetChannelDone(slot, false);
    chain_->Start();
  }
  bool Within(const std::function<bool()>& condition) {
    return testing::Within(kBoundMs, [&] {
      chain_->Poll();
      return condition();
    });
  }
  bool Told(const std::string& part) const {
    return std::any_of(told_.begin(), told_.end(), [&](const std::string& line) {
      return line.find(part) != std::string::npos;
    });
  }
  std::vector<int16_t> Left(const std::string& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    std::vector<int16_t> stereo(2 * static_cast<size_t>(info.frames));
    sf_readf_short(file, stereo.data(), info.frames);
    sf_close(file);
    return LeftOf(stereo);
  }
  static std::vector<int16_t> LeftOf(const std::vector<int16_t>& stereo) {
    std::vector<int16_t> left;
    for (size_t i = 0; i < stereo.size(); i += 2) left.push_back(stereo[i]);
    return left;
  }

  WaveOpener opener_;
  ObserverLog log_;
  Lines told_;
  TestFolder folder_;
  PlayedDevice device_;
  std::unique_ptr<RealSoundChain> chain_;
};

TEST_F(RealSoundChainTest, WhatTheLogicWritesItReadsAtOnce) {
  RealSoundChain& chain = Make();
  chain.SetFileName(0, "level");
  chain.SetPosition(0, 2500);
  chain.SetVolume(0, 6500);
  EXPECT_EQ(chain.Position(0), 2500);
  EXPECT_EQ(chain.Volume(0), 6500);
  EXPECT_EQ(chain.Length(0), 60000);
  EXPECT_TRUE(chain.ChannelDone(0));
  chain.SetChannelDone(0, false);
  EXPECT_FALSE(chain.ChannelDone(0));
  EXPECT_FALSE(chain.Sounds(0));
  chain.Start();
  EXPECT_TRUE(chain.Sounds(0));
  EXPECT_GE(chain.Position(0), 2500);
  EXPECT_EQ(chain.State(), OutputState::kStarted);
  chain.SetPosition(0, 30000);
  EXPECT_GE(chain.Position(0), 30000);
  chain.SetChannelDone(0, true);
  EXPECT_TRUE(chain.ChannelDone(0));
  EXPECT_GE(chain.Position(0), 30000);
  chain.SetFileName(0, "");
  EXPECT_EQ(chain.Position(0), 0);
  chain.Stop();
  EXPECT_EQ(chain.State(), OutputState::kOpen);
  EXPECT_EQ(chain.OutputPosition(), 0);
}

TEST_F(RealSoundChainTest, OnTheClockAFilePlaysToItsEnd) {
  RealSoundChain& chain = Make();
  Sound(0, "two seconds");
  ASSERT_TRUE(Within([&] { return chain.Position(0) > 100; }));
  EXPECT_TRUE(chain.Sounds(0));
  ASSERT_TRUE(Within([&] { return chain.ChannelDone(0); }));
  EXPECT_EQ(chain.Position(0), 2000);
  EXPECT_EQ(log_.Take(), (Lines{"output open", "output start", "end 0 file"}));
  EXPECT_EQ(chain.TakeHealth().lateFrames, 0u);
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() >= 2000; }));
}

TEST_F(RealSoundChainTest, TheReadPositionLeadsTheOutputByTheRing) {
  RealSoundChain& chain = Make();
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 500; }));
  const int lead = chain.Position(0) - chain.OutputPosition();
  // 8 * 16384 bytes are 743 ms; the output may have moved on since the mixer last looked.
  EXPECT_LE(lead, 744);
  EXPECT_GT(lead, 0);
}

// The mixer looks after a ring of that depth about eleven times a second.
TEST_F(RealSoundChainTest, OnTheClockPositionsGoOnBetweenTheTurnsOfTheMixer) {
  RealSoundChain& chain = Make();
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 200; }));
  const auto begin = std::chrono::steady_clock::now();
  const auto sinceMs = [&] {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
  };
  // What a position is ahead of the clock lies between these two, if it goes as the clock does.
  double readLeast = -1e9, readMost = 1e9, heardLeast = -1e9, heardMost = 1e9;
  int last = 0;
  ASSERT_TRUE(Within([&] {
    const double before = sinceMs();
    const int read = chain.Position(0);
    const int heard = chain.OutputPosition();
    const double after = sinceMs();
    readLeast = std::max(readLeast, read - after);
    readMost = std::min(readMost, read - before);
    heardLeast = std::max(heardLeast, heard - after);
    heardMost = std::min(heardMost, heard - before);
    EXPECT_GE(read, last);
    last = read;
    return after > 400;
  }));
  EXPECT_LE(readLeast - readMost, 3.0);
  EXPECT_LE(heardLeast - heardMost, 3.0);
}

TEST_F(RealSoundChainTest, AStartIsMixedWhereTheSlotsReadWhenItWasOrdered) {
  constexpr int kStarts = 11;
  const std::string path = folder_.Path("out.wav");
  RealSoundChain& chain = Make(nullptr, std::make_unique<FileSink>(path));
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 100; }));
  std::vector<int> ordered;
  for (int i = 0; i < kStarts; ++i) {
    chain.SetFileName(1, "short");
    const int from = chain.Position(0);
    ASSERT_TRUE(Within([&] { return chain.Position(0) > from + 7 * i; }));
    ordered.push_back(chain.Position(0));
    chain.SetChannelDone(1, false);
    ASSERT_TRUE(Within([&] { return chain.ChannelDone(1); }));
  }
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > ordered.back() + 100; }));
  chain_.reset();
  const std::vector<int16_t> left = Left(path);
  const auto begin = std::find(left.begin(), left.end(), 16384);
  auto at = begin;
  for (int i = 0; i < kStarts; ++i) {
    at = std::find(at, left.end(), 16384 + 8192);
    ASSERT_NE(at, left.end());
    EXPECT_GE(FramesToMs(at - begin), ordered[i] - 1) << i;
    at = std::find(at, left.end(), 16384);
  }
}

// A machine that is busy may be late for some of them; one in a row of five is enough.
TEST_F(RealSoundChainTest, AnOrderIsTakenUpAndAnEndToldAtOnceAndNotAtTheNextTurn) {
  constexpr int kStarts = 11;
  constexpr int kAtOnceMs = 15;
  RealSoundChain& chain = Make();
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 100; }));
  int orderMs = 0, endMs = 0;
  for (int row = 0; row < 5; ++row) {
    std::vector<int> orders, ends;
    for (int i = 0; i < kStarts; ++i) {
      chain.SetFileName(1, "short");
      const int from = chain.Position(0);
      chain.SetChannelDone(1, false);
      ASSERT_TRUE(Within([&] { return chain.Position(1) > 0; }));
      orders.push_back(chain.Position(0) - chain.Position(1) - from);
      ASSERT_TRUE(Within([&] { return chain.ChannelDone(1); }));
      ends.push_back(chain.Position(0) - 100 - orders.back() - from);
    }
    std::sort(orders.begin(), orders.end());
    std::sort(ends.begin(), ends.end());
    orderMs = orders[kStarts / 2];
    endMs = ends[kStarts / 2];
    if (orderMs <= kAtOnceMs && endMs <= kAtOnceMs) return;
  }
  ADD_FAILURE() << "an order " << orderMs << " ms, an end " << endMs << " ms late";
}

TEST_F(RealSoundChainTest, IntoAFileGoesEveryFrameOnceAndInOrder) {
  const std::string path = folder_.Path("out.wav");
  RealSoundChain& chain = Make(nullptr, std::make_unique<FileSink>(path));
  Sound(0, "counted");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 1000; }));
  EXPECT_EQ(chain.TakeHealth().underruns, 0u);
  chain_.reset();
  const std::vector<int16_t> left = Left(path);
  const auto begin = std::find(left.begin(), left.end(), 1);
  ASSERT_GE(left.end() - begin, 30001);
  for (int i = 0; i < 30000; ++i) ASSERT_EQ(begin[i], 1 + i) << i;
  EXPECT_TRUE(std::all_of(left.begin(), begin, [](int16_t x) { return x == 0; }));
  EXPECT_TRUE(std::all_of(begin + 30000, left.end(), [](int16_t x) { return x == 0; }));
}

TEST_F(RealSoundChainTest, AFadeIsHeardFallingAndEndsTheSlot) {
  const std::string path = folder_.Path("out.flac");
  RealSoundChain& chain = Make(nullptr, std::make_unique<FileSink>(path));
  Sound(1, "level");
  ASSERT_TRUE(Within([&] { return chain.Position(1) > 300; }));
  chain.FadeOut(1, 400);
  chain.FadeOut(1, 900);
  ASSERT_TRUE(Within([&] { return chain.ChannelDone(1); }));
  const int end = chain.Position(1);
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > end + 100; }));
  EXPECT_EQ(log_.Take(), (Lines{"output open", "output start", "fade 1 400", "end 1 fade"}));
  chain_.reset();
  std::vector<int16_t> left = Left(path);
  const auto top = std::find(left.rbegin(), left.rend(), 16384);
  const auto from = static_cast<int>(left.rend() - top);
  int silent = from;
  while (left[silent] != 0) ++silent;
  EXPECT_NEAR(silent - from, 17640, 2);  // 400 ms, the last step rounds to silence
  for (int i = from; i < silent; ++i) ASSERT_LE(left[i] - left[i - 1], 0);
  for (int i = from; i < silent; ++i) ASSERT_LE(left[i - 1] - left[i], 2);
}

TEST_F(RealSoundChainTest, StoppingTheOutputEndsWhatSoundsAndARestartIsHeardAtOnce) {
  const std::string path = folder_.Path("out.wav");
  RealSoundChain& chain = Make(nullptr, std::make_unique<FileSink>(path));
  Sound(0, "high");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 600; }));
  log_.Take();
  chain.Stop();
  chain.Close();
  chain.Open();
  for (int slot = 0; slot < kSlots; ++slot) chain.SetFileName(slot, "", SlotEnd::kRestart);
  chain.SetFileName(0, "counted");
  chain.SetChannelDone(0, false);
  chain.Start();
  EXPECT_EQ(log_.Take(),
            (Lines{"end 0 stopped", "output stop", "output close", "output open", "output start"}));
  EXPECT_LT(chain.OutputPosition(), 500);
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 800; }));
  chain_.reset();
  const std::vector<int16_t> left = Left(path);
  // The first one glided out over 10 ms, the second one begins with its first frame.
  auto first = std::find(left.rbegin(), left.rend(), 31000).base();
  const auto second = std::find(first, left.end(), 1);
  EXPECT_LE(second - first, 441 + MixerCore::kLatencyFrames);
  EXPECT_GE(left.end() - second, 30000);
  for (int i = 0; i < 30000; ++i) ASSERT_EQ(second[i], 1 + i);
}

TEST_F(RealSoundChainTest, VolumeAndPeaksAreThoseOfTheSound) {
  RealSoundChain& chain = Make();
  chain.SetVolume(0, 8192);
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 50; }));
  const SoundHealth health = chain.TakeHealth();
  EXPECT_EQ(health.peakLeft, 0.25f);
  EXPECT_EQ(health.peakRight, 0.25f);
  chain.SetVolume(0, 0);
  ASSERT_TRUE(Within([&] { return chain.TakeHealth().peakLeft == 0.0f; }));
}

// 16384 at a quarter, ahead of half the volume; the next file at 1 again, a seek keeps what it has.
TEST_F(RealSoundChainTest, AGainIsHeardFromTheFirstFrameOnAndGoesWithItsFile) {
  const std::string path = folder_.Path("out.wav");
  RealSoundChain& chain = Make(nullptr, std::make_unique<FileSink>(path));
  chain.SetVolume(0, 8192);
  chain.SetFileName(0, "level");
  chain.SetGain(0, 0.25);
  chain.SetChannelDone(0, false);
  chain.Start();
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 200; }));
  chain.SetPosition(0, 20000);
  ASSERT_TRUE(Within([&] { return chain.Position(0) > 20900; }));
  chain.SetFileName(0, "counted");
  chain.SetChannelDone(0, false);
  ASSERT_TRUE(Within([&] { return chain.ChannelDone(0); }));
  const int end = chain.OutputPosition();
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > end + kRingMs + 100; }));
  chain_.reset();
  const std::vector<int16_t> left = Left(path);
  const auto first = std::find_if(left.begin(), left.end(), [](int16_t x) { return x != 0; });
  ASSERT_NE(first, left.end());
  EXPECT_EQ(*first, 2048);
  EXPECT_EQ(std::count_if(first, left.end(), [](int16_t x) { return x > 15000; }), 0);
  const auto counted = std::find(first, left.end(), 14999);
  ASSERT_NE(counted, left.end()) << "frame 29997 of the second file, 29998 at half";
  EXPECT_EQ(std::count_if(first, counted - 29000, [](int16_t x) { return x > 2048; }), 0);
}

TEST_F(RealSoundChainTest, ASilencedChannelGoesOnWhereItWas) {
  RealSoundChain& chain = Make();
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.Position(0) > 400; }));
  chain.SetChannelDone(0, true);
  const int position = chain.Position(0);
  chain.SetChannelDone(0, false);
  EXPECT_TRUE(chain.Sounds(0));
  EXPECT_GE(chain.Position(0), position);
  ASSERT_TRUE(Within([&] { return chain.Position(0) > position + 200; }));
}

TEST_F(RealSoundChainTest, AFileThatIsGoneWhenItIsToGoOnStaysDone) {
  RealSoundChain& chain = Make();
  Sound(0, "level");
  chain.SetChannelDone(0, true);
  opener_.Remove("level");
  chain.SetChannelDone(0, false);
  EXPECT_TRUE(chain.ChannelDone(0));
  EXPECT_TRUE(Told("level: no such file"));
}

TEST_F(RealSoundChainTest, ASourceThatDriesUpEndsItsSlot) {
  opener_.Add("damaged", Constant(0.5f), 60 * kSampleRate, 20000);
  RealSoundChain& chain = Make();
  Sound(0, "damaged");
  ASSERT_TRUE(Within([&] { return chain.ChannelDone(0); }));
  EXPECT_EQ(chain.TakeHealth().lateFrames, 0u);
}

TEST_F(RealSoundChainTest, ADevicePlaysEveryFrameOnceAndInOrder) {
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "counted");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 1000; }));
  EXPECT_TRUE(chain.TakeHealth().heard);
  EXPECT_EQ(chain.TakeHealth().output, "sound device: test device");
  chain_.reset();
  const std::vector<int16_t> left = LeftOf(device_.Played());
  const auto begin = std::find(left.begin(), left.end(), 1);
  ASSERT_GE(left.end() - begin, 30000);
  for (int i = 0; i < 30000; ++i) ASSERT_EQ(begin[i], 1 + i) << i;
  EXPECT_EQ(told_, Lines{});
}

TEST_F(RealSoundChainTest, ADeviceOfAnotherRateHearsTheSamePitch) {
  device_.rate = 48000;
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "tone");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 1000; }));
  chain_.reset();
  const std::vector<int16_t> left = LeftOf(device_.Played());
  const auto begin =
      std::find_if(left.begin(), left.end(), [](int16_t x) { return std::abs(x) > 8000; });
  ASSERT_GE(left.end() - begin, 40000);
  int turns = 0;
  for (int i = 1; i < 24001; ++i) turns += begin[i - 1] < 0 && begin[i] >= 0;
  EXPECT_NEAR(turns, 500, 1);  // of 1000 Hz in half a second of 48000 frames
}

TEST_F(RealSoundChainTest, ARestartOfTheOutputKeepsTheDeviceOpen) {
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 100; }));
  chain.Stop();
  chain.Close();
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 200; }));
  EXPECT_EQ(device_.openings, 1);
  chain.Close();
  ASSERT_TRUE(Within([&] { return device_.closings == 1; }));
}

TEST_F(RealSoundChainTest, ALostDeviceLetsTheAirGoOnAndIsOpenedAgain) {
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 300; }));
  device_.conduct = PlayedDevice::Conduct::kStandsStill;
  const auto lost = std::chrono::steady_clock::now();
  const int before = chain.OutputPosition();
  ASSERT_TRUE(Within([&] { return !chain.TakeHealth().heard; }));
  ASSERT_TRUE(Within([&] { return Told("sound device lost (it takes no more sound)"); }));
  EXPECT_EQ(chain.TakeHealth().losses, 1u);
  device_.conduct = PlayedDevice::Conduct::kPlays;
  // The second that it took to notice is made good: the air is as far as if nothing had happened.
  ASSERT_TRUE(Within([&] {
    const std::chrono::duration<double, std::milli> passed =
        std::chrono::steady_clock::now() - lost;
    return std::abs(chain.OutputPosition() - before - passed.count()) < 100;
  }));
  ASSERT_TRUE(Within([&] { return chain.TakeHealth().heard; }));
  EXPECT_EQ(device_.openings, 2);
  const int position = chain.OutputPosition();
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > position + 300; }));
  EXPECT_EQ(told_.size(), 2u);
  EXPECT_EQ(told_.back(), "sound device: test device");
}

TEST_F(RealSoundChainTest, ADeviceThatBeginsLateIsNotLostAndTheAirDoesNotWaitForIt) {
  device_.conduct = PlayedDevice::Conduct::kStandsStill;
  RealSoundChain& chain = Make(device_.Make());
  const auto order = std::chrono::steady_clock::now();
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return Told("sound device test device has not begun yet"); }));
  EXPECT_FALSE(chain.TakeHealth().heard);
  EXPECT_EQ(chain.TakeHealth().peakLeft, 0.0f);
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 1000; }));
  ASSERT_LT(std::chrono::steady_clock::now() - order, std::chrono::seconds(5));
  device_.conduct = PlayedDevice::Conduct::kPlays;
  ASSERT_TRUE(Within([&] { return chain.TakeHealth().heard; }));
  ASSERT_TRUE(Within([&] { return told_.size() == 2; }));
  EXPECT_EQ(told_.back(), "sound device: test device");
  EXPECT_EQ(device_.openings, 1);
}

TEST_F(RealSoundChainTest, WhereADeviceDoesNotBeginTheNextSoundSystemIsTried) {
  PlayedDevice next;
  device_.conduct = PlayedDevice::Conduct::kStandsStill;
  WishedDevice wished;
  wished.systems.push_back(device_.Make());
  wished.systems.push_back(next.Make());
  chain_ =
      std::make_unique<RealSoundChain>(opener_, std::move(wished), nullptr, "test",
                                       [this](const std::string& line) { told_.push_back(line); });
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return next.openings == 1; }));
  EXPECT_EQ(device_.openings, 1);
  EXPECT_EQ(device_.closings, 1);
  ASSERT_TRUE(Within([&] { return chain_->TakeHealth().heard; }));
  chain_.reset();
}

TEST_F(RealSoundChainTest, ADeviceThatTakesOverInTheMiddleRisesFromSilence) {
  device_.absent = true;
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "high");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 200; }));
  device_.absent = false;
  ASSERT_TRUE(Within([&] { return chain.TakeHealth().heard; }));
  const int position = chain.OutputPosition();
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > position + 300; }));
  chain_.reset();
  const std::vector<int16_t> left = LeftOf(device_.Played());
  const auto top = std::find(left.begin(), left.end(), 31000);
  ASSERT_NE(top, left.end());
  // 10 ms from 0 to 31000 are 70 or 71 a frame.
  for (auto at = left.begin() + 1; at <= top; ++at) ASSERT_LE(*at - at[-1], 71);
}

TEST_F(RealSoundChainTest, ADeviceThatIsLostAgainAndAgainIsNotAFloodOfLines) {
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "level");
  for (int times = 1; times <= 5; ++times) {
    ASSERT_TRUE(Within([&] { return chain.TakeHealth().heard; }));
    device_.conduct = PlayedDevice::Conduct::kRacesAway;
    ASSERT_TRUE(Within([&] { return !chain.TakeHealth().heard; }));
    device_.conduct = PlayedDevice::Conduct::kPlays;
  }
  ASSERT_TRUE(Within([&] { return told_.size() == 4 && chain.TakeHealth().heard; }));
  EXPECT_EQ(told_.back(), "sound device: test device");
}

TEST_F(RealSoundChainTest, ADeviceThatRacesAwayCannotRunAwayWithTheAir) {
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 100; }));
  const auto began = std::chrono::steady_clock::now();
  const int before = chain.Position(0);
  device_.conduct = PlayedDevice::Conduct::kRacesAway;
  ASSERT_TRUE(Within([&] { return !chain.TakeHealth().heard; }));
  const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - began;
  // A device may take three seconds ahead of a clock that is a hundredth fast, as it is seen at the
  // turns; between two of them it gets what the ring holds and what one turn renders, and the last
  // turn has rendered once more.
  EXPECT_LT(chain.Position(0) - before, 1.01 * passed.count() + 3000 + 3 * kRingMs);
  ASSERT_TRUE(Within([&] { return Told("it no longer keeps time"); }));
  device_.conduct = PlayedDevice::Conduct::kPlays;
}

TEST_F(RealSoundChainTest, WithoutItsDeviceTheAirBeginsByTheClockAndIsHeardOnceTheDeviceIsThere) {
  device_.absent = true;
  RealSoundChain& chain = Make(device_.Make());
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > 200; }));
  EXPECT_FALSE(chain.TakeHealth().heard);
  ASSERT_TRUE(Within([&] { return Told("test device: absent"); }));
  device_.absent = false;
  ASSERT_TRUE(Within([&] { return chain.TakeHealth().heard; }));
  ASSERT_TRUE(Within([&] { return told_.size() == 2; }));
}

TEST_F(RealSoundChainTest, AnyOrdersAtAnyPaceLeaveItSound) {
  RealSoundChain& chain = Make(device_.Make());
  std::mt19937 random(11);
  const auto below = [&random](int limit) { return static_cast<int>(random() % limit); };
  const std::vector<std::string> files{"counted", "level", "short", "tone", ""};
  for (int step = 0; step < 3000; ++step) {
    const int slot = below(kSlots);
    switch (below(12)) {
      case 0:
      case 1:
        chain.SetFileName(slot, files[below(static_cast<int>(files.size()))]);
        EXPECT_TRUE(chain.ChannelDone(slot) || chain.FileName(slot).empty());
        break;
      case 2:
      case 3:
      case 4:
        chain.SetChannelDone(slot, below(3) == 0);
        break;
      case 5:
        chain.SetPosition(slot, below(1000));
        break;
      case 6:
        chain.SetVolume(slot, below(32769));
        EXPECT_LE(chain.Volume(slot), 32768);
        break;
      case 7:
        chain.FadeOut(slot, below(300) - 20);
        break;
      case 8:
        if (below(10) == 0) chain.Close();
        break;
      case 9:
        chain.Start();
        break;
      case 10:
        if (below(10) == 0) chain.SetOutputBuffers(1024 << below(5), 1 + below(8));
        break;
      default:
        chain.Poll();
        break;
    }
    EXPECT_LE(chain.Position(slot), chain.Length(slot));
  }
  chain.SetPaused(false);
  Sound(0, "short");
  EXPECT_TRUE(Within([&] { return chain.ChannelDone(0); }));
}

TEST_F(RealSoundChainTest, WithoutHardwareTheAirGoesOnWithoutOutputAndSaysSo) {
  if (AnySoundDevice()) GTEST_SKIP() << "this machine has a sound device";
  chain_ = MakeRealSoundChain(opener_, {OutputSpec::Kind::kDevice, ""},
                              [this](const std::string& line) { told_.push_back(line); });
  EXPECT_TRUE(Told("no sound device on this machine"));
  Sound(0, "short");
  EXPECT_TRUE(Within([&] { return chain_->ChannelDone(0); }));
}

TEST_F(RealSoundChainTest, AFileThatCannotBeMadeIsAnError) {
  EXPECT_THROW(
      MakeRealSoundChain(opener_, {OutputSpec::Kind::kFile, folder_.Path("no/out.wav")}, {}),
      SoundError);
}

TEST_F(RealSoundChainTest, ADiskThatFillsUpIsToldAndTheAirGoesOn) {
  RealSoundChain& chain = Make(nullptr, std::make_unique<FileSink>(folder_.Path("full.wav")));
  const testing::FileSizeLimit limit(50000);
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return Told("the air goes on unrecorded"); }));
  const int position = chain.Position(0);
  EXPECT_TRUE(Within([&] { return chain.Position(0) > position + 200; }));
  EXPECT_FALSE(chain.TakeHealth().heard);
  chain.End();
  EXPECT_EQ(told_.size(), 1u);
}

TEST_F(RealSoundChainTest, AHeldFileHoldsNothingElseAndItsLossIsTold) {
  HeldSink sink;
  RealSoundChain& chain = Make(nullptr, sink.Make());
  sink.Hold();
  Sound(0, "level");
  ASSERT_TRUE(Within([&] { return Told("held sink: takes the air too slowly, "); }));
  const int position = chain.OutputPosition();
  ASSERT_TRUE(Within([&] { return chain.OutputPosition() > position + 500; }));
  EXPECT_TRUE(chain.TakeHealth().heard);
  EXPECT_EQ(chain.TakeHealth().underruns, 1u);
  EXPECT_TRUE(Within([&] { return chain.TakeHealth().lostFrames >= 22050u; }));
  EXPECT_EQ(told_.size(), 1u);
  sink.Release();
  chain.End();
  EXPECT_EQ(told_.size(), 2u);  // how much it is in all
  EXPECT_TRUE(sink.Closed());
  const std::vector<int16_t> left = LeftOf(sink.Written());
  const auto lost = std::count(left.begin(), left.end(), HeldSink::kLost);
  EXPECT_EQ(static_cast<uint64_t>(lost), chain.TakeHealth().lostFrames);
  EXPECT_NEAR(static_cast<double>(FramesToMs(static_cast<int64_t>(left.size()))),
              chain.OutputPosition(), 1.0);
}

}  // namespace
}  // namespace zemo
