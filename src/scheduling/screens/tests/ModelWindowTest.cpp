// What an operator does in the window of the models, with the mouse and the keys.
#include <QApplication>
#include <QPushButton>

#include "scheduling/screens/tests/ModelWindowFixture.h"

namespace zemo::test {
namespace {

TEST_F(ModelWindowTest, OpensOnTodayAndStaysShutWhileTheMenusAreLocked) {
  s.station.engine.ScreenLocked = true;
  desk->Open();
  EXPECT_FALSE(Window().isVisible());
  s.station.engine.ScreenLocked = false;
  s.Model(kSaturday, "POP", 40);
  Open();
  EXPECT_TRUE(Window().isVisible());
  EXPECT_EQ(Window().windowTitle(), "Model en %");
  EXPECT_TRUE(Find<QPushButton>("JourSemaine_6")->isChecked());
  EXPECT_EQ(Cell("Models", 1, 0), "POP");
  EXPECT_EQ(Cell("Models", 2, 1), "40");
  EXPECT_EQ(Cell("GVariete", 1, 1), "NATIONAL");
  EXPECT_EQ(Row("Stats", 0), (Texts{"POP", "0002", ""}));
  EXPECT_FALSE(Find("ModelSquelette")->isVisible());
}

TEST_F(ModelWindowTest, AWeekdaysModelIsDrawnByMouseAndSaved) {
  Open();
  ClickCell("Models", 1, 0);  // the row of totals
  Choose("MasterGenre", "ROCK");
  EXPECT_EQ(Cell("Models", 1, 0), "ROCK");
  ClickCell("Models", 1, 9);
  Choose("MasterPourCent", "35");
  EXPECT_EQ(Cell("Models", 2, 9), "35");
  EXPECT_TRUE(Find("LblNotSaved")->isVisible());
  Click("BtnSave");
  EXPECT_FALSE(Find("LblNotSaved")->isVisible());
  EXPECT_EQ(s.SqlText("SELECT TRANCHE08 FROM Models WHERE JOUR = 6 AND GENRE = 'ROCK'"), "35");
}

TEST_F(ModelWindowTest, ItIsWorkedWithTheKeysAlone) {
  s.Model(kSaturday, "POP", 40);
  Open();
  QWidget* grid = Find("Models");
  EXPECT_TRUE(grid->hasFocus());
  Key(grid, Qt::Key_Right);
  Key(grid, Qt::Key_Return);
  Choose("MasterPourCent", "15");
  EXPECT_EQ(Cell("Models", 1, 1), "15");
  Key(grid, Qt::Key_Insert);
  EXPECT_EQ(Cell("Models", 2, 0), "POP");
  Key(grid, Qt::Key_Left);
  Key(grid, Qt::Key_Space);
  Choose("MasterGenre", "JAZZ");
  EXPECT_EQ(Cell("Models", 1, 0), "JAZZ");
  Key(grid, Qt::Key_Down);
  Key(grid, Qt::Key_Delete);
  EXPECT_EQ(Cell("Models", 2, 0), "");
  QApplication::setActiveWindow(&Window());
  QTest::keyClick(grid, Qt::Key_S, Qt::ControlModifier);
  const auto savedGenre = [&] { return s.SqlText("SELECT GENRE FROM Models WHERE JOUR = 6"); };
  EXPECT_TRUE(QTest::qWaitFor([&] { return savedGenre() == "JAZZ"; }));
  EXPECT_TRUE(grid->hasFocus());
  QTest::keyClick(grid, Qt::Key_2, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Editor().JourSemaine == 2; }));
  EXPECT_TRUE(grid->hasFocus());  // and goes on with its keys
}

TEST_F(ModelWindowTest, AShareOfAVarietyIsStoredAtOnce) {
  Open();
  ClickCell("GVariete", 2, 0);
  Choose("MasterPourCent", "55");
  EXPECT_EQ(Cell("GVariete", 2, 0), "55");
  EXPECT_EQ(s.SqlText("SELECT POURCENT FROM Variete WHERE VARIETE = 'INTERNATIONAL'"), "55");
}

