// The time that the base may keep its caller waiting, against a lock that another process holds.
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include "store/LockWait.h"
#include "store/tests/StoreFixture.h"
#include "support/Child.h"

namespace zemo {
namespace {

using Clock = std::chrono::steady_clock;

int64_t MsOf(const std::function<void()>& work) {
  const auto began = Clock::now();
  work();
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - began).count();
}

// The sqlite3 shell, holding the base.
class Holder {
 public:
  Holder(const std::string& path, const std::string& begin) : shell_({"sqlite3", path}) {
    shell_.Tell(begin + ";\n");
    shell_.Tell("SELECT 'held';\n");
    EXPECT_EQ(shell_.Line().value_or(""), "held");
  }
  void Release() {
    shell_.Tell("ROLLBACK;\nSELECT 'free';\n");
    EXPECT_EQ(shell_.Line().value_or(""), "free");
  }

 private:
  test::Child shell_;
};

class LockedElsewhere : public OpenBaseTest {
 protected:
  int Read(int hour) {
    return ErrorOf([&] { Query("SELECT * FROM Toph WHERE HEURE = " + std::to_string(hour)); });
  }
  int Write() {
    return ErrorOf([&] { Db().Execute("UPDATE Toph SET FICHIER = 'x' WHERE HEURE = 1"); });
  }
};

TEST_F(LockedElsewhere, ATicksQueriesWaitItsGrantInAllHoweverManyTheyAre) {
  Holder other(BasePath(), "BEGIN EXCLUSIVE");
  Db().Waiting().LetAllWait(200);
  const int64_t ms = MsOf([&] {
    for (int hour = 0; hour < 20; ++hour) {
      EXPECT_EQ(Read(hour), kErrLocked);
      EXPECT_EQ(Write(), kErrLocked);
    }
  });
  EXPECT_GE(ms, 150) << "the grant is there to be used";
  EXPECT_LT(ms, 2000) << "forty operations of 200 ms would take 8 s";
}

TEST_F(LockedElsewhere, ASettingReadUnderTheLockGivesNobodyMoreTime) {
  EXPECT_EQ(base->CnfInt(1), 1600);
  Holder other(BasePath(), "BEGIN EXCLUSIVE");
  Db().Waiting().LetAllWait(100);
  const int64_t ms = MsOf([&] {
    for (int i = 0; i < 5; ++i) {
      base->CheckCnf();
      EXPECT_EQ(base->CnfInt(1), 1600);
      EXPECT_EQ(Read(i), kErrLocked);
    }
  });
  EXPECT_LT(ms, 2000) << "one operation of the usual time-out would take 5 s";
}

TEST_F(LockedElsewhere, OfManyTicksOnlyTheFirstWaitsForALockThatStays) {
  Holder other(BasePath(), "BEGIN EXCLUSIVE");
  const int64_t ms = MsOf([&] {
    for (int tick = 0; tick < 40; ++tick) {
      Db().Waiting().LetAllWait(100);
      EXPECT_EQ(Read(tick % 24), kErrLocked);
    }
  });
  EXPECT_LT(ms, 2000) << "forty ticks of 100 ms would take 4 s";
}

TEST_F(LockedElsewhere, WhoeverLetsEachWaitSavesNothing) {
  LockWait wait(0);
  wait.LetAllWait(100, 60);
  EXPECT_EQ(wait.LeftMs(), 40);
  wait.LetEachWait(5000);
  EXPECT_EQ(wait.LeftMs(), 5000);
}

TEST_F(LockedElsewhere, WhoeverLetsEachWaitIsNotBoundByWaitsInVainBefore) {
  Holder other(BasePath(), "BEGIN EXCLUSIVE");
  Db().Waiting().LetAllWait(30);
  EXPECT_EQ(Read(1), kErrLocked);
  Db().Waiting().LetEachWait(300);
  EXPECT_GE(MsOf([&] { EXPECT_EQ(Read(1), kErrLocked); }), 250);
}

TEST_F(LockedElsewhere, AShortLockIsWaitedFor) {
  Holder other(BasePath(), "BEGIN EXCLUSIVE");
  Db().Waiting().LetAllWait(30);
  EXPECT_EQ(Read(1), kErrLocked);
  other.Release();
  Db().Waiting().LetAllWait(30);
  EXPECT_EQ(Read(1), 0);
  EXPECT_EQ(Write(), 0);
  EXPECT_EQ(Db().Waiting().LeftMs(), 30) << "nothing stood in the way";
}

// The 30 ms of the grant are one operation's: the second one finds nothing left, and the third
// meets no lock.
TEST_F(LockedElsewhere, WhoWaitedIsCountedWithTheTimeThatItTook) {
  Holder other(BasePath(), "BEGIN EXCLUSIVE");
  Db().Waiting().LetAllWait(30);
  EXPECT_EQ(Read(1), kErrLocked);
  EXPECT_EQ(Read(2), kErrLocked);
  other.Release();
  EXPECT_EQ(Read(1), 0);
  EXPECT_EQ(Db().Waiting().SoFar().operations, 1u);
  EXPECT_GE(Db().Waiting().SoFar().ms, 30);
  EXPECT_LT(Db().Waiting().SoFar().ms, 2000);
}

TEST_F(LockedElsewhere, WithinItsScopeNothingWaitsAndBehindItTheGrantIsWhole) {
  Holder other(BasePath(), "BEGIN IMMEDIATE");
  Db().Waiting().LetAllWait(5000);
  const int64_t ms = MsOf([&] {
    const NoLockWait atOnce(Db().Waiting());
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Write(), kErrLocked);
  });
  EXPECT_LT(ms, 2000);
  EXPECT_EQ(Db().Waiting().LeftMs(), 5000);
}

