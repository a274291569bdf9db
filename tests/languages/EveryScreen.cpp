#include "languages/EveryScreen.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPrinter>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include "engine/Forecast.h"
#include "engine/screens/OnAirWindow.h"
#include "library/LibraryMessages.h"
#include "library/screens/LibraryWindow.h"
#include "library/screens/SelectorDialog.h"
#include "platform/SettingsDevices.h"
#include "platform/Spreadsheet.h"
#include "reports/screens/ReportWindow.h"
#include "scheduling/screens/ModelWindow.h"
#include "settings/SettingsTexts.h"
#include "settings/screens/SettingsWindow.h"
#include "station/OperatorWords.h"
#include "station/RecordMerge.h"
#include "support/ReadAtOnce.h"
#include "traffic/CampaignGrid.h"
#include "traffic/CampaignMessages.h"
#include "traffic/screens/AffidavitWindow.h"
#include "traffic/screens/CampaignWindow.h"
#include "ui/CalendarWindow.h"
#include "ui/ColourDialogue.h"
#include "ui/PaperPrint.h"
#include "ui/Questions.h"
#include "ui/SaveDialogue.h"
#include "ui/ScreenDesktop.h"
#include "ui/Theme.h"
#include "voicetrack/screens/VoiceTrackWindow.h"

