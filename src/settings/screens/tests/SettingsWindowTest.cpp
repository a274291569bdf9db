// What an operator does in the settings' window, with the mouse and the keys. The clock stands on a
// Saturday, day 5.
#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QTabBar>
#include <QTableWidget>

#include "settings/screens/tests/SettingsWindowFixture.h"
#include "support/BaseFaults.h"

namespace zemo::test {
namespace {

constexpr int kPreferences = 0, kMixPoints = 1, kLevels = 2, kSound = 3, kSpots = 4, kStart = 5,
              kOthers = 6, kCommunication = 7, kOptimisation = 8;

using SettingsWindowTest = SettingsScreenTest;

TEST_F(SettingsWindowTest, StoresWhatWasSetWhenItIsLeft) {
  Open();
  Type("SpinVeille", "12");
  Type("TexteV", "Radio d'été");
  Click("GraphiqueMini");
  EXPECT_EQ(Stored("Veille"), "0");
  Close();
  EXPECT_FALSE(Window().isVisible());
  EXPECT_EQ(Stored("Veille"), "12");
  EXPECT_EQ(Stored("TextVeille"), "Radio d'été");
  EXPECT_EQ(Stored("GraphiqueMini"), "0");
}

struct FaultsFirst {
  BaseFaults base;  // ahead of the station, whose base it may fail
};
struct LockedSettingsWindow : FaultsFirst, SettingsScreenTest {};

TEST_F(LockedSettingsWindow, StaysOpenWithWhatWasSetUntilTheBaseTakesIt) {
  Open();
  Type("SpinVeille", "12");
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  Close();
  EXPECT_TRUE(Window().isVisible());
  EXPECT_TRUE(Find("SpinVeille")->isEnabled());
  EXPECT_FALSE(desk->Leave());
  base.Disarm();
  EXPECT_EQ(Stored("Veille"), "0");
  Close();
  EXPECT_FALSE(Window().isVisible());
  EXPECT_EQ(Stored("Veille"), "12");
}

TEST_F(SettingsWindowTest, ANumberThatIsBeingTypedCountsWhenTheWindowIsLeft) {
  Open();
  Type("JingleMn", "22");
  EXPECT_EQ(screen.JingleMn, "15");
  Close();
  EXPECT_EQ(Stored("Jingles"), "22");
}

TEST_F(SettingsWindowTest, StaysShutWhileTheMenusAreLocked) {
  station.engine.ScreenLocked = true;
  desk->Open();
  EXPECT_FALSE(Window().isVisible());
}

TEST_F(SettingsWindowTest, IsSavedAheadOfTheProgramsEnd) {
  Open();
  Type("SpinRequette", "45");
  EXPECT_TRUE(desk->Leave());
  EXPECT_EQ(Stored("TempRequette"), "45");
}

TEST_F(SettingsWindowTest, AnotherOpeningSpeaksTheLanguageOfTheMoment) {
  Open();
  EXPECT_EQ(Window().windowTitle(), "Paramétrage");
  Choose("Langue", 1);
  EXPECT_EQ(Notes(), Texts{"Sera effectif au prochain démarrage de Zemo Radio !"});
  Close();
  Open();
  EXPECT_EQ(Window().windowTitle(), "Settings");
  EXPECT_EQ(Notes(), Texts{});
}

TEST_F(SettingsWindowTest, SlidersShowSecondsAndShares) {
  Open();
  Tab(kMixPoints);
  EXPECT_EQ(Text("LblEnchDef"), "1.6 s");
  Find("EnchDef")->setFocus();
  QTest::keyClick(Find("EnchDef"), Qt::Key_Right);
  EXPECT_EQ(screen.EnchDef, 1700);
  EXPECT_EQ(Text("LblEnchDef"), "1.7 s");
  Tab(kLevels);
  EXPECT_EQ(Text("LblVolume"), "50 %");
  QTest::keyClick(Find("Volume"), Qt::Key_End);
  EXPECT_EQ(Text("LblVolume"), "100 %");
  EXPECT_EQ(screen.Volume, 32767);
}

TEST_F(SettingsWindowTest, ATipSaysWhatAControlDoesItsUnitAndItsDefault) {
  Open();
  EXPECT_EQ(Find("SpinRequette")->toolTip(),
            "Durée d'une requête de musique (minutes). Par défaut : 30");
}

TEST_F(SettingsWindowTest, AValueRefusedSaysWhyBesideItsControlUntilAnotherIsTaken) {
  Open();
  Type("JingleMn", "40000", true);
  EXPECT_EQ(Notes(), Texts{"Entre 0 et 32767"});
  EXPECT_EQ(screen.JingleMn, "15");
  Type("JingleMn", "20", true);
  EXPECT_EQ(Notes(), Texts{});
  Tab(kSound);
  Type("NbrBuffers", "501", true);
  EXPECT_EQ(Notes(), Texts{"Plus de 10 s en tout"});
}

TEST_F(SettingsWindowTest, BuffersWaitForTheNextStartAndSaySo) {
  on.Set("Langue", "1");
  Open();
  Tab(kSound);
  Type("NbrBuffers", "200", true);
  EXPECT_EQ(Notes(), Texts{"Will be efficient to the next starting of Zemo Radio !"});
  Type("NbrBuffers", "100", true);
  EXPECT_EQ(Notes(), Texts{});
}

TEST_F(SettingsWindowTest, SpotsWithThePipMoveTheOptimisation) {
  Open();
  Tab(kOptimisation);
  Type("SpinOptimise", "55", true);
  EXPECT_EQ(Text("SpinOptimise"), "55 mn");
  Click("CheckInstrumental");
  Tab(kSpots);
  Click("CheckPubToph");
  Tab(kOptimisation);
  EXPECT_EQ(Text("SpinOptimise"), "48 mn");
  EXPECT_FALSE(Find<QCheckBox>("CheckInstrumental")->isChecked());
}

TEST_F(SettingsWindowTest, TimesAreAddedWithEnterAndRemovedWithDelete) {
  Open();
  Tab(kStart);
  EXPECT_EQ(Text("JourSemaine"), "Samedi");
  Type("HeureArretSystemTyped", "23:00-q", true);
  Type("HeureArretSystemTyped", "late", true);
  EXPECT_EQ(Entries("HeureArretSystem"), Texts{"23:00-Q"});
  EXPECT_EQ(Notes(), Texts{"Une heure hh:mm"});
  Type("ComboHeureTyped", "06:00", true);
  auto* list = Find<QListWidget>("HeureArretSystem");
  QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                    list->visualItemRect(list->item(0)).center());
  QTest::keyClick(list, Qt::Key_Delete);
  EXPECT_EQ(Entries("HeureArretSystem"), Texts{});
  Choose("JourSemaine", 0);
  EXPECT_EQ(Entries("ComboHeure"), Texts{});
  EXPECT_EQ(StationFile("StartStop.5"), "\"START\",\"06:00\"\r\n");
}

TEST_F(SettingsWindowTest, ATimeThatIsTypedWithoutEnterCountsWhenItsDayOrTheWindowIsLeft) {
  Open();
  Tab(kStart);
  Type("ComboHeureTyped", "06:00");
  Choose("JourSemaine", 0);
  EXPECT_EQ(Text("ComboHeureTyped"), "");
  EXPECT_EQ(StationFile("StartStop.5"), "\"START\",\"06:00\"\r\n");
  Type("HeureArretSystemTyped", "20:00");
  Type("ChEdit", "12:30");
  Close();
  EXPECT_EQ(StationFile("StartStop.0"), "\"STOP\",\"20:00\"\r\n");
  EXPECT_EQ(StationFile("Topage.0"), "\"12:30\"\r\n");
}

// From a box whose own keys these are: Page down would choose another language.
TEST_F(SettingsWindowTest, TheTabsTurnByKeysFromWhereverTheKeyboardIs) {
  Open();
  auto* tabs = Find<QTabBar>("Config");
  EXPECT_TRUE(tabs->hasFocus());
  const std::string language = Text("Langue");
  const auto press = [&](Qt::Key key, Qt::KeyboardModifiers keys) {
    Find("Langue")->setFocus();
    QTest::keyClick(Find("Langue"), key, keys);
    EXPECT_TRUE(tabs->hasFocus());
    const int now = tabs->currentIndex();
    tabs->setCurrentIndex(kPreferences);
    return now;
  };
  EXPECT_EQ(press(Qt::Key_PageDown, Qt::ControlModifier), kMixPoints);
  EXPECT_EQ(press(Qt::Key_PageUp, Qt::ControlModifier), kOptimisation);
  EXPECT_EQ(press(Qt::Key_Tab, Qt::ControlModifier), kMixPoints);
  EXPECT_EQ(press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier), kOptimisation);
  EXPECT_EQ(Text("Langue"), language);
}

