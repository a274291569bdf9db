// A program that is gone on air, and the next one that takes the air up.
#include <gtest/gtest.h>

#include "engine/StartStop.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr char kFile[] = "OnAir.Dat";

class KeptPosition : public testing::Test {
 protected:
  KeptPosition() {
    on.station.engine.keptAir.wanted = true;
    on.Load();
    first_ = on.AddCard({.lengthMs = 180000, .artist = "A", .title = "FIRST"});
    second_ = on.AddCard({.lengthMs = 60000, .artist = "B", .title = "SECOND"});
    on.AppendCard(first_);
    on.AppendCard(second_);
    on.Start();
  }
  // The machine as the crash left it, at that moment: nothing of the first program is asked again.
  std::unique_ptr<TestStation> Next(const std::string& moment, bool wanted = true) {
    auto next = std::make_unique<TestStation>(moment, on.stationDir.Path());
    for (const char* name : {kFile, "ZemoPlay.Ini"})
      if (const auto bytes = on.machineFolder.Read(name)) next->machineFolder.Write(name, *bytes);
    next->opener.lengthsMs = on.opener.lengthsMs;
    next->station.engine.keptAir.wanted = wanted;
    next->Load();
    return next;
  }
  std::string Rows() { return on.SqlText("SELECT COUNT(*) FROM Rapport"); }

  TestStation on;
  int32_t first_ = 0, second_ = 0;
};

// 100 buffers of 4096 bytes are two seconds between what is mixed and what is heard; the last
// keeping was up to a second ago.
TEST_F(KeptPosition, IsTakenUpWhereItWasHeardWithTheListBehindIt) {
  on.RunUntil(61500);
  const auto next = Next("2026-11-21 12:01:06");
  next->RunUntil(1000);
  ASSERT_EQ(next->Starts().size(), 1U) << next->Describe();
  const Seen start = next->Starts()[0];
  EXPECT_EQ(start["title"], "A  FIRST");
  EXPECT_GE(start.Int("position_ms"), 61500 - 2000 - 1200);
  EXPECT_LE(start.Int("position_ms"), 61500 - 2000);
  EXPECT_LE(start.atMs, 200);
  EXPECT_EQ(Rows(), "1");
  EXPECT_EQ(
      on.SqlText("SELECT coalesce(DIFFUSION01, '') <> '' AND coalesce(DIFFUSION02, '') = '' FROM "
                 "Discotheque WHERE CODE = " +
                 std::to_string(first_)),
      "1");
  ASSERT_EQ(next->station.PL.Count(), 1);
  EXPECT_EQ(next->station.PL.Row(1).code, second_);

  next->RunUntil(125000);
  ASSERT_EQ(next->Starts().size(), 2U) << next->Describe();
  EXPECT_EQ(next->Starts()[1]["title"], "B  SECOND");
  EXPECT_EQ(next->Starts()[1].Int("position_ms"), 0);
  EXPECT_EQ(Rows(), "2");
}

// The crash came between two writes of one start: by the report the next start knows which.
TEST_F(KeptPosition, AroundTheReportsRowNothingIsLostOrDoubled) {
  on.RunUntil(20000);
  std::string file = *on.machineFolder.Read(kFile);
  const std::string begun = on.SqlText("SELECT DATENUM FROM Rapport");
  size_t field = 0;
  for (int comma = 0; comma < 3; ++comma) field = file.find(',', field) + 1;
  file.replace(field, file.find(',', field) - field, begun);
  on.machineFolder.Write(kFile, file);
  const auto behind = Next("2026-11-21 12:00:21");
  behind->RunUntil(1000);
  ASSERT_EQ(behind->Starts().size(), 1U);
  EXPECT_GT(behind->Starts()[0].Int("position_ms"), 10000);
  EXPECT_EQ(Rows(), "1");
  behind->RunUntil(1500);
  on.Sql("DELETE FROM Rapport");
  const auto ahead = Next("2026-11-21 12:00:21");
  ahead->RunUntil(1000);
  ASSERT_EQ(ahead->Starts().size(), 1U);
  EXPECT_EQ(ahead->Starts()[0]["title"], "A  FIRST");
  EXPECT_EQ(ahead->Starts()[0].Int("position_ms"), 0);
  EXPECT_EQ(Rows(), "1");
}

TEST_F(KeptPosition, OlderThanTenSecondsTheStartIsOneAsAnyOther) {
  on.RunUntil(61500);
  const auto next = Next("2026-11-21 12:01:12");
  next->RunUntil(1000);
  EXPECT_TRUE(next->Starts().empty() || next->Starts()[0].Int("position_ms") == 0);
  EXPECT_EQ(next->station.PL.Count() + static_cast<int>(next->Starts().size()), 0);
}

