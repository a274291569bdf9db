// What the presenter does at the main screen: toolbar, on-air list, keys, menus, saver, leaving.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>

#include "engine/MainScreenPicture.h"
#include "engine/OperatorControls.h"
#include "engine/screens/IntroBar.h"
#include "engine/screens/SaverWindow.h"
#include "engine/screens/tests/ScreenFixture.h"
#include "station/PlanTimes.h"
#include "ui/LevelMeter.h"
#include "ui/ScreenDesktop.h"
#include "ui/WaveformView.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

TEST_F(Screen, StartAndStopButtonsDriveTheEngineAndTheLampSaysSo) {
  Open();
  AddTitles(6);
  Draw();
  EXPECT_EQ(Text("OnAirLamp"), "ARRÊT");
  EXPECT_EQ(Text("CmdStop"), "Stop");
  Click("Toolbar1_5");
  EXPECT_TRUE(on.station.engine.IsRunning);
  EXPECT_EQ(Text("OnAirLamp"), "ANTENNE");
  EXPECT_EQ(Text("CmdStop"), "Suivant");
  EXPECT_TRUE(Button("Toolbar1_5")->isChecked());
  Run(3000);
  EXPECT_EQ(Text("LblArtiste"), "ARTIST 1  TITLE 1");
  Click("Toolbar1_6");
  EXPECT_FALSE(on.station.engine.IsRunning);
  EXPECT_EQ(Text("OnAirLamp"), "FIN...");  // what is on air plays to its end
  EXPECT_EQ(Text("CmdStop"), "Stop");
}

TEST_F(Screen, ShowsTimeRemainingNextAndPositionOfTheElement) {
  Open();
  AddTitles(3);
  on.station.PL.Row(1).exitMs = 0;
  Click("Toolbar1_5");
  Run(60000);
  EXPECT_EQ(Text("hh") + Text("mn") + Text("ss"), "120100");
  // Started at the first tick, 100 ms in: 59.9 s of 180 s are read; the buffers add theirs.
  const int64_t remaining =
      180000 - 59900 + static_cast<int64_t>(on.station.engine.BufferOffsetSec * 1000);
  EXPECT_NEAR(on.station.engine.RemainingMs, static_cast<double>(remaining), 200);
  EXPECT_EQ(Text("Temp"), PictureOf(on.station).Temp);
  EXPECT_EQ(Text("TileNextWhat"), "ARTIST 2  TITLE 2");
  EXPECT_FALSE(Text("TileNextWhen").empty());
  auto* wave = static_cast<WaveformView*>(Find("VuMettre"));
  EXPECT_EQ(wave->PlayedX(), 33 * wave->width() / 100);  // 59.9 of 180 s, whole percents
}

TEST_F(Screen, NextButtonAsksForTheNextElementAndEndsTheFitting) {
  Open();
  AddTitles(3);
  Click("Toolbar1_5");
  Run(10000);
  on.station.engine.FittingActive = true;
  Click("CmdStop");
  EXPECT_TRUE(on.station.engine.NextRequested);
  EXPECT_FALSE(on.station.engine.FittingActive);
  Run(8000);
  EXPECT_EQ(Text("LblArtiste"), "ARTIST 2  TITLE 2");
}

TEST_F(Screen, PlShowsTheListAndKeepsTheSelectedRowWhenTheFirstGoesOnAir) {
  Open();
  AddTitles(4);
  Draw();
  EXPECT_EQ(List().model()->rowCount(), 4);
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(3));
  EXPECT_EQ(List().SelectedRow(), 3);
  Click("Toolbar1_5");
  Run(2000);
  EXPECT_EQ(List().model()->rowCount(), 3);
  EXPECT_EQ(List().SelectedRow(), 2);  // the same title
}

TEST_F(Screen, DragInsideTheListMovesTheRowToTheRowUnderTheMouse) {
  Open();
  AddTitles(4);
  Draw();
  QWidget* list = List().viewport();
  QTest::mousePress(list, Qt::LeftButton, {}, InRow(1));
  EXPECT_EQ(List().Bloc->text(), "True");
  EXPECT_EQ(List().LblDepart->text(), "1");
  QTest::mouseMove(list, InRow(2));
  QTest::mouseMove(list, InRow(3));
  EXPECT_EQ(List().Bloc->text(), "False");
  EXPECT_EQ(List().ShownDrop(), 3);
  EXPECT_EQ(List().LblArrivee->text(), "3");
  QTest::mouseRelease(list, Qt::LeftButton, {}, InRow(3));
  EXPECT_EQ(Titles(), (Names{"ARTIST 2", "ARTIST 3", "ARTIST 1", "ARTIST 4"}));
  EXPECT_EQ(List().SelectedRow(), 3);
  EXPECT_EQ(List().ShownDrop(), 0);
}

