// The skeleton dialogue over the main screen: its keys, its menu, what it lists and what it leaves.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

#include "engine/screens/SkeletonWindowTexts.h"
#include "engine/screens/tests/ScreenFixture.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

class SkeletonScreen : public Screen {
 protected:
  void SetUp() override {
    Screen::SetUp();
    on.MakeFile("Genre.Txt", "INSTRUMENTAL\r\nPOP\r\nROCK\r\n");
  }
  // The hour stands in ChHeure, whose stored list the dialogue works for.
  void OpenDialogue(int width = 1280, int height = 800) {
    if (!window) Open(width, height);
    Click("Toolbar1_2");
    on.station.storedList.ChHeure = "10:30";
    Click("CmdRequette");
    QCoreApplication::processEvents();
    ASSERT_TRUE(Dialogue());
  }
  QDialog* Dialogue() { return window->findChild<QDialog*>(QStringLiteral("SkeletonDialog")); }
  template <typename Control>
  Control* Part(const char* name) {
    auto* control = Dialogue()->findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the dialogue has no " << name;
    return control;
  }
  void Gone() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    EXPECT_FALSE(Dialogue());
    EXPECT_FALSE(State().open);
  }
  void Push(const char* button) {
    QTest::mouseClick(Part<QPushButton>(button), Qt::LeftButton);
    window->Refresh();
  }
  void Choose(int genre, Qt::Key key = Qt::Key_Return) {  // from 0, by keyboard
    auto* genres = Part<QListWidget>("ListGenre");
    genres->setFocus();
    QTest::keyClick(genres, Qt::Key_Home);
    for (int i = 0; i < genre; ++i) QTest::keyClick(genres, Qt::Key_Down);
    QTest::keyClick(genres, key);
  }
  Names Shown() {
    auto* grid = Part<QTableWidget>("SquelettePLS");
    Names genres;
    for (int row = 0; row < grid->rowCount(); ++row)
      genres.push_back(grid->item(row, 0)->text().toStdString());
    return genres;
  }
  Names Held() {
    Names genres;
    for (int row = 0; row < State().SquelettePLS.RowCount(); ++row)
      genres.push_back(State().SquelettePLS.Cell(row, 0));
    return genres;
  }
  decltype(RequestState::SkeletonDialog)& State() { return on.station.requests.SkeletonDialog; }
  void Position(int day, const std::string& genre) {
    on.Sql("INSERT INTO ModelSquelette (JOUR, TRANCHE10) VALUES (" + std::to_string(day) + ", '" +
           genre + "')");
  }
  void Library() {
    Loaded();
    on.AddCard({.artist = "ABBA", .title = "WATERLOO", .genre = "POP"});
    on.AddCard({.artist = "QUEEN", .title = "INNUENDO", .genre = "ROCK"});
    on.AddCard({.artist = "CHER", .title = "BELIEVE", .genre = "POP"});
  }
};

TEST_F(SkeletonScreen, TheRequestButtonOpensItOverTheEditorOnly) {
  Open();
  Click("CmdRequette");
  EXPECT_FALSE(Dialogue());
  OpenDialogue();
  EXPECT_TRUE(Dialogue()->isVisible());
  EXPECT_EQ(Dialogue()->windowModality(), Qt::WindowModal);
}

TEST_F(SkeletonScreen, F5OpensItAndItBeginsAtTheGenresWithTheRequestsMinutes) {
  Loaded();
  on.Set("TempRequette", "45");
  Open();
  Click("Toolbar1_2");
  Key(Qt::Key_F5);
  Draw();
  ASSERT_TRUE(Dialogue() && Dialogue()->isVisible());
  QCoreApplication::processEvents();
  auto* genres = Part<QListWidget>("ListGenre");
  Names offered;
  for (int row = 0; row < genres->count(); ++row)
    offered.push_back(genres->item(row)->text().toStdString());
  EXPECT_EQ(offered, (Names{"INSTRUMENTAL", "POP", "ROCK"}));
  EXPECT_EQ(QApplication::focusWidget(), genres);
  EXPECT_EQ(Part<QSpinBox>("SpinMinutes")->value(), 45);
  EXPECT_FALSE(Part<QCheckBox>("Redondance")->isChecked());
  EXPECT_TRUE(Shown().empty());
}

