// What can go wrong with the file: locks, read-only places, a full disk, damage, sudden death.
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "store/DatabaseFiles.h"
#include "store/tests/StoreFixture.h"
#include "support/BaseFaults.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

using BaseFailure = StoreTest;
using OpenBaseFailure = OpenBaseTest;
using test::BaseFault;
using test::BasePoint;
using Compaction = OpenBaseTest;
using Transactions = OpenBaseTest;

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// Runs `action` in a process of its own and gives its exit status, -1 for a death.
int InChild(const std::function<int()>& action) {
  const pid_t child = fork();
  if (child == 0) {
    try {
      _exit(action());
    } catch (const std::exception& error) {
      fprintf(stderr, "child: %s\n", error.what());
      _exit(97);
    }
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr uid_t kNobody = 65534;

// As InChild, as a user who owns nothing: the rights of files do not hold for root.
int AsNobody(const std::function<int()>& action) {
  return InChild([&] {
    if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) return 99;
    return action();
  });
}

TEST_F(BaseFailure, ATextFileIsNoDatabaseAndStaysAsItIs) {
  WriteFile(BasePath(), std::string(2000, 'x') + "\n");
  StationBase base(BasePath());
  std::string text;
  EXPECT_EQ(ErrorOf([&] { base.OpenOrCreateDatabase(); }, &text), kErrBadDatabase);
  EXPECT_EQ(text, BasePath() + " is not a database");
  EXPECT_FALSE(base.IsOpen());
  EXPECT_EQ(ErrorOf([&] { base.Table("Cnf"); }), kErrClosed);
  EXPECT_EQ(fs::file_size(BasePath()), 2001u);
  WriteFile(BasePath(), "short");
  EXPECT_EQ(ErrorOf([&] { base.OpenOrCreateDatabase(); }), kErrBadDatabase);
}

TEST_F(BaseFailure, AnEmptyFileBecomesANewBase) {
  WriteFile(BasePath(), "");
  EXPECT_EQ(StartBase()->CountRecords("Toph"), 24);
}

TEST_F(BaseFailure, AFolderIsNoDatabase) {
  fs::create_directory(BasePath());
  std::string text;
  EXPECT_EQ(ErrorOf([&] { StationBase(BasePath()).OpenOrCreateDatabase(); }, &text),
            kErrBadDatabase);
  EXPECT_EQ(text, BasePath() + " cannot be read, or is a folder");
}

TEST_F(BaseFailure, AMissingFolderCannotHoldABase) {
  EXPECT_EQ(ErrorOf([&] { StationBase(PathOf("none/Triskin.MDB")).OpenOrCreateDatabase(); }),
            kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { DBEngine::OpenDatabase(PathOf("none.MDB")); }), kErrNoSuchFile);
  EXPECT_EQ(ErrorOf([&] { DBEngine::RepairDatabase(PathOf("none.MDB")); }), kErrNoSuchFile);
  EXPECT_FALSE(fs::exists(PathOf("none.MDB")));
}

TEST_F(BaseFailure, CreatingWhatExistsLeavesItAlone) {
  StartBase();
  EXPECT_EQ(ErrorOf([&] { DBEngine::CreateDatabase(BasePath()); }), kErrFileExists);
  EXPECT_EQ(StartBase()->CountRecords("Toph"), 24);
}

TEST_F(BaseFailure, ABaseLockedAtTheStartIsTold) {
  StartBase();
  OtherProgram other(BasePath());
  other.Do("BEGIN EXCLUSIVE");
  StationBase base(BasePath(), 0);
  std::string text;
  EXPECT_EQ(ErrorOf([&] { base.OpenOrCreateDatabase(); }, &text), kErrLocked);
  EXPECT_EQ(text, BasePath() + " is locked by another program");
}

