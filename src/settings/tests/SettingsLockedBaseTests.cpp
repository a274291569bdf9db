// The settings screen is closed while the base does not take them.
#include "settings/tests/SettingsStation.h"
#include "support/BaseFaults.h"

namespace zemo::test {
namespace {

struct FaultsFirst {
  BaseFaults base;  // ahead of the station, whose base it may fail
};

struct LockedSettings : FaultsFirst, SettingsStation {
  void OpenAndSet() {
    Settings::MnuParametrage_Click(station, devices);
    Set("SpinPurge", "7");
    on.seen.clear();
  }
};

constexpr const char* kQuestion =
    "Les paramètres n'ont pas pu être enregistrés.\r\nFermer quand même ?";

TEST_F(LockedSettings, StayOpenWithAllThatWasSetUntilTheyAreStored) {
  OpenAndSet();
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  Settings::Form_Unload(station);
  EXPECT_TRUE(screen.open);
  EXPECT_EQ(screen.SpinPurge, "7");
  ASSERT_EQ(on.Events("message").size(), 1U);
  EXPECT_EQ(on.Events("message")[0]["text"], kQuestion);
  EXPECT_EQ(on.Events("message")[0]["title"], "Alerte");
  base.Disarm();
  Settings::Form_Unload(station);
  EXPECT_FALSE(screen.open);
  EXPECT_EQ(Stored("PurgeRapport"), "7");
  EXPECT_EQ(on.Events("message").size(), 1U);
}

// Its times were saved by the first closing.
TEST_F(LockedSettings, ThatStayOpenDoNotSaveTheTimesAgainOverAnothersChange) {
  OpenAndSet();
  ASSERT_EQ(Settings::EnterTime(station, Settings::TimeList::kComboHeure, "06:00"), std::nullopt);
  ASSERT_EQ(Settings::EnterTime(station, Settings::TimeList::kHeureArretSystem, "23:00"),
            std::nullopt);
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  Settings::Form_Unload(station);
  base.Disarm();
  ASSERT_TRUE(screen.open);
  on.MakeFile("StartStop.5", "\"START\",\"05:00\"\r\n");
  Settings::ChooseWeekday(station, 6);
  EXPECT_EQ(StationFile("StartStop.5"), "\"START\",\"05:00\"\r\n");
}

TEST_F(LockedSettings, CloseWhereTheOperatorWantsThemToAllTheSame) {
  OpenAndSet();
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  on.messages.AnswerNext(Answer::kYes);
  Settings::Form_Unload(station);
  base.Disarm();
  EXPECT_FALSE(screen.open);
  EXPECT_EQ(Stored("PurgeRapport"), "30");
}

}  // namespace
}  // namespace zemo::test
