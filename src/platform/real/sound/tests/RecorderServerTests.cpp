// The recorder on real sound servers: the monitor of a sink that plays into nothing is the
// microphone, and what is played into that sink is what is said.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/real/files/LocalFolder.h"
#include "platform/real/sound/RealRecorder.h"
#include "platform/real/sound/SoundDevices.h"
#include "platform/real/sound/tests/OrderQueue.h"
#include "platform/real/sound/tests/SoundServers.h"
#include "platform/real/sound/tests/SpokenInput.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::Heard;
using testing::HeardIn;
using testing::Lines;
using testing::ReadRecordedWav;
using testing::RecordedWav;
using testing::ServerKind;
using testing::ServerProcess;
using testing::SoundServer;

constexpr int kRecorderBoundMs = 8000;
constexpr int kSpokenPeak = 16384;  // of 32768: half of full scale, at 1000 Hz
constexpr int kSpokenSeconds = 20;

// So long is the long recording; other lengths are for a run by hand.
int SecondsToRecord() {
  const char* seconds = std::getenv("ZEMO_RECORDING_SECONDS");
  return seconds == nullptr ? kSpokenSeconds : std::atoi(seconds);
}

class RecorderServers : public ::testing::TestWithParam<ServerKind> {
 protected:
  void SetUp() override {
    const std::string why = server_.Start();
    if (!why.empty()) GTEST_SKIP() << why;
    module_ = SoundServer::LoadSink("mic");
    ASSERT_TRUE(testing::Within(kRecorderBoundMs, [] { return NumberOf("mic.monitor") >= 0; }));
    recorder_ =
        std::make_unique<RealRecorder>(loop_, [this](int number) { return InputOf(key_, number); });
    recorder_->OnEnd([this](const std::string& reason) { ends_.push_back(reason); });
  }
  static int NumberOf(const std::string& key) {
    return FindSoundDevice(ListSoundInputs(), {key, true});
  }
  // Into the sink of the microphone, from now on; each sample by its frame.
  void Say(const std::function<double(int64_t frame)>& sample, int seconds) {
    const std::string path = server_.Path("said");
    std::ofstream file(path, std::ios::binary);
    for (int64_t frame = 0; frame < int64_t{seconds} * kSampleRate; ++frame) {
      const auto value = static_cast<int16_t>(std::lround(sample(frame) * 32767));
      for (int channel = 0; channel < 2; ++channel)
        file.write(reinterpret_cast<const char*>(&value), sizeof value);
    }
    file.close();
    said_ = std::make_unique<ServerProcess>(
        std::vector<std::string>{"pacat", "-d", "mic", "--raw", "--format=s16le", "--rate=44100",
                                 "--channels=2", path},
        "/dev/null");
  }
  void SayTone(int seconds) {
    Say(
        [](int64_t frame) {
          return 0.5 * std::sin(2 * M_PI * 1000 * static_cast<double>(frame % 441) / kSampleRate);
        },
        seconds);
  }
  bool Within(int ms, const std::function<bool()>& condition) {
    return testing::Within(ms, [&] {
      recorder_->Poll();
      loop_.Yield();
      return condition();
    });
  }
  // The microphone is open, and somebody speaks.
  bool IsHeard() {
    recorder_->Listen(0);
    return Within(kRecorderBoundMs, [this] { return recorder_->HeardLevels().left > 0.1f; });
  }
  void Start() { recorder_->Start(0, folder_, "a.Wav"); }
  bool RecordedMs(int ms) {
    return Within(ms + kRecorderBoundMs, [&] { return recorder_->RecordedMs() >= ms; });
  }
  RecordedWav Wav() const { return ReadRecordedWav(server_.Path("a.Wav")); }
  // The tone from the first frame to the last, at its level and its speed, with nothing missing.
  static void ExpectWholeTone(const RecordedWav& wav, double leastSeconds) {
    const Heard heard = HeardIn(wav.Left());
    const double seconds = static_cast<double>(wav.frames) / kSampleRate;
    EXPECT_GE(seconds, leastSeconds);
    EXPECT_LT(heard.first, 0.002);
    EXPECT_GT(heard.last, seconds - 0.002);
    EXPECT_LT(heard.longestGap, 0.002);
    EXPECT_NEAR(heard.turns, 1000 * seconds, 2);
    EXPECT_NEAR(heard.peak, kSpokenPeak, kSpokenPeak / 50);
    // The steepest step of the tone itself: 0.5 * 2 pi * 1000 / 44100 of full scale.
    EXPECT_LT(heard.jump, 2334 * 1.05);
  }

