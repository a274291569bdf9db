// The grid of crosses: painted by the mouse and by the keys, drawn as far as it is seen.
#include <QImage>
#include <QScrollBar>

#include "traffic/screens/tests/CampaignWindowFixture.h"
#include "ui/Theme.h"

namespace zemo::test {
namespace {

// The weekly Bakery is shown; its moments stand in the rows 3 to 6, its days in the columns 1 to 7.
class GridView : public CampaignScreenTest {
 protected:
  void SetUp() override {
    CampaignScreenTest::SetUp();
    AddCampaigns();
    Open();
    Click("BtnDebut");
  }
};

TEST_F(GridView, AClickOfEitherButtonTurnsACellToAndFro) {
  ClickCell(4, 2);
  EXPECT_EQ(Row(4), " X     ");
  EXPECT_EQ(Row(0), " 1     ");
  EXPECT_EQ(Text("LblTotalMsg"), "1");
  ClickCell(4, 2, Qt::RightButton);
  EXPECT_EQ(Row(4), "      ");
  ClickCell(4, 2, Qt::RightButton);
  EXPECT_EQ(Row(4), " X     ");
}

TEST_F(GridView, ADoubleClickIsTwoClicks) {
  QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::NoModifier, At(3, 1));
  QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, Qt::NoModifier, At(3, 1));
  // QTest's double click is press, release, double press, release: three in all.
  EXPECT_EQ(Row(3), "X      ");
}

TEST_F(GridView, ShiftIsTheRowAndControlTheColumnAlsoOnAHead) {
  ClickCell(3, 5, Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(Row(3), "X X X X X X X");
  ClickCell(3, 5, Qt::RightButton, Qt::ShiftModifier);
  EXPECT_EQ(Row(3), "      ");
  const QPoint head(At(3, 6).x(), 3);
  QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::ControlModifier, head);
  for (int row = 3; row <= 6; ++row) EXPECT_EQ(Row(row), "     X ");
  EXPECT_EQ(Row(0), "    0 4 ");
}

TEST_F(GridView, DraggingPaintsWhatItPassesAsTheFirstCellBecame) {
  Drag({At(3, 1), At(3, 4), At(5, 4)});
  EXPECT_EQ(Row(3), "X X X X   ");
  EXPECT_EQ(Row(4), "   X   ");
  EXPECT_EQ(Row(5), "   X   ");
  EXPECT_EQ(Text("LblTotalMsg"), "6");
  Drag({At(3, 2), At(3, 7)}, Qt::RightButton);  // the first was a cross
  EXPECT_EQ(Row(3), "X      ");
  Drag({At(6, 6), At(6, 6) + QPoint(2, 2)});  // within the cell it is a click
  EXPECT_EQ(Row(6), "     X ");
}

