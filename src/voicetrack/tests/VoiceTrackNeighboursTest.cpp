// What a track was recorded between: kept when it is saved, compared where it stands, told when it
// airs over another element.
#include "engine/StoredPlaylists.h"
#include "library/TrackNeighboursTable.h"
#include "store/Database.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"
#include "support/BaseFaults.h"
#include "voicetrack/TrackJoins.h"
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

struct VoiceTrackNeighbours : VoiceTrackFixture {
  void Save() {
    Load(5000);
    VoiceTracks::LblPositionVT_Change(editor, 100000);
    VoiceTracks::BtnSave_Click(on.station, editor);
    ASSERT_EQ(on.station.PL.Count(), 3);
  }
  NeighbourFault Fault() {
    for (int row = 1; row <= on.station.PL.Count(); ++row)
      if (on.station.PL.Row(row).voiceTrack != 0) return FaultOfRow(on.station.PL, row);
    ADD_FAILURE() << "no track";
    return NeighbourFault::kNone;
  }
  // What the log tells of tracks.
  std::vector<std::string> ToldOfTracks() {
    std::vector<std::string> told;
    for (const std::string& text : on.LoggedTexts())
      if (const size_t at = text.find("voice track "); at != std::string::npos)
        told.push_back(text.substr(at));
    return told;
  }
  void StoreAndLoad() {
    OnAir::ComboPLS_Change(on.station, "SHOW");
    ASSERT_TRUE(OnAir::BtnSauve_Click(on.station));
    const int32_t code = on.station.storedList.LblCodePL;
    OnAir::BtnNew_Click(on.station);
    ASSERT_TRUE(OnAir::SelectStoredList(on.station, code));
  }
};

TEST_F(VoiceTrackNeighbours, AreKeptInATableThatTheFirstSavingMakes) {
  Database& db = on.station.base.Db();
  EXPECT_FALSE(db.Tables().Has("Raccords"));
  EXPECT_EQ(FindNeighbours(db, 1), std::nullopt);
  const std::string before = on.station.PL.Row(1).file, after = on.station.PL.Row(2).file;
  Save();
  const auto kept = FindNeighbours(db, editor.LblCodeVT);
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->fileBefore, before);
  EXPECT_EQ(kept->lengthBeforeMs, 180000);
  EXPECT_EQ(kept->exitBeforeMs, 5000);
  EXPECT_EQ(kept->fileAfter, after);
  EXPECT_EQ(kept->introAfterSec, 12);
  EXPECT_EQ(on.station.PL.Row(2).madeFor, kept);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Raccords"), "1") << "saved again, kept once";
}

TEST_F(VoiceTrackNeighbours, ATrackStandsWellWhereItWasMade) {
  Save();
  EXPECT_EQ(Fault(), NeighbourFault::kNone);
  StoreAndLoad();
  EXPECT_EQ(Fault(), NeighbourFault::kNone);
}

TEST_F(VoiceTrackNeighbours, AnotherElementBeforeOrNoneIsTheFirstFault) {
  Save();
  on.station.PL.Remove(1);
  EXPECT_EQ(Fault(), NeighbourFault::kNone) << "before the first row stands what is on the air";
  OnAirElement jingle;
  jingle.file = "/jingle.wav";
  on.station.PL.Insert(1, jingle);
  EXPECT_EQ(Fault(), NeighbourFault::kOtherBefore);
}

TEST_F(VoiceTrackNeighbours, AnotherLengthOrExitPointBeforeIsAChange) {
  Save();
  on.station.PL.Row(1).exitMs = 4999;
  EXPECT_EQ(Fault(), NeighbourFault::kChangedBefore);
  on.station.PL.Row(1).exitMs = 5000;
  on.station.PL.Row(1).lengthMs = 180001;
  EXPECT_EQ(Fault(), NeighbourFault::kChangedBefore);
}

TEST_F(VoiceTrackNeighbours, AnotherElementBehindNoneOrAnotherIntroIsAFault) {
  Save();
  on.station.PL.Row(3).introSec = 11;
  EXPECT_EQ(Fault(), NeighbourFault::kChangedAfter);
  on.station.PL.Row(3).file = "/other.wav";
  EXPECT_EQ(Fault(), NeighbourFault::kOtherAfter);
  on.station.PL.Remove(3);
  EXPECT_EQ(Fault(), NeighbourFault::kOtherAfter);
}

TEST_F(VoiceTrackNeighbours, ATrackOfWhichNothingIsKnownHasNoFault) {
  Save();
  on.Sql("DELETE FROM Raccords");
  StoreAndLoad();
  on.station.PL.Row(1).file = "/other.wav";
  EXPECT_EQ(Fault(), NeighbourFault::kNone);
}

TEST_F(VoiceTrackNeighbours, OpenedAndSavedInItsNewPlaceATrackIsMadeForThat) {
  Save();
  on.station.PL.Row(1).exitMs = 4000;
  ASSERT_EQ(Fault(), NeighbourFault::kChangedBefore);
  Open(2);
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_EQ(Fault(), NeighbourFault::kNone);
}