TEST_F(SkeletonScreen, ADoubleClickAppendsTheGenreAndReturnDoesToo) {
  OpenDialogue();
  auto* genres = Part<QListWidget>("ListGenre");
  const QPoint rock = genres->visualItemRect(genres->item(2)).center();
  QTest::mouseClick(genres->viewport(), Qt::LeftButton, {}, rock);
  EXPECT_TRUE(Shown().empty());
  QTest::mouseDClick(genres->viewport(), Qt::LeftButton, {}, rock);
  EXPECT_EQ(Shown(), Names{"ROCK"});
  Choose(1);
  Choose(1, Qt::Key_Enter);
  EXPECT_EQ(Shown(), (Names{"ROCK", "POP", "POP"}));
  EXPECT_EQ(Held(), Shown());
  EXPECT_TRUE(Dialogue());  // Return did not reach BtnOk
}

TEST_F(SkeletonScreen, DeleteTakesTheSelectedRowOutAndLeavesTheLastOne) {
  OpenDialogue();
  for (const int genre : {0, 1, 2}) Choose(genre);
  auto* grid = Part<QTableWidget>("SquelettePLS");
  grid->setFocus();
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                    {20, grid->rowViewportPosition(1) + grid->rowHeight(1) / 2});
  EXPECT_EQ(State().selectedRow, 1);
  QTest::keyClick(grid, Qt::Key_Delete);
  EXPECT_EQ(Shown(), (Names{"INSTRUMENTAL", "ROCK"}));
  EXPECT_EQ(State().selectedRow, 1);  // the row that took its place
  QTest::keyClick(grid, Qt::Key_Up);
  QTest::keyClick(grid, Qt::Key_Delete);
  QTest::keyClick(grid, Qt::Key_Delete);
  EXPECT_EQ(Shown(), Names{"ROCK"});
  EXPECT_EQ(Held(), Shown());
}

TEST_F(SkeletonScreen, DeleteWithNoRowSelectedTakesNothing) {
  OpenDialogue();
  State().SquelettePLS.AddRow({"POP"});
  State().SquelettePLS.AddRow({"ROCK"});
  Draw();
  EXPECT_EQ(Shown(), (Names{"POP", "ROCK"}));
  QTest::keyClick(Part<QTableWidget>("SquelettePLS"), Qt::Key_Delete);
  EXPECT_EQ(Shown(), (Names{"POP", "ROCK"}));
}

TEST_F(SkeletonScreen, TheMenuCopiesADaysSkeletonOfTheHourInTheEditor) {
  Loaded();
  Position(1, "POP");
  Position(1, "");
  Position(1, "JAZZ");
  Position(7, "ROCK");
  OpenDialogue();
  Choose(0);
  auto* menu = Part<QMenu>("mnuCopieSquelette");
  menu->popup(Dialogue()->mapToGlobal(QPoint(20, 20)));
  QTest::mouseClick(menu, Qt::LeftButton, {},
                    menu->actionGeometry(Part<QAction>("mnuLundi")).center());
  EXPECT_EQ(Shown(), (Names{"POP", "", "JAZZ"}));
  EXPECT_EQ(State().selectedRow, 0);
  EXPECT_EQ(Part<QLabel>("LblEtatSquelette")->text(), "Copié : Lundi, 10 h");
  QTest::keyClick(Dialogue(), Qt::Key_7, Qt::ControlModifier);  // mnuDimanche
  EXPECT_EQ(Shown(), Names{"ROCK"});
  QTest::keyClick(Dialogue(), Qt::Key_3, Qt::ControlModifier);  // mnuMercredi has none
  EXPECT_EQ(Shown(), Names{"ROCK"});
  EXPECT_EQ(Part<QLabel>("LblEtatSquelette")->text(), "Pas de squelette : Mercredi, 10 h");
}

TEST_F(SkeletonScreen, TheSevenDaysStandInTheirOrder) {
  OpenDialogue();
  Names days;
  for (const QAction* day : Part<QMenu>("mnuCopieSquelette")->actions())
    days.push_back(day->objectName().toStdString());
  EXPECT_EQ(days, (Names{"mnuLundi", "mnuMardi", "mnuMercredi", "mnuJeudi", "mnuVendredi",
                         "mnuSamedi", "mnuDimanche"}));
}

TEST_F(SkeletonScreen, OkListsTitlesAlongTheSkeletonAndCloses) {
  Library();
  OpenDialogue();
  for (const int genre : {2, 1, 1}) Choose(genre);
  auto* minutes = Part<QSpinBox>("SpinMinutes");
  minutes->setFocus();
  minutes->selectAll();
  QTest::keyClicks(minutes, "8");
  Push("BtnOk");
  Gone();
  // Three titles of 3:00 are the first sum above 8 minutes.
  EXPECT_EQ(Titles(), (Names{"QUEEN", "ABBA", "CHER"}));
  EXPECT_EQ(List().model()->rowCount(), 3);
  EXPECT_EQ(on.Events("request").back()["kind"], "dialog");
  EXPECT_EQ(on.Events("request").back()["minutes"], "8");
}

