#include <gtest/gtest.h>

#include "platform/Folder.h"
#include "platform/Spreadsheet.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/ModelScreen.h"
#include "scheduling/tests/RequestFixture.h"

namespace zemo {
namespace {

using test::RequestStation;
using test::Seen;
using test::TitleCard;

class ModelEditorTest : public testing::Test {
 protected:
  ModelEditor& Editor() { return s.station.modelEditor; }
  TextGrid& Models() { return Editor().Models; }
  TextGrid& Skeleton() { return Editor().ModelSquelette; }
  void AddModelRow(const std::string& genre, const std::string& percent) {
    TextGrid::Row row(25, percent);
    row[0] = genre;
    Models().InsertRow(Models().RowCount() - 1, row);
  }
  std::vector<std::string> Genres() {
    std::vector<std::string> genres;
    for (int row = 1; row < Models().RowCount() - 1; ++row) genres.push_back(Models().Cell(row, 0));
    return genres;
  }
  int Count(const std::string& where) {
    return static_cast<int>(Val(s.SqlText("SELECT COUNT(*) FROM " + where)));
  }
  RequestStation s;
};

using Names = std::vector<std::string>;

TEST_F(ModelEditorTest, AnEmptyTableGivesHeadingAndTotalOnly) {
  SelectWeekday(s.station, 1);
  ASSERT_EQ(Models().RowCount(), 2);
  EXPECT_EQ(Models().Cell(0, 0), "Genres");
  EXPECT_EQ(Models().Cell(0, 1), "00h");
  EXPECT_EQ(Models().Cell(0, 24), "23h");
  EXPECT_EQ(Models().Cell(1, 0), "Total %");
  EXPECT_EQ(Models().Cell(1, 24), "0 %");
}

TEST_F(ModelEditorTest, ADayIsLoadedInTheOrderOfItsRowsWithTotalsThatMayPass100) {
  s.Model(2, "ROCK", 70);
  s.Model(1, "OTHER", 10);
  s.Model(2, "POP", 50, 23);
  SelectWeekday(s.station, 2);
  EXPECT_EQ(Editor().JourSemaine, 2);
  EXPECT_EQ(Genres(), (Names{"ROCK", "POP"}));
  EXPECT_EQ(Models().Cell(1, 1), "70");
  EXPECT_EQ(Models().Cell(2, 23), "0");
  EXPECT_EQ(Models().Cell(3, 23), "70 %");
  EXPECT_EQ(Models().Cell(3, 24), "120 %");
}

TEST_F(ModelEditorTest, WithSqueletteOnTheSkeletonIsLoadedHourByColumn) {
  s.SetCnf("Squelette", -1);
  s.Position(3, 0, "FIRST");
  s.Position(3, 23, "LAST");
  SelectWeekday(s.station, 3);
  ASSERT_EQ(Skeleton().RowCount(), 3);
  EXPECT_EQ(Skeleton().Cell(0, 0), "00h");
  EXPECT_EQ(Skeleton().Cell(1, 0), "FIRST");
  EXPECT_EQ(Skeleton().Cell(1, 23), "");
  EXPECT_EQ(Skeleton().Cell(2, 23), "LAST");
}

TEST_F(ModelEditorTest, VarietiesAreReadWhenTheScreenIsLoadedAndNotAgain) {
  s.Variety("NATIONAL", 60);
  SelectWeekday(s.station, 1);
  s.Variety("INTERNATIONAL", 40);
  SelectWeekday(s.station, 2);
  ASSERT_EQ(Editor().GVariete.RowCount(), 2);
  EXPECT_EQ(Editor().GVariete.Cell(0, 0), "%");
  EXPECT_EQ(Editor().GVariete.Cell(0, 1), "Variété");
  EXPECT_EQ(Editor().GVariete.Cell(1, 0), "60");
  EXPECT_EQ(Editor().GVariete.Cell(1, 1), "NATIONAL");
}

TEST_F(ModelEditorTest, TitlesAndHeadingsSpeakTheLanguage) {
  const char* percent[] = {"Model en %", "Model in %", "Modelo em %", "Modelo em %"};
  const char* skeleton[] = {"Edit Squelette", "Skeleton", "Esqueleto", "Edit"};
  const char* genres[] = {"Genres", "Style", "Géneros", "Géneros"};
  const char* varieties[] = {"Variété", "Origin", "Música", "Musica"};
  for (int langue = 0; langue < 4; ++langue) {
    s.SetCnf("Langue", langue);
    s.SetCnf("Squelette", 0);
    Editor() = {};  // as each opening has it
    SelectWeekday(s.station, 1);
    EXPECT_EQ(Editor().Caption, percent[langue]);
    EXPECT_EQ(Models().Cell(0, 0), genres[langue]);
    EXPECT_EQ(Editor().GVariete.Cell(0, 1), varieties[langue]);
    s.SetCnf("Squelette", -1);
    Models::Translate(s.station);
    EXPECT_EQ(Editor().Caption, skeleton[langue]);
  }
}

TEST_F(ModelEditorTest, SavingReplacesTheDayAndWritesItsBackUp) {
  s.Model(1, "OLD", 10);
  s.Model(2, "KEPT", 10);
  SelectWeekday(s.station, 1);
  Models().RemoveRow(1);
  AddModelRow("L'ETE", "40");
  AddModelRow("", "99");
  AddModelRow("POP", "60");
  EXPECT_TRUE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(Count("Models WHERE JOUR = 1"), 2);
  EXPECT_EQ(Count("Models WHERE JOUR = 2"), 1);
  EXPECT_EQ(s.SqlText("SELECT TRANCHE23 FROM Models WHERE GENRE = 'L''ETE'"), "40");
  std::string expected = "L'ETE", second = "POP";
  for (int hour = 0; hour < 24; ++hour) {
    expected += "\t40";
    second += "\t60";
  }
  EXPECT_EQ(*s.stationFolder.Read("Lundi.Txt"), expected + "\r\n" + second + "\r\n");
  SelectWeekday(s.station, 1);
  EXPECT_EQ(Genres(), (Names{"L'ETE", "POP"}));
}

// The table is what the air goes by: the day is saved, and whoever saves it is told once.
TEST_F(ModelEditorTest, ABackUpThatCannotBeWrittenChangesNothingElseAndIsToldOnce) {
  s.Model(1, "POP", 40);
  SelectWeekday(s.station, 1);
  s.stationFolder.writesFail = true;
  for (int times = 1; times <= 3; ++times) {
    Models().SetCell(1, 1, std::to_string(50 + times));
    EXPECT_TRUE(Models::BtnSave_Click(s.station));
    EXPECT_EQ(s.SqlText("SELECT TRANCHE00 FROM Models"), std::to_string(50 + times));
    s.RunUntil(times * 3600000);  // the log's own patience with one fault is shorter
  }
  int told = 0;
  for (const Seen& error : s.Events("error")) told += error["where"] == "SauveGrilleModels";
  EXPECT_EQ(told, 1) << s.Describe();
}

TEST_F(ModelEditorTest, ABackUpThatFailsAgainBehindOneThatWasWrittenIsToldAgain) {
  SelectWeekday(s.station, 1);
  AddModelRow("POP", "50");
  size_t told = 0;
  for (int times = 1; times <= 2; ++times) {
    s.stationFolder.writesFail = true;
    EXPECT_TRUE(Models::BtnSave_Click(s.station));
    EXPECT_EQ(s.Events("error").size(), ++told);
    s.stationFolder.writesFail = false;
    EXPECT_TRUE(Models::BtnSave_Click(s.station));
    s.RunUntil(times * 3600000);
  }
}

TEST_F(ModelEditorTest, ARowWhoseGenreIsBlankIsNotStored) {
  SelectWeekday(s.station, 1);
  AddModelRow("POP", "50");
  AddModelRow("  ", "50");
  EXPECT_TRUE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(Count("Models"), 1);
}

TEST_F(ModelEditorTest, AGenreIsRefusedTwiceWhateverItsCase) {
  SelectWeekday(s.station, 1);
  AddModelRow("POP", "50");
  AddModelRow("ROCK", "50");
  Editor().ModelsPlace = {2, 0};
  Models::PopGenre_ClickInModels(s.station, "pop");
  EXPECT_EQ(Genres(), (Names{"POP", "ROCK"}));
}

TEST_F(ModelEditorTest, OfTwoVarietiesOfOneNameTheFirstGetsTheShare) {
  s.Variety("NATIONAL", 60);
  s.Variety("national", 40);
  SelectWeekday(s.station, 1);
  Editor().GVarietePlace = {1, 0};
  Models::PopPourCent_ClickInVarieties(s.station, 55);
  EXPECT_EQ(s.SqlText("SELECT group_concat(POURCENT, ' ') FROM Variete"), "55 40");
}

TEST_F(ModelEditorTest, SavingADayWithoutGenreLeavesNoRowForIt) {
  s.Model(1, "OLD", 10);
  SelectWeekday(s.station, 1);
  Models().SetCell(1, 0, "");
  EXPECT_TRUE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(Count("Models"), 0);
  EXPECT_EQ(*s.stationFolder.Read("Lundi.Txt"), "");
}

TEST_F(ModelEditorTest, SavingASkeletonWritesItsOwnTableAndFile) {
  s.SetCnf("Squelette", -1);
  SelectWeekday(s.station, 7);
  Skeleton().AddRow({"POP", "", "L'ETE"});
  Skeleton().AddRow({"", " "});
  EXPECT_TRUE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(Count("ModelSquelette"), 1);
  EXPECT_EQ(s.SqlText("SELECT TRANCHE02 FROM ModelSquelette WHERE JOUR = 7"), "L'ETE");
  EXPECT_EQ(*s.stationFolder.Read("Sq-Dimanche.Txt"),
            "POP\t\tL'ETE" + std::string(21, '\t') + "\r\n");
  EXPECT_FALSE(s.stationFolder.Exists("Dimanche.Txt"));
}

TEST_F(ModelEditorTest, ARowThatCannotBeStoredLeavesTheDayAsItWas) {
  s.Model(1, "OLD", 10);
  SelectWeekday(s.station, 1);
  AddModelRow("A GENRE OF MORE THAN 22 CHARACTERS", "10");
  EXPECT_FALSE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(s.SqlText("SELECT GENRE FROM Models WHERE JOUR = 1"), "OLD");
  EXPECT_FALSE(s.stationFolder.Exists("Lundi.Txt"));
  EXPECT_EQ(s.LastError().substr(0, 18), "SauveGrilleModels:");
  Models().RemoveRow(2);
  AddModelRow("POP", "99999");
  EXPECT_FALSE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(Count("Models"), 1);
}

TEST_F(ModelEditorTest, ABaseThatRefusesARowLeavesTheDayAsItWas) {
  s.Model(1, "OLD", 10);
  SelectWeekday(s.station, 1);
  AddModelRow("FIRST", "10");
  AddModelRow("SECOND", "10");
  s.Native(
      "CREATE TRIGGER full BEFORE INSERT ON Models WHEN NEW.GENRE = 'SECOND' "
      "BEGIN SELECT RAISE(ABORT, 'no room'); END");
  EXPECT_FALSE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(Count("Models"), 1);
  EXPECT_EQ(s.SqlText("SELECT GENRE FROM Models WHERE JOUR = 1"), "OLD");
}

TEST_F(ModelEditorTest, NoDaySelectedIsAnErrorAndSavesNothing) {
  s.Model(1, "OLD", 10);
  EXPECT_FALSE(Models::BtnSave_Click(s.station));
  EXPECT_EQ(Count("Models"), 1);
}

TEST_F(ModelEditorTest, TheLastSavedModelComesBackFromItsFile) {
  SelectWeekday(s.station, 1);
  AddModelRow("POP", "60");
  AddModelRow("ROCK", "30");
  Models::BtnSave_Click(s.station);
  SelectWeekday(s.station, 1);
  Models().RemoveRow(1);
  Models::BtnImport_Click(s.station);
  EXPECT_EQ(Genres(), (Names{"POP", "ROCK"}));
  EXPECT_EQ(Models().Cell(3, 0), "Total %");
  EXPECT_EQ(Models().Cell(3, 1), "90 %");
}

TEST_F(ModelEditorTest, ABackUpWithHeadingAndTotalGivesTheSameRows) {
  std::string heading = "Genres", total = "Total %", row = "POP";
  for (int hour = 0; hour < 24; ++hour) {
    heading += "\t" + HourLabel(hour);
    total += "\t90 %";
    row += "\t90";
  }
  s.MakeFile("Lundi.Txt", heading + "\r\n" + row + "\r\n" + total + "\r\n");
  SelectWeekday(s.station, 1);
  Models::BtnImport_Click(s.station);
  EXPECT_EQ(Genres(), Names{"POP"});
  EXPECT_EQ(Models().RowCount(), 3);
  EXPECT_EQ(Models().Cell(2, 1), "90 %");
}

TEST_F(ModelEditorTest, AMissingBackUpSaysSoAndChangesNothing) {
  s.Model(1, "POP", 10);
  SelectWeekday(s.station, 1);
  Models::BtnImport_Click(s.station);
  const auto messages = s.Events("message");
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0]["text"], "Introuvable\r\n" + s.stationFolder.Path() + "Lundi.Txt");
  EXPECT_EQ(Genres(), Names{"POP"});
}

