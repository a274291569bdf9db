// Ended campaigns leave the table, and nothing else goes.
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
  SuppresionPub(s.station);
  EXPECT_EQ(Codes(s), "2 3 5");
  EXPECT_FALSE(s.station.screen.LblProgression.visible);
}

TEST(CampaignPurge, TakesACampaignOnTheDayAfterItsLast) {
  CampaignStation s("2026-11-22 00:00:01");
  s.AddCampaign({{"CAMPAGNEFIN", "'21/11/2026'"}});
  SuppresionPub(s.station);
  EXPECT_EQ(Codes(s), "");
}

TEST(CampaignPurge, LeavesAllFiles) {
  CampaignStation s;
  for (const char* name : {"spot.wav", "spot.GPB", "spot.prg"}) s.MakeFile(name, "kept");
  s.AddCampaign({{"CAMPAGNEFIN", "'20/11/2026'"},
                 {"FILENAMEAUDIO", "'" + s.InFolder("spot.wav") + "'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("spot.GPB") + "'"}});
  SuppresionPub(s.station);
  EXPECT_EQ(Codes(s), "");
  EXPECT_EQ(s.File("spot.wav") + s.File("spot.GPB") + s.File("spot.prg"), "keptkeptkept");
}

TEST(CampaignPurge, LeavesTheTableInOrderOfPassage) {
  CampaignStation s;
  s.AddCampaign({{"ANNONCEUR", "'Late'"}, {"PRIORITY", "20"}});
  s.AddCampaign({{"ANNONCEUR", "'Early'"}, {"PRIORITY", "10"}});
  s.station.base.Tables().GrillePub->SetIndex("CODE");
  SuppresionPub(s.station);
  s.station.base.Tables().GrillePub->MoveFirst();
  EXPECT_EQ(s.station.base.Tables().GrillePub->Text("ANNONCEUR"), "Early");
}

TEST(CampaignPurge, OfAnEmptyTableShowsNothing) {
  CampaignStation s;
  s.station.screen.LblProgression = "before";
  SuppresionPub(s.station);
  EXPECT_EQ(s.station.screen.LblProgression.text, "before");
}

TEST(CampaignPurge, LogsAFaultUnderItsOwnName) {
  CampaignStation s;
  s.station.base.Close();
  SuppresionPub(s.station);
  ASSERT_NE(s.First("error"), nullptr);
  EXPECT_EQ((*s.First("error"))["where"], "SuppresionPub");
}

}  // namespace
}  // namespace zemo::test
