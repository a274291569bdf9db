// Where the track stands: its place by the intro, its record and its row.
#include "voicetrack/JoinPlan.h"
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

using VoiceTrackPlace = VoiceTrackFixture;

// 175 s is the exit of the element before; the intro takes 12 s.
TEST_F(VoiceTrackPlace, TheTrackIsPlacedSoThatItEndsWithTheIntro) {
  Load(20000);
  VoiceTracks::CmdVTToIntro_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 175000 - 8000);
  EXPECT_EQ(LastMessage(), "Voice Track recalé sur intro");
  EXPECT_EQ(on.Events("message").back()["title"], "Alerte");
}

TEST_F(VoiceTrackPlace, OnlyATrackLongerThanTheIntroByLessThan30SecondsFits) {
  const std::string refused =
      "Action impossible car\r\nle Voice Track est plus court que l'intro\r\nou le Voice Track est "
      "trop long";
  editor.LblPositionVT = 5;
  for (const int length : {12000, 42000}) {
    Load(length, "refused" + std::to_string(length) + ".wav");
    VoiceTracks::CmdVTToIntro_Click(on.station, editor);
    EXPECT_EQ(LastMessage(), refused) << length;
    EXPECT_EQ(editor.LblPositionVT, 5);
  }
  for (const auto& [length, place] : {std::pair(12001, 174999), std::pair(41999, 145001)}) {
    Load(length, "fits" + std::to_string(length) + ".wav");
    VoiceTracks::CmdVTToIntro_Click(on.station, editor);
    EXPECT_EQ(editor.LblPositionVT, place);
  }
}

TEST_F(VoiceTrackPlace, AnExitPointAtOrPastTheEndBecomesASecondWhenTheTestIsTicked) {
  Load(4000);
  for (const auto& [given, becomes] :
       {std::pair(3999, 3999), std::pair(4000, 1000), std::pair(5000, 1000)}) {
    VoiceTracks::PointSortie_Change(editor, given);
    VoiceTracks::CheckTest_Click(on.station, editor, true);
    EXPECT_EQ(editor.PointSortie, becomes);
  }
  EXPECT_EQ(editor.LblPS, "1.0");
}

TEST_F(VoiceTrackPlace, WithoutAFileNothingIsSaved) {
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.station.PL.Count(), 2);
  EXPECT_TRUE(on.Events("message").empty());
}

TEST_F(VoiceTrackPlace, ATrackThatSpeaksOverGoesBetweenItsNeighboursWithAllItsColumns) {
  const std::string file = Load(8000);
  VoiceTracks::LblPositionVT_Change(editor, 170500);
  VoiceTracks::BtnSave_Click(on.station, editor);
  ASSERT_EQ(on.station.PL.Count(), 3);
  const Cells row = ColumnsOf(on.station.PL.Row(2));
  EXPECT_EQ(row[Col::kTitle], "Voice Track");
  EXPECT_EQ(row[Col::kSecond], "1");
  EXPECT_EQ(row[Col::kLength], "00:08");
  EXPECT_EQ(row[Col::kGenre], "Voice Track");
  EXPECT_EQ(row[Col::kFile], file);
  EXPECT_EQ(row[Col::kCode], "-30");
  EXPECT_EQ(row[Col::kLengthMs], "0");
  EXPECT_EQ(row[Col::kExitMs], "");
  EXPECT_EQ(row[Col::kIntro], "170500");
  EXPECT_EQ(on.SqlText("SELECT FILENAME FROM VT WHERE CODE = 1"), file);
  EXPECT_EQ(on.SqlText("SELECT START FROM VT WHERE CODE = 1"), "170500");
  EXPECT_EQ(on.SqlText("SELECT DUREE FROM VT WHERE CODE = 1"), "8000");
  EXPECT_EQ(on.SqlText("SELECT CUT FROM VT WHERE CODE = 1"), "0");
}

