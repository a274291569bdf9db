// What the main screen tells beside the engine's own texts: what comes next, the health line, the
// forecast's wish, the overlay button and the saver.
#include <gtest/gtest.h>

#include "engine/Forecast.h"
#include "engine/HealthLine.h"
#include "engine/MainScreenPicture.h"
#include "engine/NextUp.h"
#include "engine/OperatorControls.h"
#include "engine/OverlayButton.h"
#include "engine/ScreenSaver.h"
#include "library/HotKeys.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class ScreenFigures : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  NextUp Ahead(const std::string& moment, bool pip = false) {
    const LocalDateTime now = ParseMoment(moment);
    return LookAhead(on.station, now, pip, PlanShiftMs(on.station, now, 0));
  }
  void Break(int row, const std::string& moment, const std::string& type) {
    on.station.GPubJour.SetCell(row, GridCol::kMoment, moment);
    on.station.GPubJour.SetCell(row, GridCol::kLength, "01:30");
    on.station.GPubJour.SetCell(row, GridCol::kType, type);
  }
  void Tell(int64_t nowMs, float peak = 0, uint64_t underruns = 0, int64_t disk = 50'000'000'000) {
    OutputFigures output{"null", true, underruns, 0, peak, 0};
    NotePeaks(health, output, nowMs);
    UpdateHealth(health, on.station, output, disk, nowMs, 1);
  }
  const HealthFigure& Figure(HealthLine::Figure figure) { return health.figures[figure]; }
  TestStation on;
  HealthLine health;
};

TEST_F(ScreenFigures, NextBreakIsTheFirstRowAfterThisMinute) {
  Break(1, "11:30", "Pubs");
  Break(2, "12:00", "Pubs");
  Break(3, "13:10", "Rubriques");
  const NextUp next = Ahead("2026-11-21 12:00:20");
  EXPECT_EQ(next.breakAt, "13:10");
  EXPECT_FALSE(next.breakIsSpots);
  EXPECT_EQ(next.breakLength, "01:30");
  EXPECT_EQ(next.breakInSec, 70 * 60 - 20);
}

TEST_F(ScreenFigures, InLiveModeTheDaysLineTellsTheFirstBreakAfterThisMinute) {
  Break(1, "12:00", "Pubs");
  Break(2, "13:10", "Rubriques");
  Break(3, "14:00", "Pubs");
  on.station.engine.IsAutomatic = false;
  on.RunUntil(3000);
  EXPECT_EQ(PictureOf(on.station).InfoDate, "13:10 >> Rubriques - 01:30");
}

TEST_F(ScreenFigures, NoBreakIsToComeWhileTheLiveModesListEndsTheAir) {
  Break(1, "13:00", "Pubs");
  on.station.engine.OptionDirect = true;
  EXPECT_EQ(Ahead("2026-11-21 12:30:00").breakAt, "");
}

TEST_F(ScreenFigures, AVoiceTrackIsNotTheNextElement) {
  OnAirElement track{};
  track.title = "Voice Track";
  track.file = "/vt.wav";
  track.code = -30;
  on.Append(track);
  on.AppendCard(on.AddCard({.artist = "ABBA", .title = "WATERLOO"}));
  EXPECT_EQ(Ahead("2026-11-21 12:30:00").elementTitle, "ABBA  WATERLOO");
}

TEST_F(ScreenFigures, AfterTheLastBreakOfTheDayThereIsNone) {
  Break(1, "11:30", "Pubs");
  const NextUp next = Ahead("2026-11-21 12:00:00");
  EXPECT_EQ(next.breakAt, "");
  EXPECT_EQ(next.breakInSec, -1);
}

TEST_F(ScreenFigures, ThePipCountsDownToTheHourAlsoOverMidnight) {
  EXPECT_EQ(Ahead("2026-11-21 23:58:30", true).pipInSec, 90);
  EXPECT_EQ(Ahead("2026-11-21 23:58:30", true).pipAt, "00:00:00");
  EXPECT_EQ(Ahead("2026-11-21 23:58:30", false).pipInSec, -1);
}

TEST_F(ScreenFigures, NextElementComesAtTheExitPointAndMarkersArePassedOver) {
  OnAirElement marker{};
  marker.title = "Begin Extrait";
  marker.code = -6;
  on.Append(marker);
  on.AppendCard(on.AddCard({.artist = "ABBA", .title = "WATERLOO"}));
  EXPECT_EQ(Ahead("2026-11-21 12:00:00").elementAt, "");  // stopped: no moment
  on.station.engine.IsRunning = true;
  on.station.engine.RemainingMs = 65000;
  on.station.engine.MixPointMs = 5000;
  const NextUp next = Ahead("2026-11-21 12:00:00");
  EXPECT_EQ(next.elementTitle, "ABBA  WATERLOO");
  EXPECT_EQ(next.elementAt, "12:01:00");
  EXPECT_EQ(Ahead("2026-11-21 23:59:30").elementAt, "00:00:30");
}

