// Does the screen ever disturb the air? The demo station with titles of a quarter of a minute airs
// in real time on no output, the main screen is open, and an operator who never rests clicks, types
// and drags his way through all of it and through the office's windows, three times a second,
// without ever stopping the air. Told are how late each title began (target: never more than a
// tick, 100 ms), for how long the event loop was away and during what, what the output missed
// (target: nothing), memory, processor time and errors.
//
// Usage: ScreenSoak [SECONDS] [FURTHER_CARDS_IN_THE_LIBRARY] [rest]
// Above 32,767 cards a list that holds one of the later cannot be stored: that error is no fault.
// With `rest` nobody touches the screen: what remains is the air's own.
// On the display that the environment names, else on none (the offscreen platform).
#include <sys/resource.h>
#include <unistd.h>

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QTabBar>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AirWatch.h"
#include "BaseSql.h"
#include "BigLibrary.h"
#include "Figures.h"
#include "ScreenHand.h"
#include "app/ForecastOfDay.h"
#include "app/ForecastProcess.h"
#include "app/RealStation.h"
#include "app/demo/Demo.h"
#include "app/demo/DemoCatalogue.h"
#include "engine/FreeMoment.h"
#include "engine/Startup.h"
#include "engine/screens/OnAirWindow.h"
#include "library/screens/LibraryDesk.h"
#include "platform/real/decoders/WaveformReader.h"
#include "platform/real/files/WholeFiles.h"
#include "platform/real/spreadsheet/BackgroundXlsxWriter.h"
#include "reports/screens/ReportDesk.h"
#include "scheduling/screens/ModelDesk.h"
#include "settings/screens/SettingsDesk.h"
#include "traffic/screens/AffidavitDesk.h"
#include "traffic/screens/CampaignDesk.h"
#include "traffic/screens/CampaignGridView.h"
#include "ui/ScreenDesktop.h"

namespace {

using zemo::bench::ProcessorSeconds;
using zemo::bench::ResidentMb;
using zemo::bench::ScreenHand;
using zemo::bench::TellCounts;
using zemo::bench::TellMemory;

constexpr double kLengthFactor = 0.15;  // a title of 90 s takes 13 s
constexpr int kStepMs = 300;
constexpr int kAnswerMs = 250;
constexpr int kFewRows = 8;  // of PL: below that nothing is taken out
constexpr int kManyRows = 20;
constexpr int kSettingsTabs = 9;
constexpr int kMemoryPoints = 20;  // at most one a minute

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value;
}

// Titles may come again soon, and a request asks for little, so that there are many of them.
// Further cards are only there to be searched: their sounds are the demo's.
void MakeStation(const std::string& folder, int cards) {
  zemo::MakeDemoStation(folder, {.titles = 40, .lengthFactor = kLengthFactor},
                        [](const std::string&) {});
  std::vector<std::string> statements = {
      "UPDATE Discotheque SET ECARTMINUTES = 3, NBPASSJOUR = 2000",
      "UPDATE Cnf SET TempRequette = 1, EcartArtiste = 1"};
  if (cards > 0) {
    statements.push_back(zemo::bench::CardsSql(cards));
    statements.push_back(
        "UPDATE Discotheque SET NBPASSJOUR = 0, (FILENAME, DUREE, POINTSORTIE, INTRO) = (SELECT "
        "FILENAME, DUREE, POINTSORTIE, INTRO FROM Discotheque AS demo WHERE demo.CODE = 1 + "
        "Discotheque.CODE % 40) WHERE FILENAME LIKE '/music/%'");
  }
  zemo::bench::Execute(folder + "/Triskin.MDB", statements);
}

// The machine's date stays as it is when another day of the grid is looked at.
class SoakSystem : public zemo::RealSystem {
 public:
  void SetDate(const zemo::LocalDateTime&) override {}
};

// The windows of the office that the operator goes to, and where files may be put.
struct Office {
  zemo::LibraryDesk library;
  zemo::CampaignDesk campaigns;
  zemo::ModelDesk models;
  zemo::AffidavitDesk affidavit;
  zemo::ReportDesk report;
  zemo::SettingsDesk settings;
  std::string folder;

  void Leave() {
    library.Leave();
    campaigns.Leave();
    models.Leave();
    affidavit.Leave();
    report.Leave();
    settings.Leave();
  }
};

