// The start of a base: what a new one holds, what a full one keeps, the settings row.
#include <chrono>
#include <set>

#include "store/Schema.h"
#include "store/StationBase.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

using StationStart = StoreTest;
using StationSettings = OpenBaseTest;

// Rows of all tables and the text of the whole structure.
Strings Contents(OtherProgram& other) {
  Strings all = other.Rows("SELECT type, name, sql FROM sqlite_schema ORDER BY name");
  for (const TableDef& table : SchemaTables()) {
    for (auto& row : other.Rows("SELECT * FROM " + table.Name))
      all.push_back(table.Name + ' ' + row);
  }
  all.push_back(other.One("PRAGMA schema_version"));
  return all;
}

TEST_F(StationStart, AMissingBaseBecomesThirteenTablesWithTheirFixedRows) {
  const auto base = std::make_unique<StationBase>(BasePath());
  EXPECT_TRUE(base->OpenOrCreateDatabase());
  base->CreateMissingTables(nullptr);
  base->OpenAllTables();
  base->SeedFixedRows();

  OtherProgram other(BasePath());
  EXPECT_EQ(
      other.Rows("SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite%' "
                 "ORDER BY rowid"),
      (Strings{"Discotheque", "DiscothequeJingle", "DiscothequeVirgule", "GrillePub", "Models",
               "Variete", "Toph", "Cnf", "Rapport", "Playlist", "Pls", "ModelSquelette", "VT"}));
  EXPECT_EQ(other.Rows("SELECT VARIETE, POURCENT FROM Variete ORDER BY rowid"),
            (Strings{"NATIONAL|40", "INTERNATIONAL|60"}));
  EXPECT_EQ(other.One("SELECT COUNT(*), MIN(HEURE), MAX(HEURE), SUM(CODE = HEURE + 1) FROM Toph"),
            "24|0|23|24");
  EXPECT_EQ(other.One("SELECT DISTINCT FICHIER, SURIMPRESSION, JourSemaine FROM Toph"),
            "|0|XXXXXXX");
  EXPECT_EQ(
      other.One("SELECT * FROM Cnf"),
      "1600|500|500|500|9000000|4096|0|15|10|16384|6500|16384|18000|1600|0|0|||0|0|0||30|0|33023|"
      "100|0|1|1|30|0|NULL|40|0|50|0|0|58|0|0|25|0|18000|1|0|0|1|0|46|16");
  EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
}

TEST_F(StationStart, FieldCountsAreThoseOfTheFormat) {
  const auto base = StartBase();
  const std::pair<const char*, int> expected[] = {{"Discotheque", 37},
                                                  {"DiscothequeJingle", 22},
                                                  {"DiscothequeVirgule", 8},
                                                  {"GrillePub", 22},
                                                  {"Models", 27},
                                                  {"ModelSquelette", 26},
                                                  {"Variete", 2},
                                                  {"Toph", 5},
                                                  {"Cnf", 50},
                                                  {"Rapport", 11},
                                                  {"Playlist", 5},
                                                  {"Pls", 4},
                                                  {"VT", 7}};
  for (const auto& [table, fields] : expected) {
    EXPECT_EQ(base->Db().OpenTable(table)->FieldCount(), fields) << table;
  }
}

TEST_F(StationStart, IndexesCarryTheNamesOfTheirTables) {
  StartBase();
  OtherProgram other(BasePath());
  EXPECT_EQ(other.Rows(
                "SELECT name FROM sqlite_schema WHERE type = 'index' ORDER BY name COLLATE NOCASE"),
            (Strings{"Discotheque.Auteur", "Discotheque.FILENAME", "Discotheque.Genre",
                     "Discotheque.LABEL", "Discotheque.NbPassJour", "Discotheque.Titre",
                     "Discotheque.TRANCHE01", "Discotheque.TRANCHE02", "Discotheque.TRANCHE03",
                     "Discotheque.TRANCHE04", "Discotheque.TRANCHE05", "Discotheque.TRANCHE06",
                     "Discotheque.VARIETE", "GrillePub.FILENAMEAUDIO", "GrillePub.PRIORITY"}));
}

