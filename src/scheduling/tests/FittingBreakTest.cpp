// The two forms of the end-of-hour fitting that place the hour's break. The break rows of these
// grids hold no element, so that only the place of the break is seen. 12:50:00 is 46200 s, the pip
// comes at 46800.
#include "FittingLists.h"
#include "scheduling/EndOfHourFitting.h"
#include "station/OnAirColumns.h"
#include "store/SqlText.h"

namespace zemo::test {
namespace {

class FittingBreak : public FittingStation {
 protected:
  explicit FittingBreak(const std::string& begin = "2026-11-21 12:50:00") : FittingStation(begin) {}
  // Flags of "Instrumental.Txt": only that hour is one.
  void OnlyInstrumentalHour(int hour) {
    std::string text;
    for (int h = 0; h < 24; ++h) text += h == hour ? "#TRUE#\r\n" : "#FALSE#\r\n";
    on.MakeFile("Instrumental.Txt", text);
  }
  int32_t AddInstrumental(const std::string& artist, int64_t lengthMs, double lastPlayed) {
    const int32_t code = on.AddCard(
        {.lengthMs = lengthMs, .artist = artist, .genre = "INSTRUMENTAL", .exitMs = 900});
    on.Sql("UPDATE Discotheque SET LASTDIFF = " + SqlNumber(lastPlayed) +
           " WHERE CODE = " + std::to_string(code));
    return code;
  }
  std::string Routine() const {
    const auto fits = on.Events("fit");
    return fits.size() == 1 ? fits[0]["routine"] : std::to_string(fits.size()) + " fits";
  }
  int64_t BreakPosition() const {
    const Seen* told = on.First("break");
    return told ? told->Int("position") : 0;
  }
};

// --- where the break goes ---

using FittingPlacesBreak = FittingBreak;

TEST_F(FittingPlacesBreak, InstrumentalAtTheFirstRowThatStartsAtOrAfterItsMoment) {
  List({{"A", 200}, {"B", 250}, {"C", 100}});
  Break(1, "12:55", "00:45");
  FitHourWithInstrumentals(on.station);
  // Rows start at 46200, 46400 and 46650; the moment is 46500, and 46650 + 45 lies before the pip.
  const Seen* told = on.First("break");
  ASSERT_NE(told, nullptr) << on.Describe();
  EXPECT_EQ((*told)["routine"], "AjoutPubRubFinHeure");
  EXPECT_EQ((*told)["moment"], "12:55");
  EXPECT_EQ((*told)["type"], "Pubs");
  EXPECT_EQ(told->Int("position"), 3);
  EXPECT_EQ(told->Int("rows"), 0);
  EXPECT_TRUE(Engine().HourBlockHandled);
  EXPECT_EQ(Engine().LastGridCheckTimer, 46200.0F);
}

TEST_F(FittingPlacesBreak, InstrumentalBeforeARowThatStartsWithItsMoment) {
  List({{"A", 300}, {"B", 100}, {"C", 100}});
  Break(1, "12:55", "00:45");
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(BreakPosition(), 2);
}

TEST_F(FittingPlacesBreak, InstrumentalOneRowEarlierWhenItWouldRunPastThePip) {
  List({{"A", 200}, {"B", 250}, {"C", 100}});
  Break(1, "12:55", "02:31", "Rubriques");
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(BreakPosition(), 2);  // 46650 + 151 is behind 46800
  EXPECT_EQ((*on.First("break"))["type"], "Rubriques");
}

TEST_F(FittingPlacesBreak, InstrumentalEndingWithThePipIsNotTooLong) {
  List({{"A", 200}, {"B", 250}, {"C", 100}});
  Break(1, "12:55", "02:30");
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(BreakPosition(), 3);
}

TEST_F(FittingPlacesBreak, InstrumentalNeverBeforeTheFirstRow) {
  List({{"A", 200}, {"B", 250}});
  Break(1, "12:50", "20:00");
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(BreakPosition(), 1);
}

TEST_F(FittingPlacesBreak, InstrumentalAtTheEndOfAListThatIsOverBeforeItsMoment) {
  List({{"A", 100}, {"B", 100}});
  Break(1, "12:55", "00:30");
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(BreakPosition(), 3);
}

TEST_F(FittingPlacesBreak, InstrumentalBehindWhatIsOnAirAndItsExitPoints) {
  Engine().RemainingMs = 100000;
  List({{"A", 200, 1000}, {"B", 250}, {"C", 100}});
  Break(1, "12:55", "00:10");
  FitHourWithInstrumentals(on.station);
  // Rows start at 46300 and 46499: the second one second before the moment.
  EXPECT_EQ(BreakPosition(), 3);
}

TEST_F(FittingPlacesBreak, ABreakOfTheHourThatIsPastOpensTheGuardAndIsNotPlaced) {
  List({{"A", 200}});
  Break(1, "11:55", "00:30");
  Break(2, "12:49", "00:30");
  Engine().LastGridCheckTimer = 46000;
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(on.First("break"), nullptr);
  EXPECT_EQ(Engine().LastGridCheckTimer, 0.0F);
  EXPECT_FALSE(Engine().HourBlockHandled);
}

TEST_F(FittingPlacesBreak, ABreakOfAnotherHourLeavesTheGuard) {
  List({{"A", 200}});
  Break(1, "11:55", "00:30");
  Break(2, "13:55", "00:30");
  Engine().LastGridCheckTimer = 46000;
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(on.First("break"), nullptr);
  EXPECT_EQ(Engine().LastGridCheckTimer, 46000.0F);
}

TEST_F(FittingPlacesBreak, OnlyTheFirstOfTheHourThatIsStillToCome) {
  List({{"A", 200}, {"B", 250}, {"C", 300}});
  Break(1, "12:49", "00:30");
  Break(2, "12:52", "00:30");
  Break(3, "12:55", "00:30");
  FitHourWithInstrumentals(on.station);
  ASSERT_EQ(on.Events("break").size(), 1U);
  EXPECT_EQ((*on.First("break"))["moment"], "12:52");
}

TEST_F(FittingPlacesBreak, SpotsAtTheLastPlaceThatStillReachesThePip) {
  List({{"A", 200}, {"B", 250}, {"C", 90}, {"D", 100}, {"E", 100}, {"F", 100}});
  Break(1, "12:51", "01:00");
  FitHourWithBreakAtPip(on.station);
  // Rows start at 46200, 46400, 46650, 46740 and 46840: with the block's 60 s the fourth ends at
  // 46800, which is not beyond the pip; the fifth is.
  EXPECT_EQ(BreakPosition(), 5);
  EXPECT_TRUE(Engine().HourBlockHandled);
}

TEST_F(FittingPlacesBreak, SpotsBehindTheListWhenAllOfItRunsBeforeThePip) {
  List({{"A", 100}, {"B", 100}});
  Break(1, "12:51", "01:00");
  FitHourWithBreakAtPip(on.station);
  EXPECT_EQ(BreakPosition(), 3);
}

// --- the instrumental ---

using FittingInstrumental = FittingBreak;

// With 20 s left of the element on air the rows start at 46220, 46420 and 46670, and the third
// would end at 46970: it is the one that the pip reaches, and the gap before the pip is 130 s.
class FittingGap : public FittingBreak {
 protected:
  void SetUp() override {
    FittingBreak::SetUp();
    Engine().RemainingMs = 20000;
    List({{"A", 200}, {"B", 250}, {"C", 300}});
  }
};

TEST_F(FittingGap, IsFilledByTheLongestRestedInstrumentalLongerThanIt) {
  AddInstrumental("AS LONG", 130000, 0);
  AddInstrumental("RECENT", 130001, 46000);
  AddInstrumental("RESTED", 200000, 45000);
  FitHourWithInstrumentals(on.station);
  ASSERT_EQ(Names(), "A,B,RESTED,C") << on.Describe();
  EXPECT_EQ(Routine(), "AjusteFinHeureInstru");
  EXPECT_EQ(on.Events("fit")[0]["before"], "[1,2,3]");
  EXPECT_EQ(on.Events("fit")[0]["after"], "[1,2,6,3]");
  const OnAirElement& row = PL().Row(3);
  EXPECT_EQ(row.genre, "INSTRUMENTAL");
  EXPECT_EQ(ColumnText(row, Col::kLength), "03:20");
  EXPECT_EQ(ColumnText(row, Col::kExitMs), "900");
  EXPECT_EQ(ColumnText(row, Col::kLastPlayed), "2023/03/15  00:00:00");
  EXPECT_EQ(ColumnText(row, Col::kPlanned), "12 h 57 ' 50");
  EXPECT_TRUE(Engine().FittingActive);
  EXPECT_FALSE(on.station.notices.progress.visible);
}

TEST_F(FittingGap, StaysWhenNoInstrumentalIsLonger) {
  AddInstrumental("AS LONG", 130000, 0);
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(Names(), "A,B,C");
  EXPECT_TRUE(Engine().FittingActive);
  EXPECT_EQ(Routine(), "AjusteFinHeureInstru");
}

TEST_F(FittingGap, IsCountedInWholeSeconds) {
  Engine().RemainingMs = 20400;  // 129.6 s are left
  AddInstrumental("ABOVE 129", 129001, 0);
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(Names(), "A,B,ABOVE 129,C");
}

TEST_F(FittingGap, NeedsTheHourOfTheInstrumentalAndNoRotationRule) {
  const int32_t notNow = AddInstrumental("NOT NOW", 200000, 0);
  on.Sql("UPDATE Discotheque SET TRANCHE06 = '111111111111011111111111' WHERE CODE = " +
         std::to_string(notNow));
  const int32_t retired = AddInstrumental("RETIRED", 200000, 46347.49);
  on.Sql("UPDATE Discotheque SET NBPASSJOUR = 0 WHERE CODE = " + std::to_string(retired));
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(Names(), "A,B,RETIRED,C");
}

TEST_F(FittingGap, AnInstrumentalWithoutAnArtistIsListedByItsCode) {
  const int32_t code = AddInstrumental("", 200000, 0);
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(Names(), "A,B,Code " + std::to_string(code) + ",C");
}

TEST_F(FittingGap, IsReckonedWithTheBreakInPlace) {
  AddInstrumental("RESTED", 200000, 0);
  Break(1, "12:55", "00:45");
  FitHourWithInstrumentals(on.station);
  // The break without elements takes no time; its guard keeps the tick from firing it.
  EXPECT_EQ(BreakPosition(), 3);
  EXPECT_EQ(Names(), "A,B,RESTED,C");
}

TEST_F(FittingInstrumental, AListThatEndsBeforeThePipGetsNone) {
  List({{"A", 200}, {"B", 400}});  // ends with the pip, not behind it
  AddInstrumental("RESTED", 500000, 0);
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(Names(), "A,B");
}

TEST_F(FittingInstrumental, AnHourThatIsNoneIsFittedPlainly) {
  OnlyInstrumentalHour(12);  // the hour of the pip is 13
  List({{"A", 200}, {"B", 250}, {"C", 300}});
  AddInstrumental("RESTED", 200000, 0);
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(Routine(), "AjusteFinHeure");
  EXPECT_EQ(PL().Count(), 3);
}

TEST_F(FittingInstrumental, TheFileIsReadAtEachFit) {
  List({{"A", 700}, {"B", 250}});
  AddInstrumental("RESTED", 700000, 0);
  OnlyInstrumentalHour(12);
  FitHourWithInstrumentals(on.station);
  ASSERT_EQ(Routine(), "AjusteFinHeure");
  on.seen.clear();
  OnlyInstrumentalHour(13);
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(Routine(), "AjusteFinHeureInstru");
}

TEST_F(FittingInstrumental, FewerThanSixRowsAskForMoreMusicFirst) {
  List(std::vector<Piece>(5, {"A", 30}));
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(on.Events("request").size(), 1U);
  List({{"A", 30}});
  FitHourWithInstrumentals(on.station);
  EXPECT_EQ(on.Events("request").size(), 1U);
}

TEST_F(FittingInstrumental, AFailedQueryIsLoggedAndReleasesTheTick) {
  List({{"A", 700}});
  on.Sql("DROP TABLE Discotheque");
  FitHourWithInstrumentals(on.station);
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0]["where"], "AjusteFinHeureInstru");
  EXPECT_EQ(Names(), "A");
  EXPECT_TRUE(Engine().MainTimer->Enabled());
  EXPECT_TRUE(Engine().FittingActive);
}