TEST_F(Screen, DragBelowTheLastRowMovesTheRowToTheEnd) {
  Open();
  AddTitles(3);
  Draw();
  QWidget* list = List().viewport();
  const QPoint below(30, list->height() - 5);
  QTest::mousePress(list, Qt::LeftButton, {}, InRow(1));
  QTest::mouseMove(list, below);
  QTest::mouseRelease(list, Qt::LeftButton, {}, below);
  EXPECT_EQ(Titles(), (Names{"ARTIST 2", "ARTIST 3", "ARTIST 1"}));
}

TEST_F(Screen, DragOutOfTheListChangesNothing) {
  Open();
  AddTitles(3);
  Draw();
  QWidget* list = List().viewport();
  QTest::mousePress(list, Qt::LeftButton, {}, InRow(1));
  QTest::mouseMove(list, QPoint(30, -200));
  QTest::mouseRelease(list, Qt::LeftButton, {}, QPoint(30, -200));
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 2", "ARTIST 3"}));
}

TEST_F(Screen, RightButtonTakesTheRowOutAtOnce) {
  Open();
  AddTitles(3);
  Draw();
  QTest::mouseClick(List().viewport(), Qt::RightButton, {}, InRow(2));
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 3"}));
}

TEST_F(Screen, RightButtonBelowTheLastRowTakesNothingOut) {
  Open();
  AddTitles(2);
  Draw();
  QTest::mouseClick(List().viewport(), Qt::RightButton, {}, {30, List().viewport()->height() - 5});
  EXPECT_EQ(Titles().size(), 2u);
}

TEST_F(Screen, DeleteKeyTakesTheSelectedRowOutAndTheTotalFollows) {
  Open();
  AddTitles(1);
  RefreshPlanTimes(on.station);
  Draw();
  EXPECT_EQ(Text("HHTot") + Text("MnTot") + Text("SSTot"), "000300");
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(1));
  Key(Qt::Key_Delete);
  EXPECT_TRUE(Titles().empty());
  EXPECT_EQ(Text("HHTot") + Text("MnTot") + Text("SSTot"), "000000");
}

TEST_F(Screen, DeleteOfAVoiceTrackAsksAndNoKeepsItsRecord) {
  Open();
  OnAirElement track{};
  track.title = "Voice Track";
  track.voiceTrack = 7;
  track.secondLine = "7";
  track.code = -30;
  on.Append(track);
  Draw();
  std::string asked;
  on.messages.shown = [&](const std::string& title, const std::string& text, Buttons buttons,
                          Answer) {
    asked = title + "/" + text;
    EXPECT_EQ(buttons, Buttons::kYesNo);
  };
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(1));
  Key(Qt::Key_Delete);
  EXPECT_EQ(asked, "Alerte/Delete Voice Track \n7");
  EXPECT_TRUE(on.station.PL.Empty());
}

TEST_F(Screen, AltAndArrowsMoveTheSelectedRow) {
  Open();
  AddTitles(3);
  Draw();
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(2));
  Key(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(Titles(), (Names{"ARTIST 2", "ARTIST 1", "ARTIST 3"}));
  EXPECT_EQ(List().SelectedRow(), 1);
  Key(Qt::Key_Down, Qt::AltModifier);
  Key(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 3", "ARTIST 2"}));
}

TEST_F(Screen, CtrlClickOpensTheCardOfTheRowUnlessLocked) {
  int32_t opened = 0;
  sources.openMusicCard = [&](int32_t code) { opened = code; };
  Open();
  AddTitles(2);
  Draw();
  on.station.lists.Locked = true;
  QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::ControlModifier, InRow(2));
  EXPECT_EQ(opened, 0);
  on.station.lists.Locked = false;
  QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::ControlModifier, InRow(2));
  EXPECT_EQ(opened, on.station.PL.Row(2).code);
}

TEST_F(Screen, DoubleClickOpensTheSelectorOnTheFileOfTheRow) {
  std::string opened;
  sources.openSelector = [&](const std::string& file) { opened = file; };
  Open();
  AddTitles(2);
  Draw();
  QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, InRow(2));
  EXPECT_EQ(opened, on.station.PL.Row(2).file);
}

// --- keys ---

class Keys : public Screen {
 protected:
  void SetUp() override {
    Screen::SetUp();
    Open();
    keyboard.Watch(window.get(), [this] { return bool{on.station.engine.HotKeysArmed}; });
  }
  ScreenKeyboard keyboard;
};

