// The settings screen as it opens and as it closes: every control and its place.
#include <filesystem>

#include "platform/LocalValues.h"
#include "settings/SideFiles.h"
#include "settings/tests/SettingsStation.h"
#include "station/SideFileText.h"
#include "store/SqlText.h"

namespace zemo::test {
namespace {

using SettingsLoadSave = SettingsStation;

struct Pair {
  const char* field;
  const char* control;
  const char* value;  // another one than the default
};

// Every field that has a control.
constexpr Pair kPairs[] = {{"PmixDef", "EnchDef", "1700"},
                           {"PmixPubs", "EnchPub", "510"},
                           {"PmixToph", "EnchToph", "520"},
                           {"PmixJingles", "EnchJingles", "530"},
                           {"CycleMaxi", "MaxPlay", "7200000"},
                           {"Buffers", "Buffers", "2048"},
                           {"PrioritePubs", "CheckPub", "1"},
                           {"Jingles", "JingleMn", "16"},
                           {"JinglesIntro", "JingleMnIntro", "11"},
                           {"VolumeMusique", "Volume", "16000"},
                           {"VolumeMusiqueSous", "VolumeSousImp", "6600"},
                           {"VolumeMusiqueSurImpression", "VolumeSurImp", "16500"},
                           {"VolumePubs", "VolumePub", "18100"},
                           {"FadeOut", "HsFadeOut", "1650"},
                           {"JingleAvantPubs", "FileAvantPub", "D:\\Jin\\l'avant.wav"},
                           {"JingleApresPubs", "FileApresPub", "/jin/\"apres\".mp3"},
                           {"Langue", "Langue", "2"},
                           {"PortCom", "PortCom", "3"},
                           {"EntreSat", "OptionSat", "4"},
                           {"PurgeRapport", "SpinPurge", "31"},
                           {"PrioriteRubriques", "CheckRubrique", "1"},
                           {"CouleurdesCompteur", "PictureColor", "65280"},
                           {"NbrBuffers", "NbrBuffers", "101"},
                           {"JingleCourt", "CheckJingleCourt", "1"},
                           {"GraphiqueMini", "GraphiqueMini", "0"},
                           {"JingleEnFinIntro", "CheckDepartJingle", "0"},
                           {"TempRequette", "SpinRequette", "45"},
                           {"Veille", "SpinVeille", "5"},
                           {"TextVeille", "TexteV", "Radio d'été"},
                           {"MiniFinHeure", "SpinAvantoph", "41"},
                           {"OptimiseToph", "OptionOptimise", "1"},
                           {"HOptimise", "SpinOptimise", "51"},
                           {"TempsMaxiImPulsion", "SpinImpulsion", "2"},
                           {"SuppressionPub", "CheckDelPub", "1"},
                           {"OffsetTopH", "SpinOffset", "57"},
                           {"Squelette", "CheckModel", "1"},
                           {"Instrumental", "CheckInstrumental", "1"},
                           {"EcartArtiste", "SpinEcartArtiste", "26"},
                           {"VolumeRubriques", "VolumeRub", "18200"},
                           {"CheckNational", "CheckNational", "0"},
                           {"JingleExtraitYN", "JingleExtraitYN", "1"},
                           {"JoystiquePort", "ComboJoystiquePort", "1"},
                           {"DecalDiff", "SpinDecalDiff", "2"},
                           {"ExtraitAuto", "CheckExtraitAuto", "1"},
                           {"InExtrait", "SpinInExtrait", "47"},
                           {"OutExtrait", "SpinOutExtrait", "17"}};

bool IsYesNo(const std::string& field) {
  return field == "OptimiseToph" || field == "Squelette";
}

TEST_F(SettingsLoadSave, EachControlShowsItsField) {
  for (const Pair& pair : kPairs)
    on.Set(pair.field, IsYesNo(pair.field) ? "-1" : "'" + SqlQuoted(pair.value) + "'");
  on.Set("PubAvecTopH", "1");
  Load();
  for (const Pair& pair : kPairs) {
    const SettingsControl* control = FindSettingsControl(pair.control);
    ASSERT_NE(control, nullptr) << pair.control;
    EXPECT_STREQ(control->store, pair.field);
    EXPECT_EQ(ControlText(screen, *control), pair.value) << pair.control;
  }
  EXPECT_EQ(screen.CheckPubToph, 1);
  EXPECT_EQ(Errors(), Texts{});
}

TEST_F(SettingsLoadSave, EachControlGoesToItsField) {
  Load();
  for (const Pair& pair : kPairs) ASSERT_EQ(Set(pair.control, pair.value), std::nullopt);
  SettingsSave(station);
  for (const Pair& pair : kPairs)
    EXPECT_EQ(Stored(pair.field), IsYesNo(pair.field) ? "-1" : pair.value) << pair.field;
  EXPECT_EQ(Stored("PubAvecTopH"), "0");
  Set("CheckPubToph", "1");
  SettingsSave(station);
  EXPECT_EQ(Stored("PubAvecTopH"), "1");
  EXPECT_EQ(Errors(), Texts{});
}

TEST_F(SettingsLoadSave, AScreenThatIsOnlyOpenedAndClosedChangesNoField) {
  const std::string all =
      "SELECT quote(PmixDef) || quote(CycleMaxi) || quote(JingleAvantPubs) || "
      "quote(Squelette) || quote(CheckNational) || quote(OutExtrait) || "
      "quote(GraphiqueMini) || quote(CouleurdesCompteur) FROM Cnf";
  on.Set("HOptimise", "75");  // what no control takes, but the field does
  on.Set("Langue", "9");
  const std::string before = on.SqlText(all);
  Load();
  SettingsSave(station);
  EXPECT_EQ(on.SqlText(all), before);
  EXPECT_EQ(Stored("HOptimise"), "75");
  EXPECT_EQ(Stored("Langue"), "9");
}

TEST_F(SettingsLoadSave, TheJingleNumbersAndTheStoredTextAreNotTouched) {
  Load();
  on.Set("JingleCode", "12");
  on.Set("JingleCodeIntro", "13");
  on.Set("MESSAGESECURITE", "'x'");
  SettingsSave(station);
  EXPECT_EQ(Stored("JingleCode"), "12");
  EXPECT_EQ(Stored("JingleCodeIntro"), "13");
  EXPECT_EQ(Stored("MESSAGESECURITE"), "x");
}

TEST_F(SettingsLoadSave, BlankFileNamesAndTextsAreLeftOut) {
  on.Set("JingleAvantPubs", "'   '");
  on.Set("JingleApresPubs", "' a.wav'");
  on.Set("TextVeille", "NULL");
  Load();
  EXPECT_EQ(screen.FileAvantPub, "");
  EXPECT_EQ(screen.FileApresPub, " a.wav");
  EXPECT_EQ(screen.TexteV, "");
}

TEST_F(SettingsLoadSave, WhatIsNoNumberIsStoredAsZero) {
  Load();
  EXPECT_EQ(Set("JingleMn", "often"), std::nullopt);
  EXPECT_EQ(Set("SpinVeille", ""), std::nullopt);
  EXPECT_EQ(Set("Buffers", " 512 bytes"), std::nullopt);
  SettingsSave(station);
  EXPECT_EQ(Stored("Jingles"), "0");
  EXPECT_EQ(Stored("Veille"), "0");
  EXPECT_EQ(Stored("Buffers"), "512");
}

TEST_F(SettingsLoadSave, TheLongestImpulseIsAlsoKeptInMemoryAtOnce) {
  on.Set("TempsMaxiImPulsion", "7");
  Load();
  Set("SpinImpulsion", "3");
  SettingsSave(station);
  EXPECT_EQ(station.engine.TempsMaxiImPulsion, 3);
  Set("SpinImpulsion", "");
  SettingsSave(station);
  EXPECT_EQ(station.engine.TempsMaxiImPulsion, 0);
  EXPECT_EQ(Stored("TempsMaxiImPulsion"), "0");
}

TEST_F(SettingsLoadSave, PortOptionZeroIsStored) {
  on.Set("PortCom", "2");
  Load();
  EXPECT_FALSE(on.automaton.IsOpen());  // the load opens nothing
  Set("PortCom", "0");
  SettingsSave(station);
  EXPECT_EQ(Stored("PortCom"), "0");
  EXPECT_FALSE(station.engine.SerialInputOpen);
}

TEST_F(SettingsLoadSave, TheLastStationThatClosesItsScreenWins) {
  Load();
  on.Set("PurgeRapport", "60");  // another station closes first
  Set("SpinPurge", "7");
  SettingsSave(station);
  EXPECT_EQ(Stored("PurgeRapport"), "7");
  on.Set("PurgeRapport", "90");
  station.base.CheckCnf();
  EXPECT_EQ(station.base.CnfInt(Cnf::kPurgeRapport), 90);  // read as last stored
}

// A station that was not loaded yet: nothing of its settings row is known.
struct UnreadSettings : testing::Test {
  UnreadSettings() { SetSideFileNames(station); }
  // A base in which the settings row has one field: each of the others is told when its turn comes.
  void MakeOneField(const std::string& name) {
    station.base.OpenOrCreateDatabase();
    on.Sql("CREATE TABLE Cnf (" + name + " INTEGER)");
    on.Sql("INSERT INTO Cnf VALUES (1700)");
  }
  Texts Errors() const {
    Texts errors;
    for (const Seen& error : on.Events("error"))
      errors.push_back(error["where"] + " " + error["text"]);
    return errors;
  }
  TestStation on;
  FakeDevices devices;
  Station& station = on.station;
};

// Before the tables are opened nothing stands in for the fields that are not there.
TEST_F(UnreadSettings, AreReadInTheirOrder) {
  MakeOneField("PmixDef");
  SettingsLoad(station, devices);
  Texts expected;
  for (const int field :
       {2,  3,  4,  14, 8,  9,  10, 11, 12, 13, 7,  6,  5,  17, 18, 23, 24, 19, 20, 21, 26, 27, 28,
        29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 25})
    expected.push_back("SettingsLoad Cnf has no field number " + std::to_string(field));
  EXPECT_EQ(Errors(), expected);  // 19 where the names of the days ask for the language
  EXPECT_EQ(station.settings.EnchDef, 1700);
}

TEST_F(UnreadSettings, AreTheDefaultsWhereTheBaseLacksThem) {
  MakeOneField("PmixDef");
  EXPECT_THROW(station.base.OpenAllTables(), StoreError);  // the other twelve
  SettingsLoad(station, devices);
  EXPECT_EQ(Errors(), Texts{});
  EXPECT_EQ(station.settings.EnchDef, 1700);
  EXPECT_EQ(station.settings.NbrBuffers, "100");
}

TEST_F(UnreadSettings, AreWrittenInTheirOrder) {
  MakeOneField("Other");
  EXPECT_THROW(station.base.OpenAllTables(), StoreError);  // the other twelve
  station.settings.fieldHeld.set();
  SettingsSave(station);
  Texts expected;
  for (const char* field : {"PmixDef",
                            "PmixPubs",
                            "PmixToph",
                            "PmixJingles",
                            "Jingles",
                            "JinglesIntro",
                            "VolumeMusique",
                            "VolumeMusiqueSous",
                            "VolumeMusiqueSurImpression",
                            "VolumePubs",
                            "VolumeRubriques",
                            "FadeOut",
                            "PrioritePubs",
                            "Buffers",
                            "CycleMaxi",
                            "JingleAvantPubs",
                            "JingleApresPubs",
                            "PurgeRapport",
                            "PrioriteRubriques",
                            "PortCom",
                            "EntreSat",
                            "NbrBuffers",
                            "JingleCourt",
                            "GraphiqueMini",
                            "JingleEnFinIntro",
                            "TempRequette",
                            "Veille",
                            "TextVeille",
                            "MiniFinHeure",
                            "OptimiseToph",
                            "HOptimise",
                            "TempsMaxiImPulsion",
                            "SuppressionPub",
                            "OffsetTopH",
                            "Squelette",
                            "Langue",
                            "Instrumental",
                            "EcartArtiste",
                            "PubAvecTopH",
                            "CouleurdesCompteur",
                            "CheckNational",
                            "JingleExtraitYN",
                            "JoystiquePort",
                            "DecalDiff",
                            "ExtraitAuto",
                            "InExtrait",
                            "OutExtrait"})
    expected.push_back(std::string("SettingsSave no field Cnf.") + field);
  EXPECT_EQ(Errors(), expected);
  EXPECT_EQ(on.SqlText("SELECT Other FROM Cnf"), "1700");
}

TEST_F(UnreadSettings, LeaveTheFilesThatHangOnThemAsTheyAre) {
  on.stationFolder.Write("Langue.Txt", "2\r\n");
  on.machineFolder.Write("ZemoAudio.Ini", "3,4\r\n");
  SettingsSave(station);
  EXPECT_EQ(on.stationFolder.Read("Langue.Txt"), "2\r\n");
  EXPECT_EQ(on.machineFolder.Read("ZemoAudio.Ini"), "3,4\r\n");
}

TEST_F(UnreadSettings, AreNotWrittenUntilTheyAreGivenAValue) {
  SettingsLoad(station, devices);
  EXPECT_EQ(station.settings.EnchDef, 0);
  EXPECT_EQ(Errors().size(), 1U);  // one line for the base, not one a field
  station.base.OpenOrCreateDatabase();
  station.base.CreateMissingTables({});
  station.base.OpenAllTables();
  station.base.SeedFixedRows();
  SetControl(station, devices, *FindSettingsControl("EnchPub"), "600");
  SettingsSave(station);
  EXPECT_EQ(on.SqlText("SELECT PmixDef FROM Cnf"), "1600");
  EXPECT_EQ(on.SqlText("SELECT PmixPubs FROM Cnf"), "600");
  EXPECT_EQ(Errors().size(), 1U);
}

TEST_F(SettingsLoadSave, WritesTheFilesOfTheChosenDayAndOfTheMachine) {
  Load();
  EXPECT_EQ(screen.JourSemaine, 5);  // Saturday
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kComboHeure, "06:00"), std::nullopt);
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kHeureArretSystem, "23:00-q"),
            std::nullopt);
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kTopage, "12:30"), std::nullopt);
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "06:00"), std::nullopt);
  screen.FiltreColumn = 1;
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "09:00"), std::nullopt);
  screen.Instru.fill(false);
  screen.Instru[1] = true;
  Set("Langue", "1");
  Set("PlayCombo", "1");
  Set("PlayPréecoute", "0");
  Set("CheckAutoPlay", "1");
  Set("RapportSquelette", "1");
  SettingsSave(station);
  EXPECT_EQ(StationFile("StartStop.5"), "\"START\",\"06:00\"\r\n\"STOP\",\"23:00-Q\"\r\n");
  EXPECT_EQ(StationFile("Topage.5"), "\"12:30\"\r\n");
  EXPECT_EQ(StationFile("Langue.Txt"), "1\r\n");
  EXPECT_EQ(StationFile("Exclusion.Txt"), "06:00\t09:00\r\n");
  std::string hours = "#FALSE#\r\n#TRUE#\r\n";
  for (int hour = 2; hour < 24; ++hour) hours += "#FALSE#\r\n";
  EXPECT_EQ(StationFile("Instrumental.Txt"), hours);
  EXPECT_EQ(MachineFile("ZemoAudio.Ini"), "1,0\r\n");
  const LocalValues& local = on.localValues;
  EXPECT_EQ(local.Get("AudioOutID"), "1");
  EXPECT_EQ(local.Get("AudioOutPFLID"), "0");
  EXPECT_EQ(local.Get("AudioOutName"), "pci.2");
  EXPECT_EQ(local.Get("AudioOutPFLName"), "usb.1");
  EXPECT_EQ(local.Get("AutoPlay"), "1");
  EXPECT_EQ(local.Get("RapportSquelette"), "1");
  EXPECT_EQ(local.Get("CheckDoublonYN"), "0");
  EXPECT_EQ(Errors(), Texts{});
}

