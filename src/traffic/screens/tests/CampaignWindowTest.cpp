// The window of the campaigns: records, fields, overview, dates, paper and closing.
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QRadioButton>

#include "support/PdfText.h"
#include "traffic/CampaignSheet.h"
#include "traffic/screens/CampaignDesk.h"
#include "traffic/screens/tests/CampaignWindowFixture.h"
#include "ui/CalendarWindow.h"
#include "ui/tests/DeskCheck.h"

namespace zemo::test {
namespace {

class CampaignScreen : public CampaignScreenTest {
 protected:
  void PrintToPdf() {
    sources.questions.choosePrinter = [this](QWidget*, QPrinter& printer) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(QString::fromStdString(on.InFolder("sheet.pdf")));
      return true;
    };
  }
  void PickInCalendar(int year, int month, int day) { PickDayIn(*window, year, month, day); }
};

TEST_F(CampaignScreen, InAnUnknownLanguageItsWordsAreFrench) {
  on.Set("Langue", "4");
  AddCampaigns();
  Open();
  EXPECT_EQ(window->windowTitle(), "Horaires des pubs");
  EXPECT_EQ(Text("BtnNew"), "Nouvelle");
}

TEST_F(CampaignScreen, OpensOnTheLastCampaignInOrderOfPassage) {
  AddCampaigns();
  Open();
  EXPECT_EQ(window->windowTitle(), "Horaires des pubs");
  EXPECT_EQ(Text("LblCode"), "2");
  EXPECT_EQ(Text("ChAnnonceur"), "Zoo");
  EXPECT_EQ(Text("Categorie"), "FOOD");
  EXPECT_EQ(Text("LblDepartPub"), "21/11/2026");
  EXPECT_EQ(Text("LblFinPub"), "25/11/2026");
  EXPECT_EQ(Text("HDepPub") + Text("HFinPub"), "0708");
  EXPECT_EQ(Text("DecoupagePub_0") + Text("DecoupagePub_1") + Text("DecoupagePub_2"), "0030");
  EXPECT_EQ(Text("Longeur"), "15000");
  EXPECT_EQ(Text("LblTemp"), "00:15");
  EXPECT_EQ(Text("LblTotalMsg"), "0");
  EXPECT_EQ(Text("LblTotalJours"), "5 jours");
  EXPECT_EQ(Text("LblInfoPub"), "2 /2");
  EXPECT_TRUE(Find<QRadioButton>("OptPub_0")->isChecked());
  EXPECT_EQ(Find<QComboBox>("ComboPriority")->currentText(), "20");
  EXPECT_FALSE(On("BtnAjouter"));
  EXPECT_FALSE(Overview().isVisible());
}

TEST_F(CampaignScreen, StaysClosedWhileTheMenusAreLocked) {
  on.station.engine.ScreenLocked = true;
  Open();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(CampaignScreen, PagesByButtons) {
  AddCampaigns();
  Open();
  Click("BtnMoins");
  EXPECT_EQ(Text("ChAnnonceur"), "Bakery");
  Click("BtnPlus");
  EXPECT_EQ(Text("ChAnnonceur"), "Zoo");
  Click("BtnDebut");
  EXPECT_EQ(Text("LblInfoPub"), "1 /2");
}

TEST_F(CampaignScreen, ANewCampaignIsFilledInAndAdded) {
  const std::string sound = on.MakeSound("Bakery.wav", 15000);
  on.MakeFile("Genre.Txt", "POP\r\n");
  sources.chooseFiles = [&](QWidget*, const std::string&, const std::vector<std::string>&,
                            const OfficeWindow::TakeFiles& take) { take({sound}); };
  Open();
  Click("BtnNew");
  EXPECT_FALSE(On("BtnNew"));
  EXPECT_TRUE(On("BtnAjouter"));
  EXPECT_EQ(Text("LblDepartPub"), "- - / - - / - -");
  Type("HDepPub", "12");
  Type("HFinPub", "12");
  Type("DecoupagePub_0", "05");
  Type("DecoupagePub_3", "35");
  Click("LblDepartPub");
  PickInCalendar(2026, 11, 20);
  Click("LblFinPub");
  PickInCalendar(2026, 11, 21);
  EXPECT_EQ(Text("LblTotalJours"), "2 jours");
  Click("CmdLoadFile");
  EXPECT_EQ(Text("ChAnnonceur"), "Bakery");
  Type("Categorie", "FOOD");
  Type("ChContact", "Anne");
  Find("ComboPriority")->setFocus();
  QTest::keyClick(Find("ComboPriority"), Qt::Key_Down);
  Click("OptPub_1");
  ClickCell(4, 2);
  Click("BtnAjouter");
  EXPECT_EQ(on.SqlText("SELECT CAMPAGNEDEPART || CAMPAGNEFIN || HDEPART || HFIN || DECOUPEH1 || "
                       "DECOUPEH4 || DUREE || ANNONCEUR || CATEGORIE || CONTACT || PRIORITY || PUB "
                       "FROM GrillePub"),
            "20/11/202621/11/20261212053515000BakeryFOODAnne100");
  EXPECT_EQ(on.File("Bakery.GPB"), "\r\n\r\n\r\nX\r\n");
  EXPECT_FALSE(On("BtnAjouter"));
  EXPECT_TRUE(On("BtnReplacer"));
}

TEST_F(CampaignScreen, ReplacesAndDeletesWhatIsShown) {
  AddCampaigns();
  Open();
  Type("ChAnnonceur", "Zoological garden");
  ClickCell(3, 1);
  Click("BtnReplacer");
  EXPECT_EQ(on.SqlText("SELECT ANNONCEUR FROM GrillePub WHERE CODE = 2"), "Zoological garden");
  EXPECT_EQ(on.File("Zoo.GPB").substr(0, 3), "X\r\n");
  EXPECT_EQ(Text("ChAnnonceur"), "Bakery");
  on.messages.AnswerNext(Answer::kOk);
  Click("BtnDelete");
  EXPECT_EQ(on.LastMessage(), "Confirmez la suppression de la fiche Bakery");
  EXPECT_EQ(on.SqlText("SELECT ANNONCEUR FROM GrillePub"), "Zoological garden");
}

TEST_F(CampaignScreen, TheRightButtonOrDeleteOnTheStartMakesTheCampaignWeekly) {
  AddCampaigns();
  for (const bool byMouse : {true, false}) {
    Open();
    if (byMouse)
      Click("LblDepartPub", Qt::RightButton);
    else
      QTest::keyClick(Find("LblDepartPub"), Qt::Key_Delete);
    EXPECT_EQ(Text("LblFinPub"), "JOURNALIER");
    EXPECT_EQ(Text("LblTotalJours"), "7 jours");
    Click("LblFinPub", Qt::RightButton);
    EXPECT_FALSE(window->findChild<CalendarWindow*>());
  }
}

TEST_F(CampaignScreen, HoursAndMarksWaitForTheGridToBeBuiltAnew) {
  AddCampaigns();
  Open();
  Type("HFinPub", "07");
  EXPECT_EQ(window->Editor().GPub.RowCount(), 7);
  Click("CmdInitGrille");
  EXPECT_EQ(window->Editor().GPub.RowCount(), 5);
  Type("DecoupagePub_0", "77");
  Click("CmdInitGrille");
  EXPECT_EQ(on.LastMessage(), "Il n'y a pas de minute 77 (0 - 59)");
}

TEST_F(CampaignScreen, ACampaignWithoutDatesSaysSoInTheLanguage) {
  on.Set("Langue", "3");
  AddCampaigns();
  Open();
  Click("BtnDebut");
  EXPECT_EQ(Text("LblDepartPub"), "TODOS LOS DÍAS");
  EXPECT_EQ(window->Editor().LblDepartPub, "JOURNALIER");
  Click("BtnRecherhe");
  EXPECT_EQ(OverviewColumn(2), (std::vector<std::string>{"TODOS LOS DÍAS", "21/11/2026"}));
}

TEST_F(CampaignScreen, TheOverviewIsSortedAndALineChosenByMouseOrReturn) {
  AddCampaigns();
  Open();
  Click("BtnRecherhe");
  ASSERT_TRUE(Overview().isVisible());
  EXPECT_TRUE(Grid().isVisible());
  for (const char* name : {"BtnNew", "BtnAjouter", "BtnReplacer", "BtnDelete"})
    EXPECT_FALSE(On(name)) << name;
  EXPECT_EQ(OverviewColumn(0), (std::vector<std::string>{"Bakery", "Zoo"}));
  EXPECT_EQ(OverviewColumn(2), (std::vector<std::string>{"JOURNALIER", "21/11/2026"}));
  QHeaderView& heads = *Overview().horizontalHeader();
  const QPoint code(heads.sectionViewportPosition(0) + 10, heads.height() / 2);
  QTest::mouseClick(heads.viewport(), Qt::LeftButton, Qt::NoModifier, code);
  EXPECT_EQ(OverviewColumn(0), (std::vector<std::string>{"Bakery", "Zoo"}));
  QTest::mouseClick(heads.viewport(), Qt::LeftButton, Qt::NoModifier, code);
  EXPECT_EQ(OverviewColumn(0), (std::vector<std::string>{"Zoo", "Bakery"}));
  const QPoint line = Overview().visualRect(Overview().model()->index(1, 0)).center();
  QTest::mouseClick(Overview().viewport(), Qt::LeftButton, Qt::NoModifier, line);
  QTest::mouseDClick(Overview().viewport(), Qt::LeftButton, Qt::NoModifier, line);
  EXPECT_FALSE(Overview().isVisible());
  EXPECT_EQ(Text("ChAnnonceur"), "Bakery");
  EXPECT_TRUE(On("BtnReplacer"));
  Click("BtnRecherhe");
  ASSERT_TRUE(Overview().isVisible());
  QTest::keyClick(&Overview(), Qt::Key_Down);
  QTest::keyClick(&Overview(), Qt::Key_Return);
  EXPECT_EQ(Text("ChAnnonceur"), "Zoo");
}

TEST_F(CampaignScreen, TheOverviewTellsSpotsAndNewsInTheOperatorsLanguage) {
  on.Set("Langue", "3");
  on.station.base.CheckCnf();
  AddCampaigns();
  on.Sql("UPDATE GrillePub SET PUB = 0 WHERE CODE = 2");
  Open();
  Click("BtnRecherhe");
  EXPECT_EQ(OverviewColumn(4), (std::vector<std::string>{"Publicidad", "Rúbrica"}));
  EXPECT_EQ(window->Editor().PLPub[0].subItems[3], "Publicité");
}

TEST_F(CampaignScreen, ReturnAndDeleteInTheCategoryAskAndKeepTheList) {
  on.MakeFile("Categori.Ini", "FOOD\r\n");
  AddCampaigns();
  Open();
  Type("Categorie", "cars");
  on.messages.AnswerNext(Answer::kYes);
  QTest::keyClick(Find("Categorie"), Qt::Key_Return);  // the box has the keyboard, not its line
  EXPECT_EQ(on.File("Categori.Ini"), "FOOD\r\nCARS\r\n");
  EXPECT_EQ(Find<QComboBox>("Categorie")->count(), 2);
  Type("Categorie", "food");
  on.messages.AnswerNext(Answer::kYes);
  QTest::keyClick(Find("Categorie"), Qt::Key_Delete);
  EXPECT_EQ(on.LastMessage(), "Effacer cette Catégorie food");
  EXPECT_EQ(on.File("Categori.Ini"), "CARS\r\n");
}

TEST_F(CampaignScreen, AGridIsCopiedPastedAndTurned) {
  AddCampaigns();
  Open();
  ClickCell(3, 1);
  Click("BtnCopyGrille");
  Click("BtnMoins");
  Click("BtnCollerGrille");
  EXPECT_EQ(Row(3), "X      ");
  EXPECT_EQ(Text("LblTotalMsg"), "1");
  Click("BtnDecalY");
  EXPECT_EQ(Row(4), "X      ");
}

TEST_F(CampaignScreen, AGridFileThatDoesNotFitIsShown) {
  AddCampaigns();
  on.MakeFile("short.GPB", "X\r\n");
  on.Sql("UPDATE GrillePub SET FILENAMEGRILLE = '" + on.InFolder("short.GPB") + "' WHERE CODE = 2");
  Open();
  const auto told = [&] {
    for (auto* label : window->findChildren<QLabel*>())
      if (label->isVisible() && label->text().startsWith("Le fichier de grille")) return true;
    return false;
  };
  EXPECT_TRUE(told());
  Click("BtnMoins");
  EXPECT_FALSE(told());
}

TEST_F(CampaignScreen, WhatKeepsARecordFromBeingSavedIsToldWhileItIsEntered) {
  const std::string sound = on.MakeSound(std::string(41, 'a') + ".wav", 15000);
  sources.chooseFiles = [&](QWidget*, const std::string&, const std::vector<std::string>&,
                            const OfficeWindow::TakeFiles& take) { take({sound}); };
  Open();
  const auto note = [&] {
    for (auto* label : window->findChildren<QLabel*>())
      if (label->isVisible() && label->property("note").toBool()) return label->text();
    return QString();
  };
  EXPECT_EQ(note(), QString());
  Click("BtnNew");
  EXPECT_EQ(note(), QStringLiteral("Campagne du… : choisissez la date"));
  Click("LblDepartPub", Qt::RightButton);
  EXPECT_EQ(note(), QStringLiteral("Modifications non sauvegardées"));
  Click("CmdLoadFile");
  EXPECT_EQ(note(), QStringLiteral("Annonceur : 40 caractères au plus"));
  Click("BtnAjouter");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
  Type("ChAnnonceur", std::string(40, 'a'));
  EXPECT_EQ(note(), QStringLiteral("Modifications non sauvegardées"));
  Type("ChContact", std::string(101, 'b'));
  EXPECT_EQ(note(), QStringLiteral("Contact : 100 caractères au plus"));
  Type("ChContact", "Anne");
  Click("BtnAjouter");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM GrillePub"), "1");
  EXPECT_EQ(note(), QString());
  on.Sql("UPDATE GrillePub SET CAMPAGNEDEPART = '22/11/2026', CAMPAGNEFIN = '21/11/2026'");
  Click("BtnDebut");
  EXPECT_EQ(note(), QStringLiteral("Le dernier jour est avant le premier"));
}

TEST_F(CampaignScreen, TheRecordSheetGoesToPaperAndToAFile) {
  AddCampaigns();
  PrintToPdf();
  Open();
  ClickCell(4, 2);
  Click("BtnImprimer");
  const std::vector<std::string> sheet = {"FICHE 2 - Zoo 1",
                                          "Campagne du 21/11/2026 au 25/11/2026",
                                          "Heure de départ 07 Heure de fin 08",
                                          "Découpage de l'heure 00 30",
                                          "Fichier audio " + on.InFolder("Zoo.wav"),
                                          "Durée 00:15 Ordre de passage 20",
                                          "Soit 1 messages sur 5 jours",
                                          "Mois 11 1 11 11 11",
                                          "Jour 21 22 23 24 25",
                                          "S D L M M",
                                          "07:00",
                                          "07:30 x",
                                          "08:00",
                                          "08:30"};
  EXPECT_EQ(PagesOfPdf(on.InFolder("sheet.pdf")), (std::vector<std::vector<std::string>>{sheet}));
  EXPECT_EQ(on.File("Zoo.Xlt").substr(0, 17), " FICHE 2 - Zoo  1");
}

// A year of a whole day: eight weeks beside another, 62 lines a page, no line broken, none lost.
TEST_F(CampaignScreen, TheSheetOfALongCampaignStandsWholeOnItsPages) {
  AddCampaigns();
  on.Sql(
      "UPDATE GrillePub SET CAMPAGNEFIN = '20/11/2027', HDEPART = '00', HFIN = '23', DECOUPEH3 = "
      "'45' WHERE CODE = 2");
  PrintToPdf();
  Open();
  ClickCell(5, 1, Qt::LeftButton, Qt::ShiftModifier);
  Click("BtnImprimer");
  const PrintedPages sheet = SheetPages(window->Editor());
  const auto pages = PagesOfPdf(on.InFolder("sheet.pdf"));
  ASSERT_EQ(pages.size(), sheet.pages.size());
  EXPECT_GT(pages.size(), 7U);  // 7 times eight weeks of 72 moments
  for (size_t page = 0; page < pages.size(); ++page) {
    std::vector<std::string> told;
    for (const std::string& line : sheet.pages[page])
      if (const std::string words = WordsOf(line); !words.empty()) told.push_back(words);
    EXPECT_EQ(pages[page], told) << "page " << page;
  }
}

TEST_F(CampaignScreen, TheMemoTellsTheProcedure) {
  Open();
  Click("ImgMemo");
  EXPECT_EQ(on.Events("message").back()["title"], "Mémo procédure");
}

TEST_F(CampaignScreen, ClosingAsksNothingKeepsTheDivisionAndComposesTheDay) {
  AddCampaigns();
  Open();
  Type("HDepPub", "05");
  on.station.GPubJour.SetCell(0, 53, "");
  window->close();
  QApplication::processEvents();
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(window->IsOpen());
  EXPECT_TRUE(on.Events("message").empty());
  EXPECT_EQ(on.File("Decoupe.Ini").substr(0, 10), "\"05\",\"08\",");
  EXPECT_EQ(on.station.GPubJour.Cell(0, 53), "21/11/26");
}

TEST_F(CampaignScreen, TheDeskOpensOneWindowInTheLanguageOfTheMomentAndLeavesIt) {
  AddCampaigns();
  CampaignDesk desk(on.station, sources);
  CheckDesk(
      desk, [this] { on.Set("Langue", "1"); }, QStringLiteral("Spot times"));
}

}  // namespace
}  // namespace zemo::test
