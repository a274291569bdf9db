// The clock around the air: timed start and stop, midnight, summer time, a clock that is set.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "engine/OperatorControls.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

// No music: a jingle row survives the change of the hour.
void AppendJingle(TestStation& on, int64_t lengthMs) {
  static int number = 0;
  OnAirElement row;
  row.title = "JINGLE";
  row.file = on.MakeSound("jingle" + std::to_string(++number) + ".wav", lengthMs);
  row.code = -1;
  on.Append(row);
}

void SetZone(const char* zone) {
  setenv("TZ", zone, 1);
  tzset();
}

// 21 November 2026 is a Saturday: day 5.
TEST(TimedStart, StartsAtItsMinute) {
  TestStation on("2026-11-21 12:00:30");
  on.MakeFile("StartStop.5", "\"START\",\"12:01\"\r\n");
  on.Load();
  AppendJingle(on, 10000);
  on.RunUntil(40000);
  ASSERT_EQ(on.Starts().size(), 1U) << on.Describe();
  EXPECT_EQ(on.Starts()[0].atMs, 30000);
}

TEST(TimedStart, GoesOnAirInAutomaticMode) {
  TestStation on("2026-11-21 12:00:30");
  on.MakeFile("StartStop.5", "\"START\",\"12:01\"\r\n");
  on.Load();
  AppendJingle(on, 10000);
  on.station.engine.IsAutomatic = false;
  on.RunUntil(30150);
  EXPECT_TRUE(on.station.engine.IsRunning);
  EXPECT_TRUE(on.station.engine.IsAutomatic);
}

TEST(TimedStart, IsNotTakenOnAProductionMachine) {
  ON_FILES_ALONE("the base is a copy of a file");
  TestStation on("2026-11-21 12:00:30");
  on.MakeFile("StartStop.5", "\"START\",\"12:01\"\r\n");
  on.localValues.Set("PCProduction", "True");
  // A production machine creates no table: another machine made the base.
  {
    TestStation other("2026-11-21 12:00:00");
    other.Load();
    std::string bytes = *other.stationFolder.Read("Triskin.MDB");
    on.stationFolder.Write("Triskin.MDB", bytes);
  }
  on.Load();
  AppendJingle(on, 10000);
  on.RunUntil(40000);
  EXPECT_TRUE(on.Starts().empty()) << on.Describe();
  EXPECT_FALSE(on.stationFolder.Exists("ZemoOnOff.Dat"));
}

TEST(TimedStart, IsNotTakenWithMnuStartStopOff) {
  TestStation on("2026-11-21 12:00:30");
  on.MakeFile("StartStop.5", "\"START\",\"12:01\"\r\n");
  on.localValues.Set("StartAndStop", "False");
  on.Load();
  AppendJingle(on, 10000);
  on.RunUntil(40000);
  EXPECT_TRUE(on.Starts().empty()) << on.Describe();
}

TEST(TimedStop, WithoutSuffixLetsTheElementEnd) {
  TestStation on("2026-11-21 12:00:50");
  on.MakeFile("StartStop.5", "\"STOP\",\"12:01\"\r\n");
  on.Load();
  AppendJingle(on, 20000);
  AppendJingle(on, 20000);
  on.Start();
  on.RunUntil(60000);
  EXPECT_EQ(on.Events("engine").back().atMs, 10000) << on.Describe();
  EXPECT_EQ(on.First("end")->atMs, 20100);
  EXPECT_EQ(on.Starts().size(), 1U);
}

TEST(TimedStop, WithFFadesTheElement) {
  TestStation on("2026-11-21 12:00:50");
  on.MakeFile("StartStop.5", "\"STOP\",\"12:01-F\"\r\n");
  on.Load();
  AppendJingle(on, 60000);
  AppendJingle(on, 60000);
  on.Start();
  on.RunUntil(60000);
  // The tick of the stop ends at once; the next one fades over 1600 ms.
  EXPECT_EQ(on.First("fade")->atMs, 10100) << on.Describe();
  EXPECT_EQ(on.First("end")->atMs, 11700);
  EXPECT_EQ(on.Starts().size(), 1U);
}

TEST(TimedStop, WithQClosesTheOutputAndShutsDown) {
  TestStation on("2026-11-21 12:00:50");
  on.MakeFile("StartStop.5", "\"STOP\",\"12:01-Q\"\r\n");
  on.Load();
  AppendJingle(on, 60000);
  on.Start();
  on.RunUntil(60000);
  ASSERT_EQ(on.Events("system").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("system")[0].atMs, 10000);
  EXPECT_EQ(on.Events("system")[0]["action"], "shutdown");
  EXPECT_EQ(on.First("output", "state", "close")->atMs, 10000);
}

TEST(TimedStop, EditsOfTheFileTakeEffectInTheMinute00) {
  TestStation on("2026-11-21 12:59:50");
  on.Load();
  AppendJingle(on, 600000);
  on.Start();
  on.At(5000, [&] { on.MakeFile("StartStop.5", "\"STOP\",\"13:00\"\r\n"); });
  on.RunUntil(60000);
  EXPECT_EQ(on.Events("engine").back().atMs, 10000) << on.Describe();
}

