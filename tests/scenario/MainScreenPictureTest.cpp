// The picture of the main screen follows from the station's state, whatever led to it.
#include <gtest/gtest.h>

#include "engine/MainScreenPicture.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr const char* kEvenSecond = "2026-11-21 12:05:00";
constexpr const char* kOddSecond = "2026-11-21 12:05:01";

TEST(MainScreenPicture, LightsBlinkOnEvenSeconds) {
  for (const char* moment : {kEvenSecond, kOddSecond}) {
    TestStation on(moment);
    on.station.engine.TopagePending = true;
    on.station.engine.IntroOverlayPending = true;
    on.station.engine.VoiceTrackState = -1;
    const MainScreen screen = PictureOf(on.station);
    EXPECT_EQ(screen.LblTopage.visible, moment == kEvenSecond);
    EXPECT_EQ(screen.LblIntro.visible, moment == kEvenSecond);
    EXPECT_EQ(screen.LblFeu.visible, moment == kEvenSecond);
  }
}

TEST(MainScreenPicture, TheLightOfAVoiceTrackTurnsRedOnAirAndAnExtractComesFirst) {
  TestStation on(kEvenSecond);
  EngineState& engine = on.station.engine;
  EXPECT_FALSE(PictureOf(on.station).LblFeu.visible);
  engine.VoiceTrackState = -1;
  EXPECT_EQ(PictureOf(on.station).LblFeu.text, "Voice Track");
  EXPECT_EQ(PictureOf(on.station).LblFeu.colour, 0x80C0FFU);
  engine.VoiceTrackState = -2;
  EXPECT_EQ(PictureOf(on.station).LblFeu.colour, 255U);
  engine.CheckExtrait = true;
  engine.ExtractEndMs = 90000;
  engine.ElementPositionMs = 30000;
  EXPECT_EQ(PictureOf(on.station).LblFeu.text, "Extrait 01:00");
  EXPECT_EQ(PictureOf(on.station).LblFeu.colour, 0x80C0FFU);
  engine.ElementPositionMs = 90000;  // its end, before the next element began
  EXPECT_FALSE(PictureOf(on.station).LblFeu.visible);
}

TEST(MainScreenPicture, TheElementsFiguresComeFromItsPosition) {
  TestStation on(kEvenSecond);
  EngineState& engine = on.station.engine;
  EXPECT_EQ(PictureOf(on.station).Temp, "--:--");
  EXPECT_EQ(PictureOf(on.station).PSortie, "");
  engine.lastTickTime = "12:05:00";
  engine.ElementLengthMs = 200000;
  engine.ElementPositionMs = 4999;
  engine.ProgressPercent = 2;
  engine.RemainingMs = 195001;  // 3 min 15 s
  engine.MixPointMs = 1600;
  EXPECT_EQ(PictureOf(on.station).Temp, "03:15");
  EXPECT_EQ(PictureOf(on.station).Tmn, 3);
  EXPECT_EQ(PictureOf(on.station).Tss, 15);
  EXPECT_EQ(PictureOf(on.station).LblLongueur, "03:20");
  EXPECT_EQ(PictureOf(on.station).PSortie, "PS 1.6");
  EXPECT_EQ(PictureOf(on.station).VuMettrePercent, 0);  // empty for 5 s
  engine.ElementPositionMs = 5000;
  EXPECT_EQ(PictureOf(on.station).VuMettrePercent, 2);
}

TEST(MainScreenPicture, TheLockBarsMenus) {
  TestStation on(kEvenSecond);
  EXPECT_TRUE(PictureOf(on.station).MnuParametrageEnabled);
  EXPECT_TRUE(PictureOf(on.station).MnuEditEnabled);
  on.station.engine.ScreenLocked = true;
  EXPECT_FALSE(PictureOf(on.station).MnuParametrageEnabled);
  EXPECT_FALSE(PictureOf(on.station).MnuEditEnabled);
}

TEST(MainScreenPicture, TheTickerRestsWithTheStationsName) {
  TestStation on(kEvenSecond);
  EXPECT_EQ(PictureOf(on.station).LblInfo, "ZEMO RADIO PRO");
  EXPECT_FALSE(PictureOf(on.station).LblInfoScrolling);
  on.station.notices.ticker = "NEWS";
  EXPECT_EQ(PictureOf(on.station).LblInfo, "NEWS");
  EXPECT_TRUE(PictureOf(on.station).LblInfoScrolling);
}

TEST(MainScreenPicture, TheLightOfAnExtractWithoutAnEndBlinksToo) {
  TestStation on(kEvenSecond);
  on.station.engine.CheckExtrait = true;
  on.station.engine.ElementPositionMs = 30000;
  EXPECT_TRUE(PictureOf(on.station).LblFeu.visible);
}