TEST_F(VoiceTrackPlace, SavedASecondTimeTheTrackRewritesItsOwnRow) {
  Load(8000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::PointSortie_Change(editor, 500);
  VoiceTracks::BtnSave_Click(on.station, editor);
  ASSERT_EQ(on.station.PL.Count(), 3);
  const Cells row = ColumnsOf(on.station.PL.Row(2));
  EXPECT_EQ(row[Col::kTitle], "Voice Track Cut");
  EXPECT_EQ(row[Col::kLengthMs], "8000");
  EXPECT_EQ(row[Col::kExitMs], "500");
  EXPECT_EQ(row[Col::kIntro], "");
  EXPECT_EQ(on.SqlText("SELECT CUT FROM VT WHERE CODE = 1"), "-1");
  EXPECT_EQ(on.SqlText("SELECT POINTSORTIE FROM VT WHERE CODE = 1"), "500");
}

TEST_F(VoiceTrackPlace, WhatSomebodyElseStoredOfItStaysBesideWhatWasChangedHere) {
  Load(8000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  on.Sql("UPDATE VT SET POINTSORTIE = 700");
  VoiceTracks::LblPositionVT_Change(editor, 1234);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT POINTSORTIE FROM VT"), "700");
  EXPECT_EQ(on.SqlText("SELECT START FROM VT"), "1234");
  EXPECT_EQ(editor.LblPS, "0.7");
  EXPECT_TRUE(on.Events("message").empty());
}

TEST_F(VoiceTrackPlace, APlaceThatSomebodyElseChangedTooIsAskedFor) {
  Load(8000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  on.Sql("UPDATE VT SET START = 700");
  VoiceTracks::LblPositionVT_Change(editor, 1234);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT START FROM VT"), "700");
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
  on.messages.AnswerNext(Answer::kYes);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT START FROM VT"), "1234");
}

TEST_F(VoiceTrackPlace, OpenedOnItsRowATrackIsAsItWasSaved) {
  const std::string file = Load(8000);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::PointSortie_Change(editor, 500);
  VoiceTracks::LblPositionVT_Change(editor, 1234);
  VoiceTracks::BtnSave_Click(on.station, editor);
  Open(2);
  EXPECT_EQ(editor.Avant, "ADA  SONG");
  EXPECT_EQ(editor.Apres, "BOB  TUNE");
  EXPECT_EQ(editor.FileVoiceTrack, file);
  EXPECT_EQ(editor.LblCodeVT, 1);
  EXPECT_EQ(editor.LblPositionVT, 1234);
  EXPECT_EQ(editor.LblPS, "0.5");
  EXPECT_TRUE(editor.CheckCut);
  EXPECT_EQ(editor.LblTimeVT, "00:08");
  EXPECT_TRUE(editor.CheckTestEnabled);
  EXPECT_TRUE(editor.BtnPlay1Enabled);
  VoiceTracks::CheckCut_Click(editor, false);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.station.PL.Count(), 3);
  EXPECT_EQ(Cell(2, Col::kTitle), "Voice Track");
}

TEST_F(VoiceTrackPlace, BlanksAroundTheStoredFileAreNoneOfItsName) {
  Load(8000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  on.Sql("UPDATE VT SET FILENAME = '  /a b.wav '");
  Open(2);
  EXPECT_EQ(editor.FileVoiceTrack, "/a b.wav");
}

// Of 8 s, which brings the title after in half a second ahead of its end.
TEST_F(VoiceTrackPlace, ACutTrackMovesThePlanOfWhatFollows) {
  Load(8000);
  const double before = on.station.PL.Row(2).plannedMs.value_or(0);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::PointSortie_Change(editor, 500);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.station.PL.Row(3).plannedMs.value_or(0) - before, 7500);
}

// At 12:00 the first title begins, at 12:02:55 the last, which takes 200 s.
TEST_F(VoiceTrackPlace, BehindTheLastTitleTheTrackIsPlannedForTheTitlesEnd) {
  on.station.PL.Row(2).plannedMs = (12 * 3600 + 175) * 1000.0;
  Open(2);
  EXPECT_EQ(editor.Diffusion, "Broadcasting at 12 h 06 ' 15");
}

TEST_F(VoiceTrackPlace, ANewRowGoesBehindTheElementBeforeWhereverThatIsNow) {
  Load(8000);
  OnAir::PL_DragDrop(on.station, 2, 1);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(Cell(1, Col::kTitle), "BOB");
  EXPECT_EQ(Cell(2, Col::kTitle), "ADA");
  EXPECT_EQ(Cell(3, Col::kTitle), "Voice Track");
}

TEST_F(VoiceTrackPlace, WhereTheElementBeforeIsGoneNothingChangesAndThatIsSaid) {
  Load(8000);
  OnAir::PL_RightClick(on.station, 1);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.station.PL.Count(), 1);
  EXPECT_EQ(LastMessage(),
            "L'élément précédent n'est plus dans la liste :\r\nle Voice Track n'est pas "
            "enregistré");
  EXPECT_EQ(on.SqlText("SELECT DUREE FROM VT WHERE CODE = 1"), "0");
}

TEST_F(VoiceTrackPlace, AFileThatAnotherProgramShortenedIsSavedWithItsLengthOfNow) {
  const std::string file = Load(8000);
  on.MakeFile("link.wav", "a shorter sound");
  on.opener.lengthsMs[file] = 6000;
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT DUREE FROM VT WHERE CODE = 1"), "6000");
}

TEST_F(VoiceTrackPlace, AFileThatAnotherProgramShortenedIsPlacedByItsLengthOfNow) {
  const std::string file = Load(20000);
  on.MakeFile("link.wav", "a shorter sound");
  on.opener.lengthsMs[file] = 16000;
  VoiceTracks::CmdVTToIntro_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 175000 - 4000);
  EXPECT_EQ(editor.LblTimeVT, "00:16");
  on.MakeFile("link.wav", "a sound that is shorter still");
  on.opener.lengthsMs[file] = 8000;
  VoiceTracks::PointSortie_Change(editor, 9000);
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  EXPECT_EQ(editor.PointSortie, 1000);
}

