// "rapportzemo.txt": the newest rows for outside programs.
#include <gtest/gtest.h>

#include <filesystem>

#include "reports/RollingReport.h"
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