TEST(MainScreenPicture, TheJoysticksLampIsBrightWhileItHoldsSomething) {
  TestStation on(kEvenSecond);
  EngineState& engine = on.station.engine;
  const auto lamp = [&] { return PictureOf(on.station).LedJoystique; };
  engine.joystickLamp = JoystickLamp::kDark;
  EXPECT_EQ(lamp().text, "");
  EXPECT_EQ(lamp().colour, 32768U);  // dark green
  engine.joystickLamp = JoystickLamp::kReady;
  EXPECT_EQ(lamp().text, "Joy");
  EXPECT_EQ(lamp().colour, 32768U);
  engine.joystickLamp = JoystickLamp::kSatellite;
  EXPECT_EQ(lamp().text, "Joy2");
  EXPECT_EQ(lamp().colour, 65280U);  // bright green
}

TEST(MainScreenPicture, TheCountdownIsHiddenOnceTheIntroductionIsNotShown) {
  TestStation on(kEvenSecond);
  on.station.engine.IntroLengthSec = 20;
  EXPECT_FALSE(PictureOf(on.station).VueIntro.visible);
  on.station.engine.IntroShown = true;
  EXPECT_TRUE(PictureOf(on.station).VueIntro.visible);
}

TEST(MainScreenPicture, WhileTheEngineRunsNoListIsOpenedNorPrinted) {
  TestStation on(kEvenSecond);
  EXPECT_TRUE(PictureOf(on.station).MnuPlaylistEnabled);
  EXPECT_TRUE(PictureOf(on.station).MnuImprimeEnabled);
  on.station.engine.IsRunning = true;
  EXPECT_FALSE(PictureOf(on.station).MnuPlaylistEnabled);
  EXPECT_FALSE(PictureOf(on.station).MnuImprimeEnabled);
}

TEST(MainScreenPicture, TheCopyButtonNamesTheBreakThatIsChosen) {
  TestStation on(kEvenSecond);
  EXPECT_EQ(PictureOf(on.station).BtnCopyPubCaption, "");
  on.station.gridFrame.chosenMoment = "12:30";
  EXPECT_EQ(PictureOf(on.station).BtnCopyPubCaption, "Copier les pubs de 12:30");
  on.station.gridFrame.chosenIsSpots = false;
  EXPECT_EQ(PictureOf(on.station).BtnCopyPubCaption, "Copier les rubriques de 12:30");
}

TEST(MainScreenPicture, TheSearchBelongsToMusicAndThePictureToJingles) {
  TestStation on(kEvenSecond);
  struct Case {
    BrowseList list;
    bool search, picture;
  };
  for (const Case& entry :
       {Case{BrowseList::kMusic, true, false}, Case{BrowseList::kJingles, false, true},
        Case{BrowseList::kSpots, false, false}}) {
    on.station.browse.ListRech.list = entry.list;
    EXPECT_EQ(PictureOf(on.station).SearchVisible, entry.search);
    EXPECT_EQ(PictureOf(on.station).PictureNoJingleVisible, entry.picture);
  }
}

TEST(MainScreenPicture, TheFootHasTheListsTotalAndTheCycleOnceItIsKnown) {
  TestStation on(kEvenSecond);
  EXPECT_EQ(PictureOf(on.station).LblMaxPlayInfo, "");
  on.station.PL.Add({.lengthMs = 3725000, .exitMs = 2000});  // 1 h 2 min 3 s up to its exit point
  on.station.notices.cycleMs = 9000000;                      // 2 h 30 min
  const MainScreen screen = PictureOf(on.station);
  EXPECT_EQ(screen.HHTot, 1);
  EXPECT_EQ(screen.MnTot, 2);
  EXPECT_EQ(screen.SSTot, 3);
  EXPECT_EQ(screen.LblMaxPlayInfo, "02 h 30");
}

TEST(MainScreenPicture, AMachineThatWritesNoReportSaysSo) {
  TestStation on(kEvenSecond);
  EXPECT_EQ(PictureOf(on.station).LblDateTitre, "");
  on.station.notices.noReport = true;
  EXPECT_EQ(PictureOf(on.station).LblDateTitre, "No Rapport");
}

// The one before is cut in its introduction.
TEST(MainScreenPicture, ATitleWithoutItsCardShowsNoCountdownOfTheOneBefore) {
  TestStation on(kEvenSecond);
  on.Load();
  on.AppendCard(on.AddCard({.lengthMs = 60000, .introSec = 40}));
  const int32_t gone = on.AddCard({.lengthMs = 60000});
  on.AppendCard(gone);
  on.Sql("DELETE FROM Discotheque WHERE CODE = " + std::to_string(gone));
  on.Start();
  MainScreen first;
  on.At(5050, [&] {
    first = PictureOf(on.station);
    on.station.engine.NextRequested = true;
  });
  on.RunUntil(10000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_TRUE(first.VueIntro.visible);
  EXPECT_EQ(first.VueIntro.lengthSec, 40);
  EXPECT_FALSE(PictureOf(on.station).VueIntro.visible);
}

}  // namespace
}  // namespace zemo::test
