// Live mode, search, stored lists, the day's grid, message boxes and the forecast's window.
#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrinter>
#include <QTableWidget>
#include <QTimer>

#include "engine/Forecast.h"
#include "engine/StoredPlaylists.h"
#include "engine/screens/DayGridFrame.h"
#include "engine/screens/LiveFrame.h"
#include "engine/screens/tests/ScreenFixture.h"
#include "station/OnAirColumns.h"
#include "ui/ScreenDesktop.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

class Live : public Screen {
 protected:
  void OpenLive() {
    if (!window) Open();
    Click("Toolbar1_2");
    QCoreApplication::processEvents();
  }
  BrowseView& Found() { return *static_cast<BrowseView*>(Find("ListRech")); }
  QPoint InFound(int row) {  // from 1
    return {30, Found().rowViewportPosition(row - 1) + Found().rowHeight(row - 1) / 2};
  }
  QPoint ToFound(const QPoint& inList) {  // a point of PL as the browse list sees it
    return Found().viewport()->mapFromGlobal(List().viewport()->mapToGlobal(inList));
  }
  void Library() {
    Loaded();
    on.AddCard({.artist = "ABBA", .title = "WATERLOO", .genre = "POP"});
    on.AddCard({.artist = "QUEEN", .title = "INNUENDO", .genre = "ROCK"});
    on.AddCard({.artist = "CHER", .title = "BELIEVE", .genre = "POP"});
  }
  void Type(const char* text) {
    auto* box = Find<QLineEdit>("Rech");
    box->clear();
    QTest::keyClicks(box, QString::fromUtf8(text));
    Searched();
  }
  void Searched() {  // the slices that the event loop still owes
    auto* frame = static_cast<LiveFrame*>(Find("CadreRech"));
    for (int turn = 0; frame->Searching() && turn < 10000; ++turn)
      QCoreApplication::processEvents();
    EXPECT_FALSE(frame->Searching());
    Draw();
  }
  Names FoundTexts() {
    Names names;
    for (int row = 0; row < Found().model()->rowCount(); ++row)
      names.push_back(Found().model()->index(row, 0).data().toString().toStdString());
    return names;
  }
};

TEST_F(Live, TheLiveButtonShowsBothFramesAndAFixedListWidth) {
  Open(1024, 768);
  EXPECT_FALSE(Find("CadreRech")->isVisible());
  EXPECT_FALSE(Find("CadrePL")->isVisible());
  const int whole = Find("PL")->width();
  Click("Toolbar1_2");
  QCoreApplication::processEvents();
  EXPECT_TRUE(Find("CadreRech")->isVisible());
  EXPECT_TRUE(Find("CadrePL")->isVisible());
  EXPECT_EQ(Find("PL")->width(), 430);
  window->resize(800, 600);
  QCoreApplication::processEvents();
  EXPECT_EQ(Find("PL")->width(), 430);
  window->resize(1280, 800);
  QCoreApplication::processEvents();
  EXPECT_EQ(Find("PL")->width(), 620);
  window->resize(1024, 768);
  Click("Toolbar1_1");
  QCoreApplication::processEvents();
  EXPECT_EQ(Find("PL")->width(), whole);
}

TEST_F(Live, SearchFindsFromThreeCharactersOnWhileTyping) {
  Library();
  OpenLive();
  Type("be");
  EXPECT_TRUE(FoundTexts().empty());
  Type("bel");
  EXPECT_EQ(FoundTexts(), (Names{"CHER"}));
  Type("*");
  EXPECT_EQ(FoundTexts(), (Names{"ABBA", "QUEEN", "CHER"}));
}

TEST_F(Live, AClickOnAHeadSortsByIt) {
  Library();
  OpenLive();
  Type("*");
  QHeaderView* heads = Found().horizontalHeader();
  QTest::mouseClick(heads->viewport(), Qt::LeftButton, {},
                    {heads->sectionViewportPosition(1) + 20, heads->height() / 2});
  EXPECT_EQ(FoundTexts(), (Names{"CHER", "QUEEN", "ABBA"}));  // BELIEVE, INNUENDO, WATERLOO
}

