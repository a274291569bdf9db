// What the operator does on the settings screen: ranges, couplings, devices, lists and buttons.
#include <algorithm>
#include <set>

#include "platform/LocalValues.h"
#include "settings/tests/SettingsStation.h"
#include "store/SqlText.h"

namespace zemo::test {
namespace {

struct ControlsOfSettings : SettingsStation {
  ControlsOfSettings() { Load(); }
};

TEST_F(ControlsOfSettings, ValuesOutsideTheStoredRangeAreRefusedAndNeverStored) {
  const struct {
    const char* control;
    const char* value;
    const char* why;
  } cases[] = {
      {"EnchDef", "32768", "EnchDef: \"32768\" is outside 0 to 32767 ms"},
      {"EnchDef", "-1", "EnchDef: \"-1\" is outside 0 to 32767 ms"},
      {"MaxPlay", "2147483648", "MaxPlay: \"2147483648\" is outside 0 to 2147483647 ms"},
      {"Langue", "4", "Langue: \"4\" is outside 0 to 3"},
      {"PortCom", "5", "PortCom: \"5\" is outside 0 to 4"},
      {"CheckPub", "2", "CheckPub: \"2\" is outside 0 to 1"},
      {"SpinAvantoph", "101", "SpinAvantoph: \"101\" is outside 0 to 100 per cent"},
      {"SpinOptimise", "60", "SpinOptimise: \"60\" is outside 0 to 59 minute"},
      {"SpinOffset", "60", "SpinOffset: \"60\" is outside 0 to 59 s"},
      {"PictureColor", "16777216", "PictureColor: \"16777216\" is outside 0 to 16777215"},
      {"PlayCombo", "-2", "PlayCombo: \"-2\" is outside -1 to 32767"},
      {"SpinRapportDiff", "1e9", "SpinRapportDiff: \"1e9\" is outside 0 to 32767 rows"},
      {"TexteV", "12345678901234567890123456789012345678901",
       "TexteV: \"1234567890123456789012345678901234567890\" is longer than 40 characters"},
      {"FileAvantPub", "\xFF", "FileAvantPub: that is no text"}};
  for (const auto& one : cases) {
    const std::string before = ControlText(screen, *FindSettingsControl(one.control));
    EXPECT_EQ(Set(one.control, one.value), one.why);
    EXPECT_EQ(ControlText(screen, *FindSettingsControl(one.control)), before);
  }
  SettingsSave(station);
  EXPECT_EQ(Stored("PmixDef"), "1600");
  EXPECT_EQ(Stored("Langue"), "0");
  EXPECT_EQ(on.localValues.Get("XRapport"), std::nullopt);
}

TEST_F(ControlsOfSettings, TheEndsOfARangeAreTaken) {
  for (const SettingsControl& control : zemo::SettingsControls()) {
    if (control.field == Cnf::kBuffers || control.field == Cnf::kNbrBuffers) continue;  // below
    if (control.kind == ControlKind::kText) {
      EXPECT_EQ(Set(control.name, std::string(static_cast<size_t>(control.most), 'x')),
                std::nullopt);
      continue;
    }
    EXPECT_EQ(Set(control.name, std::to_string(control.lowest)), std::nullopt);
    EXPECT_EQ(Set(control.name, std::to_string(control.most)), std::nullopt);
  }
  SettingsSave(station);
  EXPECT_EQ(Stored("CycleMaxi"), "2147483647");
  EXPECT_EQ(Stored("length(TextVeille)"), "40");
  EXPECT_EQ(Errors(), Texts{});
}

// 4096 bytes are 0.02 s of the buffers' offset: 500 of them are 10 s.
TEST_F(ControlsOfSettings, BuffersThatReachTooFarAreRefusedWithTheReason) {
  EXPECT_EQ(Set("NbrBuffers", "500"), std::nullopt);
  EXPECT_EQ(Set("NbrBuffers", "501"),
            "NbrBuffers: 501 buffers of 4096 bytes are 10.02 s: 10 s is the most (500 buffers)");
  EXPECT_EQ(Set("NbrBuffers", "32767"),
            "NbrBuffers: 32767 buffers of 4096 bytes are 655.34 s: 10 s is the most (500 buffers)");
  EXPECT_EQ(screen.NbrBuffers, "500");
  EXPECT_EQ(Set("Buffers", "8192"),
            "Buffers: 500 buffers of 8192 bytes are 20 s: 10 s is the most (250 buffers)");
  EXPECT_EQ(screen.Buffers, "4096");
  EXPECT_EQ(Set("NbrBuffers", "250"), std::nullopt);
  EXPECT_EQ(Set("Buffers", "8192"), std::nullopt);
}

// --- the rows ---

TEST_F(ControlsOfSettings, EveryFieldButThreeHasAControl) {
  std::vector<int> without;
  for (int field = 1; field <= Cnf::kFields; ++field) {
    const auto shows = [&](const SettingsControl& control) { return control.field == field; };
    const auto& controls = zemo::SettingsControls();
    if (std::none_of(controls.begin(), controls.end(), shows)) without.push_back(field);
  }
  EXPECT_EQ(without,
            (std::vector<int>{Cnf::kJingleCode, Cnf::kJingleCodeIntro, Cnf::kMESSAGESECURITE}));
}

TEST_F(ControlsOfSettings, AControlIsFoundByEitherOfItsNamesAndKnowsItsDefault) {
  EXPECT_EQ(FindSettingsControl("pmixdef"), FindSettingsControl("EnchDef"));
  EXPECT_EQ(FindSettingsControl("pmixdef")->byDefault, "1600");
  EXPECT_EQ(FindSettingsControl("XRapport")->byDefault, "20");
  EXPECT_EQ(FindSettingsControl("PlayCombo")->byDefault, "-1");
  EXPECT_EQ(FindSettingsControl("TextVeille")->byDefault, "");
  EXPECT_EQ(FindSettingsControl("nothing"), nullptr);
}

TEST_F(ControlsOfSettings, TwoRowsShareNoNameAndNoPlace) {
  std::set<std::string> names, places;
  for (const SettingsControl& control : zemo::SettingsControls()) {
    EXPECT_TRUE(names.insert(control.name).second) << control.name;
    SettingsScreen marked;
    if (const auto* number = std::get_if<SettingsControl::Number>(&control.place)) {
      marked.** number = 12345;
    } else {
      marked.*std::get<SettingsControl::Typed>(control.place) = "12345";
    }
    for (const SettingsControl& other : zemo::SettingsControls())
      EXPECT_EQ(ControlText(marked, other) == "12345", &other == &control)
          << control.name << " " << other.name;
  }
}

TEST_F(ControlsOfSettings, ShowsSecondsSharesAndMinutesBesideTheNumbers) {
  const auto label = [&](const char* control) {
    return ControlLabel(screen, *FindSettingsControl(control));
  };
  EXPECT_EQ(label("EnchDef"), "1.6");
  EXPECT_EQ(label("EnchPub"), "0.5");
  EXPECT_EQ(label("HsFadeOut"), "1.6");
  Set("EnchToph", "2000");
  EXPECT_EQ(label("EnchToph"), "2");
  EXPECT_EQ(label("Volume"), "50 %");     // 16384 of 32767
  EXPECT_EQ(label("VolumePub"), "55 %");  // 18000 of 32767: 54.93
  EXPECT_EQ(label("SpinOptimise"), "50 mn");
  EXPECT_EQ(label("JingleMn"), "");
}

TEST_F(ControlsOfSettings, AMinuteMayBearItsUnit) {
  EXPECT_EQ(Set("SpinOptimise", "47 mn"), std::nullopt);
  SettingsSave(station);
  EXPECT_EQ(Stored("HOptimise"), "47");
}

// --- couplings ---

TEST_F(ControlsOfSettings, SpotsWithThePipClearInstrumentalsAndMoveALateOptimisation) {
  const struct {
    const char* minute;
    const char* after;
  } cases[] = {{"55", "48"}, {"53", "48"}, {"52", "52"}, {"0", "0"}};
  for (const auto& one : cases) {
    Set("CheckPubToph", "0");
    Set("CheckInstrumental", "1");
    Set("SpinOptimise", one.minute);
    Set("CheckPubToph", "1");
    EXPECT_EQ(screen.SpinOptimise, one.after) << one.minute;
    EXPECT_EQ(screen.CheckInstrumental, 0);
    Set("CheckPubToph", "0");
    EXPECT_EQ(screen.SpinOptimise, one.after) << one.minute;
    EXPECT_EQ(screen.CheckInstrumental, 0);
  }
}

TEST_F(ControlsOfSettings, UntickingSpotsWithThePipMovesNothing) {
  Set("SpinOptimise", "55");
  Set("CheckPubToph", "0");
  EXPECT_EQ(screen.SpinOptimise, "55");
}

TEST_F(ControlsOfSettings, InstrumentalsClearSpotsWithThePip) {
  Set("CheckPubToph", "1");
  Set("CheckInstrumental", "1");
  EXPECT_EQ(screen.CheckPubToph, 0);
  Set("CheckPubToph", "1");
  Set("CheckInstrumental", "0");
  EXPECT_EQ(screen.CheckPubToph, 1);
}

TEST_F(ControlsOfSettings, TheColourPaintsTheCountersAtOnce) {
  EXPECT_EQ(station.notices.counterColour, 33023U);
  Set("PictureColor", "255");
  EXPECT_EQ(station.notices.counterColour, 255U);
  EXPECT_EQ(Stored("CouleurdesCompteur"), "33023");
}

// --- devices ---

TEST_F(ControlsOfSettings, APortOptionOpensThePortWithItsLineParameters) {
  screen.Setting = "9600,E,7,2";
  Set("PortCom", "2");
  EXPECT_TRUE(on.automaton.IsOpen());
  EXPECT_EQ(on.automaton.Setting(), "9600,E,7,2");
  EXPECT_TRUE(station.engine.SerialInputOpen);
  EXPECT_EQ(screen.InfoERR, "Init 9600,E,7,2 Ok");
  screen.Setting = "4800,N,8,1";
  Set("PortCom", "3");  // one is open already
  EXPECT_EQ(on.automaton.Setting(), "9600,E,7,2");
  EXPECT_EQ(screen.InfoERR, "Init 9600,E,7,2 Ok");
  EXPECT_EQ(screen.PortCom, 3);
  Set("PortCom", "0");
  EXPECT_FALSE(on.automaton.IsOpen());
  EXPECT_FALSE(station.engine.SerialInputOpen);
  EXPECT_EQ(screen.InfoERR, "Port COM Close OK !");
}

TEST_F(ControlsOfSettings, AJoystickThatAnswersIsShown) {
  Set("ComboJoystiquePort", "1");
  EXPECT_EQ(on.joystick.Port(), 1);
  EXPECT_EQ(screen.LblJoystique, "Yes");
  EXPECT_EQ(station.engine.joystickLamp, JoystickLamp::kReady);
  Set("ComboJoystiquePort", "0");
  EXPECT_EQ(on.joystick.Port(), 0);
  EXPECT_EQ(screen.LblJoystique, "No");
}

TEST_F(ControlsOfSettings, AJoystickChosenWorksAtOnce) {
  ASSERT_FALSE(station.engine.JoystickInUse);
  Set("ComboJoystiquePort", "2");
  EXPECT_TRUE(station.engine.JoystickInUse);
  on.joystick.Press(1);
  EXPECT_TRUE(station.engine.IsRunning);
  on.joystick.Release(1);
  EXPECT_FALSE(station.engine.IsRunning);
  Set("ComboJoystiquePort", "0");
  EXPECT_FALSE(station.engine.JoystickInUse);
  EXPECT_FALSE(station.engine.JoystickInUse);
}

// What a tick takes off is stored, also where it could not be read.
TEST_F(ControlsOfSettings, ATickThatComesOffIsStoredWhateverStoodThere) {
  on.Set("Instrumental", "1");
  Load();
  screen.fieldHeld.reset(Cnf::kInstrumental);
  Set("CheckPubToph", "1");
  SettingsSave(station);
  EXPECT_EQ(Stored("Instrumental"), "0");
}

TEST_F(ControlsOfSettings, TheLastTimeOfAListIsDeletedToo) {
  for (const char* time : {"06:00", "07:00"})
    ASSERT_EQ(Settings::EnterTime(station, Settings::TimeList::kTopage, time), std::nullopt);
  Settings::DeleteTime(station, Settings::TimeList::kTopage, 1);
  EXPECT_EQ(screen.Topage, Texts{"06:00"});
  Settings::DeleteTime(station, Settings::TimeList::kTopage, 1);
  EXPECT_EQ(screen.Topage, Texts{"06:00"});
}

TEST_F(ControlsOfSettings, OutputsChangeAtOnceOnlyWhileTheyAreClosed) {
  Set("PlayCombo", "1");
  Set("PlayPréecoute", "0");
  EXPECT_EQ(devices.done, (Texts{"output 1", "prelisten 0"}));
  EXPECT_EQ(station.lists.AudioOutID, 1);
  EXPECT_EQ(station.lists.AudioOutPFLID, 0);
  on.sound.Start();
  devices.prelistenClosed = false;
  Set("PlayCombo", "0");
  Set("AudioOutPFLID", "1");
  EXPECT_EQ(devices.done.size(), 2U);
  EXPECT_EQ(station.lists.AudioOutID, 1);
  SettingsSave(station);  // what was chosen is for the next start
  EXPECT_EQ(MachineFile("ZemoAudio.Ini"), "0,1\r\n");
}

TEST_F(ControlsOfSettings, ADeviceThatFailsIsLogged) {
  devices.failing = true;
  Set("PlayCombo", "1");
  EXPECT_EQ(Errors(), Texts{"PlayCombo 5 the device fails for the test"});
  EXPECT_EQ(station.lists.AudioOutID, -1);
}

// --- lists ---

TEST_F(ControlsOfSettings, TimesAreEnteredInCapitalsAndDeleted) {
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kHeureArretSystem, " 23:00-f "),
            std::nullopt);
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kHeureArretSystem, "12:00"),
            std::nullopt);
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kComboHeure, "00:00"), std::nullopt);
  EXPECT_EQ(screen.HeureArretSystem, (Texts{"23:00-F", "12:00"}));
  Settings::DeleteTime(station, Settings::TimeList::kHeureArretSystem, 0);
  Settings::DeleteTime(station, Settings::TimeList::kHeureArretSystem, 5);
  EXPECT_EQ(screen.HeureArretSystem, Texts{"12:00"});
  EXPECT_EQ(screen.ComboHeure, Texts{"00:00"});
}

