// What is found again after a power cut, and what no element waits for a disk for.
#include "platform/LocalValues.h"
#include "settings/GenreList.h"
#include "settings/LineLists.h"
#include "settings/NowPlaying.h"
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

struct PowerCut : SettingsTest {
  // Files written by `action`, and how many of them durably.
  template <typename Action>
  void ExpectWrites(int files, int durable, Action action) {
    const int before = Writes(), durableBefore = DurableWrites();
    action();
    EXPECT_EQ(Writes() - before, files);
    EXPECT_EQ(DurableWrites() - durableBefore, durable);
    EXPECT_TRUE(fake.errors.empty());
  }
  int Writes() const { return fake.stationFolder.writes + fake.machineFolder.writes; }
  int DurableWrites() const {
    return fake.stationFolder.durableWrites + fake.machineFolder.durableWrites;
  }
};

TEST_F(PowerCut, WhatTheMachineRemembersIsDurable) {
  ExpectWrites(1, 1, [&] { LoadSavePlay(station, "Save"); });
  ExpectWrites(1, 1, [&] { LoadSaveAudio(station, "Save"); });
  ExpectWrites(1, 1, [&] { LocalValues(fake.machineFolder).Set("XRapport", "20"); });
  std::string password = "secret";
  ExpectWrites(1, 1, [&] { LoadSavePassword(station, "Save", password); });
}

TEST_F(PowerCut, TheListsOfTheStationAreDurable) {
  Texts list = {"ONE"};
  ExpectWrites(1, 1, [&] { LoadSaveGenres(station, "Save", list); });
  ExpectWrites(1, 1, [&] { LoadSaveCategories(station, "Save", list); });
  ExpectWrites(1, 1, [&] { LoadSaveLabels(station, "Save", list); });
  ExpectWrites(1, 1, [&] { LoadSaveCD(station, "Save", list); });
  ExpectWrites(1, 1, [&] { LoadSaveExclusion(station, "Save"); });
  ExpectWrites(1, 1, [&] { LoadSaveInstrumental(station, "Save"); });
  ExpectWrites(1, 1, [&] { LoadSaveStartStop(station, "Save", 0, true); });
  ExpectWrites(1, 1, [&] { LoadSaveTopage(station, "Save", 0, true); });
}

TEST_F(PowerCut, WhatIsWrittenElementAfterElementWaitsForNoDisk) {
  ExpectWrites(2, 0, [&] { SaveAssociatedData(station, "comment"); });
  ExpectWrites(1, 0, [&] { WriteZemoOnOff(station, '1'); });
  ExpectWrites(1, 0, [&] { LogError(station, "here", 5, "text"), fake.errors.clear(); });
}

}  // namespace
}  // namespace zemo
