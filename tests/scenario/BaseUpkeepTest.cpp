// The base at a start: what an older version left is brought up to date, and once a month it is
// repaired and compacted.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

#include "engine/BaseMaintenance.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "platform/BaseUse.h"
#include "settings/SettingsCouplings.h"
#include "station/BaseCompaction.h"
#include "store/DatabaseFiles.h"
#include "store/SoundMeasuresTable.h"
#include "store/TableDefs.h"
#include "support/SomebodyElse.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr char kThisMonth[] = "03/11/2026 08:00:00";  // stations begin on 21/11/2026
constexpr char kLastMonth[] = "30/10/2026 08:00:00";

class Upkeep : public testing::Test {
 protected:
  // A base of the present structure, closed, with its compaction of this month done.
  Upkeep() {
    on.Load();
    on.station.platform.baseUse = &somebody;
    on.localValues.Set("LastCompactage", kThisMonth);
    on.stationFolder.Remove("Triskin.BAK");
  }
  // The program ends and is started anew.
  void StartAgain() {
    EndInOrder(Running());
    on.seen.clear();
    again = std::make_unique<Station>(on.station.platform);
    again->events.SetSink(&*sink);
    ASSERT_TRUE(OnAir::Form_Load(*again));
    OnAir::Form_Activate(*again, true);
  }
  Station& Running() { return again ? *again : on.station; }

  // Events of the program that was started anew.
  struct Sink : EventSink {
    std::vector<std::string> base, messages, errors;
    void OnEvent(const Event& event) override {
      const auto text = [&event](size_t member) {
        return std::get<std::string>(event.members[member].second);
      };
      if (event.name == "base") {
        base.push_back(text(0));
        if (event.members.size() > 1) base.back() += " " + text(1);
      }
      if (event.name == "message") messages.push_back(text(0) + "|" + text(1));
      if (event.name == "error") errors.push_back(text(0) + ": " + text(2));
    }
  };
  using Lines = std::vector<std::string>;

  TestStation on;
  SomebodyElse somebody;
  std::unique_ptr<Sink> sink = std::make_unique<Sink>();
  std::unique_ptr<Station> again;
};

// --- structure ---

TEST_F(Upkeep, AFullBaseOfThePresentStructureIsOnlyOpened) {
  StartAgain();
  EXPECT_EQ(sink->base, Lines{"opened"});
  EXPECT_EQ(sink->messages, Lines{});
  EXPECT_EQ(sink->errors, Lines{});
}

TEST_F(Upkeep, WhatWasMeasuredOutlivesUpgradeAndCompactionWithoutAWord) {
  ON_FILES_ALONE("a compaction makes another file");
  StoreMeasures(on.station.base, "/a.wav", {5, 7}, {.lengthMs = 1234});
  on.Sql("ALTER TABLE Cnf DROP COLUMN OutExtrait");
  on.Sql("ALTER TABLE Discotheque DROP COLUMN MMJJFin");
  on.localValues.Set("LastCompactage", kLastMonth);
  StartAgain();
  EXPECT_EQ(sink->base, (Lines{"opened", "rebuilt Cnf", "rebuilt Discotheque", "compacted"}));
  EXPECT_EQ(sink->errors, Lines{});
  const auto found = FindMeasures(again->base.Db(), "/a.wav", {5, 7});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->lengthMs, 1234);
}

TEST_F(Upkeep, TablesOfAnOlderVersionAreMadeAnewInTheirOrderAndEachIsTold) {
  on.Sql("UPDATE Cnf SET PmixDef = 2222");
  on.Sql("INSERT INTO DiscothequeJingle(LIBELLE) VALUES('J')");
  on.Sql("ALTER TABLE GrillePub DROP COLUMN GENREASSOCIE");
  on.Sql("ALTER TABLE Discotheque DROP COLUMN MMJJFin");
  on.Sql("ALTER TABLE DiscothequeVirgule DROP COLUMN JingleRacro");
  on.Sql("ALTER TABLE Toph DROP COLUMN JourSemaine");
  on.Sql("ALTER TABLE DiscothequeJingle DROP COLUMN AUTEURCOMPOSITEUR");
  on.Sql("ALTER TABLE Cnf DROP COLUMN OutExtrait");
  StartAgain();
  EXPECT_EQ(sink->base,
            (Lines{"opened", "rebuilt Cnf", "rebuilt DiscothequeJingle", "rebuilt Toph",
                   "rebuilt DiscothequeVirgule", "rebuilt Discotheque", "rebuilt GrillePub"}));
  EXPECT_EQ(on.messages.LastIcon(), Icon::kInformation);
  EXPECT_EQ(again->base.CnfInt(Cnf::kPmixDef), 2222);
  EXPECT_EQ(again->base.CnfInt(Cnf::kOutExtrait), 16);
  EXPECT_EQ(on.SqlText("SELECT AUTEURCOMPOSITEUR FROM DiscothequeJingle"), "x");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Toph WHERE JourSemaine = 'XXXXXXX'"), "24");
  EXPECT_EQ(sink->errors, Lines{});
}

