// The candidates of a request from memory: where they come from, and how long they stay as they
// are.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "library/KnownCards.h"
#include "scheduling/tests/CandidateReading.h"
#include "scheduling/tests/RequestFixture.h"

namespace zemo {
namespace {

using test::RequestStation;
using test::TitleCard;
using Codes = std::vector<int32_t>;

const CardsWanted kPop{.genres = {"POP"}, .hour = {{test::kSaturday, 10}}};

class Candidates : public testing::Test {
 protected:
  // Cards of genre POP, played one day after the other.
  void Cards(int count) {
    s.Execute(
        "INSERT INTO Discotheque (GENRE, LASTDIFF, NBPASSJOUR, AUTEUR, TITRE, FILENAME, "
        "TRANCHE06) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i "
        "< " +
        std::to_string(count) +
        ") SELECT 'POP', 46000 + i, 1, 'ARTIST ' || i, 'TITLE ' || i, '/m.mp3', '" + test::kAlways +
        "' FROM n");
  }
  void KeepInSlicesOf(int rows) { s.station.knownCards = std::make_shared<KnownCards>(rows); }
  int SlicesToTheEnd() {
    int slices = 1;
    while (ReadCardsAhead(s.station) && slices < 1000) ++slices;
    return slices;
  }
  bool Known() { return CardsNow(s.station).has_value(); }
  Codes Found(const CardsWanted& wanted = kPop) {
    const CandidateCards cards(s.station, wanted, CandidateCards::Order::kLastdiff);
    Codes codes;
    for (int i = 0; i < cards.Count(); ++i) codes.push_back(cards.Code(i));
    return codes;
  }

  RequestStation s;
};

TEST_F(Candidates, ALibraryOfOneSliceIsKnownFromTheFirstAskingOn) {
  Cards(3);
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found(), (Codes{1, 2, 3}));
}

TEST_F(Candidates, ALargerOneIsKnownWhenItIsReadToTheEnd) {
  KeepInSlicesOf(10);
  Cards(250);
  EXPECT_GT(SlicesToTheEnd(), 3);
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found().size(), 250U);
}

TEST_F(Candidates, ARequestAheadOfThatReadsItToTheEnd) {
  KeepInSlicesOf(10);
  Cards(250);
  EXPECT_EQ(Found().size(), 250U);
  EXPECT_FALSE(ReadCardsAhead(s.station));
  EXPECT_TRUE(Known());
}

TEST_F(Candidates, AnOwnWriteIsKnownAtOnce) {
  KeepInSlicesOf(10);
  Cards(25);
  SlicesToTheEnd();
  s.Execute("UPDATE Discotheque SET LASTDIFF = 1 WHERE CODE = 24");
  s.Execute("DELETE * FROM Discotheque WHERE CODE = 1");
  s.Execute("UPDATE Discotheque SET GENRE = 'ROCK' WHERE CODE = 2");
  EXPECT_TRUE(Known());
  const Codes found = Found();
  ASSERT_EQ(found.size(), 23U);
  EXPECT_EQ(found[0], 24);
  EXPECT_EQ(found[1], 3);
  EXPECT_FALSE(ReadCardsAhead(s.station));
}

TEST_F(Candidates, ManyOwnWritesAreReadAheadFirst) {
  KeepInSlicesOf(400);
  Cards(1000);
  SlicesToTheEnd();
  s.Execute("UPDATE Discotheque SET LASTDIFF = 0 WHERE CODE > 700");
  EXPECT_FALSE(Known());
  EXPECT_EQ(SlicesToTheEnd(), 3);  // 300 rows, 100 a slice
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found()[0], 701);
}

TEST_F(Candidates, ATransactionUnderWayIsNotKnown) {
  Cards(3);
  Known();
  s.station.base.Db().BeginTrans();
  s.Execute("DELETE * FROM Discotheque WHERE CODE = 1");
  EXPECT_FALSE(Known());
  EXPECT_FALSE(ReadCardsAhead(s.station));
  EXPECT_EQ(Found(), (Codes{2, 3}));
  s.station.base.Db().RollbackTrans();
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found(), (Codes{1, 2, 3}));
}

TEST_F(Candidates, AWriteOfAnotherProgramToFewCardsIsKnownAtOnce) {
  KeepInSlicesOf(100);
  Cards(250);
  SlicesToTheEnd();
  s.Sql("UPDATE Discotheque SET LASTDIFF = 1 WHERE CODE = 25");
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found()[0], 25);
  s.Sql("DELETE FROM Discotheque WHERE CODE = 25");
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found()[0], 1);
}