TEST_F(Live, AFoundTitleIsDraggedToItsRow) {
  Library();
  AddTitles(3);
  OpenLive();
  Type("*");
  QWidget* found = Found().viewport();
  QTest::mousePress(found, Qt::LeftButton, {}, InFound(2));
  EXPECT_EQ(on.station.engine.ActiveList, "ListRech");
  QTest::mouseMove(found, ToFound(InRow(2)));
  QTest::mouseMove(found, ToFound(InRow(2)) + QPoint(1, 0));
  EXPECT_EQ(List().ShownDrop(), 2);
  QTest::mouseRelease(found, Qt::LeftButton, {}, ToFound(InRow(2)));
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "QUEEN", "ARTIST 2", "ARTIST 3"}));
}

TEST_F(Live, AFoundTitleDroppedBelowTheListComesLast) {
  Library();
  AddTitles(2);
  OpenLive();
  Type("*");
  QWidget* found = Found().viewport();
  const QPoint below = ToFound({30, List().viewport()->height() - 5});
  QTest::mousePress(found, Qt::LeftButton, {}, InFound(1));
  QTest::mouseMove(found, below);
  QTest::mouseRelease(found, Qt::LeftButton, {}, below);
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 2", "ABBA"}));
}

TEST_F(Live, InsertPutsAFoundTitleBeforeTheSelectedRow) {
  Library();
  AddTitles(2);
  OpenLive();
  Type("*");
  List().SelectRow(2);
  Found().selectRow(0);
  Found().setFocus();
  Key(Qt::Key_Insert);
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ABBA", "ARTIST 2"}));
}

TEST_F(Live, EachEntryOfTheMenuShowsItsLibraryAndItsHeads) {
  on.Load();
  on.Sql(
      "INSERT INTO DiscothequeJingle (FILENAME, DUREE, LIBELLE, SURIMPRESSION) VALUES ('/j.wav', "
      "5000, 'TOP JINGLE', -1)");
  on.Sql(
      "INSERT INTO DiscothequeVirgule (FILENAME, DUREE, LIBELLE) VALUES ('/v.wav', 2000, 'TUM')");
  OpenLive();
  auto* menu = Find<QComboBox>("MenuLive");
  menu->setFocus();
  QTest::keyClick(menu, Qt::Key_Down);
  Searched();
  EXPECT_EQ(FoundTexts(), (Names{"TOP JINGLE"}));
  EXPECT_EQ(Found().model()->headerData(0, Qt::Horizontal).toString(), "Libellé");
  EXPECT_FALSE(Find("Rech")->isVisible());
  EXPECT_TRUE(Find("PictureNoJingle")->isVisible());
  QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Down);
  EXPECT_EQ(FoundTexts(), (Names{"TUM"}));
  QTest::keyClick(menu, Qt::Key_Home);
  EXPECT_TRUE(Find("Rech")->isVisible());
  EXPECT_FALSE(Find("PictureNoJingle")->isVisible());
}

TEST_F(Live, CheckBoxesSetTheirFlags) {
  OpenLive();
  Click("OptionDirect");
  Click("CheckNoJingle");
  Click("CheckExtrait");
  EXPECT_TRUE(on.station.engine.OptionDirect);
  EXPECT_TRUE(on.station.engine.CheckNoJingle);
  EXPECT_TRUE(on.station.engine.CheckExtrait);
  Click("Toolbar1_1");  // automatic clears the two of the live mode
  EXPECT_FALSE(on.station.engine.OptionDirect);
  EXPECT_FALSE(on.station.engine.CheckNoJingle);
}

TEST_F(Live, ExtractMarkerGoesBeforeTheSelectedRowElseToTheEnd) {
  AddTitles(2);
  OpenLive();
  List().SelectRow(0);
  Click("CmdMarqueurExtrait");
  List().SelectRow(2);
  Click("CmdMarqueurExtrait");
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "Begin Extrait", "ARTIST 2", "Begin Extrait"}));
  EXPECT_EQ(ColumnText(on.station.PL.Row(2), Col::kCode), "-6");
}

TEST_F(Live, TheVoiceTrackButtonShowsForAChosenRowTheLastOneIncluded) {
  AddTitles(2);
  OpenLive();
  Draw();
  EXPECT_FALSE(Find("BntVoiceTrack")->isVisible());
  for (const int row : {1, 2}) {
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(row));
    Draw();
    EXPECT_TRUE(Find("BntVoiceTrack")->isVisible()) << row;
  }
}

