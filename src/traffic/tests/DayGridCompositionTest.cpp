// The day's grid as it is composed. 21 November 2026 is a Saturday; the standard campaign runs over
// all of November with the mark 00 in every hour.
#include <gtest/gtest.h>

#include <filesystem>

#include "engine/DayGridControls.h"
#include "engine/Startup.h"
#include "settings/SideFiles.h"
#include "station/TextForms.h"
#include "support/BaseFaults.h"
#include "support/Campaigns.h"
#include "support/WatchedLoop.h"
#include "traffic/DayGridComposition.h"
#include "traffic/DayGridPrint.h"

namespace zemo::test {
namespace {

class DayGridComposition : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    on.seen.clear();
  }
  void Set(const std::string& field, const std::string& value) {
    on.Set(field, value);
    on.station.base.CheckCnf();
  }
  void Today(const std::string& day) { on.loop.SetWallClock(ParseMoment(day + " 12:00:00")); }
  DayGrid& Grid() { return on.station.GPubJour; }
  // The moments of the rows, joined by commas.
  std::string Moments() { return Column(0); }
  std::string Column(int column) {
    std::string text;
    for (int row = 1; row < Grid().RowCount(); ++row)
      text += (row == 1 ? "" : ",") + Grid().Cell(row, column);
    return text;
  }
  // The advertisers of a row up to the first empty cell.
  std::string Elements(int row) {
    std::string text;
    for (int column = 3; column < 50 && !Grid().Cell(row, column).empty(); ++column)
      text += (column == 3 ? "" : ",") + Grid().Cell(row, column);
    return text;
  }
  void Compose() { ComposeDayGrid(on.station); }
  BaseFaults base;  // ahead of the station, whose base it may fail
  TestStation on;
};

// Cut behind 21 lines: its first hour has the 30 days of November.
TEST_F(DayGridComposition, AGridFileThatDoesNotFitIsLoggedOnceAndTheOthersStand) {
  const int32_t code = AddCampaign(on, {.advertiser = "CUT", .crosses = {"00:00", "12:00"}});
  AddCampaign(on, {.advertiser = "WHOLE", .crosses = {"12:00"}});
  AddCampaign(on, {.advertiser = "NONE", .crosses = {"12:00"}, .gridFile = false});
  const std::string file = on.SqlText("SELECT FILENAMEGRILLE FROM GrillePub");
  std::string bytes;
  for (int line = 0; line < 21; ++line) bytes += "X\r\n";
  on.MakeFile(std::filesystem::path(file).filename(), bytes);
  Compose();
  EXPECT_EQ(Moments(), "00:00,12:00");  // what the file still has airs
  EXPECT_EQ(Elements(1), "CUT");
  EXPECT_EQ(Elements(2), "WHOLE");
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U) << on.Describe();
  EXPECT_EQ(errors[0]["where"], "MakeGrillePubGeneral");
  EXPECT_EQ(errors[0]["text"], "campaign " + std::to_string(code) +
                                   ", CUT: the grid file has 21 lines, the campaign's grid 720 "
                                   "cells: " +
                                   file);
}

TEST_F(DayGridComposition, WithoutCampaignsThereIsTheHeadingAlone) {
  Compose();
  EXPECT_EQ(Grid().RowCount(), 1);
  const char* cells[] = {"HEURE",           "TEMPS",
                         "PUB/RUB",         "Grille du samedi 21 novembre 2026",
                         "0 Messages Pubs", "0 Rubriques"};
  int column = 0;
  for (const char* cell : cells) EXPECT_EQ(Grid().Cell(0, column++), cell);
  EXPECT_EQ(Grid().Cell(0, 6), "");
  EXPECT_EQ(Grid().Cell(0, 53), "21/11/26");
  const auto told = on.Events("grid");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0]["rows"] + told[0]["spots"] + told[0]["news"], "000");
}

