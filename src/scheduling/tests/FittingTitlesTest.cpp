// The plain end-of-hour fitting. Chains are written as the names of their rows; a sum is the length
// of the first and what each further row adds. C is where a chain stops.
#include "FittingLists.h"
#include "scheduling/EndOfHourFitting.h"
#include "station/OnAirColumns.h"

namespace zemo::test {
namespace {

// --- one round: 12:58:00, two minutes left, C = 120 + 15 s ---

class FittingRound : public FittingStation {
 protected:
  FittingRound() : FittingStation("2026-11-21 12:58:00") {}
};

TEST_F(FittingRound, TheSmallestChainComesToTheFront) {
  List({{"A", 180}, {"B", 60}, {"C", 100}, {"D", 50}});
  // First family: A 180; BA 240; CA 280; DA 230. Second: A 180; BC 160; CD 150; DA 230.
  EXPECT_EQ(BringBestChainForward(on.station), 150000);
  EXPECT_EQ(Names(), "C,D,A,B");
  // Again: CD 150 is the first chain of both families, DC 150 the second of the first.
  EXPECT_EQ(BringBestChainForward(on.station), 150000);
  EXPECT_EQ(Names(), "C,D,A,B");
}

TEST_F(FittingRound, TheListBeforeItHasNoWayBack) {
  List({{"A", 180}, {"B", 60}, {"C", 100}, {"D", 50}});
  {
    const ListOrder order(on.station);
    PL().Remove(2);
  }
  ASSERT_TRUE(on.station.listUndo);
  BringBestChainForward(on.station);
  EXPECT_FALSE(UndoListOrder(on.station));
}

TEST_F(FittingRound, TheTargetCountsTheElementOnAirAndTheBuffers) {
  Engine().RemainingMs = 30000;
  Engine().MixPointMs = 2000;
  Engine().BufferOffsetSec = 3;
  List({{"A", 110}, {"B", 20}, {"C", 100}});
  // C = 120 - 30 + 2 + 3 + 15 = 110, which A alone reaches and does not pass.
  // First family: AB 130; BA 130; CA 210. Second: AB 130; BC 120; CA 210.
  EXPECT_EQ(BringBestChainForward(on.station), 120000);
  EXPECT_EQ(Names(), "B,C,A");
}

TEST_F(FittingRound, ATitleLongerThanTheTimeLeftIsAChainOfItsOwn) {
  Engine().RemainingMs = 25001;  // C = 109.999
  List({{"B", 20}, {"A", 110}, {"C", 100}});
  // First family: BA 130; A 110; CB 120. Second: BA 130; A 110; CB 120.
  EXPECT_EQ(BringBestChainForward(on.station), 110000);
  EXPECT_EQ(Names(), "A,B,C");
}

TEST_F(FittingRound, ARowMadeAnewShowsWhatItsCardHoldsNow) {
  List({{"B", 20}, {"A", 180, 700}, {"C", 100}});
  // First family: BA 199.3; A 180; CB 120, CBA 299.3. Second: BA 199.3; A 180; CB 120, CBA 299.3.
  on.Sql(
      "UPDATE Discotheque SET TITRE = 'NEW', VARIETE = 'OTHER', INTRO = 9, LASTDIFF = 46347.5 "
      "WHERE AUTEUR = 'A'");
  EXPECT_EQ(BringBestChainForward(on.station), 180000);
  ASSERT_EQ(Names(), "A,B,C");
  const OnAirElement& row = PL().Row(1);
  EXPECT_EQ(row.secondLine, "NEW");
  EXPECT_EQ(ColumnText(row, Col::kLength), "03:00");
  EXPECT_EQ(row.genre, "POP");
  EXPECT_EQ(row.variety, "OTHER");
  EXPECT_FALSE(row.file.empty());
  EXPECT_EQ(ColumnText(row, Col::kLengthMs), "180000");
  EXPECT_EQ(ColumnText(row, Col::kExitMs), "700");
  EXPECT_EQ(ColumnText(row, Col::kIntro), "9");
  EXPECT_EQ(ColumnText(row, Col::kLastPlayed), "2026/11/21  12:00:00");
  EXPECT_EQ(ColumnText(PL().Row(2), Col::kLastPlayed), "");
}

TEST_F(FittingRound, OneTitleStaysAndScoresItsLength) {
  List({{"A", 40}});
  EXPECT_EQ(BringBestChainForward(on.station), 40000);
  EXPECT_EQ(Names(), "A");
}

TEST_F(FittingRound, AnEmptyListScoresNothing) {
  EXPECT_EQ(BringBestChainForward(on.station), 0);
}

// Long lists: rows of 134 s do not pass C = 135 alone, two of them do; one of 136 s does, and its
// chain of one row is the smallest.
class FittingLongList : public FittingRound {
 protected:
  void Rows(int count) {
    const int32_t common = on.AddCard({.artist = "COMMON"});
    const int32_t tenth = on.AddCard({.artist = "TENTH"});
    const int32_t first = on.AddCard({.artist = "FIRST"});
    const int32_t last = on.AddCard({.artist = "LAST"});
    for (int row = 1; row <= count; ++row) {
      OnAirElement element;
      element.title = std::to_string(row);
      const int32_t code = row == count ? last : row == 10 ? tenth : row == 1 ? first : common;
      element.code = code;
      element.lengthMs = row == count ? 136000 : 134000;
      on.Append(element);
    }
  }
};

TEST_F(FittingLongList, Row99IsStillReadAsItIs) {
  Rows(99);
  EXPECT_EQ(BringBestChainForward(on.station), 136000);
  EXPECT_EQ(PL().Row(1).title, "LAST");
  EXPECT_EQ(PL().Count(), 99);
}

TEST_F(FittingLongList, TheChainOfRow100NamesRowsThatAreNone) {
  Rows(100);
  // "100" is read as the rows 10 and 0.
  EXPECT_EQ(BringBestChainForward(on.station), std::nullopt);
  EXPECT_EQ(PL().Count(), 100);
  EXPECT_EQ(PL().Row(1).title, "1");
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["where"], "AjusteTitres");
}

TEST_F(FittingLongList, TheChainOfRow101IsReadAsTwoOtherRows) {
  Rows(101);
  // "101" is read as the rows 10 and 1.
  EXPECT_EQ(BringBestChainForward(on.station), 136000);
  EXPECT_EQ(PL().Count(), 101);
  EXPECT_EQ(PL().Row(1).title, "TENTH");
  EXPECT_EQ(PL().Row(2).title, "FIRST");
  EXPECT_EQ(PL().Row(101).title, "101");
}

TEST_F(FittingRound, ASumBeyond32BitsIsAnErrorThatLeavesTheList) {
  List({{"A", 60}, {"B", 60}, {"C", 60}});
  PL().Row(2).lengthMs = 2147483647;
  // 60000 ms and the second row pass 2147483647.
  EXPECT_EQ(BringBestChainForward(on.station), std::nullopt);
  EXPECT_EQ(Names(), "A,B,C");
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["where"], "AjusteTitres");
  EXPECT_EQ(on.Events("error")[0].Int("number"), 6);
}

