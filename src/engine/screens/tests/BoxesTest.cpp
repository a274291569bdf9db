// Message boxes over the main screen, and what a fault in a click does.
#include <gtest/gtest.h>

#include <QCalendarWidget>
#include <QDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <stdexcept>

#include "engine/screens/tests/ScreenFixture.h"
#include "ui/CalendarWindow.h"
#include "ui/ScreenDesktop.h"

namespace zemo::test {
namespace {

std::vector<QMessageBox*> AllTold() {
  std::vector<QMessageBox*> boxes;
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (auto* box = qobject_cast<QMessageBox*>(widget); box && box->isVisible())
      boxes.push_back(box);
  return boxes;
}

QMessageBox* Told() {
  const std::vector<QMessageBox*> boxes = AllTold();
  return boxes.empty() ? nullptr : boxes.front();
}

TEST_F(Screen, WhatIsToldStandsInABoxAndNobodyWaits) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  EXPECT_EQ(boxes.Show("Alerte", "hello", Buttons::kOk), Answer::kOk);
  QMessageBox* box = Told();
  ASSERT_TRUE(box);
  EXPECT_TRUE(box->isVisible());
  EXPECT_EQ(box->text(), "hello");
}

// A start tells before there is a window, and a machine that comes up alone has nobody to read it.
TEST_F(Screen, WhatAStartTellsStandsOnTheScreenWhileTheAirBegins) {
  ScreenMessageBoxes boxes;
  EXPECT_EQ(boxes.Show("", "upgraded", Buttons::kOk, Icon::kInformation), Answer::kOk);
  Open();
  boxes.SetWindow(window.get(), [] { return true; });
  on.Start();
  on.RunUntil(1000);
  EXPECT_TRUE(on.station.engine.IsRunning);
  ASSERT_TRUE(Told());
  EXPECT_EQ(Told()->text(), "upgraded");
  EXPECT_EQ(Told()->icon(), QMessageBox::Information);
  EXPECT_TRUE(Told()->windowFlags() & Qt::WindowStaysOnTopHint);
}

TEST_F(Screen, AQuestionOfRiskHasAStopIcon) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  QTimer::singleShot(0, [&] {
    auto* question = window->findChild<QMessageBox*>("Alerte");
    ASSERT_TRUE(question);
    EXPECT_EQ(question->icon(), QMessageBox::Critical);
    question->reject();
  });
  EXPECT_EQ(boxes.Show("Alerte", "sure?", Buttons::kOkCancel, Icon::kStop), Answer::kCancel);
}

TEST_F(Screen, WhoseFieldsARecordKeepsIsAskedWithAButtonEach) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetLanguage([] { return 1; });
  boxes.SetWindow(window.get(), [] { return true; });
  const auto press = [&](Buttons buttons, const char* name, const char* caption) {
    QTimer::singleShot(0, [&, name, caption] {
      auto* box = window->findChild<QMessageBox*>("Alerte");
      ASSERT_TRUE(box);
      auto* button = box->findChild<QPushButton*>(name);
      if (!button) box->reject();
      ASSERT_TRUE(button) << name;
      EXPECT_EQ(button->text(), caption);
      QTest::mouseClick(button, Qt::LeftButton);
    });
    const Answer answer = boxes.Show("Alerte", "whose?", buttons);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return answer;
  };
  EXPECT_EQ(press(Buttons::kMineTheirsLook, "BtnGarder", "Keep mine"), Answer::kYes);
  EXPECT_EQ(press(Buttons::kMineTheirsLook, "BtnPrendre", "Take theirs"), Answer::kNo);
  EXPECT_EQ(press(Buttons::kMineTheirsLook, "BtnVoir", "Look"), Answer::kOk);
  EXPECT_EQ(press(Buttons::kMineTheirs, "BtnRevenir", "Cancel"), Answer::kCancel);
}

TEST_F(Screen, AQuestionIsAnsweredByTheOperatorWhileTheLoopRuns) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  int turns = 0;
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, [&] {
    if (++turns < 5) return;
    auto* box = window->findChild<QMessageBox*>("Alerte");
    if (box) QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
  });
  tick.start(1);
  EXPECT_EQ(boxes.Show("Alerte", "sure?", Buttons::kYesNo), Answer::kYes);
  EXPECT_GE(turns, 5);
}