TEST_F(ControlsOfSettings, StartAndStopTimesMayCarrySecondsAndMarkersMayNot) {
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kComboHeure, "06:00:30"),
            std::nullopt);
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kHeureArretSystem, "23:59:59-q"),
            std::nullopt);
  EXPECT_EQ(screen.ComboHeure, Texts{"06:00:30"});
  EXPECT_EQ(screen.HeureArretSystem, Texts{"23:59:59-Q"});
  EXPECT_NE(Settings::EnterTime(station, Settings::TimeList::kTopage, "06:00:30"), std::nullopt);
}

TEST_F(ControlsOfSettings, WhatIsNoTimeIsRefused) {
  for (const char* typed : {"", "1", "24:00", "12:60", "6:00", "06:00-F", "06:00:60", "\"06:00\""})
    EXPECT_NE(Settings::EnterTime(station, Settings::TimeList::kComboHeure, typed), std::nullopt)
        << typed;
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kHeureArretSystem, "12:00-X"),
            "HeureArretSystem: \"12:00-X\" is no time of day hh:mm");
  EXPECT_EQ(Settings::BtnAjouter_Click(station, "noon"),
            "Topage: \"noon\" is no time of day hh:mm");
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "9"), "ChFiltre: \"9\" is no time of day hh:mm");
  EXPECT_EQ(screen.ComboHeure, Texts{});
  EXPECT_EQ(screen.Topage, Texts{});
}