TEST_F(BaseFailure, TablesThatCannotBeMadeForALockAreToldOneByOne) {
  StationBase base(BasePath(), 0);
  base.OpenOrCreateDatabase();
  OtherProgram other(BasePath());
  other.Do("BEGIN IMMEDIATE");
  Strings failed;
  base.CreateMissingTables([&](const std::string& table, int number, const std::string&) {
    failed.push_back(table);
    EXPECT_EQ(number, kErrLocked);
  });
  EXPECT_EQ(failed.size(), 13u);
  other.Do("COMMIT");
  base.CreateMissingTables(nullptr);
  EXPECT_EQ(base.Db().Tables().Count(), 13);
}

TEST_F(OpenBaseFailure, ALockedFileFailsEveryOperationAndServesAgainAfterwards) {
  Db().Waiting().LetEachWait(0);
  AddCard("A");
  OtherProgram other(BasePath());
  other.Do("BEGIN EXCLUSIVE");
  const auto cards = base->Table("Discotheque");
  const std::function<void()> operations[] = {
      [&] { cards->MoveFirst(); },
      [&] {
        cards->SetIndex("CODE");
        cards->Seek("=", int64_t{1});
      },
      [&] { cards->RecordCount(); },
      [&] {
        cards->AddNew();
        cards->Update();
      },
      [&] { Query("SELECT * FROM Toph"); },
      [&] { Db().Execute("DELETE * FROM Toph"); },
      [&] { Db().BeginTrans(); },
      [&] { Db().OpenTable("Toph"); },
  };
  for (const auto& operation : operations) EXPECT_EQ(ErrorOf(operation), kErrLocked);
  other.Do("COMMIT");
  for (const auto& operation : operations) EXPECT_EQ(ErrorOf(operation), 0);
  Db().CommitTrans();
}

// The faults are there ahead of the base.
struct Faults {
  test::BaseFaults faults;
};
class FaultyBase : protected Faults, public OpenBaseTest {};

TEST_F(FaultyBase, AFileLockedPastTheTimeOutIsNotWaitedForAgainBeforeItWasFree) {
  Db().Waiting().LetEachWait(400);
  faults.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(ErrorOf([&] { AddCard("A"); }), kErrLocked);
    EXPECT_EQ(Query("SELECT * FROM Toph")->RecordCount(), 24) << "readers are not concerned";
  }
  EXPECT_EQ(faults.WaitedMs(), 400) << "the first waits";
  faults.Disarm();
  AddCard("B");
  faults.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  EXPECT_EQ(ErrorOf([&] { AddCard("C"); }), kErrLocked);
  EXPECT_EQ(faults.WaitedMs(), 800);
}

TEST_F(FaultyBase, ReadersOfAFileLockedPastTheTimeOutDoNotWaitAgainEither) {
  Db().Waiting().LetEachWait(400);
  faults.Arm(BasePoint::kLockToRead, BaseFault::kLocked);
  for (int hour = 0; hour < 20; ++hour) {
    EXPECT_EQ(ErrorOf([&] { Query("SELECT * FROM Toph WHERE HEURE = " + std::to_string(hour)); }),
              kErrLocked);
  }
  EXPECT_EQ(faults.WaitedMs(), 400) << "the first waits";
  faults.Disarm();
  EXPECT_EQ(Query("SELECT * FROM Toph")->RecordCount(), 24);
}

struct PointCase {
  BasePoint point;
  BaseFault fault;
  int number;  // of the error
  int fewest;  // passages of such a transaction
};