TEST_F(SkeletonScreen, ReturnInTheMinutesIsOk) {
  Library();
  OpenDialogue();
  Choose(1);
  auto* minutes = Part<QSpinBox>("SpinMinutes");
  minutes->setFocus();
  minutes->selectAll();
  QTest::keyClicks(minutes, "2");
  QTest::keyClick(minutes, Qt::Key_Return);
  Gone();
  EXPECT_EQ(Titles(), Names{"ABBA"});
}

TEST_F(SkeletonScreen, TitlesOfTheListComeAgainOnlyWhenRedondanceIsTicked) {
  Library();
  on.AppendCard(1);  // ABBA
  OpenDialogue();
  Choose(1);
  Part<QSpinBox>("SpinMinutes")->setValue(2);
  Push("BtnOk");
  Gone();
  EXPECT_EQ(Titles(), (Names{"ABBA", "CHER"}));
  on.station.PL.Remove(2);
  OpenDialogue();
  Choose(1);
  Part<QSpinBox>("SpinMinutes")->setValue(2);
  auto* again = Part<QCheckBox>("Redondance");
  again->setFocus();
  QTest::keyClick(again, Qt::Key_Space);  // the window's own space, not the engine's
  EXPECT_TRUE(State().Redondance);
  Push("BtnOk");
  EXPECT_EQ(Titles(), (Names{"ABBA", "ABBA"}));
  EXPECT_FALSE(on.station.engine.IsRunning);
}

TEST_F(SkeletonScreen, CancelEscapeAndTheFrameListNothing) {
  Library();
  for (const int way : {0, 1, 2}) {
    OpenDialogue();
    Choose(1);
    if (way == 0) Push("BtnCancel");
    if (way == 1) QTest::keyClick(Dialogue(), Qt::Key_Escape);
    if (way == 2) Dialogue()->close();
    Gone();
    EXPECT_TRUE(Titles().empty()) << way;
  }
  EXPECT_TRUE(on.Events("request").empty());
}

TEST_F(SkeletonScreen, AnEmptySkeletonSaysThatThereAreNoModels) {
  Library();
  OpenDialogue();
  Push("BtnOk");
  Gone();
  EXPECT_EQ(Text("LblProgression"), "IL N'Y A PAS DE MODELS DEFINIS");
  EXPECT_TRUE(Find("LblProgression")->isVisible());
  EXPECT_TRUE(Titles().empty());
  EXPECT_TRUE(on.station.engine.MainTimer->Enabled());
}

TEST_F(SkeletonScreen, WithoutALibraryNothingIsListedAndTheTickComesBack) {
  OpenDialogue();
  Choose(1);
  Push("BtnOk");
  Gone();
  EXPECT_TRUE(Titles().empty());
  EXPECT_TRUE(on.station.engine.MainTimer->Enabled());
  EXPECT_EQ(on.station.engine.mainTimerHolds, 0);
}

TEST_F(SkeletonScreen, AFailureIsLoggedUnderTheGridsNameAndTheDialogueCloses) {
  Library();
  OpenDialogue();
  Choose(1);
  on.Sql("ALTER TABLE Discotheque RENAME TO Gone");
  Push("BtnOk");
  Gone();
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "SquelettePLS");
  EXPECT_TRUE(on.station.engine.MainTimer->Enabled());
}

TEST_F(SkeletonScreen, TheAirGoesOnBelowIt) {
  AddTitles(3);
  Open();
  Click("Toolbar1_5");
  Run(1000);
  OpenDialogue();
  Run(4 * 60000);  // past the first title's end
  EXPECT_TRUE(Dialogue());
  EXPECT_EQ(on.Starts().size(), 2U);
  EXPECT_EQ(Text("LblArtiste"), "ARTIST 2  TITLE 2");
}

TEST_F(SkeletonScreen, OkWhileATickIsUnderWayWaitsAndACancelThenListsNothing) {
  Library();
  OpenDialogue();
  Choose(1);
  {
    const MainTimerHold tick(on.station);
    Push("BtnOk");
    QTest::mouseClick(Part<QPushButton>("BtnOk"), Qt::LeftButton);  // a second click asks no more
    EXPECT_TRUE(Dialogue());
    EXPECT_TRUE(Titles().empty());
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return !State().open; }, 5000));
  Gone();
  EXPECT_EQ(on.Events("request").size(), 1U);
  const size_t listed = Titles().size();
  OpenDialogue();
  Choose(1);
  {
    const MainTimerHold tick(on.station);
    Push("BtnOk");
    Push("BtnCancel");
  }
  Gone();
  bool later = false;  // behind the waiting order
  window->WhenFree([&] { later = true; });
  EXPECT_TRUE(QTest::qWaitFor([&] { return later; }, 5000));
  EXPECT_EQ(Titles().size(), listed);
  EXPECT_EQ(on.Events("request").size(), 1U);
}

