// Breaks of the day's grid on air, on the virtual clock. The engine starts at 12:29:50 unless told
// otherwise, the first element with the tick at 100 ms; 12:30:00 is 10000 ms, 45000 s of the day.
// Standard settings: PmixDef 1600, FadeOut 1600, 2 s of buffers; PmixPubs is set to 100.
#include <gtest/gtest.h>

#include "engine/DayGridControls.h"
#include "engine/MainScreenPicture.h"
#include "engine/OperatorControls.h"
#include "support/Campaigns.h"
#include "traffic/DayGridComposition.h"

namespace zemo::test {
namespace {

class BreakOnAir : public testing::Test {
 protected:
  explicit BreakOnAir(const std::string& begin = "2026-11-21 12:29:50") : on(begin) {}
  void Load() {
    on.Load();
    for (const char* field : {"Jingles", "JinglesIntro"}) on.Set(field, "0");
    on.Set("PmixPubs", "100");
  }
  void MakeGrid() { ComposeTodaysGrid(on.station); }
  void Air(int64_t untilMs) {
    on.Start();
    on.RunUntil(untilMs);
  }
  void Titles(int number, int64_t lengthMs) {
    for (int i = 0; i < number; ++i) on.AppendCard(on.AddCard({.lengthMs = lengthMs}));
  }
  TestStation on;
};

class BreakInItsMinute : public BreakOnAir {
 protected:
  void SetUp() override {
    Load();
    Titles(3, 60000);
  }
  void Spots(const std::vector<std::string>& moments, bool spot = true) {
    AddCampaign(on, {.advertiser = spot ? "SPOT" : "NEWS",
                     .spot = spot,
                     .marks = {"30", "31", "32", "45"},
                     .crosses = moments,
                     .lengthMs = 5000});
    MakeGrid();
  }
};

// 12:30:00 comes a second time, as it does where the clock is corrected.
TEST_F(BreakInItsMinute, AClockCorrectedByASecondFiresItOnce) {
  Spots({"12:30"});
  on.At(10300, [&] { on.loop.ShiftWallClock(-1000); });
  Air(68000);
  EXPECT_EQ(on.Events("break").size(), 1U) << on.Describe();
}

TEST_F(BreakInItsMinute, EndsTheCountdownOfTheIntroductionOnAir) {
  Spots({"12:30"});
  on.At(9950, [&] { on.station.engine.IntroShown = true; });
  Air(10050);
  EXPECT_EQ(on.Events("break").size(), 1U) << on.Describe();
  EXPECT_FALSE(on.station.engine.IntroShown);
}

TEST_F(BreakInItsMinute, WaitsWhileTheGridIsBeingComposed) {
  Spots({"12:30"});
  on.station.engine.composing = true;
  on.At(20050, [&] {
    EXPECT_TRUE(on.Events("break").empty());
    on.station.engine.composing = false;
  });
  Air(30000);
  ASSERT_EQ(on.Events("break").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("break")[0].atMs, 20100);
}

TEST_F(BreakInItsMinute, ComesAgainWithItsMinute) {
  Spots({"12:30"});
  on.At(50000, [&] { on.loop.ShiftWallClock(-3600000); });
  Titles(70, 60000);
  Air(3620000);
  const auto breaks = on.Events("break");
  ASSERT_EQ(breaks.size(), 2U) << on.Describe();
  EXPECT_EQ(breaks[1].atMs, 3610000);
}

TEST_F(BreakInItsMinute, FiresOnceAndWaitsForTheEndOfTheTitle) {
  Spots({"12:30"});
  Air(68000);
  const auto breaks = on.Events("break");
  ASSERT_EQ(breaks.size(), 1U) << on.Describe();
  EXPECT_EQ(breaks[0].atMs, 10000);
  EXPECT_EQ(breaks[0]["routine"], "AjoutPubPlaylist");
  const auto starts = on.Starts();
  ASSERT_GE(starts.size(), 3U);
  EXPECT_EQ(starts[1].atMs, 58500);  // 100 + 60000 - 1600
  EXPECT_EQ(starts[1]["code"], "-2");
  EXPECT_EQ(starts[1]["title"], "SPOT  ");
  EXPECT_EQ(starts[1]["kind"], "Pub");
  EXPECT_EQ(on.SqlText("SELECT GENRE || ' ' || AUTEUR FROM Rapport WHERE CODE = 2"), "PUB SPOT");
}

TEST_F(BreakInItsMinute, WithPriorityTheTitleFadesAndTheBreakBegins) {
  on.Set("PrioritePubs", "1");
  Spots({"12:30"});
  Air(14500);  // the rest of the spot's start is done behind the overlap, at 13600
  const auto starts = on.Starts();
  ASSERT_GE(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 10000);
  EXPECT_EQ(on.First("fade")->atMs, 10000);
  EXPECT_EQ(on.stationFolder.Read("Artiste-Titre.Txt"), "SPOT\r\n");
}

TEST_F(BreakInItsMinute, NewsGoTheirOwnWay) {
  on.Set("PrioritePubs", "1");
  on.Set("VolumeRubriques", "12000");
  Spots({"12:30"}, false);
  Air(64500);
  EXPECT_EQ(on.Events("break").at(0)["routine"], "AjoutRubriquePlaylist");
  const auto starts = on.Starts();
  ASSERT_GE(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 58500);  // PrioriteRubriques is off
  EXPECT_EQ(starts[1]["code"] + starts[1]["kind"] + starts[1]["volume"], "-4Rubrique12000");
  EXPECT_EQ(on.SqlText("SELECT GENRE || ' ' || AUTEUR FROM Rapport WHERE CODE = 2"),
            "Rubrique NEWS");
}

TEST_F(BreakInItsMinute, TheGuardHoldsAfterAHitAndOpensWithARowThatDoesNotMatch) {
  Spots({"12:30"});
  Air(75000);
  std::vector<std::pair<int64_t, std::string>> guard;
  for (const Seen& flag : on.Events("flag"))
    if (flag["name"] == "LastGridCheckTimer") guard.emplace_back(flag.atMs, flag["value"]);
  const std::vector<std::pair<int64_t, std::string>> expected = {{10000, "45000"}, {70000, "0"}};
  EXPECT_EQ(guard, expected);
}

TEST_F(BreakInItsMinute, TheMinuteBehindAHitIsNotLost) {
  Spots({"12:30", "12:31", "12:32"});
  Air(140000);
  const auto breaks = on.Events("break");
  ASSERT_EQ(breaks.size(), 3U) << on.Describe();
  EXPECT_EQ(breaks[1].atMs, 70000);
  EXPECT_EQ(breaks[2].atMs, 130000);
}

TEST_F(BreakInItsMinute, IsNotServedInLiveModeThatStopsAtItsEnd) {
  Spots({"12:30"});
  on.station.engine.OptionDirect = true;
  Air(60000);
  EXPECT_TRUE(on.Events("break").empty());
}

TEST_F(BreakInItsMinute, IsNotServedWhenTheHoursBlockWasHandled) {
  Spots({"12:30"});
  on.station.engine.HourBlockHandled = true;
  Air(60000);
  EXPECT_TRUE(on.Events("break").empty());
}

TEST_F(BreakInItsMinute, IsLostWhileTheEngineIsStopped) {
  Spots({"12:30"});
  on.At(71000, [&] { on.Start(); });  // 12:31:01
  on.RunUntil(130000);
  EXPECT_FALSE(on.Starts().empty());
  EXPECT_TRUE(on.Events("break").empty());
}

TEST_F(BreakInItsMinute, ALostSpotLeavesOnlyASkip) {
  on.Set("PrioritePubs", "1");
  Spots({"12:30"});
  AddCampaign(on, {.advertiser = "GONE",
                   .priority = 5,
                   .marks = {"30"},
                   .crosses = {"12:30"},
                   .file = on.stationDir.Path() + "/gone.wav"});
  MakeGrid();
  Air(16000);
  const auto skips = on.Events("skip");
  ASSERT_EQ(skips.size(), 1U) << on.Describe();
  EXPECT_EQ(skips[0]["reason"], "missing");
  ASSERT_GE(on.Starts().size(), 2U);
  EXPECT_EQ(on.Starts()[1]["title"], "SPOT  ");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE AUTEUR = 'GONE'"), "0");
}

TEST_F(BreakInItsMinute, TheAnnouncedTitlesAreHeardAsExtractsBeforeTheBreak) {
  on.Set("PrioritePubs", "1");
  on.Set("JingleExtraitYN", "1");
  on.Set("ExtraitAuto", "1");
  on.Set("InExtrait", "5");
  on.Set("OutExtrait", "10");
  on.Sql(
      "INSERT INTO DiscothequeJingle (LIBELLE, FILENAME, DUREE, JingleExtraitYN, TRANCHE06) "
      "VALUES ('NEXT', '" +
      on.MakeSound("next.wav", 2000) + "', 2000, 1, '111111111111111111111111')");
  Spots({"12:30"});
  Air(45000);
  const auto starts = on.Starts();
  ASSERT_GE(starts.size(), 5U) << on.Describe();
  EXPECT_EQ(starts[1]["title"], "Jingle annonce extrait  NEXT");
  EXPECT_EQ(starts[2]["position_ms"] + " " + starts[3]["position_ms"], "5000 5000");
  EXPECT_EQ(starts[4]["title"] + starts[4]["position_ms"], "SPOT  0");
  EXPECT_FALSE(on.station.engine.CheckExtrait);
}

// --- midnight ---

class BreakAtMidnight : public BreakOnAir {
 protected:
  BreakAtMidnight() : BreakOnAir("2026-11-21 23:59:50") {}
};

TEST_F(BreakAtMidnight, NeverFiresInTheFirstMinuteOfTheDay) {
  Load();
  Titles(2, 600000);
  AddCampaign(on, {.from = "JOURNALIER",
                   .to = "JOURNALIER",
                   .marks = {"00", "01"},
                   .crosses = {"00:00", "00:01"}});
  MakeGrid();
  Air(135000);
  const auto breaks = on.Events("break");
  ASSERT_EQ(breaks.size(), 1U) << on.Describe();
  EXPECT_EQ(breaks[0]["moment"], "00:01");
  EXPECT_EQ(breaks[0].atMs, 70000);  // the day change set the guard at 10000
}

// Its guard is ahead of the clock when the day begins.
TEST_F(BreakAtMidnight, NeverFiresInTheFirstMinuteOfTheDayBehindABreakOfTheLast) {
  Load();
  Titles(2, 600000);
  AddCampaign(on, {.from = "JOURNALIER",
                   .to = "JOURNALIER",
                   .marks = {"00", "01", "59"},
                   .crosses = {"23:59", "00:00", "00:01"}});
  MakeGrid();
  Air(135000);
  const auto breaks = on.Events("break");
  ASSERT_EQ(breaks.size(), 2U) << on.Describe();
  EXPECT_EQ(breaks[0]["moment"] + " " + breaks[1]["moment"], "23:59 00:01");
  EXPECT_EQ(breaks[1].atMs, 70000);
}

// --- the end-of-hour fitting: the engine starts at 12:54:50 and the fit is due with the tick at
// 12:55:00 ---

class BreakAndFitting : public BreakOnAir {
 protected:
  BreakAndFitting() : BreakOnAir("2026-11-21 12:54:50") {}
  void SetUp() override {
    Load();
    on.Set("OptimiseToph", "-1");
    on.Set("HOptimise", "55");
    Titles(12, 60000);
  }
  void Spot(const std::string& moment) {
    AddCampaign(
        on,
        {.advertiser = "SPOT", .marks = {"30", "55", "58"}, .crosses = {moment}, .lengthMs = 5000});
    MakeGrid();
  }
  std::string Routines() const {
    std::string routines;
    for (const Seen& one : on.Events("break"))
      routines += (routines.empty() ? "" : ",") + one["routine"];
    return routines;
  }
  int SpotsAired() const {
    int spots = 0;
    for (const Seen& start : on.Starts()) spots += start["code"] == "-2" ? 1 : 0;
    return spots;
  }
};

TEST_F(BreakAndFitting, ABreakOfTheFittingsMinuteIsPlacedByBoth) {
  on.Set("PubAvecTopH", "1");
  Spot("12:55");
  Air(11000);
  EXPECT_EQ(Routines(), "AjoutPubPlaylist,AjoutPubRubFinHeure") << on.Describe();
}

TEST_F(BreakAndFitting, ABreakPlacedByTheFittingIsAiredOnceAndNotFiredAgain) {
  on.Set("PubAvecTopH", "1");
  Spot("12:58");
  Air(420000);  // to 13:01:50
  EXPECT_EQ(Routines(), "AjoutPubRubFinHeure") << on.Describe();
  EXPECT_EQ(on.Events("break")[0]["rows"], "1");
  EXPECT_EQ(SpotsAired(), 1) << on.Describe();
}

TEST_F(BreakAndFitting, TheInstrumentalFormPlacesItAtItsMoment) {
  on.Set("Instrumental", "1");
  Spot("12:58");
  Air(420000);
  EXPECT_EQ(Routines(), "AjoutPubRubFinHeure") << on.Describe();
  EXPECT_EQ(SpotsAired(), 1) << on.Describe();
}

TEST_F(BreakAndFitting, ThePlainFormLeavesItToTheTick) {
  Spot("12:58");
  Air(420000);
  EXPECT_EQ(Routines(), "AjoutPubPlaylist") << on.Describe();
  EXPECT_EQ(on.Events("break")[0].atMs, 190000);
  EXPECT_EQ(SpotsAired(), 1);
}

TEST_F(BreakAndFitting, ThePlainFormTakesAWaitingBreakOutOfTheList) {
  Spot("12:30");
  on.station.engine.LastGridCheckTimer = 0;
  on.At(5000, [&] { OnAir::BtnCopyPub_Click(on.station, 1); });
  Air(420000);
  EXPECT_EQ(Routines(), "AjoutPubPlaylist");
  EXPECT_EQ(SpotsAired(), 0);  // a row without a card does not come through the fit
}

// The end of an hour is to come again, for another list: at 12:55:50 it becomes 11:55:50.
TEST_F(BreakAndFitting, AClockSetBackByAnHourTakesTheFittingBack) {
  Spot("12:30");
  on.At(60000, [&] {
    EXPECT_TRUE(on.station.engine.FittingActive);
    on.loop.ShiftWallClock(-3600000);
  });
  Air(62000);
  EXPECT_FALSE(on.station.engine.FittingActive) << on.Describe();
}

// --- the tick composes the grid ---

class GridInTheTick : public BreakOnAir {
 protected:
  explicit GridInTheTick(const std::string& begin = "2026-11-21 12:00:00") : BreakOnAir(begin) {}
  void SetUp() override {
    Load();
    on.seen.clear();
  }
  std::vector<int64_t> Compositions() const {
    std::vector<int64_t> moments;
    for (const Seen& grid : on.Events("grid")) moments.push_back(grid.atMs);
    return moments;
  }
  void Signal(int64_t atMs) {
    on.At(atMs, [&] { on.MakeFile("MajGrillePub.txt", "21/11/2026\r\n"); });
  }
  using Moments = std::vector<int64_t>;
};

class GridAtMidnight : public GridInTheTick {
 protected:
  GridAtMidnight() : GridInTheTick("2026-11-21 23:59:00") {}
};

TEST_F(GridAtMidnight, IsComposedPast25PercentOfALongTitle) {
  Titles(1, 300000);
  Air(120000);
  // 26 percent are 78000 ms; begun at 100.
  EXPECT_EQ(Compositions(), Moments{78100}) << on.Describe();
  EXPECT_EQ(on.station.GPubJour.Cell(0, 53), "22/11/26");
}

TEST_F(GridAtMidnight, IsNotComposedUnderAShortTitle) {
  Titles(3, 75000);  // past 26 percent less than a minute remains
  Air(200000);
  EXPECT_TRUE(Compositions().empty()) << on.Describe();
}

TEST_F(GridAtMidnight, IsNotComposedInLiveMode) {
  Titles(1, 300000);
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  Air(120000);
  EXPECT_TRUE(Compositions().empty()) << on.Describe();
}

TEST_F(GridInTheTick, IsComposedOnASignalInAnEvenSecond) {
  Titles(1, 600000);
  Signal(201050);  // 12:03:21
  Air(260000);
  EXPECT_EQ(Compositions(), Moments{202000}) << on.Describe();
  EXPECT_FALSE(on.stationFolder.Exists("MajGrillePub.txt"));
}

TEST_F(GridInTheTick, ASignalWaitsForALongTitlePast25Percent) {
  Titles(1, 600000);
  Signal(1000);
  Air(200000);
  EXPECT_EQ(Compositions(), Moments{156100});  // 12:02:36
}

TEST_F(GridInTheTick, AProductionMachineLeavesTheSignal) {
  Titles(1, 600000);
  on.station.engine.ReportsDisabled = true;
  Signal(1000);
  Air(300000);
  EXPECT_TRUE(Compositions().empty());
  EXPECT_TRUE(on.stationFolder.Exists("MajGrillePub.txt"));
}

// Open, but not on air: nothing sounds, and there is no element to wait for.
TEST_F(GridInTheTick, ASignalIsTakenUpWhileStopped) {
  Signal(3050);  // 12:00:03
  on.RunUntil(3950);
  EXPECT_TRUE(Compositions().empty());
  on.RunUntil(10000);
  EXPECT_EQ(Compositions(), Moments{4000}) << on.Describe();
  EXPECT_FALSE(on.stationFolder.Exists("MajGrillePub.txt"));
}

TEST_F(GridInTheTick, AStoppedProductionMachineLeavesTheSignal) {
  on.station.engine.ReportsDisabled = true;
  Signal(3050);
  on.RunUntil(10000);
  EXPECT_TRUE(Compositions().empty());
  EXPECT_TRUE(on.stationFolder.Exists("MajGrillePub.txt"));
}

TEST_F(GridInTheTick, AnEmptiedStampBringsANewComposition) {
  Titles(1, 600000);
  on.At(200050, [&] { on.station.GPubJour.SetCell(0, 53, ""); });
  Air(210000);
  EXPECT_EQ(Compositions(), Moments{200100});
}

TEST_F(GridInTheTick, ANewCompositionPutsOffTheNextJingle) {
  Titles(1, 600000);
  on.At(200050, [&] { on.station.GPubJour.SetCell(0, 53, ""); });
  Air(210000);
  EXPECT_EQ(on.station.engine.LastJingleTimer, 43400.1F);  // 12:03:20.1
}

// What waits ten seconds is a try in vain.
TEST_F(GridInTheTick, ASignalBehindACompositionIsTakenUpAtOnce) {
  Titles(1, 600000);
  Signal(201050);  // 12:03:21
  Signal(203050);
  Air(206000);
  EXPECT_EQ(Compositions(), (Moments{202000, 204000})) << on.Describe();
}

TEST_F(GridInTheTick, ASignalWaitsForTheEndOfWhatSoundsBehindAStop) {
  Titles(1, 60000);
  on.At(3050, [&] { OnAir::Toolbar_ButtonClick(on.station, Toolbar::kStop); });
  Signal(5050);
  Air(59950);
  EXPECT_TRUE(Compositions().empty()) << on.Describe();
  on.RunUntil(70000);
  EXPECT_EQ(Compositions().size(), 1U) << on.Describe();
}

TEST_F(GridInTheTick, AFailedCompositionIsTriedAgainTenSecondsLater) {
  Titles(1, 600000);
  on.At(200050, [&] {
    on.Sql("ALTER TABLE GrillePub RENAME TO Away");
    on.station.GPubJour.SetCell(0, 53, "");
  });
  on.At(205000, [&] { on.Sql("ALTER TABLE Away RENAME TO GrillePub"); });
  Air(220000);
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U) << on.Describe();
  EXPECT_EQ(errors[0].atMs, 200100);
  EXPECT_EQ(errors[0]["where"], "MakeGrillePubGeneral");
  EXPECT_EQ(Compositions(), Moments{210100});
}

TEST_F(GridInTheTick, ASignalStaysUntilACompositionSucceeds) {
  Titles(1, 600000);
  Signal(200950);  // seen at 202 s, in an even second
  on.At(200960, [&] { on.Sql("ALTER TABLE GrillePub RENAME TO Away"); });
  on.At(205000, [&] { EXPECT_TRUE(on.stationFolder.Exists("MajGrillePub.txt")); });
  on.At(211000, [&] { on.Sql("ALTER TABLE Away RENAME TO GrillePub"); });
  Air(230000);
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0].atMs, 202000);
  EXPECT_EQ(Compositions(), (Moments{212000, 212000}))
      << on.Describe();  // no stamp, and the signal
  EXPECT_FALSE(on.stationFolder.Exists("MajGrillePub.txt"));
}

