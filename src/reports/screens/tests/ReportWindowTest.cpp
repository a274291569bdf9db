// The window of the report: span, filters, lists, statistics, files, paper and closing.
#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPrinter>
#include <QPushButton>

#include "reports/screens/ReportDesk.h"
#include "reports/screens/tests/ReportWindowFixture.h"
#include "ui/tests/DeskCheck.h"

namespace zemo::test {
namespace {

using ReportOnScreen = ReportScreenTest;
constexpr int kButtonMs = 5000;  // at most until a key has pressed its button

TEST_F(ReportOnScreen, OpensOnTodayWithItsRowsAndTheirGaps) {
  AddSongs();
  OpenWindow();
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(window->windowTitle(), "Rapport et statistiques");
  EXPECT_EQ(Text("LblDate"), "21/11/2026");
  EXPECT_EQ(Text("LblDateFin"), "");
  EXPECT_EQ(Text("LblCompteur"), "4 Fiches");
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), (Texts{"Zoo", "Abba", "Bakery", "Abba"}));
  EXPECT_EQ(Column("ListRap", RapCol::kTime), (Texts{"10:00:00 - 00:04:00", "10:04:00 - 00:04:00",
                                                     "10:08:00 - 01:04:00", "11:12:00"}));
  EXPECT_TRUE(Column("ListStat", 0).empty());
}

TEST_F(ReportOnScreen, StaysClosedWhileTheMenusAreLocked) {
  on.station.engine.ScreenLocked = true;
  OpenWindow();
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(window->IsOpen());
}

TEST_F(ReportOnScreen, TheDaysOfTheSpanComeFromTheCalendarAndTheRightButtonTakesTheLastAway) {
  Add({.title = "19", .day = kToday - 2});
  Add({.title = "20", .day = kToday - 1});
  Add({.title = "21"});
  OpenWindow();
  Click("CmdCalend");
  PickInCalendar(2026, 11, 19);
  EXPECT_EQ(Text("LblDate"), "19/11/2026");
  EXPECT_EQ(Column("ListRap", RapCol::kTitle), Texts{"19"});
  Click("BtnDateFin");
  PickInCalendar(2026, 11, 20);
  EXPECT_EQ(Text("LblDateFin"), "20/11/2026");
  EXPECT_EQ(Column("ListRap", RapCol::kTitle), (Texts{"19", "20"}));
  Click("BtnDateFin", Qt::RightButton);
  EXPECT_EQ(Text("LblDateFin"), "");
  EXPECT_EQ(Column("ListRap", RapCol::kTitle), Texts{"19"});
  Click("BtnDateFin");
  PickInCalendar(2026, 11, 21);
  QTest::keyClick(Find("BtnDateFin"), Qt::Key_Delete);
  EXPECT_EQ(Text("LblDateFin"), "");
}

TEST_F(ReportOnScreen, TheCalendarOpensOnTodayWhateverTheSpanIs) {
  OpenWindow();
  Click("CmdCalend");
  PickInCalendar(2026, 11, 2);
  Click("BtnDateFin");
  PickInCalendar(2026, 11, 3);
  for (const char* button : {"CmdCalend", "BtnDateFin"}) {
    Click(button);
    EXPECT_EQ(DayOfCalendarIn(*window), QDate(2026, 11, 21)) << button;
  }
}

TEST_F(ReportOnScreen, InAnUnknownLanguageItsWordsAreFrench) {
  on.Set("Langue", "4");
  OpenWindow();
  EXPECT_EQ(window->windowTitle(), "Rapport et statistiques");
  EXPECT_EQ(Text("BtnStats"), "Statistiques");
}

TEST_F(ReportOnScreen, TheFiltersNarrowTheListAsOneTypes) {
  AddSongs();
  OpenWindow();
  Type("FiltreArtiste", "a");
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), (Texts{"Abba", "Abba"}));
  EXPECT_EQ(Text("LblCompteur"), "2 Fiches");
  Type("FiltreArtiste", "x");
  EXPECT_EQ(Text("LblCompteur"), "0 Fiches");
  Find<QLineEdit>("FiltreArtiste")->clear();
  EXPECT_EQ(Text("LblCompteur"), "4 Fiches");
  Type("FiltreGenre", "pu");
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), Texts{"Bakery"});
  Find<QLineEdit>("FiltreGenre")->clear();
  Type("FiltreVariete", "nat");
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), Texts{"Zoo"});
}