TEST_F(GridView, TheKeysMoveTheFrameAndMark) {
  Grid().setFocus();
  Key(Qt::Key_Home);
  Key(Qt::Key_Right);
  Key(Qt::Key_Down);
  Key(Qt::Key_Space);
  EXPECT_EQ(Row(4), " X     ");
  Key(Qt::Key_Delete);
  EXPECT_EQ(Row(4), "      ");
  Key(Qt::Key_Delete);  // never marks
  EXPECT_EQ(Row(4), "      ");
  Key(Qt::Key_Space, Qt::ShiftModifier);
  EXPECT_EQ(Row(4), "X X X X X X X");
  Key(Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(Row(4), "X  X X X X X");
  Key(Qt::Key_End);
  Key(Qt::Key_PageDown);
  EXPECT_EQ(Grid().Frame().row, 6);
  EXPECT_EQ(Grid().Frame().column, 7);
}

TEST_F(GridView, AMarkBehindTheOverviewIsToldAndChangesNothing) {
  Click("BtnRecherhe");
  ClickCell(3, 1);
  EXPECT_EQ(on.LastMessage(),
            "Vous devez d'abord initialiser la grille\r\navec le bouton nouvelle");
  Drag({At(3, 1), At(3, 3)});
  EXPECT_EQ(window->Editor().LblTotalMsg, "0");
}

TEST_F(GridView, ACrossIsASpotInItsColourOrNewsInTheirs) {
  ClickCell(3, 1);
  const auto colour = [&] { return Grid().viewport()->grab().toImage().pixelColor(At(3, 1)); };
  EXPECT_EQ(colour(), Theme::kSpot);
  Click("OptPub_1");
  EXPECT_EQ(colour(), Theme::kNews);
  ClickCell(3, 1);
  EXPECT_NE(colour(), Theme::kNews);
}

// Saturday, the column 6, is the 21st. Each of the others plays a quarter of an hour, from 07:30 to
// the next break at 08:00.
TEST_F(GridView, HowFullABreakIsStandsAlongTheFootOfItsCell) {
  const Campaign other{.from = "21/11/2026",
                       .to = "21/11/2026",
                       .marks = {"00", "30"},
                       .crosses = {"07:30", "08:00"},
                       .lengthMs = 900000};
  AddCampaign(on, other);
  Open();
  Click("BtnDebut");
  ReadLoads();
  const QRect cell = Grid().Cell({4, 6});
  const QPoint begin(cell.left() + 4, cell.bottom() - 1), end(cell.right() - 3, cell.bottom() - 1);
  EXPECT_EQ(ColourAt(begin), Theme::kMusic);
  EXPECT_EQ(ColourAt(end), Theme::kLine);
  EXPECT_EQ(TipAt(cell.center()), "S  07:30\nAutres campagnes : 1, en tout 15:00 sur 30 min");
  EXPECT_EQ(TipAt(At(3, 6)),
            "S  07:00\nAucune autre campagne, 30 min jusqu'au prochain écran ou top");
  EXPECT_NE(ColourAt(Grid().Cell({3, 6}).bottomLeft() + QPoint(4, -1)), Theme::kMusic);
  AddCampaign(on, other);
  Open();
  Click("BtnDebut");
  ReadLoads();
  EXPECT_EQ(ColourAt(begin), Theme::kHeard);
  EXPECT_EQ(ColourAt(end), Theme::kHeard);
  ClickCell(4, 6);
  EXPECT_EQ(ColourAt(cell.center()), Theme::kSpot);
}

TEST_F(GridView, TheAdvertisersOtherCampaignsAreRingsAroundTheCrosses) {
  AddCampaign(on, {.advertiser = "BAKERY",
                   .marks = {"00", "15", "30"},
                   .crosses = {"07:15", "07:30"},
                   .column = 21});
  Open();
  Click("BtnDebut");
  ReadLoads();
  const QPoint ring = Grid().Cell({4, 6}).topLeft() + QPoint(3, 5);
  EXPECT_EQ(ColourAt(ring), Theme::kVoiceTrack);
  EXPECT_NE(ColourAt(At(4, 6)), Theme::kVoiceTrack);
  EXPECT_NE(ColourAt(Grid().Cell({4, 5}).topLeft() + QPoint(3, 5)), Theme::kVoiceTrack);
  ClickCell(4, 6);
  EXPECT_EQ(ColourAt(ring), Theme::kVoiceTrack);
  EXPECT_EQ(ColourAt(At(4, 6)), Theme::kSpot);
  EXPECT_EQ(TipAt(At(4, 6)),
            "S  07:30\nAutres campagnes : 1, en tout 00:30 sur 990 min\n"
            "Dont l'annonceur lui-même : 1");
  EXPECT_EQ(TipAt(QPoint(At(4, 6).x(), 20)), "S\nAutres passages de l'annonceur : 2");
  EXPECT_EQ(TipAt(QPoint(At(4, 5).x(), 20)), "V");
  Type("ChAnnonceur", "Cinema");  // it has none
  EXPECT_TRUE(QTest::qWaitFor([&] { return ColourAt(ring) != Theme::kVoiceTrack; }, 10000));
}

TEST_F(GridView, ShiftWithTheArrowsPaintsWhatTheyPassAsTheCellThatTheyLeave) {
  Grid().setFocus();
  Key(Qt::Key_Home);
  Key(Qt::Key_Space);
  Key(Qt::Key_Right, Qt::ShiftModifier);
  Key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Row(3), "X X     ");
  EXPECT_EQ(Row(4), " X     ");
  Key(Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(Row(4), " X X X X X X");
  EXPECT_EQ(Text("LblTotalMsg"), "8");
  Key(Qt::Key_Delete);
  Key(Qt::Key_Home, Qt::ShiftModifier);  // the cell was empty
  EXPECT_EQ(Row(4), "      ");
  Key(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(Grid().Frame().row, 6);
  EXPECT_EQ(Grid().Frame().column, 1);
  Key(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(Grid().Frame().row, 3);
}

TEST_F(GridView, ADaysCountInTheMonthsPlaceHasTheColourOfCounts) {
  Click("BtnFin");
  const auto inkOf = [&](int column) {  // greener than red
    const QRect cell = Grid().Cell({3, column});
    const QRect month(cell.left() + 1, 1, cell.width() - 2, 15);
    const QImage head = Grid().viewport()->grab(month).toImage();
    int ink = 0;
    for (int y = 0; y < head.height(); ++y)
      for (int x = 0; x < head.width(); ++x)
        ink += head.pixelColor(x, y).green() > head.pixelColor(x, y).red() + 40 ? 1 : 0;
    return ink;
  };
  EXPECT_EQ(inkOf(2), 0);
  ClickCell(3, 2);
  EXPECT_GT(inkOf(2), 0);
  EXPECT_EQ(inkOf(3), 0);
}

TEST_F(GridView, AYearOfAWholeDayScrollsToTheFrame) {
  on.Sql(
      "UPDATE GrillePub SET CAMPAGNEDEPART = '01/01/2026', CAMPAGNEFIN = '01/01/2028', HDEPART "
      "= '00', HFIN = '23', DECOUPEH1 = '00', DECOUPEH2 = '07', DECOUPEH3 = '15', DECOUPEH4 = "
      "'22', DECOUPEH5 = '30', DECOUPEH6 = '37', DECOUPEH7 = '45', DECOUPEH8 = '52' WHERE CODE "
      "= 2");
  Click("BtnFin");
  EXPECT_EQ(window->Editor().GPub.RowCount(), 3 + 192);
  EXPECT_EQ(GridColumns(window->Editor().GPub), 1 + 366);
  Grid().setFocus();
  Key(Qt::Key_End);
  for (int page = 0; page < 20; ++page) Key(Qt::Key_PageDown);
  EXPECT_EQ(Grid().Frame().row, 194);
  EXPECT_EQ(Grid().Frame().column, 366);
  EXPECT_EQ(Grid().horizontalScrollBar()->value(), Grid().horizontalScrollBar()->maximum());
  EXPECT_EQ(Grid().verticalScrollBar()->value(), Grid().verticalScrollBar()->maximum());
  EXPECT_TRUE(Grid().viewport()->rect().contains(Grid().Cell(Grid().Frame())));
  ClickCell(194, 366);
  EXPECT_EQ(window->Editor().GPub.Cell(194, 366), "X");
  const QImage whole = Grid().grab().toImage();  // the corner between the scroll bars, too
  EXPECT_EQ(whole.pixelColor(Grid().width() - 5, Grid().height() - 5), Theme::kPanel);
  KeepPicture(*window, "campaigns-year");
}

// Zoo airs from Saturday to Wednesday; French has one letter for Tuesday and Wednesday.
TEST_F(GridView, TheWeekdaysStandInTheOperatorsLanguage) {
  const auto letterAt = [this](int column) {
    const int head = At(3, column).y() - Grid().Cell({3, column}).height() / 2;
    const QRect day = Grid().Cell({3, column});
    return Grid().viewport()->grab(QRect(day.left() + 4, head / 2, day.width() - 8, head / 4));
  };
  const auto tips = [this] {
    std::string all;
    for (int column = 1; column <= 5; ++column)
      all += TipAt({At(3, column).x(), 3}).substr(0, 2) + TipAt(At(3, column)).substr(0, 2);
    return all;
  };
  Click("BtnFin");
  EXPECT_EQ(tips(), "S S D D L L M M M M ");
  EXPECT_EQ(letterAt(4).toImage(), letterAt(5).toImage());
  on.Set("Langue", "1");
  Open();
  EXPECT_EQ(tips(), "S S S S M M T T W W ");
  EXPECT_NE(letterAt(4).toImage(), letterAt(5).toImage());
  Click("BtnDebut");  // weekly, from Monday on
  EXPECT_EQ(TipAt({At(3, 4).x(), 3}), "T");
  EXPECT_EQ(Row(2), "L M M J V S D");
}

}  // namespace
}  // namespace zemo::test
