// The settings screen from its opening to its closing: what of it the air sees, and when. The clock
// stands on a Saturday, day 5.
#include "settings/SideFiles.h"
#include "settings/tests/SettingsStation.h"

namespace zemo::test {
namespace {

struct SettingsFrame : SettingsStation {
  void Open() { Settings::MnuParametrage_Click(station, devices); }
  void Close() { Settings::Form_Unload(station); }
  void Enter(Settings::TimeList list, const char* time) {
    EXPECT_EQ(Settings::EnterTime(station, list, time), std::nullopt);
  }
};
using Settings::TimeList;

TEST_F(SettingsFrame, ABarredEntryOpensNothing) {
  station.engine.ScreenLocked = true;
  Open();
  EXPECT_FALSE(screen.open);
  station.engine.ScreenLocked = false;
  Open();
  EXPECT_TRUE(screen.open);
}

TEST_F(SettingsFrame, OpenedTwiceItKeepsWhatIsOnItAndClosedTwiceItSavesOnce) {
  Open();
  Set("SpinPurge", "7");
  Open();
  EXPECT_EQ(screen.SpinPurge, "7");
  Close();
  EXPECT_FALSE(screen.open);
  EXPECT_EQ(Stored("PurgeRapport"), "7");
  on.Set("PurgeRapport", "9");
  Close();
  EXPECT_EQ(Stored("PurgeRapport"), "9");
}

TEST_F(SettingsFrame, TodaysTimesReachTheAirWhenTheyAreSavedAndNotBefore) {
  Open();
  Enter(TimeList::kComboHeure, "13:00");
  Enter(TimeList::kTopage, "12:30");
  EXPECT_EQ(station.lists.ComboHeure, Texts{});
  Settings::BtnSaveTopage_Click(station);
  EXPECT_EQ(station.lists.Topage, Texts{"12:30"});
  EXPECT_EQ(station.lists.ComboHeure, Texts{});
  Close();
  EXPECT_EQ(station.lists.ComboHeure, Texts{"13:00"});
}

TEST_F(SettingsFrame, TimesThatCouldNotBeReadAreReadOnceTheyCan) {
  on.MakeFile("StartStop.5", "\"START\",\"05:00\"\r\n");
  on.stationFolder.unreadable = "StartStop.5";
  ReloadDayTimes(station, 5);
  EXPECT_EQ(station.lists.ComboHeure, Texts{});
  on.stationFolder.unreadable.clear();
  ReloadDayTimes(station, 5);
  EXPECT_EQ(station.lists.ComboHeure, Texts{"05:00"});
}

TEST_F(SettingsFrame, AnotherDaysTimesNeverReachTheAir) {
  Open();
  Settings::ChooseWeekday(station, 1);
  Enter(TimeList::kTopage, "12:30");
  Enter(TimeList::kHeureArretSystem, "23:00");
  Settings::BtnSaveTopage_Click(station);
  Close();
  EXPECT_EQ(StationFile("Topage.1"), "\"12:30\"\r\n");
  EXPECT_EQ(station.lists.Topage, Texts{});
  EXPECT_EQ(station.lists.HeureArretSystem, Texts{});
}

TEST_F(SettingsFrame, AnotherDayChosenSavesTheOneLeftWhereItWasChanged) {
  on.MakeFile("StartStop.6", "\"START\",\"05:00\"\r\n");
  Open();
  Enter(TimeList::kComboHeure, "06:00");
  Settings::ChooseWeekday(station, 6);
  EXPECT_EQ(StationFile("StartStop.5"), "\"START\",\"06:00\"\r\n");
  EXPECT_EQ(StationFile("Topage.5"), "(no file)");
  EXPECT_EQ(station.lists.ComboHeure, Texts{"06:00"});  // today's
  EXPECT_EQ(screen.ComboHeure, Texts{"05:00"});
  on.MakeFile("StartStop.6", "\"START\",\"04:00\"\r\n");  // by another hand
  Settings::ChooseWeekday(station, 5);
  EXPECT_EQ(StationFile("StartStop.6"), "\"START\",\"04:00\"\r\n");
  EXPECT_EQ(screen.ComboHeure, Texts{"06:00"});
}

TEST_F(SettingsFrame, MarkersThatWereSavedAreNotSavedAgainOverAnothersChange) {
  Open();
  Enter(TimeList::kTopage, "12:30");
  Settings::BtnSaveTopage_Click(station);
  on.MakeFile("Topage.5", "\"13:30\"\r\n");  // by another hand
  Settings::ChooseWeekday(station, 6);
  EXPECT_EQ(StationFile("Topage.5"), "\"13:30\"\r\n");
}

// A file that could not be read holds what nobody has seen.
TEST_F(SettingsFrame, MarkersThatCouldNotBeReadAreNotWrittenAndHoursThatWereTickedAre) {
  on.MakeFile("Topage.5", "\"11:30\"\r\n");
  on.MakeFile("Instrumental.Txt", "#FALSE#\r\n");
  on.stationFolder.unreadable = "Topage.5";
  Open();
  on.stationFolder.unreadable.clear();
  Settings::BtnSaveTopage_Click(station);
  EXPECT_EQ(StationFile("Topage.5"), "\"11:30\"\r\n");
  Close();
  on.stationFolder.unreadable = "Instrumental.Txt";
  Open();
  on.stationFolder.unreadable.clear();
  EXPECT_FALSE(screen.instruHeld);
  Settings::TickHours(station, {7});
  Close();
  EXPECT_TRUE(station.lists.Instru[7]);
  EXPECT_NE(StationFile("Instrumental.Txt"), "#FALSE#\r\n");
}

TEST_F(SettingsFrame, AnEditedFilterCountsFromTheClosingOn) {
  Open();
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "06:00"), std::nullopt);
  screen.FiltreColumn = 1;
  EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, "09:00"), std::nullopt);
  EXPECT_TRUE(station.lists.Exclusion.empty());
  EXPECT_EQ(StationFile("Exclusion.Txt"), "(no file)");
  Close();
  EXPECT_EQ(station.lists.Exclusion,
            (std::vector<std::pair<std::string, std::string>>{{"06:00", "09:00"}}));
  EXPECT_EQ(StationFile("Exclusion.Txt"), "06:00\t09:00\r\n");
}

