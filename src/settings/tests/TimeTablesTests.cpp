// "StartStop.n" and "Topage.n", the times of a weekday.
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

using TimeTables = SettingsTest;

TEST_F(TimeTables, StartAndStopTimesAreWrittenARecordALine) {
  lists.ComboHeure = {"06:00", "14:30"};
  lists.HeureArretSystem = {"12:00-F", "23:00-Q"};
  LoadSaveStartStop(station, "Save", 0, true);
  EXPECT_EQ(StationFile("StartStop.0"),
            "\"START\",\"06:00\"\r\n\"START\",\"14:30\"\r\n"
            "\"STOP\",\"12:00-F\"\r\n\"STOP\",\"23:00-Q\"\r\n");
}

TEST_F(TimeTables, StartAndStopTimesAreReadInAnyOrder) {
  StationFileIs("StartStop.6",
                "\"STOP\",\"12:00-F\"\r\n\"START\",\"06:00\"\r\n\"STOP\",\"23:00\"\r\n");
  LoadSaveStartStop(station, "LOAD", 6, true);
  EXPECT_EQ(lists.ComboHeure, Texts{"06:00"});
  EXPECT_EQ(lists.HeureArretSystem, (Texts{"12:00-F", "23:00"}));
}

TEST_F(TimeTables, AMarkerAndItsTimeMayStandOnTwoLinesOrWithoutQuotes) {
  StationFileIs("StartStop.1", "\"START\"\n\"06:00\"\nstop, 12:00 \n");
  LoadSaveStartStop(station, "load", 1, true);
  EXPECT_EQ(lists.ComboHeure, Texts{"06:00"});
  EXPECT_EQ(lists.HeureArretSystem, Texts{"12:00"});
}

TEST_F(TimeTables, AMarkerWithoutATimeAndATimeWithoutAMarkerAreNoTimes) {
  StationFileIs(
      "StartStop.1",
      "\"07:00\"\r\n\"START\"\r\n\"STOP\",\"12:00\",\"13:00\"\r\n\"START\",\"\"\r\n\"STOP\"");
  LoadSaveStartStop(station, "Load", 1, true);
  EXPECT_EQ(lists.ComboHeure, Texts{});
  EXPECT_EQ(lists.HeureArretSystem, Texts{"12:00"});
}

TEST_F(TimeTables, WithoutAFileNoTimeOfAnotherDayLingers) {
  lists.ComboHeure = {"06:00"};
  lists.HeureArretSystem = {"12:00"};
  lists.Topage = {"13:00"};
  LoadSaveStartStop(station, "Load", 3, true);
  LoadSaveTopage(station, "Load", 3, true);
  EXPECT_EQ(lists.ComboHeure, Texts{});
  EXPECT_EQ(lists.HeureArretSystem, Texts{});
  EXPECT_EQ(lists.Topage, Texts{});
  EXPECT_TRUE(fake.errors.empty());
}

TEST_F(TimeTables, EachDayHasItsOwnFile) {
  StationFileIs("StartStop.0", "\"START\",\"06:00\"\r\n");
  StationFileIs("StartStop.1", "\"START\",\"07:00\"\r\n");
  LoadSaveStartStop(station, "Load", 1, true);
  EXPECT_EQ(lists.ComboHeure, Texts{"07:00"});
  LoadSaveStartStop(station, "Load", 0, true);
  EXPECT_EQ(lists.ComboHeure, Texts{"06:00"});
}

TEST_F(TimeTables, MarkerTimesStandOneALine) {
  lists.Topage = {"08:00", "08:30"};
  LoadSaveTopage(station, "Save", 4, true);
  EXPECT_EQ(StationFile("Topage.4"), "\"08:00\"\r\n\"08:30\"\r\n");
  lists.Topage.clear();
  LoadSaveTopage(station, "Load", 4, true);
  EXPECT_EQ(lists.Topage, (Texts{"08:00", "08:30"}));
}

TEST_F(TimeTables, MarkerTimesAreReadFromAWindowsOrAUnixFile) {
  StationFileIs("topage.2", "\"08:00\"\n\n\"\"\n 09:00 \n\"10:00");
  LoadSaveTopage(station, "Load", 2, true);
  EXPECT_EQ(lists.Topage, (Texts{"08:00", "09:00", "10:00"}));
}

TEST_F(TimeTables, EmptyListsMakeAnEmptyFile) {
  LoadSaveStartStop(station, "Save", 5, true);
  LoadSaveTopage(station, "Save", 5, true);
  EXPECT_EQ(StationFile("StartStop.5"), "");
  EXPECT_EQ(StationFile("Topage.5"), "");
}

TEST_F(TimeTables, AnyOtherWordDoesNothing) {
  lists.Topage = {"08:00"};
  LoadSaveTopage(station, "Delete", 4, true);
  LoadSaveStartStop(station, "", 4, true);
  EXPECT_EQ(lists.Topage, Texts{"08:00"});
  EXPECT_TRUE(fake.stationFolder.files.empty());
}

TEST_F(TimeTables, AFileThatCannotBeReadIsLoggedAndLeavesTheDaysTimes) {
  lists.ComboHeure = {"06:00"};
  fake.stationFolder.readsFail = true;
  LoadSaveStartStop(station, "Load", 0, true);
  LoadSaveTopage(station, "Load", 0, true);
  EXPECT_EQ(lists.ComboHeure, Texts{"06:00"});
  EXPECT_EQ(fake.errors, (Texts{"LoadSaveStartStop/75/StartStop.0: Input/output error",
                                "LoadSaveTopage/75/Topage.0: Input/output error"}));
}

TEST_F(TimeTables, AFullDiskIsLoggedAndKeepsTheOldFile) {
  StationFileIs("StartStop.0", "\"START\",\"06:00\"\r\n");
  fake.stationFolder.writesFail = true;
  LoadSaveStartStop(station, "Save", 0, true);
  EXPECT_EQ(StationFile("StartStop.0"), "\"START\",\"06:00\"\r\n");
  EXPECT_EQ(fake.errors, Texts{"LoadSaveStartStop/75/StartStop.0: No space left on device"});
}

// 4 MB is more than any day's times; one byte beyond is not read, and told.
TEST_F(TimeTables, AboveFourMegabytesAreNotReadAndTold) {
  StationFileIs("StartStop.0", "\"START\",\"06:00\"\r\n");
  LoadSaveStartStop(station, "Load", 0, true);
  std::string large(4 << 20, '\n');
  StationFileIs("StartStop.0", large);
  LoadSaveStartStop(station, "Load", 0, true);
  EXPECT_EQ(lists.ComboHeure, Texts{});
  EXPECT_EQ(fake.errors, Texts{});
  lists.ComboHeure = {"06:00"};
  StationFileIs("StartStop.0", large + "\n");
  LoadSaveStartStop(station, "Load", 0, true);
  EXPECT_EQ(lists.ComboHeure, Texts{"06:00"});
  EXPECT_EQ(fake.errors,
            Texts{"LoadSaveStartStop/75/StartStop.0 is larger than 4 MB: it is not read"});
}

}  // namespace
}  // namespace zemo