TEST_F(KeptPosition, AClockThatWentBackTakesNothingUp) {
  on.RunUntil(61500);
  EXPECT_TRUE(Next("2026-11-21 12:00:30")->station.PL.Empty());
}

TEST_F(KeptPosition, AStopInOrderLeavesNothingToTakeUp) {
  on.RunUntil(20000);
  EXPECT_TRUE(on.machineFolder.Exists(kFile));
  StartStopZemoRadio(on.station, false);
  EXPECT_FALSE(on.machineFolder.Exists(kFile));
  on.RunUntil(25000);
  EXPECT_FALSE(on.machineFolder.Exists(kFile));
}

TEST_F(KeptPosition, AProgramThatKeepsNoneNeitherWritesNorReadsIt) {
  on.RunUntil(20000);
  const auto next = Next("2026-11-21 12:00:21", false);
  EXPECT_TRUE(next->station.PL.Empty());
  next->machineFolder.Remove(kFile);
  next->RunUntil(5000);
  EXPECT_FALSE(next->machineFolder.Exists(kFile));
}

TEST_F(KeptPosition, WhatIsDamagedIsReadAsFarAsItIsWhole) {
  on.RunUntil(20000);
  const std::string whole = *on.machineFolder.Read(kFile);
  for (size_t length = 0; length < whole.size(); length += 7) {
    on.machineFolder.Write(kFile, whole.substr(0, length));
    const auto next = Next("2026-11-21 12:00:21");
    EXPECT_LE(next->station.PL.Count(), 2) << length;
    EXPECT_TRUE(next->LoggedTexts().empty()) << next->LoggedTexts()[0];
  }
  on.machineFolder.Write(kFile, "1,99999999999999999999,-5,x\r\n\"\r\n,,,,END\r\n");
  EXPECT_TRUE(Next("2026-11-21 12:00:21")->station.PL.Empty());
}

TEST_F(KeptPosition, AFileThatIsGoneMeanwhileIsNotTakenUp) {
  on.RunUntil(20000);
  const std::string file = on.Starts()[0]["file"];
  std::remove(file.c_str());
  EXPECT_TRUE(Next("2026-11-21 12:00:21")->station.PL.Empty());
}

TEST_F(KeptPosition, AFullDiskCostsTheAirNothing) {
  on.RunUntil(5000);
  on.machineFolder.writesFail = true;
  on.RunUntil(185000);
  EXPECT_EQ(on.Starts().size(), 2U);
}

// What the crashed program had done in this minute is not done again.
TEST_F(KeptPosition, ModeAndGuardsGoAlong) {
  EngineState& engine = on.station.engine;
  on.RunUntil(20000);
  engine.IsAutomatic = false;
  engine.LastTopHourTimer = 43215.5F;
  engine.PipSuppressed = true;
  engine.PlaylistRunning = true;
  engine.RunningPlaylistName = "Evening, \"live\"";
  on.RunUntil(22000);
  const auto next = Next("2026-11-21 12:00:23");
  EXPECT_FALSE(next->station.engine.IsAutomatic);
  EXPECT_EQ(next->station.engine.LastTopHourTimer, 43215.5F);
  EXPECT_TRUE(next->station.engine.PipSuppressed);
  EXPECT_TRUE(next->station.engine.PlaylistRunning);
  EXPECT_EQ(next->station.engine.RunningPlaylistName, "Evening, \"live\"");
}

TEST_F(KeptPosition, ARowKeepsAllThatItSays) {
  OnAirElement track;
  track.code = Element::kVoiceTrack;
  track.title = "Voice \"one\", two";
  track.secondLine = "7";
  track.genre = "VOICE";
  track.file = on.MakeSound("track.wav", 4000);
  track.lengthMs = 4000;
  track.voiceTrack = 7;
  track.liesOver = true;
  track.startMs = 1500;
  track.madeFor = TrackNeighbours{"a,b", "c", 180000, -250, 12};
  on.Append(track);
  on.RunUntil(20000);
  const auto next = Next("2026-11-21 12:00:21");
  ASSERT_EQ(next->station.PL.Count(), 3);
  track.plannedMs = next->station.PL.Row(3).plannedMs;  // reckoned anew
  EXPECT_EQ(next->station.PL.Row(3).AsElement(), track);
}

}  // namespace
}  // namespace zemo::test
