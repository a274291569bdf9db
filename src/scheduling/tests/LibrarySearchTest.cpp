// The search in slices, its index and its sorting; what a search finds stands in the live mode's
// scenarios.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "scheduling/LibraryIndex.h"
#include "scheduling/LibrarySearch.h"
#include "scheduling/RowSort.h"
#include "store/Database.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

class Search : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void Cards(int count) {
    on.Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
           std::to_string(count) +
           ") INSERT INTO Discotheque (AUTEUR, TITRE, DUREE, GENRE, VARIETE, FILENAME) SELECT "
           "'ARTIST ' || i, 'SONG', 180000, CASE i % 3 WHEN 0 THEN 'ROCK' ELSE 'POP' END, "
           "'NATIONAL', '/m' || i || '.mp3' FROM n");
  }
  BrowseRows& List() { return on.station.browse.ListRech; }
  size_t Found() { return List().rows.size(); }
  std::string Text(size_t row) { return std::string(List().rows.Cell(row, 0)); }
  void Begin(const std::string& text) {
    on.station.browse.Rech = text;
    BeginTextSearch(on.station);
  }
  // Slices until nothing is left; how many it took.
  int Rest() {
    int slices = 1;
    while (SearchSlice(on.station) == SearchTurn::kMore && slices < 1000) ++slices;
    return slices;
  }
  // Another program writes to every card, so that one slice does not take it in.
  void WriteAll() { on.Sql("UPDATE Discotheque SET DUREE = DUREE + 1"); }
  // How many slices left something to be read.
  int ReadAhead() {
    int slices = 0;
    while (ReadAheadSlice(on.station) && slices < 1000) ++slices;
    return slices;
  }
  TestStation on;
};

// --- slices ---

TEST_F(Search, ASmallLibraryIsSearchedInOneSlice) {
  Cards(1000);
  Begin("ARTIST 99");
  EXPECT_EQ(Rest(), 1);
  EXPECT_EQ(Found(), 11U);  // 99, 990 to 999
}

TEST_F(Search, ALargeOneTakesASliceForTwoThousandCardsAndShowsWhatIsFoundSoFar) {
  Cards(5000);
  Begin("*");
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kMore);
  EXPECT_EQ(Found(), 2000U);
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kMore);
  EXPECT_EQ(Found(), 4000U);
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kDone);
  EXPECT_EQ(Found(), 5000U);
  EXPECT_EQ(Text(4999), "ARTIST 5000");
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kDone);
}

TEST_F(Search, ALibraryOfJustOneSliceEndsToo) {
  Cards(2000);
  Begin("*");
  EXPECT_EQ(Rest(), 2);
  EXPECT_EQ(Found(), 2000U);
}

TEST_F(Search, WhatIsKnownAnswersAtOnceWhileNothingWasWritten) {
  Cards(15000);
  ReadAhead();
  Begin("ARTIST 1500");
  EXPECT_EQ(Rest(), 1);
  EXPECT_EQ(Found(), 2U);  // 1500, 15000
  Begin("ARTIST 15000");
  EXPECT_EQ(Rest(), 1);
  EXPECT_EQ(Found(), 1U);
}

TEST_F(Search, ReadingAheadMakesTheFirstSearchAnswerAtOnce) {
  Cards(7000);
  EXPECT_EQ(ReadAhead(),
            6);  // of 1000 cards and what is left of their last page; the last is the 7th
  Begin("*");
  EXPECT_EQ(Rest(), 1);
  EXPECT_EQ(Found(), 7000U);
}

TEST_F(Search, AfterAWriteWhatIsKnownAnswersFirstAndTheTableAtLast) {
  Cards(7000);
  ReadAhead();
  Begin("ARTIST 700");
  Rest();
  EXPECT_EQ(Found(), 2U);  // 700, 7000
  WriteAll();
  on.Sql("INSERT INTO Discotheque (AUTEUR, TITRE) VALUES ('ARTIST 700', 'NEW')");
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 700");
  Begin("ARTIST 700");
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kMore);
  EXPECT_EQ(Found(), 2U);
  const uint64_t generation = List().rows.Generation();
  Rest();
  EXPECT_EQ(Found(), 3U);
  EXPECT_GT(List().rows.Generation(), generation);
  EXPECT_EQ(List().rows.Cell(0, 1), "OTHER");
  EXPECT_EQ(List().rows.Cell(2, 1), "NEW");
}