namespace zemo::test {

namespace {

std::string Ours(const std::string& text) {
  return kStationsMark + text + kStationsMark;
}

struct NoSheet : SpreadsheetWriter {
  void Write(const std::string&, const Sheet&) override {}
};

struct GivenLines : ForecastSource {
  State state = State::kRunning;
  std::vector<ForecastLine> lines;
  std::string fault = Ours("no room");
  void Start(const ForecastWish&) override {}
  State Now() const override { return state; }
  const std::vector<ForecastLine>& Lines() const override { return lines; }
  const std::string& Fault() const override { return fault; }
};

struct GivenDay : DayForecast {
  State state = State::kRunning;
  void Start(const PlannedDay&) override {}
  State Now() const override { return state; }
  std::vector<AiredTitle> Aired() const override {
    return {{0, 1, Ours("A  Title"), 180000}, {1, 1, Ours("A  Title"), 180000}};
  }
  std::string Fault() const override { return Ours("no room"); }
};

struct TwoDevices : SettingsDevices {
  std::vector<std::string> OutputNames() override { return {Ours("Studio"), Ours("Headphones")}; }
  std::vector<std::string> OutputKeys() override { return {"usb.1", "pci.2"}; }
  void SelectOutput(int) override {}
  bool PrelistenClosed() const override { return true; }
  void SelectPrelisten(int) override {}
};

void Settle() {
  QApplication::processEvents();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

template <typename Control = QWidget>
Control* Find(const QWidget& window, const char* name) {
  auto* control = window.findChild<Control*>(QString::fromUtf8(name));
  if (!control) ADD_FAILURE() << "the window has no " << name;
  return control;
}

void Click(const QWidget& window, const char* name) {
  if (auto* button = Find<QAbstractButton>(window, name)) button->click();
  Settle();
}

void Choose(const QWidget& window, const char* action) {
  if (auto* entry = Find<QAction>(window, action)) entry->trigger();
  Settle();
}

void Type(const QWidget& window, const char* name, const QString& text) {
  auto* box = window.findChild<QLineEdit*>(QString::fromUtf8(name));
  if (!box)
    if (const auto* combo = Find<QComboBox>(window, name)) box = combo->lineEdit();
  if (!box) return;
  box->setFocus();
  box->selectAll();
  for (const QChar letter : text)
    QTest::sendKeyEvent(QTest::Click, box, Qt::Key_unknown, QString(letter), Qt::NoModifier);
  QTest::keyClick(box, Qt::Key_Return);
  Settle();
}

void ChooseTab(const QWidget& window, const char* tabs, int tab) {
  Find<QTabBar>(window, tabs)->setCurrentIndex(tab);
  Settle();
}

}  // namespace

EveryScreen::EveryScreen(int langue) : langue_(langue) {
  before_.MakeFile("Genre.Txt", Ours("POP") + "\r\n" + Ours("ROCK") + "\r\n");
  before_.MakeFile("Categori.Ini", Ours("CULTURE") + "\r\n");
  before_.MakeFile("StartStop.5", "\"START\",\"06:00\"\r\n\"STOP\",\"23:00-Q\"\r\n");
  before_.MakeFile("Topage.5", "\"06:30\"\r\n");
  before_.Load();
  before_.Set("Langue", std::to_string(langue));
  on_.Load();
  Fill();
  FillReport();
}

void EveryScreen::Fill() {
  on_.Sql("DELETE FROM Variete");
  on_.Sql("INSERT INTO Variete (POURCENT, VARIETE) VALUES (60, '" + Ours("NATIONAL") + "')");
  for (int song = 1; song <= 12; ++song) {
    const int32_t code = on_.AddCard({.lengthMs = 185000,
                                      .artist = Ours("ARTIST " + std::to_string(song)),
                                      .title = Ours("Title"),
                                      .genre = Ours("POP"),
                                      .variety = Ours("NATIONAL"),
                                      .exitMs = 4000,
                                      .introSec = 14});
    on_.AppendCard(code);
  }
  on_.Sql("INSERT INTO DiscothequeJingle (LIBELLE, FILENAME) VALUES ('" + Ours("Jingle") +
          "', '/a.wav')");
  on_.Sql("INSERT INTO DiscothequeVirgule (LIBELLE, FILENAME) VALUES ('" + Ours("Short") +
          "', '/a.wav')");
  for (int hour = 0; hour < 24; hour += 12)
    on_.Sql("INSERT INTO Models (JOUR, GENRE, TRANCHE" + std::string(hour ? "12" : "00") +
            ") VALUES (6, '" + Ours("POP") + "', 40)");
  DayGrid& grid = on_.station.GPubJour;
  for (int row = 1; row <= 4; ++row) {
    grid.SetCell(row, 0, "0" + std::to_string(row) + ":30");
    grid.SetCell(row, 1, "02:10");
    grid.SetCell(row, 2, row % 2 ? "Pubs" : "Rubriques");
    grid.SetCell(row, 3, Ours("Advertiser"));
  }
  const std::string advertiser = Ours("Baker");
  AddCampaign(on_, {.advertiser = advertiser,
                    .from = "20/11/2026",
                    .to = "22/11/2026",
                    .crosses = {"00:00", "10:00", "11:00", "15:00"},
                    .genre = Ours("POP")});
  AddCampaign(on_, {.advertiser = advertiser, .from = "JOURNALIER", .to = "JOURNALIER"});
  for (const char* const damage : {"X\r\nX\r\n", "odd\r\n", "long"}) {
    AddCampaign(on_, {.advertiser = advertiser,
                      .spot = false,
                      .from = "20/11/2026",
                      .to = "22/11/2026",
                      .file = on_.MakeSound(Ours(std::string(1, damage[0])) + ".wav", 30000)});
    on_.MakeFile(Ours(std::string(1, damage[0])) + ".GPB", damage);
  }
}

void EveryScreen::FillReport() {
  // 21 November 2026 is day 46347.
  const std::string kinds[] = {Ours("POP"), "PUB", "Rubrique", "JINGLE", "TOP-H", "AUTRES"};
  int minute = 0;
  for (const std::string& kind : kinds) {
    ++minute;
    on_.Sql(
        "INSERT INTO Rapport (LADATE, HEURE, AUTEUR, TITRE, GENRE, VARIETE, DATENUM) VALUES "
        "('21/11/2026', '10:" +
        std::to_string(10 + minute) + ":00', '" + Ours("Baker") + "', '" + Ours("Title") + "', '" +
        kind + "', '" + Ours("NATIONAL") + "', 46347.42 + " + std::to_string(minute) +
        " / 1440.0)");
  }
}

void EveryScreen::Size(QWidget& window) const {
  window.resize(width_, height_);
  QApplication::setActiveWindow(&window);
  Settle();
}

void EveryScreen::Look(const std::string& name, QWidget& window) {
  Settle();
  visit_(name, window);
}

void EveryScreen::LookAtFiles(const std::string& name, QFileDialog& dialogue) {
  dialogue.setDirectory(QString::fromStdString(empty_.Path()));
  dialogue.setViewMode(QFileDialog::Detail);
  Look(name, dialogue);
}

void EveryScreen::LookAtModal(const std::string& name, const std::function<void()>& open) {
  bool seen = false;
  QTimer::singleShot(0, QApplication::instance(), [&] {
    auto* dialogue = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(dialogue) << name;
    seen = true;
    Look(name, *dialogue);
    dialogue->reject();
  });
  open();
  EXPECT_TRUE(seen) << name;
  Settle();
}

void EveryScreen::Walk(int width, int height, const Visit& visit) {
  width_ = width;
  height_ = height;
  visit_ = visit;
  WalkMainScreen();
  WalkLibrary();
  WalkCampaigns();
  WalkAffidavit();
  WalkModels();
  WalkSettings();
  WalkReport();
  WalkVoiceTracks();
  WalkBoxes();
  WalkQtsDialogues();
  WalkQtsMenus();
}

// --- the main screen ---

void EveryScreen::WalkMainScreen() {
  GivenLines forecast;
  ScreenSources sources;
  OutputFigures output{"no output", false, 0, 0, 0, 0};
  sources.output = [&output] { return output; };
  sources.freeDiskBytes = [] { return int64_t{182'400'000'000}; };
  sources.forecast = &forecast;
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
  OnAirWindow window(on_.station, sources);
  window.show();
  Size(window);
  const auto look = [&](const std::string& name) {
    window.Observe();
    window.Refresh();
    Look("main screen, " + name, window);
  };
  look("stopped");
  Click(window, "Toolbar1_5");
  on_.RunUntil(20000);
  look("nobody hears it");
  output = {Ours("Card"), true, 0, 0, 0.5F, 0.5F, true};
  on_.RunUntil(42000);
  look("on air");
  WalkLiveMode(window);
  Click(window, "Toolbar1_3");
  look("the day's grid");
  Click(window, "BtnPrevision");
  forecast.lines = {{"12:00:01", ForecastKind::kElement, 5, Ours("ABBA"), "", 185000},
                    {"12:03:06", ForecastKind::kGap, 0, "", "", 4000},
                    {"12:03:10", ForecastKind::kPip, 0, "", "", 4000},
                    {"12:03:10", ForecastKind::kBreak, 0, "10:30", "", 4000},
                    {"12:03:10", ForecastKind::kList, 0, Ours("list"), "", 4000},
                    {"12:03:10", ForecastKind::kWarning, 0, Ours("lost"), "missing", 0},
                    {"12:03:10", ForecastKind::kWarning, 0, Ours("lost"), "unreadable", 0}};
  for (const int32_t code : {-1, -2, -3, -4, -5, -6, -7, -8})
    forecast.lines.push_back({"12:04:00", ForecastKind::kElement, code, Ours("x"), "", 1000});
  auto* lines = Find(window, "FrmPrevision");
  Look("forecast, running", *lines);
  forecast.state = ForecastSource::State::kDone;
  static_cast<void>(QTest::qWaitFor(
      [&] { return Find<QAbstractButton>(*lines, "BtnRecalculer")->isEnabled(); }, 5000));
  Look("forecast, done", *lines);
  lines->close();
  Settle();
  Choose(window, "MnuPasseWord");
  if (auto* lock = Find<QDialog>(window, "FrmPasseWord")) {
    Look("password", *lock);
    lock->reject();
  }
  on_.station.lists.Locked = true;
  look("locked");
  on_.station.lists.Locked = false;
  Settle();
}

void EveryScreen::WalkLiveMode(QWidget& window) {
  auto& main = static_cast<OnAirWindow&>(window);
  Click(window, "Toolbar1_2");
  auto* kinds = Find<QComboBox>(window, "MenuLive");
  for (int kind = 0; kind < kinds->count(); ++kind) {
    kinds->setCurrentIndex(kind);
    Q_EMIT kinds->activated(kind);
    main.Refresh();
    Look("main screen, live " + std::to_string(kind), window);
  }
  on_.station.storedList.ChHeure = "10:30";
  Click(window, "CmdRequette");
  main.Refresh();
  if (auto* skeleton = window.findChild<QDialog*>(QStringLiteral("SkeletonDialog"))) {
    Look("skeleton", *skeleton);
    skeleton->reject();
  } else {
    ADD_FAILURE() << "no skeleton dialogue";
  }
  Settle();
}

// --- the library ---

void EveryScreen::WalkLibrary() {
  ReadAtOnce files(on_.opener, on_.soundFiles);
  NoSheet sheets;
  LibrarySources sources;
  sources.spreadsheets = &sheets;
  sources.import = {&files, {}};
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
  LibraryWindow window(on_.station, sources);
  window.Open();
  Size(window);
  for (int tab = 0; tab < 4; ++tab) {
    ChooseTab(window, "TabStrip1", tab);
    Look("library, tab " + std::to_string(tab), window);
  }
  ChooseTab(window, "TabStrip1", 0);
  Type(window, "ChTitre", QString::fromStdString(Ours("Other")));
  Look("library, changed", window);
  if (width_ < kWidthOfBoth) Choose(window, "MnuListe");
  Find<QTableView>(window, "PLDisco")->selectAll();
  Look("library, list", window);
  Choose(window, "MnuGive");
  if (auto* give = window.findChild<QDialog*>(QStringLiteral("FrmGive"))) {
    Look("library, give", *give);
    give->reject();
  } else {
    ADD_FAILURE() << "nothing is given";
  }
  Choose(window, "MnuExporter");
  if (auto* dialogue = Find<QFileDialog>(window, "FrmExporter")) {
    LookAtFiles("library, export", *dialogue);
    dialogue->reject();
  }
  Settle();
  Choose(window, "MnuImport");
  if (auto* dialogue = Find<QFileDialog>(window, "FrmImportFolder")) {
    LookAtFiles("library, import", *dialogue);
    Q_EMIT dialogue->fileSelected(QString::fromStdString(empty_.Path()));
    dialogue->close();
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<QDialog*>("FrmImport"); }, 20000));
  if (auto* report = window.findChild<QDialog*>(QStringLiteral("FrmImport"))) {
    Look("library, imported", *report);
    report->close();
  }
  WalkSelector(window);
  window.LeaveNow();
}

void EveryScreen::WalkSelector(QWidget& over) {
  SelectorDialog selector(on_.station);
  selector.Choose(over, on_.MakeSound(Ours("sound") + ".wav", 30000), {}, {});
  Look("selector", selector);
  selector.reject();
}

// --- the office ---

void EveryScreen::WalkCampaigns() {
  CampaignSources sources;
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
  CampaignWindow window(on_.station, sources);
  window.Open();
  Size(window);
  Look("campaigns, a damaged grid", window);
  Click(window, "BtnDebut");
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.Loads().Known(); }, 10000));
  Look("campaigns", window);
  Click(window, "BtnRecherhe");
  Look("campaigns, overview", window);
  Click(window, "BtnNew");
  Look("campaigns, a new one", window);
  window.LeaveNow();
}