TEST_F(FittingRound, AFailedReadOfTheCardsLosesNoRow) {
  List({{"A", 180}, {"B", 60}, {"C", 100}, {"D", 50}});
  on.Sql("DROP TABLE Discotheque");
  FitHour(on.station);
  EXPECT_EQ(Names(), "A,B,C,D");
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0]["where"], "AjusteTitres");
  EXPECT_EQ(Engine().mainTimerHolds, 0);
  EXPECT_FALSE(on.station.notices.hourglass);
}

// --- a whole fit ---

class FittingPlain : public FittingStation {
 protected:
  FittingPlain() : FittingStation("2026-11-21 12:50:00") {}
};

TEST_F(FittingPlain, AListShorterThanTheTimeLeftStaysAsItIs) {
  List({{"A", 100, 2000}, {"B", 200, 2000}, {"C", 150, 2000}});
  // C = 615 is never reached. First family, which never takes the last row behind another:
  // AB 298; BA 298; CAB 446. Second: ABC, BCA, CAB 446. The first of the two smallest wins.
  EXPECT_EQ(BringBestChainForward(on.station), 298000);
  FitHour(on.station);
  EXPECT_EQ(Names(), "A,B,C");
}

TEST_F(FittingPlain, JinglesAndSpotsAreGoneAfterIt) {
  List({{"jingle", 5}, {"A", 100}, {"jingle", 5}, {"B", 200}});
  OnAirElement spot;
  spot.title = "SPOT";
  spot.code = -2;
  spot.lengthMs = 30000;
  on.Append(spot);
  FitHour(on.station);
  EXPECT_EQ(Names(), "A,B");
}

