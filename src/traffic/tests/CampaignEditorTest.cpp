// The campaign editor: its records, its fields, its words and its files.
#include <filesystem>

#include "traffic/CampaignMarking.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

using Enabled = std::array<bool, 4>;  // BtnNew, BtnAjouter, BtnReplacer, BtnDelete

Enabled Buttons4(const CampaignEditor& editor) {
  return {editor.BtnNewEnabled, editor.BtnAjouterEnabled, editor.BtnReplacerEnabled,
          editor.BtnDeleteEnabled};
}

// What an operator fills in for a weekly campaign with a cross on Monday at 07:00.
void FillNew(CampaignStation& s, const std::string& sound, const std::string& priority = "50") {
  Campaigns::BtnNew_Click(s.station, s.editor);
  ASSERT_TRUE(Campaigns::CmdLoadFile_Click(s.station, s.editor, sound, 15000));
  s.editor.HDepPub = "07";
  s.editor.HFinPub = "08";
  s.editor.DecoupagePub = {"00", "30"};
  s.editor.ComboPriority = priority;
  s.editor.Categorie = "FOOD";
  Campaigns::LblDepartPub_RightClick(s.station, s.editor);
  s.editor.GPub.SetCell(3, 1, "X");
}

// --- opening ---

TEST(CampaignEditor, OpensOnTheLastRecordInOrderOfPassage) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'Late'"}, {"PRIORITY", "300"}});
  s.AddCampaign({{"ANNONCEUR", "'Early'"}, {"PRIORITY", "10"}});
  s.MakeFile("Categori.Ini", "FOOD\r\nCARS\r\n");
  s.editor.PLPubVisible = true;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_TRUE(s.editor.open);
  EXPECT_EQ(s.editor.ChAnnonceur, "Late");
  EXPECT_EQ(s.editor.LblInfoPub, "2 /2");
  EXPECT_FALSE(s.editor.PLPubVisible);
  EXPECT_EQ(Buttons4(s.editor), (Enabled{true, false, true, true}));
  EXPECT_EQ(s.editor.CategorieList, (std::vector<std::string>{"FOOD", "CARS"}));
  EXPECT_EQ(s.editor.GenreAssocieList.size(), 7u);
  ASSERT_EQ(s.editor.ComboPriorityList.size(), 30u);
  EXPECT_EQ(s.editor.ComboPriorityList.front(), "10");
  EXPECT_EQ(s.editor.ComboPriorityList.back(), "300");
}

TEST(CampaignEditor, StaysAsItIsWhileItIsOpenAndClosedWhileTheMenusAreLocked) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'Zoo'"}});
  s.station.engine.ScreenLocked = true;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_FALSE(s.editor.open);
  EXPECT_EQ(s.editor.ChAnnonceur, "");
  s.station.engine.ScreenLocked = false;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.ChAnnonceur = "typed";
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.ChAnnonceur, "typed");
  Campaigns::BtnCopyGrille_Click(s.editor);
  Campaigns::Form_Unload(s.station, s.editor);
  EXPECT_FALSE(s.editor.open);
  EXPECT_TRUE(s.Events("message").empty());  // what was typed goes without a question
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.ChAnnonceur, "Zoo");
  EXPECT_EQ(s.editor.GPubReference.RowCount(), 0);
}

TEST(CampaignEditor, OpensEmptyOnAnEmptyTableWithTheTemplate) {
  CampaignStation s;
  s.MakeFile("Decoupe.Ini", "\"07\",\"20\",\"15\",\"45\",\"\",\"\",\"\",\"\",\"\",\"\"\r\n");
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_EQ(Buttons4(s.editor), (Enabled{true, false, false, false}));
  EXPECT_EQ(s.editor.HDepPub + s.editor.HFinPub + s.editor.DecoupagePub[0], "072015");
  EXPECT_EQ(s.editor.LblInfoPub, "0 /0");
}

// --- paging ---

TEST(CampaignEditor, PagesInOrderOfPassageAndStopsAtBothEnds) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'Third'"}, {"PRIORITY", "30"}});
  s.AddCampaign({{"ANNONCEUR", "'First'"}, {"PRIORITY", "10"}});
  s.AddCampaign({{"ANNONCEUR", "'Second'"}, {"PRIORITY", "20"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  const auto shown = [&] { return s.editor.ChAnnonceur + " " + s.editor.LblInfoPub; };
  Campaigns::BtnPlus_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "Third 3 /3");
  Campaigns::BtnMoins_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "Second 2 /3");
  Campaigns::BtnDebut_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "First 1 /3");
  Campaigns::BtnMoins_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "First 1 /3");
  Campaigns::BtnPlus_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "Second 2 /3");
  Campaigns::BtnFin_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "Third 3 /3");
}

