// The station's folder and its base as a file and as a database.
#include <map>

#include "app/check/tests/CheckedStation.h"
#include "store/SoundMeasuresTable.h"
#include "store/StationBase.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

using BaseCheck = CheckedStation;

// A second connection to the base, as another process would have it.
class OtherProcess {
 public:
  OtherProcess(const std::string& base, const char* sql) {
    EXPECT_EQ(sqlite3_open(base.c_str(), &database_), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr), SQLITE_OK);
  }
  ~OtherProcess() { sqlite3_close(database_); }
  OtherProcess(const OtherProcess&) = delete;

 private:
  sqlite3* database_ = nullptr;
};

TEST_F(BaseCheck, ASoundStationHasNoFindings) {
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(BaseCheck, ABaseWithWhatWasMeasuredHasNoFindings) {
  {
    StationBase base(Base());
    base.OpenOrCreateDatabase();
    StoreMeasures(base, "/a.wav", {5, 7}, {.lengthMs = 1234});
  }
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(BaseCheck, AMissingStationFolderIsTheOnlyFinding) {
  CheckOptions options = Options();
  options.station = folder_ / "nowhere";
  EXPECT_EQ(Found(options), Lines{"folder: " + folder_ / "nowhere: the station folder is missing"});
}

TEST_F(BaseCheck, AFolderWithoutWritePermissionIsFound) {
  fs::permissions(Base(), fs::perms(0666));
  fs::permissions(folder_ / "station", fs::perms(0555));
  {
    const NoRights noRights;
    EXPECT_EQ(Found(), Lines{"folder: " + folder_ / "station: cannot be written: no permission"});
  }
  fs::permissions(folder_ / "station", fs::perms(0755));
}

TEST_F(BaseCheck, ABaseWithoutPermissionIsFound) {
  fs::permissions(folder_ / "station", fs::perms(0777));
  fs::permissions(Base(), fs::perms(0444));
  const NoRights noRights;
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: cannot be written: no permission"});
}

TEST_F(BaseCheck, ABaseThatCannotBeReadIsFound) {
  fs::permissions(folder_ / "station", fs::perms(0777));
  fs::permissions(Base(), fs::perms::none);
  const NoRights noRights;
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: cannot be read: no permission"});
}

TEST_F(BaseCheck, AMissingBaseIsFoundAndNotMade) {
  fs::remove(Base());
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: is missing"});
  EXPECT_FALSE(fs::exists(Base()));
}

TEST_F(BaseCheck, TheBaseIsFoundWhateverItsCase) {
  fs::rename(Base(), Path("triskin.mdb"));
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(BaseCheck, ABaseInTwoSpellingsIsAWarning) {
  fs::copy_file(Base(), Path("triskin.mdb"));
  ASSERT_EQ(Found().size(), 1U);
  EXPECT_NE(Found()[0].find("stands twice, in another spelling"), std::string::npos) << Found()[0];
}

TEST_F(BaseCheck, WhatIsNoBaseIsNamed) {
  folder_.Put("station/Triskin.MDB", std::string(5000, 'x'));
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: is not a database"});
  folder_.Put("station/Triskin.MDB", "");
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: is empty"});
  fs::remove(Base());
  fs::create_directory(Base());
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: is a folder, not a database"});
}

TEST_F(BaseCheck, ADamagedBaseIsNamed) {
  std::string bytes = folder_.Get("station/Triskin.MDB");
  ASSERT_GT(bytes.size(), 60000U);
  bytes.replace(20000, 30000, 30000, '\x5A');  // some pages in its middle
  folder_.Put("station/Triskin.MDB", bytes);
  const Lines lines = Found();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0].rfind("base: Triskin.MDB: is damaged", 0), 0U) << lines[0];
}

TEST_F(BaseCheck, ABaseThatAnotherProcessLocksIsNamed) {
  const OtherProcess other(Base(), "BEGIN EXCLUSIVE");
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: is locked by another process"});
}

TEST_F(BaseCheck, ABaseThatAnotherProcessKeepsFromBeingWrittenIsNamedAndLookedAt) {
  Sql("DELETE FROM Pls");
  const OtherProcess other(Base(), "BEGIN IMMEDIATE");
  EXPECT_EQ(Found(),
            (Lines{"base: Triskin.MDB: is locked by another process, nothing can be stored",
                   "list: 1 Demo: is empty (warning)"}));
}

// What a power loss leaves: a file half written and the journal that takes it back.
TEST_F(BaseCheck, AnInterruptedRunIsToldAndItsJournalIsLeftAlone) {
  {
    const OtherProcess other(Base(),
                             "PRAGMA cache_size = 1; BEGIN; UPDATE Discotheque SET COMMENTAIRE = "
                             "hex(zeroblob(20000)); UPDATE Models SET GENRE = '';");
    fs::create_directory(folder_ / "lost");
    fs::copy_file(Base(), folder_ / "lost/base");
    fs::copy_file(Base() + "-journal", folder_ / "lost/journal");
  }
  fs::rename(folder_ / "lost/base", Base());
  fs::rename(folder_ / "lost/journal", Base() + "-journal");
  const std::string base = folder_.Get("station/Triskin.MDB");
  const std::string journal = folder_.Get("station/Triskin.MDB-journal");
  EXPECT_EQ(Found(),
            Lines{"base: Triskin.MDB: a run was interrupted while it wrote; the next start takes "
                  "its last change back (warning)"});
  EXPECT_EQ(folder_.Get("station/Triskin.MDB"), base);
  EXPECT_EQ(folder_.Get("station/Triskin.MDB-journal"), journal);
}

TEST_F(BaseCheck, EveryMissingTableAndFieldIsNamed) {
  Sql("DROP TABLE VT; DROP TABLE ModelSquelette; ALTER TABLE Playlist DROP COLUMN NOJINGLE");
  EXPECT_EQ(Found(), (Lines{"base: Playlist: the field NOJINGLE is missing",
                            "base: ModelSquelette: the table is missing",
                            "base: VT: the table is missing"}));
}

TEST_F(BaseCheck, SettingsInAnotherOrderAreFound) {
  Sql("CREATE TABLE Other AS SELECT PmixPubs, * FROM Cnf; DROP TABLE Cnf; "
      "ALTER TABLE Other RENAME TO Cnf");
  const Lines lines = Found();
  EXPECT_EQ(lines, (Lines{"base: Cnf: field 1 is PmixPubs and should be PmixDef",
                          "base: Cnf: has 51 fields instead of 50: the next start makes it anew "
                          "(warning)"}));
}

TEST_F(BaseCheck, ATableOfAnOlderVersionAndWhatAnUpgradeLeftAreFound) {
  Sql("ALTER TABLE Toph ADD COLUMN REMARK TEXT; CREATE TABLE TBTEMP (A TEXT)");
  EXPECT_EQ(Found(),
            (Lines{"base: Toph: has 6 fields instead of 5: the next start makes it anew (warning)",
                   "base: TBTEMP: is left of an upgrade that failed: no table is made anew beside "
                   "it (warning)"}));
}

TEST_F(BaseCheck, ABaseThatIsHandedOverIsLookedAt) {
  folder_.Put("station/new.MDB", std::string(3000, 'x'));
  EXPECT_EQ(Found(), Lines{"base: New.mdb: cannot take the place of the base: is not a database "
                           "(warning)"});
  fs::copy_file(Base(), Path("new.MDB"), fs::copy_options::overwrite_existing);
  EXPECT_EQ(Found(), Lines{});  // it only waits for the next title
  const OtherProcess writer(Path("new.MDB"), "DROP TABLE Pls");
  EXPECT_EQ(Found(), Lines{"base: New.mdb: cannot take the place of the base: lacks the table Pls "
                           "(warning)"});
}

TEST_F(BaseCheck, AMissingBaseIsToldWithWhatAStartMakesOfIt) {
  fs::rename(Base(), Path("Triskin.BAK"));
  EXPECT_EQ(Found(), Lines{"base: Triskin.MDB: is missing: the next start makes an empty one, "
                           "although Triskin.BAK holds the base before its last change"});
  folder_.Put("station/New.mdb", "no base");
  EXPECT_EQ(Found(),
            Lines{"base: Triskin.MDB: is missing: the next start puts Triskin.BAK in its place"});
  fs::copy_file(Path("Triskin.BAK"), Path("New.mdb"), fs::copy_options::overwrite_existing);
  EXPECT_EQ(Found(),
            Lines{"base: Triskin.MDB: is missing: the next start puts New.mdb in its place"});
  fs::copy_file(Path("Triskin.BAK"), Path("TriskinN.MDB"));
  EXPECT_EQ(Found(),
            Lines{"base: Triskin.MDB: is missing: the next start puts TriskinN.MDB in its place"});
  EXPECT_FALSE(fs::exists(Base()));
}

TEST_F(BaseCheck, TheCopyOfAnInterruptedCompactionIsFound) {
  folder_.Put("station/TriskinN.MDB", "half");
  EXPECT_EQ(Found(), Lines{"base: TriskinN.MDB: is left of a compaction that was interrupted; the "
                           "next one removes it (warning)"});
}

TEST_F(BaseCheck, SettingsHaveOneRow) {
  Sql("DELETE FROM Cnf");
  EXPECT_EQ(Found(), Lines{"settings: Cnf: has 0 rows and should have one"});
}

TEST_F(BaseCheck, NothingInTheStationChanges) {
  const auto look = [&] {
    std::map<std::string, std::pair<std::string, fs::file_time_type>> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder_ / "station")) {
      const std::string name = fs::relative(entry.path(), folder_.Path());
      const std::string bytes = entry.is_regular_file() ? folder_.Get(name) : "";
      files[name] = {bytes, entry.last_write_time()};
    }
    return files;
  };
  Sql("DELETE FROM Toph; DELETE FROM Variete");  // what a start would seed again
  const auto before = look();
  EXPECT_EQ(Found(), Lines{"pip: Toph: knows 0 of the 24 hours (warning)"});
  EXPECT_TRUE(look() == before);
  EXPECT_FALSE(fs::exists(folder_ / "machine"));
}

TEST_F(BaseCheck, TheCommandCountsWhatItFound) {
  std::ostringstream nothing, some;
  EXPECT_EQ(RunCheck(Options(), nothing), 0);
  EXPECT_EQ(nothing.str(), "check: nothing found\n");
  Sql("DELETE FROM Pls; UPDATE Playlist SET LADATE = '31/02/2026'; DELETE FROM Models");
  EXPECT_EQ(RunCheck(Options(), some), 1);
  EXPECT_EQ(
      some.str(),
      "check: model: Models: no model is defined, so that no request finds music\n"
      "check: list: 1 Demo: its date \"31/02/2026\" is none, so that it never starts (warning)\n"
      "check: list: 1 Demo: is empty (warning)\n"
      "check: 1 error, 2 warnings\n");
}

}  // namespace
}  // namespace zemo