void EveryScreen::WalkAffidavit() {
  NoSheet sheets;
  AffidavitSources sources;
  sources.spreadsheets = &sheets;
  AffidavitWindow window(on_.station, sources);
  window.Open();
  Size(window);
  Type(window, "Annonceur", QString::fromStdString(Ours("Baker")));
  Look("affidavit", window);
  CalendarWindow calendar(langue_, on_.station.Now(), nullptr);
  calendar.setAttribute(Qt::WA_DeleteOnClose, false);
  calendar.show();
  Look("calendar", calendar);
  calendar.close();
  window.LeaveNow();
}

void EveryScreen::WalkModels() {
  NoSheet sheets;
  GivenDay forecast;
  for (const char* squelette : {"0", "-1"}) {
    on_.Set("Squelette", squelette);
    on_.station.base.CheckCnf();
    forecast.state = DayForecast::State::kRunning;
    ModelWindow window(on_.station, {&sheets, &forecast});
    window.Open();
    Size(window);
    Look(std::string("models, ") + squelette, window);
    Click(window, "BtnForecast");
    Look(std::string("models, simulating, ") + squelette, window);
    forecast.state = DayForecast::State::kDone;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return Find<QAbstractButton>(window, "BtnForecast")->isEnabled(); }, 5000));
    Look(std::string("models, simulated, ") + squelette, window);
    window.LeaveNow();
  }
}

