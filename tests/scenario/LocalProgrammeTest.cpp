// The local programme on contact 2: the engine runs while it is closed, and is idle otherwise.
#include <gtest/gtest.h>

#include "scenario/TriggerStation.h"

namespace zemo::test {
namespace {

const Settings kLocal = {{"PortCom", 1}, {"EntreSat", 3}};

void PutBreak(Station& station, int row, const std::string& moment) {
  station.GPubJour.SetCell(row, 0, moment);
  station.GPubJour.SetCell(row, 2, "Pubs");
}

TEST(LocalProgramme, RunsWhileTheContactIsClosedAndFadesAtItsEnd) {
  TriggerStation on("2026-11-21 12:00:00", kLocal);
  on.Load();
  on.AppendTitle(60000);
  on.AppendTitle(60000);
  on.Contact(5000, 2, true);
  on.Contact(20000, 2, false);
  on.RunUntil(30000);
  EXPECT_EQ(on.EngineTurns(), "5100 on; 20100 off") << on.Describe();
  EXPECT_EQ(on.Words(), "5100 Prg Local On; 20100 Prg Local Off");
  EXPECT_EQ(on.First("fade")->atMs, 20100);
  EXPECT_EQ(on.First("end")->atMs, 21700);
  EXPECT_FALSE(on.station.engine.LocalProgrammeOn);
  EXPECT_EQ(on.station.PL.Count(), 1);
}

TEST(LocalProgramme, BeginsAtTheEndOfAnExclusion) {
  TriggerStation on("2026-11-21 12:00:00", kLocal);
  on.MakeFile("Exclusion.Txt", "12:00\t12:00\r\n");
  on.Load();
  on.AppendTitle(60000);
  on.Contact(5000, 2, true);
  on.RunUntil(61000);
  EXPECT_EQ(on.Words(), "60000 Prg Local On");
}

TEST(LocalProgramme, GoesOverMidnight) {
  TriggerStation on("2026-11-21 23:59:30", kLocal);
  on.Load();
  on.AppendJingle(120000);
  on.Contact(10000, 2, true);
  on.Contact(50000, 2, false);  // 00:00:20
  on.RunUntil(60000);
  EXPECT_EQ(on.Words(), "10100 Prg Local On; 50100 Prg Local Off");
  EXPECT_EQ(on.EngineTurns(), "10100 on; 50100 off");
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

TEST(LocalProgramme, ABreakWhoseMinuteComesIsPreparedWhileTheEngineIsIdle) {
  TriggerStation on("2026-11-21 12:00:00", kLocal);
  on.Load();
  on.MakeModels();
  on.AddTitles(30);
  on.AppendJingle(60000);
  PutBreak(on.station, 1, "12:01");
  on.RunUntil(59900);
  EXPECT_EQ(on.PLCodes(), "-1");
  EXPECT_TRUE(on.Events("request").empty()) << on.Describe();
  on.RunUntil(130000);
  ASSERT_EQ(on.Events("request").size(), 1U) << on.Describe();  // once in its minute
  EXPECT_EQ(on.First("request")->atMs, 60000);
  EXPECT_EQ(on.PLCodes().find("-1"), std::string::npos);  // the list was cleared
  EXPECT_FALSE(on.station.PL.Empty());
  EXPECT_EQ(on.EngineTurns(), "");
}

TEST(LocalProgramme, TheListThatABreakReplacesHasNoWayBack) {
  TriggerStation on("2026-11-21 12:00:00", kLocal);
  on.Load();
  on.MakeModels();
  on.AddTitles(30);
  on.AppendJingle(60000);
  on.AppendJingle(60000);
  PutBreak(on.station, 1, "12:01");
  {
    const ListOrder order(on.station);
    on.station.PL.Remove(2);
  }
  on.RunUntil(59900);
  EXPECT_TRUE(on.station.listUndo);
  on.RunUntil(61000);
  EXPECT_FALSE(UndoListOrder(on.station));
}

TEST(LocalProgramme, ABreakIsNotPreparedWhileTheGridIsBeingComposed) {
  TriggerStation on("2026-11-21 12:00:00", kLocal);
  on.Load();
  on.MakeModels();
  on.AddTitles(30);
  PutBreak(on.station, 1, "12:01");
  on.station.engine.composing = true;
  on.RunUntil(69950);
  EXPECT_TRUE(on.Events("request").empty()) << on.Describe();
  on.station.engine.composing = false;
  on.RunUntil(80000);
  ASSERT_EQ(on.Events("request").size(), 1U) << on.Describe();
  EXPECT_EQ(on.First("request")->atMs, 70000);
}

TEST(LocalProgramme, NoBreakIsPreparedInsideAnExclusionOrWithAnotherSetting) {
  for (int setting : {2, 3}) {
    TriggerStation on("2026-11-21 12:00:00", {{"PortCom", 1}, {"EntreSat", setting}});
    if (setting == 3) on.MakeFile("Exclusion.Txt", "12:01\t12:01\r\n");
    on.Load();
    on.AppendJingle(60000);
    PutBreak(on.station, 1, "12:01");
    on.RunUntil(130000);
    EXPECT_EQ(on.PLCodes(), "-1") << setting;
  }
}

TEST(LocalProgramme, BreaksArePreparedOnBothSidesOfMidnight) {
  TriggerStation on("2026-11-21 23:58:30", kLocal);
  on.Load();
  on.MakeModels();
  on.AddTitles(30);
  PutBreak(on.station, 1, "00:01");
  PutBreak(on.station, 2, "23:59");
  on.RunUntil(160000);
  const auto requests = on.Events("request");
  ASSERT_EQ(requests.size(), 2U) << on.Describe();
  EXPECT_EQ(requests[0].atMs, 30000);
  EXPECT_EQ(requests[1].atMs, 150000);
}

}  // namespace
}  // namespace zemo::test