TEST_F(LockedElsewhere, WhatAGrantSavesIsThereOnlyFromItsReleaseOn) {
  Holder other(BasePath(), "BEGIN EXCLUSIVE");
  LockWait& wait = Db().Waiting();
  wait.LetAllWait(5060, 5000);
  EXPECT_EQ(wait.LeftMs(), 60);
  EXPECT_LT(MsOf([&] { EXPECT_EQ(Read(1), kErrLocked); }), 2000);
  EXPECT_EQ(wait.LeftMs(), 0);
  wait.LetSavedWait();
  EXPECT_GT(wait.LeftMs(), 4000);
  EXPECT_LE(wait.LeftMs(), 5000);
  wait.LetAllWait(100, 60);
  EXPECT_EQ(wait.LeftMs(), 40);
  wait.LetAllWait(100);
  EXPECT_EQ(wait.LeftMs(), 100) << "what the grant before saved is over with it";
}

// --- a base that is opened again ---

class LostBase : public OpenBaseTest {
 protected:
  // A full base with one card, made elsewhere and put in the place by a rename.
  void ReplaceFile(const std::string& artist) {
    const std::string aside = PathOf("aside.MDB");
    StationBase made(aside);
    made.OpenOrCreateDatabase();
    made.CreateMissingTables(nullptr);
    made.OpenAllTables();
    made.SeedFixedRows();
    made.Db().Execute("INSERT INTO Discotheque(AUTEUR) VALUES('" + artist + "')");
    made.Db().Execute("UPDATE Cnf SET FadeOut = 777");
    made.Close();
    std::filesystem::rename(aside, BasePath());
  }
};

TEST_F(LostBase, AFileReplacedByRenameIsTakenUpAndWhoAsksForATableGetsTheNewOne) {
  AddCard("OLD");
  const auto before = base->Table("Discotheque");
  EXPECT_EQ(before->Text("AUTEUR"), "OLD");
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  const int64_t counter = Db().ChangeCounter();
  EXPECT_FALSE(base->OpenDatabaseIfLost()) << "nothing is lost yet";
  ReplaceFile("NEW");
  EXPECT_TRUE(base->OpenDatabaseIfLost());
  EXPECT_FALSE(base->OpenDatabaseIfLost());
  base->OpenAllTables();
  EXPECT_EQ(base->Table("Discotheque")->Text("AUTEUR"), "NEW");
  EXPECT_EQ(ErrorOf([&] { before->MoveFirst(); }), kErrClosed);
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 777);
  EXPECT_GT(Db().ChangeCounter(), counter) << "who keeps something of the old one must see it";
  AddCard("WRITTEN");
  EXPECT_EQ(base->CountRecords("Discotheque"), 2);
}

TEST_F(LostBase, AFileThatWentAwayLeavesTheHandleUntilThereIsAnother) {
  AddCard("OLD");
  std::filesystem::rename(BasePath(), PathOf("gone"));
  EXPECT_FALSE(base->OpenDatabaseIfLost());
  EXPECT_EQ(base->CountRecords("Discotheque"), 1) << "what was read is still read";
  EXPECT_EQ(ErrorOf([&] { AddCard("LOST"); }), kErrReadOnly);
  std::filesystem::rename(PathOf("gone"), BasePath());
  EXPECT_FALSE(base->OpenDatabaseIfLost()) << "it is the same file";
  AddCard("AGAIN");
  EXPECT_EQ(base->CountRecords("Discotheque"), 2);
}

TEST_F(LostBase, WhatIsNoBaseDoesNotTakeTheOldOnesPlace) {
  AddCard("OLD");
  std::filesystem::rename(BasePath(), PathOf("gone"));
  FILE* file = std::fopen(BasePath().c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fputs("This is a text and no database, however long it may be written on and on.", file);
  std::fclose(file);
  EXPECT_EQ(ErrorOf([&] { base->OpenDatabaseIfLost(); }), kErrBadDatabase);
  EXPECT_TRUE(base->IsOpen());
  EXPECT_EQ(base->CountRecords("Discotheque"), 1);
}

TEST_F(LostBase, AClosedBaseOpensWhenItsFileIsThere) {
  AddCard("OLD");
  base->Close();
  EXPECT_TRUE(base->OpenDatabaseIfLost());
  EXPECT_EQ(base->CountRecords("Discotheque"), 1);
}

}  // namespace
}  // namespace zemo