TEST_F(StationStart, AFullBaseKeepsEveryRowAndItsStructure) {
  {
    const auto base = StartBase();
    base->Db().Execute("INSERT INTO Discotheque(AUTEUR) VALUES('A')");
    base->Db().Execute("UPDATE Cnf SET FadeOut = 7");
    base->Db().Execute("DELETE * FROM Variete WHERE POURCENT = 40");
  }
  OtherProgram other(BasePath());
  const Strings before = Contents(other);
  {
    StationBase again(BasePath());
    EXPECT_FALSE(again.OpenOrCreateDatabase());
    again.CreateMissingTables(
        [](const std::string& table, int, const std::string&) { ADD_FAILURE() << table; });
    again.OpenAllTables();
    again.SeedFixedRows();
  }
  EXPECT_EQ(Contents(other), before);
}

TEST_F(StationStart, AFullBaseStartsWhileAnotherStationHoldsTheWriteLock) {
  StartBase();
  OtherProgram other(BasePath());
  other.Do("BEGIN IMMEDIATE");
  StartBase(0);
}

TEST_F(StationStart, AnEmptiedTophIsFilledAgain) {
  StartBase()->Db().Execute("DELETE * FROM Toph");
  StartBase();
  OtherProgram other(BasePath());
  EXPECT_EQ(other.One("SELECT COUNT(*), COUNT(DISTINCT HEURE), MIN(JourSemaine), MAX(JourSemaine), "
                      "MIN(CODE) FROM Toph"),
            "24|24|XXXXXXX|XXXXXXX|25");
}

TEST_F(StationStart, AMissingTableAndAMissingIndexAreMadeAgain) {
  StartBase();
  OtherProgram other(BasePath());
  other.Do("DROP TABLE VT");
  other.Do("DROP INDEX \"Discotheque.Genre\"");
  const auto base = StartBase();
  EXPECT_EQ(base->CountRecords("VT"), 0);
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM sqlite_schema WHERE name = 'Discotheque.Genre'"), "1");
}

TEST_F(StationStart, ATableThatCannotBeMadeStopsNoneOfTheOthers) {
  StationBase base(BasePath());
  base.OpenOrCreateDatabase();
  base.Db().Execute("CREATE TABLE Discotheque(CODE INTEGER PRIMARY KEY AUTOINCREMENT)");
  Strings failed;
  base.CreateMissingTables([&](const std::string& table, int number, const std::string& text) {
    failed.push_back(table + ": " + text);
    EXPECT_EQ(number, kErrNoSuchField);
  });
  EXPECT_EQ(failed, Strings{"Discotheque: no field Discotheque.FILENAME"});
  EXPECT_EQ(base.Db().Tables().Count(), 13);
}

TEST_F(StationStart, AStationThatCreatesNoTablesTellsEachThatIsMissing) {
  StationBase base(BasePath());
  base.OpenOrCreateDatabase();
  EXPECT_EQ(ErrorOf([&] { base.OpenAllTables(); }), kErrNoSuchTable);
  EXPECT_EQ(ErrorOf([&] { base.Table("VT"); }), kErrNoSuchTable);
  EXPECT_EQ(ErrorOf([&] { base.ReadCnfField(1); }), kErrNoSuchTable);
}

TEST_F(StationStart, AClosedBaseSaysSoAtEveryUse) {
  const auto base = StartBase();
  const auto table = base->Db().OpenTable("Toph");
  base->Close();
  EXPECT_FALSE(base->IsOpen());
  EXPECT_EQ(ErrorOf([&] { base->Db(); }), kErrClosed);
  EXPECT_EQ(ErrorOf([&] { base->CountRecords("Toph"); }), kErrClosed);
  EXPECT_EQ(ErrorOf([&] { base->Table("Toph"); }), kErrClosed);
  EXPECT_EQ(ErrorOf([&] { table->MoveFirst(); }), kErrClosed);
  EXPECT_FALSE(base->OpenOrCreateDatabase());
  base->OpenAllTables();
  EXPECT_EQ(base->CountRecords("Toph"), 24);
}

// The one walks and edits while the other looks something up.
TEST_F(StationStart, WhoeverAsksForATableHasACursorOfHisOwn) {
  const auto base = StartBase();
  for (const char* artist : {"A", "B", "C"})
    base->Db().Execute("INSERT INTO Discotheque(AUTEUR) VALUES(?)", {std::string(artist)});
  const auto walking = base->Table("Discotheque");
  walking->MoveNext();
  walking->Edit();
  walking->Set("TITRE", std::string("edited"));
  const auto seeking = base->Table("Discotheque");
  EXPECT_EQ(seeking->Text("AUTEUR"), "A") << "on the first row";
  seeking->SetIndex("CODE");
  seeking->Seek("=", int64_t{3});
  EXPECT_EQ(seeking->Text("AUTEUR"), "C");
  walking->Update();
  EXPECT_EQ(walking->Text("AUTEUR"), "B");
  seeking->Seek("=", int64_t{2});
  EXPECT_EQ(seeking->Text("TITRE"), "edited");
}

