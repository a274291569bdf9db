// A presenter's sitting without its window: the joins of the list, what is left to be stored, the
// time to fill, a join from its middle, one more take.
#include <algorithm>
#include <limits>

#include "voicetrack/JoinPlan.h"
#include "voicetrack/TrackJoins.h"
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

class VoiceTrackSitting : public VoiceTrackFixture {
 protected:
  // "SONG | TUNE" with "*" behind a track, "!" behind one with a fault, ">" ahead of the open one.
  std::vector<std::string> Joins() {
    std::vector<std::string> told;
    for (const TrackJoin& join : JoinsOf(on.station.PL, editor)) {
      std::string line = join.open ? "> " : "";
      line += join.titleBefore + " | " + join.titleAfter;
      if (join.track != 0) line += join.fault == NeighbourFault::kNone ? " *" : " !";
      told.push_back(line);
    }
    return told;
  }
  void AddThird() { on.AppendCard(on.AddCard({.artist = "CY", .title = "AIR"})); }
  using Lines = std::vector<std::string>;
};

TEST_F(VoiceTrackSitting, EachPlaceBehindATitleIsAJoinAndTheLastTitleOnlyWhileItIsOpen) {
  AddThird();
  EXPECT_EQ(Joins(), (Lines{"> ADA  SONG | BOB  TUNE", "BOB  TUNE | CY  AIR"}));
  EXPECT_EQ(MissingTracks(JoinsOf(on.station.PL, editor)), 2U);
  Open(3);
  EXPECT_EQ(Joins(), (Lines{"ADA  SONG | BOB  TUNE", "BOB  TUNE | CY  AIR", "> CY  AIR | "}));
}