  SoundServer server_{GetParam()};
  LocalFolder folder_{server_.Path("")};
  testing::OrderQueue loop_;
  std::string module_;               // of the microphone's sink
  std::string key_ = "mic.monitor";  // of the input
  std::unique_ptr<ServerProcess> said_;
  Lines ends_;
  std::unique_ptr<RealRecorder> recorder_;
};

INSTANTIATE_TEST_SUITE_P(Of, RecorderServers,
                         ::testing::Values(ServerKind::kPulseAudio, ServerKind::kPipeWire),
                         [](const auto& kind) {
                           return kind.param == ServerKind::kPulseAudio ? "PulseAudio" : "PipeWire";
                         });

TEST_P(RecorderServers, WhatIsSaidIsRecordedWholeAtItsLevelAndItsSpeed) {
  const int seconds = SecondsToRecord();
  SayTone(seconds + 20);
  ASSERT_TRUE(IsHeard());
  const auto begin = std::chrono::steady_clock::now();
  Start();
  ASSERT_TRUE(RecordedMs(seconds * 1000));
  const double meanwhile =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  recorder_->Stop();
  const RecordedWav wav = Wav();
  EXPECT_EQ(wav.channels, 2);
  EXPECT_EQ(wav.rate, 44100);
  EXPECT_EQ(wav.bits, 16);
  ExpectWholeTone(wav, seconds);
  EXPECT_NEAR(static_cast<double>(wav.frames) / kSampleRate, meanwhile, 0.1);
  EXPECT_EQ(ends_, Lines{});
}

// How alike two pieces of sound are: 1 for the same, whatever their levels.
double Likeness(const int16_t* one, const int16_t* other, int frames) {
  double both = 0, ones = 0, others = 0;
  for (int i = 0; i < frames; ++i) {
    both += one[i] * other[i];
    ones += one[i] * one[i];
    others += other[i] * other[i];
  }
  return ones == 0 || others == 0 ? 0 : both / std::sqrt(ones * others);
}

// Noise tells each of its places. Another recorder of the same microphone tells which of them was
// said at the moment of the order.
TEST_P(RecorderServers, ItBeginsWithin50MsOfTheOrder) {
  uint32_t seed = 1;
  double value = 0;
  Say(
      [&](int64_t frame) {
        seed = seed * 1664525U + 1013904223U;
        if (frame % 8 == 0) value = 0.5 * (static_cast<double>(seed >> 8) / (1U << 23) - 1);
        return value;
      },
      60);
  testing::SinkRecorder other("mic", server_.Path("other"), true);
  ASSERT_TRUE(Within(kRecorderBoundMs, [&] { return other.SoundsBehind(0); }));
  ASSERT_TRUE(IsHeard());
  constexpr int64_t kAround = kSampleRate / 2;  // of frames to either side that are searched
  ASSERT_TRUE(Within(kRecorderBoundMs, [&] { return other.Left().size() > kAround; }));
  for (int turn = 0; turn < 5; ++turn) {
    const size_t ordered = other.Left().size();
    Start();
    ASSERT_TRUE(RecordedMs(300 + 7 * turn));
    recorder_->Stop();
    const std::vector<int16_t> said = Wav().Left();
    ASSERT_TRUE(
        Within(kRecorderBoundMs, [&] { return other.Left().size() > ordered + 2 * kAround; }));
    const std::vector<int16_t> reference = other.Left();
    constexpr int kCompared = 400, kInside = 4410;
    int64_t at = 0;
    double most = 0;
    for (int64_t shift = -kAround; shift < kAround; ++shift) {
      const double likeness =
          Likeness(said.data() + kInside, reference.data() + ordered + shift + kInside, kCompared);
      if (likeness > most) most = likeness, at = shift;
    }
    EXPECT_GT(most, 0.9) << "the order " << turn;
    EXPECT_LT(std::abs(at), kSampleRate / 20) << "the order " << turn;
    RecordProperty("FramesBehindTheOrder" + std::to_string(turn), static_cast<int>(at));
  }
}