TEST(CampaignEditor, AtTheEndsPagingOnDoesNothingAtAll) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'First'"}, {"PRIORITY", "10"}});
  s.AddCampaign({{"ANNONCEUR", "'Second'"}, {"PRIORITY", "20"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.ChContact = "typed";
  Campaigns::BtnPlus_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.ChAnnonceur + " " + s.editor.ChContact, "Second typed");
  Campaigns::BtnMoins_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.ChAnnonceur + " " + s.editor.ChContact, "First ");
  s.editor.ChContact = "typed";
  Campaigns::BtnMoins_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.ChAnnonceur + " " + s.editor.ChContact, "First typed");
}

TEST(CampaignEditor, PagingOnFromANewRecordGoesOnFromTheOneThatWasShownBefore) {
  CampaignStation s;
  for (const char* priority : {"10", "20", "30", "40"})
    s.AddCampaign({{"ANNONCEUR", "'At " + std::string(priority) + "'"}, {"PRIORITY", priority}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  const auto shown = [&] { return s.editor.ChAnnonceur + " " + s.editor.LblInfoPub; };
  Campaigns::BtnDebut_Click(s.station, s.editor);
  Campaigns::BtnPlus_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  Campaigns::BtnPlus_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "At 30 3 /4");
  Campaigns::BtnNew_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  Campaigns::BtnMoins_Click(s.station, s.editor);
  EXPECT_EQ(shown(), "At 20 2 /4");
}

TEST(CampaignEditor, PagingOnFromTheFirstRecordOfAllKeepsWhatIsTyped) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  s.editor.ChContact = "typed";
  Campaigns::BtnPlus_Click(s.station, s.editor);
  Campaigns::BtnMoins_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.ChContact, "typed");
  EXPECT_TRUE(s.editor.BtnAjouterEnabled);
}

TEST(CampaignEditor, PagingOnFromARecordThatIsGoneBeginsAtTheFirst) {
  CampaignStation s;
  for (const char* priority : {"10", "20", "30"})
    s.AddCampaign({{"ANNONCEUR", "'At " + std::string(priority) + "'"}, {"PRIORITY", priority}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.Sql("DELETE FROM GrillePub WHERE PRIORITY = 30");
  Campaigns::BtnMoins_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.ChAnnonceur, "At 10");
}

// --- new ---

TEST(CampaignEditor, NewEmptiesTheScreenAndLeavesTheTemplate) {
  CampaignStation s;
  s.MakeFile("Decoupe.Ini", "\"09\",\"10\",\"05\",\"\",\"\",\"\",\"\",\"\",\"\",\"\"\r\n");
  s.AddCampaign({{"PUB", "0"}, {"CONTACT", "'Anne'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.PLPubVisible = true;
  Campaigns::BtnNew_Click(s.station, s.editor);
  EXPECT_EQ(Buttons4(s.editor), (Enabled{false, true, false, false}));
  EXPECT_EQ(s.editor.GPub.RowCount(), 10);
  EXPECT_EQ(GridColumns(s.editor.GPub), 4);
  EXPECT_EQ(CountCrosses(s.editor), 0);
  EXPECT_FALSE(s.editor.PLPubVisible);
  EXPECT_EQ(s.editor.Longeur, "0");
  EXPECT_EQ(s.editor.LblCode, "");
  EXPECT_EQ(s.editor.LblDepartPub, "- - / - - / - -");
  EXPECT_EQ(s.editor.LblFinPub, "- - / - - / - -");
  EXPECT_EQ(s.editor.OptPub, (std::array<bool, 2>{true, false}));
  EXPECT_EQ(s.editor.ChContact + s.editor.ChAnnonceur + s.editor.FichierAudio, "");
  EXPECT_EQ(s.editor.HDepPub + s.editor.HFinPub + s.editor.DecoupagePub[0], "091005");
}

TEST(CampaignEditor, NewWithoutATemplateKeepsHoursAndMarks) {
  CampaignStation s;
  s.AddCampaign({});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.HDepPub + s.editor.HFinPub, "0708");
  EXPECT_EQ(s.editor.DecoupagePub[1], "30");
}

// --- adding ---

TEST(CampaignEditor, AddingWritesTheRecordItsGridAndItsProgramFile) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'Other'"}, {"PRIORITY", "10"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  FillNew(s, s.MakeSound("Bakery.wav", 15000));
  s.editor.GenreAssocie = "POP";
  ASSERT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT CAMPAGNEDEPART || CAMPAGNEFIN || HDEPART || HFIN || DECOUPEH1 || "
                      "DECOUPEH2 || DECOUPEH3 || DUREE || ANNONCEUR || CATEGORIE || PRIORITY || "
                      "PUB || GENREASSOCIE FROM GrillePub WHERE CODE = 2"),
            "JOURNALIERJOURNALIER0708003015000BakeryFOOD50-1POP");
  EXPECT_EQ(s.SqlText("SELECT FILENAMEGRILLE FROM GrillePub WHERE CODE = 2"),
            s.InFolder("Bakery.GPB"));
  EXPECT_EQ(s.File("Bakery.GPB").size(), 28 * 2 + 1u);  // 4 moments of 7 days, and one X
  EXPECT_EQ(s.File("Bakery.prg").substr(0, 30), "JOURNALIER\r\nJOURNALIER\r\n07\r\n08");
  // On the first record again.
  EXPECT_EQ(s.editor.ChAnnonceur + " " + s.editor.LblInfoPub, "Other 1 /2");
  EXPECT_EQ(Buttons4(s.editor), (Enabled{true, false, true, true}));
  EXPECT_EQ(s.File("MajGrillePub.txt"), "(no file)");
}