TEST_F(VoiceTrackSitting, AJoinWithATrackIsDoneAndAChangedOneIsMarked) {
  AddThird();
  Load(8000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(Joins(), (Lines{"> ADA  SONG | BOB  TUNE *", "BOB  TUNE | CY  AIR"}));
  EXPECT_EQ(MissingTracks(JoinsOf(on.station.PL, editor)), 1U);
  on.station.PL.Remove(3);
  EXPECT_EQ(Joins(), (Lines{"> ADA  SONG | CY  AIR !"}));
}

// Who speaks behind it opens it by hand.
TEST_F(VoiceTrackSitting, BehindAJingleThereIsNoJoin) {
  AddThird();
  on.station.PL.Insert(2, {.code = Element::kJingle, .title = "JINGLE", .file = "/jingle.wav"});
  EXPECT_EQ(Joins(), (Lines{"> ADA  SONG | JINGLE  ", "BOB  TUNE | CY  AIR"}));
}

// A second track would go there.
TEST_F(VoiceTrackSitting, ThePlaceAheadOfATrackIsAJoinOnlyWhileItIsOpen) {
  Load(8000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  Open(1);
  EXPECT_EQ(Joins(), (Lines{"> ADA  SONG | Voice Track  1", "ADA  SONG | BOB  TUNE *"}));
  Open(2);
  EXPECT_EQ(Joins(), (Lines{"> ADA  SONG | BOB  TUNE *"}));
}

TEST_F(VoiceTrackSitting, TheNextJoinOpensAndATrackIsStoredOnTheWay) {
  AddThird();
  Load(8000);
  ASSERT_TRUE(VoiceTracks::IsUnsaved(editor));
  VoiceTracks::BtnSuivant_Click(on.station, editor);
  EXPECT_EQ(editor.Avant, "BOB  TUNE");
  EXPECT_FALSE(VoiceTracks::IsUnsaved(editor));
  EXPECT_EQ(Joins(), (Lines{"ADA  SONG | BOB  TUNE *", "> BOB  TUNE | CY  AIR"}));
  VoiceTracks::BtnSuivant_Click(on.station, editor);  // there is none
  EXPECT_EQ(editor.Avant, "BOB  TUNE");
  VoiceTracks::BtnPrecedent_Click(on.station, editor);
  EXPECT_EQ(editor.Avant, "ADA  SONG");
  EXPECT_EQ(editor.trackLengthMs, 8000);
}

TEST_F(VoiceTrackSitting, ATrackWithoutAPlaceKeepsTheEditorWhereItIs) {
  AddThird();
  Load(8000);
  on.station.PL.Remove(1);
  VoiceTracks::BtnSuivant_Click(on.station, editor);
  EXPECT_EQ(LastMessage(), VoiceTracks::kNoPlace);
  EXPECT_EQ(editor.Avant, "ADA  SONG");
}

TEST_F(VoiceTrackSitting, WhereTheOpenElementIsGoneTheNextKeyOpensTheFirstJoin) {
  AddThird();
  Open(2);
  on.station.PL.Remove(2);
  on.station.PL.Remove(1);
  AddThird();
  VoiceTracks::BtnSuivant_Click(on.station, editor);
  EXPECT_EQ(editor.Avant, "CY  AIR");
}

TEST_F(VoiceTrackSitting, WhatWasStoredIsUnsavedAgainByAnyChange) {
  VoiceTracks::CheckCut_Click(editor, true);
  EXPECT_FALSE(VoiceTracks::IsUnsaved(editor));  // there is no track yet
  VoiceTracks::CheckCut_Click(editor, false);
  Load(8000);
  const auto saved = [&] {
    VoiceTracks::BtnSave_Click(on.station, editor);
    return !VoiceTracks::IsUnsaved(editor);
  };
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
  EXPECT_TRUE(saved());
  VoiceTracks::LblPositionVT_Change(editor, 170000);
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
  EXPECT_TRUE(saved());
  VoiceTracks::CheckCut_Click(editor, true);
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
  EXPECT_TRUE(saved());
  VoiceTracks::PointSortie_Change(editor, 700);
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
  EXPECT_TRUE(saved());
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(3000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
  EXPECT_TRUE(saved());
  VoiceTracks::BtnRecord_Click(on.station, editor);  // under the same name
  Wait(3000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
}

// The exit point lies at 175 s and the intro takes 12 s.
TEST_F(VoiceTrackSitting, TheTimeToFillReachesFromTheTracksPlaceToTheEndOfTheIntro) {
  EXPECT_EQ(TimeToFillMs(editor), 12000);
  Load(8000);
  EXPECT_EQ(TimeToFillMs(editor), 12000);  // it has no place yet
  VoiceTracks::LblPositionVT_Change(editor, 170000);
  EXPECT_EQ(TimeToFillMs(editor), 17000);
  VoiceTracks::CheckCut_Click(editor, true);
  EXPECT_EQ(TimeToFillMs(editor), std::nullopt);
  Open(2);  // the last one
  EXPECT_EQ(TimeToFillMs(editor), std::nullopt);
}

TEST_F(VoiceTrackSitting, TheCountdownFollowsTheJoinThenTheRecordingAlone) {
  EXPECT_EQ(VoiceTracks::CountdownMs(on.station, editor), std::nullopt);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(4000);
  EXPECT_EQ(VoiceTracks::CountdownMs(on.station, editor), 8000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  VoiceTracks::BtnPplay2_Click(on.station, editor);  // 5 s ahead of the exit point
  Wait(1000);
  EXPECT_NEAR(VoiceTracks::CountdownMs(on.station, editor).value_or(0), 16000, 60);
  Wait(6000);  // 2 s of the element after
  EXPECT_NEAR(VoiceTracks::CountdownMs(on.station, editor).value_or(0), 10000, 110);
  Wait(11000);
  EXPECT_NEAR(VoiceTracks::CountdownMs(on.station, editor).value_or(0), -1000, 110);
}

TEST_F(VoiceTrackSitting, TheJoinFromInsideTheTrackHasItAndTheDuckedMusicUnderWay) {
  Load(8000);
  VoiceTracks::LblPositionVT_Change(editor, 170000);
  editor.CheckTest = true;
  const int64_t begin = on.loop.MonotonicMs();
  VoiceTracks::PlayJoinFrom(on.station, editor, 172000);
  ASSERT_EQ(on.Events("preview").size(), 2U);
  EXPECT_EQ(on.Events("preview")[0]["slot"], "2");
  EXPECT_EQ(on.Events("preview")[0]["position_ms"], "2000");
  EXPECT_EQ(on.Events("preview")[1]["slot"], "0");
  EXPECT_EQ(on.Events("preview")[1]["position_ms"], "172000");
  EXPECT_EQ(on.Events("preview")[1]["volume"], on.SqlText("SELECT VolumeMusiqueSous FROM Cnf"));
  Wait(6200);  // the track ends 6 s later
  const auto told = Join(begin);
  EXPECT_NE(std::find(told.begin(), told.end(), "6000 end 2"), told.end()) << on.Describe();
}

TEST_F(VoiceTrackSitting, TheJoinFromBehindTheExitPointHasTheElementAfterUnderWay) {
  Load(8000);
  VoiceTracks::LblPositionVT_Change(editor, 170000);
  editor.CheckTest = true;
  VoiceTracks::PlayJoinFrom(on.station, editor, 177000);
  ASSERT_EQ(on.Events("preview").size(), 2U) << on.Describe();
  EXPECT_EQ(on.Events("preview")[0]["slot"], "2");
  EXPECT_EQ(on.Events("preview")[0]["position_ms"], "7000");
  EXPECT_EQ(on.Events("preview")[1]["slot"], "1");
  EXPECT_EQ(on.Events("preview")[1]["position_ms"], "2000");
  EXPECT_EQ(on.Events("preview")[1]["volume"], on.SqlText("SELECT VolumeMusiqueSous FROM Cnf"));
  Wait(500);
  EXPECT_EQ(VoiceTracks::HeardAtMs(on.station, editor), 177500);
}

TEST_F(VoiceTrackSitting, BehindTheTrackNothingIsDuckedAndTheTrackDoesNotBeginAgain) {
  Load(2000);
  VoiceTracks::LblPositionVT_Change(editor, 170000);
  editor.CheckTest = true;
  VoiceTracks::PlayJoinFrom(on.station, editor, 173000);
  Wait(1000);
  ASSERT_EQ(on.Events("preview").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("preview")[0]["slot"], "0");
  EXPECT_EQ(on.Events("preview")[0]["volume"], on.SqlText("SELECT VolumeMusique FROM Cnf"));
}

TEST_F(VoiceTrackSitting, ACutJoinFromInsideTheTrackGoesOnToTheElementAfter) {
  Load(8000);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::PointSortie_Change(editor, 1000);
  editor.CheckTest = true;
  VoiceTracks::PlayJoinFrom(on.station, editor, 180000);  // 5 s of the track
  ASSERT_EQ(on.Events("preview").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("preview")[0]["slot"], "2");
  EXPECT_EQ(on.Events("preview")[0]["position_ms"], "5000");
  Wait(2200);  // its exit point comes 2 s later
  ASSERT_EQ(on.Events("preview").size(), 2U) << on.Describe();
  EXPECT_EQ(on.Events("preview")[1]["slot"], "1");
}

// The element before has faded at 176.6 s.
TEST_F(VoiceTrackSitting, WhatIsHeardOfACutJoinGoesOnWithTheTrack) {
  Load(8000);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  Wait(9000);
  EXPECT_NEAR(VoiceTracks::HeardAtMs(on.station, editor).value_or(0), 179000, 60);
}

// The first take begins 3 s after the join did, which is at 173 s.
TEST_F(VoiceTrackSitting, OneMoreTakeBeginsWhereTheFirstOneBeganInTheJoin) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(3000);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 173000 - 2420);
  Wait(4000);
  VoiceTracks::BtnReprise_Click(on.station, editor);
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_EQ(VoiceTracks::HeardAtMs(on.station, editor), 168000);
  Wait(4900);
  EXPECT_FALSE(on.recorder.Recording());
  Wait(150);
  EXPECT_TRUE(on.recorder.Recording());
  EXPECT_NEAR(editor.LblPositionVT, 173000 - 2420, 50);
  Wait(2000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  EXPECT_NEAR(on.recorder.RecordedMs(), 2000, 60);
}

TEST_F(VoiceTrackSitting, ATenthTakeBeginsWhereTheFirstOneDid) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(3010);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  for (int take = 2; take <= 10; ++take) {
    Wait(1000);
    VoiceTracks::BtnReprise_Click(on.station, editor);
    EXPECT_EQ(VoiceTracks::HeardAtMs(on.station, editor), 168010) << take;
    Wait(5060);
    ASSERT_TRUE(on.recorder.Recording()) << take;
  }
}

// A cut track's presenter speaks in the silence: the element before has faded, and no other begins.
TEST_F(VoiceTrackSitting, ATakeOfTheSilenceBehindTheElementBeforeBeginsThereAgain) {
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(20);
  VoiceTracks::BtnPplay2_Click(on.station, editor);  // between two turns: its fade begins late
  Wait(9000);                                        // 175 s and the fade are behind
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1980);
  VoiceTracks::BtnReprise_Click(on.station, editor);  // at a turn: the fade ends where it should
  EXPECT_FALSE(on.recorder.Recording());
  Wait(9000);
  EXPECT_TRUE(on.recorder.Recording());
}

TEST_F(VoiceTrackSitting, ARetakeWhoseInputRefusesIsLoggedAndGivenUp) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(3000);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnReprise_Click(on.station, editor);
  editor.VoiceTrackInputID = 9;
  Wait(8000);
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_EQ(on.Events("error").size(), 1U) << on.Describe();
  editor.VoiceTrackInputID = 0;
  Wait(1000);
  EXPECT_FALSE(on.recorder.Recording()) << "nobody asked for it any more";
}

// It is not heard behind the exit point alone.
TEST_F(VoiceTrackSitting, OneMoreTakeOfOneThatBeganBehindTheExitIsHeardFromAheadOfTheExit) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(7000);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  editor.CheckTest = true;
  VoiceTracks::BtnReprise_Click(on.station, editor);
  EXPECT_FALSE(editor.CheckTest);
  EXPECT_EQ(VoiceTracks::HeardAtMs(on.station, editor), 170000);
}

