// The pages of a table and their marks: whatever any program does to a row, the mark of its page is
// another one.
#include <fstream>

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

  // The file's bytes, as a damaged disk has them; the highest byte first.
  int64_t Number(int64_t at, int bytes) const {
    std::ifstream file(BasePath(), std::ios::binary);
    file.seekg(at);
    int64_t number = 0;
    while (bytes-- > 0) number = number << 8 | file.get();
    return number;
  }
  void Put(int64_t at, int64_t number, int bytes) const {
    std::fstream file(BasePath(), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(at);
    while (bytes-- > 0) file.put(static_cast<char>(number >> (8 * bytes)));
  }
  int64_t PageBytes() const { return Number(16, 2); }
  // Of the table's first page.
  int64_t RootAt() {
    return (std::stoll(
                other->One("SELECT rootpage FROM sqlite_schema WHERE name = 'Discotheque'")) -
            1) *
           PageBytes();
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

// Of 20,000 bytes and some more 4 x 4092 stand elsewhere, the others on the table's page.
TEST_F(Pages, AreCountedWithThoseOnWhichLongRowsGoOn) {
  other->Do("PRAGMA ignore_check_constraints = ON");
  other->Do("UPDATE Discotheque SET TITRE = printf('%.20000c', 'x') WHERE CODE = 1500");
  ASSERT_EQ(PageBytes(), 4096);
  const auto pages = All();
  const int64_t longOne = LastKeyOf(pages, 1500);
  for (const TablePage& page : pages)
    EXPECT_EQ(page.filePages, page.lastKey == longOne ? 5 : 1) << page.lastKey;
}

TEST_F(Pages, AnotherStructureMakesEveryMarkAnotherOne) {
  const auto before = All();
  other->Do("CREATE TABLE Another (A)");
  EXPECT_EQ(Others(before).size(), before.size());
}

// A base that takes another one's place counts the changes of its structure by itself.
TEST_F(Pages, AnotherStructureOfTheSameCountMakesEveryMarkAnotherOne) {
  const auto before = All();
  const std::string count = other->One("PRAGMA schema_version");
  for (const char* names : {"ECARTMINUTES TO X", "ECARTJOURS TO ECARTMINUTES", "X TO ECARTJOURS"})
    other->Do("ALTER TABLE Discotheque RENAME COLUMN " + std::string(names));
  other->Do("PRAGMA schema_version = " + count);
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

// --- a damaged file ---

TEST_F(Pages, CannotBeToldWhereTheirKeysDoNotRise) {
  const auto at = [&](int64_t cell) {
    return RootAt() + Number(RootAt() + 12 + 2 * cell, 2);  // four bytes of its page, then the key
  };
  ASSERT_NE(Number(at(2), 4), Number(at(3), 4));
  // The third and the fourth cell change places.
  const int64_t place = Number(RootAt() + 12 + 4, 2), next = Number(RootAt() + 12 + 6, 2);
  ASSERT_TRUE(CanBeTold());
  Put(RootAt() + 12 + 4, next, 2);
  Put(RootAt() + 12 + 6, place, 2);
  EXPECT_FALSE(CanBeTold());
}

TEST_F(Pages, CannotBeToldWhereARowIsLongerThanTheFile) {
  const int64_t leaf = (Number(RootAt() + Number(RootAt() + 12, 2), 4) - 1) * PageBytes();
  const int64_t row = leaf + Number(leaf + 8, 2);
  ASSERT_TRUE(CanBeTold());
  for (const int64_t first : {0x8FFFFFFFFF, 0xFFFFFFFFFF}) {
    // 2^31 and more; below nothing, of nine bytes.
    Put(row, first, 5);
    Put(row + 5, 0xFFFFFF7F, 4);
    EXPECT_FALSE(CanBeTold()) << first;
  }
}

TEST_F(Pages, CannotBeToldWhereTheChainOfALongRowLeadsBackToItself) {
  other->Do("PRAGMA ignore_check_constraints = ON");
  other->Do("UPDATE Discotheque SET TITRE = printf('%.20000c', 'x') WHERE CODE = 1");
  other->Do("CREATE TABLE AtTheEnd AS SELECT zeroblob(20000)");
  ASSERT_TRUE(CanBeTold());
  const int64_t leaf = (Number(RootAt() + Number(RootAt() + 12, 2), 4) - 1) * PageBytes();
  const int64_t row = leaf + Number(leaf + 8, 2);
  ASSERT_EQ(PageBytes(), 4096);
  ASSERT_LE(row + 499, leaf + 4096);
  const int64_t last = static_cast<int64_t>(std::filesystem::file_size(BasePath())) / 4096;
  // 2,147,481,597 bytes in row 1, of which 489 stand on its page: a row that there could be. The
  // chain is the last page, over and over.
  Put(row, 0x87FFFFEF7D01, 6);
  Put(row + 6 + 489, last, 4);
  Put((last - 1) * 4096, last, 4);
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
