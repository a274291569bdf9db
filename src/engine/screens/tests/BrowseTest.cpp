// ListRech on the screen: the search in a large library, what the list shows of each entry, its
// keys, its selection, and what the overlay button makes of it.
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>
#include <QToolTip>

#include "engine/screens/LiveFrame.h"
#include "engine/screens/tests/ScreenFixture.h"
#include "scheduling/LibrarySearch.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

class Browse : public Screen {
 protected:
  void OpenLive(int width = 1280, int height = 800) {
    Open(width, height);
    Click("Toolbar1_2");
    QCoreApplication::processEvents();
  }
  LiveFrame& Frame() { return *static_cast<LiveFrame*>(Find("CadreRech")); }
  BrowseView& Found() { return *static_cast<BrowseView*>(Find("ListRech")); }
  void Library() {
    Loaded();
    on.AddCard({.artist = "CHER", .title = "BELIEVE", .genre = "POP"});
    on.AddCard({.artist = "ABBA", .title = "WATERLOO", .genre = "POP"});
    on.AddCard({.artist = "QUEEN", .title = "INNUENDO", .genre = "ROCK"});
  }
  void Cards(int count) {
    Loaded();
    on.Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
           std::to_string(count) +
           ") INSERT INTO Discotheque (AUTEUR, TITRE, DUREE, GENRE, VARIETE, FILENAME) SELECT "
           "'ARTIST ' || i, 'SONG', 180000, 'POP', 'NATIONAL', '/m' || i || '.mp3' FROM n");
  }
  void Searched() {
    for (int turn = 0; Frame().Searching() && turn < 10000; ++turn)
      QCoreApplication::processEvents();
    EXPECT_FALSE(Frame().Searching());
    Draw();
  }
  void Type(const char* text) {
    auto* box = Find<QLineEdit>("Rech");
    box->setFocus();
    box->clear();
    QTest::keyClicks(box, QString::fromUtf8(text));
  }
  Names Texts() {
    Names names;
    for (int row = 0; row < Found().model()->rowCount(); ++row)
      names.push_back(Found().model()->index(row, 0).data().toString().toStdString());
    return names;
  }
  QPoint At(int row) {  // from 0
    return {30, Found().rowViewportPosition(row) + Found().rowHeight(row) / 2};
  }
  void ClickRow(int row, Qt::KeyboardModifiers with = Qt::NoModifier,
                Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(Found().viewport(), button, with, At(row));
  }
  void ClickHead(int column) {
    QHeaderView* heads = Found().horizontalHeader();
    QTest::mouseClick(heads->viewport(), Qt::LeftButton, {},
                      {heads->sectionViewportPosition(column) + 10, heads->height() / 2});
    Searched();
  }
  QString Head(int column) {
    return Found().model()->headerData(column, Qt::Horizontal).toString();
  }
  QMenu* Menu() { return window->findChild<QMenu*>("MenuListRech"); }
  QAction* Entry(const char* name) {
    QAction* entry = Menu() ? Menu()->findChild<QAction*>(name) : nullptr;
    if (!entry) ADD_FAILURE() << "no entry " << name;
    return entry;
  }
};

// --- the search in a library of many slices ---

TEST_F(Browse, ALargeLibraryShowsItsFirstRowsWithTheKeyAndAllOfThemSoon) {
  Cards(20000);
  OpenLive();
  Type("*");
  EXPECT_TRUE(Frame().Searching());  // the key's handler has come back before the end
  EXPECT_EQ(Found().model()->rowCount(), 2000);
  Searched();
  EXPECT_EQ(Found().model()->rowCount(), 20000);
  EXPECT_EQ(Texts().back(), "ARTIST 20000");
}

TEST_F(Browse, TheLoopRunsBetweenTheSlices) {
  Cards(20000);
  OpenLive();
  int turns = 0;
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, [&] { turns += Frame().Searching() ? 1 : 0; });
  tick.start(0);
  Type("*");
  Searched();
  EXPECT_GE(turns, 5);  // nine slices of 2000 cards after the first
}

