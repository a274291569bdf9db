// The pictures beside the report's list.
#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QToolTip>

#include "reports/screens/tests/ReportWindowFixture.h"
#include "ui/Theme.h"

namespace zemo::test {
namespace {

class ReportPicturesOnScreen : public ReportScreenTest {
 protected:
  HourPicture& Hours() { return static_cast<HourPicture&>(*Find("VueHeures")); }
  TitlePicture& Title() { return static_cast<TitlePicture&>(*Find("VueRotation")); }
  SharePicture& Shares() { return static_cast<SharePicture&>(*Find("VueParts")); }
  static QColor At(QWidget& picture, const QPoint& point) {
    return picture.grab().toImage().pixelColor(point);
  }
};

TEST_F(ReportPicturesOnScreen, AnHoursPlaysOfAGenreAreACellInTheColourThatItHasOnAir) {
  AddSongs();
  OpenWindow();
  ASSERT_EQ(Hours().Rows(), 3);
  EXPECT_EQ(Hours().NameOf(0), "ROCK");
  EXPECT_EQ(Hours().Plays(0, 10), 1U);
  EXPECT_EQ(Hours().Plays(0, 11), 1U);
  EXPECT_EQ(Hours().NameOf(1), "POP");
  EXPECT_EQ(Hours().NameOf(2), "PUB");
  EXPECT_EQ(At(Hours(), Hours().Cell(0, 10).center()), Theme::kMusic);
  EXPECT_EQ(At(Hours(), Hours().Cell(2, 10).center()), Theme::kSpot);
  EXPECT_EQ(At(Hours(), Hours().Cell(2, 11).center()), QColor(0x1f, 0x25, 0x2d));
}

TEST_F(ReportPicturesOnScreen, GenresBeyondTheRoomShareTheLastRow) {
  for (int genre = 0; genre < 60; ++genre) Add({.genre = "G" + std::to_string(genre)});
  OpenWindow();
  const int rows = Hours().Rows();
  ASSERT_LT(rows, 60);
  EXPECT_EQ(Hours().NameOf(rows - 1), QStringLiteral("autres (%1)").arg(61 - rows));
  EXPECT_EQ(Hours().Plays(rows - 1, 0), static_cast<uint32_t>(61 - rows));
}

TEST_F(ReportPicturesOnScreen, TheTitleOfTheSelectedRowHasItsBars) {
  AddSongs();
  OpenWindow();
  EXPECT_TRUE(Title().Bars().empty());
  ClickRow("ListRap", 1);
  const auto bars = Title().Bars();
  ASSERT_EQ(bars.size(), 2U);  // 10 h and 11 h
  EXPECT_EQ(bars[0].plays, 1U);
  EXPECT_EQ(bars[1].plays, 1U);
  EXPECT_EQ(At(Title(), bars[0].place.center()), Theme::kIntro);
  ClickRow("ListRap", 2);  // a spot
  EXPECT_TRUE(Title().Bars().empty());
}

TEST_F(ReportPicturesOnScreen, ARotationSelectsItsTitlesLastRowInTheReportToo) {
  AddSongs();
  OpenWindow();
  Click("BtnStats");
  ClickRow("ListStat", 1);
  EXPECT_EQ(Title().Bars().size(), 2U);
  ASSERT_TRUE(Editor().ListRap.chosen);
  EXPECT_EQ(Editor().ListRap.Cell(*Editor().ListRap.chosen, RapCol::kTime), "11:12:00");
}

TEST_F(ReportPicturesOnScreen, TheSelectedRowStaysSelectedInAnotherOrder) {
  AddSongs();
  OpenWindow();
  ClickRow("ListRap", 0);
  ClickHead("ListRap", RapCol::kArtist);
  EXPECT_EQ(Find<QTableView>("ListRap")->currentIndex().row(), 3);
  EXPECT_EQ(Editor().ListRap.chosen, 3U);
  Click("VoirRapport");
  EXPECT_FALSE(Editor().ListRap.chosen);
  EXPECT_TRUE(Title().Bars().empty());
}

TEST_F(ReportPicturesOnScreen, ManyStepsShareBarsOfWhichNoneIsLost) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 FROM n WHERE i < 1000) SELECT 'One', 40000 + i * 7 FROM n");
  OpenWindow();
  Click("CmdCalend");
  PickInCalendar(2009, 1, 1);
  Click("BtnDateFin");
  PickInCalendar(2030, 1, 1);
  ASSERT_EQ(Text("LblCompteur"), "1000 Fiches");
  ClickRow("ListRap", 0);
  uint32_t plays = 0;
  for (const TitlePicture::Bar& bar : Title().Bars()) {
    plays += bar.plays;
    EXPECT_TRUE(Title().rect().contains(bar.place));
  }
  EXPECT_EQ(plays, 1000U);
  EXPECT_LT(Title().Bars().size(), 300U);
}