TEST_F(SettingsLoadSave, AChosenDeviceIsKnownAgainWhenAnotherIsPluggedIn) {
  Load();
  Set("PlayCombo", "1");
  SettingsSave(station);
  devices.names = {"Bluetooth", "Studio", "Headphones"};
  devices.keys = {"blue.3", "usb.1", "pci.2"};
  Load();
  EXPECT_EQ(screen.PlayCombo, 2);
  EXPECT_EQ(screen.PlayPreecoute, -1);
  SettingsSave(station);
  EXPECT_EQ(MachineFile("ZemoAudio.Ini"), "2,-1\r\n");
  EXPECT_EQ(on.localValues.Get("AudioOutName"), "pci.2");
}

TEST_F(SettingsLoadSave, TheFirstDeviceIsKnownAgainAsTheOthersAre) {
  Load();
  Set("PlayCombo", "0");
  SettingsSave(station);
  devices.names.insert(devices.names.begin(), "New");
  devices.keys.insert(devices.keys.begin(), "usb.9");
  Load();
  EXPECT_EQ(screen.PlayCombo, 1);
}

TEST_F(SettingsLoadSave, AnOutputChosenIsStoredWhereTheFormerOneCouldNotBeRead) {
  on.machineFolder.Write("ZemoAudio.Ini", "0,0\r\n");
  on.machineFolder.unreadable = "ZemoAudio.Ini";
  Load();
  on.machineFolder.unreadable.clear();
  Set("PlayCombo", "1");
  SettingsSave(station);
  EXPECT_EQ(MachineFile("ZemoAudio.Ini").substr(0, 2), "1,");
}