TEST_F(DayGridComposition, TheHeadingFollowsTheLanguage) {
  Set("Langue", "1");
  Compose();
  EXPECT_EQ(Grid().Cell(0, 0) + "|" + Grid().Cell(0, 1) + "|" + Grid().Cell(0, 2),
            "HOUR|TIME|SPOT/NEWS");
  EXPECT_EQ(Grid().Cell(0, 3), "Grid of theSaturday 21 November 2026");
  EXPECT_EQ(Grid().Cell(0, 4) + "|" + Grid().Cell(0, 5), "0 Spots|0 News");
  Set("Langue", "2");
  Compose();
  EXPECT_EQ(Grid().Cell(0, 0) + "|" + Grid().Cell(0, 1) + "|" + Grid().Cell(0, 2),
            "Hora|Duração|PUB/INT");
  EXPECT_EQ(Grid().Cell(0, 3).substr(0, 11), "Tabela de s");
  EXPECT_EQ(Grid().Cell(0, 4) + "|" + Grid().Cell(0, 5), "0 Total anúncios|0 Intercalares");
  Set("Langue", "3");
  Compose();
  for (int column = 0; column < 53; ++column) EXPECT_EQ(Grid().Cell(0, column), "") << column;
  EXPECT_EQ(Grid().Cell(0, 53), "21/11/26");
}

TEST_F(DayGridComposition, TheRowsAreTheMomentsOfAllCampaignsInTheirOrder) {
  AddCampaign(
      on,
      {.advertiser = "B", .priority = 20, .marks = {"45", "05"}, .crosses = {"13:05", "09:45"}});
  AddCampaign(on,
              {.advertiser = "A", .priority = 10, .marks = {"30"}, .crosses = {"13:30", "09:30"}});
  Compose();
  EXPECT_EQ(Moments(), "09:30,09:45,13:05,13:30");
  EXPECT_EQ(Elements(1) + Elements(2) + Elements(3) + Elements(4), "ABBA");
}

TEST_F(DayGridComposition, AnElementsFileStandsFiftyColumnsOn) {
  const std::string first = on.MakeSound("first.wav", 20000);
  const std::string second = on.MakeSound("second.wav", 45500);
  AddCampaign(on, {.advertiser = "SECOND",
                   .priority = 20,
                   .crosses = {"10:00"},
                   .lengthMs = 45500,
                   .file = second});
  AddCampaign(on, {.advertiser = "FIRST",
                   .priority = 10,
                   .crosses = {"10:00"},
                   .lengthMs = 20000,
                   .file = first});
  Compose();
  EXPECT_EQ(Elements(1), "FIRST,SECOND");
  EXPECT_EQ(Grid().Cell(1, 53), first);
  EXPECT_EQ(Grid().Cell(1, 54), second);
  EXPECT_EQ(Grid().Cell(1, 55), "");
  EXPECT_EQ(Grid().Cell(1, 1), "01:05");  // 20000 + 45500 ms
  EXPECT_EQ(Grid().Cell(1, 2), "Pubs");
}

TEST_F(DayGridComposition, TheLengthStopsAtTheFirstElementWithoutAFile) {
  AddCampaign(on, {.advertiser = "A", .priority = 10, .crosses = {"10:00"}, .lengthMs = 20000});
  AddCampaign(on, {.advertiser = "B", .priority = 20, .crosses = {"10:00"}});
  AddCampaign(on, {.advertiser = "C", .priority = 30, .crosses = {"10:00"}, .lengthMs = 40000});
  on.Sql("UPDATE GrillePub SET FILENAMEAUDIO = '' WHERE ANNONCEUR = 'B'");
  Compose();
  EXPECT_EQ(Elements(1), "A,B,C");
  EXPECT_EQ(Grid().Cell(1, 1), "00:20");
}

