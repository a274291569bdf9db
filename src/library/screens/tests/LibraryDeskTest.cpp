// The library's windows as the program has them, and who asks questions over which window.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "library/screens/LibraryDesk.h"
#include "library/screens/tests/LibraryWindowFixture.h"
#include "ui/ScreenDesktop.h"

namespace zemo::test {
namespace {

class TheLibraryDesk : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    AddSongs();
    desk = std::make_unique<LibraryDesk>(on.station, sources);
  }
  void TearDown() override { desk.reset(); }
  std::string Artist() { return desk->Window()->Editor().music.ChAuteur; }
  std::unique_ptr<LibraryDesk> desk;
};

TEST_F(TheLibraryDesk, BringsTheOpenWindowForwardAsItStands) {
  desk->Open();
  const LibraryWindow* shown = desk->Window();
  desk->OpenOnCard(2);
  EXPECT_EQ(Artist(), "ABBA");
  desk->Open();
  EXPECT_EQ(desk->Window(), shown);
  EXPECT_EQ(Artist(), "ABBA");
}

TEST_F(TheLibraryDesk, AWindowThatWasClosedOpensAnewInTheLanguageOfTheMoment) {
  desk->Open();
  EXPECT_EQ(desk->Window()->windowTitle().toStdString(), "Discothèque");
  desk->Window()->close();
  EXPECT_FALSE(desk->Window()->isVisible());
  on.Set("Langue", "1");
  desk->Open();
  EXPECT_TRUE(desk->Window()->isVisible());
  EXPECT_EQ(desk->Window()->windowTitle().toStdString(), "Library");
}

TEST_F(TheLibraryDesk, ACardThatIsGoneOpensTheLibraryOnItsFirst) {
  desk->OpenOnCard(99);
  EXPECT_TRUE(desk->Window()->isVisible());
  EXPECT_EQ(Artist(), "CHER");
}

TEST_F(TheLibraryDesk, HourPipsAreSavedWhenTheProgramEnds) {
  desk->Open();
  auto* tabs = desk->Window()->findChild<QWidget*>(QStringLiteral("TabStrip1"));
  for (int tab = 1; tab < 4; ++tab) QTest::keyClick(tabs, Qt::Key_Right);
  QTest::mouseClick(desk->Window()->findChild<QWidget*>(QStringLiteral("JourTop_1")),
                    Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
  EXPECT_TRUE(desk->Leave());
  EXPECT_FALSE(desk->Window()->IsOpen());
  EXPECT_EQ(on.SqlText("SELECT JourSemaine FROM Toph WHERE HEURE = 0"), " XXXXXX");
}

TEST_F(TheLibraryDesk, TheProgramDoesNotEndWhileTheLibraryWorks) {
  desk->Open();
  bool may = true;
  on.At(0, [&] { may = desk->Leave(); });
  desk->Window()->findChild<QAction*>(QStringLiteral("MnuTxt"))->trigger();
  EXPECT_FALSE(may);
  EXPECT_FALSE(desk->Window()->IsOpen());  // closed at the work's end
  EXPECT_TRUE(desk->Leave());
}

TEST_F(TheLibraryDesk, NoOtherCardIsShownWhileARoutineWorks) {
  desk->Open();
  bool worked = false;
  on.At(0, [&] {
    worked = desk->Window()->Editor().working > 0;
    desk->OpenOnCard(3);
    desk->Open();
  });
  desk->Window()->findChild<QAction*>(QStringLiteral("MnuTxt"))->trigger();
  EXPECT_TRUE(worked);
  EXPECT_EQ(Artist(), "CHER");
  desk->OpenOnCard(3);
  EXPECT_EQ(Artist(), "Édith");
}

TEST_F(TheLibraryDesk, AQuestionStandsBeforeTheWindowThatAsks) {
  ScreenMessageBoxes boxes;
  QWidget main;
  main.show();
  boxes.SetWindow(&main, [] { return true; });
  desk->Open();
  QApplication::setActiveWindow(desk->Window());
  const QWidget* before = nullptr;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_TRUE(box);
    before = box->parentWidget();
    box->button(QMessageBox::No)->click();
  });
  EXPECT_EQ(boxes.Show("Alerte", "?", Buttons::kYesNo), Answer::kNo);
  EXPECT_EQ(before, desk->Window());
}

TEST_F(TheLibraryDesk, EscapeOnItsWindowClosesWhatIsTold) {
  ScreenMessageBoxes boxes;
  QWidget main;
  boxes.SetWindow(&main, [] { return true; });
  desk->Open();
  QApplication::setActiveWindow(desk->Window());
  boxes.Show("Alerte", "told", Buttons::kOk);
  const auto shown = [] {
    int count = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets())
      count += widget->isVisible() && qobject_cast<const QMessageBox*>(widget) ? 1 : 0;
    return count;
  };
  EXPECT_EQ(shown(), 1);
  QTest::keyClick(desk->Window(), Qt::Key_Escape);
  EXPECT_EQ(shown(), 0);
}

}  // namespace
}  // namespace zemo::test
