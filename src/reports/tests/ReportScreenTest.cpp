// The report screen: what it lists of a span, its filters, gaps and order.
#include <climits>

#include "ReportFixture.h"
#include "support/BaseFaults.h"

namespace zemo {
namespace {

using ReportScreen = ReportFixture;

TEST_F(ReportScreen, OpensOnTodayWithTheTenColumnsOfEachRow) {
  Add({.time = "10:00:00",
       .artist = "Abba",
       .title = "Waterloo",
       .genre = "POP",
       .variety = "INTERNATIONAL",
       .composer = "Andersson",
       .label = "Polar",
       .reference = "PS 100"});
  Open();
  EXPECT_TRUE(editor.open);
  EXPECT_EQ(editor.LblDate, "21/11/2026");
  EXPECT_EQ(editor.LblDateFin, "");
  EXPECT_EQ(editor.LblCompteur, "1 Fiches");
  ASSERT_EQ(editor.ListRap.Count(), 1U);
  // The double next to 46347 + 10/24.
  EXPECT_EQ(Line(editor.ListRap, 0, RapCol::kCount),
            "21/11/2026|10:00:00|Abba|Waterloo|POP|INTERNATIONAL|Andersson|Polar|PS 100|"
            "46347.416666666664");
}

TEST_F(ReportScreen, AnEntryThatIsBarredOpensNothing) {
  on.station.engine.ScreenLocked = true;
  Open();
  EXPECT_FALSE(editor.open);
  EXPECT_EQ(editor.LblDate, "");
}

TEST_F(ReportScreen, ADayBeginsAtItsMidnightAndEndsBeforeTheNext) {
  Add({.time = "23:59:59", .title = "the day before", .day = kToday - 1});
  Add({.time = "00:00:00", .title = "midnight"});
  Add({.time = "23:59:59", .title = "last second"});
  Add({.time = "00:00:00", .title = "the next midnight", .day = kToday + 1});
  Open();
  EXPECT_EQ(Titles(), (Texts{"midnight", "last second"}));
}

TEST_F(ReportScreen, TheEndDateIsInTheSpanToItsLastSecondAndARightClickTakesItAway) {
  Add({.title = "19", .day = kToday - 2});
  Add({.title = "20", .day = kToday - 1});
  Add({.time = "23:59:59", .title = "21"});
  Add({.title = "22", .day = kToday + 1});
  Open();
  Report::CmdCalend_Click(on.station, editor, Day(20));
  EXPECT_EQ(Titles(), Texts{"20"});
  Report::BtnDateFin_Click(on.station, editor, Day(21));
  EXPECT_EQ(editor.LblDateFin, "21/11/2026");
  EXPECT_EQ(Titles(), (Texts{"20", "21"}));
  EXPECT_EQ(editor.LblCompteur, "2 Fiches");
  Report::BtnDateFin_RightClick(on.station, editor);
  EXPECT_EQ(Titles(), Texts{"20"});
}

TEST_F(ReportScreen, ASpanWithNoRowsShowsTheCount0AndKeepsTheRotationsEmpty) {
  Open();
  EXPECT_EQ(editor.LblCompteur, "0 Fiches");
  Report::BtnStats_Click(on.station, editor);
  EXPECT_EQ(editor.ListStat.Count(), 0U);
  EXPECT_EQ(editor.LblStat, "");
}

TEST_F(ReportScreen, ASpanThatEndsBeforeItBeginsHasNoRows) {
  Add({});
  Open();
  Report::BtnDateFin_Click(on.station, editor, Day(19));
  EXPECT_EQ(editor.LblCompteur, "0 Fiches");
}

TEST_F(ReportScreen, EachTimeHasTheGapToTheNextRowAndTheLastHasNone) {
  Add({.time = "10:00:00"});
  Add({.time = "10:03:25"});
  Add({.time = "11:03:25"});
  Open();
  EXPECT_EQ(Column(editor.ListRap, RapCol::kTime),
            (Texts{"10:00:00 - 00:03:25", "10:03:25 - 01:00:00", "11:03:25"}));
}

TEST_F(ReportScreen, AGapOfADayAndMoreWrapsAt24Hours) {
  Add({.time = "10:00:00"});
  Add({.time = "10:00:00", .day = kToday + 1});
  Add({.time = "10:00:05", .day = kToday + 3});
  Open();
  Report::BtnDateFin_Click(on.station, editor, Day(25));
  EXPECT_EQ(Column(editor.ListRap, RapCol::kTime),
            (Texts{"10:00:00 - 00:00:00", "10:00:00 - 00:00:05", "10:00:05"}));
}

TEST_F(ReportScreen, FiltersAreBeginningsWithoutRegardToCaseAndNarrowEachOther) {
  Add({.time = "10:00:00", .artist = "Abba", .title = "1", .genre = "POP"});
  Add({.time = "10:01:00", .artist = "ABBA TEENS", .title = "2", .genre = "DANCE"});
  Add({.time = "10:02:00", .artist = "Black Abba", .title = "3", .genre = "POP"});
  Add({.time = "10:03:00",
       .artist = "Abba",
       .title = "4",
       .genre = "POP ROCK",
       .variety = "INTERNATIONAL"});
  Open();
  Report::FiltreArtiste_Change(on.station, editor, "abb");
  EXPECT_EQ(Titles(), (Texts{"1", "2", "4"}));
  Report::FiltreGenre_Change(on.station, editor, "Pop");
  EXPECT_EQ(Titles(), (Texts{"1", "4"}));
  EXPECT_EQ(editor.LblCompteur, "2 Fiches");
  Report::FiltreVariete_Change(on.station, editor, "inter");
  EXPECT_EQ(Titles(), Texts{"4"});
  Report::FiltreArtiste_Change(on.station, editor, "  ");
  Report::FiltreGenre_Change(on.station, editor, "");
  Report::FiltreVariete_Change(on.station, editor, "");
  EXPECT_EQ(editor.ListRap.Count(), 4U);
}

TEST_F(ReportScreen, AFilterTakesAccentsApostrophesAndPatternsAsTheBaseDoes) {
  Add({.time = "10:00:00", .artist = "Étienne d'Arc", .title = "1"});
  Add({.time = "10:01:00", .artist = "Etienne", .title = "2"});
  Add({.time = "10:02:00", .artist = "100% Pur", .title = "3"});
  Add({.time = "10:03:00", .artist = "1000 Purs", .title = "4"});
  Open();
  Report::FiltreArtiste_Change(on.station, editor, "éTIENNE D'");
  EXPECT_EQ(Titles(), Texts{"1"});
  Report::FiltreArtiste_Change(on.station, editor, "100%");
  EXPECT_EQ(Titles(), Texts{"3"});
  Report::FiltreArtiste_Change(on.station, editor, "*pur");
  EXPECT_EQ(Titles(), (Texts{"3", "4"}));
}

TEST_F(ReportScreen, RowsThatAClockSetBackOrAnotherHandPutElsewhereStandAtTheirMoment) {
  Add({.time = "03:00:00", .title = "late"});
  Add({.time = "02:10:00", .title = "hour again"});
  Add({.time = "05:00:00", .title = "next day", .day = kToday + 1});
  Open();
  EXPECT_EQ(Titles(), (Texts{"hour again", "late"}));
  EXPECT_EQ(Column(editor.ListRap, RapCol::kTime), (Texts{"02:10:00 - 00:50:00", "03:00:00"}));
}

// CODE 1 is of today, 9,000 rows of yesterday lie between it and the others of today.
TEST_F(ReportScreen, ARowFarFromItsDayIsFoundToo) {
  Add({.time = "09:00:00", .title = "astray"});
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 "
      "FROM n WHERE i < 9000) SELECT 'yesterday', 46346 + i / 10000.0 FROM n");
  Add({.time = "08:00:00", .title = "first"});
  Add({.time = "10:00:00", .title = "last"});
  Open();
  EXPECT_EQ(Titles(), (Texts{"first", "astray", "last"}));
}

// Every row stands where the halving does not look for it.
TEST_F(ReportScreen, AReportInNoOrderAtAllIsListedByItsMoments) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 FROM n WHERE i < 30000) SELECT i * 7919 % 30000, 46332 + i * 7919 % 30000 / 1000.0 FROM "
      "n");
  Open();
  ASSERT_EQ(editor.LblCompteur, "1000 Fiches");
  for (size_t line = 0; line < 1000; ++line)
    ASSERT_EQ(editor.ListRap.Cell(line, RapCol::kTitle), std::to_string(15000 + line));
}

