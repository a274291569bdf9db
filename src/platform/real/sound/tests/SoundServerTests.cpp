// The air through real sound servers: what their monitors record is the programme, whole, and it is
// heard again after whatever a server does to its devices.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/real/sound/RealPrelisten.h"
#include "platform/real/sound/RealSoundChain.h"
#include "platform/real/sound/RtAudioDevice.h"
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

constexpr int kTonePeak = 16384;  // of 32768: half of full scale
constexpr int kLostMs = 2000;     // what a device that is there again may be unheard

class SoundServers : public ::testing::TestWithParam<ServerKind> {
 protected:
  void SetUp() override {
    const std::string why = server_.Start();
    if (!why.empty()) GTEST_SKIP() << why;
    opener_.Add("tone", testing::Sine(1000.0, 0.5), 600 * kSampleRate);
    opener_.Add("minute", testing::Sine(1000.0, 0.5), 60 * kSampleRate);
  }
  // PipeWire converts the rate, and a cut rings in that.
  int Loudest() const { return kTonePeak + kTonePeak / (PulseAudio() ? 50 : 8); }
  bool PulseAudio() const { return GetParam() == ServerKind::kPulseAudio; }

  void Air(const std::string& file, const std::string& device = "") {
    chain_ = MakeRealSoundChain(opener_, {OutputSpec::Kind::kDevice, device, false},
                                [this](const std::string& line) { told_.push_back(line); });
    chain_->SetOutputBuffers(16384, 8);
    chain_->SetFileName(0, file);
    chain_->SetChannelDone(0, false);
    chain_->Start();
  }
  bool Within(int ms, const std::function<bool()>& condition) {
    return testing::Within(ms, [&] {
      chain_->Poll();
      return condition();
    });
  }
  bool IsHeard() { return chain_->TakeHealth().heard; }
  // PipeWire may show its sinks some moments after their making; what is told of that is forgotten.
  bool IsHeardFirst() {
    const bool heard = Within(5000, [this] { return IsHeard(); });
    if (!PulseAudio()) told_.clear();
    return heard;
  }
  // Goes on until something sounds in what is recorded from now on.
  bool HeardAgain(const SinkRecorder& recorder, int ms) {
    const size_t before = recorder.Left().size();
    return Within(ms, [&] { return recorder.SoundsBehind(before); });
  }
  // A new null sink of PulseAudio plays its first two seconds, of silence, before anything else.
  bool SinkIsThere(const SinkRecorder& recorder) {
    return Within(5000, [&] { return !recorder.Left().empty(); });
  }
  bool ToldWithin(size_t lines) {
    return Within(8000, [&] { return told_.size() >= lines; });
  }
  std::string Path(const std::string& name) const { return server_.Path(name); }

  WaveOpener opener_;
  SoundServer server_{GetParam()};
  Lines told_;
  std::unique_ptr<RealSoundChain> chain_;
};

INSTANTIATE_TEST_SUITE_P(Of, SoundServers,
                         ::testing::Values(ServerKind::kPulseAudio, ServerKind::kPipeWire),
                         [](const auto& kind) {
                           return kind.param == ServerKind::kPulseAudio ? "PulseAudio" : "PipeWire";
                         });

// It asked for its frames too late: what is not heard is told as what the ring lacked.
TEST_P(SoundServers, WhatAServerLeavesOutIsCounted) {
  constexpr int kHaltMs = 500;  // more than it keeps ahead, less than the ring holds
  SoundServer::LoadSink("one");
  SinkRecorder recorder("one", Path("recorded"), true);
  Air("tone");
  ASSERT_TRUE(HeardAgain(recorder, 8000));
  EXPECT_EQ(chain_->TakeHealth().underruns, 0U);
  server_.Halt();
  Within(kHaltMs, [] { return false; });
  server_.GoOn();
  EXPECT_TRUE(Within(5000, [&] { return chain_->TakeHealth().underruns > 0; }));
  EXPECT_TRUE(HeardAgain(recorder, 5000));
  chain_->Stop();
  const uint64_t counted = chain_->TakeHealth().underruns;
  ASSERT_TRUE(Within(5000, [&] { return chain_->ChannelDone(0); }));
  EXPECT_EQ(chain_->TakeHealth().underruns, counted);
}