// The reading of so many rows yields, and there the operator types on.
TEST_F(ReportOnScreen, WhatIsTypedWhileTheRowsAreReadBeginsTheReadingAnew) {
  AddMany(12000);
  OpenWindow();
  ASSERT_EQ(Text("LblCompteur"), "12000 Fiches");
  on.loop.Post([&] {
    EXPECT_TRUE(Find("FiltreArtiste")->isEnabled());
    QTest::keyClicks(Find("FiltreArtiste"), "even");
    EXPECT_EQ(Editor().working, 1);
  });
  Click("VoirRapport");
  EXPECT_EQ(Text("LblCompteur"), "6000 Fiches");
  EXPECT_EQ(Column("ListRap", RapCol::kArtist)[0], "Even");
  EXPECT_EQ(Text("FiltreArtiste"), "even");
}

// Rows that stand elsewhere in the report are looked for behind the listing; there is none.
TEST_F(ReportOnScreen, TheRowsStandInTheListWhileOthersAreLookedFor) {
  AddMany(100000);
  Add({.title = "another day", .day = kToday + 5});
  OpenWindow();
  Click("CmdCalend");
  std::vector<std::string> told;
  on.loop.Post([&] { told = {Text("LblCompteur"), Text("LblLecture")}; });
  PickInCalendar(2026, 11, 26);
  EXPECT_EQ(told, (Texts{"1 Fiches", "Lecture..."}));
  EXPECT_EQ(Text("LblLecture"), "");
  EXPECT_EQ(Column("ListRap", RapCol::kTitle), Texts{"another day"});
}

TEST_F(ReportOnScreen, F5ReadsTheRowsAgain) {
  OpenWindow();
  AddSongs();
  QTest::keyClick(window.get(), Qt::Key_F5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Text("LblCompteur") == "4 Fiches"; }, kButtonMs));
}

TEST_F(ReportOnScreen, AHeadSortsWithAnArrowAndTheNextClickTurnsTheOrder) {
  AddSongs();
  OpenWindow();
  const QHeaderView& heads = *Find<QTableView>("ListRap")->horizontalHeader();
  EXPECT_FALSE(heads.isSortIndicatorShown());
  ClickHead("ListRap", RapCol::kArtist);
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), (Texts{"Abba", "Abba", "Bakery", "Zoo"}));
  EXPECT_TRUE(heads.isSortIndicatorShown());
  EXPECT_EQ(heads.sortIndicatorSection(), RapCol::kArtist);
  EXPECT_EQ(heads.sortIndicatorOrder(), Qt::AscendingOrder);
  ClickHead("ListRap", RapCol::kArtist);
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), (Texts{"Zoo", "Bakery", "Abba", "Abba"}));
  EXPECT_EQ(heads.sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(ReportOnScreen, ByTheKeysAListIsSortedThroughItsMenu) {
  AddSongs();
  OpenWindow();
  auto* list = Find<QTableView>("ListRap");
  list->setFocus();
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(5, 5),
                            list->viewport()->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(list->viewport(), &menuKey);
  auto* menu = list->findChild<QMenu*>();
  ASSERT_TRUE(menu && menu->isVisible());
  EXPECT_EQ(menu->actions()[0]->text(), "Trier par");
  EXPECT_EQ(menu->actions()[1]->text(), "Date");
  for (int step = 0; step <= RapCol::kArtist; ++step) QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), (Texts{"Abba", "Abba", "Bakery", "Zoo"}));
}

TEST_F(ReportOnScreen, TheStatisticsCountTheTitlesAndShareTheSpan) {
  on.Sql("DELETE FROM Variete");
  on.Sql("INSERT INTO Variete (VARIETE) VALUES ('NATIONAL'), ('WORLD')");
  AddSongs();
  OpenWindow();
  Click("BtnStats");
  EXPECT_EQ(Column("ListStat", StatCol::kPlays), (Texts{"0001", "0002"}));
  EXPECT_EQ(Column("ListStat", StatCol::kTitle), (Texts{"One", "Two"}));
  EXPECT_EQ(Text("LblStat"), "1  NATIONAL = 33 %  2  WORLD = 67 %  Total 3");
  ClickHead("ListStat", StatCol::kPlays);
  ClickHead("ListStat", StatCol::kPlays);
  EXPECT_EQ(Column("ListStat", StatCol::kPlays), (Texts{"0002", "0001"}));
  Click("VoirRapport");
  EXPECT_TRUE(Column("ListStat", 0).empty());
  EXPECT_EQ(Text("LblStat"), "");
}

TEST_F(ReportOnScreen, BothListsAreExportedToTheFilesThatWereChosen) {
  AddSongs();
  OpenWindow();
  Click("BtnExport");
  SaveAs("/out/day");
  EXPECT_EQ(files["/out/day.xlt"].substr(0, 48),
            "21/11/2026\t10:00:00 - 00:04:00\tZoo\tOne\tPOP\tNATIO");
  Click("BtnStats");
  Click("ExportStat");
  SaveAs("/out/rotations.xlt");
  EXPECT_EQ(files["/out/rotations.xlt"],
            "0001\tZoo\tOne\tPOP\tNATIONAL\t\r\n0002\tAbba\tTwo\tROCK\tWORLD\t\r\n");
  Click("ExportStat");
  SaveAs("/out/rotations.xlsx");
  EXPECT_EQ(sheets.path, "/out/rotations.xlsx");
  EXPECT_EQ(sheets.sheet.cells.size(), 18U);
  const std::string pdf = InFolder("rotations.pdf");
  Click("ExportStat");
  SaveAs(pdf);
  EXPECT_EQ(Bytes("rotations.pdf").substr(0, 5), "%PDF-");
}