TEST_F(Candidates, AWriteOfAnotherProgramToAllCardsHasThemReadAgain) {
  KeepInSlicesOf(10);
  Cards(250);
  SlicesToTheEnd();
  s.Sql("UPDATE Discotheque SET LASTDIFF = CASE CODE WHEN 25 THEN 1 ELSE 46400 END");
  EXPECT_FALSE(Known());
  SlicesToTheEnd();
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found()[0], 25);
}

TEST_F(Candidates, ARequestTakesInWhatAnotherProgramWroteJustBefore) {
  Cards(3000);
  SlicesToTheEnd();
  s.Sql("UPDATE Discotheque SET LASTDIFF = CASE CODE WHEN 25 THEN 1 ELSE 46400 END");
  EXPECT_FALSE(CardsListedAlready(s.station));
  EXPECT_EQ(Found()[0], 25);
  EXPECT_TRUE(CardsListedAlready(s.station));
}

TEST_F(Candidates, ARequestOfALibraryThatWasNeverReadReadsItWithYields) {
  Cards(3000);
  test::WatchedStation watched(s);
  int yields = 0;
  watched.loop.onYield = [&] { ++yields; };
  const CandidateCards cards(watched.station, kPop, CandidateCards::Order::kLastdiff);
  EXPECT_EQ(cards.Count(), 3000);
  EXPECT_GE(yields, 2);  // behind each slice of a thousand
  EXPECT_TRUE(CardsListedAlready(watched.station));
}

TEST_F(Candidates, ABaseThatOthersWriteToAgainAndAgainIsAsked) {
  Cards(3000);
  test::WatchedStation watched(s);
  int writes = 0;
  watched.loop.onYield = [&] {
    s.Sql("UPDATE Discotheque SET LASTDIFF = CASE CODE WHEN 25 THEN " + std::to_string(++writes) +
          " ELSE 46400 + CODE + " + std::to_string(writes) + " END");
  };
  const CandidateCards cards(watched.station, kPop, CandidateCards::Order::kLastdiff);
  ASSERT_EQ(cards.Count(), 3000);
  EXPECT_EQ(cards.Code(0), 25);
  EXPECT_GE(writes, 2);
  EXPECT_LT(writes, 10);
}

// An operator's start in the yield takes over a base that another machine dropped.
TEST_F(Candidates, ABaseThatIsHandedOverMeanwhileIsAsked) {
  KeepInSlicesOf(100);
  Cards(3000);
  test::WatchedStation watched(s);
  watched.station.knownCards = std::make_shared<KnownCards>(100);
  const std::weak_ptr<KnownCards> former = watched.station.knownCards;
  int yields = 0;
  bool heldMeanwhile = false;
  watched.loop.onYield = [&] {
    if (++yields > 1) return;
    s.Sql("UPDATE Discotheque SET LASTDIFF = 1 WHERE CODE = 25");
    ForgetAnswers(watched.station);
    heldMeanwhile = !former.expired();
  };
  const CandidateCards cards(watched.station, kPop, CandidateCards::Order::kLastdiff);
  EXPECT_TRUE(heldMeanwhile);
  ASSERT_EQ(cards.Count(), 3000);
  EXPECT_EQ(cards.Code(0), 25);
}

TEST_F(Candidates, ARequestEndsThoughTheBaseIsHandedOverAgainAndAgain) {
  Cards(3000);
  test::WatchedStation watched(s);
  int yields = 0;
  watched.loop.onYield = [&] {
    ASSERT_LT(++yields, 100);
    if (yields < 100) ForgetAnswers(watched.station);
  };
  const CandidateCards cards(watched.station, kPop, CandidateCards::Order::kLastdiff);
  EXPECT_EQ(cards.Count(), 3000);
  EXPECT_LT(yields, 10);
}

TEST_F(Candidates, ARequestOfALibraryThatOnlyTheBaseCanJudgeWaitsForNothing) {
  Cards(3000);
  s.Execute("UPDATE Discotheque SET TRANCHE06 = x'31' WHERE CODE = 7");
  SlicesToTheEnd();
  const uint64_t served = s.loop.EventsServed();
  const int64_t atMs = s.loop.MonotonicMs();
  EXPECT_EQ(Found().size(), 2999U);
  EXPECT_EQ(s.loop.EventsServed(), served);
  EXPECT_EQ(s.loop.MonotonicMs(), atMs);
}