// A transaction of two tables, each passage of each point failing once.
TEST_F(FaultyBase, AFaultAtAnyPassageLeavesAllOfATransactionOrNothingAndAFreeFile) {
  Db().Waiting().LetEachWait(0);
  const PointCase cases[] = {
      {BasePoint::kLockToRead, BaseFault::kLocked, kErrLocked, 1},
      {BasePoint::kLockToWrite, BaseFault::kLocked, kErrLocked, 1},
      {BasePoint::kLockToCommit, BaseFault::kLocked, kErrLocked, 1},
      {BasePoint::kOpen, BaseFault::kAway, kErrReadOnly, 1},  // its journal
      {BasePoint::kWrite, BaseFault::kDiskFull, kErrDiskFull, 6},
      {BasePoint::kSync, BaseFault::kBroken, kErrOther, 2},
      {BasePoint::kCommit, BaseFault::kBroken, kErrOther, 1},
  };
  int cards = 0;
  for (const PointCase& one : cases) {
    for (int nth = 1;; ++nth) {
      faults.Arm(one.point, one.fault, nth, 1);
      const int error = ErrorOf([&] {
        Transaction whole(Db());
        AddCard("A");
        Db().Execute("UPDATE Toph SET FICHIER = 'x' WHERE HEURE = 1");
        whole.Commit();
      });
      const int passages = faults.Passages(one.point);
      faults.Disarm();
      if (error == 0) ++cards;
      EXPECT_EQ(base->CountRecords("Discotheque"), cards) << nth;
      EXPECT_EQ(OtherProgram(BasePath()).Try("BEGIN EXCLUSIVE; ROLLBACK"), "") << nth;
      if (passages < nth) {
        EXPECT_GT(nth, one.fewest) << static_cast<int>(one.point);
        break;
      }
      EXPECT_EQ(error, one.number) << static_cast<int>(one.point) << ' ' << nth;
    }
  }
}

TEST_F(OpenBaseFailure, AFileReplacedUnderTheStationIsTold) {
  fs::rename(BasePath(), PathOf("Triskin.BAK"));
  std::string text;
  EXPECT_EQ(ErrorOf([&] { AddCard("A"); }, &text), kErrReadOnly);
  EXPECT_EQ(text, BasePath() + " was replaced or removed by another program");
}

TEST_F(OpenBaseFailure, AReaderElsewhereFailsTheCommitAndLeavesNoTransactionBehind) {
  Db().Waiting().LetEachWait(0);
  OtherProgram other(BasePath());
  other.Do("BEGIN");
  other.One("SELECT COUNT(*) FROM Toph");
  Db().BeginTrans();
  AddCard("lost");
  EXPECT_EQ(ErrorOf([&] { Db().CommitTrans(); }), kErrLocked);
  other.Do("COMMIT");
  EXPECT_EQ(other.Try("BEGIN EXCLUSIVE; ROLLBACK"), "") << "the file is free";
  EXPECT_EQ(base->CountRecords("Discotheque"), 0);
  AddCard("next");
  EXPECT_EQ(base->CountRecords("Discotheque"), 1);
}

TEST_F(OpenBaseFailure, AFullDiskIsToldAndNothingStoredIsLost) {
  AddCard("before");
  Query("PRAGMA max_page_count = 1");  // no page more than there are
  const std::string comment(200000, 'c');
  EXPECT_EQ(
      ErrorOf([&] { Db().Execute("UPDATE Discotheque SET COMMENTAIRE = '" + comment + "'"); }),
      kErrDiskFull);
  Db().BeginTrans();
  EXPECT_EQ(
      ErrorOf([&] { Db().Execute("UPDATE Discotheque SET COMMENTAIRE = '" + comment + "'"); }),
      kErrDiskFull);
  Db().CommitTrans();
  Query("PRAGMA max_page_count = 1000000");
  AddCard("after");
  OtherProgram other(BasePath());
  EXPECT_EQ(other.Rows("SELECT AUTEUR, COMMENTAIRE FROM Discotheque"),
            (Strings{"before|NULL", "after|NULL"}));
  EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
}

TEST_F(OpenBaseFailure, AFullDiskWhileTablesAreMadeIsToldForEach) {
  base->Close();
  fs::remove(BasePath());
  StationBase fresh(BasePath());
  fresh.OpenOrCreateDatabase();
  fresh.Db().OpenRecordset("PRAGMA max_page_count = 10");
  Strings failed;
  fresh.CreateMissingTables([&](const std::string& table, int number, const std::string&) {
    failed.push_back(table);
    EXPECT_EQ(number, kErrDiskFull) << table;
  });
  EXPECT_FALSE(failed.empty());
  fresh.Db().OpenRecordset("PRAGMA max_page_count = 100000");
  fresh.CreateMissingTables([](const std::string& table, int, const std::string& text) {
    ADD_FAILURE() << table << text;
  });
  EXPECT_EQ(fresh.Db().Tables().Count(), 13);
}

