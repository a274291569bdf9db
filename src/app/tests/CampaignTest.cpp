// `zemoradio campaign` from outside: a campaign is added, goes on air at its crosses, is reported,
// and leaves when it ends.
#include <nlohmann/json.hpp>

#include "app/tests/BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class CampaignProgram : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    MakeStation(std::vector<int>(12, 60), true);
    PutWav("station/Bakery.wav", 5);
  }
  Result Campaign(const std::string& words) const {
    return Run("campaign " + words + " --station station --machine machine");
  }
  // Two days of November, 12:05 and 12:35.
  Result AddBakery(const std::string& more = "") const {
    return Campaign(
        "add --file station/Bakery.wav --from 2026-11-20 --to 2026-11-21 --hours 12-12 "
        "--marks 5,35 " +
        more);
  }
  std::vector<Json> Events(const std::string& words, const std::string& name) const {
    const Result run = Run("simulate --station station " + words);
    EXPECT_EQ(run.status, 0) << run.err;
    std::vector<Json> events;
    for (const std::string& line : LinesOf(run.out))
      if (Json event = Json::parse(line); event["event"] == name) events.push_back(event);
    return events;
  }
};

TEST_F(CampaignProgram, AddedIsListedAndShownWithItsGrid) {
  const Result added = AddBakery("--category food --contact Anne --cross '2026-11-21 12:35'");
  ASSERT_EQ(added.status, 0) << added.err;
  EXPECT_EQ(added.out, "campaign 1 added\n");
  EXPECT_EQ(Campaign("list").out,
            "1  Bakery  spot  20/11/2026  21/11/2026  priority 100  1 messages  " +
                Path("station/Bakery.wav") + "\n");
  const Json shown = Json::parse(Campaign("show 1 --json").out);
  EXPECT_EQ(shown["CODE"], 1);
  EXPECT_EQ(shown["CAMPAGNEDEPART"], "20/11/2026");
  EXPECT_EQ(shown["HDEPART"], "12");
  EXPECT_EQ(shown["DECOUPEH1"], "05");
  EXPECT_EQ(shown["DUREE"], 5000);
  EXPECT_EQ(shown["CATEGORIE"], "FOOD");
  EXPECT_EQ(shown["CONTACT"], "Anne");
  EXPECT_EQ(shown["PUB"], true);
  EXPECT_EQ(shown["FILENAMEGRILLE"], Path("station/Bakery.GPB"));
  EXPECT_EQ(shown["messages"], 1);
  EXPECT_EQ(shown["grid"], Json::parse(R"([["Mois","11","11"],["Jour","20","21"],["","V","S"],
                                          ["12:05","",""],["12:35","","X"]])"));
  EXPECT_EQ(Json::parse(Campaign("list --json").out)[0]["ANNONCEUR"], "Bakery");
  EXPECT_NE(Campaign("show 1").out.find("12:35    x\n"), std::string::npos);
  EXPECT_EQ(ReadText(root_ / "station/Bakery.GPB"), "\r\n\r\n\r\nX\r\n");
  EXPECT_EQ(ReadText(root_ / "station/Categori.Ini"), "FOOD\r\n");
}

TEST_F(CampaignProgram, GoesOnAirAtItsCrossesAndIsReported) {
  ASSERT_EQ(AddBakery("--advertiser 'Le Fournil' --cross '2026-11-20 12:05'").status, 0);
  const std::string span = "--from '2026-11-20 12:00:00' --for 40m ";
  const auto starts = Events(span, "start");
  std::vector<Json> spots;
  for (const Json& start : starts)
    if (start["code"] == -2) spots.push_back(start);
  ASSERT_EQ(spots.size(), 1u);
  EXPECT_EQ(spots[0]["file"], Path("station/Bakery.wav"));
  // The break waits for the end of a title of a minute at most.
  EXPECT_EQ(spots[0]["at"].get<std::string>().substr(0, 14), "2026-11-20T12:");
  EXPECT_GE(spots[0]["at"].get<std::string>().substr(14, 5), "05:00");
  EXPECT_LE(spots[0]["at"].get<std::string>().substr(14, 5), "06:10");
  std::vector<Json> reported;
  for (const Json& row : Events(span, "report"))
    if (row["GENRE"] == "PUB") reported.push_back(row);
  ASSERT_EQ(reported.size(), 1u);
  EXPECT_EQ(reported[0]["LADATE"], "20/11/2026");
}