TEST_F(Browse, TheLibraryIsReadAheadWhileTheListShows) {
  Cards(5000);
  OpenLive();
  EXPECT_TRUE(Frame().ReadingAhead());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !Frame().ReadingAhead(); }, 5000));
  on.station.browse.Rech = "ARTIST 4999";
  BeginTextSearch(on.station);
  EXPECT_EQ(SearchSlice(on.station), SearchTurn::kDone);  // there is nothing to read any more
}

TEST_F(Browse, ANewKeystrokeDropsTheSearchBefore) {
  Cards(20000);
  OpenLive();
  Type("ARTI");
  EXPECT_TRUE(Frame().Searching());
  Type("T 19999");
  Searched();
  EXPECT_EQ(Texts(), Names{"ARTIST 19999"});
}

TEST_F(Browse, AnotherEntryOfTheMenuDropsTheSearch) {
  Cards(20000);
  OpenLive();
  Type("*");
  Frame().Browse(BrowseList::kSpots);
  EXPECT_FALSE(Frame().Searching());
  QCoreApplication::processEvents();
  Draw();
  EXPECT_EQ(Found().model()->rowCount(), 0);
}

TEST_F(Browse, AWriteAfterTheLastSearchIsFoundByTheNextOne) {
  Cards(5000);
  OpenLive();
  Type("T 49");
  Searched();
  on.Sql("UPDATE Discotheque SET AUTEUR = 'RENAMED' WHERE CODE = 4900");
  on.Sql("DELETE FROM Discotheque WHERE CODE = 4901");
  Type("T 490");
  Searched();
  EXPECT_EQ(Texts(),
            (Names{"ARTIST 490", "ARTIST 4902", "ARTIST 4903", "ARTIST 4904", "ARTIST 4905",
                   "ARTIST 4906", "ARTIST 4907", "ARTIST 4908", "ARTIST 4909"}));
}

TEST_F(Browse, AWriteThatDoesNotTouchTheFindsLeavesTheChoiceAlone) {
  Cards(20000);
  OpenLive();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !Frame().ReadingAhead(); }, 5000));
  Type("T 1999");
  Searched();
  on.Sql("UPDATE Discotheque SET TITRE = 'AGAIN'");  // more than one slice takes in
  Type("T 19999");
  EXPECT_TRUE(Frame().Searching());  // what is known answers at once, the table is read behind it
  ASSERT_EQ(Texts(), Names{"ARTIST 19999"});
  Found().selectRow(0);
  Searched();
  EXPECT_EQ(Found().SelectedRows(), std::vector<int>{0});
  EXPECT_EQ(Found().model()->index(0, 1).data().toString(), "AGAIN");
}

TEST_F(Browse, AHeadSortsALargeListBetweenTheTicks) {
  Cards(20000);
  OpenLive();
  Type("*");
  Searched();
  QHeaderView* heads = Found().horizontalHeader();
  QTest::mouseClick(heads->viewport(), Qt::LeftButton, {},
                    {heads->sectionViewportPosition(0) + 10, heads->height() / 2});
  EXPECT_TRUE(Frame().Searching());
  Searched();
  const Names sorted = Texts();
  ASSERT_EQ(sorted.size(), 20000U);
  EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
  EXPECT_EQ(sorted[0], "ARTIST 1");
  EXPECT_EQ(sorted[1], "ARTIST 10");
}

// --- what comes back ---

TEST_F(Browse, ATextThatStaysIsLookedForAgainWhenTheListComesBack) {
  Library();
  OpenLive();
  Type("*");
  Searched();
  auto* menu = Find<QComboBox>("MenuLive");
  menu->setFocus();
  QTest::keyClick(menu, Qt::Key_Down);
  Draw();
  EXPECT_TRUE(Texts().empty());
  QTest::keyClick(menu, Qt::Key_Up);
  Searched();
  EXPECT_EQ(Texts(), (Names{"CHER", "ABBA", "QUEEN"}));
  Click("Toolbar1_2");  // the same mode again
  Searched();
  EXPECT_EQ(Find<QLineEdit>("Rech")->text(), "*");
  EXPECT_EQ(Texts(), (Names{"CHER", "ABBA", "QUEEN"}));
}