TEST(Topage, StopsTheEngineAndTellsTheNeighbour) {
  TestStation on("2026-11-21 12:00:50");
  on.MakeFile("Topage.5", "\"12:01\"\r\n");
  on.Load();
  AppendJingle(on, 20000);
  on.Start();
  on.RunUntil(40000);
  const auto words = on.Events("clipboard");
  ASSERT_EQ(words.size(), 2U) << on.Describe();
  EXPECT_EQ(words[0].atMs, 10000);
  EXPECT_EQ(words[0]["text"], "12:01:00");
  EXPECT_EQ(words[1]["text"], "Topage");
  EXPECT_EQ(words[1].atMs, 22600);  // the element ends at 20100, the drain lasts 2.5 s
  EXPECT_EQ(on.stationFolder.Read("CheckTopage.Dat"), "Topage          ");
}

// The first tick of the hour has read the times already.
TEST(Topage, EditsOfItsFileAloneTakeEffectInTheMinute00) {
  TestStation on("2026-11-21 12:00:30");
  on.Load();
  AppendJingle(on, 600000);
  on.Start();
  on.At(5000, [&] { on.MakeFile("Topage.5", "\"12:01\"\r\n"); });
  on.RunUntil(31000);
  EXPECT_EQ(on.Events("engine").back().atMs, 30000) << on.Describe();
  EXPECT_TRUE(on.station.engine.TopagePending);
}

TEST(Midnight, NoGuardGoesNegative) {
  TestStation on("2026-11-21 23:59:50");
  on.Load();
  AppendJingle(on, 60000);
  AppendJingle(on, 60000);
  on.Start();
  on.RunUntil(20000);
  const EngineState& engine = on.station.engine;
  const float now = on.station.Timer();
  EXPECT_EQ(engine.LastDay, 22);
  for (float guard :
       {static_cast<float>(engine.LastGridCheckTimer), static_cast<float>(engine.LastJingleTimer),
        static_cast<float>(engine.LastIntroJingleTimer),
        static_cast<float>(engine.LastPlaylistWatchTimer),
        static_cast<float>(engine.LastTopHourTimer)})
    EXPECT_GE(now - guard, 0.0F);
}

TEST(Midnight, GuardsOfTheEveningBeginAgainWithTheDay) {
  TestStation on("2026-11-21 23:59:50");
  on.Load();
  AppendJingle(on, 60000);
  on.Start();
  on.At(9950, [&] {
    EngineState& engine = on.station.engine;
    engine.LastAssociationTimer = 86399;
    engine.LastTopHourTimer = 86399;
    engine.LastIntroJingleTimer = 86399;
  });
  on.RunUntil(10050);  // the first tick of the day
  const EngineState& engine = on.station.engine;
  EXPECT_EQ(engine.LastAssociationTimer, 0.0F);
  EXPECT_EQ(engine.LastTopHourTimer, 0.0F);
  EXPECT_EQ(engine.LastIntroJingleTimer, 0.0F);
}

// The buffers run out from 23:59:58.1 on: the wait begins again with the day, and ends.
TEST(Midnight, DoesNotHoldTheOutputOpenBehindAStop) {
  TestStation on("2026-11-21 23:59:55");
  on.Load();
  AppendJingle(on, 3000);
  on.Start();
  on.At(1000, [&] { OnAir::Toolbar_ButtonClick(on.station, Toolbar::kStop); });
  on.RunUntil(8000);
  const Seen* closed = on.First("output", "state", "close");
  ASSERT_NE(closed, nullptr) << on.Describe();
  EXPECT_GE(closed->atMs, 7500);  // 2 s of buffers and half a second, from midnight on
}

TEST(Midnight, OverlapAcrossItEndsWithTheOldElement) {
  TestStation on("2026-11-21 23:59:00");
  on.Load();
  on.Set("PmixJingles", "1600");
  AppendJingle(on, 60300);
  AppendJingle(on, 60000);
  on.Start();
  on.RunUntil(70000);
  EXPECT_EQ(on.Starts().at(1).atMs, 58800) << on.Describe();
  EXPECT_EQ(on.Events("onair").at(1).atMs, 60400);
  EXPECT_EQ(on.SqlText("SELECT LADATE || ' ' || HEURE FROM Rapport WHERE CODE = 2"),
            "22/11/2026 00:00:00");
}

TEST(NewHour, UnplayedMusicGoesAndNegativeRowsStay) {
  TestStation on("2026-11-21 12:59:50");
  on.Load();
  AppendJingle(on, 60000);
  on.AppendCard(on.AddCard({}));
  AppendJingle(on, 60000);
  on.AppendCard(on.AddCard({}));
  on.Start();
  on.RunUntil(9900);
  EXPECT_EQ(on.station.PL.Count(), 3);
  on.RunUntil(10000);
  ASSERT_EQ(on.station.PL.Count(), 1);
  EXPECT_EQ(on.station.PL.Row(1).code, -1);
}