TEST_F(CampaignProgram, LeavesWhenItEnds) {
  ASSERT_EQ(AddBakery().status, 0);
  Put("purge", "+0 set SuppressionPub 1\n+0 compose\n");
  const std::string words = " --no-start --in-place --for 1 --script purge --trace trace";
  ASSERT_EQ(Run("simulate --station station --from '2026-11-21 23:00:00'" + words).status, 0);
  EXPECT_EQ(LinesOf(Campaign("list").out).size(), 1u);
  ASSERT_EQ(Run("simulate --station station --from '2026-11-22 00:00:00'" + words).status, 0);
  EXPECT_EQ(Campaign("list").out, "");
  EXPECT_TRUE(std::filesystem::exists(root_ / "station/Bakery.GPB"));
}

TEST_F(CampaignProgram, PatternsCrossWeekdaysAndHours) {
  const Result added = Campaign(
      "add --file station/Bakery.wav --weekly --kind news --hours 7-9 --marks 0,30 "
      "--crosses 1-2/8 --crosses 7/9 --cross '3 07:30'");
  ASSERT_EQ(added.status, 0) << added.err;
  const Json shown = Json::parse(Campaign("show 1 --json").out);
  EXPECT_EQ(shown["CAMPAGNEFIN"], "JOURNALIER");
  EXPECT_EQ(shown["PUB"], false);
  EXPECT_EQ(shown["messages"], 7);  // 2 days and 2 marks, 1 day and 2 marks, 1
  EXPECT_EQ(shown["grid"][4], Json::parse(R"(["07:30","","","X","","","",""])"));
  EXPECT_EQ(shown["grid"][5], Json::parse(R"(["08:00","X","X","","","","",""])"));
  EXPECT_EQ(shown["grid"][8], Json::parse(R"(["09:30","","","","","","","X"])"));
}

TEST_F(CampaignProgram, RemovedGoesWithItsGridFile) {
  ASSERT_EQ(AddBakery().status, 0);
  const Result removed = Campaign("remove 1");
  EXPECT_EQ(removed.status, 0) << removed.err;
  EXPECT_EQ(removed.out, "campaign 1 removed\n");
  EXPECT_EQ(Campaign("list").out, "");
  EXPECT_FALSE(std::filesystem::exists(root_ / "station/Bakery.GPB"));
  EXPECT_TRUE(std::filesystem::exists(root_ / "station/Bakery.prg"));
  EXPECT_TRUE(std::filesystem::exists(root_ / "station/Bakery.wav"));
}

TEST_F(CampaignProgram, WhatIsRefusedIsOneLineAndChangesNothing) {
  ASSERT_EQ(AddBakery().status, 0);
  const Result used = AddBakery();
  EXPECT_EQ(used.status, 1);
  ExpectOneError(used.err);
  EXPECT_NE(used.err.find("attribué à l'annonceur Bakery"), std::string::npos) << used.err;
  PutWav("station/Other.wav", 2);
  for (const char* words :
       {"add --weekly --file station/none.wav --marks 0", "show 9", "remove 9",
        "add --weekly --file station/Other.wav --hours 7-8 --marks 0 --cross '1 09:00'",
        "add --weekly --file station/Other.wav --marks 0 --hours 7-8 --advertiser "
        "abcdefghijklmnopqrstuvwxyzabcdefghijklmno"}) {
    const Result refused = Campaign(words);
    EXPECT_EQ(refused.status, 1) << words;
    ExpectOneError(refused.err);
  }
  EXPECT_EQ(LinesOf(Campaign("list").out).size(), 1u);
  EXPECT_FALSE(std::filesystem::exists(root_ / "station/Other.GPB"));
  EXPECT_EQ(Run("campaign add --station station").status, 2);
}

