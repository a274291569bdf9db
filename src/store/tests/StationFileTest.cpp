// What a dropped file must be to become the base, and the hold on a base while it is exchanged.
#include <filesystem>
#include <fstream>

#include "store/DatabaseFiles.h"
#include "store/StationFile.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

class DroppedFile : public OpenBaseTest {
 protected:
  std::string Dropped() const { return PathOf("New.mdb"); }
  void Drop() {
    base->Close();
    fs::copy_file(BasePath(), Dropped(), fs::copy_options::overwrite_existing);
  }
  std::string Why() const {
    const std::string why = WhyNoStationBase(Dropped());
    return why.empty() ? why : why.substr(Dropped().size());
  }
  size_t FilesInFolder() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(PathOf("")), {}));
  }
};

TEST_F(DroppedFile, OfAWholeBaseIsTakenAndNothingIsLeftBesideIt) {
  Drop();
  EXPECT_EQ(Why(), "");
  EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(DroppedFile, InTheFormOfAWriteAheadLogIsReadWithoutMakingOne) {
  Drop();
  OtherProgram(Dropped()).Do("PRAGMA journal_mode = WAL; UPDATE Cnf SET FadeOut = 7");
  EXPECT_EQ(Why(), "");
  EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(DroppedFile, ThatIsATextOrNothingIsNoDatabase) {
  std::ofstream(Dropped()) << std::string(2000, 'x');
  EXPECT_EQ(Why(), " is not a database");
  std::ofstream(Dropped(), std::ios::trunc).flush();
  EXPECT_EQ(Why(), " is empty, or is not there");
}

TEST_F(DroppedFile, WithAViewInTheNameOfATableIsRefused) {
  Drop();
  OtherProgram(Dropped()).Do("ALTER TABLE VT RENAME TO V2; CREATE VIEW VT AS SELECT * FROM V2");
  EXPECT_EQ(Why(), " lacks the table VT");
}

TEST_F(DroppedFile, OfWhichOnlyHalfHasArrivedIsRefused) {
  Drop();
  fs::resize_file(Dropped(), fs::file_size(Dropped()) / 2);
  EXPECT_EQ(Why(), " is damaged, or not all of it is there yet");
}

TEST_F(DroppedFile, ThatLacksATableIsRefusedAndOneOfAnOlderStructureIsNot) {
  Drop();
  OtherProgram(Dropped()).Do(
      "ALTER TABLE VT DROP COLUMN CUT; ALTER TABLE Cnf DROP COLUMN OutExtrait");
  EXPECT_EQ(Why(), "");
  OtherProgram(Dropped()).Do("DROP TABLE VT");
  EXPECT_EQ(Why(), " lacks the table VT");
}

TEST_F(DroppedFile, WhoseSettingsStandInAnotherOrderIsRefused) {
  Drop();
  OtherProgram(Dropped()).Do(
      "ALTER TABLE Cnf DROP COLUMN PmixDef; ALTER TABLE Cnf ADD COLUMN PmixDef SMALLINT");
  EXPECT_EQ(Why(), " has the fields of Cnf in another order");
}

TEST_F(DroppedFile, ThatItsWriterHasNotClosedIsRefused) {
  Drop();
  OtherProgram writer(Dropped());
  writer.Do("PRAGMA cache_spill = 1; BEGIN; UPDATE Cnf SET FadeOut = 7");
  EXPECT_EQ(Why(), "-journal shows that its writer has not closed it");
  writer.Do("COMMIT");
  EXPECT_EQ(Why(), "");
  writer.Do("PRAGMA journal_mode = WAL; UPDATE Cnf SET FadeOut = 8");
  EXPECT_EQ(Why(), "-wal shows that its writer has not closed it");
}

TEST_F(DroppedFile, WithARowThatBreaksARuleIsStillABase) {
  Drop();
  OtherProgram(Dropped()).Do(
      "PRAGMA ignore_check_constraints = ON; UPDATE Cnf SET FadeOut = 99999");
  EXPECT_EQ(Why(), "");
}

class Held : public OpenBaseTest {};

TEST_F(Held, ABaseIsReadAndWrittenByNobodyElse) {
  base->Close();
  OtherProgram other(BasePath());
  {
    HeldDatabase held(BasePath(), 0);
    EXPECT_EQ(other.Try("SELECT COUNT(*) FROM Cnf"), "database is locked");
    EXPECT_EQ(other.Try("BEGIN IMMEDIATE"), "database is locked");
    held.CopyTo(PathOf("TriskinN.MDB"));
    EXPECT_EQ(other.Try("SELECT COUNT(*) FROM Cnf"), "database is locked");
    EXPECT_FALSE(fs::exists(BasePath() + "-journal"));
  }
  EXPECT_EQ(other.Try("SELECT COUNT(*) FROM Cnf"), "");
  EXPECT_FALSE(fs::exists(PathOf("TriskinN.MDB-journal")));
}

TEST_F(Held, ABaseInWhichAnotherIsAtWorkIsRefused) {
  base->Close();
  OtherProgram other(BasePath());
  other.Do("BEGIN IMMEDIATE");
  EXPECT_EQ(ErrorOf([&] { HeldDatabase(BasePath(), 0); }), kErrLocked);
  other.Do("ROLLBACK; BEGIN; SELECT COUNT(*) FROM Cnf");
  EXPECT_EQ(ErrorOf([&] { HeldDatabase(BasePath(), 0); }), kErrLocked);
}

// A writer that died half-way: pages are in the file, and its journal takes them back.
TEST_F(Held, WhatAnInterruptedWriterLeftIsTakenBackBeforeTheFileIsRenamed) {
  base->Close();
  {
    OtherProgram writer(BasePath());
    writer.Do(
        "PRAGMA cache_size = 1; BEGIN; UPDATE Cnf SET FadeOut = 4321;"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500) "
        "INSERT INTO VT(LIBELLE) SELECT 'half' FROM n");
    for (const char* ending : {"", "-journal"})
      fs::copy_file(BasePath() + ending, PathOf(std::string("left") + ending));
  }
  for (const char* ending : {"", "-journal"})
    fs::rename(PathOf(std::string("left") + ending), BasePath() + ending);
  HeldDatabase(BasePath(), 0);
  EXPECT_FALSE(fs::exists(BasePath() + "-journal"));
  EXPECT_EQ(OtherProgram(BasePath()).One("SELECT COUNT(*) FROM VT"), "0");
  EXPECT_EQ(OtherProgram(BasePath()).One("PRAGMA integrity_check"), "ok");
}

}  // namespace
}  // namespace zemo