TEST_F(BaseFailure, AMachineThatMayNotWriteReadsTheBaseAndIsToldAtEveryWrite) {
  StartBase();
  const auto tryAll = [&]() -> int {
    StationBase base(BasePath(), 0);
    if (base.OpenOrCreateDatabase()) return 1;
    bool failed = false;
    base.CreateMissingTables([&](const std::string&, int, const std::string&) { failed = true; });
    if (failed) return 2;
    base.OpenAllTables();
    base.SeedFixedRows();
    if (base.CnfInt(1) != 1600 || base.CountRecords("Toph") != 24) return 3;
    if (ErrorOf([&] { base.Db().Execute("DELETE * FROM Toph"); }) != kErrReadOnly) return 4;
    if (ErrorOf([&] {
          const auto pips = base.Table("Toph");
          pips->Edit();
          pips->Set("HEURE", int64_t{1});
          pips->Update();
        }) != kErrReadOnly)
      return 5;
    if (ErrorOf([&] {
          Transaction t(base.Db());
          base.Db().Execute("DELETE * FROM Cnf");
          t.Commit();
        }) != kErrReadOnly)
      return 6;
    return base.CountRecords("Toph") == 24 ? 0 : 7;
  };
  const fs::path folder = fs::path(BasePath()).parent_path();
  fs::permissions(BasePath(), fs::perms(0444));
  if (AsNobody([&] { return access(BasePath().c_str(), R_OK) == 0 ? 0 : 98; }) != 0) {
    GTEST_SKIP() << "cannot become a user without rights here";
  }
  EXPECT_EQ(AsNobody(tryAll), 0) << "read-only file";
  fs::permissions(BasePath(), fs::perms(0666));
  fs::permissions(folder, fs::perms(0555));
  EXPECT_EQ(AsNobody(tryAll), 0) << "read-only folder";
  fs::permissions(folder, fs::perms(0755));
}

TEST_F(BaseFailure, AFolderThatMayNotBeWrittenHoldsNoNewBase) {
  const fs::path folder = fs::path(BasePath()).parent_path();
  fs::permissions(folder, fs::perms(0555));
  const int status = AsNobody([&] {
    return ErrorOf([&] { StationBase(BasePath()).OpenOrCreateDatabase(); }) == kErrReadOnly ? 0 : 1;
  });
  fs::permissions(folder, fs::perms(0755));
  if (status == 99) GTEST_SKIP() << "cannot become a user without rights here";
  EXPECT_EQ(status, 0);
}

TEST_F(BaseFailure, AProcessThatDiesInATransactionTakesOnlyThatOneWithIt) {
  StartBase();
  for (int writes = 1; writes <= 12; ++writes) {
    OtherProgram(BasePath()).Do("DELETE FROM Rapport");
    const int status = InChild([&]() -> int {
      const auto base = StartBase();
      base->Db().Execute("PRAGMA cache_size = 2");  // pages: changes reach the file early
      int left = writes;
      for (int transaction = 1;; ++transaction) {
        base->Db().BeginTrans();
        for (int row = 0; row < 4; ++row) {
          base->Db().Execute("INSERT INTO Rapport(AUTEUR, DATENUM) VALUES('x', " +
                             std::to_string(transaction) + ")");
          if (--left == 0) _exit(7);
        }
        base->Db().CommitTrans();
      }
    });
    ASSERT_EQ(status, 7);
    OtherProgram other(BasePath());
    EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
    const int whole = (writes - 1) / 4;  // transactions committed before the death
    EXPECT_EQ(other.One("SELECT COUNT(*), COALESCE(MAX(DATENUM), 0) FROM Rapport"),
              std::to_string(whole * 4) + "|" + (whole == 0 ? "0" : std::to_string(whole) + ".0"));
  }
}

