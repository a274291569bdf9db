// A base whose columns are not what they should be - renamed, gone, of another type, without their
// rules - plays on, and says once by name what it lacks.
#include <gtest/gtest.h>

#include "scenario/EmergencyStation.h"
#include "station/TextForms.h"
#include "store/Schema.h"
#include "support/Cases.h"

namespace zemo::test {
namespace {

constexpr int64_t kDamagedRunMs = 5 * 60000;
using Strings = std::vector<std::string>;

// A library of titles of one minute that a request of the models finds, each artist another; a
// request reaches two minutes ahead, so that the run hears several of them.
void AddLibrary(EmergencyStation& on) {
  on.MakeModels();
  on.Set("TempRequette", "2");
  for (int i = 1; i <= 12; ++i)
    on.AddCard({.lengthMs = 60000,
                .artist = "ARTIST " + std::to_string(i),
                .title = "TITLE " + std::to_string(i)});
}

class DamagedColumns : public testing::Test {
 protected:
  struct Heard {
    size_t titles = 0;
    int64_t silenceMs = 0;
    std::vector<std::string> faults;  // of the error log
    std::string all;
  };

  static Heard Play(const std::vector<std::string>& damage) {
    EmergencyStation on;
    AddLibrary(on);
    for (const std::string& statement : damage) on.Sql(statement);
    on.Load();
    on.Start();
    on.RunUntil(kDamagedRunMs);
    Heard heard{on.Starts().size(), on.LongestSilenceMs(kDamagedRunMs), {}, on.Describe()};
    for (const Seen& one : on.Events("error")) heard.faults.push_back(one["text"]);
    return heard;
  }
  static std::string Renamed(const std::string& table, const std::string& column) {
    return "ALTER TABLE " + table + " RENAME COLUMN " + column + " TO \"X_" + column + '"';
  }
  static std::string Gone(const std::string& table, const std::string& column) {
    return table + " has no column " + column +
           (column == "CODE" ? ": the numbers of its rows are read" : ": read as by default");
  }
  // A title gives way to the next after 58.4 s: the sixth begins at 292 s.
  static void ExpectAir(const Heard& heard) {
    EXPECT_GE(heard.titles, 5U) << heard.all;
    EXPECT_LE(heard.silenceMs, 200) << heard.all;
  }
};

TEST_F(DamagedColumns, AWholeBaseHasNothingToTell) {
  const Heard heard = Play({});
  ExpectAir(heard);
  EXPECT_TRUE(heard.faults.empty()) << heard.all;
}

// Without the file there is nothing to play, without the genre nothing that the models ask for.
TEST_F(DamagedColumns, OneRenamedInTheLibraryLosesWhatNeedsItAloneAndIsToldOnce) {
  for (const Field& field : Cases(FindSchemaTable("Discotheque")->Fields)) {
    if (field.Name == "FILENAME" || field.Name == "GENRE") continue;
    SCOPED_TRACE(field.Name);
    const Heard heard = Play({Renamed("Discotheque", field.Name)});
    ExpectAir(heard);
    EXPECT_EQ(heard.faults, std::vector<std::string>{Gone("Discotheque", field.Name)});
  }
}

TEST_F(DamagedColumns, ALibraryWithoutFilesIsToldAndDoesNotFillTheLog) {
  for (const char* column : {"FILENAME", "GENRE"}) {
    const Heard heard = Play({Renamed("Discotheque", column)});
    ASSERT_FALSE(heard.faults.empty()) << column;
    EXPECT_EQ(heard.faults.front(), Gone("Discotheque", column));
    EXPECT_LE(heard.faults.size(), 2U) << heard.all;
  }
}

TEST_F(DamagedColumns, OneRenamedInAnyOtherTableStopsNoMusic) {
  for (const TableDef& table : SchemaTables()) {
    if (table.Name == "Discotheque" || table.Name == "Cnf" || table.Name == "Models") continue;
    for (const Field& field : Cases(table.Fields)) {
      SCOPED_TRACE(table.Name + "." + field.Name);
      const Heard heard = Play({Renamed(table.Name, field.Name)});
      ExpectAir(heard);
      ASSERT_FALSE(heard.faults.empty());
      EXPECT_EQ(heard.faults[0], Gone(table.Name, field.Name));
      // The purge of the report needs its moments: guessed ones would cost rows.
      const bool purge = field.Name == "DATENUM";
      ASSERT_EQ(heard.faults.size(), purge ? 2U : 1U) << heard.all;
      if (purge) {
        EXPECT_TRUE(heard.faults[1].starts_with("no such column: DATENUM"));
      }
    }
  }
}

// What the report lacks is left out of its rows, and the rows are written.
TEST_F(DamagedColumns, ARowOfTheReportIsWrittenWithoutTheColumnThatIsGone) {
  EmergencyStation on;
  on.MakeModels();
  on.AddCard({.lengthMs = 60000, .artist = "ARTIST", .title = "TITLE"});
  on.Sql(Renamed("Rapport", "GENRE"));
  on.Sql(Renamed("Rapport", "LABEL"));
  on.Load();
  on.Start();
  on.RunUntil(10000);
  EXPECT_EQ(on.SqlText("SELECT LADATE || '|' || AUTEUR || '|' || TITRE || '|' || VARIETE || '|' || "
                       "coalesce(\"X_GENRE\", 'NULL') FROM Rapport"),
            "21/11/2026|ARTIST|TITLE|NATIONAL|NULL")
      << on.Describe();
}

// A model's row is made of them: its day, its genre and its hour (12 h on a Saturday).
TEST_F(DamagedColumns, AModelWithoutAnHourStopsNoOtherHour) {
  for (const Field& field : Cases(FindSchemaTable("Models")->Fields)) {
    if (field.Name == "JOUR" || field.Name == "GENRE" || field.Name == "TRANCHE12") continue;
    SCOPED_TRACE(field.Name);
    const Heard heard = Play({Renamed("Models", field.Name)});
    ExpectAir(heard);
    EXPECT_EQ(heard.faults, std::vector<std::string>{Gone("Models", field.Name)});
  }
}

// Settings are known by their place: a name alone changes nothing.
TEST_F(DamagedColumns, ASettingOfAnotherNameKeepsItsPlace) {
  for (const Field& field : Cases(FindSchemaTable("Cnf")->Fields)) {
    SCOPED_TRACE(field.Name);
    const Heard heard = Play({Renamed("Cnf", field.Name)});
    ExpectAir(heard);
    EXPECT_EQ(heard.faults, std::vector<std::string>{"Cnf has no column " + field.Name + ": X_" +
                                                     field.Name + " is read in its place"});
  }
}

std::vector<std::string> MadeByAnotherTool(const std::string& table) {
  return {"CREATE TABLE Copy AS SELECT * FROM " + table, "DROP TABLE " + table,
          "ALTER TABLE Copy RENAME TO " + table};
}

TEST_F(DamagedColumns, TablesWithoutKeysTypesAndRulesPlay) {
  ON_FILES_ALONE("a server's table has a column that numbers its rows");
  for (const TableDef& table : SchemaTables()) {
    SCOPED_TRACE(table.Name);
    const Heard heard = Play(MadeByAnotherTool(table.Name));
    ExpectAir(heard);
    for (const std::string& fault : heard.faults)
      EXPECT_EQ(fault, table.Name + ".CODE is no key: new rows get the next number");
  }
}

TEST_F(DamagedColumns, NumbersKeptAsTextAndTextsKeptAsNumbersAreRead) {
  ON_FILES_ALONE("the types are told in SQLite's words");
  const Heard heard = Play(
      {"ALTER TABLE Discotheque RENAME COLUMN DUREE TO X_DUREE",
       "ALTER TABLE Discotheque ADD COLUMN DUREE VARCHAR(12)",
       "UPDATE Discotheque SET DUREE = X_DUREE", "ALTER TABLE Discotheque DROP COLUMN X_DUREE",
       "DROP INDEX \"Discotheque.Titre\"", "ALTER TABLE Discotheque RENAME COLUMN TITRE TO X_TITRE",
       "ALTER TABLE Discotheque ADD COLUMN TITRE REAL", "UPDATE Discotheque SET TITRE = CODE",
       "ALTER TABLE Discotheque DROP COLUMN X_TITRE"});
  ExpectAir(heard);
  EXPECT_EQ(heard.faults,
            (std::vector<std::string>{"Discotheque.DUREE is of type VARCHAR(12): read as a number",
                                      "Discotheque.TITRE is of type REAL: read as a text"}));
}

// An upgrade that cannot finish leaves the old table, which lacks a field of today.
TEST_F(DamagedColumns, ATableThatCannotBeMadeAnewIsReadAsItIs) {
  for (const auto& [table, column] : {std::pair{"Discotheque", "MMJJFin"},
                                      {"Cnf", "OutExtrait"},
                                      {"GrillePub", "GENREASSOCIE"},
                                      {"DiscothequeJingle", "MMJJFin"},
                                      {"DiscothequeVirgule", "LASTDIFF"},
                                      {"Toph", "JourSemaine"}}) {
    SCOPED_TRACE(table);
    const Heard heard = Play({std::string("ALTER TABLE ") + table + " DROP COLUMN " + column,
                              "CREATE TABLE TBTEMP (A TEXT)"});
    ExpectAir(heard);
    EXPECT_EQ(heard.faults,
              (std::vector<std::string>{std::string("table TBTEMP exists already - ") + table,
                                        Gone(table, column)}));
  }
}

// The settings behind it move up by one place.
TEST_F(DamagedColumns, SettingsThatCannotBeMadeAnewAreReadByTheirNames) {
  EmergencyStation on;
  on.Set("TempRequette", "17");
  on.Sql("ALTER TABLE Cnf DROP COLUMN PmixPubs");
  on.Sql("CREATE TABLE TBTEMP (A TEXT)");
  on.Load();
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kPmixDef), 1600);
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kPmixPubs), 500);
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kTempRequette), 17);
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kOutExtrait), 16);
}