TEST_F(VoiceTrackSitting, OneMoreTakeOfOneFromTheVeryBeginIsHeardToo) {
  VoiceTracks::PlayJoinFrom(on.station, editor, 0);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnReprise_Click(on.station, editor);
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_EQ(VoiceTracks::HeardAtMs(on.station, editor), 0);
  Wait(100);
  EXPECT_TRUE(on.recorder.Recording());
}

TEST_F(VoiceTrackSitting, WithoutAJoinOneMoreTakeBeginsAtOnce) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(4000);
  VoiceTracks::BtnReprise_Click(on.station, editor);
  EXPECT_TRUE(on.recorder.Recording());
  EXPECT_EQ(on.recorder.RecordedMs(), 0);
}

TEST_F(VoiceTrackSitting, AStopEndsTheWaitForOneMoreTake) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(3000);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnReprise_Click(on.station, editor);
  VoiceTracks::BtnStop_Click(on.station, editor);
  Wait(8000);
  EXPECT_FALSE(on.recorder.Recording());
}

TEST(JoinPlan, ATrackThatIsAnElementOfItsOwnStandsBetweenTheOthers) {
  VoiceTrackEditor editor;
  editor.FileAvant = editor.FileApres = editor.FileVoiceTrack = "x.wav";
  editor.beforeLengthMs = 60000;
  editor.PS1 = 4000;
  editor.trackLengthMs = 9000;
  editor.PointSortie = 1500;
  editor.LblIntro = 7;
  editor.LblPositionVT = 50000;
  JoinPlan plan = PlanOf(editor, 3000);
  EXPECT_EQ(plan.exitMs, 56000);
  EXPECT_EQ(plan.beforeToMs, 59000);
  EXPECT_EQ(plan.trackFromMs, 50000);
  EXPECT_EQ(plan.trackToMs, 59000);
  EXPECT_EQ(plan.afterFromMs, 56000);
  EXPECT_EQ(plan.introToMs, 63000);
  EXPECT_TRUE(plan.ducks);
  editor.CheckCut = true;
  plan = PlanOf(editor, 9000);
  EXPECT_EQ(plan.beforeToMs, 60000);  // its file ends there
  EXPECT_EQ(plan.trackFromMs, 56000);
  EXPECT_EQ(plan.trackToMs, 65000);
  EXPECT_EQ(plan.afterFromMs, 63500);
  EXPECT_EQ(plan.introToMs, 70500);
  EXPECT_FALSE(plan.ducks);
  editor.PointSortie = 99000;  // more than there is of it
  EXPECT_EQ(PlanOf(editor, 9000).afterFromMs, 56000);
}

TEST(JoinPlan, APlaceThatNoElementHasCannotOverflow) {
  VoiceTrackEditor editor;
  editor.FileAvant = editor.FileVoiceTrack = "x.wav";
  editor.trackLengthMs = 9000;
  editor.LblPositionVT = std::numeric_limits<int32_t>::max();
  const JoinPlan plan = PlanOf(editor, 0);
  EXPECT_GT(plan.trackToMs, plan.trackFromMs);
}

}  // namespace
}  // namespace zemo
