// `zemoradio affidavit` from outside: what it says of a campaign agrees with the trace of the days.
#include <nlohmann/json.hpp>

#include "app/tests/BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class AffidavitProgram : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    MakeStation(std::vector<int>(12, 60), true);
    PutWav("station/Bakery.wav", 5);
    ASSERT_EQ(Run("campaign add --station station --machine machine --file station/Bakery.wav "
                  "--from 2025-11-20 --to 2025-11-21 --hours 12-12 --marks 5,20,35,50")
                  .status,
              0);
  }
  // The rows of the report that the simulated days wrote of spots, by the trace.
  std::vector<Json> Spots(const std::string& words) {
    const Result run = Run("simulate --station station --machine machine --in-place " + words);
    EXPECT_EQ(run.status, 0) << run.err;
    std::vector<Json> spots;
    for (const std::string& line : LinesOf(run.out))
      if (Json event = Json::parse(line); event["event"] == "report" && event["GENRE"] == "PUB")
        spots.push_back(event);
    return spots;
  }
  Result Affidavit(const std::string& words) {
    return Run(
        "affidavit --station station --machine machine --advertiser bakery "
        "--from 2025-11-20 --to 2025-11-20 " +
        words);
  }
};

TEST_F(AffidavitProgram, AgreesWithTheTrace) {
  // From 12:00 to 12:40: the crosses of 12:05, 12:20 and 12:35 air, that of 12:50 does not.
  const std::vector<Json> spots = Spots("--from '2025-11-20 12:00:00' --for 40m");
  ASSERT_EQ(spots.size(), 3U);
  const Result told = Affidavit("--json");
  ASSERT_EQ(told.status, 0) << told.err;
  const Json json = Json::parse(told.out);
  EXPECT_EQ(json["crosses"], 4);
  EXPECT_EQ(json["aired"], 3);
  EXPECT_EQ(json["missed"], 1);
  EXPECT_EQ(json["extras"], 0);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(spots[i]["AUTEUR"], "Bakery");
    EXPECT_EQ(json["lines"][i]["aired"], "2025-11-20 " + spots[i]["HEURE"].get<std::string>());
    EXPECT_EQ(json["lines"][i]["state"], "aired");
    EXPECT_GE(json["lines"][i]["late_s"].get<int>(), 0);
  }
  EXPECT_EQ(json["lines"][3]["due"], "2025-11-20 12:50:00");
  EXPECT_EQ(json["lines"][3]["state"], "missed");
  EXPECT_EQ(json["lines"][3]["file"], Path("station/Bakery.wav"));
}

TEST_F(AffidavitProgram, TheTableTheCsvAndTheSheetSayTheSame) {
  Spots("--from '2025-11-20 12:00:00' --for 10m");
  const Result told = Affidavit("--csv out.csv --xlsx out.xlsx");
  ASSERT_EQ(told.status, 0) << told.err;
  const std::vector<std::string> table = LinesOf(told.out);
  ASSERT_EQ(table.size(), 6U) << told.out;
  EXPECT_EQ(table[0], "bakery: 4 crosses, 1 aired, 3 missed");
  EXPECT_EQ(table[2].rfind("2025-11-20 12:05:00  2025-11-20 12:0", 0), 0U) << table[2];
  EXPECT_EQ(table[3].rfind("2025-11-20 12:20:00  missed", 0), 0U) << table[3];
  const std::vector<std::string> csv = LinesOf(ReadText(root_ / "out.csv"));
  ASSERT_EQ(csv.size(), 5U);
  EXPECT_EQ(csv[0], "due,aired,late_s,state,why,kind,campaign,file\r");
  EXPECT_NE(csv[1].find(",aired,,spot,1," + Path("station/Bakery.wav") + "\r"), std::string::npos)
      << csv[1];
  const Result cells = Shell(
      "python3 -c \"import zipfile; z = zipfile.ZipFile('out.xlsx'); "
      "print(z.read('xl/worksheets/sheet1.xml').decode().count('<row '), "
      "'2025-11-20 12:05:00' in z.read('xl/sharedStrings.xml').decode())\"");
  EXPECT_EQ(cells.out, "6 True\n") << cells.err;  // totals, heads, four crosses
}