TEST_F(GridInTheTick, AFailedCompositionLeavesTheBreaksOfTheDay) {
  AddCampaign(on, {.advertiser = "SPOT", .marks = {"04"}, .crosses = {"12:04"}});
  MakeGrid();
  Titles(1, 600000);
  on.At(200050, [&] {
    on.Sql("ALTER TABLE GrillePub RENAME TO Away");
    on.station.GPubJour.SetCell(0, 53, "");
  });
  // No try in vain puts off the next jingle: the guard is the start's.
  on.At(235000, [&] { EXPECT_LT(on.station.engine.LastJingleTimer, 12 * 3600 + 1); });
  Air(250000);
  EXPECT_FALSE(on.Events("error").empty());
  ASSERT_EQ(on.Events("break").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("break")[0].atMs, 240000);
}

// --- preview of another day, and the hand on the grid ---

TEST_F(GridInTheTick, APreviewSetsTheDateAndComposesItsDay) {
  AddCampaign(
      on,
      {.advertiser = "CHRISTMAS", .from = "24/12/2026", .to = "24/12/2026", .crosses = {"18:00"}});
  ASSERT_TRUE(OnAir::BtnPubJourX_Click(on.station));
  OnAir::PickPreviewDay(on.station, {.year = 2026, .month = 12, .day = 24});
  const auto messages = on.Events("message");
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0]["title"], "Alerte");
  EXPECT_EQ(messages[0]["text"], "Pensez à remettre la date du jour après cette opération");
  const Seen* set = on.First("system");
  ASSERT_NE(set, nullptr);
  EXPECT_EQ((*set)["action"] + " " + (*set)["value"], "date 2026-12-24");
  EXPECT_EQ(on.station.GPubJour.Cell(1, 3), "CHRISTMAS");
  EXPECT_EQ(on.station.GPubJour.Cell(0, 53), "24/12/26");
  EXPECT_EQ(on.station.Now().day, 24);  // it stays
  EXPECT_EQ(on.station.Now().hour, 12);
}

