// The live mode's browse list: what its entries show, the search, and drops into PL.
#include <gtest/gtest.h>

#include "engine/LiveMode.h"
#include "engine/MainScreenPicture.h"
#include "engine/OperatorControls.h"
#include "scheduling/LibrarySearch.h"
#include "station/OnAirColumns.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class LiveList : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    on.Sql(
        "INSERT INTO DiscothequeJingle (FILENAME, DUREE, LIBELLE, POINTSORTIE, SURIMPRESSION, "
        "LASTDIFF) VALUES ('/j.wav', 5000, 'OVER', 300, -1, 46347.5), ('/k.wav', 65000, 'BESIDE', "
        "0, 0, 0)");
    on.Sql(
        "INSERT INTO GrillePub (FILENAMEAUDIO, DUREE, ANNONCEUR, CATEGORIE, PUB) VALUES "
        "('/p.wav', 30000, 'BAKER', 'FOOD', -1), ('/r.wav', 60000, 'WEATHER', 'NEWS', 0)");
    on.Sql(
        "INSERT INTO DiscothequeVirgule (FILENAME, DUREE, LIBELLE, TOUCHE, POINTSORTIE) VALUES "
        "('/v.wav', 2000, 'STING', 3, 100)");
  }
  BrowseRows& List() { return on.station.browse.ListRech; }
  std::string Cell(size_t row, int column) {
    return row < List().rows.size() ? std::string(List().rows.Cell(row, column)) : "no such row";
  }
  void Type(const std::string& text) {
    on.station.browse.Rech = text;
    OnAir::Rech_Change(on.station);
  }
  void Cards(int count) {
    on.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(count) +
        ") INSERT INTO Discotheque (AUTEUR, TITRE, DUREE, GENRE, VARIETE, FILENAME, POINTSORTIE, "
        "INTRO) SELECT 'ARTIST ' || i, 'Song', 180000, 'POP', 'NATIONAL', '/m' || i || '.mp3', "
        "1500, 7 FROM n");
  }
  TestStation on;
};

TEST_F(LiveList, JinglesSayWhetherTheyPlayOverTheMusic) {
  OnAir::MenuLive_Click(on.station, BrowseList::kJingles);
  EXPECT_EQ(List().titles[0], "Libellé");
  EXPECT_EQ(List().titles[1], "Sur Imp");
  ASSERT_EQ(List().rows.size(), 2U);
  EXPECT_EQ(Cell(0, 0), "OVER");
  EXPECT_EQ(Cell(0, 1), "Oui");
  EXPECT_EQ(Cell(0, 2), "00:05");
  EXPECT_EQ(Cell(0, 4), "2026/11/21  12:00:00");
  EXPECT_EQ(Cell(1, 1), "Non");
  EXPECT_EQ(Cell(1, 2), "01:05");
  EXPECT_EQ(Cell(1, 4), "");
  EXPECT_FALSE(PictureOf(on.station).SearchVisible);
  EXPECT_TRUE(PictureOf(on.station).PictureNoJingleVisible);
}

TEST_F(LiveList, HeadsSpeakTheStationsLanguage) {
  on.Set("Langue", "1");
  OnAir::MenuLive_Click(on.station, BrowseList::kJingles);
  EXPECT_EQ(List().titles[0], "Description");
  EXPECT_EQ(List().titles[1], "Over");
  OnAir::MenuLive_Click(on.station, BrowseList::kMusic);
  EXPECT_EQ(List().titles[0], "Artist");
  EXPECT_EQ(List().titles[1], "Title");
  on.Set("Langue", "9");  // none of ours: the design text
  OnAir::MenuLive_Click(on.station, BrowseList::kMusic);
  EXPECT_EQ(List().titles[0], "Artiste");
  EXPECT_EQ(List().titles[1], "Titre");
}

