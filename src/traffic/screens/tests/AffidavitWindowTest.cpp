// The window of the affidavit: choice, list, paper, files, closing, and its looks in four languages
// and three sizes.
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "platform/real/files/WholeFiles.h"
#include "support/Campaigns.h"
#include "traffic/screens/AffidavitDesk.h"
#include "traffic/screens/tests/CampaignWindowFixture.h"
#include "ui/Theme.h"
#include "ui/tests/DeskCheck.h"
#include "ui/tests/WindowSweep.h"

namespace zemo::test {
namespace {

using Texts = std::vector<std::string>;

class AffidavitOnScreen : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
    sources.spreadsheets = &sheets;
    AddCampaign(on, {.advertiser = "Bakery",
                     .from = "21/11/2026",
                     .to = "22/11/2026",
                     .crosses = {"10:00", "11:00"}});
    AddCampaign(on, {.advertiser = "Zoo"});
    on.Sql(
        "INSERT INTO Rapport (GENRE, AUTEUR, DATENUM) VALUES ('PUB', 'Bakery', 46347 + 36005 / "
        "86400.0), ('POP', 'Artist', 46347 + 39600 / 86400.0)");
  }
  void TearDown() override { window.reset(); }
  void Open(int width = 1024, int height = 768) {
    window = std::make_unique<AffidavitWindow>(on.station, sources);
    window->Open();
    BringForward(*window, width, height);
  }
  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = window->findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the window has no " << name;
    return control;
  }
  void Click(const char* name) {
    ClickOn(Find(name));
    QApplication::processEvents();
  }
  void MakeFor(const char* advertiser) {
    QLineEdit* box = Find<QComboBox>("Annonceur")->lineEdit();
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QString::fromUtf8(advertiser));
    QTest::keyClick(Find("Annonceur"), Qt::Key_Return);  // the box has the keyboard, not its line
    QApplication::processEvents();
  }
  void SaveAs(const std::string& path) { SaveIn(*window, "FrmExport", path); }
  std::string Text(const char* label) { return TextOn(Find(label)); }
  Texts Column(int column) {
    Texts texts;
    const QAbstractItemModel& model = *Find<QTableView>("ListDiff")->model();
    for (int row = 0; row < model.rowCount(); ++row)
      texts.push_back(model.index(row, column).data().toString().toStdString());
    return texts;
  }

  TestStation on{"2026-11-22 10:30:00"};
  AffidavitSources sources;
  struct KeptSheet : SpreadsheetWriter {
    void Write(const std::string& toPath, const Sheet& written) override {
      path = toPath, sheet = written;
    }
    std::string path;
    Sheet sheet;
  } sheets;
  std::unique_ptr<AffidavitWindow> window;
};

// The reason has four parts of seven of what a wider window gives; at one height the type is one.
TEST_F(AffidavitOnScreen, TheReasonGetsItsShareOfAWiderWindow) {
  Open(1200, 700);
  const auto* list = Find<QTableView>("ListDiff");
  const int before = list->columnWidth(DiffCol::kWhy), room = list->viewport()->width();
  BringForward(*window, 1600, 700);
  EXPECT_EQ(list->viewport()->width(), room + 400);
  EXPECT_NEAR(list->columnWidth(DiffCol::kWhy) - before, 400 * 4 / 7, 1);
}

TEST_F(AffidavitOnScreen, TellsWhatBecameOfEachCrossOfTheAdvertiser) {
  Open();
  EXPECT_EQ(window->windowTitle(), "Attestation de diffusion");
  EXPECT_EQ(Find<QComboBox>("Annonceur")->count(), 2);
  EXPECT_EQ(Text("LblDate"), "01/11/2026");
  MakeFor("Bakery");
  EXPECT_EQ(Text("LblTotaux"),
            "Bakery - 4 passage(s) prévu(s), 1 diffusé(s), 2 manqué(s), 1 à venir");
  EXPECT_EQ(Column(DiffCol::kState), (Texts{"diffusé", "manqué", "manqué", "à venir"}));
  EXPECT_EQ(Column(DiffCol::kWhy)[1], "minute perdue : la station était à l'antenne");
  const QAbstractItemModel& model = *Find<QTableView>("ListDiff")->model();
  EXPECT_EQ(model.index(1, 0).data(Qt::ForegroundRole).value<QColor>(), Theme::kNote);
}

