// Ended campaigns leave the table, and nothing else goes.
#include <filesystem>

#include "traffic/CampaignPurge.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

std::string Codes(CampaignStation& s) {
  return s.SqlText(
      "SELECT group_concat(CODE, ' ') FROM (SELECT CODE FROM GrillePub ORDER BY CODE)");
}

TEST(CampaignPurge, TakesWhatEndedBeforeTodayAndLeavesTheRest) {
  CampaignStation s;
  s.AddCampaign({{"CAMPAGNEFIN", "'20/11/2026'"}});                       // 1: yesterday
  s.AddCampaign({{"CAMPAGNEFIN", "'21/11/2026'"}});                       // 2: today
  s.AddCampaign({{"CAMPAGNEFIN", "'01/12/2026'"}});                       // 3: to come
  s.AddCampaign({{"CAMPAGNEFIN", "'31/12/2025'"}});                       // 4: last year
  s.AddCampaign({{"CAMPAGNEFIN", "'JOURNALIER'"}});                       // 5: never
  s.AddCampaign({{"CAMPAGNEFIN", "'20/11/2026'"}, {"PRIORITY", "300"}});  // 6: yesterday
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "2 3 5");
  EXPECT_FALSE(s.station.notices.progress.visible);
}

TEST(CampaignPurge, TakesACampaignOnTheDayAfterItsLast) {
  CampaignStation s("2026-11-22 00:00:01");
  s.AddCampaign({{"CAMPAGNEFIN", "'21/11/2026'"}});
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "");
}

TEST(CampaignPurge, LeavesAllFiles) {
  CampaignStation s;
  for (const char* name : {"spot.wav", "spot.GPB", "spot.prg"}) s.MakeFile(name, "kept");
  s.AddCampaign({{"CAMPAGNEFIN", "'20/11/2026'"},
                 {"FILENAMEAUDIO", "'" + s.InFolder("spot.wav") + "'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("spot.GPB") + "'"}});
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "");
  EXPECT_EQ(s.File("spot.wav") + s.File("spot.GPB") + s.File("spot.prg"), "keptkeptkept");
}

// --- the archive ---

int32_t AddEnded(CampaignStation& s, const std::string& grid) {
  s.MakeFile("spot.GPB", grid);
  return s.AddCampaign({{"CAMPAGNEFIN", "'20/11/2026'"},
                        {"ANNONCEUR", "'Say \"Hi\", l''été'"},
                        {"CONTACT", "'a' || char(13, 10) || 'b'"},
                        {"PUB", "0"},
                        {"FILENAMEAUDIO", "'" + s.InFolder("spot.wav") + "'"},
                        {"FILENAMEGRILLE", "'" + s.InFolder("spot.GPB") + "'"}});
}

TEST(CampaignPurge, KeepsRecordAndGridBeforeDurably) {
  CampaignStation s;
  const std::string number = std::to_string(AddEnded(s, "X\r\n\r\n"));
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "");
  EXPECT_EQ(s.File("EndedCampaigns/" + number + ".GPB"), "X\r\n\r\n");
  EXPECT_EQ(s.File("EndedCampaigns/" + number + ".Txt"),
            "\"CODE\",\"1\"\r\n\"CAMPAGNEDEPART\",\"JOURNALIER\"\r\n"
            "\"CAMPAGNEFIN\",\"20/11/2026\"\r\n\"HDEPART\",\"07\"\r\n\"HFIN\",\"08\"\r\n"
            "\"FILENAMEAUDIO\",\"" +
                s.InFolder("spot.wav") +
                "\"\r\n\"DUREE\",\"15000\"\r\n"
                "\"ANNONCEUR\",\"Say \"\"Hi\"\", l'\xE9t\xE9\"\r\n"
                "\"CATEGORIE\",\"FOOD\"\r\n\"FILENAMEGRILLE\",\"" +
                s.InFolder("spot.GPB") +
                "\"\r\n\"PRIORITY\",\"10\"\r\n\"CONTACT\",\"a  b\"\r\n\"GENREASSOCIE\",\"\"\r\n"
                "\"DECOUPEH1\",\"00\"\r\n\"DECOUPEH2\",\"30\"\r\n\"DECOUPEH3\",\"\"\r\n"
                "\"DECOUPEH4\",\"\"\r\n\"DECOUPEH5\",\"\"\r\n\"DECOUPEH6\",\"\"\r\n"
                "\"DECOUPEH7\",\"\"\r\n\"DECOUPEH8\",\"\"\r\n\"PUB\",#FALSE#\r\n");
}

TEST(CampaignPurge, OfACampaignWithoutAGridFileKeepsNone) {
  CampaignStation s;
  AddEnded(s, "X\r\n");
  std::filesystem::remove(s.InFolder("spot.GPB"));
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "");
  EXPECT_NE(s.File("EndedCampaigns/1.Txt"), "(no file)");
  EXPECT_EQ(s.File("EndedCampaigns/1.GPB"), "(no file)");
}