TEST_F(Browse, CtrlFOnlyMovesTheKeyboardWhileMusicShows) {
  Library();
  OpenLive();
  Type("*");
  Searched();
  Found().setFocus();
  Found().selectRow(1);
  QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(Find("Rech")->hasFocus());
  EXPECT_EQ(Found().SelectedRows(), std::vector<int>{1});
  Frame().Browse(BrowseList::kJingles);
  QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
  Searched();
  EXPECT_EQ(on.station.browse.ListRech.list, BrowseList::kMusic);
  EXPECT_EQ(Texts().size(), 3U);
}

TEST_F(Browse, AGenreComesSortedAfterAHeadWasClickedAndATextInTableOrder) {
  Library();
  OpenLive();
  Frame().LoadGenres();
  auto* genres = Find<QComboBox>("RechGenre");
  genres->addItem("POP");
  const auto choose = [&] {
    genres->setCurrentIndex(genres->count() - 2);
    genres->setFocus();
    QTest::keyClick(genres, Qt::Key_Down);
    Searched();
  };
  choose();
  EXPECT_EQ(Texts(), (Names{"CHER", "ABBA"}));
  ClickHead(0);
  EXPECT_EQ(Texts(), (Names{"ABBA", "CHER"}));
  choose();
  EXPECT_EQ(Texts(), (Names{"ABBA", "CHER"}));
  EXPECT_TRUE(Found().horizontalHeader()->isSortIndicatorShown());
  Type("*");
  Searched();
  EXPECT_EQ(Texts(), (Names{"CHER", "ABBA", "QUEEN"}));
  EXPECT_FALSE(Found().horizontalHeader()->isSortIndicatorShown());
  EXPECT_EQ(genres->currentIndex(), 0);  // the list shows no genre any more
}

// --- heads and columns ---