TEST(CampaignEditor, AddingANewsElementStoresNoSpot) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  FillNew(s, s.MakeSound("News.mp3", 15000));
  s.editor.OptPub = {false, true};
  ASSERT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT PUB FROM GrillePub"), "0");
  EXPECT_EQ(s.File("News.GPB").substr(0, 3), "X\r\n");
}

TEST(CampaignEditor, ASoundFileOfAnotherKindGivesFilesOfTheEndingAloneInTheStationsFolder) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  std::filesystem::create_directory(s.InFolder("sub"));
  FillNew(s, s.MakeSound("sub/Bakery.ogg", 15000));
  ASSERT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT FILENAMEGRILLE FROM GrillePub"), "GPB");
  EXPECT_EQ(s.File("GPB").substr(0, 3), "X\r\n");
  EXPECT_EQ(s.File("prg").substr(0, 10), "JOURNALIER");
  EXPECT_EQ(s.editor.LblTotalMsg, "1");  // read back from there
}

TEST(CampaignEditor, AddingWithoutASoundFileIsRefusedInTheStationsLanguage) {
  const char* const words[] = {
      "Impossible de sauver car vous n'avez pas\r\nAttribué de fichier audio",
      "Can't save\r\nThere is no sounds file", "Escolher o ficheiro áudio antes de guardar",
      "Escoger el fichero audio antes de guardar"};
  CampaignStation s;
  for (int langue = 0; langue < 4; ++langue) {
    s.Set("Langue", std::to_string(langue));
    s.station.base.CheckCnf();
    Campaigns::BtnNew_Click(s.station, s.editor);
    s.editor.FichierAudio = langue % 2 == 0 ? "" : "/nowhere/spot.wav";
    EXPECT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
    EXPECT_EQ(s.LastMessage(), words[langue]);
    EXPECT_EQ(s.Events("message").back()["title"], "Alerte");
    EXPECT_TRUE(s.editor.BtnAjouterEnabled);
  }
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
}

TEST(CampaignEditor, KnowsWhatTheBaseWouldNotTake) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  const auto hindrance = [&] {
    const auto found = Campaigns::FindHindrance(s.editor);
    return found ? std::string(found->control) + " " + std::to_string(found->most) : "";
  };
  EXPECT_EQ(hindrance(), "LblDepartPub 0");
  Campaigns::PickDay(s.station, s.editor, 1, "21/11/2026");
  EXPECT_EQ(hindrance(), "LblFinPub 0");
  Campaigns::PickDay(s.station, s.editor, 2, "21/11/2026");
  EXPECT_EQ(hindrance(), "");
  for (int letter = 0; letter < 40; ++letter) s.editor.ChAnnonceur += "é";
  EXPECT_EQ(hindrance(), "");
  s.editor.ChAnnonceur += "é";
  EXPECT_EQ(hindrance(), "ChAnnonceur 40");
  s.editor.ChAnnonceur = "Zoo";
  s.editor.Categorie = std::string(41, 'c');
  EXPECT_EQ(hindrance(), "Categorie 40");
  s.editor.Categorie.clear();
  s.editor.FichierAudio = "/" + std::string(255, 'f');
  EXPECT_EQ(hindrance(), "FichierAudio 255");
}

TEST(CampaignEditor, KnowsWhatEndsBeforeItBegins) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  EXPECT_FALSE(Campaigns::EndsBeforeItBegins(s.editor));
  Campaigns::PickDay(s.station, s.editor, 1, "01/12/2026");
  EXPECT_FALSE(Campaigns::EndsBeforeItBegins(s.editor));  // the other day is not chosen yet
  Campaigns::PickDay(s.station, s.editor, 2, "30/11/2026");
  EXPECT_TRUE(Campaigns::EndsBeforeItBegins(s.editor));
  Campaigns::PickDay(s.station, s.editor, 2, "01/12/2026");
  EXPECT_FALSE(Campaigns::EndsBeforeItBegins(s.editor));
  Campaigns::LblDepartPub_RightClick(s.station, s.editor);
  EXPECT_FALSE(Campaigns::EndsBeforeItBegins(s.editor));
}

TEST(CampaignEditor, KnowsWhatTheNextRecordWouldLose) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  FillNew(s, s.MakeSound("Bakery.wav", 15000));
  EXPECT_TRUE(Campaigns::IsChanged(s.editor));
  ASSERT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_FALSE(Campaigns::IsChanged(s.editor));
  const std::string contact = s.editor.ChContact;
  s.editor.ChContact = contact + " Anne";
  EXPECT_TRUE(Campaigns::IsChanged(s.editor));
  s.editor.ChContact = contact;
  EXPECT_FALSE(Campaigns::IsChanged(s.editor));
  const GridPlace place{kFirstMomentRow, kFirstDayColumn};
  Campaigns::GPub_MouseUp(s.station, s.editor, MouseButton::kLeft, false, false, place);
  EXPECT_TRUE(Campaigns::IsChanged(s.editor));
  Campaigns::GPub_MouseUp(s.station, s.editor, MouseButton::kLeft, false, false, place);
  EXPECT_FALSE(Campaigns::IsChanged(s.editor));
  Campaigns::BtnNew_Click(s.station, s.editor);
  EXPECT_FALSE(Campaigns::IsChanged(s.editor));
}