// Its deletion failed the first time, and its grid file went before the second.
TEST(CampaignPurge, KeepsTheGridOfTheLastTryAlone) {
  CampaignStation s;
  AddEnded(s, "X\r\n");
  s.Sql("CREATE TRIGGER Held BEFORE DELETE ON GrillePub BEGIN SELECT RAISE(ABORT, 'held'); END");
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "1");
  EXPECT_EQ(s.File("EndedCampaigns/1.GPB"), "X\r\n");
  s.Sql("DROP TRIGGER Held");
  std::filesystem::remove(s.InFolder("spot.GPB"));
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "");
  EXPECT_EQ(s.File("EndedCampaigns/1.GPB"), "(no file)");
}

TEST(CampaignPurge, TakesNothingThatCannotBeKeptAndSaysWhy) {
  CampaignStation s;
  AddEnded(s, "X\r\n");
  s.MakeFile("EndedCampaigns", "a file in the folder's place");
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "1");
  ASSERT_NE(s.First("error"), nullptr);
  EXPECT_EQ((*s.First("error"))["where"], "SuppresionPub");
  EXPECT_NE((*s.First("error"))["text"].find("EndedCampaigns"), std::string::npos);
  std::filesystem::remove(s.InFolder("EndedCampaigns"));
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "");
}

TEST(CampaignPurge, TakesTheOthersWhereOneCannotBeKeptAndNamesIt) {
  CampaignStation s;
  AddEnded(s, "X\r\n");
  std::filesystem::create_directory(s.InFolder("no.GPB"));
  s.AddCampaign({{"CAMPAGNEFIN", "'20/11/2026'"},
                 {"ANNONCEUR", "'Baker'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("no.GPB") + "'"}});
  s.AddCampaign({{"CAMPAGNEFIN", "'20/11/2026'"}});
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "2");
  ASSERT_NE(s.First("error"), nullptr);
  EXPECT_NE((*s.First("error"))["text"].find("Baker"), std::string::npos);
}

TEST(CampaignPurge, TakesNothingWhoseGridFileCannotBeRead) {
  CampaignStation s;
  AddEnded(s, "");
  std::filesystem::remove(s.InFolder("spot.GPB"));
  std::filesystem::create_directory(s.InFolder("spot.GPB"));
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(Codes(s), "1");
  ASSERT_NE(s.First("error"), nullptr);
  EXPECT_EQ((*s.First("error"))["where"], "SuppresionPub");
}

TEST(CampaignPurge, OfAnEmptyTableShowsNothing) {
  CampaignStation s;
  s.station.notices.progress.text = "before";
  PurgeEndedCampaigns(s.station);
  EXPECT_EQ(s.station.notices.progress.text, "before");
}

TEST(CampaignPurge, LogsAFaultUnderItsOwnName) {
  CampaignStation s;
  s.station.base.Close();
  PurgeEndedCampaigns(s.station);
  ASSERT_NE(s.First("error"), nullptr);
  EXPECT_EQ((*s.First("error"))["where"], "SuppresionPub");
}

}  // namespace
}  // namespace zemo::test