TEST_F(Screen, AQuestionFromInsideATickGetsItsSafeAnswer) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return false; });
  EXPECT_EQ(boxes.Show("Alerte", "sure?", Buttons::kYesNo), Answer::kNo);
  EXPECT_EQ(boxes.Show("Alerte", "sure?", Buttons::kOkCancel), Answer::kCancel);
}

TEST_F(Screen, ABoxCanBeAnsweredWhileADialogueBarsTheScreen) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  boxes.Show("Alerte", "the date will change", Buttons::kOk);
  auto* calendar = new CalendarWindow(0, on.station.Now(), window.get());
  calendar->open();
  QMessageBox* box = Told();
  ASSERT_TRUE(box);
  QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
  EXPECT_FALSE(Told());
  EXPECT_TRUE(calendar->isVisible());
  calendar->close();
}

TEST_F(Screen, ABoxLeavesTheKeyboardToTheScreenAndEqualOnesAreOne) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  for (int i = 0; i < 3; ++i) boxes.Show("Alerte", "hello", Buttons::kOk);
  EXPECT_EQ(AllTold().size(), 1U);
  EXPECT_TRUE(Told()->testAttribute(Qt::WA_ShowWithoutActivating));
  boxes.Show("Alerte", "another", Buttons::kOk);
  EXPECT_EQ(AllTold().size(), 2U);
}

TEST_F(Screen, ButtonsOfABoxSpeakTheLanguage) {
  Open();
  const char* words[] = {"OK", "OK", "OK", "OK"};
  const char* no[] = {"Non", "No", "Não", "No"};
  for (int langue = 0; langue < 4; ++langue) {
    ScreenMessageBoxes boxes;
    boxes.SetWindow(window.get(), [] { return true; });
    boxes.SetLanguage([langue] { return langue; });
    boxes.Show("Alerte", "hello", Buttons::kOk);
    ASSERT_TRUE(Told());
    EXPECT_EQ(Told()->button(QMessageBox::Ok)->text(), words[langue]);
    QTimer::singleShot(0, [&] {
      auto* question = window->findChild<QMessageBox*>("Alerte");
      ASSERT_TRUE(question);
      EXPECT_EQ(question->button(QMessageBox::No)->text(), no[langue]);
      question->reject();
    });
    EXPECT_EQ(boxes.Show("Alerte", "sure?", Buttons::kYesNo), Answer::kNo);
  }
}

TEST_F(Screen, ABoxShowsTheOperatorsWordsForTheRoutines) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  boxes.SetLanguage([] { return 1; });
  boxes.Show("Alerte", "Erreur de séléction de sortie audio", Buttons::kOk);
  ASSERT_TRUE(Told());
  EXPECT_EQ(Told()->windowTitle(), "Alert");
  EXPECT_EQ(Told()->text(), "The chosen audio output cannot be used");
}

TEST_F(Screen, EscapeOnTheMainScreenClosesTheNewestBoxFirst) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  boxes.Show("Alerte", "first", Buttons::kOk);
  boxes.Show("Alerte", "second", Buttons::kOk);
  List().setFocus();
  Key(Qt::Key_Escape);
  ASSERT_EQ(AllTold().size(), 1U);
  EXPECT_EQ(Told()->text(), "first");
  Key(Qt::Key_Escape);
  EXPECT_FALSE(Told());
}

TEST_F(Screen, EscapePassesOverABoxThatItsButtonClosed) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  boxes.Show("Alerte", "first", Buttons::kOk);
  boxes.Show("Alerte", "second", Buttons::kOk);
  for (QMessageBox* box : AllTold())
    if (box->text() == "second") box->button(QMessageBox::Ok)->click();
  List().setFocus();
  Key(Qt::Key_Escape);
  EXPECT_FALSE(Told());
}

TEST_F(Screen, EachBoxStandsAStepOffTheOneBeforeIt) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  boxes.Show("Alerte", "one", Buttons::kOk);
  boxes.Show("Alerte", "two", Buttons::kOk);
  const std::vector<QMessageBox*> told = AllTold();
  ASSERT_EQ(told.size(), 2U);
  const QPoint step = told[1]->pos() - told[0]->pos();
  EXPECT_EQ(told[0]->text() == "one" ? step : -step, QPoint(24, 24));
}

