// Jingles as the tick and the start of a title ask for them, on the virtual clock. The engine
// starts at 12:00:00, the first element with the tick at 100 ms. Standard settings: 2 s of buffers
// (BufferOffsetSec 2), PmixDef 1600, PmixJingles 500.
#include <gtest/gtest.h>

#include "JingleLibrary.h"
#include "engine/MainScreenPicture.h"

namespace zemo::test {
namespace {

class JingleOnAir : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    on.Set("Jingles", "0");
    on.Set("JinglesIntro", "0");
  }
  void Air(int64_t forMs) {
    on.Start();
    on.RunUntil(forMs);
  }
  // The titles on air in their order, the artist standing for a title.
  std::string Aired() const {
    std::string titles;
    for (const Seen& start : on.Starts())
      titles += (titles.empty() ? "" : ",") + start["title"].substr(0, start["title"].find("  "));
    return titles;
  }
  TestStation on;
};

TEST_F(JingleOnAir, AnArmedOverlayEndsWithTheIntroduction) {
  on.Set("JinglesIntro", "10");
  AddJingle(on, {.lengthMs = 5000, .overlay = true});
  on.AppendCard(on.AddCard({.introSec = 20}));
  Air(30000);
  // Armed with the title at 100 ms. Of the 20 s of the introduction the jingle takes 5, the buffers
  // 2, and one more is kept: 20 - 5 - 2 - 1 = 12 s after the arming nothing is left.
  const auto overlays = on.Events("overlay");
  ASSERT_EQ(overlays.size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("jingle").at(0).atMs, 100);
  EXPECT_EQ(overlays[0].atMs, 12100);
  EXPECT_EQ(overlays[0]["reason"], "jingle");
  EXPECT_FALSE(on.station.engine.IntroOverlayPending);
  EXPECT_FALSE(PictureOf(on.station).LblIntro.visible);
  const Seen* end = on.First("end", "slot", "2");
  ASSERT_NE(end, nullptr);
  EXPECT_EQ(end->atMs, 17100);
  EXPECT_EQ((*end)["reason"], "file");
}

TEST_F(JingleOnAir, TheLabelBlinksWhileTheOverlayWaits) {
  on.Set("JinglesIntro", "10");
  AddJingle(on, {.lengthMs = 5000, .overlay = true});
  on.AppendCard(on.AddCard({.introSec = 20}));
  Air(2500);
  EXPECT_TRUE(PictureOf(on.station).LblIntro.visible);  // an even second
  on.RunUntil(3500);
  EXPECT_FALSE(PictureOf(on.station).LblIntro.visible);
}

TEST_F(JingleOnAir, AnOverlayThatNeedNotWaitSoundsWithTheTitle) {
  on.Set("JinglesIntro", "10");
  on.Set("JingleEnFinIntro", "0");
  on.Set("VolumeMusiqueSurImpression", "20000");
  AddJingle(on, {.lengthMs = 5000, .overlay = true});
  on.AppendCard(on.AddCard({.introSec = 20}));
  Air(30000);
  const auto overlays = on.Events("overlay");
  ASSERT_EQ(overlays.size(), 1U) << on.Describe();
  EXPECT_EQ(overlays[0].atMs, 100);
  EXPECT_EQ(overlays[0].Int("volume"), 20000);
  EXPECT_EQ(on.First("end", "slot", "2")->atMs, 5100);
}

TEST_F(JingleOnAir, AShortIntroductionStartsTheOverlayWithTheNextTick) {
  on.Set("JinglesIntro", "10");
  AddJingle(on, {.lengthMs = 5000, .overlay = true});
  on.AppendCard(on.AddCard({.introSec = 6}));
  Air(10000);
  // 6 - 5 - 2 - 1 is below 0 from the first look on.
  EXPECT_EQ(on.Events("overlay").at(0).atMs, 200) << on.Describe();
}