// Each line would be a row of the grid, and all of them are gone through at each turn.
TEST_F(ModelEditorTest, ABackUpOfMoreLinesThanAModelHasIsNotTakenAndTold) {
  s.Model(1, "POP", 10);
  SelectWeekday(s.station, 1);
  std::string lines;
  for (int line = 0; line < 1000; ++line) lines += "G" + std::to_string(line) + "\r\n";
  s.MakeFile("Lundi.Txt", lines + "ONE MORE\r\n");
  Models::BtnImport_Click(s.station);
  EXPECT_EQ(Genres(), Names{"POP"});
  ASSERT_EQ(s.Events("error").size(), 1U);
  EXPECT_EQ(s.Events("error")[0]["where"], "BtnImport");
  EXPECT_EQ(s.Events("error")[0]["text"], "Lundi.Txt has more than 1000 lines: it is no model");
  s.MakeFile("Lundi.Txt", lines);
  Models::BtnImport_Click(s.station);
  EXPECT_EQ(Genres().size(), 1000U);
}

TEST_F(ModelEditorTest, TheSkeletonsBackUpComesBackToo) {
  s.SetCnf("Squelette", -1);
  s.MakeFile("Sq-Mardi.Txt", "POP\tROCK\r\n\tJAZZ\r\n");
  SelectWeekday(s.station, 2);
  Models::BtnImport_Click(s.station);
  ASSERT_EQ(Skeleton().RowCount(), 3);
  EXPECT_EQ(Skeleton().Cell(1, 1), "ROCK");
  EXPECT_EQ(Skeleton().Cell(2, 0), "");
  EXPECT_EQ(Skeleton().Cell(2, 1), "JAZZ");
}