TEST_F(BaseFailure, ARolledBackJournalOfADeadProcessIsHealedByTheNextStart) {
  StartBase();
  EXPECT_EQ(InChild([&] {
              const auto base = StartBase();
              base->Db().Execute("PRAGMA cache_size = 1");
              base->Db().BeginTrans();
              for (int i = 0; i < 400; ++i) {
                base->Db().Execute("INSERT INTO Discotheque(COMMENTAIRE, AUTEUR) VALUES('" +
                                   std::string(3000, 'x') + "', 'torn')");
              }
              base->Db().Execute("UPDATE Toph SET FICHIER = 'torn'");
              if (fs::exists(BasePath() + "-journal")) _exit(8);  // without closing the base
              return 1;
            }),
            8);
  ASSERT_TRUE(fs::exists(BasePath() + "-journal"));
  const auto base = StartBase();
  EXPECT_EQ(base->CountRecords("Discotheque"), 0);
  EXPECT_EQ(AsText(base->Db().OpenRecordset("SELECT FICHIER FROM Toph")->Field(0)), "");
  EXPECT_FALSE(fs::exists(BasePath() + "-journal"));
}

TEST_F(Transactions, HoldTogetherWhatTheyWrite) {
  OtherProgram other(BasePath());
  Db().BeginTrans();
  AddCard("A");
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM Discotheque"), "0");
  EXPECT_EQ(base->CountRecords("Discotheque"), 1) << "this connection sees its own rows";
  EXPECT_NE(other.Try("DELETE FROM Discotheque"), "");
  Db().CommitTrans();
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM Discotheque"), "1");
}

TEST_F(Transactions, CanBeBegunAndEndedTwice) {
  Db().CommitTrans();
  Db().BeginTrans();
  Db().BeginTrans();
  AddCard("A");
  Db().CommitTrans();
  Db().CommitTrans();
  EXPECT_EQ(OtherProgram(BasePath()).One("SELECT COUNT(*) FROM Discotheque"), "1");
}

TEST_F(Transactions, TakeBackWhatWasDoneBeforeAFailure) {
  EXPECT_EQ(ErrorOf([&] {
              Transaction transaction(Db());
              AddCard("A");
              AddCard(std::string(41, 'x'));
              transaction.Commit();
            }),
            kErrFieldTooSmall);
  OtherProgram other(BasePath());
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM Discotheque"), "0");
  EXPECT_EQ(other.Try("BEGIN EXCLUSIVE"), "") << "no failure leaves the file locked";
}

TEST_F(Transactions, AreStoredWhenTheBaseIsClosedOverThem) {
  Db().BeginTrans();
  AddCard("A");
  base->Close();
  EXPECT_EQ(OtherProgram(BasePath()).One("SELECT AUTEUR FROM Discotheque"), "A");
}

TEST_F(Compaction, GivesASmallerCopyThatStillGivesNoNumberTwice) {
  Db().BeginTrans();
  for (int i = 0; i < 300; ++i) AddCard("artist", "GENRE");
  Db().CommitTrans();
  Db().Execute("UPDATE Discotheque SET COMMENTAIRE = '" + std::string(2000, 'c') + "'");
  Db().Execute("DELETE * FROM Discotheque WHERE CODE > 1");
  base->Close();
  const std::string copy = PathOf("TriskinN.MDB");
  DBEngine::CompactDatabase(BasePath(), copy);
  EXPECT_LT(fs::file_size(copy), fs::file_size(BasePath()));
  EXPECT_EQ(ErrorOf([&] { DBEngine::CompactDatabase(BasePath(), copy); }), kErrFileExists);
  fs::remove(BasePath());
  fs::rename(copy, BasePath());
  base = StartBase();
  EXPECT_EQ(base->CountRecords("Discotheque"), 1);
  EXPECT_EQ(base->CountRecords("Toph"), 24);
  AddCard("new");
  EXPECT_EQ(Db().LastInsertCode(), 301);
  OtherProgram other(BasePath());
  EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
  EXPECT_EQ(other.One("PRAGMA journal_mode"), "delete");
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM sqlite_schema WHERE type = 'index'"), "15");
}

