// What was measured of sound files: found again while the file is the same, in a base that stays a
// station's base.
#include "store/DatabaseFiles.h"
#include "store/Schema.h"
#include "store/SoundMeasuresTable.h"
#include "store/StationFile.h"
#include "store/StructureUpgrade.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

constexpr SoundFileStamp kStamp{5'000'000'000, 1'795'000'000'123};  // above 4 GB

SoundMeasures Measured(double lufs, double peakDb) {
  SoundMeasures measures;
  measures.lengthMs = 215000;
  measures.loudnessLufs = lufs;
  measures.truePeakDb = peakDb;
  measures.soundBeginMs = 120;
  measures.soundEndMs = 214500;
  measures.exitMs = 3200;
  return measures;
}

class SoundMeasuresTable : public OpenBaseTest {
 protected:
  SoundMeasuresTable() : other(BasePath()) {}

  std::optional<SoundMeasures> Find(const std::string& path, SoundFileStamp stamp = kStamp) {
    return FindMeasures(Db(), path, stamp);
  }
  // NaN for what is not found.
  double LufsOf(const std::string& path, SoundFileStamp stamp = kStamp) {
    const auto found = Find(path, stamp);
    return found ? found->loudnessLufs.value_or(NAN) : NAN;
  }

  OtherProgram other;
};

TEST_F(SoundMeasuresTable, IsNoneOfTheThirteenAndIsMadeWhenTheFirstFileWasMeasured) {
  EXPECT_EQ(FindSchemaTable("Mesures"), nullptr);
  EXPECT_EQ(Db().Tables().Count(), 13);
  EXPECT_EQ(Find("/a.wav"), std::nullopt);
  EXPECT_EQ(Db().Tables().Count(), 13) << "a look makes nothing";
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -0.5));
  EXPECT_EQ(Db().Tables().Count(), 14);
  EXPECT_EQ(other.Rows("SELECT name FROM pragma_table_info('Mesures')"),
            (Strings{"CHEMIN", "TAILLE", "MODIFIE", "DUREE", "LUFS", "DBTP", "DEBUT", "FIN",
                     "POINTSORTIE"}));
}

TEST_F(SoundMeasuresTable, GivesBackWhatWasStored) {
  StoreMeasures(*base, "D:\\Musique\\Été.mp3", kStamp, Measured(-9.25, 0.5));
  const auto found = Find("D:\\Musique\\Été.mp3");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->lengthMs, 215000);
  EXPECT_EQ(found->loudnessLufs, -9.25);
  EXPECT_EQ(found->truePeakDb, 0.5);
  EXPECT_EQ(found->soundBeginMs, 120);
  EXPECT_EQ(found->soundEndMs, 214500);
  EXPECT_EQ(found->exitMs, 3200);
}

TEST_F(SoundMeasuresTable, SilenceHasNeitherLoudnessNorPeak) {
  StoreMeasures(*base, "/a.wav", kStamp, SoundMeasures{});
  const auto found = Find("/a.wav");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->loudnessLufs, std::nullopt);
  EXPECT_EQ(found->truePeakDb, std::nullopt);
}

TEST_F(SoundMeasuresTable, AFileOfAnotherSizeOrTimeIsNotTheOneThatWasMeasured) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  EXPECT_EQ(Find("/a.wav", {kStamp.sizeBytes + 1, kStamp.changedMs}), std::nullopt);
  EXPECT_EQ(Find("/a.wav", {kStamp.sizeBytes, kStamp.changedMs - 1}), std::nullopt);
  EXPECT_EQ(Find("/b.wav"), std::nullopt);
}

TEST_F(SoundMeasuresTable, AFileThatWasMeasuredAgainHasOneRow) {
  const SoundFileStamp later{kStamp.sizeBytes, kStamp.changedMs + 5};
  for (const std::string path : {"/a.wav", "/Été.wav"}) {
    StoreMeasures(*base, path, kStamp, Measured(-9, -1));
    StoreMeasures(*base, path, later, Measured(-11, -2));
    EXPECT_TRUE(std::isnan(LufsOf(path)));
    EXPECT_EQ(LufsOf(path, later), -11);
  }
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM Mesures"), "2");
}

// Files of this system are others where a letter is.
TEST_F(SoundMeasuresTable, PathsThatDifferInCaseAloneAreTwoFiles) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  StoreMeasures(*base, "/A.wav", kStamp, Measured(-12, -1));
  StoreMeasures(*base, "/é.wav", kStamp, Measured(-13, -1));
  StoreMeasures(*base, "/É.wav", kStamp, Measured(-14, -1));
  StoreMeasures(*base, "/A.wav", kStamp, Measured(-15, -1));
  EXPECT_EQ(LufsOf("/a.wav"), -9);
  EXPECT_EQ(LufsOf("/A.wav"), -15);
  EXPECT_EQ(LufsOf("/é.wav"), -13);
  EXPECT_EQ(LufsOf("/É.wav"), -14);
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM Mesures"), "4");
}

TEST_F(SoundMeasuresTable, ValuesThatNoSoundHasAreNone) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  for (const char* lufs : {"-70.1", "31.1", "9e999", "-9e999"}) {
    other.Do("UPDATE Mesures SET DBTP = -1, LUFS = " + std::string(lufs));
    EXPECT_EQ(Find("/a.wav"), std::nullopt) << lufs;
  }
  for (const char* peak : {"-151", "30.1", "9e999"}) {
    other.Do("UPDATE Mesures SET LUFS = -9, DBTP = " + std::string(peak));
    EXPECT_EQ(Find("/a.wav"), std::nullopt) << peak;
  }
  other.Do("UPDATE Mesures SET LUFS = -70, DBTP = 30");
  EXPECT_NE(Find("/a.wav"), std::nullopt);
}