void EveryScreen::WalkSettings() {
  TwoDevices devices;
  SettingsWindow window(on_.station, {&devices, {}});
  window.Open();
  Size(window);
  for (int tab = 0; tab < kSettingsTabs; ++tab) {
    ChooseTab(window, "Config", tab);
    Look("settings, tab " + std::to_string(tab), window);
  }
  ChooseTab(window, "Config", 3);
  Click(window, "TestPrelisten");
  Look("settings, a tone", window);
  ChooseTab(window, "Config", 5);
  Type(window, "ChEdit", QStringLiteral("99"));
  Look("settings, a time refused", window);
  window.LeaveNow();
}

void EveryScreen::WalkReport() {
  ReportSources sources;
  sources.openAffidavit = [] {};
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
  ReportWindow window(on_.station, sources);
  window.Open();
  Size(window);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.Editor().working == 0; }, 10000));
  Look("report", window);
  Click(window, "BtnStats");
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.Editor().working == 0; }, 10000));
  Look("report, rotations", window);
  if (width_ < kWidthOfPictures) Click(window, "BtnVues");
  Look("report, charts", window);
  window.LeaveNow();
}

// --- boxes, and what is Qt's ---

void EveryScreen::WalkVoiceTracks() {
  QWidget over;
  on_.localValues.Set("AudioOutID", "0");  // that of the window, too
  VoiceTrackWindow window(on_.station, {}, over);
  Size(window);
  window.Open(on_.station.PL.Row(1).key);
  Size(window);
  Look("voice tracks", window);
  on_.recorder.gives = false;
  Click(window, "BtnRecord");
  on_.RunUntil(on_.loop.MonotonicMs() + 2500);
  window.Refresh();
  Look("voice tracks, recording", window);
  Click(window, "BtnStop");
  Click(window, "CheckCut");
  Look("voice tracks, cut", window);
  Click(window, "BtnSave");
  Look("voice tracks, saved", window);
  window.LeaveNow();
  on_.station.PL.Remove(2);
}