TEST_F(DayGridComposition, AMissingFileStaysInTheGridWithoutALength) {
  AddCampaign(
      on, {.advertiser = "GONE", .crosses = {"10:00"}, .file = on.stationDir.Path() + "/gone.wav"});
  Compose();
  EXPECT_EQ(Elements(1), "GONE");
  EXPECT_EQ(Grid().Cell(1, 1), "--:--");
}

TEST_F(DayGridComposition, TheFirstCampaignOfAMomentDecidesTheTypeOfTheBreak) {
  AddCampaign(on, {.advertiser = "NEWS", .priority = 10, .spot = false, .crosses = {"10:00"}});
  AddCampaign(on, {.advertiser = "SPOT", .priority = 20, .crosses = {"10:00", "11:00"}});
  Compose();
  EXPECT_EQ(Column(2), "Rubriques,Pubs");
  EXPECT_EQ(Elements(1), "NEWS,SPOT");
  EXPECT_EQ(Grid().Cell(0, 4), "2 Messages Pubs");
  EXPECT_EQ(Grid().Cell(0, 5), "1 Rubriques");
  const Seen* told = on.First("grid");
  ASSERT_NE(told, nullptr);
  EXPECT_EQ((*told)["rows"] + "," + (*told)["spots"] + "," + (*told)["news"], "2,2,1");
}

// Columns 3 to 49 take 47; 50 to 52 hold three more without a file, behind them all is full.
TEST_F(DayGridComposition, ABreakTakes47ElementsAndThreeThatNobodyReads) {
  const std::string file = on.MakeSound("spot.wav", 1000);
  for (int i = 1; i <= 51; ++i)
    AddCampaign(
        on,
        {.advertiser = "A" + std::to_string(i), .priority = i, .crosses = {"10:00"}, .file = file});
  Compose();
  EXPECT_EQ(Grid().Cell(1, 3), "A1");
  EXPECT_EQ(Grid().Cell(1, 49), "A47");
  EXPECT_EQ(Grid().Cell(1, 99), file);
  EXPECT_EQ(Grid().Cell(1, 50) + Grid().Cell(1, 51) + Grid().Cell(1, 52), "A48A49A50");
  EXPECT_EQ(Grid().Cell(1, 53), file);
  EXPECT_EQ(Grid().Cell(1, 100), "");
  EXPECT_EQ(Grid().Cell(1, 1), "00:47");
  EXPECT_EQ(Grid().Cell(0, 4), "50 Messages Pubs");  // the 51st found no cell
}

// 24 hours of 8 marks are 192 moments a campaign.
void AddEveryMoment(TestStation& on, std::vector<std::string> marks, int lastHour) {
  Campaign campaign{.lastHour = lastHour, .marks = std::move(marks)};
  for (int hour = 0; hour <= lastHour; ++hour)
    for (const std::string& mark : campaign.marks)
      campaign.crosses.push_back(TwoDigits(hour) + ":" + mark);
  AddCampaign(on, campaign);
}

TEST_F(DayGridComposition, ADayHas401MomentsAtMost) {
  AddEveryMoment(on, {"00", "01", "02", "03", "04", "05", "06", "07"}, 23);  // 192
  AddEveryMoment(on, {"10", "11", "12", "13", "14", "15", "16", "17"}, 23);  // 384
  AddEveryMoment(on, {"20"}, 16);                                            // 401
  Compose();
  EXPECT_EQ(Grid().RowCount(), 402);
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

TEST_F(DayGridComposition, MoreMomentsAreAnErrorAndLeaveNoStampOfToday) {
  AddEveryMoment(on, {"00", "01", "02", "03", "04", "05", "06", "07"}, 23);
  AddEveryMoment(on, {"10", "11", "12", "13", "14", "15", "16", "17"}, 23);
  AddEveryMoment(on, {"20"}, 17);  // 402
  Compose();
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0]["where"], "MakeGrillePubGeneral");
  EXPECT_TRUE(on.Events("grid").empty());
  EXPECT_EQ(Grid().Cell(0, 53), "");
  EXPECT_FALSE(on.station.notices.hourglass);
  EXPECT_FALSE(on.station.engine.composing);
}