TEST_F(VoiceTrackNeighbours, WhereTheirTableIsDamagedTheTrackStaysInItsList) {
  Save();
  on.Sql("DROP TABLE Raccords");
  on.Sql("CREATE TABLE Raccords(X)");
  StoreAndLoad();
  ASSERT_EQ(on.station.PL.Count(), 3);
  EXPECT_EQ(on.station.PL.Row(2).madeFor, std::nullopt);
  Open(2);
  VoiceTracks::LblPositionVT_Change(editor, 90000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  ASSERT_EQ(on.station.PL.Count(), 3);
  EXPECT_EQ(Cell(2, Col::kIntro), "90000");
}

// Nothing that the presenter could do would store them.
TEST_F(VoiceTrackNeighbours, WhereTheyCannotBeKeptTheTrackIsStoredAllTheSame) {
  on.Sql("CREATE TABLE Raccords(X)");
  Save();
  EXPECT_FALSE(VoiceTracks::IsUnsaved(editor));
  EXPECT_NE(on.First("error", "where", "BtnSave"), nullptr);
  on.AppendCard(on.AddCard({.artist = "CY", .title = "AIR"}));
  VoiceTracks::BtnSuivant_Click(on.station, editor);
  EXPECT_EQ(editor.Avant, "BOB  TUNE");
}

struct FaultsFirst {
  test::BaseFaults base;  // ahead of the station, whose base it may fail
};
struct LockedNeighbours : FaultsFirst, VoiceTrackNeighbours {};

// A list would be loaded as if its tracks were made for nothing.
TEST_F(LockedNeighbours, AreNotTakenForNone) {
  Save();
  base.Arm(test::BasePoint::kLockToRead, test::BaseFault::kLocked);
  EXPECT_THROW(FindNeighbours(on.station.base.Db(), 1), StoreError);
  base.Disarm();
  EXPECT_TRUE(FindNeighbours(on.station.base.Db(), 1));
}

// Whoever asked for the editor sees no window, but why.
TEST_F(LockedNeighbours, KeepTheEditorClosedAndThePresenterIsToldWhy) {
  VoiceTracks::Form_Unload(on.station, editor);
  base.Arm(test::BasePoint::kLockToWrite, test::BaseFault::kLocked);
  VoiceTracks::Open(on.station, editor, 1);
  EXPECT_FALSE(editor.open);
  EXPECT_EQ(LastMessage().rfind("Le Voice Track n'a pas pu être ouvert :\r\n", 0), 0U)
      << LastMessage();
  base.Disarm();
  VoiceTracks::Open(on.station, editor, 1);
  EXPECT_TRUE(editor.open);
}

TEST_F(LockedNeighbours, AreStoredByTheNextSaving) {
  Save();
  on.Sql("DELETE FROM Raccords");
  VoiceTracks::LblPositionVT_Change(editor, 90000);
  base.Arm(test::BasePoint::kLockToWrite, test::BaseFault::kLocked, 2);  // behind the record
  VoiceTracks::BtnSave_Click(on.station, editor);
  base.Disarm();
  EXPECT_EQ(on.SqlText("SELECT START FROM VT"), "90000");
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
  VoiceTracks::BtnSave_Click(on.station, editor);
  EXPECT_FALSE(VoiceTracks::IsUnsaved(editor));
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Raccords"), "1");
}

// Two machines that saved at the same moment.
TEST_F(VoiceTrackNeighbours, OfARecordThatIsThereTwiceTheOneThatIsSavedCounts) {
  Save();
  on.Sql(
      "INSERT INTO Raccords(VT, FICHIERAVANT, DUREEAVANT, PSAVANT, FICHIERAPRES, INTROAPRES) "
      "VALUES(1, '/other.wav', 1, 1, '/another.wav', 1)");
  VoiceTracks::LblPositionVT_Change(editor, 90000);
  VoiceTracks::BtnSave_Click(on.station, editor);
  StoreAndLoad();
  EXPECT_EQ(Fault(), NeighbourFault::kNone);
}

TEST_F(VoiceTrackNeighbours, OverItsOwnElementATrackAirsWithoutAWord) {
  Save();
  on.Start();
  Wait(120000);
  ASSERT_NE(on.First("overlay", "reason", "voicetrack"), nullptr);
  EXPECT_TRUE(ToldOfTracks().empty());
}

TEST_F(VoiceTrackNeighbours, OverAnotherElementATrackAirsWithALineInTheLog) {
  const std::string made = on.station.PL.Row(1).file, other = on.station.PL.Row(2).file;
  Save();
  on.station.PL.Remove(1);
  on.station.PL.SwapElements(1, 2);
  on.Start();
  Wait(130000);
  ASSERT_NE(on.First("overlay", "reason", "voicetrack"), nullptr) << "it airs all the same";
  EXPECT_EQ(ToldOfTracks(),
            std::vector{"voice track 1 was made for " + made + " and airs over " + other});
}

// Armed at half of its title, which is ended ahead of the track's moment: the title behind it is
// long enough to come there before it has let the track go.
TEST_F(VoiceTrackNeighbours, OverTheElementThatFollowsItsOwnATrackAirsWithALineInTheLog) {
  const std::string made = on.station.PL.Row(1).file;
  Save();
  on.station.PL.Remove(3);
  on.AppendCard(on.AddCard({.lengthMs = 600000}));
  const std::string other = on.station.PL.Row(3).file;
  on.Start();
  Wait(95000);
  ASSERT_EQ(on.station.engine.VoiceTrackState, -1);
  EXPECT_TRUE(ToldOfTracks().empty()) << "it may still air where it belongs";
  OnAir::CmdStop_Click(on.station);
  Wait(110000);
  ASSERT_NE(on.First("overlay", "reason", "voicetrack"), nullptr);
  EXPECT_EQ(ToldOfTracks(),
            std::vector{"voice track 1 was made for " + made + " and airs over " + other});
}

}  // namespace
}  // namespace zemo