TEST_F(GridInTheTick, ThePreviewWarnsInPortuguese) {
  on.Set("Langue", "2");
  ASSERT_TRUE(OnAir::BtnPubJourX_Click(on.station));
  EXPECT_EQ(on.Events("message").at(0)["text"],
            "Não esquecer de actualizar a data depois da pesquisa");
}

TEST_F(GridInTheTick, WithThePurgeOnThePreviewIsRefused) {
  on.Set("SuppressionPub", "1");
  EXPECT_FALSE(OnAir::BtnPubJourX_Click(on.station));
  EXPECT_EQ(on.Events("message").at(0)["text"],
            "Vous devez désactiver l'option suppression des pubs\r\n"
            "en fin de campagne avant d'éffectuer cette opération");
  EXPECT_TRUE(on.Events("system").empty());
}

TEST_F(GridInTheTick, ABreakCopiedFromTheGridGoesToTheHeadOrToTheSelectedRow) {
  AddCampaign(on, {.advertiser = "SPOT", .crosses = {"18:00"}});
  MakeGrid();
  Titles(3, 60000);
  OnAir::GPubJour_Click(on.station, 1);
  EXPECT_EQ(PictureOf(on.station).BtnCopyPubCaption, "Copier les pubs de 18:00");
  EXPECT_TRUE(OnAir::BtnCopyPub_Click(on.station, 1));
  EXPECT_EQ(on.station.PL.Row(1).title, "SPOT");
  OnAir::OpenGridForInsertion(on.station);
  EXPECT_TRUE(on.station.gridFrame.open);
  EXPECT_TRUE(OnAir::BtnCopyPub_Click(on.station, 1, 3));
  EXPECT_EQ(on.station.PL.Row(3).title, "SPOT");
  EXPECT_FALSE(on.station.gridFrame.open);  // the list came back
  EXPECT_EQ(on.Events("break").at(1)["routine"], "InsertPubPlaylist");
  EXPECT_TRUE(OnAir::BtnCopyPub_Click(on.station, 1));
  EXPECT_EQ(on.Events("break").at(2)["routine"], "AjoutPubPlaylist");
  EXPECT_FALSE(OnAir::BtnCopyPub_Click(on.station, 2));
  EXPECT_FALSE(OnAir::BtnCopyPub_Click(on.station, 0));
}

}  // namespace
}  // namespace zemo::test