TEST_F(Browse, TheArrowStandsOverTheSortedColumnAndAlwaysUpwards) {
  Library();
  OpenLive();
  Type("*");
  Searched();
  for (int again = 0; again < 2; ++again) {
    ClickHead(1);
    EXPECT_TRUE(Found().horizontalHeader()->isSortIndicatorShown());
    EXPECT_EQ(Found().horizontalHeader()->sortIndicatorSection(), 1);
    EXPECT_EQ(Found().horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
    EXPECT_EQ(Texts(), (Names{"CHER", "QUEEN", "ABBA"}));
  }
}

// 800 pixels leave the search about 330: enough for artist, title and length.
TEST_F(Browse, OnTheSmallestScreenTitlesAreReadAndWhatDoesNotFitIsLeftOut) {
  on.Load();
  on.AddCard({.artist = "The Quiet Harbour", .title = "Riverside Morning"});
  OpenLive(800, 600);
  Type("*");
  Searched();
  for (const int column : {0, 1}) {
    const QString text = Found().model()->index(0, column).data().toString();
    EXPECT_GE(Found().columnWidth(column), Found().fontMetrics().horizontalAdvance(text) + 6)
        << column;
  }
  EXPECT_TRUE(Found().isColumnHidden(10));
  EXPECT_FALSE(Found().horizontalScrollBar()->isVisible());
  window->resize(1920, 1080);
  QCoreApplication::processEvents();
  for (const int column : {0, 1, 2, 3, 4, 10}) EXPECT_FALSE(Found().isColumnHidden(column));
}

class BrowseHeads : public Browse, public testing::WithParamInterface<int> {};

TEST_P(BrowseHeads, EveryShownColumnHasAHeadThatFitsAndTheViewIsFull) {
  on.Load();
  on.Set("Langue", std::to_string(GetParam()));
  on.station.base.CheckCnf();
  OpenLive();
  for (const QSize& size :
       {QSize(800, 600), QSize(1024, 768), QSize(1280, 800), QSize(1920, 1080)}) {
    window->resize(size);
    QCoreApplication::processEvents();
    for (int list = 0; list <= static_cast<int>(BrowseList::kToday); ++list) {
      Frame().Browse(static_cast<BrowseList>(list));
      QCoreApplication::processEvents();
      int width = 0;
      for (int column = 0; column < kColumns; ++column) {
        if (Found().isColumnHidden(column)) continue;
        width += Found().columnWidth(column);
        EXPECT_FALSE(Head(column).isEmpty()) << list << ":" << column;
        EXPECT_GE(Found().columnWidth(column),
                  Found().horizontalHeader()->fontMetrics().horizontalAdvance(Head(column)) + 10)
            << list << ":" << Head(column).toStdString() << " at " << size.width();
      }
      EXPECT_GE(width, Found().viewport()->width()) << list << " at " << size.width();
      // What does not fit can be scrolled to.
      EXPECT_EQ(Found().horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Languages, BrowseHeads, testing::Values(0, 1, 2, 3));

TEST_F(Browse, MusicAndJinglesTellWhenTheyWereLastOnAir) {
  Library();
  on.Sql("UPDATE Discotheque SET LASTDIFF = 46347.5 WHERE AUTEUR = 'ABBA'");
  OpenLive(1920, 1080);
  Type("ABBA");
  Searched();
  EXPECT_FALSE(Found().isColumnHidden(10));
  EXPECT_EQ(Head(10), "Dernier passage");
  EXPECT_EQ(Found().model()->index(0, 10).data().toString(), "2026/11/21  12:00:00");
  KeepPicture(*window, "search-one");
  Frame().Browse(BrowseList::kJingles);
  EXPECT_FALSE(Found().isColumnHidden(4));
  EXPECT_EQ(Head(4), "Dernier passage");
}

// For a person to look at.
TEST_F(Browse, PicturesOfASearchWithFinds) {
  Cards(40);
  Library();
  on.Sql("UPDATE Discotheque SET LASTDIFF = 46347.5 - CODE / 9.0");
  OpenLive();
  Type("*");
  Searched();
  ClickHead(1);
  ClickRow(2);
  for (const QSize& size : {QSize(800, 600), QSize(1280, 800), QSize(1920, 1080)}) {
    window->resize(size);
    QCoreApplication::processEvents();
    Draw();
    KeepPicture(*window, "search-" + std::to_string(size.width()));
  }
}

TEST_F(Browse, TheListStandsStillWhenTheSearchGivesWay) {
  Library();
  OpenLive();
  const QRect list = Found().geometry();
  const QRect menu = Find("MenuLive")->geometry();
  for (const BrowseList entry : {BrowseList::kJingles, BrowseList::kSpots, BrowseList::kToday}) {
    Frame().Browse(entry);
    QCoreApplication::processEvents();
    EXPECT_EQ(Found().geometry(), list) << static_cast<int>(entry);
    EXPECT_EQ(Find("MenuLive")->geometry(), menu) << static_cast<int>(entry);
  }
}

TEST_F(Browse, ACutTextShowsWholeInItsTipAndElsewhereTheListTellsItsKeys) {
  Loaded();
  on.AddCard({.artist = "THE ORCHESTRA OF A VERY LONG NAME INDEED", .title = "IT"});
  OpenLive(800, 600);
  Type("*");
  Searched();
  const auto tipAt = [&](int column) {
    const QPoint at = Found().visualRect(Found().model()->index(0, column)).center();
    QHelpEvent help(QEvent::ToolTip, at, Found().viewport()->mapToGlobal(at));
    QApplication::sendEvent(Found().viewport(), &help);
    return QToolTip::text();
  };
  EXPECT_EQ(tipAt(0), "THE ORCHESTRA OF A VERY LONG NAME INDEED");
  EXPECT_EQ(tipAt(1), Found().toolTip());
  EXPECT_TRUE(Found().toolTip().contains("Ins"));
  EXPECT_TRUE(Found().toolTip().contains("Menu"));
}

// --- selection, mouse and keys ---

TEST_F(Browse, AClickOnOneOfSeveralSelectedRowsChoosesThatOne) {
  Library();
  OpenLive();
  Type("*");
  Searched();
  ClickRow(0);
  ClickRow(2, Qt::ShiftModifier);
  EXPECT_EQ(Found().SelectedRows(), (std::vector<int>{0, 1, 2}));
  ClickRow(1);
  EXPECT_EQ(Found().SelectedRows(), std::vector<int>{1});
  EXPECT_EQ(Found().ChosenRow(), 1);
}

TEST_F(Browse, ADragOfSeveralSelectedRowsTakesThemAll) {
  Library();
  OpenLive();
  Type("*");
  Searched();
  ClickRow(0);
  ClickRow(2, Qt::ControlModifier);
  QWidget* found = Found().viewport();
  const QPoint below = found->mapFromGlobal(
      List().viewport()->mapToGlobal(QPoint(30, List().viewport()->height() - 5)));
  QTest::mousePress(found, Qt::LeftButton, {}, At(2));
  QTest::mouseMove(found, below);
  QTest::mouseRelease(found, Qt::LeftButton, {}, below);
  EXPECT_EQ(Titles(), (Names{"CHER", "QUEEN"}));
  EXPECT_EQ(Found().SelectedRows(), (std::vector<int>{0, 2}));
}

TEST_F(Browse, AllOfALargeListIsRefusedWithAWord) {
  Cards(501);
  std::string told;
  on.messages.shown = [&](const std::string&, const std::string& text, Buttons, Answer) {
    told = text;
  };
  OpenLive();
  Type("*");
  Searched();
  Found().setFocus();
  Key(Qt::Key_A, Qt::ControlModifier);
  Key(Qt::Key_Insert);
  EXPECT_EQ(told, "500 éléments au plus à la fois : choisissez-en moins");
  EXPECT_TRUE(on.station.PL.Empty());
  ClickRow(0, Qt::ControlModifier);  // one less
  Found().setFocus();
  Key(Qt::Key_Insert);
  EXPECT_EQ(on.station.PL.Count(), 500);
}

TEST_F(Browse, FromTheTextToTheListToTheAirByKeysAlone) {
  Library();
  OpenLive();
  QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), "*");
  Searched();
  Key(Qt::Key_Return);
  EXPECT_TRUE(Found().hasFocus());
  EXPECT_EQ(Found().SelectedRows(), std::vector<int>{0});
  Key(Qt::Key_Down);
  Key(Qt::Key_Return);
  EXPECT_EQ(Titles(), Names{"ABBA"});
}

TEST_F(Browse, TheMenuKeyDoesWhatTheMouseDoes) {
  int32_t card = 0;
  std::string file;
  sources.openMusicCard = [&](int32_t code) { card = code; };
  sources.openSelector = [&](const std::string& path) { file = path; };
  Library();
  OpenLive();
  Type("*");
  Searched();
  Found().setFocus();
  Found().selectRow(1);
  Key(Qt::Key_Menu);
  ASSERT_TRUE(Menu());
  Entry("BrowseCard")->trigger();
  EXPECT_EQ(card, on.station.browse.ListRech.rows.Code(1));
  Entry("BrowseListen")->trigger();
  EXPECT_EQ(file, on.station.browse.ListRech.rows.Cell(1, 5));
  Entry("BrowseInsert")->trigger();
  EXPECT_EQ(Titles(), Names{"ABBA"});
  QMenu* sort = Entry("BrowseSort")->menu();
  ASSERT_TRUE(sort);
  ASSERT_EQ(sort->actions().size(), 6);  // artist, title, length, genre, variety, last on air
  sort->actions()[1]->trigger();
  Searched();
  EXPECT_EQ(Texts(), (Names{"CHER", "QUEEN", "ABBA"}));
  Menu()->close();
}

TEST_F(Browse, ShiftF10OpensTheMenuAndWithoutARowOnlySortingIsOffered) {
  Library();
  OpenLive();
  Found().setFocus();
  Key(Qt::Key_F10, Qt::ShiftModifier);
  ASSERT_TRUE(Menu());
  EXPECT_FALSE(Entry("BrowseInsert")->isEnabled());
  EXPECT_FALSE(Entry("BrowseCard")->isEnabled());
  EXPECT_TRUE(Entry("BrowseSort")->isEnabled());
  Menu()->close();
}

TEST_F(Browse, TheRightButtonOpensTheCardOfMusicOnlyUnlessTheScreenIsLocked) {
  int opened = 0;
  sources.openMusicCard = [&](int32_t) { ++opened; };
  Library();
  on.Sql("INSERT INTO DiscothequeJingle (FILENAME, DUREE, LIBELLE) VALUES ('/j.wav', 5000, 'TOP')");
  OpenLive();
  Type("*");
  Searched();
  ClickRow(0, Qt::NoModifier, Qt::RightButton);
  EXPECT_EQ(opened, 1);
  on.station.lists.Locked = true;
  ClickRow(0, Qt::NoModifier, Qt::RightButton);
  EXPECT_EQ(opened, 1);
  on.station.lists.Locked = false;
  Frame().Browse(BrowseList::kJingles);
  ClickRow(0, Qt::NoModifier, Qt::RightButton);
  EXPECT_EQ(opened, 1);
}

TEST_F(Browse, ADoubleClickOpensTheSelectorOnTheRowsFile) {
  std::string file;
  sources.openSelector = [&](const std::string& path) { file = path; };
  Library();
  OpenLive();
  Type("*");
  Searched();
  QTest::mouseDClick(Found().viewport(), Qt::LeftButton, {}, At(2));
  EXPECT_EQ(file, on.station.browse.ListRech.rows.Cell(2, 5));
  EXPECT_FALSE(file.empty());
}

// --- the overlay button ---

class OverlayOfRow : public Browse {
 protected:
  void OnAir() {
    Library();
    AddTitles(2);
    OpenLive();
    Click("Toolbar1_5");
    Run(2000);
    Type("*");
    Searched();
    Found().setFocus();
  }
  Names Overlays() {
    Names files;
    for (const auto& event : on.Events("overlay"))
      if (event["reason"] == "key") files.push_back(event["file"]);
    return files;
  }
  void PressF8() {
    QTest::keyClick(window.get(), Qt::Key_F8);
    Draw();
  }
  std::string FileOf(size_t row) {
    return std::string(on.station.browse.ListRech.rows.Cell(row, 5));
  }
};

TEST_F(OverlayOfRow, PlaysTheRowThatIsChosenAtThePressByMouseOrKeys) {
  OnAir();
  ClickRow(2);
  PressF8();
  ASSERT_EQ(Overlays().size(), 1U);
  EXPECT_EQ(Overlays()[0], FileOf(2));
  Key(Qt::Key_Up);  // the row above, without the mouse
  PressF8();
  ASSERT_EQ(Overlays().size(), 2U);
  EXPECT_EQ(Overlays()[1], FileOf(1));
  Click("BtnSurImpression");
  ASSERT_EQ(Overlays().size(), 3U);
  EXPECT_EQ(Overlays()[2], FileOf(1));
}

TEST_F(OverlayOfRow, ARowThatWasChosenBeforeASortOrASearchPlaysNoMore) {
  OnAir();
  ClickRow(1);
  ClickHead(1);
  PressF8();
  EXPECT_TRUE(Overlays().empty());
  EXPECT_FALSE(Button("BtnSurImpression")->isEnabled());
  ClickRow(1);
  Type("ABBA");
  Searched();
  PressF8();
  EXPECT_TRUE(Overlays().empty());
}

TEST_F(OverlayOfRow, NothingPlaysInAutomaticModeWhereTheListIsHidden) {
  OnAir();
  ClickRow(1);
  Click("Toolbar1_1");
  EXPECT_FALSE(Button("BtnSurImpression")->isEnabled());
  PressF8();
  EXPECT_TRUE(Overlays().empty());
}

TEST_F(OverlayOfRow, TheButtonSaysWhatItWillPlay) {
  OnAir();
  EXPECT_FALSE(Button("BtnSurImpression")->isEnabled());
  ClickRow(0);
  EXPECT_TRUE(Button("BtnSurImpression")->isEnabled());
  EXPECT_EQ(Button("BtnSurImpression")->toolTip(), "Joue « CHER » par-dessus l'antenne (F8)");
  Frame().Browse(BrowseList::kToday);  // rows that are no files
  Draw();
  if (Found().model()->rowCount() > 0) ClickRow(0);
  EXPECT_FALSE(Button("BtnSurImpression")->isEnabled());
}

}  // namespace
}  // namespace zemo::test
