// Voice tracks that do not stand where they were made for.
#include "app/check/tests/CheckedStation.h"

namespace zemo {
namespace {

class VoiceTrackCheck : public CheckedStation {
 protected:
  // List 1 is title 1, the track, title 2; the track was made for just that.
  VoiceTrackCheck() {
    Sql("DELETE FROM Pls; INSERT INTO VT(FILENAME, START, LIBELLE, DUREE, CUT, POINTSORTIE) SELECT "
        "FILENAME, 1000, '', DUREE, 0, 0 FROM Discotheque WHERE CODE = 3; INSERT INTO Pls(CODE, "
        "NUMPLS, DISCOTHEQUE, FICHE) VALUES (101, 1, 1, 1), (102, 1, -30, 1), (103, 1, 2, 2);"
        "CREATE TABLE Raccords(VT INTEGER, FICHIERAVANT TEXT, DUREEAVANT INTEGER, PSAVANT INTEGER, "
        "FICHIERAPRES TEXT, INTROAPRES INTEGER); INSERT INTO Raccords SELECT 1, a.FILENAME, "
        "a.DUREE, a.POINTSORTIE, b.FILENAME, b.INTRO FROM Discotheque a, Discotheque b WHERE "
        "a.CODE "
        "= 1 AND b.CODE = 2");
  }
};

constexpr char kTrack[] = "voicetrack: 1 in list 1 Demo: ";

TEST_F(VoiceTrackCheck, OneThatStandsWhereItWasMadeForIsNoFinding) {
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(VoiceTrackCheck, OneOfWhichNothingIsKnownIsNoFinding) {
  Sql("DELETE FROM Raccords; UPDATE Pls SET FICHE = 3, DISCOTHEQUE = 3 WHERE CODE = 101");
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(VoiceTrackCheck, AnotherElementBeforeOrNoneIsNamed) {
  Sql("UPDATE Raccords SET FICHIERAVANT = '/old.mp3'");
  EXPECT_EQ(Found(),
            Lines{kTrack + ("was made to follow /old.mp3 and follows " + Title1()) + " (warning)"});
  Sql("DELETE FROM Pls WHERE CODE = 101");
  EXPECT_EQ(Found(), Lines{std::string(kTrack) +
                           "was made to follow /old.mp3 and follows nothing (warning)"});
}

TEST_F(VoiceTrackCheck, AnotherElementBehindOrNoneIsNamed) {
  Sql("UPDATE Raccords SET FICHIERAPRES = '/old.mp3'; UPDATE Pls SET FICHE = 1, DISCOTHEQUE = 1 "
      "WHERE CODE = 103");
  EXPECT_EQ(Found(), Lines{kTrack + ("was made to lead into /old.mp3 and leads into " + Title1()) +
                           " (warning)"});
  Sql("DELETE FROM Pls WHERE CODE = 103");
  EXPECT_EQ(Found(), Lines{std::string(kTrack) +
                           "was made to lead into /old.mp3 and leads into nothing (warning)"});
}

TEST_F(VoiceTrackCheck, AChangedLengthExitPointOrIntroIsNamed) {
  const std::string before =
      kTrack + ("was made for another length or exit point of " + Title1()) + " (warning)";
  Sql("UPDATE Raccords SET PSAVANT = PSAVANT + 1");
  EXPECT_EQ(Found(), Lines{before});
  Sql("UPDATE Raccords SET PSAVANT = PSAVANT - 1, DUREEAVANT = DUREEAVANT - 1");
  EXPECT_EQ(Found(), Lines{before});
  Sql("UPDATE Raccords SET DUREEAVANT = DUREEAVANT + 1, INTROAPRES = INTROAPRES + 1");
  const Lines lines = Found();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].rfind(kTrack + std::string("was made for another intro of "), 0), 0U)
      << lines[0];
}

TEST_F(VoiceTrackCheck, ARecordWithoutASoundIsAFaultOnlyInAList) {
  Sql("INSERT INTO VT(FILENAME, START, LIBELLE, DUREE) VALUES ('', 0, '', 0)");
  EXPECT_EQ(Found(), Lines{}) << "left by an editor that was opened and closed";
  Sql("INSERT INTO Pls(CODE, NUMPLS, DISCOTHEQUE, FICHE) VALUES (104, 1, -30, 2)");
  EXPECT_EQ(Found(), Lines{"voicetrack: 2 in list 1 Demo: was never recorded"});
}

TEST_F(VoiceTrackCheck, ATableThatCannotBeReadHidesNothingElse) {
  Sql("DROP TABLE Raccords; CREATE TABLE Raccords(X); UPDATE Pls SET FICHE = 99 WHERE CODE = 103; "
      "UPDATE Playlist SET LHEURE = '25:00'");
  const Lines lines = Found();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[2].rfind("voicetrack: Raccords: ", 0), 0U) << lines[2];
}

}  // namespace
}  // namespace zemo
