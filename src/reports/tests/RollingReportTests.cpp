// "rapportzemo.txt": the newest rows for outside programs.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <sstream>

#include "reports/KnownReport.h"
#include "reports/RollingReport.h"
#include "station/BaseFiles.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class RollingReport : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void Add(const std::string& author, double serial) {
    on.Sql(
        "INSERT INTO Rapport (LADATE, HEURE, AUTEURCOMPOSITEUR, AUTEUR, TITRE, GENRE, VARIETE, "
        "DATENUM, REFERENCE, LABEL) VALUES ('21/11/2026', '11:22:33', 'COMPOSER', '" +
        author + "', 'TITLE', 'POP', 'NATIONAL', " + std::to_string(serial) + ", 'REF', 'LABEL')");
  }
  std::optional<std::string> File() { return on.stationFolder.Read("rapportzemo.txt"); }
  static std::string Line(const std::string& author) {
    return "21/11/2026\t11:22:33\t" + author + "\tTITLE\tPOP\tNATIONAL\tCOMPOSER\tLABEL\tREF\t\r\n";
  }
  // Each with a bar behind it.
  std::string AuthorsInFile() {
    std::istringstream lines(File().value_or("none"));
    std::string authors;
    for (std::string line; std::getline(lines, line);) {
      const size_t author = line.find('\t', line.find('\t') + 1) + 1;
      authors += line.substr(author, line.find('\t', author) - author) + '|';
    }
    return authors;
  }
  TestStation on;
};

TEST_F(RollingReport, WritesTheNewestRowsFirstEachFieldWithATabBehindIt) {
  on.localValues.Set("XRapport", "2");
  Add("OLD", 46347.1);
  Add("NEWEST", 46347.3);
  Add("NEWER", 46347.2);
  ExportReport(on.station);
  EXPECT_EQ(File(), Line("NEWEST") + Line("NEWER"));
}

TEST_F(RollingReport, RowsOfOneMomentStandTheLastWrittenFirst) {
  on.localValues.Set("XRapport", "2");
  for (const char* author : {"FIRST", "SECOND", "THIRD"}) Add(author, 46347.5);
  ExportReport(on.station);
  EXPECT_EQ(File(), Line("THIRD") + Line("SECOND"));
}

TEST_F(RollingReport, TwentyRowsWithoutAValueOfTheMachine) {
  for (int i = 0; i < 25; ++i) Add("A", 46347.5);
  ExportReport(on.station);
  std::string expected;
  for (int i = 0; i < 20; ++i) expected += Line("A");
  EXPECT_EQ(File(), expected);
}

TEST_F(RollingReport, NothingIsDoneWithZeroOrLess) {
  Add("A", 46347.5);
  for (const char* value : {"0", "-3"}) {
    on.localValues.Set("XRapport", value);
    ExportReport(on.station);
    EXPECT_EQ(File(), std::nullopt) << value;
  }
}