// --- another program changes the base that is on air ---

class ColumnsLostOnAir : public testing::Test {
 protected:
  void SetUp() override { AddLibrary(on); }
  void PlayThrough(const std::string& change) {
    on.Load();
    on.Start();
    on.RunUntil(30000);
    on.Sql(change);
    on.RunUntil(kDamagedRunMs);
    for (const Seen& one : on.Events("error")) faults.push_back(one["text"]);
  }
  // The sixth title begins at 292 s.
  void ExpectAirAndItsRows() {
    EXPECT_EQ(on.Starts().size(), 6U) << on.Describe();
    EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "6") << on.Describe();
    EXPECT_LE(on.LongestSilenceMs(kDamagedRunMs), 200) << on.Describe();
  }
  EmergencyStation on;
  std::vector<std::string> faults;  // of the error log
};

TEST_F(ColumnsLostOnAir, OneOfTheLibraryIsReadByDefaultAndToldOnce) {
  PlayThrough("ALTER TABLE Discotheque DROP COLUMN DIFFUSION01");
  ExpectAirAndItsRows();
  EXPECT_EQ(faults, Strings{"Discotheque has no column DIFFUSION01: read as by default"});
}

TEST_F(ColumnsLostOnAir, OneOfTheReportCostsNoRow) {
  PlayThrough("ALTER TABLE Rapport DROP COLUMN LABEL");
  ExpectAirAndItsRows();
  EXPECT_EQ(faults, Strings{"Rapport has no column LABEL: read as by default"});
}

