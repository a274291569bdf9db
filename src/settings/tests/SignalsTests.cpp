// The files through which neighbouring programs are told what happens on air.
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

using Signals = SettingsTest;

TEST_F(Signals, OnOffIsTheFirstByteAndNoOther) {
  WriteZemoOnOff(station, '1');
  EXPECT_EQ(StationFile("ZemoOnOff.Dat"), "1");
  StationFileIs("ZemoOnOff.Dat", "1abc");
  WriteZemoOnOff(station, '0');
  EXPECT_EQ(StationFile("ZemoOnOff.Dat"), "0abc");
}

TEST_F(Signals, OnOffIsNotWrittenByAMachineWithoutReports) {
  station.engine.ReportsDisabled = true;
  WriteZemoOnOff(station, '1');
  EXPECT_EQ(StationFile("ZemoOnOff.Dat"), "(no file)");
}

TEST_F(Signals, TopageIsARecordOfSixteenCharacters) {
  WriteCheckTopage(station);
  EXPECT_EQ(StationFile("CheckTopage.Dat"), "Topage          ");
  StationFileIs("CheckTopage.Dat", "0123456789012345second record...");
  WriteCheckTopage(station);
  EXPECT_EQ(StationFile("CheckTopage.Dat"), "Topage          second record...");
}

TEST_F(Signals, FaultsAreLogged) {
  fake.stationFolder.writesFail = true;
  WriteZemoOnOff(station, '1');
  WriteCheckTopage(station);
  EXPECT_EQ(fake.errors, (Texts{"WriteZemoOnOff/75/ZemoOnOff.Dat: No space left on device",
                                "WriteCheckTopage/75/CheckTopage.Dat: No space left on device"}));
}

}  // namespace
}  // namespace zemo
