// Today's report in the browse list. 21 November 2026 is day 46347.
#include <gtest/gtest.h>

#include "reports/TodaysReport.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class TodaysReport : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void Add(const std::string& author, const std::string& serial) {
    on.Sql("INSERT INTO Rapport (AUTEUR, TITRE, GENRE, VARIETE, DATENUM) VALUES ('" + author +
           "', 'TITLE', 'POP', 'NATIONAL', " + serial + ")");
  }
  BrowsedRows& Rows() { return on.station.browse.ListRech.rows; }
  TestStation on{"2026-11-21 12:00:00"};
};

TEST_F(TodaysReport, ShowsTheDayFromItsMidnightNewestFirst) {
  Add("YESTERDAY", "46346.9999");
  Add("MIDNIGHT", "46347");
  Add("MORNING", "46347.3");
  on.station.browse.ListRech.sorted = true;
  LoadTodaysReport(on.station);
  ASSERT_EQ(Rows().size(), 2U);
  EXPECT_EQ(Rows()[0].cells[0], "MORNING");
  EXPECT_EQ(Rows()[0].cells[1], "TITLE");
  EXPECT_EQ(Rows()[0].cells[2], "POP");
  EXPECT_EQ(Rows()[0].cells[3], "NATIONAL");
  EXPECT_EQ(Rows()[1].cells[0], "MIDNIGHT");
  EXPECT_FALSE(on.station.browse.ListRech.sorted);
}

TEST_F(TodaysReport, ADayWithoutRowsLeavesTheListAsItIs) {
  Add("YESTERDAY", "46346.9999");
  Rows() = {BrowseRow{Cells{"KEPT"}}};
  LoadTodaysReport(on.station);
  ASSERT_EQ(Rows().size(), 1U);
  EXPECT_EQ(Rows()[0].cells[0], "KEPT");
}

TEST_F(TodaysReport, ABaseThatCannotBeReadIsLogged) {
  on.Sql("ALTER TABLE Rapport RENAME TO Elsewhere");
  LoadTodaysReport(on.station);
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "LoadRapportDirectLive");
}

}  // namespace
}  // namespace zemo::test