TEST_F(Keys, SpaceIsHeldWhileItIsDownAndReachesNoButton) {
  QWidget* button = Button("CmdRequette");
  button->setFocus();
  QTest::keyPress(button, Qt::Key_Space);
  EXPECT_TRUE(keyboard.Held(32));
  EXPECT_TRUE(keyboard.Held(32));
  EXPECT_FALSE(Button("CmdRequette")->isDown());
  QTest::keyRelease(button, Qt::Key_Space);
  EXPECT_FALSE(keyboard.Held(32));
}

TEST_F(Keys, AShortPressBetweenTwoTicksIsSeenOnce) {
  QTest::keyClick(&List(), Qt::Key_0, Qt::KeypadModifier);
  EXPECT_TRUE(keyboard.Held(96));
  EXPECT_FALSE(keyboard.Held(96));
}

// Shift or Num Lock makes another key of it until it is let go.
TEST_F(Keys, AKeyThatIsLetGoAsAnotherOneIsLetGo) {
  QTest::keyPress(&List(), Qt::Key_0, Qt::KeypadModifier);
  ASSERT_TRUE(keyboard.Held(96));
  QTest::keyRelease(&List(), Qt::Key_Insert, Qt::KeypadModifier);
  EXPECT_FALSE(keyboard.Held(96));
  QTest::keyPress(&List(), Qt::Key_5, Qt::KeypadModifier);
  ASSERT_TRUE(keyboard.Held(101));
  QTest::keyRelease(&List(), Qt::Key_5, Qt::ShiftModifier);
  EXPECT_FALSE(keyboard.Held(101));
  QTest::keyPress(&List(), Qt::Key_Space);
  ASSERT_TRUE(keyboard.Held(32));
  QTest::keyRelease(&List(), Qt::Key_Space, Qt::ControlModifier);
  EXPECT_FALSE(keyboard.Held(32));
}

TEST_F(Keys, DigitsOfThePadHaveTheirNumbersAndTheOthersHaveNone) {
  QTest::keyPress(&List(), Qt::Key_7, Qt::KeypadModifier);
  EXPECT_TRUE(keyboard.Held(103));
  QTest::keyRelease(&List(), Qt::Key_7, Qt::KeypadModifier);
  keyboard.Held(103);
  QTest::keyPress(&List(), Qt::Key_7);
  EXPECT_FALSE(keyboard.Held(103));
  QTest::keyRelease(&List(), Qt::Key_7);
}

TEST_F(Keys, InATextBoxSpaceAndDigitsAreText) {
  Click("Toolbar1_2");
  auto* box = Find<QLineEdit>("Rech");
  ASSERT_TRUE(box->hasFocus());
  EXPECT_FALSE(on.station.engine.HotKeysArmed);
  QTest::keyClicks(box, "a b");
  QTest::keyClick(box, Qt::Key_1, Qt::KeypadModifier);
  EXPECT_EQ(box->text(), "a b1");
  EXPECT_FALSE(keyboard.Held(32));
  EXPECT_FALSE(keyboard.Held(97));
}

TEST_F(Keys, LeavingTheTextBoxArmsTheKeysAgain) {
  Click("Toolbar1_2");
  ASSERT_TRUE(Find("Rech")->hasFocus());
  List().setFocus();
  EXPECT_TRUE(on.station.engine.HotKeysArmed);
  Find("ComboPLS")->setFocus();
  EXPECT_FALSE(on.station.engine.HotKeysArmed);
}

TEST_F(Keys, ReturnWorksTheFocusedButton) {
  AddTitles(2);
  QWidget* start = Button("Toolbar1_5");
  start->setFocus();
  QTest::keyClick(start, Qt::Key_Return);
  EXPECT_TRUE(on.station.engine.IsRunning);
}

TEST_F(Screen, FunctionKeysSwitchTheModes) {
  Open();
  Key(Qt::Key_F3);
  EXPECT_FALSE(on.station.engine.IsAutomatic);
  Key(Qt::Key_F4);
  EXPECT_TRUE(on.station.gridFrame.open);
  Key(Qt::Key_F2);
  EXPECT_TRUE(on.station.engine.IsAutomatic);
  EXPECT_FALSE(on.station.gridFrame.open);
}

// --- menus and lock ---