// The process that records is killed: what the file holds is a WAV file, whole up to that moment.
TEST_P(RecorderServers, AKillKeepsWhatWasSaid) {
  SayTone(30);
  ASSERT_TRUE(IsHeard());
  ServerProcess program({ZEMO_RECORDING_PROGRAM, key_, folder_.Path()}, "/dev/null");
  constexpr int64_t kTwoSeconds = 44 + 2 * kSampleRate * 4;
  const bool recorded = testing::Within(
      kRecorderBoundMs, [this] { return folder_.SizeBytes("a.Wav") >= kTwoSeconds; });
  program.End(SIGKILL);
  ASSERT_TRUE(recorded);
  RecordedWav wav = Wav();
  EXPECT_LT(HeardIn(wav.Left()).first, 0.05);
  // PipeWire's first frames for a new listener are half silent.
  constexpr int kFirst = kSampleRate / 20;
  ASSERT_GT(wav.frames, kFirst);
  wav.samples.erase(wav.samples.begin(), wav.samples.begin() + kFirst * wav.channels);
  wav.frames -= kFirst;
  ExpectWholeTone(wav, 1.9);
  EXPECT_LT(wav.behind, 44100 * 4 / 20) << "not counted by the header";
}

TEST_P(RecorderServers, AMicrophoneThatGivesSilenceIsKnownWithinTwoSeconds) {
  const auto order = std::chrono::steady_clock::now();
  Start();
  ASSERT_TRUE(Within(kRecorderBoundMs, [this] { return recorder_->SilentMs() >= 1500; }));
  EXPECT_LT(std::chrono::steady_clock::now() - order, std::chrono::milliseconds(2000));
  EXPECT_TRUE(recorder_->Recording());
  SayTone(10);
  EXPECT_TRUE(Within(kRecorderBoundMs, [this] { return recorder_->SilentMs() < 500; }));
}

TEST_P(RecorderServers, AMicrophoneThatIsTakenAwayEndsTheRecordingWithAllThatWasSaidBefore) {
  SayTone(30);
  ASSERT_TRUE(IsHeard());
  Start();
  ASSERT_TRUE(RecordedMs(2000));
  ASSERT_TRUE(SoundServer::UnloadSink(module_));
  ASSERT_TRUE(Within(kRecorderBoundMs, [this] { return !ends_.empty(); }));
  ASSERT_EQ(ends_.size(), 1U);
  EXPECT_NE(ends_[0].find("is gone"), std::string::npos) << ends_[0];
  RecordedWav wav = Wav();
  EXPECT_GE(wav.frames, 2 * kSampleRate);
  const Heard heard = HeardIn(wav.Left());
  EXPECT_LT(heard.longestGap, 0.002);
  EXPECT_GE(heard.last, 1.9);
  EXPECT_EQ(wav.behind, 0);
  // A microphone that is not there any more.
  Start();
  ASSERT_TRUE(Within(kRecorderBoundMs, [this] { return ends_.size() == 2; }));
  EXPECT_EQ(ends_[1], "mic.monitor: no such sound input on this machine");
  EXPECT_EQ(Wav().frames, wav.frames) << "what was said before stays";
}

TEST_P(RecorderServers, AnInputIsFoundByItsNumberAndThoseThatAreOutputsComeLast) {
  ASSERT_TRUE(
      SoundServer::Order("load-module module-remap-source source_name=voice master=mic.monitor"));
  ASSERT_TRUE(testing::Within(kRecorderBoundMs, [] { return NumberOf("voice") >= 0; }));
  EXPECT_LT(NumberOf("voice"), NumberOf("mic.monitor"));
  key_.clear();
  SayTone(20);
  recorder_->Start(NumberOf("voice"), folder_, "a.Wav");
  ASSERT_TRUE(RecordedMs(500));
  recorder_->Stop();
  EXPECT_NEAR(HeardIn(Wav().Left()).peak, kSpokenPeak, kSpokenPeak / 20);
  recorder_->Start(99, folder_, "b.Wav");
  ASSERT_TRUE(Within(kRecorderBoundMs, [this] { return !ends_.empty(); }));
  EXPECT_EQ(ends_, Lines{"there is no sound input of number 99"});
}

}  // namespace
}  // namespace zemo
