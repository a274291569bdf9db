// The notes of rows that this program wrote into a file, and the counter of what others did; what
// every engine does is in store/postgres/tests.
#include "store/RowNotes.h"
#include "store/TableDefs.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

using Codes = std::vector<int64_t>;

class Notes : public OpenBaseTest {
 protected:
  void SetUp() override {
    for (const char* artist : {"A", "B", "C"}) AddCard(artist);
    notes = Db().NoteRows("Discotheque");
    notes->Clear();
  }
  Codes Taken() { return notes->Take(1000); }

  std::shared_ptr<RowNotes> notes;
};

TEST_F(Notes, NoMoreRowsAreTakenThanAskedFor) {
  Db().Execute("UPDATE Discotheque SET AUTEUR = 'X' WHERE '*'");
  EXPECT_EQ(notes->Take(2), (Codes{1, 2}));
  EXPECT_EQ(notes->Count(), 1U);
  EXPECT_EQ(notes->Take(2), Codes{3});
}

TEST_F(Notes, ATableThatIsEmptiedIsNotedRowByRow) {
  Db().Execute("DELETE * FROM Discotheque");
  EXPECT_EQ(Taken(), (Codes{1, 2, 3}));
}

TEST_F(Notes, AKeyThatMovesIsNotedOnBothSides) {
  Db().Execute("UPDATE Discotheque SET CODE = 70 WHERE CODE = 2");
  EXPECT_EQ(Taken(), (Codes{2, 70}));
}

TEST_F(Notes, ARowThatGivesWayToAnotherIsNoted) {
  OtherProgram(BasePath()).Do("CREATE UNIQUE INDEX only_one ON Discotheque(AUTEUR)");
  Db().Execute("INSERT OR REPLACE INTO Discotheque (AUTEUR) VALUES ('B')");
  EXPECT_EQ(Taken(), (Codes{2, 4}));
}

TEST_F(Notes, WhatATriggerOfSomebodyWritesIsNoted) {
  OtherProgram(BasePath())
      .Do("CREATE TRIGGER t AFTER UPDATE ON Toph BEGIN UPDATE Discotheque SET TITRE = 'T' WHERE "
          "CODE = 3; END");
  Db().Execute("UPDATE Toph SET SURIMPRESSION = 1 WHERE CODE = 1");
  EXPECT_EQ(Taken(), Codes{3});
}

TEST_F(Notes, EachReaderHasItsOwn) {
  const auto others = Db().NoteRows("DISCOTHEQUE");
  others->Clear();
  AddCard("D");
  EXPECT_EQ(Taken(), Codes{4});
  EXPECT_EQ(others->Take(1), Codes{4});
}

TEST_F(Notes, TooManyRowsAreAllRows) {
  Db().Execute(
      "INSERT INTO Discotheque (AUTEUR) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
      "FROM n WHERE i < 20000) SELECT 'N' FROM n");
  EXPECT_FALSE(notes->All());
  AddCard("ONE MORE");
  EXPECT_TRUE(notes->All());
  EXPECT_EQ(notes->Count(), 0U);
}

TEST_F(Notes, ABaseThatIsOpenedAgainHasOtherRows) {
  Db().Open(false);
  EXPECT_TRUE(notes->All());
  notes->Clear();
  AddCard("D");
  EXPECT_EQ(Taken(), Codes{4});
}

TEST_F(Notes, ATableThatIsReadOtherwiseHasOtherRows) {
  base->OpenAllTables();
  EXPECT_TRUE(notes->All());
}

TEST_F(Notes, NotesThatNobodyHoldsAnyMoreDoNoHarm) {
  notes.reset();
  AddCard("D");
  notes = Db().NoteRows("Discotheque");
  notes->Clear();
  AddCard("E");
  EXPECT_EQ(Taken(), Codes{5});
}

// --- others ---

TEST_F(Notes, WhoHasTheFileToHimselfHasStoredNothingYet) {
  const int64_t before = Db().ForeignCounter();
  OtherProgram other(BasePath());
  other.Do("BEGIN EXCLUSIVE; UPDATE Toph SET SURIMPRESSION = 1");
  const NoLockWait atOnce(Db().Waiting());
  EXPECT_EQ(Db().ForeignCounter(), before);
  other.Do("COMMIT");
  EXPECT_GT(Db().ForeignCounter(), before);
}

// --- the structure ---

TEST_F(Notes, ATableOfTheSchemaIsReadAsStored) {
  EXPECT_TRUE(Db().IsReadAsStored("Discotheque"));
  EXPECT_FALSE(Db().IsReadAsStored("Variete"));  // has no key
  EXPECT_FALSE(Db().IsReadAsStored("Nowhere"));
}

TEST_F(Notes, ATableWhoseStructureSomebodyChangedIsNot) {
  OtherProgram(BasePath()).Do("ALTER TABLE Discotheque RENAME COLUMN LABEL TO X");
  EXPECT_FALSE(Db().IsReadAsStored("Discotheque"));
  base->OpenAllTables();
  EXPECT_FALSE(Db().IsReadAsStored("Discotheque"));  // a stand-in
}

// What is noted, and what the pages tell, is the row's number.
TEST_F(Notes, ATableWhoseKeyIsNotTheNumberOfItsRowsIsNot) {
  OtherProgram other(BasePath());
  const auto make = [&](const std::string& name, const std::string& columns) {
    other.Do("CREATE TABLE " + name + " " + columns);
    base->OpenAllTables();
    return Db().IsReadAsStored(name);
  };
  EXPECT_TRUE(make("Alias", "(CODE INTEGER PRIMARY KEY, X INTEGER)"));
  EXPECT_TRUE(make("AliasBehind", "(CODE INTEGER, X INTEGER, PRIMARY KEY (CODE))"));
  EXPECT_FALSE(make("OtherType", "(CODE INT PRIMARY KEY, X INTEGER)"));
  EXPECT_FALSE(make("Falling", "(CODE INTEGER PRIMARY KEY DESC, X INTEGER)"));
  EXPECT_FALSE(make("OfTwo", "(CODE INTEGER, X INTEGER, PRIMARY KEY (CODE, X))"));
  EXPECT_FALSE(make("Numberless", "(CODE INTEGER PRIMARY KEY, X INTEGER) WITHOUT ROWID"));
}

TEST_F(Notes, AStructureThatOnlyGrewIsLookedAtAndFine) {
  OtherProgram(BasePath()).Do("ALTER TABLE Toph ADD COLUMN X");
  EXPECT_FALSE(Db().IsReadAsStored("Discotheque"));
  base->OpenAllTables();
  EXPECT_TRUE(Db().IsReadAsStored("Discotheque"));
}

}  // namespace
}  // namespace zemo