TEST_F(Screen, ScreensToComeStandInTheMenuDisabledAndSaySo) {
  Open();
  for (const char* name : {"Discotheque", "MnuHPubs", "MnuModel", "MnuRapport", "MnuParametrage"}) {
    auto* entry = window->findChild<QAction*>(QString::fromUtf8(name));
    ASSERT_TRUE(entry) << name;
    EXPECT_FALSE(entry->isEnabled()) << name;
    EXPECT_EQ(entry->toolTip(), "Cet écran viendra avec une prochaine version") << name;
  }
}

TEST_F(Screen, TheLibraryIsOpenedByItsEntry) {
  int opened = 0;
  sources.openLibrary = [&] { ++opened; };
  Open();
  auto* entry = window->findChild<QAction*>("Discotheque");
  ASSERT_TRUE(entry->isEnabled());
  entry->trigger();
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(entry->text(), "&Discothèque...");
}

TEST_F(Screen, TheCampaignsAreOpenedByTheirEntry) {
  int opened = 0;
  sources.openCampaigns = [&] { ++opened; };
  Open();
  auto* entry = window->findChild<QAction*>("MnuHPubs");
  ASSERT_TRUE(entry->isEnabled());
  entry->trigger();
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(entry->text(), "&Horaires des pubs...");
}

TEST_F(Screen, TheModelsAreOpenedByTheirEntry) {
  int opened = 0;
  sources.openModels = [&] { ++opened; };
  Open();
  auto* entry = window->findChild<QAction*>("MnuModel");
  ASSERT_TRUE(entry->isEnabled());
  entry->trigger();
  EXPECT_EQ(opened, 1);
}

TEST_F(Screen, TheReportIsOpenedByItsEntry) {
  int opened = 0;
  sources.openReport = [&] { ++opened; };
  Open();
  auto* entry = window->findChild<QAction*>("MnuRapport");
  ASSERT_TRUE(entry->isEnabled());
  entry->trigger();
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(entry->text(), "&Rapport de diffusion...");
}

TEST_F(Screen, TheSettingsAreOpenedByTheirEntryUnlessItIsBarred) {
  int opened = 0;
  sources.openSettings = [&] { ++opened; };
  Open();
  auto* entry = window->findChild<QAction*>("MnuParametrage");
  on.station.engine.ScreenLocked = true;
  Draw();
  EXPECT_FALSE(entry->isEnabled());
  on.station.engine.ScreenLocked = false;
  Draw();
  ASSERT_TRUE(entry->isEnabled());
  entry->trigger();
  EXPECT_EQ(opened, 1);
}

TEST_F(Screen, TheProgramIsNotLeftWhileTheLibraryWorks) {
  bool works = true;
  int closed = 0;
  sources.leaveOthers = [&] { return !works; };
  sources.closed = [&] { ++closed; };
  Open();
  window->close();
  EXPECT_EQ(closed, 0);
  EXPECT_TRUE(on.station.engine.MainTimer);
  works = false;
  window->close();
  EXPECT_EQ(closed, 1);
}

TEST_F(Screen, RunningBarsThePlaylistAndPrintEntriesAndThePreview) {
  Open();
  AddTitles(2);
  auto* lists = window->findChild<QAction*>("MnuPlaylist");
  auto* print = window->findChild<QAction*>("MnuImprime");
  EXPECT_TRUE(lists->isEnabled());
  Click("Toolbar1_5");
  EXPECT_FALSE(lists->isEnabled());
  EXPECT_FALSE(print->isEnabled());
  Click("Toolbar1_6");
  EXPECT_TRUE(lists->isEnabled());
}

TEST_F(Screen, MnuStartStopTogglesItsMarkAndIsStored) {
  Open();
  auto* entry = window->findChild<QAction*>("MnuStartStop");
  EXPECT_TRUE(entry->isChecked());
  entry->trigger();
  EXPECT_FALSE(on.station.engine.MnuStartStop);
  EXPECT_FALSE(entry->isChecked());
  EXPECT_EQ(on.localValues.GetText("StartAndStop", ""), "False");
}

