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
  KeepPicture(*window, "campaigns-year");
}

}  // namespace
}  // namespace zemo::test
