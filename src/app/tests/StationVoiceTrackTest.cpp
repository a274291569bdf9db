// The voice track editor of a station on air: its microphone, its output and the air are three
// sinks of a sound server, and none of them hears of the others.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/RealStation.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"
#include "platform/real/sound/SoundFileWriter.h"
#include "platform/real/sound/tests/SoundServers.h"
#include "platform/real/sound/tests/SpokenInput.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {
namespace {

using testing::Heard;
using testing::HeardIn;
using testing::ReadRecordedWav;
using testing::RecordedWav;
using testing::ServerKind;
using testing::ServerProcess;
using testing::SinkRecorder;
using testing::SoundServer;

constexpr int kStationBoundMs = 15000;
constexpr int kPreRollMs = 5000;
constexpr int kTitleSec = 15, kOverlapSec = 5;

// The recording runs so long; other lengths are for a run by hand.
int SecondsBeside() {
  const char* seconds = std::getenv("ZEMO_BESIDE_SECONDS");
  return seconds == nullptr ? 12 : std::atoi(seconds);
}

// How far the air was beyond the exit point of each element when the next one began, ms.
class Transitions : public EventSink {
 public:
  const SoundChain* sound = nullptr;
  std::vector<int64_t> lateMs;

  void OnEvent(const Event& event) override {
    if (event.name == "onair") exitMs_ = event.Number("mix_ms");
    if (event.name != "start") return;
    const int old = event.Number("slot") == 0 ? 1 : 0;
    if (lengthMs_ > 0) lateMs.push_back(sound->Position(old) + exitMs_ - lengthMs_);
    lengthMs_ = event.Number("length_ms");
  }

 private:
  int64_t lengthMs_ = 0, exitMs_ = 0;
};

class StationVoiceTrack : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string why = server_.Start();
    if (!why.empty()) GTEST_SKIP() << why;
    for (const char* sink : {"air", "two", "mic"}) SoundServer::LoadSink(sink);
    WriteTone("odd.wav", 1000, kTitleSec);
    WriteTone("even.wav", 700, kTitleSec);
    WriteTone("before.wav", 500, 60);
    WriteTone("after.wav", 2000, 60);
    WriteTone("said.wav", 400, SecondsBeside() + 120);
    said_ = std::make_unique<ServerProcess>(
        std::vector<std::string>{"paplay", "-d", "mic", server_.Path("said.wav")}, "/dev/null");
    MakeStation();
  }
  void TearDown() override {
    if (real_) VoiceTracks::Form_Unload(real_->station, editor_);
  }
  void WriteTone(const std::string& name, double hertz, int seconds) {
    std::vector<int16_t> samples(2 * static_cast<size_t>(kSampleRate));
    for (int frame = 0; frame < kSampleRate; ++frame)
      samples[2 * static_cast<size_t>(frame)] = samples[2 * static_cast<size_t>(frame) + 1] =
          static_cast<int16_t>(
              std::lround(8192 * std::sin(2 * M_PI * hertz * frame / kSampleRate)));
    SoundFileWriter file(server_.Path(name), int64_t{seconds} * kSampleRate);
    for (int second = 0; second < seconds; ++second) file.Write(samples.data(), kSampleRate);
    file.Close();
  }
  // With the numbers of another day: the keys say which devices are meant.
  void MakeStation() {
    LocalFolder folder(machineFolder_.Path(""));
    LocalValues values(folder);
    for (const auto& [name, value] :
         {std::pair("VoiceTrackInputID", "17"), std::pair("VoiceTrackInputName", "mic.monitor"),
          std::pair("VoiceTrackOututID", "18"), std::pair("VoiceTrackOututName", "two")})
      values.Set(name, value);
    real_ = std::make_unique<RealStation>(stationFolder_.Path(""), machineFolder_.Path(""),
                                          OutputSpec{OutputSpec::Kind::kDevice, "air", true},
                                          machine_.Parts(), nullptr);
    transitions_.sound = real_->sound.get();
    real_->station.events.SetSink(&transitions_);
    ASSERT_TRUE(OnAir::Form_Load(real_->station));
    OnAir::Form_Activate(real_->station, true);
    for (int title = 0; title <= AirTitles(); ++title)
      AddRow(title % 2 == 0 ? "even.wav" : "odd.wav", kTitleSec * 1000);
    AddRow("before.wav", 60000);
    AddRow("after.wav", 60000);
  }
  // That begin until the recording is over.
  static int AirTitles() { return (SecondsBeside() + 60) / (kTitleSec - kOverlapSec) + 1; }
  void AddRow(const char* name, int32_t lengthMs) {
    OnAirElement element;
    element.title = name;
    element.file = server_.Path(name);
    element.code = 1;
    element.exitMs = kOverlapSec * 1000;
    element.lengthMs = lengthMs;
    real_->station.PL.Add(element);
  }
  bool Within(int ms, const std::function<bool()>& condition) {
    return testing::Within(ms, [&] {
      real_->loop.WaitYield();
      return condition();
    });
  }
  bool RecordedMs(int64_t ms) {
    return Within(static_cast<int>(ms) + kStationBoundMs,
                  [&] { return real_->recorder.RecordedMs() >= ms; });
  }

  SoundServer server_{ServerKind::kPulseAudio};
  const testing::TestFolder machineFolder_, stationFolder_;
  ScreenlessMachine machine_;
  std::unique_ptr<ServerProcess> said_;
  VoiceTrackEditor editor_;
  Transitions transitions_;
  std::unique_ptr<RealStation> real_;
};