TEST_F(FittingPlain, TellsTheCodesBeforeAndAfter) {
  List({{"A", 100}, {"jingle", 5}, {"B", 200}});
  FitHour(on.station);
  const auto fits = on.Events("fit");
  ASSERT_EQ(fits.size(), 1U) << on.Describe();
  EXPECT_EQ(fits[0]["routine"], "AjusteFinHeure");
  EXPECT_EQ(fits[0]["before"], "[1,-1,2]");
  EXPECT_EQ(fits[0]["after"], "[1,2]");
}

TEST_F(FittingPlain, PlannedTimesAreThoseOfTheNewOrder) {
  List({{"A", 100}, {"jingle", 5}, {"B", 200}});
  FitHour(on.station);
  EXPECT_EQ(ColumnText(PL().Row(1), Col::kPlanned), "12 h 50 ' 00");
  EXPECT_EQ(ColumnText(PL().Row(2), Col::kPlanned), "12 h 51 ' 40");
}

TEST_F(FittingPlain, WhileItWorksTheScreenSaysSoAndTheTickIsHeld) {
  List(std::vector<Piece>(10, {"A", 100}));  // enough rows for no request to yield before
  bool seen = false;
  on.loop.Post([&] {
    seen = true;
    EXPECT_EQ(on.station.notices.progress.text, "OPTIMISATION POUR TOP HORAIRE");
    EXPECT_TRUE(on.station.notices.progress.visible);
    EXPECT_TRUE(on.station.notices.hourglass);
    EXPECT_TRUE(Engine().FittingActive);
    EXPECT_FALSE(Engine().MainTimer->Enabled());
  });
  FitHour(on.station);
  EXPECT_TRUE(seen);
  EXPECT_FALSE(on.station.notices.progress.visible);
  EXPECT_FALSE(on.station.notices.hourglass);
  EXPECT_TRUE(Engine().FittingActive);
  EXPECT_TRUE(Engine().MainTimer->Enabled());
}

TEST_F(FittingPlain, FewerThanTenRowsAskForMoreMusicFirst) {
  List(std::vector<Piece>(9, {"A", 30}));
  FitHour(on.station);
  EXPECT_EQ(on.Events("request").size(), 1U);
  List({{"A", 30}});
  FitHour(on.station);
  EXPECT_EQ(on.Events("request").size(), 1U);
}