// --- the music in front of the spots ---

using FittingShortens = FittingBreak;

TEST_F(FittingShortens, EveryTitleBefore400MsAPassUntilTheBlockIsByThePip) {
  List({{"A", 200}, {"B", 250}, {"C", 300}});
  Break(1, "12:55", "01:00");
  Set("OffsetTopH", "58");
  FitHourWithBreakAtPip(on.station);
  // The block is to start by 46800 + 1 - (60 - 58) = 46799. After k passes it starts at 46200 and
  // the whole seconds of 200, 250 and 300 less 0.4 k: 46800 for k = 125, 46797 for k = 126.
  EXPECT_EQ(Exits(), "50400,50400,50400");
  EXPECT_EQ(on.loop.MonotonicMs(), 126);  // a pass costs a millisecond
  EXPECT_EQ(Routine(), "AjusteFinHeurePubColleTopH");
  EXPECT_EQ(ColumnText(PL().Row(2), Col::kPlanned), "12 h 52 ' 29");  // 12:50:00.126 and 149.6 s
}

TEST_F(FittingShortens, ABlockThatReachesTheTargetToTheSecondIsCloseEnough) {
  List({{"A", 600}});
  Break(1, "12:55", "01:00");
  FitHourWithBreakAtPip(on.station);
  EXPECT_EQ(Exits(), "400");  // 46200 and the whole seconds of 599.6 are the target, 46799
}

