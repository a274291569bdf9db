// The list of cards beside the card, or in its place.
#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include "library/screens/tests/LibraryWindowFixture.h"

namespace zemo::test {
namespace {

class TheCardList : public LibraryScreenTest {};

TEST_F(TheCardList, StandsBesideTheCardFrom1280PixelsOn) {
  AddSongs();
  Open(1280, 800);
  EXPECT_TRUE(Seen("PLDisco"));
  EXPECT_TRUE(Seen("ChAuteur"));
  EXPECT_EQ(Column("PLDisco", 0), (Names{"ABBA", "CHER", "Édith"}));
  EXPECT_EQ(Column("PLDisco", 2), (Names{"03:05", "03:05", "03:05"}));
  EXPECT_EQ(Selected("PLDisco", 0), (Names{"CHER"}));  // the card shown
}

TEST_F(TheCardList, TakesTheCardsPlaceInANarrowWindow) {
  AddSongs();
  Open(1024, 768);
  EXPECT_FALSE(Seen("PLDisco"));
  EXPECT_TRUE(Seen("ChAuteur"));
  Menu("MnuListe");
  EXPECT_TRUE(Seen("PLDisco"));
  EXPECT_FALSE(Seen("ChAuteur"));
  ClickRow("PLDisco", 2);
  EXPECT_EQ(Text("ChAuteur"), "Édith");
  EXPECT_TRUE(Seen("PLDisco"));
  Click("BtnFicheDisco");
  EXPECT_FALSE(Seen("PLDisco"));
  EXPECT_TRUE(Seen("ChAuteur"));
}

TEST_F(TheCardList, ADoubleClickInANarrowWindowShowsTheCard) {
  AddSongs();
  Open(1024, 768);
  Menu("MnuListe");
  ClickCell("PLDisco", 0, 0, true);
  EXPECT_FALSE(Seen("PLDisco"));
  EXPECT_EQ(Text("ChAuteur"), "ABBA");
}

TEST_F(TheCardList, AClickShowsTheCard) {
  AddSongs();
  Open();
  ClickRow("PLDisco", 2);
  EXPECT_EQ(Text("ChAuteur"), "Édith");
  EXPECT_TRUE(Seen("PLDisco"));
}

TEST_F(TheCardList, ShowsTheOrderInWhichItIsFilledAndItsHeadTurnsIt) {
  AddSongs();
  Open();
  const QHeaderView& heads = *Table("PLDisco").horizontalHeader();
  EXPECT_TRUE(heads.isSortIndicatorShown());
  EXPECT_EQ(heads.sortIndicatorSection(), 0);
  EXPECT_EQ(heads.sortIndicatorOrder(), Qt::AscendingOrder);
  EXPECT_NE(heads.toolTip().indexOf(QStringLiteral("Trier par")), -1);
  ClickHead("PLDisco", 0);
  EXPECT_EQ(Column("PLDisco", 0), (Names{"Édith", "CHER", "ABBA"}));
}

TEST_F(TheCardList, ByItsLengthsTheTitlesWithoutASecondOfSoundComeFirst) {
  for (const int ms : {185000, 900, 61000})
    on.AddCard({.lengthMs = ms, .artist = "A", .title = "T"});
  Open();
  ClickHead("PLDisco", 2);
  EXPECT_EQ(Column("PLDisco", 2), (Names{"--:--", "01:01", "03:05"}));
}

TEST_F(TheCardList, IsAsHighAsWholeRows) {
  for (int song = 0; song < 60; ++song) AddSong("A" + std::to_string(song), "T");
  Open();
  for (const QSize& size : {QSize(1280, 800), QSize(1280, 811), QSize(1920, 1080)}) {
    window->resize(size);
    QApplication::processEvents();
    const QTableView& table = Table("PLDisco");
    EXPECT_TRUE(QTest::qWaitFor([&] {
      return table.viewport()->height() % table.rowHeight(0) == 0;
    })) << size.height();
    EXPECT_GT(table.viewport()->height(), 10 * table.rowHeight(0));
  }
}

TEST_F(TheCardList, AHeadSortsItAndASecondClickTurnsItRound) {
  AddSongs();
  Open();
  ClickHead("PLDisco", 1);
  EXPECT_EQ(Column("PLDisco", 1), (Names{"Believe", "Milord", "Waterloo"}));
  EXPECT_EQ(Selected("PLDisco", 1), (Names{"Believe"}));
  ClickHead("PLDisco", 1);
  EXPECT_EQ(Column("PLDisco", 1), (Names{"Waterloo", "Milord", "Believe"}));
}

TEST_F(TheCardList, CodesAreSortedAsNumbers) {
  for (int song = 0; song < 10; ++song) AddSong(std::to_string(9 - song), "T");
  Open(1920, 1080);
  ClickHead("PLDisco", 5);
  EXPECT_EQ(Column("PLDisco", 5), (Names{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
}

TEST_F(TheCardList, SearchesArtistAndTitleWithoutRegardToCase) {
  AddSongs();
  Open();
  Type("RechDisco", "É");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"Édith"}));
  Type("RechDisco", "édITH");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"Édith"}));
  Type("RechDisco", "be");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"CHER"}));
  Type("RechDisco", "");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"ABBA", "CHER", "Édith"}));
}

