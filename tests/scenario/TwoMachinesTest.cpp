// Two machines on one base: one on air, one at a desk where campaigns, models and settings are
// made. What the desk stores reaches the air without a restart, each at its moment. Saturday,
// 12:00; titles of 3 minutes, the first one begins with the tick at 100 ms.
#include <gtest/gtest.h>

#include "platform/sim/SimDevices.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelGrids.h"
#include "settings/SettingsControls.h"
#include "settings/SettingsScreen.h"
#include "support/SomebodyElse.h"
#include "support/TestStation.h"
#include "traffic/CampaignEditor.h"
#include "traffic/CampaignGrid.h"
#include "traffic/DayGridComposition.h"

namespace zemo::test {
namespace {

constexpr const char* kSaturdayNoon = "2026-11-21 12:00:00";
constexpr int kSaturdayNumber = 6;
constexpr int64_t kTitleMs = 180000;

class TwoMachines : public testing::Test {
 protected:
  TwoMachines() : air(kSaturdayNoon), desk(kSaturdayNoon, air.stationDir.Path()) {
    air.Load();
    for (const char* field : {"Jingles", "JinglesIntro"}) air.Set(field, "0");
    airHasTheBase.there = true;
    desk.station.platform.baseUse = &airHasTheBase;
    desk.localValues.Set("PCProduction", "True");
    desk.Load();
  }
  // At that time of both, while the air runs.
  void AtTheDesk(int64_t atMs, std::function<void()> work) {
    air.At(atMs, [this, atMs, work = std::move(work)] {
      desk.RunUntil(atMs);
      work();
    });
  }
  void Titles(int count, const std::string& genre) {
    for (int i = 0; i < count; ++i)
      air.AddCard({.lengthMs = kTitleMs, .artist = genre + std::to_string(i), .genre = genre});
    air.Sql("UPDATE Discotheque SET NBPASSJOUR = 100, ECARTMINUTES = 0");
  }
  bool SignalWaits() { return air.stationFolder.Exists("MajGrillePub.txt"); }

  SomebodyElse airHasTheBase;  // so that the desk's start compacts nothing below the air
  TestStation air, desk;
};

// Weekly, every day at 12:05.
void EnterCampaign(TestStation& desk, const std::string& sound) {
  CampaignEditor editor;
  Campaigns::MnuHPubs_Click(desk.station, editor);
  Campaigns::BtnNew_Click(desk.station, editor);
  ASSERT_TRUE(Campaigns::CmdLoadFile_Click(desk.station, editor, sound, 20000));
  editor.ChAnnonceur = "BAKER";
  editor.HDepPub = editor.HFinPub = "12";
  editor.DecoupagePub = {"05"};
  editor.ComboPriority = "10";
  Campaigns::LblDepartPub_RightClick(desk.station, editor);
  for (int day = 1; day <= 7; ++day) editor.GPub.SetCell(3, day, "X");
  ASSERT_TRUE(Campaigns::BtnAjouter_Click(desk.station, editor));
  Campaigns::Form_Unload(desk.station, editor);
}

// A quarter of the title must be over: 45 s behind its begin, and the second is even.
TEST_F(TwoMachines, ACampaignOfTheDeskIsInTheDaysGridAtAQuarterOfTheTitleAndAirsInItsMinute) {
  Titles(6, "POP");
  air.ModelOfOneGenre("POP");
  const std::string sound = air.MakeSound("baker.wav", 20000);
  desk.opener.lengthsMs = air.opener.lengthsMs;
  air.Start();
  AtTheDesk(10000, [&] { EnterCampaign(desk, sound); });
  air.RunUntil(45000);
  EXPECT_TRUE(SignalWaits());
  EXPECT_EQ(air.Events("break").size(), 0U);
  air.RunUntil(50000);
  EXPECT_FALSE(SignalWaits());
  air.RunUntil(10 * 60000);
  int aired = 0;
  for (const Seen& start : air.Starts())
    if (start["code"] == "-2") {
      ++aired;
      EXPECT_TRUE(start["title"].starts_with("BAKER")) << start["title"];
      EXPECT_GE(start.atMs, 300000);
    }
  EXPECT_EQ(aired, 1) << air.Describe();
  EXPECT_TRUE(air.Events("error").empty()) << air.Describe();
}

TEST_F(TwoMachines, AModelOfTheDeskHoldsFromTheNextRequestOn) {
  Titles(6, "POP");
  Titles(6, "ROCK");
  air.ModelOfOneGenre("POP");
  air.Start();
  AtTheDesk(60000, [&] {
    SelectWeekday(desk.station, kSaturdayNumber);
    TextGrid& grid = desk.station.modelEditor.Models;
    ASSERT_EQ(grid.Cell(1, 0), "POP");
    grid.SetCell(1, 0, "ROCK");
    ASSERT_TRUE(Models::BtnSave_Click(desk.station));
  });
  air.RunUntil(60 * 60000);
  std::string genres;
  for (const Seen& start : air.Starts()) genres += start["title"].front();
  ASSERT_GE(genres.size(), 10U);
  EXPECT_EQ(genres.find("RP"), std::string::npos) << genres;
  EXPECT_EQ(genres.front(), 'P');
  EXPECT_EQ(genres.back(), 'R');
}

TEST_F(TwoMachines, ASettingOfTheDeskHoldsFromTheNextElementOn) {
  Titles(6, "POP");
  air.ModelOfOneGenre("POP");
  air.Start();
  AtTheDesk(60000, [&] {
    SimDevices devices(nullptr);
    Settings::MnuParametrage_Click(desk.station, devices);
    const SettingsControl* mix = FindSettingsControl("EnchDef");
    ASSERT_TRUE(mix);
    ASSERT_FALSE(SetControl(desk.station, devices, *mix, "4000"));
    Settings::Form_Unload(desk.station);
  });
  air.RunUntil(2 * kTitleMs);
  // The next one begins 1600 ms ahead of the first one's end, and the one behind it 4000 ms.
  const std::vector<Seen> starts = air.Starts();
  ASSERT_EQ(starts.size(), 3U) << air.Describe();
  EXPECT_EQ(starts[1].atMs, 100 + kTitleMs - 1600);
  EXPECT_EQ(starts[2].atMs, starts[1].atMs + kTitleMs - 4000);
}

// Saturday is day 46347; both rows are of days that the 30 days of a new station keep.
TEST_F(TwoMachines, TheDaysThatTheReportIsKeptCountFromTheFirstPurgeBehindTheDesksSave) {
  for (const char* serial : {"46340.5", "46346.5"})
    air.Sql(std::string("INSERT INTO Rapport (DATENUM) VALUES (") + serial + ")");
  const auto left = [&] { return air.SqlText("SELECT GROUP_CONCAT(DATENUM) FROM Rapport"); };
  SimDevices devices(desk.station.platform.prelisten);
  Settings::MnuParametrage_Click(desk.station, devices);
  ASSERT_EQ(SetControl(desk.station, devices, *FindSettingsControl("SpinPurge"), "2"),
            std::nullopt);
  ComposeTodaysGrid(air.station);
  EXPECT_EQ(left(), "46340.5,46346.5");
  Settings::Form_Unload(desk.station);
  EXPECT_EQ(left(), "46340.5,46346.5");
  ComposeTodaysGrid(air.station);
  EXPECT_EQ(left(), "46346.5");
}

}  // namespace
}  // namespace zemo::test