TEST_F(ReportScreen, AReportWithHolesInItsNumbersIsReadToItsEnd) {
  Add({.time = "09:00:00", .title = "1"});
  on.Sql("INSERT INTO Rapport (CODE, TITRE, DATENUM) VALUES (2000000000, '2', 46347.9)");
  Open();
  EXPECT_EQ(Titles(), (Texts{"1", "2"}));
}

TEST_F(ReportScreen, ABaseThatCannotBeReadEmptiesTheListAndIsLogged) {
  Add({});
  Open();
  ASSERT_EQ(editor.ListRap.Count(), 1U);
  on.Sql("ALTER TABLE Rapport RENAME TO Elsewhere");
  Report::VoirRapport(on.station, editor);
  EXPECT_EQ(editor.LblCompteur, "0 Fiches");
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "VoirRapport");
}

TEST_F(ReportScreen, AHeadSortsByItsColumnWithoutRegardToCaseAndEqualRowsKeepTheirOrder) {
  Add({.time = "10:00:00", .artist = "beta", .title = "1"});
  Add({.time = "10:01:00", .artist = "Alpha", .title = "2"});
  Add({.time = "10:02:00", .artist = "élan", .title = "3"});
  Add({.time = "10:03:00", .artist = "Zeta", .title = "4"});
  Add({.time = "10:04:00", .artist = "Alpha", .title = "5"});
  Open();
  Report::ListRap_ColumnClick(on.station, editor, RapCol::kArtist);
  EXPECT_EQ(Titles(), (Texts{"2", "5", "1", "3", "4"}));
  Report::ListRap_ColumnClick(on.station, editor, RapCol::kMoment);
  EXPECT_EQ(Titles(), (Texts{"1", "2", "3", "4", "5"}));
}