// What the operator does, step after step, over and over.
class Operator {
 public:
  Operator(ScreenHand& hand, zemo::Station& station, QWidget& main, Office& office,
           std::string& doing)
      : hand_(hand), station_(station), main_(main), office_(office), doing_(doing) {
    InAutomatic();
    InLive();
    WithStoredLists();
    WithSkeletons();
    InTheGrid();
    InTheLibrary();
    InTheCampaigns();
    InTheModels();
    InTheSettings();
    InTheReport();
    WithTheAffidavit();
  }

  void Step() {
    if (hand_.Busy()) return;
    const auto& [name, act] = steps_[next_];
    if (QWidget* left = QApplication::activeModalWidget(); left && !InDialogue(name)) {
      ++leftOpen_[left->objectName().toStdString()];
      return hand_.Key(Qt::Key_Escape);
    }
    next_ = (next_ + 1) % steps_.size();
    if (next_ == 0) ++rounds_;
    doing_ = name;
    act();
  }
  int Rounds() const { return rounds_; }
  // Dialogues that came later than the steps that they are for.
  const std::map<std::string, int>& LeftOpen() const { return leftOpen_; }

 private:
  static bool InDialogue(std::string_view name) {
    return name.starts_with("skeleton ") || name.starts_with("calendar ") ||
           name.starts_with("library give ") || name.starts_with("report save ") ||
           name.starts_with("models save ");
  }
  void Do(const char* name, std::function<void()> act) {
    steps_.emplace_back(name, std::move(act));
  }
  int Any(int count) { return count > 0 ? static_cast<int>(random_() % unsigned(count)) : 0; }
  int Rows() const { return station_.PL.Count(); }
  QTableView* Table(const char* name) { return hand_.Find<QTableView>(name); }

  void ClickRow(const char* name, Qt::KeyboardModifiers modifiers = {}) {
    if (QTableView* table = Table(name))
      if (const int rows = ScreenHand::RowsSeen(*table))
        hand_.Click(table->viewport(), ScreenHand::InRow(*table, Any(rows)), modifiers);
  }
  void DragInList() {
    QTableView* list = Table("PL");
    const int rows = list ? ScreenHand::RowsSeen(*list) : 0;
    if (rows < 2) return;
    hand_.Drag(list->viewport(), ScreenHand::InRow(*list, Any(rows)), list->viewport(),
               ScreenHand::InRow(*list, Any(rows)));
  }
  void DropFound() {
    QTableView* found = Table("ListRech");
    QTableView* list = Table("PL");
    if (!found || !list || ScreenHand::RowsSeen(*found) < 1) return;
    const int row = Any(ScreenHand::RowsSeen(*found));
    const int rows = ScreenHand::RowsSeen(*list);
    const QPoint to = rows > 0 ? ScreenHand::InRow(*list, Any(rows)) : QPoint(30, 30);
    hand_.Drag(found->viewport(), ScreenHand::InRow(*found, row), list->viewport(), to);
  }
  void TakeOut() {
    if (Rows() <= kFewRows) return;
    ClickRow("PL");
    hand_.Key(Qt::Key_Delete);
  }
  void Shorten() {
    QTableView* list = Table("PL");
    if (!list || Rows() <= kManyRows) return;
    hand_.Click(list->viewport(), ScreenHand::InRow(*list, ScreenHand::RowsSeen(*list) - 1));
    hand_.Key(Qt::Key_End);
    for (int row = Rows(); row > kManyRows - 8; --row) hand_.Key(Qt::Key_Delete);
  }
  // Music for a minute, at the end of the list.
  void InsertSix() {
    QTableView* found = Table("ListRech");
    if (!found || ScreenHand::RowsSeen(*found) < 6) return;
    const int first = Any(ScreenHand::RowsSeen(*found) - 5);
    hand_.Click(found->viewport(), ScreenHand::InRow(*found, first));
    hand_.Click(found->viewport(), ScreenHand::InRow(*found, first + 5), Qt::ShiftModifier);
    hand_.Key(Qt::Key_Insert);
  }
  void SortBy(int column) {
    if (QTableView* found = Table("ListRech"))
      hand_.Click(found->horizontalHeader()->viewport(),
                  {found->horizontalHeader()->sectionViewportPosition(column) + 15, 8});
  }
  void Search(const char* name, std::function<std::string()> text) {
    Do(name, [this, text] { hand_.Type("Rech", text()); });
  }
  // By a choice, or without one.
  void LeaveCalendar() {
    if (QApplication::activeModalWidget()) hand_.Key(rounds_ % 2 ? Qt::Key_Return : Qt::Key_Escape);
  }
  void Twice(const char* box) {
    hand_.Click(box);
    hand_.Click(box);
  }