// The recorder is patient: where nobody asks for less, the server then works two seconds ahead.
TEST_P(SoundServers, AToneIsHeardWholeAtItsLevelAndItsSpeed) {
  const int seconds = PulseAudio() ? 30 : 10;
  opener_.Add("whole", testing::Sine(1000.0, 0.5), seconds * kSampleRate);
  SoundServer::LoadSink("one");
  SinkRecorder recorder("one", Path("recorded"), false);
  ASSERT_TRUE(testing::Within(10000, [&] { return !recorder.Left().empty(); }));
  const auto order = std::chrono::steady_clock::now();
  Air("whole");
  ASSERT_TRUE(Within(5000, [&] { return IsHeard(); }));
  EXPECT_LT(std::chrono::steady_clock::now() - order, std::chrono::milliseconds(2500));
  ASSERT_TRUE(Within(seconds * 1000 + 5000, [&] { return chain_->ChannelDone(0); }));
  // It is read to its end, and still in the ring and the server.
  ASSERT_TRUE(Within(15000, [&] {
    return HeardIn(recorder.Left()).last + 1.0 < recorder.Left().size() / 44100.0;
  }));
  recorder.End();
  const Heard heard = HeardIn(recorder.Left());
  EXPECT_LT(heard.longestGap, 0.020);
  EXPECT_NEAR(heard.last - heard.first, seconds, 0.02);
  EXPECT_NEAR(heard.turns, seconds * 1000, 5);
  EXPECT_NEAR(heard.peak, kTonePeak, kTonePeak / 50);
  EXPECT_EQ(told_, Lines{});
}

TEST_P(SoundServers, ASinkThatSleepsIsHeardAgainWhenItWakes) {
  SoundServer::LoadSink("one");
  SinkRecorder recorder("one", Path("recorded"), true);
  Air("tone");
  ASSERT_TRUE(HeardAgain(recorder, 5000));
  ASSERT_TRUE(SoundServer::Order("suspend-sink one 1"));
  if (PulseAudio()) {
    ASSERT_TRUE(ToldWithin(1));
    EXPECT_FALSE(IsHeard());
  }
  const int position = chain_->OutputPosition();
  ASSERT_TRUE(Within(5000, [&] { return chain_->OutputPosition() > position + 1500; }));
  ASSERT_TRUE(SoundServer::Order("suspend-sink one 0"));
  SinkRecorder again("one", Path("again"), true);  // PipeWire's recorders do not outlive the sleep
  EXPECT_TRUE(HeardAgain(again, kLostMs));
  if (PulseAudio()) {
    EXPECT_TRUE(ToldWithin(2));
    EXPECT_EQ(told_, (Lines{"sound device Sink_one (PulseAudio) sleeps: the air goes on unheard "
                            "until it is back",
                            "sound device: Sink_one (PulseAudio)"}));
  }
  recorder.End();
  EXPECT_LE(HeardIn(recorder.Left()).peak, Loudest());
  EXPECT_LE(HeardIn(recorder.Left()).jump, 2 * kTonePeak);
}

TEST_P(SoundServers, ADefaultThatChangesTakesTheAirWithIt) {
  SoundServer::LoadSink("one");
  SoundServer::LoadSink("two");
  ASSERT_TRUE(SoundServer::MakeDefault("one"));
  SinkRecorder first("one", Path("first"), true), second("two", Path("second"), true);
  Air("tone");
  ASSERT_TRUE(HeardAgain(first, 5000));
  ASSERT_TRUE(SoundServer::MakeDefault("two"));
  EXPECT_TRUE(HeardAgain(second, kLostMs));
  EXPECT_TRUE(ToldWithin(1));
  EXPECT_EQ(told_, Lines{"sound device: Sink_two (PulseAudio)"});
  second.End();
  EXPECT_LE(HeardIn(second.Left()).peak, Loudest());
}