TEST_F(ModelEditorTest, AnotherDayIsCopiedIntoTheGridAndWaitsToBeSaved) {
  s.Model(1, "POP", 10);
  SelectWeekday(s.station, 5);
  Models::PopJour_Click(s.station, 1);
  EXPECT_EQ(Editor().JourSemaine, 5);
  EXPECT_EQ(Genres(), Names{"POP"});
  EXPECT_EQ(Count("Models WHERE JOUR = 5"), 0);
  Models::BtnSave_Click(s.station);
  EXPECT_EQ(Count("Models WHERE JOUR = 5"), 1);
  EXPECT_EQ(Count("Models WHERE JOUR = 1"), 1);
}

TEST_F(ModelEditorTest, TheDeleteKeyKeepsTheNumberOfRowsAndRecalculates) {
  s.Model(1, "POP", 10);
  s.Model(1, "ROCK", 20);
  SelectWeekday(s.station, 1);
  for (const int row : {0, 3}) {  // heading and total
    Editor().ModelsPlace = {row, 0};
    Models::Models_KeyDelete(s.station);
    EXPECT_EQ(Genres(), (Names{"POP", "ROCK"}));
  }
  Editor().ModelsPlace = {1, 0};
  Models::Models_KeyDelete(s.station);
  EXPECT_EQ(Genres(), (Names{"ROCK", ""}));
  EXPECT_EQ(Models().Cell(3, 1), "20 %");
}

