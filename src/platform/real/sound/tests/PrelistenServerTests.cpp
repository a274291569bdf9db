// The prelisten on a sound server's second sink: heard there alone, and nothing that it does is
// heard on air.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/real/sound/MachineDevices.h"
#include "platform/real/sound/RealPrelisten.h"
#include "platform/real/sound/RealSoundChain.h"
#include "platform/real/sound/SoundDevices.h"
#include "platform/real/sound/tests/OrderQueue.h"
#include "platform/real/sound/tests/SoundServers.h"
#include "platform/real/sound/tests/SoundTestSupport.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Heard;
using testing::HeardIn;
using testing::Lines;
using testing::ServerKind;
using testing::SinkRecorder;
using testing::SoundServer;
using testing::WaveOpener;
using State = Prelisten::State;

constexpr int kAirPeak = 16384;       // of 32768: half of full scale, at 1000 Hz
constexpr int kPrelistenPeak = 8192;  // a quarter, at 440 Hz
constexpr int kBoundMs = 8000;
constexpr int kSilentMs = 1500;  // that a file is silent ahead of its tone

// Of the tone between two places of a recording.
double HertzOf(const std::vector<int16_t>& left, size_t from, size_t to) {
  const std::vector<int16_t> part(left.begin() + static_cast<long>(from),
                                  left.begin() + static_cast<long>(to));
  const Heard heard = HeardIn(part);
  return heard.turns / (heard.last - heard.first);
}

class PrelistenServers : public ::testing::TestWithParam<ServerKind> {
 protected:
  void SetUp() override {
    const std::string why = server_.Start();
    if (!why.empty()) GTEST_SKIP() << why;
    opener_.Add("air", testing::Sine(1000.0, 0.5), 600 * kSampleRate);
    opener_.Add("tone", testing::Sine(440.0, 0.25), 600 * kSampleRate);
    opener_.Add(
        "late",
        [tone = testing::Sine(440.0, 0.25)](int64_t frame) {
          return frame < MsToFrames(kSilentMs) ? 0.0f : tone(frame);
        },
        600 * kSampleRate);
    SoundServer::LoadSink("one");
    second_ = SoundServer::LoadSink("two");
    ASSERT_TRUE(testing::Within(kBoundMs, [] { return NumberOf("two") >= 0; }));
    ASSERT_TRUE(SoundServer::MakeDefault("one"));
    player_.SetDevice(NumberOf("two"));
    player_.OnEnd([this](bool lost) { ends_.push_back(lost); });
  }
  bool PulseAudio() const { return GetParam() == ServerKind::kPulseAudio; }
  static int NumberOf(const std::string& key) {
    return FindSoundDevice(ListSoundDevices(), {key, true});
  }
  void Air() {
    air_ = MakeRealSoundChain(opener_, {OutputSpec::Kind::kDevice, "one", true},
                              [this](const std::string& line) { told_.push_back(line); });
    air_->SetOutputBuffers(16384, 8);
    air_->SetFileName(0, "air");
    air_->SetChannelDone(0, false);
    air_->Start();
  }
  bool Within(int ms, const std::function<bool()>& condition) {
    return testing::Within(ms, [&] {
      if (air_ != nullptr) air_->Poll();
      player_.Poll();
      loop_.Yield();
      return condition();
    });
  }
  // Goes on until something sounds in what is recorded from now on.
  bool HeardAgain(const SinkRecorder& recorder) {
    const size_t before = recorder.Left().size();
    return Within(kBoundMs, [&] { return recorder.SoundsBehind(before); });
  }
  // Until so many frames are silent at the end of what is recorded.
  bool SilentAgain(const SinkRecorder& recorder) {
    constexpr size_t kFrames = 4410;
    return Within(kBoundMs, [&] {
      const size_t recorded = recorder.Left().size();
      return recorded > kFrames && !recorder.SoundsBehind(recorded - kFrames);
    });
  }
  bool Ended() {
    return Within(kBoundMs, [this] { return !ends_.empty(); });
  }
  std::string Path(const std::string& name) const { return server_.Path(name); }
  // The air was heard from its begin to the end of the recording, whole and alone.
  void ExpectWholeAir(SinkRecorder& recorder) {
    recorder.End();
    const Heard heard = HeardIn(recorder.Left());
    EXPECT_LT(heard.longestGap, 0.020);
    EXPECT_NEAR(heard.turns, 1000 * (heard.last - heard.first), 5);
    EXPECT_NEAR(heard.peak, kAirPeak, kAirPeak / 50);
    EXPECT_EQ(air_->TakeHealth().underruns, 0u);
    EXPECT_EQ(told_, Lines{});
  }

  WaveOpener opener_;
  SoundServer server_{GetParam()};
  testing::OrderQueue loop_;
  Lines told_;
  std::vector<bool> ends_;
  std::string second_;  // the module of the second sink
  std::string key_;     // of the prelisten's device, where it is known
  std::unique_ptr<RealSoundChain> air_;
  RealPrelisten player_{loop_, opener_,
                        [this](int number) { return PrelistenDevice(key_, number); }};
};

INSTANTIATE_TEST_SUITE_P(Of, PrelistenServers,
                         ::testing::Values(ServerKind::kPulseAudio, ServerKind::kPipeWire),
                         [](const auto& kind) {
                           return kind.param == ServerKind::kPulseAudio ? "PulseAudio" : "PipeWire";
                         });

