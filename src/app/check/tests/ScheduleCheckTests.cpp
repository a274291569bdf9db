// Models, stored lists and settings.
#include "app/check/tests/CheckedStation.h"

namespace zemo {
namespace {

using ScheduleCheck = CheckedStation;

TEST_F(ScheduleCheck, ADayWithoutAModelIsNamed) {
  Sql("DELETE FROM Models WHERE JOUR = 3");
  EXPECT_EQ(Found(), Lines{"model: Wednesday: the model is empty"});
}

// The base's own default, 9000 s.
TEST_F(ScheduleCheck, ACycleThatRestartsTheOutputIsToldWithItsCost) {
  Sql("UPDATE Cnf SET CycleMaxi = 9000000");
  EXPECT_EQ(
      Found(),
      Lines{"settings: CycleMaxi: restarts the output every 02 h 30, which costs up to 2 s of "
            "air each time; this output needs none: at 2147483647 one comes in 24 days "
            "(warning)"});
}

TEST_F(ScheduleCheck, BuffersThatReachTooFarAreTold) {
  Sql("UPDATE Cnf SET NbrBuffers = 3000");
  EXPECT_EQ(Found(), Lines{"settings: NbrBuffers: 3000 buffers of 4096 bytes are 60 s: 10 s is the "
                           "most (500 buffers) (warning)"});
}

TEST_F(ScheduleCheck, HoursWithoutAGenreAreNamed) {
  Sql("UPDATE Models SET TRANCHE04 = 0, TRANCHE23 = 0 WHERE JOUR = 7");
  EXPECT_EQ(Found(), Lines{"model: Sunday: no genre in the hours 04, 23"});
}

TEST_F(ScheduleCheck, AModelWhoseGenresHaveNoNameFillsNothing) {
  Sql("UPDATE Models SET GENRE = ' ' WHERE JOUR = 1; UPDATE Models SET TRANCHE00 = 100 WHERE JOUR "
      "= 1");
  const Lines lines = Found();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].rfind("model: Monday: no genre in the hours 00, 01,", 0), 0U) << lines[0];
}

TEST_F(ScheduleCheck, SkeletonsAreLookedAtWhereTheyAreInUse) {
  Sql("DELETE FROM Models");
  EXPECT_EQ(Found(), Lines{"model: Models: no model is defined, so that no request finds music"});
  Sql("UPDATE Cnf SET Squelette = -1");
  EXPECT_EQ(Found(),
            Lines{"model: ModelSquelette: no model is defined, so that no request finds music"});
}

TEST_F(ScheduleCheck, AListRowWhoseRecordIsGoneIsNamed) {
  Sql("DELETE FROM Discotheque WHERE CODE = 3; DELETE FROM Models WHERE GENRE = 'GOLD N-1'");
  const Lines lines = Found();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].rfind("list: 1 Demo, row ", 0), 0U) << lines[0];
  EXPECT_NE(lines[0].find("points to record 3 of Discotheque, which is gone"), std::string::npos);
}

TEST_F(ScheduleCheck, EachKindOfListRowIsLookedUpInItsOwnTable) {
  Sql("DELETE FROM Pls; INSERT INTO Pls(CODE, NUMPLS, DISCOTHEQUE, FICHE) VALUES (101, 1, -1, 99), "
      "(102, 1, -2, 98), (103, 1, -4, 97), (104, 1, -5, 96), (105, 1, -30, 95), (106, 1, -6, -6), "
      "(107, 1, -7, 1), (108, 1, 2, 2)");
  EXPECT_EQ(
      Found(),
      (Lines{"list: 1 Demo, row 101: points to record 99 of DiscothequeJingle, which is gone",
             "list: 1 Demo, row 102: points to record 98 of GrillePub, which is gone",
             "list: 1 Demo, row 103: points to record 97 of GrillePub, which is gone",
             "list: 1 Demo, row 104: points to record 96 of DiscothequeVirgule, which is gone",
             "list: 1 Demo, row 105: points to record 95 of VT, which is gone",
             "list: 1 Demo, row 107: has the unknown kind -7"}));
}

TEST_F(ScheduleCheck, RowsOfNoListAndListsOfNoRowAreWarnings) {
  Sql("INSERT INTO Playlist(LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES ('24/12/2026', '18:30', "
      "'Noël', 0); "
      "DELETE FROM Pls; INSERT INTO Pls(CODE, NUMPLS, DISCOTHEQUE, FICHE) VALUES (201, 1, 1, 1), "
      "(202, 9, 1, 1)");
  EXPECT_EQ(Found(), (Lines{"list: row 202: belongs to list 9, which is gone (warning)",
                            "list: 2 Noël: is empty (warning)"}));
}

TEST_F(ScheduleCheck, ListsThatNeverStartAreWarnings) {
  Sql("UPDATE Playlist SET LHEURE = '25:00'");
  EXPECT_EQ(Found(),
            Lines{"list: 1 Demo: its time \"25:00\" is none, so that it never starts (warning)"});
  Sql("UPDATE Playlist SET LADATE = 'JJ/MM/ANNE', LHEURE = 'hh:mn'");
  EXPECT_EQ(Found(), Lines{}) << "a list kept without a moment";
}

TEST_F(ScheduleCheck, TwoListsOfOneMinuteAreAWarning) {
  Sql("INSERT INTO Playlist(LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES ('JOURNALIER', '00:00', "
      "'Minuit', 0); "
      "INSERT INTO Pls(NUMPLS, DISCOTHEQUE, FICHE) VALUES (2, 1, 1)");
  EXPECT_EQ(Found(), Lines{"list: 2 Minuit: is due at the same minute as 1 Demo (warning)"});
}

TEST_F(ScheduleCheck, AVarietyWithoutAShareIsAWarning) {
  Sql("UPDATE Variete SET POURCENT = 0 WHERE VARIETE = 'NATIONAL'");
  EXPECT_EQ(
      Found(),
      Lines{"variety: NATIONAL: has no share, which ends a request at its first title (warning)"});
}

}  // namespace
}  // namespace zemo
