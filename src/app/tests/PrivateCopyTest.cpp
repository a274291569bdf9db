// What a simulation works on: the station's copies, and sound files that are its own once changed.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/PrivateCopy.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

void Put(const fs::path& path, const std::string& text) {
  std::ofstream(path) << text;
}

std::string Get(const fs::path& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

class PrivateCopy : public testing::Test {
 protected:
  void SetUp() override {
    std::string path = (fs::temp_directory_path() / "copy-XXXXXX").string();
    ASSERT_NE(mkdtemp(path.data()), nullptr);
    root_ = path;
    for (const char* name : {"station", "copy", "machine", "changed", "music"})
      fs::create_directory(root_ / name);
  }
  void TearDown() override { fs::remove_all(root_); }

  std::string Path(const char* name) const { return (root_ / name).string(); }

  // Runs SQL on the station's base, which it makes.
  sqlite3* OpenStationBase() {
    sqlite3* base = nullptr;
    EXPECT_EQ(sqlite3_open(Path("station/Triskin.MDB").c_str(), &base), SQLITE_OK);
    return base;
  }
  static void Run(sqlite3* base, const char* sql) {
    EXPECT_EQ(sqlite3_exec(base, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }
  // The one number that the query gives on that base; -1 for none.
  static int Number(const std::string& path, const char* sql) {
    sqlite3* base = nullptr;
    sqlite3_stmt* statement = nullptr;
    int number = -1;
    if (sqlite3_open_v2(path.c_str(), &base, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(base, sql, -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW)
      number = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(base);
    return number;
  }

  fs::path root_;
};

TEST_F(PrivateCopy, OfTheMachineLeavesTheReplicas) {
  for (const char* name : {"Settings.Ini", "Replica-086825d8.MDB", "Replica-086825d8.MDB-journal"})
    Put(root_ / "machine" / name, name);
  CopyMachine(Path("machine"), Path("copy"));
  EXPECT_TRUE(fs::exists(root_ / "copy" / "Settings.Ini"));
  EXPECT_EQ(std::distance(fs::directory_iterator(root_ / "copy"), fs::directory_iterator()), 1);
}

TEST_F(PrivateCopy, TakesSideFilesAndLeavesSoundFilesAndFolders) {
  for (const char* name :
       {"Genre.Txt", "StartStop.0", "New.mdb", "a.wav", "b.MP3", "c.Flac", "d.mar"})
    Put(root_ / "station" / name, name);
  fs::create_directory(root_ / "station" / "Music");
  CopyStation(Path("station"), Path("copy"));
  for (const char* name : {"Genre.Txt", "StartStop.0", "New.mdb", "d.mar"})
    EXPECT_EQ(Get(root_ / "copy" / name), name);
  for (const char* name : {"a.wav", "b.MP3", "c.Flac", "Music", "Triskin.MDB"})
    EXPECT_FALSE(fs::exists(root_ / "copy" / name)) << name;
}

TEST_F(PrivateCopy, TakesTheBaseUnderWhateverCaseItsNameHas) {
  sqlite3* base = OpenStationBase();
  Run(base, "CREATE TABLE t(n); INSERT INTO t VALUES(42)");
  sqlite3_close(base);
  fs::rename(root_ / "station" / "Triskin.MDB", root_ / "station" / "triskin.mdb");
  CopyStation(Path("station"), Path("copy"));
  EXPECT_EQ(Number(Path("copy/triskin.mdb"), "SELECT n FROM t"), 42);
}

TEST_F(PrivateCopy, TakesTheLastStoredStateWhileAnotherProgramWrites) {
  sqlite3* base = OpenStationBase();
  Run(base, "CREATE TABLE t(n); INSERT INTO t VALUES(1)");
  Run(base, "BEGIN IMMEDIATE; INSERT INTO t VALUES(2)");
  CopyStation(Path("station"), Path("copy"));
  Run(base, "COMMIT");
  sqlite3_close(base);
  EXPECT_EQ(Number(Path("copy/Triskin.MDB"), "SELECT count(*) FROM t"), 1);
}

TEST_F(PrivateCopy, TakesABaseLeftByALossOfPowerWithItsJournal) {
  sqlite3* base = OpenStationBase();
  Run(base, "CREATE TABLE t(n); INSERT INTO t VALUES(1)");
  // Pages of an open transaction forced into the file, then both files as a loss of power leaves
  // them.
  Run(base, "PRAGMA cache_size = 1; PRAGMA cache_spill = 1; BEGIN IMMEDIATE");
  Run(base,
      "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 20000) "
      "INSERT INTO t SELECT i FROM c");
  const std::string file = Get(root_ / "station/Triskin.MDB");
  const std::string journal = Get(root_ / "station/Triskin.MDB-journal");
  Run(base, "ROLLBACK");
  sqlite3_close(base);
  ASSERT_FALSE(journal.empty());
  Put(root_ / "station/Triskin.MDB", file);
  Put(root_ / "station/Triskin.MDB-journal", journal);

  CopyStation(Path("station"), Path("copy"));
  EXPECT_EQ(Get(root_ / "station/Triskin.MDB-journal").size(), journal.size());  // untouched

  ASSERT_EQ(sqlite3_open(Path("copy/Triskin.MDB").c_str(), &base), SQLITE_OK);
  Run(base, "SELECT count(*) FROM t");  // the first to open it mends it
  sqlite3_close(base);
  EXPECT_EQ(Number(Path("copy/Triskin.MDB"), "SELECT count(*) FROM t"), 1);
}

TEST_F(PrivateCopy, TakesAFileThatIsNoBaseAsItIs) {
  Put(root_ / "station/Triskin.MDB", "this is no database at all");
  CopyStation(Path("station"), Path("copy"));
  EXPECT_EQ(Get(root_ / "copy/Triskin.MDB"), "this is no database at all");
}

TEST_F(PrivateCopy, OfAMachineFindsTheEmergencyFolderAndLeavesItWhereItIs) {
  fs::create_directories(root_ / "machine" / "SECOURS");
  Put(root_ / "machine" / "SECOURS" / "a.wav", "sound");
  Put(root_ / "machine" / "ZemoPlay.Ini", "x");
  CopyMachine(Path("machine"), Path("copy"));
  EXPECT_EQ(Get(root_ / "copy" / "ZemoPlay.Ini"), "x");
  LocalFolder copy(Path("copy"));
  EXPECT_EQ(copy.Subfolder("Secours").Names(), std::vector<std::string>{"a.wav"});
  fs::create_directory(root_ / "second");
  CopyMachine(Path("copy"), Path("second"));  // as the forecast of a copy does
  EXPECT_EQ(Get(root_ / "second" / "SECOURS" / "a.wav"), "sound");
  fs::remove_all(root_ / "copy");
  EXPECT_EQ(Get(root_ / "machine" / "SECOURS" / "a.wav"), "sound");
  EXPECT_NO_THROW(CopyMachine(Path("nowhere"), Path("changed")));
}

TEST_F(PrivateCopy, OfAMissingFolderIsAnErrorForAStationAndNothingForAMachine) {
  EXPECT_THROW(CopyStation(Path("nowhere"), Path("copy")), std::runtime_error);
  EXPECT_NO_THROW(CopyFiles(Path("nowhere"), Path("copy")));
  EXPECT_TRUE(fs::is_empty(root_ / "copy"));
}

class PrivateFilesTest : public PrivateCopy {
 protected:
  void SetUp() override {
    PrivateCopy::SetUp();
    machine_.emplace(Path("machine"));
    copy_.emplace(Path("copy"));
    files_.emplace(*machine_, Path("station") + "/", *copy_, Path("changed") + "/");
  }

  std::optional<LocalFolder> machine_;
  std::optional<LocalFolder> copy_;
  std::optional<PrivateFiles> files_;
};

TEST_F(PrivateFilesTest, SoundFilesAreTheRealOnesUntilTheyAreChanged) {
  Put(root_ / "music/a.wav", "sound");
  EXPECT_EQ(files_->Resolve(Path("music/a.wav")), Path("music/a.wav"));
  EXPECT_EQ(files_->SizeBytes(Path("music/a.wav")), 5);
  EXPECT_FALSE(files_->Exists(Path("music/b.wav")));
  EXPECT_EQ(files_->SizeBytes(Path("music/b.wav")), -1);
}

TEST_F(PrivateFilesTest, AStampIsThatOfTheFileThatIsRead) {
  Put(root_ / "station/a.wav", "sound");
  const auto stations = files_->Stamp(Path("station/a.wav"));
  ASSERT_TRUE(stations);
  EXPECT_EQ(stations->sizeBytes, 5);
  copy_->Write("a.wav", "dropped");
  EXPECT_EQ(files_->Stamp(Path("station/a.wav"))->sizeBytes, 7);
  EXPECT_EQ(files_->Stamp(Path("station/b.wav")), std::nullopt);
}

TEST_F(PrivateFilesTest, ARemovedFileIsGoneForTheRunAndStaysForAllOthers) {
  Put(root_ / "music/a.wav", "sound");
  files_->Remove(Path("music/a.wav"));
  EXPECT_FALSE(files_->Exists(Path("music/a.wav")));
  EXPECT_EQ(files_->Read(Path("music/a.wav")), std::nullopt);
  EXPECT_EQ(Get(root_ / "music/a.wav"), "sound");
}

TEST_F(PrivateFilesTest, AWrittenFileIsReadBackAndTheRealOneStaysAsItWas) {
  Put(root_ / "music/page.html", "before");
  files_->Write(Path("music/page.html"), "after");
  files_->Write(Path("music/new.html"), "new");
  EXPECT_EQ(files_->Read(Path("music/page.html")), "after");
  EXPECT_EQ(files_->Read(Path("music/new.html")), "new");
  EXPECT_EQ(Get(root_ / "music/page.html"), "before");
  EXPECT_FALSE(fs::exists(root_ / "music/new.html"));
}

TEST_F(PrivateFilesTest, AFileWrittenAfterItsRemovalIsThereAgain) {
  Put(root_ / "music/a.wav", "sound");
  files_->Remove(Path("music/a.wav"));
  files_->Write(Path("music/a.wav"), "other");
  EXPECT_EQ(files_->Read(Path("music/a.wav")), "other");
}

TEST_F(PrivateFilesTest, ASoundFileInTheStationsFolderIsTheStationsUntilTheCopyHasOne) {
  Put(root_ / "station/a.wav", "sound");
  EXPECT_EQ(files_->Read(Path("station/a.wav")), "sound");
  copy_->Write("a.wav", "dropped");
  EXPECT_EQ(files_->Read(Path("station/a.wav")), "dropped");
  EXPECT_EQ(Get(root_ / "station/a.wav"), "sound");
}

TEST_F(PrivateFilesTest, ASoundFileRemovedFromTheStationsFolderIsGoneUntilOneIsDropped) {
  Put(root_ / "station/a.wav", "sound");
  files_->Remove(Path("station/a.wav"));
  EXPECT_FALSE(files_->Exists(Path("station/a.wav")));
  copy_->Write("a.wav", "dropped");
  EXPECT_EQ(files_->Read(Path("station/a.wav")), "dropped");
}

TEST_F(PrivateFilesTest, ASideFileInTheStationsFolderIsTheCopysAndNoOther) {
  Put(root_ / "station/a.mar", "0,1000");
  EXPECT_FALSE(files_->Exists(Path("station/a.mar")));  // the copy lost it
  copy_->Write("a.mar", "5,6");
  EXPECT_EQ(files_->Read(Path("station/a.mar")), "5,6");
}

using Texts = std::vector<std::string>;

TEST_F(PrivateFilesTest, AFolderIsListedWithWhatTheRunWroteAndRemoved) {
  for (const char* name : {"music/a.wav", "music/c.wav", "music/D.wav"}) Put(root_ / name, "sound");
  fs::create_directory(root_ / "music/Pop");
  files_->Remove(Path("music/c.wav"));
  files_->Write(Path("music/a.wav"), "other");
  files_->Write(Path("music/B.mar"), "0,1000");
  files_->Write(Path("music/Pop/e.mar"), "0,1000");
  files_->Write(Path("music/.hidden"), "x");
  const FolderListing listing = files_->List(Path("music"));
  EXPECT_TRUE(listing.exists);
  EXPECT_EQ(listing.folders, Texts{"Pop"});
  EXPECT_EQ(listing.files, (Texts{"a.wav", "B.mar", "D.wav"}));
  EXPECT_EQ(files_->List(Path("music") + "/Pop/").files, Texts{"e.mar"});
  EXPECT_FALSE(files_->List(Path("nowhere")).exists);
}

TEST_F(PrivateFilesTest, TheStationsFolderIsListedAsItsFilesAreRead) {
  for (const char* name : {"station/a.wav", "station/b.wav", "station/C.wav", "station/lost.mar"})
    Put(root_ / name, "sound");
  fs::create_directory(root_ / "station/Music");
  copy_->Write("Genre.Txt", "POP");
  copy_->Write("c.WAV", "dropped");
  files_->Remove(Path("station/a.wav"));
  files_->Write(Path("station/d.mar"), "0,1000");
  const FolderListing listing = files_->List(Path("station"));
  EXPECT_EQ(listing.folders, Texts{"Music"});
  EXPECT_EQ(listing.files, (Texts{"b.wav", "c.WAV", "d.mar", "Genre.Txt"}));
  for (const std::string& name : listing.files)
    EXPECT_TRUE(files_->Exists(Path("station") + "/" + name)) << name;
}

TEST_F(PrivateFilesTest, AFileBelowTheStationsFolderIsNotTakenForOneInIt) {
  fs::create_directory(root_ / "station/Music");
  Put(root_ / "station/Music/a.mar", "0,1000");
  copy_->Write("a.mar", "5,6");
  EXPECT_EQ(files_->Read(Path("station/Music/a.mar")), "0,1000");
}

}  // namespace
}  // namespace zemo