TEST_P(PrelistenServers, ItIsHeardOnItsSinkAloneWhileTheAirGoesOnWithoutADropout) {
  SinkRecorder air("one", Path("air"), true), second("two", Path("second"), true);
  Air();
  ASSERT_TRUE(HeardAgain(air));
  told_.clear();  // a sink of PipeWire's may show some moments after its making
  EXPECT_FALSE(second.SoundsBehind(0));
  player_.Open("tone");
  player_.Start();
  ASSERT_TRUE(HeardAgain(second));
  const size_t begun = second.Left().size();
  ASSERT_TRUE(Within(kBoundMs, [&] { return second.Left().size() > begun + 2 * kSampleRate; }));
  player_.SetPositionMs(300000);
  ASSERT_TRUE(HeardAgain(second));
  player_.Pause();
  ASSERT_TRUE(SilentAgain(second));
  player_.Restart();
  ASSERT_TRUE(HeardAgain(second));
  EXPECT_GE(player_.PositionMs(), 300000);
  player_.Stop();
  ASSERT_TRUE(SilentAgain(second));
  player_.Close();
  ASSERT_TRUE(Within(kBoundMs, [this] { return player_.Rests(); }));

  ExpectWholeAir(air);
  second.End();
  const std::vector<int16_t> left = second.Left();
  EXPECT_NEAR(HertzOf(left, begun, begun + 2 * kSampleRate), 440.0, 1.0);
  EXPECT_NEAR(HeardIn(left).peak, kPrelistenPeak, kPrelistenPeak / 8);
  EXPECT_EQ(ends_.size(), 0u);
}

TEST_P(PrelistenServers, ItsSinkThatIsTakenAwayEndsItAndNothingOnAir) {
  key_ = "two";
  SinkRecorder air("one", Path("air"), true);
  auto second = std::make_unique<SinkRecorder>("two", Path("second"), true);
  Air();
  ASSERT_TRUE(HeardAgain(air));
  told_.clear();
  player_.Open("tone");
  player_.Start();
  ASSERT_TRUE(HeardAgain(*second));
  second.reset();
  ASSERT_TRUE(SoundServer::UnloadSink(second_));
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{true});
  EXPECT_EQ(player_.PlayerState(), State::kOpen);
  // A device that is not there.
  player_.Start();
  ASSERT_TRUE(Within(kBoundMs, [this] { return ends_.size() == 2; }));
  EXPECT_EQ(ends_, (std::vector<bool>{true, true}));
  ASSERT_TRUE(HeardAgain(air));
  ExpectWholeAir(air);
}

TEST_P(PrelistenServers, ThePositionIsThatOfWhatIsRecorded) {
  key_ = "two";
  SinkRecorder second("two", Path("second"), true);
  ASSERT_TRUE(Within(kBoundMs, [&] { return !second.Left().empty(); }));
  player_.Open("late");
  player_.Start();
  ASSERT_TRUE(HeardAgain(second));
  // Ring and server hold 400 ms together: what was mixed by now is that much further on.
  EXPECT_NEAR(player_.PositionMs(), kSilentMs, 150);
  player_.SetPositionMs(0);
  ASSERT_TRUE(SilentAgain(second));
  ASSERT_TRUE(HeardAgain(second));
  EXPECT_NEAR(player_.PositionMs(), kSilentMs, 150);
}

// 3 s at 440 Hz that give way after 2 s, within half a second, to 2 s at 1000 Hz.
TEST_P(PrelistenServers, TwoTitlesAreHeardAsTheyMeet) {
  key_ = "two";
  opener_.Add("leaves", testing::Sine(440.0, 0.25), 3 * kSampleRate);
  opener_.Add("comes", testing::Sine(1000.0, 0.25), 2 * kSampleRate);
  SinkRecorder second("two", Path("second"), true);
  player_.Open("leaves");
  player_.Follow({.path = "comes", .atMs = 2000, .fadeMs = 500});
  player_.Start();
  ASSERT_TRUE(HeardAgain(second));
  EXPECT_EQ(player_.FileName(), "leaves");
  ASSERT_TRUE(Within(kBoundMs, [this] { return player_.FileName() == "comes"; }));
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, std::vector<bool>{false});
  ASSERT_TRUE(SilentAgain(second));
  second.End();
  const std::vector<int16_t> left = second.Left();
  const Heard heard = HeardIn(left);
  EXPECT_NEAR(heard.last - heard.first, 4.0, 0.15);
  EXPECT_LT(heard.longestGap, 0.020);
  EXPECT_GT(heard.peak, kPrelistenPeak + kPrelistenPeak / 4) << "both sound at once";
  const auto at = [&](double seconds) {
    return static_cast<size_t>((heard.first + seconds) * kSampleRate);
  };
  EXPECT_NEAR(HertzOf(left, at(0.1), at(1.8)), 440.0, 2.0);
  EXPECT_NEAR(HertzOf(left, at(2.7), at(3.8)), 1000.0, 2.0);
}

TEST_P(PrelistenServers, TheSettingsChooseItsDeviceWhichIsTakenWhileItIsClosed) {
  MachineDevices devices(nullptr, &player_);
  devices.OutputNames();
  const int one = NumberOf("one");
  EXPECT_TRUE(devices.PrelistenClosed());
  devices.SelectPrelisten(one);
  EXPECT_EQ(player_.Device(), one);
  EXPECT_THROW(devices.SelectPrelisten(99), DeviceError);
  player_.Open("tone");
  EXPECT_FALSE(devices.PrelistenClosed());
  devices.SelectPrelisten(-1);
  EXPECT_EQ(player_.Device(), one);
}

TEST_P(PrelistenServers, ThreeStartsInARowAreHeardEach) {
  key_ = "two";
  SinkRecorder second("two", Path("second"), true);
  player_.Open("tone");
  for (int i = 0; i < 3; ++i) {
    player_.Start();
    ASSERT_TRUE(HeardAgain(second)) << i;
    player_.Stop();
    ASSERT_TRUE(SilentAgain(second)) << i;
  }
}

}  // namespace
}  // namespace zemo