// Against the question that the file answers, whatever comes to the report between two starts.
TEST_F(RollingReport, ShowsWhatASortOfTheWholeReportShows) {
  std::mt19937 random(20261123);
  const auto below = [&](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  const auto someCode = [] { return "(SELECT CODE FROM Rapport ORDER BY RANDOM() LIMIT 1)"; };
  int rows = 0;
  for (int turn = 0; turn < 120; ++turn) {
    const int added = below(4);
    for (int i = 0; i < added; ++i) Add("A" + std::to_string(++rows), 46347 + below(40) / 8.0);
    switch (below(8)) {
      case 0:
        on.Sql(std::string("DELETE FROM Rapport WHERE CODE = ") + someCode());
        break;
      case 1:  // that of the file's first row, older than it was
        on.Sql(
            "UPDATE Rapport SET DATENUM = DATENUM - 1 WHERE CODE = (SELECT CODE FROM Rapport "
            "ORDER BY DATENUM DESC, CODE DESC LIMIT 1)");
        break;
      case 2:
        on.Sql(std::string("UPDATE Rapport SET AUTEUR = 'RENAMED' WHERE CODE = ") + someCode());
        break;
      case 3:
        on.Sql("INSERT INTO Rapport (AUTEUR) VALUES (NULL)");  // without a moment
        break;
      case 4:
        on.localValues.Set("XRapport", std::to_string(1 + below(9)));
        break;
      case 5:
        if (turn % 15 == 0) on.Sql("DELETE FROM Rapport");
        break;
      default:
        break;
    }
    ExportReport(on.station);
    const std::string count = on.localValues.Get("XRapport").value_or("20");
    EXPECT_EQ(
        AuthorsInFile(),
        on.SqlText("SELECT COALESCE(GROUP_CONCAT(A, ''), '') FROM (SELECT COALESCE(AUTEUR, '') "
                   "|| '|' AS A FROM Rapport ORDER BY DATENUM DESC, CODE DESC LIMIT " +
                   count + ")"))
        << turn;
  }
}

TEST_F(RollingReport, AnotherBaseIsReadAnew) {
  Add("OF THE OLD", 46347.9);
  ExportReport(on.station);
  on.Sql("DELETE FROM Rapport; DELETE FROM sqlite_sequence WHERE name = 'Rapport'");
  Add("OF THE NEW", 46347.1);
  OpenBaseAgain(on.station);
  ExportReport(on.station);
  EXPECT_EQ(File(), Line("OF THE NEW"));
}

// --- a report that is longer than the stretch that is read ---

std::string LongReportSql(int from, int to, const std::string& moment) {
  return "WITH RECURSIVE n(i) AS (SELECT " + std::to_string(from) +
         " UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(to) +
         ") INSERT INTO Rapport (CODE, AUTEUR, DATENUM) SELECT i, 'A' || i, " + moment + " FROM n";
}

TEST_F(RollingReport, RowsThatAreNewerByTheirMomentStandFirstWhereverTheyAre) {
  on.localValues.Set("XRapport", "3");
  on.Sql(LongReportSql(1, 2000, "46000 + i / 1000.0"));
  ExportReport(on.station);
  EXPECT_EQ(AuthorsInFile(), "A2000|A1999|A1998|");
  on.Sql(LongReportSql(2001, 3000, "45000 + i / 1000.0"));  // the clock was set back
  OpenBaseAgain(on.station);
  ExportReport(on.station);
  EXPECT_EQ(AuthorsInFile(), "A2000|A1999|A1998|");
  Add("NOW", 46347.5);
  on.localValues.Set("XRapport", "2");  // read anew
  ExportReport(on.station);
  EXPECT_EQ(AuthorsInFile(), "NOW|A2000|");
}

TEST_F(RollingReport, OfRowsOfOneMomentTheHighestCodeIsTheNewestInALongReport) {
  on.localValues.Set("XRapport", "2");
  on.Sql(LongReportSql(1, 2000, "46000"));
  OpenBaseAgain(on.station);
  ExportReport(on.station);
  EXPECT_EQ(AuthorsInFile(), "A2000|A1999|");
}

TEST_F(RollingReport, AnotherLongBaseIsReadAnew) {
  on.localValues.Set("XRapport", "1");
  on.Sql(LongReportSql(1, 2000, "46300 + i / 1000.0"));
  OpenBaseAgain(on.station);
  ExportReport(on.station);
  on.Sql("DELETE FROM Rapport");
  on.Sql(LongReportSql(1, 3000, "CASE i WHEN 5 THEN 46200 ELSE 46100 + i / 1000.0 END"));
  OpenBaseAgain(on.station);
  ExportReport(on.station);
  EXPECT_EQ(AuthorsInFile(), "A5|");
}

// 30,000 rows are more than one look reads.
TEST_F(RollingReport, ShowsTheLastRowsUntilALongReportIsKnown) {
  on.localValues.Set("XRapport", "2");
  on.Sql(LongReportSql(1, 30000, "CASE i WHEN 5 THEN 46300 ELSE 46100 + i / 1000.0 END"));
  OpenBaseAgain(on.station);
  ExportReport(on.station);
  EXPECT_EQ(AuthorsInFile(), "A30000|A29999|");
  ExportReportOnceKnown(on.station);
  EXPECT_EQ(AuthorsInFile(), "A30000|A29999|");
  while (ReadReportAhead(on.station)) {
  }
  ExportReportOnceKnown(on.station);
  EXPECT_EQ(AuthorsInFile(), "A5|A30000|");
  on.MakeFile("rapportzemo.txt", "of somebody");
  ExportReportOnceKnown(on.station);
  EXPECT_EQ(File(), "of somebody") << "it was written again";
}

TEST_F(RollingReport, AnEmptyTableLeavesAnEmptyFile) {
  on.MakeFile("rapportzemo.txt", "of yesterday");
  ExportReport(on.station);
  EXPECT_EQ(File(), "");
}

TEST_F(RollingReport, AFieldWithATabOrALineEndStaysOneField) {
  on.localValues.Set("XRapport", "1");
  Add("A\tB\r\nC", 46347.5);
  ExportReport(on.station);
  EXPECT_EQ(File(), Line("A B C"));
}

TEST_F(RollingReport, AFileThatCannotBeMadeIsLogged) {
  std::filesystem::create_directory(on.stationDir.Path() + "/rapportzemo.txt");
  Add("A", 46347.5);
  ExportReport(on.station);
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "ExportRapport");
  EXPECT_NE((*on.First("error"))["text"].find("Problème de création du rapport de "),
            std::string::npos);
}

TEST_F(RollingReport, IsWrittenForMusicAndNotForSpots) {
  OnAirElement spot;
  spot.title = "ADVERTISER";
  spot.file = on.MakeSound("spot.wav", 5000);
  spot.code = -2;
  on.Append(spot);
  on.Append(spot);
  on.AppendCard(on.AddCard({.lengthMs = 8000, .artist = "MUSIC"}));
  on.Start();
  on.RunUntil(7000);
  ASSERT_GE(on.Events("report").size(), 2U) << on.Describe();
  EXPECT_EQ(File(), std::nullopt);
  on.RunUntil(14000);
  ASSERT_TRUE(File().has_value());
  EXPECT_EQ(File()->substr(0, 11), "21/11/2026\t");
  EXPECT_NE(File()->find("\tMUSIC\t"), std::string::npos);
  EXPECT_NE(File()->find("\tADVERTISER\t"), std::string::npos);  // spots count among the newest
}

TEST_F(RollingReport, AMachineWithoutReportsWritesNeitherRowsNorFile) {
  on.station.engine.ReportsDisabled = true;
  on.AppendCard(on.AddCard({.lengthMs = 8000}));
  on.Start();
  on.RunUntil(5000);
  ASSERT_EQ(on.Starts().size(), 1U);
  EXPECT_EQ(File(), std::nullopt);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "0");
}

}  // namespace
}  // namespace zemo::test