TEST_F(LiveList, SpotsAndOthersEmptyTheHeadsOfTheEntryBefore) {
  OnAir::MenuLive_Click(on.station, BrowseList::kJingles);
  OnAir::MenuLive_Click(on.station, BrowseList::kSpots);
  EXPECT_EQ(List().titles[0], "Annonceur");
  EXPECT_EQ(List().titles[1], "");
  ASSERT_EQ(List().rows.size(), 2U);
  EXPECT_EQ(Cell(0, 0), "BAKER");
  EXPECT_EQ(Cell(0, 1), "FOOD");
  OnAir::MenuLive_Click(on.station, BrowseList::kMusic);
  OnAir::MenuLive_Click(on.station, BrowseList::kOthers);
  EXPECT_EQ(List().titles[1], "");
  ASSERT_EQ(List().rows.size(), 1U);
  EXPECT_EQ(Cell(0, 0), "STING");
  EXPECT_EQ(Cell(0, 3), "3");
}

TEST_F(LiveList, TodaysReportIsAnEntryOfItsOwn) {
  on.Sql("INSERT INTO Rapport (AUTEUR, TITRE, DATENUM) VALUES ('AIRED', 'TODAY', 46347.1)");
  OnAir::MenuLive_Click(on.station, BrowseList::kToday);
  ASSERT_EQ(List().rows.size(), 1U);
  EXPECT_EQ(Cell(0, 0), "AIRED");
  OnAir::DropBrowseRows(on.station, {0}, 0);
  EXPECT_TRUE(on.station.PL.Empty());  // it names no library record
}

TEST_F(LiveList, MusicBeginsEmptyWithItsSearch) {
  OnAir::MenuLive_Click(on.station, BrowseList::kOthers);
  OnAir::MenuLive_Click(on.station, BrowseList::kMusic);
  EXPECT_TRUE(List().rows.empty());
  EXPECT_TRUE(PictureOf(on.station).SearchVisible);
}

TEST_F(LiveList, TheLiveModeOpensOnMusicWithTheStoredLists) {
  OnAir::MenuLive_Click(on.station, BrowseList::kJingles);
  on.Sql("INSERT INTO Playlist (CODE, LIBELLE) VALUES (7, ' EVENING ')");
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  EXPECT_TRUE(on.station.browse.open);
  EXPECT_EQ(List().list, BrowseList::kMusic);
  EXPECT_TRUE(List().rows.empty());
  EXPECT_EQ(List().titles[0], "Artiste");
  ASSERT_EQ(on.station.storedList.ComboPLS.items.size(), 1U);
  EXPECT_EQ(on.station.storedList.ComboPLS.items[0].text, "EVENING");
  EXPECT_EQ(on.station.storedList.ComboPLS.index, -1);
}

TEST_F(LiveList, TheTextThatStandsThereIsLookedForAgainWhenTheLiveModeOpens) {
  Cards(5);
  Type("ARTIST 3");
  ASSERT_EQ(List().rows.size(), 1U);
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kAutomatic);
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  EXPECT_TRUE(List().rows.empty());
  for (int slice = 0; slice < 1000 && SearchSlice(on.station) != SearchTurn::kDone; ++slice) {
  }
  ASSERT_EQ(List().rows.size(), 1U);
  EXPECT_EQ(Cell(0, 0), "ARTIST 3");
}

TEST_F(LiveList, ARowOpensTheCardOfMusicUnlessTheListsAreLocked) {
  const int32_t code = on.AddCard({.artist = "ARTIST", .title = "TITLE"});
  Type("ARTIST");
  on.AppendCard(code);
  EXPECT_EQ(OnAir::CardOfBrowseRow(on.station, 0), code);
  EXPECT_EQ(OnAir::CardOfBrowseRow(on.station, 1), 0);
  EXPECT_EQ(OnAir::CardOfRow(on.station, 1), code);
  EXPECT_EQ(OnAir::CardOfRow(on.station, 2), 0);
  on.station.lists.Locked = true;
  EXPECT_EQ(OnAir::CardOfBrowseRow(on.station, 0), 0);
  EXPECT_EQ(OnAir::CardOfRow(on.station, 1), 0);
}

TEST_F(LiveList, TheListLastPressedIsTheActiveOne) {
  OnAir::ListRech_MouseDown(on.station);
  EXPECT_EQ(on.station.engine.ActiveList, "ListRech");
  OnAir::PL_MouseDown(on.station);
  EXPECT_EQ(on.station.engine.ActiveList, "PL");
}