TEST_F(StationVoiceTrack, IsRecordedAndHeardInItsJoinBesideAnAirThatMissesNothing) {
  Station& station = real_->station;
  SinkRecorder air("air", server_.Path("heard-air"), true);
  SinkRecorder two("two", server_.Path("heard-two"), true);
  OnAir::Toolbar_ButtonClick(station, Toolbar::kStart);
  ASSERT_TRUE(Within(kStationBoundMs, [&] { return air.SoundsBehind(0); }));
  VoiceTracks::Open(station, editor_, station.PL.Count() - 1);
  ASSERT_TRUE(editor_.open);
  ASSERT_TRUE(Within(kStationBoundMs, [this] { return editor_.devices.inputs.size() >= 3; }));
  EXPECT_EQ(editor_.devices.inputs[static_cast<size_t>(editor_.VoiceTrackInputID)].key,
            "mic.monitor");
  EXPECT_EQ(editor_.devices.outputs[static_cast<size_t>(editor_.VoiceTrackOututID)].key, "two");
  // The presenter hears the join, and begins in its middle.
  VoiceTracks::BtnPplay2_Click(station, editor_);
  ASSERT_TRUE(Within(kStationBoundMs, [&] { return two.SoundsBehind(0); }));
  VoiceTracks::BtnRecord_Click(station, editor_);
  EXPECT_GT(editor_.LblPositionVT, 60000 - 5000 - kPreRollMs - 2420);
  for (int ms = 0; ms < SecondsBeside() * 1000; ms += 4000) {
    ASSERT_TRUE(RecordedMs(ms + 4000));
    EXPECT_FALSE(editor_.LblMicroVisible);
    // A turn that comes between two blocks of a busy server sees none.
    EXPECT_TRUE(
        Within(kStationBoundMs, [this] { return std::abs(editor_.MMLevelX1 - 0.25F) < 0.03F; }));
    if (editor_.join.afterStarted) VoiceTracks::BtnPplay2_Click(station, editor_);
  }
  VoiceTracks::BtnStop_Click(station, editor_);
  EXPECT_EQ(editor_.trackLengthMs, real_->recorder.RecordedMs());
  VoiceTracks::BtnStop2_Click(station, editor_);

  const RecordedWav wav = ReadRecordedWav(stationFolder_.Path("VoiceTrack/00000001.Wav"));
  const Heard said = HeardIn(wav.Left());
  EXPECT_GE(wav.frames, int64_t{SecondsBeside()} * kSampleRate);
  EXPECT_LT(said.longestGap, 0.002);
  EXPECT_NEAR(said.turns, 400 * static_cast<double>(wav.frames) / kSampleRate, 2);
  EXPECT_NEAR(said.peak, 8192, 100);

  air.End();
  const Heard aired = HeardIn(air.Left());
  EXPECT_GE(aired.last - aired.first, SecondsBeside());
  EXPECT_LT(aired.longestGap, 0.002);
  ASSERT_FALSE(transitions_.lateMs.empty());
  std::sort(transitions_.lateMs.begin(), transitions_.lateMs.end());
  RecordProperty("Transitions", static_cast<int>(transitions_.lateMs.size()));
  RecordProperty("MedianLateMs",
                 static_cast<int>(transitions_.lateMs[transitions_.lateMs.size() / 2]));
  RecordProperty("MostLateMs", static_cast<int>(transitions_.lateMs.back()));
  EXPECT_LT(transitions_.lateMs.back(), kOverlapSec * 1000);  // the air never ran out
  EXPECT_EQ(real_->sound->TakeHealth().underruns, 0U);
  EXPECT_EQ(real_->sound->TakeHealth().lateFrames, 0U);
}