TEST_F(Upkeep, TheMessagesStandUnderAnEmptyTitleInTheOrderOfTheTables) {
  on.Sql("ALTER TABLE Discotheque DROP COLUMN MMJJFin");
  on.Sql("ALTER TABLE Cnf DROP COLUMN OutExtrait");
  on.messages.shown = [this](const std::string& title, const std::string& text, Buttons buttons,
                             Answer) {
    EXPECT_EQ(buttons, Buttons::kOk);
    sink->messages.push_back(title + "|" + text);
  };
  StartAgain();
  EXPECT_EQ(sink->messages,
            (Lines{"|Mise à jour de la table des paramètres effectuée avec succès",
                   "|Mise à jour de la table des discotheque music effectuée avec succès"}));
}

TEST_F(Upkeep, AProductionMachineMakesTablesAnewAsWell) {
  on.Sql("ALTER TABLE Toph DROP COLUMN JourSemaine");
  on.machineFolder.Write("NoRapport.txt", "");
  StartAgain();
  EXPECT_EQ(sink->base, (Lines{"opened", "rebuilt Toph"}));
}

// Such a machine creates no table, so that one may be missing.
TEST_F(Upkeep, AMissingTableHidesNoneThatWasMadeAnew) {
  on.Sql("ALTER TABLE Toph DROP COLUMN JourSemaine");
  on.Sql("DROP TABLE VT");
  on.machineFolder.Write("NoRapport.txt", "");
  StartAgain();
  EXPECT_EQ(sink->base, (Lines{"opened", "rebuilt Toph"}));
}

TEST_F(Upkeep, TheOldSettingGoesWithoutAWordWhenTheCountIsRightWithoutIt) {
  // The field that came after it in time stands behind it in the row.
  on.Sql("ALTER TABLE Cnf RENAME COLUMN JingleExtraitYN TO JingleExtrait");
  on.Sql("ALTER TABLE Cnf ADD COLUMN LATER SMALLINT");
  StartAgain();
  EXPECT_EQ(sink->base, Lines{"opened"});
  EXPECT_EQ(again->base.Db().Tables().Item("Cnf").FindField("JingleExtrait"), nullptr);
}

TEST_F(Upkeep, ATempTableIsLoggedAndTheStationGoesOnAirWithItsOldTable) {
  on.Sql("ALTER TABLE Toph DROP COLUMN JourSemaine");
  on.Sql("ALTER TABLE GrillePub DROP COLUMN GENREASSOCIE");
  on.Sql("CREATE TABLE TBTEMP (A TEXT)");
  on.Sql("INSERT INTO Toph(FICHIER, SURIMPRESSION, HEURE) VALUES('', 0, 24)");
  on.localValues.Set("AutoPlay", "1");
  StartAgain();
  EXPECT_EQ(sink->errors, (Lines{"RebuildTable: table TBTEMP exists already - Toph",
                                 "RebuildTable: table TBTEMP exists already - GrillePub",
                                 "OpenAllTables: GrillePub has no column GENREASSOCIE: read as by "
                                 "default",
                                 "OpenAllTables: Toph has no column JourSemaine: read as by "
                                 "default"}));
  EXPECT_EQ(sink->base, Lines{"opened"});
  EXPECT_EQ(again->base.CountRecords("Toph"), 25);
  EXPECT_TRUE(again->engine.IsRunning);
}

// --- compaction ---