TEST_F(ModelWindowTest, TheSkeletonTakesGenresAndCountsThem) {
  s.SetCnf("Squelette", -1);
  s.Position(kSaturday, 0, "ROCK");
  Open();
  EXPECT_EQ(Window().windowTitle(), "Edit Squelette");
  ClickCell("ModelSquelette", 2, 0);  // behind the last position
  Choose("MasterGenre", "POP");
  ClickCell("ModelSquelette", 1, 3);
  Choose("MasterGenre", "POP");
  EXPECT_EQ(Row("Stats", 0), (Texts{"POP", "0002", "2"}));
  ClickCell("ModelSquelette", 1, 3);
  QApplication::activePopupWidget()->close();
  Key(Find("ModelSquelette"), Qt::Key_Delete);
  EXPECT_EQ(Row("Stats", 0), (Texts{"POP", "0002", "1"}));
  Click("BtnSave");
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM ModelSquelette WHERE JOUR = 6"), "2");
}

TEST_F(ModelWindowTest, ADayIsCopiedAndTheLastSavedOneComesBack) {
  s.Model(1, "POP", 40);
  Open();
  Click("BtnSave");
  for (QAction* day : Find<QPushButton>("MnuCopierJour")->menu()->actions())
    if (day->text() == "Lundi") day->trigger();
  QApplication::processEvents();
  EXPECT_EQ(Cell("Models", 1, 0), "POP");
  EXPECT_EQ(Editor().JourSemaine, kSaturday);
  Click("BtnImport");
  EXPECT_EQ(Cell("Models", 1, 0), "Total %");
}

TEST_F(ModelWindowTest, UnsavedChangesKeepTheDayAndTheWindowUntilTheyAreAnswered) {
  s.Model(kSaturday, "POP", 40);
  Open();
  ClickCell("Models", 1, 1);
  Choose("MasterPourCent", "15");
  Click("JourSemaine_1");
  EXPECT_EQ(Editor().JourSemaine, kSaturday);
  EXPECT_TRUE(Find<QPushButton>("JourSemaine_6")->isChecked());
  EXPECT_FALSE(Find<QPushButton>("JourSemaine_1")->isChecked());
  Window().close();
  QApplication::processEvents();
  EXPECT_TRUE(Window().isVisible());
  EXPECT_FALSE(desk->Leave());
  EXPECT_EQ(s.Events("message").size(), 3U);
  s.messages.AnswerNext(Answer::kYes);
  Window().close();
  QApplication::processEvents();
  EXPECT_FALSE(Window().isVisible());
  EXPECT_EQ(s.SqlText("SELECT TRANCHE00 FROM Models"), "15");
  EXPECT_TRUE(desk->Leave());
}

TEST_F(ModelWindowTest, AnotherOpeningSpeaksTheLanguageOfTheMoment) {
  Open();
  Window().close();
  QApplication::processEvents();
  s.SetCnf("Langue", 1);
  Open();
  EXPECT_EQ(Window().windowTitle(), "Model in %");
  EXPECT_EQ(Find<QPushButton>("BtnImport")->text(), "Get the last saved model");
  EXPECT_EQ(Find<QPushButton>("JourSemaine_4")->text(), "Thursday");
}

TEST_F(ModelWindowTest, ALanguageSetMeanwhileShowsInTheNextWindow) {
  Open();
  s.SetCnf("Langue", 1);
  Click("JourSemaine_2");
  EXPECT_EQ(Window().windowTitle(), "Model en %");
  EXPECT_EQ(Head("Models", 0), "Genres");
}

TEST_F(ModelWindowTest, InsertWorksWhereTheCursorStandsAfterADayWithFewerRows) {
  for (const char* genre : {"POP", "ROCK", "JAZZ"}) s.Model(kSaturday, genre, 30);
  s.Model(1, "POP", 40);
  Open();
  QWidget* grid = Find("Models");
  for (int row = 0; row < 3; ++row) Key(grid, Qt::Key_Down);  // the row of totals
  Click("JourSemaine_1");
  ASSERT_EQ(Cell("Models", 2, 0), "Total %");
  grid->setFocus();
  Key(grid, Qt::Key_Insert);
  EXPECT_EQ(Cell("Models", 2, 0), "");
  EXPECT_EQ(Cell("Models", 3, 0), "Total %");
  Click("JourSemaine_6");
}