TEST_F(ModelEditorTest, AGenreStandsOnceInADaysModelAndAsOftenAsWantedInASkeleton) {
  s.Model(1, "POP", 10);
  s.Model(1, "ROCK", 20);
  SelectWeekday(s.station, 1);
  Editor().ModelsPlace = {2, 0};
  Models::PopGenre_ClickInModels(s.station, "POP");
  EXPECT_EQ(Genres(), (Names{"POP", "ROCK"}));
  Models::PopGenre_ClickInModels(s.station, "JAZZ");
  EXPECT_EQ(Genres(), (Names{"POP", "JAZZ"}));
  Skeleton().AddRow({"POP"});
  Editor().ModelSquelettePlace = {1, 1};
  Models::PopGenre_ClickInSkeleton(s.station, "POP");
  Editor().ModelSquelettePlace = {2, 0};
  Models::PopGenre_ClickInSkeleton(s.station, "POP");
  EXPECT_EQ(Skeleton().Cell(1, 1), "POP");
  EXPECT_EQ(Skeleton().Cell(2, 0), "POP");
}

TEST_F(ModelEditorTest, AnEmptyDayGetsItsFirstGenreOnTheTotalRow) {
  SelectWeekday(s.station, 1);
  Editor().ModelsPlace = {1, 0};
  Models::PopGenre_ClickInModels(s.station, "POP");
  EXPECT_EQ(Genres(), Names{"POP"});
  EXPECT_EQ(Models().Cell(2, 0), "Total %");
}