// Another program makes the table that was missing: it is one from the next opening on.
TEST_F(StationStart, ATableIsAsItWasWhenTheTablesWereOpened) {
  const auto base = StartBase();
  OtherProgram(BasePath()).Do("ALTER TABLE VT RENAME TO Away");
  ErrorOf([&] { base->OpenAllTables(); });
  std::string text;
  EXPECT_EQ(ErrorOf([&] { base->Table("VT"); }, &text), kErrNoSuchTable);
  EXPECT_EQ(text, "no table VT");
  EXPECT_EQ(ErrorOf([&] { base->RequireTable("VT"); }), kErrNoSuchTable);
  EXPECT_EQ(ErrorOf([&] { base->RequireTable("Toph"); }), 0);
  OtherProgram(BasePath()).Do("ALTER TABLE Away RENAME TO VT");
  EXPECT_EQ(ErrorOf([&] { base->Table("VT"); }), kErrNoSuchTable);
  base->OpenAllTables();
  EXPECT_EQ(base->Table("VT")->RecordCount(), 0);
}

TEST_F(StationStart, TwoStationsThatStartTogetherSeedOnce) {
  StationBase first(BasePath());
  first.OpenOrCreateDatabase();
  first.CreateMissingTables(nullptr);
  first.OpenAllTables();
  StationBase second(BasePath());
  second.OpenOrCreateDatabase();
  second.OpenAllTables();
  EXPECT_EQ(second.CountRecords("Toph"), 0);
  first.SeedFixedRows();
  second.SeedFixedRows();
  EXPECT_EQ(first.CountRecords("Toph"), 24);
  EXPECT_EQ(first.CountRecords("Cnf"), 1);
}

TEST_F(StationSettings, AreNumberedFromOneInTheirFixedOrder) {
  EXPECT_EQ(base->CnfInt(1), 1600);
  EXPECT_EQ(base->CnfInt(Cnf::kCycleMaxi), 9000000);
  EXPECT_EQ(base->CnfInt(50), 16);
  Db().Execute("UPDATE CNF SET JingleExtraitYN = 1");
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(45), 1);
  EXPECT_EQ(base->Table("Cnf")->FieldName(44), "JingleExtraitYN");
  EXPECT_EQ(base->CnfText(Cnf::kTextVeille), "");
  EXPECT_TRUE(IsNull(base->ReadCnfField(Cnf::kTextVeille)));
  EXPECT_EQ(ErrorOf([&] { base->ReadCnfField(0); }), kErrNoSuchField);
  EXPECT_EQ(ErrorOf([&] { base->ReadCnfField(51); }), kErrNoSuchField);
}