TEST_F(Upkeep, TheFirstStartOfAMonthCompactsOnceAndTheSecondOfThatDayDoesNot) {
  ON_FILES_ALONE("a compaction makes another file");
  on.localValues.Set("LastCompactage", kLastMonth);
  on.AddCard({});
  StartAgain();
  EXPECT_EQ(sink->base, (Lines{"opened", "compacted"}));
  EXPECT_EQ(on.localValues.GetText("LastCompactage", ""), "21/11/2026 12:00:00");
  EXPECT_TRUE(on.stationFolder.Exists("Triskin.BAK"));
  EXPECT_FALSE(on.stationFolder.Exists("TriskinN.MDB"));
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque"), "1");
  EXPECT_EQ(again->base.CountRecords("Discotheque"), 1);
  sink->base.clear();
  StartAgain();
  EXPECT_EQ(sink->base, Lines{"opened"});
}

// Another program's connection, as it has been open since before: what it reads of the base.
class LongOpen {
 public:
  explicit LongOpen(const std::string& path) {
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    EXPECT_EQ(Cards(), SQLITE_OK);
  }
  ~LongOpen() { sqlite3_close(db_); }
  LongOpen(const LongOpen&) = delete;
  LongOpen& operator=(const LongOpen&) = delete;
  int Cards() const {
    return sqlite3_exec(db_, "SELECT COUNT(*) FROM Discotheque", nullptr, nullptr, nullptr);
  }

 private:
  sqlite3* db_ = nullptr;
};

// To it the file beside the base is the journal of the old one: it would play it back, and take it
// from the base that is being written.
TEST_F(Upkeep, WhoStillHasTheOldFileFindsItLockedAndLeavesTheJournalOfTheNewOne) {
  ON_FILES_ALONE("a compaction makes another file");
  on.AddCard({});
  const std::string& path = on.station.base.Path();
  const LongOpen other(path);
  ASSERT_TRUE(CompactStationBase(on.station)) << on.Describe();
  Database& db = on.station.base.Db();
  {
    const Transaction undone(db);
    db.Execute("UPDATE Discotheque SET TITRE = 'HALF'");
    ASSERT_TRUE(std::filesystem::exists(path + "-journal"));
    EXPECT_EQ(other.Cards(), SQLITE_BUSY);
    EXPECT_TRUE(std::filesystem::exists(path + "-journal"));
  }
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque WHERE TITRE = 'HALF'"), "0");
  EXPECT_EQ(LongOpen(path).Cards(), SQLITE_OK);
}

TEST_F(Upkeep, TheSameMonthOfAnotherYearIsTheSameMonth) {
  ON_FILES_ALONE("a compaction makes another file");
  on.localValues.Set("LastCompactage", "21/11/2020 12:00:00");
  StartAgain();
  EXPECT_EQ(sink->base, Lines{"opened"});
}

TEST_F(Upkeep, WhatTheLastCompactionLeftAndALockFileOfTheCopyGo) {
  ON_FILES_ALONE("a compaction makes another file");
  on.localValues.Set("LastCompactage", kLastMonth);
  on.MakeFile("Triskin.BAK", "the month before");
  on.MakeFile("TRISKINN.MDB", "half a copy");
  on.MakeFile("triskinn.ldb", "");
  StartAgain();
  EXPECT_EQ(sink->base, (Lines{"opened", "compacted"}));
  EXPECT_NE(*on.stationFolder.Read("Triskin.BAK"), "the month before");
  EXPECT_FALSE(on.stationFolder.Exists("TriskinN.MDB"));
  EXPECT_FALSE(on.stationFolder.Exists("TriskinN.LDB"));
}

TEST_F(Upkeep, ABaseOfAnotherSpellingKeepsItsName) {
  ON_FILES_ALONE("a compaction makes another file");
  EndInOrder(on.station);
  std::filesystem::rename(on.station.base.Path(), on.stationDir.Path() + "/triskin.mdb");
  on.localValues.Set("LastCompactage", kLastMonth);
  Station other(on.station.platform);
  other.events.SetSink(&*sink);
  ASSERT_TRUE(OnAir::Form_Load(other));
  EXPECT_EQ(sink->base, (Lines{"opened", "compacted"}));
  EXPECT_TRUE(std::filesystem::exists(on.stationDir.Path() + "/triskin.mdb"));
  EXPECT_FALSE(std::filesystem::exists(on.stationDir.Path() + "/Triskin.MDB"));
}