TEST_F(ControlsOfSettings, EnterInTheMarkerBoxAddsWhileTheListHasRoom) {
  EXPECT_EQ(Settings::ChEdit_KeyEnter(station, "08:00"), std::nullopt);
  EXPECT_EQ(Settings::BtnAjouter_Click(station, "08:30"), std::nullopt);
  EXPECT_EQ(screen.Topage, (Texts{"08:00", "08:30"}));
  screen.Topage.assign(Settings::kMostTopage, "09:00");
  EXPECT_EQ(Settings::ChEdit_KeyEnter(station, "10:00"), std::nullopt);
  EXPECT_EQ(screen.Topage.size(), Settings::kMostTopage);
}

TEST_F(ControlsOfSettings, TheStartTabsButtonWritesTheMarkerTimesOfTheChosenDayAtOnce) {
  Settings::ChooseWeekday(station, 2);
  Settings::BtnAjouter_Click(station, "08:00");
  Settings::BtnSaveTopage_Click(station);
  EXPECT_EQ(StationFile("Topage.2"), "\"08:00\"\r\n");
  EXPECT_EQ(StationFile("StartStop.2"), "(no file)");
}

TEST_F(ControlsOfSettings, TheListIsRebuiltFromEveryHourAndEachBoxThatIsNotEmpty) {
  screen.Topage = {"01:23"};
  screen.ChDecoupe = {"0", "", "30", "5"};
  EXPECT_EQ(Settings::BtnInti_Click(station), std::nullopt);
  ASSERT_EQ(screen.Topage.size(), 72U);
  EXPECT_EQ(Texts(screen.Topage.begin(), screen.Topage.begin() + 4),
            (Texts{"00:00", "00:30", "00:05", "01:00"}));
  EXPECT_EQ(screen.Topage.back(), "23:05");
  screen.ChDecoupe = {"60", "", "", ""};
  EXPECT_EQ(Settings::BtnInti_Click(station), "ChDecoupe: \"60\" is outside 0 to 59 minutes");
  EXPECT_EQ(screen.Topage.size(), 72U);
  screen.ChDecoupe = {};
  EXPECT_EQ(Settings::BtnInti_Click(station), std::nullopt);
  EXPECT_EQ(screen.Topage, Texts{});
}