TEST_F(SettingsWindowTest, MarkerTimesAreAddedRebuiltAndSaved) {
  Open();
  Tab(kStart);
  Type("ChEdit", "12:30", true);
  Type("ChEdit", "13:30");
  Click("BtnAjouter");
  EXPECT_EQ(Entries("Topage"), (Texts{"12:30", "13:30"}));
  Click("BtnSave");
  EXPECT_EQ(StationFile("Topage.5"), "\"12:30\"\r\n\"13:30\"\r\n");
  Type("ChDecoupe_0", "15");
  Click("BtnInti");
  EXPECT_EQ(Entries("Topage").size(), 24U);
  EXPECT_EQ(Entries("Topage").front(), "00:15");
  Type("ChDecoupe_3", "75");
  Click("BtnInti");
  EXPECT_EQ(Notes(), Texts{"De 0 à 59"});
}

TEST_F(SettingsWindowTest, AFullListOfMarkerTimesTakesMoreByItsButtonAlone) {
  Open();
  Tab(kStart);
  screen.Topage.assign(Settings::kMostTopage, "12:00");
  Type("ChEdit", "12:30", true);
  EXPECT_EQ(screen.Topage.size(), Settings::kMostTopage);
  EXPECT_EQ(Notes().size(), 1U);
  Click("BtnAjouter");
  EXPECT_EQ(screen.Topage.size(), Settings::kMostTopage + 1);
  EXPECT_EQ(screen.Topage.back(), "12:30");
  EXPECT_EQ(Notes(), Texts{});
}

