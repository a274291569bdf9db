// A presenter's track from the microphone to the air: recorded by the program's own recorder on a
// sound server, saved in a stored list, aired by the program, and measured in what is heard of it.
// The titles are tones of 1000 and 2000 Hz, the voice is one of 400 Hz.
#include <chrono>
#include <functional>
#include <memory>

#include "RenderedStation.h"
#include "app/RealStation.h"
#include "engine/Startup.h"
#include "engine/StoredPlaylists.h"
#include "platform/real/sound/tests/SoundServers.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {
namespace {

using namespace hearing;
using testing::ServerKind;
using testing::ServerProcess;
using testing::SoundServer;

constexpr int kShowBoundMs = 15000;
constexpr int64_t kFirstBeginsMs = 100, kFirstMs = 30000, kFirstExitMs = 5000;
constexpr double kMusicLevel = 0.25, kVoiceLevel = 0.2;

class RecordedShow : public RenderedStation {
 protected:
  void SetUp() override {
    RenderedStation::SetUp();
    const std::string why = server_.Start();
    if (!why.empty()) GTEST_SKIP() << why;
    SoundServer::LoadSink("mic");
    WriteTone(Path("said.wav"), 400, kVoiceLevel, 60);
    said_ = std::make_unique<ServerProcess>(
        std::vector<std::string>{"paplay", "-d", "mic", Path("said.wav")}, "/dev/null");
    WriteTone(Path("station/first.wav"), 1000, kMusicLevel, kFirstMs / 1000.0);
    WriteTone(Path("station/second.wav"), 2000, kMusicLevel, 20);
    AddTitle(Path("station/first.wav"), kFirstMs / 1000.0, kFirstExitMs);
    AddTitle(Path("station/second.wav"), 20);
    MakeBase();
    Put("store", "+0 insert music 1\n+0 insert music 2\n+0 save SHOW 01/01/2001 10:00 0\n");
    ASSERT_EQ(Run("simulate --station station --in-place --no-start --for 0 --script store --trace "
                  "/dev/null")
                  .status,
              0);
    Put("machine/Settings.Ini", "VoiceTrackInputID=17\r\nVoiceTrackInputName=mic.monitor\r\n");
  }
  // Three seconds behind the first title of the stored list; `place` gives the track its place.
  // Its length in ms.
  int32_t RecordTrack(const std::function<void(VoiceTrackEditor&)>& place) {
    ScreenlessMachine machine;
    RealStation real(Path("station") + "/", Path("machine") + "/",
                     OutputSpec{OutputSpec::Kind::kNull}, machine.Parts(), nullptr);
    Station& station = real.station;
    EXPECT_TRUE(OnAir::Form_Load(station));
    OnAir::Form_Activate(station, true);
    EXPECT_TRUE(OnAir::SelectStoredList(station, 1));
    VoiceTrackEditor editor;
    VoiceTracks::Open(station, editor, 1);
    const auto within = [&](const std::function<bool()>& condition) {
      return testing::Within(kShowBoundMs, [&] {
        real.loop.WaitYield();
        VoiceTracks::ShowLevels(station, editor);
        return condition();
      });
    };
    EXPECT_TRUE(within([&] { return editor.MMLevelX1 > kVoiceLevel / 2; })) << "nobody speaks";
    VoiceTracks::BtnRecord_Click(station, editor);
    EXPECT_TRUE(within([&] { return real.recorder.RecordedMs() >= 3000; }));
    VoiceTracks::BtnStop_Click(station, editor);
    place(editor);
    VoiceTracks::BtnSave_Click(station, editor);
    EXPECT_EQ(station.PL.Count(), 3);
    EXPECT_TRUE(OnAir::BtnSauve_Click(station));
    const int32_t lengthMs = editor.trackLengthMs;
    VoiceTracks::Form_Unload(station, editor);
    return lengthMs;
  }