TEST_F(DayGridComposition, AFaultLeavesTheStampOfAnotherDayAndNoneOfItsBreaks) {
  AddCampaign(on, {.crosses = {"10:00"}});
  Compose();
  Today("2026-11-22");
  on.Sql("DROP TABLE GrillePub");
  EXPECT_FALSE(ComposeDayGrid(on.station));
  EXPECT_EQ(on.Events("error").at(0)["where"], "MakeGrillePubGeneral") << on.Describe();
  EXPECT_EQ(Grid().Cell(0, 53), "21/11/26");
  EXPECT_EQ(Moments(), "");
}

// --- a fault leaves the grid of the day ---

TEST_F(DayGridComposition, MoreMomentsLeaveTheGridOfTheDay) {
  AddCampaign(on, {.advertiser = "FORMER", .crosses = {"10:00"}});
  Compose();
  for (const int first : {0, 10, 20}) {
    std::vector<std::string> marks;
    for (int mark = first; mark < first + 8; ++mark) marks.push_back(TwoDigits(mark));
    AddEveryMoment(on, marks, 23);
  }
  EXPECT_FALSE(ComposeDayGrid(on.station));
  EXPECT_EQ(Moments() + " " + Elements(1) + " " + Grid().Cell(0, 4),
            "10:00 FORMER 1 Messages Pubs");
  EXPECT_EQ(Grid().Cell(0, 53), "");
  on.Sql("DELETE FROM GrillePub WHERE ANNONCEUR = 'FORMER'");
  on.Sql("DELETE FROM GrillePub WHERE DECOUPEH1 = '20'");
  EXPECT_TRUE(ComposeDayGrid(on.station));
  EXPECT_EQ(Grid().RowCount(), 385);
}

TEST_F(DayGridComposition, AGridFileThatCannotBeReadLeavesTheGridOfTheDay) {
  const std::string file = on.MakeSound("spot.wav", 1000);
  AddCampaign(on, {.advertiser = "A", .crosses = {"10:00"}, .file = file});
  AddCampaign(on, {.advertiser = "B", .crosses = {"11:00"}});
  Compose();
  on.seen.clear();
  std::filesystem::rename(GridFileOf(file), GridFileOf(file) + ".away");
  std::filesystem::create_directory(GridFileOf(file));
  EXPECT_FALSE(ComposeDayGrid(on.station));
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0]["where"], "MakeGrillePubGeneral");
  EXPECT_EQ(on.Events("error")[0]["text"], GridFileOf(file) + ": Is a directory");
  EXPECT_EQ(Moments() + " " + Grid().Cell(0, 53), "10:00,11:00 ");
  std::filesystem::remove(GridFileOf(file));
  Compose();  // a missing one is a campaign without crosses
  EXPECT_EQ(Moments() + " " + Grid().Cell(0, 53), "11:00 21/11/26");
}

// The stamp of a grid of today may be empty when midnight comes.
TEST_F(DayGridComposition, AGridWithoutAStampIsOfItsDayOnly) {
  AddCampaign(on, {.crosses = {"10:00"}});
  Compose();
  Grid().SetCell(0, 53, "");
  Today("2026-11-22");
  on.Sql("ALTER TABLE GrillePub RENAME TO Away");
  EXPECT_FALSE(ComposeDayGrid(on.station));
  EXPECT_EQ(Moments() + Grid().Cell(0, 53), "");
}

TEST_F(DayGridComposition, ALockedBaseLeavesTheGridOfTheDay) {
  AddCampaign(on, {.advertiser = "FORMER", .crosses = {"10:00"}});
  Compose();
  on.seen.clear();
  base.Arm(BasePoint::kLockToRead, BaseFault::kLocked);
  EXPECT_FALSE(ComposeDayGrid(on.station));
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0].Int("number"), kErrLocked);
  EXPECT_EQ(Moments() + " " + Elements(1) + " " + Grid().Cell(0, 53), "10:00 FORMER ");
  EXPECT_FALSE(on.station.engine.composing);
  base.Disarm();
  EXPECT_TRUE(ComposeDayGrid(on.station));
  EXPECT_EQ(Moments() + " " + Grid().Cell(0, 53), "10:00 21/11/26");
}

