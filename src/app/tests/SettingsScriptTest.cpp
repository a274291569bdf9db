// The settings screen as a script drives it, from outside. 21 November 2026 is a Saturday, day 5.
#include <gtest/gtest.h>

#include "OfficeScript.h"

namespace zemo {
namespace {

class SettingsScript : public OfficeScript {
 protected:
  void SetUp() override {
    OfficeScript::SetUp();
    MakeStation({10, 20});
  }
  std::string Cnf(const std::string& field) const {
    std::string text = Sql("SELECT " + field + " FROM Cnf");
    while (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
  }
  std::string StationText(const std::string& name) const {
    return ReadText(root_ / "station" / name);
  }
  Json Screen(size_t number = 0) const {
    const auto screens = Events("screen");
    return number < screens.size() ? screens[number] : Json();
  }
};

TEST_F(SettingsScript, ShowsEveryKindOfControlWithItsValue) {
  Drive({"set Langue 1", "set PmixPubs 700", "set PortCom 2", "open settings", "show settings"});
  EXPECT_TRUE(Events("error").empty());
  const Json screen = Screen();
  EXPECT_EQ(screen["name"], "settings");
  EXPECT_EQ(screen["title"], "Settings");
  const Json& controls = screen["controls"];
  EXPECT_EQ(controls["Config"],
            Json({"Preferences", "Point mix", "Levels", "Sound Card", "Spots / News", "Start",
                  "Others", "Communication", "Optimization"}));
  EXPECT_EQ(controls["EnchPub"], 700);
  EXPECT_EQ(controls["LblEnchPub"], "0.7");
  EXPECT_EQ(controls["SpinPurge"], 30);
  EXPECT_EQ(controls["JingleMn"], "0");  // of this station
  EXPECT_EQ(controls["CheckNational"], true);
  EXPECT_EQ(controls["CheckPub"], false);
  EXPECT_EQ(controls["PortCom"], Json({false, false, true, false, false}));
  EXPECT_EQ(controls["OptionOptimise"].size(), 2U);
  EXPECT_EQ(controls["Langue"], "English");
  EXPECT_EQ(controls["JourSemaine"], "Saturday");
  EXPECT_EQ(controls["PictureColor"], 33023);
  EXPECT_EQ(controls["Setting"], "4800,N,8,1");
  EXPECT_EQ(controls["BtnInti"], "Intitialize");
  EXPECT_EQ(controls["BtnSave"], "Save");
  EXPECT_EQ(controls["ChDecoupe"], Json({"", "", "", ""}));
  EXPECT_EQ(controls["LblNextStart"], "Will be efficient to the next starting of Zemo Radio ! ");
  EXPECT_EQ(screen["lists"]["Instru"][23], Json({"23", "on"}));
  EXPECT_EQ(screen["grids"]["Filtre"].size(), 81U);
  EXPECT_EQ(screen["off"], Json::array());
}

TEST_F(SettingsScript, WhatIsGivenIsStoredByTheClosingAndTheJingleNumbersStay) {
  Drive({"set JingleCode 12", "open settings", "put EnchDef 1700", "put SpinPurge 31",
         "put MaxPlay 7200000", "put CheckPub on", "press CheckRubrique", "put CheckNational off",
         "put OptionSat.4 on", "press CheckModel.1", "put TexteV \"Radio d'été\"",
         "put Langue Português", "put ComboJoystiquePort 1", "put JingleMn often",
         "put SpinImpulsion \"\"", "sql UPDATE Cnf SET JingleCode = 13", "close settings"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(Cnf("PmixDef"), "1700");
  EXPECT_EQ(Cnf("PurgeRapport"), "31");
  EXPECT_EQ(Cnf("CycleMaxi"), "7200000");
  EXPECT_EQ(Cnf("PrioritePubs"), "1");
  EXPECT_EQ(Cnf("PrioriteRubriques"), "1");
  EXPECT_EQ(Cnf("CheckNational"), "0");
  EXPECT_EQ(Cnf("EntreSat"), "4");
  EXPECT_EQ(Cnf("Squelette"), "-1");
  EXPECT_EQ(Cnf("TextVeille"), "Radio d'été");
  EXPECT_EQ(Cnf("Langue"), "2");
  EXPECT_EQ(Cnf("JoystiquePort"), "1");
  EXPECT_EQ(Cnf("Jingles"), "0");
  EXPECT_EQ(Cnf("TempsMaxiImPulsion"), "0");
  EXPECT_EQ(Cnf("JingleCode"), "13");
  EXPECT_EQ(StationText("Langue.Txt"), "2\r\n");
}

TEST_F(SettingsScript, NothingIsStoredBeforeTheClosingButTheReportRows) {
  Drive({"open settings", "put SpinPurge 31", "put SpinRapportDiff 35"});
  EXPECT_EQ(Cnf("PurgeRapport"), "30");
  EXPECT_NE(ReadText(root_ / "machine/Settings.Ini").find("XRapport=35"), std::string::npos);
}

TEST_F(SettingsScript, CouplingsFollowTheHand) {
  Drive({"open settings", "put SpinOptimise 55", "put CheckInstrumental on", "put CheckPubToph on",
         "show settings", "put CheckInstrumental on", "show settings"});
  EXPECT_EQ(Screen()["controls"]["SpinOptimise"], 48);
  EXPECT_EQ(Screen()["controls"]["CheckInstrumental"], false);
  EXPECT_EQ(Screen(1)["controls"]["CheckPubToph"], false);
  EXPECT_EQ(Screen(1)["controls"]["CheckInstrumental"], true);
}

TEST_F(SettingsScript, ABoxIsTickedByTheOrderOfTheMainScreensBoxesWhileTheScreenIsOpen) {
  Drive({"check CheckPub on", "open settings", "check CheckPub on", "check OptionOptimise on",
         "check CheckPubToph on", "check CheckInstrumental on", "close settings",
         "check CheckRubrique on"});
  EXPECT_EQ(Events("error").size(), 2U);
  EXPECT_EQ(Cnf("PrioritePubs"), "1");
  EXPECT_EQ(Cnf("OptimiseToph"), "-1");
  EXPECT_EQ(Cnf("PubAvecTopH"), "0");
  EXPECT_EQ(Cnf("Instrumental"), "1");
  EXPECT_EQ(Cnf("PrioriteRubriques"), "0");
}

TEST_F(SettingsScript, ThePortAndTheJoystickAnswerAtOnce) {
  Drive({"open settings", "put Setting 9600,E,7,2", "put PortCom.2 on", "put ComboJoystiquePort 3",
         "show settings", "put PortCom.0 on", "put ComboJoystiquePort 0", "show settings",
         "close settings"});
  EXPECT_EQ(Screen()["controls"]["InfoERR"], "Init 9600,E,7,2 Ok");
  EXPECT_EQ(Screen()["controls"]["LblJoystique"], "Yes");
  EXPECT_EQ(Screen(1)["controls"]["InfoERR"], "Port COM Close OK !");
  EXPECT_EQ(Screen(1)["controls"]["LblJoystique"], "No");
  EXPECT_EQ(Cnf("PortCom"), "0");
}

TEST_F(SettingsScript, TheNextColourDialogueGivesTheColourAndWithoutOneItIsCancelled) {
  Drive({"open settings", "press PictureColor", "colour FF0000", "press PictureColor",
         "press PictureColor", "show settings", "close settings"});
  EXPECT_EQ(Screen()["controls"]["PictureColor"], 255);
  EXPECT_EQ(Cnf("CouleurdesCompteur"), "255");
}

TEST_F(SettingsScript, FilesOfTheSelectorBecomeTheJinglesAroundSpots) {
  Drive({"open settings", "files " + Path("a.wav"), "press CmdFileAvant", "press CmdFileApres",
         "close settings"});
  EXPECT_EQ(Cnf("JingleAvantPubs"), Path("a.wav"));
  EXPECT_EQ(Cnf("JingleApresPubs"), "");
}

TEST_F(SettingsScript, TimesOfADayAreEnteredChosenAndDeleted) {
  Drive({"open settings", "put ComboHeure 06:00", "key ComboHeure enter",
         "put HeureArretSystem 23:00-q", "key HeureArretSystem enter", "put ChEdit 12:30",
         "key ChEdit enter", "put ChEdit 13:30", "press BtnAjouter", "choose Topage 1",
         "key Topage delete", "show settings", "put ChEdit noon", "press BtnAjouter",
         "press BtnSave", "put JourSemaine 0", "put JourSemaine Mardi", "show settings"});
  EXPECT_EQ(Events("error").size(), 1U);
  const Json lists = Screen()["lists"];
  EXPECT_EQ(lists["ComboHeure"], Json::array({Json::array({"06:00"})}));
  EXPECT_EQ(lists["HeureArretSystem"], Json::array({Json::array({"23:00-Q"})}));
  EXPECT_EQ(lists["Topage"], Json::array({Json::array({"13:30"})}));
  EXPECT_EQ(Screen(1)["controls"]["JourSemaine"], "Mardi");
  EXPECT_EQ(Screen(1)["lists"]["Topage"], Json::array());
  EXPECT_EQ(StationText("Topage.5"), "\"13:30\"\r\n");
  EXPECT_EQ(StationText("StartStop.5"), "\"START\",\"06:00\"\r\n\"STOP\",\"23:00-Q\"\r\n");
}

TEST_F(SettingsScript, TheMarkerListIsRebuiltFromTheBoxes) {
  Drive({"open settings", "put ChDecoupe.0 0", "put ChDecoupe.2 30", "press BtnInti",
         "show settings"});
  const Json topage = Screen()["lists"]["Topage"];
  ASSERT_EQ(topage.size(), 48U);
  EXPECT_EQ(topage[1], Json::array({"00:30"}));
  EXPECT_EQ(topage[47], Json::array({"23:30"}));
}

TEST_F(SettingsScript, HoursAndFilterGoToTheirFiles) {
  Drive({"open settings", "choose Instru 1,3", "cell Filtre 1 0", "put ChFiltre 06:00",
         "key ChFiltre enter", "cell Filtre 1 1", "put ChFiltre 09:00", "key ChFiltre enter",
         "show settings", "close settings", "open settings", "show settings"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(Screen()["grids"]["Filtre"][0], Json({"de", "à"}));
  EXPECT_EQ(Screen()["grids"]["Filtre"][1], Json({"06:00", "09:00"}));
  EXPECT_EQ(StationText("Exclusion.Txt"), "06:00\t09:00\r\n");
  EXPECT_EQ(StationText("Instrumental.Txt").substr(0, 27), "#TRUE#\r\n#FALSE#\r\n#TRUE#\r\n#F");
  EXPECT_EQ(Screen(1)["lists"]["Instru"][0], Json({"00h00", "on"}));
  EXPECT_EQ(Screen(1)["lists"]["Instru"][1], Json({"01h00", "off"}));
}

TEST_F(SettingsScript, OutputsAreChosenAndOneThatIsNotThereIsAnError) {
  Drive({"open settings", "put PlayCombo 2", "put PlayPréecoute 1", "put PlayCombo 4",
         "close settings"});
  EXPECT_EQ(Events("error").size(), 1U);
  EXPECT_EQ(ReadText(root_ / "machine/ZemoAudio.Ini"), "2,1\r\n");
}

TEST_F(SettingsScript, GenresAndTheIndexHaveTheirMessages) {
  Drive({"open settings", "press BtnRech", "press BtnIndex"});
  const auto messages = Events("message");
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0]["title"], "Alerte");
  EXPECT_NE(messages[0]["text"].get<std::string>().find(" Genres ont étés ajoutés a la liste"),
            std::string::npos);
  EXPECT_EQ(messages[1]["text"],
            "Vous devez être tout seul sur la base pour\r\néxecuter cette opération");
  EXPECT_EQ(messages[1]["answer"], "cancel");
}

TEST_F(SettingsScript, WhatIsRefusedIsAnErrorAndChangesNothing) {
  Drive({"open settings", "put EnchDef 32768", "put SpinAvantoph 101", "put PortCom.5 on",
         "cell Filtre 0 0", "cell Filtre 81 0", "put Langue Klingon", "show settings"});
  EXPECT_EQ(Events("error").size(), 6U);
  EXPECT_EQ(Screen()["controls"]["EnchDef"], 1600);
}

TEST_F(SettingsScript, ABarredEntryDoesNothing) {
  Put("machine/ZemoPasseWord.Ini", "#TRUE#,\"x\"\r\n");
  Drive({"open settings", "show settings"});
  EXPECT_TRUE(Events("screen").empty());
}

TEST_F(SettingsScript, AColourIsSixDigits) {
  Put("script", "+1 colour FF00\n");
  const Result result =
      Run("simulate --station station --no-start --for 1 --script script --trace trace");
  EXPECT_EQ(result.status, 2);
}

}  // namespace
}  // namespace zemo