TEST_F(Compaction, KeepsTheNumbersOfAnEmptiedTable) {
  AddCard("A");
  AddCard("B");
  Db().Execute("DELETE * FROM Discotheque");
  base->Close();
  DBEngine::CompactDatabase(BasePath(), PathOf("TriskinN.MDB"));
  const auto copy = DBEngine::OpenDatabase(PathOf("TriskinN.MDB"));
  copy->Execute("INSERT INTO Discotheque(AUTEUR) VALUES('C')");
  EXPECT_EQ(copy->LastInsertCode(), 3);
}

TEST_F(Compaction, OfWhatIsNoDatabaseFails) {
  WriteFile(PathOf("text.MDB"), std::string(4096, 'x'));
  EXPECT_EQ(ErrorOf([&] { DBEngine::CompactDatabase(PathOf("text.MDB"), PathOf("copy.MDB")); }),
            kErrBadDatabase);
  EXPECT_EQ(ErrorOf([&] { DBEngine::RepairDatabase(PathOf("text.MDB")); }), kErrBadDatabase);
  EXPECT_FALSE(fs::exists(PathOf("copy.MDB")));
}

TEST_F(Compaction, RepairMakesDamagedIndexesAnew) {
  Db().BeginTrans();
  for (int i = 0; i < 50; ++i) AddCard("artist " + std::to_string(i));
  Db().CommitTrans();
  base->Close();
  DBEngine::RepairDatabase(BasePath());
  // An index that lost rows: it is swapped with a partial one of the same shape behind SQLite's
  // back.
  OtherProgram(BasePath())
      .Do("DROP INDEX \"Discotheque.Auteur\";"
          "CREATE INDEX \"Discotheque.Auteur\" ON Discotheque(AUTEUR) WHERE CODE > 25;"
          "PRAGMA writable_schema = ON;"
          "UPDATE sqlite_schema SET sql = 'CREATE INDEX \"Discotheque.Auteur\" ON \"Discotheque\" "
          "(\"AUTEUR\")' "
          "WHERE name = 'Discotheque.Auteur';");
  EXPECT_NE(OtherProgram(BasePath()).Rows("PRAGMA integrity_check"), Strings{"ok"});
  DBEngine::RepairDatabase(BasePath());
  EXPECT_EQ(OtherProgram(BasePath()).One("PRAGMA integrity_check"), "ok");
}

TEST_F(Compaction, RepairTellsDamageThatItCannotHeal) {
  Db().BeginTrans();
  for (int i = 0; i < 500; ++i) AddCard("artist " + std::to_string(i));
  Db().CommitTrans();
  base->Close();
  {
    std::fstream file(BasePath(), std::ios::in | std::ios::out | std::ios::binary);
    for (const int page : {2, 3, 4, 5, 6, 7, 8}) {
      file.seekp(page * 4096);
      file << std::string(4096, '\x55');
    }
  }
  EXPECT_EQ(ErrorOf([&] { DBEngine::RepairDatabase(BasePath()); }), kErrBadDatabase);
}

TEST_F(Compaction, ARowThatBreaksARuleIsNoDamage) {
  OtherProgram(BasePath())
      .Do("PRAGMA ignore_check_constraints = ON; UPDATE Cnf SET FadeOut = 99999");
  base->Close();
  DBEngine::RepairDatabase(BasePath());
}

TEST_F(OpenBaseFailure, AnotherProgramsOwnSqlRunsOnAConnectionOfItsOwn) {
  DBEngine::ExecuteNative(BasePath(),
                          "UPDATE Cnf SET FadeOut = 5; INSERT INTO VT(LIBELLE) VALUES('a' || 'b')");
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 5);
  EXPECT_EQ(Query("SELECT LIBELLE FROM VT")->Text("LIBELLE"), "ab");
  std::string text;
  EXPECT_EQ(
      ErrorOf([&] { DBEngine::ExecuteNative(BasePath(), "UPDATE NoTable SET x = 1"); }, &text),
      kErrNoSuchTable)
      << text;
}

}  // namespace
}  // namespace zemo