TEST_F(SettingsWindowTest, HoursOfInstrumentalsAreTickedByMouseAndBySpace) {
  Open();
  Tab(kOptimisation);
  auto* hours = Find<QListWidget>("Instru");
  EXPECT_EQ(hours->item(7)->text(), "07");
  hours->setCurrentRow(7);
  hours->setFocus();
  QTest::keyClick(hours, Qt::Key_Space);
  EXPECT_FALSE(screen.Instru[7]);
  EXPECT_TRUE(screen.Instru[8]);
  Close();
  EXPECT_EQ(StationFile("Instrumental.Txt").substr(0, 8), "#TRUE#\r\n");
}

TEST_F(SettingsWindowTest, TheFilterIsWrittenCellByCell) {
  Open();
  Tab(kCommunication);
  Type("ChFiltre", "06:00", true);
  auto* filter = Find<QTableWidget>("Filtre");
  QTest::mouseClick(filter->viewport(), Qt::LeftButton, Qt::NoModifier,
                    filter->visualItemRect(filter->item(0, 1)).center());
  Type("ChFiltre", "09:00", true);
  EXPECT_EQ(filter->item(0, 0)->text(), "06:00");
  EXPECT_EQ(filter->item(0, 1)->text(), "09:00");
  Type("ChFiltre", "soon", true);
  EXPECT_EQ(Notes(), Texts{"Une heure hh:mm"});
  Close();
  EXPECT_EQ(StationFile("Exclusion.Txt"), "06:00\t09:00\r\n");
}