TEST_F(TheCardList, SeveralRowsAreDeletedTogether) {
  AddSongs();
  Open();
  ClickRow("PLDisco", 0);
  ClickRow("PLDisco", 1, Qt::ControlModifier);
  EXPECT_EQ(Text("ChAuteur"), "CHER");
  on.messages.AnswerNext(Answer::kYes);
  Menu("MnuDelete");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque"), "1");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"Édith"}));
  EXPECT_EQ(Text("ChAuteur"), "Édith");
}

TEST_F(TheCardList, WhatIsSearchedAwayIsNotDeleted) {
  AddSongs();
  Open();
  ClickRow("PLDisco", 0);
  ClickRow("PLDisco", 1, Qt::ControlModifier);
  Type("RechDisco", "cher");
  on.messages.AnswerNext(Answer::kYes);
  Menu("MnuDelete");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque"), "2");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque WHERE AUTEUR = 'ABBA'"), "1");
}

TEST_F(TheCardList, ItsSelectionGoesWithTheCardShown) {
  AddSongs();
  Open();
  ClickRow("PLDisco", 0);
  Click("BtnPlus");  // by number: Édith comes behind ABBA
  EXPECT_EQ(Text("ChAuteur"), "Édith");
  EXPECT_EQ(Selected("PLDisco", 0), (Names{"Édith"}));
}

TEST_F(TheCardList, OtherStationsCardsAreSeenWhenItIsFilledAgain) {
  AddSongs();
  Open();
  AddSong("NENA", "99");
  Menu("Replacer");
  EXPECT_EQ(Column("PLDisco", 0).size(), 3U);
  Menu("MnuListe");
  EXPECT_EQ(Column("PLDisco", 0).size(), 4U);
}

TEST_F(TheCardList, SeveralCardsGetWhatIsTicked) {
  AddSongs();
  Open();
  EXPECT_FALSE(On("MnuGive"));
  ClickRow("PLDisco", 0);
  ClickRow("PLDisco", 1, Qt::ControlModifier);
  ASSERT_TRUE(On("MnuGive"));
  Type("ChNbPassJour", "4");
  Type("ChTitre", "not stored");
  QTest::keyClick(window.get(), Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(Text("LblGive"),
            "Appliquer aux 2 fiches sélectionnées les champs cochés, tels qu'affichés :");
  EXPECT_TRUE(Find<QCheckBox>("GiveNbPassJour")->isChecked());  // as it was changed
  EXPECT_FALSE(Find<QCheckBox>("GiveGenre")->isChecked());
  EXPECT_EQ(Text("GiveNbPassJour"), "Passages par jour – 4");
  KeepPicture(*Find("FrmGive"), "library-give-fr");
  Click("BtnGive");
  EXPECT_EQ(on.SqlText("SELECT group_concat(NBPASSJOUR) FROM (SELECT NBPASSJOUR FROM Discotheque "
                       "ORDER BY CODE)"),
            "4,4,1");
  EXPECT_EQ(Stored("TITRE", 1), "Believe");
  EXPECT_EQ(Text("ChTitre"), "not stored");
  EXPECT_EQ(Selected("PLDisco", 0), (Names{"ABBA", "CHER"}));
}

TEST_F(TheCardList, CancelGivesNothing) {
  AddSongs();
  Open();
  ClickRow("PLDisco", 0);
  ClickRow("PLDisco", 2, Qt::ShiftModifier);
  Menu("MnuGive");
  EXPECT_FALSE(Find("BtnGive")->isEnabled());  // nothing is ticked
  Click("GiveVariete");
  EXPECT_TRUE(Find("BtnGive")->isEnabled());
  QTest::keyClick(Find("FrmGive"), Qt::Key_Escape);
  EXPECT_EQ(on.SqlText("SELECT COUNT(DISTINCT VARIETE) FROM Discotheque"), "1");
}

class ALargeCardList : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    on.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
        "INSERT INTO Discotheque (AUTEUR, TITRE, FILENAME) SELECT 'ARTIST ' || (10000 - i), "
        "'T' || i, '/' || i || '.wav' FROM n");
  }
  bool IsFilled(int rows) {
    return QTest::qWaitFor([&] { return Table("PLDisco").model()->rowCount() == rows; });
  }
};

