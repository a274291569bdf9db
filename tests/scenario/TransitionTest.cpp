// From one element to the next: exit points, fades, overlaps, on the virtual clock.
// Every station here starts at 12:00:00, so that the first element begins with the first tick at
// 100 ms. Standard settings: 2 s of buffers, PmixDef 1600, FadeOut 1600.
#include <gtest/gtest.h>

#include <cmath>

#include "engine/MainTick.h"
#include "library/OnAirRows.h"
#include "station/OnAirColumns.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class Transition : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  // Two titles, the first with that exit point, on air for two minutes.
  void PlayTwo(const Card& first, const Card& second) {
    on.AppendCard(on.AddCard(first));
    on.AppendCard(on.AddCard(second));
    on.Start();
    on.RunUntil(120000);
  }
  TestStation on;
};

TEST_F(Transition, TitleWithoutExitPointGivesWayPmixDefBeforeItsEnd) {
  PlayTwo({.lengthMs = 60000}, {.lengthMs = 30000});
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[0].atMs, 100);
  EXPECT_EQ(starts[0].Int("slot"), 0);
  // 60000 - 1600 = 58400 ms of position, read at the tick 58400 ms after the start.
  EXPECT_EQ(starts[1].atMs, 58500);
  EXPECT_EQ(starts[1].Int("slot"), 1);
}

TEST_F(Transition, OverlapEndsWithTheOldElementsFile) {
  PlayTwo({.lengthMs = 60000}, {.lengthMs = 30000});
  const auto onAir = on.Events("onair");
  ASSERT_EQ(onAir.size(), 2U) << on.Describe();
  EXPECT_EQ(onAir[0].atMs, 100);  // no overlap at the first start
  // The wait would last 1.6 + 2.0 s, but the first title ends at 60100.
  EXPECT_EQ(onAir[1].atMs, 60100);
  EXPECT_EQ(onAir[1].Int("mix_ms"), 1600);
}

// At 100 ms: 12:00:00.1, 180 s of the title and 2 s of buffers, less its exit point of 1.6 s.
TEST_F(Transition, ThePlanBehindAStartIsThatOfTheElementThatStarted) {
  on.AppendCard(on.AddCard({.lengthMs = 180000}));
  on.AppendCard(on.AddCard({}));
  on.Start();
  on.RunUntil(150);
  ASSERT_GE(on.station.PL.Count(), 1);
  EXPECT_EQ(ColumnText(on.station.PL.Row(1), Col::kPlanned), "12 h 03 ' 00");
}

TEST_F(Transition, ATickThatComesWhileTheTimerIsHeldDoesNothing) {
  on.AppendCard(on.AddCard({}));
  on.Start();
  const MainTimerHold hold(on.station);
  OnAir::MainTimer_Timer(on.station);
  EXPECT_TRUE(on.Starts().empty()) << on.Describe();
}

TEST_F(Transition, TheIncomingElementsPositionCountsDuringTheOverlap) {
  on.At(59000, [&] { EXPECT_EQ(on.station.engine.ElementPositionMs, 0); });
  PlayTwo({.lengthMs = 60000}, {.lengthMs = 30000});  // an overlap from 58500 to 60100
}

// The exit point of 6 s is longer than the new element, which fades the old one in its own 2.5 s.
// The wait takes the 2 s of the buffers, and one more with short jingles: then the fade ends first.
TEST_F(Transition, ShortJinglesWaitASecondMore) {
  for (const char* shortJingles : {"0", "1"}) {
    TestStation own;
    own.Load();
    own.Set("FadeOut", "5000");
    own.Set("JingleCourt", shortJingles);
    own.AppendCard(own.AddCard({.lengthMs = 60000, .exitMs = 6000}));
    own.AppendCard(own.AddCard({.lengthMs = 2500}));
    own.Start();
    own.RunUntil(60000);
    ASSERT_EQ(own.Starts().size(), 2U) << own.Describe();
    EXPECT_EQ(own.Starts()[1].atMs, 54100);
    EXPECT_EQ(own.Events("onair")[1].atMs, *shortJingles == '1' ? 56600 : 56100);
  }
}

// Of a code that is no element's nobody knows an exit point: it keeps what stands there.
TEST_F(Transition, AnElementShorterThanTheExitPointDoesNotInheritIt) {
  on.AppendCard(on.AddCard({.lengthMs = 60000, .exitMs = 6000}));
  OnAirElement other;
  other.code = -7;
  other.file = on.MakeSound("other.wav", 3000);
  on.Append(other);
  on.Start();
  on.RunUntil(58000);
  const auto onAir = on.Events("onair");
  ASSERT_EQ(onAir.size(), 2U) << on.Describe();
  EXPECT_EQ(onAir[1].Int("mix_ms"), 0);
}

TEST_F(Transition, ExitPointOf3000IsNotFaded) {
  PlayTwo({.lengthMs = 60000, .exitMs = 3000}, {.lengthMs = 30000});
  EXPECT_EQ(on.Starts().at(1).atMs, 57100);
  EXPECT_TRUE(on.Events("fade").empty()) << on.Describe();
}