TEST_F(ModelEditorTest, AGenreThatTheListNoLongerHasStaysInTheGrid) {
  s.Model(1, "FORGOTTEN", 10);
  s.MakeFile("Genre.Txt", "POP\r\n");
  SelectWeekday(s.station, 1);
  EXPECT_EQ(Editor().PopGenre, (Names{"POP", "INSTRUMENTAL"}));
  EXPECT_EQ(Genres(), Names{"FORGOTTEN"});
}

TEST_F(ModelEditorTest, PercentagesAreOfferedInStepsOfFiveAndRecalculateTheTotals) {
  s.Model(1, "POP", 10);
  SelectWeekday(s.station, 1);
  ASSERT_EQ(Editor().PopPourCent.size(), 21U);
  EXPECT_EQ(Editor().PopPourCent[1], "5");
  Editor().ModelsPlace = {1, 4};
  Models::PopPourCent_ClickInModels(s.station, 35);
  EXPECT_EQ(Models().Cell(1, 4), "35");
  EXPECT_EQ(Models().Cell(2, 4), "35 %");
  EXPECT_EQ(Editor().ModelsPlace.column, 4);
  Editor().ModelsPlace = {2, 4};
  Models::PopPourCent_ClickInModels(s.station, 35);
  EXPECT_EQ(Models().Cell(2, 4), "35 %");
}

TEST_F(ModelEditorTest, AShareOfAVarietyIsStoredAtOnce) {
  s.Variety("NATIONAL", 60);
  s.Variety("INTERNATIONAL", 40);
  SelectWeekday(s.station, 1);
  Editor().GVarietePlace = {2, 0};
  Models::PopPourCent_ClickInVarieties(s.station, 55);
  EXPECT_EQ(Editor().GVariete.Cell(2, 0), "55");
  EXPECT_EQ(s.SqlText("SELECT POURCENT FROM Variete WHERE VARIETE = 'INTERNATIONAL'"), "55");
  EXPECT_EQ(s.SqlText("SELECT POURCENT FROM Variete WHERE VARIETE = 'NATIONAL'"), "60");
  EXPECT_EQ(Count("Variete"), 2);
}