TEST_F(Upkeep, ACompactionWhileAnotherHasTheBaseIsPutOffAndStaysDue) {
  ON_FILES_ALONE("a compaction makes another file");
  on.localValues.Set("LastCompactage", kLastMonth);
  on.AddCard({});
  const std::string before = *on.stationFolder.Read("Triskin.MDB");
  somebody.there = true;
  StartAgain();
  EXPECT_EQ(sink->base, Lines{"opened"});
  EXPECT_EQ(sink->errors,
            Lines{"CompactageTriskin: " + again->base.Path() + " is open in another program"});
  EXPECT_EQ(on.localValues.GetText("LastCompactage", ""), kLastMonth);
  EXPECT_TRUE(*on.stationFolder.Read("Triskin.MDB") == before);
  EXPECT_TRUE(again->base.IsOpen());
}

// Each operation on the station's files fails once: the base is whole and open each time.
TEST_F(Upkeep, AFaultAtAnyStepOfACompactionLeavesAWholeBaseOpen) {
  ON_FILES_ALONE("a compaction makes another file");
  on.AddCard({});
  for (int n = 1;; ++n) {
    on.stationFolder.fault = {n, 0, nullptr};
    const bool done = CompactStationBase(on.station);
    const bool reached = on.stationFolder.fault.count >= n;
    on.stationFolder.fault = {};
    ASSERT_TRUE(on.station.base.IsOpen()) << "fault " << n << "\n" << on.Describe();
    EXPECT_EQ(on.station.base.CountRecords("Discotheque"), 1) << n;
    EXPECT_EQ(on.SqlText("PRAGMA integrity_check"), "ok") << n;
    EXPECT_FALSE(on.stationFolder.Exists("TriskinN.MDB")) << n;
    if (!reached) {
      EXPECT_TRUE(done);
      EXPECT_GT(n, 6);
      break;
    }
  }
}

TEST_F(Upkeep, ACopyThatCannotBeRemovedLeavesTheOldBaseOpen) {
  ON_FILES_ALONE("a compaction makes another file");
  on.AddCard({});
  std::filesystem::create_directory(on.stationDir.Path() + "/TriskinN.MDB");
  EXPECT_FALSE(CompactStationBase(on.station));
  EXPECT_TRUE(on.station.base.IsOpen());
  EXPECT_EQ(on.station.base.CountRecords("Discotheque"), 1);
  EXPECT_EQ(on.Events("error").size(), 1U) << on.Describe();
}

TEST_F(Upkeep, ALockFileOfTheCopyThatStaysIsNoFaultOfTheCompaction) {
  ON_FILES_ALONE("a compaction makes another file");
  on.AddCard({});
  std::filesystem::create_directory(on.stationDir.Path() + "/TriskinN.LDB");
  EXPECT_TRUE(CompactStationBase(on.station));
  EXPECT_TRUE(on.station.base.IsOpen());
  EXPECT_NE(on.First("base", "state", "compacted"), nullptr) << on.Describe();
  EXPECT_EQ(on.Events("error").size(), 0U) << on.Describe();
}

TEST_F(Upkeep, ABaseMadeInThePlaceOfALostOneDoesNotCostTheBackupOfTheLostOne) {
  ON_FILES_ALONE("a compaction makes another file");
  on.AddCard({});
  EndInOrder(on.station);
  on.stationFolder.Rename("Triskin.MDB", "Triskin.BAK");
  const std::string backup = *on.stationFolder.Read("Triskin.BAK");
  on.localValues.Set("LastCompactage", kLastMonth);
  StartAgain();
  EXPECT_EQ(sink->base, (Lines{"created", "compacted"}));
  EXPECT_EQ(again->base.CountRecords("Discotheque"), 0);
  const auto kept = on.stationFolder.Read("Triskin 2026-11-21 120000.BAK");
  ASSERT_TRUE(kept);
  EXPECT_TRUE(*kept == backup);
  EXPECT_EQ(sink->errors,
            Lines{"OpenOrCreateDatabase: Triskin.MDB was missing or empty: it is made "
                  "anew, and Triskin.BAK is kept as Triskin 2026-11-21 120000.BAK"});
}