TEST_F(Screen, APasswordLocksTheEditMenuAndOnlyItsPasswordOpensIt) {
  Open();
  auto* entry = window->findChild<QAction*>("MnuPasseWord");
  const auto answer = [&](const char* text) {
    auto* dialog = window->findChild<QDialog*>("FrmPasseWord");
    ASSERT_TRUE(dialog);
    auto* box = dialog->findChild<QLineEdit*>("ChPasse");
    box->clear();
    QTest::keyClicks(box, QString::fromUtf8(text));
    QTest::mouseClick(dialog->findChild<QAbstractButton*>("BtnOk"), Qt::LeftButton);
  };
  entry->trigger();
  EXPECT_EQ(window->findChild<QDialog*>("FrmPasseWord")->windowTitle(), "Nouveau mot de passe");
  answer("radio");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  Draw();
  EXPECT_TRUE(on.station.lists.Locked);
  EXPECT_TRUE(entry->isChecked());
  EXPECT_FALSE(window->findChild<QMenu*>("MnuEdit")->menuAction()->isEnabled());
  entry->trigger();
  EXPECT_EQ(window->findChild<QDialog*>("FrmPasseWord")->windowTitle(), "Entrez le mot de passe");
  answer("wrong");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(on.station.lists.Locked);
  entry->trigger();
  answer("radio");
  answer("");
  Draw();
  EXPECT_FALSE(on.station.lists.Locked);
  EXPECT_TRUE(window->findChild<QMenu*>("MnuEdit")->menuAction()->isEnabled());
}

// --- saver, leaving ---

TEST_F(Screen, SaverComesAfterItsMinutesAndAKeyClosesIt) {
  on.Load();
  on.Set("Veille", "1");
  on.Set("TextVeille", "'RADIO'");
  Open();
  Run(60500);
  EXPECT_FALSE(on.station.saver.open);
  Run(1000);
  ASSERT_TRUE(on.station.saver.open);
  SaverWindow* saver = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (widget->objectName() == "FrmVeille") saver = static_cast<SaverWindow*>(widget);
  ASSERT_TRUE(saver);
  EXPECT_TRUE(saver->Moving());
  for (int i = 0; i < 200; ++i) {
    saver->Move();
    EXPECT_TRUE(saver->rect().contains(saver->TextRect()));
  }
  QTest::keyClick(saver, Qt::Key_A);
  Draw();
  EXPECT_FALSE(on.station.saver.open);
  EXPECT_FALSE(saver->Moving());
}

TEST_F(Screen, SaverDoesNotComeOverATextBox) {
  on.Load();
  on.Set("Veille", "1");
  Open();
  on.station.engine.HotKeysArmed = false;
  Run(62000);
  EXPECT_FALSE(on.station.saver.open);
}

TEST_F(Screen, ClosingIsRefusedOnAirAndLeavesInOrderWhenStopped) {
  bool closed = false;
  sources.closed = [&] { closed = true; };
  Open();
  AddTitles(2);
  Click("Toolbar1_5");
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_FALSE(closed);
  EXPECT_TRUE(on.station.base.IsOpen());
  Click("Toolbar1_6");
  window->close();
  EXPECT_TRUE(closed);
  EXPECT_FALSE(on.station.base.IsOpen());
}

TEST_F(Screen, AnOrderThatAsksWaitsUntilNoTickStandsBelowIt) {
  Open();
  bool done = false;
  on.station.engine.tickRunning = true;
  window->WhenFree([&] { done = true; });
  int turns = 0;
  QTimer turn;
  QObject::connect(&turn, &QTimer::timeout, [&] { ++turns; });
  turn.start(25);
  ASSERT_TRUE(QTest::qWaitFor([&] { return turns >= 3; }, 5000));
  EXPECT_FALSE(done);
  on.station.engine.tickRunning = false;
  EXPECT_TRUE(QTest::qWaitFor([&] { return done; }, 5000));
}

TEST_F(Screen, LightsBlinkWithTheEngineAndKeepTheirPlace) {
  Open();
  AddTitles(2);
  Click("Toolbar1_5");
  Run(2500);
  const QRect before = Find("LblFeu")->geometry();
  on.station.engine.CheckExtrait = true;
  on.station.engine.ExtractEndMs = 30000;
  Run(1000);  // 12:00:03
  EXPECT_FALSE(Find("LblFeu")->isVisible());
  Run(1000);  // 12:00:04, 4.3 s of the element were read
  EXPECT_TRUE(Find("LblFeu")->isVisible());
  EXPECT_EQ(Text("LblFeu"), "Extrait 00:25");
  EXPECT_TRUE(Find("LblFeu")->styleSheet().contains("background:#ffffc080"));
  EXPECT_EQ(Find("LblFeu")->geometry(), before);
}

TEST_F(Screen, TheCounterHasTheColourOfTheSettings) {
  Open();
  AddTitles(1);
  on.station.notices.counterColour = 65280;  // green, as 0xBBGGRR; chosen while the screen stands
  Click("Toolbar1_5");
  Run(5000);
  const QImage picture = Find("Temp")->grab().toImage();
  bool green = false;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      green = green || picture.pixelColor(x, y) == QColor(0, 255, 0);
  EXPECT_TRUE(green);
}

}  // namespace
}  // namespace zemo::test