TEST_F(ControlsOfSettings, AListThatIsRebuiltIsHeldThoughItsFileCouldNotBeRead) {
  screen.topageHeld = false;
  screen.ChDecoupe = {"30", "", "", ""};
  EXPECT_EQ(Settings::BtnInti_Click(station), std::nullopt);
  EXPECT_EQ(Settings::EnterTime(station, Settings::TimeList::kTopage, "12:15"), std::nullopt);
  EXPECT_EQ(screen.Topage.back(), "12:15");
}

TEST_F(ControlsOfSettings, AFilterCellTakesATimeOrNothing) {
  screen.FiltreRow = 79;
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "06:00"), std::nullopt);
  EXPECT_EQ(screen.Filtre[79].first, "06:00");
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, ""), std::nullopt);
  EXPECT_EQ(screen.Filtre[79].first, "");
  screen.FiltreRow = 80;
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "06:00"), std::nullopt);
}

// --- genres ---

TEST_F(ControlsOfSettings, GenresOfTheLibraryJoinTheList) {
  on.MakeFile("Genre.Txt", "POP\r\nINSTRUMENTAL\r\n");
  for (const char* genre : {"pop", "Rock'n'roll", "ROCK'N'ROLL", "Été", "", "POP"})
    on.Sql(std::string("INSERT INTO Discotheque (FILENAME, GENRE) VALUES ('x', '") +
           SqlQuoted(genre) + "')");
  Settings::BtnRech_Click(station);
  EXPECT_EQ(StationFile("Genre.Txt"), "POP\r\nINSTRUMENTAL\r\nROCK'N'ROLL\r\n\xC9T\xC9\r\n");
  const Seen* message = on.First("message");
  ASSERT_NE(message, nullptr);
  EXPECT_EQ((*message)["title"], "Alerte");
  EXPECT_EQ((*message)["text"], "2 Genres ont étés ajoutés a la liste");
  on.seen.clear();
  Settings::BtnRech_Click(station);
  EXPECT_EQ((*on.First("message"))["text"], "0 Genres ont étés ajoutés a la liste");
}