TEST_F(SettingsLoadSave, WhatIsStoredCountsForTheStationAtOnce) {
  Load();
  Set("SpinPurge", "7");
  SettingsSave(station);
  EXPECT_EQ(station.base.CnfInt(Cnf::kPurgeRapport), 7);
}

TEST_F(SettingsLoadSave, AChosenDeviceThatIsNotThereStaysChosen) {
  Load();
  Set("PlayCombo", "1");
  SettingsSave(station);
  devices.names = {"Studio"};
  devices.keys = {"usb.1"};
  Load();
  EXPECT_EQ(screen.PlayNames, (Texts{"Studio", "pci.2"}));
  EXPECT_EQ(screen.PlayCombo, 1);
  SettingsSave(station);
  EXPECT_EQ(on.localValues.Get("AudioOutName"), "pci.2");
}

TEST_F(SettingsLoadSave, ANumberThatAnotherProgramWroteCounts) {
  Load();
  Set("PlayCombo", "1");
  SettingsSave(station);
  on.machineFolder.Write("ZemoAudio.Ini", "0,-1\r\n");
  Load();
  EXPECT_EQ(screen.PlayCombo, 0);
  SettingsSave(station);
  EXPECT_EQ(on.localValues.Get("AudioOutName"), "usb.1");
}