  void InAutomatic() {
    Do("automatic", [this] { hand_.Click("Toolbar1_1"); });
    for (int i = 0; i < 3; ++i) Do("drag in PL", [this] { DragInList(); });
    Do("move by key", [this] {
      ClickRow("PL");
      hand_.Key(Qt::Key_Down, Qt::AltModifier);
    });
    Do("Delete", [this] { TakeOut(); });
    Do("small window", [this] { hand_.Resize({800, 600}); });
    Do("shortcuts", [this] { hand_.Key(Qt::Key_F1); });
    Do("forecast", [this] {
      if (rounds_ % 3 == 0) hand_.Key(Qt::Key_F7);
    });
    Do("large window", [this] { hand_.Resize({1280, 800}); });
    Do("menu", [this] {
      hand_.Key(Qt::Key_O, Qt::AltModifier);
      hand_.Key(Qt::Key_Escape);
    });
  }

  void InLive() {
    Do("live", [this] { hand_.Click("Toolbar1_2"); });
    for (int i = 0; i < 3; ++i)
      Search("search an artist", [this] {
        const auto titles = zemo::DemoTitles();
        return std::string(titles[static_cast<size_t>(Any(int(titles.size())))].artist)
            .substr(0, 4);
      });
    Search("search all", [] { return "*"; });
    for (const int column : {0, 1, 2, 0}) Do("sort", [this, column] { SortBy(column); });
    for (int i = 0; i < 3; ++i) Do("drop in PL", [this] { DropFound(); });
    Do("insert by key", [this] { InsertSix(); });
    Do("Delete", [this] { TakeOut(); });
    for (int i = 0; i < 3; ++i) Do("genre", [this] { hand_.KeyIn("RechGenre", Qt::Key_Down); });
    Do("genre", [this] { hand_.KeyIn("RechGenre", Qt::Key_Home); });
    Do("boxes", [this] { Twice("CheckNoJingle"), Twice("OptionDirect"), Twice("CheckExtrait"); });
    for (int i = 0; i < 3; ++i) Do("MenuLive", [this] { hand_.KeyIn("MenuLive", Qt::Key_Down); });
    Do("overlay", [this] {
      ClickRow("ListRech");
      if (rounds_ % 2 == 0) hand_.Key(Qt::Key_F8);
    });
    Do("MenuLive", [this] { hand_.KeyIn("MenuLive", Qt::Key_Down); });
    Do("MenuLive", [this] { hand_.KeyIn("MenuLive", Qt::Key_Home); });
    Do("forecast", [this] {
      for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == QStringLiteral("FrmPrevision") && top->isVisible())
          hand_.KeyTo(top, Qt::Key_Escape);
    });
  }

  void WithStoredLists() {
    Do("live", [this] { hand_.Click("Toolbar1_2"); });
    Search("search all", [] { return "*"; });
    Do("insert by key", [this] { InsertSix(); });
    Do("name of a list", [this] { hand_.Type("ComboPLS", "Soak " + std::to_string(rounds_)); });
    Do("hour of a list", [this] { hand_.Type("ChHeure", "03:00"); });
    Do("calendar", [this] { hand_.Click("LblDate"); });
    Do("calendar end", [this] { LeaveCalendar(); });
    Do("save", [this] { hand_.Click("BtnSauve"); });
    // Without rows the live mode ends in the second half of an element.
    Do("new", [this] {
      if (station_.engine.ProgressPercent > 40) return;
      hand_.Click("BtnNew");
      InsertSix();
    });
    Do("insert by key", [this] { InsertSix(); });
    Do("choose a list", [this] {
      if (auto* combo = hand_.Find<QComboBox>("ComboPLS"))
        hand_.Click(combo, {combo->width() - 8, combo->height() / 2});
    });
    Do("choose a list", [this] {
      if (!QApplication::activePopupWidget()) return;
      hand_.Key(Qt::Key_End);
      hand_.Key(Qt::Key_Return);
    });
    Do("delete a list", [this] {
      if (station_.storedList.ComboPLS.index >= 0) hand_.KeyIn("ComboPLS", Qt::Key_Delete);
    });
    Do("insert by key", [this] { InsertSix(); });
  }

  void WithSkeletons() {
    Do("skeleton", [this] { hand_.Click("CmdRequette"); });
    for (int i = 0; i < 3; ++i)
      Do("skeleton genre", [this] {
        hand_.KeyIn("ListGenre", Qt::Key_Down);
        hand_.KeyIn("ListGenre", Qt::Key_Return);
      });
    Do("skeleton of a day",
       [this] { hand_.Key(static_cast<Qt::Key>(Qt::Key_1 + Any(7)), Qt::ControlModifier); });
    Do("skeleton Delete", [this] { hand_.KeyIn("SquelettePLS", Qt::Key_Delete); });
    Do("skeleton wish", [this] {
      hand_.KeyIn("Redondance", Qt::Key_Space);
      hand_.KeyIn("SpinMinutes", Qt::Key_Home);
    });
    Do("skeleton end", [this] { hand_.Click(rounds_ % 2 == 0 ? "BtnOk" : "BtnCancel"); });
    Do("shorten", [this] { Shorten(); });
  }

  void InTheGrid() {
    Do("grid", [this] { hand_.Click("Toolbar1_3"); });
    for (int i = 0; i < 2; ++i) Do("grid row", [this] { ClickRow("GPubJour"); });
    Do("copy a break", [this] {
      if (rounds_ % 4 == 0) hand_.Click("BtnCopyPub");
    });
    Do("print the grid", [this] { hand_.Click("BtnImpressionPub"); });
    Do("another day", [this] { hand_.Click("BtnPubJourX"); });
    Do("calendar wait", [] {});
    Do("calendar end", [this] { LeaveCalendar(); });
  }

  void ChooseMenu(const char* name) {
    if (auto* entry = office_.library.Window()->findChild<QAction*>(QString::fromLatin1(name));
        entry && entry->isEnabled())
      entry->trigger();
  }

  // The marks of a title are set and taken back; it is heard where the machine has an output for
  // it, else the refusal is answered.
  void OnTheWaveform() {
    Do("library waveform wait", [] {});
    Do("library waveform cursor", [this] {
      if (QWidget* view = hand_.Find("VueOnde"))
        hand_.Click(view, {10 + Any(view->width() - 20), view->height() / 2});
    });
    for (int i = 0; i < 4; ++i) Do("library zoom", [this] { hand_.Click("BtnZoomPlus"); });
    for (const char* mark : {"BtnIntro", "BtnSortie", "BtnAnnule", "BtnAnnule"})
      Do("library mark", [this, mark] { hand_.Click(mark); });
    for (int i = 0; i < 4; ++i) Do("library zoom", [this] { hand_.Click("BtnZoomMoins"); });
    Do("library listen", [this] { hand_.Click("BtnEcoute"); });
    Do("library listen wait", [] {});
    Do("library join", [this] { hand_.Click("BtnRaccordApres"); });
    Do("library listen wait", [] {});
  }

  // Cards are read, changed, given fields of another, listed and written out; none is deleted.
  void InTheLibrary() {
    Do("library", [this] {
      office_.library.Open();
      hand_.GoTo(*office_.library.Window());
      hand_.Resize({1280, 800});
    });
    Do("library wait", [] {});
    for (int i = 0; i < 3; ++i) Do("library card", [this] { ClickRow("PLDisco"); });
    for (int i = 0; i < 3; ++i) Do("library next", [this] { hand_.Click("BtnPlus"); });
    OnTheWaveform();
    Do("library comment",
       [this] { hand_.Type("ChCommentaire", "round " + std::to_string(rounds_)); });
    Do("library replace", [this] { ChooseMenu("Replacer"); });
    for (const char* text : {"the", "t", ""})
      Do("library search", [this, text] { hand_.Type("RechDisco", text); });
    Do("library sort", [this] {
      if (QTableView* cards = Table("PLDisco"))
        hand_.Click(cards->horizontalHeader()->viewport(),
                    {cards->horizontalHeader()->sectionViewportPosition(Any(3)) + 15, 8});
    });
    Do("library several", [this] {
      ClickRow("PLDisco");
      ClickRow("PLDisco", Qt::ShiftModifier);
    });
    Do("library give", [this] { hand_.Key(Qt::Key_G, Qt::ControlModifier); });
    Do("library give wait", [] {});
    Do("library give field", [this] {
      if (QApplication::activeModalWidget()) hand_.Click(hand_.Find("GiveVariete"), {10, 10});
    });
    Do("library give end", [this] {
      if (QApplication::activeModalWidget()) hand_.Click("BtnGive");
    });
    Do("library list", [this] { ChooseMenu("MnuListe"); });
    Do("library print", [this] { ChooseMenu("MnuImp"); });
    for (int tab = 1; tab < 4; ++tab) Do("library tab", [this, tab] { ClickTab(tab); });
    Do("library tab", [this] { ClickTab(0); });
    Do("library exchange files", [this] {
      if (rounds_ % 8 == 0) ChooseMenu("MnuTxt");
    });
    Do("library closed", [this] {
      office_.library.Window()->close();
      hand_.GoTo(main_);
    });
  }
  void ClickTab(int tab, const char* name = "TabStrip1") {
    if (auto* tabs = hand_.Find<QTabBar>(name)) hand_.Click(tabs, tabs->tabRect(tab).center());
  }

  // Somewhere in the grid of crosses that is seen.
  static QPoint InGrid(const QWidget& cells, double across, double down) {
    return {static_cast<int>(cells.width() * across), static_cast<int>(cells.height() * down)};
  }
  void MarkCrosses(Qt::KeyboardModifiers modifiers) {
    if (auto* grid = hand_.Find<zemo::CampaignGridView>("GPub"))
      hand_.Click(grid->viewport(), InGrid(*grid->viewport(), 0.1 * (2 + Any(7)), 0.3), modifiers);
  }
  void DrawCrosses() {
    auto* grid = hand_.Find<zemo::CampaignGridView>("GPub");
    if (!grid) return;
    QWidget* cells = grid->viewport();
    hand_.Drag(cells, InGrid(*cells, 0.2, 0.3), cells, InGrid(*cells, 0.8, 0.3 + 0.1 * Any(6)));
  }

  // Records are paged, changed, marked, saved and looked up; none is added or deleted.
  void InTheCampaigns() {
    Do("campaigns", [this] {
      office_.campaigns.Open();
      hand_.GoTo(*office_.campaigns.Window());
      hand_.Resize({1280, 800});
    });
    Do("campaigns wait", [] {});
    for (int i = 0; i < 3; ++i) Do("campaigns page", [this] { hand_.Click("BtnMoins"); });
    Do("campaigns mark", [this] { MarkCrosses({}); });
    Do("campaigns row", [this] { MarkCrosses(Qt::ShiftModifier); });
    Do("campaigns column", [this] { MarkCrosses(Qt::ControlModifier); });
    for (int i = 0; i < 2; ++i) Do("campaigns draw", [this] { DrawCrosses(); });
    for (const char* name : {"BtnCopyGrille", "BtnDecalY", "CmdInitGrille", "BtnCollerGrille"})
      Do("campaigns grid", [this, name] { hand_.Click(name); });
    Do("campaigns keys", [this] {
      hand_.KeyIn("GPub", Qt::Key_Home);
      hand_.Key(Qt::Key_End, Qt::ShiftModifier);
      hand_.Key(Qt::Key_PageDown);
    });
    Do("campaigns contact",
       [this] { hand_.Type("ChContact", "round " + std::to_string(rounds_)); });
    Do("campaigns save", [this] { hand_.Click("BtnReplacer"); });
    Do("campaigns overview", [this] { hand_.Click("BtnRecherhe"); });
    for (int i = 0; i < 2; ++i)
      Do("campaigns sort",
         [this] { hand_.Key(static_cast<Qt::Key>(Qt::Key_1 + Any(7)), Qt::ControlModifier); });
    Do("campaigns choose", [this] {
      ClickRow("PLPub");
      hand_.Key(Qt::Key_Return);
    });
    Do("campaigns print", [this] { hand_.Click("BtnImprimer"); });
    Do("campaigns procedure", [this] { hand_.Click("ImgMemo"); });
    Do("campaigns new", [this] { hand_.Click("BtnNew"); });
    Do("campaigns calendar", [this] { hand_.Click("LblDepartPub"); });
    Do("calendar wait", [] {});
    Do("calendar end", [this] { LeaveCalendar(); });
    Do("campaigns without a file", [this] { hand_.Click("BtnAjouter"); });
    Do("campaigns closed", [this] {
      office_.campaigns.Window()->close();
      hand_.GoTo(main_);
    });
  }

  // Opens its pop-up. The row of totals is left alone.
  void ClickCell(const char* name, int firstColumn) {
    QTableView* grid = Table(name);
    const int rows = grid ? ScreenHand::RowsSeen(*grid) - 1 : 0;
    if (rows < 1) return;
    const QModelIndex cell = grid->model()->index(
        Any(rows), firstColumn + Any(grid->model()->columnCount() - firstColumn));
    hand_.Click(grid->viewport(), grid->visualRect(cell).center());
  }
  // In the pop-up, if one opened: never its first entry, with which an hour would lose its music.
  void TakeShare() {
    if (!QApplication::activePopupWidget()) return;
    hand_.Key(Qt::Key_End);
    for (int up = Any(10); up > 0; --up) hand_.Key(Qt::Key_Up);
    hand_.Key(Qt::Key_Return);
  }
  void CopyADay() {
    if (!QApplication::activePopupWidget()) return;
    for (int down = 1 + Any(7); down > 0; --down) hand_.Key(Qt::Key_Down);
    hand_.Key(Qt::Key_Return);
  }

  // Shares are drawn and saved, rows are put in and taken out and the saved ones got back, a day is
  // copied over another and simulated, the week written out.
  void InTheModels() {
    Do("models", [this] {
      office_.models.Open();
      hand_.GoTo(*office_.models.Window());
      hand_.Resize({1280, 800});
    });
    Do("models wait", [] {});
    for (int i = 0; i < 3; ++i) {
      Do("models cell", [this] { ClickCell("Models", 1); });
      Do("models share", [this] { TakeShare(); });
    }
    Do("models store", [this] { hand_.Click("BtnSave"); });
    Do("models keys", [this] {
      hand_.KeyIn("Models", Qt::Key_Home);
      hand_.Key(Qt::Key_Insert);
      hand_.Key(Qt::Key_Delete);
      hand_.Key(Qt::Key_Delete);
    });
    Do("models get back", [this] { hand_.Click("BtnImport"); });
    Do("models variety", [this] { ClickCell("GVariete", 0); });
    Do("models share", [this] { TakeShare(); });
    for (int i = 0; i < 3; ++i)
      Do("models day",
         [this] { hand_.Click(("JourSemaine_" + std::to_string(1 + Any(7))).c_str()); });
    Do("models copy", [this] { hand_.OpenMenu("MnuCopierJour"); });
    Do("models copy of", [this] { CopyADay(); });
    Do("models forecast", [this] {
      if (rounds_ % 3 == 0) hand_.Click("BtnForecast");
    });
    Do("models export", [this] { hand_.Click("MnuExport"); });
    for (int i = 0; i < 2; ++i) Do("models save wait", [] {});
    Do("models save as", [this] {
      if (!QApplication::activeModalWidget()) return;
      hand_.Type("fileNameEdit", office_.folder + "/week" + std::to_string(rounds_));
      hand_.Key(Qt::Key_Return);
    });
    Do("models small window", [this] { hand_.Resize({1024, 768}); });
    Do("models closed", [this] {
      office_.models.Window()->close();
      hand_.GoTo(main_);
    });
  }

  void ClickHead(const char* list, int columns) {
    if (QTableView* table = Table(list))
      hand_.Click(table->horizontalHeader()->viewport(),
                  {table->horizontalHeader()->sectionViewportPosition(Any(columns)) + 15, 8});
  }

  // Everything but its way into the on-air list.
  void InTheReport() {
    Do("report", [this] {
      office_.report.Open();
      hand_.GoTo(*office_.report.Window());
      hand_.Resize({1280, 800});
    });
    Do("report wait", [] {});
    for (const char* text : {"a", "ab", ""})
      Do("report filter", [this, text] { hand_.Type("FiltreArtiste", text); });
    Do("report filter", [this] { hand_.Type("FiltreGenre", rounds_ % 2 == 0 ? "p" : ""); });
    Do("report again", [this] { hand_.Click("VoirRapport"); });
    for (int i = 0; i < 2; ++i) Do("report row", [this] { ClickRow("ListRap"); });
    for (int i = 0; i < 2; ++i) Do("report sort", [this] { ClickHead("ListRap", 4); });
    Do("report statistics", [this] { hand_.Click("BtnStats"); });
    Do("report rotations", [this] { ClickHead("ListStat", 3); });
    Do("report rotation", [this] { ClickRow("ListStat"); });
    Do("report print", [this] { hand_.Click("BtnImprimer"); });
    Do("report export", [this] { hand_.Click("BtnExport"); });
    Do("report save wait", [] {});
    Do("report save as", [this] {
      if (!QApplication::activeModalWidget()) return;
      hand_.Type("fileNameEdit", office_.folder + "/report" + std::to_string(rounds_));
      hand_.Key(Qt::Key_Return);
    });
    Do("report small window", [this] { hand_.Resize({1024, 768}); });
    for (int i = 0; i < 2; ++i) Do("report pictures", [this] { hand_.Click("BtnVues"); });
    Do("report closed", [this] {
      office_.report.Window()->close();
      hand_.GoTo(main_);
    });
  }

  // Every tab; a text and a level are changed, which are stored at the end.
  void InTheSettings() {
    Do("settings", [this] { office_.settings.Open(); });
    Do("settings wait", [] {});
    Do("settings wait", [this] {
      if (!office_.settings.Window()) return;
      hand_.GoTo(*office_.settings.Window());
      hand_.Resize({1280, 800});
    });
    Do("settings text", [this] { hand_.Type("TexteV", "round " + std::to_string(rounds_)); });
    for (int tab = 1; tab < kSettingsTabs; ++tab)
      Do("settings tab", [this, tab] { ClickTab(tab, "Config"); });
    Do("settings tab", [this] { ClickTab(2, "Config"); });
    Do("settings level",
       [this] { hand_.KeyIn("VolumeSousImp", rounds_ % 2 ? Qt::Key_Right : Qt::Key_Left); });
    Do("settings closed", [this] {
      if (office_.settings.Window()) office_.settings.Window()->close();
      hand_.GoTo(main_);
    });
  }

  void WithTheAffidavit() {
    Do("affidavit", [this] {
      office_.affidavit.Open();
      hand_.GoTo(*office_.affidavit.Window());
    });
    Do("affidavit wait", [] {});
    Do("affidavit advertiser", [this] { hand_.KeyIn("Annonceur", Qt::Key_Down); });
    Do("affidavit made", [this] { hand_.Click("BtnEtablir"); });
    Do("affidavit wait", [] {});
    Do("affidavit print", [this] { hand_.Click("BtnImprimer"); });
    Do("affidavit closed", [this] {
      office_.affidavit.Window()->close();
      hand_.GoTo(main_);
    });
  }

  ScreenHand& hand_;
  zemo::Station& station_;
  QWidget& main_;
  Office& office_;
  std::string& doing_;
  std::vector<std::pair<const char*, std::function<void()>>> steps_;
  size_t next_ = 0;
  int rounds_ = 0;
  std::map<std::string, int> leftOpen_;
  std::mt19937 random_{1};
};

