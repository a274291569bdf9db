// Crosses by mouse, copies of grids, and the turned grid.
#include "traffic/CampaignMarking.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

// A new weekly campaign of the moments 07:00, 07:30, 08:00 and 08:30.
class Marking : public testing::Test {
 protected:
  Marking() {
    Campaigns::BtnNew_Click(s.station, s.editor);
    s.editor.HDepPub = "07";
    s.editor.HFinPub = "08";
    s.editor.DecoupagePub = {"00", "30"};
    Campaigns::LblDepartPub_RightClick(s.station, s.editor);
  }
  void Mouse(MouseButton button, const char* key, int row, int column) {
    Campaigns::GPub_MouseUp(s.station, s.editor, button, key == std::string("shift"),
                            key == std::string("control"), {row, column});
  }
  std::string Row(int row) const { return RowText(s.editor.GPub, row); }

  CampaignStation s;
};

TEST_F(Marking, AClickTurnsOneCellToAndFro) {
  Mouse(MouseButton::kLeft, "", 4, 2);
  EXPECT_EQ(Row(4), " X     ");
  EXPECT_EQ(s.editor.LblTotalMsg, "1");
  EXPECT_EQ(s.editor.GPub.Cell(0, 2), "1");
  Mouse(MouseButton::kRight, "", 4, 2);
  EXPECT_EQ(Row(4), "      ");
  EXPECT_EQ(s.editor.LblTotalMsg, "0");
  EXPECT_EQ(s.editor.GPub.Cell(0, 2), "0");
}

TEST_F(Marking, TheHeldMousePaintsTheCellsItPasses) {
  Campaigns::GPub_MouseMove(s.station, s.editor, {{3, 1}, {3, 2}, {4, 2}}, true);
  Campaigns::GPub_MouseMove(s.station, s.editor, {{2, 2}, {4, 0}, {7, 2}}, true);
  EXPECT_EQ(Row(0), "1 2     ");
  EXPECT_EQ(Row(3), "X X     ");
  EXPECT_EQ(Row(4), " X     ");
  EXPECT_EQ(s.editor.LblTotalMsg, "3");
  Campaigns::GPub_MouseMove(s.station, s.editor, {{3, 1}}, false);
  EXPECT_EQ(Row(3), " X     ");
  EXPECT_EQ(s.editor.LblTotalMsg, "2");
  s.editor.BtnAjouterEnabled = false;
  Campaigns::GPub_MouseMove(s.station, s.editor, {{3, 1}}, true);
  EXPECT_EQ(Row(3), " X     ");
  EXPECT_TRUE(s.Events("message").empty());
}

TEST_F(Marking, ShiftMarksAndEmptiesTheRow) {
  Mouse(MouseButton::kLeft, "shift", 3, 5);
  EXPECT_EQ(Row(3), "X X X X X X X");
  EXPECT_EQ(Row(4), "      ");
  EXPECT_EQ(s.editor.LblTotalMsg, "7");
  EXPECT_EQ(Row(0), "    1  ");  // of the cursor's column only
  Mouse(MouseButton::kRight, "shift", 3, 1);
  EXPECT_EQ(Row(3), "      ");
  EXPECT_EQ(s.editor.LblTotalMsg, "0");
}

TEST_F(Marking, ControlMarksAndEmptiesTheColumn) {
  Mouse(MouseButton::kLeft, "control", 1, 7);
  for (int row = 3; row <= 6; ++row) EXPECT_EQ(Row(row), "      X");
  EXPECT_EQ(Row(2), "L M M J V S D");
  EXPECT_EQ(s.editor.LblTotalMsg, "4");
  EXPECT_EQ(s.editor.GPub.Cell(0, 7), "4");
  Mouse(MouseButton::kRight, "control", 5, 7);
  EXPECT_EQ(s.editor.LblTotalMsg, "0");
}

TEST_F(Marking, OutsideOfMomentsAndDaysChangesNothing) {
  for (const auto& [row, column] : {std::pair(0, 1), {2, 3}, {3, 0}, {7, 1}, {3, 8}, {-1, -1}}) {
    Mouse(MouseButton::kLeft, "", row, column);
    EXPECT_EQ(s.editor.LblTotalMsg, "0") << row << " " << column;
  }
  Mouse(MouseButton::kLeft, "shift", 2, 1);
  Mouse(MouseButton::kLeft, "control", 3, 0);
  EXPECT_EQ(s.editor.LblTotalMsg, "0");
  EXPECT_EQ(Row(2), "L M M J V S D");
  EXPECT_EQ(s.editor.GPub.Cell(3, 0), "07:00");
}

TEST_F(Marking, TheCountTakesTheMonthsPlaceUntilTheGridIsBuiltAgain) {
  Campaigns::PickDay(s.station, s.editor, 1, "21/11/2026");
  Campaigns::PickDay(s.station, s.editor, 2, "22/11/2026");
  Mouse(MouseButton::kLeft, "", 3, 1);
  EXPECT_EQ(Row(0), "1 11");
  BuildDatedGrid(s.station, s.editor);
  EXPECT_EQ(Row(0), "11 11");
}

