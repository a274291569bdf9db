// The model editor as a script drives it, from outside. The 21 November 2026 is a Saturday, day 6.
#include <gtest/gtest.h>

#include "OfficeScript.h"

namespace zemo {
namespace {

using Texts = std::vector<std::string>;

class ModelsScript : public OfficeScript {
 protected:
  void SetUp() override {
    OfficeScript::SetUp();
    MakeStation({10, 20, 30});  // of GOLD
    Put("station/Genre.Txt", "GOLD\r\nROCK\r\nR, B\r\n");
    Sql("UPDATE Discotheque SET GENRE = 'ROCK' WHERE CODE = 3");
    Sql("INSERT INTO Models(JOUR, GENRE, TRANCHE00, TRANCHE23, TRANCHE01, TRANCHE02, TRANCHE10) "
        "VALUES(6, 'GOLD', 60, 5, 0, 0, 0), (6, 'ROCK', 50, 0, 0, 0, 0), (1, 'OLD', 10, 10, 0, 0, "
        "0)");
    Sql("INSERT INTO ModelSquelette(JOUR, TRANCHE07) VALUES(6, 'GOLD'), (6, 'ROCK')");
  }
  Json Screen(size_t number = 0) const { return Events("screen").at(number); }
  static Texts ColumnOf(const Json& rows, size_t column) {
    Texts cells;
    for (const Json& row : rows) cells.push_back(column < row.size() ? row[column] : Json(""));
    return cells;
  }
  static Json DaysWith(int day) {
    Json days = Json::array();
    for (int at = 1; at <= 7; ++at) days.push_back(at == day);
    return days;
  }
};

TEST_F(ModelsScript, ShowsTodayWithGridsListsAndCaptions) {
  Drive({"open models", "show models"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(Screen()["name"], "models");
  EXPECT_EQ(Screen()["title"], "Model en %");
  EXPECT_EQ(Screen()["controls"]["JourSemaine"], DaysWith(6));
  EXPECT_EQ(Screen()["controls"]["BtnSave"], "Sauvegarder");
  const Json grid = Screen()["grids"]["Models"];
  EXPECT_EQ(ColumnOf(grid, 0), (Texts{"Genres", "GOLD", "ROCK", "Total %"}));
  EXPECT_EQ(ColumnOf(grid, 1), (Texts{"00h", "60", "50", "110 %"}));
  EXPECT_EQ(ColumnOf(grid, 24), (Texts{"23h", "5", "0", "5 %"}));
  EXPECT_EQ(Screen()["grids"]["GVariete"][0], Json({"%", "Variété"}));
  EXPECT_EQ(Screen()["lists"]["Stats"], Json::parse(R"([["GOLD", "0002"], ["ROCK", "0001"]])"));
  EXPECT_EQ(ColumnOf(Screen()["lists"]["PopGenre"], 0),
            (Texts{"GOLD", "ROCK", "R, B", "INSTRUMENTAL"}));
  EXPECT_EQ(Screen()["lists"]["PopPourCent"].size(), 21U);
  EXPECT_EQ(Screen()["lists"]["PopPourCent"][20], Json({"100"}));
  EXPECT_EQ(ColumnOf(Screen()["lists"]["PopJour"], 0)[6], "Dimanche");
  EXPECT_EQ(Screen()["off"], Json({"MnuCompteur", "PopGenre", "PopPourCent", "ModelSquelette"}));
}

TEST_F(ModelsScript, TheSkeletonHasHourHInColumnHAndCountsItsPositions) {
  Drive({"set Squelette -1", "set Langue 1", "open models", "show models"});
  EXPECT_EQ(Screen()["title"], "Skeleton");
  EXPECT_EQ(Screen()["controls"]["BtnImport"], "Get the last saved model");
  EXPECT_EQ(ColumnOf(Screen()["grids"]["ModelSquelette"], 7), (Texts{"07h", "GOLD", "ROCK"}));
  EXPECT_EQ(Screen()["lists"]["Stats"], Json({{"GOLD", "0002", "1"}, {"ROCK", "0001", "1"}}));
  EXPECT_TRUE(IsOff(Screen(), "Models"));
  EXPECT_FALSE(IsOff(Screen(), "MnuCompteur"));
}

TEST_F(ModelsScript, CellsPopUpsAndTheSaveMakeTheDaysModelAndItsBackUp) {
  Drive({"open models", "cell Models 1 3", "choose PopPourCent 35", "cell Models 3 0",
         "choose PopGenre gold", "choose PopGenre \"R, B\"", "cell Models 3 24",
         "choose PopPourCent 100", "show models", "press BtnSave", "close models", "show models"});
  EXPECT_EQ(ColumnOf(Screen()["grids"]["Models"], 0),
            (Texts{"Genres", "GOLD", "ROCK", "R, B", "Total %"}));
  EXPECT_EQ(ColumnOf(Screen()["grids"]["Models"], 3), (Texts{"02h", "35", "0", "", "35 %"}));
  EXPECT_EQ(ColumnOf(Screen()["grids"]["Models"], 24), (Texts{"23h", "5", "0", "100", "105 %"}));
  EXPECT_EQ(Sql("SELECT GENRE, TRANCHE02, TRANCHE23 FROM Models WHERE JOUR = 6 ORDER BY CODE"),
            "GOLD|35|5\nROCK|0|0\nR, B|0|100\n");
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Models WHERE JOUR = 1"), "1\n");
  const auto lines = LinesOf(ReadText(root_ / "station/Samedi.Txt"));
  ASSERT_EQ(lines.size(), 3U);
  for (const std::string& line : lines)
    EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), 24) << line;
  EXPECT_EQ(lines[0].substr(0, 12), "GOLD\t60\t0\t35");
  EXPECT_EQ(Events("error").size(), 1U);  // it is closed
}

TEST_F(ModelsScript, TheKeysRemoveAndInsertRows) {
  Drive({"open models", "cell Models 1 0", "key Models delete", "show models", "key Models insert",
         "show models"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(ColumnOf(Screen()["grids"]["Models"], 0), (Texts{"Genres", "ROCK", "", "Total %"}));
  EXPECT_EQ(ColumnOf(Screen(1)["grids"]["Models"], 0),
            (Texts{"Genres", "", "ROCK", "", "Total %"}));
  EXPECT_EQ(Screen(1)["grids"]["Models"].back()[1], "50 %");
}

TEST_F(ModelsScript, PositionsAreWrittenInsertedEmptiedAndSaved) {
  Drive({"set Squelette -1", "open models", "cell ModelSquelette 3 0", "choose PopGenre GOLD",
         "cell ModelSquelette 1 7", "key ModelSquelette insert", "cell ModelSquelette 3 7",
         "key ModelSquelette delete", "press MnuCompteur", "show models", "press BtnSave"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(ColumnOf(Screen()["grids"]["ModelSquelette"], 7), (Texts{"07h", "", "GOLD", "", ""}));
  EXPECT_EQ(Screen()["lists"]["Stats"], Json({{"GOLD", "0002", "2"}, {"ROCK", "0001", "0"}}));
  EXPECT_EQ(Sql("SELECT TRANCHE00, TRANCHE07 FROM ModelSquelette WHERE JOUR = 6 ORDER BY CODE"),
            "|GOLD\nGOLD|\n");
  EXPECT_EQ(LinesOf(ReadText(root_ / "station/Sq-Samedi.Txt")).size(), 2U);
}

TEST_F(ModelsScript, AShareOfAVarietyIsStoredAtOnce) {
  Drive({"open models", "cell GVariete 1 0", "choose PopPourCent 85", "show models"});
  EXPECT_TRUE(Events("error").empty());
  const std::string variety = Screen()["grids"]["GVariete"][1][1];
  EXPECT_EQ(Screen()["grids"]["GVariete"][1][0], "85");
  EXPECT_EQ(Sql("SELECT POURCENT FROM Variete WHERE VARIETE = '" + variety + "'"), "85\n");
}

TEST_F(ModelsScript, ADayIsCopiedAndTheLastSavedModelComesBack) {
  Drive({"open models", "press BtnSave", "choose PopJour 1", "show models", "press BtnImport",
         "show models", "put JourSemaine.7 on", "press BtnImport", "show models"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(Screen(0)["controls"]["JourSemaine"], DaysWith(6));
  EXPECT_EQ(ColumnOf(Screen(0)["grids"]["Models"], 0), (Texts{"Genres", "OLD", "Total %"}));
  EXPECT_EQ(ColumnOf(Screen(1)["grids"]["Models"], 0),
            (Texts{"Genres", "GOLD", "ROCK", "Total %"}));
  EXPECT_EQ(Screen(1)["grids"]["Models"].back()[1], "110 %");
  EXPECT_EQ(Screen(2)["controls"]["JourSemaine"], DaysWith(7));
  ASSERT_EQ(Events("message").size(), 1U);  // nothing was changed of Saturday in the end
  EXPECT_EQ(Events("message")[0]["text"], "Introuvable\r\n" + Path("station/Dimanche.Txt"));
}

TEST_F(ModelsScript, UnsavedChangesAskBeforeTheDayOrTheWindowIsLeft) {
  Drive({"open models", "cell Models 1 3", "choose PopPourCent 35", "put JourSemaine.1 on",
         "close models", "show models", "answer no", "press JourSemaine.1", "cell Models 1 3",
         "choose PopPourCent 15", "answer yes", "close models", "show models"});
  ASSERT_EQ(Events("message").size(), 4U);
  for (const Json& message : Events("message"))
    EXPECT_EQ(message["text"], "Voulez-vous sauvegarder les modifications ?");
  EXPECT_EQ(Screen()["controls"]["JourSemaine"], DaysWith(6));
  EXPECT_EQ(Events("screen").size(), 1U);
  EXPECT_EQ(Sql("SELECT JOUR, GENRE, TRANCHE02 FROM Models ORDER BY JOUR, CODE"),
            "1|OLD|15\n6|GOLD|0\n6|ROCK|0\n");
}

TEST_F(ModelsScript, TheWeekGoesToTheFileThatTheDialogueGives) {
  Drive({"open models", "press MnuExport", "path " + Path("week"), "press MnuExport",
         "path " + Path("nowhere/week"), "press MnuExport"});
  EXPECT_TRUE(std::filesystem::exists(root_ / "week.xlsx"));
  ASSERT_EQ(Events("error").size(), 1U);
  EXPECT_EQ(Events("error")[0]["where"], "ExportModelSemaine");
  EXPECT_EQ(Events("message").size(), 1U);
}

TEST_F(ModelsScript, ARequestGoesByTheSavedModelAndNeverTouchesTheGridAtWork) {
  Sql("UPDATE Discotheque SET NBPASSJOUR = 9, TRANCHE06 = '" + std::string(24, '1') + "'");
  Sql("UPDATE Cnf SET EcartArtiste = 0");
  Drive({"open models", "cell Models 2 11", "choose PopPourCent 100", "request", "show models",
         "press BtnSave", "request"});
  const auto requests = Events("request");
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[0]["rows"], 0);
  EXPECT_EQ(requests[1]["rows"], 1);  // the one title of ROCK
  EXPECT_EQ(ColumnOf(Screen()["grids"]["Models"], 11), (Texts{"10h", "0", "100", "100 %"}));
}

TEST_F(ModelsScript, WhatTheScreenDoesNotHaveOrWhatIsOffIsAnError) {
  Drive({"open models", "choose PopGenre GOLD", "cell Models 1 0", "choose PopGenre NOTHING",
         "choose PopPourCent 50", "cell Models 4 0", "cell ModelSquelette 1 0",
         "press JourSemaine.8", "choose PopJour 8", "key ModelSquelette delete",
         "put Models.1.1 5"});
  EXPECT_EQ(Events("error").size(), 9U);
}

TEST_F(ModelsScript, ABarredEntryDoesNothing) {
  Put("machine/ZemoPasseWord.Ini", "#TRUE#,\"x\"\r\n");
  Drive({"open models", "show models"});
  EXPECT_TRUE(Events("screen").empty());
}

}  // namespace
}  // namespace zemo