TEST_F(DayGridComposition, TwoMarksOfOneValueAreOneMomentWithTwoElements) {
  AddCampaign(on, {.advertiser = "TWICE", .marks = {"15", "15"}, .crosses = {"10:15"}});
  Compose();
  EXPECT_EQ(Moments(), "10:15");
  EXPECT_EQ(Elements(1), "TWICE,TWICE");
}

// --- which campaigns work today ---

TEST_F(DayGridComposition, ADatedCampaignWorksFromItsFirstToItsLastDay) {
  AddCampaign(on, {.from = "20/11/2026", .to = "21/11/2026", .crosses = {"10:00"}});
  const std::pair<const char*, const char*> days[] = {
      {"2026-11-19", ""}, {"2026-11-20", "10:00"}, {"2026-11-21", "10:00"}, {"2026-11-22", ""}};
  for (const auto& [day, moments] : days) {
    Today(day);
    Compose();
    EXPECT_EQ(Moments(), moments) << day;
  }
}

TEST_F(DayGridComposition, OnlyTodaysColumnCounts) {
  // Column 21 of November is the 21st, column 22 the 22nd.
  AddCampaign(on, {.advertiser = "TODAY", .crosses = {"10:00"}, .column = 21});
  AddCampaign(on, {.advertiser = "TOMORROW", .crosses = {"11:00"}, .column = 22});
  Compose();
  EXPECT_EQ(Moments(), "10:00");
  Today("2026-11-22");
  Compose();
  EXPECT_EQ(Moments(), "11:00");
}

TEST_F(DayGridComposition, AWeeklyCampaignWorksOnItsWeekday) {
  AddCampaign(
      on,
      {.from = "JOURNALIER", .to = "JOURNALIER", .crosses = {"10:00"}, .column = 6});  // Saturday
  Compose();
  EXPECT_EQ(Moments(), "10:00");
  Today("2026-11-22");
  Compose();
  EXPECT_EQ(Moments(), "");
  Today("2026-11-28");
  Compose();
  EXPECT_EQ(Moments(), "10:00");
}

TEST_F(DayGridComposition, ARealEndDateEndsAWeeklyCampaign) {
  AddCampaign(on, {.from = "JOURNALIER", .to = "21/11/2026", .crosses = {"10:00"}});
  Compose();
  EXPECT_EQ(Moments(), "10:00");
  Today("2026-11-22");
  Compose();
  EXPECT_EQ(Moments(), "");
}

TEST_F(DayGridComposition, OverTheYearsEndDaysAreFoundByMonthAndDay) {
  AddCampaign(on, {.advertiser = "OLD",
                   .from = "30/12/2026",
                   .to = "02/01/2027",
                   .crosses = {"10:00"},
                   .column = 2});
  AddCampaign(on, {.advertiser = "NEW",
                   .from = "30/12/2026",
                   .to = "02/01/2027",
                   .crosses = {"11:00"},
                   .column = 3});
  Today("2026-12-31");
  Compose();
  EXPECT_EQ(Moments(), "10:00");
  Today("2027-01-01");
  Compose();
  EXPECT_EQ(Moments(), "11:00");
}

TEST_F(DayGridComposition, OfTwoColumnsOfOneDayTheFirstCounts) {
  // 366 columns from 1 November: the first and the last are a 1 November.
  AddCampaign(on, {.from = "01/11/2026", .to = "30/11/2027", .crosses = {"10:00"}, .column = 1});
  AddCampaign(on, {.from = "01/11/2026", .to = "30/11/2027", .crosses = {"11:00"}, .column = 366});
  Today("2027-11-01");
  Compose();
  EXPECT_EQ(Moments(), "10:00");
}