TEST_F(SettingsLoadSave, WhereNobodyKnowsTheDevicesTheChoiceIsOnlyItsNumber) {
  Load();
  Set("PlayCombo", "1");
  SettingsSave(station);
  devices.names = devices.keys = {};
  Load();
  EXPECT_EQ(screen.PlayCombo, 1);
  SettingsSave(station);
  EXPECT_EQ(on.localValues.Get("AudioOutName"), "pci.2");
  Set("PlayCombo", "0");
  SettingsSave(station);
  EXPECT_EQ(on.localValues.Get("AudioOutID"), "0");
  EXPECT_EQ(on.localValues.Get("AudioOutName"), "");
}

TEST_F(SettingsLoadSave, AnotherDaysTimesDoNotReachTheAirBeforeTheHour) {
  on.MakeFile("StartStop.0", "\"START\",\"05:00\"\r\n");
  Load();
  Settings::ChooseWeekday(station, 0);
  EXPECT_EQ(screen.ComboHeure, Texts{"05:00"});
  EXPECT_EQ(station.lists.ComboHeure, Texts{});
  Settings::ChooseWeekday(station, 1);
  EXPECT_EQ(screen.ComboHeure, Texts{});
}

TEST_F(SettingsLoadSave, AllHoursAreInstrumentalAndTheFilterIsEmptyWithoutTheirFiles) {
  Load();
  for (const bool selected : screen.Instru) EXPECT_TRUE(selected);
  EXPECT_EQ(screen.Filtre[0].first, "");
  on.MakeFile("Exclusion.Txt", "06:00\t09:00\r\n18:00\t20:30\r\n");
  Load();
  EXPECT_EQ(screen.Filtre[1], (std::pair<std::string, std::string>{"18:00", "20:30"}));
}