TEST_F(Live, TheVoiceTrackButtonOpensTheEditorOnTheChosenRow) {
  std::vector<int64_t> opened;
  sources.openVoiceTrack = [&](int64_t key) { opened.push_back(key); };
  AddTitles(2);
  OpenLive();
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(2));
  Draw();
  Run(7000);
  Click("BntVoiceTrack");
  EXPECT_EQ(on.station.engine.LastActivityTimer, on.station.Timer());
  List().setFocus();
  Key(Qt::Key_F9);
  EXPECT_EQ(opened, (std::vector<int64_t>(2, on.station.PL.Row(2).key)));
}

TEST_F(Live, TheLiveModeEndsByItselfWhenTheListRanOut) {
  AddTitles(1);
  OpenLive();
  Click("Toolbar1_5");
  Run(100000);  // past half of 180 s
  EXPECT_TRUE(on.station.engine.IsAutomatic);
  EXPECT_FALSE(Find("CadreRech")->isVisible());
  EXPECT_FALSE(Find("CadrePL")->isVisible());
}

// --- stored lists ---

TEST_F(Live, AStoredListIsSavedChosenAndDeletedByItsPanel) {
  AddTitles(2);
  OpenLive();
  auto* combo = Find<QComboBox>("ComboPLS");
  combo->setFocus();
  combo->lineEdit()->selectAll();
  QTest::keyClicks(combo->lineEdit(), "EVENING");
  auto* hour = Find<QLineEdit>("ChHeure");
  hour->selectAll();
  QTest::keyClicks(hour, "18:30");
  QTest::mouseClick(Find("LblDate"), Qt::RightButton);
  auto* option = Find<QComboBox>("OptPls");
  QTest::keyClick(option, Qt::Key_Down);
  Click("BtnSauve");
  EXPECT_EQ(on.SqlText("SELECT LIBELLE FROM Playlist"), "EVENING");
  EXPECT_EQ(on.SqlText("SELECT LHEURE FROM Playlist"), "18:30");
  EXPECT_EQ(on.SqlText("SELECT LADATE FROM Playlist"), "JOURNALIER");
  EXPECT_EQ(on.SqlText("SELECT NOJINGLE FROM Playlist"), "1");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Pls"), "2");
  Click("BtnNew");
  EXPECT_TRUE(on.station.PL.Empty());
  EXPECT_EQ(hour->text(), "hh:mn");
  EXPECT_EQ(Text("LblDate"), "JJ/MM/ANNE");
  OnAir::LoadPlaylist(on.station);
  Draw();
  ASSERT_EQ(combo->count(), 1);
  combo->setFocus();
  QTest::keyClick(combo, Qt::Key_Down);  // opens the list
  QTest::keyClick(combo->view(), Qt::Key_Down);
  QTest::keyClick(combo->view(), Qt::Key_Return);
  Draw();
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 2"}));
  EXPECT_EQ(hour->text(), "18:30");
  on.messages.AnswerNext(Answer::kOk);
  QTest::keyClick(combo->lineEdit(), Qt::Key_Delete);
  Draw();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "0");
  EXPECT_EQ(combo->count(), 0);
}

TEST_F(Live, TheDateComesFromTheCalendar) {
  OpenLive();
  Click("LblDate");
  auto* month = window->findChild<QCalendarWidget*>("Calendrier");
  ASSERT_TRUE(month);
  EXPECT_EQ(month->selectedDate(), QDate(2026, 11, 21));
  KeepPicture(*month->window(), "calendar");
  month->setSelectedDate(QDate(2026, 12, 5));
  QTest::keyClick(month->findChild<QWidget*>("qt_calendar_calendarview"), Qt::Key_Return);
  Draw();
  EXPECT_EQ(Text("LblDate"), "05/12/2026");
}

TEST_F(Live, TheCalendarIsLeftWithoutADate) {
  OpenLive();
  Click("LblDate");
  auto* cancel = window->findChild<QAbstractButton*>("BtnCancel");
  ASSERT_TRUE(cancel);
  QTest::mouseClick(cancel, Qt::LeftButton);
  EXPECT_EQ(Text("LblDate"), "JJ/MM/ANNE");
}

// --- the day's grid ---

class Grid : public Live {
 protected:
  void OpenGrid() {
    Open();
    DayGrid& grid = on.station.GPubJour;
    grid.SetCell(1, 0, "13:30");
    grid.SetCell(1, 1, "00:30");
    grid.SetCell(1, 2, "Pubs");
    grid.SetCell(1, 3, "BAKERY");
    grid.SetCell(1, 53, on.MakeSound("bakery.wav", 30000));
    Click("Toolbar1_3");
    QCoreApplication::processEvents();
  }
  QTableView& Table() { return *static_cast<QTableView*>(Find("GPubJour")); }
  QPoint Cell(int row, int column) {
    return Table().visualRect(Table().model()->index(row - 1, column)).center();
  }
};

