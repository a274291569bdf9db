// The purge of the report. 21 November 2026 is day 46347.
#include <gtest/gtest.h>

#include "reports/KnownReport.h"
#include "reports/ReportPurge.h"
#include "station/BaseFiles.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class ReportPurge : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void Add(const std::string& serial) {
    on.Sql("INSERT INTO Rapport (AUTEUR, DATENUM) VALUES ('A', " + serial + ")");
  }
  std::string Left() {
    return on.SqlText(
        "SELECT group_concat(DATENUM, ' ') FROM (SELECT * FROM Rapport ORDER BY CODE)");
  }
  TestStation on{"2026-11-21 12:00:00"};
};

TEST_F(ReportPurge, KeepsTheDayOfTheLimitFromBehindItsMidnight) {
  for (const char* serial : {"46316.9", "46317", "46317.000012", "46317.5", "46347.5"}) Add(serial);
  PurgeReport(on.station, 30);
  EXPECT_EQ(Left(), "46317.000012 46317.5 46347.5");
}

TEST_F(ReportPurge, ZeroDaysTakeEverythingUpToTodaysMidnight) {
  for (const char* serial : {"46346.99", "46347", "46347.25"}) Add(serial);
  PurgeReport(on.station, 0);
  EXPECT_EQ(Left(), "46347.25");
}

TEST_F(ReportPurge, NumbersOfRowsRunOn) {
  Add("46000");
  Add("46001");
  PurgeReport(on.station, 30);
  Add("46347.5");
  EXPECT_EQ(on.SqlText("SELECT CODE FROM Rapport"), "3");
}

// --- a report of which the older part is not looked through again ---

std::string OldRowsSql(int from, int to, const std::string& moment) {
  return "WITH RECURSIVE n(i) AS (SELECT " + std::to_string(from) +
         " UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(to) +
         ") INSERT INTO Rapport (CODE, DATENUM) SELECT i, " + moment + " FROM n";
}

TEST_F(ReportPurge, FindsRowsWhereverTheyStandInALongReport) {
  for (const char* row : {"1", "1500", "2990"}) {
    on.Sql("DELETE FROM Rapport");
    on.Sql(OldRowsSql(
        1, 3000, "CASE i WHEN " + std::string(row) + " THEN 46000 ELSE 46320 + i / 1000.0 END"));
    OpenBaseAgain(on.station);
    PurgeReport(on.station, 30);
    EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "2999") << row;
    EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE DATENUM < 46320"), "0") << row;
  }
}

TEST_F(ReportPurge, GoesOnWithTheDaysAndTheRowsThatCome) {
  on.Sql(OldRowsSql(1, 3000, "46316 + i / 1000.0"));  // days 46316 to 46319
  OpenBaseAgain(on.station);
  const auto left = [&] { return on.SqlText("SELECT COUNT(*) FROM Rapport"); };
  PurgeReport(on.station, 30);
  EXPECT_EQ(left(), "2000");  // from behind the midnight of 46317 on
  PurgeReport(on.station, 29);
  EXPECT_EQ(left(), "1000");
  Add("46000");  // another program's, or by a clock that was set back
  PurgeReport(on.station, 29);
  EXPECT_EQ(left(), "1000");
  on.loop.SetWallClock({2026, 11, 22, 0, 0, 1, 0});
  PurgeReport(on.station, 29);  // up to the midnight of 46319, which row 3000 bears
  EXPECT_EQ(left(), "0");
}

// 30,000 rows are more than one look reads.
TEST_F(ReportPurge, ALongReportIsPurgedOnceItIsKnown) {
  on.Sql(OldRowsSql(1, 30000, "46300 + i / 1000.0"));  // days 46300 to 46330
  OpenBaseAgain(on.station);
  PurgeReport(on.station, 30);  // up to the midnight of 46317, which row 17,000 bears
  EXPECT_EQ(on.SqlText("SELECT MIN(CODE) FROM Rapport"), "1");
  while (ReadReportAhead(on.station)) {
  }
  PurgeReportOnceKnown(on.station);
  EXPECT_EQ(on.SqlText("SELECT MIN(CODE) FROM Rapport"), "17001");
  on.Sql("INSERT INTO Rapport (CODE, DATENUM) VALUES (1, 46000)");
  PurgeReportOnceKnown(on.station);  // nothing is left for later
  EXPECT_EQ(on.SqlText("SELECT MIN(CODE) FROM Rapport"), "1");
}

