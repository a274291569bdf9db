// The library in memory and a write of another program in the very moment of a reading.
#include <gtest/gtest.h>

#include "InterruptedBase.h"
#include "library/KnownCards.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class CardsInMemory : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    // Of 230 bytes each: several pages, of which a slice of three rows reads one.
    Cards(kCards);
    base = std::make_unique<InterruptedBase>(on.station.base.Db());
  }
  void Cards(int count) {
    on.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(count) +
        ") INSERT INTO Discotheque (TITRE, FILENAME) SELECT 'TITLE ' || i, printf('%.220c', 'f') "
        "FROM n");
  }
  void Interrupt() {
    base->beforeRows = [this] { on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 1"); };
  }
  void ReadAll() {
    while (cards.ReadSlice(*base)) {
    }
  }
  std::string TitleOfFirst() {
    const auto known = cards.Now(*base);
    return known ? std::string(TitleOf(known->chunks.at(0)->at(0))) : "not known";
  }

  void ExpectTitlesByCode() {
    const auto known = cards.Now(*base);
    ASSERT_TRUE(known);
    int code = 0;
    for (const auto& chunk : known->chunks)
      for (const PackedCard& card : *chunk)
        EXPECT_EQ(TitleOf(card), "TITLE " + std::to_string(++code));
    EXPECT_EQ(code, kCards);
  }
  // CODE of the card that was made as the nth of those that are there.
  std::string SqlOfFirst(int nth) {
    return "(SELECT MIN(CODE) FROM Discotheque) + " + std::to_string(nth - 1);
  }

  static constexpr int64_t kAboveAll = std::numeric_limits<int64_t>::max();
  static constexpr int kCards = 40;
  TestStation on;
  std::unique_ptr<InterruptedBase> base;
  KnownCards cards{3};
};

TEST_F(CardsInMemory, AWriteAheadOfTheLastSliceIsNotMissed) {
  cards.ReadSlice(*base);
  Interrupt();
  EXPECT_EQ(TitleOfFirst(), "not known");
  ReadAll();
  EXPECT_EQ(TitleOfFirst(), "OTHER");
}

