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
    LoadSaveMarks(s.station, "Load", form);
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

// Two marks of one hour and seven days: 14 cells. What the lines say is worked out here on its own.
TEST(CampaignDamagedFiles, AGridOfAnyBytesGivesItsCrossesOrIsDamageAndIsNeverWritten) {
  CampaignStation s;
  RandomBytes random(22);
  constexpr size_t kCells = 14;
  int whole = 0, damaged = 0, crosses = 0;
  for (int round = 0; round < kRounds; ++round) {
    std::string bytes;
    if (round % 2 == 0) {  // of lines, mostly as many as there are cells
      const uint32_t lines = random.Below(4) == 0 ? random.Below(20) : kCells;
      for (uint32_t i = 0; i < lines; ++i)
        bytes += random.Below(3) == 0 ? "X\r\n" : random.Below(200) == 0 ? "Y\r\n" : "\r\n";
    } else {
      bytes = random.Text(150);
    }
    s.MakeFile("spot.GPB", bytes);
    CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {"00", "30"});
    BuildDatedGrid(s.station, form);
    ASSERT_TRUE(LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("spot.GPB")));
    ASSERT_EQ(form.GPub.RowCount(), 5) << round;
    const std::vector<std::string> lines = SplitLines(DecodeSideFile(bytes));
    bool fits = lines.size() == kCells;
    for (const std::string& line : lines) fits = fits && (Trim(line).empty() || Trim(line) == "X");
    ASSERT_EQ(form.damage.empty(), fits) << round << ": " << form.damage;
    for (size_t cell = 0; cell < kCells; ++cell) {
      const bool cross = cell < lines.size() && Trim(lines[cell]) == "X";
      ASSERT_EQ(form.GPub.Cell(static_cast<int>(3 + cell / 7), static_cast<int>(1 + cell % 7)),
                cross ? "X" : "")
          << round << " " << cell;
      crosses += cross;
    }
    ASSERT_EQ(s.File("spot.GPB"), bytes) << round;
    ++(fits ? whole : damaged);
  }
  EXPECT_GT(whole, 300);  // all are met often, so that the above says something
  EXPECT_GT(damaged, 300);
  EXPECT_GT(crosses, 1000);
}

// Each line joins the table, is known by its sound file, or is logged; the file goes, and no other
// table is touched.
TEST(CampaignDamagedFiles, CampaignsOfAnyBytesAreTakenInOrLogged) {
  CampaignStation s;
  RandomBytes random(23);
  s.station.base.Db().Execute("PRAGMA synchronous = OFF");  // the rounds do not wait for the disk
  const std::string cnf = s.SqlText("SELECT group_concat(quote(Langue), ',') FROM Cnf");
  int added = 0, refused = 0;
  for (int round = 0; round < kRounds; ++round) {
    const std::string bytes = random.Text(150) + (round % 2 == 0 ? "\t\t\t\t" : "");
    s.MakeFile("ExportPubs.Txt", bytes);
    s.station.base.Db().Execute("DELETE * FROM GrillePub");
    s.seen.clear();
    s.station.engine.loggedFaults.clear();
    ASSERT_NO_THROW(ImportExportedCampaigns(s.station)) << round;
    ASSERT_EQ(s.File("ExportPubs.Txt"), "(no file)") << round;
    const auto lines = static_cast<int>(SplitLines(DecodeSideFile(bytes)).size());
    const auto rows = static_cast<int>(s.station.base.CountRecords("GrillePub"));
    const auto logged = static_cast<int>(s.Events("error").size());
    ASSERT_EQ(s.Events("import").size(), 1U) << round;
    ASSERT_EQ(s.Events("import")[0].Int("lines"), lines) << round;
    ASSERT_EQ(s.Events("import")[0].Int("added"), rows) << round;
    ASSERT_EQ(rows + logged, lines) << round << s.Describe();  // the table was empty: none is known
    added += rows;
    refused += logged;
  }
  EXPECT_GT(added, 300);
  EXPECT_GT(refused, 300);
  EXPECT_EQ(s.SqlText("SELECT group_concat(quote(Langue), ',') FROM Cnf"), cnf);
  EXPECT_EQ(s.SqlText("PRAGMA integrity_check"), "ok");
}

TEST(CampaignDamagedFiles, ThatCannotBeReadStayAndCostOneLine) {
  CampaignStation s;
  for (const char* name : {"Decoupe.Ini", "spot.GPB", "ExportPubs.Txt"})
    std::filesystem::create_directory(s.InFolder(name));
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {"15"});
  LoadSaveMarks(s.station, "Load", form);
  EXPECT_EQ(form.DecoupagePub[0], "15");
  BuildDatedGrid(s.station, form);
  LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("spot.GPB"));
  const auto errors = s.Events("error");
  ASSERT_EQ(errors.size(), 2U);
  EXPECT_EQ(errors[0]["where"] + " " + errors[1]["where"], "LoadSaveDecoupe LSGrillePub");
  EXPECT_THROW(ImportExportedCampaigns(s.station), FileError);  // its caller logs it
  for (const char* name : {"Decoupe.Ini", "spot.GPB", "ExportPubs.Txt"})
    EXPECT_TRUE(std::filesystem::is_directory(s.InFolder(name))) << name;
}

}  // namespace
}  // namespace zemo::test