TEST_F(VoiceTrackPlace, ARecordThatIsGoneIsWrittenAnew) {
  Load(8000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  on.Sql("DELETE FROM VT");
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT DUREE FROM VT WHERE CODE = 1"), "8000");
  EXPECT_EQ(on.station.PL.Count(), 3);
}

// Of a base that another program wrote: no number makes a place that no day has.
TEST_F(VoiceTrackPlace, ARecordOfImpossibleNumbersOpensWithinADay) {
  constexpr int32_t kDayMs = 86400000;
  Load(8000);
  VoiceTracks::CheckCut_Click(editor, true);
  VoiceTracks::BtnSave_Click(on.station, editor);
  const auto numbers = [&](const std::string& ms, const std::string& seconds) {
    on.Sql("UPDATE VT SET START = " + ms + ", POINTSORTIE = " + ms);
    on.station.PL.Row(1).exitMs = std::stoll(ms);
    on.station.PL.Row(3).introSec = std::stoll(seconds);
    Open(2);
    VoiceTracks::CheckCut_Click(editor, false);
    return PlanOf(editor, 1600);
  };
  JoinPlan plan = numbers("2147483647", "9000000000");
  EXPECT_EQ(editor.LblPositionVT, kDayMs);
  EXPECT_EQ(editor.PointSortie, kDayMs);
  EXPECT_EQ(plan.exitMs, 180000 - kDayMs);
  EXPECT_EQ(plan.trackToMs, kDayMs + 8000);
  EXPECT_EQ(plan.introToMs, 180000);
  plan = numbers("-2147483648", "-9000000000");
  EXPECT_EQ(editor.LblPositionVT, -kDayMs);
  EXPECT_EQ(editor.PointSortie, 0);
  EXPECT_EQ(plan.exitMs, 180000 - 1600);  // the station's own
  EXPECT_EQ(plan.introToMs, 180000 - 1600);
}

TEST_F(VoiceTrackPlace, SavedWhileItRecordsTheTrackHasTheLengthUpToNow) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(2000);
  on.opener.lengthsMs[OwnFile()] = 2000;
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT DUREE FROM VT WHERE CODE = 1"), "2000");
}

}  // namespace
}  // namespace zemo
