// `zemoradio report` from outside. 21 November 2026 is day 46347.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class ReportProgram : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    MakeStation({10});
    AddRow("20/11/2026", "22:00:00", "Abba", "Waterloo", "POP", "INTERNATIONAL",
           "46346.9166666667");
    AddRow("21/11/2026", "08:00:00", "Barbara", "Göttingen", "CHANSON", "NATIONAL",
           "46347.3333333333");
    AddRow("21/11/2026", "08:03:00", "Bakery", "", "PUB", "", "46347.3354166667");
    AddRow("21/11/2026", "08:04:00", "Abba", "Waterloo", "POP", "INTERNATIONAL",
           "46347.3361111111");
  }
  void AddRow(const std::string& date, const std::string& time, const std::string& artist,
              const std::string& title, const std::string& genre, const std::string& variety,
              const std::string& moment) const {
    const Result added = Shell(
        "sqlite3 station/Triskin.MDB \"INSERT INTO Rapport(LADATE, HEURE, AUTEUR, TITRE, GENRE, "
        "VARIETE, DATENUM) VALUES('" +
        date + "', '" + time + "', '" + artist + "', '" + title + "', '" + genre + "', '" +
        variety + "', " + moment + ")\"");
    ASSERT_EQ(added.status, 0) << added.err;
  }
  Result Report(const std::string& words) const {
    return Run("report --station station --machine machine " + words);
  }
};

TEST_F(ReportProgram, TellsTheRowsOfTheDaysFromMidnightToMidnightWithTheirGaps) {
  const auto before = Files("station");
  const Result told = Report("--from 2026-11-21 --to 2026-11-21");
  ASSERT_EQ(told.status, 0) << told.err;
  EXPECT_EQ(told.err, "");
  const auto lines = LinesOf(told.out);
  ASSERT_EQ(lines.size(), 5U) << told.out;
  EXPECT_EQ(lines[0], "21/11/2026 to 21/11/2026: 3 rows");
  EXPECT_EQ(
      lines[1],
      "DATE        TIME                 ARTIST   TITLE      GENRE    VARIETY        COMPOSER  "
      "LABEL  REFERENCE");
  EXPECT_EQ(lines[2], "21/11/2026  08:00:00 - 00:03:00  Barbara  Göttingen  CHANSON  NATIONAL");
  EXPECT_EQ(lines[4],
            "21/11/2026  08:04:00             Abba     Waterloo   POP      INTERNATIONAL");
  EXPECT_EQ(Files("station"), before);
}

TEST_F(ReportProgram, TellsTheRowsAsJsonUnderTheNamesOfTheirFields) {
  const Result told = Report("--from 2026-11-20 --to 2026-11-21 --artist ABB --json");
  ASSERT_EQ(told.status, 0) << told.err;
  const Json json = Json::parse(told.out);
  EXPECT_EQ(json["from"], "2026-11-20");
  EXPECT_EQ(json["to"], "2026-11-21");
  EXPECT_EQ(json["count"], 2);
  ASSERT_EQ(json["rows"].size(), 2U);
  EXPECT_EQ(json["rows"][0], (Json{{"LADATE", "20/11/2026"},
                                   {"HEURE", "22:00:00"},
                                   {"AUTEUR", "Abba"},
                                   {"TITRE", "Waterloo"},
                                   {"GENRE", "POP"},
                                   {"VARIETE", "INTERNATIONAL"},
                                   {"AUTEURCOMPOSITEUR", ""},
                                   {"LABEL", ""},
                                   {"REFERENCE", ""},
                                   {"DATENUM", 46346.9166666667},
                                   {"gap_s", 36240}}));  // 10 h 4 min
  EXPECT_EQ(json["rows"][1]["gap_s"], Json());
}

TEST_F(ReportProgram, TellsRotationsAndShares) {
  const Result told = Report("--from 2026-11-20 --to 2026-11-21 --stats");
  ASSERT_EQ(told.status, 0) << told.err;
  const auto lines = LinesOf(told.out);
  ASSERT_EQ(lines.size(), 5U) << told.out;
  EXPECT_EQ(lines[1], "1  NATIONAL = 33 %  2  INTERNATIONAL = 67 %  Total 3");
  EXPECT_EQ(lines[3], "0001   Barbara  Göttingen  CHANSON  NATIONAL");
  EXPECT_EQ(lines[4], "0002   Abba     Waterloo   POP      INTERNATIONAL");
  const Json json = Json::parse(Report("--from 2026-11-20 --to 2026-11-21 --stats --json").out);
  EXPECT_EQ(json["count"], 4);
  EXPECT_EQ(json["rotations"][1], (Json{{"plays", 2},
                                        {"AUTEUR", "Abba"},
                                        {"TITRE", "Waterloo"},
                                        {"GENRE", "POP"},
                                        {"VARIETE", "INTERNATIONAL"},
                                        {"LABEL", ""}}));
  EXPECT_EQ(json["shares"], (Json{{{"VARIETE", "NATIONAL"}, {"plays", 1}, {"percent", 33}},
                                  {{"VARIETE", "INTERNATIONAL"}, {"plays", 2}, {"percent", 67}}}));
  EXPECT_EQ(json["total"], 3);
}

