// The join as it is heard ahead of air. It begins at 170 s of the first title, which fades from
// 175 s on in 1.6 s; the settings have 16384 for music and for what lies over it, 6500 below.
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

using VoiceTrackJoin = VoiceTrackFixture;
using Texts = std::vector<std::string>;

TEST_F(VoiceTrackJoin, WithoutTheTrackTheSecondTitleComesInWhereTheFirstFades) {
  const int64_t begin = on.loop.MonotonicMs();
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  EXPECT_EQ(on.Events("preview").front().Int("position_ms"), 170000);
  EXPECT_EQ(on.Events("preview").front()["file"], editor.FileAvant);
  Wait(8000);
  EXPECT_EQ(Join(begin), (Texts{"0 start 0 16384", "5000 start 1 6500", "5000 fade 0 1600",
                                "5000 volume 1 16384", "6600 end 0"}));
  EXPECT_EQ(editor.PoApres, "00:03");
  VoiceTracks::BtnStop2_Click(on.station, editor);
  EXPECT_EQ(Join(begin).back(), "8000 end 1");
  EXPECT_EQ(editor.PoApres, "");
}

TEST_F(VoiceTrackJoin, ATrackThatSpeaksOverDucksBothTitlesUntilItEnds) {
  Load(4000);
  VoiceTracks::LblPositionVT_Change(editor, 172000);
  const int64_t begin = on.loop.MonotonicMs();
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  Wait(3000);
  EXPECT_EQ(editor.PoAvant, "00:07");
  EXPECT_EQ(editor.PoVT, "00:01");
  Wait(5000);
  EXPECT_EQ(Join(begin), (Texts{"0 start 0 16384", "2000 volume 0 6500", "2000 start 2 16384",
                                "5000 start 1 6500", "5000 fade 0 1600", "6000 end 2",
                                "6000 volume 1 16384", "6000 volume 0 16384", "6600 end 0"}));
}

TEST_F(VoiceTrackJoin, ACutTrackStandsBetweenAndItsExitPointBringsTheSecondTitle) {
  Load(4000);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::PointSortie_Change(editor, 1000);
  const int64_t begin = on.loop.MonotonicMs();
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  Wait(10000);
  EXPECT_EQ(Join(begin), (Texts{"0 start 0 16384", "5000 fade 0 1600", "5000 start 2 16384",
                                "6600 end 0", "8000 start 1 16384", "9000 end 2"}));
}

TEST_F(VoiceTrackJoin, ACutTrackWithoutTheTestKeepsTheSecondTitleAway) {
  Load(4000);
  VoiceTracks::CheckCut_Click(editor, true);
  const int64_t begin = on.loop.MonotonicMs();
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(10000);
  EXPECT_EQ(Join(begin), (Texts{"0 start 0 16384", "5000 fade 0 1600", "6600 end 0"}));
}

TEST_F(VoiceTrackJoin, TickingTheTestBeginsTheJoinAnew) {
  Load(4000);
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  const auto told = on.Events("preview");
  ASSERT_EQ(told.size(), 3U);
  EXPECT_EQ(told[1]["state"], "end");
  EXPECT_EQ(told[2]["state"], "start");
  EXPECT_EQ(told[2].Int("position_ms"), 170000);
}

TEST_F(VoiceTrackJoin, TheAirGoesOnUntouchedBesideTheJoin) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(9000);
  EXPECT_TRUE(on.Starts().empty());
  EXPECT_TRUE(on.Events("output").empty());
}

TEST_F(VoiceTrackJoin, AnOutputThatIsLostEndsTheJoinAndIsTold) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(2000);
  on.preview.Lose();
  EXPECT_FALSE(editor.join.on);
  EXPECT_EQ(on.preview.Sound().State(), OutputState::kClosed);
  EXPECT_EQ(LastMessage(), "Impossible d'écouter sur cette sortie audio");
}

TEST_F(VoiceTrackJoin, AnElementAfterWhoseFileIsGoneIsLeftOut) {
  on.soundFiles.Remove(editor.FileApres);
  const int64_t begin = on.loop.MonotonicMs();
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(8000);
  EXPECT_EQ(Join(begin), (Texts{"0 start 0 16384", "5000 fade 0 1600", "6600 end 0"}));
  EXPECT_EQ(editor.PoApres, "");
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(VoiceTrackJoin, AnElementShorterThanItsExitPointIsHeardFromItsBegin) {
  on.station.PL.Insert(1, {.code = 1, .file = on.MakeSound("short.wav", 3000), .exitMs = 5000});
  Open(1);
  ASSERT_EQ(editor.PS1, 5000);
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  const test::Seen* start = on.First("preview", "state", "start");
  ASSERT_NE(start, nullptr);
  EXPECT_EQ((*start)["slot"] + " " + (*start)["position_ms"], "0 0");
}

TEST_F(VoiceTrackJoin, AStopEmptiesThePositionsAndTheTimerRests) {
  Load(4000);
  VoiceTracks::LblPositionVT_Change(editor, 171000);
  editor.BtnNormalizeEnabled = false;
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  EXPECT_TRUE(editor.BtnNormalizeEnabled);
  Wait(2000);
  ASSERT_EQ(editor.PoAvant + " " + editor.PoVT, "00:08 00:01");
  VoiceTracks::BtnStop2_Click(on.station, editor);
  EXPECT_EQ(editor.PoAvant + editor.PoApres + editor.PoVT, "");
  EXPECT_TRUE(editor.TimerVT->Enabled());
  Wait(50);
  EXPECT_FALSE(editor.TimerVT->Enabled());
}

TEST_F(VoiceTrackJoin, ATrackWhoseFileIsGoneIsLeftOut) {
  on.soundFiles.Remove(Load(4000));
  VoiceTracks::LblPositionVT_Change(editor, 172000);
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  Wait(4000);
  EXPECT_EQ(on.Events("preview").size(), 1U);
  EXPECT_TRUE(on.Events("error").empty());
}

}  // namespace
}  // namespace zemo