TEST_F(ALargeCardList, IsFilledWhileTheCardCanBeEdited) {
  window = std::make_unique<LibraryWindow>(on.station, sources);
  window->Open();
  window->resize(1280, 800);
  EXPECT_EQ(Table("PLDisco").model()->rowCount(), 0);
  Type("ChTitre", "first");
  EXPECT_TRUE(On("Replacer"));
  ASSERT_TRUE(IsFilled(5000));
  EXPECT_EQ(Text("ChTitre"), "first");
  EXPECT_EQ(Column("PLDisco", 0)[4999], "ARTIST 9999");
  EXPECT_EQ(Selected("PLDisco", 0), (Names{"ARTIST 9999"}));  // card 1
}

TEST_F(ALargeCardList, StandsWhileItIsFilledAgainAndKeepsWhatWasDoneMeanwhile) {
  Open();
  ASSERT_TRUE(IsFilled(5000));
  ClickRow("PLDisco", 0);
  Find<QAction>("MnuListe")->trigger();
  EXPECT_EQ(Table("PLDisco").model()->rowCount(), 5000);
  on.messages.AnswerNext(Answer::kYes);
  Find<QAction>("MnuDelete")->trigger();  // card 5000, which the filling had not read
  ASSERT_TRUE(IsFilled(4999));
  QTest::qWait(0);
  Find<QAction>("MnuListe")->trigger();
  Type("ChAuteur", "AAA");
  Find<QAction>("Replacer")->trigger();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Column("PLDisco", 0)[0] == "AAA"; }));
  EXPECT_EQ(Table("PLDisco").model()->rowCount(), 4999);
}

TEST_F(ALargeCardList, IsPrintedWholeWhereItIsBeingFilled) {
  std::string printed;
  sources.questions.choosePrinter = [&](QWidget*, QPrinter&) {
    printed = std::to_string(Table("PLDisco").model()->rowCount());
    return false;
  };
  window = std::make_unique<LibraryWindow>(on.station, sources);
  window->Open();
  window->resize(1280, 800);
  Find<QAction>("MnuImp")->trigger();
  EXPECT_EQ(printed, "5000");
}

TEST_F(TheCardList, ACardThatWasSearchedAwayLeavesItWhenItIsDeleted) {
  AddSongs();
  Open();
  Type("RechDisco", "abba");
  EXPECT_EQ(Text("ChAuteur"), "CHER");
  on.messages.AnswerNext(Answer::kYes);
  Menu("MnuDelete");
  Type("RechDisco", "");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"ABBA", "Édith"}));
}

TEST_F(TheCardList, KeepsPlaceSortAndSelectionOverAnEdit) {
  for (int song = 0; song < 100; ++song)
    AddSong("ARTIST " + std::to_string(100 + song), std::to_string(999 - song));
  Open();
  ClickHead("PLDisco", 1);
  QTableView& list = Table("PLDisco");
  list.verticalScrollBar()->setValue(40);
  const int row = 45;
  ClickRow("PLDisco", row);
  EXPECT_EQ(Selected("PLDisco", 1), (Names{"945"}));
  Type("ChCommentaire", "heard");
  Type("ChAuteur", "RENAMED");
  Menu("Replacer");
  EXPECT_EQ(list.verticalScrollBar()->value(), 40);
  EXPECT_EQ(Selected("PLDisco", 1), (Names{"945"}));
  EXPECT_EQ(Selected("PLDisco", 0), (Names{"RENAMED"}));
  EXPECT_EQ(Column("PLDisco", 1)[row], "945");
}

}  // namespace
}  // namespace zemo::test