TEST(SummerTime, BeginsInTheMiddleOfAnElement) {
  SetZone("Europe/Paris");
  TestStation on("2027-03-28 01:59:30");
  on.Load();
  on.Set("PmixJingles", "1600");
  AppendJingle(on, 60000);
  AppendJingle(on, 60000);
  on.Start();
  on.RunUntil(70000);
  EXPECT_EQ(on.Starts().at(1).atMs, 58500) << on.Describe();
  EXPECT_EQ(on.SqlText("SELECT LADATE || ' ' || HEURE FROM Rapport WHERE CODE = 2"),
            "28/03/2027 03:00:30");
}

TEST(SummerTime, EndsInTheMiddleOfAnElement) {
  SetZone("Europe/Paris");
  TestStation on("2026-10-25 02:59:30");  // the first of the two
  on.Load();
  on.Set("PmixJingles", "1600");
  AppendJingle(on, 60000);
  AppendJingle(on, 60000);
  on.Start();
  on.RunUntil(70000);
  EXPECT_EQ(on.Starts().at(1).atMs, 58500) << on.Describe();
  EXPECT_EQ(on.SqlText("SELECT LADATE || ' ' || HEURE FROM Rapport WHERE CODE = 2"),
            "25/10/2026 02:00:30");
}

// The overlay is armed for the end of an introduction of 30 s; 12 s of it are over when the clock
// goes back. The jingle comes while the introduction still lasts, not an hour later.
TEST(SetClock, BackByAnHourLetsAJingleOverTheIntroductionCome) {
  TestStation on("2026-11-21 12:30:00");
  on.Load();
  on.Set("JingleEnFinIntro", "1");
  on.Set("JinglesIntro", "0");
  const int32_t code = on.AddCard({.lengthMs = 180000, .introSec = 30});
  on.Sql(
      "INSERT INTO DiscothequeJingle (LIBELLE, FILENAME, DUREE, SURIMPRESSION, CODEASSOCIE, "
      "GENREASSOCIE, JingleExtraitYN) VALUES ('OVER', '" +
      on.MakeSound("over.wav", 5000) + "', 5000, 1, " + std::to_string(code) + ", '', 0)");
  on.AppendCard(code);
  on.Start();
  on.At(12000, [&] { on.loop.ShiftWallClock(-3600000); });
  on.RunUntil(60000);
  const Seen* overlay = on.First("overlay", "reason", "jingle");
  ASSERT_TRUE(overlay) << on.Describe();
  EXPECT_LE(overlay->atMs, 30000);
}

// So that its rest is counted by the clock that never jumps.
TEST(SetClock, ATitleOnAirIsKnownByItsBroadcastAndTheRunsOwnClock) {
  TestStation on("2026-11-21 12:30:00");
  on.Load();
  const int32_t code = on.AddCard({.lengthMs = 180000});
  on.AppendCard(code);
  on.Start();
  on.RunUntil(5000);
  ASSERT_EQ(on.station.requests.airings.count(code), 1U) << on.Describe();
  EXPECT_EQ(on.station.requests.airings.at(code).broadcast, "21/11/2026 à 12:30");
  EXPECT_EQ(on.SqlText("SELECT DIFFUSION01 FROM Discotheque"), "21/11/2026 à 12:30");
}

TEST(SetClock, BackByAnHourOpensTheHourAgain) {
  TestStation on("2026-11-21 12:30:00");
  on.Load();
  AppendJingle(on, 60000);
  on.Start();
  on.At(5050, [&] {
    on.station.engine.HourBlockHandled = true;
    on.station.engine.FittingActive = true;
    on.loop.ShiftWallClock(-3600000);
  });
  on.RunUntil(5150);
  EXPECT_FALSE(on.station.engine.HourBlockHandled);
  EXPECT_FALSE(on.station.engine.FittingActive);
  EXPECT_EQ(on.station.engine.LastHour, 11);
}

TEST(SetClock, BackByAnHourDuringAnOverlapDoesNotHoldTheAir) {
  TestStation on("2026-11-21 12:30:00");
  on.Load();
  on.Set("PmixJingles", "1600");
  for (int i = 0; i < 3; ++i) AppendJingle(on, 60000);
  on.Start();
  on.At(59000, [&] { on.loop.ShiftWallClock(-3600000); });
  on.RunUntil(130000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 3U) << on.Describe();
  EXPECT_EQ(on.Events("onair").at(1).atMs, 60100);
  EXPECT_EQ(starts[2].atMs, 116900);  // 58500 + 60000 - 1600
}

TEST(SetClock, ForwardByAnHourDuringAnOverlapDoesNotHoldTheAir) {
  TestStation on("2026-11-21 12:30:00");
  on.Load();
  on.Set("PmixJingles", "1600");
  for (int i = 0; i < 3; ++i) AppendJingle(on, 60000);
  on.Start();
  on.At(59000, [&] { on.loop.ShiftWallClock(3600000); });
  on.RunUntil(130000);
  ASSERT_EQ(on.Starts().size(), 3U) << on.Describe();
  EXPECT_EQ(on.Events("onair").at(1).atMs, 60100);
  EXPECT_EQ(on.Starts()[2].atMs, 116900);
}

}  // namespace
}  // namespace zemo::test