// As a preview of the grid sets it; and the setting may be another one by then.
TEST_F(ReportPurge, ADateThatIsSetBeforeTheReportIsKnownPurgesNoMore) {
  on.Sql(OldRowsSql(1, 30000, "46300 + i / 1000.0"));  // days 46300 to 46330
  OpenBaseAgain(on.station);
  PurgeReport(on.station, 30);  // up to the midnight of 46317, which row 17,000 bears
  on.loop.SetWallClock({2027, 6, 1, 12, 0, 0, 0});
  on.Sql("UPDATE Cnf SET PurgeRapport = 1");
  while (ReadReportAhead(on.station)) {
  }
  PurgeReportOnceKnown(on.station);
  EXPECT_EQ(on.SqlText("SELECT MIN(CODE) FROM Rapport"), "17001");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "13000");
}

TEST_F(ReportPurge, KeepsNoDayForRowsThatSomebodyElseDeleted) {
  on.Sql(OldRowsSql(1, 3000, "46000 + i / 10.0"));
  OpenBaseAgain(on.station);
  PurgeReport(on.station, 400);
  on.Sql("DELETE FROM Rapport WHERE DATENUM <= 46317");
  PurgeReport(on.station, 30);
  EXPECT_FALSE(on.stationFolder.Exists("ReportBegin.Txt"));
}

TEST_F(ReportPurge, WithNothingToPurgeNobodyIsWaitedFor) {
  Add("46347.5");
  const auto other = test::OpenElsewhere(on.station.base.Path());
  other->BeginTrans();
  PurgeReport(on.station, 30);
  EXPECT_FALSE(on.First("error")) << on.Describe();
  other->RollbackTrans();
}

TEST_F(ReportPurge, KeepsTheDayUpToWhichNothingIsLeftOnceSomethingGoes) {
  PurgeReport(on.station, 30);
  EXPECT_FALSE(on.stationFolder.Exists("ReportBegin.Txt"));
  Add("46000");
  PurgeReport(on.station, 30);
  EXPECT_EQ(on.stationFolder.Read("ReportBegin.Txt"), "22/10/2026\r\n");
  EXPECT_EQ(on.stationFolder.durable.back(), "ReportBegin.Txt");
  Add("46000");
  PurgeReport(on.station, 60);  // what is gone stays so
  EXPECT_EQ(on.stationFolder.Read("ReportBegin.Txt"), "22/10/2026\r\n");
}

TEST_F(ReportPurge, GoesOnWhereThatDayCannotBeKeptAndSaysSo) {
  Add("46000");
  on.stationFolder.writesFail = true;
  PurgeReport(on.station, 30);
  EXPECT_EQ(Left(), "");
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "PurgeRapport");
}

TEST_F(ReportPurge, GoesOnWhereTheDayKeptCannotBeReadAndSaysSo) {
  on.MakeFile("ReportBegin.Txt", std::string(5 << 20, 'x'));
  Add("46000");
  PurgeReport(on.station, 30);
  EXPECT_EQ(Left(), "");
  ASSERT_TRUE(on.First("error"));
  EXPECT_NE((*on.First("error"))["text"].find("ReportBegin.Txt"), std::string::npos);
  EXPECT_EQ(on.stationFolder.Read("ReportBegin.Txt"), "22/10/2026\r\n");
}

TEST_F(ReportPurge, AFailureLeavesTheTableAndIsLogged) {
  Add("46000");
  on.Sql("CREATE TRIGGER Held BEFORE DELETE ON Rapport BEGIN SELECT RAISE(ABORT, 'held'); END");
  PurgeReport(on.station, 30);
  EXPECT_EQ(Left(), "46000.0");
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "PurgeRapport");
  on.Sql("DROP TRIGGER Held");
  PurgeReport(on.station, 30);
  EXPECT_EQ(Left(), "");
}

}  // namespace
}  // namespace zemo::test