TEST_F(Candidates, AWriteOfAnotherProgramInTheMidstOfThePassBeginsItAnew) {
  KeepInSlicesOf(10);
  Cards(250);
  const int slices = SlicesToTheEnd();
  KeepInSlicesOf(10);
  ReadCardsAhead(s.station);
  s.Sql("UPDATE Discotheque SET LASTDIFF = 1 WHERE CODE = 5");
  EXPECT_EQ(SlicesToTheEnd(), slices);
  EXPECT_EQ(Found()[0], 5);
}

TEST_F(Candidates, WhoHoldsCandidatesKeepsThemAsTheyWere) {
  Cards(3);
  const CandidateCards cards(s.station, kPop, CandidateCards::Order::kLastdiff);
  s.Execute("UPDATE Discotheque SET TITRE = 'OTHER', LASTDIFF = 9 WHERE CODE = 2");
  EXPECT_EQ(Found(), (Codes{2, 1, 3}));
  EXPECT_EQ(cards.Code(1), 2);
  EXPECT_EQ(cards.Title(1), "TITLE 2");
  EXPECT_EQ(cards.PlayedSecond(1), 46002 * int64_t{86400});
  s.station.knownCards.reset();
  EXPECT_EQ(cards.Title(1), "TITLE 2");
}

TEST_F(Candidates, ALockedBaseLeavesWhatIsKnown) {
  Cards(3);
  Known();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(s.station.base.Path().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(Found(), (Codes{1, 2, 3}));
  sqlite3_close(other);
}

TEST_F(Candidates, ATableWithoutOneOfItsColumnsIsAsked) {
  Cards(3);
  Known();
  s.RenameColumn("Discotheque", "VARIETE");
  EXPECT_FALSE(Known());
  EXPECT_EQ(Found(), (Codes{1, 2, 3}));
  EXPECT_FALSE(ReadCardsAhead(s.station));
}

TEST_F(Candidates, AStructureThatAnotherProgramChangesIsLookedAtFirst) {
  Cards(3);
  Known();
  s.Sql("ALTER TABLE Discotheque ADD COLUMN X");
  EXPECT_FALSE(Known());
  EXPECT_EQ(Found(), (Codes{1, 2, 3}));
  OpenLostBase(s.station);  // looks at the columns as well
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found(), (Codes{1, 2, 3}));
}

TEST_F(Candidates, ACodeBeyondItsWidthIsLeftToTheBase) {
  Cards(3);
  s.Sql("UPDATE Discotheque SET CODE = 5000000000 WHERE CODE = 2");
  EXPECT_FALSE(Known());
  s.Execute("DELETE * FROM Discotheque WHERE CODE = 5000000000");
  SlicesToTheEnd();
  EXPECT_TRUE(Known());
  EXPECT_EQ(Found(), (Codes{1, 3}));
}

TEST_F(Candidates, AQueryWithoutGenresIsTheBasesFault) {
  Cards(3);
  EXPECT_THROW(Found({.genres = {}}), StoreError);
  EXPECT_THROW(Found({.genres = {std::string("A\0B", 3)}}), StoreError);
}

TEST_F(Candidates, AGenreIsOneWithoutRegardToCaseAsTheQueryHasIt) {
  Cards(6);
  const char* genres[] = {"pop", "Été", "ÉTÉ", "ETE", ""};
  for (int i = 0; i < 5; ++i)
    s.Execute("UPDATE Discotheque SET GENRE = '" + std::string(genres[i]) +
              "' WHERE CODE = " + std::to_string(i + 1));
  s.Execute("UPDATE Discotheque SET GENRE = NULL WHERE CODE = 6");
  ASSERT_TRUE(Known());
  EXPECT_EQ(Found(), Codes{1});
  EXPECT_EQ(Found({.genres = {"été"}}), (Codes{2, 3}));
  EXPECT_EQ(Found({.genres = {"ete"}}), Codes{4});
  EXPECT_EQ(Found({.genres = {""}}), Codes{5});
  // One name beyond ASCII has all of them compared otherwise.
  s.Execute("UPDATE Discotheque SET GENRE = 'ſoul' WHERE CODE = 6");
  EXPECT_EQ(Found({.genres = {"SOUL"}}), Codes{});
  EXPECT_EQ(Found({.genres = {"SOUL", "é"}}), Codes{6});
}

TEST_F(Candidates, AHundredBytesAreTheCostOfACardBesideItsTexts) {
  EXPECT_LE(sizeof(PackedCard), 120U);
}

}  // namespace
}  // namespace zemo
