// docs/glossary.md tells every column of the schema, every setting and every control, each in one
// line, and nothing else. What is missing on either side is told by its name.
#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "engine/Forecast.h"
#include "engine/screens/ForecastWindow.h"
#include "engine/screens/LockDialog.h"
#include "engine/screens/SaverWindow.h"
#include "engine/screens/SkeletonWindow.h"
#include "engine/screens/tests/ScreenFixture.h"
#include "glossary/Glossary.h"
#include "library/TrackNeighboursTable.h"
#include "library/screens/LibraryWindow.h"
#include "library/screens/SelectorDialog.h"
#include "reports/screens/ReportWindow.h"
#include "scheduling/screens/ModelWindow.h"
#include "settings/SettingsControls.h"
#include "settings/screens/SettingsWindow.h"
#include "store/Schema.h"
#include "store/SoundMeasuresTable.h"
#include "traffic/screens/AffidavitWindow.h"
#include "traffic/screens/CampaignWindow.h"
#include "ui/CalendarWindow.h"
#include "ui/ScreenDesktop.h"
#include "voicetrack/screens/VoiceTrackWindow.h"

namespace zemo::test {
namespace {

std::string TextOf(const std::string& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  EXPECT_NE(text.str(), "") << path;
  return text.str();
}

std::map<std::string, Names> Glossary() {
  Names faults;
  auto sections = ReadGlossary(TextOf(ZEMO_GLOSSARY), faults);
  EXPECT_EQ(faults, Names{});
  return sections;
}

void ExpectSame(const std::string& section, const Names& told, const Names& present) {
  for (const std::string& name : present)
    EXPECT_TRUE(told.contains(name)) << section << ": the glossary lacks `" << name << "`";
  for (const std::string& name : told)
    EXPECT_TRUE(present.contains(name)) << section << ": there is no `" << name << "`";
}

Names Controls(const std::string& header, const std::string& structName) {
  return ControlsIn(TextOf(ZEMO_SOURCES "/" + header), structName);
}

TEST(Glossary, TellsEveryColumnOfEveryTable) {
  const auto sections = Glossary();
  Names tables;
  std::vector<TableDef> present = SchemaTables();
  present.push_back(MeasuresTable());
  present.push_back(NeighboursTable());
  for (const TableDef& table : present) {
    tables.insert("Table " + table.Name);
    Names columns;
    for (const Field& field : table.Fields) columns.insert(field.Name);
    const auto told = sections.find("Table " + table.Name);
    ExpectSame(table.Name, told == sections.end() ? Names{} : told->second, columns);
  }
  for (const auto& [section, names] : sections)
    EXPECT_TRUE(!section.starts_with("Table ") || tables.contains(section)) << section;
}

struct NoForecast : ForecastSource {
  std::vector<ForecastLine> lines;
  std::string fault;
  void Start(const ForecastWish&) override {}
  State Now() const override { return State::kIdle; }
  const std::vector<ForecastLine>& Lines() const override { return lines; }
  const std::string& Fault() const override { return fault; }
};

// The names of the window's controls and menus. Qt names some of its own.
void AddNamesOf(const QObject& window, Names& names) {
  QList<const QObject*> objects{&window};
  for (const QObject* object : window.findChildren<QObject*>()) objects.push_back(object);
  for (const QObject* object : objects) {
    const std::string name = object->objectName().toStdString();
    const bool ofQt = name.starts_with("qt_") || name.starts_with("_") ||
                      (name.starts_with("Scroll") && name.ends_with("Button"));
    if (!name.empty() && !ofQt) names.insert(name);
  }
}

using GlossaryOfScreens = Screen;

TEST_F(GlossaryOfScreens, TellsEveryControlOfTheOnAirScreenAndItsDialogues) {
  Open();
  Names present = Controls("engine/MainScreenPicture.h", "MainScreen");
  for (const char* frame : {"BrowseFrame", "StoredListEditor", "GridFrame", "Saver"})
    present.merge(Controls("station/OperatorFrames.h", frame));
  QTest::keyClick(Find("ListRech"), Qt::Key_Menu);
  AddNamesOf(*window, present);
  AddNamesOf(CalendarWindow(0, on.station.Now(), nullptr), present);
  AddNamesOf(LockDialog(on.station, 0, nullptr), present);
  AddNamesOf(SaverWindow([] { return QString(); }, [] {}), present);
  NoForecast forecast;
  AddNamesOf(ForecastWindow(on.station, forecast, 0, nullptr), present);
  AddNamesOf(SkeletonWindow(on.station, 0, 8, nullptr), present);
  ExpectSame("On-air screen", Glossary()["On-air screen"], present);
}

TEST_F(GlossaryOfScreens, TellsEveryControlOfTheVoiceTrackEditor) {
  Loaded();
  Names present = Controls("voicetrack/VoiceTrackEditor.h", "VoiceTrackEditor");
  QWidget over;
  AddNamesOf(VoiceTrackWindow(on.station, {}, over), present);
  ExpectSame("Voice track editor", Glossary()["Voice track editor"], present);
}

TEST_F(GlossaryOfScreens, TellsEveryControlOfTheModelEditor) {
  Loaded();
  Names present = Controls("station/ModelEditor.h", "ModelEditor");
  AddNamesOf(ModelWindow(on.station, {}), present);
  ExpectSame("Model editor", Glossary()["Model editor"], present);
}

TEST_F(GlossaryOfScreens, TellsEveryControlOfTheLibraryScreenAndOfTheSelector) {
  Loaded();
  Names library, selector;
  AddNamesOf(LibraryWindow(on.station, {}), library);
  AddNamesOf(SelectorDialog(on.station), selector);
  auto sections = Glossary();
  ExpectSame("Library screen", sections["Library screen"], library);
  ExpectSame("Sound file selector", sections["Sound file selector"], selector);
}

TEST_F(GlossaryOfScreens, TellsEveryControlOfTheReportScreenAndOfTheAffidavit) {
  Loaded();
  Names report = Controls("reports/ReportEditor.h", "ReportEditor");
  Names affidavit = Controls("traffic/AffidavitScreen.h", "AffidavitEditor");
  AddNamesOf(ReportWindow(on.station, {}), report);
  AddNamesOf(AffidavitWindow(on.station, {}), affidavit);
  auto sections = Glossary();
  ExpectSame("Report screen", sections["Report screen"], report);
  ExpectSame("Affidavit", sections["Affidavit"], affidavit);
}

TEST_F(GlossaryOfScreens, TellsEveryControlOfTheSettings) {
  Loaded();
  Names present = Controls("station/SettingsScreen.h", "SettingsScreen");
  for (const SettingsControl& control : SettingsControls()) {
    present.insert(control.name);
    if (control.in != StoredIn::kCnf) present.insert(control.store);
  }
  AddNamesOf(SettingsWindow(on.station, {}), present);
  ExpectSame("Settings screen", Glossary()["Settings screen"], present);
}

// One of several boxes is told by the name that they share.
TEST_F(GlossaryOfScreens, TellsEveryControlOfTheCampaigns) {
  Loaded();
  Names present = Controls("traffic/CampaignGrid.h", "CampaignForm");
  present.merge(Controls("traffic/CampaignEditor.h", "CampaignEditor"));
  Names shown;
  AddNamesOf(CampaignWindow(on.station, {}), shown);
  for (const std::string& name : shown) present.insert(name.substr(0, name.find('_')));
  ExpectSame("Campaign editor", Glossary()["Campaign editor"], present);
}

// "| `PLACE` | what it is: Routine |": the place is a text of the program, the routine is there.
TEST(Glossary, TellsPlacesOfTheErrorLogByTheRoutinesThatThereAre) {
  std::string sources;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(ZEMO_SOURCES)) {
    const std::string path = entry.path();
    const bool isCode = path.ends_with(".cpp") || path.ends_with(".h");
    if (isCode && path.find("/tests/") == std::string::npos) sources += TextOf(path);
  }
  const std::string page = TextOf(ZEMO_GLOSSARY);
  const std::string places = page.substr(page.find("## Error log"));
  const std::regex line("\\| `(\\w+)` \\| .*: (\\w+) \\|");
  int told = 0;
  for (std::sregex_iterator it(places.begin(), places.end(), line), end; it != end; ++it, ++told) {
    EXPECT_NE(sources.find('"' + it->str(1) + '"'), std::string::npos) << it->str(1);
    EXPECT_NE(sources.find(' ' + it->str(2) + '('), std::string::npos) << it->str(2);
  }
  EXPECT_EQ(static_cast<size_t>(told), Glossary()["Error log"].size());
  EXPECT_GT(told, 0);
}

TEST(Glossary, AColumnsRangeStandsForAllOfIt) {
  Names faults;
  const auto sections = ReadGlossary(
      "## Table A\n\n| Name | What it is |\n|---|---|\n| `B08` to `B11` | four |\n| `C` |  |\n"
      "| `D` | one |\n| `D` | again |\n## Other\n| `D` | elsewhere |\n",
      faults);
  EXPECT_EQ(sections.at("Table A"), (Names{"B08", "B09", "B10", "B11", "C", "D"}));
  EXPECT_EQ(sections.at("Other"), (Names{"D"}));
  EXPECT_EQ(faults, (Names{"Table A: C has no text", "Table A: D stands twice"}));
}

TEST(Glossary, ControlsAreFoundInAHeader) {
  const std::string header =
      "struct Other { int X; };\n"
      "struct Form : Base {\n"
      "  std::string LblCode, Other = \"a, B\";  // no Comment\n"
      "  std::array<std::pair<A, B>, kRows> Grid{};\n"
      "  struct Item { int Hidden; };\n"
      "  struct { int Inner; } Combo;\n"
      "  bool BtnEnabled = true, visible = false;\n"
      "  uint32_t Led[4] = {kOff};\n"
      "};\n";
  EXPECT_EQ(ControlsIn(header, "Form"), (Names{"LblCode", "Other", "Grid", "Combo", "Btn", "Led"}));
}

TEST(Glossary, TellsTheButtonsOfTheBoxThatAsksWhoseFieldsARecordKeeps) {
  QWidget window;
  window.show();
  ScreenMessageBoxes boxes;
  boxes.SetWindow(&window, [] { return true; });
  Names present;
  QTimer::singleShot(0, [&] {
    auto* box = window.findChild<QMessageBox*>("Alerte");
    ASSERT_TRUE(box);
    for (const auto* button : box->findChildren<QPushButton*>())
      present.insert(button->objectName().toStdString());
    box->reject();
  });
  boxes.Show("Alerte", "whose?", Buttons::kMineTheirsLook);
  ExpectSame("Boxes", Glossary()["Boxes"], present);
}

}  // namespace
}  // namespace zemo::test