TEST_F(Grid, TheGridButtonShowsItInPlaceOfTheList) {
  Open();
  const QSize list = Find("PL")->size();
  Click("Toolbar1_3");
  QCoreApplication::processEvents();
  EXPECT_FALSE(Find("PL")->isVisible());
  EXPECT_TRUE(Find("GPubJour")->isVisible());
  EXPECT_EQ(Find("CadreGrille")->size(), list);
  for (const char* button : {"BtnCopyPub", "BtnImpressionPub", "BtnPubJourX"})
    EXPECT_TRUE(Button(button)->isEnabled()) << button;
}

TEST_F(Grid, OpenedForInsertionItsBreakGoesBeforeTheSelectedRowAndTheListComesBack) {
  AddTitles(2);
  OpenGrid();
  Click("Toolbar1_1");
  List().SelectRow(2);
  window->findChild<QAction*>("MnuInsertPub")->trigger();
  EXPECT_TRUE(Find("GPubJour")->isVisible());
  QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, Cell(1, 3));
  Click("BtnCopyPub");
  EXPECT_TRUE(Find("PL")->isVisible());
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "BAKERY", "ARTIST 2"}));
}

TEST_F(Grid, AClickNamesTheMomentOnTheCopyButtonWhichPutsTheBreakInTheList) {
  AddTitles(1);
  OpenGrid();
  QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, Cell(1, 3));
  EXPECT_EQ(Text("BtnCopyPub"), "Copier les pubs de 13:30");
  Click("BtnCopyPub");
  const Names titles = Titles();
  EXPECT_NE(std::find(titles.begin(), titles.end(), "BAKERY"), titles.end());
}

TEST_F(Grid, ADoubleClickOpensTheElementsFile) {
  std::string opened;
  sources.openSelector = [&](const std::string& file) { opened = file; };
  OpenGrid();
  QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, Cell(1, 3));
  QTest::mouseDClick(Table().viewport(), Qt::LeftButton, {}, Cell(1, 3));
  EXPECT_NE(opened.find("bakery.wav"), std::string::npos);
}

TEST_F(Grid, ThePreviewWarnsThenTakesTheDayFromTheCalendar) {
  std::string told;
  on.messages.shown = [&](const std::string&, const std::string& text, Buttons, Answer) {
    told = text;
  };
  OpenGrid();
  Click("BtnPubJourX");
  EXPECT_EQ(told, "Pensez à remettre la date du jour après cette opération");
  auto* month = window->findChild<QCalendarWidget*>("Calendrier");
  ASSERT_TRUE(month);
  month->setSelectedDate(QDate(2026, 12, 24));
  QTest::keyClick(month->findChild<QWidget*>("qt_calendar_calendarview"), Qt::Key_Return);
  EXPECT_EQ(on.station.Now().day, 24);
  EXPECT_EQ(on.station.GPubJour.Cell(0, 53).substr(0, 8), "24/12/26");
}

TEST_F(Grid, ThePreviewIsRefusedWhileCampaignsArePurged) {
  on.Load();
  on.Set("SuppressionPub", "1");
  OpenGrid();
  Click("BtnPubJourX");
  EXPECT_FALSE(window->findChild<QCalendarWidget*>("Calendrier"));
}

TEST_F(Grid, ItPrintsToAPdfInTheSizeThatWasAsked) {
  const QString file = QString::fromStdString(on.stationDir.Path()) + "/grid.pdf";
  QString question, byDefault;
  sources.questions.askText = [&](QWidget*, const QString&, const QString& asked,
                                  const QString& given) {
    question = asked;
    byDefault = given;
    return std::optional<QString>("8");
  };
  sources.questions.choosePrinter = [&](QWidget*, QPrinter& printer) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
    return true;
  };
  OpenGrid();
  Click("BtnImpressionPub");
  EXPECT_EQ(question, "Entrez la taille de la police");
  EXPECT_EQ(byDefault, "6");
  QFile pdf(file);
  ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
  EXPECT_EQ(pdf.read(5), "%PDF-");
}

// --- forecast ---