TEST_F(CardsInMemory, AWriteAheadOfTheLookAtTheLastPageIsNotMissed) {
  ReadAll();
  on.Sql("UPDATE Cnf SET JingleCode = JingleCode + 1");
  base->behindPages = [this] { on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 1"); };
  EXPECT_EQ(TitleOfFirst(), "not known");
  ReadAll();
  EXPECT_EQ(TitleOfFirst(), "OTHER");
}

TEST_F(CardsInMemory, RowsAreReadOnlyOfPagesThatAnotherProgramWroteTo) {
  ReadAll();
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 40");
  base->rows = 0;
  EXPECT_EQ(TitleOfFirst(), "TITLE 1");
  EXPECT_GT(base->rows, 0);
  EXPECT_LT(base->rows, 20);
  on.Sql("UPDATE Cnf SET JingleCode = JingleCode + 1");
  base->rows = 0;
  EXPECT_EQ(TitleOfFirst(), "TITLE 1");
  EXPECT_EQ(base->rows, 0);
}

// Some 3 ms of looking, whether the pages are many or their rows are long.
TEST_F(CardsInMemory, ASliceLooksAtFewerPagesWhoseRowsGoOnElsewhere) {
  KnownCards looked;
  base->pages = {{10, 10, {1, 1}, 800}, {20, 10, {2, 2}, 800}, {kAboveAll, 20, {3, 3}, 800}};
  while (looked.ReadSlice(*base)) {
  }
  on.Sql("UPDATE Cnf SET JingleCode = JingleCode + 1");
  EXPECT_TRUE(looked.ReadSlice(*base));
  EXPECT_FALSE(looked.ReadSlice(*base));
}

TEST_F(CardsInMemory, WhereThePagesCannotBeToldAllRowsAreRead) {
  ReadAll();
  base->pagesUntold = true;
  for (const int code : {1, 20, 40}) {
    const std::string number = std::to_string(code);
    on.Sql("UPDATE Discotheque SET TITRE = 'NEW " + number + "' WHERE CODE = " + number);
    EXPECT_EQ(TitleOfFirst(), "not known");
    ReadAll();
  }
  EXPECT_EQ(TitleOfFirst(), "NEW 1");
  on.Sql("DELETE FROM Discotheque WHERE CODE = 1");
  ReadAll();
  EXPECT_EQ(TitleOfFirst(), "TITLE 2");
}

// What was read row by row has no marks: a page that holds again what it once did is none that is
// known.
TEST_F(CardsInMemory, PagesThatCannotBeToldForATimeAreNotTakenForKnownOnes) {
  ReadAll();
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE < 40");
  cards.ReadSlice(*base);  // by its pages, and the next one row by row
  base->pagesUntold = true;
  cards.ReadSlice(*base);
  base->pagesUntold = false;
  on.Sql("UPDATE Discotheque SET TITRE = 'TITLE ' || CODE WHERE CODE < 40");
  ReadAll();
  ExpectTitlesByCode();
}

TEST_F(CardsInMemory, WhatThisProgramWroteAndAnotherOneTookBackIsReadAgain) {
  ReadAll();
  on.station.base.Db().Execute("UPDATE Discotheque SET TITRE = 'OTHER 1' WHERE CODE = 1");
  EXPECT_EQ(TitleOfFirst(), "OTHER 1");
  on.Sql("UPDATE Discotheque SET TITRE = 'TITLE 1' WHERE CODE = 1");
  ReadAll();
  ExpectTitlesByCode();
}

TEST_F(CardsInMemory, APageThatBeginsElsewhereIsAnotherOne) {
  base->pages = {{10, 10, {1, 1}}, {kAboveAll, 30, {2, 2}}};
  ReadAll();
  on.Sql("DELETE FROM Discotheque WHERE CODE <= 10");
  base->pages = {{kAboveAll, 30, {2, 2}}};
  ReadAll();
  EXPECT_EQ(TitleOfFirst(), "TITLE 11");
}

TEST_F(CardsInMemory, APageBehindRowsWithoutMarksIsAnotherOne) {
  base->pagesUntold = true;
  for (int slice = 0; slice < 6; ++slice) cards.ReadSlice(*base);  // up to 18
  base->pagesUntold = false;
  base->pages = {{15, 15, {1, 1}}, {20, 5, {2, 2}}, {kAboveAll, 20, {3, 3}}};
  ReadAll();
  on.Sql("DELETE FROM Discotheque WHERE CODE <= 15");
  base->pages.erase(base->pages.begin());
  ReadAll();
  EXPECT_EQ(TitleOfFirst(), "TITLE 16");
}

TEST_F(CardsInMemory, CardsGoWithTheirPages) {
  for (int first = 1; first <= kCards; first += 4) {
    SCOPED_TRACE("from " + std::to_string(first));
    on.Sql("DELETE FROM Discotheque");
    Cards(kCards);
    ReadAll();
    on.Sql("DELETE FROM Discotheque WHERE CODE < " + SqlOfFirst(first));
    ReadAll();
    const auto known = cards.Now(*base);
    ASSERT_TRUE(known);
    int count = 0;
    for (const auto& chunk : known->chunks) count += static_cast<int>(chunk->size());
    EXPECT_EQ(count, kCards + 1 - first);
  }
}

TEST_F(CardsInMemory, AWriteWhileARowIsReadAgainIsNotMissed) {
  ReadAll();
  on.station.base.Db().Execute("UPDATE Discotheque SET TITRE = 'OURS' WHERE CODE = 5");
  Interrupt();
  EXPECT_EQ(TitleOfFirst(), "not known");
  ReadAll();
  EXPECT_EQ(TitleOfFirst(), "OTHER");
}

TEST_F(CardsInMemory, ARowThatCannotBeReadAgainIsReadNextTime) {
  ReadAll();
  on.station.base.Db().Execute("UPDATE Discotheque SET TITRE = 'OURS' WHERE CODE = 1");
  base->beforeRows = [] { throw StoreError(kErrLocked, "for the test"); };
  EXPECT_EQ(TitleOfFirst(), "not known");
  EXPECT_EQ(TitleOfFirst(), "OURS");
}

TEST_F(CardsInMemory, ASliceThatCannotBeReadIsReadNextTime) {
  base->beforeRows = [] { throw StoreError(kErrLocked, "for the test"); };
  EXPECT_THROW(cards.ReadSlice(*base), StoreError);
  ReadAll();
  EXPECT_EQ(TitleOfFirst(), "TITLE 1");
}

TEST_F(CardsInMemory, ACardWithANumberOfMoreThan32BitsIsNotLeftOut) {
  ReadAll();
  on.station.base.Db().Execute("INSERT INTO Discotheque (CODE, TITRE) VALUES (5000000000, 'WIDE')");
  EXPECT_EQ(TitleOfFirst(), "not known");
}

TEST_F(CardsInMemory, TextsThatNobodyNamesAnyMoreGoWithTheNextPass) {
  ReadAll();
  const std::string longFile(240, 'x');
  for (int i = 0; i < 1500; ++i) {
    on.station.base.Db().Execute("UPDATE Discotheque SET FILENAME = ? WHERE CODE = 1",
                                 {longFile + std::to_string(i)});
    cards.Now(*base);
  }
  EXPECT_GT(cards.Now(*base)->texts->Bytes(), 300'000U);
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 1");
  ReadAll();
  EXPECT_LT(cards.Now(*base)->texts->Bytes(), 20'000U);
}

// A row whose cells read otherwise than a card packs them is kept beside its card each time.
TEST_F(CardsInMemory, CellsOfOddRowsThatNobodyNamesAnyMoreGoAsWell) {
  ReadAll();
  for (int i = 0; i < 1500; ++i) {
    on.station.base.Db().Execute("UPDATE Discotheque SET POINTSORTIE = ? WHERE CODE = 1",
                                 {i + 0.5});
    cards.Now(*base);
  }
  // Each time 220 bytes of the file beside the card, and 220 among the row's cells.
  EXPECT_GT(cards.Listed(*base)->texts->Bytes(), 1500U * 440);
  on.Sql("UPDATE Discotheque SET POINTSORTIE = 1 WHERE CODE = 1");
  ReadAll();
  EXPECT_LT(cards.Listed(*base)->texts->Bytes(), 20'000U);
}

TEST_F(CardsInMemory, ArtistsHaveTheRanksOfTheirCapitalsInWhateverOrderTheyCome) {
  std::vector<std::string> names;  // of every card, as listed
  for (int i = 1; i <= kCards; ++i) names.push_back("CODE " + std::to_string(i));
  for (int i = 0; i < 40; ++i) {
    const std::string name = std::string(i % 3 ? "Name " : "name ") + std::to_string(i * 7 % 17);
    on.Sql("INSERT INTO Discotheque (AUTEUR) VALUES ('" + name + "')");
    names.push_back("NAME " + std::to_string(i * 7 % 17));
  }
  ReadAll();
  const auto known = cards.Now(*base);
  ASSERT_TRUE(known);
  std::vector<uint32_t> ranks;
  for (const auto& chunk : known->chunks)
    for (const PackedCard& card : *chunk) ranks.push_back(known->texts->ArtistRank(card.artist));
  ASSERT_EQ(ranks.size(), names.size());
  for (size_t a = 0; a < names.size(); ++a)
    for (size_t b = 0; b < names.size(); ++b)
      ASSERT_EQ(ranks[a] < ranks[b], names[a] < names[b]) << names[a] << ", " << names[b];
}

TEST_F(CardsInMemory, TheCardsOfAMomentAreOneCopyWithThoseThatFollow) {
  Cards(1300);
  KnownCards large(600);
  while (large.ReadSlice(*base)) {
  }
  const auto before = large.Now(*base);
  on.station.base.Db().Execute("UPDATE Discotheque SET TITRE = 'OURS' WHERE CODE = 1");
  const auto behind = large.Now(*base);
  ASSERT_TRUE(before && behind);
  ASSERT_EQ(behind->chunks.size(), 2U);
  EXPECT_NE(before->chunks[0], behind->chunks[0]);
  EXPECT_EQ(before->chunks[1], behind->chunks[1]);
  EXPECT_EQ(TitleOf(before->chunks[0]->at(0)), "TITLE 1");
  EXPECT_EQ(TitleOf(behind->chunks[0]->at(0)), "OURS");
}

}  // namespace
}  // namespace zemo::test