TEST_F(Search, TheSameFindsAfterAWriteAreTheSameRowsAsTheyReadNow) {
  Cards(7000);
  ReadAhead();
  Begin("ARTIST 6999");
  Rest();
  WriteAll();
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 6999");
  Begin("ARTIST 6999");
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kMore);
  const uint64_t generation = List().rows.Generation();
  Rest();
  EXPECT_EQ(List().rows.Generation(), generation);
  EXPECT_EQ(List().rows.Cell(0, 1), "OTHER");
}

TEST_F(Search, AFewCardsThatAnotherProgramWroteAreFoundAtOnce) {
  Cards(7000);
  ReadAhead();
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE % 1000 = 0");
  Begin("OTHER");
  EXPECT_EQ(Rest(), 1);
  EXPECT_EQ(Found(), 7U);
}

TEST_F(Search, WhatThisProgramWroteIsFoundAtOnce) {
  Cards(7000);
  ReadAhead();
  on.station.base.Db().Execute("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 6999");
  Begin("OTHER");
  EXPECT_EQ(Rest(), 1);
  EXPECT_EQ(Found(), 1U);
}

TEST_F(Search, RowsThatAreShownStayAsTheyAreWhileTheLibraryIsReadAnew) {
  Cards(7000);
  ReadAhead();
  Begin("ARTIST 6999");
  Rest();
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 6999");
  ReadAhead();
  EXPECT_EQ(List().rows.Cell(0, 1), "SONG");
}

TEST_F(Search, ALibraryThatOthersWriteToAllTheTimeIsFoundAsItWasBehindTheKeystroke) {
  Cards(7000);
  ReadAhead();
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 6999");
  WriteAll();
  Begin("OTHER");
  int slices = 1;
  for (; SearchSlice(on.station) == SearchTurn::kMore && slices < 1000; ++slices) WriteAll();
  EXPECT_LT(slices, 50);
  EXPECT_EQ(Found(), 1U);
}

TEST_F(Search, ALibraryThatCannotBeKeptIsReadOnceForAllSearches) {
  Cards(5000);
  on.Sql("UPDATE Discotheque SET CODE = 4294967301 WHERE CODE = 5");
  EXPECT_EQ(ReadAhead(), 7);  // four of 1000 cards until that code is met, three of 2000
  Begin("*");
  EXPECT_EQ(Rest(), 1);
  ASSERT_EQ(Found(), 5000U);
  EXPECT_EQ(List().rows.Cell(4999, 6), "4294967301");
  on.Sql("UPDATE Discotheque SET CODE = 5 WHERE CODE > 5000");
  ReadAhead();
  Begin("*");
  EXPECT_EQ(Rest(), 1);
  EXPECT_EQ(List().rows.Cell(4, 6), "5");
}

TEST_F(Search, ANewTextDropsTheSearchBefore) {
  Cards(7000);
  Begin("*");
  SearchSlice(on.station);
  Begin("ARTIST 6999");
  Rest();
  ASSERT_EQ(Found(), 1U);
  EXPECT_EQ(Text(0), "ARTIST 6999");
}

TEST_F(Search, RowsThatCameFromElsewhereMeanwhileEndTheSearch) {
  Cards(7000);
  Begin("*");
  SearchSlice(on.station);
  List().rows = {BrowseRow{Cells{"OTHER"}}};
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kDone);
  ASSERT_EQ(Found(), 1U);
  EXPECT_EQ(Text(0), "OTHER");
}

TEST_F(Search, TheSearchNotesTheTimeAtItsEnd) {
  Cards(10);
  on.station.engine.LastActivityTimer = 1;
  Begin("ARTI");
  Rest();
  EXPECT_FLOAT_EQ(on.station.engine.LastActivityTimer, on.station.Timer());
}

TEST_F(Search, AnEmptyLibraryLeavesTheListAsItIs) {
  List().rows = {BrowseRow{Cells{"KEPT"}}};
  Begin("NOBODY");
  Rest();
  ASSERT_EQ(Found(), 1U);
  EXPECT_EQ(Text(0), "KEPT");
}

// --- genres ---

TEST_F(Search, ACardWithoutAGenreIsLikeNone) {
  Cards(3);
  on.Sql("UPDATE Discotheque SET GENRE = NULL WHERE CODE = 2");
  OnAir::RechGenre_Click(on.station, "*");
  ASSERT_EQ(Found(), 2U);
  EXPECT_EQ(Text(0), "ARTIST 1");
  EXPECT_EQ(Text(1), "ARTIST 3");
}

TEST_F(Search, AGenreIsFoundWithoutRegardToCaseInAllOfTheTable) {
  Cards(9000);
  OnAir::RechGenre_Click(on.station, "r?ck");
  EXPECT_EQ(Found(), 3000U);
  EXPECT_EQ(Text(2999), "ARTIST 9000");
}