TEST_F(Marking, WithoutAnOpenCampaignIsRefusedInTheStationsLanguage) {
  const char* const words[] = {
      "Vous devez d'abord initialiser la grille\r\navec le bouton nouvelle",
      "In first you must init grid\r\nwith New button",
      "Em primeiro lugar, clicar\r\nem Novo para inicializar a tabela",
      "In first you must init grid\r\nwith New button"};
  s.editor.BtnAjouterEnabled = false;
  for (int langue = 0; langue < 4; ++langue) {
    s.Set("Langue", std::to_string(langue));
    s.station.base.CheckCnf();
    Mouse(MouseButton::kLeft, "", 3, 1);
    EXPECT_EQ(s.LastMessage(), words[langue]);
    EXPECT_EQ(s.Events("message").back()["title"], "Alerte");
    EXPECT_EQ(Row(3), "      ");
  }
  s.editor.BtnReplacerEnabled = true;
  Mouse(MouseButton::kLeft, "", 3, 1);
  EXPECT_EQ(Row(3), "X      ");
}

TEST_F(Marking, IsDeafWhileARecordIsLoadedFromTheOverview) {
  s.editor.fromOverview = true;
  s.editor.BtnAjouterEnabled = false;
  Mouse(MouseButton::kLeft, "", 3, 1);
  EXPECT_EQ(Row(3), "      ");
  EXPECT_TRUE(s.Events("message").empty());
}

TEST_F(Marking, ACopyIsPutOnAnotherGridAsFarAsThatGoes) {
  Mouse(MouseButton::kLeft, "shift", 3, 1);
  Mouse(MouseButton::kLeft, "shift", 6, 1);
  Campaigns::BtnCopyGrille_Click(s.editor);
  EXPECT_EQ(s.editor.GPubReference.RowCount(), 7);
  EXPECT_EQ(GridColumns(s.editor.GPubReference), 8);
  // Two days, two moments.
  s.editor.HFinPub = "07";
  Campaigns::PickDay(s.station, s.editor, 1, "21/11/2026");
  Campaigns::PickDay(s.station, s.editor, 2, "22/11/2026");
  Mouse(MouseButton::kLeft, "", 4, 1);
  Campaigns::BtnCollerGrille_Click(s.editor);
  EXPECT_EQ(Row(0), "1 11");  // the count of the click before
  EXPECT_EQ(Row(1), "21 22");
  EXPECT_EQ(Row(3), "X X");
  EXPECT_EQ(Row(4), " ");
  EXPECT_EQ(s.editor.GPub.Cell(3, 0), "07:00");
  EXPECT_EQ(s.editor.LblTotalMsg, "2");
}

TEST_F(Marking, TurningTakesTheCrossesOneRowDownAndTheLastRowToTheFirst) {
  Mouse(MouseButton::kLeft, "", 3, 1);
  Mouse(MouseButton::kLeft, "", 6, 7);
  s.editor.LblTotalMsg = "as it was";
  Campaigns::BtnDecalY_Click(s.editor);
  EXPECT_EQ(s.editor.LblTotalMsg, "2");
  EXPECT_EQ(Row(3), "      X");
  EXPECT_EQ(Row(4), "X      ");
  EXPECT_EQ(Row(6), "      ");
  EXPECT_EQ(MomentsText(s.editor.GPub), "07:00 07:30 08:00 08:30");
  for (int turn = 0; turn < 3; ++turn) Campaigns::BtnDecalY_Click(s.editor);
  EXPECT_EQ(Row(3), "X      ");
  EXPECT_EQ(Row(6), "      X");
}

TEST_F(Marking, TurningAGridOfTwoMomentsChangesThem) {
  s.editor.HFinPub = "07";
  Campaigns::CmdInitGrille_Click(s.station, s.editor);
  ASSERT_EQ(MomentsText(s.editor.GPub), "07:00 07:30");
  Mouse(MouseButton::kLeft, "", 3, 1);
  Campaigns::BtnDecalY_Click(s.editor);
  EXPECT_EQ(Row(3), "      ");
  EXPECT_EQ(Row(4), "X      ");
}

TEST_F(Marking, TurningAGridOfOneMomentOrNoneLeavesIt) {
  s.editor.HFinPub = "07";
  s.editor.DecoupagePub = {"00"};
  BuildWeeklyGrid(s.station, s.editor);
  Mouse(MouseButton::kLeft, "", 3, 1);
  Campaigns::BtnDecalY_Click(s.editor);
  EXPECT_EQ(Row(3), "X      ");
  s.editor.GPub.Clear();
  Campaigns::BtnDecalY_Click(s.editor);
  Campaigns::BtnCollerGrille_Click(s.editor);
  EXPECT_EQ(s.editor.GPub.RowCount(), 0);
}

}  // namespace
}  // namespace zemo::test