TEST(CampaignEditor, ATextTooLongForItsFieldRefusesTheRecordAndWritesNoFile) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  FillNew(s, s.MakeSound("Bakery.wav", 15000));
  s.editor.ChAnnonceur = std::string(41, 'a');
  EXPECT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
  EXPECT_EQ(s.File("Bakery.GPB"), "(no file)");
  ASSERT_NE(s.First("error"), nullptr);
  EXPECT_EQ((*s.First("error"))["where"], "BtnAjouter");
  EXPECT_NE(s.station.notices.lastError.find(std::string(41, 'a')), std::string::npos);
  // The operator shortens it and adds.
  s.editor.ChAnnonceur = std::string(40, 'a');
  EXPECT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "1");
}

TEST(CampaignEditor, ARecordWhoseFilesFailStaysOnTheScreenAndIsSavedByReplace) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  FillNew(s, s.MakeSound("Bakery.wav", 15000));
  std::filesystem::create_directory(s.InFolder("Bakery.GPB"));
  EXPECT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.editor.ChAnnonceur, "Bakery");
  EXPECT_EQ(CountCrosses(s.editor), 1);
  EXPECT_EQ(Buttons4(s.editor), (Enabled{true, false, true, true}));
  std::filesystem::remove(s.InFolder("Bakery.GPB"));
  EXPECT_TRUE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.File("Bakery.GPB").substr(0, 3), "X\r\n");
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "1");
}

// --- replacing ---

