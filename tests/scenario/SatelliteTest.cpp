// The satellite takes the air and gives it back, by contact 1 of the automaton. Standard settings:
// FadeOut 1600, 2 s of buffers (the drain lasts 2.5 s).
#include <gtest/gtest.h>

#include "scenario/TriggerStation.h"
#include "station/TextForms.h"

namespace zemo::test {
namespace {

const Settings kSatellite = {{"PortCom", 1}, {"EntreSat", 2}};

// On air with a title of ten minutes from 100 ms on, and another one behind it.
class SatelliteOnAir : public TriggerStation {
 public:
  explicit SatelliteOnAir(const std::string& begin = "2026-11-21 12:00:00",
                          const Settings& settings = kSatellite)
      : TriggerStation(begin, settings) {}
  void PutOnAir() {
    Load();
    MakeModels();
    AddTitles(30);
    AddLinkingElement(4000);
    AppendTitle(600000);
    AppendTitle(200000);
    Start();
  }
};

TEST(Satellite, TakesTheAirAndGivesItBack) {
  SatelliteOnAir on;
  on.PutOnAir();
  on.At(10000, [&] { on.station.engine.HourBlockHandled = true; });
  on.Contact(20000, 1, true);
  int rowsAtTakeOver = -1;
  on.At(20150, [&] { rowsAtTakeOver = on.station.PL.Count(); });
  std::string listBefore;
  on.At(59950, [&] { listBefore = on.PLCodes(); });
  on.Contact(60000, 1, false);
  on.RunUntil(60150);  // before the linking element asks for more

  EXPECT_EQ(on.EngineTurns(), "0 on; 20100 off; 60100 on") << on.Describe();
  EXPECT_EQ(on.Words(), "20100 Info Sat On; 60100 Fin Info Sat");
  EXPECT_EQ(on.First("fade")->atMs, 20100);
  EXPECT_EQ(on.First("end")->atMs, 21700);
  EXPECT_EQ(rowsAtTakeOver, 0);
  // Once, when both channels are done: the drain that follows writes them otherwise.
  ASSERT_EQ(on.Events("request").size(), 1U) << on.Describe();
  EXPECT_EQ(on.First("request")->atMs, 21700);
  EXPECT_NE(listBefore, "");
  ASSERT_EQ(on.Starts().size(), 2U);
  EXPECT_EQ(on.Starts()[1].atMs, 60100);
  EXPECT_EQ(on.Starts()[1]["code"], "-5");
  EXPECT_EQ(on.PLCodes(), listBefore);  // what was prepared follows the linking element
  EXPECT_FALSE(on.station.engine.SatelliteTaking);
  EXPECT_FALSE(on.station.engine.HourBlockHandled);
}

TEST(Satellite, TheTakeOverIsARowOfTheReport) {
  SatelliteOnAir on;
  on.PutOnAir();
  on.Contact(20000, 1, true);
  on.RunUntil(21000);
  EXPECT_EQ(on.SqlText("SELECT LADATE || '|' || HEURE || '|' || AUTEUR || '|' || TITRE || '|' || "
                       "AUTEURCOMPOSITEUR || '|' || VARIETE || '|' || REFERENCE || '|' || LABEL "
                       "FROM Rapport WHERE GENRE = 'INFO SAT'"),
            "21/11/2026|12:00:20|DEBUT INFO SAT|DEBUT INFO SAT||||");
}

TEST(Satellite, AMachineWithoutReportsWritesNoRow) {
  SatelliteOnAir on;
  on.machineFolder.Write("NoRapport.txt", "");
  on.PutOnAir();
  on.Contact(20000, 1, true);
  on.RunUntil(21000);
  EXPECT_TRUE(on.station.engine.SatelliteTaking);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "0");
}

TEST(Satellite, ADatedListIsKeptAndNothingIsRequested) {
  SatelliteOnAir on;
  on.PutOnAir();
  on.At(10000, [&] {
    on.station.engine.PlaylistRunning = true;
    on.station.engine.HourBlockHandled = true;
  });
  on.Contact(20000, 1, true);
  on.Contact(60000, 1, false);
  on.RunUntil(60000);
  EXPECT_EQ(on.station.PL.Count(), 1);
  EXPECT_TRUE(on.Events("request").empty()) << on.Describe();
  on.RunUntil(60200);
  EXPECT_EQ(on.Starts().back()["code"], "-5");
  EXPECT_TRUE(on.station.engine.HourBlockHandled);
}

TEST(Satellite, OnlyAListThatItKeepsHasAWayBack) {
  for (const bool dated : {false, true}) {
    SatelliteOnAir on;
    on.PutOnAir();
    on.At(10000, [&] {
      on.station.engine.PlaylistRunning = dated;
      const ListOrder order(on.station);
      on.station.PL.Clear();
    });
    on.Contact(20000, 1, true);
    on.RunUntil(20200);
    EXPECT_EQ(UndoListOrder(on.station), dated);
  }
}

TEST(Satellite, ATakeOverOfAnIdleStationStartsItAtTheReturn) {
  SatelliteOnAir on;
  on.Load();
  on.MakeModels();
  on.AddTitles(30);
  on.Contact(5000, 1, true);
  on.Contact(20000, 1, false);
  on.RunUntil(21000);
  EXPECT_EQ(on.EngineTurns(), "20100 on");
  EXPECT_EQ(on.Words(), "5100 Info Sat On; 20100 Fin Info Sat");
  ASSERT_EQ(on.Starts().size(), 1U) << on.Describe();  // requested at the start
}

TEST(Satellite, AContactThatClosesInsideAnExclusionIsServedAtItsEnd) {
  SatelliteOnAir on;
  on.MakeFile("Exclusion.Txt", "12:00\t12:01\r\n");
  on.PutOnAir();
  on.Contact(30000, 1, true);
  on.RunUntil(119900);
  EXPECT_TRUE(on.Led(1));
  EXPECT_EQ(on.Words(), "");
  on.RunUntil(121000);
  EXPECT_EQ(on.Words(), "120000 Info Sat On");  // 12:02
}

TEST(Satellite, AContactThatOpensAgainInsideAnExclusionTakesNothing) {
  SatelliteOnAir on;
  on.MakeFile("Exclusion.Txt", "12:00\t12:01\r\n");
  on.PutOnAir();
  on.Contact(30000, 1, true);
  on.Contact(90000, 1, false);
  on.RunUntil(130000);
  EXPECT_EQ(on.Words(), "");
  EXPECT_EQ(on.EngineTurns(), "0 on");
}

TEST(Satellite, AReturnInsideAnExclusionWaitsForItsEnd) {
  SatelliteOnAir on;
  on.MakeFile("Exclusion.Txt", "12:01\t12:01\r\n");
  on.PutOnAir();
  on.Contact(30000, 1, true);
  on.Contact(70000, 1, false);
  on.RunUntil(121000);
  EXPECT_EQ(on.Words(), "30100 Info Sat On; 120000 Fin Info Sat");
}

TEST(Satellite, PulsesTakeAndGiveBack) {
  SatelliteOnAir on("2026-11-21 12:00:00",
                    {{"PortCom", 1}, {"EntreSat", 2}, {"TempsMaxiImPulsion", 2}});
  on.PutOnAir();
  for (int64_t atMs : {20000, 40000}) {
    on.Contact(atMs, 1, true);
    on.Contact(atMs + 50, 1, false);
  }
  on.RunUntil(41000);
  EXPECT_EQ(on.Words(), "20100 Info Sat On; 40100 Fin Info Sat");
}

TEST(Satellite, ThePreparedListOutlivesTheHour) {
  SatelliteOnAir on("2026-11-21 12:58:00");
  on.PutOnAir();
  on.Contact(60000, 1, true);    // 12:59
  on.Contact(150000, 1, false);  // 13:00:30
  std::string before;
  on.At(149950, [&] { before = on.PLCodes(); });
  on.RunUntil(150150);
  EXPECT_EQ(on.Words(), "60100 Info Sat On; 150100 Fin Info Sat");
  EXPECT_NE(before, "");
  EXPECT_EQ(on.PLCodes(), before);
  EXPECT_EQ(on.station.engine.LastHour, 13);
  EXPECT_EQ(on.Starts().back()["code"], "-5");
}

TEST(Satellite, TakesOverMidnight) {
  SatelliteOnAir on("2026-11-21 23:59:30");
  on.PutOnAir();
  on.Contact(10000, 1, true);
  on.Contact(50000, 1, false);  // 00:00:20
  on.RunUntil(60000);
  EXPECT_EQ(on.Words(), "10100 Info Sat On; 50100 Fin Info Sat");
  EXPECT_GT(on.Starts().back().atMs, 50000) << on.Describe();
  EXPECT_EQ(on.station.engine.LastDay, 22);
  EXPECT_LT(on.station.engine.LastJingleTimer, 60);  // of the new day
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

TEST(Satellite, MeansNothingWithAnotherSetting) {
  for (int setting : {0, 1, 3, 4}) {
    TriggerStation on("2026-11-21 12:00:00", {{"PortCom", 1}, {"EntreSat", setting}});
    on.Load();
    on.Contact(3000, 1, true);
    on.RunUntil(5000);
    EXPECT_EQ(on.Words(), "") << setting;
  }
}

}  // namespace
}  // namespace zemo::test