TEST_F(SkeletonScreen, ItGoesWhenTheDialogueIsClosedElsewhere) {
  OpenDialogue();
  State().open = false;
  Draw();
  Gone();
}

TEST_F(SkeletonScreen, EveryControlIsReachedByTabAndHasANameAndATip) {
  OpenDialogue();
  for (const char* name :
       {"ListGenre", "SquelettePLS", "SpinMinutes", "Redondance", "BtnOk", "BtnCancel"}) {
    auto* control = Part<QWidget>(name);
    EXPECT_EQ(QApplication::focusWidget(), control) << name;
    EXPECT_FALSE(control->accessibleName().isEmpty()) << name;
    EXPECT_FALSE(control->toolTip().isEmpty()) << name;
    QTest::keyClick(control, Qt::Key_Tab);
  }
  for (const QAction* day : Part<QMenu>("mnuCopieSquelette")->actions())
    EXPECT_FALSE(day->shortcut().isEmpty());
}

TEST_F(SkeletonScreen, TheLettersMarkedOnItsButtonsWorkThem) {
  OpenDialogue();
  for (const char* name : {"Redondance", "BtnOk", "BtnCancel"}) {
    const auto* button = Part<QAbstractButton>(name);
    EXPECT_FALSE(button->shortcut().isEmpty()) << name;
    EXPECT_EQ(button->shortcut(), QKeySequence::mnemonic(button->text())) << name;
  }
}

// --- four languages, four sizes ---

// Texts of the dialogue that do not fit.
Names CutTexts(const QDialog& dialogue) {
  Names cut;
  for (const auto* label : dialogue.findChildren<QLabel*>()) {
    QString text = label->text();
    if (label->wordWrap()) {
      if (label->heightForWidth(label->width()) > label->height())
        cut.push_back(text.toStdString());
      continue;
    }
    if (label->fontMetrics().size(0, text.remove(u'&')).width() > label->contentsRect().width())
      cut.push_back(text.toStdString());
  }
  for (const auto* button : dialogue.findChildren<QAbstractButton*>())
    if (button->minimumSizeHint().width() > button->width())
      cut.push_back(button->text().toStdString());
  for (const auto* bar : dialogue.findChildren<QMenuBar*>())
    if (bar->actionGeometry(bar->actions().front()).right() > bar->width())
      cut.push_back("the menu");
  return cut;
}

class SkeletonSweep : public SkeletonScreen, public testing::WithParamInterface<int> {};

TEST_P(SkeletonSweep, NothingIsCutAtAnySize) {
  constexpr const char* kNames[] = {"fr", "en", "pt", "es"};
  const std::string language = kNames[GetParam()];
  on.MakeFile("Genre.Txt",
              "INSTRUMENTAL\r\nSTARTER\r\nPLAYLIST\r\nGOLD N-1\r\nGOLD N-2\r\nGOLD N-3\r\n");
  Loaded();
  on.Set("Langue", std::to_string(GetParam()));
  on.station.base.CheckCnf();
  for (const QSize& size : {QSize(800, 600), QSize(1280, 800), QSize(1920, 1080)}) {
    Open(size.width(), size.height());
    OpenDialogue();
    for (const int genre : {1, 2, 4, 2, 5, 2, 3}) Choose(genre);
    QCoreApplication::processEvents();
    const std::string where = language + "-" + std::to_string(size.width()) + "-skeleton";
    EXPECT_EQ(CutTexts(*Dialogue()), Names{}) << where;
    EXPECT_TRUE(window->size().expandedTo(Dialogue()->size()) == window->size()) << where;
    KeepPicture(*Dialogue(), where);
    Push("BtnCancel");
    Gone();
    window.reset();
  }
}

TEST_P(SkeletonSweep, NoTwoControlsShareALetter) {
  std::string letters;
  for (const char* name : {"LblGenresOfferts", "LblSquelette", "LblMinutes", "Redondance", "BtnOk",
                           "BtnCancel", "mnuCopieSquelette"}) {
    const std::string text =
        Translation(SkeletonWindowTexts(), GetParam()).Text(name, "text").toStdString();
    const size_t mark = text.find('&');
    ASSERT_LT(mark + 1, text.size()) << name;
    const char letter = static_cast<char>(std::tolower(text[mark + 1]));
    EXPECT_EQ(letters.find(letter), std::string::npos) << name << ": " << letter;
    letters += letter;
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, SkeletonSweep, testing::Values(0, 1, 2, 3));

}  // namespace
}  // namespace zemo::test
