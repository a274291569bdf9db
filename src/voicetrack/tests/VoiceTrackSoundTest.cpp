// The join that is heard ahead is the join that airs: the editor's output and the air's are
// rendered from one list and compared sample by sample. All moments fall on a tick of the engine,
// so that the two clocks meet.
#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/SoundMeasures.h"
#include "store/SoundMeasuresTable.h"
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

using JoinSound = std::vector<float>;  // interleaved

constexpr int32_t kExitMs = 5000;

struct VoiceTrackSound : VoiceTrackFixture {
  std::string voice;

  // Each file has a tone and a loudness of its own.
  void SetUp() override {
    on.localValues.Set("LoudnessTarget", "-18");
    on.Load();
    AddTitle({.lengthMs = 60000, .artist = "ADA", .exitMs = kExitMs}, 500, -12);
    AddTitle({.lengthMs = 60000, .artist = "BOB"}, 900, -24);
    Open(1);
  }
  void Measure(const std::string& file, double hertz, double lufs) {
    on.opener.tones[file] = hertz;
    SoundMeasures measures;
    measures.loudnessLufs = lufs;
    measures.truePeakDb = lufs;
    StoreMeasures(on.station.base, file, on.soundFiles.Stamp(file).value(), measures);
  }
  void AddTitle(test::Card card, double hertz, double lufs) {
    card.file = on.MakeSound(card.artist + ".wav", card.lengthMs);
    Measure(card.file, hertz, lufs);
    on.AppendCard(on.AddCard(card));
  }
  void Say(int64_t lengthMs) {
    voice = on.MakeSound("voice.wav", lengthMs);
    Measure(voice, 1300, -15);
    VoiceTracks::BntLoadVT_Click(on.station, editor, voice);
  }
  // From the moment at which it begins, so long.
  JoinSound Preview(int64_t ms) {
    JoinSound heard;
    SimSoundChain& sound = on.preview.Sound();
    sound.SetSink([&](const float* stereo, int frames) {
      heard.insert(heard.end(), stereo, stereo + 2 * frames);
    });
    if (voice.empty())
      VoiceTracks::BtnPplay2_Click(on.station, editor);
    else
      VoiceTracks::CheckTest_Click(on.station, editor, true);
    Wait(ms);
    sound.FlushSink();
    sound.SetSink(nullptr);
    VoiceTracks::BtnStop2_Click(on.station, editor);
    return heard;
  }
  // Of the list with the saved track, from that position of its first element on.
  JoinSound Air(int64_t positionMs, int64_t ms) {
    VoiceTracks::BtnSave_Click(on.station, editor);
    on.Start();
    while (on.Starts().empty()) Wait(1);
    JoinSound heard;
    on.sound.SetSink([&](const float* stereo, int frames) {
      heard.insert(heard.end(), stereo, stereo + 2 * frames);
    });
    const int32_t begun = on.sound.Position(on.station.engine.CurrentChannel);
    Wait(positionMs + ms - begun);
    on.sound.FlushSink();
    on.sound.SetSink(nullptr);
    heard.erase(heard.begin(), heard.begin() + 2 * MsToFrames(positionMs - begun));
    return heard;
  }
  // The first frame in which they differ by more than a float's last places; -1: none.
  static int64_t FirstDifference(const JoinSound& one, const JoinSound& other, int64_t fromFrame) {
    const size_t both = std::min(one.size(), other.size());
    for (size_t i = 2 * static_cast<size_t>(fromFrame); i < both; ++i)
      if (std::fabs(one[i] - other[i]) > 2e-6F) return static_cast<int64_t>(i) / 2;
    return -1;
  }
  // From that position of the first title on, so long; but for what lies between two moments of it.
  void ExpectTheSame(int64_t fromMs, int64_t ms, int64_t butFromMs = 0, int64_t butUntilMs = 0) {
    JoinSound ahead = Preview(ms);
    JoinSound aired = Air(fromMs, ms);
    ASSERT_GE(ahead.size(), static_cast<size_t>(2 * MsToFrames(ms - 10)));
    ASSERT_GE(aired.size(), static_cast<size_t>(2 * MsToFrames(ms - 10)));
    for (JoinSound* sound : {&ahead, &aired})
      std::fill(sound->begin() + 2 * MsToFrames(butFromMs),
                sound->begin() + 2 * MsToFrames(butUntilMs), 0.0F);
    // What begins inside of a file rises for 10 ms.
    const int64_t differs = FirstDifference(ahead, aired, 441);
    EXPECT_EQ(differs, -1) << FramesToMs(differs) << " ms";
  }
};

TEST_F(VoiceTrackSound, AJoinWithoutATrackIsHeardAsItAirs) {
  ExpectTheSame(50000, 9000);
}

TEST_F(VoiceTrackSound, ATrackOverTheFirstTitleIsHeardAsItAirs) {
  Say(3000);
  VoiceTracks::LblPositionVT_Change(editor, 51000);
  ExpectTheSame(50000, 9000);
}

TEST_F(VoiceTrackSound, ATrackOverBothTitlesIsHeardAsItAirs) {
  Say(5000);
  VoiceTracks::LblPositionVT_Change(editor, 53000);
  ExpectTheSame(50000, 12000);
}

TEST_F(VoiceTrackSound, ACutTrackIsHeardAsItAirs) {
  Say(4000);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::PointSortie_Change(editor, 1000);
  ExpectTheSame(50000, 12000);
}

// The engine's tick waits while two elements overlap: on air the music comes back behind that.
TEST_F(VoiceTrackSound, ATrackThatEndsInTheFadeIsHeardAsItAirsButForTheMusicUpToTheFadesEnd) {
  Say(3000);
  VoiceTracks::LblPositionVT_Change(editor, 53000);
  ExpectTheSame(50000, 12000, 6000, 6720);  // the fade ends at 6600; a tick and a ramp later
}

}  // namespace
}  // namespace zemo