// Samples at the highest level that a decoder gives, 24.1 dB above full scale.
TEST_F(SoundMeasuresTable, AFileThatIsFarTooLoudIsMeasuredOnceAsAnyOther) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(21.4, 29.5));
  EXPECT_EQ(LufsOf("/a.wav"), 21.4);
}

TEST_F(SoundMeasuresTable, ASoundThatWouldBeLouderThanItsPeakAllowsIsNone) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -16));
  EXPECT_EQ(LufsOf("/a.wav"), -9);
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -16.1));
  EXPECT_EQ(Find("/a.wav"), std::nullopt);
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-70, -150));  // 54 dB of gain to -16 LUFS
  EXPECT_EQ(Find("/a.wav"), std::nullopt);
}

TEST_F(SoundMeasuresTable, AWordInPlaceOfANumberIsNoMeasureOf0) {
  for (const char* column : {"LUFS", "DBTP"}) {
    StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
    other.Do("UPDATE Mesures SET " + std::string(column) + " = 'loud'");
    EXPECT_EQ(Find("/a.wav"), std::nullopt) << column;
    StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
    other.Do("UPDATE Mesures SET " + std::string(column) + " = x'ff00'");
    EXPECT_EQ(Find("/a.wav"), std::nullopt) << column;
  }
}

TEST_F(SoundMeasuresTable, TimesThatNoCardHoldsAreNone) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  for (const char* fault :
       {"POINTSORTIE = 32768", "POINTSORTIE = -1", "DUREE = -1", "DEBUT = -1", "FIN = -5"}) {
    StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
    other.Do("UPDATE Mesures SET " + std::string(fault));
    EXPECT_EQ(Find("/a.wav"), std::nullopt) << fault;
  }
  other.Do("UPDATE Mesures SET FIN = 214500, POINTSORTIE = 32767");
  EXPECT_NE(Find("/a.wav"), std::nullopt);
}

TEST_F(SoundMeasuresTable, IsFoundByAnIndex) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  const auto plan = other.Rows(
      "EXPLAIN QUERY PLAN SELECT CHEMIN FROM Mesures WHERE TAILLE = 1 AND MODIFIE = 2 ORDER BY "
      "rowid");
  ASSERT_FALSE(plan.empty());
  EXPECT_NE(plan[0].find("SEARCH Mesures USING INDEX Mesures.Taille"), std::string::npos)
      << plan[0];
}

// Another tool dropped a column: the table of cards is read through a stand-in.
TEST_F(SoundMeasuresTable, MakingItLeavesTheOtherTablesReadable) {
  AddCard("A");
  other.Do("ALTER TABLE Discotheque DROP COLUMN ANNEE");
  base->OpenAllTables();
  ASSERT_EQ(Column("SELECT ANNEE FROM Discotheque", "ANNEE"), Strings{""});
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  EXPECT_EQ(Column("SELECT ANNEE FROM Discotheque", "ANNEE"), Strings{""});
  EXPECT_FALSE(Db().Tables().ChangedSinceStandIns());
  EXPECT_EQ(LufsOf("/a.wav"), -9);
}

TEST_F(SoundMeasuresTable, ALockedBaseIsToldAndLeavesTheOtherTablesReadable) {
  AddCard("A");
  other.Do("ALTER TABLE Discotheque DROP COLUMN ANNEE");
  base->OpenAllTables();
  other.Do("BEGIN IMMEDIATE");
  base->Waiting().LetAllWait(0);
  EXPECT_EQ(ErrorOf([&] { StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1)); }), kErrLocked);
  EXPECT_EQ(Column("SELECT ANNEE FROM Discotheque", "ANNEE"), Strings{""});
  other.Do("COMMIT; BEGIN EXCLUSIVE");
  EXPECT_EQ(ErrorOf([&] { Find("/a.wav"); }), kErrLocked);
}

TEST_F(SoundMeasuresTable, ABaseWithItIsAWholeBaseAndItsCopyHasTheRows) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  for (const CheckedTable& table : kCheckedTables) EXPECT_FALSE(NeedsRebuild(*base, table));
  base->Close();
  DBEngine::RepairDatabase(BasePath());
  DBEngine::CompactDatabase(BasePath(), PathOf("copy"));
  EXPECT_EQ(WhyNoStationBase(PathOf("copy")), "");
  std::filesystem::rename(PathOf("copy"), BasePath());
  base = StartBase();
  EXPECT_EQ(LufsOf("/a.wav"), -9);
  EXPECT_EQ(base->Gaps(), Strings{});
}

// The settings field that went is looked for in the first table of the catalogue.
TEST_F(SoundMeasuresTable, AnUpgradeOfEveryTableLeavesItsRows) {
  StoreMeasures(*base, "/a.wav", kStamp, Measured(-9, -1));
  for (const CheckedTable& table : kCheckedTables) {
    RebuildTable(*base, table);
    EXPECT_EQ(LufsOf("/a.wav"), -9) << table.name;
  }
  EXPECT_EQ(Db().Tables().Item(0).Name, "Cnf");
  EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
}

}  // namespace
}  // namespace zemo
