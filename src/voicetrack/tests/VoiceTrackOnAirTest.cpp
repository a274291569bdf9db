// A saved track on air: the list that holds it is stored, loaded and played.
#include "engine/StoredPlaylists.h"
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

struct VoiceTrackOnAir : VoiceTrackFixture {
  void SetUp() override {
    on.Load();
    on.AppendCard(on.AddCard({.lengthMs = 60000, .artist = "ADA", .exitMs = 4000}));
    on.AppendCard(on.AddCard({.lengthMs = 60000, .artist = "BOB"}));
    Open(1);
  }
  // Saves the track, stores the list, empties it, loads it and goes on air.
  void SaveAndAir() {
    VoiceTracks::BtnSave_Click(on.station, editor);
    OnAir::ComboPLS_Change(on.station, "SHOW");
    ASSERT_TRUE(OnAir::BtnSauve_Click(on.station));
    const int32_t code = on.station.storedList.LblCodePL;
    OnAir::BtnNew_Click(on.station);
    ASSERT_TRUE(OnAir::SelectStoredList(on.station, code));
    ASSERT_EQ(on.station.PL.Count(), 3);
    on.Start();
    Wait(70000);
  }
};

TEST_F(VoiceTrackOnAir, ATrackThatSpeaksOverIsHeardAtItsPlaceOverTheDuckedMusic) {
  const std::string file = Load(5000);
  VoiceTracks::LblPositionVT_Change(editor, 50000);
  SaveAndAir();
  const test::Seen* first = on.First("start");
  const test::Seen* track = on.First("overlay", "reason", "voicetrack");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(track, nullptr);
  EXPECT_EQ((*track)["file"], file);
  EXPECT_GE(track->atMs - first->atMs, 50000);
  EXPECT_LT(track->atMs - first->atMs, 50000 + 100);  // by the tick
  const auto volumes = on.Events("volume");
  ASSERT_EQ(volumes.size(), 2U);
  EXPECT_EQ(volumes[0]["to"], "6500");
  EXPECT_EQ(volumes[0].atMs, track->atMs);
  EXPECT_EQ(volumes[1]["to"], "16384");
  EXPECT_GE(volumes[1].atMs - track->atMs, 5000);
}

// The ticks come at whole tenths of the title's seconds.
TEST_F(VoiceTrackOnAir, ATrackBeginsAtItsPlaceBetweenTwoTicks) {
  Load(5000);
  VoiceTracks::LblPositionVT_Change(editor, 50037);
  SaveAndAir();
  const test::Seen* track = on.First("overlay", "reason", "voicetrack");
  ASSERT_NE(track, nullptr);
  EXPECT_EQ(track->atMs - on.First("start")->atMs, 50037);
  const auto volumes = on.Events("volume");
  ASSERT_EQ(volumes.size(), 2U);
  EXPECT_EQ(volumes[0].atMs, track->atMs);
}

// What holds the tick holds the looks between ticks as well: the tick behind that begins it.
TEST_F(VoiceTrackOnAir, ATrackWhoseMomentComesWhileTheTickIsHeldBeginsBehindThat) {
  Load(5000);
  VoiceTracks::LblPositionVT_Change(editor, 40037);
  VoiceTracks::BtnSave_Click(on.station, editor);
  on.Start();
  while (on.Starts().empty()) Wait(1);
  const int64_t begin = on.Starts()[0].atMs;
  on.At(begin + 40010, [this] {
    const MainTimerHold hold(on.station);
    // 10 ms each; the first serves the last look for the track's moment.
    for (int turn = 0; turn < 10; ++turn) on.station.platform.loop.WaitYield();
  });
  Wait(45000);
  const test::Seen* track = on.First("overlay", "reason", "voicetrack");
  ASSERT_NE(track, nullptr);
  EXPECT_EQ(track->atMs - begin, 40010 + 10 * 10 + 100);
}

TEST_F(VoiceTrackOnAir, ATrackOfALiveModeThatBeganMeanwhileWaits) {
  Load(5000);
  VoiceTracks::LblPositionVT_Change(editor, 40037);
  VoiceTracks::BtnSave_Click(on.station, editor);
  on.Start();
  while (on.Starts().empty()) Wait(1);
  on.At(on.Starts()[0].atMs + 40020, [this] { on.station.engine.IsAutomatic = false; });
  Wait(45000);
  EXPECT_EQ(on.First("overlay", "reason", "voicetrack"), nullptr);
}

// Its element ends ahead of its place, as one that was exchanged for a shorter one.
TEST_F(VoiceTrackOnAir, ATrackWhoseMomentNeverCameIsForgottenInTheNextElement) {
  Load(5000);
  VoiceTracks::LblPositionVT_Change(editor, 80000);
  SaveAndAir();
  EXPECT_EQ(on.station.engine.VoiceTrackState, -1);
  Wait(10000);
  EXPECT_EQ(on.station.engine.VoiceTrackState, 0);
  EXPECT_EQ(on.First("overlay", "reason", "voicetrack"), nullptr);
}

TEST_F(VoiceTrackOnAir, ACutTrackStandsBetweenItsNeighbours) {
  Load(5000);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::PointSortie_Change(editor, 1000);
  SaveAndAir();
  const auto starts = on.Starts();
  ASSERT_GE(starts.size(), 3U);
  EXPECT_EQ(starts[1]["code"], "-30");
  EXPECT_EQ(starts[1]["volume"], "16384");
  EXPECT_GE(starts[1].atMs - starts[0].atMs, 56000);
  EXPECT_LT(starts[1].atMs - starts[0].atMs, 56200);
  EXPECT_GE(starts[2].atMs - starts[1].atMs, 4000);
  EXPECT_LT(starts[2].atMs - starts[1].atMs, 9000);
}

}  // namespace
}  // namespace zemo