TEST_F(FittingShortens, ThePipsSecondAndTheBuffersMoveTheTarget) {
  List({{"A", 200}, {"B", 250}, {"C", 300}});
  Break(1, "12:55", "01:00");
  Set("OffsetTopH", "30");
  Engine().BufferOffsetSec = 2;
  Engine().RemainingMs = 12000;
  Engine().MixPointMs = 1600;
  FitHourWithBreakAtPip(on.station);
  // Target 46800 + 2 + 1 - 30 = 46773. The first row starts at 46200 + 12 - 1.6, whole 46210, so
  // that the three may take 563 s: 138 + 188 + 238 = 564 after 155 passes (62 s each), 137 + 187 +
  // 237 = 561 after 156 (62.4 s).
  EXPECT_EQ(Exits(), "62400,62400,62400");
}

TEST_F(FittingShortens, NothingBehindTheFirstRowThatIsNoMusic) {
  List({{"A", 200}, {"jingle", 5}, {"B", 250}, {"C", 300}});
  Break(1, "12:55", "01:00");
  FitHourWithBreakAtPip(on.station);
  // One pass: behind A the moment is 46399, by far before the pip.
  EXPECT_EQ(Exits(), "400,,0,0");
}

TEST_F(FittingShortens, AddsToTheExitPointOfTheCard) {
  List({{"A", 200, 1600}});
  Break(1, "12:55", "01:00");
  FitHourWithBreakAtPip(on.station);
  EXPECT_EQ(Exits(), "2000");
}