TEST(CampaignEditor, ReplacingStoresTheScreenAndDerivesTheGridFileAnew) {
  CampaignStation s;
  const std::string sound = s.MakeSound("Bakery.wav", 15000);
  s.MakeFile("old.GPB", "X\r\n");
  s.AddCampaign({{"FILENAMEAUDIO", "'" + sound + "'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("old.GPB") + "'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_EQ(s.editor.LblTotalMsg, "1");  // of the stored path
  s.editor.ChAnnonceur = "Changed";
  s.editor.GPub.SetCell(4, 1, "X");
  ASSERT_TRUE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT ANNONCEUR FROM GrillePub"), "Changed");
  EXPECT_EQ(s.SqlText("SELECT FILENAMEGRILLE FROM GrillePub"), s.InFolder("Bakery.GPB"));
  EXPECT_EQ(s.File("old.GPB"), "X\r\n");
  EXPECT_EQ(s.editor.LblTotalMsg, "2");
}

TEST(CampaignEditor, ReplacingWithoutASoundFileIsRefusedInFrenchInEveryLanguage) {
  CampaignStation s;
  s.Set("Langue", "1");
  s.station.base.CheckCnf();
  s.AddCampaign({});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.LastMessage(),
            "Impossible de sauver car vous n'avez pas\r\nAttribué de fichier audio");
}

TEST(CampaignEditor, ReplacingARecordThatIsGoneIsRefused) {
  CampaignStation s;
  const std::string sound = s.MakeSound("Bakery.wav", 15000);
  s.AddCampaign({{"FILENAMEAUDIO", "'" + sound + "'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.Sql("DELETE FROM GrillePub");
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.LastMessage(), "Impossible de sauver");
}

TEST(CampaignEditor, ReplacingWithoutACodeEndsWithoutAWord) {
  CampaignStation s;
  const std::string sound = s.MakeSound("Bakery.wav", 15000);
  s.AddCampaign({{"FILENAMEAUDIO", "'" + sound + "'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.LblCode = "";
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_TRUE(s.Events("message").empty());
}

TEST(CampaignEditor, AReplacementTooLongForItsFieldLeavesRecordAndFiles) {
  CampaignStation s;
  const std::string sound = s.MakeSound("Bakery.wav", 15000);
  s.MakeFile("Bakery.GPB", "X\r\n");
  s.AddCampaign({{"FILENAMEAUDIO", "'" + sound + "'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("Bakery.GPB") + "'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.HDepPub = "007";
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT HDEPART FROM GrillePub"), "07");
  EXPECT_EQ(s.File("Bakery.GPB"), "X\r\n");
  EXPECT_EQ((*s.First("error"))["where"], "BtnReplacer");
}

TEST(CampaignEditor, AProductionMachineTellsOfBothSaves) {
  CampaignStation s;
  s.station.engine.PCProduction = true;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  FillNew(s, s.MakeSound("Bakery.wav", 15000));
  ASSERT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.File("MajGrillePub.txt"), "21/11/2026\r\n");
  s.stationFolder.Remove("MajGrillePub.txt");
  ASSERT_TRUE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.File("MajGrillePub.txt"), "21/11/2026\r\n");
}

// --- deleting ---

TEST(CampaignEditor, DeletingAsksAndTakesTheGridFileAlone) {
  CampaignStation s;
  const std::string sound = s.MakeSound("Bakery.wav", 15000);
  s.MakeFile("Bakery.GPB", "X\r\n");
  s.MakeFile("Bakery.prg", "program");
  s.AddCampaign({{"ANNONCEUR", "'Other'"}, {"PRIORITY", "10"}});
  s.AddCampaign({{"ANNONCEUR", "'Bakery'"},
                 {"PRIORITY", "20"},
                 {"FILENAMEAUDIO", "'" + sound + "'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("Bakery.GPB") + "'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_FALSE(Campaigns::BtnDelete_Click(s.station, s.editor));  // unanswered: cancelled
  EXPECT_EQ(s.LastMessage(), "Confirmez la suppression de la fiche Bakery");
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "2");
  EXPECT_EQ(s.File("Bakery.GPB"), "X\r\n");
  s.messages.AnswerNext(Answer::kOk);
  EXPECT_TRUE(Campaigns::BtnDelete_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT ANNONCEUR FROM GrillePub"), "Other");
  EXPECT_EQ(s.File("Bakery.GPB"), "(no file)");
  EXPECT_EQ(s.File("Bakery.prg"), "program");
  EXPECT_EQ(s.File("Bakery.wav"), "sound");
  EXPECT_EQ(s.editor.ChAnnonceur + " " + s.editor.LblInfoPub, "Other 1 /1");
}

// Deletes the first of the campaigns in order of passage.
void DeleteFirst(CampaignStation& s) {
  s.editor.open = false;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnDebut_Click(s.station, s.editor);
  s.messages.AnswerNext(Answer::kOk);
  ASSERT_TRUE(Campaigns::BtnDelete_Click(s.station, s.editor));
}

TEST(CampaignEditor, DeletingRemovesNoFileThatIsNotAGridFileByItsName) {
  for (const char* name : {"Triskin.BAK", "song.wav", "spot.GPB.wav", "GPB.Txt"}) {
    CampaignStation s;
    s.MakeFile(name, "kept");
    s.AddCampaign({{"FILENAMEGRILLE", "'" + s.InFolder(name) + "'"}});
    s.AddCampaign({{"FILENAMEGRILLE", "'" + std::string(name) + "'"}});  // in the station's folder
    DeleteFirst(s);
    DeleteFirst(s);
    EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
    EXPECT_EQ(s.File(name), "kept") << name;
  }
}

TEST(CampaignEditor, DeletingRemovesAGridFileThatIsNamedByItsEndingAlone) {
  for (const char* name : {"GPB", "spot.gpb"}) {
    CampaignStation s;
    s.MakeFile(name, "X\r\n");
    s.AddCampaign({{"FILENAMEGRILLE", "'" + std::string(name) + "'"}});
    DeleteFirst(s);
    EXPECT_EQ(s.File(name), "(no file)") << name;
  }
}

TEST(CampaignEditor, DeletingLeavesAFileThatAnotherCampaignStores) {
  const std::pair<const char*, bool> stored[] = {
      {"FILENAMEGRILLE", false}, {"FILENAMEGRILLE", true}, {"FILENAMEAUDIO", false}};
  for (const auto& [field, byBareName] : stored) {
    CampaignStation s;
    s.MakeFile("spot.GPB", "X\r\n");
    const std::string path = "'" + s.InFolder("spot.GPB") + "'";
    s.AddCampaign({{"PRIORITY", "10"}, {"FILENAMEGRILLE", path}});
    s.AddCampaign({{"PRIORITY", "20"}, {field, byBareName ? "'SPOT.gpb'" : path}});
    DeleteFirst(s);
    EXPECT_EQ(s.File("spot.GPB"), "X\r\n") << field << byBareName;
    s.Sql("UPDATE GrillePub SET FILENAMEGRILLE = " + path);
    DeleteFirst(s);
    EXPECT_EQ(s.File("spot.GPB"), "(no file)") << field << byBareName;
  }
}

TEST(CampaignEditor, DeletingTheLastRecordLeavesTheEmptyScreen) {
  CampaignStation s;
  s.AddCampaign({});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.messages.AnswerNext(Answer::kOk);
  EXPECT_TRUE(Campaigns::BtnDelete_Click(s.station, s.editor));
  EXPECT_EQ(Buttons4(s.editor), (Enabled{true, false, false, false}));
  EXPECT_EQ(s.editor.ChAnnonceur, "");
}

TEST(CampaignEditor, WhatIsRefusedIsAStopAndAGridWithoutACampaignAnInformation) {
  CampaignStation s;
  const std::string sound = s.MakeSound("Bakery.wav", 15000);
  s.AddCampaign({{"FILENAMEAUDIO", "'" + sound + "'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  const auto kindOf = [&](const std::string& text) {
    EXPECT_EQ(s.LastMessage().substr(0, text.size()), text);
    return s.messages.LastIcon();
  };
  Campaigns::CmdLoadFile_Click(s.station, s.editor, sound, 1000);
  EXPECT_EQ(kindOf("Vouz ne pouvez pas choisir"), Icon::kStop);
  s.Sql("DELETE FROM GrillePub");
  Campaigns::BtnDelete_Click(s.station, s.editor);
  EXPECT_EQ(kindOf("Il n'y a pas de fiche"), Icon::kStop);
  Campaigns::BtnReplacer_Click(s.station, s.editor);
  EXPECT_EQ(kindOf("Impossible de sauver"), Icon::kStop);
  s.editor.BtnReplacerEnabled = s.editor.BtnAjouterEnabled = false;
  Campaigns::GPub_MouseUp(s.station, s.editor, MouseButton::kLeft, false, false, {3, 1});
  EXPECT_EQ(kindOf("Vous devez d'abord initialiser"), Icon::kInformation);
  Campaigns::BtnNew_Click(s.station, s.editor);
  Campaigns::BtnAjouter_Click(s.station, s.editor);
  EXPECT_EQ(kindOf("Impossible de sauver car"), Icon::kStop);
}

TEST(CampaignEditor, DeletingOnATableThatAnotherProgramEmptiedTellsSo) {
  CampaignStation s;
  s.AddCampaign({});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.Sql("DELETE FROM GrillePub");
  EXPECT_FALSE(Campaigns::BtnDelete_Click(s.station, s.editor));
  EXPECT_EQ(s.LastMessage(), "Il n'y a pas de fiche à supprimer");
}

// --- overview ---

TEST(CampaignEditor, TheOverviewListsAllCampaignsByAdvertiser) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'Zoo'"}, {"PUB", "0"}, {"GENREASSOCIE", "'POP'"}});
  s.AddCampaign({{"ANNONCEUR", "'Bakery'"}, {"PRIORITY", "30"}, {"CATEGORIE", "'CARS'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnRecherhe_Click(s.station, s.editor);
  EXPECT_TRUE(s.editor.PLPubVisible);
  EXPECT_EQ(Buttons4(s.editor), (Enabled{false, false, false, false}));
  ASSERT_EQ(s.editor.PLPub.size(), 2u);
  EXPECT_EQ(s.editor.PLPub[0].text, "Bakery");
  EXPECT_EQ(s.editor.PLPub[0].subItems,
            (std::array<std::string, 6>{"CARS", "JOURNALIER", "JOURNALIER", "Publicité", "2", ""}));
  EXPECT_EQ(
      s.editor.PLPub[1].subItems,
      (std::array<std::string, 6>{"FOOD", "JOURNALIER", "JOURNALIER", "Rubrique", "1", "POP"}));
  Campaigns::PLPub_ColumnClick(s.editor, 5);
  EXPECT_EQ(s.editor.PLPub[0].text, "Zoo");
  Campaigns::PLPub_ColumnClick(s.editor, 0);
  EXPECT_EQ(s.editor.PLPub[0].text, "Bakery");
  Campaigns::PLPub_ColumnClick(s.editor, 0);
  EXPECT_EQ(s.editor.PLPub[0].text, "Zoo");
  Campaigns::PLPub_ColumnClick(s.editor, 0);
  EXPECT_EQ(s.editor.PLPub[0].text, "Bakery");
  Campaigns::PLPub_DblClick(s.station, s.editor, 1);
  EXPECT_EQ(s.editor.ChAnnonceur + " " + s.editor.LblInfoPub, "Zoo 1 /2");
  EXPECT_FALSE(s.editor.PLPubVisible);
  EXPECT_EQ(Buttons4(s.editor), (Enabled{true, false, true, true}));
  EXPECT_FALSE(s.editor.fromOverview);
}

TEST(CampaignEditor, AHeadsFirstClickSortsUpwardsInEachNewOverview) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'Zoo'"}, {"CATEGORIE", "'CARS'"}});
  s.AddCampaign({{"ANNONCEUR", "'Bakery'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  for (int time = 0; time < 2; ++time) {
    Campaigns::BtnRecherhe_Click(s.station, s.editor);
    EXPECT_EQ(s.editor.PLPub[0].text, "Bakery");
    Campaigns::PLPub_ColumnClick(s.editor, 1);
    EXPECT_EQ(s.editor.PLPub[0].text, "Zoo");
  }
}

TEST(CampaignEditor, AHeadSortsWithoutRegardToCase) {
  CampaignStation s;
  for (const char* advertiser : {"Zoo", "abc", "ABD", "abé", "ABÉA"})
    s.AddCampaign({{"ANNONCEUR", "'" + std::string(advertiser) + "'"}});
  Campaigns::BtnRecherhe_Click(s.station, s.editor);
  Campaigns::PLPub_ColumnClick(s.editor, 0);
  std::string order;
  for (const auto& line : s.editor.PLPub) order += line.text + " ";
  EXPECT_EQ(order, "abc ABD abé ABÉA Zoo ");
}

TEST(CampaignEditor, TheOverviewOfAnEmptyTableIsLeftByPaging) {
  CampaignStation s;
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnRecherhe_Click(s.station, s.editor);
  Campaigns::BtnDebut_Click(s.station, s.editor);
  EXPECT_FALSE(s.editor.PLPubVisible);
  EXPECT_EQ(Buttons4(s.editor), (Enabled{true, false, false, false}));
}

// --- sound file ---

TEST(CampaignEditor, TheFirstFileOfTheSelectorIsTakenWithItsLength) {
  CampaignStation s;
  Campaigns::BtnNew_Click(s.station, s.editor);
  Campaigns::TakeFiles(s.station, s.editor, {});
  EXPECT_EQ(s.editor.FichierAudio, "");
  const std::string sound = s.MakeSound("Bakery.wav", 65432);
  Campaigns::TakeFiles(s.station, s.editor, {sound, "/other.wav"});
  EXPECT_EQ(s.editor.FichierAudio, sound);
  EXPECT_EQ(s.editor.Longeur, "65432");
  EXPECT_EQ(Campaigns::FileForSelector(s.station, s.editor), sound);
  s.editor.FichierAudio = "/nowhere/a.wav";
  EXPECT_EQ(Campaigns::FileForSelector(s.station, s.editor), "");
}

TEST(CampaignEditor, TheTimeFollowsTheLengthThatIsTyped) {
  CampaignStation s;
  Campaigns::Longeur_Change(s.editor, "61000");
  EXPECT_EQ(s.editor.Longeur + " " + s.editor.LblTemp, "61000 01:01");
}

TEST(CampaignEditor, AFreeSoundFileGivesPathLengthAndAdvertiser) {
  CampaignStation s;
  Campaigns::BtnNew_Click(s.station, s.editor);
  ASSERT_TRUE(
      Campaigns::CmdLoadFile_Click(s.station, s.editor, "D:\\pubs\\Café du Port.mp3", 65432));
  EXPECT_EQ(s.editor.FichierAudio, "D:\\pubs\\Café du Port.mp3");
  EXPECT_EQ(s.editor.Longeur, "65432");
  EXPECT_EQ(s.editor.LblTemp, "01:05");
  EXPECT_EQ(s.editor.ChAnnonceur, "Café du Port");
  ASSERT_TRUE(Campaigns::CmdLoadFile_Click(s.station, s.editor, "/pubs/Zoo.flac", 1000));
  EXPECT_EQ(s.editor.ChAnnonceur, "Zoo.");  // four characters, whatever they are
  ASSERT_TRUE(Campaigns::CmdLoadFile_Click(s.station, s.editor, "abc", 1000));
  EXPECT_EQ(s.editor.ChAnnonceur, "");
}

TEST(CampaignEditor, ASoundFileOfACampaignIsRefusedWithItsAdvertiser) {
  CampaignStation s;
  s.AddCampaign({{"FILENAMEAUDIO", "'/pubs/spot.wav'"}, {"ANNONCEUR", "'Zoo'"}});
  Campaigns::BtnNew_Click(s.station, s.editor);
  EXPECT_FALSE(Campaigns::CmdLoadFile_Click(s.station, s.editor, "/pubs/spot.wav", 1000));
  EXPECT_EQ(s.LastMessage(),
            "Vouz ne pouvez pas choisir ce fichier audio\r\n"
            "car il est déjà attribué à l'annonceur Zoo");
  EXPECT_EQ(s.editor.FichierAudio, "");
}

// --- dates ---

TEST(CampaignEditor, TheEndFromTheCalendarBuildsTheGrid) {
  CampaignStation s;
  Campaigns::BtnNew_Click(s.station, s.editor);
  s.editor.HDepPub = s.editor.HFinPub = "07";
  s.editor.DecoupagePub = {"00"};
  Campaigns::PickDay(s.station, s.editor, 1, "21/11/2026");
  EXPECT_EQ(s.editor.GPub.RowCount(), 10);
  Campaigns::PickDay(s.station, s.editor, 2, "22/11/2026");
  EXPECT_EQ(RowText(s.editor.GPub, 1), "21 22");
  EXPECT_EQ(s.editor.LblTotalJours, "2 jours");
}

TEST(CampaignEditor, HoursAndMarksAreInTheGridOnceItIsBuiltAnewWithoutACross) {
  CampaignStation s;
  FillNew(s, s.MakeSound("spot.wav", 15000));
  s.editor.LblTotalMsg = "1";
  s.editor.HFinPub = "07";
  EXPECT_EQ(MomentsText(s.editor.GPub), "07:00 07:30 08:00 08:30");
  Campaigns::CmdInitGrille_Click(s.station, s.editor);
  EXPECT_EQ(MomentsText(s.editor.GPub), "07:00 07:30");
  EXPECT_EQ(s.editor.LblTotalMsg, "0");
}

TEST(CampaignEditor, AnHourOrAMarkThatNoClockShowsBuildsNoGridAndIsNotSaved) {
  CampaignStation s;
  FillNew(s, s.MakeSound("spot.wav", 15000));
  s.editor.HFinPub = "2147483647";
  Campaigns::PickDay(s.station, s.editor, 1, "21/11/2026");
  Campaigns::PickDay(s.station, s.editor, 2, "22/11/2026");
  EXPECT_EQ(s.LastMessage(), "Il n'y a pas d'heure 2147483647 (0 - 23)");
  Campaigns::LblDepartPub_RightClick(s.station, s.editor);
  EXPECT_EQ(s.Events("message").size(), 2U);
  EXPECT_EQ(MomentsText(s.editor.GPub), "07:00 07:30 08:00 08:30");  // as it was
  EXPECT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.Events("message").size(), 3U);
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
  EXPECT_EQ(s.File("spot.GPB"), "(no file)");
  s.editor.HFinPub = "08";
  EXPECT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  s.editor.DecoupagePub[1] = "60";
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.LastMessage(), "Il n'y a pas de minute 60 (0 - 59)");
  EXPECT_EQ(s.SqlText("SELECT DECOUPEH2 FROM GrillePub"), "30");
}

TEST(CampaignEditor, TheRightButtonOnTheStartMakesTheCampaignWeekly) {
  CampaignStation s;
  s.AddCampaign({{"CAMPAGNEDEPART", "'21/11/2026'"}, {"CAMPAGNEFIN", "'25/11/2026'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_EQ(GridColumns(s.editor.GPub), 6);
  Campaigns::LblDepartPub_RightClick(s.station, s.editor);
  EXPECT_EQ(s.editor.LblDepartPub, "JOURNALIER");
  EXPECT_EQ(s.editor.LblFinPub, "JOURNALIER");
  EXPECT_EQ(RowText(s.editor.GPub, 2), "L M M J V S D");
}

// --- a language that the program does not speak ---

TEST(CampaignEditor, InAnUnknownLanguageTheTextsOfFourLanguagesAreEmptyAndTheFrenchOnesStay) {
  CampaignStation s;
  s.AddCampaign({});
  s.Set("Langue", "4");
  s.station.base.CheckCnf();
  Campaigns::GPub_MouseUp(s.station, s.editor, MouseButton::kLeft, false, false, {3, 1});
  EXPECT_EQ(s.LastMessage(), "");
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.LastMessage(),
            "Impossible de sauver car vous n'avez pas\r\nAttribué de fichier audio");
  Campaigns::BtnNew_Click(s.station, s.editor);
  EXPECT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.LastMessage(), "");
  EXPECT_EQ(s.Events("message").back()["title"], "Alerte");
  Campaigns::ImgMemo_Click(s.station);
  EXPECT_EQ(s.Events("message").size(), 4U);
  EXPECT_EQ(s.LastMessage() + std::string(s.Events("message").back()["title"]), "");
}

// --- memo and closing ---

TEST(CampaignEditor, TheMemoTellsTheProcedure) {
  CampaignStation s;
  Campaigns::ImgMemo_Click(s.station);
  EXPECT_EQ(s.Events("message").back()["title"], "Mémo procédure");
  EXPECT_EQ(s.LastMessage().substr(0, 68),
            "Pour ajouter une nouvelle grille de publicitée procéder comme suit");
  EXPECT_NE(s.LastMessage().find("\r\n8 - Sauver avec le bouton Ajouter"), std::string::npos);
}

TEST(CampaignEditor, ClosingKeepsTheDivisionAndComposesTheDay) {
  CampaignStation s;
  s.AddCampaign({});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.HDepPub = "05";
  s.station.GPubJour.SetCell(0, 53, "");
  Campaigns::Form_Unload(s.station, s.editor);
  EXPECT_EQ(s.File("Decoupe.Ini").substr(0, 15), "\"05\",\"08\",\"00\",");
  EXPECT_EQ(s.station.GPubJour.Cell(0, 53), "21/11/26");
}

// Each routine under its own name, and what was on the screen stays.
TEST(CampaignEditor, AClosedBaseIsLoggedAndHarmsNothing) {
  CampaignStation s;
  const std::string sound = s.MakeSound("a.wav", 1000);
  s.station.base.Close();
  const auto logged = [&s] {
    std::string places;
    for (const Seen& error : s.Events("error")) places += error["where"] + " ";
    s.seen.clear();
    return places;
  };
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_EQ(logged(), "BtnFin ");
  Campaigns::BtnRecherhe_Click(s.station, s.editor);
  EXPECT_EQ(logged(), "BtnRecherhe ");
  Campaigns::BtnNew_Click(s.station, s.editor);
  EXPECT_EQ(logged(), "");
  EXPECT_FALSE(Campaigns::CmdLoadFile_Click(s.station, s.editor, "/spot.wav", 1));
  EXPECT_EQ(logged(), "CmdLoadFile ");
  EXPECT_EQ(s.editor.FichierAudio, "");
  s.editor.FichierAudio = sound;
  EXPECT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(logged(), "BtnAjouter ");
  EXPECT_TRUE(s.editor.BtnAjouterEnabled);
  EXPECT_EQ(s.File("a.GPB"), "(no file)");
}

}  // namespace
}  // namespace zemo::test