TEST_F(Search, AGenreKeepsTheSortingAndATextEndsIt) {
  Cards(12);
  Begin("*");
  Rest();
  OnAir::ListRech_ColumnClick(on.station, 0);
  OnAir::RechGenre_Click(on.station, "ROCK");
  ASSERT_EQ(Found(), 4U);
  EXPECT_EQ(Text(0), "ARTIST 12");
  EXPECT_EQ(Text(1), "ARTIST 3");
  EXPECT_TRUE(List().sorted);
  Begin("*");
  Rest();
  EXPECT_FALSE(List().sorted);
  EXPECT_EQ(Text(1), "ARTIST 2");
}

// --- faults ---

class LockedSearch : public Search {
 protected:
  void Lock() {
    other = test::OpenElsewhere(on.station.base.Path(), 1000);
    other->Execute("PRAGMA locking_mode = EXCLUSIVE");
    other->Execute("UPDATE Cnf SET JingleCode = 1");
  }
  std::unique_ptr<Database> other;
};

TEST_F(LockedSearch, ABaseThatIsLockedForAMomentIsAskedAgain) {
  Cards(10);
  Lock();
  Begin("*");
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kLater);
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kLater);
  EXPECT_FALSE(on.First("error"));
  other->Close();
  Rest();
  EXPECT_EQ(Found(), 10U);
}

TEST_F(LockedSearch, ABaseThatStaysLockedEndsTheSearchWithALine) {
  Cards(10);
  Lock();
  Begin("*");
  int turns = 0;
  while (SearchSlice(on.station) == SearchTurn::kLater && turns < 1000) ++turns;
  EXPECT_EQ(turns, 99);  // of 50 ms: five seconds
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "Rech");
}

TEST_F(LockedSearch, ReadingAheadOfALockedBaseSaysNothing) {
  Cards(10);
  Lock();
  EXPECT_FALSE(ReadAheadSlice(on.station));
  EXPECT_FALSE(on.First("error"));
}

// --- the sorting ---

BrowsedRows RowsOf(const Names& texts) {
  std::vector<BrowseRow> rows;
  for (const std::string& text : texts) rows.push_back({{"same", text}, 1});
  return rows;
}

TEST(RowSort, SortsAFewInOneSlice) {
  const BrowsedRows rows = RowsOf({"b", "Émile", "A", "a", "Ab"});
  RowSort sort(rows, 1);
  EXPECT_TRUE(sort.Slice());
  EXPECT_EQ(sort.Places(), (std::vector<uint32_t>{2, 3, 4, 0, 1}));  // "A" and "a" are one text
}

TEST(RowSort, SortsManyInSlicesAndKeepsTheOrderOfEqualTexts) {
  Names texts;
  for (uint32_t i = 0; i < 50000; ++i) texts.push_back("TITLE " + std::to_string(i * 7919 % 5000));
  const BrowsedRows rows = RowsOf(texts);
  std::vector<uint32_t> expected(texts.size());
  for (uint32_t i = 0; i < expected.size(); ++i) expected[i] = i;
  std::stable_sort(expected.begin(), expected.end(),
                   [&](uint32_t a, uint32_t b) { return texts[a] < texts[b]; });
  RowSort sort(rows, 1);
  int slices = 1;
  while (!sort.Slice()) ++slices;
  EXPECT_EQ(sort.Places(), expected);
  EXPECT_GT(slices, 10);
}

TEST(RowSort, OfNothingIsDoneAtOnce) {
  const BrowsedRows rows;
  RowSort sort(rows, 0);
  EXPECT_TRUE(sort.Slice());
  EXPECT_TRUE(sort.Places().empty());
}

TEST_F(Search, AHeadClickedDuringASearchSortsItsFindsAtTheEnd) {
  Cards(7000);
  Begin("*");
  SearchSlice(on.station);
  BeginColumnClick(on.station, 0);
  Rest();
  ASSERT_EQ(Found(), 7000U);
  EXPECT_EQ(Text(1), "ARTIST 10");
  EXPECT_TRUE(List().sorted);
}

TEST_F(Search, RowsThatChangeDuringASortingEndIt) {
  Cards(20000);
  Begin("*");
  Rest();
  BeginColumnClick(on.station, 0);
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kMore);
  List().rows = {BrowseRow{Cells{"OTHER"}}};
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kDone);
  EXPECT_EQ(Found(), 1U);
}

}  // namespace
}  // namespace zemo::test