TEST_F(JingleOnAir, TheTitlesOwnOverlayComesWhateverTheGapOfOverlaysSays) {
  const int32_t title = on.AddCard({.introSec = 20});
  AddJingle(on, {.lengthMs = 5000, .overlay = true, .titleCode = title});
  on.AppendCard(title);
  Air(30000);
  ASSERT_EQ(on.Events("jingle").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("jingle")[0]["routine"], "FindJingleAssocie");
  EXPECT_EQ(on.Events("overlay").at(0).atMs, 12100);
}

TEST_F(JingleOnAir, TheTitlesOwnOverlayTakesThePlaceOfAnother) {
  on.Set("JinglesIntro", "10");
  const int32_t title = on.AddCard({.introSec = 20});
  AddJingle(on, {.label = "ANY", .overlay = true});
  AddJingle(on, {.label = "OWN", .overlay = true, .titleCode = title});
  on.AppendCard(title);
  Air(1000);
  EXPECT_EQ(on.station.engine.IntroOverlayLabel, "OWN");
  EXPECT_EQ(on.Events("jingle").size(), 1U) << on.Describe();
}

TEST_F(JingleOnAir, ATitleWithoutAnIntroductionGetsNoOverlay) {
  on.Set("JinglesIntro", "10");
  const int32_t title = on.AddCard({.introSec = 0});
  AddJingle(on, {.overlay = true});
  AddJingle(on, {.overlay = true, .titleCode = title});
  on.AppendCard(title);
  Air(10000);
  EXPECT_TRUE(on.Events("jingle").empty()) << on.Describe();
}

TEST_F(JingleOnAir, OverlaysKeepTheirGap) {
  on.Set("JinglesIntro", "10");
  on.Set("JingleEnFinIntro", "0");
  for (int i = 0; i < 2; ++i) AddJingle(on, {.overlay = true});
  // Titles of 5 minutes and a bit: the second begins before, the third behind the 10 minutes.
  for (int i = 0; i < 3; ++i) on.AppendCard(on.AddCard({.lengthMs = 310000, .introSec = 20}));
  Air(700000);
  ASSERT_EQ(on.Starts().size(), 3U) << on.Describe();
  const auto overlays = on.Events("overlay");
  ASSERT_EQ(overlays.size(), 2U) << on.Describe();
  EXPECT_EQ(overlays[0].atMs, 100);
  EXPECT_GT(overlays[1].atMs, 600000);
  EXPECT_NE(overlays[0]["file"], overlays[1]["file"]);
}

TEST_F(JingleOnAir, AJinglePlaysBeforeTheTitleWhenItsGapIsOver) {
  on.Set("Jingles", "5");
  AddJingle(on, {.label = "JINGLE", .lengthMs = 8000});
  on.AppendCard(on.AddCard({.lengthMs = 400000, .artist = "FIRST"}));
  on.AppendCard(on.AddCard({.artist = "SECOND"}));
  Air(420000);
  EXPECT_EQ(Aired(), "FIRST,JINGLE,SECOND") << on.Describe();
  const Seen jingle = on.Starts().at(1);
  EXPECT_EQ(jingle.Int("code"), -1);
  // 400000 - 1600 of the first title, which began at 100.
  EXPECT_EQ(jingle.atMs, 398500);
  // Its own mix is PmixJingles: 8000 - 500.
  EXPECT_EQ(on.Starts().at(2).atMs, 406000);
}

TEST_F(JingleOnAir, WithinTheGapThereIsNone) {
  on.Set("Jingles", "7");
  AddJingle(on, {});
  on.AppendCard(on.AddCard({.lengthMs = 400000, .artist = "FIRST"}));
  on.AppendCard(on.AddCard({.artist = "SECOND"}));
  Air(420000);
  EXPECT_EQ(Aired(), "FIRST,SECOND") << on.Describe();
}

