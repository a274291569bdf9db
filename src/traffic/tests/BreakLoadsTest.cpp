// What stands around the crosses of a campaign. 21 November 2026 is a Saturday; the campaign that
// is shown runs from 21 to 25 November with the marks 00 and 30 in the hours 07 to 09.
#include <filesystem>

#include "store/StoreError.h"
#include "support/BaseFaults.h"
#include "support/Campaigns.h"
#include "traffic/BreakLoads.h"
#include "traffic/CampaignMarking.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

constexpr int64_t kMinuteMs = 60000;
constexpr int kSeven = 0, kHalfPastSeven = 1, kEight = 2, kHalfPastEight = 3, kHalfPastNine = 5;

class Loads : public testing::Test {
 protected:
  void SetUp() override {
    shown = AddCampaign(on, {.advertiser = "Bakery",
                             .from = "21/11/2026",
                             .to = "25/11/2026",
                             .firstHour = 7,
                             .lastHour = 9,
                             .marks = {"00", "30"}});
    Show(shown);
  }
  void Show(int32_t code) { ASSERT_TRUE(Campaigns::ShowRecordOfCode(on.station, on.editor, code)); }
  int32_t Other(Campaign campaign) {
    campaign.marks = {"00", "15", "30", "45"};
    return AddCampaign(on, campaign);
  }
  // Reads all and gives the slices that it took.
  int Read() {
    loads.Begin(on.station, on.editor);
    int slices = 1;
    while (!loads.Slice(on.station)) ++slices;
    return slices;
  }
  BreakLoad At(int moment, int column = 1) {
    const auto day = loads.OfDay(on.editor.GPub, column);
    if (static_cast<size_t>(moment) >= day.size()) {
      ADD_FAILURE() << "nothing is known of column " << column;
      return {};
    }
    return day[static_cast<size_t>(moment)];
  }
  int64_t GapMinutes(int moment, int column = 1) { return At(moment, column).gapMs / kMinuteMs; }
  void Pip(int hour, const std::string& days = "XXXXXXX", const std::string& file = "/pip.wav") {
    on.Sql("UPDATE Toph SET FICHIER = '" + file + "', JourSemaine = '" + days +
           "' WHERE HEURE = " + std::to_string(hour));
    ASSERT_EQ(on.SqlText("SELECT COUNT(*) FROM Toph WHERE HEURE = " + std::to_string(hour)), "1");
  }

  BaseFaults base;  // ahead of the station, whose base it may fail
  CampaignStation on;
  BreakLoads loads;
  int32_t shown = 0;
};

TEST_F(Loads, AreTheOthersElementsAtTheMomentByTheirRecords) {
  Other({.crosses = {"07:30", "08:00"}, .lengthMs = 30000});
  Other({.spot = false, .crosses = {"07:30"}, .column = 21, .lengthMs = 15000});
  Read();
  EXPECT_EQ(At(kSeven).elements, 0);
  EXPECT_EQ(At(kHalfPastSeven, 1).elements, 2);  // the 21st
  EXPECT_EQ(At(kHalfPastSeven, 1).lengthMs, 45000);
  EXPECT_EQ(At(kHalfPastSeven, 2).lengthMs, 30000);
  EXPECT_EQ(At(kEight, 5).lengthMs, 30000);
}

TEST_F(Loads, AreNotKnownAheadOfTheLastSlice) {
  Other({.crosses = {"07:30"}});
  loads.Begin(on.station, on.editor);
  EXPECT_FALSE(loads.Known());
  EXPECT_TRUE(loads.OfDay(on.editor.GPub, 1).empty());
  EXPECT_EQ(loads.OfAdvertiser(1), 0);
  while (!loads.Slice(on.station)) {
  }
  EXPECT_TRUE(loads.Known());
  EXPECT_EQ(At(kHalfPastSeven).elements, 1);
  EXPECT_TRUE(loads.OfDay(on.editor.GPub, 0).empty());  // the moments' own column
  EXPECT_TRUE(loads.OfDay(on.editor.GPub, 6).empty());
}

TEST_F(Loads, LeaveOutTheCampaignItself) {
  Campaigns::GPub_MouseUp(on.station, on.editor, MouseButton::kLeft, true, false, {3, 1});
  ASSERT_TRUE(Campaigns::BtnReplacer_Click(on.station, on.editor));
  Show(shown);
  Read();
  EXPECT_EQ(At(kSeven).elements, 0);
}