TEST_F(SettingsLoadSave, TheDaysAreNamedInTheLanguageAndTheEnglishThursdayIsATuesday) {
  const struct {
    const char* langue;
    Texts names;
  } cases[] = {{"0", {"Lundi", "Mardi", "Mercredi", "Jeudi", "Vendredi", "Samedi", "Dimanche"}},
               {"1", {"Monday", "Tuesday", "Wednesday", "Tuesday", "Friday", "Saturday", "Sunday"}},
               {"2", {"Segunda", "Terça", "Quarta", "Quinta", "Sexta", "Sábado", "Domingo"}},
               {"3", {"Lunes", "Martes", "Miércoles", "Jueves", "Viernes", "Sábado", "Domingo"}},
               {"9", {"Lundi", "Mardi", "Mercredi", "Jeudi", "Vendredi", "Samedi", "Dimanche"}}};
  for (const auto& one : cases) {
    on.Set("Langue", one.langue);
    Load();
    EXPECT_EQ(screen.JourSemaineNames, one.names) << one.langue;
  }
  EXPECT_EQ(screen.LangueNames, (Texts{"Français", "English", "Português", "Español"}));
}

TEST_F(SettingsLoadSave, LocalSwitchesHaveTheirDefaults) {
  Load();
  EXPECT_EQ(screen.CheckAutoPlay, 0);
  EXPECT_EQ(screen.RapportSquelette, 0);
  EXPECT_EQ(screen.CheckDoublonYN, 0);
  EXPECT_EQ(screen.SpinRapportDiff, "20");
  EXPECT_EQ(screen.PlayCombo, -1);
  EXPECT_EQ(screen.PlayNames, (Texts{"Studio", "Headphones"}));
  ASSERT_EQ(screen.JoystickPorts.size(), 17U);
  EXPECT_EQ(screen.JoystickPorts.front(), "0");
  EXPECT_EQ(screen.JoystickPorts.back(), "16");
  EXPECT_EQ(screen.Setting, "4800,N,8,1");
}