void EveryScreen::WalkBoxes() {
  QWidget window;
  window.setStyleSheet(Theme::StyleSheet(1, true));
  window.show();
  std::vector<std::string> told = {
      NoSoundFileText(on_.station),
      NoCampaignText(on_.station),
      WrongMarkText(on_.station, {Ours("99"), true}),
      WrongMarkText(on_.station, {Ours("99"), false}),
      MemoText(on_.station),
      LibraryText::FilesPicked(on_.station, 2),
      LibraryText::ShortFilesPicked(2),
      LibraryText::ConfirmDeleteSelection(on_.station),
      RecordClashText(on_.station),
      RecordClashLine(on_.station, Ours("field"), Ours("theirs"), Ours("mine"))};
  for (const RoutineText& row : RoutineTexts())
    told.push_back(WithPlace(row.routine, Ours("place")));
  for (const std::string& text : told) LookAtBox(text);
  ScreenMessageBoxes asking;
  asking.SetLanguage([this] { return langue_; });
  asking.SetWindow(&window, [] { return true; });
  for (const Buttons buttons :
       {Buttons::kYesNo, Buttons::kOkCancel, Buttons::kYesCancel, Buttons::kYesNoCancel,
        Buttons::kMineTheirsLook, Buttons::kMineTheirs})
    LookAtModal("question " + std::to_string(static_cast<int>(buttons)),
                [&] { asking.Show("Alerte", Ours("text"), buttons); });
  PrintIntoPdf(&window, empty_.Path() + "/none/x.pdf", {"a line"}, "Courier", 10, langue_);
  if (auto* box = Find<QDialog>(window, "PrintFailed")) {
    Look("a print that failed", *box);
    box->reject();
  }
  Settle();
}