TEST_F(LiveList, ATableThatIsGoneLeavesAnEmptyListAndALine) {
  on.Sql("ALTER TABLE DiscothequeVirgule RENAME TO Elsewhere");
  OnAir::MenuLive_Click(on.station, BrowseList::kOthers);
  EXPECT_TRUE(List().rows.empty());
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "MenuLive");
}

TEST_F(LiveList, DropsKeepTheirOrderAtTheRow) {
  on.AppendCard(on.AddCard({.artist = "FIRST"}));
  on.AppendCard(on.AddCard({.artist = "LAST"}));
  OnAir::MenuLive_Click(on.station, BrowseList::kJingles);
  OnAir::DropBrowseRows(on.station, {0, 1, 7}, 2);
  ASSERT_EQ(on.station.PL.Count(), 4);
  EXPECT_EQ(on.station.PL.Row(2).title, "OVER");
  EXPECT_EQ(on.station.PL.Row(2).code, -1);
  EXPECT_EQ(on.station.PL.Row(3).title, "BESIDE");
  EXPECT_EQ(on.station.PL.Row(4).title, "LAST");
  OnAir::DropBrowseRows(on.station, {1}, 0);
  EXPECT_EQ(on.station.PL.Row(5).title, "BESIDE");
}

TEST_F(LiveList, ManyRowsGoInTogetherWithTheirTimesAndMoreThan500AreRefusedWithAWord) {
  Cards(501);
  Type("*");
  std::string told;
  on.messages.shown = [&](const std::string& title, const std::string& text, Buttons, Answer) {
    told = title + ": " + text;
  };
  std::vector<int> all;
  for (int row = 0; row < 501; ++row) all.push_back(row);
  EXPECT_FALSE(OnAir::DropBrowseRows(on.station, all, 1));
  EXPECT_EQ(told, "Alerte: 500 éléments au plus à la fois : choisissez-en moins");
  EXPECT_TRUE(on.station.PL.Empty());
  all.pop_back();
  EXPECT_TRUE(OnAir::DropBrowseRows(on.station, all, 1));
  ASSERT_EQ(on.station.PL.Count(), 500);
  EXPECT_EQ(on.station.PL.Row(500).title, "ARTIST 500");
  // 499 times 3:00 less the exit point of 1.5 s is 24 h 44 min 31.5 s after 12:00:00.
  EXPECT_EQ(ColumnText(on.station.PL.Row(500), Col::kPlanned), "12 h 44 ' 31");
}

TEST_F(LiveList, ASpotsKindFollowsItsRecord) {
  OnAir::MenuLive_Click(on.station, BrowseList::kSpots);
  OnAir::DropBrowseRows(on.station, {0, 1}, 0);
  ASSERT_EQ(on.station.PL.Count(), 2);
  EXPECT_EQ(on.station.PL.Row(1).code, -2);
  EXPECT_EQ(on.station.PL.Row(2).code, -4);
}

TEST_F(LiveList, ATextBoxHoldsTheShortcutsOff) {
  on.station.engine.HotKeysArmed = true;
  OnAir::TextBox_GotFocus(on.station);
  EXPECT_FALSE(on.station.engine.HotKeysArmed);
  OnAir::TextBox_LostFocus(on.station);
  EXPECT_TRUE(on.station.engine.HotKeysArmed);
}

// --- search ---

TEST_F(LiveList, ThreeCharactersSearchASmallLibrary) {
  Cards(500);
  Type("ART");
  ASSERT_EQ(List().rows.size(), 500U);
  Type("AR");
  EXPECT_TRUE(List().rows.empty());
  Type("  A ");  // one character and blanks
  EXPECT_TRUE(List().rows.empty());
}

TEST_F(LiveList, ALibraryAboveAThousandNeedsFour) {
  Cards(1000);
  Type("ART");
  EXPECT_EQ(List().rows.size(), 1000U);
  Cards(1);
  Type("ART");
  EXPECT_TRUE(List().rows.empty());
  Type("ARTI");
  EXPECT_EQ(List().rows.size(), 1001U);
  Type("*");
  EXPECT_EQ(List().rows.size(), 1001U);
}

