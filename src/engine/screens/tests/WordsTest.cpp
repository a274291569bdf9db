// The routines keep their words, which are French; the screen shows the operator's.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QTableView>

#include "engine/screens/tests/ScreenFixture.h"
#include "library/OnAirRows.h"

namespace zemo::test {
namespace {

class Words : public Screen {
 protected:
  void SetUp() override {
    Screen::SetUp();
    Loaded();
    on.Set("Langue", "1");
  }
  std::string Shown(const char* view, int row, int column) {
    const QAbstractItemModel* model = Find<QTableView>(view)->model();
    return model->index(row - 1, column).data().toString().toStdString();
  }
};

TEST_F(Words, TheModeIsNamedInTheLanguageOfTheStation) {
  Open();
  EXPECT_EQ(Text("LblMode"), "Automatic mode");
  Click("Toolbar1_2");
  EXPECT_EQ(Text("LblMode"), "Live mode");
}

TEST_F(Words, QtsOwnWordsFollowTheLanguageWhileTheScreenStaysAsItWasLoaded) {
  Open();
  EXPECT_EQ(QCoreApplication::translate("QLineEdit", "&Paste"), QStringLiteral("&Paste"));
  on.Set("Langue", "3");
  window->Observe();  // as each second
  EXPECT_EQ(QCoreApplication::translate("QLineEdit", "&Paste"), QStringLiteral("&Pegar"));
  EXPECT_EQ(Text("LblMode"), "Automatic mode");
}

TEST_F(Words, TheNeutralFieldsOfAListAreTooAndItsEveryDay) {
  Open();
  Click("Toolbar1_2");
  EXPECT_EQ(Text("LblDate"), "DD/MM/YYYY");
  EXPECT_EQ(Find<QLineEdit>("ChHeure")->text(), "hh:mm");
  EXPECT_EQ(on.station.storedList.ChHeure, "hh:mn");
  Find("LblDate")->setFocus();
  Key(Qt::Key_J);
  EXPECT_EQ(Text("LblDate"), "EVERY DAY");
  EXPECT_EQ(on.station.storedList.LblDate, "JOURNALIER");
}

TEST_F(Words, TheFootTellsSecondsOfBuffers) {
  Open();
  EXPECT_EQ(Text("LblOffsetBuffers"), "2 s of buffers");
}

TEST_F(Words, RowsThatARoutineMadeAreTranslatedAndMusicStandsAsItIs) {
  on.station.PL.Add(BeginExtractRow());
  OnAirElement jingle;
  jingle.code = Element::kJingle;
  jingle.title = "Jingle avant Pubs";
  jingle.genre = "Jingle";
  on.Append(jingle);
  OnAirElement news;
  news.code = Element::kNews;
  news.title = "Pubs";  // an advertiser
  news.genre = "Rubrique";
  on.Append(news);
  on.AppendCard(on.AddCard({.artist = "Top Horaire", .genre = "RUB"}));
  Open();
  EXPECT_EQ(Shown("PL", 1, Col::kTitle), "Excerpts begin");
  EXPECT_EQ(Shown("PL", 2, Col::kTitle), "Jingle before spots");
  EXPECT_EQ(Shown("PL", 3, Col::kTitle), "Pubs");
  EXPECT_EQ(Shown("PL", 3, Col::kGenre), "News");
  EXPECT_EQ(Shown("PL", 4, Col::kTitle), "Top Horaire");
  EXPECT_EQ(Shown("PL", 4, Col::kGenre), "RUB");
}

TEST_F(Words, WhatAiredTodayHasItsKindInTheLanguage) {
  on.Sql(
      "INSERT INTO Rapport (AUTEUR, TITRE, GENRE, VARIETE, DATENUM) VALUES ('Bakery', '', 'PUB', "
      "'', 46347.3), ('ABBA', 'Waterloo', 'POP', 'WORLD', 46347.4)");
  Open();
  Click("Toolbar1_2");
  Q_EMIT Find<QComboBox>("MenuLive")->activated(static_cast<int>(BrowseList::kToday));
  const int bakery = Shown("ListRech", 1, 0) == "Bakery" ? 1 : 2;
  EXPECT_EQ(Shown("ListRech", bakery, 2), "Spot");
  EXPECT_EQ(Shown("ListRech", 3 - bakery, 2), "POP");
}

TEST_F(Words, TheButtonOfTheNextElementHasItsCaptionAndItsKeysInTheLanguage) {
  on.Set("Langue", "3");
  Open();
  EXPECT_EQ(Text("CmdStop"), "Parar");
  EXPECT_EQ(Find("CmdStop")->toolTip().toStdString(),
            "Fundido y siguiente elemento (F6, 0 numérico)");
  on.station.engine.IsRunning = true;
  Draw();
  EXPECT_EQ(Text("CmdStop"), "Siguiente");
}

TEST_F(Words, TheGridNamesItsBreaksAndTheButtonWhatItCopies) {
  DayGrid& grid = on.station.GPubJour;
  grid.SetCell(0, 3, "Grid of theSunday 22 November 2026");
  grid.SetCell(1, 0, "06:30");
  grid.SetCell(1, 2, "Rubriques");
  grid.SetCell(1, 3, "WEATHER");
  grid.SetCell(1, 53, on.MakeSound("weather.wav", 30000));
  grid.SetCell(2, 0, "07:00");
  grid.SetCell(2, 2, "Pubs");
  grid.SetCell(2, 3, "BAKERY");
  Open();
  Click("Toolbar1_3");
  QCoreApplication::processEvents();
  auto* table = Find<QTableView>("GPubJour");
  EXPECT_EQ(Shown("GPubJour", 1, 2), "News");
  EXPECT_EQ(Shown("GPubJour", 2, 2), "Spots");
  EXPECT_EQ(table->model()->headerData(3, Qt::Horizontal).toString(),
            "Grid of Sunday 22 November 2026");
  EXPECT_EQ(Text("BtnCopyPub"), "Copy the news of 06:30");  // the first one has the keyboard
  table->setCurrentIndex(table->model()->index(1, 0));
  EXPECT_EQ(Text("BtnCopyPub"), "Copy the spots of 07:00");
  table->setCurrentIndex(table->model()->index(0, 0));
  EXPECT_EQ(Text("BtnCopyPub"), "Copy the news of 06:30");
  Click("BtnCopyPub");
  Draw();
  EXPECT_EQ(on.station.PL.Row(1).code, Element::kSpot);
  EXPECT_EQ(Text("LblAvis"), "Copied by hand, news airs as spots: jingles, volume, report");
}

// The composition writes no heads in Spanish.
TEST_F(Words, TheGridHasHeadsWhereNoneAreWritten) {
  on.Set("Langue", "3");
  for (int column = 0; column < 3; ++column) on.station.GPubJour.SetCell(0, column, "");
  on.station.GPubJour.SetCell(1, 0, "06:30");
  Open();
  Click("Toolbar1_3");
  const auto* grid = Find<QTableView>("GPubJour")->model();
  EXPECT_EQ(grid->headerData(0, Qt::Horizontal).toString(), "HORA");
  EXPECT_EQ(grid->headerData(1, Qt::Horizontal).toString(), QString::fromUtf8("DURACIÓN"));
  EXPECT_EQ(grid->headerData(2, Qt::Horizontal).toString(), QString::fromUtf8("PUB/RÚB"));
}

TEST_F(Words, TheJingleOptionsOfAListTellWhatTheirLettersMean) {
  Open();
  Click("Toolbar1_2");
  const auto* options = Find<QComboBox>("OptPls");
  EXPECT_EQ(options->itemText(3), "OFF-P");
  EXPECT_EQ(options->itemData(3, Qt::ToolTipRole).toString(),
            "Without jingles; priority: cuts the element on air");
}

}  // namespace
}  // namespace zemo::test