TEST_F(DayGridComposition, TheYearOfAColumnIsNotCompared) {
  // The grid ends 366 days behind its first, with 1 November 2026; 21 November 2025 stands in it.
  AddCampaign(on, {.from = "01/11/2025", .to = "30/11/2026", .crosses = {"10:00"}, .column = 21});
  Compose();
  EXPECT_EQ(Moments(), "10:00");
}

TEST_F(DayGridComposition, ACampaignWithoutAColumnForTodayIsLeftOut) {
  AddCampaign(on, {.crosses = {"10:00"}});
  on.Sql("UPDATE GrillePub SET CAMPAGNEDEPART = '99/99/2025'");  // no grid can be built from it
  Compose();
  EXPECT_EQ(Grid().RowCount(), 1);
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

TEST_F(DayGridComposition, ACampaignWithoutAGridFileTakesNoPart) {
  AddCampaign(on, {.crosses = {"10:00"}, .gridFile = false});
  Compose();
  EXPECT_EQ(Grid().RowCount(), 1);
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

// --- around the composition ---

TEST_F(DayGridComposition, EndedCampaignsLeaveTheTableOnlyWhenTheSettingsSaySo) {
  AddCampaign(on, {.advertiser = "ENDED", .to = "20/11/2026", .crosses = {"10:00"}});
  AddCampaign(on, {.advertiser = "LAST DAY", .to = "21/11/2026", .crosses = {"11:00"}});
  Compose();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM GrillePub"), "2");
  Set("SuppressionPub", "1");
  Compose();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM GrillePub"), "1");
  EXPECT_EQ(Moments(), "11:00");
}

TEST_F(DayGridComposition, OldReportRowsAreDeletedAtItsEnd) {
  // 21 November 2026 is day 46347; two days back is 46345.
  for (const char* serial : {"46344.9", "46345.0", "46345.1", "46347.4"})
    on.Sql(std::string("INSERT INTO Rapport (DATENUM) VALUES (") + serial + ")");
  Set("PurgeRapport", "2");
  Compose();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "2");
  EXPECT_EQ(on.SqlText("SELECT MIN(DATENUM) FROM Rapport"), "46345.1");
  Set("PurgeRapport", "0");
  Compose();  // all up to this midnight
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "1");
}

// --- the preview of another day ---

class DayGridPreview : public DayGridComposition {
 protected:
  void SetUp() override {
    DayGridComposition::SetUp();
    on.Sql("INSERT INTO Rapport (DATENUM) VALUES (46347.4)");  // 21 November 2026
    AddCampaign(on, {.advertiser = "ENDED", .to = "20/11/2026", .crosses = {"10:00"}});
    // As soon as the question was answered another machine turns the purge on.
    Set("SuppressionPub", "1");
    Set("PurgeRapport", "2");
  }
  std::string Kept() {
    return on.SqlText("SELECT (SELECT COUNT(*) FROM GrillePub) || (SELECT COUNT(*) FROM Rapport)");
  }
};

TEST_F(DayGridPreview, PurgesNeitherCampaignsNorTheReport) {
  OnAir::PickPreviewDay(on.station, {.year = 2026, .month = 12, .day = 24});
  EXPECT_EQ(Grid().Cell(0, 53), "24/12/26");
  EXPECT_EQ(Kept(), "11");
}

TEST_F(DayGridPreview, PurgesNothingAsLongAsTheFalseDateStands) {
  OnAir::PickPreviewDay(on.station, {.year = 2026, .month = 12, .day = 24});
  on.RunUntil(36 * 3600000);  // the machine is forgotten over its midnight
  Compose();
  EXPECT_EQ(Grid().Cell(0, 53), "26/12/26");
  OnAir::PickPreviewDay(on.station, {.year = 2026, .month = 12, .day = 31});
  EXPECT_EQ(Kept(), "11");
}