TEST_F(LiveList, AStarListsEverythingInASmallLibraryToo) {
  Cards(2);
  Type("*");
  EXPECT_EQ(List().rows.size(), 2U);
  Type("");
  EXPECT_TRUE(List().rows.empty());
}

TEST_F(LiveList, TheTextMayRunFromTheArtistIntoTheTitle) {
  on.AddCard({.artist = "Zoé Ortega", .title = "L'île"});
  Type("egal'Î");
  ASSERT_EQ(List().rows.size(), 1U);
  EXPECT_EQ(Cell(0, 0), "Zoé Ortega");
  EXPECT_EQ(Cell(0, 1), "L'île");
  Type("ortega l");  // there is no blank between them
  EXPECT_TRUE(List().rows.empty());
}

TEST_F(LiveList, ASearchThatFindsNothingEmptiesTheList) {
  Cards(2);
  Type("*");
  Type("NOWHERE");
  EXPECT_TRUE(List().rows.empty());
}

TEST_F(LiveList, ARowHasTheColumnsOfTheCandidatePool) {
  Cards(1);
  on.Sql("UPDATE Discotheque SET LASTDIFF = 46347.5");
  Type("*");
  ASSERT_EQ(List().rows.size(), 1U);
  const Cells expected = {"ARTIST 1",
                          "Song",
                          "03:00",
                          "POP",
                          "NATIONAL",
                          "/m1.mp3",
                          "1",
                          "180000",
                          "1500",
                          "7",
                          "2026/11/21  12:00:00",
                          ""};
  EXPECT_EQ(List().rows[0].cells, expected);
  OnAir::DropBrowseRows(on.station, {0}, 0);
  ASSERT_EQ(on.station.PL.Count(), 1);
  EXPECT_EQ(ColumnText(on.station.PL.Row(1), Col::kExitMs), "1500");
  EXPECT_EQ(ColumnText(on.station.PL.Row(1), Col::kIntro), "7");
}

TEST_F(LiveList, AGenreIsFoundWithItsApostropheAndMayBeAPattern) {
  on.AddCard({.artist = "A", .genre = "ROCK'N'ROLL"});
  on.AddCard({.artist = "B", .genre = "ROCK"});
  on.AddCard({.artist = "C", .genre = "POP"});
  OnAir::RechGenre_Click(on.station, "ROCK'N'ROLL");
  ASSERT_EQ(List().rows.size(), 1U);
  EXPECT_EQ(Cell(0, 0), "A");
  OnAir::RechGenre_Click(on.station, "ROCK*");
  EXPECT_EQ(List().rows.size(), 2U);
  OnAir::RechGenre_Click(on.station, "JAZZ");
  EXPECT_TRUE(List().rows.empty());
}

TEST_F(LiveList, AHeadSortsByItsColumnWithoutRegardToCase) {
  on.AddCard({.artist = "beta", .title = "2"});
  on.AddCard({.artist = "ALPHA", .title = "3"});
  on.AddCard({.artist = "Émile", .title = "1"});
  Type("*");
  OnAir::ListRech_ColumnClick(on.station, 1);
  EXPECT_EQ(Cell(0, 0), "Émile");
  OnAir::ListRech_ColumnClick(on.station, 0);
  EXPECT_EQ(Cell(0, 0), "ALPHA");
  EXPECT_EQ(Cell(1, 0), "beta");
  EXPECT_TRUE(List().sorted);
  Type("*");  // a new search stands in table order again
  EXPECT_FALSE(List().sorted);
  EXPECT_EQ(Cell(0, 0), "beta");
  OnAir::ListRech_ColumnClick(on.station, 12);
  EXPECT_FALSE(List().sorted);
}

TEST_F(LiveList, ALibraryThatCannotBeReadIsLogged) {
  on.Sql("ALTER TABLE Discotheque RENAME TO Elsewhere");
  Type("*");
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "Rech");
}

}  // namespace
}  // namespace zemo::test
