// The campaign editor as a script drives it, from outside. 21 November 2026 is a Saturday.
#include <gtest/gtest.h>

#include "OfficeScript.h"

namespace zemo {
namespace {

using Texts = std::vector<std::string>;

class CampaignScript : public OfficeScript {
 protected:
  void SetUp() override {
    OfficeScript::SetUp();
    MakeStation({10, 20, 30});
    PutWav("station/Bakery.wav", 5);
    PutWav("station/Zoo.wav", 65);
  }
  // Of every week, from 07 to 08 h at 00 and 30.
  void AddCampaign(const std::string& advertiser, const std::string& priority,
                   const std::string& file, const std::string& gridFile = "") const {
    Sql("INSERT INTO GrillePub(CAMPAGNEDEPART, CAMPAGNEFIN, HDEPART, HFIN, DECOUPEH1, DECOUPEH2, "
        "FILENAMEAUDIO, DUREE, ANNONCEUR, CATEGORIE, FILENAMEGRILLE, PRIORITY, PUB) VALUES("
        "'JOURNALIER', 'JOURNALIER', '07', '08', '00', '30', '" +
        file + "', 15000, '" + advertiser + "', 'FOOD', '" + gridFile + "', " + priority + ", -1)");
  }
  void AddBakery() const {
    AddCampaign("Bakery", "20", Path("station/Bakery.wav"), Path("station/Bakery.GPB"));
  }
  void AddZoo() const { AddCampaign("Zoo", "10", Path("station/Zoo.wav")); }
  static Texts ColumnOf(const Json& rows, size_t column) {
    Texts cells;
    for (const Json& row : rows) cells.push_back(row[column]);
    return cells;
  }
  Json Screen(size_t number) const {
    const auto screens = Events("screen");
    return number < screens.size() ? screens[number] : Json();
  }
  Texts Messages() const {
    Texts texts;
    for (const Json& message : Events("message")) texts.push_back(message["text"]);
    return texts;
  }
};

TEST_F(CampaignScript, ShowsTheLastRecordInOrderOfPassageUnderItsControls) {
  AddBakery();
  AddZoo();
  Put("station/Bakery.GPB", "X\r\n\r\n\r\n\r\n\r\n\r\nX\r\n" + std::string(21, '\n'));
  Drive({"open campaigns", "show campaigns"});
  EXPECT_TRUE(Events("error").empty()) << Events("error")[0];
  const Json screen = Screen(0);
  EXPECT_EQ(screen["name"], "campaigns");
  EXPECT_EQ(screen["title"], "Horaires des pubs");
  const Json& controls = screen["controls"];
  const std::pair<const char*, Json> values[] = {
      {"LblCode", "1"},
      {"LblDepartPub", "JOURNALIER"},
      {"LblFinPub", "JOURNALIER"},
      {"HDepPub", "07"},
      {"HFinPub", "08"},
      {"DecoupagePub", {"00", "30", "", "", "", "", "", ""}},
      {"FichierAudio", Path("station/Bakery.wav")},
      {"Longeur", "15000"},
      {"LblTemp", "00:15"},
      {"ChAnnonceur", "Bakery"},
      {"Categorie", "FOOD"},
      {"ComboPriority", "20"},
      {"ChContact", ""},
      {"OptPub", {true, false}},
      {"GenreAssocie", ""},
      {"LblTotalMsg", "2"},
      {"LblTotalJours", "7 jours"},
      {"LblInfoPub", "2 /2"},
      {"BtnNew", "Nouvelle"},
      {"BtnAjouter", "Ajouter"},
      {"CmdLoadFile", "File"},
  };
  for (const auto& [name, value] : values) EXPECT_EQ(controls[name], value) << name;
  for (const char* name :
       {"BtnReplacer", "BtnDelete", "BtnDebut", "BtnFin", "BtnPlus", "BtnMoins", "BtnRecherhe",
        "BtnCopyGrille", "BtnCollerGrille", "BtnDecalY", "BtnImprimer", "ImgMemo", "CmdInitGrille"})
    EXPECT_TRUE(controls.contains(name)) << name;
  EXPECT_EQ(screen["grids"]["GPub"],
            Json::parse(R"([["","","","","","","",""],["","","","","","","",""],
                            ["","L","M","M","J","V","S","D"],["07:00","X","","","","","","X"],
                            ["07:30","","","","","","",""],["08:00","","","","","","",""],
                            ["08:30","","","","","","",""]])"));
  EXPECT_EQ(screen["grids"]["GPubReference"], Json::array());
  EXPECT_EQ(screen["lists"]["PLPub"], Json::array());
  EXPECT_EQ(screen["off"], Json({"BtnAjouter", "PLPub", "GPubReference"}));
}

TEST_F(CampaignScript, ANewCampaignIsAddedWithItsFilesAndAirsFromTheClosingOn) {
  Put("station/Genre.Txt", "POP\r\n");
  Drive({"open campaigns",
         "press BtnNew",
         "show campaigns",
         "put HDepPub 12",
         "put HFinPub 12",
         "put DecoupagePub.0 5",
         "put DecoupagePub.3 35",
         "day 2026-11-20",
         "press LblDepartPub",
         "day 2026-11-21",
         "press LblFinPub",
         "put Categorie food",
         "put ComboPriority 30",
         "put ChContact Anne",
         "put OptPub.1 on",
         "put GenreAssocie pop",
         "files " + Path("station/Bakery.wav"),
         "press CmdLoadFile",
         "cell GPub 4 2",
         "show campaigns",
         "press BtnAjouter",
         "show campaigns",
         "close campaigns"});
  EXPECT_TRUE(Events("error").empty()) << Events("error")[0];
  EXPECT_EQ(Screen(0)["off"],
            Json({"BtnNew", "BtnReplacer", "BtnDelete", "PLPub", "GPubReference"}));
  EXPECT_EQ(Screen(0)["controls"]["LblDepartPub"], "- - / - - / - -");
  EXPECT_EQ(Screen(0)["grids"]["GPub"].size(), 10U);
  EXPECT_EQ(Screen(0)["grids"]["GPub"][9].size(), 4U);
  const Json filled = Screen(1);
  EXPECT_EQ(filled["controls"]["ChAnnonceur"], "Bakery");
  EXPECT_EQ(filled["controls"]["Longeur"], "5000");
  EXPECT_EQ(filled["controls"]["LblTemp"], "00:05");
  EXPECT_EQ(filled["controls"]["OptPub"], Json({false, true}));
  EXPECT_EQ(filled["controls"]["LblTotalJours"], "2 jours");
  EXPECT_EQ(filled["controls"]["LblTotalMsg"], "1");
  EXPECT_EQ(filled["grids"]["GPub"],
            Json::parse(R"([["Mois","11","1"],["Jour","20","21"],["","V","S"],
                            ["12:05","",""],["12:35","","X"]])"));
  EXPECT_EQ(Screen(2)["grids"]["GPub"][0], Json({"Mois", "11", "11"}));
  EXPECT_EQ(Screen(2)["off"], Json({"BtnAjouter", "PLPub", "GPubReference"}));
  EXPECT_EQ(Sql("SELECT CAMPAGNEDEPART, CAMPAGNEFIN, HDEPART, HFIN, DECOUPEH1, DECOUPEH4, DUREE, "
                "ANNONCEUR, CATEGORIE, PRIORITY, CONTACT, PUB, GENREASSOCIE FROM GrillePub"),
            "20/11/2026|21/11/2026|12|12|5|35|5000|Bakery|food|30|Anne|0|POP\n");
  EXPECT_EQ(ReadText(root_ / "station/Bakery.GPB"), "\r\n\r\n\r\nX\r\n");
  EXPECT_EQ(LinesOf(ReadText(root_ / "station/Bakery.prg")).size(), 17U);
  EXPECT_EQ(ReadText(root_ / "station/Decoupe.Ini"),
            "\"12\",\"12\",\"5\",\"\",\"\",\"35\",\"\",\"\",\"\",\"\"\r\n");
  const auto grids = Events("grid");
  ASSERT_FALSE(grids.empty());
  EXPECT_EQ(grids.back()["news"], 1);
  EXPECT_EQ(grids.back()["rows"], 1);
}

TEST_F(CampaignScript, GesturesOnTheGridMarkCellRowAndColumnWithEitherButton) {
  AddZoo();
  Drive({"open campaigns", "cell GPub 3 1", "cell GPub 4 2 right", "cell GPub 5 3 shift",
         "cell GPub 1 7 ctrl", "show campaigns", "cell GPub 3 1 right", "cell GPub 5 1 right shift",
         "cell GPub 3 7 right ctrl", "show campaigns"});
  EXPECT_TRUE(Events("error").empty()) << Events("error")[0];
  EXPECT_EQ(Screen(0)["grids"]["GPub"],
            Json::parse(R"([["","1","1","1","","","","4"],["","","","","","","",""],
                            ["","L","M","M","J","V","S","D"],["07:00","X","","","","","","X"],
                            ["07:30","","X","","","","","X"],["08:00","X","X","X","X","X","X","X"],
                            ["08:30","","","","","","","X"]])"));
  EXPECT_EQ(Screen(0)["controls"]["LblTotalMsg"], "12");
  EXPECT_EQ(Screen(1)["controls"]["LblTotalMsg"], "1");
  EXPECT_EQ(Screen(1)["grids"]["GPub"][4][2], "X");
}

TEST_F(CampaignScript, TwoClicksOfOneMomentToggleTwice) {
  AddZoo();
  Put("script", "+1 open campaigns\n+1 cell GPub 3 1\n+0 cell GPub 3 1\n+1 show campaigns\n");
  ASSERT_EQ(
      Run("simulate --station station --no-start --for 9 --script script --trace trace").status, 0);
  for (const std::string& line : LinesOf(ReadText(root_ / "trace")))
    trace_.push_back(Json::parse(line));
  EXPECT_EQ(Screen(0)["controls"]["LblTotalMsg"], "0");
}

TEST_F(CampaignScript, AMarkWithoutAnOpenCampaignIsToldAndACellThatIsNotThereIsAnError) {
  AddZoo();
  Drive({"open campaigns", "press BtnRecherhe", "cell GPub 3 1", "show campaigns", "cell GPub 99 1",
         "cell GPubReference 3 1"});
  EXPECT_EQ(Messages(),
            Texts{"Vous devez d'abord initialiser la grille\r\navec le bouton nouvelle"});
  EXPECT_EQ(Screen(0)["grids"]["GPub"][3][1], "");
  EXPECT_EQ(Events("error").size(), 2U);
}

TEST_F(CampaignScript, TheOverviewIsSortedByItsHeadsAndALineOfItIsLoaded) {
  AddZoo();
  AddBakery();
  Drive({"choose PLPub 1", "open campaigns", "choose PLPub 1", "press PLPub.1", "press BtnRecherhe",
         "show campaigns", "press PLPub.5", "show campaigns", "press PLPub.5", "press PLPub.5",
         "choose PLPub 1", "show campaigns"});
  EXPECT_EQ(Events("error").size(), 3U);
  const Json open = Screen(0);
  EXPECT_EQ(open["lists"]["PLPub"],
            Json::parse(R"([["Bakery","FOOD","JOURNALIER","JOURNALIER","Publicité","2",""],
                            ["Zoo","FOOD","JOURNALIER","JOURNALIER","Publicité","1",""]])"));
  EXPECT_EQ(open["off"],
            Json({"BtnNew", "BtnAjouter", "BtnReplacer", "BtnDelete", "GPubReference"}));
  EXPECT_EQ(open["controls"]["PLPub"][0], "Annonceur");
  EXPECT_EQ(ColumnOf(Screen(1)["lists"]["PLPub"], 0), (Texts{"Zoo", "Bakery"}));
  EXPECT_EQ(Screen(2)["controls"]["ChAnnonceur"], "Zoo");
  EXPECT_EQ(Screen(2)["off"], Json({"BtnAjouter", "PLPub", "GPubReference"}));
}

TEST_F(CampaignScript, PagesInOrderOfPassageAndReplacesAndDeletesWhatIsShown) {
  AddBakery();
  AddZoo();
  Drive({"open campaigns", "press BtnMoins", "show campaigns", "press BtnPlus",
         "put ChAnnonceur \"Bread and more\"", "press BtnReplacer", "show campaigns",
         "press BtnDelete", "answer ok", "press BtnDelete", "show campaigns"});
  EXPECT_TRUE(Events("error").empty()) << Events("error")[0];
  EXPECT_EQ(Screen(0)["controls"]["ChAnnonceur"], "Zoo");
  EXPECT_EQ(Screen(1)["controls"]["LblInfoPub"], "1 /2");
  EXPECT_EQ(Messages(), (Texts{"Confirmez la suppression de la fiche Zoo",
                               "Confirmez la suppression de la fiche Zoo"}));
  EXPECT_EQ(Screen(2)["controls"]["ChAnnonceur"], "Bread and more");
  EXPECT_EQ(Sql("SELECT ANNONCEUR FROM GrillePub"), "Bread and more\n");
}

TEST_F(CampaignScript, AGridIsCopiedFromOneCampaignToAnotherAndTurned) {
  AddBakery();
  AddZoo();
  Put("station/Bakery.GPB", "X\n" + std::string(27, '\n'));
  Drive({"open campaigns", "press BtnCopyGrille", "press BtnMoins", "press BtnCollerGrille",
         "press BtnDecalY", "show campaigns"});
  EXPECT_EQ(Screen(0)["controls"]["ChAnnonceur"], "Zoo");
  EXPECT_EQ(Screen(0)["controls"]["LblTotalMsg"], "1");
  EXPECT_EQ(Screen(0)["grids"]["GPub"][4][1], "X");
  EXPECT_EQ(Screen(0)["grids"]["GPubReference"][3][1], "X");
}

TEST_F(CampaignScript, OnlyTheEndDateOrTheRebuildMakesTheGridAnew) {
  AddZoo();
  Drive({"open campaigns", "put HFinPub 07", "day 2026-11-23", "press LblDepartPub",
         "show campaigns", "day 2026-11-24", "press LblFinPub", "show campaigns",
         "put DecoupagePub.1 \"\"", "press CmdInitGrille", "show campaigns",
         "press LblDepartPub right", "show campaigns", "press LblFinPub"});
  EXPECT_TRUE(Events("error").empty()) << Events("error")[0];
  EXPECT_EQ(Screen(0)["grids"]["GPub"].size(), 7U);
  EXPECT_EQ(Screen(0)["controls"]["LblDepartPub"], "23/11/2026");
  EXPECT_EQ(Screen(1)["grids"]["GPub"],
            Json::parse(R"([["Mois","11","11"],["Jour","23","24"],["","L","M"],
                            ["07:00","",""],["07:30","",""]])"));
  EXPECT_EQ(Screen(2)["grids"]["GPub"].size(), 4U);
  EXPECT_EQ(Screen(3)["controls"]["LblFinPub"], "JOURNALIER");
  EXPECT_EQ(Screen(3)["grids"]["GPub"][2], Json({"", "L", "M", "M", "J", "V", "S", "D"}));
}

TEST_F(CampaignScript, KeysInTheCategoryAddAndRemoveIt) {
  Put("station/Categori.Ini", "FOOD\r\n");
  Drive({"open campaigns", "press BtnNew", "put Categorie cars", "answer yes",
         "key Categorie enter", "put Categorie food", "answer yes", "key Categorie delete",
         "put Categorie no", "key Categorie enter", "show campaigns"});
  EXPECT_EQ(Messages(),
            (Texts{"Ajouter cette Catégorie à la liste\r\ncars", "Effacer cette Catégorie food",
                   "Ajouter cette Catégorie à la liste\r\nno"}));
  EXPECT_EQ(ReadText(root_ / "station/Categori.Ini"), "CARS\r\n");
  EXPECT_EQ(Screen(0)["controls"]["Categorie"], "");
}

TEST_F(CampaignScript, ASoundFileOfAnotherCampaignIsRefusedAndACancelledSelectorTakesNone) {
  AddZoo();
  Drive({"open campaigns", "press BtnNew", "files " + Path("station/Zoo.wav"), "press CmdLoadFile",
         "press CmdLoadFile", "show campaigns", "press BtnAjouter"});
  EXPECT_EQ(Screen(0)["controls"]["FichierAudio"], "");
  EXPECT_EQ(Messages(), (Texts{"Vouz ne pouvez pas choisir ce fichier audio\r\n"
                               "car il est déjà attribué à l'annonceur Zoo",
                               "Impossible de sauver car vous n'avez pas\r\n"
                               "Attribué de fichier audio"}));
}

TEST_F(CampaignScript, TheRecordSheetGoesToPaperAndIntoAFile) {
  AddZoo();
  Drive({"open campaigns", "cell GPub 3 2", "press BtnImprimer"});
  const auto prints = Events("print");
  ASSERT_EQ(prints.size(), 1U);
  EXPECT_EQ(prints[0]["title"], "FICHE 1 - Zoo");
  const Json& page = prints[0]["pages"][0];
  EXPECT_EQ(page[0], " FICHE 1 - Zoo  1");
  EXPECT_EQ(page[1], "Campagne du JOURNALIER au JOURNALIER");
  EXPECT_EQ(page[6], "Soit 1 messages sur 7 jours");
  EXPECT_EQ(page[11], "07:00    x");
  EXPECT_EQ(LinesOf(ReadText(root_ / "station/Zoo.Xlt")).size(), page.size());
}

TEST_F(CampaignScript, CaptionsAndMessagesAreInTheStationsLanguage) {
  Drive({"set Langue 1", "open campaigns", "show campaigns", "cell GPub 3 1", "press ImgMemo"});
  EXPECT_EQ(Screen(0)["title"], "Spot times");
  EXPECT_EQ(Screen(0)["controls"]["BtnReplacer"], "Replace");
  ASSERT_EQ(Messages().size(), 2U);
  EXPECT_EQ(Messages()[0], "In first you must init grid\r\nwith New button");
  EXPECT_EQ(Messages()[1].substr(0, 23), "To add a new grid of sp");
}

TEST_F(CampaignScript, AnEntryThatAListDoesNotHaveIsAnErrorAndABarredEntryOfTheMenuDoesNothing) {
  AddZoo();
  Drive({"open campaigns", "put ComboPriority 15", "put GenreAssocie NOTHING", "put LblCode 7",
         "put DecoupagePub.8 1", "put OptPub.2 on", "press BtnAjouter", "show campaigns"});
  EXPECT_EQ(Events("error").size(), 6U);
  EXPECT_EQ(Screen(0)["controls"]["ComboPriority"], "10");
  trace_.clear();
  Put("machine/ZemoPasseWord.Ini", "#TRUE#,\"x\"\r\n");
  Drive({"open campaigns", "show campaigns"});
  EXPECT_TRUE(Events("screen").empty());
}

}  // namespace
}  // namespace zemo