void EveryScreen::LookAtBox(const std::string& text) {
  ScreenMessageBoxes boxes;
  boxes.SetLanguage([this] { return langue_; });
  boxes.Show("Alerte", text, Buttons::kOk);
  int seen = 0;
  for (QWidget* box : QApplication::topLevelWidgets()) {
    if (box->objectName() != QStringLiteral("Alerte") || !box->isVisible()) continue;
    ++seen;
    Look("box: " + text, *box);
  }
  EXPECT_EQ(seen, 1) << text;
}

void EveryScreen::WalkQtsDialogues() {
  QWidget window;
  window.setStyleSheet(Theme::StyleSheet(1, true));
  window.show();
  const Questions asked = WithSystemDialogues({}, langue_);
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QStringLiteral("x.pdf"));
  QTimer::singleShot(0, QApplication::instance(), [this] { LookAtPrint(); });
  EXPECT_FALSE(asked.choosePrinter(&window, printer));
  LookAtModal("a question", [&] {
    asked.askText(&window, QString::fromUtf8(kStationsMark), QString::fromUtf8(kStationsMark), {});
  });
  OpenColourDialogue(window, QString::fromUtf8(kStationsMark), Qt::red, [](const QColor&) {});
  if (auto* dialogue = Find<QDialog>(window, "ColourDialogue")) {
    Look("colours", *dialogue);
    dialogue->reject();
  }
  OpenSaveDialogue(window, "FrmSave", QString::fromUtf8(kStationsMark),
                   {{QString::fromStdString(Ours("Text")), QStringLiteral("txt")}},
                   [](const std::string&) {});
  if (auto* dialogue = Find<QFileDialog>(window, "FrmSave")) {
    LookAtFiles("save", *dialogue);
    dialogue->reject();
  }
  Settle();
}

// With its options and the printer's properties, a tab each.
void EveryScreen::LookAtPrint() {
  auto* dialogue = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  ASSERT_TRUE(dialogue);
  Look("print", *dialogue);
  for (auto* button : dialogue->findChildren<QPushButton*>())
    if (button->text().contains(QStringLiteral(">>"))) button->click();
  Look("print, options", *dialogue);
  bool seen = false;
  QTimer::singleShot(0, dialogue, [&] {
    auto* properties = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(properties && properties != dialogue);
    seen = true;
    auto* tabs = properties->findChild<QTabWidget*>();
    ASSERT_TRUE(tabs);
    for (int tab = 0; tab < tabs->count(); ++tab) {
      tabs->setCurrentIndex(tab);
      Look("print, properties " + std::to_string(tab), *properties);
    }
    properties->reject();
  });
  Click(*dialogue, "properties");
  EXPECT_TRUE(seen);
  dialogue->reject();
}

void EveryScreen::WalkQtsMenus() {
  QWidget window;
  auto* box = new QLineEdit(&window);
  auto* spinner = new QSpinBox(&window);
  auto* bar = new QScrollBar(&window);
  auto* text = new QPlainTextEdit(&window);
  window.show();
  int menus = 0;
  for (QWidget* over : std::initializer_list<QWidget*>{box, spinner, bar, text->viewport()}) {
    QTimer::singleShot(0, QApplication::instance(), [&] {
      for (QWidget* shown : QApplication::topLevelWidgets())
        if (shown->isVisible() && qobject_cast<QMenu*>(shown)) {
          ++menus;
          Look("menu " + std::to_string(menus), *shown);
          shown->close();
        }
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, {3, 3}, over->mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(over, &event);
    Settle();
  }
  EXPECT_EQ(menus, 4);
}

}  // namespace zemo::test
