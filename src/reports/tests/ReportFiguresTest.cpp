// The figures beside the report's list.
#include "ReportFixture.h"
#include "reports/ReportFigures.h"

namespace zemo {
namespace {

struct ReportFigures : ReportFixture {
  const ReportRows& Rows(int lastDay = 21) {
    Open();
    Report::BtnDateFin_Click(on.station, editor, Day(lastDay));
    return *editor.ListRap.rows;
  }
  Pause none = [] {};
};

TEST_F(ReportFigures, TheVarietiesStandByTheirPlaysAndRowsWithoutOneCountForNone) {
  for (const char* variety : {"LOCAL", "NATIONAL", "", "NATIONAL", "ÉLITE"})
    Add({.variety = variety});
  EXPECT_EQ(PlaysBy(Rows(), RapCol::kVariety, none),
            (std::vector<NamedPlays>{{"NATIONAL", 2}, {"ÉLITE", 1}, {"LOCAL", 1}}));
}

TEST_F(ReportFigures, PlaysByHourAndGenreBeginAtTheFullHour) {
  Add({.time = "09:59:59", .genre = "POP"});
  Add({.time = "10:00:00", .genre = "POP"});
  Add({.time = "10:30:00", .genre = "ROCK"});
  Add({.time = "10:59:59", .genre = "POP"});
  Add({.time = "23:59:59", .genre = "ROCK"});
  Add({.time = "00:00:00", .genre = "POP", .day = kToday + 1});
  Add({.time = "10:15:00", .genre = "POP", .day = kToday + 1});
  Add({.time = "11:00:00", .genre = ""});
  const HourFigures figures = PlaysByHourAndGenre(Rows(22), none);
  EXPECT_EQ(figures.genres, (Texts{"POP", "ROCK"}));
  std::array<std::vector<uint32_t>, 24> expected;
  expected.fill({0, 0});
  expected[0] = {1, 0};
  expected[9] = {1, 0};
  expected[10] = {3, 1};
  expected[23] = {0, 1};
  EXPECT_EQ(figures.plays, expected);
}

// Day -2 is 28 December 1899: a clock that was wrong, or a base that another program wrote.
TEST_F(ReportFigures, RowsAheadOfTheFirstSerialHaveTheirHourAndTheirDay) {
  Add({.time = "13:00:00", .genre = "POP", .day = -2});
  Add({.time = "00:30:00", .genre = "POP", .day = -1});
  Open();
  const auto pick = [&](const char* day) { return test::ParseMoment(std::string(day)); };
  Report::CmdCalend_Click(on.station, editor, pick("1899-12-25 00:00:00"));
  Report::BtnDateFin_Click(on.station, editor, pick("1900-01-05 00:00:00"));
  const ReportRows& rows = *editor.ListRap.rows;
  ASSERT_EQ(rows.Count(), 2U);
  const HourFigures figures = PlaysByHourAndGenre(rows, none);
  EXPECT_EQ(figures.plays[13], std::vector<uint32_t>{1});
  EXPECT_EQ(figures.plays[0], std::vector<uint32_t>{1});
  const TitleFigures title = PlaysOverTime(rows, 0, none);  // 11 full hours lie between the two
  EXPECT_EQ(title.firstSec, -2 * 86400 + 13 * 3600);
  EXPECT_EQ(title.plays, (std::vector<uint32_t>{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST_F(ReportFigures, ATitleHasItsPlaysOfEachDayFromTheFirstRowToTheLast) {
  Add({.time = "08:00:00", .title = "Other", .day = kToday});
  Add({.time = "00:00:00", .artist = "A", .title = "One", .day = kToday + 1});
  Add({.time = "23:59:59", .artist = "B", .title = "One", .day = kToday + 1});
  Add({.time = "12:00:00", .artist = "A", .title = "One", .day = kToday + 3});
  const ReportRows& rows = Rows(24);
  const TitleFigures figures = PlaysOverTime(rows, 1, none);
  EXPECT_EQ(figures.stepSec, 86400);
  EXPECT_EQ(figures.firstSec, int64_t{kToday} * 86400);
  EXPECT_EQ(figures.plays, (std::vector<uint32_t>{0, 2, 0, 1}));
  EXPECT_EQ(figures.Total(), 3U);
}

TEST_F(ReportFigures, InThreeDaysOrLessATitleHasItsPlaysOfEachHour) {
  Add({.time = "22:10:00", .title = "Other", .day = kToday});
  Add({.time = "23:59:59", .title = "One", .day = kToday});
  Add({.time = "00:00:00", .title = "One", .day = kToday + 1});
  Add({.time = "00:20:00", .title = "One", .day = kToday + 1});
  Add({.time = "02:00:00", .title = "Other", .day = kToday + 1});
  const TitleFigures figures = PlaysOverTime(Rows(22), 1, none);
  EXPECT_EQ(figures.stepSec, 3600);
  EXPECT_EQ(figures.firstSec, int64_t{kToday} * 86400 + 22 * 3600);
  EXPECT_EQ(figures.plays, (std::vector<uint32_t>{0, 1, 2, 0, 0}));
}

// 21 November 2026 is a Saturday, 28 February 2027 a Sunday, the last day of the 15th week.
TEST_F(ReportFigures, ThreeDaysAreStillInHoursAndFourInDays) {
  Add({.time = "01:00:00", .day = kToday});
  Add({.time = "23:00:00", .day = kToday + 2});
  EXPECT_EQ(PlaysOverTime(Rows(24), 0, none).stepSec, 3600);
  Add({.time = "00:00:00", .day = kToday + 3});
  Report::VoirRapport(on.station, editor);
  EXPECT_EQ(PlaysOverTime(*editor.ListRap.rows, 0, none).stepSec, 86400);
}

TEST_F(ReportFigures, InMoreThanAHundredDaysATitleHasItsPlaysOfEachWeekFromMonday) {
  Add({.title = "One", .day = kToday});
  Add({.title = "One", .day = kToday + 1});
  Add({.title = "One", .day = kToday + 2});
  Add({.title = "One", .day = kToday + 99});
  editor.LblDate = "21/11/2026";
  editor.LblDateFin = "31/12/2027";
  Report::VoirRapport(on.station, editor);
  ASSERT_EQ(PlaysOverTime(*editor.ListRap.rows, 0, none).plays.size(), 100U);
  Add({.title = "One", .day = kToday + 100});
  Report::VoirRapport(on.station, editor);
  const TitleFigures figures = PlaysOverTime(*editor.ListRap.rows, 0, none);
  EXPECT_EQ(figures.stepSec, 7 * 86400);
  EXPECT_EQ(figures.firstSec, int64_t{kToday - 5} * 86400);
  std::vector<uint32_t> weeks(16);
  weeks[0] = 2;
  weeks[1] = 1;
  weeks[14] = 1;
  weeks[15] = 1;
  EXPECT_EQ(figures.plays, weeks);
}

TEST_F(ReportFigures, OfNoRowsThereAreNone) {
  const ReportRows& rows = Rows();
  EXPECT_TRUE(PlaysBy(rows, RapCol::kVariety, none).empty());
  EXPECT_TRUE(PlaysByHourAndGenre(rows, none).genres.empty());
  EXPECT_TRUE(PlaysOverTime(rows, 0, none).plays.empty());
}

TEST_F(ReportFigures, OtherEventsAreServedWhileManyRowsAreCounted) {
  on.Sql(
      "INSERT INTO Rapport (GENRE, TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 200000) SELECT 'POP', 'One', 46347.5 FROM n");
  int pauses = 0;
  const TitleFigures figures = PlaysOverTime(Rows(), 0, [&] { ++pauses; });
  EXPECT_EQ(figures.plays, std::vector<uint32_t>{200000});
  EXPECT_EQ(pauses, 1);
}

}  // namespace
}  // namespace zemo