// Titles of a minute each: the rows as the engine told of them while it
// wrote them, and each title's plays by them.
TEST_F(ReportProgram, AgreesWithTheTraceOfTwentyMinutesOnAir) {
  MakeStation(std::vector<int>(12, 60), true);
  const Result air =
      Run("simulate --station station --machine machine --in-place --from '2026-12-01 12:00:00' "
          "--for 20m");
  ASSERT_EQ(air.status, 0) << air.err;
  std::vector<Json> written;
  for (const std::string& line : LinesOf(air.out))
    if (Json event = Json::parse(line); event["event"] == "report") written.push_back(event);
  ASSERT_GE(written.size(), 10U);
  const std::string day = "--from 2026-12-01 --to 2026-12-01 ";
  const Json rows = Json::parse(Report(day + "--json").out)["rows"];
  ASSERT_EQ(rows.size(), written.size());
  std::map<std::string, int> plays;
  for (size_t i = 0; i < rows.size(); ++i) {
    for (const char* field : {"LADATE", "HEURE", "AUTEUR", "TITRE", "GENRE", "VARIETE"})
      EXPECT_EQ(rows[i][field], written[i][field]) << i;
    ++plays[written[i]["TITRE"]];
  }
  const Json rotations = Json::parse(Report(day + "--stats --json").out)["rotations"];
  ASSERT_EQ(rotations.size(), plays.size());
  for (const Json& rotation : rotations) EXPECT_EQ(rotation["plays"], plays[rotation["TITRE"]]);
}

TEST_F(ReportProgram, FiltersByGenreAndVariety) {
  const std::string days = "--from 2026-11-20 --to 2026-11-21 --json ";
  EXPECT_EQ(Json::parse(Report(days + "--genre pu").out)["count"], 1);
  EXPECT_EQ(Json::parse(Report(days + "--variety inter --genre pop").out)["count"], 2);
  EXPECT_EQ(Json::parse(Report(days + "--variety inter --genre chanson").out)["count"], 0);
}

TEST_F(ReportProgram, WritesTextAndSpreadsheets) {
  const std::string days = "--from 2026-11-20 --to 2026-11-21 ";
  ASSERT_EQ(Report(days + "--txt rows.txt --xlsx rows").status, 0);
  const auto rows = LinesOf(ReadText(root_ / "rows.txt"));
  ASSERT_EQ(rows.size(), 4U);
  EXPECT_EQ(rows[1],
            "21/11/2026\t08:00:00 - 00:03:00\tBarbara\tG\xF6ttingen\tCHANSON\tNATIONAL\t\t\t\r");
  ASSERT_EQ(Report(days + "--stats --txt stats.txt --xlsx stats.XLSX").status, 0);
  EXPECT_EQ(ReadText(root_ / "stats.txt"),
            "0001\tBarbara\tG\xF6ttingen\tCHANSON\tNATIONAL\t\r\n"
            "0002\tAbba\tWaterloo\tPOP\tINTERNATIONAL\t\r\n");
  const auto countRows = [&](const std::string& file) {
    return Shell("python3 -c \"import zipfile; print(zipfile.ZipFile('" + file +
                 "').read('xl/worksheets/sheet1.xml').decode().count('<row '))\"")
        .out;
  };
  EXPECT_EQ(countRows("rows.xlsx"), "5\n");
  EXPECT_EQ(countRows("stats.XLSX"), "3\n");
}

TEST_F(ReportProgram, ASpanWithoutRowsIsAnAnswerButNoFile) {
  const Result told = Report("--from 2020-01-01 --to 2020-01-02");
  EXPECT_EQ(told.status, 0) << told.err;
  EXPECT_EQ(told.out, "01/01/2020 to 02/01/2020: 0 rows\n");
  const Json json = Json::parse(Report("--from 2020-01-01 --to 2020-01-02 --stats --json").out);
  EXPECT_EQ(json["rotations"], Json::array());
  EXPECT_EQ(json["total"], 0);
  const Result file = Report("--from 2020-01-01 --to 2020-01-02 --txt none.txt");
  EXPECT_EQ(file.status, 1);
  ExpectOneError(file.err);
  EXPECT_FALSE(std::filesystem::exists(root_ / "none.txt"));
}

TEST_F(ReportProgram, WrongWordsAreStatus2) {
  for (const char* words :
       {"", "--from 2026-11-21", "--to 2026-11-21", "--from 2026-11-21 --to 21/11/2026",
        "--from 2026-02-30 --to 2026-11-21", "--from 2026-11-22 --to 2026-11-21",
        "--from 2026-11-21 --to 2026-11-21 --csv x"}) {
    const Result refused = Report(words);
    EXPECT_EQ(refused.status, 2) << words;
    ExpectOneError(refused.err);
    EXPECT_EQ(refused.out, "");
  }
}

TEST_F(ReportProgram, WorkThatFailsIsStatus1) {
  const std::string days = " --from 2026-11-20 --to 2026-11-21";
  for (const std::string& words :
       {"report --station nowhere" + days,
        "report --station station --machine machine --txt nowhere/rows.txt" + days,
        "report --station station --machine machine --xlsx nowhere/rows.xlsx" + days}) {
    const Result failed = Run(words);
    EXPECT_EQ(failed.status, 1) << words;
    ExpectOneError(failed.err);
    EXPECT_EQ(failed.out, "") << words;
  }
}

TEST_F(ReportProgram, ABaseThatIsNoneIsAnError) {
  Put("station/Triskin.MDB", "this is no base");
  const Result failed = Report("--from 2026-11-20 --to 2026-11-21");
  EXPECT_EQ(failed.status, 1);
  ExpectOneError(failed.err);
}

}  // namespace
}  // namespace zemo
