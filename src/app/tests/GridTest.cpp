// `zemoradio grid` and the orders of the day's grid, from outside.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class Grid : public BlackBox {
 protected:
  // A campaign of Saturday, 21 November 2026 alone, with crosses at these of its four moments:
  // 10:00, 10:01, 11:00 and 11:01. Its orders.
  std::string Campaign(const std::string& name, int seconds, bool spot, int priority,
                       const std::string& crosses) const {
    PutWav("station/" + name + ".wav", seconds);
    std::string lines;
    for (const char cross : crosses) lines += cross == 'X' ? "X\r\n" : "\r\n";
    Put("station/" + name + ".GPB", lines);
    return "+0 sql INSERT INTO GrillePub(CAMPAGNEDEPART, CAMPAGNEFIN, HDEPART, HFIN, DECOUPEH1, "
           "DECOUPEH2, FILENAMEAUDIO, FILENAMEGRILLE, DUREE, ANNONCEUR, PRIORITY, PUB) VALUES("
           "'21/11/2026', '21/11/2026', '10', '11', '00', '01', '" +
           Path("station/" + name + ".wav") + "', '" + Path("station/" + name + ".GPB") + "', " +
           std::to_string(seconds * 1000) + ", '" + name + "', " + std::to_string(priority) + ", " +
           (spot ? "-1" : "0") + ")\n";
  }
  // Spots of 20 and 50 s at 10:00, one of them at 11:01 too, news at 11:00; a minute later the next
  // break of 10:00.
  void MakeCampaigns() const {
    Put("campaigns", Campaign("first", 20, true, 10, "X..X") +
                         Campaign("second", 50, true, 20, "XX..") +
                         Campaign("news", 5, false, 5, "..X."));
    const Result made = Run(
        "simulate --station station --in-place --no-start --for 0 --script campaigns --trace made");
    ASSERT_EQ(made.status, 0) << made.err;
    ASSERT_EQ(ReadText(root_ / "made").find("\"error\""), std::string::npos);
  }
  static std::vector<Json> Events(const std::string& trace, const std::string& name) {
    std::vector<Json> events;
    for (const std::string& line : LinesOf(trace))
      if (Json json = Json::parse(line); json["event"] == name) events.push_back(json);
    return events;
  }
};

// One line of four, random bytes, and nothing at all; `news` stays as it was.
TEST_F(Grid, AGridFileThatDoesNotFitIsNamedByGridAndCheck) {
  MakeCampaigns();
  const std::pair<const char*, const char*> damages[] = {
      {"X\r\n", "the grid file has 1 lines, the campaign's grid 4 cells: "},
      {"X\r\n\r\n\xFF\xFE?\r\n\r\n", "line 3 of the grid file is neither X nor empty: "},
      {"", "the grid file has 0 lines, the campaign's grid 4 cells: "}};
  const std::string file = Path("station/first.GPB");
  for (const auto& [bytes, damage] : damages) {
    Put("station/first.GPB", bytes);
    const std::string text = damage + file;
    const Result grid = Run("grid --station station --machine machine --day 2026-11-21");
    EXPECT_EQ(grid.status, 0) << grid.err;
    EXPECT_NE(grid.out.find("\n! campaign 1, first: " + text + "\n"), std::string::npos)
        << grid.out;
    const Result json = Run("grid --station station --machine machine --day 2026-11-21 --json");
    EXPECT_EQ(Json::parse(json.out)["errors"], Json::array({"campaign 1, first: " + text}));
    const Result check = Run("check station");
    EXPECT_EQ(check.status, 1);
    EXPECT_NE(check.out.find("check: campaign: 1 first: " + text + "\n"), std::string::npos)
        << check.out;
  }
  const Result told =
      Run("affidavit --station station --machine machine --advertiser first "
          "--from 2026-11-21 --to 2026-11-21 --csv out.csv");
  EXPECT_EQ(told.out,
            "first: 0 crosses, 0 aired, 0 missed, 1 damaged grids\n! campaign 1: the grid "
            "file has 0 lines, the campaign's grid 4 cells: " +
                file + "\n");
  EXPECT_EQ(LinesOf(ReadText(root_ / "out.csv")).at(1),
            ",,,damaged,\"the grid file has 0 lines, the campaign's grid 4 cells: " + file +
                "\",spot,1," + Path("station/first.wav") + "\r");
  Put("station/first.GPB", "X\r\n\r\n\r\nX\r\n");
  EXPECT_EQ(Run("check station").out.find("campaign: 1"), std::string::npos);
}