TEST_F(ReportScreen, TheNextClickOnTheSameHeadTurnsTheOrderAround) {
  Add({.time = "10:00:00", .artist = "B", .title = "One"});
  Add({.time = "10:01:00", .artist = "A", .title = "Two"});
  Add({.time = "10:02:00", .artist = "C", .title = "Two"});
  Open();
  EXPECT_FALSE(editor.ListRap.sorting.column);
  const auto click = [&](int column) {
    Report::ListRap_ColumnClick(on.station, editor, column);
    return Column(editor.ListRap, RapCol::kArtist);
  };
  EXPECT_EQ(click(RapCol::kArtist), (Texts{"A", "B", "C"}));
  EXPECT_EQ(click(RapCol::kArtist), (Texts{"C", "B", "A"}));
  EXPECT_TRUE(editor.ListRap.sorting.down);
  EXPECT_EQ(click(RapCol::kArtist), (Texts{"A", "B", "C"}));
  Report::BtnStats_Click(on.station, editor);
  EXPECT_EQ(editor.ListRap.sorting.column, RapCol::kTitle);
  EXPECT_EQ(click(RapCol::kTitle), (Texts{"B", "A", "C"}));  // the first click
  Report::ListStat_ColumnClick(on.station, editor, StatCol::kPlays);
  EXPECT_EQ(Column(editor.ListStat, StatCol::kTitle), (Texts{"One", "Two"}));
  Report::ListStat_ColumnClick(on.station, editor, StatCol::kPlays);
  EXPECT_EQ(Column(editor.ListStat, StatCol::kTitle), (Texts{"Two", "One"}));
  Report::VoirRapport(on.station, editor);
  EXPECT_FALSE(editor.ListRap.sorting.column);
}

// Six slices of titles, each of them twice; 7 shares no factor with 50000.
TEST_F(ReportScreen, ManyTitlesAreSortedAsFewAre) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, REFERENCE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 100000) SELECT printf('%05d', i * 7 % 50000), i, "
      "46347 + i / 200000.0 FROM n");
  Open();
  Report::ListRap_ColumnClick(on.station, editor, RapCol::kTitle);
  ASSERT_EQ(editor.ListRap.Count(), 100000U);
  for (size_t line = 0; line < 100000; line += 2) {
    const std::string title = editor.ListRap.Cell(line, RapCol::kTitle);
    ASSERT_EQ(std::stoul(title), line / 2);
    ASSERT_EQ(editor.ListRap.Cell(line + 1, RapCol::kTitle), title);
    ASSERT_EQ(std::stoi(editor.ListRap.Cell(line + 1, RapCol::kReference)),
              std::stoi(editor.ListRap.Cell(line, RapCol::kReference)) + 50000);
  }
}

TEST_F(ReportScreen, TheTimesOfSeveralDaysAreSortedWithTheirGaps) {
  Add({.time = "10:00:00", .title = "an hour"});
  Add({.time = "11:00:00", .title = "23 hours"});
  Add({.time = "10:00:00", .title = "half an hour", .day = kToday + 1});
  Add({.time = "10:30:00", .title = "last", .day = kToday + 1});
  Open();
  Report::BtnDateFin_Click(on.station, editor, Day(22));
  Report::ListRap_ColumnClick(on.station, editor, RapCol::kTime);
  EXPECT_EQ(Titles(), (Texts{"half an hour", "an hour", "last", "23 hours"}));
}

// The base is large enough that the reading yields, and there the operator types on.
TEST_F(ReportScreen, AFilterTypedWhileTheRowsAreReadTakesThePlaceOfThatReading) {
  on.Sql(
      "INSERT INTO Rapport (AUTEUR, TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 12000) SELECT CASE i % 2 WHEN 0 THEN 'even' ELSE 'odd' END, "
      "i, 46347 + i / 20000.0 FROM n");
  Open();
  ASSERT_EQ(editor.LblCompteur, "12000 Fiches");
  int typed = 0;
  on.loop.Post([&] {
    ++typed;
    EXPECT_EQ(editor.working, 1);
    Report::FiltreArtiste_Change(on.station, editor, "even");
  });
  Report::VoirRapport(on.station, editor);
  EXPECT_EQ(typed, 1);
  EXPECT_EQ(editor.LblCompteur, "6000 Fiches");
  EXPECT_EQ(editor.working, 0);
}