TEST_F(ReportOnScreen, ADialogueThatIsCancelledMakesNoFile) {
  AddSongs();
  OpenWindow();
  Click("BtnExport");
  auto* dialogue = window->findChild<QDialog*>(QStringLiteral("FrmExport"));
  ASSERT_TRUE(dialogue);
  QTest::keyClick(dialogue, Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_TRUE(files.empty());
}

TEST_F(ReportOnScreen, OfAnEmptyListThereIsNothingButTheMessageAndNoDialogue) {
  OpenWindow();
  for (const char* name :
       {"BtnExport", "ExportStat", "BtnImprimer", "ImprimeStat", "BtnIntoPlaylist"})
    Click(name);
  EXPECT_EQ(Messages(), Texts(5, "Alerte: Vous n'avez rien dans la liste"));
  EXPECT_FALSE(window->findChild<QDialog*>(QStringLiteral("FrmExport")));
}

TEST_F(ReportOnScreen, BothListsGoToPaper) {
  int asked = 0;
  sources.questions.choosePrinter = [&](QWidget*, QPrinter& printer) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(
        QString::fromStdString(InFolder("paper" + std::to_string(++asked) + ".pdf")));
    return true;
  };
  AddSongs();
  OpenWindow();
  QTest::keyClick(window.get(), Qt::Key_P, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return asked == 1; }, kButtonMs));
  EXPECT_EQ(Bytes("paper1.pdf").substr(0, 5), "%PDF-");
  Click("BtnStats");
  Click("ImprimeStat");
  EXPECT_EQ(Bytes("paper2.pdf").substr(0, 5), "%PDF-");
}

TEST_F(ReportOnScreen, TheTitlesListedBecomeTheOnAirList) {
  const int32_t card = on.AddCard({.artist = "Abba", .title = "Two"});
  AddSongs();
  OpenWindow();
  Click("BtnIntoPlaylist");
  EXPECT_EQ(on.station.PL.Codes(), (std::vector<int32_t>{card, card}));
}

// A hundred thousand rows are written in parts, between which the window is closed.
TEST_F(ReportOnScreen, ClosedDuringAnExportItClosesBehindIt) {
  AddMany(10000);
  OpenWindow();
  Click("BtnExport");
  int parts = 0;
  onPart = [&] {
    if (++parts != 2) return;
    EXPECT_FALSE(Find("BtnExport")->isEnabled());
    EXPECT_FALSE(window->LeaveNow());
    window->close();
    EXPECT_TRUE(window->isVisible());
  };
  SaveAs("/out/all.xlt");
  QApplication::processEvents();
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(window->IsOpen());
  const std::string& text = files["/out/all.xlt"];
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 10000);
}

TEST_F(ReportOnScreen, ClosedWhileItReadsItIsGoneAtOnceAndOpenedAnewItReadsAnew) {
  AddMany(12000);
  OpenWindow();
  Type("FiltreArtiste", "odd");
  bool closed = false;
  on.loop.Post([&] {
    EXPECT_FALSE(window->LeaveNow());
    closed = !window->isVisible() && window->IsOpen();
  });
  Click("VoirRapport");
  EXPECT_TRUE(closed);
  EXPECT_FALSE(window->IsOpen());
  window->Open();
  QApplication::processEvents();
  EXPECT_EQ(Text("FiltreArtiste"), "");
  EXPECT_EQ(Text("LblCompteur"), "12000 Fiches");
  EXPECT_TRUE(window->LeaveNow());
}

TEST_F(ReportOnScreen, TheAffidavitIsOnOfferWhereTheProgramHasIt) {
  OpenWindow();
  EXPECT_FALSE(Find("BtnAttestation")->isVisible());
  int opened = 0;
  sources.openAffidavit = [&] { ++opened; };
  OpenWindow();
  Click("BtnAttestation");
  EXPECT_EQ(opened, 1);
}

TEST_F(ReportOnScreen, TheDeskOpensOneWindowInTheLanguageOfTheMomentAndLeavesIt) {
  ReportDesk desk(on.station, sources);
  CheckDesk(
      desk, [this] { on.Set("Langue", "1"); }, QStringLiteral("Report and statistics"));
}

}  // namespace
}  // namespace zemo::test