// 07:15 and 09:45 are breaks of others, 08:30 is a cross of the campaign's own.
TEST_F(Loads, AreSetAgainstTheTimeToTheNextBreakOrToMidnight) {
  Other({.crosses = {"07:15", "09:45"}});
  on.editor.GPub.SetCell(3 + kHalfPastEight, 1, "X");
  Read();
  EXPECT_EQ(GapMinutes(kSeven), 15);
  EXPECT_EQ(GapMinutes(kHalfPastSeven), 60);
  EXPECT_EQ(GapMinutes(kEight), 30);
  EXPECT_EQ(GapMinutes(kHalfPastEight), 75);
  EXPECT_EQ(GapMinutes(kHalfPastNine), 15);
  EXPECT_EQ(GapMinutes(kEight, 2), 105);  // no cross of its own there
  Other({.crosses = {"07:00"}});
  Read();
  EXPECT_EQ(GapMinutes(kSeven), 15);  // a break is not its own next one
  on.Sql("DELETE FROM GrillePub WHERE CODE <> " + std::to_string(shown));
  Read();
  EXPECT_EQ(GapMinutes(kHalfPastNine), 14 * 60 + 30);
}

// Of the 21st, a Saturday.
TEST_F(Loads, AreSetAgainstTheTimeToTheNextPip) {
  Pip(8);
  Pip(9, "XXXXX  ");
  Pip(0, "     X ");
  Pip(11, "XXXXXXX", "");
  Read();
  EXPECT_EQ(GapMinutes(kSeven), 60);
  EXPECT_EQ(GapMinutes(kHalfPastSeven), 30);
  EXPECT_EQ(GapMinutes(kEight), 16 * 60);  // none at 9 on Saturdays, one at midnight
  EXPECT_EQ(GapMinutes(kEight, 3), 60);    // Monday
  EXPECT_EQ(GapMinutes(kHalfPastNine, 3), 14 * 60 + 30);
}

TEST_F(Loads, AreSetAgainstTheLastPipOfTheDay) {
  Pip(23);
  Read();
  EXPECT_EQ(GapMinutes(kHalfPastNine), 13 * 60 + 30);
}

TEST_F(Loads, OfARecordWithoutALengthAreNone) {
  Other({.crosses = {"07:30"}, .lengthMs = 20000});
  const int32_t wrong = Other({.crosses = {"07:30"}, .lengthMs = 30000});
  on.Sql("UPDATE GrillePub SET DUREE = -30000 WHERE CODE = " + std::to_string(wrong));
  Read();
  EXPECT_EQ(At(kHalfPastSeven).lengthMs, 20000);
}

TEST_F(Loads, OfOtherDaysAreNotShownForThose) {
  Other({.crosses = {"07:30"}});
  Read();
  ASSERT_TRUE(loads.Known());
  Campaigns::PickDay(on.station, on.editor, 1, "22/11/2026");
  Campaigns::PickDay(on.station, on.editor, 2, "25/11/2026");
  loads.Begin(on.station, on.editor);
  EXPECT_FALSE(loads.Known());
}

TEST_F(Loads, KnowWhatIsTheSameAdvertisers) {
  Other({.advertiser = " BAKERY", .crosses = {"07:30", "12:45"}, .column = 21});
  Other({.advertiser = "Zoo", .crosses = {"07:30"}});
  Read();
  EXPECT_EQ(At(kHalfPastSeven).elements, 2);
  EXPECT_EQ(At(kHalfPastSeven).ofAdvertiser, 1);
  EXPECT_EQ(At(kHalfPastSeven, 2).ofAdvertiser, 0);
  EXPECT_EQ(loads.OfAdvertiser(1), 2);  // also at moments that the grid does not have
  EXPECT_EQ(loads.OfAdvertiser(2), 0);
  on.editor.ChAnnonceur = "Zoo";
  EXPECT_FALSE(loads.IsOf(on.station, on.editor));
  Read();
  EXPECT_EQ(loads.OfAdvertiser(1), 1);
  on.editor.ChAnnonceur = "  ";  // nobody
  Other({.advertiser = "", .crosses = {"07:30"}});
  Read();
  EXPECT_EQ(loads.OfAdvertiser(1), 0);
}

// A weekly campaign on Saturdays, one of them with an end.
TEST_F(Loads, CountWeeklyCampaignsOnTheirDaysUpToTheirEnd) {
  Other({.from = "JOURNALIER", .to = "JOURNALIER", .crosses = {"07:30"}, .column = 6});
  Other({.from = "JOURNALIER", .to = "20/11/2026", .crosses = {"07:30"}, .column = 6});
  Read();
  EXPECT_EQ(At(kHalfPastSeven, 1).elements, 1);
  EXPECT_EQ(At(kHalfPastSeven, 2).elements, 0);
}

// Today is Saturday the 21st: the Friday of a weekly grid is the 27th.
TEST_F(Loads, OfAWeeklyGridAreThoseOfTheComingSevenDays) {
  Other({.from = "27/11/2026", .to = "28/11/2026", .crosses = {"07:30"}});
  Other({.from = "20/11/2026", .to = "21/11/2026", .crosses = {"07:30"}});
  Campaigns::LblDepartPub_RightClick(on.station, on.editor);
  Read();
  EXPECT_EQ(At(kHalfPastSeven, 5).elements, 1);  // the 27th, not the 20th
  EXPECT_EQ(At(kHalfPastSeven, 6).elements, 1);  // the 21st, not the 28th
  EXPECT_EQ(At(kHalfPastSeven, 7).elements, 0);
}