TEST_F(DayGridPreview, PurgesAgainOnceTheDateIsBack) {
  OnAir::PickPreviewDay(on.station, {.year = 2026, .month = 12, .day = 24});
  Today("2026-11-21");
  Compose();
  EXPECT_EQ(Kept(), "01");
  Today("2026-11-24");
  Compose();
  EXPECT_EQ(Kept(), "00");
}

TEST_F(DayGridPreview, OfTodayPurgesAsEveryComposition) {
  OnAir::PickPreviewDay(on.station, {.year = 2026, .month = 11, .day = 21});
  EXPECT_EQ(Kept(), "01");
}

TEST_F(DayGridComposition, TheNextCompositionReplacesTheWholeGrid) {
  AddCampaign(on, {.crosses = {"10:00", "11:00"}});
  Compose();
  on.Sql("DELETE FROM GrillePub");
  Compose();
  EXPECT_EQ(Grid().RowCount(), 1);
  EXPECT_EQ(Grid().Cell(0, 4), "0 Messages Pubs");
}

TEST_F(DayGridComposition, APrintedGridStopsAtTheFirstEmptyCellOfARow) {
  AddCampaign(on, {.advertiser = "A", .priority = 10, .crosses = {"10:00"}, .lengthMs = 20000});
  AddCampaign(on, {.advertiser = "B", .priority = 20, .crosses = {"10:00"}, .lengthMs = 20000});
  Compose();
  const std::vector<std::string> lines = {
      "HEURE TEMPS PUB/RUB Grille du samedi 21 novembre 2026 2 Messages Pubs 0 Rubriques", "",
      "10:00 00:40 Pubs A B"};
  EXPECT_EQ(PrintedDayGrid(Grid()), lines);
}

TEST(DayGridPrint, TheSizeIsAtLeastSix) {
  EXPECT_EQ(PrintSize("8"), 8);
  EXPECT_EQ(PrintSize("5"), 6);
  EXPECT_EQ(PrintSize("large"), 6);
  EXPECT_EQ(PrintSize(kPrintSizeDefault), 6);
}

// --- what happens in its yields: a second station on the same base, whose yields are watched ---

class WatchedComposition : public testing::Test {
 protected:
  WatchedComposition()
      : loop(on.loop),
        station(Platform{on.loop, loop, on.sound, on.stationFolder, on.machineFolder, on.soundFiles,
                         on.lengths, on.localValues, on.clipboard, on.messages, on.keyboard,
                         on.system, on.automaton, on.joystick}) {}
  void SetUp() override {
    on.Load();
    station.base.OpenOrCreateDatabase();
    SetSideFileNames(station);
    station.base.OpenAllTables();
    loop.onYield = [this] { OnYield(++yields); };
  }
  TestStation on;
  WatchedLoop loop;
  Station station;
  int yields = 0;
  std::function<void(int)> OnYield = [](int) {};
};

TEST_F(WatchedComposition, AMomentThatOnlyTheSecondPassSeesIsAppended) {
  const std::string file = on.MakeSound("changed.wav", 10000);
  const Campaign before{.crosses = {"12:00"}, .file = file};
  AddCampaign(on, before);
  Campaign after = before;
  after.crosses = {"10:00"};
  // One campaign: the second yield is that of the second pass.
  OnYield = [&](int yield) {
    if (yield == 2) on.MakeFile("changed.GPB", GridFileText(after));
  };
  ComposeDayGrid(station);
  const DayGrid& grid = station.GPubJour;
  ASSERT_EQ(grid.RowCount(), 3);
  EXPECT_EQ(grid.Cell(1, 0), "12:00");
  EXPECT_EQ(grid.Cell(1, 3), "");
  EXPECT_EQ(grid.Cell(2, 0), "10:00");
  EXPECT_EQ(grid.Cell(2, 2), file);
  EXPECT_EQ(grid.Cell(0, 4), "1 Messages Pubs");
}