  SoundServer server_{ServerKind::kPulseAudio};
  std::unique_ptr<ServerProcess> said_;
};

// 20037 ms of the first title lie between two ticks of the engine.
TEST_F(RecordedShow, ATrackBeginsAtItsPlaceOverMusicThatIsDuckedAndComesBack) {
  constexpr int32_t kPlaceMs = 20037;
  const int32_t lengthMs = RecordTrack(
      [](VoiceTrackEditor& editor) { VoiceTracks::LblPositionVT_Change(editor, kPlaceMs); });
  ASSERT_GE(lengthMs, 3000);
  const Recording heard = Render(40, "+0 load 1\n");
  const int64_t voice = BeginsMs(heard, 400, kVoiceLevel);
  RecordProperty("BeginsBehindItsPlaceMs", static_cast<int>(voice - kFirstBeginsMs - kPlaceMs));
  EXPECT_NEAR(static_cast<double>(voice), kFirstBeginsMs + kPlaceMs, 20);
  const int64_t end = EndsMs(heard, 400, kVoiceLevel, voice + 100);
  EXPECT_NEAR(static_cast<double>(end), static_cast<double>(voice + lengthMs), 20);
  const auto at = [](int64_t ms) { return static_cast<double>(ms) / 1000; };
  EXPECT_NEAR(Level(heard, 1000, at(voice - 50)), kMusicLevel, 0.003);
  for (int64_t ms = voice + 50; ms < end - 50; ms += 100) {
    ASSERT_NEAR(Level(heard, 1000, at(ms)), kMusicLevel * 6500 / 16384, 0.003) << ms;
    ASSERT_NEAR(Level(heard, 400, at(ms)), kVoiceLevel, 0.01) << ms;
  }
  EXPECT_NEAR(Level(heard, 1000, at(end + 200)), kMusicLevel, 0.003);  // at the next tick
  const int64_t exit = kFirstBeginsMs + kFirstMs - kFirstExitMs;
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, 2000, kMusicLevel)), static_cast<double>(exit),
              20);
  EXPECT_NEAR(Level(heard, 2000, at(exit + 2000)), kMusicLevel, 0.003);
}

// Its exit point lies a second before its end.
TEST_F(RecordedShow, ACutTrackStandsBetweenItsNeighbours) {
  const int32_t lengthMs = RecordTrack([](VoiceTrackEditor& editor) {
    VoiceTracks::CheckCut_Click(editor, true);
    VoiceTracks::PointSortie_Change(editor, 1000);
  });
  ASSERT_GE(lengthMs, 3000);
  const Recording heard = Render(40, "+0 load 1\n");
  const int64_t exit = kFirstBeginsMs + kFirstMs - kFirstExitMs;
  const int64_t voice = BeginsMs(heard, 400, kVoiceLevel);
  EXPECT_NEAR(static_cast<double>(voice), static_cast<double>(exit), 20);
  const int64_t second = BeginsMs(heard, 2000, kMusicLevel);
  EXPECT_GE(second - voice, lengthMs - 1000 - 20);
  EXPECT_LE(second - voice, lengthMs - 1000 + 120);  // by the tick
  const auto at = [](int64_t ms) { return static_cast<double>(ms) / 1000; };
  EXPECT_NEAR(Level(heard, 1000, at(voice - 50)), kMusicLevel, 0.003);
  EXPECT_LT(Level(heard, 1000, at(voice + 1650)), 0.003);  // faded in 1600 ms
  EXPECT_LT(Level(heard, 2000, at(second - 50)), 0.003);
  EXPECT_NEAR(Level(heard, 400, at(voice + 1800)), kVoiceLevel, 0.01);
  EXPECT_NEAR(static_cast<double>(EndsMs(heard, 400, kVoiceLevel, voice + 100)),
              static_cast<double>(voice + lengthMs), 20);
  EXPECT_NEAR(Level(heard, 2000, at(second + 3000)), kMusicLevel, 0.003);
}

}  // namespace
}  // namespace zemo