// The microphone hears the output; then by a line that holds it back for 400 ms.
TEST_F(StationVoiceTrack, TheLatencyIsMeasuredThroughTheDevices) {
  said_.reset();
  VoiceTracks::Open(real_->station, editor_, 1);
  ASSERT_TRUE(Within(kStationBoundMs, [this] { return !editor_.devices.inputs.empty(); }));
  const auto& inputs = editor_.devices.inputs;
  const auto number = std::find_if(inputs.begin(), inputs.end(),
                                   [](const auto& input) { return input.key == "two.monitor"; }) -
                      inputs.begin();
  const int32_t microphone = editor_.VoiceTrackInputID;
  VoiceTracks::VoiceTrackInputID_Change(real_->station, editor_, static_cast<int32_t>(number));
  VoiceTracks::BtnLatence_Click(real_->station, editor_);
  const int32_t direct = editor_.LblLatence;
  EXPECT_GT(direct, 20);
  EXPECT_LT(direct, 1000);
  VoiceTracks::BtnLatence_Click(real_->station, editor_);
  EXPECT_NEAR(editor_.LblLatence, direct, 60);

  ASSERT_TRUE(SoundServer::Order(
      "load-module module-loopback source=two.monitor sink=mic latency_msec=400 adjust_time=0"));
  VoiceTracks::VoiceTrackInputID_Change(real_->station, editor_, microphone);
  VoiceTracks::BtnLatence_Click(real_->station, editor_);
  RecordProperty("DirectMs", direct);
  RecordProperty("HeldBackMs", editor_.LblLatence);
  EXPECT_NEAR(editor_.LblLatence, direct + 400, 120);
  EXPECT_TRUE(editor_.CheckLatence);
  EXPECT_FALSE(real_->machineFolder.Exists("RoundTrip.Wav"));
  EXPECT_FALSE(real_->machineFolder.Exists("RoundTripHeard.Wav"));
}

TEST_F(StationVoiceTrack, TheTrackAloneIsHeardOnTheEditorsOutput) {
  SinkRecorder air("air", server_.Path("heard-air"), true);
  SinkRecorder two("two", server_.Path("heard-two"), true);
  VoiceTracks::Open(real_->station, editor_, 1);
  VoiceTracks::BntLoadVT_Click(real_->station, editor_, server_.Path("after.wav"));
  VoiceTracks::BtnPlay1_Click(real_->station, editor_);
  ASSERT_TRUE(Within(kStationBoundMs, [&] { return two.SoundsBehind(0); }));
  EXPECT_FALSE(air.SoundsBehind(0));
}

}  // namespace
}  // namespace zemo