TEST_F(CampaignProgram, ATemplateWithAnHourThatNoClockShowsIsOneErrorAndNoGrid) {
  Put("station/Decoupe.Ini", "\"07\",\"2147483647\",\"00\"\r\n");
  const Result refused = Campaign("add --weekly --file station/Bakery.wav");
  EXPECT_EQ(refused.status, 1);
  ExpectOneError(refused.err);
  EXPECT_NE(refused.err.find("Decoupe.Ini: there is no hour 2147483647"), std::string::npos)
      << refused.err;
  EXPECT_EQ(Campaign("list").out, "");
  EXPECT_EQ(Campaign("add --weekly --file station/Bakery.wav --hours 7-8 --marks 0").status, 0);
}

TEST_F(CampaignProgram, TellsAProgramOnAirToComposeAgain) {
  Put("station/ZemoOnOff.Dat", "0");
  ASSERT_EQ(AddBakery().status, 0);
  EXPECT_FALSE(std::filesystem::exists(root_ / "station/MajGrillePub.txt"));
  Put("station/ZemoOnOff.Dat", "1");
  ASSERT_EQ(Campaign("remove 1").status, 0);
  EXPECT_EQ(ReadText(root_ / "station/MajGrillePub.txt").size(), 12u);  // dd/mm/yyyy CR LF
}

// A byte is all that it should hold. The campaign is stored all the same.
TEST_F(CampaignProgram, TakesAnOnAirFileOfMoreThanFourMegabytesForOneOnAir) {
  Put("station/ZemoOnOff.Dat", "0");
  std::filesystem::resize_file(root_ / "station/ZemoOnOff.Dat", (4 << 20) + 1);
  const Result added = AddBakery();
  EXPECT_EQ(added.status, 0) << added.err;
  EXPECT_EQ(ReadText(root_ / "station/MajGrillePub.txt").size(), 12u);  // dd/mm/yyyy CR LF
}

// Known by the lock that an open program holds, whatever ZemoOnOff.Dat says.
TEST_F(CampaignProgram, ReachesAProgramThatIsOpenButStopped) {
  const Result run = Shell(
      "export Z=$zemoradio; python3 -c \"import fcntl, os, struct, subprocess, sys\n"
      "f = os.open('station/Triskin.LDB', os.O_RDWR | os.O_CREAT)\n"
      "lock = struct.pack('hhqqi', fcntl.F_RDLCK, os.SEEK_SET, 0, 0, 0)\n"
      "fcntl.fcntl(f, 37, lock)\n"  // F_OFD_SETLK, as an open program holds it
      "sys.exit(subprocess.call([os.environ.get('Z'), 'campaign', 'add', '--station', 'station', "
      "'--machine', 'machine', '--file', 'station/Bakery.wav', '--weekly', '--marks', '5', "
      "'--hours', '12-12']))\"");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(ReadText(root_ / "station/MajGrillePub.txt").size(), 12u);
}

// Titles long enough for a composition under them.
TEST_F(BlackBox, AnExportIsTakenInAsATitleStartsAndComposed) {
  MakeStation({200, 200, 200, 200}, true);
  PutWav("station/Bakery.wav", 5);
  const std::string line = "20/11/2026\t20/11/2026\t12\t12\t05\t\t\t\t\t\t\t\t" +
                           Path("station/Bakery.wav") + "\t5000\tBakery\tFOOD\t" +
                           Path("station/given.GPB") + "\t10\t\tTrue\r\n";
  Put("station/given.GPB", "X\r\n");
  Put("station/ExportPubs.Txt", line + line);
  const Result run = Run("simulate --station station --from '2026-11-20 12:00:00' --for 10m");
  ASSERT_EQ(run.status, 0) << run.err;
  std::vector<std::string> told;
  for (const std::string& text : LinesOf(run.out)) {
    const Json event = Json::parse(text);
    if (event["event"] == "grid")
      told.push_back("grid of " + std::to_string(event["spots"].get<int>()));
    if (event["event"] == "import")
      told.push_back("import of " + std::to_string(event["lines"].get<int>()) + ", " +
                     std::to_string(event["added"].get<int>()) + " added");
    if (event["event"] == "start" && event["code"] == -2) told.push_back("spot");
  }
  EXPECT_EQ(told, (std::vector<std::string>{"grid of 0", "import of 2, 2 added", "grid of 2",
                                            "spot", "spot"}));
}

}  // namespace
}  // namespace zemo