TEST_F(ReportPicturesOnScreen, TheVarietiesShareTheSpanAndTheLastBarHasAllOthers) {
  for (int play = 0; play < 4; ++play) Add({.variety = "A"});
  for (int play = 0; play < 3; ++play) Add({.variety = "B"});
  for (int play = 0; play < 2; ++play) Add({.variety = "C"});
  for (const char* variety : {"D", "E", ""}) Add({.variety = variety});
  OpenWindow();
  EXPECT_EQ(Shares().Bars(),
            (std::vector<NamedPlays>{{"A", 4}, {"B", 3}, {"C", 2}, {"autres (2)", 2}}));
  const int whole = Shares().width() - 16;
  EXPECT_EQ(Shares().Bar(0).width(), whole * 4 / 11);
  EXPECT_EQ(Shares().Bar(3).width(), whole * 2 / 11);
}

// 12.5 and 87.5 per cent.
TEST_F(ReportPicturesOnScreen, AShareOfExactlyOneHalfGoesToTheEvenNumberAsInTheStatistics) {
  for (int play = 0; play < 7; ++play) Add({.variety = "A"});
  Add({.variety = "B"});
  OpenWindow();
  const auto tipOf = [&](size_t bar) {
    const QPoint place = Shares().Bar(bar).center();
    QHelpEvent asked(QEvent::ToolTip, place, Shares().mapToGlobal(place));
    QApplication::sendEvent(&Shares(), &asked);
    return QToolTip::text().toStdString();
  };
  EXPECT_EQ(tipOf(0), "A  7 (88 %)");
  EXPECT_EQ(tipOf(1), "B  1 (12 %)");
}

TEST_F(ReportPicturesOnScreen, InANarrowWindowTheyStandInPlaceOfTheLists) {
  AddSongs();
  OpenWindow(1024, 768);
  EXPECT_FALSE(Hours().isVisible());
  EXPECT_TRUE(Find("ListRap")->isVisible());
  Click("BtnVues");
  EXPECT_TRUE(Hours().isVisible());
  EXPECT_FALSE(Find("ListRap")->isVisible());
  EXPECT_EQ(Hours().Rows(), 3);
  Click("BtnVues");
  EXPECT_FALSE(Hours().isVisible());
  window->resize(1280, 800);
  QApplication::processEvents();
  EXPECT_TRUE(Hours().isVisible());
  EXPECT_FALSE(Find("BtnVues")->isVisible());
}

// Two slices of counting, in whose pause another span is chosen.
TEST_F(ReportPicturesOnScreen, WhatIsListedWhileTheFiguresAreCountedIsWhatTheyShow) {
  AddMany(250000);
  Add({.title = "alone", .genre = "POP", .day = kToday + 5});
  OpenWindow();
  Click("CmdCalend");
  PickInCalendar(2026, 11, 26);
  for (int turn = 0; turn < 10; ++turn) QApplication::processEvents();
  EXPECT_EQ(Hours().Rows(), 1);
  EXPECT_EQ(Hours().NameOf(0), "POP");
}

}  // namespace
}  // namespace zemo::test