// The campaign leaves the table on 22 November; asked on a copy of the station.
TEST_F(AffidavitProgram, AnEndedCampaignKeepsItsCrosses) {
  Spots("--from '2025-11-20 12:00:00' --for 10m");
  Put("purge", "+0 set SuppressionPub 1\n+0 compose\n");
  ASSERT_EQ(Run("simulate --station station --machine machine --in-place --no-start --for 1 "
                "--from '2025-11-22 12:00:00' --script purge --trace trace")
                .status,
            0);
  EXPECT_EQ(Run("campaign list --station station --machine machine").out, "");
  const Result told = Affidavit("");
  EXPECT_EQ(LinesOf(told.out).at(0), "bakery: 4 crosses, 1 aired, 3 missed") << told.err;
}

// Names as a formula, and a spot that aired 90 s before its minute.
TEST_F(AffidavitProgram, CellsThatASpreadsheetWouldRunAreTexts) {
  Put("rename",
      "+0 sql UPDATE GrillePub SET FILENAMEAUDIO = '=cmd(1),\"x\"', ANNONCEUR = '=1+1'\n"
      "+0 sql INSERT INTO Rapport(AUTEUR, GENRE, DATENUM) VALUES('=1+1', 'PUB', "
      "45981 + (12 * 3600 + 3 * 60 + 30) / 86400.0)\n");
  ASSERT_EQ(Run("simulate --station station --machine machine --in-place --no-start --for 1 "
                "--script rename --trace trace")
                .status,
            0);
  const Result told =
      Run("affidavit --station station --machine machine --advertiser '=1+1' --from 2025-11-20 "
          "--to 2025-11-20 --csv out.csv --xlsx out.xlsx");
  ASSERT_EQ(told.status, 0) << told.err;
  const std::vector<std::string> csv = LinesOf(ReadText(root_ / "out.csv"));
  EXPECT_EQ(csv.at(1),
            "2025-11-20 12:05:00,2025-11-20 12:03:30,-90,aired,,spot,1,"
            "\"'=cmd(1),\"\"x\"\"\"\r");
  const Result cells = Shell(
      "python3 -c \"import zipfile; z = zipfile.ZipFile('out.xlsx'); "
      "print('<f>' in z.read('xl/worksheets/sheet1.xml').decode(), "
      "'>=cmd(1)' in z.read('xl/sharedStrings.xml').decode(), "
      "'>=1+1: 4 crosses' in z.read('xl/sharedStrings.xml').decode())\"");
  EXPECT_EQ(cells.out, "False True True\n") << cells.err;
}

TEST_F(AffidavitProgram, AsksTheStationAndChangesNothing) {
  const auto before = Files("station");
  ASSERT_EQ(Affidavit("").status, 0);
  EXPECT_EQ(Files("station"), before);
}

TEST_F(AffidavitProgram, AnUnknownAdvertiserAndWrongDaysAreErrors) {
  const std::string head = "affidavit --station station --machine machine --advertiser ";
  Result told = Run(head + "Nobody --from 2025-11-20 --to 2025-11-20");
  EXPECT_EQ(told.status, 1);
  ExpectOneError(told.err);
  for (const char* days : {"--from 2025-11-21 --to 2025-11-20", "--from 2025-11-31 --to 2025-12-01",
                           "--from 2025-11-20"}) {
    told = Run(head + "Bakery " + days);
    EXPECT_EQ(told.status, 2) << days;
    ExpectOneError(told.err);
  }
}

TEST_F(AffidavitProgram, AFileThatCannotBeWrittenIsOneError) {
  const Result told = Affidavit("--csv nowhere/out.csv");
  EXPECT_EQ(told.status, 1);
  ExpectOneError(told.err);
}

}  // namespace
}  // namespace zemo
