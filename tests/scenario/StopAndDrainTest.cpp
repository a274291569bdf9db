// Stopping, draining, forced next, restart of the output. Stations start at 12:00:00; standard
// settings: 2 s of buffers (the drain lasts 2.5 s), FadeOut 1600.
#include <gtest/gtest.h>

#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class StopAndDrain : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void Append(int64_t lengthMs) { on.AppendCard(on.AddCard({.lengthMs = lengthMs})); }
  TestStation on;
};

TEST_F(StopAndDrain, StopLetsTheElementEndAndDrainsTheBuffers) {
  Append(10000);
  on.Start();
  EXPECT_EQ(on.stationFolder.Read("ZemoOnOff.Dat"), "1");
  std::string whilePlaying;
  on.At(5000, [this] { StartStopZemoRadio(on.station, false); });
  on.At(10000, [&] { whilePlaying = *on.stationFolder.Read("ZemoOnOff.Dat"); });
  on.RunUntil(20000);
  EXPECT_EQ(on.First("end")->atMs, 10100) << on.Describe();
  EXPECT_EQ((*on.First("end"))["reason"], "file");
  EXPECT_EQ(on.First("output", "state", "stop")->atMs, 12600);
  EXPECT_EQ(on.First("output", "state", "close")->atMs, 12600);
  EXPECT_EQ(whilePlaying, "1");
  EXPECT_EQ(on.stationFolder.Read("ZemoOnOff.Dat"), "0");
}

TEST_F(StopAndDrain, DrainHappensOnce) {
  Append(1000);
  on.Start();
  on.At(500, [this] { StartStopZemoRadio(on.station, false); });
  on.RunUntil(60000);
  EXPECT_EQ(on.Events("output").size(), 4U) << on.Describe();  // open, start, stop, close
}

TEST_F(StopAndDrain, NextWhileStoppingFadesAndStartsNothing) {
  Append(60000);
  Append(60000);
  on.Start();
  on.At(5000, [this] { StartStopZemoRadio(on.station, false); });
  on.At(5050, [this] { OnAir::CmdStop_Click(on.station); });
  on.RunUntil(20000);
  EXPECT_EQ(on.First("fade")->atMs, 5100) << on.Describe();
  EXPECT_EQ(on.First("end")->atMs, 6700);
  EXPECT_EQ(on.First("output", "state", "close")->atMs, 9200);
  EXPECT_EQ(on.Starts().size(), 1U);
  EXPECT_EQ(on.station.PL.Count(), 1);
}

TEST_F(StopAndDrain, RestartAfterADrainBeginsOnSlotOne) {
  Append(5000);
  Append(5000);
  on.Start();
  on.At(500, [this] { StartStopZemoRadio(on.station, false); });
  on.At(10000, [this] { StartStopZemoRadio(on.station, true); });
  on.RunUntil(15000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  // Both channels were written false at the end of the drain: slot 0 counts as on air.
  EXPECT_EQ(on.Starts()[1].Int("slot"), 1);
  // The start looks for a dated list, which holds the timer: a whole interval passes from there.
  EXPECT_EQ(on.Starts()[1].atMs, 10100);
}

TEST_F(StopAndDrain, IdleProgramWritesZeroAndStaysQuiet) {
  on.RunUntil(10000);
  EXPECT_EQ(on.stationFolder.Read("ZemoOnOff.Dat"), "0");
  EXPECT_TRUE(on.Events("output").empty()) << on.Describe();
}

TEST_F(StopAndDrain, ForcedNextFadesAndStartsTheNext) {
  Append(60000);
  Append(30000);
  on.Start();
  on.At(20000, [this] { OnAir::CmdStop_Click(on.station); });
  on.RunUntil(30000);
  EXPECT_EQ(on.Starts().at(1).atMs, 20000) << on.Describe();
  EXPECT_EQ(on.First("fade")->Int("ms"), 1600);
  EXPECT_EQ(on.Events("onair").at(1).atMs, 21600);  // the old channel is done
}

TEST_F(StopAndDrain, ForcedNextInsideAnOverlapIsLost) {
  Append(60000);
  Append(30000);
  Append(30000);
  on.Start();
  on.At(59000,
        [this] { OnAir::CmdStop_Click(on.station); });  // the overlap lasts from 58500 to 60100
  on.RunUntil(100000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 3U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 58500);
  EXPECT_EQ(starts[2].atMs, 86900);  // 58500 + 30000 - 1600
}

TEST_F(StopAndDrain, RowBroughtToTheHeadInsideAnOverlapPlaysNextAndTheOneBehindIsNotPlayedTwice) {
  Append(60000);
  Append(30000);
  Append(20000);
  Append(10000);
  on.Start();
  on.At(59000, [this] { OnAir::PL_DragDrop(on.station, 3, 1); });  // overlap: 58500 to 60100
  on.RunUntil(130000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 4U) << on.Describe();
  EXPECT_EQ(starts[1].Int("length_ms"), 30000);
  EXPECT_EQ(starts[2].Int("length_ms"), 10000);
  EXPECT_EQ(starts[3].Int("length_ms"), 20000);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "4");
}