TEST_F(ControlsOfSettings, AGenreIsKnownWhateverItsCaseAndTheBlanksAroundIt) {
  on.MakeFile("Genre.Txt", "pop \r\nINSTRUMENTAL\r\n");
  for (const char* genre : {"POP", " ROCK ", "Rock"})
    on.Sql(std::string("INSERT INTO Discotheque (FILENAME, GENRE) VALUES ('x', '") + genre + "')");
  Settings::BtnRech_Click(station);
  EXPECT_EQ(StationFile("Genre.Txt"), "POP \r\nINSTRUMENTAL\r\nROCK\r\n");
}

TEST_F(ControlsOfSettings, AGenreListThatCannotBeReadIsNotRewritten) {
  on.MakeFile("Genre.Txt", "POP\r\n");
  on.Sql("INSERT INTO Discotheque (FILENAME, GENRE) VALUES ('x', 'ROCK')");
  NextFileFails();
  Settings::BtnRech_Click(station);
  EXPECT_EQ(StationFile("Genre.Txt"), "POP\r\n");
  EXPECT_EQ(Errors(), Texts{"BtnRech 75 operation 1 fails for the test"});
}

// --- what is typed stays what it is ---

TEST_F(ControlsOfSettings, AStatementTypedIntoAFieldIsOnlyText) {
  const std::string typed = "'); DROP TABLE Rapport; --";
  for (const SettingsControl& control : zemo::SettingsControls())
    EXPECT_EQ(Set(control.name, typed), std::nullopt) << control.name;
  SettingsSave(station);
  EXPECT_EQ(Stored("TextVeille"), typed);
  EXPECT_EQ(Stored("JingleAvantPubs"), typed);
  EXPECT_EQ(Stored("PmixDef"), "0");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "0");
  EXPECT_EQ(Errors(), Texts{});
}

}  // namespace
}  // namespace zemo::test