TEST_F(SettingsWindowTest, PortsAndTheJoystickAnswerAtOnce) {
  on.Set("Langue", "1");
  Open();
  Tab(kCommunication);
  EXPECT_EQ(Text("LblJoystique"), "-");
  Click("PortCom_2");
  EXPECT_TRUE(on.automaton.IsOpen());
  EXPECT_EQ(Text("InfoERR"), "Port open: 4800,N,8,1");
  Choose("ComboJoystiquePort", 1);
  EXPECT_EQ(Text("LblJoystique"), "Yes");
  Choose("ComboJoystiquePort", 0);
  EXPECT_EQ(Text("LblJoystique"), "No");
  Click("PortCom_0");
  EXPECT_FALSE(on.automaton.IsOpen());
  EXPECT_EQ(Text("InfoERR"), "The port is closed");
}

TEST_F(SettingsWindowTest, TheIndexAsksFirst) {
  Open();
  Tab(kOthers);
  on.seen.clear();
  Click("BtnIndex");
  ASSERT_NE(on.First("message"), nullptr);
  EXPECT_EQ((*on.First("message"))["answer"], "cancel");
}

TEST_F(SettingsWindowTest, GenresAreLookedFor) {
  Open();
  Tab(kOthers);
  Click("BtnRech");
  ASSERT_NE(on.First("message"), nullptr);
}

TEST_F(SettingsWindowTest, TheColourDialogueSpeaksTheLanguageAndPaintsTheCountersAtOnce) {
  on.Set("Langue", "3");
  Open();
  Click("PictureColor");
  auto* dialogue = Window().findChild<QColorDialog*>();
  ASSERT_NE(dialogue, nullptr);
  Texts words;
  for (const QAbstractButton* button : dialogue->findChildren<QAbstractButton*>())
    words.push_back(button->text().toStdString());
  EXPECT_NE(std::find(words.begin(), words.end(), "Cancelar"), words.end());
  for (const QLabel* label : dialogue->findChildren<QLabel*>())
    EXPECT_FALSE(label->text().contains("Red")) << label->text().toStdString();
  KeepPicture(*dialogue, "settings-es-colour");
  dialogue->setCurrentColor(QColor(0x11, 0x22, 0x33));
  QTest::keyClick(dialogue, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(screen.PictureColor, 0x332211);
  EXPECT_EQ(station.notices.counterColour, 0x332211U);
}

TEST_F(SettingsWindowTest, FilesComeFromTheSelector) {
  std::string shown;
  sources.chooseFiles = [&shown](QWidget*, const std::string& current,
                                 const std::vector<std::string>&,
                                 const OfficeWindow::TakeFiles& take) {
    shown = current;
    take({"/sounds/after.wav"});
  };
  on.Set("JingleApresPubs", "'/sounds/before.wav'");
  desk = std::make_unique<SettingsDesk>(station, sources);
  Open();
  Tab(kSpots);
  Click("CmdFileApres");
  EXPECT_EQ(shown, "/sounds/before.wav");
  EXPECT_EQ(Text("FileApresPub"), "/sounds/after.wav");
}

TEST_F(SettingsWindowTest, ATestToneNeedsAnOutput) {
  Open();
  Tab(kSound);
  Click("TestAir");
  EXPECT_EQ(Notes(), Texts{"Aucune sortie choisie"});
  Choose("PlayCombo", 1);
  EXPECT_EQ(devices.done, (Texts{"output 0", "output 1"}));
  EXPECT_EQ(Notes(), Texts{});
  Click("TestAir");  // its file is none that this station knows
  EXPECT_EQ(Notes(), Texts{"La sortie ne joue pas"});
}

TEST_F(SettingsWindowTest, AnOutputChosenWhileItIsOpenWaitsForTheNextStart) {
  on.sound.Start();
  Open();
  Tab(kSound);
  Choose("PlayCombo", 1);
  EXPECT_EQ(devices.done, Texts{});
  EXPECT_EQ(Notes(), Texts{"Sera effectif au prochain démarrage de Zemo Radio !"});
}

TEST_F(SettingsWindowTest, ItIsWorkedWithTheKeysAlone) {
  Open();
  Find("Config")->setFocus();
  QTest::keyClick(Find("Config"), Qt::Key_Right);
  EXPECT_TRUE(Find("EnchDef")->isVisible());
  QTest::keyClick(Find("Config"), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), Find("EnchDef"));
}

}  // namespace
}  // namespace zemo::test
