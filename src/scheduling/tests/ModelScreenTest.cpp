// The model editor as an operator works it: opening, days, cells, keys, pop-ups, and what is asked
// about changes that were not saved. It is Saturday, day 6.
#include <gtest/gtest.h>

#include "scheduling/GenreSupply.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelScreen.h"
#include "scheduling/tests/RequestFixture.h"

namespace zemo {
namespace {

using test::kAlways;
using test::RequestStation;
using test::TitleCard;
using test::WatchedStation;
using Names = std::vector<std::string>;
using test::kSaturday;

class ModelScreenTest : public testing::Test {
 protected:
  ModelEditor& Editor() { return s.station.modelEditor; }
  TextGrid& Grid() { return Editor().Models; }
  TextGrid& Skeleton() { return Editor().ModelSquelette; }
  void Open() { Models::MnuModel_Click(s.station); }
  bool Click(int row, int column) { return Models::Models_Click(s.station, {row, column}); }
  bool ClickSkeleton(int row, int column) {
    return Models::ModelSquelette_Click(s.station, {row, column});
  }
  Models::PopUp Opened() { return Models::OpenedPopUp(Editor()); }
  Names Column(const TextGrid& grid, int column) {
    Names cells;
    for (int row = 1; row < grid.RowCount(); ++row) cells.push_back(grid.Cell(row, column));
    return cells;
  }
  RequestStation s;
};

TEST_F(ModelScreenTest, OpensOnTodayWithItsGridTheVarietiesThePopUpsAndTheCounts) {
  s.Model(kSaturday, "POP", 40);
  s.Variety("NATIONAL", 60);
  s.Add({});
  Open();
  EXPECT_TRUE(Editor().open);
  EXPECT_EQ(Editor().JourSemaine, 6);
  EXPECT_EQ(Editor().Caption, "Model en %");
  EXPECT_EQ(Column(Grid(), 0), (Names{"POP", "Total %"}));
  EXPECT_EQ(Editor().GVariete.Cell(1, 1), "NATIONAL");
  EXPECT_EQ(Editor().PopPourCent.size(), 21U);
  ASSERT_EQ(Editor().Stats.size(), 1U);
  EXPECT_EQ(Editor().Stats[0].count, "0001");
  EXPECT_EQ(Editor().Stats[0].positions, "");
}

TEST_F(ModelScreenTest, ALockedMenuOpensNothing) {
  s.station.engine.ScreenLocked = true;
  Open();
  EXPECT_FALSE(Editor().open);
}

TEST_F(ModelScreenTest, AnotherOpeningReadsWhatWasStoredMeanwhile) {
  s.Variety("NATIONAL", 60);
  Open();
  Models::Form_Unload(s.station);
  s.Variety("INTERNATIONAL", 40);
  s.Model(kSaturday, "JAZZ", 10);
  s.SetCnf("Langue", 1);
  Open();
  EXPECT_EQ(Editor().GVariete.RowCount(), 3);
  EXPECT_EQ(Editor().GVariete.Cell(0, 1), "Origin");
  EXPECT_EQ(Column(Grid(), 0), (Names{"JAZZ", "Total %"}));
  EXPECT_EQ(Grid().Cell(0, 0), "Style");
  EXPECT_EQ(Editor().Caption, "Model in %");
}

TEST_F(ModelScreenTest, CellsOpenTheirPopUpsAndOthersNone) {
  s.Model(kSaturday, "POP", 40);
  s.Variety("NATIONAL", 60);
  Open();
  EXPECT_EQ(Opened(), Models::PopUp::kNone);
  EXPECT_TRUE(Click(1, 0));
  EXPECT_EQ(Opened(), Models::PopUp::kGenre);
  EXPECT_TRUE(Click(1, 24));
  EXPECT_EQ(Opened(), Models::PopUp::kPourCent);
  EXPECT_TRUE(Click(0, 0));
  EXPECT_EQ(Opened(), Models::PopUp::kNone);
  EXPECT_TRUE(Click(2, 0));  // the row of totals
  EXPECT_EQ(Opened(), Models::PopUp::kGenre);
  EXPECT_TRUE(Click(2, 1));
  EXPECT_EQ(Opened(), Models::PopUp::kNone);
  for (const int column : {0, 1}) {
    EXPECT_TRUE(Models::GVariete_Click(s.station, {1, column}));
    EXPECT_EQ(Opened(), Models::PopUp::kPourCent);
  }
  EXPECT_TRUE(Models::GVariete_Click(s.station, {0, 1}));
  EXPECT_EQ(Opened(), Models::PopUp::kNone);
  EXPECT_FALSE(Click(3, 0));
  EXPECT_FALSE(Click(1, 25));
  EXPECT_FALSE(Models::GVariete_Click(s.station, {1, 2}));
}

TEST_F(ModelScreenTest, AnyPositionOpensTheGenresTheOneBehindTheLastToo) {
  s.SetCnf("Squelette", -1);
  s.Position(kSaturday, 3, "POP");
  Open();
  EXPECT_TRUE(ClickSkeleton(1, 23));
  EXPECT_EQ(Opened(), Models::PopUp::kGenre);
  EXPECT_TRUE(ClickSkeleton(2, 5));
  EXPECT_EQ(Opened(), Models::PopUp::kGenre);
  Models::PopGenre_Click(s.station, "ROCK");
  EXPECT_EQ(Column(Skeleton(), 5), (Names{"", "ROCK"}));
  EXPECT_TRUE(ClickSkeleton(0, 5));
  EXPECT_EQ(Opened(), Models::PopUp::kNone);
  EXPECT_FALSE(ClickSkeleton(4, 0));
  EXPECT_FALSE(ClickSkeleton(1, 24));
}

TEST_F(ModelScreenTest, AChoiceGoesToTheCellClickedLastAndIsNothingForAClosedPopUp) {
  s.Model(kSaturday, "POP", 40);
  s.Variety("NATIONAL", 60);
  Open();
  Click(1, 3);
  Models::PopGenre_Click(s.station, "JAZZ");
  EXPECT_EQ(Grid().Cell(1, 0), "POP");
  Models::PopPourCent_Click(s.station, 25);
  EXPECT_EQ(Grid().Cell(1, 3), "25");
  EXPECT_EQ(Grid().Cell(2, 3), "25 %");
  Models::GVariete_Click(s.station, {1, 0});
  Models::PopPourCent_Click(s.station, 70);
  EXPECT_EQ(Grid().Cell(1, 3), "25");
  EXPECT_EQ(s.SqlText("SELECT POURCENT FROM Variete"), "70");
  Click(2, 0);
  Models::PopGenre_Click(s.station, "JAZZ");
  EXPECT_EQ(Column(Grid(), 0), (Names{"POP", "JAZZ", "Total %"}));
  Models::PopGenre_Click(s.station, "POP");  // stands in the grid
  EXPECT_EQ(Column(Grid(), 0), (Names{"POP", "JAZZ", "Total %"}));
}

TEST_F(ModelScreenTest, InsertPutsAnEmptyRowAboveTheCursor) {
  s.Model(kSaturday, "POP", 40);
  Open();
  Click(0, 0);
  Models::Models_KeyInsert(s.station);
  EXPECT_EQ(Column(Grid(), 0), (Names{"POP", "Total %"}));
  Click(1, 4);
  Models::Models_KeyInsert(s.station);
  EXPECT_EQ(Column(Grid(), 0), (Names{"", "POP", "Total %"}));
  Click(3, 0);
  Models::Models_KeyInsert(s.station);
  EXPECT_EQ(Column(Grid(), 0), (Names{"", "POP", "", "Total %"}));
  EXPECT_EQ(Grid().Cell(4, 1), "40 %");
}

TEST_F(ModelScreenTest, InTheSkeletonInsertMakesAPositionAndDeleteEmptiesACell) {
  s.SetCnf("Squelette", -1);
  s.Add({});
  s.Position(kSaturday, 3, "POP");
  Open();
  EXPECT_EQ(Editor().Stats[0].positions, "1");
  ClickSkeleton(1, 3);
  Models::ModelSquelette_KeyInsert(s.station);
  EXPECT_EQ(Column(Skeleton(), 3), (Names{"", "POP"}));
  ClickSkeleton(2, 3);
  Models::ModelSquelette_KeyDelete(s.station);
  EXPECT_EQ(Column(Skeleton(), 3), (Names{"", ""}));
  EXPECT_EQ(Editor().Stats[0].positions, "0");
}

// --- changes that were not saved ---

TEST_F(ModelScreenTest, ChangesAskBeforeTheDayIsLeftAndNothingElseDoes) {
  s.Model(kSaturday, "POP", 40);
  Open();
  Models::JourSemaine_Click(s.station, 1);
  EXPECT_TRUE(s.Events("message").empty());
  Models::JourSemaine_Click(s.station, 6);
  Click(1, 3);
  Models::PopPourCent_Click(s.station, 55);
  EXPECT_TRUE(Models::IsChanged(s.station));
  Models::PopPourCent_Click(s.station, 40);
  EXPECT_FALSE(Models::IsChanged(s.station));  // as it was
  Models::PopPourCent_Click(s.station, 55);
  Models::JourSemaine_Click(s.station, 1);
  ASSERT_EQ(s.Events("message").size(), 1U);
  EXPECT_EQ(s.Events("message")[0]["title"], "Model en %");
  EXPECT_EQ(s.Events("message")[0]["text"], "Voulez-vous sauvegarder les modifications ?");
  EXPECT_EQ(s.Events("message")[0]["buttons"], "yesnocancel");
  EXPECT_EQ(s.Events("message")[0]["answer"], "cancel");
  EXPECT_EQ(Editor().JourSemaine, 6);
  EXPECT_EQ(Grid().Cell(1, 3), "55");
}

TEST_F(ModelScreenTest, YesSavesTheDayThatIsLeftAndNoForgetsItsChanges) {
  s.Model(kSaturday, "POP", 40);
  Open();
  Click(1, 3);
  Models::PopPourCent_Click(s.station, 55);
  s.messages.AnswerNext(Answer::kNo);
  Models::JourSemaine_Click(s.station, 1);
  EXPECT_EQ(Editor().JourSemaine, 1);
  EXPECT_EQ(s.SqlText("SELECT TRANCHE02 FROM Models"), "40");
  Models::JourSemaine_Click(s.station, 6);
  Click(1, 3);
  Models::PopPourCent_Click(s.station, 55);
  s.messages.AnswerNext(Answer::kYes);
  EXPECT_TRUE(Models::Form_QueryUnload(s.station));
  EXPECT_EQ(s.SqlText("SELECT TRANCHE02 FROM Models"), "55");
  EXPECT_FALSE(Models::IsChanged(s.station));
}

TEST_F(ModelScreenTest, ASaveThatFailsKeepsTheDay) {
  s.Model(kSaturday, "POP", 40);
  Open();
  Click(1, 3);
  Models::PopPourCent_Click(s.station, 55);
  s.Native("CREATE TRIGGER full BEFORE INSERT ON Models BEGIN SELECT RAISE(ABORT, 'no room'); END");
  s.messages.AnswerNext(Answer::kYes);
  Models::JourSemaine_Click(s.station, 1);
  EXPECT_EQ(Editor().JourSemaine, 6);
  EXPECT_EQ(Grid().Cell(1, 3), "55");
}

TEST_F(ModelScreenTest, ACopyOfADayWaitsToBeSavedAndAnEmptyRowIsNoChange) {
  s.Model(1, "POP", 40);
  Open();
  Click(1, 0);
  Models::Models_KeyInsert(s.station);
  EXPECT_FALSE(Models::IsChanged(s.station));
  Models::PopJour_Click(s.station, 1);
  EXPECT_EQ(Editor().JourSemaine, 6);
  EXPECT_TRUE(Models::IsChanged(s.station));
  Models::BtnSave_Click(s.station);
  EXPECT_FALSE(Models::IsChanged(s.station));
}

// --- faults ---

TEST_F(ModelScreenTest, ADayThatCannotBeReadLeavesTheOneThatIsShown) {
  s.Model(kSaturday, "POP", 40);
  Open();
  s.Native("ALTER TABLE Models RENAME TO Lost");
  Models::JourSemaine_Click(s.station, 1);
  EXPECT_EQ(s.LastError().substr(0, 17), "LoadGrilleModels:");
  EXPECT_EQ(Editor().JourSemaine, 6);
  EXPECT_EQ(Column(Grid(), 0), (Names{"POP", "Total %"}));
}

TEST_F(ModelScreenTest, AnotherKindOfModelSetMeanwhileDoesNotEmptyTheOtherTable) {
  s.Model(kSaturday, "POP", 40);
  s.Position(kSaturday, 3, "ROCK");
  Open();
  s.SetCnf("Squelette", -1);
  Models::BtnSave_Click(s.station);
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM ModelSquelette"), "1");
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM Models"), "1");
  Models::JourSemaine_Click(s.station, 6);
  EXPECT_EQ(Editor().Caption, "Edit Squelette");
  EXPECT_EQ(Column(Skeleton(), 3), Names{"ROCK"});
}

// --- what the library can give ---

TEST_F(ModelScreenTest, TheSupplyOfAnHourIsTheTitlesThatTheirCardsLetPlayThen) {
  TitleCard card;
  card.lengthMs = 200000;
  const int32_t code = s.Add(card);
  card.hours = "0001" + std::string(20, '0');
  s.Add(card);
  card.hours = kAlways;
  card.passes = 0;  // out of rotation
  s.Add(card);
  card.passes = 1;
  card.firstDay = "1124";  // Tuesday's date: open on Tuesday to Friday alone
  card.lastDay = "1127";
  s.Add(card);
  card.genre = "ROCK";
  card.firstDay = card.lastDay = "";
  s.Add(card);
  Open();
  const GenreSupply& supply = *Editor().supply;
  EXPECT_EQ(Editor().Stats[0].count, "0004");
  EXPECT_EQ(supply.At("POP", 6, 0).titles, 1);
  EXPECT_EQ(supply.At("POP", 6, 0).lengthMs, 200000);
  EXPECT_EQ(supply.At("POP", 6, 3).titles, 2);
  EXPECT_EQ(supply.At("POP", 2, 3).titles, 3);
  EXPECT_EQ(supply.At("POP", 2, 3).lengthMs, 600000);
  EXPECT_EQ(supply.At("POP", 1, 3).titles, 2);
  EXPECT_EQ(supply.At("ROCK", 7, 23).titles, 1);
  EXPECT_EQ(supply.At("JAZZ", 7, 23).titles, 0);
  EXPECT_EQ(supply.GenreOf(code), "POP");
  EXPECT_EQ(supply.GenreOf(99), "");
}

// A slice and two cards; the loop turns in between, and a closing ends it.
TEST_F(ModelScreenTest, ALanguageSetMeanwhileShowsFromTheNextOpeningOn) {
  s.Variety("NATIONAL", 60);
  Open();
  s.SetCnf("Langue", 1);
  Models::JourSemaine_Click(s.station, 2);
  Models::BtnSave_Click(s.station);
  Models::BtnImport_Click(s.station);
  Models::PopJour_Click(s.station, 3);
  EXPECT_EQ(Editor().Caption, "Model en %");
  EXPECT_EQ(Grid().Cell(0, 0), "Genres");
  EXPECT_EQ(Editor().GVariete.Cell(0, 1), "Variété");
  Models::Form_Unload(s.station);
  Open();
  EXPECT_EQ(Editor().Caption, "Model in %");
  EXPECT_EQ(Grid().Cell(0, 0), "Style");
}

TEST_F(ModelScreenTest, AVarietyTableThatCannotBeReadIsLoggedUnderTheLoadingsName) {
  s.Execute("DROP TABLE Variete");
  Open();
  ASSERT_EQ(s.Events("error").size(), 1U);
  EXPECT_EQ(s.Events("error")[0]["where"], "F7.Form_Load");
}

TEST_F(ModelScreenTest, ALibraryThatCannotBeCountedIsLoggedUnderTheStatisticsName) {
  s.Execute("ALTER TABLE Discotheque RENAME TO Elsewhere");
  Open();
  ASSERT_EQ(s.Events("error").size(), 1U);
  EXPECT_EQ(s.Events("error")[0]["where"], "Load Stats Genres");
}

TEST_F(ModelScreenTest, TheLibraryIsReadInSlicesThatAClosingEnds) {
  s.Native(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1002) INSERT INTO "
      "Discotheque(GENRE, DUREE) SELECT 'POP', 1000 FROM n");
  WatchedStation w(s);
  int yields = 0;
  w.loop.onYield = [&] { ++yields; };
  Models::MnuModel_Click(w.station);
  EXPECT_EQ(yields, 1);
  EXPECT_EQ(w.station.modelEditor.Stats[0].count, "1002");
  Models::Form_Unload(w.station);
  w.loop.onYield = [&] { Models::Form_Unload(w.station); };
  Models::MnuModel_Click(w.station);
  EXPECT_TRUE(w.station.modelEditor.Stats.empty());
}

}  // namespace
}  // namespace zemo