TEST_F(SettingsLoadSave, TheNumberOfReportRowsIsStoredWithoutWaitingForTheScreenToClose) {
  Load();
  Set("SpinRapportDiff", "35");
  EXPECT_EQ(on.localValues.Get("XRapport"), "35");
}

// A folder in a file's place can be neither read nor replaced.
TEST_F(SettingsLoadSave, FilesThatCannotBeReadAreLoggedOnceAndLeftAlone) {
  namespace fs = std::filesystem;
  const std::string folder = on.stationDir.Path() + "/";
  for (const char* name : {"StartStop.5", "Topage.5", "Instrumental.Txt", "Exclusion.Txt"})
    fs::create_directory(folder + name);
  fs::create_directory(on.machineDir.Path() + "/ZemoAudio.Ini");
  Load();
  EXPECT_EQ(Errors().size(), 5U);
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kComboHeure, "06:00"),
            "ComboHeure: its file cannot be read");
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "06:00"), "Filtre: its file cannot be read");
  on.seen.clear();
  SettingsSave(station);
  EXPECT_EQ(Errors(), Texts{});
  for (const char* name : {"StartStop.5", "Topage.5", "Instrumental.Txt", "Exclusion.Txt"})
    EXPECT_TRUE(fs::is_directory(folder + name)) << name;
  EXPECT_EQ(StationFile("Langue.Txt"), "0\r\n");  // the rest is written
}

// Each pass stores other values, so that none is there already from the one before.
TEST_F(SettingsLoadSave, OneFailedStepStopsNoOther) {
  Load();
  auto& fault = on.stationFolder.fault;
  int failed = 0;
  for (int nth = 1; nth <= 12; ++nth) {
    const std::string exitPoint = std::to_string(1700 + nth), autoPlay = std::to_string(nth % 2);
    Set("EnchDef", exitPoint);
    Set("CheckAutoPlay", autoPlay);
    on.seen.clear();
    on.station.engine.loggedFaults.clear();
    fault.count = 0;
    fault.number = nth;
    SettingsSave(station);
    fault.number = 0;
    EXPECT_EQ(Errors().size(), fault.count >= nth ? 1U : 0U) << nth;
    failed += fault.count >= nth;
    EXPECT_EQ(Stored("PmixDef"), exitPoint) << nth;
    EXPECT_EQ(on.localValues.Get("AutoPlay"), autoPlay) << nth;
  }
  EXPECT_GT(failed, 1);
}

}  // namespace
}  // namespace zemo::test