TEST_F(JingleOnAir, WithoutAGapTheTimerIsResetAndNoJingleSearched) {
  AddJingle(on, {});
  on.AppendCard(on.AddCard({.lengthMs = 100000, .artist = "FIRST"}));
  on.AppendCard(on.AddCard({.artist = "SECOND"}));
  Air(120000);
  EXPECT_EQ(Aired(), "FIRST,SECOND") << on.Describe();
  // The second title's change of element came with the tick at 98500 ms, 12:01:38.5.
  EXPECT_EQ(on.station.engine.LastJingleTimer, 43298.5F);
  EXPECT_TRUE(on.Events("jingle").empty());
}

TEST_F(JingleOnAir, JinglesOfTitleAndGenreStandAroundTheirTitle) {
  const int32_t first = on.AddCard({.lengthMs = 20000, .artist = "FIRST"});
  const int32_t second = on.AddCard({.lengthMs = 20000, .artist = "SECOND", .genre = "JAZZ"});
  AddJingle(on, {.label = "BEHIND FIRST", .titleCode = first, .endOfTitle = 1});
  AddJingle(on, {.label = "JAZZ JINGLE", .genre = "JAZZ"});
  on.AppendCard(first);
  on.AppendCard(second);
  on.AppendCard(on.AddCard({.lengthMs = 20000, .artist = "THIRD"}));
  Air(120000);
  // While the jingle behind the first title is on air its code is negative: no genre jingle then.
  EXPECT_EQ(Aired(), "FIRST,BEHIND FIRST,SECOND,THIRD") << on.Describe();
}

TEST_F(JingleOnAir, AGenreJinglePlaysBetweenTwoTitles) {
  AddJingle(on, {.label = "JAZZ JINGLE", .genre = "JAZZ"});
  on.AppendCard(on.AddCard({.lengthMs = 20000, .artist = "FIRST"}));
  on.AppendCard(on.AddCard({.lengthMs = 20000, .artist = "SECOND", .genre = "JAZZ"}));
  Air(60000);
  EXPECT_EQ(Aired(), "FIRST,JAZZ JINGLE,SECOND") << on.Describe();
}

// Both stand before it at the first row: the title's own comes first, and behind it nothing is
// music.
TEST_F(JingleOnAir, ATitlesOwnJinglePlaysInsteadOfThatOfItsGenre) {
  const int32_t title = on.AddCard({.lengthMs = 20000, .genre = "JAZZ"});
  AddJingle(on, {.label = "OF TITLE", .titleCode = title});
  AddJingle(on, {.label = "OF GENRE", .genre = "JAZZ"});
  on.AppendCard(title);
  Air(20000);
  EXPECT_EQ(Aired(), "OF TITLE,ARTIST") << on.Describe();
}

// Armed at 100 ms it is due when 20 - 5.15 - 2 - 1 = 11.85 s have passed: in the tick of the stop.
TEST_F(JingleOnAir, AnOverlayThatIsDueInTheTickOfAFadedStopIsStillHeard) {
  on.stationFolder.Write("StartStop.5", "\"STOP\",\"12:00:12-F\"\r\n");
  on.Set("JinglesIntro", "10");
  AddJingle(on, {.lengthMs = 5150, .overlay = true});
  on.AppendCard(on.AddCard({.introSec = 20}));
  Air(14000);
  ASSERT_EQ(on.Events("overlay").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("overlay")[0].atMs, 12000);
  EXPECT_EQ(on.Events("engine").back().atMs, 12000);
}

TEST_F(JingleOnAir, TheReportNamesTheJinglesComposer) {
  on.Set("Jingles", "5");
  AddJingle(on, {.composer = "DUPONT"});
  on.AppendCard(on.AddCard({.lengthMs = 400000}));
  on.AppendCard(on.AddCard({}));
  Air(410000);
  EXPECT_EQ(on.SqlText("SELECT AUTEURCOMPOSITEUR FROM Rapport WHERE GENRE = 'JINGLE'"), "DUPONT");
}

}  // namespace
}  // namespace zemo::test