// A row whose width the base did not keep: as much memory as any other takes.
TEST_F(Grid, ARowOfHoursWithoutABoundTakesNoMemory) {
  MakeCampaigns();
  ASSERT_EQ(
      Shell("python3 -c \"import sqlite3; b = sqlite3.connect('station/Triskin.MDB'); "
            "b.execute('PRAGMA ignore_check_constraints = ON'); "
            "b.execute('UPDATE GrillePub SET HFIN = 2147483647 WHERE CODE = 1'); b.commit()\"")
          .status,
      0);
  const Result grid = Shell(
      "ulimit -v 4000000; $zemoradio grid --station station --machine machine "
      "--day 2026-11-21");
  EXPECT_EQ(grid.status, 0) << grid.err;
  EXPECT_NE(grid.out.find("! campaign 1, first: there is no hour 2147483647"), std::string::npos)
      << grid.out;
  EXPECT_NE(grid.out.find("second (00:50)"), std::string::npos);
}

TEST_F(Grid, TheBreaksOfADayStandInATable) {
  MakeCampaigns();
  const auto before = Files("station");
  const Result result = Run("grid --station station --machine machine --day 2026-11-21");
  EXPECT_EQ(result.status, 0) << result.err;
  // 20 + 50 s less twice PmixPubs stay above the minute up to 10:01.
  const std::vector<std::string> expected = {
      "2026-11-21: 4 breaks, 4 spots, 1 news", "MOMENT  LENGTH  TYPE     ELEMENTS",
      "10:00   01:10   spots    first (00:20), second (00:50)"};
  const auto lines = LinesOf(result.out);
  ASSERT_EQ(lines.size(), 7U) << result.out;
  for (size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(lines[i], expected[i]);
  EXPECT_NE(lines[3].find("! too long: 01:"), std::string::npos);
  EXPECT_NE(lines[3].find("01:00 up to the break of 10:01"), std::string::npos);
  EXPECT_EQ(lines[5], "11:00   00:05   news     news (00:05)");
  EXPECT_EQ(Files("station"), before);  // nothing of the station is touched
}

TEST_F(Grid, AnotherDayHasItsOwnBreaks) {
  MakeCampaigns();
  const Result result = Run("grid --station station --machine machine --day 2026-11-22");
  EXPECT_EQ(result.out, "2026-11-22: 0 breaks, 0 spots, 0 news\n");
  EXPECT_EQ(result.status, 0);
}

TEST_F(Grid, WhatIsMissingAndWhatIsTooLongStandsInTheJsonToo) {
  MakeCampaigns();
  std::filesystem::remove(root_ / "station/first.wav");
  const Result result = Run("grid --station station --machine machine --day 2026-11-21 --json");
  ASSERT_EQ(result.status, 0) << result.err;
  const Json json = Json::parse(result.out);
  EXPECT_EQ(json["day"], "2026-11-21");
  EXPECT_EQ(json["spots"], 4);
  ASSERT_EQ(json["breaks"].size(), 4U);
  const Json& first = json["breaks"][0];
  EXPECT_EQ(first["moment"], "10:00");
  EXPECT_EQ(first["type"], "Pubs");
  EXPECT_EQ(first["length_ms"], 50000);
  EXPECT_EQ(first["elements"][0]["state"], "missing");
  EXPECT_EQ(first["elements"][1]["state"], "good");
  EXPECT_TRUE(first["too_long_for"].is_null());  // 50 s fit
}

TEST_F(Grid, ABreakThatRunsIntoThePipIsToldSo) {
  PutWav("station/pip.wav", 3);
  Put("pips", "+0 sql UPDATE Toph SET FICHIER = '" + Path("station/pip.wav") +
                  "' WHERE HEURE = 11\n+0 sql UPDATE GrillePub SET DECOUPEH2 = '59'\n");
  MakeCampaigns();
  ASSERT_EQ(
      Run("simulate --station station --in-place --no-start --for 0 --script pips --trace made")
          .status,
      0);
  const Result result = Run("grid --station station --machine machine --day 2026-11-21 --json");
  const Json json = Json::parse(result.out);
  // The pip begins at 10:59:58: 58 s behind the break of 50.
  EXPECT_TRUE(json["breaks"][1]["too_long_for"].is_null()) << result.out;
  PutWav("station/second.wav", 70);
  const Json longer =
      Json::parse(Run("grid --station station --machine machine --day 2026-11-21 --json").out);
  EXPECT_EQ(longer["breaks"][1]["too_long_for"]["next"], "pip");
  EXPECT_EQ(longer["breaks"][1]["too_long_for"]["moment"], "11:00");
  EXPECT_EQ(longer["breaks"][1]["too_long_for"]["gap_s"], 58);
}

TEST_F(Grid, WrongUsageIsStatusTwoAndWhatIsNotThereStatusOne) {
  for (const char* arguments : {"--day 21/11/2026", "--day 2026-02-30", "more"}) {
    const Result result = Run(std::string("grid --station station ") + arguments);
    EXPECT_EQ(result.status, 2) << arguments;
    ExpectOneError(result.err);
  }
  const Result result = Run("grid --station nowhere");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "zemoradio: there is no station folder nowhere\n");
}