TEST_F(FittingPlain, AListEmptiedByTheOperatorInBetweenStaysEmpty) {
  List({{"A", 100}, {"B", 200}});
  on.loop.Post([&] { PL().Clear(); });
  FitHour(on.station);
  EXPECT_TRUE(PL().Empty());
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

TEST_F(FittingPlain, AListEmptiedByTheOperatorInBetweenHasItsWayBack) {
  List({{"A", 100}, {"B", 200}});
  on.loop.Post([&] {
    const ListOrder order(on.station);
    PL().Clear();
  });
  FitHour(on.station);
  EXPECT_TRUE(UndoListOrder(on.station));
  EXPECT_EQ(Names(), "A,B");
}

TEST_F(FittingPlain, AnEmptyListLeavesBeforeTheLatch) {
  FitHour(on.station);
  FitHourWithInstrumentals(on.station);
  FitHourWithBreakAtPip(on.station);
  EXPECT_FALSE(Engine().FittingActive);
  EXPECT_TRUE(on.Events("fit").empty());
}

// --- the seven rounds: 12:55:45, 255 s left, C = 270 s ---

class FittingRounds : public FittingStation {
 protected:
  FittingRounds() : FittingStation("2026-11-21 12:55:45") {}
};

// Round 1, rows j B C D E of 20, 190, 110, 150, 180 s: first family jBC 320, BjC 320, CjB 320,
//   DjB 360, EjB 390; second jBC 320, BC 300, CDE 440, DE 330, EjB 390. BC to the front.
// Round 2, B C j D E: BC 300, CB 300, jBC 320, DB 340, EB 370; BC 300, CjD 280, jDE 350, DE 330, EB
// 370.
//   CjD to the front, where the jingle is lost.
// Round 3, C D B E: CDB 450, DCB 450, BC 300, EC 290; CDB 450, DB 340, BE 370, EC 290. EC to the
// front. Round 4, E C D B: EC 290, CE 290, DE 330, BE 370; EC 290, CDB 450, DB 340, BE 370. As it
// was.
TEST_F(FittingRounds, EachWorksOnTheListThatTheOneBeforeLeft) {
  List({{"jingle", 20}, {"B", 190}, {"C", 110}, {"D", 150}, {"E", 180}});
  EXPECT_EQ(BringBestChainForward(on.station), 300000);
  EXPECT_EQ(Names(), "B,C,jingle,D,E");
  EXPECT_EQ(BringBestChainForward(on.station), 280000);
  EXPECT_EQ(Names(), "C,D,B,E");
  EXPECT_EQ(BringBestChainForward(on.station), 290000);
  EXPECT_EQ(Names(), "E,C,D,B");
  EXPECT_EQ(BringBestChainForward(on.station), 290000);
  EXPECT_EQ(Names(), "E,C,D,B");
}

TEST_F(FittingRounds, TheLastBelowTheFirstWinsAndNotTheLowest) {
  List({{"jingle", 20}, {"B", 190}, {"C", 110}, {"D", 150}, {"E", 180}});
  FitHour(on.station);
  EXPECT_EQ(Names(), "E,C,D,B");  // round 7 with 290, not round 2 with 280, which left C,D,B,E
}

// --- seven rounds: 12:53:22, 398 s left, C = 413 s ---

class FittingSevenRounds : public FittingStation {
 protected:
  FittingSevenRounds() : FittingStation("2026-11-21 12:53:22") {}
};

// Every one of them finds a smaller chain than the one before:
// Round 1, A B C D E F G: DE, 307 + 207.       Round 2, D E A B C F G: FD, 163 + 307.
// Round 3, F D E A B C G: BF, 306 + 163.       Round 4, B F D E A C G: ACG, 56 + 211 + 173.
// Round 5, A C G B F D E: FAC, 163 + 56 + 211. Round 6, F A C G B D E: EFA, 207 + 163 + 56.
// Round 7, E F A C G B D: CE, 211 + 207.
TEST_F(FittingSevenRounds, AllSevenAreRun) {
  const std::vector<Piece> pieces = {{"A", 56},  {"B", 306}, {"C", 211}, {"D", 307},
                                     {"E", 207}, {"F", 163}, {"G", 173}};
  List(pieces);
  for (const int score : {514, 470, 469, 440, 430, 426, 418})
    EXPECT_EQ(BringBestChainForward(on.station), score * 1000);
  EXPECT_EQ(Names(), "C,E,F,A,G,B,D");
  PL().Clear();
  List(pieces);
  FitHour(on.station);
  EXPECT_EQ(Names(), "C,E,F,A,G,B,D");
}

// --- 23 h ---

class FittingBeforeMidnight : public FittingStation {
 protected:
  FittingBeforeMidnight() : FittingStation("2026-11-21 23:58:00") {}
};

TEST_F(FittingBeforeMidnight, TheTimeLeftIsCountedToTheEndOfTheDay) {
  List({{"A", 180}, {"B", 60}, {"C", 100}, {"D", 50}});
  EXPECT_EQ(BringBestChainForward(on.station), 150000);  // as two minutes before any other hour
  EXPECT_EQ(Names(), "C,D,A,B");
}

}  // namespace
}  // namespace zemo::test