TEST_F(StopAndDrain, JingleOfAnOverlapIsReportedUnderItsOwnNameWhateverIsPutBeforeIt) {
  Append(60000);
  OnAirElement jingle;
  jingle.title = "OURS";
  jingle.file = on.MakeSound("ours.wav", 30000);
  jingle.code = Element::kJingle;
  on.Append(jingle);
  Append(20000);
  on.Start();
  on.At(59000, [this] { OnAir::PL_DragDrop(on.station, 2, 1); });
  on.RunUntil(62000);
  EXPECT_EQ(on.SqlText("SELECT AUTEUR FROM Rapport WHERE GENRE = 'JINGLE'"), "OURS");
  EXPECT_EQ(on.station.PL.Count(), 1);
}

TEST_F(StopAndDrain, OutputIsRestartedOnSlotZeroWhenCycleMaxiWouldBePassed) {
  on.Set("CycleMaxi", "15000");
  Append(10000);
  Append(10000);
  Append(5000);
  on.Start();
  on.RunUntil(30000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 3U) << on.Describe();
  // 8400 ms of output and 10000 more pass 15000: fade over the buffers, wait 3.5 s, begin again.
  EXPECT_EQ(on.First("fade")->atMs, 8500);
  EXPECT_EQ(on.First("fade")->Int("ms"), 2000);
  EXPECT_EQ(starts[1].atMs, 12000);
  EXPECT_EQ(starts[1].Int("slot"), 0);
  EXPECT_EQ(starts[2].atMs, 20400);
  EXPECT_EQ(starts[2].Int("slot"), 1);
  EXPECT_EQ(on.First("output", "state", "close")->atMs, 12000);
}

TEST_F(StopAndDrain, OnTheRestartedOutputAnElementHasTheVolumeOfItsKind) {
  on.Set("CycleMaxi", "15000");
  Append(10000);
  OnAirElement spot;
  spot.code = Element::kSpot;
  spot.file = on.MakeSound("spot.wav", 10000);
  on.Append(spot);
  on.Start();
  on.RunUntil(13000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].Int("slot"), 0);
  EXPECT_EQ(on.Starts()[1].Int("volume"), 18000);
}

// A fresh output would be passed as well.
TEST_F(StopAndDrain, AnElementLongerThanTheCycleRestartsNothing) {
  on.Set("CycleMaxi", "5000");
  Append(10000);
  Append(10000);
  on.Start();
  on.RunUntil(15000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 8500);  // 100 + 10000 - 1600
  EXPECT_EQ(on.First("output", "state", "close"), nullptr);
}

TEST_F(StopAndDrain, ClosingIsRefusedWhileRunning) {
  Append(10000);
  on.Start();
  on.RunUntil(1000);
  EXPECT_FALSE(OnAir::Form_QueryUnload(on.station));
  EXPECT_TRUE(on.station.engine.IsRunning);
  EXPECT_TRUE(on.station.base.IsOpen());
  Append(5000);
  on.RunUntil(9000);
  EXPECT_EQ(on.Starts().size(), 2U) << on.Describe();  // the tick goes on: 100 + 10000 - 1600
}

TEST_F(StopAndDrain, SpaceTogglesAtMostOnceInTwoSeconds) {
  Append(60000);
  on.Start();
  on.At(1000, [this] { on.keyboard.Press(32); });
  on.At(6000, [this] { on.keyboard.Release(32); });
  on.RunUntil(10000);
  // At 1000, 3000 and 5000: stop, start, stop.
  const auto engine = on.Events("engine");
  ASSERT_EQ(engine.size(), 4U) << on.Describe();
  EXPECT_EQ(engine[1].atMs, 1000);
  EXPECT_EQ(engine[2].atMs, 3000);
  EXPECT_EQ(engine[3].atMs, 5000);
}

}  // namespace
}  // namespace zemo::test