// From 25 November 2025 to 24 December 2026: the 366 columns end with 25 November 2026, whose first
// column is that of the year before.
TEST_F(Loads, TakeTheFirstColumnOfADayAsTheAirDoes) {
  Other({.from = "25/11/2025", .to = "24/12/2026", .crosses = {"07:00"}, .column = 1});
  Other({.from = "25/11/2025", .to = "24/12/2026", .crosses = {"07:00"}, .column = 366});
  Read();
  EXPECT_EQ(At(kSeven, 5).elements, 1);  // the 25th
}

TEST_F(Loads, AreThoseOfTheDaysForWhichTheGridWasBuilt) {
  Other({.from = "21/11/2026", .to = "21/11/2026", .crosses = {"07:30"}});
  Campaigns::PickDay(on.station, on.editor, 1, "22/11/2026");
  Read();
  EXPECT_EQ(At(kHalfPastSeven, 1).elements, 1);
  Campaigns::PickDay(on.station, on.editor, 2, "25/11/2026");
  EXPECT_FALSE(loads.IsOf(on.station, on.editor));
  Read();
  EXPECT_EQ(At(kHalfPastSeven, 1).elements, 0);
}

TEST_F(Loads, OfAnEmptyGridAreNone) {
  Other({.crosses = {"07:30"}});
  Campaigns::BtnNew_Click(on.station, on.editor);
  Read();
  EXPECT_TRUE(loads.Known());
  EXPECT_TRUE(loads.OfDay(on.editor.GPub, 1).empty());
}

TEST_F(Loads, OfAMomentThatIsNoTimeAreNone) {
  on.editor.GPub.SetCell(3, 0, "07:xx");
  Read();
  EXPECT_EQ(At(kSeven).gapMs, 0);
  EXPECT_EQ(At(kSeven).elements, 0);
}

TEST_F(Loads, FollowARecordAGridFileAndARowThatChangeAndStandUntilThen) {
  const int32_t other = Other({.crosses = {"07:30"}, .lengthMs = 20000});
  Read();
  on.Sql("UPDATE GrillePub SET DUREE = 25000 WHERE CODE = " + std::to_string(other));
  loads.Begin(on.station, on.editor);
  EXPECT_EQ(At(kHalfPastSeven).lengthMs, 20000);
  Read();
  EXPECT_EQ(At(kHalfPastSeven).lengthMs, 25000);
  on.MakeFile("campaign1.GPB", "");
  Read();
  EXPECT_EQ(At(kHalfPastSeven).elements, 0);
  Other({.crosses = {"08:00"}});
  Read();
  EXPECT_EQ(At(kEight).elements, 1);
  on.Sql("DELETE FROM GrillePub WHERE CODE <> " + std::to_string(shown));
  Read();
  EXPECT_EQ(At(kEight).elements, 0);
}

TEST_F(Loads, AreWithoutACampaignWhoseGridFileCannotBeReadUntilItCan) {
  const std::string file = on.MakeSound("torn.wav", 1000);
  Other({.crosses = {"07:30"}, .file = file});
  Other({.crosses = {"07:30"}});
  const std::string grid = GridFileOf(file);
  std::filesystem::rename(grid, grid + ".away");
  std::filesystem::create_directory(grid);
  Read();
  EXPECT_EQ(At(kHalfPastSeven).elements, 1);
  std::filesystem::remove(grid);
  std::filesystem::rename(grid + ".away", grid);
  Read();
  EXPECT_EQ(At(kHalfPastSeven).elements, 2);
}

TEST_F(Loads, OfABaseThatIsLockedForAMomentAreReadOnBehindIt) {
  Other({.crosses = {"07:30"}});
  loads.Begin(on.station, on.editor);
  base.Arm(BasePoint::kLockToRead, BaseFault::kLocked);
  EXPECT_THROW(loads.Slice(on.station), StoreError);
  base.Disarm();
  while (!loads.Slice(on.station)) {
  }
  EXPECT_EQ(At(kHalfPastSeven).elements, 1);
}

// Those of November have 2,880 cells each: ten of them are a slice.
TEST_F(Loads, OfManyCampaignsComeInSlices) {
  for (int i = 0; i < 60; ++i)
    Other({.from = "01/11/2026", .to = "10/12/2026", .lastHour = 5, .crosses = {"01:00"}});
  for (int i = 0; i < 60; ++i) Other({.crosses = {"07:30"}, .lengthMs = 1000});
  EXPECT_GE(Read(), 5);
  EXPECT_EQ(At(kHalfPastSeven).elements, 60);
  EXPECT_EQ(At(kHalfPastSeven).lengthMs, 60000);
}

}  // namespace
}  // namespace zemo::test