TEST_F(AffidavitOnScreen, ALanguageSetMeanwhileShowsInTheNextWindow) {
  Open();
  on.Set("Langue", "1");
  MakeFor("Bakery");
  EXPECT_EQ(Text("LblTotaux"),
            "Bakery - 4 passage(s) prévu(s), 1 diffusé(s), 2 manqué(s), 1 à venir");
  EXPECT_EQ(Column(DiffCol::kState)[0], "diffusé");
  Open();
  MakeFor("Bakery");
  EXPECT_EQ(Column(DiffCol::kState)[0], "aired");
}

TEST_F(AffidavitOnScreen, TheSpanComesFromTheCalendar) {
  Open();
  Click("CmdCalend");
  PickDayIn(*window, 2026, 11, 22);
  EXPECT_EQ(Text("LblDate"), "22/11/2026");
  MakeFor("Bakery");
  EXPECT_EQ(Column(DiffCol::kDue), (Texts{"22/11/2026 10:00:00", "22/11/2026 11:00:00"}));
}

TEST_F(AffidavitOnScreen, GoesToPaperToAPdfAndToASpreadsheet) {
  const std::string paper = on.machineDir.Path() + "/paper.pdf";
  sources.questions.choosePrinter = [&](QWidget*, QPrinter& printer) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(paper));
    return true;
  };
  Open();
  MakeFor("Bakery");
  Click("BtnImprimer");
  EXPECT_EQ(ReadWholeFile(paper).value_or("").substr(0, 5), "%PDF-");
  Click("BtnPdf");
  SaveAs(on.machineDir.Path() + "/saved");
  EXPECT_EQ(ReadWholeFile(on.machineDir.Path() + "/saved.pdf").value_or("").substr(0, 5), "%PDF-");
  Click("BtnTableur");
  SaveAs("/out/bakery");
  EXPECT_EQ(sheets.path, "/out/bakery.xlsx");
  EXPECT_EQ(sheets.sheet.cells[1].text, "Prévu");
}

TEST_F(AffidavitOnScreen, OfAnEmptyListThereIsNothingButTheMessage) {
  Open();
  for (const char* button : {"BtnImprimer", "BtnPdf", "BtnTableur"}) Click(button);
  EXPECT_EQ(on.Events("message").size(), 3U);
  EXPECT_EQ(on.Events("message")[0]["text"], "Vous n'avez rien dans la liste");
  EXPECT_FALSE(window->findChild<QFileDialog*>());
}

TEST_F(AffidavitOnScreen, StaysClosedWhileTheMenusAreLocked) {
  on.station.engine.ScreenLocked = true;
  Open();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(AffidavitOnScreen, TheDeskOpensOneWindowInTheLanguageOfTheMomentAndLeavesIt) {
  AffidavitDesk desk(on.station, sources);
  CheckDesk(
      desk, [this] { on.Set("Langue", "1"); }, QStringLiteral("Affidavit of broadcast"));
}

class AffidavitSweep : public AffidavitOnScreen, public testing::WithParamInterface<int> {};

TEST_P(AffidavitSweep, NothingIsCutAndNothingOverlaps) {
  on.Set("Langue", std::to_string(GetParam()));
  on.station.base.CheckCnf();
  AddCampaign(on, {.advertiser = "A bakery with a long name",
                   .crosses = {"00:00", "07:00", "08:00", "12:00", "18:00"}});
  for (int day = 1; day <= 22; ++day)
    on.Sql(
        "INSERT INTO Rapport (GENRE, AUTEUR, DATENUM) VALUES ('PUB', 'A bakery with a long "
        "name', 46326 + " +
        std::to_string(day) +
        " + 25230 / 86400.0), ('PUB', 'A bakery with a long name', 46326 "
        "+ " +
        std::to_string(day) +
        " + 43260 / 86400.0), ('PUB', 'A bakery with a long name', "
        "46326 + " +
        std::to_string(day) + " + 79000 / 86400.0)");
  Open();
  MakeFor("A bakery with a long name");
  for (const WindowSize& size : kWindowSizes) {
    window->resize(size.width, size.height);
    QApplication::processEvents();
    const std::string name =
        std::string("affidavit-") + kLanguageNames[GetParam()] + "-" + std::to_string(size.width);
    CheckWindow(*window, name);
    KeepPicture(*window, name);
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, AffidavitSweep, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

}  // namespace
}  // namespace zemo::test