TEST_F(FittingShortens, FewerThanSixRowsAskForMoreMusicFirst) {
  List(std::vector<Piece>(5, {"A", 30}));
  Break(1, "12:55", "01:00");
  FitHourWithBreakAtPip(on.station);
  EXPECT_EQ(on.Events("request").size(), 1U);
  List({{"A", 30}});
  FitHourWithBreakAtPip(on.station);
  EXPECT_EQ(on.Events("request").size(), 1U);
}

TEST_F(FittingShortens, AnHourWithoutABreakLeftIsFittedPlainly) {
  List({{"A", 200}, {"jingle", 5}, {"B", 250}});
  Break(1, "12:49", "01:00");
  FitHourWithBreakAtPip(on.station);
  EXPECT_EQ(Routine(), "AjusteFinHeure");
  EXPECT_EQ(Names(), "A,B");
  EXPECT_EQ(Exits(), "0,0");
  EXPECT_FALSE(Engine().HourBlockHandled);
  EXPECT_TRUE(Engine().FittingActive);
  EXPECT_TRUE(Engine().MainTimer->Enabled());
  EXPECT_FALSE(on.station.notices.progress.visible);
}

TEST_F(FittingShortens, WhileItWorksTheScreenSaysSoAndTheTickIsHeld) {
  List(std::vector<Piece>(6, {"A", 30}));  // enough rows for no request to yield before
  Break(1, "12:55", "01:00");
  bool seen = false;
  on.loop.Post([&] {
    seen = true;
    EXPECT_EQ(on.station.notices.progress.text, "OPTIMISATION PUB >> TOP H");
    EXPECT_FALSE(Engine().MainTimer->Enabled());
  });
  FitHourWithBreakAtPip(on.station);
  EXPECT_TRUE(seen);
  EXPECT_TRUE(Engine().MainTimer->Enabled());
}

// --- 23 h: 23:50:00 is 85800 s, the pip's hour is 0 ---

class FittingBreakBeforeMidnight : public FittingBreak {
 protected:
  FittingBreakBeforeMidnight() : FittingBreak("2026-11-21 23:50:00") {}
};

TEST_F(FittingBreakBeforeMidnight, TheFlagIsThatOfHour0AndTheTimeLeftEndsWithTheDay) {
  OnlyInstrumentalHour(0);
  List({{"A", 200}, {"B", 250}, {"C", 300}});
  AddInstrumental("SHORT", 1000, 0);
  FitHourWithInstrumentals(on.station);
  // 600 s are left, so that C is the row that the pip reaches; the gap, counted to the start of the
  // day, is far below 0 and lets every length through.
  EXPECT_EQ(Names(), "A,B,SHORT,C") << on.Describe();
}

TEST_F(FittingBreakBeforeMidnight, TheShorteningEndsByItsTwoSeconds) {
  List({{"A", 200}, {"B", 250}});
  Break(1, "23:55", "01:00");
  FitHourWithBreakAtPip(on.station);
  EXPECT_EQ(BreakPosition(), 1);
  EXPECT_EQ(on.loop.MonotonicMs(), 2000);
  EXPECT_EQ(Exits(), "800000,800000");
}

}  // namespace
}  // namespace zemo::test