TEST_P(SoundServers, ASinkThatIsTakenAwayAndPutBackIsHeardAgain) {
  const std::string module = SoundServer::LoadSink("one");
  Air("tone", "Sink_one");
  ASSERT_TRUE(IsHeardFirst());
  ASSERT_TRUE(SoundServer::UnloadSink(module));
  ASSERT_TRUE(ToldWithin(1));
  EXPECT_FALSE(IsHeard());
  const int position = chain_->OutputPosition();
  ASSERT_TRUE(Within(5000, [&] { return chain_->OutputPosition() > position + 1500; }));
  SoundServer::LoadSink("one");
  SinkRecorder recorder("one", Path("recorded"), true);
  ASSERT_TRUE(SinkIsThere(recorder));
  EXPECT_TRUE(HeardAgain(recorder, kLostMs));
  EXPECT_TRUE(ToldWithin(2));
  EXPECT_EQ(told_,
            (Lines{"sound device lost (it is gone): the air goes on unheard until it is back",
                   "sound device: Sink_one (PulseAudio)"}));
}

TEST_P(SoundServers, ADefaultThatIsTakenAwayAndPutBackIsHeardAgain) {
  const std::string module = SoundServer::LoadSink("one");
  Air("tone");
  ASSERT_TRUE(IsHeardFirst());
  ASSERT_TRUE(SoundServer::UnloadSink(module));
  ASSERT_TRUE(ToldWithin(1));
  SoundServer::LoadSink("one");
  SinkRecorder recorder("one", Path("recorded"), true);
  ASSERT_TRUE(SinkIsThere(recorder));
  EXPECT_TRUE(HeardAgain(recorder, kLostMs));
  EXPECT_TRUE(ToldWithin(2));
  EXPECT_EQ(told_.size(), 2u);
  EXPECT_EQ(told_.back(), "sound device: Sink_one (PulseAudio)");
}

// ALSA's default is the server itself where its plug-in is installed: by that way nothing is told
// of a sink's comings and goings, and a sink that came back a moment too late kept it for good.
TEST_P(SoundServers, TheirDefaultIsNotPlayedByWayOfAnotherSystem) {
  SoundServer::LoadSink("one");
  ASSERT_TRUE(testing::Within(5000, [] {
    return FindSoundDevice(ListSoundDevices(), {"one", true}) >= 0;
  }));
  OutputRing ring;
  const auto alsa = MakeRtAudioDevice(RtAudioSystem::kAlsa, {});
  try {
    EXPECT_NE(alsa->Open(ring).name, "default (ALSA)") << "a card of this machine may do";
  } catch (const NoSuchDevice& error) {
    EXPECT_STREQ(error.what(), "ALSA: no such sound device");
  }
}

TEST_P(SoundServers, AServerThatIsKilledAndStartedAgainIsHeardAgain) {
  SoundServer::LoadSink("one");
  Air("tone");
  ASSERT_TRUE(IsHeardFirst());
  server_.Kill();
  ASSERT_TRUE(ToldWithin(1));
  EXPECT_FALSE(IsHeard());
  const int position = chain_->OutputPosition();
  ASSERT_TRUE(Within(8000, [&] { return chain_->OutputPosition() > position + 1500; }));
  ASSERT_EQ(server_.Start(), "");
  SoundServer::LoadSink("one");
  SinkRecorder recorder("one", Path("recorded"), true);
  ASSERT_TRUE(SinkIsThere(recorder));
  EXPECT_TRUE(HeardAgain(recorder, kLostMs));
  EXPECT_TRUE(ToldWithin(2));
  EXPECT_EQ(told_.size(), 2u);
  EXPECT_EQ(told_.front(),
            "sound device lost (it is gone): the air goes on unheard until it is back");
  recorder.End();
  EXPECT_LE(HeardIn(recorder.Left()).peak, Loudest());
}

TEST_P(SoundServers, ADeviceByNameStaysWhereItIsWhenAnotherBecomesTheDefault) {
  SoundServer::LoadSink("one");
  SoundServer::LoadSink("two");
  ASSERT_TRUE(SoundServer::MakeDefault("one"));
  SinkRecorder first("one", Path("first"), true), second("two", Path("second"), true);
  Air("tone", "sink_TWO");
  ASSERT_TRUE(HeardAgain(second, 5000));
  SoundServer::LoadSink("three");
  ASSERT_TRUE(SoundServer::MakeDefault("three"));
  EXPECT_TRUE(HeardAgain(second, kLostMs));
  EXPECT_FALSE(first.SoundsBehind(0));
  EXPECT_EQ(told_, Lines{});
}

