// The campaigns' files of any bytes: read without harm, and never made worse by reading.
#include <filesystem>

#include "platform/tests/RandomBytes.h"
#include "station/SideFileText.h"
#include "traffic/CampaignImport.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

constexpr int kRounds = 2000;

TEST(CampaignDamagedFiles, ATemplateOfAnyBytesIsTakenWholeOrNotAndNeverWritten) {
  CampaignStation s;
  RandomBytes random(21);
  int taken = 0, refused = 0;
  for (int round = 0; round < kRounds; ++round) {
    const std::string bytes = random.Text(120);
    s.MakeFile("Decoupe.Ini", bytes);
    s.seen.clear();
    s.station.engine.loggedFaults.clear();
    CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {"11", "12"}, "13", "14");
    LoadSaveDecoupe(s.station, "Load", form);
    ASSERT_FALSE(FindWrongMark(form)) << round;
    const bool changed =
        form.HDepPub + form.HFinPub + form.DecoupagePub[0] + form.DecoupagePub[1] != "13141112";
    const bool told = s.First("error") != nullptr;
    ASSERT_FALSE(changed && told) << round;
    taken += changed;
    refused += told;
    for (const std::string& mark : form.DecoupagePub) ASSERT_TRUE(IsValidUtf8(mark)) << round;
    ASSERT_EQ(s.File("Decoupe.Ini"), bytes) << round;
  }
  EXPECT_GT(taken, kRounds / 10);  // both are met often, so that the above says something
  EXPECT_GT(refused, 10);
}

TEST(CampaignDamagedFiles, AGridOfAnyBytesKeepsItsShapeAndItsFile) {
  CampaignStation s;
  RandomBytes random(22);
  for (int round = 0; round < kRounds; ++round) {
    const std::string bytes = random.Text(150) + (round % 2 == 0 ? "X\r\nX" : "");
    s.MakeFile("spot.GPB", bytes);
    CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {"00", "30"});
    CmdInitGrille(s.station, form);
    const int rows = form.GPub.RowCount();
    LSGrillePub(s.station, form, "Load", s.InFolder("spot.GPB"));
    ASSERT_EQ(form.GPub.RowCount(), rows) << round;
    ASSERT_EQ(s.File("spot.GPB"), bytes) << round;
  }
  EXPECT_EQ(s.First("error"), nullptr);
}

// Each line either joins the table or is logged; the file goes, and no other table is touched.
TEST(CampaignDamagedFiles, CampaignsOfAnyBytesAreTakenInOrLogged) {
  CampaignStation s;
  RandomBytes random(23);
  s.station.base.Db().Execute("PRAGMA synchronous = OFF");  // the rounds do not wait for the disk
  for (int round = 0; round < kRounds; ++round) {
    s.MakeFile("ExportPubs.Txt", random.Text(150));
    ASSERT_NO_THROW(ImportExportPubs(s.station)) << round;
    ASSERT_EQ(s.File("ExportPubs.Txt"), "(no file)") << round;
    if (round % 100 == 99) s.station.base.Db().Execute("DELETE * FROM GrillePub");
  }
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM Cnf"), "1");
  EXPECT_EQ(s.SqlText("PRAGMA integrity_check"), "ok");
}

TEST(CampaignDamagedFiles, ThatCannotBeReadStayAndCostOneLine) {
  CampaignStation s;
  for (const char* name : {"Decoupe.Ini", "spot.GPB", "ExportPubs.Txt"})
    std::filesystem::create_directory(s.InFolder(name));
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {"15"});
  LoadSaveDecoupe(s.station, "Load", form);
  EXPECT_EQ(form.DecoupagePub[0], "15");
  CmdInitGrille(s.station, form);
  LSGrillePub(s.station, form, "Load", s.InFolder("spot.GPB"));
  EXPECT_EQ(s.Events("error").size(), 2U);
  EXPECT_THROW(ImportExportPubs(s.station), FileError);  // its caller logs it
  for (const char* name : {"Decoupe.Ini", "spot.GPB", "ExportPubs.Txt"})
    EXPECT_TRUE(std::filesystem::is_directory(s.InFolder(name))) << name;
}

}  // namespace
}  // namespace zemo::test