TEST_F(Upkeep, TheCopyOfACompactionStandsInForALostBaseBeforeADroppedOne) {
  ON_FILES_ALONE("a compaction makes another file");
  on.AddCard({});
  EndInOrder(on.station);
  const std::string folder = on.stationDir.Path();
  std::filesystem::copy_file(folder + "/Triskin.MDB", folder + "/New.mdb");
  DBEngine::ExecuteNative(folder + "/New.mdb", "DELETE FROM Discotheque");
  on.stationFolder.Rename("Triskin.MDB", "TriskinN.MDB");
  StartAgain();
  EXPECT_EQ(again->base.CountRecords("Discotheque"), 1);
  EXPECT_TRUE(on.stationFolder.Exists("New.mdb"));
}

TEST_F(Upkeep, ADamagedBaseIsNotReplacedByACompaction) {
  ON_FILES_ALONE("a compaction makes another file");
  for (int i = 0; i < 200; ++i) on.AddCard({.file = "x", .comment = std::string(500, 'c')});
  EndInOrder(on.station);
  std::string bytes = *on.stationFolder.Read("Triskin.MDB");
  const size_t page = 4096;
  bytes.replace(bytes.size() - 10 * page, 6 * page, std::string(6 * page, '\x55'));
  on.MakeFile("Triskin.MDB", bytes);
  on.station.base.OpenOrCreateDatabase();
  on.station.base.OpenAllTables();
  EXPECT_FALSE(CompactStationBase(on.station));
  EXPECT_TRUE(on.station.base.IsOpen());
  EXPECT_TRUE(*on.stationFolder.Read("Triskin.MDB") == bytes);
  EXPECT_FALSE(on.stationFolder.Exists("Triskin.BAK"));
}

TEST_F(Upkeep, ReindexAsksWithAStopIconAndCancelChangesNothing) {
  ON_FILES_ALONE("a compaction makes another file");
  const std::string before = *on.stationFolder.Read("Triskin.MDB");
  on.seen.clear();
  Settings::BtnIndex_Click(on.station);
  ASSERT_EQ(on.Events("message").size(), 1U);
  const Seen question = on.Events("message")[0];
  EXPECT_EQ(question["title"], "Alerte");
  EXPECT_EQ(question["text"],
            "Vous devez être tout seul sur la base pour\r\néxecuter cette opération");
  EXPECT_EQ(question["buttons"], "okcancel");
  EXPECT_EQ(on.messages.LastIcon(), Icon::kStop);
  EXPECT_TRUE(on.Events("base").empty());
  EXPECT_TRUE(*on.stationFolder.Read("Triskin.MDB") == before);
  EXPECT_FALSE(on.stationFolder.Exists("Triskin.BAK"));
}

TEST_F(Upkeep, ReindexOnAirCompactsAndLeavesTheMonthlyRunDue) {
  ON_FILES_ALONE("a compaction makes another file");
  on.localValues.Set("LastCompactage", kLastMonth);
  for (int i = 0; i < 3; ++i) on.AppendCard(on.AddCard({}));  // of three minutes
  on.Start();
  on.At(60000, [&] {
    on.seen.clear();
    on.messages.AnswerNext(Answer::kOk);
    Settings::BtnIndex_Click(on.station);
  });
  on.RunUntil(400000);
  ASSERT_EQ(on.Events("base").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("base")[0]["state"], "compacted");
  EXPECT_EQ(on.localValues.GetText("LastCompactage", ""), kLastMonth);
  EXPECT_EQ(on.Starts().size(), 2U) << on.Describe();  // the air went on
  EXPECT_EQ(on.Events("grid").size(), 1U);             // composed again
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "3");
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

TEST_F(Upkeep, ASettingChangedBehindACompactionIsSeenAtOnce) {
  ON_FILES_ALONE("a compaction makes another file");
  ASSERT_TRUE(CompactStationBase(on.station));
  on.Set("FadeOut", "4321");
  on.station.base.CheckCnf();
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kFadeOut), 4321);
}

}  // namespace
}  // namespace zemo::test