TEST_P(SoundServers, TheirDevicesAreListedWithTheDefault) {
  SoundServer::LoadSink("one");
  SoundServer::LoadSink("two");
  ASSERT_TRUE(SoundServer::MakeDefault("two"));
  ASSERT_TRUE(
      testing::Within(5000, [] { return SoundServer::Answer("get-default-sink") == "two"; }));
  const std::vector<SoundDevice> devices = ListSoundDevices();
  const int one = FindSoundDevice(devices, {"one", true});
  const int two = FindSoundDevice(devices, {"sink_two", true});
  ASSERT_GE(one, 0);
  ASSERT_GE(two, 0);
  EXPECT_EQ(devices[one].name, "Sink_one");
  EXPECT_EQ(devices[one].system, "PulseAudio");
  EXPECT_EQ(devices[one].channels, 2);
  EXPECT_FALSE(devices[one].isDefault);
  EXPECT_TRUE(devices[two].isDefault);
  if (PulseAudio()) {
    EXPECT_EQ(devices[one].rates, std::vector<int>{44100});
  }
  EXPECT_EQ(FindSoundDevice(devices, {"sink_t", true}), -1);
  EXPECT_EQ(FindSoundDevice(devices, {"sink_t", false}), two);
}

// A server that takes the connection and says nothing: its clients would wait for half a minute.
class FrozenSoundServer : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string path = folder_.Path("native");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    ASSERT_EQ(::bind(server_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(server_, 16), 0);
    if (const char* before = std::getenv("PULSE_SERVER")) former_ = before;
    ::setenv("PULSE_SERVER", ("unix:" + path).c_str(), 1);
  }
  void TearDown() override {
    former_ ? ::setenv("PULSE_SERVER", former_->c_str(), 1) : ::unsetenv("PULSE_SERVER");
    ::close(server_);
  }
  static double SecondsOf(const std::function<void()>& work) {
    const auto began = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
  }

 private:
  const testing::TestFolder folder_;
  const int server_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::optional<std::string> former_;
};

TEST_F(FrozenSoundServer, HoldsNobodyWhoAsksForDevicesLongerThanSomeSeconds) {
  EXPECT_LT(SecondsOf([] { AnySoundDevice(); }), 8);
  EXPECT_LT(SecondsOf([] { ListSoundDevices(); }), 8);
}

TEST_F(FrozenSoundServer, HoldsTheEndOfTheAirNoLongerThanSomeSeconds) {
  WaveOpener opener;
  opener.Add("tone", testing::Sine(1000.0, 0.5), 600 * kSampleRate);
  Lines told;
  auto chain = MakeRealSoundChain(opener, {OutputSpec::Kind::kDevice, "", false},
                                  [&told](const std::string& line) { told.push_back(line); });
  chain->SetFileName(0, "tone");
  chain->SetChannelDone(0, false);
  chain->Start();
  EXPECT_TRUE(testing::Within(8000, [&] {
    chain->Poll();
    return !told.empty() && chain->OutputPosition() > 3000;
  })) << "the air runs by the clock meanwhile";
  EXPECT_LT(SecondsOf([&] { chain.reset(); }), 8);
}

TEST_F(FrozenSoundServer, HoldsNobodyWhoPrelistens) {
  WaveOpener opener;
  opener.Add("tone", testing::Sine(1000.0, 0.5), 600 * kSampleRate);
  for (const std::string key : {"one", ""}) {
    testing::OrderQueue loop;
    std::vector<bool> ends;
    auto player = std::make_unique<RealPrelisten>(
        loop, opener, [&key](int number) { return PrelistenDevice(key, number); },
        std::chrono::seconds(3));
    player->OnEnd([&ends](bool lost) { ends.push_back(lost); });
    player->SetDevice(0);
    player->Open("tone");
    EXPECT_LT(SecondsOf([&] { player->Start(); }), 1);
    EXPECT_TRUE(testing::Within(15000, [&] {
      player->Poll();
      loop.Yield();
      return !ends.empty();
    }));
    EXPECT_EQ(ends, std::vector<bool>{true});
    EXPECT_LT(SecondsOf([&] { player.reset(); }), 4);
  }
}

}  // namespace
}  // namespace zemo