// In 60 s what sounds gives way; the list's figure counts while it is less than 2 s off.
TEST_F(ScreenFigures, NextElementComesAtTheListsMomentWhereBothMeanTheSame) {
  on.AppendCard(on.AddCard({}));
  on.station.engine.IsRunning = true;
  on.station.engine.RemainingMs = 65000;
  on.station.engine.MixPointMs = 5000;
  constexpr double kNoonMs = 43'200'000, kDayMs = 86'400'000;
  auto& plannedMs = on.station.PL.Row(1).plannedMs;
  plannedMs = kNoonMs + 58001;
  EXPECT_EQ(Ahead("2026-11-21 12:00:00").elementAt, "12:00:58");
  plannedMs = kNoonMs + 58000;
  EXPECT_EQ(Ahead("2026-11-21 12:00:00").elementAt, "12:01:00");
  plannedMs = kDayMs + 29000;
  EXPECT_EQ(Ahead("2026-11-21 23:59:30").elementAt, "00:00:29");
}

TEST_F(ScreenFigures, SilenceOnAirIsRedAfterFiveSecondsAndAgesFromTheLastSound) {
  on.station.engine.IsRunning = true;
  Tell(1000, 0.5F);
  EXPECT_EQ(Figure(HealthLine::kOutput).text, "-6 dB");  // 20 log 0.5 is -6.02
  Tell(5900);
  EXPECT_EQ(Figure(HealthLine::kOutput).severity, HealthSeverity::kGood);
  Tell(6000);
  EXPECT_EQ(Figure(HealthLine::kOutput).severity, HealthSeverity::kHeard);
  EXPECT_EQ(Figure(HealthLine::kOutput).text, "silent");
  EXPECT_EQ(Figure(HealthLine::kOutput).sinceMs, 1000);
}

TEST_F(ScreenFigures, TheEmergencyFolderOnAirIsANoteWithItsLevel) {
  on.station.engine.IsRunning = true;
  Tell(1000, 0.5F);
  on.station.engine.EmergencyOnAir = true;
  Tell(2000, 0.5F);
  EXPECT_EQ(Figure(HealthLine::kOutput).text, "emergency -6 dB");
  EXPECT_EQ(Figure(HealthLine::kOutput).severity, HealthSeverity::kNote);
  EXPECT_EQ(Figure(HealthLine::kOutput).sinceMs, 2000);
  EXPECT_FALSE(SilentOnAir(health));
}