// Written out here once more: where a row of SettingRows.inc moves, the format of the base changes.
TEST_F(StationSettings, StandInTheirOrderWithTheirTypesAndDefaults) {
  const Strings format{"PmixDef|SMALLINT|1600",
                       "PmixPubs|SMALLINT|500",
                       "PmixToph|SMALLINT|500",
                       "PmixJingles|SMALLINT|500",
                       "CycleMaxi|INTEGER|9000000",
                       "Buffers|SMALLINT|4096",
                       "PrioritePubs|SMALLINT|0",
                       "Jingles|SMALLINT|15",
                       "JinglesIntro|SMALLINT|10",
                       "VolumeMusique|SMALLINT|16384",
                       "VolumeMusiqueSous|SMALLINT|6500",
                       "VolumeMusiqueSurImpression|SMALLINT|16384",
                       "VolumePubs|SMALLINT|18000",
                       "FadeOut|SMALLINT|1600",
                       "JingleCode|INTEGER|0",
                       "JingleCodeIntro|INTEGER|0",
                       "JingleAvantPubs|VARCHAR(255)|''",
                       "JingleApresPubs|VARCHAR(255)|''",
                       "Langue|SMALLINT|0",
                       "PortCom|SMALLINT|0",
                       "EntreSat|SMALLINT|0",
                       "MESSAGESECURITE|VARCHAR(255)|''",
                       "PurgeRapport|SMALLINT|30",
                       "PrioriteRubriques|SMALLINT|0",
                       "CouleurdesCompteur|INTEGER|33023",
                       "NbrBuffers|SMALLINT|100",
                       "JingleCourt|SMALLINT|0",
                       "GraphiqueMini|SMALLINT|1",
                       "JingleEnFinIntro|SMALLINT|1",
                       "TempRequette|SMALLINT|30",
                       "Veille|SMALLINT|0",
                       "TextVeille|VARCHAR(40)|",
                       "MiniFinHeure|SMALLINT|40",
                       "OptimiseToph|BOOLEAN|0",
                       "HOptimise|SMALLINT|50",
                       "TempsMaxiImPulsion|SMALLINT|0",
                       "SuppressionPub|SMALLINT|0",
                       "OffsetTopH|SMALLINT|58",
                       "Squelette|BOOLEAN|0",
                       "Instrumental|SMALLINT|0",
                       "EcartArtiste|SMALLINT|25",
                       "PubAvecTopH|SMALLINT|0",
                       "VolumeRubriques|SMALLINT|18000",
                       "CheckNational|SMALLINT|1",
                       "JingleExtraitYN|SMALLINT|0",
                       "JoystiquePort|SMALLINT|0",
                       "DecalDiff|SMALLINT|1",
                       "ExtraitAuto|SMALLINT|0",
                       "InExtrait|INTEGER|46",
                       "OutExtrait|INTEGER|16"};
  EXPECT_EQ(OtherProgram(BasePath())
                .Rows("SELECT name, type, IFNULL(dflt_value, '') FROM pragma_table_info('Cnf')"),
            format);
  ASSERT_EQ(format.size(), 50u);
  EXPECT_EQ(Cnf::kFields, 50);
}

TEST_F(StationSettings, HaveTheOrdinalsOfTheirNames) {
  const auto& fields = FindSchemaTable("Cnf")->Fields;
  EXPECT_EQ(fields[Cnf::kPmixDef - 1].Name, "PmixDef");
  EXPECT_EQ(fields[Cnf::kFadeOut - 1].Name, "FadeOut");
  EXPECT_EQ(fields[Cnf::kMESSAGESECURITE - 1].Name, "MESSAGESECURITE");
  EXPECT_EQ(fields[Cnf::kOffsetTopH - 1].Name, "OffsetTopH");
  EXPECT_EQ(fields[Cnf::kEcartArtiste - 1].Name, "EcartArtiste");
  EXPECT_EQ(fields[Cnf::kOutExtrait - 1].Name, "OutExtrait");
}

TEST_F(StationSettings, ShowWhatAnotherProgramStoredAtTheNextCheck) {
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  OtherProgram other(BasePath());
  other.Do("UPDATE Cnf SET FadeOut = 900");
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600) << "one handler works on one row";
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 900);
}

TEST_F(StationSettings, ShowWhatThisStationStored) {
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  const auto row = base->Table("Cnf");
  row->Edit();
  row->Set("FadeOut", int64_t{1234});
  row->Update();
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1234);
}

TEST_F(StationSettings, KeepTheLastRowWhileTheFileIsLocked) {
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  OtherProgram other(BasePath());
  other.Do("BEGIN EXCLUSIVE");
  other.Do("UPDATE Cnf SET FadeOut = 900");
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  other.Do("COMMIT");
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 900);
}

// Read at once, and the wait of 500 ms that was granted is still there for what needs the file.
TEST_F(StationSettings, OfALockedFileCostNoWaitAndLeaveThatOfOtherOperations) {
  using Clock = std::chrono::steady_clock;
  using std::chrono::milliseconds;
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  Db().Waiting().LetEachWait(500);
  Db().Execute("UPDATE Cnf SET FadeOut = 700");  // so that the row has to be read again
  OtherProgram other(BasePath());
  other.Do("BEGIN EXCLUSIVE");
  base->CheckCnf();
  const auto read = Clock::now();
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  EXPECT_LT(Clock::now() - read, milliseconds(300));
  EXPECT_EQ(Db().Waiting().LeftMs(), 500);
  const auto written = Clock::now();
  EXPECT_EQ(ErrorOf([&] { Db().Execute("UPDATE Variete SET POURCENT = 1"); }), kErrLocked);
  EXPECT_GE(Clock::now() - written, milliseconds(400));
  other.Do("ROLLBACK");
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 700);
}