// However quickly one types: no reading stands on another one's stack.
TEST_F(ReportScreen, AReadingThatIsAskedForMeanwhileLeavesItToTheOneAtWork) {
  on.Sql(
      "INSERT INTO Rapport (AUTEUR, TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 12000) SELECT CASE i % 2 WHEN 0 THEN 'even' ELSE 'odd' END, "
      "i, 46347 + i / 20000.0 FROM n");
  Open();
  std::vector<std::string> counts;
  editor.listed = [&] { counts.push_back(editor.LblCompteur); };
  on.loop.Post([&] {
    Report::FiltreArtiste_Change(on.station, editor, "even");
    EXPECT_TRUE(counts.empty());
    EXPECT_EQ(editor.working, 1);
    on.loop.Post([&] { Report::FiltreArtiste_Change(on.station, editor, "odd"); });
  });
  Report::VoirRapport(on.station, editor);
  EXPECT_EQ(counts, Texts{"6000 Fiches"});
  EXPECT_EQ(editor.ListRap.Cell(0, RapCol::kArtist), "odd");
  EXPECT_FALSE(editor.reading);
}

TEST_F(ReportScreen, AReadingOfFewRowsServesNoOtherEvent) {
  Add({});
  Open();
  bool served = false;
  on.loop.Post([&] { served = true; });
  Report::VoirRapport(on.station, editor);
  Report::BtnStats_Click(on.station, editor);
  EXPECT_FALSE(served);
}

TEST_F(ReportScreen, AScreenClosedWhileItReadsStaysAsItIs) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 "
      "FROM n WHERE i < 12000) SELECT i, 46347 + i / 20000.0 FROM n");
  on.loop.Post([&] { Report::Form_Unload(editor); });
  Open();
  EXPECT_FALSE(editor.open);
  EXPECT_EQ(editor.ListRap.Count(), 0U);
}

// As many titles as a sorting goes through in two slices.
TEST_F(ReportScreen, AListSortedWhileTheScreenIsOpenedAnewOnOtherRowsStaysTheirs) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 FROM n WHERE i < 9000) SELECT 20000 - i, 46347 + i / 18000.0 FROM n");
  Open();
  ASSERT_EQ(editor.LblCompteur, "9000 Fiches");
  int opened = 0;
  on.loop.Post([&] {
    ++opened;
    Report::Form_Unload(editor);
    on.Sql("DELETE FROM Rapport WHERE Code > 2");
    Open();
  });
  Report::ListRap_ColumnClick(on.station, editor, RapCol::kTitle);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(Titles(), (Texts{"19999", "19998"}));
}

struct LockedReport : testing::Test {
  test::BaseFaults faults;
  test::TestStation on{"2026-11-21 12:00:00"};
  ReportEditor editor;

  void SetUp() override {
    on.Load();
    on.Sql("INSERT INTO Rapport (TITRE, DATENUM) VALUES ('1', 46347.5)");
    Report::MnuRapport_Click(on.station, editor);
  }
  void LockReads(int times) {
    faults.Arm(test::BasePoint::kLockToRead, test::BaseFault::kLocked, 1, times);
  }
};

TEST_F(LockedReport, ABaseThatIsLockedForAMomentIsAskedAgainWhileTheLoopTurns) {
  on.Sql("INSERT INTO Rapport (TITRE, DATENUM) VALUES ('2', 46347.6)");
  int served = 0;
  on.loop.Post([&] { ++served; });
  LockReads(20);
  Report::VoirRapport(on.station, editor);
  EXPECT_EQ(editor.LblCompteur, "2 Fiches");
  EXPECT_EQ(served, 1);
  EXPECT_EQ(faults.WaitedMs(), 0);
  EXPECT_FALSE(on.First("error"));
}

TEST_F(LockedReport, ABaseThatStaysLockedEndsTheReadingWithALine) {
  LockReads(INT_MAX);
  Report::VoirRapport(on.station, editor);
  faults.Disarm();
  EXPECT_EQ(editor.LblCompteur, "0 Fiches");
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["where"], "VoirRapport");
}

TEST_F(LockedReport, AScreenClosedMeanwhileIsNoFault) {
  on.loop.Post([&] { Report::Form_Unload(editor); });
  LockReads(INT_MAX);
  Report::VoirRapport(on.station, editor);
  faults.Disarm();
  EXPECT_FALSE(on.First("error"));
  EXPECT_EQ(editor.working, 0);
}

}  // namespace
}  // namespace zemo