TEST_F(Transition, ExitPointOf3001IsFaded) {
  PlayTwo({.lengthMs = 60000, .exitMs = 3001}, {.lengthMs = 30000});
  // 56999 ms of position are reached between two ticks: the tick at 57000 of position.
  EXPECT_EQ(on.Starts().at(1).atMs, 57100);
  const auto fades = on.Events("fade");
  ASSERT_EQ(fades.size(), 1U) << on.Describe();
  EXPECT_EQ(fades[0].atMs, 57100);
  EXPECT_EQ(fades[0].Int("slot"), 0);
  EXPECT_EQ(fades[0].Int("ms"), 1600);
  EXPECT_EQ(on.First("end")->atMs, 58700);
  EXPECT_EQ((*on.First("end"))["reason"], "fade");
}

TEST_F(Transition, NextElementShorterThanTheOverlapEndsIt) {
  // A title with exit point 5000 before one of 1 s: the old one fades over the lesser of FadeOut
  // (1600) and 1000, and the overlap is 0: the wait lasts only the buffers, or the fade.
  PlayTwo({.lengthMs = 60000, .exitMs = 5000}, {.lengthMs = 1000});
  EXPECT_EQ(on.Starts().at(1).atMs, 55100);
  const auto fades = on.Events("fade");
  ASSERT_GE(fades.size(), 1U) << on.Describe();
  EXPECT_EQ(fades[0].Int("ms"), 1600);  // the long overlap's fade comes first
  // The second fade of 1000 ms ends earlier: it is the one that counts.
  EXPECT_EQ(on.First("end", "slot", "0")->atMs, 56100);
}

TEST_F(Transition, EveryElementLeavesItsReportRow) {
  const int32_t code =
      on.AddCard({.lengthMs = 20000, .artist = "L'ARTISTE", .title = "UN \"TITRE\""});
  on.AppendCard(code);
  on.Start();
  on.RunUntil(1000);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "1");
  EXPECT_EQ(on.SqlText("SELECT AUTEUR FROM Rapport"), "L'ARTISTE");
  EXPECT_EQ(on.SqlText("SELECT TITRE FROM Rapport"), "UN \"TITRE\"");
  EXPECT_EQ(on.SqlText("SELECT LADATE || ' ' || HEURE FROM Rapport"), "21/11/2026 12:00:00");
  EXPECT_EQ(on.SqlText("SELECT DIFFUSION01 FROM Discotheque"), "21/11/2026 à 12:00");
  // 21 November 2026 is day 46347 of the serial; 12:00:00.1 its half and a little.
  EXPECT_EQ(std::floor(std::stod(on.SqlText("SELECT LASTDIFF FROM Discotheque"))), 46347);
}

TEST_F(Transition, SilenceLastsFromTheStartOrderToTheFirstElement) {
  PlayTwo({.lengthMs = 60000}, {.lengthMs = 30000});
  const auto silence = on.Events("silence");
  ASSERT_EQ(silence.size(), 3U) << on.Describe();
  EXPECT_EQ(silence[0].atMs, 0);
  EXPECT_EQ(silence[0]["state"], "begin");
  EXPECT_EQ(silence[1].atMs, 100);
  EXPECT_EQ(silence[1]["state"], "end");
  EXPECT_EQ(silence[2].atMs, 88500);  // the list is empty and the second title over
  EXPECT_EQ(silence[2]["state"], "begin");
}

TEST_F(Transition, LostFilesAreSkippedOneATick) {
  on.AppendCard(on.AddCard({.lengthMs = 10000}));
  for (int i = 0; i < 3; ++i) on.AppendCard(on.AddCard({.file = "/nowhere/lost.wav"}));
  on.AppendCard(on.AddCard({.lengthMs = 10000}));
  on.Start();
  on.RunUntil(30000);
  const auto skips = on.Events("skip");
  ASSERT_EQ(skips.size(), 3U) << on.Describe();
  EXPECT_EQ(skips[0].atMs, 8500);
  EXPECT_EQ(skips[1].atMs, 8600);
  EXPECT_EQ(skips[2].atMs, 8700);
  EXPECT_EQ(skips[0]["reason"], "missing");
  EXPECT_EQ(on.Starts().at(1).atMs, 8800);
}

TEST_F(Transition, UnreadableFileIsLoggedAndTheAirGoesOn) {
  const std::string text = on.MakeFile("text.mp3", "no sound");
  on.AppendCard(on.AddCard({.file = text}));
  on.AppendCard(on.AddCard({.lengthMs = 10000}));
  on.Start();
  on.RunUntil(5000);
  ASSERT_EQ(on.Events("skip").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("skip")[0]["reason"], "unreadable");
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["where"], "PlayWave");
  EXPECT_EQ(on.Starts().at(0).atMs, 200);
}

}  // namespace
}  // namespace zemo::test