TEST_F(StationSettings, AreTheDefaultsUntilALockedFileCouldBeReadOnce) {
  Db().Execute("UPDATE Cnf SET PmixDef = 1234");
  Db().Waiting().LetEachWait(0);
  OtherProgram other(BasePath());
  other.Do("BEGIN EXCLUSIVE");
  EXPECT_EQ(base->CnfInt(Cnf::kPmixDef), 1600);
  EXPECT_EQ(base->CnfText(Cnf::kTextVeille), "");
  other.Do("COMMIT");
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kPmixDef), 1234);
}

TEST_F(StationSettings, AreAnErrorOnlyWhereTheyWereNeverReadAndAreNotThere) {
  Db().Execute("DELETE * FROM Cnf");
  EXPECT_EQ(ErrorOf([&] { base->ReadCnfField(1); }), kErrNoCurrentRecord);
  base->SeedFixedRows();
  EXPECT_EQ(base->CnfInt(1), 1600);
  base->Close();
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(1), 1600) << "the air goes on with the settings it knows";
}

TEST_F(StationSettings, CountsFollowEveryChangeOfAnyProgram) {
  EXPECT_EQ(base->CountRecords("Discotheque"), 0);
  AddCard("A");
  EXPECT_EQ(base->CountRecords("Discotheque"), 1);
  EXPECT_EQ(base->CountRecords("DISCOTHEQUE"), 1);
  OtherProgram other(BasePath());
  other.Do("INSERT INTO Discotheque DEFAULT VALUES");
  EXPECT_EQ(base->CountRecords("Discotheque"), 2);
  EXPECT_EQ(ErrorOf([&] { base->CountRecords("NoTable"); }), kErrNoSuchTable);
}

TEST_F(StationSettings, TheChangeCounterSeesWhatIsRolledBack) {
  Db().BeginTrans();
  Db().Execute("UPDATE Cnf SET PmixDef = 2000");
  const int64_t inside = Db().ChangeCounter();
  Db().RollbackTrans();
  EXPECT_GT(Db().ChangeCounter(), inside) << "who read inside must read again";
}

TEST_F(StationSettings, TheChangeCounterStandsStillUntilSomethingIsStored) {
  const int64_t counter = Db().ChangeCounter();
  Query("SELECT * FROM Toph");
  EXPECT_EQ(Db().ChangeCounter(), counter);
  Db().Execute("UPDATE Toph SET FICHIER = 'x' WHERE CODE = 1");
  const int64_t own = Db().ChangeCounter();
  EXPECT_GT(own, counter);
  OtherProgram(BasePath()).Do("UPDATE Toph SET FICHIER = 'y' WHERE CODE = 1");
  EXPECT_GT(Db().ChangeCounter(), own);
}

TEST_F(StationSettings, AChangeThatIsBeingStoredCountsWhenItIsDone) {
  OtherProgram other(BasePath());
  const int64_t counter = Db().ChangeCounter();
  other.Do("BEGIN EXCLUSIVE; UPDATE Toph SET FICHIER = 'x' WHERE CODE = 1");
  EXPECT_EQ(Db().ChangeCounter(), counter);
  other.Do("COMMIT");
  const int64_t stored = Db().ChangeCounter();
  EXPECT_GT(stored, counter);
  other.Do("BEGIN EXCLUSIVE; UPDATE Toph SET FICHIER = 'y' WHERE CODE = 1; ROLLBACK");
  EXPECT_EQ(Db().ChangeCounter(), stored);
}

// Such a journal takes commits without touching the file's head.
TEST_F(StationSettings, ChangesCountUnderAnotherProgramsWriteAheadLogToo) {
  OtherProgram other(BasePath());
  other.Do("PRAGMA journal_mode = WAL");
  Db().ChangeCounter();
  const int64_t counter = Db().ChangeCounter();
  other.Do("UPDATE Toph SET FICHIER = 'x' WHERE CODE = 1");
  const int64_t first = Db().ChangeCounter();
  EXPECT_GT(first, counter);
  other.Do("UPDATE Toph SET FICHIER = 'y' WHERE CODE = 1");
  EXPECT_GT(Db().ChangeCounter(), first);
}

}  // namespace
}  // namespace zemo