TEST_F(WatchedComposition, TheGridOfTheDayStandsWholeUntilTheNewOneIs) {
  const std::string file = on.MakeSound("spot.wav", 10000);
  AddCampaign(on, {.advertiser = "FORMER", .crosses = {"10:00", "12:00"}, .file = file});
  ComposeDayGrid(station);
  on.Sql("UPDATE GrillePub SET ANNONCEUR = 'LATER'");
  yields = 0;
  OnYield = [&](int) {
    ASSERT_EQ(station.GPubJour.RowCount(), 3);
    EXPECT_EQ(station.GPubJour.Cell(2, 0) + station.GPubJour.Cell(2, 3), "12:00FORMER");
    EXPECT_EQ(station.GPubJour.Cell(2, 1) + station.GPubJour.Cell(2, 53), "00:10" + file);
  };
  ComposeDayGrid(station);
  EXPECT_EQ(yields, 1 + 1 + 2);  // two walks over one campaign, and the rows
  EXPECT_EQ(station.GPubJour.Cell(2, 3), "LATER");
}

TEST_F(WatchedComposition, TheGridOfAnotherDayIsGoneFromItsBegin) {
  AddCampaign(on, {.advertiser = "FORMER", .crosses = {"10:00"}});
  ComposeDayGrid(station);
  on.loop.SetWallClock(ParseMoment("2026-11-22 00:30:00"));
  OnYield = [&](int) { EXPECT_LE(station.GPubJour.RowCount(), 1); };
  ComposeDayGrid(station);
  EXPECT_EQ(station.GPubJour.RowCount(), 2);
}

TEST_F(WatchedComposition, ACompositionAskedForMeanwhileRunsBehind) {
  for (int i = 0; i < 3; ++i) AddCampaign(on, {.crosses = {"12:00"}});
  OnYield = [&](int yield) {
    if (yield == 2) ComposeTodaysGrid(station);
    EXPECT_EQ(station.notices.progress.text, "COMPOSITION DES PUBS EN COURS...");
    EXPECT_TRUE(station.notices.hourglass);
  };
  ComposeDayGrid(station);
  EXPECT_EQ(station.GPubJour.Cell(1, 5), "ADVERTISER");
  EXPECT_EQ(station.GPubJour.Cell(1, 6), "");  // no element twice
  EXPECT_EQ(yields, 2 * (3 + 3 + 1));          // two compositions: two walks and a row each
  EXPECT_FALSE(station.notices.progress.visible);
  EXPECT_EQ(station.notices.progress.text, "ZEMO RADIO PRO");
}

TEST_F(WatchedComposition, TheLabelStaysThroughThePurge) {
  AddCampaign(on, {.to = "20/11/2026", .crosses = {"12:00"}});
  AddCampaign(on, {.crosses = {"12:00"}});
  on.Set("SuppressionPub", "1");
  OnYield = [&](int) {
    EXPECT_TRUE(station.notices.progress.visible);
    EXPECT_EQ(station.notices.progress.text, "COMPOSITION DES PUBS EN COURS...");
  };
  ComposeDayGrid(station);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM GrillePub"), "1");
  EXPECT_EQ(yields, 1 + 1 + 1 + 1);  // one is kept; two walks over the other, and its row
  EXPECT_FALSE(station.notices.progress.visible);
}

TEST_F(WatchedComposition, AStampEmptiedMeanwhileStaysEmpty) {
  AddCampaign(on, {.crosses = {"12:00"}});
  OnYield = [&](int yield) {
    if (yield == 2) station.GPubJour.SetCell(0, 53, "");  // campaigns were taken in
  };
  ComposeDayGrid(station);
  EXPECT_EQ(station.GPubJour.Cell(0, 53), "");
  ComposeDayGrid(station);
  EXPECT_EQ(station.GPubJour.Cell(0, 53), "21/11/26");
}

}  // namespace
}  // namespace zemo::test
