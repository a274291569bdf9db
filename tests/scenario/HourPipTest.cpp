// The hour pip over and between the music, on the virtual clock. Stations start at 12:55:00, the
// first element begins at 100 ms, the pip is due at 12:59:58, which is 298000 ms. Standard
// settings: OffsetTopH 58, MiniFinHeure 40, FadeOut 1600, VolumeMusiqueSous 6500.
#include <gtest/gtest.h>

#include "library/OnAirRows.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class HourPip : public testing::Test {
 protected:
  HourPip() : on("2026-11-21 12:55:00") {}
  void SetUp() override {
    on.Load();
    pip = on.MakeSound("pip.wav", 3000);
    on.Sql("UPDATE Toph SET FICHIER = '" + pip + "' WHERE HEURE = 13");
  }
  void Play(int64_t lengthMs, int64_t untilMs) {
    on.AppendCard(on.AddCard({.lengthMs = lengthMs}));
    OnAirElement jingle;  // no music: the new hour leaves it in the list
    jingle.title = "JINGLE";
    jingle.file = on.MakeSound("jingle.wav", 5000);
    jingle.code = -1;
    on.Append(jingle);
    on.Start();
    on.RunUntil(untilMs);
  }
  TestStation on;
  std::string pip;
};

TEST_F(HourPip, CutsATitleThatHasPassedMiniFinHeure) {
  Play(600000, 310000);  // 297900 of 600000 ms: 49 percent
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 3U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 298000);
  EXPECT_EQ(starts[1]["code"], "-3");
  EXPECT_EQ(starts[1]["title"], "Top Horaire  ");
  EXPECT_EQ(on.First("fade")->atMs, 298000);
  EXPECT_EQ(on.First("fade")->Int("ms"), 1600);
  // PmixToph 500 before the end of the pip's 3000 ms.
  EXPECT_EQ(starts[2].atMs, 300500);
  EXPECT_EQ(on.SqlText("SELECT GENRE || ' ' || AUTEUR FROM Rapport WHERE CODE = 2"),
            "TOP-H Top Horaire");
}

TEST_F(HourPip, WaitsForMiniFinHeureAndThenCuts) {
  Play(1200000, 500000);  // 24 percent at 298000; 41 percent at 492000 ms of position
  const auto starts = on.Starts();
  ASSERT_GE(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 492100);
  EXPECT_EQ(starts[1]["code"], "-3");
  const Seen* pending = on.First("flag", "name", "HourPipPending");
  ASSERT_TRUE(pending);
  EXPECT_EQ(pending->atMs, 298000);
}

// The pip over the music lasts until 13:00:01; at 13:00:00 the clock is set back by an hour.
TEST_F(HourPip, OverTheMusicIsEndedWhereTheClockGoesBackUnderIt) {
  on.Sql("UPDATE Toph SET SURIMPRESSION = -1 WHERE HEURE = 13");
  on.At(300000, [&] { on.loop.ShiftWallClock(-3600000); });
  Play(600000, 305000);
  const auto volumes = on.Events("volume");
  ASSERT_FALSE(volumes.empty()) << on.Describe();
  EXPECT_EQ(volumes.front()["to"], "6500");
  EXPECT_EQ(volumes.back()["to"], "16384");
  EXPECT_GE(volumes.back().atMs, 301000);
}

TEST_F(HourPip, PercentageEqualToMiniFinHeureCutsAtOnce) {
  Play(740000, 310000);  // 297900 / 740000 is 40 percent and a bit
  ASSERT_GE(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, 298000);
}

TEST_F(HourPip, OverTheMusicLowersAndLiftsIt) {
  on.Sql("UPDATE Toph SET SURIMPRESSION = -1 WHERE HEURE = 13");
  Play(600000, 340000);
  const auto overlays = on.Events("overlay");
  ASSERT_EQ(overlays.size(), 1U) << on.Describe();
  EXPECT_EQ(overlays[0].atMs, 298000);
  EXPECT_EQ(overlays[0]["reason"], "pip");
  const auto volumes = on.Events("volume");
  ASSERT_EQ(volumes.size(), 2U) << on.Describe();
  EXPECT_EQ(volumes[0].atMs, 298000);
  EXPECT_EQ(volumes[0].Int("from"), 16384);
  EXPECT_EQ(volumes[0].Int("to"), 6500);
  EXPECT_EQ(volumes[1].atMs, 301000);  // the pip is over
  EXPECT_EQ(volumes[1].Int("to"), 16384);
  EXPECT_EQ(on.Starts().size(), 1U);
}

TEST_F(HourPip, VolumeIsLiftedInStepsFromASavedValueBelowTheMusics) {
  on.Sql("UPDATE Toph SET SURIMPRESSION = -1 WHERE HEURE = 13");
  on.At(200000, [this] { on.station.Sound().SetVolume(0, 16380); });
  Play(600000, 340000);
  const auto volumes = on.Events("volume");
  // 16384 to 16380, down to 6500, then 16380, 16381, 16382, 16383 and 16384.
  ASSERT_EQ(volumes.size(), 7U) << on.Describe();
  EXPECT_EQ(volumes[2].Int("to"), 16380);
  EXPECT_EQ(volumes[6].Int("to"), 16384);
  EXPECT_EQ(volumes[6].atMs, 301000);
}

TEST_F(HourPip, MissingFileOverTheMusicLeavesTheMusicLoud) {
  on.Sql("UPDATE Toph SET SURIMPRESSION = -1, FICHIER = '/nowhere/pip.wav' WHERE HEURE = 13");
  Play(600000, 310000);
  EXPECT_EQ(on.Events("error").size(), 1U) << on.Describe();
  ASSERT_FALSE(on.Events("volume").empty());
  EXPECT_EQ(on.Events("volume").back().Int("to"), 16384);
  EXPECT_EQ(on.Events("volume").back().atMs, 298000);
}

TEST_F(HourPip, MissingFileBetweenTheMusicCutsAndTheNextRowFollows) {
  on.Sql("UPDATE Toph SET FICHIER = '/nowhere/pip.wav' WHERE HEURE = 13");
  Play(600000, 310000);
  ASSERT_EQ(on.Events("skip").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("skip")[0].atMs, 298000);
  EXPECT_EQ(on.Starts().at(1).atMs, 298100);
  EXPECT_EQ(on.Starts().at(1)["code"], "-1");
}

TEST_F(HourPip, SuppressedPipIsNotFound) {
  on.station.engine.PipSuppressed = true;
  Play(600000, 310000);
  EXPECT_EQ(on.Starts().size(), 1U) << on.Describe();
}

TEST_F(HourPip, EmptyFileMeansNoPip) {
  on.Sql("UPDATE Toph SET FICHIER = ''");
  Play(600000, 310000);
  EXPECT_EQ(on.Starts().size(), 1U) << on.Describe();
}

TEST_F(HourPip, WeekdayWithoutXHasNoPip) {
  on.Sql("UPDATE Toph SET JourSemaine = 'XXXXX-X'");  // 21 November 2026 is a Saturday
  Play(600000, 310000);
  EXPECT_EQ(on.Starts().size(), 1U) << on.Describe();
}

TEST_F(HourPip, OffsetBelowTenIsComparedUnpadded) {
  on.Set("OffsetTopH", "5");  // "59:5": due from 59:50 on
  Play(600000, 310000);
  ASSERT_GE(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, 290000);
}

}  // namespace
}  // namespace zemo::test