TEST_F(Grid, TheOrdersCopyABreakAndPreviewADay) {
  MakeCampaigns();
  Put("orders",
      "+1 break 1\n+1 break 2 at 2\n+1 break 9\n+1 dump\n+1 preview 2026-11-22\n+1 set "
      "SuppressionPub 1\n"
      "+0 preview 2026-11-21\n");
  const Result result =
      Run("simulate --station station --machine machine --from '2026-11-21 09:00:00' --for 10 "
          "--no-start "
          "--script orders");
  ASSERT_EQ(result.status, 0) << result.err;
  const auto breaks = Events(result.out, "break");
  ASSERT_EQ(breaks.size(), 2U) << result.out;
  EXPECT_EQ(breaks[0]["routine"], "AjoutPubPlaylist");
  EXPECT_EQ(breaks[0]["rows"], 2);
  EXPECT_EQ(breaks[1]["routine"], "InsertPubPlaylist");
  EXPECT_EQ(breaks[1]["position"], 2);
  const auto errors = Events(result.out, "error");
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0]["text"], "the day's grid has no row 9");
  const auto states = Events(result.out, "state");
  ASSERT_EQ(states.size(), 1U);
  const Json& pl = states[0]["pl"];
  ASSERT_EQ(pl.size(), 3U);
  EXPECT_EQ(pl[0][0], "first");
  EXPECT_EQ(pl[1][0], "second");
  EXPECT_EQ(pl[1][3], "Pub");
  const auto dates = Events(result.out, "system");
  ASSERT_EQ(dates.size(), 1U);  // the second preview is refused
  EXPECT_EQ(dates[0]["action"], "date");
  EXPECT_EQ(dates[0]["value"], "2026-11-22");
  EXPECT_EQ(Events(result.out, "message").size(), 2U);
  const auto grids = Events(result.out, "grid");
  ASSERT_EQ(grids.size(), 2U);
  EXPECT_EQ(grids[0]["rows"], 4);
  EXPECT_EQ(grids[1]["rows"], 0);
}

}  // namespace
}  // namespace zemo