TEST_F(ModelWindowTest, AnHoursHeadTellsTheHourAtLength) {
  Open();
  EXPECT_EQ(Head("Models", 1, Qt::ToolTipRole), "de 00h à 01h");
  EXPECT_EQ(Head("Models", 24, Qt::ToolTipRole), "de 23h à 24h");
  EXPECT_EQ(Head("Models", 0, Qt::ToolTipRole), "");
  EXPECT_EQ(Head("ModelSquelette", 9, Qt::ToolTipRole), "de 09h à 10h");
}

TEST_F(ModelWindowTest, TheWeekIsExportedToTheFileOfTheDialogue) {
  Open();
  Click("MnuExport");
  const std::string path = s.machineDir.Path() + "/week";
  bool stands = false;
  sheets.writing = [&] {
    const auto* open = Window().findChild<QFileDialog*>();
    stands = open && open->isVisible();
  };
  SaveIn(Window(), "FrmExportWeek", path);
  QApplication::processEvents();
  EXPECT_EQ(sheets.path, path + ".xlsx");
  EXPECT_FALSE(stands);
}

TEST_F(ModelWindowTest, TheSupplyOfTheSelectedHourStandsBesideAndACellWithoutTitlesStandsOut) {
  s.Model(kSaturday, "JAZZ", 30);
  s.Model(kSaturday, "ROCK", 70);
  Open();
  ClickCell("Models", 1, 10);
  QApplication::activePopupWidget()->close();
  EXPECT_EQ(Text("LblSupply"), "La discothèque à 09h");
  EXPECT_EQ(Row("Supply", 0), (Texts{"JAZZ", "30 %", "0", "0"}));
  EXPECT_EQ(Row("Supply", 1), (Texts{"ROCK", "70 %", "1", "5"}));
  EXPECT_EQ(Row("Supply", 2), (Texts{"POP", "", "2", "6"}));
  auto* grid = Find<ModelGridView>("Models");
  const QColor dry = grid->IndexOf({1, 10}).data(Qt::ForegroundRole).value<QColor>();
  EXPECT_NE(dry, grid->IndexOf({2, 10}).data(Qt::ForegroundRole).value<QColor>());
  EXPECT_EQ(grid->IndexOf({2, 10}).data(Qt::ToolTipRole).toString().toStdString(),
            "ROCK : 1 titres, 5 min");
}

TEST_F(ModelWindowTest, TheDayIsSimulatedWithTheUnsavedModelAndItsOutlookShown) {
  s.Model(kSaturday, "POP", 40);
  Open();
  ClickCell("Models", 1, 1);
  Choose("MasterPourCent", "15");
  Click("BtnForecast");
  EXPECT_EQ(Text("LblOutlook"), "Simulation en cours...");
  EXPECT_EQ(forecast.asked.from.day, 28);
  EXPECT_NE(forecast.asked.script.find("VALUES (6, 'POP', 15, 40"), std::string::npos);
  forecast.aired = {{0, 1, "A  One", 180000}, {1, 1, "A  One", 180000}, {2, 3, "C  Two", 240000}};
  forecast.state = DayForecast::State::kDone;
  ASSERT_TRUE(QTest::qWaitFor([&] { return Text("LblOutlook") == "3 titres passeraient"; }));
  EXPECT_EQ(Row("Outlook", 0)[1], "100 %");
  EXPECT_EQ(Row("Outlook", 0)[2], "60 %");
  EXPECT_EQ(Row("Outlook", 0)[3], "02-23h");
  EXPECT_EQ(Row("Outlook", 1), (Texts{"ROCK", "0 %", "40 %", ""}));
  EXPECT_EQ(Row("Repeats", 0), (Texts{"A  One", "2"}));
}

TEST_F(ModelWindowTest, ASimulationThatFailsSaysSo) {
  Open();
  Click("BtnForecast");
  forecast.state = DayForecast::State::kFailed;
  ASSERT_TRUE(QTest::qWaitFor([&] { return Text("LblOutlook") == "La simulation a échoué"; }));
  EXPECT_EQ(Find("LblOutlook")->toolTip(), "no room");
}

}  // namespace
}  // namespace zemo::test