zemo::OutputFigures FiguresOf(zemo::RealSoundChain& sound) {
  const zemo::SoundHealth health = sound.TakeHealth();
  return {health.output,     health.heard,    health.underruns,
          health.lateFrames, health.peakLeft, health.peakRight};
}

void Soak(zemo::ScreenApplication& application, const std::string& folder, int seconds,
          bool resting) {
  zemo::ScreenMessageBoxes messages;
  zemo::ScreenKeyboard keyboard;
  SoakSystem system;
  const auto clipboard = zemo::MakeClipboard();
  zemo::RealStation real(
      folder + "/station", folder + "/machine", {zemo::OutputSpec::Kind::kNull, ""},
      {*clipboard, messages, keyboard, system},
      [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
  zemo::Station& station = real.station;
  if (!zemo::OnAir::Form_Load(station)) std::abort();
  application.onException = [&station] { zemo::LogCurrentException(station, "FrmZemo"); };
  zemo::WaveformReader waveforms(std::make_unique<zemo::SoundFileOpener>(),
                                 folder + "/machine/Peaks");
  zemo::ForecastProcess forecast(
      (QCoreApplication::applicationDirPath() + QStringLiteral("/zemoradio")).toStdString(),
      folder + "/station", folder + "/machine");
  zemo::ScreenSources sources;
  sources.output = [&real] { return FiguresOf(*real.sound); };
  sources.waveforms = &waveforms;
  sources.forecast = &forecast;
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
  sources.questions.askText = [](QWidget*, const QString&, const QString&, const QString&) {
    return std::optional<QString>();
  };
  zemo::BackgroundXlsxWriter spreadsheets(real.loop);
  zemo::LibrarySources librarySources;
  librarySources.spreadsheets = &spreadsheets;
  librarySources.waveforms = &waveforms;
  librarySources.questions = sources.questions;
  zemo::CampaignSources campaignSources;
  campaignSources.questions = sources.questions;
  zemo::ForecastProcess weekForecast(
      (QCoreApplication::applicationDirPath() + QStringLiteral("/zemoradio")).toStdString(),
      folder + "/station", folder + "/machine");
  zemo::ForecastOfDay dayForecast(weekForecast);
  zemo::AffidavitSources affidavitSources;
  affidavitSources.questions = sources.questions;
  zemo::ReportSources reportSources;
  reportSources.files = {zemo::ReplaceFileInParts, &spreadsheets};
  reportSources.questions = sources.questions;
  Office office{zemo::LibraryDesk(station, librarySources),
                zemo::CampaignDesk(station, campaignSources),
                zemo::ModelDesk(station, {&spreadsheets, &dayForecast}),
                zemo::AffidavitDesk(station, affidavitSources),
                zemo::ReportDesk(station, reportSources),
                zemo::SettingsDesk(station, {.devices = &real.devices, .chooseFiles = {}}),
                folder};
  sources.openLibrary = [&office] { office.library.Open(); };
  sources.openCampaigns = [&office] { office.campaigns.Open(); };
  sources.openModels = [&office] { office.models.Open(); };
  sources.openReport = [&office] { office.report.Open(); };
  sources.openSettings = [&office] { office.settings.Open(); };
  zemo::OnAirWindow window(station, sources);
  keyboard.Watch(&window, [&station] { return bool{station.engine.HotKeysArmed}; });
  messages.SetWindow(&window, [&station] { return zemo::NoTickBelow(station); });
  window.resize(1280, 800);
  window.show();
  window.activateWindow();
  zemo::OnAir::Form_Activate(station, true);
  window.Begin();

  zemo::bench::AirWatch watch(real);
  station.events.SetSink(&watch);
  ScreenHand hand(window);
  Operator someone(hand, station, window, office, watch.doing);
  hand.Click("Toolbar1_5");
  QTimer steps, answers, memory;
  QObject::connect(&steps, &QTimer::timeout, [&] { someone.Step(); });
  QObject::connect(&answers, &QTimer::timeout, [&] { hand.AnswerBoxes(); });
  std::vector<double> mb;
  QObject::connect(&memory, &QTimer::timeout, [&] { mb.push_back(ResidentMb()); });
  if (!resting) steps.start(kStepMs);
  answers.start(kAnswerMs);
  memory.start(std::min(60, std::max(1, seconds / kMemoryPoints)) * 1000);
  const double before = ProcessorSeconds(RUSAGE_SELF);
  const auto end = real.loop.MakeTimer(seconds * 1000, [&] { real.loop.Quit(); });
  end->SetEnabled(true);
  real.loop.Run();
  steps.stop();
  office.Leave();  // which may ask
  answers.stop();
  station.events.SetSink(nullptr);
  application.onException = nullptr;

  std::printf("%d s on the platform %s\n", seconds,
              QGuiApplication::platformName().toStdString().c_str());
  watch.Tell();
  std::printf("  processor time a second of air   %8.1f ms\n",
              (ProcessorSeconds(RUSAGE_SELF) - before) * 1000 / seconds);
  TellMemory(mb);
  std::printf("  events sent                      %8d, in %d rounds\n",
              static_cast<int>(hand.Events()), someone.Rounds());
  TellCounts("controls that were not there", hand.Missed());
  TellCounts("dialogues that came late", someone.LeftOpen());
  TellCounts("errors", watch.Errors());
}

// Each of Qt's own remarks once.
void Remark(QtMsgType, const QMessageLogContext&, const QString& text) {
  static std::set<QString> seen;
  if (seen.insert(text).second) std::fprintf(stderr, "%s\n", text.toStdString().c_str());
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 1200;
  const int cards = argc > 2 ? std::atoi(argv[2]) : 0;
  const bool resting = argc > 3 && std::string_view(argv[3]) == "rest";
  if (!IsSet("QT_QPA_PLATFORM") && !IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(Remark);
  zemo::ScreenApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  std::string folder = (std::filesystem::temp_directory_path() / "zemo-soak-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  std::filesystem::create_directories(folder + "/machine");
  MakeStation(folder + "/station", cards);
  Soak(application, folder, seconds, resting);
  std::filesystem::remove_all(folder);
  return 0;
}