TEST_F(ScreenFigures, WhereNoDevicePlaysNothingIsRed) {
  on.station.engine.IsRunning = true;
  const OutputFigures into{.output = "no output", .device = false};
  UpdateHealth(health, on.station, into, 50'000'000'000, 1000, 1);
  UpdateHealth(health, on.station, into, 50'000'000'000, 7000, 1);
  EXPECT_TRUE(SilentOnAir(health));
  for (const HealthFigure& figure : health.figures)
    EXPECT_NE(figure.severity, HealthSeverity::kHeard) << figure.name;
  EXPECT_EQ(Figure(HealthLine::kDevice).severity, HealthSeverity::kNote);
}

TEST_F(ScreenFigures, TheDeviceIsNamedWithoutSayingTwiceThatItIsOne) {
  const auto told = [&](const char* output) {
    UpdateHealth(health, on.station, {.output = output, .device = true}, 50'000'000'000, 1000, 1);
    return Figure(HealthLine::kDevice).text;
  };
  EXPECT_EQ(told("sound device"), "idle");
  EXPECT_EQ(told("sound device: Studio (ALSA)"), "Studio (ALSA)");
  EXPECT_EQ(told("file air.wav"), "file air.wav");
}

TEST_F(ScreenFigures, SilenceBeforeTheStartIsNoFault) {
  Tell(1000, 0.5F);
  Tell(90000);
  EXPECT_EQ(Figure(HealthLine::kOutput).severity, HealthSeverity::kGood);
  on.station.engine.IsRunning = true;
  Tell(91000);
  EXPECT_EQ(Figure(HealthLine::kOutput).severity,
            HealthSeverity::kGood);  // five seconds from the start
  Tell(96000);
  EXPECT_EQ(Figure(HealthLine::kOutput).severity, HealthSeverity::kHeard);
}

TEST_F(ScreenFigures, ADropoutIsRedForHalfAMinute) {
  Tell(1000, 0.5F, 3);  // what was before the screen opened is not news
  EXPECT_EQ(Figure(HealthLine::kUnderruns).severity, HealthSeverity::kGood);
  Tell(2000, 0.5F, 4);
  EXPECT_EQ(Figure(HealthLine::kUnderruns).severity, HealthSeverity::kHeard);
  EXPECT_EQ(Figure(HealthLine::kUnderruns).sinceMs, 2000);
  Tell(31000, 0.5F, 4);
  EXPECT_EQ(Figure(HealthLine::kUnderruns).severity, HealthSeverity::kHeard);
  Tell(32000, 0.5F, 4);
  EXPECT_EQ(Figure(HealthLine::kUnderruns).severity, HealthSeverity::kGood);
}

TEST_F(ScreenFigures, AFullDiskAWaitingBaseAndAnErrorAreNotesAndNeverRed) {
  Tell(1000, 0.5F, 0, 900'000'000);
  EXPECT_EQ(Figure(HealthLine::kDisk).severity, HealthSeverity::kNote);
  EXPECT_EQ(Figure(HealthLine::kDisk).text, "0.9 GB");
  on.station.engine.kept.writes.emplace_back();
  on.station.notices.lastError = "12:00 ERR";
  Tell(2000, 0.5F);
  EXPECT_EQ(Figure(HealthLine::kDisk).text, "50 GB");
  EXPECT_EQ(Figure(HealthLine::kBase).text, "1 waiting");
  EXPECT_EQ(Figure(HealthLine::kBase).severity, HealthSeverity::kNote);
  EXPECT_EQ(Figure(HealthLine::kError).severity, HealthSeverity::kNote);
  EXPECT_EQ(Figure(HealthLine::kError).sinceMs, 2000);
}

TEST_F(ScreenFigures, NoErrorIsAsOldAsTheScreen) {
  Tell(7'000'000);  // the machine has run for two hours
  EXPECT_EQ(Figure(HealthLine::kError).sinceMs, 7'000'000);
}

TEST_F(ScreenFigures, AgesAreShort) {
  EXPECT_EQ(AgeText(59999, 0), "59 s");
  EXPECT_EQ(AgeText(60000, 0), "1 min");
  EXPECT_EQ(AgeText(7200000, 0), "2 h");
  EXPECT_EQ(AgeText(172800000, 1), "2 d");
  EXPECT_EQ(AgeText(172800000, 0), "2 j");
}

TEST_F(ScreenFigures, TheForecastBeginsWithTheListAsItStandsAtTheNextTransition) {
  on.Sql("INSERT INTO DiscothequeJingle (FILENAME, DUREE, LIBELLE) VALUES ('/j.wav', 5000, 'J')");
  const int32_t title = on.AddCard({});
  on.AppendCard(title);
  OnAirElement jingle{};
  jingle.title = "J";
  jingle.file = "/j.wav";
  jingle.code = -1;
  on.Append(jingle);
  on.station.engine.IsRunning = true;
  on.station.engine.RemainingMs = 65000;
  on.station.engine.MixPointMs = 5000;
  const ForecastWish wish = WishOfNow(on.station, 6);
  EXPECT_EQ(wish.from, ParseMoment("2026-11-21 12:01:00"));
  EXPECT_EQ(wish.hours, 6);
  EXPECT_EQ(wish.script,
            "+0 insert music " + std::to_string(title) + "\n+0 insert jingle 1\n+0 start\n");
}

TEST_F(ScreenFigures, TheOverlayButtonPlaysTheChosenRowOverTheAir) {
  BrowseRow row;
  row.cells[3] = on.MakeSound("over.wav", 4000);
  on.station.browse.ListRech.list = BrowseList::kJingles;
  on.station.browse.ListRech.rows = {row};
  on.AppendCard(on.AddCard({}));
  on.Start();
  on.RunUntil(2000);
  OnAir::BtnSurImpression_Click(on.station, 0);
  ASSERT_EQ(on.Events("overlay").size(), 1u) << on.Describe();
  EXPECT_EQ(on.Events("overlay")[0]["reason"], "key");
  OnAir::BtnSurImpression_Click(on.station, 7);  // no such row
  EXPECT_EQ(on.Events("overlay").size(), 1u);
}

// The key's sound is on air from the tick of 5000 ms for 2 s.
TEST_F(ScreenFigures, TheOverlayButtonNamesTheKeyWhileItsSoundIsHeard) {
  on.Sql("INSERT INTO DiscothequeVirgule (FILENAME, DUREE, LIBELLE, TOUCHE) VALUES ('" +
         on.MakeSound("key.wav", 2000) + "', 2000, 'KEY', 3)");
  LoadHotKeys(on.station);
  on.AppendCard(on.AddCard({}));
  on.Start();
  on.At(4950, [&] { on.keyboard.Press(99); });
  on.At(5050, [&] { on.keyboard.Release(99); });
  on.RunUntil(6900);
  EXPECT_EQ(PictureOf(on.station).BtnSurImpressionCaption, "Touche 3");
  on.RunUntil(7500);
  EXPECT_EQ(PictureOf(on.station).BtnSurImpressionCaption, "Sur Impression");
}

TEST_F(ScreenFigures, TheSaverSaysItsTextOrWhatIsOnAir) {
  on.station.notices.titleOnAir = "ABBA  WATERLOO";
  on.station.engine.HotKeysArmed = true;
  OpenScreenSaver(on.station);
  EXPECT_TRUE(on.station.saver.open);
  EXPECT_EQ(SaverText(on.station), "ABBA  WATERLOO");
  CloseScreenSaver(on.station);
  EXPECT_FALSE(on.station.saver.open);
  on.Set("TextVeille", "'RADIO'");
  on.station.base.CheckCnf();
  OpenScreenSaver(on.station);
  EXPECT_EQ(SaverText(on.station), "RADIO");
}

}  // namespace
}  // namespace zemo::test