TEST_F(SettingsFrame, TheRowsOfTheFilterStayWhereTheyAreAsTheyWereTyped) {
  Open();
  const auto type = [&](int row, int column, const char* time) {
    screen.FiltreRow = row;
    screen.FiltreColumn = column;
    EXPECT_EQ(Settings::ChFiltre_KeyEnter(station, time), std::nullopt);
  };
  type(0, 1, "09:00");
  type(2, 0, "10:00");
  type(2, 1, "11:00");
  Close();
  EXPECT_EQ(StationFile("Exclusion.Txt"), "\t09:00\r\n\t\r\n10:00\t11:00\r\n");
  Open();
  EXPECT_EQ(screen.Filtre[0], (std::pair<std::string, std::string>("", "09:00")));
  EXPECT_EQ(screen.Filtre[2], (std::pair<std::string, std::string>("10:00", "11:00")));
  type(2, 0, "");
  type(2, 1, "");
  Close();
  EXPECT_EQ(StationFile("Exclusion.Txt"), "\t09:00\r\n");
}

TEST_F(SettingsFrame, PortOptionZeroOpensNoPortAtTheNextStart) {
  on.Set("PortCom", "2");
  Open();
  Set("PortCom", "0");
  Close();
  EXPECT_EQ(Stored("PortCom"), "0");
  TestStation next("2026-11-21 12:30:00", on.stationDir.Path());
  next.Load();
  EXPECT_FALSE(next.automaton.IsOpen());
  EXPECT_FALSE(next.station.engine.SerialInputOpen);
  on.Set("PortCom", "2");
  TestStation other("2026-11-21 12:40:00", on.stationDir.Path());
  other.Load();
  EXPECT_TRUE(other.automaton.IsOpen());
}

TEST_F(SettingsFrame, TheEntriesOfHoursReadAsTheFileOrItsAbsenceHasThem) {
  Open();
  EXPECT_EQ(Settings::InstruEntry(screen, 7), "07");
  Close();
  Open();
  EXPECT_EQ(Settings::InstruEntry(screen, 7), "07h00");
}

}  // namespace
}  // namespace zemo::test