// At no moment is a setting read from its neighbour's place.
TEST_F(ColumnsLostOnAir, SettingsBehindOneThatIsGoneKeepTheirValues) {
  PlayThrough("ALTER TABLE Cnf DROP COLUMN PmixPubs");
  ExpectAirAndItsRows();
  EXPECT_EQ(faults, Strings{"Cnf has no column PmixPubs: read as by default"});
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kPmixPubs), 500);
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kTempRequette), 2);
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kOutExtrait), 16);
}

TEST_F(ColumnsLostOnAir, SettingsAreNotReadFromTheirNeighboursBeforeTheBaseIsLookedAt) {
  on.Load();
  on.station.base.CheckCnf();
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kTempRequette), 2);
  on.Sql("ALTER TABLE Cnf DROP COLUMN PmixPubs");
  on.station.base.CheckCnf();
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kTempRequette), 2);
}

// What was told of other tables is not told again.
TEST_F(ColumnsLostOnAir, WhatWasLostBeforeIsNotToldAgain) {
  on.Sql("ALTER TABLE Discotheque RENAME COLUMN COMMENTAIRE TO X_COMMENTAIRE");
  PlayThrough("ALTER TABLE Rapport DROP COLUMN LABEL");
  EXPECT_EQ(faults, (Strings{"Discotheque has no column COMMENTAIRE: read as by default",
                             "Rapport has no column LABEL: read as by default"}));
}

}  // namespace
}  // namespace zemo::test