// A share that nobody stored would look as if the requests followed it.
TEST_F(ModelEditorTest, AShareOfAVarietyThatCannotBeStoredIsNotShown) {
  s.Variety("NATIONAL", 60);
  SelectWeekday(s.station, 1);
  s.Native("CREATE TRIGGER Refuse BEFORE UPDATE ON Variete BEGIN SELECT RAISE(ABORT, 'no'); END");
  Editor().GVarietePlace = {1, 0};
  Models::PopPourCent_ClickInVarieties(s.station, 55);
  EXPECT_EQ(Editor().GVariete.Cell(1, 0), "60");
  EXPECT_EQ(s.SqlText("SELECT POURCENT FROM Variete"), "60");
  EXPECT_NE(s.First("error", "where", "PopPourCent"), nullptr);
}

TEST_F(ModelEditorTest, GenresAreCountedInFourDigitsWithTheirPositionsBeside) {
  s.SetCnf("Squelette", -1);
  for (const char* genre : {"POP", "ROCK", "POP"}) {
    TitleCard card;
    card.genre = genre;
    s.Add(card);
  }
  s.Position(1, 3, "POP");
  s.Position(1, 4, "POP");
  s.Position(2, 4, "ROCK");
  Models::LoadGenreStats(s.station);
  SelectWeekday(s.station, 1);
  ASSERT_EQ(Editor().Stats.size(), 2U);
  EXPECT_EQ(Editor().Stats[0].genre, "POP");
  EXPECT_EQ(Editor().Stats[0].count, "0002");
  EXPECT_EQ(Editor().Stats[0].positions, "2");
  EXPECT_EQ(Editor().Stats[1].count, "0001");
  EXPECT_EQ(Editor().Stats[1].positions, "0");
}

// Keeps the sheet instead of writing it.
class SheetKeeper : public SpreadsheetWriter {
 public:
  std::string path;
  Sheet sheet;
  void Write(const std::string& to, const Sheet& given) override {
    path = to;
    sheet = given;
  }
  std::string At(int row, int column) const {
    for (const SheetCell& cell : sheet.cells)
      if (cell.row == row && cell.column == column)
        return cell.isNumber ? std::to_string(static_cast<int>(cell.number)) : cell.text;
    return {};
  }
};

TEST_F(ModelEditorTest, TheWeekIsExportedWithABlockADayAndItsTotals) {
  s.Model(1, "POP", 10);
  s.Model(1, "ROCK", 20, 0);
  s.Model(2, "JAZZ", 30);
  SheetKeeper keeper;
  EXPECT_TRUE(Models::MnuExport_Click(s.station, "/week", keeper));
  EXPECT_EQ(keeper.path, "/week.xlsx");
  EXPECT_EQ(keeper.sheet.name, "ModelsSemaine");
  EXPECT_EQ(keeper.At(0, 0), "Lundi");
  EXPECT_EQ(keeper.At(0, 24), "23h");
  EXPECT_EQ(keeper.At(2, 0), "ROCK");
  EXPECT_EQ(keeper.At(2, 1), "20");
  EXPECT_EQ(keeper.At(3, 0), "Total %");
  EXPECT_EQ(keeper.At(3, 1), "30");
  EXPECT_EQ(keeper.At(5, 0), "Mardi");
  EXPECT_EQ(keeper.At(6, 0), "JAZZ");
}

TEST_F(ModelEditorTest, TheSkeletonsWeekIsExportedByPositions) {
  s.SetCnf("Squelette", -1);
  s.Position(1, 0, "POP");
  s.Position(1, 0, "ROCK");
  SheetKeeper keeper;
  EXPECT_TRUE(Models::MnuExport_Click(s.station, "/week", keeper));
  EXPECT_EQ(keeper.path, "/week.xlsx");
  EXPECT_EQ(keeper.At(2, 0), "2");
  EXPECT_EQ(keeper.At(2, 1), "ROCK");
  EXPECT_EQ(keeper.At(4, 0), "Mardi");
}

TEST_F(ModelEditorTest, AWeekThatCannotBeExportedIsTold) {
  struct : SpreadsheetWriter {
    void Write(const std::string& toPath, const Sheet&) override {
      throw FileError(toPath + ": No space left on device");
    }
  } full;
  EXPECT_FALSE(Models::MnuExport_Click(s.station, "/week", full));
  const auto told = s.Events("message");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0]["text"],
            "Le fichier n'a pas pu être écrit\r\n/week.xlsx: No space left on device");
}

}  // namespace
}  // namespace zemo