class TwoLines : public ForecastSource {
 public:
  ForecastWish wish;
  int started = 0;
  State state = State::kIdle;
  std::vector<ForecastLine> lines;
  void Start(const ForecastWish& given) override {
    ++started;
    wish = given;
    state = State::kRunning;
    lines.clear();
  }
  State Now() const override { return state; }
  const std::vector<ForecastLine>& Lines() const override { return lines; }
  const std::string& Fault() const override { return fault_; }

 private:
  std::string fault_;
};

TEST_F(Screen, TheForecastListsWhatTheSimulationTells) {
  TwoLines source;
  sources.forecast = &source;
  Open();
  AddTitles(2);
  const int32_t first = on.station.PL.Row(1).code;
  Click("Toolbar1_3");
  Click("BtnPrevision");
  EXPECT_EQ(source.started, 1);
  EXPECT_EQ(source.wish.hours, 3);
  EXPECT_EQ(source.wish.script, "+0 insert music " + std::to_string(first) + "\n+0 insert music " +
                                    std::to_string(first + 1) + "\n+0 start\n");
  source.lines = {{"12:00:01", ForecastKind::kElement, 5, "ABBA  WATERLOO", "", 185000},
                  {"12:03:06", ForecastKind::kGap, 0, "", "", 4000},
                  {"12:03:10", ForecastKind::kWarning, 0, "/lost.wav", "missing", 0}};
  source.state = ForecastSource::State::kDone;
  auto* table = window->findChild<QTableWidget*>("ListPrevision");
  ASSERT_TRUE(table);
  ASSERT_TRUE(QTest::qWaitFor([&] { return table->rowCount() == 3; }, 5000));
  EXPECT_EQ(table->item(0, 2)->text(), "ABBA  WATERLOO");
  EXPECT_EQ(table->item(0, 3)->text(), "03:05");
  EXPECT_EQ(table->item(1, 1)->text(), "BLANC");
  EXPECT_EQ(table->item(2, 2)->text(), "Fichier absent : /lost.wav");
  QTest::mouseClick(table->window()->findChild<QAbstractButton*>("BtnRecalculer"), Qt::LeftButton);
  EXPECT_EQ(source.started, 2);
  EXPECT_EQ(table->rowCount(), 0);
}

class ForecastInLanguage : public Screen, public testing::WithParamInterface<int> {};

TEST_P(ForecastInLanguage, NamesKindsGapsAndWarnings) {
  TwoLines source;
  sources.forecast = &source;
  Loaded();
  on.Set("Langue", std::to_string(GetParam()));
  on.station.base.CheckCnf();
  Open();
  Click("Toolbar1_3");
  Click("BtnPrevision");
  source.lines = {{"12:00:01", ForecastKind::kElement, 5, "ABBA  WATERLOO", "", 185000},
                  {"12:03:06", ForecastKind::kElement, -1, "STATION JINGLE", "", 8000},
                  {"12:03:14", ForecastKind::kGap, 0, "", "", 4000},
                  {"12:03:18", ForecastKind::kBreak, 0, "12:00", "", 50000},
                  {"12:04:08", ForecastKind::kElement, -2, "BAKERY", "", 20000},
                  {"12:04:28", ForecastKind::kElement, -4, "WEATHER", "", 30000},
                  {"12:04:58", ForecastKind::kWarning, 0, "/lost.wav", "missing", 0},
                  {"12:59:56", ForecastKind::kPip, 0, "", "", 4000}};
  source.state = ForecastSource::State::kDone;
  auto* table = window->findChild<QTableWidget*>("ListPrevision");
  ASSERT_TRUE(table);
  ASSERT_TRUE(QTest::qWaitFor([&] { return table->rowCount() == 8; }, 5000));
  const bool english = GetParam() == 1;
  const auto at = [&](int row, int column) { return table->item(row, column)->text(); };
  EXPECT_EQ(at(2, 1), english ? "GAP" : "BLANC");
  EXPECT_EQ(at(4, 1), english ? "Spot" : "Pub");
  EXPECT_EQ(at(6, 2), english ? "File missing: /lost.wav" : "Fichier absent : /lost.wav");
  EXPECT_EQ(at(7, 1), english ? "Hour pip" : "Top horaire");
  KeepPicture(*table->window(), english ? "forecast-en" : "forecast-fr");
}

INSTANTIATE_TEST_SUITE_P(Languages, ForecastInLanguage, testing::Values(0, 1));

}  // namespace
}  // namespace zemo::test