TEST_F(Screen, ReturnClosesABoxOnceItCouldBeReadAndElseDoesWhatItWasFor) {
  std::string opened;
  sources.openSelector = [&](const std::string& file) { opened = file; };
  AddTitles(1);
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(1));
  boxes.Show("Alerte", "hello", Buttons::kOk);
  Key(Qt::Key_Return);
  EXPECT_NE(opened, "");
  ASSERT_TRUE(Told());
  opened.clear();
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        QTest::keyClick(&List(), Qt::Key_Return);  // the focus may be the box's own button
        return !Told();
      },
      5000));
  opened.clear();
  QApplication::setActiveWindow(window.get());  // off the screen the box had taken that from it
  List().setFocus();
  Key(Qt::Key_Return);
  EXPECT_NE(opened, "");
}

TEST_F(Screen, ABoxLeavesTheRowFreeThatItSpeaksOf) {
  AddTitles(12);
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  for (const int row : {1, 6, 12}) {
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(row));
    List().setFocus();
    boxes.Show("Alerte", "row " + std::to_string(row), Buttons::kOk);
    ASSERT_TRUE(Told());
    const QRect spoken = List().visualRect(List().model()->index(row - 1, 0));
    const QRect onScreen(List().viewport()->mapToGlobal(spoken.topLeft()),
                         QSize(List().viewport()->width(), spoken.height()));
    EXPECT_FALSE(Told()->geometry().intersects(onScreen)) << row;
    Key(Qt::Key_Escape);
  }
}

TEST_F(Screen, ABoxGivesWayToTheDialogueThatOpensBehindItAndEscapeClosesItFirst) {
  Open();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  boxes.Show("Alerte", "the date will change", Buttons::kOk);
  auto* calendar = new CalendarWindow(0, on.station.Now(), window.get());
  calendar->open();
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return !Told()->frameGeometry().intersects(calendar->frameGeometry()); }, 5000));
  QTest::keyClick(calendar, Qt::Key_Escape);
  EXPECT_FALSE(Told());
  EXPECT_TRUE(calendar->isVisible());
  calendar->close();
}

TEST_F(Screen, AHeldReturnAndOneInATextBoxCloseNoBox) {
  Open();
  Click("Toolbar1_2");
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  boxes.Show("Alerte", "hello", Buttons::kOk);
  boxes.Show("Alerte", "a younger one", Buttons::kOk);
  List().setFocus();
  // Once a Return closes the younger box, the older one could be read as well.
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        QTest::keyClick(&List(), Qt::Key_Return);  // the focus may be a box's own button
        return AllTold().size() == 1;
      },
      5000));
  ASSERT_EQ(Told()->text(), "hello");
  Find("Rech")->setFocus();
  QTest::keyClick(Find("Rech"), Qt::Key_Return);
  EXPECT_TRUE(Told());
  List().setFocus();
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
  QCoreApplication::sendEvent(&List(), &held);
  EXPECT_TRUE(Told());
}

TEST_F(Screen, AQuestionBelowADialogueStandsBeforeItAndLeavesItFree) {
  Open(800, 600);
  ScreenMessageBoxes boxes;
  boxes.SetWindow(window.get(), [] { return true; });
  QDialog dialogue(window.get());
  dialogue.resize(300, 200);
  dialogue.open();
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, [&, turns = 0]() mutable {
    auto* question = dialogue.findChild<QMessageBox*>("Alerte");
    if (!question || ++turns < 5) return;
    EXPECT_FALSE(question->geometry().intersects(dialogue.geometry()));
    question->reject();
  });
  tick.start(1);
  EXPECT_EQ(boxes.Show("Alerte", "sure?", Buttons::kYesNo), Answer::kNo);
  dialogue.close();
}

TEST_F(Screen, AFaultInAClickIsToldAndEndsNothing) {
  Open();
  auto* application = static_cast<ScreenApplication*>(qApp);
  std::string told;
  application->onException = [&] {
    try {
      throw;
    } catch (const std::exception& error) {
      told = error.what();
    }
  };
  QPushButton button(window.get());
  QObject::connect(&button, &QPushButton::clicked,
                   [] { throw std::runtime_error("the table is gone"); });
  button.show();
  QTest::mouseClick(&button, Qt::LeftButton);
  application->onException = nullptr;
  EXPECT_EQ(told, "the table is gone");
}

}  // namespace
}  // namespace zemo::test
