// The pages of a table and their marks: whatever any program does to a row, the mark of its page is
// another one.
#include "store/TablePages.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

class Pages : public OpenBaseTest {
 protected:
  void SetUp() override {
    other = std::make_unique<OtherProgram>(base->Path());
    other->Do("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
              std::to_string(kCards) +
              ") INSERT INTO Discotheque (AUTEUR) SELECT 'ARTIST ' || i FROM n");
  }
  std::vector<TablePage> From(int64_t afterKey) {
    std::vector<TablePage> pages;
    EXPECT_TRUE(Db().ReadPages("Discotheque", afterKey, [&](const TablePage& page) {
      pages.push_back(page);
      return true;
    }));
    return pages;
  }
  std::vector<TablePage> All() { return From(std::numeric_limits<int64_t>::min()); }
  bool CanBeTold(const std::string& table = "Discotheque") {
    return Db().ReadPages(table, 0, [](const TablePage&) { return true; });
  }
  // Last keys of the pages that hold something else than before.
  std::vector<int64_t> Others(const std::vector<TablePage>& before) {
    const auto now = All();
    EXPECT_EQ(now.size(), before.size());
    std::vector<int64_t> others;
    for (size_t i = 0; i < std::min(now.size(), before.size()); ++i)
      if (now[i].mark != before[i].mark) others.push_back(now[i].lastKey);
    return others;
  }
  static int64_t LastKeyOf(const std::vector<TablePage>& pages, int64_t key) {
    for (const TablePage& page : pages)
      if (page.lastKey >= key) return page.lastKey;
    return 0;
  }

  static constexpr int kCards = 3000;
  std::unique_ptr<OtherProgram> other;
};

TEST_F(Pages, HoldAllRowsInTheOrderOfTheirKeys) {
  const auto pages = All();
  ASSERT_GT(pages.size(), 20U);
  int rows = 0;
  int64_t before = std::numeric_limits<int64_t>::min();
  for (const TablePage& page : pages) {
    EXPECT_GT(page.lastKey, before);
    if (before > 0 && page.lastKey <= kCards) {
      EXPECT_EQ(page.rows, page.lastKey - before);
    }
    before = page.lastKey;
    rows += page.rows;
  }
  EXPECT_EQ(rows, kCards);
  EXPECT_EQ(before, std::numeric_limits<int64_t>::max());
}

TEST_F(Pages, OfAnEmptyTableAreOneWithoutRows) {
  other->Do("DELETE FROM Discotheque");
  const auto pages = All();
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_EQ(pages[0].rows, 0);
  EXPECT_EQ(pages[0].lastKey, std::numeric_limits<int64_t>::max());
}

TEST_F(Pages, BeginWithTheOneThatHoldsTheFirstRowAboveTheKey) {
  const auto pages = All();
  const auto rest = From(pages[4].lastKey);
  ASSERT_EQ(rest.size(), pages.size() - 5);
  EXPECT_EQ(rest[0].lastKey, pages[5].lastKey);
  EXPECT_EQ(rest[0].mark, pages[5].mark);
  EXPECT_EQ(From(pages[4].lastKey - 1).size(), pages.size() - 4);
}

TEST_F(Pages, EndWhereNoMoreAreWanted) {
  int seen = 0;
  EXPECT_TRUE(Db().ReadPages("Discotheque", 0, [&](const TablePage&) { return ++seen < 3; }));
  EXPECT_EQ(seen, 3);
}

TEST_F(Pages, KeepTheirMarksWhileNothingIsWritten) {
  const auto before = All();
  EXPECT_EQ(Others(before), std::vector<int64_t>{});
  other->Do("UPDATE Cnf SET JingleCode = JingleCode + 1");
  EXPECT_EQ(Others(before), std::vector<int64_t>{});
}

TEST_F(Pages, AWrittenRowChangesTheMarkOfItsPageAlone) {
  const auto before = All();
  other->Do("UPDATE Discotheque SET AUTEUR = 'ARTISU 1500' WHERE CODE = 1500");
  EXPECT_EQ(Others(before), std::vector<int64_t>{LastKeyOf(before, 1500)});
  other->Do("UPDATE Discotheque SET AUTEUR = 'ARTIST 1500' WHERE CODE = 1500");
  EXPECT_EQ(Others(before), std::vector<int64_t>{});
  Db().Execute("UPDATE Discotheque SET LASTDIFF = 46345.25 WHERE CODE = 7");
  EXPECT_EQ(Others(before), std::vector<int64_t>{LastKeyOf(before, 7)});
}

TEST_F(Pages, TheEndOfALongTextCountsAsItsBegin) {
  other->Do("PRAGMA ignore_check_constraints = ON");
  other->Do("UPDATE Discotheque SET TITRE = printf('%.20000c', 'x') WHERE CODE = 1500");
  const auto before = All();
  other->Do("UPDATE Discotheque SET TITRE = printf('%.19999c', 'x') || 'y' WHERE CODE = 1500");
  EXPECT_EQ(Others(before), std::vector<int64_t>{LastKeyOf(before, 1500)});
}

TEST_F(Pages, AnotherStructureMakesEveryMarkAnotherOne) {
  const auto before = All();
  other->Do("CREATE TABLE Another (A)");
  EXPECT_EQ(Others(before).size(), before.size());
}

TEST_F(Pages, CannotBeToldInATransactionAndOfATableThatIsNone) {
  EXPECT_TRUE(CanBeTold());
  EXPECT_FALSE(CanBeTold("NoTable"));
  Db().BeginTrans();
  EXPECT_FALSE(CanBeTold());
  Db().RollbackTrans();
}

TEST_F(Pages, CannotBeToldOfAFileWithAWriteAheadLog) {
  other->Do("PRAGMA journal_mode = WAL");
  EXPECT_FALSE(CanBeTold());
}

TEST_F(Pages, OfALockedFileAreAFault) {
  other->Do("BEGIN EXCLUSIVE");
  const NoLockWait atOnce(Db().Waiting());
  EXPECT_EQ(ErrorOf([&] { CanBeTold(); }), kErrLocked);
  other->Do("ROLLBACK");
  EXPECT_TRUE(CanBeTold());
}

TEST_F(Pages, HoldTheFileForReadingWhileTheyAreTold) {
  other->Do("PRAGMA busy_timeout = 0");
  Db().ReadPages("Discotheque", 0, [&](const TablePage&) {
    EXPECT_NE(other->Try("UPDATE Discotheque SET TITRE = 'X' WHERE CODE = 1"), "");
    return false;
  });
  other->Do("UPDATE Discotheque SET TITRE = 'X' WHERE CODE = 1");
}

}  // namespace
}  // namespace zemo
